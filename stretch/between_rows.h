// Rows of the same width, made between source rows, on their way to a surface of twice the height.
#pragma once

#include "picture/machine.h"
#include "picture/surface.h"
#include "rows/strip.h"
#include "stretch/pair_rows.h"

namespace lumalane {

// How a row comes about that lies between a row and the row below it.
struct way_between {
    row_kernel::between_two_rows *make; // null: it is the row itself
    bool averages_ends = false;         // the first and the last 16 pixels are averages

    bool operator==(const way_between &) const = default;
};

// Where the source of a row is: pointers into the planes, and the distances to the rows below.
struct source_rows {
    const unsigned char *y, *u, *v;
    ptrdiff_t y_below, chroma_below;
};

class rows_between {
public:
    static constexpr ptrdiff_t most_pixels = 2048;

    struct luma_strip {
        alignas(stack_alignment) unsigned char samples[most_pixels];
    };

    // `pixels` of a row, which is done in runs of `run` at most; `by` is null for no adjustment after
    // the interpolation; `luma` is where rows of luma are made one at a time, and those that what emits
    // pairs does not make by itself: null where there are none.
    rows_between(const row_kernels &kernels_, const planar_to_surface &surface_,
                 const adjustment *by, ptrdiff_t pixels_, ptrdiff_t run_, store_policy stores,
                 luma_strip *luma)
        : kernels(kernels_), surface(surface_), pixels(pixels_), run(run_),
          strip_of_luma(luma ? luma->samples : nullptr) {
        rows.by = by, rows.stores = stores;
    }

    // One row.
    void row(unsigned char *dst, const source_rows &at, const way_between &luma,
             const way_between &chroma) {
        rows.lower = lower_row::none, rows.count = 1;
        in_runs(pixels, run, [&](ptrdiff_t x, ptrdiff_t n) {
            begin(dst, {at.y, at.u, at.v, at.y_below, at.chroma_below, 0, 0, 0}, chroma, x, n);
            if (luma.make) {
                make(luma, strip_of_luma, n, rows.y, at.y_below, 0, x, n, step);
                rows.y = strip_of_luma;
            }
            surface.emit(rows, n);
        });
    }

    // How many pairs come at a time.
    ptrdiff_t most() const { return most_pixels / (pixels < run ? pixels : run); }

    // Of so many pairs the upper rows, at every fourth row of the surface, and between them and the
    // lower ones a row with the same chroma.
    void upper_rows(unsigned char *dst, ptrdiff_t dst_pitch, const pair_rows &at,
                    const way_between &luma, ptrdiff_t count) {
        rows_and_below(dst, dst_pitch, at, luma, {nullptr}, count);
    }

    // Of so many pairs the lower rows, and between them and the rows below a row with the same chroma.
    void lower_rows(unsigned char *dst, ptrdiff_t dst_pitch, const pair_rows &at,
                    const way_between &luma, const way_between &chroma, ptrdiff_t count) {
        pair_rows lower = at;
        lower.y += at.y_to_lower;
        rows_and_below(dst + 2 * dst_pitch, dst_pitch, lower, luma, chroma, count);
    }

    static constexpr int step = 16;

private:
    void rows_and_below(unsigned char *dst, ptrdiff_t dst_pitch, const pair_rows &at,
                        const way_between &luma, const way_between &chroma, ptrdiff_t count) {
        // What emits a pair makes its lower row by itself, if the way is one of these.
        rows.lower = luma.make == kernels.average_rows ? lower_row::average
                     : luma.make == kernels.four_taps && kernels.filters_pairs
                         ? lower_row::four_taps
                         : lower_row::itself;
        const bool in_strip = luma.make && rows.lower == lower_row::itself;
        rows.y_below = luma.make ? at.y_below : 0;
        rows.dst_below = dst_pitch;
        rows.count = count, rows.y_next = at.y_next, rows.dst_next = 4 * dst_pitch;
        in_runs(pixels, run, [&](ptrdiff_t x, ptrdiff_t n) {
            begin(dst, at, chroma, x, n);
            if (in_strip) {
                make(luma, strip_of_luma, n, rows.y, at.y_below, at.y_next, x, n, step);
                rows.y_below = distance(rows.y, strip_of_luma), rows.y_below_next = n - at.y_next;
            } else {
                rows.y_below_next = 0;
            }
            surface.emit(rows, n);
        });
    }

    void begin(unsigned char *dst, const pair_rows &at, const way_between &chroma, ptrdiff_t x,
               ptrdiff_t n) {
        rows.y = at.y + x, rows.u = at.u + x / 2, rows.v = at.v + x / 2;
        rows.dst = dst + x * surface.bytes_per_pixel;
        rows.chroma_next = at.chroma_next;
        if (chroma.make) {
            make(chroma, strip.u, n / 2, rows.u, at.chroma_below, at.chroma_next, x, n, step / 2);
            make(chroma, strip.v, n / 2, rows.v, at.chroma_below, at.chroma_next, x, n, step / 2);
            rows.u = strip.u, rows.v = strip.v, rows.chroma_next = n / 2;
        }
    }

    // Of the pixels from x on of `rows.count` rows; `samples` of the plane are a step.
    void make(const way_between &way, unsigned char *to, ptrdiff_t to_next,
              const unsigned char *from, ptrdiff_t below, ptrdiff_t next, ptrdiff_t x, ptrdiff_t n,
              ptrdiff_t samples) {
        const ptrdiff_t end = n / (step / samples);
        between.below = below, between.count = rows.count;
        between.src_next = next, between.dst_next = to_next;
        const auto run_from = [&](row_kernel::between_two_rows *kernel, ptrdiff_t first,
                                  ptrdiff_t last) {
            between.dst = to + first, between.src = from + first;
            if (first < last)
                kernel(between, last - first);
        };
        const ptrdiff_t left = way.averages_ends && x == 0 ? samples : 0;
        const ptrdiff_t right = way.averages_ends && x + n == pixels ? samples : 0;
        run_from(kernels.average_rows, 0, left);
        run_from(way.make, left, end - right);
        run_from(kernels.average_rows, end - right, end);
    }

    const row_kernels &kernels;
    const planar_to_surface surface;
    const ptrdiff_t pixels, run;
    unsigned char *const strip_of_luma;
    planar_rows rows{};
    between_rows between{};
    struct {
        alignas(stack_alignment) unsigned char u[most_pixels / 2], v[most_pixels / 2];
    } strip;
};

} // namespace lumalane
