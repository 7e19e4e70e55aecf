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

// What follows each of n samples: at the end of a row the last one once more. (Through memory it
// would take as long as all earlier stores.)
template <int parts, int n>
LUMALANE_INLINE bytes<n> load_next(const unsigned char *from, bool at_end) {
    if (at_end) {
        const bytes<n> next = next_lanes(load<n>(from));
        if constexpr (n < 16)
            return next;
        else
            return permuted<parts>(next);
    }
    return load_permuted<parts, n>(from + 1);
}

// Permuted for so many vectors.
template <int parts, int n>
LUMALANE_INLINE doubled<n> load_doubled(const unsigned char *from, bool at_end) {
    const bytes<n> own = load_permuted<parts, n>(from);
    return interleave(own, average(own, load_next<parts, n>(from, at_end)));
}

// Calls `step(group_of<widest>{}, x, at_end)` for the widest vectors; `rest(x)` does what they leave.
// `asks`: `step` does otherwise at the end. `overlaps`: a last vector may end where the row does, which
// makes some samples twice. (One of 64 bytes makes pictures of 320x240 and 352x288, whose rows of chroma
// have 160 and 176 samples, take 0.8 to 0.9 of the time; one of 32 bytes gains less than its code is worth.)
template <bool asks, bool overlaps, class Step, class Rest>
LUMALANE_INLINE void along_doubled_row(ptrdiff_t n, bool repeats_last, const Step &step,
                                       const Rest &rest) {
    ptrdiff_t x = 0;
    if constexpr (small_code && asks) // only the last one does
        for (; x + 2 * widest <= n; x += widest)
            step(group_of<widest>{}, x, false);
    for (; x + widest <= n; x += widest)
        step(group_of<widest>{}, x, repeats_last && x + widest == n);
    if constexpr (widest > 8)
        if (x < n) {
            if (overlaps && n >= widest)
                step(group_of<widest>{}, n - widest, repeats_last);
            else
                rest(x);
        }
}

// ---- To YUY2 -----------------------------------------------------------------------------------

// Where a row or a pair begins.
struct doubled_row {
    const unsigned char *y, *u, *v;
    unsigned char *dst;
};

// How samples and pairs of U and V by themselves become pixels, as wide as they are or twice as wide.
template <int times, int n>
struct to_yuy2;

template <int n>
struct to_yuy2<1, n> {
    using samples = vectors<1, n>;

    template <bool>
    LUMALANE_INLINE static samples luma(const unsigned char *y) {
        return {{load_permuted<2, n>(y)}};
    }

    LUMALANE_INLINE static samples chroma(const doubled_row &at, ptrdiff_t x) {
        return {{load_pairs_permuted<2, n>(at.u + x / 2, at.v + x / 2)}};
    }

    LUMALANE_INLINE static auto pixels(const samples &y, const samples &uv) {
        return interleave(y.part[0], uv.part[0]);
    }
};

template <int n>
struct to_yuy2<2, n> {
    using samples = doubled<n>;

    template <bool at_end>
    LUMALANE_INLINE static samples luma(const unsigned char *y) {
        return load_doubled<4, n>(y, at_end);
    }

    LUMALANE_INLINE static samples chroma(const doubled_row &at, ptrdiff_t x) {
        const bytes<n> own = load_permuted<4, n>(at.u + x);
        return interleave_pairs(own, average(own, load_permuted<4, n>(at.u + x + 2)));
    }

    LUMALANE_INLINE static vectors<4, n> pixels(const samples &y, const samples &uv) {
        const vectors<2, n> left = half<0>(y, uv), right = half<1>(y, uv);
        return {{left.part[0], left.part[1], right.part[0], right.part[1]}};
    }

    // The left or the right half of them.
    template <int k>
    LUMALANE_INLINE static vectors<2, n> half(const samples &y, const samples &uv) {
        const vectors<2, n> r = interleave(y.part[k], uv.part[k]);
        if constexpr (n > 16)
            return {{with_luma_alone<2 * k * n>(r.part[0]),
                     with_luma_alone<(2 * k + 1) * n>(r.part[1])}};
        else if constexpr (k == 0)
            return {{lower_halves(r.part[0], y.part[0]), r.part[1]}};
        else
            return r;
    }

private:
    // quirk: of every 64 bytes the second 8 are luma alone, that of the pixels in the first 16
    // [stretches.yuy2_2x2_second_8_bytes_are_the_first_8_luma_samples_of_the_row]
    template <int offset>
    LUMALANE_INLINE static bytes<n> with_luma_alone(bytes<n> pixels) {
        if constexpr (offset % 64 == 0)
            return even_bytes_in_second_8(pixels);
        else
            return pixels;
    }
};

