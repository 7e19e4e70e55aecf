// Lanes in the 256-bit registers of AVX2, two blocks each; portable.h defines the operations. The
// vectors of one block are those of sse2.h, with better interleaving. avx512.h includes this file, too.
#pragma once

#include <immintrin.h>

#define LUMALANE_WIDER_TARGET
#include "simd/sse2.h"

namespace lumalane::LUMALANE_TARGET_NAME {

template <>
struct bytes<32> {
    __m256i v;
};
template <>
struct words<16> {
    __m256i v;
};

#ifndef LUMALANE_WIDER_THAN_AVX2
inline constexpr int widest = 32;
#endif
inline constexpr bool multiplies_rounded = true;

// ---- Memory ------------------------------------------------------------------------------------

template <>
LUMALANE_INLINE bytes<32> load<32>(const unsigned char *from) {
    return {_mm256_loadu_si256(reinterpret_cast<const __m256i *>(from))};
}

template <>
LUMALANE_INLINE bytes<32> load_halves<32>(const unsigned char *low, const unsigned char *high) {
    return {_mm256_inserti128_si256(_mm256_castsi128_si256(load<16>(low).v), load<16>(high).v, 1)};
}

LUMALANE_INLINE void store(unsigned char *to, bytes<32> a) {
    _mm256_storeu_si256(reinterpret_cast<__m256i *>(to), a.v);
}

LUMALANE_INLINE void stream(unsigned char *to, bytes<32> a) {
    const auto place = reinterpret_cast<__m256i *>(to);
    if constexpr (streams_by_instruction)
        stream_by_instruction(place, a.v);
    else
        _mm256_stream_si256(place, a.v);
}

// ---- One lane at a time ------------------------------------------------------------------------

template <>
LUMALANE_INLINE words<16> fill_words<16>(int value) {
    return {_mm256_set1_epi16(static_cast<short>(value))};
}

template <>
LUMALANE_INLINE words<16> fill_word_pairs<16>(int even, int odd) {
    return {_mm256_broadcastd_epi32(fill_word_pairs<8>(even, odd).v)};
}

template <>
LUMALANE_INLINE bytes<32> fill_bytes<32>(int value) {
    return {_mm256_set1_epi8(static_cast<char>(value))};
}

LUMALANE_INLINE words<16> add(words<16> a, words<16> b) { return {_mm256_add_epi16(a.v, b.v)}; }

LUMALANE_INLINE words<16> subtract(words<16> a, words<16> b) {
    return {_mm256_sub_epi16(a.v, b.v)};
}

LUMALANE_INLINE words<16> add_saturate(words<16> a, words<16> b) {
    return {_mm256_adds_epi16(a.v, b.v)};
}

LUMALANE_INLINE words<16> maximum(words<16> a, words<16> b) { return {_mm256_max_epi16(a.v, b.v)}; }

LUMALANE_INLINE words<16> minimum(words<16> a, words<16> b) { return {_mm256_min_epi16(a.v, b.v)}; }

LUMALANE_INLINE bytes<32> absolute_difference(bytes<32> a, bytes<32> b) {
    return {_mm256_or_si256(_mm256_subs_epu8(a.v, b.v), _mm256_subs_epu8(b.v, a.v))};
}

LUMALANE_INLINE words<16> multiply_low(words<16> a, words<16> b) {
#ifdef __clang__
    return {_mm256_mullo_epi16(a.v, b.v)};
#else
    return {reinterpret_cast<__m256i>(
        __builtin_ia32_pmullw256(reinterpret_cast<__v16hi>(a.v), reinterpret_cast<__v16hi>(b.v)))};
#endif
}

LUMALANE_INLINE words<16> multiply_high(words<16> a, words<16> b) {
    return {_mm256_mulhi_epi16(a.v, b.v)};
}

LUMALANE_INLINE words<16> multiply_high_unsigned(words<16> a, words<16> b) {
    return {_mm256_mulhi_epu16(a.v, b.v)};
}

LUMALANE_INLINE words<8> multiply_rounded(words<8> a, words<8> b) {
    return {_mm_mulhrs_epi16(a.v, b.v)};
}

LUMALANE_INLINE words<16> multiply_rounded(words<16> a, words<16> b) {
    return {_mm256_mulhrs_epi16(a.v, b.v)};
}

template <int count>
LUMALANE_INLINE words<16> shift_left(words<16> a) {
    return {_mm256_slli_epi16(a.v, count)};
}

template <int count>
LUMALANE_INLINE words<16> shift_right_logical(words<16> a) {
    return {_mm256_srli_epi16(a.v, count)};
}

template <int count>
LUMALANE_INLINE words<16> shift_right_arithmetic(words<16> a) {
    return {_mm256_srai_epi16(a.v, count)};
}

LUMALANE_INLINE bytes<32> operator&(bytes<32> a, bytes<32> b) {
    return {_mm256_and_si256(a.v, b.v)};
}

LUMALANE_INLINE bytes<32> operator|(bytes<32> a, bytes<32> b) {
    return {_mm256_or_si256(a.v, b.v)};
}

template <int count>
LUMALANE_INLINE bytes<32> shift_left(bytes<32> a) {
    return bytes<32>{_mm256_slli_epi16(a.v, count)} & fill_bytes<32>(0xff << count);
}

template <int count>
LUMALANE_INLINE bytes<32> shift_right_logical(bytes<32> a) {
    return bytes<32>{_mm256_srli_epi16(a.v, count)} & fill_bytes<32>(0xff >> count);
}

LUMALANE_INLINE words<16> operator&(words<16> a, words<16> b) {
    return {_mm256_and_si256(a.v, b.v)};
}

LUMALANE_INLINE words<16> operator|(words<16> a, words<16> b) {
    return {_mm256_or_si256(a.v, b.v)};
}

LUMALANE_INLINE words<16> equal(words<16> a, words<16> b) { return {_mm256_cmpeq_epi16(a.v, b.v)}; }

LUMALANE_INLINE bytes<32> equal(bytes<32> a, bytes<32> b) { return {_mm256_cmpeq_epi8(a.v, b.v)}; }

LUMALANE_INLINE bytes<32> in_1_to_127(bytes<32> a) {
    return {_mm256_cmpgt_epi8(a.v, _mm256_setzero_si256())};
}

LUMALANE_INLINE bytes<16> choose(bytes<16> where, bytes<16> chosen, bytes<16> otherwise) {
    return {_mm_blendv_epi8(otherwise.v, chosen.v, where.v)};
}

LUMALANE_INLINE bytes<32> choose(bytes<32> where, bytes<32> chosen, bytes<32> otherwise) {
    return {_mm256_blendv_epi8(otherwise.v, chosen.v, where.v)};
}

LUMALANE_INLINE bool all(bytes<32> where) { return _mm256_movemask_epi8(hidden(where.v)) == -1; }

// ---- Between bytes and words -------------------------------------------------------------------

LUMALANE_INLINE bytes<16> lower_half(bytes<32> a) { return {_mm256_castsi256_si128(a.v)}; }

LUMALANE_INLINE bytes<16> upper_half(bytes<32> a) { return {_mm256_extracti128_si256(a.v, 1)}; }

LUMALANE_INLINE words<16> as_words(bytes<32> a) { return {a.v}; }

LUMALANE_INLINE bytes<32> as_bytes(words<16> a) { return {a.v}; }

LUMALANE_INLINE words<16> widen(bytes<16> a) { return {_mm256_cvtepu8_epi16(a.v)}; }

LUMALANE_INLINE words<16> widen_low(bytes<32> a) {
    return {_mm256_unpacklo_epi8(a.v, _mm256_setzero_si256())};
}

LUMALANE_INLINE words<16> widen_high(bytes<32> a) {
    return {_mm256_unpackhi_epi8(a.v, _mm256_setzero_si256())};
}

LUMALANE_INLINE words<16> widen_low(bytes<32> whole, bytes<32> fraction) {
    return {_mm256_unpacklo_epi8(fraction.v, whole.v)};
}

LUMALANE_INLINE words<16> widen_high(bytes<32> whole, bytes<32> fraction) {
    return {_mm256_unpackhi_epi8(fraction.v, whole.v)};
}

LUMALANE_INLINE words<16> even(bytes<32> a) {
    return {_mm256_and_si256(a.v, _mm256_set1_epi16(0x00ff))};
}

LUMALANE_INLINE words<16> odd(bytes<32> a) { return {_mm256_srli_epi16(a.v, 8)}; }

// Unsigned bytes of `a` times signed ones of `b`, the sums of two products each.
LUMALANE_INLINE words<8> multiply_add(bytes<16> a, bytes<16> b) {
    return {_mm_maddubs_epi16(a.v, b.v)};
}

LUMALANE_INLINE words<16> multiply_add(bytes<32> a, bytes<32> b) {
    return {_mm256_maddubs_epi16(a.v, b.v)};
}

// Two bytes over and over.
template <int n>
LUMALANE_INLINE bytes<n> fill_byte_pairs(int even, int odd) {
    return as_bytes(fill_words<n / 2>((even & 0xff) + odd * 256));
}

// Instead of a shift and a mask.
template <int factor, int n>
LUMALANE_INLINE words<n / 2> even_times(bytes<n> a) {
    return multiply_add(a, fill_byte_pairs<n>(factor, 0));
}

template <int factor, int n>
LUMALANE_INLINE words<n / 2> odd_times(bytes<n> a) {
    return multiply_add(a, fill_byte_pairs<n>(0, factor));
}

template <int factor, int n>
LUMALANE_INLINE words<n / 2> pairs_times(bytes<n> a) {
    return multiply_add(a, fill_byte_pairs<n>(factor, factor));
}

template <int factor, int n>
LUMALANE_INLINE words<n / 2> odd_and_even_times(bytes<n> of_odd, bytes<n> of_even) {
    return add(odd_times<factor>(of_odd), even_times<factor>(of_even));
}

LUMALANE_INLINE bytes<32> narrow_saturate(words<16> a, words<16> b) {
    return {_mm256_packus_epi16(a.v, b.v)};
}

LUMALANE_INLINE bytes<32> join(words<16> even, words<16> odd) {
    return {_mm256_or_si256(even.v, _mm256_slli_epi16(odd.v, 8))};
}

LUMALANE_INLINE bytes<16> groups_above(bytes<16> a, int limit) {
    return {_mm_cmpgt_epi32(_mm_madd_epi16(pairs_times<1>(a).v, _mm_set1_epi16(1)),
                            _mm_set1_epi32(limit))};
}

LUMALANE_INLINE bytes<32> groups_above(bytes<32> a, int limit) {
    return {_mm256_cmpgt_epi32(_mm256_madd_epi16(pairs_times<1>(a).v, _mm256_set1_epi16(1)),
                               _mm256_set1_epi32(limit))};
}

LUMALANE_INLINE words<16> average_neighbour_pairs(bytes<32> a) {
    const __m256i averages = _mm256_avg_epu8(a.v, _mm256_srli_epi32(a.v, 16));
    const __m256i lower = _mm256_and_si256(averages, _mm256_set1_epi32(0x000000ff));
    const __m256i upper = _mm256_and_si256(averages, _mm256_set1_epi32(0x0000ff00));
    return {_mm256_or_si256(lower, _mm256_slli_epi32(upper, 8))};
}

LUMALANE_INLINE words<16> second_pairs(bytes<32> a) {
    const __m256i lower =
        _mm256_and_si256(_mm256_srli_epi32(a.v, 16), _mm256_set1_epi32(0x000000ff));
    const __m256i upper =
        _mm256_and_si256(_mm256_srli_epi32(a.v, 8), _mm256_set1_epi32(0x00ff0000));
    return {_mm256_or_si256(lower, upper)};
}

// ---- Blending ----------------------------------------------------------------------------------

LUMALANE_INLINE bytes<32> average(bytes<32> a, bytes<32> b) { return {_mm256_avg_epu8(a.v, b.v)}; }

LUMALANE_INLINE words<16> average(words<16> a, words<16> b) { return {_mm256_avg_epu16(a.v, b.v)}; }

LUMALANE_INLINE bool all_zero(bytes<32> a) { return _mm256_testz_si256(a.v, a.v); }

LUMALANE_INLINE bytes<16> minimum(bytes<16> a, bytes<16> b) { return {_mm_min_epu8(a.v, b.v)}; }

LUMALANE_INLINE bytes<32> minimum(bytes<32> a, bytes<32> b) { return {_mm256_min_epu8(a.v, b.v)}; }

LUMALANE_INLINE bytes<16> subtract(bytes<16> a, bytes<16> b) { return {_mm_sub_epi8(a.v, b.v)}; }

LUMALANE_INLINE bytes<32> subtract(bytes<32> a, bytes<32> b) { return {_mm256_sub_epi8(a.v, b.v)}; }

template <int factor, int n>
LUMALANE_INLINE words<n / 2> weighted_low(bytes<n> a, bytes<n> b) {
    return multiply_add(interleave(a, b).part[0], fill_byte_pairs<n>(factor, factor));
}

template <int factor, int n>
LUMALANE_INLINE words<n / 2> weighted_high(bytes<n> a, bytes<n> b) {
    return multiply_add(interleave(a, b).part[1], fill_byte_pairs<n>(factor, factor));
}

template <int n>
LUMALANE_INLINE sixteenths<n> blend(bytes<n> below, bytes<n> above, bytes<n> weight) {
    const bytes<n> w = minimum(weight, fill_bytes<n>(16));
    const vectors<2, n> samples = interleave(below, above);
    const vectors<2, n> weights = interleave(subtract(fill_bytes<n>(16), w), w);
    return {multiply_add(samples.part[0], weights.part[0]),
            multiply_add(samples.part[1], weights.part[1])};
}

LUMALANE_INLINE sixteenths<8> blend(bytes<8> below, bytes<8> above, bytes<8> weight) {
    return {blend(bytes<16>{below.v}, bytes<16>{above.v}, bytes<16>{weight.v}).low};
}

// ---- Pixels ------------------------------------------------------------------------------------

// Byte shuffles of a block whose even and odd pixels are apart. Pairs of 3-byte pixels are three words,
// and word c of pair p goes to word 3p + c of 24: 8 words of a kind take 8 different places modulo 8, so
// that one shuffle puts them where they belong in all three parts, and each part picks its words from
// the three kinds. Word m holds pair (m - c) / 3 modulo 8, and 3 is 1/3 there.
struct shuffles {
    // Of both blocks, with one after the other in memory: made from one they would be made again in
    // every turn of a loop.
    using table = unsigned char[32];

