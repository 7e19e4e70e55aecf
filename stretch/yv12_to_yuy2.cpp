// YV12 pictures into YUY2 surfaces of twice the height, and of twice both.
#include "picture/adjustment.h"
#include "picture/calls.h"
#include "picture/geometry.h"
#include "picture/stores.h"
#include "picture/surface.h"
#include "picture/told_rows.h"
#include "rows/strip.h"
#include "stretch/between_rows.h"
#include "stretch/double_by_samples.h"
#include "stretch/doubled_pairs.h"
#include "stretch/pairs_of_samples.h"

namespace lumalane {

namespace {

// Of the rows of a pair, with the chroma row that they share, and of the row below each come four:
//
//     row 0   the upper row
//     row 1   what lies between it and the lower row
//     row 2   the lower row, with what lies between the chroma row and the next one
//     row 3   what lies between the lower row and the next pair, with the same chroma
//
// The promised order is row by row. After each row pointers go back by the width: with a width off
// the step each row begins further right than the one before, in the source as on the surface.
struct double_height {
    const unsigned char *y, *u, *v;
    unsigned char *dst;
    long long pairs;
    ptrdiff_t pixels, row_bytes; // of a row, of the source and of the surface
    ptrdiff_t y_drift, chroma_drift;
    ptrdiff_t y_below, chroma_below; // to the row that is read below
    ptrdiff_t y_to_lower, y_to_next; // from row 1 to row 2, from pair to pair
    ptrdiff_t chroma_to_next, dst_to_row;

    double_height(const call::picture &p, int times_width, ptrdiff_t pixels_)
        : y(p.src), u(p.src_u), v(p.src_v), dst(p.dst), pairs(steps_of(p.height, 2)),
          pixels(pixels_), row_bytes(2 * times_width * pixels), y_drift(pixels - p.width),
          chroma_drift(pixels / 2 - (p.width >> 1)),
          // quirk: the row below is at an even pitch, the next row is not
          y_below(2 * static_cast<ptrdiff_t>(static_cast<unsigned>(p.src_pitch) >> 1)),
          chroma_below(static_cast<unsigned>(p.src_pitch) >> 1),
          y_to_lower(pixels + difference(p.src_pitch, p.width)),
          y_to_next(2 * y_drift + 2 * y_to_lower),
          chroma_to_next(3 * chroma_drift + pixels / 2 + (difference(p.src_pitch, p.width) >> 1)),
          dst_to_row(row_bytes + difference(p.dst_pitch, product(p.width, 2 * times_width))) {}

    bool drifts() const { return y_drift != 0; }

    // For row k of a pair.
    source_rows source(long long pair, int k) const {
        const ptrdiff_t of_y =
            static_cast<ptrdiff_t>(pair) * y_to_next + (k + 1) / 2 * y_drift + k / 2 * y_to_lower;
        const ptrdiff_t of_chroma =
            static_cast<ptrdiff_t>(pair) * chroma_to_next + k * chroma_drift;
        return {y + of_y, u + of_chroma, v + of_chroma, y_below, chroma_below};
    }

    // Where rows do not drift.
    pair_rows at(long long pair) const {
        return pair_rows{y, u, v, y_below, chroma_below, y_to_lower, y_to_next, chroma_to_next}
            .after(pair, 0);
    }

