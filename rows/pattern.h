// Patterns as vectors.
#pragma once

#include "rows/row.h"

namespace lumalane::LUMALANE_TARGET_NAME {

static_assert(sizeof pattern::byte % (3 * widest) == 0);

// n pixels of so many bytes: vectors of n bytes, which are all the same but where pixels have 3.
template <int bytes_per_pixel, int n>
LUMALANE_INLINE vectors<bytes_per_pixel, n> pattern_vectors(const pattern &of) {
    vectors<bytes_per_pixel, n> pixels;
    for (int i = 0; i < bytes_per_pixel; ++i)
        pixels.part[i] = load<n>(of.byte + (bytes_per_pixel == 3 ? i * n : 0));
    return pixels;
}

} // namespace lumalane::LUMALANE_TARGET_NAME
