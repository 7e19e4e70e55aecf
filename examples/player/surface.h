// The surfaces that the player can have filled by the library.
#pragma once

#include "examples/player/picture.h"

#include <SDL_pixels.h>
#include <array>
#include <chrono>
#include <lumalane.h>
#include <span>
#include <string_view>
#include <vector>

namespace player {

class subpicture;
class surface;

// What the library has for one kind of surface; null: it has none.
struct library_functions {
    using loader = decltype(&loadimage_rgb32_ajust);
    using mixer = decltype(&mix_ayuy2_rgb32_p_ajust);

    loader load;                  // from 4:2:0 planes
    loader load_packed = nullptr; // from packed 4:2:2 pictures
    mixer mix = nullptr;          // of 4:2:0 planes and a subpicture
    mixer mix_field = nullptr;    // the same of a single field, doubled to a frame
    loader load_1x2 = nullptr;    // from 4:2:0 planes, with twice the rows
    loader load_2x2 = nullptr;    // ... and twice the columns
    loader load_2x2_packed = nullptr;
    loader load_edge = nullptr; // with twice the rows, interpolated along edges
};

// How a picture is enlarged by the function that fills the surface. As with the surfaces, names and
// order come from a table.
struct stretching {
    const char *name;
    int columns, rows; // of the surface for one of the picture
    // The function for either form of picture; null: it is made for no surface.
    library_functions::loader library_functions::*planar;
    library_functions::loader library_functions::*packed;

    // The rows of a field fill a frame.
    bool fits_fields() const { return columns == 1 && rows == 2; }
};

// The first leaves pictures as they are.
std::span<const stretching> stretchings();

// Null if there is no such stretching.
const stretching *find_stretching(std::string_view name);

// All that is particular to one kind of surface. The names on the command line, the order of the
// surface key and the help come from the table of these.
struct surface_format {
    const char *name;
    library_functions functions;
    int bytes_per_pixel;               // in the rows of the surface (of its Y plane)
    bool half_width = false;           // it has one pixel for two of the picture, in all rows
    bool chroma_planes = false;        // V and U planes, a quarter of the first each, follow it
    bool stretch_has_one_gain = false; // the library stretches chroma with the gain of luma
    unsigned rgb16_layout = 0;         // for the RGB16 functions
    std::array<int, 3> bits{8, 8, 8};  // of R, G and B
    Uint32 sdl_format; // SDL_PIXELFORMAT_UNKNOWN: SDL has none, it is expanded to be shown
    // Writes one visible row as R, G, B bytes.
    void (*expand_row)(const surface &from, int row, unsigned char *rgb);

    // What loads planar or packed pictures so; null: nothing does.
    library_functions::loader loader(const stretching &by, bool packed) const {
        const auto function = packed ? by.packed : by.planar;
        return function ? functions.*function : nullptr;
    }
};

std::span<const surface_format> surface_formats();

// Null if there is no such surface.
const surface_format *find_surface_format(std::string_view name);

// The one after `format`, and after the last the first.
const surface_format &next_surface_format(const surface_format &format);

class surface {
public:
    // Has the library fill the surface and returns the time that the library took. The format needs
    // a loader for the stretching and, of a packed picture, for packed ones.
    std::chrono::nanoseconds load(picture &from, const surface_format &into,
                                  const stretching &by = stretchings().front());

    // The same of one field of the picture, which must not be packed, with a stretching that fits
    // fields.
    std::chrono::nanoseconds load_field(picture &from, int field, const surface_format &into,
                                        const stretching &by);

    // Has the library fill the surface with the picture under a subpicture of its padded size. The
    // picture must not be packed, and the format needs mix.
    std::chrono::nanoseconds mix(picture &from, subpicture &over, const surface_format &into);

    // The same with one field of the picture: 0 is that of the uppermost row. The format needs
    // mix_field.
    std::chrono::nanoseconds mix_field(picture &from, int field, subpicture &over,
                                       const surface_format &into);

    const surface_format &format() const { return *filled_as; }
    const std::vector<unsigned char> &bytes() const { return contents; }
    int pitch() const { return padded_width * filled_as->bytes_per_pixel; }

    // Size of the visible part, and of the surface around it.
    int width() const { return visible_width; }
    int height() const { return visible_height; }
    int surface_width() const { return padded_width; }
    int surface_height() const { return padded_height; }

    // The width at which the visible part has the shape of the picture.
    int shown_width() const;

    // The visible part as rows of R, G, B bytes without gaps.
    std::vector<unsigned char> expand() const;

private:
    void fit(const picture &from, const surface_format &into, int columns = 1, int rows = 1);
    std::size_t first_plane_bytes() const {
        return static_cast<std::size_t>(pitch()) * padded_height;
    }
    tag_ajust_contrast_info facts() const;
    std::chrono::nanoseconds run(library_functions::loader load_rows, const source_rows &from,
                                 int width);
    std::chrono::nanoseconds run(library_functions::mixer mix_rows, const source_rows &from,
                                 subpicture &over);

    const surface_format *filled_as = nullptr;
    int visible_width = 0;
    int visible_height = 0;
    int padded_width = 0;
    int padded_height = 0;
    double pixel_shape = 1; // width by height
    std::vector<unsigned char> contents;
};

} // namespace player
