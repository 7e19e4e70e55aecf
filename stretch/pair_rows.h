// Pairs of rows on their way to a surface of twice the height: where they are.
#pragma once

#include <stddef.h>
#include <stdint.h>

namespace lumalane {

// Between rows that need not be of one buffer.
inline ptrdiff_t distance(const unsigned char *from, const unsigned char *to) {
    return static_cast<ptrdiff_t>(reinterpret_cast<uintptr_t>(to) -
                                  reinterpret_cast<uintptr_t>(from));
}

// Pairs of rows that have a row of chroma in common, and the rows below them.
struct pair_rows {
    const unsigned char *y, *u, *v;  // of an upper row
    ptrdiff_t y_below, chroma_below; // from a row to the one that is read below it
    ptrdiff_t y_to_lower;            // from an upper row to the lower one
    ptrdiff_t y_next, chroma_next;   // from pair to pair

    // The row below is the next row, for every row.
    bool contiguous() const {
        return y_below == y_to_lower && y_next == 2 * y_below && chroma_below == chroma_next;
    }

    pair_rows after(long long pairs, ptrdiff_t pixels) const {
        pair_rows r = *this;
        const ptrdiff_t count = static_cast<ptrdiff_t>(pairs);
        r.y += count * y_next + pixels;
        r.u += count * chroma_next + pixels / 2, r.v += count * chroma_next + pixels / 2;
        return r;
    }
};

} // namespace lumalane
