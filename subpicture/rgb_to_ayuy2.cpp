// Drawing surfaces to the colour planes of AYUY2 subpictures.
#include "frame/kernels.h"
#include "subpicture/rows.h"

namespace lumalane::LUMALANE_LANES {

namespace {

// ---- Surfaces ----------------------------------------------------------------------------------
//
// load() makes `count` vectors of n bytes of pixels B, G, R, X.

struct rgb32_surface {
    static constexpr int pixel_bytes = 4;

    template <int count, int n>
    LUMALANE_INLINE static woven<count, n> load(const unsigned char *from) {
        if constexpr (count == 2)
            return {{LUMALANE_LANES::load<n>(from), LUMALANE_LANES::load<n>(from + n)}};
        else
            return {{LUMALANE_LANES::load<n>(from), LUMALANE_LANES::load<n>(from + n),
                     LUMALANE_LANES::load<n>(from + 2 * n), LUMALANE_LANES::load<n>(from + 3 * n)}};
    }

    static unsigned key(unsigned color_key) { return color_key; }
};

struct rgb24_surface {
    static constexpr int pixel_bytes = 3;

    template <int count, int n>
    LUMALANE_INLINE static woven<count, n> load(const unsigned char *from) {
        return load_padded<count, n>(from);
    }

    // With anything in its upper byte no pixel is equal to it.
    static unsigned key(unsigned color_key) { return color_key; }
};

// The lower bits of the channels are left zero.
struct rgb16_surface {
    static constexpr int pixel_bytes = 2;

    template <int count, int n>
    LUMALANE_INLINE static woven<count, n> load(const unsigned char *from) {
        const woven<2, n> first = widened(deal_pixels<2, n>(from));
        if constexpr (count == 2) {
            return first;
        } else {
            const woven<2, n> second = widened(deal_pixels<2, n>(from + n));
            return {{first.part[0], first.part[1], second.part[0], second.part[1]}};
        }
    }

    static unsigned key(unsigned color_key) {
        return (color_key & 0xf800) << 8 | (color_key & 0x07e0) << 5 | (color_key & 0x001f) << 3;
    }

private:
    template <int n>
    LUMALANE_INLINE static woven<2, n> widened(bytes<n> packed) {
        const words<n / 2> pixels = as_words(packed);
        const words<n / 2> blue = shift_left<3>(pixels) & fill_words<n / 2>(0x00f8);
        const words<n / 2> green = shift_left<5>(pixels) & fill_words<n / 2>(0xfc00);
        const words<n / 2> red = shift_right_logical<8>(pixels) & fill_words<n / 2>(0x00f8);
        return interleave(blue | green, red);
    }
};

// ---- Pixels ------------------------------------------------------------------------------------

// Of B, G and R, in 1/1024; X has the weight 1.
struct weights {
    int b, g, r;
    unsigned always_in_x;
};
constexpr weights to_y{100, 516, 263, 16};
constexpr weights to_u{449, -297, -151, 128};
constexpr weights to_v{-72, -376, 449, 128};

// Deliberately X counts with every output.
template <int n>
LUMALANE_INLINE dwords<n / 4> weighed(bytes<n> pixels, const weights &by) {
    const bytes<n> bgrx = pixels | fill_dwords<n>(by.always_in_x << 24);
    const dwords<n / 4> blue_red = multiply_add(even(bgrx), fill_word_pairs<n / 2>(by.b, by.r));
    const dwords<n / 4> green_x = multiply_add(odd(bgrx), fill_word_pairs<n / 2>(by.g, 1024));
    return shift_right_arithmetic<10>(add(blue_red, green_x));
}

// ---- The walk ----------------------------------------------------------------------------------

constexpr int group = 8;

// Where the samples of a pixel lie.
struct place {
    const unsigned char *surface;
    unsigned char *y, *u, *v;

