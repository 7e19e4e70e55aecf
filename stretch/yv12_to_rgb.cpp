// YV12 pictures into RGB surfaces of twice the height.
#include "picture/adjustment.h"
#include "picture/calls.h"
#include "picture/geometry.h"
#include "picture/stores.h"
#include "picture/strip.h"
#include "picture/surface.h"
#include "stretch/recent_rows.h"

#include <limits.h>

namespace lumalane {

namespace {

constexpr int least_height = 12, step = 16;

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

    // Columns that begin at different heights are not rows in another order.
    bool order_can_be_observed() const {
        if (y_to_column != step || chroma_to_column != step / 2 ||
            dst_to_column != step * bytes_per_pixel)
            return true;
        const byte_rows written[] = {{dst, 4 * pairs, dst_pitch, 1LL * pixels * bytes_per_pixel}};
        const byte_rows read[] = {{y, 2 * pairs, y_pitch, pixels},
                                  {u, pairs, chroma_pitch, pixels / 2},
                                  {v, pairs, chroma_pitch, pixels / 2}};
        return lumalane::order_can_be_observed(written, read);
    }
};

// Some columns: adjusted samples, averages of them, pixels.
class column_stretcher {
public:
    column_stretcher(const row_kernels &kernels_, const columns_of_pairs &all,
                     const planar_to_surface &surface_, const adjustment &by_, store_policy stores,
                     bool in_order_)
        : kernels(kernels_), at(all), surface(surface_), by(by_), in_order(in_order_),
          neutral(by.neutral()) {
        rows.stores = stores, rows.dst_below = at.dst_pitch;
    }

    // The next `pixels`.
    void stretch(ptrdiff_t pixels) {
        n = pixels;
        luma.forget(), chroma_u.forget(), chroma_v.forget();
        for (long long pair = 0; pair < at.pairs; ++pair) {
            const bool last = pair + 1 == at.pairs;
            rows.u = row_of_u(pair), rows.v = row_of_v(pair);
            emit(4 * pair, 2 * pair, false);
            if (!last)
                make_chroma_between(pair);
            emit(4 * pair + 2, 2 * pair + 1, last);
        }
        const ptrdiff_t steps = n / step;
        at.y += steps * at.y_to_column;
        at.u += steps * at.chroma_to_column, at.v += steps * at.chroma_to_column;
        at.dst += steps * at.dst_to_column;
    }

    static constexpr ptrdiff_t most = 4 * strip_pixels;

private:
    // Rows `to` and `to` + 1 of the surface, from a row of luma and that below it.
    void emit(long long to, long long row, bool last) {
        rows.y = row_of_luma(row);
        rows.dst = at.dst + static_cast<ptrdiff_t>(to) * at.dst_pitch;
        alignas(64) unsigned char between[step];
        if (in_order) {
            rows.lower = lower_row::none;
            surface.emit(rows, n);
            if (!last) {
                kernels.average_rows(between, rows.y, distance(rows.y, row_of_luma(row + 1)), n);
                rows.y = between;
            }
            rows.dst += at.dst_pitch;
        } else {
            rows.lower = last ? lower_row::itself : lower_row::average;
            rows.y_below = last ? 0 : distance(rows.y, row_of_luma(row + 1));
        }
        surface.emit(rows, n);
    }

    void make_chroma_between(long long pair) {
        const auto average = [&](unsigned char *to, const unsigned char *upper,
                                 const unsigned char *lower) {
            kernels.average_rows(to, upper, distance(upper, lower), n / 2);
            return to;
        };
        rows.u = average(between_u, rows.u, row_of_u(pair + 1));
        rows.v = average(between_v, rows.v, row_of_v(pair + 1));
    }

    const unsigned char *row_of_luma(long long number) {
        return row(luma, number, at.y, at.y_pitch, n, by.y);
    }
    const unsigned char *row_of_u(long long number) {
        return row(chroma_u, number, at.u, at.chroma_pitch, n / 2, by.u);
    }
    const unsigned char *row_of_v(long long number) {
        return row(chroma_v, number, at.v, at.chroma_pitch, n / 2, by.v);
    }

    // A row of a plane, adjusted. In order a row is read once, before later pixels are stored.
    template <class Rows>
    const unsigned char *row(Rows &kept, long long number, const unsigned char *plane,
                             ptrdiff_t pitch, ptrdiff_t samples, const plane_adjustment &map) {
        const unsigned char *const from = plane + static_cast<ptrdiff_t>(number) * pitch;
        if (neutral && !in_order)
            return from;
        return kept.row(number, [&](unsigned char *to) {
            adjusting.src = from, adjusting.dst = to, adjusting.by = &map;
            kernels.emit_plane(adjusting, samples);
        });
    }

    const row_kernels &kernels;
    columns_of_pairs at;
    ptrdiff_t n = 0;
    const planar_to_surface surface;
    const adjustment by;
    const bool in_order, neutral;
    planar_rows rows{};
    plane_rows adjusting{};

    recent_rows<3, most> luma;
    recent_rows<2, most / 2> chroma_u, chroma_v;
    alignas(64) unsigned char between_u[most / 2], between_v[most / 2];
};

void stretch(const machine &machine, const call::picture &p, const planar_to_surface &surface,
             ptrdiff_t pixels) {
    const columns_of_pairs columns(p, surface.bytes_per_pixel, pixels);
    const bool in_order = machine.in_order || columns.order_can_be_observed();
    const surface_stores stores(machine, p.dst, p.dst_pitch,
                                4 * columns.pairs * pixels * surface.bytes_per_pixel, in_order);
    column_stretcher stretcher(machine.rows, columns, surface, current_adjustment(), stores,
                               in_order);
    in_runs(pixels, in_order ? step : column_stretcher::most,
            [&](ptrdiff_t, ptrdiff_t n) { stretcher.stretch(n); });
}

// quirk: columns are counted down to 0, which other widths do not come to before memory ends
ptrdiff_t pixels_of_width_on_16(int width) {
    return width > 0 && width % step == 0 ? width : INT_MAX / step * step;
}

} // namespace

void strech_picture_1X2_yuy2_ajust_rgb32(const machine &machine, const call::picture &p) {
    if (p.height >= least_height)
        stretch(machine, p, planar_to_rgb32(machine.rows),
                p.width < step ? step : whole_steps(p.width, step));
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
