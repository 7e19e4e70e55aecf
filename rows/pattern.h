// Patterns as vectors.
#pragma once

#include "rows/row.h"

namespace lumalane::LUMALANE_TARGET_NAME {

static_assert(sizeof pattern::byte % (3 * widest) == 0);

// The first `count` vectors of n bytes, over and over.
template <int count, int n>
LUMALANE_INLINE vectors<count, n> first_vectors(const pattern &of) {
    vectors<count, n> first;
    for (int i = 0; i < count; ++i)
        first.part[i] = load<n>(of.byte + i * n % (3 * widest));
    return first;
}

} // namespace lumalane::LUMALANE_TARGET_NAME
