// Pairs of rows on their way to a YUY2 surface of twice the height, or of twice both.
#pragma once

#include "picture/machine.h"
#include "stretch/pair_rows.h"

namespace lumalane {

// Where rows of samples are to be made.
struct sample_rows {
    unsigned char *y, *uv; // luma, and pairs of U and V
    ptrdiff_t pitch;
    ptrdiff_t first_y, first_uv; // the number of the first row, counted from the first pair on
    ptrdiff_t y_count, uv_count; // rows
    ptrdiff_t pixels;            // of a row
};

// Samples of some pairs at a time, and of the row below the last one, on the stack.
class pairs_of_samples {
public:
    static constexpr ptrdiff_t most_pixels = 1920;
    // Of a run that others follow: one sample more is needed, and kernels take 16.
    static constexpr ptrdiff_t following = 16;

    // Rows of so many pixels come, a multiple of 16, from the first pair on. `at_end`: the row ends
    // there.
    void begin(ptrdiff_t pixels_, bool at_end_) {
        pixels = pixels_, at_end = at_end_, before = 0;
        most_pairs = (static_cast<ptrdiff_t>(sizeof(samples)) / pitch() - 2) / 3;
    }

    // How many pairs there is room for.
    ptrdiff_t most() const { return most_pairs; }

    // The next pairs, made by `make(rows)`. `last`: nothing lies below them.
    template <class Make>
    pair_rows take(ptrdiff_t pairs, bool last, const Make &make, const row_kernels &kernels) {
        unsigned char *const y = samples, *const uv = y + (2 * most_pairs + 1) * pitch();
        const ptrdiff_t held = before != 0 ? 1 : 0, uv_rows = pairs + (last ? 0 : 1);
        if (held != 0) {
            kernels.emit_plane({y + 2 * before * pitch(), y}, pitch());
            kernels.emit_plane({uv + before * pitch(), uv}, pitch());
        }
        make(sample_rows{y + held * pitch(), uv + held * pitch(), pitch(), held, held,
                         pairs + uv_rows - held, uv_rows - held,
                         at_end ? pixels : pixels + following});
        // Of chroma kernels read one pair more at the end as well.
        for (ptrdiff_t i = held; at_end && i < uv_rows; ++i) {
            unsigned char *const end = uv + i * pitch() + pixels;
            end[0] = end[-2], end[1] = end[-1];
        }
        before = pairs;
        return {y, uv, uv, pitch(), pitch(), pitch(), 2 * pitch(), pitch()};
    }

private:
    ptrdiff_t pitch() const { return pixels + following; }

    ptrdiff_t pixels = 0, before = 0, most_pairs = 0;
    bool at_end = false;
    alignas(64) unsigned char samples[5 * (most_pixels + following)];
};

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
