// YV12 pictures into RGB surfaces of twice the height.
#include "picture/adjustment.h"
#include "picture/calls.h"
#include "picture/geometry.h"
#include "picture/stores.h"
#include "picture/surface.h"
#include "picture/told_rows.h"
#include "stretch/between_rows.h"
#include "stretch/pairs_of_samples.h"
#include "stretch/recent_rows.h"

#include <limits.h>

namespace lumalane {

namespace {

constexpr int least_height = detail::least_height::strech_picture_1X2_yuy2_ajust_rgb, step = 16;

// The promised order is that of columns of 16 pixels, each from top to bottom.
struct columns_of_pairs {
    const unsigned char *y, *u, *v;
    unsigned char *dst;
    int bytes_per_pixel;
    long long pairs;
    ptrdiff_t pixels; // of a row
    ptrdiff_t y_pitch, chroma_pitch, dst_pitch;
    ptrdiff_t y_to_column, chroma_to_column, dst_to_column; // from one column to the next

    columns_of_pairs(const call::picture &p, int bytes_per_pixel_, ptrdiff_t pixels_)
        : y(p.src), u(p.src_u), v(p.src_v), dst(p.dst), bytes_per_pixel(bytes_per_pixel_),
          pairs(steps_of(p.height, 2)), pixels(pixels_), y_pitch(p.src_pitch),
          chroma_pitch(p.src_pitch >> 1), dst_pitch(p.dst_pitch) {
        // quirk: a column goes back up by what the height means, which after an odd one is a row
        // too little in the source and two on the surface
        // [rgb_stretches.start_later_strips_lower_after_an_odd_height]
        const int y_rewind = product(p.height, p.src_pitch);
        const int dst_rewind = product(twice(p.height), p.dst_pitch);
        const ptrdiff_t rows = static_cast<ptrdiff_t>(pairs);
        y_to_column = 2 * rows * y_pitch - y_rewind + step;
        chroma_to_column = rows * chroma_pitch - (y_rewind >> 2) + step / 2;
        dst_to_column = 4 * rows * dst_pitch - dst_rewind + step * bytes_per_pixel;
    }
};

// Columns from the left to the right: adjusted samples, averages of them, pixels.
class columns_in_order {
public:
    columns_in_order(const row_kernels &kernels_, const columns_of_pairs &all,
                     const planar_to_surface &surface_, const adjustment &by_)
        : kernels(kernels_), at(all), surface(surface_), by(by_) {}

    // The next column.
    void stretch() {
        luma.forget(), chroma_u.forget(), chroma_v.forget();
        for (long long pair = 0; pair < at.pairs; ++pair) {
            const bool last = pair + 1 == at.pairs;
            rows.u = row_of_u(pair), rows.v = row_of_v(pair);
            emit(4 * pair, 2 * pair, false);
            if (!last) {
                rows.u = average(between_u, rows.u, row_of_u(pair + 1), step / 2);
                rows.v = average(between_v, rows.v, row_of_v(pair + 1), step / 2);
            }
            emit(4 * pair + 2, 2 * pair + 1, last);
        }
        at.y += at.y_to_column;
        at.u += at.chroma_to_column, at.v += at.chroma_to_column;
        at.dst += at.dst_to_column;
    }

private:
    // Rows `to` and `to` + 1 of the surface, from a row of luma and that below it.
    void emit(long long to, long long row, bool last) {
        rows.y = row_of_luma(row);
        rows.dst = at.dst + static_cast<ptrdiff_t>(to) * at.dst_pitch;
        surface.emit(rows, step);
        unsigned char between_y[step];
        if (!last)
            rows.y = average(between_y, rows.y, row_of_luma(row + 1), step);
        rows.dst += at.dst_pitch;
        surface.emit(rows, step);
    }

    const unsigned char *average(unsigned char *to, const unsigned char *upper,
                                 const unsigned char *lower, ptrdiff_t samples) {
        kernels.average_rows({to, upper, distance(upper, lower)}, samples);
        return to;
    }

    const unsigned char *row_of_luma(long long number) {
        return row(luma, number, at.y, at.y_pitch, step, by.y);
    }
    const unsigned char *row_of_u(long long number) {
        return row(chroma_u, number, at.u, at.chroma_pitch, step / 2, by.u);
    }
    const unsigned char *row_of_v(long long number) {
        return row(chroma_v, number, at.v, at.chroma_pitch, step / 2, by.v);
    }

    // A row of a plane, adjusted: read once, before later pixels are stored.
    template <class Rows>
    const unsigned char *row(Rows &kept, long long number, const unsigned char *plane,
                             ptrdiff_t pitch, ptrdiff_t samples, const plane_adjustment &map) {
        return kept.row(number, [&](unsigned char *to) {
            plane_rows adjusting{plane + static_cast<ptrdiff_t>(number) * pitch, to};
            adjusting.by = &map;
            kernels.emit_plane(adjusting, samples);
        });
    }

    const row_kernels &kernels;
    columns_of_pairs at;
    const planar_to_surface surface;
    const adjustment by;
    planar_rows rows{};

