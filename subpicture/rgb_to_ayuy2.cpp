// Drawing surfaces to the colour planes of AYUY2 subpictures.
#include "frame/kernels.h"
#include "subpicture/rows.h"

namespace lumalane::LUMALANE_LANES {

namespace {

// ---- Surfaces ----------------------------------------------------------------------------------
//
// pixels<n>() takes n / 2 pixels apart; widened() brings the key to B, G, R, X as it does pixels.

struct rgb32_surface {
    static constexpr int pixel_bytes = 4;
    static constexpr bool has_x = true;

    template <int n>
    LUMALANE_INLINE static coupled<n> pixels(const unsigned char *from) {
        return load_coupled<4, n>(from);
    }

    static unsigned widened(unsigned key) { return key; }
};

struct rgb24_surface {
    static constexpr int pixel_bytes = 3;
    static constexpr bool has_x = false;

    template <int n>
    LUMALANE_INLINE static coupled<n> pixels(const unsigned char *from) {
        return load_coupled<3, n>(from);
    }

    // With anything in its upper byte no pixel is equal to it.
    static unsigned widened(unsigned key) { return key; }
};

// The lower bits of the channels are left zero.
struct rgb16_surface {
    static constexpr int pixel_bytes = 2;
    static constexpr bool has_x = false;

    template <int n>
    LUMALANE_INLINE static coupled<n> pixels(const unsigned char *from) {
        const words<n / 2> packed = couple(as_words(load<n>(from)));
        return {(shift_left<3>(packed) & fill_words<n / 2>(0x00f8)) |
                    (shift_left<5>(packed) & fill_words<n / 2>(0xfc00)),
                shift_right_logical<8>(packed) & fill_words<n / 2>(0x00f8)};
    }

    static unsigned widened(unsigned key) {
        return (key & 0xf800) << 8 | (key & 0x07e0) << 5 | (key & 0x001f) << 3;
    }
};

// ---- Pixels ------------------------------------------------------------------------------------
//
// What every output is in the upper bytes of words: a sum of weighed channels in 1/1024, rounded
// down, is the upper byte of a quarter of that sum, rounded down; and that is a sum of whole words
// with at most one term that is no whole one. R is there times 256, so that the upper half of a
// product can be a quarter of it, rounded down.

constexpr int always_in_y = 16, always_in_chroma = 128;

template <int n>
LUMALANE_INLINE words<n> upper(words<n> value, int constant) {
    return add(value, fill_words<n>(constant << 8));
}

// 100 B + 516 G + 263 R
template <int n>
LUMALANE_INLINE words<n> to_y(words<n> bg, words<n> red) {
    const words<n> quarter_red = multiply_high_unsigned(red, fill_words<n>(263 << 6));
    return upper(add(multiply_bytes<25, 129>(bg), quarter_red), always_in_y);
}

// 449 B - 297 G - 151 R, that is 4 (112 B - 75 G) + (B + 3 G - 151 R). The second part is kept from
// becoming negative before it is divided.
template <int n>
LUMALANE_INLINE words<n> to_u(words<n> bg, words<n> red) {
    constexpr int raised = 38;
    const words<n> red_part = multiply_high_unsigned(red, fill_words<n>(151 << 8));
    const words<n> rest =
        add(subtract(multiply_bytes<1, 3>(bg), red_part), fill_words<n>(4 * raised << 8));
    return upper(add(multiply_bytes<112, -75>(bg), shift_right_logical<2>(rest)),
                 always_in_chroma - raised);
}

// 449 R - 376 G - 72 B
template <int n>
LUMALANE_INLINE words<n> to_v(words<n> bg, words<n> red) {
    const words<n> quarter_red = multiply_high_unsigned(red, fill_words<n>(449 << 6));
    return upper(add(multiply_bytes<-18, -94>(bg), quarter_red), always_in_chroma);
}

template <int n>
struct samples {
    bytes<n> y;
    bytes<n> uv; // all of U, then all of V
};

// Deliberately the fourth byte counts with every output, and each pair of pixels has the chroma of
// its first one.
template <class Surface, int n>
LUMALANE_INLINE samples<n> converted(const coupled<n> &first, const coupled<n> &second) {
    const words<n / 2> red[] = {shift_left<8>(first.rx), shift_left<8>(second.rx)};
    const words<n / 2> bg_of_pairs = even_couples(first.bg, second.bg);
    const words<n / 2> red_of_pairs = even_couples(red[0], red[1]);
    const samples<n> without_x = {
        uncouple(to_y(first.bg, red[0]), to_y(second.bg, red[1])),
        uncouple_even(to_u(bg_of_pairs, red_of_pairs), to_v(bg_of_pairs, red_of_pairs))};
    if constexpr (!Surface::has_x)
        return without_x;
    const words<n / 2> no_red = fill_words<n / 2>(0xff00);
    if (all(as_bytes(equal((first.rx | second.rx) & no_red, fill_words<n / 2>(0)))))
        return without_x;
    const words<n / 2> of_pairs = even_couples(first.rx, second.rx);
    return {
        add_saturate(without_x.y, uncouple(first.rx, second.rx) & fill_bytes<n>(255 - always_in_y)),
        add_saturate(without_x.uv,
                     uncouple_even(of_pairs, of_pairs) & fill_bytes<n>(255 - always_in_chroma))};
}

// Where pixels are of the colour of the key.
template <int n>
LUMALANE_INLINE words<n / 2> equal_key(const coupled<n> &pixels, unsigned key) {
    return equal(pixels.bg, fill_words<n / 2>(static_cast<int>(key))) &
           equal(pixels.rx, fill_words<n / 2>(static_cast<int>(key >> 16)));
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

template <class Surface>
LUMALANE_INLINE void convert_group(const place &at, unsigned key) {
    const coupled<16> pixels = Surface::template pixels<16>(at.surface);
    if (all(as_bytes(equal_key(pixels, key))))
        return;
    const samples<16> twice = converted<Surface>(pixels, pixels);
    store(at.y, lower_half(twice.y));
    store(at.u, lower_half(lower_half(twice.uv)));
    store(at.v, lower_half(upper_half(twice.uv)));
}

// `widest` pixels.
template <class Surface>
LUMALANE_INLINE void convert_groups(const place &at, unsigned key) {
    constexpr int half_bytes = widest / 2 * Surface::pixel_bytes;
    const coupled<widest> first = Surface::template pixels<widest>(at.surface);
    const coupled<widest> second = Surface::template pixels<widest>(at.surface + half_bytes);
    const words<widest / 2> equal_first = equal_key(first, key);
    const words<widest / 2> equal_second = equal_key(second, key);
    if (all_zero(as_bytes(equal_first | equal_second))) {
        const samples<widest> all_of_them = converted<Surface>(first, second);
        store(at.y, all_of_them.y);
        store(at.u, lower_half(all_of_them.uv));
        store(at.v, upper_half(all_of_them.uv));
    } else if (!all(as_bytes(equal_first & equal_second))) {
        for (ptrdiff_t x = 0; x < widest; x += group)
            convert_group<Surface>(at.after<Surface>(x), key);
    }
}

template <class Surface>
LUMALANE_INLINE void convert(tagMIX_INFO &mix) {
    // What is left of a row after the last whole group is not converted.
    const ptrdiff_t pixels = mix.width < 0 ? 0 : mix.width / group * group;
    const unsigned height = static_cast<unsigned>(mix.height);
    const unsigned key = Surface::widened(mix.color_key);
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
