// Pictures of the companion's tests: as rows without gaps, made larger, and between unmapped pages.
#pragma once

#include <lumalane/picture.h>

#include "tests/differential/guarded_region.h"
#include "tests/proofs.h"

#include <algorithm>
#include <array>
#include <ostream>
#include <random>
#include <string>
#include <vector>

namespace companion {

using bytes = std::vector<unsigned char>;

// Where another build has seen all cases.
inline const bool few = tests::wanted_proofs() == tests::proofs::some;

constexpr lumalane::format formats[] = {
    lumalane::format::yv12,   lumalane::format::i420,   lumalane::format::yuy2,
    lumalane::format::rgb32,  lumalane::format::rgb24,  lumalane::format::rgb565,
    lumalane::format::rgb555, lumalane::format::rgb664, lumalane::format::rgb655,
};

inline const char *name_of(lumalane::format f) {
    constexpr const char *names[] = {"yv12",   "i420",   "yuy2",   "rgb32", "rgb24",
                                     "rgb565", "rgb555", "rgb664", "rgb655"};
    return names[static_cast<int>(f)];
}

// Planes in the order Y, U, V, whatever the format's order is, or one packed plane; rows follow each
// other without gaps.
struct rows_of_pixels {
    lumalane::format format;
    int width, height;
    std::array<bytes, 3> planes;

    rows_of_pixels(lumalane::format f, int w, int h) : format(f), width(w), height(h) {
        for (int i = 0; i < lumalane::plane_count(f); ++i)
            planes[i].resize(row_bytes(i) * lumalane::plane_height(f, i, h));
    }

    std::size_t row_bytes(int plane) const { return lumalane::row_bytes(format, plane, width); }
    bool operator==(const rows_of_pixels &other) const { return planes == other.planes; }
};

template <class Random>
void fill(bytes &plane, Random &random) {
    for (unsigned char &byte : plane)
        byte = static_cast<unsigned char>(random());
}

template <class Random>
rows_of_pixels random_pixels(lumalane::format f, int width, int height, Random &random) {
    rows_of_pixels made(f, width, height);
    for (bytes &plane : made.planes)
        fill(plane, random);
    return made;
}

// Cuts the upper left corner out, or repeats the last column and row. The second luma of the last
// YUY2 pair of an odd width is no pixel: when it is wanted, it repeats the first.
inline rows_of_pixels resized(const rows_of_pixels &from, int width, int height) {
    rows_of_pixels made(from.format, width, height);
    for (int i = 0; i < lumalane::plane_count(from.format); ++i) {
        const int rows = lumalane::plane_height(from.format, i, height);
        const int last_row = lumalane::plane_height(from.format, i, from.height) - 1;
        const bool yuy2 = from.format == lumalane::format::yuy2;
        const int columns = lumalane::plane_width(from.format, i, width);
        const int last_column = lumalane::plane_width(from.format, i, from.width) - 1;
        const std::size_t unit = made.row_bytes(i) / ((columns + yuy2) / (1 + yuy2)) / (1 + yuy2);
        for (int y = 0; y < rows; ++y) {
            const unsigned char *row = &from.planes[i][std::min(y, last_row) * from.row_bytes(i)];
            unsigned char *to = &made.planes[i][y * made.row_bytes(i)];
            if (!yuy2) {
                for (int x = 0; x < columns; ++x)
                    std::copy_n(row + std::min(x, last_column) * unit, unit, to + x * unit);
                continue;
            }
            for (int x = 0; x < columns + columns % 2; ++x) {
                const int known = std::min(x, last_column);
                to[2 * x] = row[2 * known];
                to[2 * x + 1] = row[4 * (known / 2) + (x % 2 == 0 ? 1 : 3)];
            }
        }
    }
    return made;
}

// How a picture lies in memory: bytes between rows, whether the first row is the lowest one, whether
// it ends where the mapped memory does or begins there, how many bytes more are between rows of its
// last plane, and whether chroma has the stride of luma instead.
struct placement {
    int gap;
    bool bottom_up;
    bool at_end;
    int gap_of_last = 0;
    bool one_stride = false;
};

inline std::ostream &operator<<(std::ostream &out, const placement &p) {
    return out << "gap " << p.gap << (p.bottom_up ? ", bottom up" : ", top down")
               << (p.at_end ? ", at the end" : ", at the beginning") << ", " << p.gap_of_last
               << " more of the last plane" << (p.one_stride ? ", one stride" : "");
}

// Memory for the planes of a picture, each between unmapped pages.
class guarded_planes {
public:
    static constexpr unsigned char mark = 0xa5;

