// The YUV-to-RGB kernel: ITU-R BT.601, studio range to full range, in truncated 16-bit products.
#pragma once

#include "frame/samples.h"

namespace lumalane::LUMALANE_LANES {

// What the chroma samples contribute to the channels of every pixel that they serve.
template <int n>
struct chroma_terms {
    words<n> red, green, blue; // green is to be subtracted
};

// Channels of 2n pixels, split as narrow_saturate(even, odd) leaves them.
template <int n, pairs order = pairs::in_order>
struct rgb_pixels {
    bytes<2 * n> red, green, blue;
};

struct to_rgb {
    static constexpr bool is_part = true;

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
    LUMALANE_INLINE chroma_terms<n> chroma(chroma_samples<n, bias> samples) const {
        const words<n> u = subtract(samples.u, fill_words<n>(128 + bias));
        const words<n> v = subtract(samples.v, fill_words<n>(128 + bias));
        return terms(shift_left<3>(u), shift_left<2>(v));
    }

    template <int n>
    LUMALANE_INLINE chroma_terms<n / 2> chroma(packed_pixels<n> samples) const {
        return terms(subtract(odd_times<8>(samples.even), fill_words<n / 2>(8 * 128)),
                     subtract(odd_times<4>(samples.odd), fill_words<n / 2>(4 * 128)));
    }

    template <int n>
    LUMALANE_INLINE rgb_pixels<n> luma(bytes<2 * n> samples, const chroma_terms<n> &terms) const {
        return sums<pairs::in_order>(term(even_times<4>(samples)), term(odd_times<4>(samples)),
                                     terms);
    }

    template <int n>
    LUMALANE_INLINE rgb_pixels<n / 2, packed_order> luma(packed_pixels<n> samples,
                                                         const chroma_terms<n / 2> &terms) const {
        return sums<packed_order>(term(even_times<4>(samples.even)),
                                  term(even_times<4>(samples.odd)), terms);
    }

    template <int n, int bias, pairs order>
    LUMALANE_INLINE rgb_pixels<n, order> luma(luma_samples<n, bias, order> samples,
                                              const chroma_terms<n> &terms) const {
        // The same product as term() makes, without the shift: 4 times y_to_all is 1.0 and a rest
        // in 16-bit fractions.
        const auto term = [](words<n> biased) {
            const words<n> y = subtract(biased, fill_words<n>(16 + bias));
            return add(y, multiply_high(y, fill_words<n>(4 * y_to_all - 65536)));
        };
        return sums<order>(term(samples.even), term(samples.odd), terms);
    }

private:
    template <int n>
    LUMALANE_INLINE static chroma_terms<n> terms(words<n> u_times_8, words<n> v_times_4) {
        // Sums of terms stay far from the ends of 16 bits: in which order they are added, and
        // whether with saturation, shows nowhere.
        return {multiply_high(v_times_4, fill_words<n>(v_to_red)),
                add(multiply_high(u_times_8, fill_words<n>(u_to_green)),
                    multiply_high(v_times_4, fill_words<n>(v_to_green))),
                multiply_high(u_times_8, fill_words<n>(u_to_blue))};
    }

    template <int n>
    LUMALANE_INLINE static words<n> term(words<n> y_times_4) {
        return multiply_high(subtract(y_times_4, fill_words<n>(4 * 16)), fill_words<n>(y_to_all));
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

} // namespace lumalane::LUMALANE_LANES
