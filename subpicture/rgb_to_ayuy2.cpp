// Drawing surfaces to the colour planes of AYUY2 subpictures.
#include "picture/calls.h"
#include "subpicture/pattern.h"
#include "subpicture/row_by_row.h"

namespace lumalane {

namespace {

void convert(const machine &machine, tagMIX_INFO &mix, int bytes_per_pixel,
             row_kernel::surface_to_planes *kernel) {
    constexpr int step = 8;
    // quirk: what is left of a row after the last whole group is not converted
    // [conversion.width_20_converts_16_pixels_a_row_and_the_planes_lag]
    const ptrdiff_t pixels = mix.width < 0 ? 0 : mix.width / step * step;
    const long long count = rows_of(mix.height);
    const int advance = difference(mix.sub_pitch, mix.width);
    // quirk: halved as an unsigned number
    // [conversion.a_pitch_below_the_width_moves_chroma_by_2_gigabytes]
    const int chroma_advance = static_cast<int>(static_cast<unsigned>(advance) >> 1);
    const row_by_row<3, 1> p{
        {rows_with_advance(mix.sub_y, count, pixels, advance),
         rows_with_advance(mix.sub_u, count, pixels / 2, chroma_advance),
         rows_with_advance(mix.sub_v, count, pixels / 2, chroma_advance)},
        {surface_rows(mix.dst, count, pixels, mix.width, mix.dst_pitch, bytes_per_pixel)},
        pixels};
    const byte_rows &y = p.written[0], &u = p.written[1], &v = p.written[2];
    const unsigned key = mix.color_key;
    const pattern key_pixels = pattern_of_pixels(bytes_per_pixel, key);
    const byte_rows &surface = p.read[0];
    for_rows(p, machine.in_order || p.order_can_be_observed(), step, [&](const rows_run &run) {
        kernel({source_row(surface, run.row), destination_row(y, run.row),
                destination_row(u, run.row), destination_row(v, run.row), run.count,
                run.next(surface), run.next(y), run.next(u)},
               run.n, key, key_pixels);
    });
    // quirk: the record keeps where the conversion stands
    // [conversion.the_record_is_left_where_the_planes_ended]
    mix.alpha_plane += static_cast<ptrdiff_t>(count * advance);
    mix.sub_y = destination_row(y, count);
    mix.sub_u = destination_row(u, count);
    mix.sub_v = destination_row(v, count);
}

} // namespace

void Convert_RGB32_To_AYUY2(const machine &machine, const call::mix &p) {
    convert(machine, *p.record, 4, machine.rows.convert_rgb32);
}

void Convert_RGB24_To_AYUY2(const machine &machine, const call::mix &p) {
    convert(machine, *p.record, 3, machine.rows.convert_rgb24);
}

void Convert_RGB16_565_To_AYUY2(const machine &machine, const call::mix &p) {
    convert(machine, *p.record, 2, machine.rows.convert_rgb16_565);
}

} // namespace lumalane
