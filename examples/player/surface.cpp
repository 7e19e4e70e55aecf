#include "examples/player/surface.h"

#include "examples/player/subpicture.h"

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
void expand_pixel(int y, int u, int v, unsigned char *rgb) {
    const auto level = [](double value) {
        return static_cast<unsigned char>(std::lround(std::clamp(value, 0.0, 255.0)));
    };
    const double grey = 255.0 / 219 * (y - 16);
    const double blue = 255.0 / 112 * (u - 128);
    const double red = 255.0 / 112 * (v - 128);
    rgb[0] = level(grey + 0.701 * red);
    rgb[1] = level(grey - 0.114 * 0.886 / 0.587 * blue - 0.299 * 0.701 / 0.587 * red);
    rgb[2] = level(grey + 0.886 * blue);
}

void expand_yv12(const surface &from, int row, unsigned char *rgb) {
    const unsigned char *y = row_of(from, row);
    const std::size_t luma_bytes = static_cast<std::size_t>(from.pitch()) * from.surface_height();
    const unsigned char *v = from.bytes().data() + luma_bytes + from.pitch() / 2 * (row / 2);
    const unsigned char *u = v + luma_bytes / 4;
    for (int x = 0; x < from.width(); ++x, rgb += 3)
        expand_pixel(y[x], u[x / 2], v[x / 2], rgb);
}

void expand_yuy2(const surface &from, int row, unsigned char *rgb) {
    const unsigned char *in = row_of(from, row);
    for (int x = 0; x < from.width(); ++x, rgb += 3) {
        const unsigned char *pair = in + x / 2 * 4;
        expand_pixel(in[2 * x], pair[1], pair[3], rgb);
    }
}

// ---- Stretches ----------------------------------------------------------------------------------

// These two take other arguments than the rest.

void load_2x2_packed(unsigned char *src, unsigned char *, unsigned char *, unsigned char *dst,
                     int width, int height, int, int dst_pitch, tag_ajust_contrast_info *info) {
    yuy2_strech_picture_2X2_yuy2_ajust(src, nullptr, nullptr, dst, 2 * width, height, dst_pitch,
                                       info);
}

// A field starts at its own first row: as a start row, the second field's would be half a chroma
// row off.
void load_edge(unsigned char *src, unsigned char *src_u, unsigned char *src_v, unsigned char *dst,
               int width, int height, int src_pitch, int dst_pitch, tag_ajust_contrast_info *info) {
    tagVideoFrame frame{};
    frame.field_mode = src_pitch == 2 * width;
    frame.plane_y = src;
    frame.plane_u = src_u;
    frame.plane_v = src_v;
    frame.luma_pitch = width;
    strech_opt_yuy2_ajust(&frame, 0, height, dst, dst_pitch, info);
}

using functions = library_functions;

constexpr stretching all_stretchings[] = {
    {"none", 1, 1, &functions::load, &functions::load_packed},
    {"1x2", 1, 2, &functions::load_1x2, nullptr},
    {"2x2", 2, 2, &functions::load_2x2, &functions::load_2x2_packed},
    {"edge", 1, 2, &functions::load_edge, nullptr},
};

// ---- Surfaces ---------------------------------------------------------------------------------

constexpr surface_format rgb(const char *name, library_functions from_library, int bytes,
                             Uint32 sdl_format) {
    return {.name = name,
            .functions = from_library,
            .bytes_per_pixel = bytes,
            .sdl_format = sdl_format,
            .expand_row = expand_bgr};
}

constexpr surface_format rgb16(const char *name, unsigned layout, std::array<int, 3> bits,
                               Uint32 sdl_format) {
    return {.name = name,
            .functions = {loadimage_rgb16_ajust, LoadYUY2_RGB16_adjust, mix_ayuy2_rgb16_p_ajust,
                          mix_ayuy2_rgb16_i_ajust, strech_picture_1X2_yuy2_ajust_rgb16},
            .bytes_per_pixel = 2,
            .rgb16_layout = layout,
            .bits = bits,
            .sdl_format = sdl_format,
            .expand_row = expand_rgb16};
}

constexpr surface_format yuy2(const char *name, library_functions from_library,
                              bool half_width = false) {
    return {.name = name,
            .functions = from_library,
            .bytes_per_pixel = 2,
            .half_width = half_width,
            .sdl_format = SDL_PIXELFORMAT_YUY2,
            .expand_row = expand_yuy2};
}

constexpr surface_format yv12(const char *name, library_functions from_library,
                              bool half_width = false) {
    return {.name = name,
            .functions = from_library,
            .bytes_per_pixel = 1,
            .half_width = half_width,
            .chroma_planes = true,
            .stretch_has_one_gain = true,
            .sdl_format = SDL_PIXELFORMAT_YV12,
            .expand_row = expand_yv12};
}

