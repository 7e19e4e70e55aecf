// Pixels of a surface to the colour planes of an AYUY2 subpicture.
#include "rows/kernels.h"
#include "rows/pattern.h"

namespace lumalane::LUMALANE_TARGET_NAME {

namespace {

// ---- Channels ----------------------------------------------------------------------------------
//
//     Y = (100 B + 516 G + 263 R) / 1024 + 16
//     U = (449 B - 297 G - 151 R) / 1024 + 128
//     V = (449 R - 376 G - 72 B) / 1024 + 128
//
// What every output is in the upper bytes of words: a sum of weighed channels in 1/1024, rounded
// down, is the upper byte of a quarter of that sum, rounded down.

constexpr int always_in_y = 16, always_in_chroma = 128;

template <int n>
LUMALANE_INLINE words<n> upper(words<n> value, int constant) {
    return add(value, fill_words<n>(constant << 8));
}

// Of bytes: blue and green in words, red times 256 in words of its own. The quarter of a sum is there a
// sum of whole words with at most one term that is no whole one: the upper half of a product.
template <int n>
struct byte_channels {
    words<n> bg, red;

    LUMALANE_INLINE words<n> y() const {
        const words<n> quarter_red = multiply_high_unsigned(red, fill_words<n>(263 << 6));
        return upper(add(multiply_bytes<25, 129>(bg), quarter_red), always_in_y);
    }

    // 4 (112 B - 75 G) + (B + 3 G - 151 R). The second part is kept from becoming negative before it
    // is divided.
    LUMALANE_INLINE words<n> u() const {
        constexpr int raised = 38;
        const words<n> red_part = multiply_high_unsigned(red, fill_words<n>(151 << 8));
        const words<n> rest =
            add(subtract(multiply_bytes<1, 3>(bg), red_part), fill_words<n>(4 * raised << 8));
        const words<n> quarter_rest = multiply_high_unsigned(rest, fill_words<n>(1 << 14));
        return upper(add(multiply_bytes<112, -75>(bg), quarter_rest), always_in_chroma - raised);
    }

    LUMALANE_INLINE words<n> v() const {
        const words<n> quarter_red = multiply_high_unsigned(red, fill_words<n>(449 << 6));
        return upper(add(multiply_bytes<-18, -94>(bg), quarter_red), always_in_chroma);
    }

    LUMALANE_INLINE friend byte_channels even_pairs(byte_channels a, byte_channels b) {
        return {even_pairs_of_words(a.bg, b.bg), even_pairs_of_words(a.red, b.red)};
    }
};

// Of 5, 6 and 5 bits, whose bytes are 8, 4 and 8 times as much: quarters are sums of whole words.
template <int n>
struct bit_channels {
    words<n> blue, green, red;

    LUMALANE_INLINE words<n> y() const { return weighed<2 * 100, 516, 2 * 263, always_in_y>(); }
    LUMALANE_INLINE words<n> u() const {
        return weighed<2 * 449, -297, 2 * -151, always_in_chroma>();
    }
    LUMALANE_INLINE words<n> v() const {
        return weighed<2 * -72, -376, 2 * 449, always_in_chroma>();
    }

    LUMALANE_INLINE friend bit_channels even_pairs(bit_channels a, bit_channels b) {
        return {even_pairs_of_words(a.blue, b.blue), even_pairs_of_words(a.green, b.green),
                even_pairs_of_words(a.red, b.red)};
    }

private:
    template <int of_blue, int of_green, int of_red, int always>
    LUMALANE_INLINE words<n> weighed() const {
        const auto times = [](words<n> channel, int weight) LUMALANE_INLINE_LAMBDA {
            return multiply_low(channel, fill_words<n>(weight));
        };
        return upper(add(add(times(blue, of_blue), times(green, of_green)), times(red, of_red)),
                     always);
    }
};

// ---- Surfaces ----------------------------------------------------------------------------------

// `pixels<n>` of a surface are n / 2 pixels, half-interleaved.

// Pixels of 4 bytes, and of 3 bytes and a zero; a key with anything in its upper byte is the colour
// of none of those.
template <int size>
struct rgb_surface {
    static constexpr int bytes_per_pixel = size;
    static constexpr bool has_x = size == 4;

    template <int n>
    struct pixels {
        half_interleaved<n> loaded;

