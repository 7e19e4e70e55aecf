// Samples that lie in turn, taken apart.
#include "rows/adjust.h"
#include "rows/kernels.h"

namespace lumalane::LUMALANE_TARGET_NAME {

namespace {

template <class EvenMap, class OddMap>
LUMALANE_INLINE void take_apart(unsigned char *even, unsigned char *odd, const unsigned char *src,
                                ptrdiff_t n, const EvenMap even_map, const OddMap odd_map) {
    along_row<8>(n, [=](auto group, ptrdiff_t x) LUMALANE_INLINE_LAMBDA {
        const auto a = load_even<1, group.size>(src + 2 * x);
        const auto b = load_odd<1, group.size>(src + 2 * x);
        store(even + x, even_map(a));
        store(odd + x, odd_map(b));
    });
}

template <bool products_fit>
LUMALANE_INLINE void
take_apart_adjusted(unsigned char *even, unsigned char *odd, const unsigned char *src, ptrdiff_t n,
                    const plane_adjustment &even_by, const plane_adjustment *odd_by) {
    const adjusted_plane<products_fit> even_map(even_by);
    if (odd_by)
        take_apart(even, odd, src, n, even_map, adjusted_plane<products_fit>(*odd_by));
    else
        take_apart(even, odd, src, n, even_map, unadjusted_plane{});
}

} // namespace

void deinterleave(unsigned char *even, unsigned char *odd, const unsigned char *src, ptrdiff_t n,
                  const plane_adjustment *even_by, const plane_adjustment *odd_by) {
    if (!even_by)
        take_apart(even, odd, src, n, unadjusted_plane{}, unadjusted_plane{});
    else if (even_by->product_fits_15_bits && (!odd_by || odd_by->product_fits_15_bits))
        take_apart_adjusted<true>(even, odd, src, n, *even_by, odd_by);
    else
        take_apart_adjusted<false>(even, odd, src, n, *even_by, odd_by);
}

} // namespace lumalane::LUMALANE_TARGET_NAME