    // The 16 pixels in order, of pairs in order and in turn.
    alignas(32) table pixel_order[2];
    // For 1 to 4 parts: 16 chroma samples, in both blocks, to permuted words.
    alignas(32) table chroma[4];
    alignas(32) table upper_chroma[2]; // in the upper bytes of the words, for 1 and 2 parts
    alignas(32)
        table word[2][3]; // of pairs in order and in turn; of the middle one the bytes are apart
    alignas(32) table thirds[3]; // of 3-byte pixels: part k of 16, from bytes 16k on
    // 4 pixels of 3 bytes, from byte 0 and from byte 4 on, to the lower and to the upper words of
    // pairs of words.
    alignas(32) table triplets_bg[2];
    alignas(32) table triplets_rx[2];
    alignas(32) table half_interleave; // words of the lower and of the upper half in turn
    // Upper bytes of half_interleaved words to the lower and to the upper half of a block: those of the
    // lower words and then those of the upper ones, of four pairs of words or of two and two.
    alignas(32) table deinterleave_upper_bytes[2];
    alignas(32) table deinterleave_upper_bytes_of_even[2];
    alignas(32) table even_in_second_8; // of the first block; the second one as it is
    // Part k of 48 bytes, of which every third is one of 16 samples: a block each, and the first
    // once more, around the end.
    alignas(16) unsigned char spread[4][16];
};

constexpr shuffles make_shuffles() {
    shuffles s{};
    const auto in_both = [](shuffles::table &table, int byte, int value) {
        table[byte] = table[16 + byte] = static_cast<unsigned char>(value);
    };
    const auto lane_of = [](int pixel, int order) {
        const int pair = order == 0 ? pixel / 2 : pixel / 2 % 4 * 2 + pixel / 8;
        return pair + pixel % 2 * 8;
    };
    constexpr int zero = 0x80;
    for (int m = 0; m < 16; ++m) {
        for (int order = 0; order < 2; ++order) {
            in_both(s.pixel_order[order], m, lane_of(m, order));
            for (int c = 0; c < 3; ++c) {
                const int pair = lane_of((m / 2 - c + 8) * 3 % 8 * 2, order);
                in_both(s.word[order][c], m, c == 1 ? pair + m % 2 * 8 : 2 * pair + m % 2);
            }
        }
        for (int k = 0; k < 3; ++k) {
            const int third = 3 * m + 2 - 16 * k;
            in_both(s.thirds[k], m, 0 <= third && third < 16 ? third : zero);
        }
        for (int k = 0; k < 4; ++k) {
            const int at = k % 3 * 16 + m;
            s.spread[k][m] = static_cast<unsigned char>(at % 3 == 0 ? at / 3 : zero);
        }
        for (int half = 0; half < 2; ++half)
            for (int block = 0; block < 2; ++block) {
                const int pixel = 3 * (m / 4) + 4 * block, byte = m % 2, at = 16 * block + m;
                const bool here = m % 4 / 2 == half;
                s.triplets_bg[half][at] = static_cast<unsigned char>(here ? pixel + byte : zero);
                s.triplets_rx[half][at] =
                    static_cast<unsigned char>(here && byte == 1 ? pixel + 2 : zero);
            }
        in_both(s.half_interleave, m, m / 4 * 2 + m / 2 % 2 * 8 + m % 2);
        s.even_in_second_8[m] = static_cast<unsigned char>(m < 8 ? m : m % 8 * 2);
        s.even_in_second_8[16 + m] = static_cast<unsigned char>(m);
        for (int half = 0; half < 2; ++half) {
            const int at = m % 8;
            const int pair_of_4 = at % 4, upper_of_4 = at / 4;
            const int pair_of_2 = at / 4 * 2 + at % 2, upper_of_2 = at / 2 % 2;
            const bool here = m / 8 == half;
            in_both(s.deinterleave_upper_bytes[half], m,
                    here ? 4 * pair_of_4 + 2 * upper_of_4 + 1 : zero);
            in_both(s.deinterleave_upper_bytes_of_even[half], m,
                    here ? 4 * pair_of_2 + 2 * upper_of_2 + 1 : zero);
        }
    }
    for (int count = 1; count <= 4; ++count) {
        const int group = count == 2 ? 4 : count == 4 ? 2 : 8; // samples: half as many as pixels
        for (int word = 0; word < 16; ++word) {
            const int block = word / 8, turn = word % 8 / group;
            const int sample = (2 * turn + block) * group + word % group;
            s.chroma[count - 1][2 * word] = static_cast<unsigned char>(sample);
            s.chroma[count - 1][2 * word + 1] = zero;
            if (count <= 2) {
                s.upper_chroma[count - 1][2 * word] = zero;
                s.upper_chroma[count - 1][2 * word + 1] = static_cast<unsigned char>(sample);
            }
        }
    }
    return s;
}

constexpr shuffles shuffle = make_shuffles();

// The 16 bytes in both blocks.
LUMALANE_INLINE bytes<32> load_repeated(const unsigned char *block) {
    return {_mm256_broadcastsi128_si256(load<16>(block).v)};
}

// Each block by its own 16 bytes of `by`.
LUMALANE_INLINE bytes<16> shuffled(bytes<16> a, const unsigned char *by) {
    return {_mm_shuffle_epi8(a.v, load<16>(by).v)};
}

LUMALANE_INLINE bytes<32> shuffled(bytes<32> a, const unsigned char *by) {
    return {_mm256_shuffle_epi8(a.v, load<32>(by).v)};
}

LUMALANE_INLINE bytes<16> narrow_interleaved(words<8> a, words<8> b) {
    return shuffled(narrow_saturate(a, b), shuffle.pixel_order[0]);
}

LUMALANE_INLINE bytes<32> narrow_interleaved(words<16> a, words<16> b) {
    return shuffled(narrow_saturate(a, b), shuffle.pixel_order[0]);
}

// How the 32 pixels of a vector are permuted over its two blocks. Interleaved, the blocks give one
// half of every part each; so that a part's halves follow each other in memory, groups of consecutive
// pixels go to the blocks in turn.
//     1 and 3 parts, groups of 16: 0 | 1 (the interleave_channels in 3 parts crosses blocks itself)
//     2 parts, groups of 8:        0 2 | 1 3
//     4 parts, groups of 4:        0 2 4 6 | 1 3 5 7
template <int count, int n>
LUMALANE_INLINE bytes<n> permuted(bytes<n> in_order) {
    if constexpr (n == 16 || count == 1 || count == 3)
        return in_order;
    else if constexpr (count == 2)
        return {_mm256_permute4x64_epi64(in_order.v, _MM_SHUFFLE(3, 1, 2, 0))};
    else
        return {_mm256_permutevar8x32_epi32(in_order.v, _mm256_setr_epi32(0, 2, 4, 6, 1, 3, 5, 7))};
}

template <int count, int n>
LUMALANE_INLINE bytes<n> load_permuted(const unsigned char *from) {
    return permuted<count>(load<n>(from));
}

LUMALANE_INLINE bytes<32> narrow_in_order(words<16> a, words<16> b) {
    return {_mm256_permute4x64_epi64(narrow_saturate(a, b).v, _MM_SHUFFLE(3, 1, 2, 0))};
}

// The even words of `a`, the odd ones of `b`.
LUMALANE_INLINE bytes<16> words_of_both(bytes<16> a, bytes<16> b) {
    return {_mm_blend_epi16(a.v, b.v, 0xaa)};
}

LUMALANE_INLINE bytes<32> words_of_both(bytes<32> a, bytes<32> b) {
    return {_mm256_blend_epi16(a.v, b.v, 0xaa)};
}

inline constexpr pairs packed_order = pairs::in_turn;

// The words of one half of the pixels stay in their places; those of the other half come to the
// places between them by loads from a word further ahead or back.
template <int count, int n>
LUMALANE_INLINE packed_pixels<n> load_packed(const unsigned char *from) {
    constexpr bool by_blocks = n == 32 && count == 3;
    const auto of_half = [&](int offset) {
        if constexpr (by_blocks)
            return load_halves<32>(from + offset, from + 32 + offset);
        else
            return load<n>(from + offset);
    };
    // From the first pixel of the half that comes second.
    constexpr int second = by_blocks ? n / 2 : n;
    const bytes<n> even = words_of_both(of_half(0), of_half(second - 2));
    const bytes<n> odd = words_of_both(of_half(2), of_half(second));
    if constexpr (count == 4)
        return {permuted<2>(even), permuted<2>(odd)};
    else
        return {even, odd};
}

template <int count, int n>
LUMALANE_INLINE words<n> load_chroma_permuted(const unsigned char *from) {
    if constexpr (n == 8) {
        return widen(load<8>(from));
    } else {
        return as_words(shuffled(load_repeated(from), shuffle.chroma[count - 1]));
    }
}

template <int count, int n>
LUMALANE_INLINE bytes<n> load_pairs_permuted(const unsigned char *u, const unsigned char *v) {
    if constexpr (n == 16) {
        return {_mm_unpacklo_epi8(load<8>(u).v, load<8>(v).v)};
    } else {
        static_assert(count <= 2);
        return as_bytes(load_chroma_permuted<count, 16>(u)) |
               shuffled(load_repeated(v), shuffle.upper_chroma[count - 1]);
    }
}

template <pairs order = pairs::in_order>
LUMALANE_INLINE vectors<2, 32> interleave_channels(bytes<32> first, bytes<32> second) {
    const __m256i evens = _mm256_unpacklo_epi8(first.v, second.v);
    const __m256i odds = _mm256_unpackhi_epi8(first.v, second.v);
    const __m256i low = _mm256_unpacklo_epi16(evens, odds);
    const __m256i high = _mm256_unpackhi_epi16(evens, odds);
    if constexpr (order == pairs::in_order) {
        return {{{low}, {high}}};
    } else {
        const __m256 a = _mm256_castsi256_ps(low), b = _mm256_castsi256_ps(high);
        return {{{_mm256_castps_si256(_mm256_shuffle_ps(a, b, _MM_SHUFFLE(2, 0, 2, 0)))},
                 {_mm256_castps_si256(_mm256_shuffle_ps(a, b, _MM_SHUFFLE(3, 1, 3, 1)))}}};
    }
}

LUMALANE_INLINE vectors<2, 32> interleave(bytes<32> first, bytes<32> second) {
    return {{{_mm256_unpacklo_epi8(first.v, second.v)}, {_mm256_unpackhi_epi8(first.v, second.v)}}};
}

LUMALANE_INLINE vectors<2, 32> interleave_pairs(bytes<32> first, bytes<32> second) {
    return {
        {{_mm256_unpacklo_epi16(first.v, second.v)}, {_mm256_unpackhi_epi16(first.v, second.v)}}};
}

LUMALANE_INLINE bytes<32> next_lanes(bytes<32> a) {
    const __m256i last = _mm256_shuffle_epi8(a.v, _mm256_set1_epi8(15)); // of each half
    return {_mm256_alignr_epi8(_mm256_permute2x128_si256(a.v, last, 0x31), a.v, 1)};
}

LUMALANE_INLINE bytes<32> even_bytes_in_second_8(bytes<32> a) {
    return shuffled(a, shuffle.even_in_second_8);
}

LUMALANE_INLINE void store_after_8(unsigned char *to, const vectors<2, 32> &parts) {
    for (const bytes<32> &part : parts.part) {
        const __m128i lower = _mm256_castsi256_si128(part.v);
        const __m128i upper = _mm256_extracti128_si256(part.v, 1);
        store_after_8(to, {{{lower}, {upper}}});
        to += 32;
    }
}

// The pixels of every block, even and odd ones no longer apart.
template <pairs order, int n>
LUMALANE_INLINE bytes<n> in_pixel_order(bytes<n> apart) {
    return shuffled(apart, shuffle.pixel_order[static_cast<int>(order)]);
}

template <pairs order = pairs::in_order, int n>
LUMALANE_INLINE vectors<4, n> interleave_channels_padded(bytes<n> first, bytes<n> second,
                                                         bytes<n> third) {
    const auto ab = interleave(in_pixel_order<order>(first), in_pixel_order<order>(second));
    const auto c0 = interleave(in_pixel_order<order>(third), fill_bytes<n>(0));
    const auto low = interleave_pairs(ab.part[0], c0.part[0]);
    const auto high = interleave_pairs(ab.part[1], c0.part[1]);
    return {{low.part[0], low.part[1], high.part[0], high.part[1]}};
}

// The words m of `a`, `b` and `c` with m % 3 == 0, 1 and 2.
LUMALANE_INLINE bytes<16> every_third_word(bytes<16> a, bytes<16> b, bytes<16> c) {
    return {_mm_blend_epi16(_mm_blend_epi16(a.v, b.v, 0x92), c.v, 0x24)};
}

LUMALANE_INLINE bytes<32> every_third_word(bytes<32> a, bytes<32> b, bytes<32> c) {
    return {_mm256_blend_epi16(_mm256_blend_epi16(a.v, b.v, 0x92), c.v, 0x24)};
}

// Of every block the lower half of `a`, the upper one of `b`.
LUMALANE_INLINE bytes<16> halves_of_both(bytes<16> a, bytes<16> b) {
    return {_mm_blend_epi16(a.v, b.v, 0xf0)};
}

LUMALANE_INLINE bytes<32> halves_of_both(bytes<32> a, bytes<32> b) {
    return {_mm256_blend_epi32(a.v, b.v, 0xcc)};
}

// The three parts of every block. Of a pair of pixels the words are 1e2e 3e1o 2o3o (1, 2, 3 the channels,
// e even, o odd). (Blends of words are one operation, those of bytes are up to three.)
template <pairs order, int n>
LUMALANE_INLINE vectors<3, n> interleave_channels_of_blocks(bytes<n> first, bytes<n> second,
                                                            bytes<n> third) {
    constexpr auto &word = shuffle.word[static_cast<int>(order)];
    const bytes<n> a = shuffled(interleave(first, second).part[0], word[0]);
    const bytes<n> b = shuffled(halves_of_both(third, first), word[1]);
    const bytes<n> c = shuffled(interleave(second, third).part[1], word[2]);
    return {{every_third_word(a, b, c), every_third_word(c, a, b), every_third_word(b, c, a)}};
}

template <pairs order = pairs::in_order>
LUMALANE_INLINE vectors<3, 16> interleave_channels(bytes<16> first, bytes<16> second,
                                                   bytes<16> third) {
    return interleave_channels_of_blocks<order>(first, second, third);
}

template <pairs order = pairs::in_order>
LUMALANE_INLINE vectors<3, 32> interleave_channels(bytes<32> first, bytes<32> second,
                                                   bytes<32> third) {
    const auto [p] = interleave_channels_of_blocks<order>(first, second, third);
    return {{{_mm256_permute2x128_si256(p[0].v, p[1].v, 0x20)},
             {_mm256_blend_epi32(p[2].v, p[0].v, 0xf0)},
             {_mm256_permute2x128_si256(p[1].v, p[2].v, 0x31)}}};
}

template <int size, int channel, int n>
LUMALANE_INLINE bytes<n> load_channel(const unsigned char *from) {
    if constexpr (n < 32) {
        return load_channel_of_blocks<size, channel, n>(from);
    } else if constexpr (size == 4) {
        static_assert(channel == 0);
        const auto pixels = [&](int offset) {
            return _mm256_and_si256(load<32>(from + offset).v, _mm256_set1_epi32(0x000000ff));
        };
        const __m256i narrow = _mm256_packus_epi16(_mm256_packs_epi32(pixels(0), pixels(32)),
                                                   _mm256_packs_epi32(pixels(64), pixels(96)));
        return {_mm256_permutevar8x32_epi32(narrow, _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7))};
    } else {
        static_assert(size == 3 && channel == 2);
        const auto part = [&](int k) {
            const unsigned char *const of_first_block = from + 16 * k;
            return shuffled(load_halves<32>(of_first_block, of_first_block + 48),
                            shuffle.thirds[k]);
        };
        // Associated otherwise, gcc orders the loads so that it takes 1.25 times as long.
        return part(0) | (part(1) | part(2));
    }
}

