// Which bytes a call reads and writes, row by row, and whether the order of its stores can be
// observed from them.
#pragma once

#include <stddef.h>
#include <stdint.h>

namespace lumalane {

// ---- 32-bit arithmetic, which wraps ------------------------------------------------------------

constexpr int difference(unsigned a, unsigned b) { return static_cast<int>(a - b); }

constexpr int product(unsigned a, unsigned b) { return static_cast<int>(a * b); }

constexpr int twice(unsigned a) { return static_cast<int>(2 * a); }

// ---- Steps -------------------------------------------------------------------------------------

// How many steps a loop takes that counts `count` down and tests after each step: at least one.
// Counts are unsigned: a negative one means more than there is memory.
constexpr long long steps_of(int count, unsigned step) {
    const unsigned left = static_cast<unsigned>(count);
    return left == 0 ? 1 : (left - 1) / step + 1LL;
}

// The pixels of a row in whole steps, at least one.
constexpr ptrdiff_t whole_steps(int width, unsigned step) {
    return static_cast<ptrdiff_t>(steps_of(width, step) * step);
}

// ---- Rows --------------------------------------------------------------------------------------

// `count` rows of `bytes` bytes each, `pitch` bytes apart.
struct byte_rows {
    const unsigned char *first;
    long long count, pitch, bytes;
};

// Rows of both have no byte in common: also known where rows of one lie between rows of the other.
bool apart(const byte_rows &a, const byte_rows &b);

// Rows have no byte in common with one another.
bool rows_apart(const byte_rows &rows);

// The one decision about the order of stores. It can be observed where two written rows overlap (the
// later store stays), or where a row that is read overlaps a written one (a load finds what was
// stored before it).
template <int writes>
bool order_can_be_observed(const byte_rows (&written)[writes]) {
    for (int i = 0; i < writes; ++i) {
        if (!rows_apart(written[i]))
            return true;
        for (int j = i + 1; j < writes; ++j)
            if (!apart(written[i], written[j]))
                return true;
    }
    return false;
}

template <int writes, int reads>
bool order_can_be_observed(const byte_rows (&written)[writes], const byte_rows (&read)[reads]) {
    for (const byte_rows &w : written)
        for (const byte_rows &r : read)
            if (!apart(w, r))
                return true;
    return order_can_be_observed(written);
}

} // namespace lumalane
