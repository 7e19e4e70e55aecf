// What lies between a row and the row below it.
#include "rows/filter.h"
#include "rows/kernels.h"
#include "rows/row.h"

namespace lumalane::LUMALANE_TARGET_NAME {

namespace {

// Stores `make.operator()<n>(from)`, of n samples of a row, for every group of every row.
template <class Make>
LUMALANE_INLINE void store_rows(const between_rows &rows, ptrdiff_t n, const Make &make) {
    const ptrdiff_t src_next = rows.src_next, dst_next = rows.dst_next;
    const unsigned char *src = rows.src;
    unsigned char *dst = rows.dst;
    for (ptrdiff_t left = rows.count; left > 0; --left) {
        along_row<8>(n, [=](auto group, ptrdiff_t x) LUMALANE_INLINE_LAMBDA {
            store(dst + x, make.template operator()<group.size>(src + x));
        });
        src += src_next, dst += dst_next;
    }
}

// ---- Along edges -------------------------------------------------------------------------------
//
// Direction d of five, from right below (0) to left below (4), pairs the upper sample at d - 2 with
// the lower one at 2 - d. What it costs is the sum of the differences of four pairs, from the
// sample on to the right. Where a group of four samples differs by no more than `flat` in all
// straight down, the average straight down serves.

constexpr int directions = 5, straight_down = 2, flat = 32;

// n samples of two rows: `row(k, offset)` are those of row k, `offset` further right.
template <int n>
struct two_rows {
    const unsigned char *upper;
    ptrdiff_t below;

    LUMALANE_INLINE bytes<n> operator()(int k, ptrdiff_t offset = 0) const {
        return load<n>(upper + k * below + offset);
    }
};

// 8 samples, twice.
struct two_short_rows {
    const unsigned char *upper;
    ptrdiff_t below;

    LUMALANE_INLINE bytes<16> operator()(int k, ptrdiff_t offset = 0) const {
        const unsigned char *const from = upper + k * below + offset;
        return load_halves<16>(from, from);
    }
};

// Eight times the costs of the even and of the odd samples.
template <int n>
struct costs {
    words<n / 2> even, odd;
};

template <int n, class Row>
LUMALANE_INLINE costs<n> cost(const Row &row, int direction) {
    const auto differences = [&](int offset) LUMALANE_INLINE_LAMBDA {
        return absolute_difference(row(0, direction - 2 + offset), row(1, 2 - direction + offset));
    };
    const bytes<n> first = differences(0), third = differences(2), fifth = differences(4);
    const words<n / 2> shared =
        add(odd_times<8>(first), add(even_times<8>(third), odd_times<8>(third)));
    return {add(even_times<8>(first), shared), add(shared, even_times<8>(fifth))};
}

// Cost and direction in one number: of equal costs the lowest direction is the smallest.
template <int direction, int n, class Row>
LUMALANE_INLINE costs<n> smallest(const Row &row, const costs<n> &down) {
    costs<n> here = direction == straight_down ? down : cost<n>(row, direction);
    here = {add(here.even, fill_words<n / 2>(direction)),
            add(here.odd, fill_words<n / 2>(direction))};
    if constexpr (direction + 1 < directions) {
        const costs<n> others = smallest<direction + 1>(row, down);
        here = {minimum(here.even, others.even), minimum(here.odd, others.odd)};
    }
    return here;
}

template <int direction, int n, class Row>
LUMALANE_INLINE bytes<n> average_along(const Row &row, bytes<n> best) {
    const bytes<n> here = average(row(0, direction - 2), row(1, 2 - direction));
    if constexpr (direction + 1 < directions)
        return choose(equal(best, fill_bytes<n>(direction)), here,
                      average_along<direction + 1>(row, best));
    else
        return here;
}

template <int n, class Row>
LUMALANE_INLINE bytes<n> between_along_edges(const Row &row) {
    const bytes<n> down = average(row(0), row(1));
    const costs<n> down_costs = cost<n>(row, straight_down);
    const bytes<n> edges = groups_above(down_costs.even, 8 * flat);
    if (all_zero(edges))
        return down;
    const costs<n> found = smallest<0>(row, down_costs);
    const words<n / 2> direction = fill_words<n / 2>(7);
    const bytes<n> best = join(found.even & direction, found.odd & direction);
    return choose(edges, average_along<0>(row, best), down);
}

} // namespace

void average_rows(const between_rows &rows, ptrdiff_t n) {
    store_rows(rows, n,
               [below = rows.below]<int size>(const unsigned char *from) LUMALANE_INLINE_LAMBDA {
                   return average(load<size>(from), load<size>(from + below));
               });
}

void four_taps(const between_rows &rows, ptrdiff_t n) {
    store_rows(rows, n,
               [below = rows.below]<int size>(const unsigned char *from) LUMALANE_INLINE_LAMBDA {
                   return filtered(load<size>(from - below), load<size>(from),
                                   load<size>(from + below), load<size>(from + 2 * below));
               });
}

void along_edges(const between_rows &rows, ptrdiff_t n) {
    store_rows(rows, n,
               [below = rows.below]<int size>(const unsigned char *from) LUMALANE_INLINE_LAMBDA {
                   if constexpr (size == 8)
                       return lower_half(between_along_edges<16>(two_short_rows{from, below}));
                   else
                       return between_along_edges<size>(two_rows<size>{from, below});
               });
}

} // namespace lumalane::LUMALANE_TARGET_NAME
