#include "examples/player/subpicture.h"

#include "examples/player/canvas.h"

#include <algorithm>

namespace player {
namespace {

// Red and blue are equal, because the conversion has them in one order and the painting back in the
// other.
constexpr unsigned key = 0x00ff00ff;

constexpr int most_alpha = 16;

unsigned alpha_of(canvas::pixel pixel) { return (pixel.alpha * most_alpha + 127u) / 255; }

unsigned colour_of(canvas::pixel pixel) {
    const unsigned colour = static_cast<unsigned>(pixel.red << 16 | pixel.green << 8 | pixel.blue);
    constexpr unsigned next_to_key = key | 1 << 8;
    return colour == key ? next_to_key : colour;
}

// The pixels of a 2x2 block share their chroma, which the library takes from one of them, be it
// drawn on or not. So a pixel of the block that is not drawn on takes the colour of the one that is
// drawn on most; its alpha keeps it from being seen.
canvas::pixel strongest_of_block(const canvas &from, int x, int y) {
    const int left = x / 2 * 2;
    const int top = y / 2 * 2;
    return std::max({from.at(left, top), from.at(left + 1, top), from.at(left, top + 1),
                     from.at(left + 1, top + 1)},
                    [](auto a, auto b) { return a.alpha < b.alpha; });
}

} // namespace

subpicture::subpicture(int width, int height)
    : columns(width), rows(height), alpha(pixel_count()), y(pixel_count(), 16),
      v(pixel_count() / 2, 128), u(pixel_count() / 2, 128), surface(pixel_count()) {}

tagMIX_INFO subpicture::record() {
    tagMIX_INFO mix{};
    mix.video_pitch = mix.sub_pitch = mix.width = columns;
    mix.height = rows;
    mix.alpha_plane = alpha.data();
    mix.sub_y = y.data();
    mix.sub_v = v.data();
    mix.sub_u = u.data();
    mix.dst = reinterpret_cast<unsigned char *>(surface.data());
    mix.dst_pitch = surface_pitch();
    mix.color_key = key;
    return mix;
}

void subpicture::fill_surface(unsigned colour) {
    LoadColorKeyRgb32(colour, surface.data(), columns, rows, 0, surface_pitch());
}

void subpicture::draw_colours(const canvas &from) {
    fill_surface(key);
    auto pixel = surface.begin();
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column, ++pixel) {
            const canvas::pixel own = from.at(column, row);
            const canvas::pixel shown = alpha_of(own) ? own : strongest_of_block(from, column, row);
            if (alpha_of(shown))
                *pixel = colour_of(shown);
        }
    }
}

void subpicture::draw_alpha(const canvas &from) {
    fill_surface(0);
    auto pixel = surface.begin();
    for (int row = 0; row < rows; ++row)
        for (int column = 0; column < columns; ++column)
            *pixel++ = alpha_of(from.at(column, row));
}

void subpicture::prepare(const canvas &from) {
    // The library's functions use the record as their running state: each gets a new one.
    draw_colours(from);
    tagMIX_INFO colours = record();
    Convert_RGB32_To_AYUY2(&colours);
    draw_alpha(from);
    tagMIX_INFO opacity = record();
    Restore_RGB32_To_Alpha(&opacity);
}

std::vector<unsigned char> subpicture::view() const {
    std::vector<unsigned char> rgb;
    rgb.reserve(3 * surface.size());
    for (const unsigned pixel : surface)
        for (const int shift : {16, 8, 0})
            rgb.push_back(static_cast<unsigned char>(pixel >> shift));
    return rgb;
}

std::vector<unsigned char> subpicture::view_drawing(const canvas &from) {
    draw_colours(from);
    return view();
}

std::vector<unsigned char> subpicture::view_alpha() {
    tagMIX_INFO mix = record();
    load_subpicture_alpha_rgb32(&mix);
    for (unsigned &pixel : surface)
        pixel = pixel * 255 / most_alpha * 0x010101;
    return view();
}

std::vector<unsigned char> subpicture::view_painted_back() {
    tagMIX_INFO mix = record();
    load_subpicture_yuy2_rgb32(&mix);
    return view();
}

} // namespace player
