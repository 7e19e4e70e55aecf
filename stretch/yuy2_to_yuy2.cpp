// Packed YUY2 pictures into YUY2 surfaces of twice the width and height.
#include "picture/adjustment.h"
#include "picture/calls.h"
#include "picture/geometry.h"
#include "picture/stores.h"
#include "picture/told_rows.h"
#include "stretch/double_by_samples.h"
#include "stretch/doubled_pairs.h"
#include "stretch/pairs_of_samples.h"
#include "stretch/recent_rows.h"

#include <limits.h>

namespace lumalane {

namespace {

constexpr int step = 16; // pixels

// The promised order is that of columns of 16 pixels, each from top to bottom.
//
// quirk: the source's rows are one continuous run, and only the chroma of even rows is used
// [packed_stretches.take_the_chroma_of_even_rows_and_average_it_in_every_fourth_row]
struct packed_columns {
    const unsigned char *src;
    unsigned char *dst;
    long long pairs;
    ptrdiff_t pixels; // of a row
    ptrdiff_t src_pitch, dst_pitch;
    ptrdiff_t src_to_column, dst_to_column; // from one column to the next

    explicit packed_columns(const call::packed_stretch &p)
        : src(static_cast<const unsigned char *>(p.src)), dst(static_cast<unsigned char *>(p.dst)),
          pairs(steps_of(p.height, 2)), pixels(p.row_bytes / 2), src_pitch(p.row_bytes),
          dst_pitch(p.dst_pitch) {
        // quirk: columns are counted down to 0 from one less on, which other rows do not come to
        // before memory ends (so there is no test of it)
        if (p.row_bytes < 64 || p.row_bytes % 32 != 0)
            pixels = INT_MAX / step * step;
        // quirk: a column goes back up by what the height means, which after an odd one is a row
        // too little in the source and two on the surface
        // [packed_stretches.start_later_strips_lower_after_an_odd_height]
        const ptrdiff_t rows = static_cast<ptrdiff_t>(pairs);
        src_to_column = 2 * rows * src_pitch - product(p.row_bytes, p.height) + 2 * step;
        dst_to_column = 4 * rows * dst_pitch - product(twice(p.height), p.dst_pitch) + 4 * step;
    }
};

// Columns from the left to the right: samples taken apart and adjusted, unless `by` is null, then
// twice as wide and high.
class columns_in_order {
public:
    columns_in_order(const row_kernels &kernels_, const packed_columns &all, const adjustment *by_)
        : kernels(kernels_), at(all), by(by_) {}

    // The next column; `ends` where it is the last one.
    void stretch(bool ends) {
        at_end = ends;
        luma.forget(), chroma.forget();
        luma_of(0), luma_of(1);
        emit(0, 0, pair_made::row);
        emit(1, 0, pair_made::between);
        emit(2, 1, pair_made::row);
        // quirk: the first row of a pair is stored before the one above it
        // [packed_stretches.store_the_first_row_of_a_pair_before_the_one_above_it]
        for (long long pair = 1; pair < at.pairs; ++pair) {
            emit(4 * pair, 2 * pair, pair_made::row);
            emit(4 * pair - 1, 2 * pair - 1, pair_made::between);
            luma_of(2 * pair + 1);
            emit(4 * pair + 2, 2 * pair + 1, pair_made::row);
            emit(4 * pair + 1, 2 * pair, pair_made::between);
        }
        emit(4 * at.pairs - 1, 2 * at.pairs - 1, pair_made::row);
        at.src += at.src_to_column, at.dst += at.dst_to_column;
    }

private:
    // Row `to` of the surface, made from a row of luma and the one below it. Only what lies between
    // two pairs has chroma between theirs.
    void emit(long long to, long long row, pair_made made) {
        const long long pair = row / 2;
        const unsigned char *const y = luma_of(row);
        rows.y = y, rows.u = rows.v = chroma_of(pair);
        rows.dst = at.dst + static_cast<ptrdiff_t>(to) * at.dst_pitch;
        rows.made = made, rows.repeats_last = at_end;
        rows.chroma_below = 0;
        if (made != pair_made::row) {
            rows.y_below = distance(y, luma_of(row + 1));
            if (row % 2 != 0)
                rows.chroma_below = distance(rows.u, chroma_of(pair + 1));
        }
        kernels.emit_doubled_yuy2(rows, step);
    }

