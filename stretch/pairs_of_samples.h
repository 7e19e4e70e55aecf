// Samples of some pairs of rows at a time, on the stack.
#pragma once

#include "picture/machine.h"
#include "rows/strip.h"
#include "stretch/pair_rows.h"

namespace lumalane {

// Where rows of samples are to be made.
struct sample_rows {
    unsigned char *y, *chroma; // chroma: of U with V behind it, or pairs of both
    ptrdiff_t pitch;
    ptrdiff_t first; // the number of the first row of luma and of chroma: 0 are the first pair's
    ptrdiff_t y_count, chroma_count;
};

// Rows of pairs and the row below the last one, which is the first one of the next pairs.
class pairs_of_samples {
public:
    // `has_luma`: else it is read elsewhere.
    pairs_of_samples(const row_kernels &kernels_, bool has_luma_)
        : kernels(kernels_), has_luma(has_luma_) {}

    static constexpr ptrdiff_t most_pixels = 1920, most_of_long_rows = 640;
    // Of a run that others follow: where the width is doubled one sample more is needed, and kernels
    // take 16.
    static constexpr ptrdiff_t following = 16;

    // Calls `run(pair, count, x, n)` for rows of so many pixels, a multiple of 16: n pixels from x on, of as
    // many pairs as there is room for and as have `at_once` pixels in a row of each. Rows that are too long
    // come in pieces side by side, and nothing is kept for the pairs below. (Pieces one below the other
    // make surfaces of 3840 pixels take 1.02 to 1.18 times as long; pieces of 960 pixels are as fast.)
    template <class Run>
    void in_pieces(ptrdiff_t all_pixels, ptrdiff_t pairs, ptrdiff_t at_once, const Run &run) {
        const bool in_one = all_pixels <= most_pixels;
        const ptrdiff_t piece = in_one ? all_pixels : most_of_long_rows;
        begin(piece);
        const ptrdiff_t most = at_once / piece, room = most_pairs;
        in_runs(pairs, room < most ? room : most, [&](ptrdiff_t pair, ptrdiff_t count) {
            in_runs(all_pixels, piece, [&](ptrdiff_t x, ptrdiff_t n) {
                if (!in_one)
                    begin(n);
                run(pair, count, x, n);
            });
        });
    }

    // The next pairs, made by `make(rows)`. `last`: nothing lies below them.
    template <class Make>
    pair_rows take(ptrdiff_t pairs, bool last, const Make &make) {
        unsigned char *const y = samples, *const chroma = y + (2 * most_pairs + 1) * pitch();
        const ptrdiff_t held = before != 0 ? 1 : 0, below = last ? 0 : 1;
        if (held != 0) {
            if (has_luma)
                kernels.emit_plane({y + 2 * before * pitch(), y}, pitch());
            kernels.emit_plane({chroma + before * pitch(), chroma}, pitch());
        }
        make(sample_rows{y + held * pitch(), chroma + held * pitch(), pitch(), held,
                         2 * pairs + below - held, pairs + below - held});
        before = pairs;
        return {y, chroma, chroma + pixels / 2, pitch(), pitch(), pitch(), 2 * pitch(), pitch()};
    }

private:
    // Nothing of earlier pairs is held.
    void begin(ptrdiff_t pixels_) {
        pixels = pixels_, before = 0;
        most_pairs = (static_cast<ptrdiff_t>(sizeof(samples)) / pitch() - 2) / 3;
    }

    ptrdiff_t pitch() const { return pixels + following; }

    const row_kernels &kernels;
    const bool has_luma;
    ptrdiff_t pixels = 0, before = 0, most_pairs = 0;
    alignas(stack_alignment) unsigned char samples[5 * (most_pixels + following)];
};

// Kernels that double the width read one pair of U and V more: at the end of a row the last one.
inline void repeat_last_pair(unsigned char *end) { end[0] = end[-2], end[1] = end[-1]; }

} // namespace lumalane
