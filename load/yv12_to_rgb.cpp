// YV12 pictures into RGB surfaces.
#include "load/row_pairs.h"

namespace lumalane {

namespace {

void load(const machine &machine, const call::picture &p, const planar_to_surface &surface) {
    if (surface.emit)
        load_row_pairs(machine, p, pair_order::both_rows_by_steps, surface);
}

void load_adjusted(const machine &machine, const call::picture &p,
                   const planar_to_surface &surface) {
    if (surface.emit)
        load_row_pairs(machine, p, pair_order::both_rows_by_steps, surface, current_adjustment());
}

} // namespace

void loadimage_rgb32(const machine &machine, const call::picture &p) {
    load(machine, p, planar_to_rgb32(machine.rows));
}

void loadimage_rgb32_ajust(const machine &machine, const call::picture &p) {
    load_adjusted(machine, p, planar_to_rgb32(machine.rows));
}

void loadimage_rgb24(const machine &machine, const call::picture &p) {
    load(machine, p, planar_to_rgb24(machine.rows));
}

void loadimage_rgb24_ajust(const machine &machine, const call::picture &p) {
    load_adjusted(machine, p, planar_to_rgb24(machine.rows));
}

void loadimage_rgb16(const machine &machine, const call::picture &p) {
    load(machine, p, planar_to_rgb16(machine.rows, p.info->rgb16_layout));
}

void loadimage_rgb16_ajust(const machine &machine, const call::picture &p) {
    load_adjusted(machine, p, planar_to_rgb16(machine.rows, p.info->rgb16_layout));
}

} // namespace lumalane
