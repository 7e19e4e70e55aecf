// Along a row: what all row kernels share.
#pragma once

#include "rows/rows.h"
#include "rows/strip.h"
#include "simd/simd.h"

#include <stdint.h>

namespace lumalane::LUMALANE_TARGET_NAME {

template <int n>
struct group_of {
    static constexpr int size = n;
};

// Calls `step(group_of<n>{}, x)` for the groups of a row of `count`, a multiple of `least`: of the
// widest vectors, then of half as many down to 16, then of 8.
template <int least, int most = widest, class Step>
LUMALANE_INLINE void along_row(ptrdiff_t count, const Step &step, ptrdiff_t x = 0) {
    for (; x + most <= count; x += most)
        step(group_of<most>{}, x);
    if constexpr (most > 16)
        along_row<least, most / 2>(count, step, x);
    else if constexpr (most > least)
        along_row<least, least>(count, step, x);
}

// The widest groups that the widest vectors leave of a row of which n is a multiple of 8.
inline constexpr int most_left = widest > 16 ? 16 : 8;

// Where the row after the last one would go. (Rows are not counted: with 8 registers the count is kept
// in memory, and stores there between those to a surface make rows of 320 bytes take up to 1.4 times as
// long.)
template <class Rows>
LUMALANE_INLINE const unsigned char *end_of(const Rows &rows) {
    return rows.dst + rows.count * rows.dst_next;
}

// ---- Strips ------------------------------------------------------------------------------------

// From a row (or a pair) to the next one.

LUMALANE_INLINE void advance(planar_rows &rows) {
    rows.y += rows.y_next, rows.u += rows.chroma_next, rows.v += rows.chroma_next;
    rows.dst += rows.dst_next, rows.y_below += rows.y_below_next;
}

LUMALANE_INLINE void advance(packed_rows &rows) {
    rows.src += rows.src_next, rows.chroma += rows.src_next, rows.dst += rows.dst_next;
}

LUMALANE_INLINE void advance(keyed_rows &rows) {
    rows.y += rows.luma_next, rows.u += rows.chroma_next, rows.v += rows.chroma_next;
    rows.alpha += rows.luma_next, rows.dst += rows.dst_next;
}

// Calls `make(at, x, run)` for what of each row (or pair) goes into a strip: `run` pixels from x on of
// the first one of `at`.
template <class Rows, class Make>
LUMALANE_INLINE void in_strips(Rows &at, ptrdiff_t n, const Make &make) {
    for (ptrdiff_t left = at.count; left > 0; --left) {
        in_runs(n, strip_pixels,
                [&](ptrdiff_t x, ptrdiff_t run) LUMALANE_INLINE_LAMBDA { make(at, x, run); });
        advance(at);
    }
}

// ---- Loads ---------------------------------------------------------------------------------------

// Lines of a source, of which n bytes from `from` on are about to be loaded, for later loads: not all
// processors do enough of it by themselves beside stores to other places. (To convert a surface of RGB32
// to planes took 2.9 times as long without it.)
template <int n, int line = 0>
LUMALANE_INLINE void fetch_source(const unsigned char *from, ptrdiff_t ahead = distance_ahead) {
    if constexpr (line < n) {
        __builtin_prefetch(from + ahead + line);
        fetch_source<n, line + cache_line>(from, ahead);
    }
}

// ---- Stores ------------------------------------------------------------------------------------

struct cached {
    static constexpr bool takes_lines = true; // of the cache

    ptrdiff_t ahead = 0; // how far lines are fetched

    template <int n>
    LUMALANE_INLINE static void store(unsigned char *to, bytes<n> a) {
        LUMALANE_TARGET_NAME::store(to, a);
    }
};

// `to` is aligned to streamed_bytes<n>.
struct non_temporal {
    static constexpr bool takes_lines = false;

