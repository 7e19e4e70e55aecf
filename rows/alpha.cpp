// Alpha planes: to and from the first byte of a surface's pixels.
#include "rows/kernels.h"
#include "rows/row.h"

namespace lumalane::LUMALANE_TARGET_NAME {

namespace {

// `make.operator()<m>(src)` makes what m pixels become: one vector or several. A pixel has so many
// bytes at the source and at the destination.
template <int least, int src_bytes, int dst_bytes, class Make>
LUMALANE_INLINE void transfer(const plane_rows &rows, ptrdiff_t n, const Make &make) {
    const ptrdiff_t ahead = fetched_ahead(rows.stores);
    with_stores(rows.stores, [=](auto policy) LUMALANE_INLINE_LAMBDA {
        const unsigned char *src = rows.src;
        unsigned char *dst = rows.dst;
        for (ptrdiff_t left = rows.count; left > 0; --left) {
            along_row<least>(n, [=](auto group, ptrdiff_t x) LUMALANE_INLINE_LAMBDA {
                // (Up to 1.3 times as fast at 320x240; fetching less than a line a group costs more.)
                if constexpr (dst_bytes == 1 && src_bytes * group.size >= cache_line)
                    fetch_source<src_bytes * group.size>(src + src_bytes * x, ahead);
                const auto pixels = make.template operator()<group.size>(src + src_bytes * x);
                if constexpr (decltype(policy)::takes_lines && dst_bytes > 1)
                    store_and_fetch(dst + dst_bytes * x, pixels, ahead);
                else
                    store_all<decltype(policy)>(dst + dst_bytes * x, pixels);
            });
            src += rows.src_next, dst += rows.dst_next;
        }
    });
}

template <int bytes_per_pixel>
LUMALANE_INLINE void load_alpha(const plane_rows &rows, ptrdiff_t n) {
    transfer<16, 1, bytes_per_pixel>(rows, n,
                                     []<int m>(const unsigned char *src) LUMALANE_INLINE_LAMBDA {
                                         return load_spread<bytes_per_pixel, m>(src);
                                     });
}

} // namespace

void restore_alpha_rgb32(const plane_rows &rows, ptrdiff_t n) {
    transfer<8, 4, 1>(rows, n, []<int m>(const unsigned char *src) LUMALANE_INLINE_LAMBDA {
        return vectors<1, m>{{load_channel<4, 0, m>(src)}};
    });
}

void restore_alpha_rgb24(const plane_rows &rows, ptrdiff_t n) {
    transfer<8, 3, 1>(rows, n, []<int m>(const unsigned char *src) LUMALANE_INLINE_LAMBDA {
        return vectors<1, m>{{load_channel<3, 2, m>(src)}};
    });
}

void restore_alpha_rgb16(const plane_rows &rows, ptrdiff_t n) {
    transfer<16, 2, 1>(rows, n, []<int m>(const unsigned char *src) LUMALANE_INLINE_LAMBDA {
        return vectors<1, m>{{load_even<m>(src) & fill_bytes<m>(0x1f)}};
    });
}

void load_alpha_rgb32(const plane_rows &rows, ptrdiff_t n) { load_alpha<4>(rows, n); }

void load_alpha_rgb24(const plane_rows &rows, ptrdiff_t n) { load_alpha<3>(rows, n); }

void load_alpha_rgb16(const plane_rows &rows, ptrdiff_t n) { load_alpha<2>(rows, n); }

} // namespace lumalane::LUMALANE_TARGET_NAME
