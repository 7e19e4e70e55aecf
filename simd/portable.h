// Vectors in plain C++: the definition of every operation, and the target that runs anywhere.
//
// bytes<n> are n unsigned 8-bit lanes, words<n> are n signed 16-bit lanes; lane 0 is the first in
// memory. Operations that move lanes work within blocks of 16 bytes (8 words), as the wide
// registers of x86 do; a vector of 16 bytes or fewer is one block.
#pragma once

// Left to the compiler here: loops over lanes all pulled into one function take it minutes.
#undef LUMALANE_INLINE
#define LUMALANE_INLINE inline
#undef LUMALANE_INLINE_LAMBDA
#define LUMALANE_INLINE_LAMBDA

namespace lumalane::LUMALANE_TARGET_NAME {

template <int n>
struct bytes {
    unsigned char lane[n];
};

template <int n>
struct words {
    short lane[n];
};

// Lanes of the widest bytes<> that the target works with.
inline constexpr int widest = 16;

// ---- Memory ------------------------------------------------------------------------------------

template <int n>
LUMALANE_INLINE bytes<n> load(const unsigned char *from) {
    bytes<n> r;
    for (int i = 0; i < n; ++i)
        r.lane[i] = from[i];
    return r;
}

// The lower half of the lanes from one place, the upper half from another.
template <int n>
LUMALANE_INLINE bytes<n> load_halves(const unsigned char *low, const unsigned char *high) {
    bytes<n> r;
    for (int i = 0; i < n; ++i)
        r.lane[i] = i < n / 2 ? low[i] : high[i - n / 2];
    return r;
}

template <int n>
LUMALANE_INLINE void store(unsigned char *to, bytes<n> a) {
    for (int i = 0; i < n; ++i)
        to[i] = a.lane[i];
}

// Stores around the cache where the processor can; `to` is aligned to n bytes.
template <int n>
LUMALANE_INLINE void stream(unsigned char *to, bytes<n> a) {
    store(to, a);
}

// Makes streamed stores visible before any later one.
LUMALANE_INLINE void stream_fence() {}

// ---- One lane at a time ------------------------------------------------------------------------

template <int n, class Operation>
LUMALANE_INLINE words<n> each(words<n> a, Operation operation) {
    for (int i = 0; i < n; ++i)
        a.lane[i] = static_cast<short>(operation(a.lane[i]));
    return a;
}

template <int n, class Operation>
LUMALANE_INLINE bytes<n> each(bytes<n> a, Operation operation) {
    for (int i = 0; i < n; ++i)
        a.lane[i] = static_cast<unsigned char>(operation(a.lane[i]));
    return a;
}

template <int n, class Operation>
LUMALANE_INLINE words<n> each(words<n> a, words<n> b, Operation operation) {
    words<n> r;
    for (int i = 0; i < n; ++i)
        r.lane[i] = static_cast<short>(operation(a.lane[i], b.lane[i]));
    return r;
}

template <int n, class Operation>
LUMALANE_INLINE bytes<n> each(bytes<n> a, bytes<n> b, Operation operation) {
    bytes<n> r;
    for (int i = 0; i < n; ++i)
        r.lane[i] = static_cast<unsigned char>(operation(a.lane[i], b.lane[i]));
    return r;
}

LUMALANE_INLINE int clamp(int value, int low, int high) {
    return value < low ? low : value > high ? high : value;
}

template <int n>
LUMALANE_INLINE words<n> fill_words(int value) {
    words<n> r;
    for (int i = 0; i < n; ++i)
        r.lane[i] = static_cast<short>(value);
    return r;
}

// Even lanes, odd lanes.
template <int n>
LUMALANE_INLINE words<n> fill_word_pairs(int even, int odd) {
    words<n> r;
    for (int i = 0; i < n; ++i)
        r.lane[i] = static_cast<short>(i % 2 ? odd : even);
    return r;
}

template <int n>
LUMALANE_INLINE bytes<n> fill_bytes(int value) {
    bytes<n> r;
    for (int i = 0; i < n; ++i)
        r.lane[i] = static_cast<unsigned char>(value);
    return r;
}

template <int n>
LUMALANE_INLINE words<n> add(words<n> a, words<n> b) {
    return each(a, b, [](int x, int y) { return x + y; });
}

template <int n>
LUMALANE_INLINE words<n> subtract(words<n> a, words<n> b) {
    return each(a, b, [](int x, int y) { return x - y; });
}

// Clamped to the range of a signed 16-bit lane.
template <int n>
LUMALANE_INLINE words<n> add_saturate(words<n> a, words<n> b) {
    return each(a, b, [](int x, int y) { return clamp(x + y, -32768, 32767); });
}

template <int n>
LUMALANE_INLINE words<n> maximum(words<n> a, words<n> b) {
    return each(a, b, [](int x, int y) { return x > y ? x : y; });
}

// Of lanes taken as unsigned, clamped to 65535.
template <int n>
LUMALANE_INLINE words<n> add_saturate_unsigned(words<n> a, words<n> b) {
    return each(a, b, [](int x, int y) { return clamp((x & 0xffff) + (y & 0xffff), 0, 0xffff); });
}

template <int n>
LUMALANE_INLINE words<n> minimum(words<n> a, words<n> b) {
    return each(a, b, [](int x, int y) { return x < y ? x : y; });
}

template <int n>
LUMALANE_INLINE bytes<n> absolute_difference(bytes<n> a, bytes<n> b) {
    return each(a, b, [](int x, int y) { return x < y ? y - x : x - y; });
}

// The lower and the upper half of the signed 32-bit product.
template <int n>
LUMALANE_INLINE words<n> multiply_low(words<n> a, words<n> b) {
    return each(a, b, [](int x, int y) { return x * y; });
}

template <int n>
LUMALANE_INLINE words<n> multiply_high(words<n> a, words<n> b) {
    return each(a, b, [](int x, int y) { return (x * y) >> 16; });
}

// The upper half of the product of lanes taken as unsigned.
template <int n>
LUMALANE_INLINE words<n> multiply_high_unsigned(words<n> a, words<n> b) {
    return each(a, b, [](unsigned x, unsigned y) { return ((x & 0xffff) * (y & 0xffff)) >> 16; });
}

// The lower byte of each lane times `lower` plus the upper one times `upper`, modulo 2^16.
template <int lower, int upper, int n>
LUMALANE_INLINE words<n> multiply_bytes(words<n> a) {
    return each(a, [](int x) { return (x & 0xff) * lower + (x >> 8 & 0xff) * upper; });
}

// The product divided by 2^15, rounded to the nearest. Worth its while only where it is one
// instruction.
inline constexpr bool multiplies_rounded = false;

template <int n>
LUMALANE_INLINE words<n> multiply_rounded(words<n> a, words<n> b) {
    return each(a, b, [](int x, int y) { return (x * y + 0x4000) >> 15; });
}

template <int count, int n>
LUMALANE_INLINE words<n> shift_left(words<n> a) {
    return each(a, [](int x) { return static_cast<int>(static_cast<unsigned>(x) << count); });
}

// Rounds towards minus infinity.
template <int count, int n>
LUMALANE_INLINE words<n> shift_right_arithmetic(words<n> a) {
    return each(a, [](int x) { return x >> count; });
}

// Zeros come in from the left.
template <int count, int n>
LUMALANE_INLINE words<n> shift_right_logical(words<n> a) {
    return each(a, [](int x) { return (x & 0xffff) >> count; });
}

// Bits do not pass from one byte to the next.
template <int count, int n>
LUMALANE_INLINE bytes<n> shift_left(bytes<n> a) {
    return each(a, [](int x) { return x << count; });
}

template <int count, int n>
LUMALANE_INLINE bytes<n> shift_right_logical(bytes<n> a) {
    return each(a, [](int x) { return x >> count; });
}

template <int n>
LUMALANE_INLINE bytes<n> operator&(bytes<n> a, bytes<n> b) {
    return each(a, b, [](int x, int y) { return x & y; });
}

template <int n>
LUMALANE_INLINE bytes<n> operator|(bytes<n> a, bytes<n> b) {
    return each(a, b, [](int x, int y) { return x | y; });
}

template <int n>
LUMALANE_INLINE words<n> operator&(words<n> a, words<n> b) {
    return each(a, b, [](int x, int y) { return x & y; });
}

template <int n>
LUMALANE_INLINE words<n> operator|(words<n> a, words<n> b) {
    return each(a, b, [](int x, int y) { return x | y; });
}

// All bits set where it is so, none elsewhere.
template <int n>
LUMALANE_INLINE words<n> equal(words<n> a, words<n> b) {
    return each(a, b, [](int x, int y) { return x == y ? -1 : 0; });
}

template <int n>
LUMALANE_INLINE bytes<n> equal(bytes<n> a, bytes<n> b) {
    return each(a, b, [](int x, int y) { return x == y ? 255 : 0; });
}

// The same of lanes that are 1..127.
template <int n>
LUMALANE_INLINE bytes<n> in_1_to_127(bytes<n> a) {
    return each(a, [](int x) { return 1 <= x && x <= 127 ? 255 : 0; });
}

// `chosen` where a lane of `where` is 255, `otherwise` where it is 0.
template <int n>
LUMALANE_INLINE bytes<n> choose(bytes<n> where, bytes<n> chosen, bytes<n> otherwise) {
    bytes<n> r;
    for (int i = 0; i < n; ++i)
        r.lane[i] = where.lane[i] ? chosen.lane[i] : otherwise.lane[i];
    return r;
}

// Of such lanes: whether it is so everywhere. (all_zero() tells whether it is so nowhere.)
template <int n>
LUMALANE_INLINE bool all(bytes<n> where) {
    for (int i = 0; i < n; ++i)
        if (where.lane[i] == 0)
            return false;
    return true;
}

// Averages rounded up.
template <int n>
LUMALANE_INLINE bytes<n> average(bytes<n> a, bytes<n> b) {
    return each(a, b, [](int x, int y) { return (x + y + 1) >> 1; });
}

// The same of lanes that are not negative.
template <int n>
LUMALANE_INLINE words<n> average(words<n> a, words<n> b) {
    return each(a, b, [](int x, int y) { return (x + y + 1) >> 1; });
}

template <int n>
LUMALANE_INLINE bool all_zero(bytes<n> a) {
    int any = 0;
    for (int i = 0; i < n; ++i)
        any |= a.lane[i];
    return any == 0;
}

// ---- Between bytes and words -------------------------------------------------------------------

template <int n>
LUMALANE_INLINE bytes<n / 2> lower_half(bytes<n> a) {
    return load<n / 2>(a.lane);
}

template <int n>
LUMALANE_INLINE bytes<n / 2> upper_half(bytes<n> a) {
    return load<n / 2>(a.lane + n / 2);
}

// As the lower half, with anything above it.
template <int n>
LUMALANE_INLINE bytes<2 * n> extend(bytes<n> a) {
    bytes<2 *n> r = {};
    for (int i = 0; i < n; ++i)
        r.lane[i] = a.lane[i];
    return r;
}

// The same bits: of each word the lower byte, then the upper one.
template <int n>
LUMALANE_INLINE words<n / 2> as_words(bytes<n> a) {
    words<n / 2> r;
    for (int i = 0; i < n / 2; ++i)
        r.lane[i] = static_cast<short>(a.lane[2 * i] | a.lane[2 * i + 1] << 8);
    return r;
}

template <int n>
LUMALANE_INLINE bytes<2 * n> as_bytes(words<n> a) {
    bytes<2 * n> r;
    for (int i = 0; i < 2 * n; ++i)
        r.lane[i] = static_cast<unsigned char>(a.lane[i / 2] >> (i % 2 * 8));
    return r;
}

// All lanes, in order.
template <int n>
LUMALANE_INLINE words<n> widen(bytes<n> a) {
    words<n> r;
    for (int i = 0; i < n; ++i)
        r.lane[i] = a.lane[i];
    return r;
}

// The lower and the upper 8 lanes of every block; narrow_saturate() takes them back.
template <int n>
LUMALANE_INLINE words<n / 2> widen_low(bytes<n> a) {
    words<n / 2> r;
    for (int i = 0; i < n / 2; ++i)
        r.lane[i] = a.lane[i / 8 * 16 + i % 8];
    return r;
}

template <int n>
LUMALANE_INLINE words<n / 2> widen_high(bytes<n> a) {
    words<n / 2> r;
    for (int i = 0; i < n / 2; ++i)
        r.lane[i] = a.lane[i / 8 * 16 + 8 + i % 8];
    return r;
}

// The same lanes in 8.8 fixed point: whole + fraction / 256, unsigned.
template <int n>
LUMALANE_INLINE words<n / 2> widen_low(bytes<n> whole, bytes<n> fraction) {
    return each(widen_low(whole), widen_low(fraction), [](int x, int y) { return x << 8 | y; });
}

template <int n>
LUMALANE_INLINE words<n / 2> widen_high(bytes<n> whole, bytes<n> fraction) {
    return each(widen_high(whole), widen_high(fraction), [](int x, int y) { return x << 8 | y; });
}

// Lanes 0, 2, 4 ... and lanes 1, 3, 5 ...
template <int n>
LUMALANE_INLINE words<n / 2> even(bytes<n> a) {
    words<n / 2> r;
    for (int i = 0; i < n / 2; ++i)
        r.lane[i] = a.lane[2 * i];
    return r;
}

template <int n>
LUMALANE_INLINE words<n / 2> odd(bytes<n> a) {
    words<n / 2> r;
    for (int i = 0; i < n / 2; ++i)
        r.lane[i] = a.lane[2 * i + 1];
    return r;
}

// The same lanes times `factor`, a power of two up to 64.
template <int factor, int n>
LUMALANE_INLINE words<n / 2> even_times(bytes<n> a) {
    return each(even(a), even(a), [](int x, int) { return x * factor; });
}

template <int factor, int n>
LUMALANE_INLINE words<n / 2> odd_times(bytes<n> a) {
    return each(odd(a), odd(a), [](int x, int) { return x * factor; });
}

// Clamped to 0..255; in every block the 8 lanes of `a`, then the 8 lanes of `b`.
template <int n>
LUMALANE_INLINE bytes<2 * n> narrow_saturate(words<n> a, words<n> b) {
    bytes<2 * n> r;
    for (int i = 0; i < 2 * n; ++i) {
        const short *half = i % 16 < 8 ? a.lane : b.lane;
        r.lane[i] = static_cast<unsigned char>(clamp(half[i / 16 * 8 + i % 8], 0, 255));
    }
    return r;
}

// Clamped to 0..255, lanes of `a` and `b` in turn.
template <int n>
LUMALANE_INLINE bytes<2 * n> narrow_interleaved(words<n> a, words<n> b) {
    bytes<2 * n> r;
    for (int i = 0; i < n; ++i) {
        r.lane[2 * i] = static_cast<unsigned char>(clamp(a.lane[i], 0, 255));
        r.lane[2 * i + 1] = static_cast<unsigned char>(clamp(b.lane[i], 0, 255));
    }
    return r;
}

// The same of lanes that are 0..255 already.
template <int n>
LUMALANE_INLINE bytes<2 * n> join(words<n> even, words<n> odd) {
    return narrow_interleaved(even, odd);
}

// p * a + q * b of the lanes that widen_low() and widen_high() take; p and q are 0..63.
template <int p, int q, int n>
LUMALANE_INLINE words<n / 2> weighted_low(bytes<n> a, bytes<n> b) {
    return each(widen_low(a), widen_low(b), [](int x, int y) { return p * x + q * y; });
}

template <int p, int q, int n>
LUMALANE_INLINE words<n / 2> weighted_high(bytes<n> a, bytes<n> b) {
    return each(widen_high(a), widen_high(b), [](int x, int y) { return p * x + q * y; });
}

// A mask over groups of four bytes: set where the first word of the group's two is above `limit`.
// Words and limit are not negative.
template <int n>
LUMALANE_INLINE bytes<2 * n> groups_above(words<n> a, int limit) {
    bytes<2 * n> r;
    for (int i = 0; i < 2 * n; ++i)
        r.lane[i] = a.lane[i / 4 * 2] > limit ? 0xff : 0;
    return r;
}

// Averages of lanes 2i and 2i + 1, rounded up.
template <int n>
LUMALANE_INLINE words<n / 2> average_neighbours(bytes<n> a) {
    words<n / 2> r;
    for (int i = 0; i < n / 2; ++i)
        r.lane[i] = static_cast<short>((a.lane[2 * i] + a.lane[2 * i + 1] + 1) >> 1);
    return r;
}

// The same where the lanes are pairs: of lanes 4i and 4i + 2, and of lanes 4i + 1 and 4i + 3.
template <int n>
LUMALANE_INLINE words<n / 2> average_neighbour_pairs(bytes<n> a) {
    words<n / 2> r;
    for (int i = 0; i < n / 2; ++i) {
        const int first = i / 2 * 4 + i % 2;
        r.lane[i] = static_cast<short>((a.lane[first] + a.lane[first + 2] + 1) >> 1);
    }
    return r;
}

// Lanes 4i + 2 and 4i + 3: of two pairs the second.
template <int n>
LUMALANE_INLINE words<n / 2> second_pairs(bytes<n> a) {
    words<n / 2> r;
    for (int i = 0; i < n / 2; ++i)
        r.lane[i] = a.lane[i / 2 * 4 + 2 + i % 2];
    return r;
}

// Clamped to 0..255, in order.
template <int n>
LUMALANE_INLINE bytes<n> narrow_saturate(words<n> a) {
    bytes<n> r;
    for (int i = 0; i < n; ++i)
        r.lane[i] = static_cast<unsigned char>(clamp(a.lane[i], 0, 255));
    return r;
}

// ---- Blending ----------------------------------------------------------------------------------

// below * (16 - weight) + above * weight; weights of more than 16 count as 16.
template <int n>
LUMALANE_INLINE words<n> blend_words(words<n> below, words<n> above, words<n> weight) {
    words<n> r;
    for (int i = 0; i < n; ++i) {
        const int w = weight.lane[i] < 16 ? weight.lane[i] : 16;
        r.lane[i] = static_cast<short>(below.lane[i] * (16 - w) + above.lane[i] * w);
    }
    return r;
}

template <int n>
LUMALANE_INLINE sixteenths<n> blend(bytes<n> below, bytes<n> above, bytes<n> weight) {
    if constexpr (n == 8)
        return {blend_words(widen(below), widen(above), widen(weight))};
    else
        return {blend_words(widen_low(below), widen_low(above), widen_low(weight)),
                blend_words(widen_high(below), widen_high(above), widen_high(weight))};
}

// ---- Pixels ------------------------------------------------------------------------------------
//
// The channels of a group of n pixels are interleaved into vectors in memory order. They come even
// and odd apart: in every block of 16 pixels the 8 even ones, then the 8 odd ones, as
// narrow_saturate(even, odd) leaves them.

// What is interleaved within the blocks of a vector does not come out in memory order. So pixels and
// their chroma are permuted over the blocks when they are loaded, for `count` vectors, in whatever
// way makes interleaving to so many leave memory order. One block needs no permutation.

template <int count, int n>
LUMALANE_INLINE bytes<n> permuted(bytes<n> in_order) {
    return in_order;
}

template <int count, int n>
LUMALANE_INLINE bytes<n> load_permuted(const unsigned char *from) {
    return load<n>(from);
}

template <int count, int n>
LUMALANE_INLINE words<n> load_chroma_permuted(const unsigned char *from) {
    return widen(load<n>(from));
}

// The samples of U and V in turn, permuted like their pixels.
template <int count, int n>
LUMALANE_INLINE bytes<n> load_pairs_permuted(const unsigned char *u, const unsigned char *v) {
    return join(load_chroma_permuted<count, n / 2>(u), load_chroma_permuted<count, n / 2>(v));
}

// n bytes of the 2n at `from`: those with even or odd offsets, or the averages of each two of them,
// rounded up; permuted like pixels.
template <int count, int n>
LUMALANE_INLINE bytes<n> load_even(const unsigned char *from) {
    return narrow_saturate(even(load<2 * n>(from)));
}

template <int count, int n>
LUMALANE_INLINE bytes<n> load_odd(const unsigned char *from) {
    return narrow_saturate(odd(load<2 * n>(from)));
}

template <int count, int n>
LUMALANE_INLINE bytes<n> load_averages(const unsigned char *from) {
    return narrow_saturate(average_neighbours(load<2 * n>(from)));
}

// In the order of pairs that comes cheapest.
inline constexpr pairs packed_order = pairs::in_order;

template <int count, int n>
LUMALANE_INLINE packed_pixels<n> load_packed(const unsigned char *from) {
    packed_pixels<n> r;
    for (int i = 0; i < n; ++i) {
        r.even.lane[i] = from[i / 2 * 4 + i % 2];
        r.odd.lane[i] = from[i / 2 * 4 + 2 + i % 2];
    }
    return r;
}

// Which pixel of its block a lane holds, even and odd ones apart.
LUMALANE_INLINE constexpr int pixel_of_lane(int lane) { return lane % 8 * 2 + lane / 8; }

template <int count>
LUMALANE_INLINE vectors<count, 16> interleave_lanes(const bytes<16> (&channels)[count]) {
    vectors<count, 16> r;
    for (int c = 0; c < count; ++c)
        for (int i = 0; i < 16; ++i) {
            const int at = count * pixel_of_lane(i) + c;
            r.part[at / 16].lane[at % 16] = channels[c].lane[i];
        }
    return r;
}

// 2 bytes per pixel: first, second. (Targets need to know but their own packed_order.)
template <pairs = pairs::in_order>
LUMALANE_INLINE vectors<2, 16> interleave_channels(bytes<16> first, bytes<16> second) {
    return interleave_lanes<2>({first, second});
}

// The same of pixels that are in order.
LUMALANE_INLINE vectors<2, 16> interleave(bytes<16> first, bytes<16> second) {
    vectors<2, 16> r;
    for (int i = 0; i < 16; ++i) {
        r.part[i / 8].lane[i % 8 * 2] = first.lane[i];
        r.part[i / 8].lane[i % 8 * 2 + 1] = second.lane[i];
    }
    return r;
}

// The same of short vectors, whose result is one.
template <int n>
LUMALANE_INLINE bytes<2 * n> interleave_lower(bytes<n> first, bytes<n> second) {
    bytes<2 * n> r;
    for (int i = 0; i < n; ++i) {
        r.lane[2 * i] = first.lane[i];
        r.lane[2 * i + 1] = second.lane[i];
    }
    return r;
}

// The same of pairs of bytes.
LUMALANE_INLINE vectors<2, 16> interleave_pairs(bytes<16> first, bytes<16> second) {
    vectors<2, 16> r;
    for (int i = 0; i < 16; ++i) {
        r.part[i / 8].lane[i % 8 / 2 * 4 + i % 2] = first.lane[i];
        r.part[i / 8].lane[i % 8 / 2 * 4 + 2 + i % 2] = second.lane[i];
    }
    return r;
}

// Lanes 1, 2, 3 ..., and the last one once more.
template <int n>
LUMALANE_INLINE bytes<n> next_lanes(bytes<n> a) {
    bytes<n> r;
    for (int i = 0; i < n; ++i)
        r.lane[i] = a.lane[i + 1 < n ? i + 1 : i];
    return r;
}

// The even ones of the first 16 bytes in place of the second 8. (Of vectors wider than 64 bytes in each
// 64.)
template <int n>
LUMALANE_INLINE bytes<n> even_bytes_in_second_8(bytes<n> a) {
    bytes<n> r = a;
    for (int i = 0; i < n; ++i)
        if (i % 64 / 8 == 1)
            r.lane[i] = a.lane[i / 64 * 64 + i % 8 * 2];
    return r;
}

// Stores all but the first 8 of every 32 bytes.
LUMALANE_INLINE void store_after_8(unsigned char *to, const vectors<2, 16> &parts) {
    for (int i = 8; i < 16; ++i)
        to[i] = parts.part[0].lane[i];
    store(to + 16, parts.part[1]);
}

// 3 bytes per pixel: first, second, third.
template <pairs = pairs::in_order>
LUMALANE_INLINE vectors<3, 16> interleave_channels(bytes<16> first, bytes<16> second,
                                                   bytes<16> third) {
    return interleave_lanes<3>({first, second, third});
}

// 4 bytes per pixel: first, second, third, 0.
template <pairs = pairs::in_order>
LUMALANE_INLINE vectors<4, 16> interleave_channels_padded(bytes<16> first, bytes<16> second,
                                                          bytes<16> third) {
    return interleave_lanes<4>({first, second, third, fill_bytes<16>(0)});
}

// One byte of every `size`, beginning with the one at offset `channel`, of the n * size bytes at
// `from`, all of which are read.
template <int size, int channel, int n>
LUMALANE_INLINE bytes<n> load_channel(const unsigned char *from) {
    bytes<n> r;
    for (int i = 0; i < n; ++i)
        r.lane[i] = from[size * i + channel];
    return r;
}

// The n bytes at `from`, each followed by size - 1 zeros, in order.
template <int size, int n>
LUMALANE_INLINE vectors<size, n> load_spread(const unsigned char *from) {
    vectors<size, n> r;
    for (int i = 0; i < size * n; ++i)
        r.part[i / n].lane[i % n] = i % size == 0 ? from[i / size] : 0;
    return r;
}

// ---- Half-interleaved pixels -------------------------------------------------------------------
//
// Pixels that are taken apart for arithmetic in words: n / 2 of them, lanes of the first and of the
// second half in turn.

// Reads n / 2 pixels of `size` bytes.
template <int size, int n>
LUMALANE_INLINE half_interleaved<n> load_half_interleaved(const unsigned char *from) {
    half_interleaved<n> r;
    for (int i = 0; i < n / 2; ++i) {
        const unsigned char *const pixel = from + size * (i / 2 + i % 2 * (n / 4));
        r.bg.lane[i] = static_cast<short>(pixel[0] | pixel[1] << 8);
        r.rx.lane[i] = static_cast<short>(size == 4 ? pixel[2] | pixel[3] << 8 : pixel[2] << 8);
    }
    return r;
}

// Lanes of the lower and of the upper half in turn.
template <int n>
LUMALANE_INLINE words<n> half_interleave(words<n> a) {
    words<n> r;
    for (int i = 0; i < n; ++i)
        r.lane[i] = a.lane[i / 2 + i % 2 * (n / 2)];
    return r;
}

// In every block words 0, 1, 4 and 5 of `a`, then of `b`.
template <int n>
LUMALANE_INLINE words<n> even_pairs_of_words(words<n> a, words<n> b) {
    words<n> r;
    for (int i = 0; i < n; ++i) {
        const int from = i / 8 * 8 + i % 4 / 2 * 4 + i % 2;
        r.lane[i] = i % 8 < 4 ? a.lane[from] : b.lane[from];
    }
    return r;
}

// The upper bytes in the order that the pixels had: those of `a`, then those of `b`.
template <int n>
LUMALANE_INLINE bytes<2 * n> deinterleave_upper_bytes(words<n> a, words<n> b) {
    bytes<2 * n> r;
    for (int i = 0; i < n; ++i) {
        const int from = i % (n / 2) * 2 + i / (n / 2);
        r.lane[i] = static_cast<unsigned char>(a.lane[from] >> 8);
        r.lane[n + i] = static_cast<unsigned char>(b.lane[from] >> 8);
    }
    return r;
}

// The same of what even_pairs_of_words() left, the two apart.
template <int n>
LUMALANE_INLINE halves<n> deinterleave_upper_bytes_of_even(words<n> a, words<n> b) {
    halves<n> r;
    for (int i = 0; i < n; ++i) {
        const int quarter = i / (n / 4), half_interleave = i % (n / 4);
        const int from =
            half_interleave / 2 * 8 + quarter / 2 * 4 + half_interleave % 2 * 2 + quarter % 2;
        r.lower.lane[i] = static_cast<unsigned char>(a.lane[from] >> 8);
        r.upper.lane[i] = static_cast<unsigned char>(b.lane[from] >> 8);
    }
    return r;
}

} // namespace lumalane::LUMALANE_TARGET_NAME
