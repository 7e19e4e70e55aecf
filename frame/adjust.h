// The adjustment as lane arithmetic.
#pragma once

#include "frame/adjustment.h"
#include "frame/samples.h"

namespace lumalane::LUMALANE_LANES {

// All lanes or the first half of them.
template <int n, int all>
LUMALANE_INLINE bytes<n> first_lanes(bytes<all> a) {
    if constexpr (n == all)
        return a;
    else
        return lower_half(a);
}

// A word in every lane, for vectors of any width.
struct filled_words {
    words<widest / 2> all;

    explicit filled_words(int value) : all(fill_words<widest / 2>(value)) {}
    filled_words(int even, int odd) : all(fill_word_pairs<widest / 2>(even, odd)) {}

    template <int n>
    LUMALANE_INLINE words<n> of() const {
        return as_words(first_lanes<2 * n>(as_bytes(all)));
    }
};

// The adjustment of one plane, as constants in vectors: loops over short runs would take longer to
// make them than to use them.
//
// With `gentle` gains, 33 to 128, x * g + 32 stays within 15 bits, and one multiplication does the
// gain at once: a rounded one, (64 x * 8 g) / 2^15 or (16 x * 32 g) / 2^15, or the upper half of
// one in 8.8 fixed point, (x + f) * 4 g / 2^8, where the fraction f, 32 / g rounded up to 8 bits,
// makes the rounding.
template <bool gentle>
class adjust_plane {
public:
    // What clamped() adds to samples.
    static constexpr int bias = 0x7fff - 255;

    explicit adjust_plane(plane_adjustment by)
        : gain(rounded ? 8 * by.gain : by.gain), gain_16(32 * by.gain), gain_256(4 * by.gain),
          fraction(fill_bytes<widest>(gentle ? (8192 + by.gain - 1) / by.gain : 0)),
          offset(effect(by)), biased_offset(effect(by) + bias) {}

    // The offset. What is amplified is at most 1023: beyond -1023..255 nothing more changes.
    LUMALANE_INLINE static int effect(plane_adjustment by) {
        return by.offset < -1023 ? -1023 : by.offset > 255 ? 255 : by.offset;
    }

    template <int n>
    LUMALANE_INLINE bytes<n> operator()(bytes<n> samples) const {
        if constexpr (n == 8)
            return narrow_saturate(adjusted(widen(samples)));
        else
            return with_offset(samples, offset);
    }

    // Of a blend.
    template <int n>
    LUMALANE_INLINE bytes<n> operator()(sixteenths<n> samples) const {
        return narrowed(samples, [&]<int lanes>(words<lanes> half) LUMALANE_INLINE_LAMBDA {
            if constexpr (rounded)
                return add(multiply_rounded(half & fill_words<lanes>(0xfff0),
                                            gain_16.template of<lanes>()),
                           offset.template of<lanes>());
            else
                return adjusted(shift_right_logical<4>(half));
        });
    }

    // With other offsets.
    template <int n>
    LUMALANE_INLINE bytes<n> with_offset(bytes<n> samples, const filled_words &offsets) const {
        const auto half = [&](words<n / 2> x) LUMALANE_INLINE_LAMBDA {
            if constexpr (gentle)
                return add(multiply_high_unsigned(x, gain_256.template of<n / 2>()),
                           offsets.template of<n / 2>());
            else
                return add(amplified(x), offsets.template of<n / 2>());
        };
        if constexpr (gentle) {
            const bytes<n> f = first_lanes<n>(fraction);
            return narrow_saturate(half(widen_low(samples, f)), half(widen_high(samples, f)));
        } else {
            return narrow_saturate(half(widen_low(samples)), half(widen_high(samples)));
        }
    }

    // Gain only: low16(x * g) + 32 with signed saturation, >> 6 with zeros from the left. At most
    // 1023.
    template <int n>
    LUMALANE_INLINE words<n> amplified(words<n> x) const {
        if constexpr (rounded) {
            return scaled(shift_left<6>(x));
        } else {
            const words<n> product = multiply_low(x, gain.template of<n>());
            return shift_right_logical<6>(add_saturate(product, fill_words<n>(32)));
        }
    }

    template <int n>
    LUMALANE_INLINE words<n / 2> amplified_even(bytes<n> samples) const {
        if constexpr (rounded)
            return scaled(even_times<64>(samples));
        else
            return amplified(even(samples));
    }

    template <int n>
    LUMALANE_INLINE words<n / 2> amplified_odd(bytes<n> samples) const {
        if constexpr (rounded)
            return scaled(odd_times<64>(samples));
        else
            return amplified(odd(samples));
    }

    // For narrow_saturate(), which ends the formula.
    template <int n>
    LUMALANE_INLINE words<n> adjusted(words<n> x) const {
        return add(amplified(x), offset.template of<n>());
    }

    // Amplified samples with the offset, clamped to 0..255 and with the bias: two operations
    // instead of three, since 255 + bias is where signed addition saturates.
    template <int n>
    LUMALANE_INLINE words<n> clamped(words<n> amplified) const {
        return maximum(add_saturate(amplified, biased_offset.template of<n>()),
                       fill_words<n>(bias));
    }

private:
    static constexpr bool rounded = gentle && multiplies_rounded;

