// Alpha planes to and from the blue channel of a drawing surface.
#include "picture/calls.h"
#include "subpicture/row_by_row.h"

namespace lumalane {

namespace {

void transfer(const machine &machine, const call_rows &p, ptrdiff_t pixels, bool in_order,
              ptrdiff_t step, row_kernel::plane_to_surface *kernel, bound_by bound) {
    const byte_rows &dst = p.written[0], &src = p.read[0];
    const surface_stores stores(machine, dst.first, dst.pitch, most_bytes(p), in_order, bound);
    for_rows(p, pixels, in_order, step, [&](const rows_run &run) {
        kernel({source_row(src, run.row), destination_row(dst, run.row), stores, nullptr, run.count,
                run.next(src), run.next(dst)},
               run.n);
    });
}

// `from` is how far on the surface the first byte is that is taken.
template <int step>
void restore_alpha(const machine &machine, const tagMIX_INFO &mix, int bytes_per_pixel, int from,
                   row_kernel::plane_to_surface *kernel) {
    call_rows rows = rows_at(mix);
    detail::rows_of_restored_alpha(sizes_of(mix), step, bytes_per_pixel, from, rows);
    const bool in_order = keeps_order(machine, rows);
    rows.read[0].first += from, rows.read[0].bytes -= from;
    transfer(machine, rows, whole_steps(mix.width, step), in_order, step, kernel,
             bound_by::loads_and_stores);
}

void load_alpha(const machine &machine, const tagMIX_INFO &mix, int bytes_per_pixel,
                row_kernel::plane_to_surface *kernel) {
    constexpr int step = 16;
    call_rows rows = rows_at(mix);
    detail::rows_of_loaded_alpha(sizes_of(mix), step, bytes_per_pixel, rows);
    const bool in_order = keeps_order(machine, rows);
    // Less is read than stored, of RGB16, too.
    transfer(machine, rows, whole_steps(mix.width, step), in_order, step, kernel, bound_by::stores);
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
