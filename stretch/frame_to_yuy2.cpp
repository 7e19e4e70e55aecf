// Frames into YUY2 surfaces of twice the height, interpolated along edges.
#include "picture/adjustment.h"
#include "picture/calls.h"
#include "picture/geometry.h"
#include "picture/stores.h"
#include "picture/surface.h"
#include "picture/told_rows.h"
#include "stretch/between_rows.h"

namespace lumalane {

namespace {

// The promised order is row by row. Of every pair of rows come four, as of other pictures.
struct frame_rows {
    source_rows first; // of the upper row
    unsigned char *dst;
    int row_step;
    long long pairs;
    ptrdiff_t pixels, pixels_copied; // of a row made between two, and of others
    ptrdiff_t dst_pitch;

    explicit frame_rows(const call::frame_stretch &p)
        : dst(p.dst), pairs(p.height / 2), dst_pitch(p.dst_pitch) {
        constexpr int step = rows_between::step;
        const int width = p.frame->luma_pitch;
        const bool one_field = p.frame->field_mode == 1;
        row_step = one_field ? twice(width) : width;
        const int to_start = product(width, p.start);
        const int offset = one_field ? to_start : to_start >> 1;
        const ptrdiff_t chroma_step = row_step >> 1;
        // quirk: a quarter of luma's offset, which for an odd start in a field is no row of chroma
        // [frame_stretches.take_the_chroma_of_a_field_from_a_quarter_of_the_start_on]
        first = {p.frame->plane_y + offset, p.frame->plane_u + (offset >> 2),
                 p.frame->plane_v + (offset >> 2), 2 * chroma_step, chroma_step};
        pixels_copied = whole_steps(width, step);
        // quirk: both ends of a row between two are a step, and at least one step is between them
        // [frame_stretches.follow_no_edge_in_the_first_and_the_last_16_pixels]
        const int inner = difference(width, 2 * step);
        pixels = 2 * step + (inner <= step ? step : whole_steps(inner, step));
    }

    source_rows source(long long pair, int lower) const {
        const ptrdiff_t rows = static_cast<ptrdiff_t>(pair);
        const ptrdiff_t to_pair = rows * first.chroma_below;
        return {first.y + (2 * rows + lower) * row_step, first.u + to_pair, first.v + to_pair,
                first.y_below, first.chroma_below};
    }

    pair_rows at(long long pair) const {
        return pair_rows{first.y,
                         first.u,
                         first.v,
                         first.y_below,
                         first.chroma_below,
                         row_step,
                         ptrdiff_t{2} * row_step,
                         first.chroma_below}
            .after(pair, 0);
    }

    unsigned char *surface(long long pair, int k) const {
        return dst + static_cast<ptrdiff_t>(4 * pair + k) * dst_pitch;
    }
};

} // namespace

// Adjusted after the interpolation.
void strech_opt_yuy2_ajust(const machine &machine, const call::frame_stretch &p) {
    if (p.height < detail::least_height::strech_opt_yuy2_ajust)
        return;
    const frame_rows rows(p);
    const adjustment adjusted = current_adjustment();
    const adjustment *const by = adjusted.unless_neutral();
    // Rows of both kinds are as long as each other from 33 pixels on.
    const bool in_order =
        rows.pixels != rows.pixels_copied || keeps_order(machine, p, [&](call_rows &told) {
            detail::rows_of_frame(
                {p.frame->luma_pitch, p.frame->field_mode, p.start, p.height, p.dst_pitch}, told);
        });
    const surface_stores stores(machine, p.dst, p.dst_pitch, 8 * rows.pairs * rows.pixels, in_order,
                                bound_by::arithmetic);
    const ptrdiff_t run = in_order ? rows_between::step : rows_between::most_pixels;
    const planar_to_surface surface = planar_to_yuy2(machine.rows);
    rows_between::luma_strip luma;
    rows_between between(machine.rows, surface, by, rows.pixels, run, stores, &luma);
    const way_between itself{nullptr}, along_edges{machine.rows.along_edges, true};
    if (in_order) {
        rows_between copies(machine.rows, surface, by, rows.pixels_copied, run, stores, &luma);
        for (long long pair = 0; pair < rows.pairs; ++pair) {
            const bool last = pair + 1 == rows.pairs;
            const source_rows upper = rows.source(pair, 0), lower = rows.source(pair, 1);
            const way_between &below = last ? itself : along_edges;
            rows_between &of_lower = last ? copies : between;
            copies.row(rows.surface(pair, 0), upper, itself, itself);
            between.row(rows.surface(pair, 1), upper, along_edges, itself);
            of_lower.row(rows.surface(pair, 2), lower, itself, below);
            of_lower.row(rows.surface(pair, 3), lower, below, below);
        }
        return;
    }
    const auto emit = [&](ptrdiff_t pair, ptrdiff_t count, const way_between &below) {
        unsigned char *const dst = rows.surface(pair, 0);
        between.upper_rows(dst, rows.dst_pitch, rows.at(pair), along_edges, count);
        between.lower_rows(dst, rows.dst_pitch, rows.at(pair), below, below, count);
    };
    const ptrdiff_t last = static_cast<ptrdiff_t>(rows.pairs) - 1;
    in_runs(last, between.most(),
            [&](ptrdiff_t pair, ptrdiff_t count) { emit(pair, count, along_edges); });
    emit(last, 1, itself);
}

} // namespace lumalane