    // Lays the picture out and marks what is around it, gaps included.
    lumalane::picture lay_out(lumalane::format f, int width, int height, placement where) {
        lumalane::picture made{f, width, height, {}};
        for (int i = 0; i < lumalane::plane_count(f); ++i) {
            const int row = static_cast<int>(lumalane::row_bytes(f, i, width));
            placement at = where;
            if (where.one_stride && i > 0)
                at.gap += static_cast<int>(lumalane::row_bytes(f, 0, width)) - row;
            at.gap += i == 2 ? where.gap_of_last : 0;
            made.planes[i] = lay_out_plane(i, row, lumalane::plane_height(f, i, height), at);
        }
        return made;
    }

    lumalane::plane lay_out_plane(int i, int row_bytes, int rows, placement where) {
        const int stride = row_bytes + where.gap;
        const std::size_t size = std::size_t(rows - 1) * stride + row_bytes;
        if (size > differential::guarded_region::size)
            throw std::bad_alloc();
        auto *first = reinterpret_cast<unsigned char *>(where.at_end ? regions[i].end() - size
                                                                     : regions[i].begin());
        used[i] = {first, size};
        std::fill_n(first, size, mark);
        return where.bottom_up ? lumalane::plane{first + std::ptrdiff_t(rows - 1) * stride, -stride}
                               : lumalane::plane{first, stride};
    }

    // All bytes of the planes, gaps included.
    bytes content() const {
        bytes all;
        for (const auto &[first, size] : used)
            all.insert(all.end(), first, first + size);
        return all;
    }

private:
    struct span {
        unsigned char *first;
        std::size_t size;
    };
    std::array<differential::guarded_region, 4> regions;
    std::array<span, 4> used{};
};

// Where the plane of a format's order is in Y, U, V.
inline int plane_in_yuv(lumalane::format f, int plane) {
    return f == lumalane::format::yv12 && plane > 0 ? 3 - plane : plane;
}

inline void store(const rows_of_pixels &pixels, const lumalane::picture &to) {
    for (int i = 0; i < lumalane::plane_count(to.format); ++i) {
        const int k = plane_in_yuv(to.format, i);
        const std::size_t row = pixels.row_bytes(k);
        for (int y = 0; y < lumalane::plane_height(to.format, i, to.height); ++y)
            std::copy_n(&pixels.planes[k][y * row], row,
                        to.planes[i].data + std::ptrdiff_t(y) * to.planes[i].stride);
    }
}

// Its pixels.
inline rows_of_pixels load(const lumalane::picture &from) {
    rows_of_pixels pixels(from.format, from.width, from.height);
    for (int i = 0; i < lumalane::plane_count(from.format); ++i) {
        const int k = plane_in_yuv(from.format, i);
        const std::size_t row = pixels.row_bytes(k);
        for (int y = 0; y < lumalane::plane_height(from.format, i, from.height); ++y)
            std::copy_n(from.planes[i].data + std::ptrdiff_t(y) * from.planes[i].stride, row,
                        &pixels.planes[k][y * row]);
    }
    return pixels;
}

// Whether between its rows everything is marked as lay_out() left it.
inline bool gaps_are_untouched(const lumalane::picture &p) {
    for (int i = 0; i < lumalane::plane_count(p.format); ++i) {
        const std::ptrdiff_t row = lumalane::row_bytes(p.format, i, p.width);
        const int rows = lumalane::plane_height(p.format, i, p.height);
        const std::ptrdiff_t stride = p.planes[i].stride, gap = std::abs(stride) - row;
        // Gaps are behind each row but the one that is highest in memory.
        for (int y = stride < 0 ? 1 : 0; y < (stride < 0 ? rows : rows - 1); ++y) {
            const unsigned char *end = p.planes[i].data + y * stride + row;
            if (!std::all_of(end, end + gap,
                             [](unsigned char b) { return b == guarded_planes::mark; }))
                return false;
        }
    }
    return true;
}

} // namespace companion
