// Lanes in the 512-bit registers of AVX-512 (F, BW, VL and VBMI), four blocks each; portable.h defines
// the operations. The vectors of one and of two blocks are those of avx2.h.
#pragma once

// What g++ 12's header leaves undefined where nothing uses it, it warns of.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wuninitialized"
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#include <immintrin.h>
#pragma GCC diagnostic pop
#else
#include <immintrin.h>
#endif

#define LUMALANE_WIDER_THAN_AVX2
#include "simd/avx2.h"

namespace lumalane::LUMALANE_TARGET_NAME {

template <>
struct bytes<64> {
    __m512i v;
};
template <>
struct words<32> {
    __m512i v;
};

inline constexpr int widest = 64;

// ---- Memory ------------------------------------------------------------------------------------

template <>
LUMALANE_INLINE bytes<64> load<64>(const unsigned char *from) {
    return {_mm512_loadu_si512(from)};
}

template <>
LUMALANE_INLINE bytes<64> load_halves<64>(const unsigned char *low, const unsigned char *high) {
    return {_mm512_inserti64x4(_mm512_castsi256_si512(load<32>(low).v), load<32>(high).v, 1)};
}

LUMALANE_INLINE void store(unsigned char *to, bytes<64> a) { _mm512_storeu_si512(to, a.v); }

// Callers who align rows to 32 bytes have non-temporal stores, as with AVX2. (By halves of what is
// aligned to 64 they take 1.2 times as long.)
template <>
inline constexpr int streamed_bytes<64> = 32;

LUMALANE_INLINE void stream(unsigned char *to, bytes<64> a) {
    if (reinterpret_cast<unsigned long long>(to) % 64 == 0) {
        const auto place = reinterpret_cast<__m512i *>(to);
        if constexpr (streams_by_instruction)
            stream_by_instruction(place, a.v);
        else
            _mm512_stream_si512(place, a.v);
    } else {
        stream(to, bytes<32>{_mm512_castsi512_si256(a.v)});
        stream(to + 32, bytes<32>{_mm512_extracti64x4_epi64(a.v, 1)});
    }
}

constexpr __mmask64 make_every(int size, int at) {
    __mmask64 bits = 0;
    for (int byte = at; byte < 64; byte += size)
        bits |= __mmask64{1} << byte;
    return bits;
}

// Masks of lanes are made in general registers.
template <>
inline constexpr bool calls_are_apart<64> = true;

template <>
inline constexpr bool fetches_ahead<64> = true;

// Of every `size` bytes the one that comes after `at` others.
template <int size, int at>
constexpr __mmask64 every = make_every(size, at);

// The bytes at `from` in place of those of `a` that `where` tells.
LUMALANE_INLINE bytes<64> load_into(bytes<64> a, __mmask64 where, const unsigned char *from) {
    return {_mm512_mask_blend_epi8(where, a.v, load<64>(from).v)};
}

// ---- One lane at a time ------------------------------------------------------------------------

template <>
LUMALANE_INLINE words<32> fill_words<32>(int value) {
    return {_mm512_set1_epi16(static_cast<short>(value))};
}

template <>
LUMALANE_INLINE words<32> fill_word_pairs<32>(int even, int odd) {
    return {_mm512_broadcastd_epi32(fill_word_pairs<8>(even, odd).v)};
}

template <>
LUMALANE_INLINE bytes<64> fill_bytes<64>(int value) {
    return {_mm512_set1_epi8(static_cast<char>(value))};
}

LUMALANE_INLINE words<32> add(words<32> a, words<32> b) { return {_mm512_add_epi16(a.v, b.v)}; }

LUMALANE_INLINE words<32> subtract(words<32> a, words<32> b) {
    return {_mm512_sub_epi16(a.v, b.v)};
}

LUMALANE_INLINE words<32> add_saturate(words<32> a, words<32> b) {
    return {_mm512_adds_epi16(a.v, b.v)};
}

LUMALANE_INLINE words<32> maximum(words<32> a, words<32> b) { return {_mm512_max_epi16(a.v, b.v)}; }

LUMALANE_INLINE words<32> minimum(words<32> a, words<32> b) { return {_mm512_min_epi16(a.v, b.v)}; }

LUMALANE_INLINE bytes<64> absolute_difference(bytes<64> a, bytes<64> b) {
    return {_mm512_or_si512(_mm512_subs_epu8(a.v, b.v), _mm512_subs_epu8(b.v, a.v))};
}

LUMALANE_INLINE words<32> multiply_low(words<32> a, words<32> b) {
    // (With this intrinsic g++ leaves the multiplication as it is.)
    return {_mm512_maskz_mullo_epi16(0xffffffff, a.v, b.v)};
}

LUMALANE_INLINE words<32> multiply_high(words<32> a, words<32> b) {
    return {_mm512_mulhi_epi16(a.v, b.v)};
}

LUMALANE_INLINE words<32> multiply_high_unsigned(words<32> a, words<32> b) {
    return {_mm512_mulhi_epu16(a.v, b.v)};
}

LUMALANE_INLINE words<32> multiply_rounded(words<32> a, words<32> b) {
    return {_mm512_mulhrs_epi16(a.v, b.v)};
}

template <int count>
LUMALANE_INLINE words<32> shift_left(words<32> a) {
    return {_mm512_slli_epi16(a.v, count)};
}

template <int count>
LUMALANE_INLINE words<32> shift_right_logical(words<32> a) {
    return {_mm512_srli_epi16(a.v, count)};
}

template <int count>
LUMALANE_INLINE words<32> shift_right_arithmetic(words<32> a) {
    return {_mm512_srai_epi16(a.v, count)};
}

LUMALANE_INLINE bytes<64> operator&(bytes<64> a, bytes<64> b) {
    return {_mm512_and_si512(a.v, b.v)};
}

LUMALANE_INLINE bytes<64> operator|(bytes<64> a, bytes<64> b) {
    return {_mm512_or_si512(a.v, b.v)};
}

template <int count>
LUMALANE_INLINE bytes<64> shift_left(bytes<64> a) {
    return bytes<64>{_mm512_slli_epi16(a.v, count)} & fill_bytes<64>(0xff << count);
}

template <int count>
LUMALANE_INLINE bytes<64> shift_right_logical(bytes<64> a) {
    return bytes<64>{_mm512_srli_epi16(a.v, count)} & fill_bytes<64>(0xff >> count);
}

LUMALANE_INLINE words<32> operator&(words<32> a, words<32> b) {
    return {_mm512_and_si512(a.v, b.v)};
}

LUMALANE_INLINE words<32> operator|(words<32> a, words<32> b) {
    return {_mm512_or_si512(a.v, b.v)};
}

LUMALANE_INLINE words<32> equal(words<32> a, words<32> b) {
    return {_mm512_movm_epi16(_mm512_cmpeq_epi16_mask(a.v, b.v))};
}

LUMALANE_INLINE bytes<64> equal(bytes<64> a, bytes<64> b) {
    return {_mm512_movm_epi8(_mm512_cmpeq_epi8_mask(a.v, b.v))};
}

LUMALANE_INLINE __mmask64 mask_of_1_to_127(bytes<64> a) {
    return _mm512_cmpgt_epi8_mask(a.v, _mm512_setzero_si512());
}

LUMALANE_INLINE bytes<64> in_1_to_127(bytes<64> a) {
    return {_mm512_movm_epi8(mask_of_1_to_127(a))};
}

LUMALANE_INLINE bool all_in_1_to_127(bytes<64> a) {
    const __mmask64 mask = mask_of_1_to_127(a);
    return _kortestc_mask64_u8(mask, mask) != 0;
}

// (What is equal is a mask, of which a vector would be made, and of that a mask again.)
template <int count>
LUMALANE_INLINE bool are_at(const unsigned char *from, const vectors<count, 64> &these) {
    const auto difference = [&](int i) {
        return _mm512_xor_si512(load<64>(from + 64 * i).v, these.part[i].v);
    };
    __m512i any = difference(0);
    for (int i = 1; i < count; ++i)
        any = _mm512_or_si512(any, difference(i));
    return _mm512_test_epi32_mask(any, any) == 0;
}

// Bits of `chosen` where those of `where` are set, of `otherwise` elsewhere.
LUMALANE_INLINE bytes<64> choose(bytes<64> where, bytes<64> chosen, bytes<64> otherwise) {
    return {_mm512_ternarylogic_epi32(where.v, chosen.v, otherwise.v, 0xca)};
}

LUMALANE_INLINE bytes<64> choose_equal(bytes<64> a, bytes<64> b, bytes<64> chosen,
                                       bytes<64> otherwise) {
    return {_mm512_mask_mov_epi8(otherwise.v, _mm512_cmpeq_epi8_mask(a.v, b.v), chosen.v)};
}

// ---- Between bytes and words -------------------------------------------------------------------

LUMALANE_INLINE bytes<32> lower_half(bytes<64> a) { return {_mm512_castsi512_si256(a.v)}; }

LUMALANE_INLINE bytes<32> upper_half(bytes<64> a) { return {_mm512_extracti64x4_epi64(a.v, 1)}; }

LUMALANE_INLINE words<32> as_words(bytes<64> a) { return {a.v}; }

LUMALANE_INLINE bytes<64> as_bytes(words<32> a) { return {a.v}; }

LUMALANE_INLINE words<32> widen(bytes<32> a) { return {_mm512_cvtepu8_epi16(a.v)}; }

LUMALANE_INLINE words<32> widen_low(bytes<64> a) {
    return {_mm512_unpacklo_epi8(a.v, _mm512_setzero_si512())};
}

LUMALANE_INLINE words<32> widen_high(bytes<64> a) {
    return {_mm512_unpackhi_epi8(a.v, _mm512_setzero_si512())};
}

LUMALANE_INLINE words<32> widen_low(bytes<64> whole, bytes<64> fraction) {
    return {_mm512_unpacklo_epi8(fraction.v, whole.v)};
}

LUMALANE_INLINE words<32> widen_high(bytes<64> whole, bytes<64> fraction) {
    return {_mm512_unpackhi_epi8(fraction.v, whole.v)};
}

LUMALANE_INLINE words<32> even(bytes<64> a) {
    return {_mm512_and_si512(a.v, _mm512_set1_epi16(0x00ff))};
}

LUMALANE_INLINE words<32> odd(bytes<64> a) { return {_mm512_srli_epi16(a.v, 8)}; }

LUMALANE_INLINE words<32> multiply_add(bytes<64> a, bytes<64> b) {
    return {_mm512_maddubs_epi16(a.v, b.v)};
}

LUMALANE_INLINE bytes<64> narrow_saturate(words<32> a, words<32> b) {
    return {_mm512_packus_epi16(a.v, b.v)};
}

LUMALANE_INLINE bytes<64> join(words<32> even, words<32> odd) {
    return {_mm512_or_si512(even.v, _mm512_slli_epi16(odd.v, 8))};
}

template <int factor>
LUMALANE_INLINE words<32> odd_and_even_times(bytes<64> of_odd, bytes<64> of_even) {
    return pairs_times<factor>(bytes<64>{_mm512_mask_mov_epi8(of_even.v, every<2, 1>, of_odd.v)});
}

LUMALANE_INLINE bytes<64> groups_above(bytes<64> a, int limit) {
    const __mmask16 above = _mm512_cmpgt_epi32_mask(
        _mm512_madd_epi16(pairs_times<1>(a).v, _mm512_set1_epi16(1)), _mm512_set1_epi32(limit));
    return {_mm512_maskz_set1_epi32(above, -1)};
}

LUMALANE_INLINE words<32> average_neighbour_pairs(bytes<64> a) {
    const __m512i averages = _mm512_avg_epu8(a.v, _mm512_srli_epi32(a.v, 16));
    const __m512i upper = _mm512_slli_epi32(averages, 8);
    return {_mm512_ternarylogic_epi32(_mm512_and_si512(averages, _mm512_set1_epi32(0x000000ff)),
                                      upper, _mm512_set1_epi32(0x00ff0000), 0xf8)};
}

LUMALANE_INLINE words<32> second_pairs(bytes<64> a) {
    const __m512i lower =
        _mm512_and_si512(_mm512_srli_epi32(a.v, 16), _mm512_set1_epi32(0x000000ff));
    return {_mm512_ternarylogic_epi32(lower, _mm512_srli_epi32(a.v, 8),
                                      _mm512_set1_epi32(0x00ff0000), 0xf8)};
}

// ---- Blending ----------------------------------------------------------------------------------

LUMALANE_INLINE bytes<64> average(bytes<64> a, bytes<64> b) { return {_mm512_avg_epu8(a.v, b.v)}; }

LUMALANE_INLINE words<32> average(words<32> a, words<32> b) { return {_mm512_avg_epu16(a.v, b.v)}; }

LUMALANE_INLINE bool all_zero(bytes<64> a) { return _mm512_test_epi32_mask(a.v, a.v) == 0; }

LUMALANE_INLINE bytes<64> minimum(bytes<64> a, bytes<64> b) { return {_mm512_min_epu8(a.v, b.v)}; }

LUMALANE_INLINE bytes<64> subtract(bytes<64> a, bytes<64> b) { return {_mm512_sub_epi8(a.v, b.v)}; }

// ---- Permutations of whole vectors -------------------------------------------------------------
//
// One instruction takes any bytes of a vector to any places. What is said of blocks below is so in
// memory only where operations of blocks follow.

// Which byte comes to each place.
struct permutation {
    alignas(64) unsigned char from[64];
};

template <class From>
constexpr permutation make_permutation(From from) {
    permutation p{};
    for (int i = 0; i < 64; ++i)
        p.from[i] = static_cast<unsigned char>(from(i));
    return p;
}

// Clang, where it knows the mask, makes two instructions of a permutation with a mask, one of them of
// several steps: RGB32 takes twice as long.
LUMALANE_INLINE __mmask64 hidden(__mmask64 mask) {
#ifdef __clang__
    __asm__("" : "+k"(mask));
#endif
    return mask;
}

LUMALANE_INLINE bytes<64> permute(bytes<64> a, const permutation &by) {
    return {_mm512_permutexvar_epi8(load<64>(by.from).v, a.v)};
}

// Zeros, or the bytes of `to`, where `where` is not set.
LUMALANE_INLINE bytes<64> permute_some(__mmask64 where, bytes<64> a, const permutation &by) {
    return {_mm512_maskz_permutexvar_epi8(hidden(where), load<64>(by.from).v, a.v)};
}

LUMALANE_INLINE bytes<64> permute_into(bytes<64> to, __mmask64 where, bytes<64> a,
                                       const permutation &by) {
    return {_mm512_mask_permutexvar_epi8(to.v, hidden(where), load<64>(by.from).v, a.v)};
}

// The 32 bytes, with anything above them.
LUMALANE_INLINE bytes<64> extend(bytes<32> a) { return {_mm512_castsi256_si512(a.v)}; }

// How the 64 pixels of a vector are permuted over its four blocks, by groups of consecutive pixels.
//     1 and 3 parts, groups of 16: 0 | 1 | 2 | 3
//     2 parts, groups of 8:        0 4 | 1 5 | 2 6 | 3 7
//     4 parts, groups of 4:        0 4 8 12 | 1 5 9 13 | 2 6 10 14 | 3 7 11 15
template <int count>
constexpr int pixel_at(int lane) {
    constexpr int size = count == 2 ? 8 : count == 4 ? 4 : 16;
    const int block = lane / 16, group = lane % 16 / size;
    return (group * 4 + block) * size + lane % size;
}

// The same of 32 chroma samples, as lanes of words.
template <int count>
constexpr int sample_at(int lane) {
    return pixel_at<count>(2 * lane) / 2;
}

// Samples in the lower bytes of words.
template <int count>
constexpr permutation samples_permuted = make_permutation([](int i) {
    return sample_at<count>(i / 2);
});
// Of two times 32 samples, those of the second ones in the upper bytes.
template <int count>
constexpr permutation pairs_permuted = make_permutation([](int i) {
    return sample_at<count>(i / 2) + i % 2 * 32;
});
// Samples that lie in the even and then in the odd bytes of one vector.
inline constexpr permutation halves_in_order =
    make_permutation([](int i) { return i % 32 * 2 + i / 32; });

template <int count>
LUMALANE_INLINE bytes<64> permuted(bytes<64> in_order) {
    if constexpr (count == 1 || count == 3)
        return in_order;
    else if constexpr (count == 2)
        return {_mm512_permutexvar_epi64(_mm512_setr_epi64(0, 4, 1, 5, 2, 6, 3, 7), in_order.v)};
    else
        return {_mm512_permutexvar_epi32(
            _mm512_setr_epi32(0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15), in_order.v)};
}

template <int count, int n>
requires(n == 32) LUMALANE_INLINE words<n> load_chroma_permuted(const unsigned char *from) {
    if constexpr (count == 1 || count == 3)
        return widen(load<32>(from));
    else
        return as_words(permute_some(every<2, 0>, extend(load<32>(from)), samples_permuted<count>));
}

template <int count, int n>
requires(n == 64) LUMALANE_INLINE bytes<n> load_pairs_permuted(const unsigned char *u,
                                                               const unsigned char *v) {
    return permute(load_halves<64>(u, v), pairs_permuted<count>);
}

// Of the second 64 bytes those that are wanted come between those of the first ones by a load from a
// byte further ahead or back.

template <int n>
requires(n == 64) LUMALANE_INLINE bytes<n> load_even(const unsigned char *from) {
    return permute(load_into(load<64>(from), every<2, 1>, from + 63), halves_in_order);
}

template <int n>
requires(n == 64) LUMALANE_INLINE bytes<n> load_odd(const unsigned char *from) {
    return permute(load_into(load<64>(from + 1), every<2, 1>, from + 64), halves_in_order);
}

template <int n>
requires(n == 64) LUMALANE_INLINE bytes<n> load_averages(const unsigned char *from) {
    const bytes<64> even = load_into(load<64>(from), every<2, 1>, from + 63);
    const bytes<64> odd = load_into(load<64>(from + 1), every<2, 1>, from + 64);
    return permute(average(even, odd), halves_in_order);
}

LUMALANE_INLINE bytes<64> words_of_both(bytes<64> a, bytes<64> b) {
    return {_mm512_mask_blend_epi16(0xaaaaaaaa, a.v, b.v)};
}

// For 1 and 3 parts pairs of pixels are those of the first and of the second half of all in turn.
template <int count, int n>
requires(n == 64) LUMALANE_INLINE packed_pixels<n> load_packed(const unsigned char *from) {
    const bytes<64> even = words_of_both(load<64>(from), load<64>(from + 62));
    const bytes<64> odd = words_of_both(load<64>(from + 2), load<64>(from + 64));
    return {even, odd};
}

// ---- Pixels ------------------------------------------------------------------------------------

// In each block the 16 bytes of `by`.
LUMALANE_INLINE bytes<64> shuffled(bytes<64> a, const unsigned char *by) {
    return {_mm512_shuffle_epi8(a.v, _mm512_broadcast_i32x4(load<16>(by).v))};
}

LUMALANE_INLINE bytes<64> narrow_interleaved(words<32> a, words<32> b) {
    return shuffled(narrow_saturate(a, b), shuffle.pixel_order[0]);
}

template <pairs order = pairs::in_order>
LUMALANE_INLINE vectors<2, 64> interleave_channels(bytes<64> first, bytes<64> second) {
    const __m512i evens = _mm512_unpacklo_epi8(first.v, second.v);
    const __m512i odds = _mm512_unpackhi_epi8(first.v, second.v);
    const __m512i low = _mm512_unpacklo_epi16(evens, odds);
    const __m512i high = _mm512_unpackhi_epi16(evens, odds);
    if constexpr (order == pairs::in_order) {
        return {{{low}, {high}}};
    } else {
        const __m512 a = _mm512_castsi512_ps(low), b = _mm512_castsi512_ps(high);
        return {{{_mm512_castps_si512(_mm512_shuffle_ps(a, b, _MM_SHUFFLE(2, 0, 2, 0)))},
                 {_mm512_castps_si512(_mm512_shuffle_ps(a, b, _MM_SHUFFLE(3, 1, 3, 1)))}}};
    }
}

LUMALANE_INLINE vectors<2, 64> interleave(bytes<64> first, bytes<64> second) {
    return {{{_mm512_unpacklo_epi8(first.v, second.v)}, {_mm512_unpackhi_epi8(first.v, second.v)}}};
}

LUMALANE_INLINE vectors<2, 64> interleave_pairs(bytes<64> first, bytes<64> second) {
    return {
        {{_mm512_unpacklo_epi16(first.v, second.v)}, {_mm512_unpackhi_epi16(first.v, second.v)}}};
}

constexpr permutation next_lane = make_permutation([](int i) { return i < 63 ? i + 1 : 63; });

LUMALANE_INLINE bytes<64> next_lanes(bytes<64> a) { return permute(a, next_lane); }

constexpr permutation even_in_second_8 =
    make_permutation([](int i) { return 8 <= i && i < 16 ? (i - 8) * 2 : i; });

LUMALANE_INLINE bytes<64> even_bytes_in_second_8(bytes<64> a) {
    return permute(a, even_in_second_8);
}

// Stores with a mask would take 1.05 times as long as those of AVX2.
template <>
inline constexpr int widest_with_gaps<64> = 32;

// Where channels of 64 pixels lie whose even and odd ones were narrowed from two vectors: in order, or
// as load_packed() leaves pairs.
template <pairs order>
constexpr int lane_of(int pixel) {
    const int pair = pixel / 2;
    const int word = order == pairs::in_order ? pair : pair % 16 * 2 + pair / 16;
    return word / 8 * 16 + word % 8 + pixel % 2 * 8;
}

// Part k of pixels of `size` bytes: the pixel that each byte belongs to.
template <int size, int k, pairs order>
constexpr permutation channels_permuted = make_permutation([](int i) {
    return lane_of<order>((64 * k + i) / size);
});

// Of each part the bytes of a channel.
template <int size, int k, int channel>
constexpr __mmask64 of_channel = every<size, (channel + size * 64 - 64 * k) % size>;

template <int size, int k, pairs order>
LUMALANE_INLINE bytes<64> part_of_pixels(bytes<64> first, bytes<64> second, bytes<64> third) {
    constexpr const permutation &by = channels_permuted<size, k, order>;
    const bytes<64> begun =
        size == 4 ? permute_some(of_channel<size, k, 0>, first, by) : permute(first, by);
    return permute_into(permute_into(begun, of_channel<size, k, 1>, second, by),
                        of_channel<size, k, 2>, third, by);
}

// Pixels are not permuted before: one permutation of each channel takes them to their places.
template <>
inline constexpr int padded_parts<64> = 1;

template <pairs order = pairs::in_order>
LUMALANE_INLINE vectors<4, 64> interleave_channels_padded(bytes<64> first, bytes<64> second,
                                                          bytes<64> third) {
    return {{part_of_pixels<4, 0, order>(first, second, third),
             part_of_pixels<4, 1, order>(first, second, third),
             part_of_pixels<4, 2, order>(first, second, third),
             part_of_pixels<4, 3, order>(first, second, third)}};
}

template <pairs order = pairs::in_order>
LUMALANE_INLINE vectors<3, 64> interleave_channels(bytes<64> first, bytes<64> second,
                                                   bytes<64> third) {
    return {{part_of_pixels<3, 0, order>(first, second, third),
             part_of_pixels<3, 1, order>(first, second, third),
             part_of_pixels<3, 2, order>(first, second, third)}};
}

// Of 64 pixels of 4 bytes, the first byte of number 16 k + i at 4 i + k; of 3 bytes, the last one in
// its place of one of three vectors.
constexpr permutation first_of_4 = make_permutation([](int i) { return i % 16 * 4 + i / 16; });
constexpr permutation last_of_3 = make_permutation([](int i) { return (3 * i + 2) % 64; });

template <int size, int channel, int n>
requires(n == 64) LUMALANE_INLINE bytes<n> load_channel(const unsigned char *from) {
    if constexpr (size == 4) {
        static_assert(channel == 0);
        const bytes<64> two = load_into(load<64>(from), every<4, 1>, from + 64 - 1);
        const bytes<64> three = load_into(two, every<4, 2>, from + 128 - 2);
        return permute(load_into(three, every<4, 3>, from + 192 - 3), first_of_4);
    } else {
        static_assert(size == 3 && channel == 2);
        const bytes<64> two = load_into(load<64>(from), every<3, 1>, from + 64);
        return permute(load_into(two, every<3, 0>, from + 128), last_of_3);
    }
}

template <int size, int k>
constexpr permutation spread_permuted = make_permutation([](int i) { return (64 * k + i) / size; });

template <int size, int n>
requires(n == 64) LUMALANE_INLINE vectors<size, n> load_spread(const unsigned char *from) {
    if constexpr (size == 2) {
        return {{{widen(load<32>(from)).v}, {widen(load<32>(from + 32)).v}}};
    } else if constexpr (size == 3) {
        const bytes<64> a = load<64>(from);
        return {{permute_some(of_channel<3, 0, 0>, a, spread_permuted<3, 0>),
                 permute_some(of_channel<3, 1, 0>, a, spread_permuted<3, 1>),
                 permute_some(of_channel<3, 2, 0>, a, spread_permuted<3, 2>)}};
    } else {
        const auto part = [&](int offset) -> bytes<64> {
            return {_mm512_cvtepu8_epi32(load<16>(from + offset).v)};
        };
        return {{part(0), part(16), part(32), part(48)}};
    }
}

// ---- Half-interleaved pixels -------------------------------------------------------------------

// Of 32 pixels of 3 bytes, the first 16 from byte 0 on and the others from byte 48, of which 32 are in
// the first vector only.
constexpr permutation triplets_bg =
    make_permutation([](int i) { return i / 4 * 3 + i % 2 + (i % 4 < 2 ? 0 : 16); });
constexpr permutation triplets_rx =
    make_permutation([](int i) { return i / 4 * 3 + 2 + (i % 4 < 2 ? 0 : 16); });

template <int size, int n>
requires(n ==
         64) LUMALANE_INLINE half_interleaved<n> load_half_interleaved(const unsigned char *from) {
    if constexpr (size == 4) {
        return {as_words(words_of_both(load<64>(from), load<64>(from + 62))),
                as_words(words_of_both(load<64>(from + 2), load<64>(from + 64)))};
    } else {
        constexpr __mmask64 second_half = every<4, 2> | every<4, 3>;
        const bytes<64> first = load<64>(from), second = load<64>(from + 32);
        return {
            as_words(permute_into(permute(first, triplets_bg), second_half, second, triplets_bg)),
            as_words(permute_into(permute_some(every<4, 1>, first, triplets_rx), every<4, 3>,
                                  second, triplets_rx))};
    }
}

constexpr permutation half_interleaved_words =
    make_permutation([](int i) { return i / 4 * 2 + i % 2 + i / 2 % 2 * 32; });

LUMALANE_INLINE words<32> half_interleave(words<32> a) {
    return as_words(permute(as_bytes(a), half_interleaved_words));
}

LUMALANE_INLINE words<32> even_pairs_of_words(words<32> a, words<32> b) {
    return {_mm512_castps_si512(_mm512_shuffle_ps(
        _mm512_castsi512_ps(a.v), _mm512_castsi512_ps(b.v), _MM_SHUFFLE(2, 0, 2, 0)))};
}

// The upper bytes of `a` in the even lanes, those of `b` in the odd ones.
LUMALANE_INLINE bytes<64> upper_bytes_of_both(words<32> a, words<32> b) {
    return {_mm512_mask_blend_epi8(every<2, 1>, _mm512_srli_epi16(a.v, 8), b.v)};
}

constexpr permutation deinterleaved = make_permutation([](int i) {
    const int word = i % 32;
    return (word % 16 * 2 + word / 16) * 2 + i / 32;
});

LUMALANE_INLINE bytes<64> deinterleave_upper_bytes(words<32> a, words<32> b) {
    return permute(upper_bytes_of_both(a, b), deinterleaved);
}

constexpr permutation deinterleaved_of_even = make_permutation([](int i) {
    const int quarter = i % 32 / 8, in_quarter = i % 8;
    const int word = in_quarter / 2 * 8 + quarter / 2 * 4 + in_quarter % 2 * 2 + quarter % 2;
    return word * 2 + i / 32;
});

LUMALANE_INLINE halves<32> deinterleave_upper_bytes_of_even(words<32> a, words<32> b) {
    const bytes<64> both = permute(upper_bytes_of_both(a, b), deinterleaved_of_even);
    return {lower_half(both), upper_half(both)};
}

} // namespace lumalane::LUMALANE_TARGET_NAME
