// The YUV-to-RGB kernel: ITU-R BT.601, studio range to full range, in truncated 16-bit products.
#pragma once

#include "rows/row.h"

namespace lumalane::LUMALANE_TARGET_NAME {

// What the chroma samples contribute to the channels of every pixel that they serve.
template <int n>
struct chroma_terms {
    words<n> red, green, blue; // green is to be subtracted
};

// Samples of U and V, and luma of 2n pixels, even and odd ones apart: with a bias if they come out
// of an adjustment.
template <int n, int bias = 0>
struct chroma_words {
    words<n> u, v;
};

template <int n, int bias, pairs order = pairs::in_order>
struct luma_words {
    words<n> even, odd;
};

// Channels of 2n pixels, even and odd ones apart as narrow_saturate(even, odd) leaves them.
template <int n, pairs order = pairs::in_order>
struct rgb_pixels {
    bytes<2 * n> red, green, blue;
};

struct to_rgb {
    // Where products are doubled, half of everything is multiplied.
    static constexpr int half = doubles_products ? 2 : 1;

    // Coefficients as 16-bit fractions of the shifted samples.
    static constexpr int y_to_all = 19071;   // 1.164 of Y - 16, shifted left by 2
    static constexpr int v_to_red = 26149;   // 1.596 of V - 128, shifted left by 2
    static constexpr int u_to_green = 3204;  // 0.391 of U - 128, shifted left by 3
    static constexpr int v_to_green = 13321; // 0.813 of V - 128, shifted left by 2
    static constexpr int u_to_blue = 16532;  // 2.018 of U - 128, shifted left by 3

    // One shift of U and one of V serve all: the manual's 25625 of U - 128, not shifted, and 26641
    // of V - 128, shifted left by 1, make the same products.
    static constexpr bool green_is_as_promised() {
        for (int c = -128; c < 128; ++c)
            if (c * 8 * u_to_green >> 16 != c * 25625 >> 16 ||
                c * 4 * v_to_green >> 16 != c * 2 * 26641 >> 16)
                return false;
        return true;
    }

    template <int n, int bias>
    LUMALANE_INLINE static chroma_terms<n> chroma(chroma_words<n, bias> samples) {
        constexpr int u_shift = doubles_products ? 2 : 3, v_shift = doubles_products ? 1 : 2;
        return terms(shift_left<u_shift>(subtract(samples.u, fill_words<n>(128 + bias))),
                     shift_left<v_shift>(subtract(samples.v, fill_words<n>(128 + bias))));
    }

    template <int n>
    LUMALANE_INLINE static chroma_terms<n / 2> chroma(packed_pixels<n> samples) {
        return terms(subtract(odd_times<8 / half>(samples.even), fill_words<n / 2>(8 / half * 128)),
                     subtract(odd_times<4 / half>(samples.odd), fill_words<n / 2>(4 / half * 128)));
    }

    template <int n>
    LUMALANE_INLINE static rgb_pixels<n> pixels(bytes<2 * n> samples,
                                                const chroma_terms<n> &terms) {
        return sums<pairs::in_order>(term(even_times<4 / half>(samples)),
                                     term(odd_times<4 / half>(samples)), terms);
    }

    template <int n>
    LUMALANE_INLINE static rgb_pixels<n / 2, packed_order>
    pixels(packed_pixels<n> samples, const chroma_terms<n / 2> &terms) {
        return sums<packed_order>(term(even_times<4 / half>(samples.even)),
                                  term(even_times<4 / half>(samples.odd)), terms);
    }

    template <int n, int bias, pairs order>
    LUMALANE_INLINE static rgb_pixels<n, order> pixels(luma_words<n, bias, order> samples,
                                                       const chroma_terms<n> &terms) {
        // The same product as term() makes, without the shift: 4 times y_to_all is 1.0 and a rest
        // in 16-bit fractions.
        const auto term = [](words<n> biased) LUMALANE_INLINE_LAMBDA {
            const words<n> y = subtract(biased, fill_words<n>(16 + bias));
            return add(y, product(y, (4 * y_to_all - 65536) / half));
        };
        return sums<order>(term(samples.even), term(samples.odd), terms);
    }

private:
    // Of samples that were multiplied by 1 / half.
    template <int n>
    LUMALANE_INLINE static words<n> product(words<n> samples, int factor) {
        if constexpr (doubles_products)
            return multiply_high_doubled(samples, fill_words<n>(factor));
        else
            return multiply_high(samples, fill_words<n>(factor));
    }

