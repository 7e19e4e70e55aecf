// Lanes in the 128-bit registers of 64-bit ARM; portable.h defines the operations.
#pragma once

#include <arm_neon.h>

namespace lumalane::LUMALANE_TARGET_NAME {

template <>
struct bytes<16> {
    uint8x16_t v;
};
template <>
struct bytes<8> { // in the lower half
    uint8x16_t v;
};
template <>
struct bytes<4> { // in the lowest quarter
    uint8x16_t v;
};
template <>
struct words<8> {
    int16x8_t v;
};

inline constexpr int widest = 16;
inline constexpr bool multiplies_rounded = true;
inline constexpr bool doubles_products = true;
inline constexpr bool amplifies_bytes = true;

// All stores go through the cache. Of the architecture's own (stnp) only the hint is promised, for
// pairs of registers alone, so not for what the stores below interleave; and processors find out by
// themselves that whole lines are written, and stop taking them into the cache.
inline constexpr bool streams = false;

// Channels that are interleaved when they are stored; or before, where their vectors are wanted.
template <int count>
struct interleaved {
    bytes<16> channel[count];

    LUMALANE_INLINE operator vectors<2, 16>() const requires(count == 2) {
        return {{{vzip1q_u8(channel[0].v, channel[1].v)}, {vzip2q_u8(channel[0].v, channel[1].v)}}};
    }
};

// ---- Between types of the compiler -------------------------------------------------------------

LUMALANE_INLINE uint16x8_t unsigned_words(words<8> a) { return vreinterpretq_u16_s16(a.v); }

LUMALANE_INLINE words<8> words_of(uint16x8_t a) { return {vreinterpretq_s16_u16(a)}; }

LUMALANE_INLINE uint8x8_t lower(uint8x16_t a) { return vget_low_u8(a); }

LUMALANE_INLINE uint8x16_t extended(uint8x8_t a) { return vcombine_u8(a, vdup_n_u8(0)); }

// ---- Memory ------------------------------------------------------------------------------------

template <int n>
LUMALANE_INLINE bytes<n> load(const unsigned char *from);

template <>
LUMALANE_INLINE bytes<16> load<16>(const unsigned char *from) {
    return {vld1q_u8(from)};
}

template <>
LUMALANE_INLINE bytes<8> load<8>(const unsigned char *from) {
    return {extended(vld1_u8(from))};
}

template <>
LUMALANE_INLINE bytes<4> load<4>(const unsigned char *from) {
    unsigned bits;
    __builtin_memcpy(&bits, from, sizeof bits);
    return {vreinterpretq_u8_u32(uint32x4_t{bits, 0, 0, 0})};
}

template <int n>
LUMALANE_INLINE bytes<n> load_halves(const unsigned char *low, const unsigned char *high);

template <>
LUMALANE_INLINE bytes<16> load_halves<16>(const unsigned char *low, const unsigned char *high) {
    return {vcombine_u8(vld1_u8(low), vld1_u8(high))};
}

LUMALANE_INLINE void store(unsigned char *to, bytes<16> a) { vst1q_u8(to, a.v); }

LUMALANE_INLINE void store(unsigned char *to, bytes<8> a) { vst1_u8(to, lower(a.v)); }

LUMALANE_INLINE void store(unsigned char *to, bytes<4> a) {
    const unsigned bits = vgetq_lane_u32(vreinterpretq_u32_u8(a.v), 0);
    __builtin_memcpy(to, &bits, sizeof bits);
}

LUMALANE_INLINE void stream(unsigned char *to, bytes<16> a) { store(to, a); }

LUMALANE_INLINE void stream_fence() {}

template <class Stores>
LUMALANE_INLINE void store_all(unsigned char *to, const interleaved<2> &v) {
    const uint8x16x2_t channels = {{v.channel[0].v, v.channel[1].v}};
    vst2q_u8(to, channels);
}

template <class Stores>
LUMALANE_INLINE void store_all(unsigned char *to, const interleaved<3> &v) {
    const uint8x16x3_t channels = {{v.channel[0].v, v.channel[1].v, v.channel[2].v}};
    vst3q_u8(to, channels);
}

template <class Stores>
LUMALANE_INLINE void store_all(unsigned char *to, const interleaved<4> &v) {
    const uint8x16x4_t channels = {
        {v.channel[0].v, v.channel[1].v, v.channel[2].v, v.channel[3].v}};
    vst4q_u8(to, channels);
}

// ---- One lane at a time ------------------------------------------------------------------------

template <int n>
LUMALANE_INLINE words<n> fill_words(int value);

template <>
LUMALANE_INLINE words<8> fill_words<8>(int value) {
    return {vdupq_n_s16(static_cast<short>(value))};
}

template <int n>
LUMALANE_INLINE words<n> fill_word_pairs(int even, int odd);

template <>
LUMALANE_INLINE words<8> fill_word_pairs<8>(int even, int odd) {
    return {vreinterpretq_s16_u32(vdupq_n_u32((even & 0xffff) | static_cast<unsigned>(odd) << 16))};
}

template <int n>
LUMALANE_INLINE bytes<n> fill_bytes(int value);

template <>
LUMALANE_INLINE bytes<16> fill_bytes<16>(int value) {
    return {vdupq_n_u8(static_cast<unsigned char>(value))};
}

LUMALANE_INLINE words<8> add(words<8> a, words<8> b) { return {vaddq_s16(a.v, b.v)}; }

LUMALANE_INLINE words<8> subtract(words<8> a, words<8> b) { return {vsubq_s16(a.v, b.v)}; }

LUMALANE_INLINE words<8> add_saturate(words<8> a, words<8> b) { return {vqaddq_s16(a.v, b.v)}; }

LUMALANE_INLINE words<8> add_saturate_unsigned(words<8> a, words<8> b) {
    return words_of(vqaddq_u16(unsigned_words(a), unsigned_words(b)));
}

LUMALANE_INLINE words<8> maximum(words<8> a, words<8> b) { return {vmaxq_s16(a.v, b.v)}; }

LUMALANE_INLINE words<8> minimum(words<8> a, words<8> b) { return {vminq_s16(a.v, b.v)}; }

LUMALANE_INLINE bytes<16> absolute_difference(bytes<16> a, bytes<16> b) {
    return {vabdq_u8(a.v, b.v)};
}

LUMALANE_INLINE words<8> multiply_low(words<8> a, words<8> b) { return {vmulq_s16(a.v, b.v)}; }

LUMALANE_INLINE words<8> multiply_high_doubled(words<8> a, words<8> b) {
    return {vqdmulhq_s16(a.v, b.v)};
}

LUMALANE_INLINE words<8> multiply_high_unsigned(words<8> a, words<8> b) {
    const uint16x8_t x = unsigned_words(a), y = unsigned_words(b);
    const uint32x4_t low = vmull_u16(vget_low_u16(x), vget_low_u16(y));
    return words_of(
        vuzp2q_u16(vreinterpretq_u16_u32(low), vreinterpretq_u16_u32(vmull_high_u16(x, y))));
}

LUMALANE_INLINE words<8> multiply_rounded(words<8> a, words<8> b) {
    return {vqrdmulhq_s16(a.v, b.v)};
}

template <int count>
LUMALANE_INLINE words<8> shift_left(words<8> a) {
    return {vshlq_n_s16(a.v, count)};
}

template <int count>
LUMALANE_INLINE words<8> shift_right_logical(words<8> a) {
    return words_of(vshrq_n_u16(unsigned_words(a), count));
}

template <int count>
LUMALANE_INLINE words<8> shift_right_arithmetic(words<8> a) {
    return {vshrq_n_s16(a.v, count)};
}

LUMALANE_INLINE bytes<16> operator&(bytes<16> a, bytes<16> b) { return {vandq_u8(a.v, b.v)}; }

LUMALANE_INLINE bytes<16> operator|(bytes<16> a, bytes<16> b) { return {vorrq_u8(a.v, b.v)}; }

template <int count>
LUMALANE_INLINE bytes<16> shift_left(bytes<16> a) {
    return {vshlq_n_u8(a.v, count)};
}

template <int count>
LUMALANE_INLINE bytes<16> shift_right_logical(bytes<16> a) {
    return {vshrq_n_u8(a.v, count)};
}

LUMALANE_INLINE words<8> operator&(words<8> a, words<8> b) { return {vandq_s16(a.v, b.v)}; }

LUMALANE_INLINE words<8> operator|(words<8> a, words<8> b) { return {vorrq_s16(a.v, b.v)}; }

LUMALANE_INLINE words<8> equal(words<8> a, words<8> b) { return words_of(vceqq_s16(a.v, b.v)); }

LUMALANE_INLINE bytes<16> equal(bytes<16> a, bytes<16> b) { return {vceqq_u8(a.v, b.v)}; }

LUMALANE_INLINE bytes<16> in_1_to_127(bytes<16> a) { return {vcgtzq_s8(vreinterpretq_s8_u8(a.v))}; }

LUMALANE_INLINE bytes<16> choose(bytes<16> where, bytes<16> chosen, bytes<16> otherwise) {
    return {vbslq_u8(where.v, chosen.v, otherwise.v)};
}

// Halves of a vector as one: the smaller or the larger of neighbouring lanes of 32 bits.
LUMALANE_INLINE bool all(bytes<16> where) {
    const uint32x4_t lanes = vreinterpretq_u32_u8(where.v);
    return vgetq_lane_u64(vreinterpretq_u64_u32(vpminq_u32(lanes, lanes)), 0) == ~0ull;
}

LUMALANE_INLINE bytes<16> choose_equal(bytes<16> a, bytes<16> b, bytes<16> chosen,
                                       bytes<16> otherwise) {
    return choose(equal(a, b), chosen, otherwise);
}

LUMALANE_INLINE bool all_zero(bytes<16> a) {
    const uint32x4_t lanes = vreinterpretq_u32_u8(a.v);
    return vgetq_lane_u64(vreinterpretq_u64_u32(vpmaxq_u32(lanes, lanes)), 0) == 0;
}

LUMALANE_INLINE bool all_zero(bytes<8> a) {
    return vgetq_lane_u64(vreinterpretq_u64_u8(a.v), 0) == 0;
}

LUMALANE_INLINE bytes<16> average(bytes<16> a, bytes<16> b) { return {vrhaddq_u8(a.v, b.v)}; }

LUMALANE_INLINE bytes<8> average(bytes<8> a, bytes<8> b) { return {vrhaddq_u8(a.v, b.v)}; }

// ---- Between bytes and words -------------------------------------------------------------------

LUMALANE_INLINE bytes<8> lower_half(bytes<16> a) { return {a.v}; }

LUMALANE_INLINE bytes<8> upper_half(bytes<16> a) { return {vextq_u8(a.v, a.v, 8)}; }

LUMALANE_INLINE bytes<16> lower_halves(bytes<16> a, bytes<16> b) {
    return {vcombine_u8(vget_low_u8(a.v), vget_low_u8(b.v))};
}

LUMALANE_INLINE bytes<4> lower_half(bytes<8> a) { return {a.v}; }

LUMALANE_INLINE bytes<16> extend(bytes<8> a) { return {a.v}; }

LUMALANE_INLINE words<8> as_words(bytes<16> a) { return {vreinterpretq_s16_u8(a.v)}; }

LUMALANE_INLINE bytes<16> as_bytes(words<8> a) { return {vreinterpretq_u8_s16(a.v)}; }

LUMALANE_INLINE words<8> widen(bytes<8> a) { return words_of(vmovl_u8(lower(a.v))); }

LUMALANE_INLINE words<8> widen_low(bytes<16> a) { return words_of(vmovl_u8(lower(a.v))); }

LUMALANE_INLINE words<8> widen_high(bytes<16> a) { return words_of(vmovl_high_u8(a.v)); }

LUMALANE_INLINE words<8> even(bytes<16> a) { return as_words(a) & fill_words<8>(0x00ff); }

LUMALANE_INLINE words<8> odd(bytes<16> a) { return shift_right_logical<8>(as_words(a)); }

template <int factor>
LUMALANE_INLINE words<8> even_times(bytes<16> a) {
    return shift_left<__builtin_ctz(factor)>(as_words(a)) & fill_words<8>(0xff * factor);
}

template <int factor>
LUMALANE_INLINE words<8> odd_times(bytes<16> a) {
    if constexpr (factor == 1)
        return odd(a);
    else
        return shift_right_logical<8 - __builtin_ctz(factor)>(as_words(a)) &
               fill_words<8>(0xff * factor);
}

template <int factor>
LUMALANE_INLINE words<8> pairs_times(bytes<16> a) {
    return shift_left<__builtin_ctz(factor)>(words_of(vpaddlq_u8(a.v)));
}

template <int factor>
LUMALANE_INLINE words<8> odd_and_even_times(bytes<16> of_odd, bytes<16> of_even) {
    const uint8x16_t odd = vreinterpretq_u8_u16(vdupq_n_u16(0xff00));
    return pairs_times<factor>(bytes<16>{vbslq_u8(odd, of_odd.v, of_even.v)});
}

LUMALANE_INLINE bytes<16> narrow_saturate(words<8> a, words<8> b) {
    return {vqmovun_high_s16(vqmovun_s16(a.v), b.v)};
}

LUMALANE_INLINE bytes<8> narrow_saturate(words<8> a) { return {extended(vqmovun_s16(a.v))}; }

LUMALANE_INLINE bytes<16> join(words<8> even, words<8> odd) {
    return {vtrn1q_u8(as_bytes(even).v, as_bytes(odd).v)};
}

LUMALANE_INLINE bytes<16> amplify(bytes<16> a, bytes<16> gain, words<8> offset) {
    const int16x8_t low = vreinterpretq_s16_u16(vmull_u8(lower(a.v), lower(gain.v)));
    const int16x8_t high = vreinterpretq_s16_u16(vmull_high_u8(a.v, gain.v));
    return {vqrshrun_high_n_s16(vqrshrun_n_s16(vqaddq_s16(low, offset.v), 6),
                                vqaddq_s16(high, offset.v), 6)};
}

template <int factor>
LUMALANE_INLINE words<8> weighted_low(bytes<16> a, bytes<16> b) {
    return words_of(vmulq_n_u16(vaddl_u8(lower(a.v), lower(b.v)), factor));
}

template <int factor>
LUMALANE_INLINE words<8> weighted_high(bytes<16> a, bytes<16> b) {
    return words_of(vmulq_n_u16(vaddl_high_u8(a.v, b.v), factor));
}

LUMALANE_INLINE bytes<16> groups_above(bytes<16> a, int limit) {
    const uint32x4_t sums = vpaddlq_u16(vpaddlq_u8(a.v));
    return {vreinterpretq_u8_u32(vcgtq_u32(sums, vdupq_n_u32(static_cast<unsigned>(limit))))};
}

LUMALANE_INLINE words<8> average_neighbours(bytes<16> a) {
    return words_of(vrshrq_n_u16(vpaddlq_u8(a.v), 1));
}

// The bytes of `a` in the order of `from`; 0 where that is more than 15.
LUMALANE_INLINE bytes<16> permute(bytes<16> a, uint8x16_t from) { return {vqtbl1q_u8(a.v, from)}; }

inline constexpr unsigned char none = 255;

// The lower and the upper half in turn, as even and odd pixels of a channel lie.
LUMALANE_INLINE bytes<16> in_memory_order(bytes<16> halves) {
    return permute(halves, uint8x16_t{0, 8, 1, 9, 2, 10, 3, 11, 4, 12, 5, 13, 6, 14, 7, 15});
}

LUMALANE_INLINE bytes<16> narrow_interleaved(words<8> a, words<8> b) {
    return in_memory_order(narrow_saturate(a, b));
}

LUMALANE_INLINE words<8> second_pairs(bytes<16> a) {
    return as_words(permute(
        a, uint8x16_t{2, none, 3, none, 6, none, 7, none, 10, none, 11, none, 14, none, 15, none}));
}

// The averages come in the lower half of each 32-bit lane.
LUMALANE_INLINE words<8> average_neighbour_pairs(bytes<16> a) {
    const bytes<16> swapped = {vreinterpretq_u8_u16(vrev32q_u16(vreinterpretq_u16_u8(a.v)))};
    return second_pairs(average(a, swapped));
}

// ---- Blending ----------------------------------------------------------------------------------

LUMALANE_INLINE sixteenths<16> blend(bytes<16> below, bytes<16> above, bytes<16> weight) {
    const uint8x16_t w = vminq_u8(weight.v, vdupq_n_u8(16)), rest = vsubq_u8(vdupq_n_u8(16), w);
    return {words_of(vmlal_u8(vmull_u8(lower(below.v), lower(rest)), lower(above.v), lower(w))),
            words_of(vmlal_high_u8(vmull_high_u8(below.v, rest), above.v, w))};
}

LUMALANE_INLINE sixteenths<8> blend(bytes<8> below, bytes<8> above, bytes<8> weight) {
    return {blend(extend(below), extend(above), extend(weight)).low};
}

// ---- Pixels ------------------------------------------------------------------------------------

template <int n>
LUMALANE_INLINE bytes<n> load_even(const unsigned char *from) {
    if constexpr (n == 8)
        return {extended(vld2_u8(from).val[0])};
    else
        return {vld2q_u8(from).val[0]};
}

template <int n>
LUMALANE_INLINE bytes<n> load_odd(const unsigned char *from) {
    if constexpr (n == 8)
        return {extended(vld2_u8(from).val[1])};
    else
        return {vld2q_u8(from).val[1]};
}

template <int n>
LUMALANE_INLINE bytes<n> load_averages(const unsigned char *from) {
    return average(load_even<n>(from), load_odd<n>(from));
}

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
    return {vzip1q_u8(load<n / 2>(u).v, load<n / 2>(v).v)};
}

