// Rows between rows: a picture of twice the height, a pair of source rows at a time.
//
// Of the rows of a pair, with the chroma row that they share, and of the row below each come four:
//
//     row 0   the upper row
//     row 1   what lies between it and the lower row
//     row 2   the lower row, with what lies between the chroma row and the next one
//     row 3   what lies between the lower row and the next pair, with the same chroma
#pragma once

#include "frame/adjust.h"
#include "frame/walks.h"

namespace lumalane::LUMALANE_LANES {

// ---- Samples of two rows -----------------------------------------------------------------------

// The chroma of n pixels as it lies in its planes: U in the lower half, V in the upper one.
template <int n>
struct chroma_halves {
    bytes<n> uv;
};

template <int n>
LUMALANE_INLINE chroma_halves<n> average(chroma_halves<n> a, chroma_halves<n> b) {
    return {average(a.uv, b.uv)};
}

// The ways from rows to a new one. `row(k)` is a group of samples of the row k rows below.

struct the_row_itself {
    template <class Row>
    LUMALANE_INLINE auto operator()(const Row &row) const {
        return row(0);
    }
};

struct average_below {
    template <class Row>
    LUMALANE_INLINE auto operator()(const Row &row) const {
        return average(row(0), row(1));
    }
};

// (5 b + 5 c - a - d) / 8 of four rows in a column; deliberately without a rounding term.
struct four_taps {
    template <class Row>
    LUMALANE_INLINE auto operator()(const Row &row) const {
        return of(row(-1), row(0), row(1), row(2));
    }

private:
    template <int n>
    LUMALANE_INLINE static bytes<n> of(bytes<n> a, bytes<n> b, bytes<n> c, bytes<n> d) {
        const auto eighths = [](auto inner, auto outer) {
            return shift_right_arithmetic<3>(subtract(inner, outer));
        };
        return narrow_saturate(eighths(weighted_low<5, 5>(b, c), weighted_low<1, 1>(a, d)),
                               eighths(weighted_high<5, 5>(b, c), weighted_high<1, 1>(a, d)));
    }

    template <int n>
    LUMALANE_INLINE static chroma_halves<n> of(chroma_halves<n> a, chroma_halves<n> b,
                                               chroma_halves<n> c, chroma_halves<n> d) {
        return {of(a.uv, b.uv, c.uv, d.uv)};
    }
};

// How rows 1 and 3 come by their luma, and rows 2 and 3 by their chroma.
template <class Upper, class Lower, class Chroma>
struct pair_of {
    Upper upper;
    Lower lower;
    Chroma chroma;
};

// Pairs whose new rows all come about in one way.
template <class Way>
using pair_by = pair_of<Way, Way, Way>;

// The last pair has no rows below it. Deliberately its last row is the one above it once more.
template <class Way>
using last_pair_by = pair_of<Way, the_row_itself, the_row_itself>;

// ---- A group of pixels -------------------------------------------------------------------------

// Where a group starts: pointers into the planes, and the distances to the rows below.
struct rows_at_hand {
    const unsigned char *y, *u, *v;
    ptrdiff_t y_pitch, chroma_pitch;

    LUMALANE_INLINE rows_at_hand after(ptrdiff_t pixels) const {
        return {y + pixels, u + pixels / 2, v + pixels / 2, y_pitch, chroma_pitch};
    }

    LUMALANE_INLINE rows_at_hand next_pair() const {
        return {y + 2 * y_pitch, u + chroma_pitch, v + chroma_pitch, y_pitch, chroma_pitch};
    }
};

// A picture on its way to twice its height: `source` has the samples that new rows are made of,
// `sink` is a pipeline from samples to the surface.
template <class Source, class Sink>
struct stretch {
    Source source;
    Sink sink;

    template <int pixels>
    LUMALANE_INLINE auto luma(const rows_at_hand &at, int first_row = 0) const {
        return [&, first_row](int row, ptrdiff_t offset = 0) {
            return source.template load_luma<Sink::parts(), pixels>(
                at.y + (first_row + row) * at.y_pitch + offset, 0);
        };
    }

