// Rows through samples on the stack, on their way to a YUY2 surface of twice both.
#pragma once

#include "stretch/doubled_pairs.h"
#include "stretch/pairs_of_samples.h"

namespace lumalane {

// `make(to, pair, count, x, n)` makes the samples of so many pairs, n pixels from x on. `luma`: that of
// all pairs, where it is not made.
template <class Make>
inline void double_by_samples(const row_kernels &kernels, doubled_pairs doubled, unsigned char *dst,
                              ptrdiff_t dst_pitch, ptrdiff_t pixels, ptrdiff_t pairs,
                              const pair_rows *luma, const Make &make) {
    pairs_of_samples samples(kernels);
    samples.in_pieces(
        pixels, pairs, PTRDIFF_MAX, [&](ptrdiff_t pair, ptrdiff_t count, ptrdiff_t x, ptrdiff_t n) {
            const bool last = pair + count == pairs, at_end = x + n == pixels;
            const ptrdiff_t read = at_end ? n : n + pairs_of_samples::following;
            pair_rows at = samples.take(count, last, [&](const sample_rows &to) {
                make(to, pair, count, x, read);
                if (!at_end)
                    return;
                // Kernels that double the width read one sample and one pair of U and V more.
                for (ptrdiff_t i = 0; i < to.chroma_count; ++i)
                    repeat_last_pair(to.chroma + i * to.pitch + n);
                if (!luma)
                    for (ptrdiff_t i = 0; i < to.y_count; ++i)
                        to.y[i * to.pitch + n] = to.y[i * to.pitch + n - 1];
            });
            if (luma) {
                const pair_rows from = luma->after(pair, x);
                at.y = from.y, at.y_below = from.y_below, at.y_to_lower = from.y_to_lower;
                at.y_next = from.y_next;
            }
            doubled.emit(dst + 4 * (pair * dst_pitch + x), at, count, n, at_end && luma, last);
        });
}

} // namespace lumalane
