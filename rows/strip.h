// Pieces of rows between two row kernels: on the stack, and small enough for the first-level cache.
#pragma once

#include "simd/inline.h"

#include <stddef.h>

namespace lumalane {

constexpr ptrdiff_t strip_pixels = 512;

// To whole steps of a power of two.
constexpr ptrdiff_t rounded_up(ptrdiff_t n, ptrdiff_t step) { return (n + step - 1) & -step; }

// Calls `convert_run(x, n)` for the runs of a row of `count` pixels: n is `run`, or what is left of it.
template <class Convert>
LUMALANE_INLINE void in_runs(ptrdiff_t count, ptrdiff_t run, const Convert &convert_run) {
    for (ptrdiff_t x = 0; x < count; x += run)
        convert_run(x, count - x < run ? count - x : run);
}

} // namespace lumalane
