// The filter of four rows in a column.
#pragma once

#include "simd/simd.h"

namespace lumalane::LUMALANE_TARGET_NAME {

// (5 b + 5 c - a - d) / 8 of four rows in a column, not rounded.
template <int n>
LUMALANE_INLINE bytes<n> filtered(bytes<n> a, bytes<n> b, bytes<n> c, bytes<n> d) {
    if constexpr (n == 8) {
        return lower_half(filtered(extend(a), extend(b), extend(c), extend(d)));
    } else {
        const auto eighths = [](auto inner, auto outer) LUMALANE_INLINE_LAMBDA {
            return shift_right_arithmetic<3>(subtract(inner, outer));
        };
        return narrow_saturate(eighths(weighted_low<5>(b, c), weighted_low<1>(a, d)),
                               eighths(weighted_high<5>(b, c), weighted_high<1>(a, d)));
    }
}

} // namespace lumalane::LUMALANE_TARGET_NAME