    template <int n>
    LUMALANE_INLINE static void store(unsigned char *to, bytes<n> a) {
        if constexpr (n < 16)
            LUMALANE_TARGET_NAME::store(to, a); // there is no such store of so few bytes
        else
            stream(to, a);
    }
};

// One after the other; not a loop, which compilers may leave rolled, with the vectors in memory.
template <class Stores, int first = 0, int count, int n>
LUMALANE_INLINE void store_all(unsigned char *to, const vectors<count, n> &v) {
    if constexpr (first < count) {
        Stores::store(to + first * n, v.part[first]);
        store_all<Stores, first + 1>(to, v);
    }
}

// Where `count` vectors of n bytes from `to` on are about to be stored in the cache.
template <int n, int count, int line = 0>
LUMALANE_INLINE void fetch_ahead(const unsigned char *to, ptrdiff_t ahead) {
    if constexpr (fetches_ahead<n> && line < n * count) {
        __builtin_prefetch(to + ahead + line);
        fetch_ahead<n, count, line + cache_line>(to, ahead);
    }
}

// Stores vectors in the cache, and fetches lines for later ones.
template <int count, int n>
LUMALANE_INLINE void store_and_fetch(unsigned char *to, const vectors<count, n> &v,
                                     ptrdiff_t ahead) {
    fetch_ahead<n, count>(to, ahead);
    store_all<cached>(to, v);
}

// What is interleaved when it is stored: processors that do that need no lines fetched.
template <class Interleaved>
LUMALANE_INLINE void store_and_fetch(unsigned char *to, const Interleaved &v, ptrdiff_t) {
    store_all<cached>(to, v);
}

// (Where the distance is in a register loops that make four rows take 1.07 times as long.)
template <int count, int n>
LUMALANE_INLINE void fetch_if_told(store_policy stores, const unsigned char *to,
                                   const vectors<count, n> &) {
    if (fetches_ahead<n> && fetched_ahead(stores) != 0)
        fetch_ahead<n, count>(to, distance_ahead);
}

template <class Interleaved>
LUMALANE_INLINE void fetch_if_told(store_policy, const unsigned char *, const Interleaved &) {}

template <class Vectors>
LUMALANE_INLINE void store_all(cached stores, unsigned char *to, const Vectors &v) {
    store_and_fetch(to, v, stores.ahead);
}

template <class Vectors>
LUMALANE_INLINE void store_all(non_temporal, unsigned char *to, const Vectors &v) {
    store_all<non_temporal>(to, v);
}

// Where computing takes much more code than storing: one loop for both policies.
template <class Vectors>
LUMALANE_INLINE void store_all(store_policy stores, unsigned char *to, const Vectors &v) {
    if (streams && is_non_temporal(stores)) {
        store_all(non_temporal{}, to, v);
    } else {
        fetch_if_told(stores, to, v);
        store_all<cached>(to, v);
    }
}

// Four taps and the adjustment together are too much for 8 registers, and slower in one loop where
// vectors have 16 bytes.
inline constexpr bool filters_pairs = vector_registers >= 16 && widest > 16;

// streams_pairs() of a surface, on this target.
template <class Surface>
inline constexpr bool streams_its_pairs = streams &&streams_pairs(widest, vector_registers,
                                                                  Surface::bytes_per_pixel);

// Whether all rows of the destination begin at multiples of `size`, a power of two.
template <class Rows>
LUMALANE_INLINE bool begin_at_multiples(const Rows &rows, uintptr_t size) {
    const auto places = reinterpret_cast<uintptr_t>(rows.dst) |
                        static_cast<uintptr_t>(rows.dst_below | rows.dst_next);
    return places % size == 0;
}

// Whether rows of a pair are stored in turn wherever they begin: others begin on lines of the cache, of
// which non-temporal stores would leave some half filled.
LUMALANE_INLINE bool rows_in_turn(store_policy stores) {
    return !streams || !is_non_temporal(stores);
}

// Longer rows are in no order that can be observed.
inline constexpr ptrdiff_t longest_run_in_order = 16;

// Whether vectors of the rows lie across cache lines: pairs that are stored in turn take up to 1.7
// times as long then. (Of 16 bytes only every fourth one does.)
template <class Rows>
LUMALANE_INLINE bool cross_cache_lines(const Rows &rows) {
    return widest > 16 && !begin_at_multiples(rows, widest);
}

// Runs `run(cached{...})` or `run(non_temporal{})`.
template <class Run>
LUMALANE_INLINE void with_stores(store_policy stores, const Run &run) {
    if (streams && is_non_temporal(stores))
        run(non_temporal{});
    else
        run(cached{fetched_ahead(stores)});
}

} // namespace lumalane::LUMALANE_TARGET_NAME
