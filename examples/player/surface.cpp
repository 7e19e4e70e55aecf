#include "examples/player/surface.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace player {
namespace {

const unsigned char *row_of(const surface &from, int row) {
    return from.bytes().data() + static_cast<std::ptrdiff_t>(from.pitch()) * row;
}

void expand_bgr(const surface &from, int row, unsigned char *rgb) {
    const unsigned char *in = row_of(from, row);
    for (int x = 0; x < from.width(); ++x, in += from.format().bytes_per_pixel, rgb += 3)
        std::reverse_copy(in, in + 3, rgb);
}

void expand_rgb16(const surface &from, int row, unsigned char *rgb) {
    const unsigned char *in = row_of(from, row);
    for (int x = 0; x < from.width(); ++x, in += 2) {
        const int word = in[0] | in[1] << 8;
        int above = 16; // bits of the word that the channels so far have left
        for (const int bits : from.format().bits) {
            above -= bits;
            const int most = (1 << bits) - 1;
            *rgb++ = static_cast<unsigned char>((word >> above & most) * 255 / most);
        }
    }
}

// BT.601, studio range.
void expand_yv12(const surface &from, int row, unsigned char *rgb) {
    const unsigned char *y = row_of(from, row);
    const std::size_t luma_bytes = static_cast<std::size_t>(from.pitch()) * from.surface_height();
    const unsigned char *v = from.bytes().data() + luma_bytes + from.pitch() / 2 * (row / 2);
    const unsigned char *u = v + luma_bytes / 4;
    const auto level = [](double value) {
        return static_cast<unsigned char>(std::lround(std::clamp(value, 0.0, 255.0)));
    };
    for (int x = 0; x < from.width(); ++x) {
        const double grey = 255.0 / 219 * (y[x] - 16);
        const double blue = 255.0 / 112 * (u[x / 2] - 128);
        const double red = 255.0 / 112 * (v[x / 2] - 128);
        *rgb++ = level(grey + 0.701 * red);
        *rgb++ = level(grey - 0.114 * 0.886 / 0.587 * blue - 0.299 * 0.701 / 0.587 * red);
        *rgb++ = level(grey + 0.886 * blue);
    }
}

constexpr surface_format formats[] = {
    // name, function, bytes, chroma planes, layout, bits, SDL's name, expansion
    {"rgb32", loadimage_rgb32_ajust, 4, false, 0, {8, 8, 8}, SDL_PIXELFORMAT_RGB888, expand_bgr},
    {"rgb24", loadimage_rgb24_ajust, 3, false, 0, {8, 8, 8}, SDL_PIXELFORMAT_BGR24, expand_bgr},
    {"rgb565", loadimage_rgb16_ajust, 2, false, 0, {5, 6, 5}, SDL_PIXELFORMAT_RGB565, expand_rgb16},
    {"rgb555",
     loadimage_rgb16_ajust,
     2,
     false,
     1,
     {5, 5, 5},
     SDL_PIXELFORMAT_UNKNOWN,
     expand_rgb16},
    {"rgb664",
     loadimage_rgb16_ajust,
     2,
     false,
     2,
     {6, 6, 4},
     SDL_PIXELFORMAT_UNKNOWN,
     expand_rgb16},
    {"rgb655",
     loadimage_rgb16_ajust,
     2,
     false,
     3,
     {6, 5, 5},
     SDL_PIXELFORMAT_UNKNOWN,
     expand_rgb16},
    {"yv12", loadimage_yv12_ajust, 1, true, 0, {8, 8, 8}, SDL_PIXELFORMAT_YV12, expand_yv12},
};

} // namespace

std::span<const surface_format> surface_formats() { return formats; }

const surface_format *find_surface_format(std::string_view name) {
    const auto found = std::ranges::find(formats, name, &surface_format::name);
    return found == std::end(formats) ? nullptr : found;
}

const surface_format &next_surface_format(const surface_format &format) {
    const surface_format *next = &format + 1;
    return next == std::end(formats) ? formats[0] : *next;
}

std::chrono::nanoseconds surface::load(picture &from, const surface_format &into) {
    filled_as = &into;
    visible_width = from.width();
    visible_height = from.height();
    padded_width = from.padded_width();
    padded_height = from.padded_height();
    const std::size_t bytes = static_cast<std::size_t>(pitch()) * padded_height;
    contents.resize(into.chroma_planes ? bytes + bytes / 2 : bytes);

    tag_ajust_contrast_info info{};
    info.rgb16_layout = into.rgb16_layout;
    info.surface_height = info.rows_to_plane_end = padded_height;

    const auto start = std::chrono::steady_clock::now();
    into.load(from.y(), from.u(), from.v(), contents.data(), padded_width, padded_height,
              padded_width, pitch(), &info);
    return std::chrono::steady_clock::now() - start;
}

std::vector<unsigned char> surface::expand() const {
    const std::size_t row_bytes = static_cast<std::size_t>(visible_width) * 3;
    std::vector<unsigned char> rgb(row_bytes * visible_height);
    for (int row = 0; row < visible_height; ++row)
        filled_as->expand_row(*this, row, rgb.data() + row_bytes * row);
    return rgb;
}

} // namespace player