inline constexpr pairs packed_order = pairs::in_order;

template <int count, int n>
LUMALANE_INLINE packed_pixels<n> load_packed(const unsigned char *from) {
    // At any address.
    const uint16x8x2_t pixels = vld2q_u16(reinterpret_cast<const uint16_t *>(from));
    return {{vreinterpretq_u8_u16(pixels.val[0])}, {vreinterpretq_u8_u16(pixels.val[1])}};
}

template <pairs = pairs::in_order>
LUMALANE_INLINE interleaved<2> interleave_channels(bytes<16> first, bytes<16> second) {
    return {{in_memory_order(first), in_memory_order(second)}};
}

template <pairs = pairs::in_order>
LUMALANE_INLINE interleaved<3> interleave_channels(bytes<16> first, bytes<16> second,
                                                   bytes<16> third) {
    return {{in_memory_order(first), in_memory_order(second), in_memory_order(third)}};
}

template <pairs = pairs::in_order>
LUMALANE_INLINE interleaved<4> interleave_channels_padded(bytes<16> first, bytes<16> second,
                                                          bytes<16> third) {
    return {{in_memory_order(first), in_memory_order(second), in_memory_order(third),
             fill_bytes<16>(0)}};
}

LUMALANE_INLINE interleaved<2> interleave(bytes<16> first, bytes<16> second) {
    return {{first, second}};
}