    const unsigned char *luma_of(long long row) {
        return luma.row(row, [&](unsigned char *y) {
            const unsigned char *const from = at.src + static_cast<ptrdiff_t>(row) * at.src_pitch;
            const auto unpack = [&](unsigned char *uv) {
                kernels.unpack_yuy2({from, y, uv, by}, step);
                if (at_end) {
                    if (uv)
                        repeat_last_pair(uv + step);
                    return;
                }
                // Of the next column the first samples: the rest may be in no column.
                const unsigned char *const next = from + 2 * step;
                const unsigned char first[2 * step] = {next[0], next[1], 0, next[3]};
                kernels.unpack_yuy2({first, y + step, uv ? uv + step : nullptr, by}, step);
            };
            if (row % 2 == 0)
                chroma.row(row / 2, unpack);
            else
                unpack(nullptr);
        });
    }

    // Of a row that there is luma of.
    const unsigned char *chroma_of(long long pair) {
        return chroma.row(pair, [](unsigned char *) {});
    }

    static constexpr ptrdiff_t most = 2 * step; // a column and what is next to it

    const row_kernels &kernels;
    packed_columns at;
    bool at_end = false;
    const adjustment *const by;
    doubled_rows rows{};
    recent_rows<4, most> luma;
    recent_rows<2, most> chroma; // pairs of U and V
};

void double_both(const machine &machine, const call::packed_stretch &p, const adjustment *by) {
    const packed_columns columns(p);
    const bool in_order = keeps_order(machine, p, [&](call_rows &rows) {
        detail::rows_of_doubled_packed({p.row_bytes, p.height, p.dst_pitch}, rows);
    });
    const ptrdiff_t pixels = columns.pixels;
    if (in_order) {
        columns_in_order in_turn(machine.rows, columns, by);
        for (ptrdiff_t x = 0; x < pixels; x += step)
            in_turn.stretch(x + step == pixels);
        return;
    }
    const surface_stores stores(machine, columns.dst, columns.dst_pitch,
                                16 * columns.pairs * columns.pixels, false, bound_by::stores,
                                doubled_pairs::streamed(machine.rows, 2));
    const ptrdiff_t pitch = columns.src_pitch;
    const auto make = [&](const sample_rows &to, ptrdiff_t pair, ptrdiff_t count, ptrdiff_t x,
                          ptrdiff_t n) {
        const unsigned char *const src = columns.src + 2 * (pair * pitch + x);
        const ptrdiff_t upper = to.first, lower = 1 - upper;
        machine.rows.unpack_yuy2({src + 2 * upper * pitch, to.y + upper * to.pitch, to.chroma, by,
                                  to.chroma_count, 2 * pitch, 2 * to.pitch, to.pitch},
                                 n);
        machine.rows.unpack_yuy2(
            {src + pitch, to.y + lower * to.pitch, nullptr, by, count, 2 * pitch, 2 * to.pitch}, n);
    };
    double_by_samples(machine.rows, doubled_pairs(machine.rows, 2, columns.dst_pitch, true, stores),
                      columns.dst, columns.dst_pitch, pixels, static_cast<ptrdiff_t>(columns.pairs),
                      nullptr, make);
}

} // namespace

// quirk: the least height is twice that of the function with adjustment
// [packed_stretches.below_the_least_height_write_nothing]
void yuy2_strech_picture_2X2_yuy2(const machine &machine, const call::packed_stretch &p) {
    if (p.height >= detail::least_height::yuy2_strech_picture_2X2_yuy2)
        double_both(machine, p, nullptr);
}

void yuy2_strech_picture_2X2_yuy2_ajust(const machine &machine,
                                        const call::packed_stretch_ajust &p) {
    if (p.height < detail::least_height::yuy2_strech_picture_2X2_yuy2_ajust)
        return;
    const adjustment by = current_adjustment();
    double_both(machine, p, by.unless_neutral());
}

} // namespace lumalane
