// The adjustment as vector arithmetic.
#pragma once

#include "rows/rgb.h"

namespace lumalane::LUMALANE_TARGET_NAME {

// The first lanes of a vector, or all of them.
template <int n, int all>
LUMALANE_INLINE bytes<n> first_lanes(bytes<all> a) {
    if constexpr (n == all)
        return a;
    else
        return first_lanes<n>(lower_half(a));
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

// `map` of the words of a blend, clamped to bytes.
template <int n, class Map>
LUMALANE_INLINE bytes<n> narrowed(sixteenths<n> a, const Map &map) {
    if constexpr (n == 8)
        return narrow_saturate(map(a.low));
    else
        return narrow_saturate(map(a.low), map(a.high));
}

// The samples of a plane, or of a blend, as they are.
struct unadjusted_plane {
    static constexpr bool adjusts = false;

    explicit constexpr unadjusted_plane(const plane_adjustment * = nullptr) {}

    template <int n>
    LUMALANE_INLINE bytes<n> operator()(bytes<n> samples) const {
        return samples;
    }

    // A blend is truncated.
    template <int n>
    LUMALANE_INLINE bytes<n> operator()(sixteenths<n> samples) const {
        return narrowed(
            samples, [](auto half) LUMALANE_INLINE_LAMBDA { return shift_right_logical<4>(half); });
    }
};

// The adjustment of one plane, its constants in vectors.
//
// Where the product fits 15 bits one multiplication does the gain at once: a rounded one,
// (64 x * 8 g) / 2^15 or (16 x * 32 g) / 2^15, or the upper half of one in 8.8 fixed point,
// (x + f) * 4 g / 2^8, where the fraction f makes the rounding. Or bytes are multiplied as they are.
template <bool product_fits>
class adjusted_plane {
public:
    static constexpr bool adjusts = true;

    explicit adjusted_plane(const plane_adjustment *by)
        : offset(by->offset), gain(rounded ? 8 * by->gain : by->gain), gain_16(32 * by->gain),
          gain_256(4 * by->gain), fraction(fill_bytes<widest>(by->rounding)),
          gain_bytes(fill_bytes<widest>(by->gain)), byte_offset(of_bytes(by->offset)),
          biased_offset(by->offset + bias) {}

    template <int n>
    LUMALANE_INLINE bytes<n> operator()(bytes<n> samples) const {
        return with_offset(samples, byte_offset);
    }

    // An offset as with_offset() wants it. (Below -512 nothing is left of any sample.)
    static constexpr int of_bytes(int offset) {
        return !product_fits || !amplifies_bytes ? offset : offset < -512 ? -32768 : 64 * offset;
    }

    // With other offsets.
    template <int n>
    LUMALANE_INLINE bytes<n> with_offset(bytes<n> samples, const filled_words &offsets) const {
        if constexpr (n == 8) {
            return lower_half(with_offset(extend(samples), offsets));
        } else if constexpr (product_fits && amplifies_bytes) {
            return amplify(samples, first_lanes<n>(gain_bytes), offsets.template of<n / 2>());
        } else if constexpr (product_fits) {
            const auto half = [&](words<n / 2> x) LUMALANE_INLINE_LAMBDA {
                return add(multiply_high_unsigned(x, gain_256.template of<n / 2>()),
                           offsets.template of<n / 2>());
            };
            const bytes<n> f = first_lanes<n>(fraction);
            return narrow_saturate(half(widen_low(samples, f)), half(widen_high(samples, f)));
        } else {
            const auto half = [&](words<n / 2> x) LUMALANE_INLINE_LAMBDA {
                return add(amplified(x), offsets.template of<n / 2>());
            };
            return narrow_saturate(half(widen_low(samples)), half(widen_high(samples)));
        }
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

    // Gain only: low16(x * g) + 32 with signed saturation, >> 6 with zeros from the left. At most
    // 1023.
    template <int n>
    LUMALANE_INLINE words<n> amplified(words<n> x) const {
        if constexpr (rounded) {
            return multiply_rounded(shift_left<6>(x), gain.template of<n>());
        } else {
            const words<n> product = multiply_low(x, gain.template of<n>());
            return shift_right_logical<6>(add_saturate(product, fill_words<n>(32)));
        }
    }

    // The same of every second sample.

    template <int n>
    LUMALANE_INLINE words<n / 2> amplified_even(bytes<n> samples) const {
        if constexpr (rounded)
            return multiply_rounded(even_times<64>(samples), gain.template of<n / 2>());
        else if constexpr (product_fits)
            return amplified_with_fraction(shift_left<8>(as_words(samples)));
        else
            return amplified(even(samples));
    }

    template <int n>
    LUMALANE_INLINE words<n / 2> amplified_odd(bytes<n> samples) const {
        if constexpr (rounded)
            return multiply_rounded(odd_times<64>(samples), gain.template of<n / 2>());
        else if constexpr (product_fits)
            return amplified_with_fraction(as_words(samples) & fill_words<n / 2>(0xff00));
        else
            return amplified(odd(samples));
    }

    // For narrow_saturate(), which ends the formula.
    template <int n>
    LUMALANE_INLINE words<n> adjusted(words<n> x) const {
        return add(amplified(x), offset.template of<n>());
    }

    // Amplified samples with the offset, clamped to 0..255 and with a bias: two operations instead
    // of three, since 255 + bias is where signed addition saturates.
    static constexpr int bias = 0x7fff - 255;

    template <int n>
    LUMALANE_INLINE words<n> clamped(words<n> amplified) const {
        return maximum(add_saturate(amplified, biased_offset.template of<n>()),
                       fill_words<n>(bias));
    }

    filled_words offset;

private:
    static constexpr bool rounded = product_fits && multiplies_rounded;

    // Of samples times 256.
    template <int n>
    LUMALANE_INLINE words<n> amplified_with_fraction(words<n> x) const {
        const words<n> fractions = shift_right_logical<8>(as_words(first_lanes<2 * n>(fraction)));
        return multiply_high_unsigned(x | fractions, gain_256.template of<n>());
    }

    filled_words gain;     // of samples, or for rounded multiplications of samples times 64
    filled_words gain_16;  // of samples times 16, for rounded multiplications
    filled_words gain_256; // of samples in 8.8 fixed point
    bytes<widest> fraction, gain_bytes;
    filled_words byte_offset, biased_offset;
};

// Samples as they are, on their way to a surface. (See adjusted_samples.)
struct unadjusted_samples {
    static constexpr bool adjusts = false, is_rare = false;

    explicit constexpr unadjusted_samples(const adjustment *) {}

    template <class Samples>
    LUMALANE_INLINE static Samples luma(Samples samples) {
        return samples;
    }

    template <class Samples>
    LUMALANE_INLINE static Samples chroma(Samples samples) {
        return samples;
    }

    template <class Samples>
    LUMALANE_INLINE static Samples rgb_luma(Samples samples) {
        return samples;
    }

    template <class Samples>
    LUMALANE_INLINE static Samples rgb_chroma(Samples samples) {
        return samples;
    }
};

// The adjustment of a picture's samples on their way to a surface.
template <bool product_fits>
class adjusted_samples {
    using plane = adjusted_plane<product_fits>;

public:
    static constexpr bool adjusts = true, is_rare = !product_fits;

    explicit adjusted_samples(const adjustment *by)
        : y(&by->y), u(&by->u), v(&by->v), uv_offsets(by->u.offset, by->v.offset),
          uv_byte_offsets(plane::of_bytes(by->u.offset), plane::of_bytes(by->v.offset)) {}

    // ---- To YUY2: luma, and U and V in turn, in bytes or in words that are narrowed later. U and V
    // have the same gain.

    template <int n>
    LUMALANE_INLINE bytes<n> luma(bytes<n> samples) const {
        return y(samples);
    }

    template <int n>
    LUMALANE_INLINE words<n> luma(words<n> samples) const {
        return y.adjusted(samples);
    }

    template <int n>
    LUMALANE_INLINE bytes<n> chroma(bytes<n> samples) const {
        return u.with_offset(samples, uv_byte_offsets);
    }

    template <int n>
    LUMALANE_INLINE words<n> chroma(words<n> samples) const {
        return add(u.amplified(samples), uv_offsets.of<n>());
    }

    // Of packed samples.

    template <int n>
    LUMALANE_INLINE words<n / 2> even_luma(bytes<n> samples) const {
        return add(y.amplified_even(samples), y.offset.template of<n / 2>());
    }

    template <int n>
    LUMALANE_INLINE words<n / 2> odd_chroma(bytes<n> samples) const {
        return add(u.amplified_odd(samples), uv_offsets.of<n / 2>());
    }

    // ---- To RGB

    static constexpr int bias = plane::bias;

    template <int n>
    LUMALANE_INLINE luma_words<n / 2, bias> rgb_luma(bytes<n> samples) const {
        return {y.clamped(y.amplified_even(samples)), y.clamped(y.amplified_odd(samples))};
    }

    template <int n>
    LUMALANE_INLINE chroma_words<n, bias> rgb_chroma(chroma_words<n> samples) const {
        return {u.clamped(u.amplified(samples.u)), v.clamped(v.amplified(samples.v))};
    }

    template <int n>
    LUMALANE_INLINE luma_words<n / 2, bias, packed_order> rgb_luma(packed_pixels<n> samples) const {
        return {y.clamped(y.amplified_even(samples.even)),
                y.clamped(y.amplified_even(samples.odd))};
    }

    template <int n>
    LUMALANE_INLINE chroma_words<n / 2, bias> rgb_chroma(packed_pixels<n> samples) const {
        return {u.clamped(u.amplified_odd(samples.even)), v.clamped(v.amplified_odd(samples.odd))};
    }

private:
    plane y, u, v;
    filled_words uv_offsets, uv_byte_offsets;
};

// ---- Which of them ------------------------------------------------------------------------------

// Whether the loops for products of 15 bits serve. (Small code has those for all gains alone.)
LUMALANE_INLINE bool fits_15_bits(const plane_adjustment &by) {
    return !small_code && by.product_fits_15_bits;
}

LUMALANE_INLINE bool fits_15_bits(const adjustment &by) {
    return fits_15_bits(by.y) && fits_15_bits(by.u);
}

struct no_gain {
    using plane = unadjusted_plane;
    using samples = unadjusted_samples;
    static constexpr bool is_rare = samples::is_rare;
};

template <bool product_fits>
struct some_gain {
    using plane = adjusted_plane<product_fits>;
    using samples = adjusted_samples<product_fits>;
    static constexpr bool is_rare = samples::is_rare;
};

// Runs `run(gain)` with that of these that serves `by`; null: no gain.
template <class Adjustment, class Run>
LUMALANE_INLINE void with_gain(const Adjustment *by, const Run &run) {
    if (!by)
        run(no_gain{});
    else if (fits_15_bits(*by))
        run(some_gain<true>{});
    else
        run(some_gain<false>{});
}

// Runs `run(map)` with what adjusts the samples of a plane, or of a picture, as `by` tells.

template <class Run>
LUMALANE_INLINE void with_adjustment(const plane_adjustment *by, const Run &run) {
    with_gain(by, [&]<class Gain>(Gain) LUMALANE_INLINE_LAMBDA { run(typename Gain::plane(by)); });
}

template <class Run>
LUMALANE_INLINE void with_adjustment(const adjustment *by, const Run &run) {
    with_gain(by,
              [&]<class Gain>(Gain) LUMALANE_INLINE_LAMBDA { run(typename Gain::samples(by)); });
}

} // namespace lumalane::LUMALANE_TARGET_NAME
