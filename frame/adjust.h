// The adjustment as lane arithmetic.
#pragma once

#include "frame/adjustment.h"
#include "frame/samples.h"

namespace lumalane::LUMALANE_LANES {

// The stage that adjusts every sample.
//
// `gentle` gains are those up to 128, with which x * g + 32 stays within 15 bits and a rounded
// multiplication does the gain at once: (64 x * 8 g) / 2^15.
template <bool gentle>
struct adjust {
    static constexpr bool is_part = true;

    adjustment by;

    // ---- Planes by themselves.

    template <int n>
    LUMALANE_INLINE bytes<n> y(bytes<n> samples) const {
        return plane(samples, by.y);
    }
    template <int n>
    LUMALANE_INLINE bytes<n> u(bytes<n> samples) const {
        return plane(samples, by.u);
    }
    template <int n>
    LUMALANE_INLINE bytes<n> v(bytes<n> samples) const {
        return plane(samples, by.v);
    }

    // ---- On the way to YUY2.

    template <int n>
    LUMALANE_INLINE chroma_pairs<n> chroma(chroma_pairs<n> samples) const {
        return {narrow_saturate(adjusted_pairs(widen_low(samples.uv)),
                                adjusted_pairs(widen_high(samples.uv)))};
    }

    template <int n>
    LUMALANE_INLINE bytes<n> luma(bytes<n> samples, const chroma_pairs<n> &) const {
        return y(samples);
    }

    template <int n>
    LUMALANE_INLINE wide_chroma_pairs<n> chroma(wide_chroma_pairs<n> samples) const {
        return {adjusted_pairs(samples.uv)};
    }

    template <int n>
    LUMALANE_INLINE words<n> luma(words<n> samples, const wide_chroma_pairs<n> &) const {
        return adjusted(samples, by.y);
    }

    template <int n>
    LUMALANE_INLINE wide_chroma_pairs<n / 2> chroma(packed_samples<n> samples) const {
        return {adjusted_pairs(odd(samples.all))};
    }

    template <int n>
    LUMALANE_INLINE words<n / 2> luma(packed_samples<n> samples,
                                      const wide_chroma_pairs<n / 2> &) const {
        return adjusted(even(samples.all), by.y);
    }

    template <int n>
    LUMALANE_INLINE no_chroma<n> chroma(no_chroma<n> none) const {
        return none;
    }

    // ---- For the conversion to RGB, which wants 0..255 in words.
    //
    // Clamped in two operations instead of three by adding a bias together with the offset: 255 +
    // bias is where signed addition saturates, and the maximum with the bias is the other end.

    static constexpr int bias = 0x7fff - 255;

    template <int n>
    LUMALANE_INLINE chroma_samples<n, bias> chroma(chroma_samples<n> samples) const {
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
    template <int n>
    LUMALANE_INLINE static bytes<n> plane(bytes<n> samples, plane_adjustment of) {
        if constexpr (n == 8)
            return narrow_saturate(adjusted(widen(samples), of));
        else
            return narrow_saturate(adjusted(widen_low(samples), of),
                                   adjusted(widen_high(samples), of));
    }

    template <int n>
    LUMALANE_INLINE static words<n> scaled(words<n> x_times_64, plane_adjustment of) {
        return multiply_rounded(x_times_64, fill_words<n>(8 * of.gain));
    }

    // Gain only: low16(x * g) + 32 with signed saturation, >> 6 with zeros from the left. At most
    // 1023.
    template <int n>
    LUMALANE_INLINE static words<n> amplified(words<n> x, plane_adjustment of) {
        if constexpr (gentle)
            return scaled(shift_left<6>(x), of);
        const words<n> product = multiply_low(x, fill_words<n>(of.gain));
        return shift_right_logical<6>(add_saturate(product, fill_words<n>(32)));
    }

    // For narrow_saturate(), which ends the formula.
    template <int n>
    LUMALANE_INLINE static words<n> adjusted(words<n> x, plane_adjustment of) {
        return add_saturate(amplified(x, of), fill_words<n>(of.offset));
    }

    // U and V have the same gain.
    template <int n>
    LUMALANE_INLINE words<n> adjusted_pairs(words<n> uv) const {
        return add_saturate(amplified(uv, by.u), fill_word_pairs<n>(by.u.offset, by.v.offset));
    }

    // Offsets beyond -1023..255 change nothing more.
    template <int n>
    LUMALANE_INLINE static words<n> clamped(words<n> amplified, plane_adjustment of) {
        const int offset = of.offset < -1023 ? -1023 : of.offset > 255 ? 255 : of.offset;
        return maximum(add_saturate(amplified, fill_words<n>(offset + bias)), fill_words<n>(bias));
    }
};

// Runs `run` with an adjustment as a stage; with none where it is neutral, which gives the same
// bytes at the price of the plain function.
template <class Run>
LUMALANE_INLINE void with_adjustment(const adjustment &by, Run run) {
    if (by.neutral())
        return run(as_they_are{});
    if constexpr (multiplies_rounded)
        if (by.gains_within(0, 128))
            return run(adjust<true>{by});
    run(adjust<false>{by});
}

// The same with the adjustment in force.
template <class Run>
LUMALANE_INLINE void with_adjustment(Run run) {
    with_adjustment(current_adjustment(), run);
}

} // namespace lumalane::LUMALANE_LANES