        LUMALANE_INLINE explicit pixels(const unsigned char *from)
            : loaded(load_half_interleaved<size, n>(from)) {}

        LUMALANE_INLINE byte_channels<n / 2> channels() const {
            return {loaded.bg, has_x ? shift_left<8>(loaded.rx) : loaded.rx};
        }
        LUMALANE_INLINE words<n / 2> x() const { return loaded.rx & fill_words<n / 2>(0xff00); }

        // All bits, where a pixel is of the key's colour.
        LUMALANE_INLINE words<n / 2> are(unsigned key) const {
            const unsigned rx = has_x ? key >> 16 : key >> 24 | (key >> 8 & 0xff00);
            return equal(loaded.bg, fill_words<n / 2>(static_cast<int>(key))) &
                   equal(loaded.rx, fill_words<n / 2>(static_cast<int>(rx)));
        }
    };

    static constexpr bool can_be_of(unsigned key) { return size == 4 || key >> 24 == 0; }
};

struct rgb16_surface {
    static constexpr int bytes_per_pixel = 2;
    static constexpr bool has_x = false;

    template <int n>
    struct pixels {
        words<n / 2> packed;

        LUMALANE_INLINE explicit pixels(const unsigned char *from)
            : packed(half_interleave(as_words(load<n>(from)))) {}

        LUMALANE_INLINE bit_channels<n / 2> channels() const {
            return {packed & fill_words<n / 2>(0x1f),
                    shift_right_logical<5>(packed) & fill_words<n / 2>(0x3f),
                    shift_right_logical<11>(packed)};
        }
        LUMALANE_INLINE words<n / 2> are(unsigned key) const {
            return equal(packed, fill_words<n / 2>(static_cast<int>(key)));
        }
    };

    static constexpr bool can_be_of(unsigned) { return true; }
};

// ---- Pixels ------------------------------------------------------------------------------------

template <int n>
struct samples {
    bytes<n> y;
    halves<n / 2> uv;
};

// quirk: a pair of pixels has the chroma of its first one
// [conversion.a_pair_takes_the_chroma_of_its_first_pixel]
// quirk: the fourth byte is added to every output, but for the bits that are always there
// [conversion.the_x_byte_of_rgb32_raises_all_three]
template <bool with_x, int n, class Pixels>
LUMALANE_INLINE samples<n> convert(const Pixels &first, const Pixels &second) {
    const auto of_first = first.channels(), of_second = second.channels();
    words<n / 2> y_of_first = of_first.y(), y_of_second = of_second.y();
    const auto of_even = even_pairs(of_first, of_second);
    words<n / 2> u = of_even.u(), v = of_even.v();
    if constexpr (with_x) {
        const words<n / 2> not_in_y = fill_words<n / 2>(~always_in_y << 8);
        const words<n / 2> x =
            even_pairs_of_words(first.x(), second.x()) & fill_words<n / 2>(~always_in_chroma << 8);
        y_of_first = add_saturate_unsigned(y_of_first, first.x() & not_in_y);
        y_of_second = add_saturate_unsigned(y_of_second, second.x() & not_in_y);
        u = add_saturate_unsigned(u, x);
        v = add_saturate_unsigned(v, x);
    }
    return {deinterleave_upper_bytes(y_of_first, y_of_second),
            deinterleave_upper_bytes_of_even(u, v)};
}

// ---- Rows --------------------------------------------------------------------------------------

template <class Surface>
LUMALANE_INLINE drawn_rows after(const drawn_rows &rows, ptrdiff_t x) {
    return {rows.surface + x * Surface::bytes_per_pixel, rows.y + x, rows.u + x / 2,
            rows.v + x / 2};
}

// 8 pixels, whose samples are not stored where all are of the key's colour.
template <class Surface>
LUMALANE_INLINE void convert_8(const drawn_rows &at, unsigned key) {
    const typename Surface::template pixels<16> taken(at.surface);
    if (all(as_bytes(taken.are(key))))
        return;
    const samples<16> twice = convert<Surface::has_x, 16>(taken, taken);
    store(at.y, lower_half(twice.y));
    store(at.u, lower_half(twice.uv.lower));
    store(at.v, lower_half(twice.uv.upper));
}

// `widest` pixels of the key's colour as they are on a surface.
template <class Surface>
class run_of_key {
    static constexpr int count = Surface::bytes_per_pixel;

