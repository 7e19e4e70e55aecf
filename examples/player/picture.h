// A decoded picture in the form that the library reads.
#pragma once

#include <vector>

namespace player {

// One plane of somebody else's picture.
struct plane_view {
    const unsigned char *samples;
    int pitch; // bytes from row to row
};

// Rows of a picture as the library is given them.
struct source_rows {
    unsigned char *y, *u, *v; // or the packed rows, and nothing
    int pitch;                // of y, from row to row, as picture::pitch() counts it
    int height;
};

// A 4:2:0 picture with planes of its own, or a packed 4:2:2 picture with rows of its own. The
// library works in steps and rounds odd sizes up, so both are padded to whole steps (their edge
// repeated) and the library is always given the padded size: no row drifts and nothing outside is
// touched. Rows follow each other without gaps, which loadimage_yv12_ajust() takes for granted.
class picture {
public:
    void assign(int width, int height, plane_view y, plane_view u, plane_view v);
    void assign_packed(int width, int height, plane_view rows); // Y0 U Y1 V

    double pixel_shape = 1; // width by height; samples are the same with any

    bool is_packed() const { return packed; }
    int width() const { return visible_width; }
    int height() const { return visible_height; }
    int padded_width() const;
    int padded_height() const;

    // Bytes of a Y row; pixels of a packed row. That is how the library counts either.
    int pitch() const { return padded_width(); }

    // The padded picture, and one field of it: 0 is that of the uppermost row. A field needs
    // planes.
    source_rows frame();
    source_rows field(int number);

private:
    bool packed = false;
    int visible_width = 0;
    int visible_height = 0;
    std::vector<unsigned char> y_plane; // or the packed rows
    std::vector<unsigned char> u_plane, v_plane;
};

} // namespace player
