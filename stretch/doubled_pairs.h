// Pairs of rows on their way to a YUY2 surface of twice the height, or of twice both.
#pragma once

#include "picture/stores.h"
#include "stretch/pair_rows.h"

namespace lumalane {

class doubled_pairs {
public:
    // `lower_has_own_chroma`: of a lower row and what lies below it only the latter has the average of
    // both rows of chroma.
    doubled_pairs(const row_kernels &kernels, int times_width, ptrdiff_t dst_pitch_,
                  bool lower_has_own_chroma, store_policy stores)
        : emit_rows(times_width == 2 ? kernels.emit_doubled_yuy2
                                     : kernels.emit_yuy2_of_double_height),
          dst_pitch(dst_pitch_), in_turn(!is_non_temporal(stores) ||
                                         streamed(kernels, times_width) == rows_stored::in_turn) {
        rows.stores = stores, rows.lower_has_own_chroma = lower_has_own_chroma;
    }

    // How rows are stored around the cache: in turn where vectors fill whole lines of it.
    static rows_stored streamed(const row_kernels &kernels, int times_width) {
        return 2 * times_width * kernels.vector_bytes >= cache_line ? rows_stored::in_turn
                                                                    : rows_stored::one_by_one;
    }

    // How many pairs of such rows come at a time: their source stays in the first-level cache.
    static constexpr ptrdiff_t most(ptrdiff_t pixels) { return pixels < 8192 ? 8192 / pixels : 1; }

    // n pixels of so many pairs. `repeats_last`: luma has nothing after them; `last`: nothing lies below the
    // last pair.
    void emit(unsigned char *dst, const pair_rows &at, ptrdiff_t pairs, ptrdiff_t n,
              bool repeats_last, bool last) {
        rows.y_below = at.y_below, rows.dst_below = dst_pitch, rows.repeats_last = repeats_last;
        rows.y_next = at.y_next, rows.chroma_next = at.chroma_next, rows.dst_next = 4 * dst_pitch;
        const ptrdiff_t with_below = last ? pairs - 1 : pairs;
        if (in_turn) {
            emit(dst, at, 0, pair_made::all, at.chroma_below, with_below, n);
        } else {
            const ptrdiff_t of_lower = rows.lower_has_own_chroma ? 0 : at.chroma_below;
            emit(dst, at, 0, pair_made::row, 0, with_below, n);
            emit(dst + dst_pitch, at, 0, pair_made::between, 0, with_below, n);
            emit(dst + 2 * dst_pitch, at, at.y_to_lower, pair_made::row, of_lower, with_below, n);
            emit(dst + 3 * dst_pitch, at, at.y_to_lower, pair_made::between, at.chroma_below,
                 with_below, n);
        }
        if (!last)
            return;
        // The upper row, what lies between it and the lower one, and that one twice.
        const pair_rows end = at.after(with_below, 0);
        dst += 4 * with_below * dst_pitch;
        emit(dst, end, 0, pair_made::row, 0, 1, n);
        emit(dst + dst_pitch, end, 0, pair_made::between, 0, 1, n);
        rows.y_next = 0, rows.chroma_next = 0, rows.dst_next = dst_pitch;
        emit(dst + 2 * dst_pitch, end, end.y_to_lower, pair_made::row, 0, 2, n);
    }

private:
    void emit(unsigned char *dst, const pair_rows &at, ptrdiff_t y_offset, pair_made made,
              ptrdiff_t chroma_below, ptrdiff_t count, ptrdiff_t n) {
        rows.y = at.y + y_offset, rows.u = at.u, rows.v = at.v, rows.dst = dst;
        rows.made = made, rows.chroma_below = chroma_below, rows.count = count;
        if (count > 0)
            emit_rows(rows, n);
    }

    row_kernel::doubled_to_surface *const emit_rows;
    const ptrdiff_t dst_pitch;
    const bool in_turn;
    doubled_rows rows{};
};

} // namespace lumalane
