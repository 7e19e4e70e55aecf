// Drawing surfaces to the colour planes of AYUY2 subpictures.
#include "picture/calls.h"
#include "picture/stores.h"
#include "subpicture/pattern.h"
#include "subpicture/row_by_row.h"

namespace lumalane {

namespace {

void convert(const machine &machine, tagMIX_INFO &mix, int bytes_per_pixel, int bytes_beyond,
             row_kernel::surface_to_planes *kernel) {
    constexpr int step = 8;
    // quirk: what is left of a row after the last whole group is not converted
    // [conversion.width_20_converts_16_pixels_a_row_and_the_planes_lag]
    const ptrdiff_t pixels = mix.width < 0 ? 0 : mix.width / step * step;
    call_rows p = rows_at(mix);
    detail::rows_of_conversion(sizes_of(mix), bytes_per_pixel, bytes_beyond, p);
    const bool in_order = keeps_order(machine, p);
    p.read[0].bytes -= bytes_beyond; // which decide nothing
    const byte_rows &y = p.written[0], &v = p.written[1], &u = p.written[2];
    const long long count = y.count;
    const unsigned key = mix.color_key;
    const pattern key_pixels = pattern_of_pixels(bytes_per_pixel, key);
    const byte_rows &surface = p.read[0];
    for_rows(p, pixels, in_order, step, [&](const rows_run &run) {
        kernel({source_row(surface, run.row), destination_row(y, run.row),
                destination_row(u, run.row), destination_row(v, run.row), run.count,
                run.next(surface), run.next(y), run.next(u), surface_stores::cached_on(machine)},
               run.n, key, key_pixels);
    });
    // quirk: the record keeps where the conversion stands
    // [conversion.the_record_is_left_where_the_planes_ended]
    mix.alpha_plane =
        destination_row({mix.alpha_plane, count, difference(mix.sub_pitch, mix.width), 0}, count);
    mix.sub_y = destination_row(y, count);
    mix.sub_u = destination_row(u, count);
    mix.sub_v = destination_row(v, count);
}

} // namespace

void Convert_RGB32_To_AYUY2(const machine &machine, const call::mix &p) {
    convert(machine, *p.record, 4, 0, machine.rows.convert_rgb32);
}

void Convert_RGB24_To_AYUY2(const machine &machine, const call::mix &p) {
    convert(machine, *p.record, 3, 1, machine.rows.convert_rgb24);
}

void Convert_RGB16_565_To_AYUY2(const machine &machine, const call::mix &p) {
    convert(machine, *p.record, 2, 0, machine.rows.convert_rgb16_565);
}

} // namespace lumalane
