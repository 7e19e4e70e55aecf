// What convert(), blend() and stretch() share: checks, and the passage of what is no whole step
// through a small picture on the stack. Nothing in here is called by users.
#ifndef LUMALANE_STRIP_H
#define LUMALANE_STRIP_H

#include <lumalane.h>
#include <lumalane/format.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace lumalane {
namespace detail {

// ---- Checks ------------------------------------------------------------------------------------

// The first and the last byte of a plane.
struct plane_bytes {
    std::uintptr_t first;
    std::uintptr_t last;

    plane_bytes(const const_plane &p, long long bytes_of_row, int rows) {
        const std::uintptr_t top = reinterpret_cast<std::uintptr_t>(p.data);
        const std::uintptr_t bottom =
            top + static_cast<std::uintptr_t>(static_cast<std::ptrdiff_t>(rows - 1) * p.stride);
        first = p.stride < 0 ? bottom : top;
        last = (p.stride < 0 ? top : bottom) + static_cast<std::uintptr_t>(bytes_of_row) - 1;
    }

    bool overlaps(const plane_bytes &other) const {
        return first <= other.last && other.first <= last;
    }
};

constexpr status refused(error code, const char *argument, const char *other = nullptr) {
    status s;
    s.code = code;
    s.argument = argument;
    s.other = other;
    return s;
}

inline status check_plane(const const_plane &p, long long bytes_of_row, const char *argument) {
    if (p.stride > largest_size || p.stride < -largest_size)
        return refused(error::size_too_large, argument);
    if ((p.stride < 0 ? -p.stride : p.stride) < bytes_of_row)
        return refused(error::stride_too_small, argument);
    if (!p.data)
        return refused(error::null_plane, argument);
    return {};
}

inline status check_size(int width, int height, const char *argument) {
    if (width < 1)
        return refused(error::width_too_small, argument);
    if (height < 1)
        return refused(error::height_too_small, argument);
    if (width > largest_size || height > largest_size)
        return refused(error::size_too_large, argument);
    return {};
}

inline status check_picture(const const_picture &p, const char *argument) {
    if (p.format < format::yv12 || p.format > format::rgb655)
        return refused(error::unsupported_formats, argument);
    status s = check_size(p.width, p.height, argument);
    for (int i = 0; s && i < plane_count(p.format); ++i)
        s = check_plane(p.planes[i], row_bytes(p.format, i, p.width), argument);
    return s;
}

inline plane_bytes bytes_of(const const_picture &p, int i) {
    return {p.planes[i], row_bytes(p.format, i, p.width), plane_height(p.format, i, p.height)};
}

inline bool overlap(const const_picture &a, const const_picture &b) {
    for (int i = 0; i < plane_count(a.format); ++i)
        for (int k = 0; k < plane_count(b.format); ++k)
            if (bytes_of(a, i).overlaps(bytes_of(b, k)))
                return true;
    return false;
}

// Of what is `wide` times as wide and `high` times as high.
inline status check(const const_picture &source, const const_picture &destination, int wide = 1,
                    int high = 1) {
    status s = check_picture(source, "source");
    if (s)
        s = check_picture(destination, "destination");
    if (!s)
        return s;
    if (destination.width / wide != source.width || destination.width % wide != 0 ||
        destination.height / high != source.height || destination.height % high != 0)
        return refused(error::sizes_differ, "destination");
    if (overlap(source, destination))
        return refused(error::buffers_overlap, "destination", "source");
    return {};
}

// ---- Planes as the functions have them -----------------------------------------------------------

// How the samples of planes lie.
enum class layout {
    single, // one plane
    yuv420, // Y, U, V
    yuv422, // Y, U, V; chroma of half the width on every row
    yuy2,
    rgb32,
    rgb24,
    rgb16,
};

constexpr layout layout_of(format f) {
    switch (f) {
    case format::yv12:
    case format::i420:
        return layout::yuv420;
    case format::yuy2:
        return layout::yuy2;
    case format::rgb32:
        return layout::rgb32;
    case format::rgb24:
        return layout::rgb24;
    default:
        return layout::rgb16;
    }
}

constexpr int planes_of(layout l) { return l == layout::yuv420 || l == layout::yuv422 ? 3 : 1; }

// Bytes of the first `width` pixels of a row, where `width` is even or ends at the picture's edge.
constexpr std::ptrdiff_t bytes_of_row(layout l, int plane, int width) {
    switch (l) {
    case layout::yuy2:
        return (static_cast<std::ptrdiff_t>(width) + 1) / 2 * 4;
    case layout::rgb32:
        return static_cast<std::ptrdiff_t>(width) * 4;
    case layout::rgb24:
        return static_cast<std::ptrdiff_t>(width) * 3;
    case layout::rgb16:
        return static_cast<std::ptrdiff_t>(width) * 2;
    default:
        return plane > 0 ? width / 2 + width % 2 : width;
    }
}

constexpr int rows_of(layout l, int plane, int height) {
    return l == layout::yuv420 && plane > 0 ? height / 2 + height % 2 : height;
}

// Planes of a picture: Y, U and V whatever their order was, or one.
struct view {
    unsigned char *data[3];
    int stride[3];

