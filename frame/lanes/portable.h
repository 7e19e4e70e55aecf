// Lanes in plain C++: the definition of every operation, and the set that runs anywhere.
//
// bytes<n> are n unsigned 8-bit lanes, words<n> are n signed 16-bit lanes; lane 0 is the first in
// memory. Operations that move lanes work within blocks of 16 bytes (8 words), as the wide
// registers of x86 do; a vector of 16 bytes or fewer is one block.
#pragma once

// Left to the compiler here: loops over lanes all pulled into one function take it minutes.
#undef LUMALANE_INLINE
#define LUMALANE_INLINE inline

namespace lumalane::LUMALANE_LANES {

template <int n>
struct bytes {
    unsigned char lane[n];
};

template <int n>
struct words {
    short lane[n];
};

// Lanes of the widest bytes<> that the set works with: the pixels of one step of a wide walk.
inline constexpr int widest = 16;

// ---- Memory ------------------------------------------------------------------------------------

template <int n>
LUMALANE_INLINE bytes<n> load(const unsigned char *from) {
    bytes<n> r;
    for (int i = 0; i < n; ++i)
        r.lane[i] = from[i];
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

// The lower and the upper half of the signed 32-bit product.
template <int n>
LUMALANE_INLINE words<n> multiply_low(words<n> a, words<n> b) {
    return each(a, b, [](int x, int y) { return x * y; });
}

template <int n>
LUMALANE_INLINE words<n> multiply_high(words<n> a, words<n> b) {
    return each(a, b, [](int x, int y) { return (x * y) >> 16; });
}

template <int count, int n>
LUMALANE_INLINE words<n> shift_left(words<n> a) {
    return each(a, a,
                [](int x, int) { return static_cast<int>(static_cast<unsigned>(x) << count); });
}

// Zeros come in from the left.
template <int count, int n>
LUMALANE_INLINE words<n> shift_right_logical(words<n> a) {
    return each(a, a, [](int x, int) { return (x & 0xffff) >> count; });
}

// Bits do not pass from one byte to the next.
template <int count, int n>
LUMALANE_INLINE bytes<n> shift_left(bytes<n> a) {
    return each(a, a, [](int x, int) { return x << count; });
}

template <int count, int n>
LUMALANE_INLINE bytes<n> shift_right_logical(bytes<n> a) {
    return each(a, a, [](int x, int) { return x >> count; });
}

template <int n>
LUMALANE_INLINE bytes<n> operator&(bytes<n> a, bytes<n> b) {
    return each(a, b, [](int x, int y) { return x & y; });
}

template <int n>
LUMALANE_INLINE bytes<n> operator|(bytes<n> a, bytes<n> b) {
    return each(a, b, [](int x, int y) { return x | y; });
}

// ---- Between bytes and words -------------------------------------------------------------------

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

// The same lanes times 4.
template <int n>
LUMALANE_INLINE words<n / 2> even_times_4(bytes<n> a) {
    return shift_left<2>(even(a));
}

template <int n>
LUMALANE_INLINE words<n / 2> odd_times_4(bytes<n> a) {
    return shift_left<2>(odd(a));
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

// Clamped to 0..255, in order.
template <int n>
LUMALANE_INLINE bytes<n> narrow_saturate(words<n> a) {
    bytes<n> r;
    for (int i = 0; i < n; ++i)
        r.lane[i] = static_cast<unsigned char>(clamp(a.lane[i], 0, 255));
    return r;
}

// ---- Pixels ------------------------------------------------------------------------------------
//
// A sink weaves the channels of a group of n pixels into vectors of n bytes in memory order. What
// it is given is split: in every block of 16 pixels the 8 even ones, then the 8 odd ones, as
// narrow_saturate(even, odd) leaves them.

template <int count, int n>
struct woven {
    bytes<n> part[count];
};

// Where the pixel of a split lane lies in its block of 16.
LUMALANE_INLINE constexpr int pixel_of_split_lane(int lane) { return lane % 8 * 2 + lane / 8; }

// In the plain order of memory, dealing is the identity for vectors of one block; wider vectors
// deal the pixels of a group out so that parts woven within blocks leave in memory order:
// `quarters` for 4 parts, `halves` for 2, `whole` as it is. Groups of pixels: 4 or 8 bytes, 2 or 4
// chroma words.
enum class deal { whole, halves, quarters };

template <deal by, int n>
LUMALANE_INLINE bytes<n> dealt(bytes<n> a) {
    constexpr int blocks = n / 16, hands = by == deal::quarters ? 4 : 2, group = 16 / hands;
    if constexpr (by == deal::whole || blocks < 2) {
        return a;
    } else {
        bytes<n> r;
        for (int i = 0; i < n; ++i) {
            const int block = i / 16, hand = i % 16 / group;
            r.lane[i] = a.lane[(hand * blocks + block) * group + i % group];
        }
        return r;
    }
}

template <deal by, int n>
LUMALANE_INLINE words<n> dealt(words<n> a) {
    constexpr int blocks = n / 8, hands = by == deal::quarters ? 4 : 2, group = 8 / hands;
    if constexpr (by == deal::whole || blocks < 2) {
        return a;
    } else {
        words<n> r;
        for (int i = 0; i < n; ++i) {
            const int block = i / 8, hand = i % 8 / group;
            r.lane[i] = a.lane[(hand * blocks + block) * group + i % group];
        }
        return r;
    }
}

// 2 bytes per pixel: first, second. Part p holds hand p of every block (see deal).
template <int n>
LUMALANE_INLINE woven<2, n> weave(bytes<n> first, bytes<n> second) {
    woven<2, n> r;
    for (int i = 0; i < n; ++i) {
        const int block = i / 16 * 16, pixel = pixel_of_split_lane(i % 16);
        const int at = block + pixel % 8 * 2;
        r.part[pixel / 8].lane[at] = first.lane[i];
        r.part[pixel / 8].lane[at + 1] = second.lane[i];
    }
    return r;
}

// 4 bytes per pixel: first, second, third, 0. Part p holds hand p of every block.
template <int n>
LUMALANE_INLINE woven<4, n> weave_padded(bytes<n> first, bytes<n> second, bytes<n> third) {
    woven<4, n> r;
    for (int i = 0; i < n; ++i) {
        const int block = i / 16 * 16, pixel = pixel_of_split_lane(i % 16);
        unsigned char *at = r.part[pixel / 4].lane + block + pixel % 4 * 4;
        at[0] = first.lane[i];
        at[1] = second.lane[i];
        at[2] = third.lane[i];
        at[3] = 0;
    }
    return r;
}

// 3 bytes per pixel: first, second, third. The parts are in memory order for pixels dealt whole.
template <int n>
LUMALANE_INLINE woven<3, n> weave(bytes<n> first, bytes<n> second, bytes<n> third) {
    woven<3, n> r;
    for (int i = 0; i < n; ++i) {
        const int pixel = i / 16 * 16 + pixel_of_split_lane(i % 16);
        const unsigned char channel[] = {first.lane[i], second.lane[i], third.lane[i]};
        for (int c = 0; c < 3; ++c) {
            const int at = 3 * pixel + c;
            r.part[at / n].lane[at % n] = channel[c];
        }
    }
    return r;
}

} // namespace lumalane::LUMALANE_LANES
