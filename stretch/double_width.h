// Twice the width: each sample, and after it the average of it and the next one.
#pragma once

#include "frame/walks.h"

namespace lumalane::LUMALANE_LANES {

// n samples twice as wide.
template <int n>
using doubled = woven<2, n>;

template <int count, int n>
LUMALANE_INLINE woven<count, n> average(woven<count, n> a, const woven<count, n> &b) {
    for (int i = 0; i < count; ++i)
        a.part[i] = average(a.part[i], b.part[i]);
    return a;
}

// Dealt for so many parts on the surface; one sample more than n is read.
template <int parts, int n>
LUMALANE_INLINE doubled<n> double_samples(const unsigned char *from) {
    const bytes<n> own = deal_pixels<parts, n>(from);
    return interleave(own, average(own, deal_pixels<parts, n>(from + 1)));
}

// ---- Lines -------------------------------------------------------------------------------------
//
// A line holds a part of a row, and after it what follows there. At the right edge the last
// samples, so many as go by themselves, stand once more for what would follow.

inline constexpr int line_columns = 1024;
inline constexpr int after_line = 16;
inline constexpr int line_room = line_columns + after_line;

// `load(x)` loads n samples of the row from x on; `count` is a multiple of 16. Returns the line.
template <int period, class Load>
LUMALANE_INLINE unsigned char *fill_line(unsigned char *line, int count, bool at_edge, Load load) {
    const int filled = at_edge ? count : count + after_line;
    along_row(filled, [&](auto n, ptrdiff_t x) LUMALANE_INLINE_LAMBDA {
        store(line + x, load.template operator()<n.count>(x));
    });
    if (at_edge)
        for (int i = count; i < count + period; ++i)
            line[i] = line[i - period];
    return line;
}

template <class T>
LUMALANE_INLINE void exchange(T &a, T &b) {
    const T old_a = a;
    a = b;
    b = old_a;
}

} // namespace lumalane::LUMALANE_LANES
