// Rows of the same width, made between source rows, on their way to a YUY2 surface of twice the
// height.
#pragma once

#include "picture/machine.h"
#include "picture/strip.h"
#include "stretch/recent_rows.h"

namespace lumalane {

// How a row comes about that lies between a row and the row below it.
struct way_between {
    row_kernel::between_rows *make; // null: it is the row itself
    bool averages_ends = false;     // the first and the last 16 pixels are averages
};

// Where source rows are: pointers into the planes, and the distances to the rows below.
struct source_rows {
    const unsigned char *y, *u, *v;
    ptrdiff_t y_below, chroma_below;
};

class rows_to_yuy2 {
public:
    // `pixels` of a row, which is done in runs of `run` at most; `by` is null for no adjustment.
    rows_to_yuy2(const row_kernels &kernels_, const adjustment *by, ptrdiff_t pixels_,
                 ptrdiff_t run_, store_policy stores)
        : kernels(kernels_), pixels(pixels_), run(run_) {
        rows.by = by, rows.stores = stores;
    }

    // One row.
    void row(unsigned char *dst, const source_rows &at, const way_between &luma,
             const way_between &chroma) {
        rows.lower = lower_row::none;
        in_runs(pixels, run, [&](ptrdiff_t x, ptrdiff_t n) {
            begin(dst, at, chroma, x, n);
            if (luma.make) {
                make(luma, strip.y[0], rows.y, at.y_below, x, n, step);
                rows.y = strip.y[0];
            }
            kernels.emit_yuy2(rows, n);
        });
    }

    // A row of luma as it is, and `dst_below` what is between it and the row below; they have the
    // same chroma.
    void pair(unsigned char *dst, ptrdiff_t dst_below, const source_rows &at,
              const way_between &luma, const way_between &chroma) {
        const bool averages = luma.make == kernels.average_rows;
        rows.lower = averages ? lower_row::average : lower_row::itself;
        rows.y_below = averages ? at.y_below : 0;
        rows.dst_below = dst_below;
        in_runs(pixels, run, [&](ptrdiff_t x, ptrdiff_t n) {
            begin(dst, at, chroma, x, n);
            if (luma.make && !averages) {
                make(luma, strip.y[0], rows.y, at.y_below, x, n, step);
                rows.y_below = distance(rows.y, strip.y[0]);
            }
            kernels.emit_yuy2(rows, n);
        });
    }

    static constexpr int step = 16;

private:
    void begin(unsigned char *dst, const source_rows &at, const way_between &chroma, ptrdiff_t x,
               ptrdiff_t n) {
        rows.y = at.y + x, rows.u = at.u + x / 2, rows.v = at.v + x / 2, rows.dst = dst + 2 * x;
        if (chroma.make) {
            make(chroma, strip.u, rows.u, at.chroma_below, x, n, step / 2);
            make(chroma, strip.v, rows.v, at.chroma_below, x, n, step / 2);
            rows.u = strip.u, rows.v = strip.v;
        }
    }

    // Of the pixels from x on; `samples` of the plane are a step.
    void make(const way_between &way, unsigned char *to, const unsigned char *from, ptrdiff_t below,
              ptrdiff_t x, ptrdiff_t n, ptrdiff_t samples) const {
        const ptrdiff_t end = n / (step / samples);
        if (!way.averages_ends)
            return way.make(to, from, below, end);
        const ptrdiff_t left = x == 0 ? samples : 0, right = x + n == pixels ? samples : 0;
        if (left != 0)
            kernels.average_rows(to, from, below, left);
        way.make(to + left, from + left, below, end - left - right);
        if (right != 0)
            kernels.average_rows(to + end - right, from + end - right, below, right);
    }

    const row_kernels &kernels;
    const ptrdiff_t pixels, run;
    planar_rows rows{};
    planar_strip strip;
};

} // namespace lumalane
