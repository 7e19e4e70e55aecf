#include "bench/scene.h"

#include <algorithm>
#include <cstdint>
#include <istream>
#include <new>
#include <ostream>
#include <random>

namespace lumalane::bench {
namespace {

constexpr std::size_t cache_line = 64;

// Black in every format.
constexpr unsigned char key_colour = 0;

unsigned char *allocate(std::size_t bytes) {
    const std::size_t lines = (bytes + cache_line - 1) / cache_line;
    void *memory = std::aligned_alloc(cache_line, lines * cache_line);
    if (!memory)
        throw std::bad_alloc();
    return static_cast<unsigned char *>(memory);
}

// With two rows to spare: loadimage_yv12 steps through 1.5 times the rows of Y and twice those of U
// and V, and its chroma ends 1.75 planes of Y into the destination.
std::size_t pixels_with_room(size picture) {
    return std::size_t(picture.width) * (picture.height + 2);
}

} // namespace

buffer::buffer(std::size_t bytes) : bytes_(bytes), memory_(allocate(bytes), &std::free) {
    const std::size_t words = (bytes + 3) / 4; // within the last cache line
    std::generate_n(reinterpret_cast<std::uint32_t *>(memory_.get()), words, std::mt19937(bytes));
}

std::ostream &operator<<(std::ostream &out, size picture) {
    return out << picture.width << 'x' << picture.height;
}

std::istream &operator>>(std::istream &in, size &picture) {
    char times = 0;
    in >> picture.width >> times >> picture.height;
    // Of other widths some functions write past the buffers, and some never end; of other heights mixes of
    // fields begin later columns lower or higher. Rows between two of a frame have 48 pixels at least;
    // below 16 rows some stretches make nothing.
    const bool whole = picture.width % 16 == 0 && picture.height % 4 == 0;
    if (times != 'x' || picture.width < 48 || picture.height < 16 || !whole)
        in.setstate(std::ios::failbit);
    return in;
}

scene::scene(size picture, double dst_pitch_per_pixel)
    : width(picture.width), height(picture.height), src_pitch(width),
      dst_pitch(int(width * dst_pitch_per_pixel)), y(2 * pixels_with_room(picture)),
      u(pixels_with_room(picture)), v(pixels_with_room(picture)), alpha(pixels_with_room(picture)),
      sub_y(pixels_with_room(picture)), sub_u(pixels_with_room(picture)),
      sub_v(pixels_with_room(picture)),
      dst(std::size_t(2 * std::max(3., dst_pitch_per_pixel) * pixels_with_room(picture))), info() {
    info.surface_height = height;
    info.rows_to_plane_end = height;
}

namespace situations {
namespace {

constexpr int opaque = 16;

void as_it_is(scene &) {}

// A tenth of the height, near the bottom.
slice subtitle_rows(int height) {
    const int rows = height / 10;
    return {height * 19 / 20 - rows, rows};
}

// Half of the width.
void show_subtitles(scene &s) {
    const int left = s.width / 4, right = left + s.width / 2;
    const int top = subtitle_rows(s.height).first, bottom = top + subtitle_rows(s.height).rows;
    for (int row = 0; row < s.height; ++row)
        for (int x = 0; x < s.width; ++x) {
            unsigned char &a = s.alpha.data()[row * s.src_pitch + x];
            const bool covered = row >= top && row < bottom && x >= left && x < right;
            a = covered ? 1 + a % opaque : 0;
        }
}

void hang_veil(scene &s) { std::fill_n(s.alpha.data(), s.src_pitch * s.height, opaque / 2); }

// The fourth bytes of RGB32 are 0, as drawing leaves them.
void draw(scene &s) {
    unsigned char *const first = s.dst.data(), *const end = first + s.dst_pitch * s.height;
    std::replace(first, end, key_colour, std::uint8_t(key_colour + 1));
    if (s.dst_pitch == 4 * s.width)
        for (unsigned char *pixel = first; pixel < end; pixel += 4)
            pixel[3] = 0;
}

slice drawn_rows(int height) {
    const int first = height * 9 / 10;
    return {first, height - first};
}

void draw_at_the_bottom(scene &s) {
    draw(s);
    std::fill_n(s.dst.data(), s.dst_pitch * drawn_rows(s.height).first, key_colour);
}

void paint_flat(scene &s) {
    std::fill_n(s.y.data(), s.src_pitch * s.height, 100);
    std::fill_n(s.u.data(), s.src_pitch * s.height / 4, 90);
    std::fill_n(s.v.data(), s.src_pitch * s.height / 4, 160);
}

} // namespace

const situation random{"", as_it_is};
const situation subtitles{"subtitles", show_subtitles, 0.05, subtitle_rows};
const situation veil{"veil", hang_veil};
const situation drawn{"drawn", draw};
const situation mostly_key{"90%key", draw_at_the_bottom, 0.1, drawn_rows};
const situation flat{"flat", paint_flat};
const situation edges{"edges", as_it_is}; // random rows match nowhere

} // namespace situations

namespace {

// So many rows further on.
unsigned char *row(const buffer &plane, std::ptrdiff_t pitch, std::ptrdiff_t number) {
    return plane.data() + pitch * number;
}

tagMIX_INFO mix_record(scene &s, slicing how, slice rows) {
    const int first = rows.first, video = how == slicing::field ? first / 2 : first;
    tagMIX_INFO record{};
    record.video_pitch = record.sub_pitch = s.src_pitch;
    record.dst_pitch = s.dst_pitch;
    record.width = s.width;
    record.height = rows.rows;
    record.video_y = row(s.y, s.src_pitch, video);
    record.video_v = row(s.v, s.src_pitch / 2, video / 2);
    record.video_u = row(s.u, s.src_pitch / 2, video / 2);
    record.alpha_plane = row(s.alpha, s.src_pitch, first);
    record.sub_y = row(s.sub_y, s.src_pitch, first);
    record.sub_v = row(s.sub_v, s.src_pitch / 2, first);
    record.sub_u = row(s.sub_u, s.src_pitch / 2, first);
    record.dst = row(s.dst, s.dst_pitch, first);
    unsigned char *const dst_v = row(s.dst, s.dst_pitch, s.height);
    record.dst_v = dst_v + std::ptrdiff_t(s.dst_pitch / 2) * (first / 2);
    record.dst_u = record.dst_v + std::ptrdiff_t(s.dst_pitch) * s.height / 4;
    record.color_key = key_colour;
    record.adjust_info = &s.info;
    return record;
}

} // namespace

void call(picture_function *function, scene &s, slicing how, slice rows) {
    // The planes of a surface are found from where its first rows are.
    tag_ajust_contrast_info info = s.info;
    info.rows_to_plane_end -= rows.first;
    const int luma_pitch = how == slicing::packed ? 2 * s.src_pitch : s.src_pitch;
    function(row(s.y, luma_pitch, rows.first), row(s.u, s.src_pitch / 2, rows.first / 2),
             row(s.v, s.src_pitch / 2, rows.first / 2), row(s.dst, s.dst_pitch, rows.first),
             s.width, rows.rows, s.src_pitch, s.dst_pitch, &info);
}

void call(mix_function *function, scene &s, slicing how, slice rows) {
    tagMIX_INFO record = mix_record(s, how, rows); // which it may consume
    function(&record);
}

void call(key_fill_function *function, scene &s, slicing, slice rows) {
    function(key_colour, row(s.dst, s.dst_pitch, rows.first), s.width, rows.rows, 0, s.dst_pitch);
}

// The surface's bytes under one value of the mask.
void call(mask_function *function, scene &s, slicing, slice rows) {
    function(row(s.dst, s.dst_pitch, rows.first), row(s.y, s.dst_pitch, rows.first), 0x80, 0xff,
             s.width, s.dst_pitch, rows.rows);
}

void call(packed_stretch_function *function, scene &s, slicing, slice) {
    function(s.y.data(), nullptr, nullptr, s.dst.data(), 2 * s.width, s.height, s.dst_pitch);
}

void call(packed_stretch_ajust_function *function, scene &s, slicing, slice) {
    function(s.y.data(), nullptr, nullptr, s.dst.data(), 2 * s.width, s.height, s.dst_pitch,
             &s.info);
}

void call(plane_stretch_function *function, scene &s, slicing, slice) {
    function(s.y.data(), s.dst.data(), s.width, s.height, s.src_pitch, s.dst_pitch);
}

void call(plane_stretch_ajust_function *function, scene &s, slicing, slice) {
    constexpr int luma = 1;
    function(s.y.data(), s.dst.data(), s.width, s.height, s.src_pitch, s.dst_pitch, &s.info, luma);
}

void call(frame_stretch_function *function, scene &s, slicing, slice) {
    tagVideoFrame frame{};
    frame.plane_y = s.y.data();
    frame.plane_u = s.u.data();
    frame.plane_v = s.v.data();
    frame.luma_pitch = s.src_pitch;
    function(&frame, 0, s.height, s.dst.data(), s.dst_pitch, &s.info);
}

} // namespace lumalane::bench