    template <class Surface>
    LUMALANE_INLINE place after(ptrdiff_t pixels) const {
        return {surface + pixels * Surface::pixel_bytes, y + pixels, u + pixels / 2,
                v + pixels / 2};
    }
};

// A group; deliberately each pair of pixels gets the chroma of its first one.
template <class Surface>
LUMALANE_INLINE void convert_group(const place &at, unsigned key) {
    const auto [pixels] = Surface::template load<2, 16>(at.surface);
    const bytes<16> wanted = fill_dwords<16>(key);
    if ((equal_dwords(pixels[0], wanted) & equal_dwords(pixels[1], wanted)) == 0xf)
        return;
    const bytes<16> first = even_dwords(pixels[0], pixels[1]);
    const bytes<16> samples = narrow_saturate(weighed(pixels[0], to_y), weighed(pixels[1], to_y),
                                              weighed(first, to_u), weighed(first, to_v));
    const bytes<8> chroma = upper_half(samples);
    store(at.y, lower_half(samples));
    store(at.u, lower_half(chroma));
    store(at.v, upper_half(chroma));
}

// True if the bits of a group are all set.
LUMALANE_INLINE bool any_group(unsigned bits) {
    return ((~bits - 0x01010101u) & bits & 0x80808080u) != 0;
}

// `widest` pixels.
template <class Surface>
LUMALANE_INLINE void convert_groups(const place &at, unsigned key) {
    const auto [pixels] = Surface::template load<4, widest>(at.surface);
    const bytes<widest> wanted = fill_dwords<widest>(key);
    unsigned equal = 0;
    for (int i = 0; i < 4; ++i)
        equal |= equal_dwords(pixels[i], wanted) << (i * (widest / 4));
    if (equal == ~0u >> (32 - widest))
        return;
    if (any_group(equal)) {
        for (ptrdiff_t x = 0; x < widest; x += group)
            convert_group<Surface>(at.after<Surface>(x), key);
        return;
    }
    store(at.y, narrow_saturate(weighed(pixels[0], to_y), weighed(pixels[1], to_y),
                                weighed(pixels[2], to_y), weighed(pixels[3], to_y)));
    const bytes<widest> first = even_dwords(pixels[0], pixels[1]);
    const bytes<widest> second = even_dwords(pixels[2], pixels[3]);
    const bytes<widest> chroma = narrow_saturate(weighed(first, to_u), weighed(second, to_u),
                                                 weighed(first, to_v), weighed(second, to_v));
    store(at.u, lower_half(chroma));
    store(at.v, upper_half(chroma));
}

template <class Surface>
LUMALANE_INLINE void convert(tagMIX_INFO &mix) {
    // What is left of a row after the last whole group is not converted.
    const ptrdiff_t pixels = mix.width < 0 ? 0 : mix.width / group * group;
    const unsigned height = static_cast<unsigned>(mix.height);
    const unsigned key = Surface::key(mix.color_key);
    const int rest = difference(mix.sub_pitch, mix.width);
    const ptrdiff_t y_pitch = pixels + rest;
    // Deliberately halved as unsigned.
    const ptrdiff_t chroma_pitch =
        pixels / 2 + static_cast<ptrdiff_t>(static_cast<unsigned>(rest) >> 1);
    const rows surface(mix.dst, pixels * Surface::pixel_bytes,
                       difference(mix.dst_pitch, product(mix.width, Surface::pixel_bytes)));

    const extent read = surface.whole(height);
    const extent written[] = {rows_at(mix.sub_y, height, y_pitch, pixels),
                              rows_at(mix.sub_u, height, chroma_pitch, pixels / 2),
                              rows_at(mix.sub_v, height, chroma_pitch, pixels / 2)};
    // Vectors of several groups leave the order of the stores into each plane as it is: they cannot
    // be told where the planes are apart and nothing is read back.
    const bool wide = apart(written[0], written[1]) && apart(written[1], written[2]) &&
                      apart(written[2], written[0]) && apart(read, written[0]) &&
                      apart(read, written[1]) && apart(read, written[2]);

    unsigned row = 0;
    do {
        const place first{surface.at(row), mix.sub_y, mix.sub_u, mix.sub_v};
        ptrdiff_t x = 0;
        if (wide)
            for (; x + widest <= pixels; x += widest)
                convert_groups<Surface>(first.template after<Surface>(x), key);
        for (; x < pixels; x += group)
            convert_group<Surface>(first.template after<Surface>(x), key);
        // Deliberately the record keeps where the conversion stands.
        mix.alpha_plane += rest;
        mix.sub_y += y_pitch;
        mix.sub_u += chroma_pitch;
        mix.sub_v += chroma_pitch;
    } while (++row != height);
}

} // namespace

void Convert_RGB32_To_AYUY2(LUMALANE_PARAMETERS_mix) { convert<rgb32_surface>(*mix); }

void Convert_RGB24_To_AYUY2(LUMALANE_PARAMETERS_mix) { convert<rgb24_surface>(*mix); }

void Convert_RGB16_565_To_AYUY2(LUMALANE_PARAMETERS_mix) { convert<rgb16_surface>(*mix); }

} // namespace lumalane::LUMALANE_LANES
