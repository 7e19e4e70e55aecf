// AYUY2 subpictures onto a drawing surface.
#include "picture/adjustment.h"
#include "picture/calls.h"
#include "subpicture/pattern.h"
#include "subpicture/row_by_row.h"

namespace lumalane {

namespace {

struct keyed_surface {
    row_kernel::keyed_to_surface *emit;
    int bytes_per_pixel;
    key_colour key;
};

// quirk: red is in the lowest byte of the key here, where the conversions to AYUY2 have blue
// [subpicture_load.alpha_0_is_the_key_with_red_in_its_lowest_byte]
keyed_surface surface_of_bytes(row_kernel::keyed_to_surface *emit, int bytes_per_pixel,
                               unsigned key) {
    const auto red = static_cast<unsigned char>(key), green = static_cast<unsigned char>(key >> 8),
               blue = static_cast<unsigned char>(key >> 16);
    const unsigned pixel = static_cast<unsigned>(blue | green << 8 | red << 16);
    return {emit, bytes_per_pixel, {red, green, blue, pattern_of_pixels(bytes_per_pixel, pixel)}};
}

keyed_surface surface_of_words(row_kernel::keyed_to_surface *emit, unsigned key) {
    return {emit,
            2,
            {static_cast<unsigned char>(key >> 8 & 0xf8),
             static_cast<unsigned char>(key >> 3 & 0xfc),
             static_cast<unsigned char>(key << 3 & 0xf8), pattern_of_pixels(2, key)}};
}

constexpr int step_pixels = 16;

// quirk: the pitch of the video is the width, and the planes have no gaps: a row of them is as long
// as what is converted of it
// [subpicture_load.video_pitch_counts_the_pixels_and_the_planes_are_one_run]
void load(const machine &machine, const tagMIX_INFO &mix, const keyed_surface &surface,
          const adjustment *by = nullptr) {
    call_rows p = rows_at(mix);
    detail::rows_of_subpicture(sizes_of(mix), surface.bytes_per_pixel, p);
    const bool in_order = keeps_order(machine, p);
    const byte_rows &dst = p.written[0];
    const surface_stores stores(machine, dst.first, dst.pitch, most_bytes(p), in_order,
                                surface.bytes_per_pixel == 2 ? bound_by::loads_and_stores
                                                             : bound_by::stores);
    const byte_rows &y = p.read[0], &u = p.read[1], &v = p.read[2], &alpha = p.read[3];
    for_rows(p, whole_steps(mix.video_pitch, step_pixels), in_order, step_pixels,
             [&](const rows_run &run) {
                 surface.emit({source_row(y, run.row), source_row(u, run.row),
                               source_row(v, run.row), source_row(alpha, run.row),
                               destination_row(dst, run.row), stores, by, run.count, run.next(y),
                               run.next(u), run.next(dst)},
                              run.n, surface.key);
             });
}

void load_adjusted(const machine &machine, const tagMIX_INFO &mix, const keyed_surface &surface) {
    const adjustment by = current_adjustment();
    load(machine, mix, surface, by.unless_neutral());
}

// quirk: every layout that there is means 5-6-5
// [subpicture_load.rgb16_layouts_up_to_3_are_all_taken_for_5_6_5]
bool has_layout(const tagMIX_INFO &mix) {
    return detail::is_rgb16_layout(mix.adjust_info->rgb16_layout);
}

} // namespace

void load_subpicture_yuy2_rgb32(const machine &machine, const call::mix &p) {
    load(machine, *p.record,
         surface_of_bytes(machine.rows.emit_keyed_rgb32, 4, p.record->color_key));
}

void load_subpicture_yuy2_rgb32_ajust(const machine &machine, const call::mix &p) {
    load_adjusted(machine, *p.record,
                  surface_of_bytes(machine.rows.emit_keyed_rgb32, 4, p.record->color_key));
}

void load_subpicture_yuy2_rgb24(const machine &machine, const call::mix &p) {
    load(machine, *p.record,
         surface_of_bytes(machine.rows.emit_keyed_rgb24, 3, p.record->color_key));
}

void load_subpicture_yuy2_rgb24_ajust(const machine &machine, const call::mix &p) {
    load_adjusted(machine, *p.record,
                  surface_of_bytes(machine.rows.emit_keyed_rgb24, 3, p.record->color_key));
}

void load_subpicture_yuy2_rgb16(const machine &machine, const call::mix &p) {
    if (has_layout(*p.record))
        load(machine, *p.record,
             surface_of_words(machine.rows.emit_keyed_rgb16_565, p.record->color_key));
}

void load_subpicture_yuy2_rgb16_ajust(const machine &machine, const call::mix &p) {
    if (has_layout(*p.record))
        load_adjusted(machine, *p.record,
                      surface_of_words(machine.rows.emit_keyed_rgb16_565, p.record->color_key));
}

} // namespace lumalane