template <int size, int n>
LUMALANE_INLINE vectors<size, n> load_spread(const unsigned char *from) {
    if constexpr (n == 16) {
        const bytes<16> a = load<16>(from);
        if constexpr (size == 2)
            return spread_words(a);
        else if constexpr (size == 3)
            return {{shuffled(a, shuffle.spread[0]), shuffled(a, shuffle.spread[1]),
                     shuffled(a, shuffle.spread[2])}};
        else
            return spread_dwords(a);
    } else if constexpr (size == 2) {
        return {{{widen(load<16>(from)).v}, {widen(load<16>(from + 16)).v}}};
    } else if constexpr (size == 3) {
        return {{shuffled(load_repeated(from), shuffle.spread[0]),
                 shuffled(load<32>(from), shuffle.spread[2]),
                 shuffled(load_repeated(from + 16), shuffle.spread[1])}};
    } else {
        const auto part = [&](int offset) -> bytes<32> {
            return {_mm256_cvtepu8_epi32(load<8>(from + offset).v)};
        };
        return {{part(0), part(8), part(16), part(24)}};
    }
}

// ---- Half-interleaved pixels ----------------------------------------------------------------------------

// A product of an unsigned and of a signed byte: the constants are the signed ones, or else the
// lanes less 128.
template <int lower, int upper>
struct byte_products {
    static constexpr int least = 255 * ((lower < 0 ? lower : 0) + (upper < 0 ? upper : 0));
    static constexpr int most = 255 * ((lower > 0 ? lower : 0) + (upper > 0 ? upper : 0));
    static constexpr bool signed_constants = -128 <= lower && lower <= 127 && -128 <= upper &&
                                             upper <= 127 && -32768 <= least && most <= 32767;
    static_assert(signed_constants || (0 <= lower && 0 <= upper && lower + upper <= 255));
    static constexpr int offset = 128 * (lower + upper);
};