    // Of the same picture from an even column and row on.
    view at(layout l, int x, int y) const {
        view moved = *this;
        for (int i = 0; i < planes_of(l); ++i)
            moved.data[i] +=
                bytes_of_row(l, i, x) + static_cast<std::ptrdiff_t>(rows_of(l, i, y)) * stride[i];
        return moved;
    }

    // As pitches: U and V have half of that of Y.
    bool chroma_has_half_the_stride() const {
        const int half = stride[0] >> 1;
        return stride[1] == half && stride[2] == half;
    }
};

// The functions promise not to write what they read.
inline view view_of(const const_picture &p) {
    const int u = p.format == format::yv12 ? 2 : 1;
    const int order[3] = {0, u, 3 - u};
    view found{};
    for (int i = 0; i < plane_count(p.format); ++i) {
        found.data[i] = const_cast<unsigned char *>(p.planes[order[i]].data);
        found.stride[i] = p.planes[order[i]].stride;
    }
    return found;
}

// What a function needs to know of a surface.
inline tag_ajust_contrast_info info_of(format f) {
    tag_ajust_contrast_info info{};
    info.rgb16_layout = f == format::rgb555   ? 1
                        : f == format::rgb664 ? 2
                        : f == format::rgb655 ? 3
                                              : 0;
    return info;
}

constexpr int up(int x, int step) { return (x + step - 1) / step * step; }
constexpr int down(int x, int step) { return x / step * step; }
constexpr int least(int a, int b) { return a < b ? a : b; }
constexpr int most(int a, int b) { return a > b ? a : b; }

// ---- Strips --------------------------------------------------------------------------------------

// Columns and rows of a picture.
struct rectangle {
    int x, y, width, height;

    int right() const { return x + width; }
    int bottom() const { return y + height; }
};

// A picture on the stack of so many bytes, without gaps.
template <int bytes>
struct strip {
    alignas(64) unsigned char memory[bytes];

    view lay_out(layout l, int width, int height) {
        view laid{};
        unsigned char *next = memory;
        for (int i = 0; i < planes_of(l); ++i) {
            laid.data[i] = next;
            laid.stride[i] = static_cast<int>(bytes_of_row(l, i, width));
            next += laid.stride[i] * rows_of(l, i, height);
        }
        return laid;
    }
};

// Fills `width` pixels of a row with `known` ones and repetitions of the last.
inline void copy_row(layout l, int plane, unsigned char *to, const unsigned char *from, int known,
                     int width) {
    if (l == layout::yuy2) {
        const int whole = known / 2 * 4;
        std::memcpy(to, from, static_cast<std::size_t>(whole));
        if (known == width)
            return;
        const int odd = known % 2;
        const unsigned char *const last = odd ? from + whole : from + whole - 4;
        const unsigned char y = last[odd ? 0 : 2];
        const unsigned char pixels[4] = {y, last[1], y, last[3]};
        for (int x = whole; x < 2 * width; ++x)
            to[x] = pixels[x % 4];
        return;
    }
    const std::ptrdiff_t have = bytes_of_row(l, plane, known), want = bytes_of_row(l, plane, width);
    std::memcpy(to, from, static_cast<std::size_t>(have));
    if (have < want)
        std::memset(to + have, from[have - 1], static_cast<std::size_t>(want - have));
}

// Fills a picture of `width` x `height` with the first pixels of another one, of which there are
// `known_width` x `known_height`, and repetitions of their last column and row.
inline void copy_padded(layout l, const view &to, int width, int height, const view &from,
                        int known_width, int known_height) {
    for (int i = 0; i < planes_of(l); ++i) {
        const int rows = rows_of(l, i, height), last = rows_of(l, i, known_height) - 1;
        for (int y = 0; y < rows; ++y)
            copy_row(l, i, to.data[i] + static_cast<std::ptrdiff_t>(y) * to.stride[i],
                     from.data[i] + static_cast<std::ptrdiff_t>(least(y, last)) * from.stride[i],
                     known_width, width);
    }
}

// Copies a picture of `width` x `height`.
inline void copy(layout l, const view &to, const view &from, int width, int height) {
    for (int i = 0; i < planes_of(l); ++i) {
        const std::size_t bytes = static_cast<std::size_t>(bytes_of_row(l, i, width));
        for (int y = 0; y < rows_of(l, i, height); ++y)
            std::memcpy(to.data[i] + static_cast<std::ptrdiff_t>(y) * to.stride[i],
                        from.data[i] + static_cast<std::ptrdiff_t>(y) * from.stride[i], bytes);
    }
}

} // namespace detail
} // namespace lumalane

#endif
