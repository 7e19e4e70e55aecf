#include "docs/pictures/image.h"

#include <png.h>

#include <algorithm>
#include <stdexcept>

namespace pictures {

namespace {

unsigned char clamped(int x) { return static_cast<unsigned char>(std::clamp(x, 0, 255)); }

// BT.601, studio range. (For display alone: what the library makes of the same samples is rounded
// down.)
void put(unsigned char *rgb, int y, int u, int v) {
    const int luma = 298 * (y - 16);
    rgb[0] = clamped((luma + 409 * (v - 128) + 128) >> 8);
    rgb[1] = clamped((luma - 100 * (u - 128) - 208 * (v - 128) + 128) >> 8);
    rgb[2] = clamped((luma + 516 * (u - 128) + 128) >> 8);
}

} // namespace

image of_planes(plane y, plane u, plane v, int width, int height, bool chroma_on_every_row) {
    image made(width, height);
    for (int row = 0; row < height; ++row)
        for (int x = 0; x < width; ++x) {
            const std::ptrdiff_t chroma_row = chroma_on_every_row ? row : row / 2;
            put(made.at(x, row), y.data[std::ptrdiff_t{row} * y.pitch + x],
                u.data ? u.data[chroma_row * u.pitch + x / 2] : 128,
                v.data ? v.data[chroma_row * v.pitch + x / 2] : 128);
        }
    return made;
}

image of_yuy2(plane yuy2, int width, int height) {
    image made(width, height);
    for (int row = 0; row < height; ++row)
        for (int x = 0; x < width; ++x) {
            const unsigned char *pair = yuy2.data + std::ptrdiff_t{row} * yuy2.pitch + x / 2 * 4;
            put(made.at(x, row), pair[x % 2 * 2], pair[1], pair[3]);
        }
    return made;
}

image of_rgb(plane rgb, int bytes_per_pixel, int width, int height) {
    image made(width, height);
    for (int row = 0; row < height; ++row)
        for (int x = 0; x < width; ++x) {
            const unsigned char *from =
                rgb.data + std::ptrdiff_t{row} * rgb.pitch + x * bytes_per_pixel;
            unsigned char *to = made.at(x, row);
            if (bytes_per_pixel == 2) {
                const unsigned word = from[0] | from[1] << 8;
                to[0] = static_cast<unsigned char>((word >> 11) * 255 / 31);
                to[1] = static_cast<unsigned char>((word >> 5 & 63) * 255 / 63);
                to[2] = static_cast<unsigned char>((word & 31) * 255 / 31);
            } else {
                to[0] = from[2], to[1] = from[1], to[2] = from[0];
            }
        }
    return made;
}

image of_grey(plane y, int width, int height, int scale) {
    image made(width, height);
    for (int row = 0; row < height; ++row)
        for (int x = 0; x < width; ++x) {
            const unsigned char grey = clamped(scale * y.data[std::ptrdiff_t{row} * y.pitch + x]);
            std::fill_n(made.at(x, row), 3, grey);
        }
    return made;
}

image over_chequers(const image &what, plane alpha) {
    image made = what;
    for (int row = 0; row < made.height; ++row)
        for (int x = 0; x < made.width; ++x) {
            const int a = std::min<int>(alpha.data[std::ptrdiff_t{row} * alpha.pitch + x], 16);
            const int ground = (x / 6 + row / 6) % 2 ? 200 : 160;
            for (int i = 0; i < 3; ++i) {
                unsigned char &sample = made.at(x, row)[i];
                sample = static_cast<unsigned char>((sample * a + ground * (16 - a)) / 16);
            }
        }
    return made;
}

void write_png(const std::string &path, const image &picture) {
    png_image header = {};
    header.version = PNG_IMAGE_VERSION;
    header.width = static_cast<png_uint_32>(picture.width);
    header.height = static_cast<png_uint_32>(picture.height);
    header.format = PNG_FORMAT_RGB;
    if (!png_image_write_to_file(&header, path.c_str(), 0, picture.rgb.data(), 0, nullptr))
        throw std::runtime_error(path + ": " + header.message);
}

} // namespace pictures