    unsigned char *surface(long long pair, int k) const {
        return dst + static_cast<ptrdiff_t>(4 * pair + k) * dst_to_row;
    }
};

// `filtered`: rows above and two below are read, from the second pair to the one before the last.
bool keeps_order(const machine &machine, const call::picture &p, int times_width, bool filtered) {
    return keeps_order(machine, p, [&](call_rows &rows) {
        detail::rows_of_doubled_pairs(sizes_of(p), times_width, filtered, rows);
    });
}

// ---- The same width ----------------------------------------------------------------------------

void stretch(const machine &machine, const call::picture &p, bool filtered, const adjustment *by) {
    constexpr int step = 16;
    if (p.height < detail::least_height::strech_picture_1X2_yuy2)
        return;
    const double_height rows(p, 1, 2 * whole_steps(p.width >> 1, step / 2));
    const bool in_order = keeps_order(machine, p, 1, filtered);
    const bool in_pairs = !in_order && !rows.drifts();
    const bool in_doubled_pairs = in_pairs && !filtered && rows.at(0).contiguous();
    const surface_stores stores(machine, p.dst, rows.dst_to_row, 4 * rows.pairs * rows.row_bytes,
                                in_order, filtered ? bound_by::arithmetic : bound_by::stores,
                                in_doubled_pairs ? doubled_pairs::streamed(machine.rows, 1)
                                                 : rows_stored::one_by_one);
    if (in_doubled_pairs) {
        const ptrdiff_t pairs = static_cast<ptrdiff_t>(rows.pairs);
        doubled_pairs doubled(machine.rows, 1, rows.dst_to_row, false, stores);
        return in_runs(pairs, doubled_pairs::most(rows.pixels), [&](ptrdiff_t pair, ptrdiff_t n) {
            doubled.emit(rows.surface(pair, 0), rows.at(pair), n, rows.pixels, false,
                         pair + n == pairs);
        });
    }
    rows_between::luma_strip luma;
    rows_between between(machine.rows, planar_to_yuy2(machine.rows), by, rows.pixels,
                         in_order ? step : rows_between::most_pixels, stores, &luma);

    const way_between itself{nullptr}, average{machine.rows.average_rows},
        four_taps{machine.rows.four_taps};
    // So many pairs from one on, with the ways of what lies below their upper and lower rows.
    const auto emit = [&](long long from, long long count, const way_between &upper,
                          const way_between &lower, const way_between &chroma) {
        if (in_pairs)
            return in_runs(
                static_cast<ptrdiff_t>(count), between.most(), [&](ptrdiff_t i, ptrdiff_t n) {
                    unsigned char *const dst = rows.surface(from + i, 0);
                    between.upper_rows(dst, rows.dst_to_row, rows.at(from + i), upper, n);
                    between.lower_rows(dst, rows.dst_to_row, rows.at(from + i), lower, chroma, n);
                });
        for (long long pair = from; pair < from + count; ++pair) {
            between.row(rows.surface(pair, 0), rows.source(pair, 0), itself, itself);
            between.row(rows.surface(pair, 1), rows.source(pair, 1), upper, itself);
            between.row(rows.surface(pair, 2), rows.source(pair, 2), itself, chroma);
            between.row(rows.surface(pair, 3), rows.source(pair, 3), lower, chroma);
        }
    };
    // quirk: of the rows between the first pair and the last two, whose neighbours all exist, each is
    // filtered; so is luma between the last two
    // [stretches.yuy2_1x2_adjusted_filters_the_inner_rows_only]
    const long long last = rows.pairs - 1; // three at least
    if (filtered) {
        emit(0, 1, average, average, average);
        emit(1, last - 2, four_taps, four_taps, four_taps);
        emit(last - 1, 1, four_taps, four_taps, average);
    } else {
        emit(0, last, average, average, average);
    }
    emit(last, 1, average, itself, itself);
}

} // namespace

void strech_picture_1X2_yuy2(const machine &machine, const call::picture &p) {
    stretch(machine, p, false, nullptr);
}

// Adjusted after the interpolation.
void strech_picture_1X2_yuy2_ajust(const machine &machine, const call::picture &p) {
    const adjustment by = current_adjustment();
    stretch(machine, p, true, by.unless_neutral());
}

// ---- Twice the width ---------------------------------------------------------------------------

namespace {

// quirk: the steps of a row are counted from one step less on, tested after each, and followed by the
// last one: there are two at least [stretches.yuy2_2x2_writes_at_least_two_steps]
ptrdiff_t pixels_of_double_width(int width) { return 2 * whole_steps_signed(width >> 1, 8, 2); }

// A run of one row or of what lies between it and the row below, adjusted unless `by` is null.
class doubled_run {
public:
    doubled_run(const row_kernels &kernels_, const adjustment *by_, store_policy stores_)
        : kernels(kernels_), by(by_), stores(stores_) {}

