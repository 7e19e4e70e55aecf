#include "load/row_pairs.h"

#include "picture/told_rows.h"
#include "rows/strip.h"

namespace lumalane {

namespace {

constexpr int step_pixels = 16;

// Where the rows of the pairs are. Rows have whole steps; what a step goes past a row's end, every
// later row (or pair of rows) begins further right.
struct row_pairs {
    const unsigned char *y, *u, *v;
    unsigned char *dst;
    ptrdiff_t pairs;
    ptrdiff_t pixels;    // of the source, per row
    ptrdiff_t row_bytes; // of the destination
    // From the upper to the lower row of a pair, and from pair to pair.
    ptrdiff_t y_to_lower, y_to_next;
    ptrdiff_t chroma_to_lower, chroma_to_next;
    ptrdiff_t dst_to_lower, dst_to_next;

    row_pairs(const call::picture &, int bytes_per_pixel, pair_order, chroma_is);
};

row_pairs::row_pairs(const call::picture &p, int bytes_per_pixel, pair_order order,
                     chroma_is chroma)
    : y(p.src), u(p.src_u), v(p.src_v), dst(p.dst), pairs(steps_of(p.height, 2)),
      pixels(whole_steps(p.width, step_pixels)), row_bytes(pixels * bytes_per_pixel) {
    const int dst_width = product(p.width, bytes_per_pixel);
    if (order == pair_order::both_rows_by_steps) {
        y_to_lower = p.src_pitch, y_to_next = pixels + difference(twice(p.src_pitch), p.width);
        chroma_to_lower = 0;
        dst_to_lower = p.dst_pitch;
        dst_to_next = row_bytes + difference(twice(p.dst_pitch), dst_width);
    } else {
        y_to_lower = pixels + difference(p.src_pitch, p.width), y_to_next = 2 * y_to_lower;
        chroma_to_lower = pixels / 2 - (p.width >> 1);
        dst_to_lower = row_bytes + difference(p.dst_pitch, dst_width);
        dst_to_next = 2 * dst_to_lower;
    }
    chroma_to_next = chroma_to_lower + pixels / 2 + (difference(p.src_pitch, p.width) >> 1);
    // Pointers that are not read may be null, to which nothing may be added.
    if (chroma == chroma_is::unread)
        u = v = y, chroma_to_lower = chroma_to_next = 0;
}

// Adjusted unless `by` is null.
void load(const machine &machine, const call::picture &picture, pair_order order,
          const planar_to_surface &surface, const adjustment *by, chroma_is chroma) {
    const row_pairs p(picture, surface.bytes_per_pixel, order, chroma);
    const bool in_order = keeps_order(machine, picture, [&](call_rows &rows) {
        if (order == pair_order::both_rows_by_steps)
            detail::rows_of_planar_pairs(sizes_of(picture), surface.bytes_per_pixel, 0, rows);
        else
            detail::rows_of_planar_rows(sizes_of(picture), surface.bytes_per_pixel,
                                        chroma == chroma_is::read, rows);
    });
    const surface_stores stores(machine, p.dst, p.dst_to_lower | p.dst_to_next,
                                2LL * p.pairs * p.row_bytes, in_order, surface.bound);
    const ptrdiff_t run = in_order ? step_pixels : p.pixels;
    const ptrdiff_t pairs_at_once = in_order ? 1 : p.pairs;
    const bool both_rows =
        p.chroma_to_lower == 0 && (!in_order || order == pair_order::both_rows_by_steps);

    planar_rows rows{p.y, p.u, p.v, p.dst};
    rows.stores = stores, rows.by = by;
    rows.count = pairs_at_once;
    rows.y_next = p.y_to_next, rows.chroma_next = p.chroma_to_next, rows.dst_next = p.dst_to_next;
    const auto convert = [&](const planar_rows &whole) {
        in_runs(p.pixels, run, [&](ptrdiff_t x, ptrdiff_t n) {
            planar_rows here = whole;
            here.y += x, here.u += x / 2, here.v += x / 2;
            here.dst += x * surface.bytes_per_pixel;
            surface.emit(here, n);
        });
    };
    for (ptrdiff_t pair = 0; pair < p.pairs; pair += pairs_at_once) {
        if (both_rows) {
            rows.lower = lower_row::itself;
            rows.y_below = p.y_to_lower, rows.dst_below = p.dst_to_lower;
            convert(rows);
        } else {
            convert(rows);
            planar_rows lower = rows;
            lower.y += p.y_to_lower, lower.dst += p.dst_to_lower;
            lower.u += p.chroma_to_lower, lower.v += p.chroma_to_lower;
            convert(lower);
        }
        rows.y += p.y_to_next, rows.dst += p.dst_to_next;
        rows.u += p.chroma_to_next, rows.v += p.chroma_to_next;
    }
}

} // namespace

void load_row_pairs(const machine &machine, const call::picture &p, pair_order order,
                    const planar_to_surface &surface) {
    load(machine, p, order, surface, nullptr, chroma_is::read);
}

void load_row_pairs(const machine &machine, const call::picture &p, pair_order order,
                    const planar_to_surface &surface, const adjustment &by, chroma_is chroma) {
    load(machine, p, order, surface, by.unless_neutral(), chroma);
}

} // namespace lumalane
