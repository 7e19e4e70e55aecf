// Samples of some pairs of rows at a time, on the stack.
#pragma once

#include "picture/machine.h"
#include "rows/strip.h"
#include "stretch/pair_rows.h"

namespace lumalane {

// Where rows of samples are to be made.
struct sample_rows {
    unsigned char *y, *chroma; // chroma: of U with V behind it, or pairs of both
    ptrdiff_t pitch;           // which may lead upwards
    ptrdiff_t first; // the number of the first row of luma and of chroma: 0 are the first pair's
    ptrdiff_t y_count, chroma_count;
};

// Rows of pairs and the row below the last one, which is the first one of the next pairs.
class pairs_of_samples {
public:
    explicit pairs_of_samples(const row_kernels &kernels)
        : alignment(kernels.vector_bytes < stack_alignment ? kernels.vector_bytes
                                                           : stack_alignment) {}

    static constexpr ptrdiff_t most_pixels = 1920, most_of_long_rows = 640;
    // Where the width is doubled kernels read one sample more, at the end of a row the last one once
    // more. Of a run that others follow 16 are made: kernels take so many.
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
        const ptrdiff_t held = before != 0 ? 1 : 0, below = last ? 0 : 1;
        // The row below the pairs before stays where it is; the next ones take the place of those, in the
        // other direction.
        y += 2 * before * to_next, chroma += before * to_next;
        if (held != 0)
            to_next = -to_next;
        make(sample_rows{y + held * to_next, chroma + held * to_next, to_next, held,
                         2 * pairs + below - held, pairs + below - held});
        before = pairs;
        return {y, chroma, chroma + pixels / 2, to_next, to_next, to_next, 2 * to_next, to_next};
    }

private:
    // Nothing of earlier pairs is held.
    void begin(ptrdiff_t pixels_) {
        pixels = pixels_, before = 0;
        to_next = rounded_up(pixels + following, alignment);
        most_pairs = (static_cast<ptrdiff_t>(sizeof(samples)) / to_next - 2) / 3;
        y = samples, chroma = y + (2 * most_pairs + 1) * to_next;
    }

    const ptrdiff_t alignment; // of rows
    ptrdiff_t pixels = 0, most_pairs = 0;
    unsigned char *y = nullptr, *chroma = nullptr; // of the first pair
    ptrdiff_t to_next = 0; // from a row to the next one: upwards for every second run of pairs
    ptrdiff_t before = 0;  // pairs taken, of which the row below is held
    // There is room for five rows of that many pixels, a pair and what lies below, however they are aligned.
    static_assert(most_pixels % stack_alignment == 0 && following <= stack_alignment);
    alignas(stack_alignment) unsigned char samples[5 * (most_pixels + stack_alignment)];
};

// Kernels that double the width read one pair of U and V more: at the end of a row the last one.
inline void repeat_last_pair(unsigned char *end) { end[0] = end[-2], end[1] = end[-1]; }

} // namespace lumalane