template <int lower, int upper, int lanes>
LUMALANE_INLINE words<lanes> multiply_bytes(words<lanes> a) {
    using product = byte_products<lower, upper>;
    constexpr int n = 2 * lanes;
    const bytes<n> constants = fill_byte_pairs<n>(lower, upper);
    if constexpr (product::signed_constants)
        return multiply_add(as_bytes(a), constants);
    else
        return add(multiply_add(constants, subtract(as_bytes(a), fill_bytes<n>(0x80))),
                   fill_words<lanes>(product::offset));
}

template <int size, int n>
LUMALANE_INLINE half_interleaved<n> load_half_interleaved(const unsigned char *from) {
    if constexpr (size == 4) {
        return {as_words(words_of_both(load<n>(from), load<n>(from + n - 2))),
                as_words(words_of_both(load<n>(from + 2), load<n>(from + n)))};
    } else if constexpr (n == 16) {
        const auto words_of = [&](const unsigned char(&by)[2][32]) {
            return as_words(shuffled(load<16>(from), by[0]) |
                            shuffled(load<16>(from + 8), by[1] + 16));
        };
        return {words_of(shuffle.triplets_bg), words_of(shuffle.triplets_rx)};
    } else {
        const bytes<32> first = load_halves<32>(from, from + 8);
        const bytes<32> second = load_halves<32>(from + 24, from + 32);
        const auto words_of = [&](const unsigned char(&by)[2][32]) {
            return as_words(shuffled(first, by[0]) | shuffled(second, by[1]));
        };
        return {words_of(shuffle.triplets_bg), words_of(shuffle.triplets_rx)};
    }
}

