// The surfaces that the player can have filled by the library.
#pragma once

#include "examples/player/picture.h"
#include "frame/lumalane.h"

#include <SDL_pixels.h>
#include <array>
#include <chrono>
#include <span>
#include <string_view>
#include <vector>

namespace player {

class surface;

// All that is particular to one kind of surface. The names on the command line, the order of the
// surface key and the help come from the table of these.
struct surface_format {
    const char *name;
    decltype(&loadimage_rgb32_ajust) load;
    int bytes_per_pixel;     // in the rows of the surface (of its Y plane)
    bool chroma_planes;      // V and U planes, a quarter of the first each, follow it
    unsigned rgb16_layout;   // for the RGB16 functions
    std::array<int, 3> bits; // of R, G and B
    Uint32 sdl_format;       // SDL_PIXELFORMAT_UNKNOWN: SDL has none, it is expanded to be shown
    // Writes one visible row as R, G, B bytes.
    void (*expand_row)(const surface &from, int row, unsigned char *rgb);
};

std::span<const surface_format> surface_formats();

// Null if there is no such surface.
const surface_format *find_surface_format(std::string_view name);

// The one after `format`, and after the last the first.
const surface_format &next_surface_format(const surface_format &format);

class surface {
public:
    // Has the library fill the surface and returns the time that the library took.
    std::chrono::nanoseconds load(picture &from, const surface_format &into);

    const surface_format &format() const { return *filled_as; }
    const std::vector<unsigned char> &bytes() const { return contents; }
    int pitch() const { return padded_width * filled_as->bytes_per_pixel; }

    // Size of the picture, and of the surface around it.
    int width() const { return visible_width; }
    int height() const { return visible_height; }
    int surface_width() const { return padded_width; }
    int surface_height() const { return padded_height; }

    // The visible part as rows of R, G, B bytes without gaps.
    std::vector<unsigned char> expand() const;

private:
    const surface_format *filled_as = nullptr;
    int visible_width = 0;
    int visible_height = 0;
    int padded_width = 0;
    int padded_height = 0;
    std::vector<unsigned char> contents;
};

} // namespace player
