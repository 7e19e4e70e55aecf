// Samples of some pairs of rows at a time, on the stack.
#pragma once

#include "picture/machine.h"
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

    static constexpr ptrdiff_t most_pixels = 1920;
    // Of a run that others follow: where the width is doubled one sample more is needed, and kernels
    // take 16.
    static constexpr ptrdiff_t following = 16;

    // Rows of so many pixels come, a multiple of 16, from the first pair on.
    void begin(ptrdiff_t pixels_) {
        pixels = pixels_, before = 0;
        most_pairs = (static_cast<ptrdiff_t>(sizeof(samples)) / pitch() - 2) / 3;
    }

    // How many pairs there is room for.
    ptrdiff_t most() const { return most_pairs; }

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
    ptrdiff_t pitch() const { return pixels + following; }

    const row_kernels &kernels;
    const bool has_luma;
    ptrdiff_t pixels = 0, before = 0, most_pairs = 0;
    alignas(stack_alignment) unsigned char samples[5 * (most_pixels + following)];
};

// Kernels that double the width read one pair of U and V more: at the end of a row the last one.
inline void repeat_last_pair(unsigned char *end) { end[0] = end[-2], end[1] = end[-1]; }

} // namespace lumalane