// A group from x on. Of all rows of a pair each is stored as soon as it is made: with 8 registers, and
// nearly with 16, what is made of one more row would be kept in memory.
template <int times, bool all, int n, bool at_end>
LUMALANE_INLINE void emit_doubled_group(const doubled_rows &rows, const doubled_row &at,
                                        ptrdiff_t x) {
    using to = to_yuy2<times, n>;
    using samples = typename to::samples;
    const unsigned char *const y = at.y + x;
    unsigned char *dst = at.dst + 2 * times * x;
    const auto emit = [&](const samples &luma, const samples &uv) LUMALANE_INLINE_LAMBDA {
        if constexpr (times == 2 && vector_registers < 16) {
            store_all(rows.stores, dst, to::template half<0>(luma, uv));
            store_all(rows.stores, dst + 2 * n, to::template half<1>(luma, uv));
        } else {
            store_all(rows.stores, dst, to::pixels(luma, uv));
        }
        dst += rows.dst_below;
    };
    const auto chroma_between = [&](const samples &uv) LUMALANE_INLINE_LAMBDA {
        const doubled_row below{nullptr, at.u + rows.chroma_below, at.v + rows.chroma_below,
                                nullptr};
        return average(uv, to::chroma(below, x));
    };
    const samples upper = to::template luma<at_end>(y);
    samples uv = to::chroma(at, x);
    if constexpr (all) {
        emit(upper, uv);
        const samples lower = to::template luma<at_end>(y + rows.y_below);
        emit(average(upper, lower), uv);
        const samples uv_between = chroma_between(uv);
        if (!rows.lower_has_own_chroma)
            uv = uv_between;
        emit(lower, uv);
        emit(average(lower, to::template luma<at_end>(y + 2 * rows.y_below)), uv_between);
    } else {
        if (small_code || rows.chroma_below != 0) // small code averages what is alike
            uv = chroma_between(uv);
        if (rows.made == pair_made::between)
            emit(average(upper, to::template luma<at_end>(y + rows.y_below)), uv);
        else
            emit(upper, uv);
    }
}

// What the widest vectors leave of a row, and its last group, after which there is nothing to load.
template <int times, bool all>
[[gnu::noinline]] void emit_doubled_rest(const doubled_rows &rows, const doubled_row at,
                                         ptrdiff_t n, ptrdiff_t x) {
    if (times == 2 && rows.repeats_last) {
        if (widest == 16 || x + widest == n)
            return emit_doubled_group<times, all, widest, true>(rows, at, x);
        n -= 16;
    }
    if constexpr (widest > 16) {
        for (; x < n; x += 16)
            emit_doubled_group<times, all, 16, false>(rows, at, x);
        if (times == 2 && rows.repeats_last)
            emit_doubled_group<times, all, 16, true>(rows, at, x);
    }
}

template <int times, bool all>
LUMALANE_INLINE void emit_doubled_rows(const doubled_rows &rows, ptrdiff_t n) {
    const ptrdiff_t y_next = rows.y_next, chroma_next = rows.chroma_next, dst_next = rows.dst_next;
    const ptrdiff_t end = times == 2 && rows.repeats_last ? n - 1 : n; // before it groups end
    doubled_row at{rows.y, rows.u, rows.v, rows.dst};
    const doubled_rows own = rows; // which no store can change
    const unsigned char *const below_all = end_of(rows);
    for (bool more = rows.count > 0; more; more = at.dst != below_all) {
        ptrdiff_t x = 0;
        for (; x + widest <= end; x += widest)
            emit_doubled_group<times, all, widest, false>(own, at, x);
        if constexpr (times == 2 || widest > 16)
            if (x < n)
                emit_doubled_rest<times, all>(rows, at, n, x);
        at.y += y_next, at.u += chroma_next, at.v += chroma_next, at.dst += dst_next;
    }
}