    vectors<count, widest> key_pixels;
    bool possible;

public:
    run_of_key(unsigned key, const pattern &pixels)
        : key_pixels(pattern_vectors<count, widest>(pixels)), possible(Surface::can_be_of(key)) {}

    LUMALANE_INLINE bool is_at(const unsigned char *from) const {
        // (Where `possible` is asked first, gcc makes loops that take 1.1 times as long.)
        return are_at(from, key_pixels) && possible;
    }
};

// `widest` pixels.
template <class Surface>
struct pixels_of_vectors {
    typename Surface::template pixels<widest> first, second;

    LUMALANE_INLINE explicit pixels_of_vectors(const unsigned char *from)
        : first(from), second(from + widest / 2 * Surface::bytes_per_pixel) {}

    // None is of the key's colour or has anything in its fourth byte.
    LUMALANE_INLINE bool plain(unsigned key) const {
        words<widest / 2> not_plain = first.are(key) | second.are(key);
        if constexpr (Surface::has_x)
            not_plain = not_plain | first.x() | second.x();
        return all_zero(as_bytes(not_plain));
    }
};

// As many whole vectors of a row as n pixels have; returns how far it came. Runs of one kind have
// loops of their own.
template <class Surface>
LUMALANE_INLINE ptrdiff_t convert_vectors(const drawn_rows &row, ptrdiff_t n, unsigned key,
                                          const run_of_key<Surface> &key_run) {
    const auto surface = [&](ptrdiff_t x) LUMALANE_INLINE_LAMBDA {
        return row.surface + x * Surface::bytes_per_pixel;
    };
    ptrdiff_t x = 0;
    const auto more = [&]() LUMALANE_INLINE_LAMBDA { return x + widest <= n; };
    while (more()) {
        while (more() && key_run.is_at(surface(x)))
            x += widest;
        if (!more())
            break;
        pixels_of_vectors<Surface> here(surface(x));
        while (more() && here.plain(key)) {
            // Those of the next turn are loaded before what is made of these is stored.
            const pixels_of_vectors<Surface> next(surface(x + 2 * widest <= n ? x + widest : x));
            const samples<widest> made = convert<false, widest>(here.first, here.second);
            const drawn_rows at = after<Surface>(row, x);
            fetch_source<widest * Surface::bytes_per_pixel>(at.surface);
            const ptrdiff_t ahead = fetched_ahead(row.stores);
            fetch_ahead<widest, 1>(at.y, ahead);
            fetch_ahead<widest, 1>(at.u, ahead);
            fetch_ahead<widest, 1>(at.v, ahead);
            store(at.y, made.y);
            store(at.u, made.uv.lower);
            store(at.v, made.uv.upper);
            here = next;
            x += widest;
        }
        if (more())
            for (const ptrdiff_t end = x + widest; x < end; x += 8)
                convert_8<Surface>(after<Surface>(row, x), key);
    }
    return x;
}

template <class Surface>
LUMALANE_INLINE void convert_rows(drawn_rows row, ptrdiff_t n, unsigned key,
                                  const pattern &key_pixels) {
    const run_of_key<Surface> key_run(key, key_pixels);
    for (ptrdiff_t left = row.count; left > 0; --left) {
        for (ptrdiff_t x = convert_vectors<Surface>(row, n, key, key_run); x < n; x += 8)
            convert_8<Surface>(after<Surface>(row, x), key);
        row.surface += row.surface_next, row.y += row.luma_next;
        row.u += row.chroma_next, row.v += row.chroma_next;
    }
}

} // namespace

void convert_rgb32(const drawn_rows &rows, ptrdiff_t n, unsigned key, const pattern &key_pixels) {
    convert_rows<rgb_surface<4>>(rows, n, key, key_pixels);
}

void convert_rgb24(const drawn_rows &rows, ptrdiff_t n, unsigned key, const pattern &key_pixels) {
    convert_rows<rgb_surface<3>>(rows, n, key, key_pixels);
}

void convert_rgb16_565(const drawn_rows &rows, ptrdiff_t n, unsigned key,
                       const pattern &key_pixels) {
    convert_rows<rgb16_surface>(rows, n, key, key_pixels);
}

} // namespace lumalane::LUMALANE_TARGET_NAME