    template <int pixels>
    LUMALANE_INLINE auto chroma(const rows_at_hand &at) const {
        return [&](int row, ptrdiff_t offset = 0) {
            const ptrdiff_t below = row * at.chroma_pitch + offset;
            return source.template load_chroma<Sink::parts(), pixels>(at.u + below, at.v + below);
        };
    }

    // One row of the surface.
    template <int pixels, class Luma, class Chroma>
    LUMALANE_INLINE void row(unsigned char *to, const rows_at_hand &at, Luma luma_by,
                             Chroma chroma_by) const {
        const auto shared = sink.template shared<pixels>(chroma_by(chroma<pixels>(at)));
        sink.template row<pixels, cached>(to, luma_by(luma<pixels>(at)), shared);
    }

    // All four rows.
    template <int pixels, class Put, class Pair>
    LUMALANE_INLINE void pair(unsigned char *to, ptrdiff_t dst_pitch, const rows_at_hand &at,
                              const Pair &by) const {
        const auto upper = luma<pixels>(at, 0), lower = luma<pixels>(at, 1);
        const auto row_0 = the_row_itself{}(upper), row_1 = by.upper(upper);
        const auto row_2 = the_row_itself{}(lower), row_3 = by.lower(lower);
        const auto own = the_row_itself{}(chroma<pixels>(at)),
                   between = by.chroma(chroma<pixels>(at));
        const auto upper_chroma = sink.template shared<pixels>(own);
        sink.template row<pixels, Put>(to, row_0, upper_chroma);
        sink.template row<pixels, Put>(to + dst_pitch, row_1, upper_chroma);
        const auto lower_chroma = sink.template shared<pixels>(between);
        sink.template row<pixels, Put>(to + 2 * dst_pitch, row_2, lower_chroma);
        sink.template row<pixels, Put>(to + 3 * dst_pitch, row_3, lower_chroma);
    }

    // All four rows of the pixels from `first` to `last`, which are multiples of 16.
    template <class Put, class Pair>
    LUMALANE_INLINE void pair_wide(unsigned char *to, ptrdiff_t dst_pitch, const rows_at_hand at,
                                   ptrdiff_t first, ptrdiff_t last, const Pair &by) const {
        constexpr int size = Sink::bytes_per_pixel();
        const stretch local = *this; // which no store can change
        along_row(last - first, [&](auto n, ptrdiff_t offset) LUMALANE_INLINE_LAMBDA {
            const ptrdiff_t x = first + offset;
            local.template pair<n.count, Put>(to + x * size, dst_pitch, at.after(x), by);
        });
    }
};

template <class Source, class Sink>
stretch(Source, Sink) -> stretch<Source, Sink>;

// ---- On the way to YUY2 ------------------------------------------------------------------------

// Planes as they lie in memory.
struct undealt_planes {
    template <int, int pixels>
    LUMALANE_INLINE bytes<pixels> load_luma(const unsigned char *y, int) const {
        return load<pixels>(y);
    }

    template <int, int pixels>
    LUMALANE_INLINE chroma_halves<pixels> load_chroma(const unsigned char *u,
                                                      const unsigned char *v) const {
        return {load_halves<pixels>(u, v)};
    }
};

// A source for sinks: rows made of those.
struct made_rows {
    static constexpr bool is_part = true;

    template <int parts, int pixels>
    LUMALANE_INLINE chroma_pairs<pixels> load_chroma(chroma_halves<pixels> made) const {
        return {deal_halves<parts>(made.uv)};
    }

