// Packed YUY2 pictures into RGB and YUY2 surfaces: two rows at a time, of which the lower one takes
// the chroma of the upper one.
#include "picture/adjustment.h"
#include "picture/calls.h"
#include "picture/geometry.h"
#include "picture/surface.h"
#include "picture/told_rows.h"
#include "rows/strip.h"

namespace lumalane {

namespace {

// Where the pairs of rows are. Widths off the step do not drift here: each pair begins where it
// should. (But a width of 0 drifts by its one step.)
struct packed_pairs {
    const unsigned char *src;
    unsigned char *dst;
    ptrdiff_t pairs, pixels;
    ptrdiff_t src_to_lower, src_to_next;
    ptrdiff_t dst_to_lower, dst_to_next;
    ptrdiff_t row_bytes; // of the destination

    packed_pairs(const call::picture &p, int step, int bytes_per_pixel)
        : src(p.src), dst(p.dst), pairs(static_cast<ptrdiff_t>(steps_of(p.height, 2))),
          pixels(whole_steps(p.width, static_cast<unsigned>(step))),
          src_to_lower(twice(p.src_pitch)), dst_to_lower(p.dst_pitch),
          row_bytes(pixels * bytes_per_pixel) {
        // What wraps is the way from the end of a row to the next pair.
        const int src_row = twice(p.width), dst_row = product(p.width, bytes_per_pixel);
        src_to_next = src_row + ptrdiff_t{difference(twice(twice(p.src_pitch)), src_row)};
        dst_to_next = dst_row + ptrdiff_t{difference(twice(p.dst_pitch), dst_row)};
        if (p.width == 0)
            src_to_next += 2 * pixels, dst_to_next += row_bytes;
    }
};

constexpr int rgb_step = 16, yuy2_step = 8;

// In steps of so many pixels.
void load(const machine &machine, const call::picture &picture, int step_pixels,
          const packed_to_surface &surface, const adjustment *by) {
    if (!surface.emit)
        return;
    const packed_pairs p(picture, step_pixels, surface.bytes_per_pixel);
    const bool in_order = keeps_order(machine, picture, [&](call_rows &rows) {
        detail::rows_of_packed_pairs(sizes_of(picture), step_pixels, surface.bytes_per_pixel, rows);
    });
    const surface_stores stores(machine, p.dst, p.dst_to_lower | p.dst_to_next,
                                2LL * p.pairs * p.row_bytes, in_order, surface.bound);
    const ptrdiff_t run = in_order ? step_pixels : p.pixels;
    const ptrdiff_t pairs_at_once = in_order ? 1 : p.pairs;
    for (ptrdiff_t pair = 0; pair < p.pairs; pair += pairs_at_once)
        in_runs(p.pixels, run, [&](ptrdiff_t x, ptrdiff_t n) {
            const unsigned char *const src = p.src + pair * p.src_to_next + 2 * x;
            unsigned char *const dst = p.dst + pair * p.dst_to_next + x * surface.bytes_per_pixel;
            packed_rows rows{src, src, dst, lower_row::itself, p.src_to_lower, p.dst_to_lower};
            rows.stores = stores, rows.by = by;
            rows.count = pairs_at_once;
            rows.src_next = p.src_to_next, rows.dst_next = p.dst_to_next;
            surface.emit(rows, n);
        });
}

void load_adjusted(const machine &machine, const call::picture &p, int step_pixels,
                   const packed_to_surface &surface) {
    const adjustment by = current_adjustment();
    load(machine, p, step_pixels, surface, by.unless_neutral());
}

} // namespace

void LoadYUY2_RGB32(const machine &machine, const call::picture &p) {
    load(machine, p, rgb_step, packed_to_rgb32(machine.rows), nullptr);
}

void LoadYUY2_RGB32_adjust(const machine &machine, const call::picture &p) {
    load_adjusted(machine, p, rgb_step, packed_to_rgb32(machine.rows));
}

void LoadYUY2_RGB24(const machine &machine, const call::picture &p) {
    load(machine, p, rgb_step, packed_to_rgb24(machine.rows), nullptr);
}

void LoadYUY2_RGB24_adjust(const machine &machine, const call::picture &p) {
    load_adjusted(machine, p, rgb_step, packed_to_rgb24(machine.rows));
}

void LoadYUY2_RGB16(const machine &machine, const call::picture &p) {
    load(machine, p, rgb_step, packed_to_rgb16(machine.rows, p.info->rgb16_layout), nullptr);
}

void LoadYUY2_RGB16_adjust(const machine &machine, const call::picture &p) {
    load_adjusted(machine, p, rgb_step, packed_to_rgb16(machine.rows, p.info->rgb16_layout));
}

void LoadYUY2_YUY2(const machine &machine, const call::picture &p) {
    load(machine, p, yuy2_step, packed_to_yuy2(machine.rows), nullptr);
}

void LoadYUY2_YUY2_adjust(const machine &machine, const call::picture &p) {
    load_adjusted(machine, p, yuy2_step, packed_to_adjusted_yuy2(machine.rows));
}

} // namespace lumalane
