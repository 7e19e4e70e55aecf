// YV12 pictures into YUY2 surfaces of the same and of half the width.
#include "load/row_pairs.h"

namespace lumalane {

// quirk: the first 8 of every 32 bytes of a lower row are not written
// [yuy2_surface.the_plain_form_keeps_8_bytes_of_every_32_in_lower_rows]
void loadimage_yuy2(const machine &machine, const call::picture &p) {
    load_row_pairs(machine, p, pair_order::both_rows_by_steps,
                   {machine.rows.emit_yuy2_with_gaps, 2, detail::bound_of_yuy2});
}

// quirk: heights of 8 and less and odd ones write nothing
// [yuy2_surface.the_adjusted_form_alone_does_nothing_at_heights_up_to_8_and_odd_ones]
void loadimage_yuy2_ajust(const machine &machine, const call::picture &p) {
    if (p.height >= detail::least_height::loadimage_yuy2_ajust && p.height % 2 == 0)
        load_row_pairs(machine, p, pair_order::row_by_row, planar_to_yuy2(machine.rows),
                       current_adjustment());
}

void loadimage_yuy2_mono_ajust(const machine &machine, const call::picture &p) {
    constexpr plane_adjustment none = prepared(64, 0);
    load_row_pairs(machine, p, pair_order::row_by_row,
                   {machine.rows.emit_mono_yuy2, 2, detail::bound_of_yuy2},
                   {current_adjustment().y, none, none}, chroma_is::unread);
}

// Two neighbours make one sample before the adjustment, U with U and V with V.
void loadimage_half_yuy2_ajust(const machine &machine, const call::picture &p) {
    load_row_pairs(
        machine, p, pair_order::row_by_row,
        {machine.rows.emit_half_yuy2, 1, on_wide_vectors(machine.rows, detail::bound_of_yuy2)},
        current_adjustment());
}

} // namespace lumalane