    void emit(unsigned char *dst, const source_rows &at, pair_made made, bool chroma_between,
              ptrdiff_t n, bool at_end) {
        const ptrdiff_t samples = at_end ? n : n + following;
        doubled_rows row{at.y, uv[0], uv[0], dst};
        row.made = made, row.repeats_last = at_end, row.stores = stores, row.y_below = at.y_below;
        if (by) {
            plane_rows adjusted{at.y, y[0]};
            adjusted.by = &by->y;
            adjusted.count = made == pair_made::row ? 1 : 2;
            adjusted.src_next = at.y_below, adjusted.dst_next = sizeof(y[0]);
            kernels.emit_plane(adjusted, samples);
            row.y = y[0], row.y_below = sizeof(y[0]);
        }
        const int rows = chroma_between ? 2 : 1;
        kernels.interleave_chroma({at.u, at.v, uv[0], by, rows, at.chroma_below, sizeof(uv[0])},
                                  samples);
        row.chroma_below = chroma_between ? sizeof(uv[0]) : 0;
        for (int i = 0; at_end && i < rows; ++i)
            repeat_last_pair(uv[i] + n);
        kernels.emit_doubled_yuy2(row, n);
    }

private:
    static constexpr ptrdiff_t following = pairs_of_samples::following;

    const row_kernels &kernels;
    const adjustment *const by;
    const store_policy stores;
    alignas(stack_alignment) unsigned char y[2][strip_pixels + following],
        uv[2][strip_pixels + following];
};

// Adjusted, unless `by` is null, before the interpolation.
void double_row_by_row(const row_kernels &kernels, const double_height &rows, const adjustment *by,
                       ptrdiff_t run_pixels, store_policy stores) {
    doubled_run run(kernels, by, stores);
    const auto emit = [&](long long pair, int k, pair_made made, bool chroma_between) {
        in_runs(rows.pixels, run_pixels, [&](ptrdiff_t x, ptrdiff_t n) {
            source_rows at = rows.source(pair, k);
            at.y += x, at.u += x / 2, at.v += x / 2;
            run.emit(rows.surface(pair, k) + 4 * x, at, made, chroma_between, n,
                     x + n == rows.pixels);
        });
    };
    for (long long pair = 0; pair < rows.pairs; ++pair) {
        const bool last = pair + 1 == rows.pairs;
        emit(pair, 0, pair_made::row, false);
        emit(pair, 1, pair_made::between, false);
        emit(pair, 2, pair_made::row, !last);
        emit(pair, 3, last ? pair_made::row : pair_made::between, !last);
    }
}

void double_both(const machine &machine, const call::picture &p, const adjustment *by) {
    constexpr int step = 16;
    const double_height rows(p, 2, pixels_of_double_width(p.width));
    const bool in_order = keeps_order(machine, p, 2, false);
    const bool row_by_row = in_order || rows.drifts() || !rows.at(0).contiguous();
    const surface_stores stores(machine, p.dst, rows.dst_to_row, 4 * rows.pairs * rows.row_bytes,
                                in_order, bound_by::stores,
                                row_by_row ? rows_stored::one_by_one
                                           : doubled_pairs::streamed(machine.rows, 2));
    if (row_by_row)
        return double_row_by_row(machine.rows, rows, by, in_order ? step : strip_pixels, stores);

    const pair_rows all = rows.at(0);
    const auto make = [&](const sample_rows &to, ptrdiff_t pair, ptrdiff_t, ptrdiff_t x,
                          ptrdiff_t n) {
        const pair_rows from = all.after(pair, x);
        if (by) {
            plane_rows luma{from.y + to.first * from.y_below, to.y};
            luma.by = &by->y;
            luma.count = to.y_count, luma.src_next = from.y_below, luma.dst_next = to.pitch;
            machine.rows.emit_plane(luma, n);
        }
        const ptrdiff_t chroma = to.first * from.chroma_below;
        machine.rows.interleave_chroma({from.u + chroma, from.v + chroma, to.chroma, by,
                                        to.chroma_count, from.chroma_below, to.pitch},
                                       n);
    };
    double_by_samples(machine.rows, doubled_pairs(machine.rows, 2, rows.dst_to_row, false, stores),
                      rows.surface(0, 0), rows.dst_to_row, rows.pixels,
                      static_cast<ptrdiff_t>(rows.pairs), by ? nullptr : &all, make);
}

} // namespace

void strech_picture_2X2_yuy2(const machine &machine, const call::picture &p) {
    if (p.height >= detail::least_height::strech_picture_2X2_yuy2)
        double_both(machine, p, nullptr);
}

// quirk: the least height is twice that of the function without adjustment
// [stretches.yuy2_below_the_least_height_writes_nothing]
void strech_picture_2X2_yuy2_ajust(const machine &machine, const call::picture &p) {
    if (p.height < detail::least_height::strech_picture_2X2_yuy2_ajust)
        return;
    const adjustment by = current_adjustment();
    double_both(machine, p, by.unless_neutral());
}

} // namespace lumalane
