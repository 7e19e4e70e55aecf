// The adjustment as lane arithmetic.
#pragma once

#include "frame/adjustment.h"
#include "frame/samples.h"

namespace lumalane::LUMALANE_LANES {

// The stage that adjusts every sample.
//
// With `gentle` gains, 33 to 128, x * g + 32 stays within 15 bits, and one multiplication does the
// gain at once: a rounded one, (64 x * 8 g) / 2^15, or the upper half of one in 8.8 fixed point,
// (x + f) * 4 g / 2^8, where the fraction f, 32 / g rounded up to 8 bits, makes the rounding.
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
        const words<n / 2> offsets = fill_word_pairs<n / 2>(effect(by.u), effect(by.v));
        return {offset(samples.uv, by.u, offsets)}; // U and V have the same gain
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

    template <int n>
    LUMALANE_INLINE chroma_samples<n / 2, bias> chroma(packed_pixels<n> samples) const {
        return {clamped(amplified_odd(samples.even, by.u), by.u),
                clamped(amplified_odd(samples.odd, by.v), by.v)};
    }

    template <int n, class Shared>
    LUMALANE_INLINE luma_samples<n / 2, bias> luma(bytes<n> samples, const Shared &) const {
        return {clamped(amplified_even(samples, by.y), by.y),
                clamped(amplified_odd(samples, by.y), by.y)};
    }

    template <int n, class Shared>
    LUMALANE_INLINE luma_samples<n / 2, bias, packed_order> luma(packed_pixels<n> samples,
                                                                 const Shared &) const {
        return {clamped(amplified_even(samples.even, by.y), by.y),
                clamped(amplified_even(samples.odd, by.y), by.y)};
    }

private:
    template <int n>
    LUMALANE_INLINE static bytes<n> plane(bytes<n> samples, plane_adjustment of) {
        if constexpr (n == 8)
            return narrow_saturate(adjusted(widen(samples), of));
        else
            return offset(samples, of, fill_words<n / 2>(effect(of)));
    }

    // All samples with the gain of one plane.
    template <int n>
    LUMALANE_INLINE static bytes<n> offset(bytes<n> samples, plane_adjustment of,
                                           words<n / 2> offsets) {
        if constexpr (gentle) {
            const bytes<n> fraction = fill_bytes<n>((8192 + of.gain - 1) / of.gain);
            const words<n / 2> gain = fill_words<n / 2>(4 * of.gain);
            const auto half = [=](words<n / 2> x) {
                return add(multiply_high_unsigned(x, gain), offsets);
            };
            return narrow_saturate(half(widen_low(samples, fraction)),
                                   half(widen_high(samples, fraction)));
        } else {
            return narrow_saturate(add(amplified(widen_low(samples), of), offsets),
                                   add(amplified(widen_high(samples), of), offsets));
        }
    }

    // The offset. What is amplified is at most 1023: beyond -1023..255 nothing more changes.
    LUMALANE_INLINE static int effect(plane_adjustment of) {
        return of.offset < -1023 ? -1023 : of.offset > 255 ? 255 : of.offset;
    }

    template <int n>
    LUMALANE_INLINE static words<n> scaled(words<n> x_times_64, plane_adjustment of) {
        return multiply_rounded(x_times_64, fill_words<n>(8 * of.gain));
    }

    // Gain only: low16(x * g) + 32 with signed saturation, >> 6 with zeros from the left. At most
    // 1023.
    template <int n>
    LUMALANE_INLINE static words<n> amplified(words<n> x, plane_adjustment of) {
        if constexpr (gentle && multiplies_rounded)
            return scaled(shift_left<6>(x), of);
        const words<n> product = multiply_low(x, fill_words<n>(of.gain));
        return shift_right_logical<6>(add_saturate(product, fill_words<n>(32)));
    }

    template <int n>
    LUMALANE_INLINE static words<n / 2> amplified_even(bytes<n> samples, plane_adjustment of) {
        if constexpr (gentle && multiplies_rounded)
            return scaled(even_times<64>(samples), of);
        else
            return amplified(even(samples), of);
    }

    template <int n>
    LUMALANE_INLINE static words<n / 2> amplified_odd(bytes<n> samples, plane_adjustment of) {
        if constexpr (gentle && multiplies_rounded)
            return scaled(odd_times<64>(samples), of);
        else
            return amplified(odd(samples), of);
    }

    // For narrow_saturate(), which ends the formula.
    template <int n>
    LUMALANE_INLINE static words<n> adjusted(words<n> x, plane_adjustment of) {
        return add(amplified(x, of), fill_words<n>(effect(of)));
    }

    // U and V have the same gain.
    template <int n>
    LUMALANE_INLINE words<n> adjusted_pairs(words<n> uv) const {
        return add(amplified(uv, by.u), fill_word_pairs<n>(effect(by.u), effect(by.v)));
    }

    template <int n>
    LUMALANE_INLINE static words<n> clamped(words<n> amplified, plane_adjustment of) {
        return maximum(add_saturate(amplified, fill_words<n>(effect(of) + bias)),
                       fill_words<n>(bias));
    }
};

// Runs `run` with an adjustment as a stage; with none where it is neutral, which gives the same
// bytes at the price of the plain function.
template <class Run>
LUMALANE_INLINE void with_adjustment(const adjustment &by, Run run) {
    if (by.neutral())
        return run(as_they_are{});
    if (by.gains_within(33, 128))
        return run(adjust<true>{by});
    run(adjust<false>{by});
}

// The same with the adjustment in force.
template <class Run>
LUMALANE_INLINE void with_adjustment(Run run) {
    with_adjustment(current_adjustment(), run);
}

} // namespace lumalane::LUMALANE_LANES
