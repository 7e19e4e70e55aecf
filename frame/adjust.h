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
//
// `gentle` gains are those up to 128, with which x * g + 32 stays within 15 bits and a rounded
// multiplication does the gain at once: (64 x * 8 g) / 2^15.
template <bool gentle>
struct adjust {
    static constexpr bool is_stage = true;
    static constexpr int bias = 0x7fff - 255;

    adjustment by;

    LUMALANE_INLINE explicit adjust(const adjustment &current)
        : by{biased(current.y), biased(current.u), biased(current.v)} {}

    template <int n>
    LUMALANE_INLINE chroma_samples<n, bias> chroma(chroma_samples<n> samples) const {
        if constexpr (gentle)
            return {clamped(scaled(shift_left<6>(samples.u), by.u), by.u),
                    clamped(scaled(shift_left<6>(samples.v), by.v), by.v)};
        else
            return {clamped(amplified(samples.u, by.u), by.u),
                    clamped(amplified(samples.v, by.v), by.v)};
    }

    template <int n, class Shared>
    LUMALANE_INLINE luma_samples<n / 2, bias> luma(bytes<n> samples, const Shared &) const {
        if constexpr (gentle)
            return {clamped(scaled(even_times<64>(samples), by.y), by.y),
                    clamped(scaled(odd_times<64>(samples), by.y), by.y)};
        else
            return {clamped(amplified(even(samples), by.y), by.y),
                    clamped(amplified(odd(samples), by.y), by.y)};
    }

private:
    LUMALANE_INLINE static plane_adjustment biased(plane_adjustment plane) {
        const int offset = plane.offset < -1023 ? -1023 : plane.offset > 255 ? 255 : plane.offset;
        return {plane.gain, static_cast<short>(offset + bias)};
    }

    template <int n>
    LUMALANE_INLINE static words<n> scaled(words<n> x_times_64, plane_adjustment plane) {
        return multiply_rounded(x_times_64, fill_words<n>(8 * plane.gain));
    }

    template <int n>
    LUMALANE_INLINE static words<n> clamped(words<n> amplified, plane_adjustment plane) {
        return maximum(add_saturate(amplified, fill_words<n>(plane.offset)), fill_words<n>(bias));
    }
};

// Runs `run` with the adjustment in force as a stage; with none where it is neutral, which gives
// the same bytes at the price of the plain function.
template <class Run>
LUMALANE_INLINE void with_adjustment(Run run) {
    const adjustment current = current_adjustment();
    if (current.neutral())
        return run(as_they_are{});
    if constexpr (multiplies_rounded)
        if (current.gains_within(0, 128))
            return run(adjust<true>{current});
    run(adjust<false>{current});
}

} // namespace lumalane::LUMALANE_LANES