template <int times>
LUMALANE_INLINE void emit_doubled(const doubled_rows &rows, ptrdiff_t n) {
    const bool all = rows.made == pair_made::all;
    if constexpr (small_code) {
        // All upper rows, all that lie below them, and so on.
        doubled_rows row = rows;
        for (int k = 0;;) {
            if (all) {
                const bool own_chroma = k < 2 || (k == 2 && rows.lower_has_own_chroma);
                row.made = k % 2 != 0 ? pair_made::between : pair_made::row;
                row.chroma_below = own_chroma ? 0 : rows.chroma_below;
            }
            emit_doubled_rows<times, false>(row, n);
            if (!all || ++k == 4)
                break;
            row.dst += rows.dst_below;
            if (k == 2)
                row.y += rows.y_below;
        }
    } else if (all) {
        emit_doubled_rows<times, true>(rows, n);
    } else {
        emit_doubled_rows<times, false>(rows, n);
    }
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

// Where a row begins, and where it goes.
struct stretched_row {
    const unsigned char *src;
    unsigned char *dst;
};

// A group from x on: both rows, or one of them.
template <int times, int n, bool both, class Map, class Stores>
LUMALANE_INLINE void stretch_group(const stretched_rows &rows, const stretched_row at, ptrdiff_t x,
                                   bool at_end, const Map &map, Stores stores) {
    const unsigned char *const src = at.src + x;
    unsigned char *const dst = at.dst + times * x;
    const auto upper = widened<times, n>(src, at_end);
    const auto between = [&]() LUMALANE_INLINE_LAMBDA {
        return average(upper, widened<times, n>(src + rows.src_below, at_end));
    };
    if constexpr (both) {
        const auto lower = between();
        store_all(stores, dst, mapped(upper, map));
        store_all(stores, dst + rows.dst_below, mapped(lower, map));
    } else {
        store_all(stores, dst, mapped(rows.made == rows_made::between ? between() : upper, map));
    }
}

// (It makes its own map: one that is passed is in memory, and 32-bit code takes up to 1.4 times as long.)
template <int times, class Map>
[[gnu::noinline]] void stretch_rest(const stretched_rows &rows, const stretched_row at, ptrdiff_t n,
                                    ptrdiff_t first) {
    const Map map(rows.by);
    along_row<8, most_left>(
        n,
        [&](auto group, ptrdiff_t x) LUMALANE_INLINE_LAMBDA {
            const bool at_end = rows.repeats_last && x + group.size == n;
            if (rows.made == rows_made::both)
                stretch_group<times, group.size, true>(rows, at, x, at_end, map, rows.stores);
            else
                stretch_group<times, group.size, false>(rows, at, x, at_end, map, rows.stores);
        },
        first);
}

// `own`: a copy of the rows, which no store can change.
template <int times, bool both, class Map, class Stores>
LUMALANE_INLINE void stretch_along(const stretched_rows &rows, const stretched_row at, ptrdiff_t n,
                                   const stretched_rows &own, const Map &map, Stores stores) {
    // Around the cache it would not be aligned.
    constexpr bool overlaps = widest > 32 && Stores::takes_lines;
    along_doubled_row<times == 2, overlaps>(
        n, times == 2 && own.repeats_last,
        [&](auto group, ptrdiff_t x, bool at_end) LUMALANE_INLINE_LAMBDA {
            stretch_group<times, group.size, both>(own, at, x, at_end, map, stores);
        },
        [&](ptrdiff_t x) LUMALANE_INLINE_LAMBDA { stretch_rest<times, Map>(rows, at, n, x); });
}

template <int times>
LUMALANE_INLINE void stretch(const stretched_rows &rows, ptrdiff_t n) {
    const auto run = [&]<class Map>(const Map map) LUMALANE_INLINE_LAMBDA {
        with_stores(rows.stores, [&](auto stores) LUMALANE_INLINE_LAMBDA {
            const stretched_rows own = rows;
            const unsigned char *const end = end_of(rows);
            const auto along_rows = [&]<bool both>() LUMALANE_INLINE_LAMBDA {
                stretched_row at{rows.src, rows.dst};
                for (bool more = rows.count > 0; more; more = at.dst != end) {
                    stretch_along<times, both>(rows, at, n, own, map, stores);
                    at.src += own.src_next, at.dst += own.dst_next;
                }
            };
            if (own.made == rows_made::both)
                along_rows.template operator()<true>();
            else
                along_rows.template operator()<false>();
        });
    };
    with_adjustment(rows.by, run);
}

} // namespace

void emit_yuy2_of_double_height(const doubled_rows &rows, ptrdiff_t n) { emit_doubled<1>(rows, n); }

void emit_doubled_yuy2(const doubled_rows &rows, ptrdiff_t n) { emit_doubled<2>(rows, n); }

void stretch_plane(const stretched_rows &rows, ptrdiff_t n) { stretch<1>(rows, n); }

void double_plane(const stretched_rows &rows, ptrdiff_t n) { stretch<2>(rows, n); }

} // namespace lumalane::LUMALANE_TARGET_NAME