LUMALANE_INLINE bytes<16> interleave_lower(bytes<8> first, bytes<8> second) {
    return {vzip1q_u8(first.v, second.v)};
}

LUMALANE_INLINE bytes<8> interleave_lower(bytes<4> first, bytes<4> second) {
    return {vzip1q_u8(first.v, second.v)};
}

LUMALANE_INLINE vectors<2, 16> interleave_pairs(bytes<16> first, bytes<16> second) {
    const uint16x8_t a = vreinterpretq_u16_u8(first.v), b = vreinterpretq_u16_u8(second.v);
    return {{{vreinterpretq_u8_u16(vzip1q_u16(a, b))}, {vreinterpretq_u8_u16(vzip2q_u16(a, b))}}};
}

LUMALANE_INLINE bytes<16> next_lanes(bytes<16> a) {
    return permute(a, uint8x16_t{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 15});
}

LUMALANE_INLINE bytes<8> next_lanes(bytes<8> a) {
    return lower_half(
        permute(extend(a), uint8x16_t{1, 2, 3, 4, 5, 6, 7, 7, 7, 7, 7, 7, 7, 7, 7, 7}));
}

LUMALANE_INLINE void store_after_8(unsigned char *to, const vectors<2, 16> &parts) {
    store(to + 8, upper_half(parts.part[0]));
    store(to + 16, parts.part[1]);
}

