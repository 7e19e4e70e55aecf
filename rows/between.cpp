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

// 8 samples are loaded twice: there is no smaller vector.
constexpr int bytes_of_group(int n) { return n == 8 ? 16 : n; }

// n samples of a row.
template <int n>
LUMALANE_INLINE bytes<bytes_of_group(n)> load_group(const unsigned char *from) {
    if constexpr (n == 8)
        return load_halves<16>(from, from);
    else
        return load<n>(from);
}

template <int n, int all>
LUMALANE_INLINE void store_group(unsigned char *to, bytes<all> a) {
    if constexpr (n == 8)
        store(to, lower_half(a));
    else
        store(to, a);
}

// Some samples of a row that go along edges, and the differences of their pairs in every direction:
// once, for each is part of four costs.
class edge_strip {
public:
    static constexpr ptrdiff_t most = 512;

    // `from` to `end`; 4 differences more are needed.
    LUMALANE_INLINE void load_pairs(const unsigned char *src, ptrdiff_t below, ptrdiff_t from,
                                    ptrdiff_t end) {
        for (int d = 0; d < directions; ++d) {
            unsigned char *const to = differences[d];
            const unsigned char *const upper = src + d - 2, *const lower = src + below + 2 - d;
            const auto step = [=](auto group, ptrdiff_t x) LUMALANE_INLINE_LAMBDA {
                store_group<group.size>(to + x,
                                        absolute_difference(load_group<group.size>(upper + x),
                                                            load_group<group.size>(lower + x)));
            };
            along_row<8>(end, step, from);
            step(group_of<8>{}, end - 4);
        }
    }

    // A group from x on, where it has edges.
    template <int n>
    LUMALANE_INLINE void store_along(unsigned char *dst, const unsigned char *src, ptrdiff_t below,
                                     ptrdiff_t x) const {
        constexpr int all = bytes_of_group(n);
        const bytes<all> edges = groups_above(load_group<n>(differences[straight_down] + x), flat);
        if (all_zero(edges))
            return;
        const costs<all> found = smallest<0, n>(x);
        const words<all / 2> direction = fill_words<all / 2>(7);
        const bytes<all> best = join(found.even & direction, found.odd & direction);
        const auto row = [&](ptrdiff_t offset)
                             LUMALANE_INLINE_LAMBDA { return load_group<n>(src + x + offset); };
        store_group<n>(dst + x, choose(edges, average_along<0, all>(row, below, best),
                                       average(row(0), row(below))));
    }

private:
    // Eight times the costs of the even and of the odd samples, and the direction in the lowest bits:
    // of equal costs the lowest direction is the smallest.
    template <int n>
    struct costs {
        words<n / 2> even, odd;
    };

    template <int direction, int n, int all = bytes_of_group(n)>
    LUMALANE_INLINE costs<all> smallest(ptrdiff_t x) const {
        const unsigned char *const at = differences[direction] + x;
        const bytes<all> first = load_group<n>(at), third = load_group<n>(at + 2),
                         fifth = load_group<n>(at + 4);
        const words<all / 2> shared = add(pairs_times<8>(third), fill_words<all / 2>(direction));
        const costs<all> here = {add(pairs_times<8>(first), shared),
                                 add(odd_and_even_times<8>(first, fifth), shared)};
        if constexpr (direction + 1 < directions) {
            const costs<all> others = smallest<direction + 1, n>(x);
            return {minimum(here.even, others.even), minimum(here.odd, others.odd)};
        } else {
            return here;
        }
    }

    template <int direction, int n, class Row>
    LUMALANE_INLINE static bytes<n> average_along(const Row &row, ptrdiff_t below, bytes<n> best) {
        const bytes<n> here = average(row(direction - 2), row(below + 2 - direction));
        if constexpr (direction + 1 < directions)
            return choose_equal(best, fill_bytes<n>(direction), here,
                                average_along<direction + 1>(row, below, best));
        else
            return here;
    }

    alignas(stack_alignment) unsigned char differences[directions][most + 64];
};

[[gnu::noinline]] void follow_edges(unsigned char *dst, const unsigned char *src, ptrdiff_t below,
                                    ptrdiff_t first, ptrdiff_t end) {
    edge_strip strip;
    strip.load_pairs(src, below, first, end);
    along_row<8>(
        end,
        [&](auto group, ptrdiff_t x)
            LUMALANE_INLINE_LAMBDA { strip.store_along<group.size>(dst, src, below, x); },
        first);
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
                   fetch_source<size>(from + 2 * below);
                   return filtered(load<size>(from - below), load<size>(from),
                                   load<size>(from + below), load<size>(from + 2 * below));
               });
}

void along_edges(const between_rows &rows, ptrdiff_t n) {
    for (ptrdiff_t k = 0; k < rows.count; ++k)
        in_runs(n, edge_strip::most, [&](ptrdiff_t from, ptrdiff_t samples) LUMALANE_INLINE_LAMBDA {
            const unsigned char *const src = rows.src + k * rows.src_next + from;
            unsigned char *const dst = rows.dst + k * rows.dst_next + from;
            ptrdiff_t first = samples, end = 0; // of what has edges
            along_row<8>(samples,
                         [&, below = rows.below](auto group, ptrdiff_t x) LUMALANE_INLINE_LAMBDA {
                             const auto upper = load_group<group.size>(src + x);
                             const auto lower = load_group<group.size>(src + below + x);
                             store_group<group.size>(dst + x, average(upper, lower));
                             if (!all_zero(groups_above(absolute_difference(upper, lower), flat))) {
                                 first = first < x ? first : x;
                                 end = x + group.size;
                             }
                         });
            if (first < end)
                follow_edges(dst, src, rows.below, first, end);
        });
}

} // namespace lumalane::LUMALANE_TARGET_NAME