    template <int n>
    LUMALANE_INLINE words<n> scaled(words<n> x_times_64) const {
        return multiply_rounded(x_times_64, gain.template of<n>());
    }

    filled_words gain;     // of samples, or for rounded multiplications of samples times 64
    filled_words gain_16;  // of samples times 16, for rounded multiplications
    filled_words gain_256; // of samples in 8.8 fixed point
    bytes<widest> fraction;
    filled_words offset, biased_offset;
};

// The stage that adjusts every sample.
template <bool gentle>
struct adjust {
    static constexpr bool is_part = true;

    struct planes {
        adjust_plane<gentle> y, u, v;
        filled_words uv_offsets;

        explicit planes(const adjustment &by)
            : y(by.y), u(by.u), v(by.v),
              uv_offsets(adjust_plane<gentle>::effect(by.u), adjust_plane<gentle>::effect(by.v)) {}
    };

    const planes &of;

    // Runs `run(stage)` with a stage whose constants can stay in registers: those of this one might
    // be where a loop stores its pixels, for all that the compiler knows.
    template <class Run>
    LUMALANE_INLINE void in_registers(const Run &run) const {
        const planes copies = of;
        run(adjust{copies});
    }

    // For planes by themselves. (Copies, for the same reason.)
    LUMALANE_INLINE adjust_plane<gentle> y() const { return of.y; }
    LUMALANE_INLINE adjust_plane<gentle> u() const { return of.u; }
    LUMALANE_INLINE adjust_plane<gentle> v() const { return of.v; }

    // ---- On the way to YUY2. U and V have the same gain.

    template <int n>
    LUMALANE_INLINE chroma_pairs<n> chroma(chroma_pairs<n> samples) const {
        return {of.u.with_offset(samples.uv, of.uv_offsets)};
    }

    template <int n>
    LUMALANE_INLINE bytes<n> luma(bytes<n> samples, const chroma_pairs<n> &) const {
        return of.y(samples);
    }

    template <int n>
    LUMALANE_INLINE wide_chroma_pairs<n> chroma(wide_chroma_pairs<n> samples) const {
        return {add(of.u.amplified(samples.uv), of.uv_offsets.template of<n>())};
    }

    template <int n>
    LUMALANE_INLINE words<n> luma(words<n> samples, const wide_chroma_pairs<n> &) const {
        return of.y.adjusted(samples);
    }

    template <int n>
    LUMALANE_INLINE wide_chroma_pairs<n / 2> chroma(packed_samples<n> samples) const {
        return chroma(wide_chroma_pairs<n / 2>{odd(samples.all)});
    }

    template <int n>
    LUMALANE_INLINE words<n / 2> luma(packed_samples<n> samples,
                                      const wide_chroma_pairs<n / 2> &) const {
        return of.y.adjusted(even(samples.all));
    }

    template <int n>
    LUMALANE_INLINE no_chroma<n> chroma(no_chroma<n> none) const {
        return none;
    }

    // ---- For the conversion to RGB, which wants 0..255 in words.

    static constexpr int bias = adjust_plane<gentle>::bias;

    template <int n>
    LUMALANE_INLINE chroma_samples<n, bias> chroma(chroma_samples<n> samples) const {
        return {of.u.clamped(of.u.amplified(samples.u)), of.v.clamped(of.v.amplified(samples.v))};
    }

    template <int n>
    LUMALANE_INLINE chroma_samples<n / 2, bias> chroma(packed_pixels<n> samples) const {
        return {of.u.clamped(of.u.amplified_odd(samples.even)),
                of.v.clamped(of.v.amplified_odd(samples.odd))};
    }

    template <int n, class Shared>
    LUMALANE_INLINE luma_samples<n / 2, bias> luma(bytes<n> samples, const Shared &) const {
        return {of.y.clamped(of.y.amplified_even(samples)),
                of.y.clamped(of.y.amplified_odd(samples))};
    }

    template <int n, class Shared>
    LUMALANE_INLINE luma_samples<n / 2, bias, packed_order> luma(packed_pixels<n> samples,
                                                                 const Shared &) const {
        return {of.y.clamped(of.y.amplified_even(samples.even)),
                of.y.clamped(of.y.amplified_even(samples.odd))};
    }
};

// Runs `run` with an adjustment as a stage; with none where it is neutral, which gives the same
// bytes at the price of the plain function.
template <class Run>
LUMALANE_INLINE void with_adjustment(const adjustment &by, Run run) {
    if (by.neutral())
        return run(as_they_are{});
    if (by.gains_within(33, 128)) {
        const adjust<true>::planes planes(by);
        return adjust<true>{planes}.in_registers(run);
    }
    const adjust<false>::planes planes(by);
    adjust<false>{planes}.in_registers(run);
}

// The same with the adjustment in force.
template <class Run>
LUMALANE_INLINE void with_adjustment(Run run) {
    with_adjustment(current_adjustment(), run);
}

} // namespace lumalane::LUMALANE_LANES
