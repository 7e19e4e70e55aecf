// A decoded picture in the form that the library reads.
#pragma once

#include <vector>

namespace player {

// One plane of somebody else's picture.
struct plane_view {
    const unsigned char *samples;
    int pitch; // bytes from row to row
};

// A 4:2:0 picture with planes of its own. The library works in steps and rounds odd sizes up, so
// the planes are padded to whole steps (their edge repeated) and the library is always given the
// padded size: no row drifts and nothing outside the planes is touched. Rows follow each other
// without gaps, which loadimage_yv12_ajust() takes for granted.
class picture {
public:
    void assign(int width, int height, plane_view y, plane_view u, plane_view v);

    int width() const { return visible_width; }
    int height() const { return visible_height; }
    int padded_width() const;
    int padded_height() const;

    unsigned char *y() { return y_plane.data(); }
    unsigned char *u() { return u_plane.data(); }
    unsigned char *v() { return v_plane.data(); }

private:
    int visible_width = 0;
    int visible_height = 0;
    std::vector<unsigned char> y_plane, u_plane, v_plane;
};

} // namespace player
