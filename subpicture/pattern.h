// Bytes that repeat along a row.
#pragma once

#include "frame/walks.h"

namespace lumalane::LUMALANE_LANES {

// 24 bytes, whole pixels of 2, 3 and 4 bytes, repeated to whole vectors.
struct pattern {
    unsigned char byte[3 * widest];

    // Three words of 8 bytes, their lowest bytes first.
    pattern(unsigned long long first, unsigned long long second, unsigned long long third) {
        const unsigned long long words[] = {first, second, third};
        for (int i = 0; i < 3 * widest; i += 8)
            __builtin_memcpy(byte + i, &words[i / 8 % 3], 8);
    }

    // Pixels of `size` bytes.
    template <int size>
    static pattern of_pixels(unsigned pixel) {
        if constexpr (size == 3) {
            const unsigned long long p = pixel & 0xffffff;
            return {p | p << 24 | p << 48, p >> 16 | p << 8 | p << 32 | p << 56,
                    p >> 8 | p << 16 | p << 40};
        } else {
            const unsigned long long word =
                size == 4 ? pixel * 0x1'0000'0001ull : (pixel & 0xffff) * 0x0001'0001'0001'0001ull;
            return {word, word, word};
        }
    }

    // The first `count` vectors of n bytes, over and over.
    template <int count, int n>
    LUMALANE_INLINE woven<count, n> first() const {
        woven<count, n> vectors;
        for (int i = 0; i < count; ++i)
            vectors.part[i] = load<n>(byte + i * n % sizeof byte);
        return vectors;
    }
};

} // namespace lumalane::LUMALANE_LANES
