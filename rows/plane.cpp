// Rows of single samples.
#include "rows/adjust.h"
#include "rows/kernels.h"

namespace lumalane::LUMALANE_TARGET_NAME {

namespace {

// Of a row's n bytes, from the first line of the cache that is all in them to the last.
struct whole_lines {
    ptrdiff_t begin, end;

    LUMALANE_INLINE whole_lines(const unsigned char *dst, ptrdiff_t n) {
        const ptrdiff_t before =
            static_cast<ptrdiff_t>(-reinterpret_cast<uintptr_t>(dst) % cache_line);
        begin = before < n ? before : n;
        end = begin + (n - begin) / cache_line * cache_line;
    }
};

// Calls `row(src, dst)` for each row.
template <class Row>
LUMALANE_INLINE void each_row(const plane_rows &rows, const Row &row) {
    const unsigned char *src = rows.src;
    unsigned char *dst = rows.dst;
    const unsigned char *const end = end_of(rows);
    for (bool more = rows.count > 0; more; more = dst != end) {
        row(src, dst);
        src += rows.src_next, dst += rows.dst_next;
    }
}

// Stores `make.operator()<n>(src)`, n samples from `times` * n, for every group of the rows.
// `adjusts`: where it does, fetching lines ahead costs what it brings with vectors of 32 bytes.
template <int times, bool adjusts, class Make>
LUMALANE_INLINE void store_rows(const plane_rows &rows, ptrdiff_t n, const Make &make) {
    const auto step = [=](auto stores, const unsigned char *src,
                          unsigned char *dst) LUMALANE_INLINE_LAMBDA {
        return [=](auto group, ptrdiff_t x) LUMALANE_INLINE_LAMBDA {
            stores.store(dst + x, make.template operator()<group.size>(src + times * x));
        };
    };
    // Counting would take as long as copying: four groups a turn.
    const auto four_groups = [=](const auto &store, ptrdiff_t x, ptrdiff_t end)
                                 LUMALANE_INLINE_LAMBDA {
                                     for (; x + 4 * widest <= end; x += 4 * widest) {
                                         store(group_of<widest>{}, x);
                                         store(group_of<widest>{}, x + widest);
                                         store(group_of<widest>{}, x + 2 * widest);
                                         store(group_of<widest>{}, x + 3 * widest);
                                     }
                                     return x;
                                 };
    if (!streams || !is_non_temporal(rows.stores)) {
        const ptrdiff_t ahead = fetched_ahead(rows.stores);
        each_row(rows, [=](const unsigned char *src, unsigned char *dst) LUMALANE_INLINE_LAMBDA {
            const auto store = step(cached{}, src, dst);
            const auto fetch_and_store = [=](auto group, ptrdiff_t x) LUMALANE_INLINE_LAMBDA {
                if constexpr (widest > 32 || !adjusts)
                    fetch_ahead<group.size, 1>(dst + x, ahead);
                store(group, x);
            };
            along_row<8>(n, store, four_groups(fetch_and_store, 0, n));
        });
        return;
    }
    // Lines that a row fills in part are stored in the cache, ahead of the others: in turn with them
    // they take a quarter longer.
    const auto places =
        reinterpret_cast<uintptr_t>(rows.dst) | static_cast<uintptr_t>(rows.dst_next | n);
    if (places % cache_line != 0)
        each_row(rows, [=](const unsigned char *src, unsigned char *dst) LUMALANE_INLINE_LAMBDA {
            const whole_lines lines(dst, n);
            const auto store = step(cached{}, src, dst);
            along_row<8>(lines.begin, store);
            along_row<8>(n, store, lines.end);
        });
    each_row(rows, [=](const unsigned char *src, unsigned char *dst) LUMALANE_INLINE_LAMBDA {
        const whole_lines lines(dst, n);
        const ptrdiff_t length = lines.end - lines.begin;
        if (length == 0)
            return;
        void *const line = __builtin_assume_aligned(dst + lines.begin, cache_line);
        const auto store =
            step(non_temporal{}, src + times * lines.begin, static_cast<unsigned char *>(line));
        for (ptrdiff_t x = four_groups(store, 0, length); x < length; x += widest)
            store(group_of<widest>{}, x);
    });
}

} // namespace

void emit_plane(const plane_rows &rows, ptrdiff_t n) {
    with_adjustment(rows.by, [&](const auto map) LUMALANE_INLINE_LAMBDA {
        store_rows<1, decltype(map)::adjusts>(
            rows, n, [=]<int size>(const unsigned char *src) LUMALANE_INLINE_LAMBDA {
                return map(load<size>(src));
            });
    });
}

void emit_half_plane(const plane_rows &rows, ptrdiff_t n) {
    const ptrdiff_t ahead = fetched_ahead(rows.stores);
    with_adjustment(rows.by, [&](const auto map) LUMALANE_INLINE_LAMBDA {
        store_rows<2, decltype(map)::adjusts>(
            rows, n, [=]<int size>(const unsigned char *src) LUMALANE_INLINE_LAMBDA {
                if constexpr (2 * size >= cache_line)
                    fetch_source<2 * size>(src, ahead);
                return map(load_odd<size>(src));
            });
    });
}

void finish_stores() { stream_fence(); }

} // namespace lumalane::LUMALANE_TARGET_NAME
