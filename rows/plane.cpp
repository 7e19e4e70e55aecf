// Rows of single samples.
#include "rows/adjust.h"
#include "rows/kernels.h"

namespace lumalane::LUMALANE_TARGET_NAME {

namespace {

// Stores `make.operator()<n>(src)`, n samples from `times` * n, for every group of the rows.
template <int times, class Make>
LUMALANE_INLINE void store_rows(const plane_rows &rows, ptrdiff_t n, const Make &make) {
    with_stores(rows.stores, [=](auto stores) LUMALANE_INLINE_LAMBDA {
        const unsigned char *src = rows.src;
        unsigned char *dst = rows.dst;
        const unsigned char *const end = end_of(rows);
        for (bool more = rows.count > 0; more; more = dst != end) {
            const auto step = [=](auto group, ptrdiff_t x) LUMALANE_INLINE_LAMBDA {
                stores.store(dst + x, make.template operator()<group.size>(src + times * x));
            };
            // Counting would take as long as copying: four groups a turn.
            ptrdiff_t x = 0;
            for (; x + 4 * widest <= n; x += 4 * widest) {
                step(group_of<widest>{}, x);
                step(group_of<widest>{}, x + widest);
                step(group_of<widest>{}, x + 2 * widest);
                step(group_of<widest>{}, x + 3 * widest);
            }
            along_row<8>(n, step, x);
            src += rows.src_next, dst += rows.dst_next;
        }
    });
}

} // namespace

void emit_plane(const plane_rows &rows, ptrdiff_t n) {
    with_adjustment(rows.by, [&](const auto map) LUMALANE_INLINE_LAMBDA {
        store_rows<1>(rows, n, [=]<int size>(const unsigned char *src) LUMALANE_INLINE_LAMBDA {
            return map(load<size>(src));
        });
    });
}

void emit_half_plane(const plane_rows &rows, ptrdiff_t n) {
    with_adjustment(rows.by, [&](const auto map) LUMALANE_INLINE_LAMBDA {
        store_rows<2>(rows, n, [=]<int size>(const unsigned char *src) LUMALANE_INLINE_LAMBDA {
            return map(load_odd<1, size>(src));
        });
    });
}

void finish_stores() { stream_fence(); }

} // namespace lumalane::LUMALANE_TARGET_NAME