    template <int n>
    LUMALANE_INLINE static chroma_terms<n> terms(words<n> u_times_8, words<n> v_times_4) {
        // Sums of terms stay far from the ends of 16 bits: in which order they are added, and
        // whether with saturation, shows nowhere.
        return {product(v_times_4, v_to_red),
                add(product(u_times_8, u_to_green), product(v_times_4, v_to_green)),
                product(u_times_8, u_to_blue)};
    }

    template <int n>
    LUMALANE_INLINE static words<n> term(words<n> y_times_4) {
        return product(subtract(y_times_4, fill_words<n>(4 / half * 16)), y_to_all);
    }

    template <pairs order, int n>
    LUMALANE_INLINE static rgb_pixels<n, order> sums(words<n> even, words<n> odd,
                                                     const chroma_terms<n> &terms) {
        return {narrow_saturate(add(even, terms.red), add(odd, terms.red)),
                narrow_saturate(subtract(even, terms.green), subtract(odd, terms.green)),
                narrow_saturate(add(even, terms.blue), add(odd, terms.blue))};
    }
};

static_assert(to_rgb::green_is_as_promised());

// ---- Surfaces ----------------------------------------------------------------------------------
//
// The pixels of a group in memory order, and in how many vectors: samples are permuted for that
// before they are converted.

struct rgb32 {
    static constexpr int bytes_per_pixel = 4, vectors_per_group = 4;
    static constexpr bool is_rare = false;

    template <int n, pairs order>
    LUMALANE_INLINE static auto interleaved(rgb_pixels<n, order> p) {
        return interleave_channels_padded<order>(p.blue, p.green, p.red);
    }
};

struct rgb24 {
    static constexpr int bytes_per_pixel = 3, vectors_per_group = 3;
    static constexpr bool is_rare = false;

    template <int n, pairs order>
    LUMALANE_INLINE static auto interleaved(rgb_pixels<n, order> p) {
        return interleave_channels<order>(p.blue, p.green, p.red);
    }
};

// For how many vectors n pixels are to be permuted.
template <class Pixels, int n>
inline constexpr int permuted_for =
    Pixels::vectors_per_group == 4 ? padded_parts<n> : Pixels::vectors_per_group;

// Upper bits of red, green and blue from bit 15 down, then 16 - red - green - blue zero bits.
template <int red, int green, int blue>
struct rgb16 {
    static constexpr int bytes_per_pixel = 2, vectors_per_group = 2;
    static constexpr bool is_rare = false;

    template <int n, pairs order>
    LUMALANE_INLINE static auto interleaved(rgb_pixels<n, order> p) {
        // Green lies across the two bytes of the pixel.
        const auto upper_bits = [](bytes<2 * n> channel, int bits) {
            return channel & fill_bytes<2 * n>(0xff00 >> bits);
        };
        const bytes<2 *n> g = upper_bits(p.green, green);
        const bytes<2 *n> high = upper_bits(p.red, red) | shift_right_logical<red>(g);
        const bytes<2 *n> low =
            shift_left<8 - red>(g) | shift_right_logical<red + green - 8>(upper_bits(p.blue, blue));
        return interleave_channels<order>(low, high);
    }
};

// The layouts that are rare, in one kernel: only the packing differs.
struct rare_rgb16 {
    static constexpr int bytes_per_pixel = 2, vectors_per_group = 2;
    static constexpr bool is_rare = true;

    enum { rgb_555, rgb_664, rgb_655 } layout;

    template <int n, pairs order>
    LUMALANE_INLINE auto interleaved(rgb_pixels<n, order> p) const {
        switch (layout) {
        case rgb_555:
            return rgb16<5, 5, 5>::interleaved(p);
        case rgb_664:
            return rgb16<6, 6, 4>::interleaved(p);
        default:
            return rgb16<6, 5, 5>::interleaved(p);
        }
    }
};

} // namespace lumalane::LUMALANE_TARGET_NAME
