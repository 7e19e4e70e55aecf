// Bytes that repeat along a row.
#pragma once

#include "rows/rows.h"

namespace lumalane {

// Three words of 8 bytes, their lowest bytes first, over and over.
inline pattern pattern_of_words(unsigned long long first, unsigned long long second,
                                unsigned long long third) {
    const unsigned long long words[] = {first, second, third};
    pattern made;
    for (unsigned i = 0; i < sizeof made.byte; i += sizeof words)
        __builtin_memcpy(made.byte + i, words, sizeof words);
    return made;
}

inline pattern pattern_of_pixels(int bytes_per_pixel, unsigned pixel) {
    if (bytes_per_pixel == 3) {
        const unsigned long long p = pixel & 0xffffff;
        return pattern_of_words(p | p << 24 | p << 48, p >> 16 | p << 8 | p << 32 | p << 56,
                                p >> 8 | p << 16 | p << 40);
    }
    const unsigned long long word = bytes_per_pixel == 4
                                        ? pixel * 0x1'0000'0001ull
                                        : (pixel & 0xffff) * 0x0001'0001'0001'0001ull;
    return pattern_of_words(word, word, word);
}

} // namespace lumalane
