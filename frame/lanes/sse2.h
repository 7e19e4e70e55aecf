// Lanes in the 128-bit registers of SSE2; portable.h defines the operations. avx2.h includes this
// file too, for its vectors of one block.
#pragma once

#include <emmintrin.h>

namespace lumalane::LUMALANE_LANES {

template <int n>
struct bytes;
template <int n>
struct words;
template <int n>
struct dwords;

template <>
struct bytes<16> {
    __m128i v;
};
template <>
struct bytes<8> { // in the lower half
    __m128i v;
};
template <>
struct bytes<4> { // in the lowest quarter
    __m128i v;
};
template <>
struct words<8> {
    __m128i v;
};
template <>
struct dwords<4> {
    __m128i v;
};

#ifndef LUMALANE_WIDER_LANES
inline constexpr int widest = 16;
inline constexpr bool multiplies_rounded = false;
#endif

// ---- Memory ------------------------------------------------------------------------------------

template <int n>
LUMALANE_INLINE bytes<n> load(const unsigned char *from);

template <>
LUMALANE_INLINE bytes<16> load<16>(const unsigned char *from) {
    return {_mm_loadu_si128(reinterpret_cast<const __m128i *>(from))};
}

template <>
LUMALANE_INLINE bytes<8> load<8>(const unsigned char *from) {
    return {_mm_loadl_epi64(reinterpret_cast<const __m128i *>(from))};
}

LUMALANE_INLINE void store(unsigned char *to, bytes<16> a) {
    _mm_storeu_si128(reinterpret_cast<__m128i *>(to), a.v);
}

LUMALANE_INLINE void store(unsigned char *to, bytes<8> a) {
    _mm_storel_epi64(reinterpret_cast<__m128i *>(to), a.v);
}

LUMALANE_INLINE void store(unsigned char *to, bytes<4> a) {
    const int bits = _mm_cvtsi128_si32(a.v);
    __builtin_memcpy(to, &bits, sizeof bits);
}

LUMALANE_INLINE void stream(unsigned char *to, bytes<16> a) {
    _mm_stream_si128(reinterpret_cast<__m128i *>(to), a.v);
}

LUMALANE_INLINE void stream_fence() { _mm_sfence(); }

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

template <int n>
LUMALANE_INLINE bytes<n> fill_dwords(unsigned value);

template <>
LUMALANE_INLINE bytes<16> fill_dwords<16>(unsigned value) {
    return {_mm_set1_epi32(static_cast<int>(value))};
}

LUMALANE_INLINE words<8> add(words<8> a, words<8> b) { return {_mm_add_epi16(a.v, b.v)}; }

LUMALANE_INLINE words<8> subtract(words<8> a, words<8> b) { return {_mm_sub_epi16(a.v, b.v)}; }

LUMALANE_INLINE words<8> add_saturate(words<8> a, words<8> b) { return {_mm_adds_epi16(a.v, b.v)}; }

LUMALANE_INLINE words<8> maximum(words<8> a, words<8> b) { return {_mm_max_epi16(a.v, b.v)}; }

LUMALANE_INLINE words<8> multiply_low(words<8> a, words<8> b) {
    return {_mm_mullo_epi16(a.v, b.v)};
}

LUMALANE_INLINE words<8> multiply_high(words<8> a, words<8> b) {
    return {_mm_mulhi_epi16(a.v, b.v)};
}

template <int count>
LUMALANE_INLINE words<8> shift_left(words<8> a) {
    return {_mm_slli_epi16(a.v, count)};
}

template <int count>
LUMALANE_INLINE words<8> shift_right_logical(words<8> a) {
    return {_mm_srli_epi16(a.v, count)};
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

LUMALANE_INLINE bytes<16> equal(bytes<16> a, bytes<16> b) { return {_mm_cmpeq_epi8(a.v, b.v)}; }

LUMALANE_INLINE bytes<16> positive(bytes<16> a) {
    return {_mm_cmpgt_epi8(a.v, _mm_setzero_si128())};
}

#ifndef LUMALANE_WIDER_LANES
LUMALANE_INLINE bytes<16> choose(bytes<16> where, bytes<16> chosen, bytes<16> otherwise) {
    return {_mm_or_si128(_mm_and_si128(where.v, chosen.v), _mm_andnot_si128(where.v, otherwise.v))};
}
#endif

LUMALANE_INLINE bool all_zero(bytes<16> a) {
    return _mm_movemask_epi8(_mm_cmpeq_epi8(a.v, _mm_setzero_si128())) == 0xffff;
}

// ---- 32-bit lanes ------------------------------------------------------------------------------

LUMALANE_INLINE dwords<4> multiply_add(words<8> a, words<8> b) {
    return {_mm_madd_epi16(a.v, b.v)};
}

LUMALANE_INLINE dwords<4> add(dwords<4> a, dwords<4> b) { return {_mm_add_epi32(a.v, b.v)}; }

template <int count>
LUMALANE_INLINE dwords<4> shift_right_arithmetic(dwords<4> a) {
    return {_mm_srai_epi32(a.v, count)};
}

LUMALANE_INLINE bytes<16> narrow_saturate(dwords<4> a, dwords<4> b, dwords<4> c, dwords<4> d) {
    return {_mm_packus_epi16(_mm_packs_epi32(a.v, b.v), _mm_packs_epi32(c.v, d.v))};
}

LUMALANE_INLINE bytes<16> even_dwords(bytes<16> a, bytes<16> b) {
    return {_mm_castps_si128(
        _mm_shuffle_ps(_mm_castsi128_ps(a.v), _mm_castsi128_ps(b.v), _MM_SHUFFLE(2, 0, 2, 0)))};
}

LUMALANE_INLINE unsigned equal_dwords(bytes<16> a, bytes<16> b) {
    const __m128 equal = _mm_castsi128_ps(_mm_cmpeq_epi32(a.v, b.v));
    return static_cast<unsigned>(_mm_movemask_ps(equal));
}

// ---- Between bytes and words -------------------------------------------------------------------

LUMALANE_INLINE bytes<8> lower_half(bytes<16> a) { return {a.v}; }

LUMALANE_INLINE bytes<8> upper_half(bytes<16> a) { return {_mm_unpackhi_epi64(a.v, a.v)}; }

LUMALANE_INLINE bytes<4> lower_half(bytes<8> a) { return {a.v}; }

LUMALANE_INLINE bytes<4> upper_half(bytes<8> a) { return {_mm_srli_si128(a.v, 4)}; }

LUMALANE_INLINE words<8> as_words(bytes<16> a) { return {a.v}; }

LUMALANE_INLINE words<8> widen(bytes<8> a) { return {_mm_unpacklo_epi8(a.v, _mm_setzero_si128())}; }

LUMALANE_INLINE words<8> widen_low(bytes<16> a) {
    return {_mm_unpacklo_epi8(a.v, _mm_setzero_si128())};
}

LUMALANE_INLINE words<8> widen_high(bytes<16> a) {
    return {_mm_unpackhi_epi8(a.v, _mm_setzero_si128())};
}

LUMALANE_INLINE words<8> even(bytes<16> a) { return {_mm_and_si128(a.v, _mm_set1_epi16(0x00ff))}; }

LUMALANE_INLINE words<8> odd(bytes<16> a) { return {_mm_srli_epi16(a.v, 8)}; }

#ifndef LUMALANE_WIDER_LANES
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
#endif

LUMALANE_INLINE bytes<16> narrow_saturate(words<8> a, words<8> b) {
    return {_mm_packus_epi16(a.v, b.v)};
}

LUMALANE_INLINE bytes<8> narrow_saturate(words<8> a) { return {_mm_packus_epi16(a.v, a.v)}; }

#ifndef LUMALANE_WIDER_LANES
LUMALANE_INLINE bytes<16> narrow_interleaved(words<8> a, words<8> b) {
    const __m128i narrow = _mm_packus_epi16(a.v, b.v);
    return {_mm_unpacklo_epi8(narrow, _mm_unpackhi_epi64(narrow, narrow))};
}
#endif

LUMALANE_INLINE bytes<16> join(words<8> even, words<8> odd) {
    return {_mm_or_si128(even.v, _mm_slli_epi16(odd.v, 8))};
}

LUMALANE_INLINE words<8> average_couples(bytes<16> a) {
    return {_mm_avg_epu16(even(a).v, odd(a).v)};
}

// The averages come in the lower half of each 32-bit lane, a byte each.
LUMALANE_INLINE words<8> average_couples_of_pairs(bytes<16> a) {
    const __m128i averages = _mm_avg_epu8(a.v, _mm_srli_epi32(a.v, 16));
    const __m128i lower = _mm_and_si128(averages, _mm_set1_epi32(0x000000ff));
    const __m128i upper = _mm_and_si128(averages, _mm_set1_epi32(0x0000ff00));
    return {_mm_or_si128(lower, _mm_slli_epi32(upper, 8))};
}

// ---- Pixels ------------------------------------------------------------------------------------

template <int count, int n>
struct woven {
    bytes<n> part[count];
};

#ifndef LUMALANE_WIDER_LANES
template <int count, int n>
LUMALANE_INLINE bytes<n> deal_pixels(const unsigned char *from) {
    return load<n>(from);
}

template <int count, int n>
LUMALANE_INLINE words<n> deal_chroma(const unsigned char *from) {
    return widen(load<n>(from));
}

template <int count, int n>
LUMALANE_INLINE bytes<n> deal_even(const unsigned char *from) {
    return narrow_saturate(even(load<16>(from)), even(load<16>(from + 16)));
}

template <int count, int n>
LUMALANE_INLINE bytes<n> deal_odd(const unsigned char *from) {
    return narrow_saturate(odd(load<16>(from)), odd(load<16>(from + 16)));
}
#endif

// Interleaves the even pixels (lower halves) and the odd ones apart, then the two.
LUMALANE_INLINE woven<2, 16> weave(bytes<16> first, bytes<16> second) {
    const __m128i evens = _mm_unpacklo_epi8(first.v, second.v);
    const __m128i odds = _mm_unpackhi_epi8(first.v, second.v);
    return {{{_mm_unpacklo_epi16(evens, odds)}, {_mm_unpackhi_epi16(evens, odds)}}};
}

LUMALANE_INLINE woven<2, 16> interleave(bytes<16> first, bytes<16> second) {
    return {{{_mm_unpacklo_epi8(first.v, second.v)}, {_mm_unpackhi_epi8(first.v, second.v)}}};
}

LUMALANE_INLINE woven<2, 16> interleave(words<8> first, words<8> second) {
    return {{{_mm_unpacklo_epi16(first.v, second.v)}, {_mm_unpackhi_epi16(first.v, second.v)}}};
}

LUMALANE_INLINE void store_after_8(unsigned char *to, const woven<2, 16> &parts) {
    store(to + 8, bytes<8>{_mm_unpackhi_epi64(parts.part[0].v, parts.part[0].v)});
    store(to + 16, parts.part[1]);
}

LUMALANE_INLINE woven<2, 16> spread_words(bytes<16> a) { return interleave(a, fill_bytes<16>(0)); }

LUMALANE_INLINE woven<4, 16> spread_dwords(bytes<16> a) {
    const words<8> zero = fill_words<8>(0);
    const woven<2, 16> low = interleave(widen_low(a), zero);
    const woven<2, 16> high = interleave(widen_high(a), zero);
    return {{low.part[0], low.part[1], high.part[0], high.part[1]}};
}

// Bytes 0, 3, 6 and 9 in the lowest four.
LUMALANE_INLINE __m128i every_third(__m128i a) {
    const __m128i taken =
        _mm_and_si128(a, _mm_setr_epi32(static_cast<int>(0xff0000ff), 0x00ff0000, 0x0000ff00, 0));
    const __m128i words_0_and_3 = _mm_or_si128(taken, _mm_srli_si128(taken, 2));
    return _mm_shufflelo_epi16(words_0_and_3, _MM_SHUFFLE(3, 3, 3, 0));
}

template <int size, int channel, int n>
LUMALANE_INLINE bytes<n> load_channel_of_blocks(const unsigned char *from) {
    if constexpr (size == 4) {
        static_assert(channel == 0);
        const auto dwords_at = [&](int offset) -> dwords<4> {
            return {(load<16>(from + offset) & fill_dwords<16>(0xff)).v};
        };
        const dwords<4> a = dwords_at(0), b = dwords_at(16);
        if constexpr (n == 8)
            return lower_half(narrow_saturate(a, b, a, b));
        else
            return narrow_saturate(a, b, dwords_at(32), dwords_at(48));
    } else {
        static_assert(size == 3 && channel == 2);
        const __m128i last = every_third(_mm_srli_si128(load<16>(from + 3 * n - 16).v, 6));
        const __m128i pixels_0_to_3 = every_third(load<16>(from + 2).v);
        if constexpr (n == 8) {
            return {_mm_unpacklo_epi32(pixels_0_to_3, last)};
        } else {
            const __m128i pixels_4_to_7 = every_third(load<16>(from + 14).v);
            const __m128i pixels_8_to_11 = every_third(load<16>(from + 26).v);
            return {_mm_unpacklo_epi64(_mm_unpacklo_epi32(pixels_0_to_3, pixels_4_to_7),
                                       _mm_unpacklo_epi32(pixels_8_to_11, last))};
        }
    }
}

#ifndef LUMALANE_WIDER_LANES
template <int size, int channel, int n>
LUMALANE_INLINE bytes<n> load_channel(const unsigned char *from) {
    return load_channel_of_blocks<size, channel, n>(from);
}

LUMALANE_INLINE woven<4, 16> weave_padded(bytes<16> first, bytes<16> second, bytes<16> third) {
    const __m128i zero = _mm_setzero_si128();
    const __m128i even_12 = _mm_unpacklo_epi8(first.v, second.v);
    const __m128i odd_12 = _mm_unpackhi_epi8(first.v, second.v);
    const __m128i even_30 = _mm_unpacklo_epi8(third.v, zero);
    const __m128i odd_30 = _mm_unpackhi_epi8(third.v, zero);
    const __m128i even_0 = _mm_unpacklo_epi16(even_12, even_30);
    const __m128i even_1 = _mm_unpackhi_epi16(even_12, even_30);
    const __m128i odd_0 = _mm_unpacklo_epi16(odd_12, odd_30);
    const __m128i odd_1 = _mm_unpackhi_epi16(odd_12, odd_30);
    return {{{_mm_unpacklo_epi32(even_0, odd_0)},
             {_mm_unpackhi_epi32(even_0, odd_0)},
             {_mm_unpacklo_epi32(even_1, odd_1)},
             {_mm_unpackhi_epi32(even_1, odd_1)}}};
}

// The two pixels of pair k are three words, 1e2e 3e1o 2o3o (1, 2, 3 the channels, e even, o odd);
// pairs 2k and 2k+1, a couple, are three 32-bit lanes: begin, middle and end.
LUMALANE_INLINE woven<3, 16> weave(bytes<16> first, bytes<16> second, bytes<16> third) {
    const __m128i words_0 = _mm_unpacklo_epi8(first.v, second.v);
    const __m128i words_1 = _mm_unpacklo_epi8(third.v, _mm_unpackhi_epi64(first.v, first.v));
    const __m128i words_2 = _mm_unpackhi_epi8(second.v, third.v);
    const __m128i next_words_0 = _mm_srli_si128(words_0, 2);
    const auto low = [](__m128i a, __m128i b) {
        return _mm_castsi128_ps(_mm_unpacklo_epi16(a, b));
    };
    const auto high = [](__m128i a, __m128i b) {
        return _mm_castsi128_ps(_mm_unpackhi_epi16(a, b));
    };
    // Couples 0 and 1 (then 2 and 3) in lanes 0 and 2 of begin and middle, lanes 1 and 3 of end.
    const __m128 begin_01 = low(words_0, words_1), begin_23 = high(words_0, words_1);
    const __m128 middle_01 = low(words_2, next_words_0), middle_23 = high(words_2, next_words_0);
    const __m128 end_01 = low(words_1, words_2), end_23 = high(words_1, words_2);

    const __m128 begin_0_middle_0 = _mm_unpacklo_ps(begin_01, middle_01);
    const __m128 end_0_begin_1 = _mm_shuffle_ps(end_01, begin_01, _MM_SHUFFLE(2, 2, 1, 1));
    const __m128 middle_1_end_1 = _mm_unpackhi_ps(middle_01, end_01);
    const __m128 begin_2_middle_2 = _mm_unpacklo_ps(begin_23, middle_23);
    const __m128 end_2_begin_3 = _mm_shuffle_ps(end_23, begin_23, _MM_SHUFFLE(2, 2, 1, 1));
    const __m128 middle_3_end_3 = _mm_unpackhi_ps(middle_23, end_23);
    const __m128 part_0 = _mm_shuffle_ps(begin_0_middle_0, end_0_begin_1, _MM_SHUFFLE(2, 0, 1, 0));
    const __m128 part_1 = _mm_shuffle_ps(middle_1_end_1, begin_2_middle_2, _MM_SHUFFLE(1, 0, 3, 0));
    const __m128 part_2 = _mm_shuffle_ps(end_2_begin_3, middle_3_end_3, _MM_SHUFFLE(3, 0, 2, 0));
    return {{{_mm_castps_si128(part_0)}, {_mm_castps_si128(part_1)}, {_mm_castps_si128(part_2)}}};
}

template <int size, int n>
LUMALANE_INLINE woven<size, n> load_spread(const unsigned char *from) {
    const bytes<16> a = load<16>(from);
    if constexpr (size == 2) {
        return spread_words(a);
    } else if constexpr (size == 3) {
        const bytes<16> zero = fill_bytes<16>(0);
        return weave(narrow_saturate(even(a), odd(a)), zero, zero);
    } else {
        return spread_dwords(a);
    }
}

// The lowest 12 bytes as 4 pixels.
LUMALANE_INLINE bytes<16> padded(__m128i triplets) {
    const __m128i pixels_01 = _mm_unpacklo_epi32(triplets, _mm_srli_si128(triplets, 3));
    const __m128i pixels_23 =
        _mm_unpacklo_epi32(_mm_srli_si128(triplets, 6), _mm_srli_si128(triplets, 9));
    return {_mm_and_si128(_mm_unpacklo_epi64(pixels_01, pixels_23), _mm_set1_epi32(0x00ffffff))};
}

template <int count, int n>
LUMALANE_INLINE woven<count, n> load_padded(const unsigned char *from) {
    const unsigned char *const end = from + count * 12;
    const bytes<16> last = padded(_mm_srli_si128(load<16>(end - 16).v, 4));
    if constexpr (count == 2)
        return {{padded(load<16>(from).v), last}};
    else
        return {{padded(load<16>(from).v), padded(load<16>(from + 12).v),
                 padded(load<16>(from + 24).v), last}};
}
#endif

} // namespace lumalane::LUMALANE_LANES
