// Lanes in pairs of the 64-bit registers of MMX, with the instructions that came with SSE: what
// sse2.h says, by operations of its instructions' names on pairs.
#pragma once

#include <xmmintrin.h>

namespace lumalane::LUMALANE_TARGET_NAME {

struct m128i {
    __m64 low, high;
};

// Both halves by the same instruction.
#define LUMALANE_OF_HALVES(name, instruction)                                                      \
    LUMALANE_INLINE m128i name(m128i a, m128i b) {                                                 \
        return {instruction(a.low, b.low), instruction(a.high, b.high)};                           \
    }
LUMALANE_OF_HALVES(_mm_add_epi16, _mm_add_pi16)
LUMALANE_OF_HALVES(_mm_sub_epi16, _mm_sub_pi16)
LUMALANE_OF_HALVES(_mm_adds_epi16, _mm_adds_pi16)
LUMALANE_OF_HALVES(_mm_adds_epu16, _mm_adds_pu16)
LUMALANE_OF_HALVES(_mm_subs_epu8, _mm_subs_pu8)
LUMALANE_OF_HALVES(_mm_max_epi16, _mm_max_pi16)
LUMALANE_OF_HALVES(_mm_min_epi16, _mm_min_pi16)
LUMALANE_OF_HALVES(_mm_min_epu8, _mm_min_pu8)
LUMALANE_OF_HALVES(_mm_avg_epu8, _mm_avg_pu8)
LUMALANE_OF_HALVES(_mm_avg_epu16, _mm_avg_pu16)
LUMALANE_OF_HALVES(_mm_mullo_epi16, _mm_mullo_pi16)
LUMALANE_OF_HALVES(_mm_mulhi_epi16, _mm_mulhi_pi16)
LUMALANE_OF_HALVES(_mm_mulhi_epu16, _mm_mulhi_pu16)
LUMALANE_OF_HALVES(_mm_madd_epi16, _mm_madd_pi16)
LUMALANE_OF_HALVES(_mm_and_si128, _mm_and_si64)
LUMALANE_OF_HALVES(_mm_andnot_si128, _mm_andnot_si64)
LUMALANE_OF_HALVES(_mm_or_si128, _mm_or_si64)
LUMALANE_OF_HALVES(_mm_cmpeq_epi8, _mm_cmpeq_pi8)
LUMALANE_OF_HALVES(_mm_cmpeq_epi16, _mm_cmpeq_pi16)
LUMALANE_OF_HALVES(_mm_cmpgt_epi8, _mm_cmpgt_pi8)
LUMALANE_OF_HALVES(_mm_cmpgt_epi32, _mm_cmpgt_pi32)
#undef LUMALANE_OF_HALVES

#define LUMALANE_OF_HALVES(name, instruction)                                                      \
    LUMALANE_INLINE m128i name(m128i a, int count) {                                               \
        return {instruction(a.low, count), instruction(a.high, count)};                            \
    }
LUMALANE_OF_HALVES(_mm_slli_epi16, _mm_slli_pi16)
LUMALANE_OF_HALVES(_mm_srli_epi16, _mm_srli_pi16)
LUMALANE_OF_HALVES(_mm_srai_epi16, _mm_srai_pi16)
LUMALANE_OF_HALVES(_mm_slli_epi32, _mm_slli_pi32)
LUMALANE_OF_HALVES(_mm_srli_epi32, _mm_srli_pi32)
LUMALANE_OF_HALVES(_mm_slli_epi64, _mm_slli_si64)
LUMALANE_OF_HALVES(_mm_srli_epi64, _mm_srli_si64)
#undef LUMALANE_OF_HALVES

// Each operand makes one half.
#define LUMALANE_PACK(name, instruction)                                                           \
    LUMALANE_INLINE m128i name(m128i a, m128i b) {                                                 \
        return {instruction(a.low, a.high), instruction(b.low, b.high)};                           \
    }
LUMALANE_PACK(_mm_packus_epi16, _mm_packs_pu16)
LUMALANE_PACK(_mm_packs_epi32, _mm_packs_pi32)
#undef LUMALANE_PACK

#define LUMALANE_UNPACK(lanes)                                                                     \
    LUMALANE_INLINE m128i _mm_unpacklo_epi##lanes(m128i a, m128i b) {                              \
        return {_mm_unpacklo_pi##lanes(a.low, b.low), _mm_unpackhi_pi##lanes(a.low, b.low)};       \
    }                                                                                              \
    LUMALANE_INLINE m128i _mm_unpackhi_epi##lanes(m128i a, m128i b) {                              \
        return {_mm_unpacklo_pi##lanes(a.high, b.high), _mm_unpackhi_pi##lanes(a.high, b.high)};   \
    }
LUMALANE_UNPACK(8)
LUMALANE_UNPACK(16)
LUMALANE_UNPACK(32)
#undef LUMALANE_UNPACK

LUMALANE_INLINE m128i _mm_unpacklo_epi64(m128i a, m128i b) { return {a.low, b.low}; }
LUMALANE_INLINE m128i _mm_unpackhi_epi64(m128i a, m128i b) { return {a.high, b.high}; }

// By bytes, fewer than 16. (A shift by 64 bits leaves nothing.)
LUMALANE_INLINE m128i _mm_srli_si128(m128i a, int count) {
    if (count >= 8)
        return {_mm_srli_si64(a.high, 8 * (count - 8)), _mm_setzero_si64()};
    return {_mm_or_si64(_mm_srli_si64(a.low, 8 * count), _mm_slli_si64(a.high, 64 - 8 * count)),
            _mm_srli_si64(a.high, 8 * count)};
}
// By 8 or more.
LUMALANE_INLINE m128i _mm_slli_si128(m128i a, int count) {
    return {_mm_setzero_si64(), _mm_slli_si64(a.low, 8 * (count - 8))};
}

template <int w, int x, int y, int z>
LUMALANE_INLINE m128i permute_words(m128i a) {
    return {_mm_shuffle_pi16(a.low, _MM_SHUFFLE(z, y, x, w)),
            _mm_shuffle_pi16(a.high, _MM_SHUFFLE(z, y, x, w))};
}

// 32-bit lanes i and j of four.
template <int i, int j>
LUMALANE_INLINE __m64 two_dwords(m128i a) {
    const __m64 first = i < 2 ? a.low : a.high, second = j < 2 ? a.low : a.high;
    if constexpr (i / 2 == j / 2) {
        constexpr int f = i % 2 * 2, s = j % 2 * 2;
        return _mm_shuffle_pi16(first, _MM_SHUFFLE(s + 1, s, f + 1, f));
    } else if constexpr (i % 2 == 0 && j % 2 == 0) {
        return _mm_unpacklo_pi32(first, second);
    } else if constexpr (i % 2 == 1 && j % 2 == 1) {
        return _mm_unpackhi_pi32(first, second);
    } else {
        static_assert(i % 2 == 0);
        return _mm_unpacklo_pi32(first, _mm_srli_si64(second, 32));
    }
}

template <int w, int x, int y, int z>
LUMALANE_INLINE m128i dwords_of_both(m128i a, m128i b) {
    return {two_dwords<w, x>(a), two_dwords<y, z>(b)};
}

template <int w, int x, int y, int z>
LUMALANE_INLINE m128i permute_dwords(m128i a) {
    return dwords_of_both<w, x, y, z>(a, a);
}

LUMALANE_INLINE m128i _mm_setzero_si128() { return {_mm_setzero_si64(), _mm_setzero_si64()}; }
LUMALANE_INLINE m128i _mm_set1_epi8(char value) {
    return {_mm_set1_pi8(value), _mm_set1_pi8(value)};
}
LUMALANE_INLINE m128i _mm_set1_epi16(short value) {
    return {_mm_set1_pi16(value), _mm_set1_pi16(value)};
}
LUMALANE_INLINE m128i _mm_set1_epi32(int value) {
    return {_mm_set1_pi32(value), _mm_set1_pi32(value)};
}
LUMALANE_INLINE m128i _mm_setr_epi32(int w, int x, int y, int z) {
    return {_mm_set_pi32(x, w), _mm_set_pi32(z, y)};
}

LUMALANE_INLINE m128i _mm_cvtsi32_si128(int bits) {
    return {_mm_cvtsi32_si64(bits), _mm_setzero_si64()};
}
LUMALANE_INLINE int _mm_cvtsi128_si32(m128i a) { return _mm_cvtsi64_si32(a.low); }
LUMALANE_INLINE int _mm_movemask_epi8(m128i a) {
    return _mm_movemask_pi8(a.low) | _mm_movemask_pi8(a.high) << 8;
}

// Of any alignment.
typedef __m64 unaligned_half __attribute__((may_alias, aligned(1)));
LUMALANE_INLINE unaligned_half *halves_at(m128i *at) {
    return reinterpret_cast<unaligned_half *>(at);
}
LUMALANE_INLINE const unaligned_half *halves_at(const m128i *at) {
    return reinterpret_cast<const unaligned_half *>(at);
}

// Clang with 32 bits takes the type for a number of 64 bits, in two registers of 32, and what it knows to
// come from memory it moves through those and the stack before it computes: everything took 2 to 19
// times as long. An instruction leaves no choice. (A sanitizer has to see the load.)
LUMALANE_INLINE __m64 load_half(const unaligned_half *from) {
#if defined(__clang__) && !defined(LUMALANE_SANITIZED)
    __m64 half;
    __asm__("movq %1, %0" : "=y"(half) : "m"(*from));
    return half;
#else
    return *from;
#endif
}
LUMALANE_INLINE void store_half(unaligned_half *to, __m64 half) {
#if defined(__clang__) && !defined(LUMALANE_SANITIZED)
    __asm__("movq %1, %0" : "=m"(*to) : "y"(half));
#else
    *to = half;
#endif
}

LUMALANE_INLINE m128i _mm_loadu_si128(const m128i *from) {
    return {load_half(halves_at(from)), load_half(halves_at(from) + 1)};
}
LUMALANE_INLINE m128i _mm_loadl_epi64(const m128i *from) {
    return {load_half(halves_at(from)), _mm_setzero_si64()};
}
LUMALANE_INLINE void _mm_storeu_si128(m128i *to, m128i a) {
    store_half(halves_at(to), a.low);
    store_half(halves_at(to) + 1, a.high);
}
LUMALANE_INLINE void _mm_storel_epi64(m128i *to, m128i a) { store_half(halves_at(to), a.low); }

} // namespace lumalane::LUMALANE_TARGET_NAME

#define LUMALANE_HALF_REGISTERS
#include "simd/sse2.h"
#undef LUMALANE_HALF_REGISTERS