LUMALANE_INLINE words<8> half_interleave(words<8> a) {
    return as_words(shuffled(as_bytes(a), shuffle.half_interleave));
}

LUMALANE_INLINE words<16> half_interleave(words<16> a) {
    const bytes<32> quarters{_mm256_permute4x64_epi64(a.v, _MM_SHUFFLE(3, 1, 2, 0))};
    return as_words(shuffled(quarters, shuffle.half_interleave));
}

LUMALANE_INLINE words<16> even_pairs_of_words(words<16> a, words<16> b) {
    return {_mm256_castps_si256(_mm256_shuffle_ps(
        _mm256_castsi256_ps(a.v), _mm256_castsi256_ps(b.v), _MM_SHUFFLE(2, 0, 2, 0)))};
}

// In every block the upper bytes of `a`, those of `b`.
template <int n>
LUMALANE_INLINE bytes<2 * n> upper_bytes(words<n> a, words<n> b, const unsigned char (&by)[2][32]) {
    return shuffled(as_bytes(a), by[0]) | shuffled(as_bytes(b), by[1]);
}

LUMALANE_INLINE bytes<16> deinterleave_upper_bytes(words<8> a, words<8> b) {
    return upper_bytes(a, b, shuffle.deinterleave_upper_bytes);
}

LUMALANE_INLINE bytes<32> deinterleave_upper_bytes(words<16> a, words<16> b) {
    const bytes<32> of_blocks = upper_bytes(a, b, shuffle.deinterleave_upper_bytes);
    return {_mm256_permutevar8x32_epi32(of_blocks.v, _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7))};
}

LUMALANE_INLINE halves<8> deinterleave_upper_bytes_of_even(words<8> a, words<8> b) {
    const bytes<16> both = upper_bytes(a, b, shuffle.deinterleave_upper_bytes_of_even);
    return {lower_half(both), upper_half(both)};
}

// Of every quarter two bytes are in each block.
LUMALANE_INLINE halves<16> deinterleave_upper_bytes_of_even(words<16> a, words<16> b) {
    const bytes<32> of_blocks = upper_bytes(a, b, shuffle.deinterleave_upper_bytes_of_even);
    const __m128i first = lower_half(of_blocks).v, second = upper_half(of_blocks).v;
    return {{_mm_unpacklo_epi16(first, second)}, {_mm_unpackhi_epi16(first, second)}};
}

} // namespace lumalane::LUMALANE_TARGET_NAME