    template <int parts, int pixels, class Shared>
    LUMALANE_INLINE bytes<pixels> load_luma(bytes<pixels> made, const Shared &) const {
        return dealt<parts>(made);
    }
};

// ---- Pictures ----------------------------------------------------------------------------------

// True where the rows of a picture of twice the height can be written in any order: no step goes
// past a row's end, the rows on the surface do not overlap, the way back to the top of a strip fits
// 32 bits, and nothing is read back that was written. The source's pitch is even, so that it is
// twice that of its chroma.
LUMALANE_INLINE bool stretch_is_regular(const picture &p, long long row_bytes) {
    if (p.width <= 0 || p.width % 16 != 0 || p.height <= 0 || p.height % 2 != 0 ||
        p.src_pitch <= 0 || p.src_pitch % 2 != 0 || !rows_apart(p.dst_pitch, row_bytes))
        return false;
    const long long rows = p.height, dst_bytes = 2 * rows * p.dst_pitch;
    if (dst_bytes != product(twice(p.height), p.dst_pitch) ||
        rows * p.src_pitch != product(p.height, p.src_pitch))
        return false;
    const extent dst = rows_at(p.dst, 2 * rows, p.dst_pitch, row_bytes);
    return apart(dst, rows_at(p.src, rows, p.src_pitch, p.width)) &&
           apart(dst, rows_at(p.src_u, rows / 2, p.src_pitch / 2, p.width / 2)) &&
           apart(dst, rows_at(p.src_v, rows / 2, p.src_pitch / 2, p.width / 2));
}

LUMALANE_INLINE rows_at_hand rows_of(const picture &p) {
    return {p.src, p.src_u, p.src_v, p.src_pitch, p.src_pitch / 2};
}

// The pairs of a picture from the top to the bottom: run(pair_of<...>{}) for each.
struct pairs_by_averages {
    template <class Run>
    LUMALANE_INLINE void operator()(int height, Run run) const {
        int left = height - 2;
        do {
            run(pair_by<average_below>{});
            left -= 2;
        } while (left > 0);
        run(last_pair_by<average_below>{});
    }
};

// The pairs of a regular picture.
template <class Stretch, class Pairs>
LUMALANE_INLINE void pairs_wide(const picture &p, long long row_bytes, const Stretch &stretched,
                                Pairs pairs) {
    with_put(p.dst, p.dst_pitch, 2 * p.height * row_bytes, [&](auto put) {
        rows_at_hand at = rows_of(p);
        unsigned char *to = p.dst;
        pairs(p.height, [&](const auto &by) {
            stretched.template pair_wide<decltype(put)>(to, p.dst_pitch, at, 0, p.width, by);
            at = at.next_pair();
            to += 4 * static_cast<ptrdiff_t>(p.dst_pitch);
        });
    });
}

// The pairs of any picture, one row after the other: `row(to, at, luma_by, chroma_by)` does the
// steps of one and leaves the pointers behind them. They go back by the width: with a width off the
// step each row starts further right than the one before, in the source as on the surface.
template <class Pairs, class Row>
LUMALANE_INLINE void pairs_stepwise(const picture &p, int bytes_per_pixel, Pairs pairs, Row row) {
    const ptrdiff_t chroma_pitch = static_cast<unsigned>(p.src_pitch) >> 1;
    const int y_rest = difference(p.src_pitch, p.width);
    const int dst_rest = difference(p.dst_pitch, product(p.width, bytes_per_pixel));
    rows_at_hand at{p.src, p.src_u, p.src_v, 2 * chroma_pitch, chroma_pitch};
    unsigned char *to = p.dst;
    const auto end_row = [&](int y_move, int chroma_move) {
        at.y += y_move, at.u += chroma_move, at.v += chroma_move, to += dst_rest;
    };
    const int back = -p.width, chroma_back = -(p.width >> 1);
    pairs(p.height, [&](const auto &by) {
        row(to, at, the_row_itself{}, the_row_itself{});
        end_row(back, chroma_back);
        row(to, at, by.upper, the_row_itself{});
        end_row(y_rest, chroma_back);
        row(to, at, the_row_itself{}, by.chroma);
        end_row(back, chroma_back);
        row(to, at, by.lower, by.chroma);
        end_row(y_rest, y_rest >> 1);
    });
}

} // namespace lumalane::LUMALANE_LANES
