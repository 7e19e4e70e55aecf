// What flows through a pipeline of stages, and the pipe itself.
//
// A step works on a group of 2n pixels of one or two rows. Its n chroma samples go through chroma()
// of every stage first and end as what the rows of the step share; then the 2n luma samples of each
// row go through luma() of every stage and into the sink's row().
#pragma once

#include "frame/lanes/lanes.h"

namespace lumalane::LUMALANE_LANES {

// Samples in 16-bit lanes. A stage may leave them with a bias, which whoever takes them away does
// so together with a constant of its own.
template <int n, int bias = 0>
struct chroma_samples {
    words<n> u, v;
};

template <int n, int bias = 0>
struct luma_samples {
    words<n> even, odd;
};

// Two stages, or a stage and the sink, in a row. A first stage takes luma as bytes.
template <class First, class Second>
struct pipe {
    static constexpr bool is_stage = true;

    First first;
    Second second;

    template <class Chroma>
    LUMALANE_INLINE auto chroma(Chroma samples) const {
        return second.chroma(first.chroma(samples));
    }

    template <class Luma, class Shared>
    LUMALANE_INLINE auto luma(Luma samples, const Shared &shared) const {
        return second.luma(first.luma(samples, shared), shared);
    }

    // Puts the group's pixels at `to`.
    template <class Put, class Luma, class Shared>
    LUMALANE_INLINE void row(unsigned char *to, Luma samples, const Shared &shared) const {
        second.template row<Put>(to, first.luma(samples, shared), shared);
    }

    // That the sink writes; also the parts in which it weaves a group.
    static constexpr int bytes_per_pixel() { return Second::bytes_per_pixel(); }
};

template <class First, class Second>
requires(First::is_stage &&Second::is_stage) LUMALANE_INLINE pipe<First, Second>
operator|(First first, Second second) { return {first, second}; }

// No stage at all, where another might stand.
struct as_they_are {};

template <class Second>
LUMALANE_INLINE Second operator|(as_they_are, Second second) {
    return second;
}

} // namespace lumalane::LUMALANE_LANES