// One of the channels of n pixels.
template <int size, int channel, int n>
LUMALANE_INLINE bytes<n> load_channel(const unsigned char *from) {
    if constexpr (size == 4 && n == 8)
        return {extended(vld4_u8(from).val[channel])};
    else if constexpr (size == 4)
        return {vld4q_u8(from).val[channel]};
    else if constexpr (n == 8)
        return {extended(vld3_u8(from).val[channel])};
    else
        return {vld3q_u8(from).val[channel]};
}

template <int size, int n>
LUMALANE_INLINE interleaved<size> load_spread(const unsigned char *from) {
    interleaved<size> r;
    r.channel[0] = load<n>(from);
    for (int i = 1; i < size; ++i)
        r.channel[i] = fill_bytes<16>(0);
    return r;
}

// ---- Half-interleaved pixels -------------------------------------------------------------------

LUMALANE_INLINE words<8> even_pairs_of_words(words<8> a, words<8> b) {
    return {
        vreinterpretq_s16_s32(vuzp1q_s32(vreinterpretq_s32_s16(a.v), vreinterpretq_s32_s16(b.v)))};
}

template <int lower, int upper>
LUMALANE_INLINE words<8> multiply_bytes(words<8> a) {
    return {vmlaq_n_s16(vmulq_n_s16(even(as_bytes(a)).v, lower), odd(as_bytes(a)).v, upper)};
}

