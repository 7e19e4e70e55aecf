// Drawing surfaces to the colour planes of AYUY2 subpictures.
#include "frame/kernels.h"
#include "subpicture/pattern.h"
#include "subpicture/rows.h"

namespace lumalane::LUMALANE_LANES {

namespace {

// ---- Surfaces ----------------------------------------------------------------------------------

// `pixels<n>` of a surface are n / 2 pixels, coupled: their blue and green bytes in words, and in
// words of their own red and what stands in the fourth byte, both in the upper byte.

// Pixels of 4 bytes, and of 3 bytes and a zero; a key with anything in its upper byte is the colour
// of none of those.
template <int size>
struct rgb_surface {
    static constexpr int pixel_bytes = size;
    static constexpr bool has_x = size == 4;

    template <int n>
    struct pixels {
        coupled<n> loaded;

        LUMALANE_INLINE explicit pixels(const unsigned char *from)
            : loaded(load_coupled<size, n>(from)) {}

        LUMALANE_INLINE words<n / 2> bg() const { return loaded.bg; }
        LUMALANE_INLINE words<n / 2> red() const {
            return has_x ? shift_left<8>(loaded.rx) : loaded.rx;
        }
        LUMALANE_INLINE words<n / 2> x() const { return loaded.rx & fill_words<n / 2>(0xff00); }

        // All bits, where a pixel is of the key's colour.
        LUMALANE_INLINE words<n / 2> are(unsigned key) const {
            const unsigned rx = has_x ? key >> 16 : key >> 24 | (key >> 8 & 0xff00);
            return equal(loaded.bg, fill_words<n / 2>(static_cast<int>(key))) &
                   equal(loaded.rx, fill_words<n / 2>(static_cast<int>(rx)));
        }
    };
};

// The lower bits of the channels are left zero.
struct rgb16_surface {
    static constexpr int pixel_bytes = 2;
    static constexpr bool has_x = false;

    template <int n>
    struct pixels {
        words<n / 2> packed;

        LUMALANE_INLINE explicit pixels(const unsigned char *from)
            : packed(couple(as_words(load<n>(from)))) {}

        LUMALANE_INLINE words<n / 2> bits(int which) const {
            return packed & fill_words<n / 2>(which);
        }
        LUMALANE_INLINE words<n / 2> bg() const {
            return multiply_low(bits(0x001f), fill_words<n / 2>(1 << 3)) |
                   multiply_low(bits(0x07e0), fill_words<n / 2>(1 << 5));
        }
        LUMALANE_INLINE words<n / 2> red() const { return bits(0xf800); }
        LUMALANE_INLINE words<n / 2> are(unsigned key) const {
            return equal(packed, fill_words<n / 2>(static_cast<int>(key)));
        }
    };
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
    const words<n> quarter_rest = multiply_high_unsigned(rest, fill_words<n>(1 << 14));
    return upper(add(multiply_bytes<112, -75>(bg), quarter_rest), always_in_chroma - raised);
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
    halves<n / 2> uv;
};

// Deliberately each pair of pixels has the chroma of its first one, and the fourth byte is added to
// every output, but for what they have always.
template <bool with_x, int n, class Pixels>
LUMALANE_INLINE samples<n> convert(const Pixels &first, const Pixels &second) {
    const words<n / 2> bg_of_first = first.bg(), bg_of_second = second.bg();
    const words<n / 2> red_of_first = first.red(), red_of_second = second.red();
    words<n / 2> y_of_first = to_y(bg_of_first, red_of_first);
    words<n / 2> y_of_second = to_y(bg_of_second, red_of_second);
    const words<n / 2> bg = even_couples(bg_of_first, bg_of_second);
    const words<n / 2> red = even_couples(red_of_first, red_of_second);
    words<n / 2> u = to_u(bg, red), v = to_v(bg, red);
    if constexpr (with_x) {
        const words<n / 2> not_in_y = fill_words<n / 2>(~always_in_y << 8);
        const words<n / 2> x =
            even_couples(first.x(), second.x()) & fill_words<n / 2>(~always_in_chroma << 8);
        y_of_first = add_saturate_unsigned(y_of_first, first.x() & not_in_y);
        y_of_second = add_saturate_unsigned(y_of_second, second.x() & not_in_y);
        u = add_saturate_unsigned(u, x);
        v = add_saturate_unsigned(v, x);
    }
    return {uncouple(y_of_first, y_of_second), uncouple_even(u, v)};
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
    const typename Surface::template pixels<16> taken(at.surface);
    if (all(as_bytes(taken.are(key))))
        return;
    const samples<16> twice = convert<Surface::has_x, 16>(taken, taken);
    store(at.y, lower_half(twice.y));
    store(at.u, lower_half(twice.uv.lower));
    store(at.v, lower_half(twice.uv.upper));
}

// `widest` pixels of the key's colour as they lie on a surface.
template <class Surface>
class run_of_key {
    static constexpr int vectors = Surface::pixel_bytes;

    woven<vectors, widest> key_pixels;
    bool fits_3_bytes;

public:
    explicit run_of_key(unsigned key)
        : key_pixels(pattern::of_pixels<vectors>(key).template first<vectors, widest>()),
          fits_3_bytes(key >> 24 == 0) {}

