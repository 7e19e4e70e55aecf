// Lanes in the 128-bit registers of SSE2; portable.h defines the operations. avx2.h includes this
// file too, for its vectors of one block, and mmx.h, which has registers of half the size.
#pragma once

#ifndef LUMALANE_HALF_REGISTERS
#include <emmintrin.h>
#endif

namespace lumalane::LUMALANE_TARGET_NAME {

#ifndef LUMALANE_HALF_REGISTERS
using m128i = __m128i;

// 32-bit lanes w and x of `a`, then y and z of `b`.
template <int w, int x, int y, int z>
LUMALANE_INLINE m128i dwords_of_both(m128i a, m128i b) {
    return _mm_castps_si128(
        _mm_shuffle_ps(_mm_castsi128_ps(a), _mm_castsi128_ps(b), _MM_SHUFFLE(z, y, x, w)));
}

template <int w, int x, int y, int z>
LUMALANE_INLINE m128i permute_dwords(m128i a) {
    return _mm_shuffle_epi32(a, _MM_SHUFFLE(z, y, x, w));
}

// Within each half.
template <int w, int x, int y, int z>
LUMALANE_INLINE m128i permute_words(m128i a) {
    constexpr int order = _MM_SHUFFLE(z, y, x, w);
    return _mm_shufflehi_epi16(_mm_shufflelo_epi16(a, order), order);
}
#endif

template <>
struct bytes<16> {
    m128i v;
};
template <>
struct bytes<8> { // in the lower half
    m128i v;
};
template <>
struct bytes<4> { // in the lowest quarter
    m128i v;
};
template <>
struct words<8> {
    m128i v;
};

inline constexpr bool doubles_products = false;
inline constexpr bool amplifies_bytes = false;

#ifndef LUMALANE_WIDER_TARGET
inline constexpr int widest = 16;
inline constexpr bool multiplies_rounded = false;
#endif

// ---- Memory ------------------------------------------------------------------------------------

template <int n>
LUMALANE_INLINE bytes<n> load(const unsigned char *from);

template <>
LUMALANE_INLINE bytes<16> load<16>(const unsigned char *from) {
    return {_mm_loadu_si128(reinterpret_cast<const m128i *>(from))};
}

template <>
LUMALANE_INLINE bytes<8> load<8>(const unsigned char *from) {
    return {_mm_loadl_epi64(reinterpret_cast<const m128i *>(from))};
}

template <>
LUMALANE_INLINE bytes<4> load<4>(const unsigned char *from) {
    int bits;
    __builtin_memcpy(&bits, from, sizeof bits);
    return {_mm_cvtsi32_si128(bits)};
}

template <int n>
LUMALANE_INLINE bytes<n> load_halves(const unsigned char *low, const unsigned char *high);

template <>
LUMALANE_INLINE bytes<16> load_halves<16>(const unsigned char *low, const unsigned char *high) {
    return {_mm_unpacklo_epi64(load<8>(low).v, load<8>(high).v)};
}

LUMALANE_INLINE void store(unsigned char *to, bytes<16> a) {
    _mm_storeu_si128(reinterpret_cast<m128i *>(to), a.v);
}

LUMALANE_INLINE void store(unsigned char *to, bytes<8> a) {
    _mm_storel_epi64(reinterpret_cast<m128i *>(to), a.v);
}

LUMALANE_INLINE void store(unsigned char *to, bytes<4> a) {
    const int bits = _mm_cvtsi128_si32(a.v);
    __builtin_memcpy(to, &bits, sizeof bits);
}

#ifndef LUMALANE_HALF_REGISTERS
inline constexpr bool streams = true;

// Where both ways of a branch end with such a store clang makes one of the two, and forgets that it goes
// around the cache: where half of each line still does, a picture takes up to 100 times as long. An
// instruction it takes as it is. (A sanitizer has to see the store.)
#if defined(__clang__) && !defined(LUMALANE_SANITIZED)
inline constexpr bool streams_by_instruction = true;
#else
inline constexpr bool streams_by_instruction = false;
#endif

template <class Vector>
LUMALANE_INLINE void stream_by_instruction(Vector *to, Vector a) {
#if defined(__AVX512VL__)
    __asm__("vmovntdq %1, %0" : "=m"(*to) : "v"(a));
#elif defined(__AVX__)
    __asm__("vmovntdq %1, %0" : "=m"(*to) : "x"(a));
#else
    __asm__("movntdq %1, %0" : "=m"(*to) : "x"(a));
#endif
}

LUMALANE_INLINE void stream(unsigned char *to, bytes<16> a) {
    const auto place = reinterpret_cast<m128i *>(to);
    if constexpr (streams_by_instruction)
        stream_by_instruction(place, a.v);
    else
        _mm_stream_si128(place, a.v);
}

LUMALANE_INLINE void stream_fence() { _mm_sfence(); }
#else
// It could, for a tenth more code.
inline constexpr bool streams = false;

LUMALANE_INLINE void stream(unsigned char *to, bytes<16> a) { store(to, a); }

LUMALANE_INLINE void stream_fence() {}
#endif

// ---- One lane at a time ------------------------------------------------------------------------

template <int n>
LUMALANE_INLINE words<n> fill_words(int value);

template <>
LUMALANE_INLINE words<8> fill_words<8>(int value) {
    return {_mm_set1_epi16(static_cast<short>(value))};
}

template <int n>
LUMALANE_INLINE words<n> fill_word_pairs(int even, int odd);

template <>
LUMALANE_INLINE words<8> fill_word_pairs<8>(int even, int odd) {
    return {_mm_set1_epi32((even & 0xffff) | static_cast<int>(static_cast<unsigned>(odd) << 16))};
}

template <int n>
LUMALANE_INLINE bytes<n> fill_bytes(int value);

template <>
LUMALANE_INLINE bytes<16> fill_bytes<16>(int value) {
    return {_mm_set1_epi8(static_cast<char>(value))};
}

LUMALANE_INLINE words<8> add(words<8> a, words<8> b) { return {_mm_add_epi16(a.v, b.v)}; }

LUMALANE_INLINE words<8> subtract(words<8> a, words<8> b) { return {_mm_sub_epi16(a.v, b.v)}; }

LUMALANE_INLINE words<8> add_saturate(words<8> a, words<8> b) { return {_mm_adds_epi16(a.v, b.v)}; }

LUMALANE_INLINE words<8> add_saturate_unsigned(words<8> a, words<8> b) {
    return {_mm_adds_epu16(a.v, b.v)};
}

LUMALANE_INLINE words<8> maximum(words<8> a, words<8> b) { return {_mm_max_epi16(a.v, b.v)}; }

LUMALANE_INLINE words<8> minimum(words<8> a, words<8> b) { return {_mm_min_epi16(a.v, b.v)}; }

LUMALANE_INLINE bytes<16> absolute_difference(bytes<16> a, bytes<16> b) {
    return {_mm_or_si128(_mm_subs_epu8(a.v, b.v), _mm_subs_epu8(b.v, a.v))};
}

// Where g++ knows a factor it makes shifts and additions of the intrinsics, several for one operation.
LUMALANE_INLINE words<8> multiply_low(words<8> a, words<8> b) {
#if defined(__clang__) || defined(LUMALANE_HALF_REGISTERS)
    return {_mm_mullo_epi16(a.v, b.v)};
#else
    return {reinterpret_cast<m128i>(
        __builtin_ia32_pmullw128(reinterpret_cast<__v8hi>(a.v), reinterpret_cast<__v8hi>(b.v)))};
#endif
}

LUMALANE_INLINE words<8> multiply_high(words<8> a, words<8> b) {
    return {_mm_mulhi_epi16(a.v, b.v)};
}

LUMALANE_INLINE words<8> multiply_high_unsigned(words<8> a, words<8> b) {
    return {_mm_mulhi_epu16(a.v, b.v)};
}

template <int count>
LUMALANE_INLINE words<8> shift_left(words<8> a) {
    return {_mm_slli_epi16(a.v, count)};
}

template <int count>
LUMALANE_INLINE words<8> shift_right_logical(words<8> a) {
    return {_mm_srli_epi16(a.v, count)};
}

template <int count>
LUMALANE_INLINE words<8> shift_right_arithmetic(words<8> a) {
    return {_mm_srai_epi16(a.v, count)};
}

LUMALANE_INLINE bytes<16> operator&(bytes<16> a, bytes<16> b) { return {_mm_and_si128(a.v, b.v)}; }

LUMALANE_INLINE bytes<16> operator|(bytes<16> a, bytes<16> b) { return {_mm_or_si128(a.v, b.v)}; }

// x86 shifts no single bytes: shift words, and mask what came over from the neighbour.
template <int count>
LUMALANE_INLINE bytes<16> shift_left(bytes<16> a) {
    return bytes<16>{_mm_slli_epi16(a.v, count)} & fill_bytes<16>(0xff << count);
}

template <int count>
LUMALANE_INLINE bytes<16> shift_right_logical(bytes<16> a) {
    return bytes<16>{_mm_srli_epi16(a.v, count)} & fill_bytes<16>(0xff >> count);
}

LUMALANE_INLINE words<8> operator&(words<8> a, words<8> b) { return {_mm_and_si128(a.v, b.v)}; }

LUMALANE_INLINE words<8> operator|(words<8> a, words<8> b) { return {_mm_or_si128(a.v, b.v)}; }

LUMALANE_INLINE words<8> equal(words<8> a, words<8> b) { return {_mm_cmpeq_epi16(a.v, b.v)}; }

LUMALANE_INLINE bytes<16> equal(bytes<16> a, bytes<16> b) { return {_mm_cmpeq_epi8(a.v, b.v)}; }

LUMALANE_INLINE bytes<16> in_1_to_127(bytes<16> a) {
    return {_mm_cmpgt_epi8(a.v, _mm_setzero_si128())};
}

#ifndef LUMALANE_WIDER_TARGET
LUMALANE_INLINE bytes<16> choose(bytes<16> where, bytes<16> chosen, bytes<16> otherwise) {
    return {_mm_or_si128(_mm_and_si128(where.v, chosen.v), _mm_andnot_si128(where.v, otherwise.v))};
}
#endif

template <int n>
LUMALANE_INLINE bytes<n> choose_equal(bytes<n> a, bytes<n> b, bytes<n> chosen, bytes<n> otherwise) {
    return choose(equal(a, b), chosen, otherwise);
}

// What clang is not told how it came about.
template <class Vector>
LUMALANE_INLINE Vector hidden(Vector a) {
#if defined(__clang__) && !defined(LUMALANE_HALF_REGISTERS)
    __asm__("" : "+x"(a));
#endif
    return a;
}

// (Clang, where it knows, negates each part of `where`: runs of the key take 1.1 to 1.2 times as long.)
LUMALANE_INLINE bool all(bytes<16> where) { return _mm_movemask_epi8(hidden(where.v)) == 0xffff; }

// ---- Between bytes and words -------------------------------------------------------------------

LUMALANE_INLINE bytes<8> lower_half(bytes<16> a) { return {a.v}; }

LUMALANE_INLINE bytes<8> upper_half(bytes<16> a) { return {_mm_unpackhi_epi64(a.v, a.v)}; }

LUMALANE_INLINE bytes<16> lower_halves(bytes<16> a, bytes<16> b) {
    return {_mm_unpacklo_epi64(a.v, b.v)};
}

LUMALANE_INLINE bytes<4> lower_half(bytes<8> a) { return {a.v}; }

LUMALANE_INLINE bytes<16> extend(bytes<8> a) { return {a.v}; }

LUMALANE_INLINE words<8> as_words(bytes<16> a) { return {a.v}; }

LUMALANE_INLINE bytes<16> as_bytes(words<8> a) { return {a.v}; }

LUMALANE_INLINE words<8> widen(bytes<8> a) { return {_mm_unpacklo_epi8(a.v, _mm_setzero_si128())}; }

LUMALANE_INLINE words<8> widen_low(bytes<16> a) {
    return {_mm_unpacklo_epi8(a.v, _mm_setzero_si128())};
}

LUMALANE_INLINE words<8> widen_high(bytes<16> a) {
    return {_mm_unpackhi_epi8(a.v, _mm_setzero_si128())};
}

LUMALANE_INLINE words<8> widen_low(bytes<16> whole, bytes<16> fraction) {
    return {_mm_unpacklo_epi8(fraction.v, whole.v)};
}

LUMALANE_INLINE words<8> widen_high(bytes<16> whole, bytes<16> fraction) {
    return {_mm_unpackhi_epi8(fraction.v, whole.v)};
}

LUMALANE_INLINE words<8> even(bytes<16> a) { return {_mm_and_si128(a.v, _mm_set1_epi16(0x00ff))}; }

LUMALANE_INLINE words<8> odd(bytes<16> a) { return {_mm_srli_epi16(a.v, 8)}; }

#ifndef LUMALANE_WIDER_TARGET
template <int factor>
LUMALANE_INLINE words<8> even_times(bytes<16> a) {
    return {
        _mm_and_si128(_mm_slli_epi16(a.v, __builtin_ctz(factor)), _mm_set1_epi16(0xff * factor))};
}

template <int factor>
LUMALANE_INLINE words<8> odd_times(bytes<16> a) {
    return {_mm_and_si128(_mm_srli_epi16(a.v, 8 - __builtin_ctz(factor)),
                          _mm_set1_epi16(0xff * factor))};
}

template <int factor>
LUMALANE_INLINE words<8> pairs_times(bytes<16> a) {
    return add(even_times<factor>(a), odd_times<factor>(a));
}

template <int factor>
LUMALANE_INLINE words<8> odd_and_even_times(bytes<16> of_odd, bytes<16> of_even) {
    return add(odd_times<factor>(of_odd), even_times<factor>(of_even));
}
#endif

LUMALANE_INLINE bytes<16> narrow_saturate(words<8> a, words<8> b) {
    return {_mm_packus_epi16(a.v, b.v)};
}

LUMALANE_INLINE bytes<8> narrow_saturate(words<8> a) { return {_mm_packus_epi16(a.v, a.v)}; }

#ifndef LUMALANE_WIDER_TARGET
LUMALANE_INLINE bytes<16> narrow_interleaved(words<8> a, words<8> b) {
    const m128i narrow = _mm_packus_epi16(a.v, b.v);
    // (Clang, where it knows, makes more operations of it.)
    return {_mm_unpacklo_epi8(narrow, hidden(_mm_unpackhi_epi64(narrow, narrow)))};
}
#endif

LUMALANE_INLINE bytes<16> join(words<8> even, words<8> odd) {
    return {_mm_or_si128(even.v, _mm_slli_epi16(odd.v, 8))};
}

#ifndef LUMALANE_WIDER_TARGET
template <int factor>
LUMALANE_INLINE words<8> weighted(words<8> a, words<8> b) {
    if constexpr (factor == 1)
        return add(a, b);
    else
        return multiply_low(add(a, b), fill_words<8>(factor));
}

template <int factor>
LUMALANE_INLINE words<8> weighted_low(bytes<16> a, bytes<16> b) {
    return weighted<factor>(widen_low(a), widen_low(b));
}

template <int factor>
LUMALANE_INLINE words<8> weighted_high(bytes<16> a, bytes<16> b) {
    return weighted<factor>(widen_high(a), widen_high(b));
}

LUMALANE_INLINE bytes<16> groups_above(bytes<16> a, int limit) {
    const words<8> pairs = add(even(a), odd(a));
    return {_mm_cmpgt_epi32(_mm_madd_epi16(pairs.v, _mm_set1_epi16(1)), _mm_set1_epi32(limit))};
}
#endif

template <int n>
LUMALANE_INLINE words<n / 2> average_neighbours(bytes<n> a) {
    return average(even(a), odd(a));
}

// The averages come in the lower half of each 32-bit lane, a byte each.
LUMALANE_INLINE words<8> average_neighbour_pairs(bytes<16> a) {
    const m128i averages = _mm_avg_epu8(a.v, _mm_srli_epi32(a.v, 16));
    const m128i lower = _mm_and_si128(averages, _mm_set1_epi32(0x000000ff));
    const m128i upper = _mm_and_si128(averages, _mm_set1_epi32(0x0000ff00));
    return {_mm_or_si128(lower, _mm_slli_epi32(upper, 8))};
}

LUMALANE_INLINE words<8> second_pairs(bytes<16> a) {
    const m128i lower = _mm_and_si128(_mm_srli_epi32(a.v, 16), _mm_set1_epi32(0x000000ff));
    const m128i upper = _mm_and_si128(_mm_srli_epi32(a.v, 8), _mm_set1_epi32(0x00ff0000));
    return {_mm_or_si128(lower, upper)};
}

// ---- Blending ----------------------------------------------------------------------------------

LUMALANE_INLINE bytes<16> average(bytes<16> a, bytes<16> b) { return {_mm_avg_epu8(a.v, b.v)}; }

LUMALANE_INLINE bytes<8> average(bytes<8> a, bytes<8> b) { return {_mm_avg_epu8(a.v, b.v)}; }

LUMALANE_INLINE words<8> average(words<8> a, words<8> b) { return {_mm_avg_epu16(a.v, b.v)}; }

LUMALANE_INLINE bool all_zero(bytes<16> a) {
    return _mm_movemask_epi8(_mm_cmpeq_epi8(a.v, _mm_setzero_si128())) == 0xffff;
}

LUMALANE_INLINE bool all_zero(bytes<8> a) {
    return all_zero(bytes<16>{_mm_unpacklo_epi64(a.v, a.v)});
}

#ifndef LUMALANE_WIDER_TARGET
// below * 16 + (above - below) * weight.
LUMALANE_INLINE words<8> blend_words(words<8> below, words<8> above, words<8> weight) {
    return add(shift_left<4>(below), multiply_low(subtract(above, below), weight));
}

LUMALANE_INLINE sixteenths<16> blend(bytes<16> below, bytes<16> above, bytes<16> weight) {
    const bytes<16> w = {_mm_min_epu8(weight.v, _mm_set1_epi8(16))};
    return {blend_words(widen_low(below), widen_low(above), widen_low(w)),
            blend_words(widen_high(below), widen_high(above), widen_high(w))};
}

LUMALANE_INLINE sixteenths<8> blend(bytes<8> below, bytes<8> above, bytes<8> weight) {
    const bytes<8> w = {_mm_min_epu8(weight.v, _mm_set1_epi8(16))};
    return {blend_words(widen(below), widen(above), widen(w))};
}
#endif

// ---- Pixels ------------------------------------------------------------------------------------

LUMALANE_INLINE bytes<16> narrow_in_order(words<8> a, words<8> b) { return narrow_saturate(a, b); }

// `make` of the words at `from`.
template <int n, class Make>
LUMALANE_INLINE bytes<n> load_made(const unsigned char *from, const Make &make) {
    if constexpr (n == 8)
        return narrow_saturate(make(load<16>(from)));
    else
        return narrow_in_order(make(load<n>(from)), make(load<n>(from + n)));
}

template <int n>
LUMALANE_INLINE bytes<n> load_even(const unsigned char *from) {
    return load_made<n>(from, [](auto a) LUMALANE_INLINE_LAMBDA { return even(a); });
}

template <int n>
LUMALANE_INLINE bytes<n> load_odd(const unsigned char *from) {
    return load_made<n>(from, [](auto a) LUMALANE_INLINE_LAMBDA { return odd(a); });
}

template <int n>
LUMALANE_INLINE bytes<n> load_averages(const unsigned char *from) {
    return load_made<n>(from, [](auto a) LUMALANE_INLINE_LAMBDA { return average_neighbours(a); });
}

#ifndef LUMALANE_WIDER_TARGET
template <int>
LUMALANE_INLINE bytes<16> permuted(bytes<16> in_order) {
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

template <int count, int n>
LUMALANE_INLINE bytes<n> load_pairs_permuted(const unsigned char *u, const unsigned char *v) {
    return {_mm_unpacklo_epi8(load<n / 2>(u).v, load<n / 2>(v).v)};
}

inline constexpr pairs packed_order = pairs::in_order;

template <int count, int n>
LUMALANE_INLINE packed_pixels<n> load_packed(const unsigned char *from) {
    // Two even words and two odd ones in turn.
    const m128i a = permute_words<0, 2, 1, 3>(load<16>(from).v);
    const m128i b = permute_words<0, 2, 1, 3>(load<16>(from + 16).v);
    return {{dwords_of_both<0, 2, 0, 2>(a, b)}, {dwords_of_both<1, 3, 1, 3>(a, b)}};
}
#endif

// Interleaves the even pixels (lower halves) and the odd ones apart, then the two.
template <pairs order = pairs::in_order>
LUMALANE_INLINE vectors<2, 16> interleave_channels(bytes<16> first, bytes<16> second) {
    const m128i evens = _mm_unpacklo_epi8(first.v, second.v);
    const m128i odds = _mm_unpackhi_epi8(first.v, second.v);
    const m128i low = _mm_unpacklo_epi16(evens, odds), high = _mm_unpackhi_epi16(evens, odds);
    if constexpr (order == pairs::in_order) {
        return {{{low}, {high}}};
    } else {
        return {{{dwords_of_both<0, 2, 0, 2>(low, high)}, {dwords_of_both<1, 3, 1, 3>(low, high)}}};
    }
}

LUMALANE_INLINE vectors<2, 16> interleave(bytes<16> first, bytes<16> second) {
    return {{{_mm_unpacklo_epi8(first.v, second.v)}, {_mm_unpackhi_epi8(first.v, second.v)}}};
}

LUMALANE_INLINE bytes<16> interleave_lower(bytes<8> first, bytes<8> second) {
    return {_mm_unpacklo_epi8(first.v, second.v)};
}

LUMALANE_INLINE bytes<8> interleave_lower(bytes<4> first, bytes<4> second) {
    return {_mm_unpacklo_epi8(first.v, second.v)};
}

LUMALANE_INLINE vectors<2, 16> interleave_pairs(bytes<16> first, bytes<16> second) {
    return {{{_mm_unpacklo_epi16(first.v, second.v)}, {_mm_unpackhi_epi16(first.v, second.v)}}};
}

LUMALANE_INLINE bytes<16> next_lanes(bytes<16> a) {
    const m128i last = _mm_slli_si128(_mm_srli_si128(a.v, 15), 15);
    return {_mm_or_si128(_mm_srli_si128(a.v, 1), last)};
}

LUMALANE_INLINE bytes<8> next_lanes(bytes<8> a) {
    const m128i last = _mm_slli_epi64(_mm_srli_epi64(a.v, 56), 56);
    return {_mm_or_si128(_mm_srli_epi64(a.v, 8), last)};
}

LUMALANE_INLINE void store_after_8(unsigned char *to, const vectors<2, 16> &parts) {
    store(to + 8, bytes<8>{_mm_unpackhi_epi64(parts.part[0].v, parts.part[0].v)});
    store(to + 16, parts.part[1]);
}

LUMALANE_INLINE vectors<2, 16> spread_words(bytes<16> a) {
    return interleave(a, fill_bytes<16>(0));
}

LUMALANE_INLINE vectors<4, 16> spread_dwords(bytes<16> a) {
    const m128i zero = _mm_setzero_si128(), low = widen_low(a).v, high = widen_high(a).v;
    return {{{_mm_unpacklo_epi16(low, zero)},
             {_mm_unpackhi_epi16(low, zero)},
             {_mm_unpacklo_epi16(high, zero)},
             {_mm_unpackhi_epi16(high, zero)}}};
}

// The third bytes of four triplets, in each 32-bit lane, of which the lanes of first, second and
// third are the twelve bytes: --0- -1-- 2--3.
LUMALANE_INLINE m128i third_bytes(m128i first, m128i second, m128i third) {
    const auto taken = [](m128i from, unsigned bits) {
        return _mm_and_si128(from, _mm_set1_epi32(static_cast<int>(bits)));
    };
    const m128i in_place = _mm_or_si128(taken(second, 0x0000ff00), taken(third, 0xff000000));
    const m128i moved = _mm_or_si128(_mm_srli_epi32(taken(first, 0x00ff0000), 16),
                                     _mm_slli_epi32(taken(third, 0x000000ff), 16));
    return _mm_or_si128(in_place, moved);
}

template <int size, int channel, int n>
LUMALANE_INLINE bytes<n> load_channel_of_blocks(const unsigned char *from) {
    if constexpr (size == 4) {
        static_assert(channel == 0);
        const auto pixels = [&](int offset) {
            return _mm_and_si128(load<16>(from + offset).v, _mm_set1_epi32(0x000000ff));
        };
        const m128i low = _mm_packs_epi32(pixels(0), pixels(16));
        if constexpr (n == 8)
            return narrow_saturate(words<8>{low});
        else
            return {_mm_packus_epi16(low, _mm_packs_epi32(pixels(32), pixels(48)))};
    } else {
        static_assert(size == 3 && channel == 2);
        const auto at = [&](int offset) { return load<16>(from + offset).v; };
        if constexpr (n == 8) {
            const m128i a = at(0), b = at(8); // 32-bit lanes 0 to 3 and 2 to 5
            const m128i lanes_1_and_4 = dwords_of_both<1, 1, 2, 2>(a, b);
            const m128i lanes_2_and_5 = dwords_of_both<2, 2, 3, 3>(a, b);
            const m128i thirds =
                third_bytes(dwords_of_both<0, 0, 3, 3>(a, a), lanes_1_and_4, lanes_2_and_5);
            return {permute_dwords<0, 2, 2, 2>(thirds)};
        } else {
            const m128i a = at(0), b = at(16), c = at(32);
            const m128i b_2_c_1 = dwords_of_both<2, 2, 1, 1>(b, c);
            const m128i a_1_b_0 = dwords_of_both<1, 1, 0, 0>(a, b);
            const m128i b_3_c_2 = dwords_of_both<3, 3, 2, 2>(b, c);
            const m128i a_2_b_1 = dwords_of_both<2, 2, 1, 1>(a, b);
            return {third_bytes(dwords_of_both<0, 3, 0, 2>(a, b_2_c_1),
                                dwords_of_both<0, 2, 0, 2>(a_1_b_0, b_3_c_2),
                                dwords_of_both<0, 2, 0, 3>(a_2_b_1, c))};
        }
    }
}

#ifndef LUMALANE_WIDER_TARGET
template <int size, int channel, int n>
LUMALANE_INLINE bytes<n> load_channel(const unsigned char *from) {
    return load_channel_of_blocks<size, channel, n>(from);
}

template <pairs = pairs::in_order>
LUMALANE_INLINE vectors<4, 16> interleave_channels_padded(bytes<16> first, bytes<16> second,
                                                          bytes<16> third) {
    const m128i zero = _mm_setzero_si128();
    const m128i even_12 = _mm_unpacklo_epi8(first.v, second.v);
    const m128i odd_12 = _mm_unpackhi_epi8(first.v, second.v);
    const m128i even_30 = _mm_unpacklo_epi8(third.v, zero);
    const m128i odd_30 = _mm_unpackhi_epi8(third.v, zero);
    const m128i even_0 = _mm_unpacklo_epi16(even_12, even_30);
    const m128i even_1 = _mm_unpackhi_epi16(even_12, even_30);
    const m128i odd_0 = _mm_unpacklo_epi16(odd_12, odd_30);
    const m128i odd_1 = _mm_unpackhi_epi16(odd_12, odd_30);
    return {{{_mm_unpacklo_epi32(even_0, odd_0)},
             {_mm_unpackhi_epi32(even_0, odd_0)},
             {_mm_unpacklo_epi32(even_1, odd_1)},
             {_mm_unpackhi_epi32(even_1, odd_1)}}};
}

// The two pixels of pair k are three words, 1e2e 3e1o 2o3o (1, 2, 3 the channels, e even, o odd);
// pairs 2k and 2k+1, a half_interleave, are three 32-bit lanes: begin, middle and end.
template <pairs = pairs::in_order>
LUMALANE_INLINE vectors<3, 16> interleave_channels(bytes<16> first, bytes<16> second,
                                                   bytes<16> third) {
    const m128i words_0 = _mm_unpacklo_epi8(first.v, second.v);
    const m128i words_1 = _mm_unpacklo_epi8(third.v, _mm_unpackhi_epi64(first.v, first.v));
    const m128i words_2 = _mm_unpackhi_epi8(second.v, third.v);
    const m128i next_words_0 = _mm_srli_si128(words_0, 2);
    const auto low = [](m128i a, m128i b) { return _mm_unpacklo_epi16(a, b); };
    const auto high = [](m128i a, m128i b) { return _mm_unpackhi_epi16(a, b); };
    // Pairs 0 and 1 (then 2 and 3) in lanes 0 and 2 of begin and middle, lanes 1 and 3 of end.
    const m128i begin_01 = low(words_0, words_1), begin_23 = high(words_0, words_1);
    const m128i middle_01 = low(words_2, next_words_0), middle_23 = high(words_2, next_words_0);
    const m128i end_01 = low(words_1, words_2), end_23 = high(words_1, words_2);

    const m128i begin_0_middle_0 = _mm_unpacklo_epi32(begin_01, middle_01);
    const m128i end_0_begin_1 = dwords_of_both<1, 1, 2, 2>(end_01, begin_01);
    const m128i middle_1_end_1 = _mm_unpackhi_epi32(middle_01, end_01);
    const m128i begin_2_middle_2 = _mm_unpacklo_epi32(begin_23, middle_23);
    const m128i end_2_begin_3 = dwords_of_both<1, 1, 2, 2>(end_23, begin_23);
    const m128i middle_3_end_3 = _mm_unpackhi_epi32(middle_23, end_23);
    const m128i part_0 = dwords_of_both<0, 1, 0, 2>(begin_0_middle_0, end_0_begin_1);
    const m128i part_1 = dwords_of_both<0, 3, 0, 1>(middle_1_end_1, begin_2_middle_2);
    const m128i part_2 = dwords_of_both<0, 2, 0, 3>(end_2_begin_3, middle_3_end_3);
    return {{{part_0}, {part_1}, {part_2}}};
}

// Within four bytes of the source, which make three 32-bit lanes 0--1 --2- -3--, bytes 0 and 2 are
// in place, and bytes 1 and 3 are so after their words change places.
LUMALANE_INLINE vectors<3, 16> spread_triplets(bytes<16> a) {
    const m128i swapped = permute_words<1, 0, 3, 2>(a.v);
    const auto part = [](m128i in_place, m128i moved, int first) -> bytes<16> {
        // Lanes `first`, first + 1 ... of the three over and over.
        constexpr int kept[] = {0x000000ff, 0x00ff0000, 0};
        constexpr int brought[] = {static_cast<int>(0xff000000), 0, 0x0000ff00};
        const auto masks = [&](const int(&of)[3]) {
            return _mm_setr_epi32(of[first], of[(first + 1) % 3], of[(first + 2) % 3], of[first]);
        };
        return {_mm_or_si128(_mm_and_si128(in_place, masks(kept)),
                             _mm_and_si128(moved, masks(brought)))};
    };
    return {{part(permute_dwords<0, 0, 0, 1>(a.v), permute_dwords<0, 0, 0, 1>(swapped), 0),
             part(permute_dwords<1, 1, 2, 2>(a.v), permute_dwords<1, 1, 2, 2>(swapped), 1),
             part(permute_dwords<2, 3, 3, 3>(a.v), permute_dwords<2, 3, 3, 3>(swapped), 2)}};
}

template <int size, int n>
LUMALANE_INLINE vectors<size, n> load_spread(const unsigned char *from) {
    const bytes<16> a = load<16>(from);
    if constexpr (size == 2)
        return spread_words(a);
    else if constexpr (size == 3)
        return spread_triplets(a);
    else
        return spread_dwords(a);
}
#endif

// ---- Half-interleaved pixels ----------------------------------------------------------------------------

LUMALANE_INLINE words<8> even_pairs_of_words(words<8> a, words<8> b) {
    return {dwords_of_both<0, 2, 0, 2>(a.v, b.v)};
}

#ifndef LUMALANE_WIDER_TARGET
template <int lower, int upper>
LUMALANE_INLINE words<8> multiply_bytes(words<8> a) {
    const words<8> weighed_upper = multiply_low(odd(as_bytes(a)), fill_words<8>(upper));
    if constexpr (lower == 1)
        return add(even(as_bytes(a)), weighed_upper);
    else
        return add(multiply_low(even(as_bytes(a)), fill_words<8>(lower)), weighed_upper);
}

// Of 8 pixels of 4 bytes, words in order: those of 0, 4, 1 and 5, and of 2, 6, 3 and 7.
LUMALANE_INLINE half_interleaved<16> half_interleaved_words(m128i pixels_0415, m128i pixels_2637) {
    return {{dwords_of_both<0, 2, 0, 2>(pixels_0415, pixels_2637)},
            {dwords_of_both<1, 3, 1, 3>(pixels_0415, pixels_2637)}};
}

template <int size, int n>
LUMALANE_INLINE half_interleaved<n> load_half_interleaved(const unsigned char *from) {
    if constexpr (size == 4) {
        const m128i a = load<16>(from).v, b = load<16>(from + 16).v;
        return half_interleaved_words(_mm_unpacklo_epi16(a, b), _mm_unpackhi_epi16(a, b));
    } else {
        // Two pixels, with anything in the fourth bytes.
        const auto two = [](m128i a, m128i b) { return _mm_unpacklo_epi32(a, b); };
        const auto at = [&](int pixel) { return load<8>(from + 3 * pixel).v; };
        const m128i last = load<8>(from + 16).v;
        const m128i pixels_67 = two(_mm_srli_epi64(last, 16), _mm_srli_epi64(last, 40));
        const auto words =
            half_interleaved_words(_mm_unpacklo_epi16(two(at(0), at(1)), two(at(4), at(5))),
                                   _mm_unpacklo_epi16(two(at(2), at(3)), pixels_67));
        return {words.bg, shift_left<8>(words.rx)};
    }
}

LUMALANE_INLINE words<8> half_interleave(words<8> a) {
    return {_mm_unpacklo_epi16(a.v, _mm_unpackhi_epi64(a.v, a.v))};
}

// Lanes 0, 2, 1 and 3 of each half.
LUMALANE_INLINE m128i deinterleaved_halves(m128i a) { return permute_words<0, 2, 1, 3>(a); }

LUMALANE_INLINE halves<8> deinterleave_upper_bytes_of_even(words<8> a, words<8> b) {
    const m128i both = _mm_packus_epi16(deinterleaved_halves(_mm_srli_epi16(a.v, 8)),
                                        deinterleaved_halves(_mm_srli_epi16(b.v, 8)));
    return {lower_half(bytes<16>{both}), upper_half(bytes<16>{both})};
}

LUMALANE_INLINE bytes<16> deinterleave_upper_bytes(words<8> a, words<8> b) {
    const bytes<16> both = narrow_saturate(odd(as_bytes(a)), odd(as_bytes(b)));
    return {permute_dwords<0, 2, 1, 3>(narrow_saturate(even(both), odd(both)).v)};
}
#endif

} // namespace lumalane::LUMALANE_TARGET_NAME
