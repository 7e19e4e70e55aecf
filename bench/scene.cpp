#include "bench/scene.h"

#include <algorithm>
#include <istream>
#include <new>
#include <ostream>
#include <random>

namespace lumalane::bench {
namespace {

constexpr std::size_t cache_line = 64;

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

buffer::buffer(std::size_t bytes) : memory_(allocate(bytes), &std::free) {
    std::generate_n(memory_.get(), bytes, std::mt19937(bytes));
}

std::ostream &operator<<(std::ostream &out, size picture) {
    return out << picture.width << 'x' << picture.height;
}

std::istream &operator>>(std::istream &in, size &picture) {
    char times = 0;
    in >> picture.width >> times >> picture.height;
    if (times != 'x' || picture.width <= 0 || picture.height <= 0)
        in.setstate(std::ios::failbit);
    return in;
}

scene::scene(size picture, int dst_pitch_per_pixel)
    : width(picture.width), height(picture.height), src_pitch(width),
      dst_pitch(width * dst_pitch_per_pixel), y(2 * pixels_with_room(picture)),
      u(pixels_with_room(picture)), v(pixels_with_room(picture)),
      dst(std::max(2, dst_pitch_per_pixel) * pixels_with_room(picture)), info() {
    info.surface_height = height;
    info.rows_to_plane_end = height;
}

void call(picture_function *function, scene &scene) {
    function(scene.y.data(), scene.u.data(), scene.v.data(), scene.dst.data(), scene.width,
             scene.height, scene.src_pitch, scene.dst_pitch, &scene.info);
}

} // namespace lumalane::bench
