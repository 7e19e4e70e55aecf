// Walks: the loops over a picture.
//
// Every walk has two forms. The stepwise one takes the fixed steps that a function promises, in
// their order, for any shape: rows that drift because the width is off the step, rows and buffers
// that overlap. The wide one takes the widest vectors and whole rows; it serves the shapes for
// which nobody can tell the difference, and never touches a byte that the steps would not.
#pragma once

#include "frame/dispatch.h"
#include "frame/sinks.h"
#include "frame/sources.h"

#include <stdint.h>

namespace lumalane::LUMALANE_LANES {

// The arguments of a picture function, in their order.
struct picture {
    unsigned char *src, *src_u, *src_v, *dst;
    int width, height, src_pitch, dst_pitch;
    tag_ajust_contrast_info *info;
};

// Counts a loop down whose body runs before the test: true while more than `step` was left.
LUMALANE_INLINE bool again(unsigned &left, unsigned step) {
    const bool more = left > step;
    left -= step;
    return more;
}

// 32-bit arithmetic that wraps.
LUMALANE_INLINE int difference(unsigned a, unsigned b) { return static_cast<int>(a - b); }

LUMALANE_INLINE int twice(int a) { return static_cast<int>(2u * static_cast<unsigned>(a)); }

LUMALANE_INLINE int product(int a, int b) {
    return static_cast<int>(static_cast<unsigned>(a) * static_cast<unsigned>(b));
}

// ---- Which memory rows lie in ------------------------------------------------------------------

struct extent {
    long long begin, end; // addresses
};

LUMALANE_INLINE extent rows_at(const unsigned char *first, long long rows, long long pitch,
                               long long row_bytes) {
    const long long base = static_cast<long long>(reinterpret_cast<uintptr_t>(first));
    const long long last = base + (rows - 1) * pitch;
    return {base < last ? base : last, (base < last ? last : base) + row_bytes};
}

LUMALANE_INLINE bool apart(extent a, extent b) { return a.end <= b.begin || b.end <= a.begin; }

LUMALANE_INLINE extent joined(extent a, extent b) {
    return {a.begin < b.begin ? a.begin : b.begin, a.end > b.end ? a.end : b.end};
}

// Rows of at least row_bytes each, pitch apart, have no byte in common.
LUMALANE_INLINE bool rows_apart(long long pitch, long long row_bytes) {
    return pitch >= row_bytes || -pitch >= row_bytes;
}

// Whether `bytes` of output in rows at `dst` are better written around the cache. They are from a
// third of the last level on: what is read needs its place too, and other processes have theirs.
// (Measured with 32 MiB: at 8 MB of output cached stores are as fast, from 16 MB on streamed ones
// are 1.2 to 1.6 times as fast.) The stores must align.
LUMALANE_INLINE bool outgrows_cache(const unsigned char *dst, int pitch, long long bytes) {
    const unsigned cache = last_level_cache_bytes();
    return cache != 0 && bytes > cache / 3 &&
           (reinterpret_cast<uintptr_t>(dst) | static_cast<unsigned>(pitch)) % widest == 0;
}

// Runs `run(Put{})`, streaming what outgrows the cache.
template <class Run>
LUMALANE_INLINE void with_put(const unsigned char *dst, int pitch, long long bytes, Run run) {
    if (outgrows_cache(dst, pitch, bytes)) {
        run(streamed{});
        stream_fence();
    } else {
        run(cached{});
    }
}

// The same for walks that have both forms.
template <class Run>
LUMALANE_INLINE void with_put_if(bool regular, const unsigned char *dst, int pitch, long long bytes,
                                 Run run) {
    if (regular)
        with_put(dst, pitch, bytes, run);
    else
        run(stepwise{});
}

// ---- Along a row -------------------------------------------------------------------------------

template <int n>
struct pixels_of {
    static constexpr int count = n;
};

// Calls `step(pixels_of<n>{}, x)` for the groups of a row, the widest that there are for `count`
// pixels, a multiple of 16.
template <class Step>
LUMALANE_INLINE void along_row(ptrdiff_t count, const Step &step) {
    ptrdiff_t x = 0;
    for (; x + widest <= count; x += widest)
        step(pixels_of<widest>{}, x);
    if (widest > 16 && x < count)
        step(pixels_of<16>{}, x);
}

// Calls `step(x)` for the steps of 16 pixels of a row, at least one and past the row's end if need
// be. Returns how far they came.
template <class Step>
LUMALANE_INLINE ptrdiff_t along_row_stepwise(int width, const Step &step) {
    ptrdiff_t x = 0;
    unsigned left = static_cast<unsigned>(width);
    do {
        step(x);
        x += 16;
    } while (again(left, 16));
    return x;
}

// ---- Rows of single bytes ----------------------------------------------------------------------

// Calls `step(pixels_of<n>{}, x)` with the widest n there are for `count` samples, a multiple of 8.
template <class Step>
LUMALANE_INLINE void along_plane(ptrdiff_t count, const Step &step) {
    ptrdiff_t x = 0;
    for (; x + widest <= count; x += widest)
        step(pixels_of<widest>{}, x);
    if (widest > 16 && x + 16 <= count) {
        step(pixels_of<16>{}, x);
        x += 16;
    }
    if (x < count)
        step(pixels_of<8>{}, x);
}

// `map` of every byte of a row, 8 or more at a time. The count is a multiple of 8.
template <class Put, class Map>
LUMALANE_INLINE void map_row(unsigned char *to, const unsigned char *from, ptrdiff_t count,
                             const Map &map) {
    along_plane(count, [&](auto n, ptrdiff_t x) LUMALANE_INLINE_LAMBDA {
        Put::put(to + x, map(load<n.count>(from + x)));
    });
}

// ---- Row pairs of planar 4:2:0 -----------------------------------------------------------------

// One step: `pixels` pixels of two rows and the chroma samples that they share.
template <int pixels, class Put, class Pipe>
LUMALANE_INLINE void row_pair_step(const Pipe &pipe, const unsigned char *y, const unsigned char *u,
                                   const unsigned char *v, unsigned char *dst, ptrdiff_t src_pitch,
                                   ptrdiff_t dst_pitch) {
    const auto shared = pipe.template shared<pixels>(u, v);
    pipe.template row<pixels, Put>(dst, y, shared);
    pipe.template lower_row<pixels, Put>(dst + dst_pitch, y + src_pitch, shared);
}

// Both rows of a pair step by step.
template <class Pipe>
LUMALANE_INLINE void row_pairs_stepwise(const picture &p, const Pipe &pipe) {
    constexpr int step = 16, size = Pipe::bytes_per_pixel();
    const int y_rest = difference(twice(p.src_pitch), p.width);
    const int chroma_rest = difference(p.src_pitch, p.width) >> 1;
    const int dst_rest = difference(twice(p.dst_pitch), product(p.width, size));
    const unsigned char *y = p.src, *u = p.src_u, *v = p.src_v;
    unsigned char *dst = p.dst;
    unsigned rows = static_cast<unsigned>(p.height);
    do {
        unsigned columns = static_cast<unsigned>(p.width);
        do {
            row_pair_step<step, cached>(pipe, y, u, v, dst, p.src_pitch, p.dst_pitch);
            y += step, u += step / 2, v += step / 2, dst += step * size;
        } while (again(columns, step));
        y += y_rest, u += chroma_rest, v += chroma_rest, dst += dst_rest;
    } while (again(rows, 2));
}

// The upper row of a pair, then the lower one, for which the chroma pointers go back by the width:
// with a width off the step every row starts further right, not every pair.
template <class Pipe>
LUMALANE_INLINE void rows_in_pairs_stepwise(const picture &p, const Pipe &pipe) {
    constexpr int step = 16, size = Pipe::bytes_per_pixel();
    const int y_rest = difference(p.src_pitch, p.width);
    const int dst_rest = difference(p.dst_pitch, product(p.width, size));
    const unsigned char *y = p.src, *u = p.src_u, *v = p.src_v;
    unsigned char *dst = p.dst;
    unsigned rows = static_cast<unsigned>(p.height);
    do {
        const int chroma_rests[] = {-(p.width >> 1), y_rest >> 1};
        for (const int chroma_rest : chroma_rests) {
            unsigned columns = static_cast<unsigned>(p.width);
            do {
                const auto shared = pipe.template shared<step>(u, v);
                pipe.template row<step, cached>(dst, y, shared);
                y += step, u += step / 2, v += step / 2, dst += step * size;
            } while (again(columns, step));
            y += y_rest, u += chroma_rest, v += chroma_rest, dst += dst_rest;
        }
    } while (again(rows, 2));
}

// Both rows of a pair, side by side or one after the other.
template <class Put, class Pipe>
LUMALANE_INLINE void row_pair_wide(const Pipe &pipe, const unsigned char *y, const unsigned char *u,
                                   const unsigned char *v, unsigned char *dst, int width,
                                   ptrdiff_t src_pitch, ptrdiff_t dst_pitch) {
    constexpr int size = Pipe::bytes_per_pixel();
    if constexpr (!Pipe::writes_whole_lines() || Put::fills_lines_in_turn) {
        along_row(width, [&](auto n, ptrdiff_t x) LUMALANE_INLINE_LAMBDA {
            pipe.template row<n.count, Put>(dst + x * size, y + x,
                                            pipe.template shared<n.count>(u + x / 2, v + x / 2));
        });
        along_row(width, [&](auto n, ptrdiff_t x) LUMALANE_INLINE_LAMBDA {
            pipe.template lower_row<n.count, Put>(
                dst + dst_pitch + x * size, y + src_pitch + x,
                pipe.template shared<n.count>(u + x / 2, v + x / 2));
        });
    } else {
        along_row(width, [&](auto n, ptrdiff_t x) LUMALANE_INLINE_LAMBDA {
            row_pair_step<n.count, Put>(pipe, y + x, u + x / 2, v + x / 2, dst + x * size,
                                        src_pitch, dst_pitch);
        });
    }
}

// From the chroma row of a pair to the next one, for an even width.
LUMALANE_INLINE ptrdiff_t chroma_pitch_of(const picture &p) {
    return (difference(p.src_pitch, p.width) >> 1) + p.width / 2;
}

template <class Put, class Pipe>
LUMALANE_INLINE void row_pairs_wide(const picture &p, const Pipe &pipe) {
    const ptrdiff_t src_pitch = p.src_pitch, dst_pitch = p.dst_pitch;
    const ptrdiff_t chroma_pitch = chroma_pitch_of(p);
    const unsigned char *y = p.src, *u = p.src_u, *v = p.src_v;
    unsigned char *dst = p.dst;
    for (int rows = p.height; rows > 0; rows -= 2) {
        row_pair_wide<Put>(pipe, y, u, v, dst, p.width, src_pitch, dst_pitch);
        y += 2 * src_pitch, u += chroma_pitch, v += chroma_pitch, dst += 2 * dst_pitch;
    }
}

// True where the wide walk over row pairs cannot be told from the stepwise ones: no step goes past
// a row's end, so no row drifts; no two destination rows overlap, so the order of the stores does
// not show; and nothing is read back that was written.
LUMALANE_INLINE bool row_pairs_are_regular(const picture &p, long long row_bytes) {
    if (p.width <= 0 || p.width % 16 != 0 || p.height <= 0 || p.height % 2 != 0 ||
        !rows_apart(p.dst_pitch, row_bytes))
        return false;
    const extent dst = rows_at(p.dst, p.height, p.dst_pitch, row_bytes);
    const ptrdiff_t chroma_pitch = chroma_pitch_of(p);
    return apart(dst, rows_at(p.src, p.height, p.src_pitch, p.width)) &&
           apart(dst, rows_at(p.src_u, p.height / 2, chroma_pitch, p.width / 2)) &&
           apart(dst, rows_at(p.src_v, p.height / 2, chroma_pitch, p.width / 2));
}

// False, and nothing done, for a picture that is not regular.
template <class Pipe>
LUMALANE_INLINE bool row_pairs_wide_if_regular(const picture &p, const Pipe &pipe) {
    const long long row_bytes = static_cast<long long>(p.width) * Pipe::bytes_per_pixel();
    if (!row_pairs_are_regular(p, row_bytes))
        return false;
    if constexpr (Pipe::writes_whole_lines())
        with_put(p.dst, p.dst_pitch, p.height * row_bytes,
                 [&](auto put) LUMALANE_INLINE_LAMBDA { row_pairs_wide<decltype(put)>(p, pipe); });
    else
        row_pairs_wide<cached>(p, pipe);
    return true;
}

// The picture through `pipe` in steps of 16 pixels of both rows of a pair.
template <class Pipe>
LUMALANE_INLINE void row_pairs(const picture &p, const Pipe &pipe) {
    if (!row_pairs_wide_if_regular(p, pipe))
        row_pairs_stepwise(p, pipe);
}

// The picture through `pipe` in steps of 16 pixels, one row of a pair after the other.
template <class Pipe>
LUMALANE_INLINE void rows_in_pairs(const picture &p, const Pipe &pipe) {
    if (!row_pairs_wide_if_regular(p, pipe))
        rows_in_pairs_stepwise(p, pipe);
}

// ---- Row pairs of packed pictures --------------------------------------------------------------

template <int pixels, class Put, class Pipe>
LUMALANE_INLINE void packed_step(const Pipe &pipe, const unsigned char *src, unsigned char *dst,
                                 ptrdiff_t src_bytes, ptrdiff_t dst_pitch) {
    const auto upper = pipe.template fetch<pixels>(src);
    const auto shared = pipe.template shared<pixels>(upper);
    pipe.template row<pixels, Put>(dst, upper, shared);
    pipe.template row<pixels, Put>(dst + dst_pitch, pipe.template fetch<pixels>(src + src_bytes),
                                   shared);
}

template <int step, class Pipe>
LUMALANE_INLINE void packed_row_pairs_stepwise(const picture &p, const Pipe &pipe) {
    constexpr int size = Pipe::bytes_per_pixel();
    const int row_bytes = twice(p.width), src_bytes = twice(p.src_pitch);
    // How far the last step goes past the row's end, from where the pointers are pulled back.
    const int past = (row_bytes & -2 * step) - row_bytes + 2 * step;
    const bool pulled_back = past != 2 * step;
    const int src_rest = difference(twice(src_bytes), row_bytes) - (pulled_back ? past : 0);
    const int dst_rest = difference(twice(p.dst_pitch), product(p.width, size)) -
                         (pulled_back ? past * size / 2 : 0);
    const unsigned char *src = p.src;
    unsigned char *dst = p.dst;
    unsigned rows = static_cast<unsigned>(p.height);
    do {
        unsigned columns = static_cast<unsigned>(row_bytes);
        do {
            packed_step<step, cached>(pipe, src, dst, src_bytes, p.dst_pitch);
            src += 2 * step, dst += step * size;
        } while (again(columns, 2 * step));
        src += src_rest, dst += dst_rest;
    } while (again(rows, 2));
}

// The wide steps of a pair of rows; returns how far they came. The next step's samples are fetched
// before this one's pixels are put: the processor's window is too short to reach them by itself.
template <int pixels, class Put, class Pipe>
LUMALANE_INLINE ptrdiff_t packed_steps_ahead(const Pipe &pipe, const unsigned char *src,
                                             unsigned char *dst, ptrdiff_t width,
                                             ptrdiff_t src_bytes, ptrdiff_t dst_pitch) {
    if (width < pixels)
        return 0;
    auto upper = pipe.template fetch<pixels>(src);
    auto lower = pipe.template fetch<pixels>(src + src_bytes);
    ptrdiff_t x = 0;
    const auto put = [&](const auto &row, ptrdiff_t offset,
                         const auto &shared) LUMALANE_INLINE_LAMBDA {
        pipe.template row<pixels, Put>(dst + x * Pipe::bytes_per_pixel() + offset, row, shared);
    };
    for (; x + 2 * pixels <= width; x += pixels) {
        const auto shared = pipe.template shared<pixels>(upper);
        const unsigned char *const next = src + 2 * (x + pixels);
        const auto next_upper = pipe.template fetch<pixels>(next);
        put(upper, 0, shared);
        const auto next_lower = pipe.template fetch<pixels>(next + src_bytes);
        put(lower, dst_pitch, shared);
        upper = next_upper, lower = next_lower;
    }
    const auto shared = pipe.template shared<pixels>(upper);
    put(upper, 0, shared);
    put(lower, dst_pitch, shared);
    return x + pixels;
}

// The wide steps of one row of a pair, whose chroma is at `upper`.
template <int pixels, class Put, class Pipe>
LUMALANE_INLINE ptrdiff_t packed_row_steps(const Pipe &pipe, const unsigned char *upper,
                                           const unsigned char *src, unsigned char *dst,
                                           ptrdiff_t width) {
    ptrdiff_t x = 0;
    for (; x + pixels <= width; x += pixels)
        pipe.template row<pixels, Put>(
            dst + x * Pipe::bytes_per_pixel(), pipe.template fetch<pixels>(src + 2 * x),
            pipe.template shared<pixels>(pipe.template fetch<pixels>(upper + 2 * x)));
    return x;
}

template <int step, class Put, class Pipe>
LUMALANE_INLINE void packed_row_pairs_wide(const picture &p, const Pipe &pipe) {
    constexpr int size = Pipe::bytes_per_pixel(), wide = step * (widest / 16);
    const ptrdiff_t width = p.width, dst_pitch = p.dst_pitch;
    const ptrdiff_t src_bytes = 2 * static_cast<ptrdiff_t>(p.src_pitch);
    const unsigned char *src = p.src;
    unsigned char *dst = p.dst;
    for (int rows = p.height; rows > 0; rows -= 2) {
        ptrdiff_t x;
        if constexpr (Put::fills_lines_in_turn) {
            packed_row_steps<wide, Put>(pipe, src, src, dst, width);
            x = packed_row_steps<wide, Put>(pipe, src, src + src_bytes, dst + dst_pitch, width);
        } else {
            x = packed_steps_ahead<wide, Put>(pipe, src, dst, width, src_bytes, dst_pitch);
        }
        for (; x < width; x += step)
            packed_step<step, cached>(pipe, src + 2 * x, dst + x * size, src_bytes, dst_pitch);
        src += 2 * src_bytes, dst += 2 * dst_pitch;
    }
}

// A packed YUY2 picture through `pipe`, two rows at a time, in steps of `step` pixels; src_pitch is
// in pixels. Widths off the step do not drift here: each pair of rows starts where it should.
template <int step, class Pipe>
LUMALANE_INLINE void packed_row_pairs(const picture &p, const Pipe &pipe) {
    // Nobody can tell the wide form where the rows, with what the last step writes past their ends,
    // do not overlap and nothing is read back that was written.
    const long long columns = (static_cast<long long>(p.width) + step - 1) / step * step;
    const long long rows = (static_cast<long long>(p.height) + 1) / 2 * 2;
    const long long row_bytes = columns * Pipe::bytes_per_pixel();
    if (p.width <= 0 || p.height <= 0 || !rows_apart(p.dst_pitch, row_bytes) ||
        !apart(rows_at(p.dst, rows, p.dst_pitch, row_bytes),
               rows_at(p.src, rows, 2LL * p.src_pitch, 2 * columns)))
        return packed_row_pairs_stepwise<step>(p, pipe);
    with_put(p.dst, p.dst_pitch, rows * row_bytes, [&](auto put) LUMALANE_INLINE_LAMBDA {
        packed_row_pairs_wide<step, decltype(put)>(p, pipe);
    });
}

} // namespace lumalane::LUMALANE_LANES
