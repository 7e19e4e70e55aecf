// Pairs of rows on their way to a YUY2 surface of twice the height, or of twice both.
#pragma once

#include "picture/machine.h"
#include "stretch/pair_rows.h"

namespace lumalane {

class doubled_pairs {
public:
    // `lower_has_own_chroma`: of a lower row and what lies below it only the latter has the average of
    // both rows of chroma.
    doubled_pairs(row_kernel::doubled_to_surface *emit_, ptrdiff_t dst_pitch_,
                  bool lower_has_own_chroma, store_policy stores)
        : emit_rows(emit_), dst_pitch(dst_pitch_) {
        rows.stores = stores, rows.lower_has_own_chroma = lower_has_own_chroma;
    }

    // How many pairs of such rows come at a time: their source stays in the first-level cache.
    static constexpr ptrdiff_t most(ptrdiff_t pixels) { return pixels < 8192 ? 8192 / pixels : 1; }

    // n pixels of so many pairs. `at_end`: of the row; `last`: nothing lies below the last pair.
    void emit(unsigned char *dst, const pair_rows &at, ptrdiff_t pairs, ptrdiff_t n, bool at_end,
              bool last) {
        rows.y = at.y, rows.u = at.u, rows.v = at.v, rows.dst = dst;
        rows.y_below = at.y_below, rows.chroma_below = at.chroma_below, rows.dst_below = dst_pitch;
        rows.y_next = at.y_next, rows.chroma_next = at.chroma_next, rows.dst_next = 4 * dst_pitch;
        rows.made = pair_made::all, rows.repeats_last = at_end;
        const ptrdiff_t with_below = last ? pairs - 1 : pairs;
        emit(with_below, n);
        if (!last)
            return;
        // The upper row, what lies between it and the lower one, and that one twice.
        const pair_rows end = at.after(with_below, 0);
        rows.y = end.y, rows.u = end.u, rows.v = end.v, rows.dst += with_below * rows.dst_next;
        rows.chroma_below = 0, rows.made = pair_made::row;
        emit(1, n);
        rows.dst += dst_pitch, rows.made = pair_made::between;
        emit(1, n);
        rows.y += at.y_to_lower, rows.dst += dst_pitch, rows.made = pair_made::row;
        rows.y_next = 0, rows.chroma_next = 0, rows.dst_next = dst_pitch;
        emit(2, n);
    }

private:
    void emit(ptrdiff_t count, ptrdiff_t n) {
        rows.count = count;
        if (count > 0)
            emit_rows(rows, n);
    }

    row_kernel::doubled_to_surface *const emit_rows;
    const ptrdiff_t dst_pitch;
    doubled_rows rows{};
};

} // namespace lumalane
