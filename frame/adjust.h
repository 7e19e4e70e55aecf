// The adjustment as lane arithmetic.
#pragma once

#include "frame/adjustment.h"
#include "frame/samples.h"

namespace lumalane::LUMALANE_LANES {

// Gain only: low16(x * gain) + 32 with signed saturation, >> 6 with zeros from the left. At most
// 1023.
template <int n>
LUMALANE_INLINE words<n> amplified(words<n> x, plane_adjustment by) {
    const words<n> product = multiply_low(x, fill_words<n>(by.gain));
    return shift_right_logical<6>(add_saturate(product, fill_words<n>(32)));
}

// For narrow_saturate(), which ends the formula.
template <int n>
LUMALANE_INLINE words<n> adjusted(words<n> x, plane_adjustment by) {
    return add_saturate(amplified(x, by), fill_words<n>(by.offset));
}

// The stage that adjusts samples on their way to the conversion.
//
// It clamps to 0..255 in two operations instead of three by adding a bias together with the offset:
// 255 + bias is where signed addition saturates, and the maximum with the bias is the other end.
// Offsets are brought into -1023..255 first, beyond which they change nothing more.
struct adjust {
    static constexpr bool is_stage = true;
    static constexpr int bias = 0x7fff - 255;

    adjustment by;

    LUMALANE_INLINE explicit adjust(const adjustment &current)
        : by{biased(current.y), biased(current.u), biased(current.v)} {}

    template <int n>
    LUMALANE_INLINE chroma_samples<n, bias> chroma(chroma_samples<n> samples) const {
        return {clamped(samples.u, by.u), clamped(samples.v, by.v)};
    }

    template <int n, class Shared>
    LUMALANE_INLINE auto luma(bytes<n> samples, const Shared &) const {
        return luma_samples<n / 2, bias>{clamped(even(samples), by.y), clamped(odd(samples), by.y)};
    }

private:
    LUMALANE_INLINE static plane_adjustment biased(plane_adjustment plane) {
        const int offset = plane.offset < -1023 ? -1023 : plane.offset > 255 ? 255 : plane.offset;
        return {plane.gain, static_cast<short>(offset + bias)};
    }

    template <int n>
    LUMALANE_INLINE static words<n> clamped(words<n> x, plane_adjustment plane) {
        return maximum(adjusted(x, plane), fill_words<n>(bias));
    }
};

// Runs `run` with the adjustment in force as a stage; with none where it is neutral, which gives
// the same bytes at the price of the plain function.
template <class Run>
LUMALANE_INLINE void with_adjustment(Run run) {
    const adjustment current = current_adjustment();
    if (current.neutral())
        run(as_they_are{});
    else
        run(adjust{current});
}

} // namespace lumalane::LUMALANE_LANES
