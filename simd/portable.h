// The compilers' own vectors: the definition of every operation, and the target that runs anywhere.
//
// bytes<n> are n unsigned 8-bit lanes, words<n> are n signed 16-bit lanes; lane 0 is the first in
// memory. Operations that move lanes work within blocks of 16 bytes (8 words), as the wide
// registers of x86 do; a vector of 16 bytes or fewer is one block.
#pragma once

#include "simd/lanes.h"

static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__);

namespace lumalane::LUMALANE_TARGET_NAME {

template <int n>
struct bytes {
    lanes<unsigned char, n> lane;
};

template <int n>
struct words {
    lanes<short, n> lane;
};

// Lanes of the widest bytes<> that the target works with.
inline constexpr int widest = 16;

// Words as unsigned ones, whose arithmetic is modulo 2^16.
template <int n>
LUMALANE_INLINE lanes<unsigned short, n> as_unsigned(words<n> a) {
    return (lanes<unsigned short, n>)a.lane;
}

template <int n>
LUMALANE_INLINE words<n> as_signed(lanes<unsigned short, n> a) {
    return {(lanes<short, n>)a};
}

// ---- Memory ------------------------------------------------------------------------------------

template <int n>
LUMALANE_INLINE bytes<n> load(const unsigned char *from) {
    bytes<n> r;
    __builtin_memcpy(&r, from, n);
    return r;
}

// The lower half of the lanes from one place, the upper half from another.
template <int n>
LUMALANE_INLINE bytes<n> load_halves(const unsigned char *low, const unsigned char *high) {
    unsigned char lane[n];
    __builtin_memcpy(lane, low, n / 2);
    __builtin_memcpy(lane + n / 2, high, n / 2);
    return load<n>(lane);
}

template <int n>
LUMALANE_INLINE void store(unsigned char *to, bytes<n> a) {
    __builtin_memcpy(to, &a, n);
}

// Stores around the cache where `streams`: elsewhere as any other store. `to` is aligned to streamed_bytes<n>.
inline constexpr bool streams = false;

template <int n>
LUMALANE_INLINE void stream(unsigned char *to, bytes<n> a) {
    store(to, a);
}

// Makes streamed stores visible before any later one.
LUMALANE_INLINE void stream_fence() {}

// ---- Moving lanes ------------------------------------------------------------------------------

// n lanes, of which the i-th is the index(i)-th of those of `a` and then of `b`.
template <int n, class Index>
LUMALANE_INLINE bytes<n> pick(bytes<n> a, bytes<n> b, Index index) {
    return {pick<n>(a.lane, b.lane, index)};
}

template <int n, class Index>
LUMALANE_INLINE words<n> pick(words<n> a, words<n> b, Index index) {
    return {pick<n>(a.lane, b.lane, index)};
}

// ---- One lane at a time ------------------------------------------------------------------------

template <int n>
LUMALANE_INLINE words<n> fill_words(int value) {
    return {lanes<short, n>{} + static_cast<short>(value)};
}

// Even lanes, odd lanes.
template <int n>
LUMALANE_INLINE words<n> fill_word_pairs(int even, int odd) {
    return pick(
        fill_words<n>(even), fill_words<n>(odd), [](int i) constexpr { return i % 2 * n + i; });
}

template <int n>
LUMALANE_INLINE bytes<n> fill_bytes(int value) {
    return {lanes<unsigned char, n>{} + static_cast<unsigned char>(value)};
}

template <int n>
LUMALANE_INLINE words<n> add(words<n> a, words<n> b) {
    return as_signed<n>(as_unsigned(a) + as_unsigned(b));
}

template <int n>
LUMALANE_INLINE words<n> subtract(words<n> a, words<n> b) {
    return as_signed<n>(as_unsigned(a) - as_unsigned(b));
}

template <int n>
LUMALANE_INLINE words<n> maximum(words<n> a, words<n> b) {
    return {select(a.lane > b.lane, a.lane, b.lane)};
}

template <int n>
LUMALANE_INLINE words<n> minimum(words<n> a, words<n> b) {
    return {select(a.lane < b.lane, a.lane, b.lane)};
}

// Clamped to the range of a signed 16-bit lane: where the sum has neither summand's sign, it is too
// large for two positive ones, too small for two negative ones.
template <int n>
LUMALANE_INLINE words<n> add_saturate(words<n> a, words<n> b) {
    const lanes<short, n> sum = add(a, b).lane;
    const lanes<short, n> limit = (a.lane >> 15) ^ 0x7fff;
    return {select(((a.lane ^ sum) & (b.lane ^ sum)) < 0, limit, sum)};
}

// Of lanes taken as unsigned, clamped to 65535.
template <int n>
LUMALANE_INLINE words<n> add_saturate_unsigned(words<n> a, words<n> b) {
    const lanes<unsigned short, n> sum = as_unsigned(a) + as_unsigned(b);
    return {(lanes<short, n>)sum | (lanes<short, n>)(sum < as_unsigned(a))};
}

template <int n>
LUMALANE_INLINE bytes<n> absolute_difference(bytes<n> a, bytes<n> b) {
    return {select(a.lane > b.lane, a.lane - b.lane, b.lane - a.lane)};
}

// The lower and the upper half of the signed 32-bit product.
template <int n>
LUMALANE_INLINE words<n> multiply_low(words<n> a, words<n> b) {
    return as_signed<n>(as_unsigned(a) * as_unsigned(b));
}

template <int n>
LUMALANE_INLINE words<n> multiply_high(words<n> a, words<n> b) {
    return {convert<short, n>((convert<int, n>(a.lane) * convert<int, n>(b.lane)) >> 16)};
}

// The upper half of the product of lanes taken as unsigned.
template <int n>
LUMALANE_INLINE words<n> multiply_high_unsigned(words<n> a, words<n> b) {
    const lanes<unsigned, n> product =
        convert<unsigned, n>(as_unsigned(a)) * convert<unsigned, n>(as_unsigned(b));
    return {convert<short, n>(product >> 16)};
}

// The product divided by 2^15, rounded to the nearest, of lanes that are not both -32768. Worth its
// while only where it is one instruction.
inline constexpr bool multiplies_rounded = false;

template <int n>
LUMALANE_INLINE words<n> multiply_rounded(words<n> a, words<n> b) {
    const lanes<int, n> product = convert<int, n>(a.lane) * convert<int, n>(b.lane);
    return {convert<short, n>((product + 0x4000) >> 15)};
}

template <int count, int n>
LUMALANE_INLINE words<n> shift_left(words<n> a) {
    return as_signed<n>(as_unsigned(a) << count);
}

// Rounds towards minus infinity.
template <int count, int n>
LUMALANE_INLINE words<n> shift_right_arithmetic(words<n> a) {
    return {a.lane >> count};
}

// Zeros come in from the left.
template <int count, int n>
LUMALANE_INLINE words<n> shift_right_logical(words<n> a) {
    return as_signed<n>(as_unsigned(a) >> count);
}

// Bits do not pass from one byte to the next.
template <int count, int n>
LUMALANE_INLINE bytes<n> shift_left(bytes<n> a) {
    return {a.lane << count};
}

template <int count, int n>
LUMALANE_INLINE bytes<n> shift_right_logical(bytes<n> a) {
    return {a.lane >> count};
}

template <int n>
LUMALANE_INLINE bytes<n> operator&(bytes<n> a, bytes<n> b) {
    return {a.lane & b.lane};
}

template <int n>
LUMALANE_INLINE bytes<n> operator|(bytes<n> a, bytes<n> b) {
    return {a.lane | b.lane};
}

template <int n>
LUMALANE_INLINE words<n> operator&(words<n> a, words<n> b) {
    return {a.lane & b.lane};
}

template <int n>
LUMALANE_INLINE words<n> operator|(words<n> a, words<n> b) {
    return {a.lane | b.lane};
}

// All bits set where it is so, none elsewhere.
template <int n>
LUMALANE_INLINE words<n> equal(words<n> a, words<n> b) {
    return {a.lane == b.lane};
}

template <int n>
LUMALANE_INLINE bytes<n> equal(bytes<n> a, bytes<n> b) {
    return {(lanes<unsigned char, n>)(a.lane == b.lane)};
}

// The same of lanes that are 1..127.
template <int n>
LUMALANE_INLINE bytes<n> in_1_to_127(bytes<n> a) {
    return {(lanes<unsigned char, n>)((lanes<signed char, n>)a.lane > 0)};
}

// `chosen` where a lane of `where` is 255, `otherwise` where it is 0.
template <int n>
LUMALANE_INLINE bytes<n> choose(bytes<n> where, bytes<n> chosen, bytes<n> otherwise) {
    return {(where.lane & chosen.lane) | (~where.lane & otherwise.lane)};
}

template <int n>
LUMALANE_INLINE bool all_zero(bytes<n> a) {
    const auto fours = (lanes<unsigned, n / 4>)a.lane;
    unsigned any = 0;
    for (int i = 0; i < n / 4; ++i)
        any |= fours[i];
    return any == 0;
}

// Lanes of `chosen` where those of a and b are equal, of `otherwise` elsewhere.
template <int n>
LUMALANE_INLINE bytes<n> choose_equal(bytes<n> a, bytes<n> b, bytes<n> chosen, bytes<n> otherwise) {
    return choose(equal(a, b), chosen, otherwise);
}

// Of lanes that are 255 or 0: whether all are 255.
template <int n>
LUMALANE_INLINE bool all(bytes<n> where) {
    return all_zero(bytes<n>{~where.lane});
}

// Averages rounded up: a | b are the bits of both and those that differ, of which half too many.
template <int n>
LUMALANE_INLINE bytes<n> average(bytes<n> a, bytes<n> b) {
    return {(a.lane | b.lane) - ((a.lane ^ b.lane) >> 1)};
}

// The same of lanes that are not negative.
template <int n>
LUMALANE_INLINE words<n> average(words<n> a, words<n> b) {
    return as_signed<n>((as_unsigned(a) + as_unsigned(b) + 1) >> 1);
}

// ---- Between bytes and words -------------------------------------------------------------------

template <int n>
LUMALANE_INLINE bytes<n / 2> lower_half(bytes<n> a) {
    return load<n / 2>(reinterpret_cast<const unsigned char *>(&a));
}

template <int n>
LUMALANE_INLINE bytes<n / 2> upper_half(bytes<n> a) {
    return load<n / 2>(reinterpret_cast<const unsigned char *>(&a) + n / 2);
}

// The lower half of each.
LUMALANE_INLINE bytes<16> lower_halves(bytes<16> a, bytes<16> b) {
    bytes<16> r = a;
    __builtin_memcpy(reinterpret_cast<unsigned char *>(&r) + 8, &b, 8);
    return r;
}

// As the lower half, with anything above it.
template <int n>
LUMALANE_INLINE bytes<2 * n> extend(bytes<n> a) {
    bytes<2 *n> r = {};
    __builtin_memcpy(&r, &a, n);
    return r;
}

// The same bits: of each word the lower byte, then the upper one.
template <int n>
LUMALANE_INLINE words<n / 2> as_words(bytes<n> a) {
    return {(lanes<short, n / 2>)a.lane};
}

template <int n>
LUMALANE_INLINE bytes<2 * n> as_bytes(words<n> a) {
    return {(lanes<unsigned char, 2 * n>)a.lane};
}

// The lower and the upper 8 lanes of every block of `upper`, each above the one of `lower`.
template <int n>
LUMALANE_INLINE words<n / 2> widen_low(bytes<n> upper, bytes<n> lower) {
    return as_words(pick(
        lower, upper, [](int i) constexpr { return i / 16 * 16 + i % 16 / 2 + i % 2 * n; }));
}

template <int n>
LUMALANE_INLINE words<n / 2> widen_high(bytes<n> upper, bytes<n> lower) {
    return as_words(pick(
        lower, upper, [](int i) constexpr { return i / 16 * 16 + 8 + i % 16 / 2 + i % 2 * n; }));
}

// The same with zeros above.
template <int n>
LUMALANE_INLINE words<n / 2> widen_low(bytes<n> a) {
    return widen_low(bytes<n>{}, a);
}

template <int n>
LUMALANE_INLINE words<n / 2> widen_high(bytes<n> a) {
    return widen_high(bytes<n>{}, a);
}

// All lanes, in order; narrow() takes back what is 0..255.
template <int n>
LUMALANE_INLINE words<n> widen(bytes<n> a) {
    const auto index = [](int i) constexpr { return i / 2 + i % 2 * n; };
    return {(lanes<short, n>)pick<2 * n>(a.lane, bytes<n>{}.lane, index)};
}

template <int n>
LUMALANE_INLINE bytes<n> narrow(words<n> a) {
    const auto index = [](int i) constexpr { return 2 * i; };
    return {pick<n>(as_bytes(a).lane, as_bytes(a).lane, index)};
}

// Lanes 0, 2, 4 ... and lanes 1, 3, 5 ...
template <int n>
LUMALANE_INLINE words<n / 2> even(bytes<n> a) {
    return {as_words(a).lane & 0xff};
}

template <int n>
LUMALANE_INLINE words<n / 2> odd(bytes<n> a) {
    return shift_right_logical<8>(as_words(a));
}

// The same lanes times `factor`, a power of two up to 64.
template <int factor, int n>
LUMALANE_INLINE words<n / 2> even_times(bytes<n> a) {
    return {even(a).lane * factor};
}

template <int factor, int n>
LUMALANE_INLINE words<n / 2> odd_times(bytes<n> a) {
    return {odd(a).lane * factor};
}

// Of each even lane and the one after it the sum times `factor`, a power of two up to 64.
template <int factor, int n>
LUMALANE_INLINE words<n / 2> pairs_times(bytes<n> a) {
    return add(even_times<factor>(a), odd_times<factor>(a));
}

// Of each odd lane of one and the even lane before it of the other.
template <int factor, int n>
LUMALANE_INLINE words<n / 2> odd_and_even_times(bytes<n> of_odd, bytes<n> of_even) {
    return add(odd_times<factor>(of_odd), even_times<factor>(of_even));
}

template <int n>
LUMALANE_INLINE words<n> weighted(words<n> a, words<n> b, int p, int q) {
    return add(multiply_low(a, fill_words<n>(p)), multiply_low(b, fill_words<n>(q)));
}

// The lower byte of each lane times `lower` plus the upper one times `upper`, modulo 2^16.
template <int lower, int upper, int n>
LUMALANE_INLINE words<n> multiply_bytes(words<n> a) {
    return weighted(even(as_bytes(a)), odd(as_bytes(a)), lower, upper);
}

template <int n>
LUMALANE_INLINE words<n> clamp_to_byte(words<n> a) {
    return minimum(maximum(a, fill_words<n>(0)), fill_words<n>(255));
}

// Clamped to 0..255, in order.
template <int n>
LUMALANE_INLINE bytes<n> narrow_saturate(words<n> a) {
    return narrow(clamp_to_byte(a));
}

// Clamped to 0..255; in every block the 8 lanes of `a`, then the 8 lanes of `b`: of their bytes the
// lower ones.
template <int n>
LUMALANE_INLINE bytes<2 * n> narrow_saturate(words<n> a, words<n> b) {
    return pick(
        as_bytes(clamp_to_byte(a)), as_bytes(clamp_to_byte(b)),
        [](int i) constexpr { return i / 16 * 16 + i % 8 * 2 + i % 16 / 8 * 2 * n; });
}

// Lanes of `even` and `odd` in turn, which are 0..255.
template <int n>
LUMALANE_INLINE bytes<2 * n> join(words<n> even, words<n> odd) {
    return as_bytes(even | shift_left<8>(odd));
}

// The same of any lanes, clamped to 0..255.
template <int n>
LUMALANE_INLINE bytes<2 * n> narrow_interleaved(words<n> a, words<n> b) {
    return join(clamp_to_byte(a), clamp_to_byte(b));
}

// (a + b) * factor of the lanes that widen_low() and widen_high() take; it is 0..63.
template <int factor, int n>
LUMALANE_INLINE words<n / 2> weighted_low(bytes<n> a, bytes<n> b) {
    return weighted(widen_low(a), widen_low(b), factor, factor);
}

template <int factor, int n>
LUMALANE_INLINE words<n / 2> weighted_high(bytes<n> a, bytes<n> b) {
    return weighted(widen_high(a), widen_high(b), factor, factor);
}

// A mask over groups of four lanes: set where their sum is above `limit`.
template <int n>
LUMALANE_INLINE bytes<n> groups_above(bytes<n> a, int limit) {
    const auto fours = (lanes<int, n / 4>)a.lane;
    const auto pairs = (fours & 0x00ff00ff) + (fours >> 8 & 0x00ff00ff);
    return {(lanes<unsigned char, n>)((pairs & 0xffff) + (pairs >> 16) > limit)};
}

// Averages of lanes 2i and 2i + 1, rounded up.
template <int n>
LUMALANE_INLINE words<n / 2> average_neighbours(bytes<n> a) {
    return average(even(a), odd(a));
}

// Of each four lanes the first two, and the second two.
template <int n>
LUMALANE_INLINE words<n / 2> first_pairs(bytes<n> a) {
    const auto fours = (lanes<unsigned, n / 4>)a.lane;
    return {(lanes<short, n / 2>)((fours & 0xff) | (fours << 8 & 0xff0000))};
}

template <int n>
LUMALANE_INLINE words<n / 2> second_pairs(bytes<n> a) {
    const auto fours = (lanes<unsigned, n / 4>)a.lane;
    return first_pairs(bytes<n>{(lanes<unsigned char, n>)(fours >> 16)});
}

// The averages of the two, rounded up.
template <int n>
LUMALANE_INLINE words<n / 2> average_neighbour_pairs(bytes<n> a) {
    return average(first_pairs(a), second_pairs(a));
}

// ---- Blending ----------------------------------------------------------------------------------

// below * (16 - weight) + above * weight; weights of more than 16 count as 16.
template <int n>
LUMALANE_INLINE words<n> blend_words(words<n> below, words<n> above, words<n> weight) {
    const lanes<short, n> w = minimum(weight, fill_words<n>(16)).lane;
    return {below.lane * (16 - w) + above.lane * w};
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

// The samples of U and V in turn, permuted like their pixels, for 1 or 2 vectors.
template <int count, int n>
LUMALANE_INLINE bytes<n> load_pairs_permuted(const unsigned char *u, const unsigned char *v) {
    return join(load_chroma_permuted<count, n / 2>(u), load_chroma_permuted<count, n / 2>(v));
}

// n bytes of the 2n at `from`: those with even or odd offsets, or the averages of each two of them,
// rounded up.
template <int n>
LUMALANE_INLINE bytes<n> load_even(const unsigned char *from) {
    return pick(
        load<n>(from), load<n>(from + n), [](int i) constexpr { return 2 * i; });
}

template <int n>
LUMALANE_INLINE bytes<n> load_odd(const unsigned char *from) {
    return pick(
        load<n>(from), load<n>(from + n), [](int i) constexpr { return 2 * i + 1; });
}

template <int n>
LUMALANE_INLINE bytes<n> load_averages(const unsigned char *from) {
    return average(load_even<n>(from), load_odd<n>(from));
}

// In the order of pairs that comes cheapest.
inline constexpr pairs packed_order = pairs::in_order;

template <int n>
LUMALANE_INLINE packed_pixels<n> even_and_odd_pairs(words<n / 2> a, words<n / 2> b) {
    return {as_bytes(pick(
                a, b, [](int i) constexpr { return 2 * i; })),
            as_bytes(pick(
                a, b, [](int i) constexpr { return 2 * i + 1; }))};
}

template <int count, int n>
LUMALANE_INLINE packed_pixels<n> load_packed(const unsigned char *from) {
    return even_and_odd_pairs<n>(as_words(load<n>(from)), as_words(load<n>(from + n)));
}

// Groups of `size` bytes in turn: those of the lower halves, then those of the upper halves.
template <int size>
LUMALANE_INLINE vectors<2, 16> interleave_groups(bytes<16> first, bytes<16> second) {
    return {pick(
                first, second,
                [](int i) constexpr { return i / size / 2 * size + i % size + i / size % 2 * 16; }),
            pick(
                first, second, [](int i) constexpr {
                    return 8 + i / size / 2 * size + i % size + i / size % 2 * 16;
                })};
}

// 2 bytes per pixel of pixels that are in order: first, second.
LUMALANE_INLINE vectors<2, 16> interleave(bytes<16> first, bytes<16> second) {
    return interleave_groups<1>(first, second);
}

// The same of short vectors, whose result is one.
template <int n>
LUMALANE_INLINE bytes<2 * n> interleave_lower(bytes<n> first, bytes<n> second) {
    return join(widen(first), widen(second));
}

// The same of pairs of bytes.
LUMALANE_INLINE vectors<2, 16> interleave_pairs(bytes<16> first, bytes<16> second) {
    return interleave_groups<2>(first, second);
}

// Lanes 1, 2, 3 ..., and the last one once more.
template <int n>
LUMALANE_INLINE bytes<n> next_lanes(bytes<n> a) {
    unsigned char lane[n + 1];
    store(lane, a);
    lane[n] = lane[n - 1];
    return load<n>(lane + 1);
}

// The even ones of the first 16 bytes in place of the second 8, of vectors wider than 16 bytes.
template <int n>
LUMALANE_INLINE bytes<n> even_bytes_in_second_8(bytes<n> a) {
    unsigned char lane[n];
    store(lane, a);
    store(lane + 8, narrow(even(load<16>(lane))));
    return load<n>(lane);
}

// Stores all but the first 8 of every 32 bytes.
LUMALANE_INLINE void store_after_8(unsigned char *to, const vectors<2, 16> &parts) {
    store(to + 8, upper_half(parts.part[0]));
    store(to + 16, parts.part[1]);
}

// 2 bytes per pixel, of even and odd pixels apart: first, second. (Targets need to know but their own
// packed_order.)
template <pairs = pairs::in_order>
LUMALANE_INLINE vectors<2, 16> interleave_channels(bytes<16> first, bytes<16> second) {
    const vectors<2, 16> even_odd = interleave(first, second);
    return interleave_pairs(even_odd.part[0], even_odd.part[1]);
}

// 4 bytes per pixel: first, second, third, 0.
template <pairs = pairs::in_order>
LUMALANE_INLINE vectors<4, 16> interleave_channels_padded(bytes<16> first, bytes<16> second,
                                                          bytes<16> third) {
    const vectors<2, 16> lower = interleave_channels(first, second);
    const vectors<2, 16> upper = interleave_channels(third, fill_bytes<16>(0));
    const vectors<2, 16> low = interleave_pairs(lower.part[0], upper.part[0]);
    const vectors<2, 16> high = interleave_pairs(lower.part[1], upper.part[1]);
    return {low.part[0], low.part[1], high.part[0], high.part[1]};
}

// 3 bytes per pixel: first, second, third. Each pixel takes the place of the fourth byte before it.
template <pairs = pairs::in_order>
LUMALANE_INLINE vectors<3, 16> interleave_channels(bytes<16> first, bytes<16> second,
                                                   bytes<16> third) {
    const vectors<4, 16> padded = interleave_channels_padded(first, second, third);
    const auto *const from = reinterpret_cast<const unsigned char *>(&padded);
    unsigned char to[3 * 16 + 1];
    for (int i = 0; i < 16; ++i)
        __builtin_memcpy(to + 3 * i, from + 4 * i, 4);
    return {load<16>(to), load<16>(to + 16), load<16>(to + 32)};
}

// One byte of every `size`, beginning with the one at offset `channel`, of the n * size bytes at
// `from`, all of which are read.
template <int size, int channel, int n>
LUMALANE_INLINE bytes<n> load_channel(const unsigned char *from) {
    unsigned char lane[n];
    for (int i = 0; i < n; ++i)
        lane[i] = from[size * i + channel];
    return load<n>(lane);
}

// The n bytes at `from`, each followed by size - 1 zeros, in order.
template <int size, int n>
LUMALANE_INLINE vectors<size, n> load_spread(const unsigned char *from) {
    vectors<size, n> r;
    auto *const to = reinterpret_cast<unsigned char *>(&r);
    for (int i = 0; i < size * n; ++i)
        to[i] = i % size == 0 ? from[i / size] : 0;
    return r;
}

// ---- Half-interleaved pixels -------------------------------------------------------------------
//
// Pixels that are taken apart for arithmetic in words: n / 2 of them, lanes of the first and of the
// second half in turn.

// Reads n / 2 pixels of `size` bytes.
template <int size, int n>
LUMALANE_INLINE half_interleaved<n> load_half_interleaved(const unsigned char *from) {
    unsigned char bg[n], rx[n];
    for (int i = 0; i < n / 2; ++i) {
        const unsigned char *const pixel = from + size * (i / 2 + i % 2 * (n / 4));
        bg[2 * i] = pixel[0];
        bg[2 * i + 1] = pixel[1];
        rx[2 * i] = size == 4 ? pixel[2] : 0;
        rx[2 * i + 1] = pixel[size - 1];
    }
    return {as_words(load<n>(bg)), as_words(load<n>(rx))};
}

// Lanes of the lower and of the upper half in turn, and back.
template <int n>
LUMALANE_INLINE words<n> half_interleave(words<n> a) {
    return pick(
        a, a, [](int i) constexpr { return i / 2 + i % 2 * (n / 2); });
}

template <int n>
LUMALANE_INLINE words<n> half_deinterleave(words<n> a) {
    return pick(
        a, a, [](int i) constexpr { return i % (n / 2) * 2 + i / (n / 2); });
}

// In every block words 0, 1, 4 and 5 of `a`, then of `b`.
template <int n>
LUMALANE_INLINE words<n> even_pairs_of_words(words<n> a, words<n> b) {
    return pick(
        a, b, [](int i) constexpr { return i / 8 * 8 + i % 4 / 2 * 4 + i % 2 + i % 8 / 4 * n; });
}

// The upper bytes in the order that the pixels had: those of `a`, then those of `b`.
template <int n>
LUMALANE_INLINE bytes<2 * n> deinterleave_upper_bytes(words<n> a, words<n> b) {
    return pick(
        as_bytes(half_deinterleave(a)), as_bytes(half_deinterleave(b)),
        [](int i) constexpr { return 2 * i + 1; });
}

// The same of what even_pairs_of_words() left, the two apart.
template <int n>
LUMALANE_INLINE halves<n> deinterleave_upper_bytes_of_even(words<n> a, words<n> b) {
    const auto upper_bytes = [](words<n> of) {
        return narrow(shift_right_logical<8>(pick(
            of, of, [](int i) constexpr {
                const int quarter = i / (n / 4), in_quarter = i % (n / 4);
                return in_quarter / 2 * 8 + quarter / 2 * 4 + in_quarter % 2 * 2 + quarter % 2;
            })));
    };
    return {upper_bytes(a), upper_bytes(b)};
}

// ---- What some targets have --------------------------------------------------------------------

// Twice the signed 32-bit product, clamped to it; the upper half. A target has this one or
// multiply_high().
inline constexpr bool doubles_products = false;

template <int n>
LUMALANE_INLINE words<n> multiply_high_doubled(words<n> a, words<n> b) {
    const lanes<int, n> high = (convert<int, n>(a.lane) * convert<int, n>(b.lane)) >> 15;
    return {convert<short, n>(high + (high > 0x7fff))};
}

// Every sample times its gain, modulo 2^16, plus 64 times its offset with signed saturation, divided
// by 64, rounded to the nearest and clamped to 0..255. Offsets go with the lanes that widen_low() and
// widen_high() take. Worth its while only where bytes are multiplied to words.
inline constexpr bool amplifies_bytes = false;

template <int n>
LUMALANE_INLINE bytes<n> amplify(bytes<n> a, bytes<n> gain, words<n / 2> offset_64) {
    const auto half = [&](words<n / 2> x, words<n / 2> by) {
        const words<n / 2> sum = add_saturate(multiply_low(x, by), offset_64);
        return words<n / 2>{convert<short, n / 2>((convert<int, n / 2>(sum.lane) + 32) >> 6)};
    };
    return narrow_saturate(half(widen_low(a), widen_low(gain)),
                           half(widen_high(a), widen_high(gain)));
}

} // namespace lumalane::LUMALANE_TARGET_NAME