// The adjusting functions throughout: without an adjustment they change nothing.
// (loadimage_yuy2() would, besides, leave gaps in every second row.) A field onto YV12 can only be
// mixed without one.
constexpr surface_format formats[] = {
    rgb("rgb32",
        {loadimage_rgb32_ajust, LoadYUY2_RGB32_adjust, mix_ayuy2_rgb32_p_ajust,
         mix_ayuy2_rgb32_i_ajust, strech_picture_1X2_yuy2_ajust_rgb32},
        4, SDL_PIXELFORMAT_RGB888),
    rgb("rgb24",
        {loadimage_rgb24_ajust, LoadYUY2_RGB24_adjust, mix_ayuy2_rgb24_p_ajust,
         mix_ayuy2_rgb24_i_ajust, strech_picture_1X2_yuy2_ajust_rgb24},
        3, SDL_PIXELFORMAT_BGR24),
    rgb16("rgb565", 0, {5, 6, 5}, SDL_PIXELFORMAT_RGB565),
    rgb16("rgb555", 1, {5, 5, 5}, SDL_PIXELFORMAT_UNKNOWN),
    rgb16("rgb664", 2, {6, 6, 4}, SDL_PIXELFORMAT_UNKNOWN),
    rgb16("rgb655", 3, {6, 5, 5}, SDL_PIXELFORMAT_UNKNOWN),
    yuy2("yuy2", {loadimage_yuy2_ajust, LoadYUY2_YUY2_adjust, mix_ayuy2_yuy2_p_ajust,
                  mix_ayuy2_yuy2_i_ajust, strech_picture_1X2_yuy2_ajust,
                  strech_picture_2X2_yuy2_ajust, load_2x2_packed, load_edge}),
    yuy2("yuy2_mono", {loadimage_yuy2_mono_ajust}),
    yuy2("half_yuy2", {loadimage_half_yuy2_ajust, nullptr, mix_ayuy2_half_yuy2_p_ajust}, true),
    yv12("yv12", {loadimage_yv12_ajust, nullptr, mix_ayv12_yv12_p_ajust, mix_ayv12_yv12_i,
                  strech_picture_1X2_yv12_ajust, strech_picture_2X2_yv12_ajust}),
    yv12("half_yv12", {loadimage_half_yv12_ajust}, true),
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

std::span<const stretching> stretchings() { return all_stretchings; }

const stretching *find_stretching(std::string_view name) {
    const auto found = std::ranges::find(all_stretchings, name, &stretching::name);
    return found == std::end(all_stretchings) ? nullptr : found;
}

// `columns` and `rows` of the surface for one of the picture.
void surface::fit(const picture &from, const surface_format &into, int columns, int rows) {
    const int picture_pixels = into.half_width ? 2 : 1; // to one of the surface
    filled_as = &into;
    visible_width = (from.width() * columns + picture_pixels - 1) / picture_pixels;
    visible_height = from.height() * rows;
    padded_width = from.padded_width() * columns / picture_pixels;
    padded_height = from.padded_height() * rows;
    pixel_shape = from.pixel_shape * picture_pixels * rows / columns;
    const std::size_t bytes = first_plane_bytes();
    contents.resize(into.chroma_planes ? bytes + bytes / 2 : bytes);
}

int surface::shown_width() const {
    return static_cast<int>(std::lround(pixel_shape * visible_width));
}

tag_ajust_contrast_info surface::facts() const {
    tag_ajust_contrast_info info{};
    info.rgb16_layout = filled_as->rgb16_layout;
    info.surface_height = info.rows_to_plane_end = padded_height;
    return info;
}

std::chrono::nanoseconds surface::load(picture &from, const surface_format &into,
                                       const stretching &by) {
    fit(from, into, by.columns, by.rows);
    return run(into.loader(by, from.is_packed()), from.frame(), from.padded_width());
}

std::chrono::nanoseconds surface::load_field(picture &from, int field, const surface_format &into,
                                             const stretching &by) {
    fit(from, into);
    return run(into.loader(by, false), from.field(field), from.padded_width());
}

std::chrono::nanoseconds surface::mix(picture &from, subpicture &over, const surface_format &into) {
    fit(from, into);
    return run(into.functions.mix, from.frame(), over);
}

std::chrono::nanoseconds surface::mix_field(picture &from, int field, subpicture &over,
                                            const surface_format &into) {
    fit(from, into);
    return run(into.functions.mix_field, from.field(field), over);
}

std::chrono::nanoseconds surface::run(library_functions::loader load_rows, const source_rows &from,
                                      int width) {
    tag_ajust_contrast_info info = facts();
    const auto start = std::chrono::steady_clock::now();
    load_rows(from.y, from.u, from.v, contents.data(), width, from.height, from.pitch, pitch(),
              &info);
    return std::chrono::steady_clock::now() - start;
}

std::chrono::nanoseconds surface::run(library_functions::mixer mix_rows, const source_rows &from,
                                      subpicture &over) {
    tag_ajust_contrast_info info = facts();
    tagMIX_INFO record = over.record();
    record.adjust_info = &info;
    record.video_pitch = from.pitch;
    record.video_y = from.y;
    record.video_v = from.v;
    record.video_u = from.u;
    record.dst = contents.data();
    record.dst_pitch = pitch();
    if (filled_as->chroma_planes) {
        record.dst_v = record.dst + first_plane_bytes();
        record.dst_u = record.dst_v + first_plane_bytes() / 4;
    }
    const auto start = std::chrono::steady_clock::now();
    mix_rows(&record);
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
