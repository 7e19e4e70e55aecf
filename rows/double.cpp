// Rows to twice the width: each sample, and after it the average of it and the next one. With what
// lies between two rows, for twice the height.
#include "rows/adjust.h"
#include "rows/kernels.h"

namespace lumalane::LUMALANE_TARGET_NAME {

namespace {

// n samples twice as wide.
template <int n>
using doubled = vectors<2, n>;

template <int n>
LUMALANE_INLINE vectors<1, n> average(vectors<1, n> a, vectors<1, n> b) {
    return {{average(a.part[0], b.part[0])}};
}

template <int n>
LUMALANE_INLINE vectors<2, n> average(const vectors<2, n> &a, const vectors<2, n> &b) {
    return {{average(a.part[0], b.part[0]), average(a.part[1], b.part[1])}};
}

// What follows each of n samples: `next` at the end of a row, where the last one is repeated. (Through
// memory it would take as long as all earlier stores.)
template <int parts, int n>
LUMALANE_INLINE bytes<n> load_next(const unsigned char *from, bool at_end) {
    if constexpr (n <= 16)
        if (at_end)
            return next_lanes(load<n>(from));
    return load_permuted<parts, n>(from + 1);
}

template <int parts, int n>
LUMALANE_INLINE bytes<n> load_next_pairs(const unsigned char *u, const unsigned char *v,
                                         bool at_end) {
    if constexpr (n == 16)
        if (at_end)
            return interleave_lower(next_lanes(load<8>(u)), next_lanes(load<8>(v)));
    return load_pairs_permuted<parts, n>(u + 1, v + 1);
}

// Permuted for so many vectors.
template <int parts, int n>
LUMALANE_INLINE doubled<n> load_doubled(const unsigned char *from, bool at_end) {
    const bytes<n> own = load_permuted<parts, n>(from);
    return interleave(own, average(own, load_next<parts, n>(from, at_end)));
}

// The widest vectors as far as nothing is to be repeated; `rest(x)` does what they leave.
template <class Step, class Rest>
LUMALANE_INLINE void along_doubled_row(ptrdiff_t n, bool repeats_last, const Step &step,
                                       const Rest &rest) {
    const ptrdiff_t end = repeats_last ? n - 1 : n;
    ptrdiff_t x = 0;
    for (; x + widest <= end; x += widest)
        step(group_of<widest>{}, x);
    if (x < n)
        rest(x);
}

// ---- To YUY2 -----------------------------------------------------------------------------------

// Pairs of U and V by themselves.
template <int n>
LUMALANE_INLINE doubled<n> load_doubled_pairs(const unsigned char *u, const unsigned char *v,
                                              bool at_end) {
    const bytes<n> own = load_pairs_permuted<4, n>(u, v);
    return interleave_pairs(own, average(own, load_next_pairs<4, n>(u, v, at_end)));
}

// quirk: of every 64 bytes the second 8 are luma alone, that of the pixels in the first 16
// [stretches.yuy2_2x2_second_8_bytes_are_the_first_8_luma_samples_of_the_row]
template <int offset, int n>
LUMALANE_INLINE bytes<n> with_luma_alone(bytes<n> pixels) {
    if constexpr (offset % 64 == 0)
        return even_bytes_in_second_8(pixels);
    else
        return pixels;
}

template <int n>
LUMALANE_INLINE vectors<4, n> doubled_pixels(const doubled<n> &y, const doubled<n> &uv) {
    const vectors<2, n> left = interleave(y.part[0], uv.part[0]);
    const vectors<2, n> right = interleave(y.part[1], uv.part[1]);
    return {{with_luma_alone<0>(left.part[0]), with_luma_alone<n>(left.part[1]),
             with_luma_alone<2 * n>(right.part[0]), with_luma_alone<3 * n>(right.part[1])}};
}

// Which row of the surface is made.
struct made_row {
    rows_made made;
    unsigned char *dst;
};

enum class group_of_rows {
    one,
    both,
    both_apart, // the row has its own chroma
};

// A group from x on.
template <int n, group_of_rows count>
LUMALANE_INLINE void emit_doubled_group(const doubled_rows &rows, const made_row to, ptrdiff_t x,
                                        bool at_end) {
    const unsigned char *const u = rows.u + x / 2, *const v = rows.v + x / 2;
    const doubled<n> upper = load_doubled<4, n>(rows.y + x, at_end);
    const auto between = [&]() LUMALANE_INLINE_LAMBDA {
        return average(upper, load_doubled<4, n>(rows.y + rows.y_below + x, at_end));
    };
    const auto chroma_below = [&]() LUMALANE_INLINE_LAMBDA {
        return load_doubled_pairs<n>(u + rows.chroma_below, v + rows.chroma_below, at_end);
    };
    unsigned char *const dst = to.dst + 4 * x;
    doubled<n> uv = load_doubled_pairs<n>(u, v, at_end);
    if constexpr (count == group_of_rows::both_apart) {
        const doubled<n> lower = between(), lower_uv = average(uv, chroma_below());
        store_all<cached>(dst, doubled_pixels(upper, uv));
        store_all<cached>(dst + rows.dst_below, doubled_pixels(lower, lower_uv));
    } else {
        if (rows.chroma_below != 0 && (to.made != rows_made::itself || !rows.row_has_own_chroma))
            uv = average(uv, chroma_below());
        if constexpr (count == group_of_rows::both) {
            const doubled<n> lower = between();
            store_all<cached>(dst, doubled_pixels(upper, uv));
            store_all<cached>(dst + rows.dst_below, doubled_pixels(lower, uv));
        } else {
            store_all(rows.stores, dst,
                      doubled_pixels(to.made == rows_made::between ? between() : upper, uv));
        }
    }
}

[[gnu::noinline]] void emit_doubled_rest(const doubled_rows &rows, const made_row to, ptrdiff_t n,
                                         ptrdiff_t x) {
    for (; x < n; x += 16) {
        const bool at_end = rows.repeats_last && x + 16 == n;
        if (to.made != rows_made::both)
            emit_doubled_group<16, group_of_rows::one>(rows, to, x, at_end);
        else if (rows.row_has_own_chroma && rows.chroma_below != 0)
            emit_doubled_group<16, group_of_rows::both_apart>(rows, to, x, at_end);
        else
            emit_doubled_group<16, group_of_rows::both>(rows, to, x, at_end);
    }
}

template <group_of_rows count>
LUMALANE_INLINE void emit_doubled(const doubled_rows &rows, const made_row to, ptrdiff_t n) {
    const doubled_rows own = rows; // which no store can change
    along_doubled_row(
        n, rows.repeats_last,
        [=](auto group, ptrdiff_t x)
            LUMALANE_INLINE_LAMBDA { emit_doubled_group<group.size, count>(own, to, x, false); },
        [&](ptrdiff_t x) LUMALANE_INLINE_LAMBDA { emit_doubled_rest(rows, to, n, x); });
}

// ---- Planes ------------------------------------------------------------------------------------

// n samples of a row, as wide as they are or twice as wide.
template <int times, int n>
LUMALANE_INLINE auto widened(const unsigned char *from, bool at_end) {
    if constexpr (times == 1) {
        return vectors<1, n>{{load<n>(from)}};
    } else if constexpr (n == 8) {
        const bytes<8> own = load<8>(from);
        return vectors<1, 16>{{interleave_lower(own, average(own, load_next<1, 8>(from, at_end)))}};
    } else {
        return load_doubled<2, n>(from, at_end);
    }
}

template <int n, class Map>
LUMALANE_INLINE vectors<1, n> mapped(vectors<1, n> samples, const Map &map) {
    return {{map(samples.part[0])}};
}

template <int n, class Map>
LUMALANE_INLINE vectors<2, n> mapped(const vectors<2, n> &samples, const Map &map) {
    return {{map(samples.part[0]), map(samples.part[1])}};
}

// A group from x on: both rows, or one of them.
template <int times, int n, bool both, class Map>
LUMALANE_INLINE void stretch_group(const stretched_rows &rows, const unsigned char *src,
                                   const made_row to, ptrdiff_t x, bool at_end, const Map &map) {
    const auto upper = widened<times, n>(src + x, at_end);
    const auto between = [&]() LUMALANE_INLINE_LAMBDA {
        return average(upper, widened<times, n>(src + rows.src_below + x, at_end));
    };
    unsigned char *const dst = to.dst + times * x;
    if constexpr (both) {
        const auto lower = between();
        store_all<cached>(dst, mapped(upper, map));
        store_all<cached>(dst + rows.dst_below, mapped(lower, map));
    } else {
        store_all(rows.stores, dst, mapped(to.made == rows_made::between ? between() : upper, map));
    }
}

template <int times, class Map>
[[gnu::noinline]] void stretch_rest(const stretched_rows &rows, const unsigned char *src,
                                    const made_row to, ptrdiff_t n, const Map &map, ptrdiff_t x) {
    along_row<8, 16>(
        n,
        [&](auto group, ptrdiff_t at) LUMALANE_INLINE_LAMBDA {
            const bool at_end = rows.repeats_last && at + group.size == n;
            if (to.made == rows_made::both)
                stretch_group<times, group.size, true>(rows, src, to, at, at_end, map);
            else
                stretch_group<times, group.size, false>(rows, src, to, at, at_end, map);
        },
        x);
}

template <int times, bool both, class Map>
LUMALANE_INLINE void stretch_along(const stretched_rows &rows, const unsigned char *src,
                                   const made_row to, ptrdiff_t n, const Map &map) {
    const stretched_rows own_rows = rows; // which no store can change
    const Map own_map = map;
    along_doubled_row(
        n, times == 2 && rows.repeats_last,
        [=](auto group, ptrdiff_t x) LUMALANE_INLINE_LAMBDA {
            stretch_group<times, group.size, both>(own_rows, src, to, x, false, own_map);
        },
        [&](ptrdiff_t x) LUMALANE_INLINE_LAMBDA { stretch_rest<times>(rows, src, to, n, map, x); });
}

template <int times>
LUMALANE_INLINE void stretch(const stretched_rows &rows, ptrdiff_t n) {
    const auto run = [&](const auto map) LUMALANE_INLINE_LAMBDA {
        const unsigned char *src = rows.src;
        unsigned char *dst = rows.dst;
        for (ptrdiff_t left = rows.count; left > 0; --left) {
            if (rows.made == rows_made::both && rows.stores == store_policy::cached) {
                stretch_along<times, true>(rows, src, {rows_made::both, dst}, n, map);
            } else {
                // Non-temporal stores of two rows in turn would leave lines of the cache half
                // filled: one row after the other.
                const bool both = rows.made == rows_made::both;
                made_row to{both ? rows_made::itself : rows.made, dst};
                for (bool upper = true;; upper = false) {
                    stretch_along<times, false>(rows, src, to, n, map);
                    if (!upper || !both)
                        break;
                    to = {rows_made::between, dst + rows.dst_below};
                }
            }
            src += rows.src_next, dst += rows.dst_next;
        }
    };
    with_adjustment(rows.by, run);
}

} // namespace

void emit_doubled_yuy2(const doubled_rows &rows, ptrdiff_t n) {
    const bool both = rows.made == rows_made::both;
    if (both && rows.stores == store_policy::cached) {
        if (rows.row_has_own_chroma && rows.chroma_below != 0)
            return emit_doubled<group_of_rows::both_apart>(rows, {rows_made::both, rows.dst}, n);
        return emit_doubled<group_of_rows::both>(rows, {rows_made::both, rows.dst}, n);
    }
    // Non-temporal stores of two rows in turn would leave lines of the cache half filled.
    made_row to{both ? rows_made::itself : rows.made, rows.dst};
    for (bool upper = true;; upper = false) {
        emit_doubled<group_of_rows::one>(rows, to, n);
        if (!upper || !both)
            break;
        to = {rows_made::between, rows.dst + rows.dst_below};
    }
}

void stretch_plane(const stretched_rows &rows, ptrdiff_t n) { stretch<1>(rows, n); }

void double_plane(const stretched_rows &rows, ptrdiff_t n) { stretch<2>(rows, n); }

} // namespace lumalane::LUMALANE_TARGET_NAME
