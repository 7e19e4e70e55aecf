// Pictures as rows of R, G, B bytes, made of what the library reads and writes.
#pragma once

#include <string>
#include <vector>

namespace pictures {

struct image {
    int width = 0, height = 0;
    std::vector<unsigned char> rgb;

    image() = default;
    image(int columns, int rows)
        : width(columns), height(rows), rgb(static_cast<std::size_t>(3) * columns * rows) {}
    unsigned char *at(int x, int y) {
        return rgb.data() + 3 * (static_cast<std::size_t>(y) * width + x);
    }
};

/// Bytes, and the distance between their rows.
struct plane {
    const unsigned char *data;
    int pitch;
};

/// 4:2:0, or 4:2:2 with as many rows of chroma as of luma. A plane u of null: grey.
image of_planes(plane y, plane u, plane v, int width, int height, bool chroma_on_every_row = false);
image of_yuy2(plane yuy2, int width, int height);
/// 4, 3 or 2 (5-6-5) bytes per pixel.
image of_rgb(plane rgb, int bytes_per_pixel, int width, int height);
/// Each sample times `scale`.
image of_grey(plane y, int width, int height, int scale = 1);
/// Seen through alpha of 0 to 16, over a chequered ground.
image over_chequers(const image &what, plane alpha);

void write_png(const std::string &path, const image &);

} // namespace pictures