    recent_rows<3, step> luma;
    recent_rows<2, step / 2> chroma_u, chroma_v;
    unsigned char between_u[step / 2], between_v[step / 2];
};

// Of rows that need not be stored in order.
void stretch_rows(const row_kernels &kernels, const columns_of_pairs &columns,
                  const planar_to_surface &surface, const adjustment &by, store_policy stores) {
    const way_between itself{nullptr}, average{kernels.average_rows};
    const bool neutral = by.neutral();
    const pair_rows all{columns.y,
                        columns.u,
                        columns.v,
                        columns.y_pitch,
                        columns.chroma_pitch,
                        columns.y_pitch,
                        2 * columns.y_pitch,
                        columns.chroma_pitch};
    const ptrdiff_t pairs = static_cast<ptrdiff_t>(columns.pairs), dst_pitch = columns.dst_pitch;
    pairs_of_samples samples(kernels);
    samples.in_pieces(
        columns.pixels, pairs, rows_between::most_pixels,
        [&](ptrdiff_t pair, ptrdiff_t count, ptrdiff_t x, ptrdiff_t n) {
            rows_between between(kernels, surface, nullptr, n, n, stores, nullptr);
            const bool last = pair + count == pairs;
            const pair_rows from = all.after(pair, x);
            const auto make = [&](const sample_rows &to) {
                const auto adjust = [&](unsigned char *dst, const unsigned char *src,
                                        ptrdiff_t next, ptrdiff_t row_count, ptrdiff_t n_samples,
                                        const plane_adjustment &map) {
                    plane_rows rows{src + to.first * next, dst};
                    rows.by = &map;
                    rows.count = row_count, rows.src_next = next, rows.dst_next = to.pitch;
                    kernels.emit_plane(rows, n_samples);
                };
                adjust(to.y, from.y, from.y_below, to.y_count, n, by.y);
                adjust(to.chroma, from.u, from.chroma_below, to.chroma_count, n / 2, by.u);
                adjust(to.chroma + n / 2, from.v, from.chroma_below, to.chroma_count, n / 2, by.v);
            };
            const pair_rows at = neutral ? from : samples.take(count, last, make);
            unsigned char *const dst =
                columns.dst + x * surface.bytes_per_pixel + 4 * pair * dst_pitch;
            between.upper_rows(dst, dst_pitch, at, average, count);
            const ptrdiff_t with_below = last ? count - 1 : count;
            if (with_below > 0)
                between.lower_rows(dst, dst_pitch, at, average, average, with_below);
            if (last)
                between.lower_rows(dst + 4 * with_below * dst_pitch, dst_pitch,
                                   at.after(with_below, 0), itself, itself, 1);
        });
}

// (By itself: what it holds would stand on the stack of rows that are not stored in order, too.)
[[gnu::noinline]] void stretch_columns(const row_kernels &kernels, const columns_of_pairs &columns,
                                       const planar_to_surface &surface, const adjustment &by,
                                       ptrdiff_t pixels) {
    columns_in_order in_turn(kernels, columns, surface, by);
    for (ptrdiff_t x = 0; x < pixels; x += step)
        in_turn.stretch();
}

void stretch(const machine &machine, const call::picture &p, const planar_to_surface &surface,
             ptrdiff_t pixels) {
    const columns_of_pairs columns(p, surface.bytes_per_pixel, pixels);
    const bool in_order = keeps_order(machine, p, [&](call_rows &rows) {
        detail::rows_of_doubled_columns(sizes_of(p), surface.bytes_per_pixel, rows);
    });
    // Rows between others are averaged and stored by themselves around the cache.
    const surface_stores stores(
        machine, p.dst, p.dst_pitch, 4 * columns.pairs * pixels * surface.bytes_per_pixel, in_order,
        surface.bound == bound_by::arithmetic ? surface.bound : bound_by::arithmetic_and_stores);
    const adjustment by = current_adjustment();
    if (in_order)
        stretch_columns(machine.rows, columns, surface, by, pixels);
    else
        stretch_rows(machine.rows, columns, surface, by, stores);
}

// quirk: columns are counted down to 0, which other widths do not come to before memory ends (so there
// is no test of it)
ptrdiff_t pixels_of_width_on_16(int width) {
    return width > 0 && width % step == 0 ? width : INT_MAX / step * step;
}

} // namespace

void strech_picture_1X2_yuy2_ajust_rgb32(const machine &machine, const call::picture &p) {
    if (p.height >= least_height)
        stretch(machine, p, planar_to_rgb32(machine.rows), whole_steps_signed(p.width, step));
}

void strech_picture_1X2_yuy2_ajust_rgb24(const machine &machine, const call::picture &p) {
    if (p.height >= least_height)
        stretch(machine, p, planar_to_rgb24(machine.rows), pixels_of_width_on_16(p.width));
}

void strech_picture_1X2_yuy2_ajust_rgb16(const machine &machine, const call::picture &p) {
    if (p.height < least_height)
        return;
    if (const auto surface = planar_to_rgb16(machine.rows, p.info->rgb16_layout); surface.emit)
        stretch(machine, p, surface, pixels_of_width_on_16(p.width));
}

} // namespace lumalane
