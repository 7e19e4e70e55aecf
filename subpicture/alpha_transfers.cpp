// Alpha planes to and from the blue channel of a drawing surface.
#include "picture/calls.h"
#include "subpicture/row_by_row.h"

namespace lumalane {

namespace {

// quirk: the row advance of alpha comes from the pitch of the video
// [alpha_transfer.the_steps_of_alpha_come_from_half_of_video_pitch_beyond_the_width]
byte_rows alpha_rows(const tagMIX_INFO &mix, ptrdiff_t pixels) {
    return rows_with_advance(mix.alpha_plane, rows_of(mix.height), pixels,
                             difference(mix.video_pitch, mix.width) >> 1);
}

byte_rows drawn_surface(const tagMIX_INFO &mix, ptrdiff_t pixels, int bytes_per_pixel) {
    return surface_rows(mix.dst, rows_of(mix.height), pixels, mix.width, mix.dst_pitch,
                        bytes_per_pixel);
}

void transfer(const machine &machine, const row_by_row<1, 1> &p, ptrdiff_t step,
              row_kernel::plane_to_surface *kernel) {
    const byte_rows &dst = p.written[0], &src = p.read[0];
    const bool in_order = machine.in_order || p.order_can_be_observed();
    const surface_stores stores(machine, dst.first, dst.pitch, p.most_bytes(), in_order);
    for_rows(p, in_order, step, [&](const rows_run &run) {
        kernel({source_row(src, run.row), destination_row(dst, run.row), stores, nullptr, run.count,
                run.next(src), run.next(dst)},
               run.n);
    });
}

// `from` is how far on the surface the first byte is that is read.
template <int step>
void restore_alpha(const machine &machine, const tagMIX_INFO &mix, int bytes_per_pixel, int from,
                   row_kernel::plane_to_surface *kernel) {
    const ptrdiff_t pixels = whole_steps(mix.width, step);
    byte_rows surface = drawn_surface(mix, pixels, bytes_per_pixel);
    surface.first += from;
    transfer(machine, {{alpha_rows(mix, pixels)}, {surface}, pixels}, step, kernel);
}

void load_alpha(const machine &machine, const tagMIX_INFO &mix, int bytes_per_pixel,
                row_kernel::plane_to_surface *kernel) {
    constexpr int step = 16;
    const ptrdiff_t pixels = whole_steps(mix.width, step);
    transfer(machine,
             {{drawn_surface(mix, pixels, bytes_per_pixel)}, {alpha_rows(mix, pixels)}, pixels},
             step, kernel);
}

} // namespace

void Restore_RGB32_To_Alpha(const machine &machine, const call::mix &p) {
    restore_alpha<8>(machine, *p.record, 4, 0, machine.rows.restore_alpha_rgb32);
}

void Restore_RGB24_To_Alpha(const machine &machine, const call::mix &p) {
    // quirk: alpha is the blue of the pixel after
    // [alpha_transfer.rgb24_restores_the_lowest_byte_of_the_next_pixel]
    restore_alpha<8>(machine, *p.record, 3, 1, machine.rows.restore_alpha_rgb24);
    // quirk: rows are counted down in the record, here and in load_subpicture_alpha_rgb24()
    // [alpha_transfer.rgb24_counts_the_rows_in_the_record]
    p.record->height = 0;
}

void Restore_RGB16_565_To_Alpha(const machine &machine, const call::mix &p) {
    restore_alpha<16>(machine, *p.record, 2, 0, machine.rows.restore_alpha_rgb16);
}

void load_subpicture_alpha_rgb32(const machine &machine, const call::mix &p) {
    load_alpha(machine, *p.record, 4, machine.rows.load_alpha_rgb32);
}

void load_subpicture_alpha_rgb24(const machine &machine, const call::mix &p) {
    load_alpha(machine, *p.record, 3, machine.rows.load_alpha_rgb24);
    p.record->height = 0;
}

void load_subpicture_alpha_rgb16_565(const machine &machine, const call::mix &p) {
    load_alpha(machine, *p.record, 2, machine.rows.load_alpha_rgb16);
}

} // namespace lumalane