    LUMALANE_INLINE bool is_at(const unsigned char *from) const {
        const auto same = [&](int i) LUMALANE_INLINE_LAMBDA {
            return equal(load<widest>(from + i * widest), key_pixels.part[i]);
        };
        bytes<widest> all_same = same(0);
        for (int i = 1; i < vectors; ++i)
            all_same = all_same & same(i);
        return (vectors != 3 || fits_3_bytes) && all(all_same);
    }
};

// `widest` pixels.
template <class Surface>
struct couple_of_vectors {
    typename Surface::template pixels<widest> first, second;

    LUMALANE_INLINE explicit couple_of_vectors(const unsigned char *from)
        : first(from), second(from + widest / 2 * Surface::pixel_bytes) {}

    // None is of the key's colour or has anything in its fourth byte.
    LUMALANE_INLINE bool plain(unsigned key) const {
        words<widest / 2> not_plain = first.are(key) | second.are(key);
        if constexpr (Surface::has_x)
            not_plain = not_plain | first.x() | second.x();
        return all_zero(as_bytes(not_plain));
    }
};

// As many whole vectors of a row as fit into `count`; returns how far it came. Runs of one kind
// have loops of their own.
template <class Surface>
LUMALANE_INLINE ptrdiff_t convert_groups(const place &row, ptrdiff_t count, unsigned key,
                                         const run_of_key<Surface> &key_run) {
    const auto surface = [&](ptrdiff_t x) { return row.surface + x * Surface::pixel_bytes; };
    ptrdiff_t x = 0;
    const auto more = [&] { return x + widest <= count; };
    while (more()) {
        while (more() && key_run.is_at(surface(x)))
            x += widest;
        if (!more())
            break;
        couple_of_vectors<Surface> here(surface(x));
        while (more() && here.plain(key)) {
            // Those of the next turn are loaded before what is made of these is stored.
            const couple_of_vectors<Surface> next(
                surface(x + 2 * widest <= count ? x + widest : x));
            const samples<widest> made = convert<false, widest>(here.first, here.second);
            const place at = row.after<Surface>(x);
            store(at.y, made.y);
            store(at.u, made.uv.lower);
            store(at.v, made.uv.upper);
            here = next;
            x += widest;
        }
        if (more())
            for (const ptrdiff_t end = x + widest; x < end; x += group)
                convert_group<Surface>(row.after<Surface>(x), key);
    }
    return x;
}

template <class Surface>
LUMALANE_INLINE void convert_surface(tagMIX_INFO &mix) {
    // What is left of a row after the last whole group is not converted.
    const ptrdiff_t count = mix.width < 0 ? 0 : mix.width / group * group;
    const unsigned height = static_cast<unsigned>(mix.height);
    const unsigned key = mix.color_key;
    const run_of_key<Surface> key_run(key);
    const int rest = difference(mix.sub_pitch, mix.width);
    const ptrdiff_t y_pitch = count + rest;
    // Deliberately halved as unsigned.
    const ptrdiff_t chroma_pitch =
        count / 2 + static_cast<ptrdiff_t>(static_cast<unsigned>(rest) >> 1);
    const rows surface(mix.dst, count * Surface::pixel_bytes,
                       difference(mix.dst_pitch, product(mix.width, Surface::pixel_bytes)));

    const extent read = surface.whole(height);
    const extent written[] = {rows_at(mix.sub_y, height, y_pitch, count),
                              rows_at(mix.sub_u, height, chroma_pitch, count / 2),
                              rows_at(mix.sub_v, height, chroma_pitch, count / 2)};
    // Vectors of several groups leave the order of the stores into each plane as it is: they cannot
    // be told where the planes are apart and nothing is read back.
    const bool wide = apart(written[0], written[1]) && apart(written[1], written[2]) &&
                      apart(written[2], written[0]) && apart(read, written[0]) &&
                      apart(read, written[1]) && apart(read, written[2]);

    unsigned row = 0;
    do {
        const place first{surface.at(row), mix.sub_y, mix.sub_u, mix.sub_v};
        ptrdiff_t x = wide ? convert_groups(first, count, key, key_run) : 0;
        for (; x < count; x += group)
            convert_group<Surface>(first.template after<Surface>(x), key);
        // Deliberately the record keeps where the conversion stands.
        mix.alpha_plane += rest;
        mix.sub_y += y_pitch;
        mix.sub_u += chroma_pitch;
        mix.sub_v += chroma_pitch;
    } while (++row != height);
}

} // namespace

void Convert_RGB32_To_AYUY2(LUMALANE_PARAMETERS_mix) { convert_surface<rgb_surface<4>>(*mix); }

void Convert_RGB24_To_AYUY2(LUMALANE_PARAMETERS_mix) { convert_surface<rgb_surface<3>>(*mix); }

void Convert_RGB16_565_To_AYUY2(LUMALANE_PARAMETERS_mix) { convert_surface<rgb16_surface>(*mix); }

} // namespace lumalane::LUMALANE_LANES