LUMALANE_INLINE words<8> half_interleave(words<8> a) {
    return as_words(
        permute(as_bytes(a), uint8x16_t{0, 1, 8, 9, 2, 3, 10, 11, 4, 5, 12, 13, 6, 7, 14, 15}));
}

template <int size, int n>
LUMALANE_INLINE half_interleaved<n> load_half_interleaved(const unsigned char *from) {
    if constexpr (size == 4) {
        const packed_pixels<16> pixels = load_packed<1, 16>(from);
        return {half_interleave(as_words(pixels.even)), half_interleave(as_words(pixels.odd))};
    } else {
        const uint8x8x3_t pixels = vld3_u8(from);
        const uint8x16_t bg = vzip1q_u8(extended(pixels.val[0]), extended(pixels.val[1]));
        return {half_interleave(as_words({bg})),
                as_words(permute({extended(pixels.val[2])},
                                 uint8x16_t{none, 0, none, 4, none, 1, none, 5, none, 2, none, 6,
                                            none, 3, none, 7}))};
    }
}

LUMALANE_INLINE halves<8> deinterleave_upper_bytes_of_even(words<8> a, words<8> b) {
    const uint8x16_t from = {1, 5, 3, 7, 9, 13, 11, 15, 1, 5, 3, 7, 9, 13, 11, 15};
    return {lower_half(permute(as_bytes(a), from)), lower_half(permute(as_bytes(b), from))};
}

LUMALANE_INLINE bytes<16> deinterleave_upper_bytes(words<8> a, words<8> b) {
    return {vqtbl2q_u8({{as_bytes(a).v, as_bytes(b).v}},
                       uint8x16_t{1, 5, 9, 13, 3, 7, 11, 15, 17, 21, 25, 29, 19, 23, 27, 31})};
}

} // namespace lumalane::LUMALANE_TARGET_NAME
