// A subpicture in the form that the library mixes, prepared from a canvas by the library.
#pragma once

#include <lumalane.h>
#include <vector>

namespace player {

class canvas;

// How it is made: what is on the canvas is drawn onto an RGB32 surface filled with the key colour and
// converted to Y, V and U planes; then its alpha is drawn in the surface's blue and restored to the
// alpha plane. The surface serves to show the planes again.
class subpicture {
public:
    // A multiple of 16 pixels and an even number of rows: the library's steps.
    subpicture(int columns, int rows);

    int width() const { return columns; }
    int height() const { return rows; }

    // `from` has the same size, here and below.
    void prepare(const canvas &from);

    // Views of the drawing surface as rows of R, G, B bytes without gaps: filled with the key and
    // drawn onto; with the alpha plane loaded onto it, black for 0 and white for 16; with the
    // subpicture painted back onto it.
    std::vector<unsigned char> view_drawing(const canvas &from);
    std::vector<unsigned char> view_alpha();
    std::vector<unsigned char> view_painted_back();

    // The planes and the key in a record, for the library to work on.
    tagMIX_INFO record();

private:
    std::size_t pixel_count() const { return static_cast<std::size_t>(columns) * rows; }
    int surface_pitch() const { return columns * 4; }
    void fill_surface(unsigned colour);
    void draw_colours(const canvas &from);
    void draw_alpha(const canvas &from);
    std::vector<unsigned char> view() const;

    int columns, rows;
    std::vector<unsigned char> alpha, y, v, u;
    std::vector<unsigned> surface; // 0x00RRGGBB
};

} // namespace player
