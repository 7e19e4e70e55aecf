// Rectangles of the colour key, and a marker replaced by it.
#include "picture/calls.h"
#include "subpicture/pattern.h"
#include "subpicture/row_by_row.h"

namespace lumalane {

namespace {

// Two rows at a time: a group of 16 pixels of the upper row, then of the lower one.
void fill_rectangle(const machine &machine, const call::key_fill &p, int bytes_per_pixel,
                    const pattern &with) {
    if (p.height == 0)
        return;
    call_rows rows;
    rows.at(pointer::surface, p.surface);
    detail::rows_of_key_fill({p.width, p.height, p.pitch}, bytes_per_pixel, rows);
    const byte_rows &upper = rows.written[0], &lower = rows.written[1];
    const bool in_order = keeps_order(machine, rows);
    const long long all_bytes = 2 * upper.count * upper.bytes;
    // Nothing is read that would need its place in a large cache, and lines are fetched ahead:
    // around the cache fills of 8 to 33 MB took 1.05 to 1.1 times as long.
    const surface_stores stores(machine, upper.first, upper.pitch | p.pitch, all_bytes, in_order,
                                bound_by::arithmetic);
    const auto fill = [&](unsigned char *dst, ptrdiff_t n) {
        machine.rows.fill(dst, n, with, stores);
    };
    // Rows without gaps are one.
    if (!in_order && p.pitch == upper.bytes && upper.pitch == 2 * upper.bytes &&
        all_bytes <= PTRDIFF_MAX)
        return fill(destination_row(upper, 0), static_cast<ptrdiff_t>(all_bytes));
    const ptrdiff_t bytes = static_cast<ptrdiff_t>(upper.bytes);
    const ptrdiff_t run = in_order ? 16 * bytes_per_pixel : bytes;
    for (long long pair = 0; pair < upper.count; ++pair)
        in_runs(bytes, run, [&](ptrdiff_t x, ptrdiff_t n) {
            fill(destination_row(upper, pair) + x, n);
            fill(destination_row(lower, pair) + x, n);
        });
}

} // namespace

void LoadColorKeyRgb32(const machine &machine, const call::key_fill &p) {
    fill_rectangle(machine, p, 4, pattern_of_pixels(4, p.key));
}

// quirk: the three words of 8 bytes are not in phase with one another
// [colour_key.rgb24_is_out_of_phase_for_any_other_key]
void LoadColorKeyRgb24(const machine &machine, const call::key_fill &p) {
    const unsigned long long k = p.key;
    fill_rectangle(machine, p, 3,
                   pattern_of_words(k >> 8 | k << 16 | k << 40,
                                    k >> 16 | k << 8 | k << 32 | k << 56, k | k << 24 | k << 48));
}

void LoadColorKeyRgb16(const machine &machine, const call::key_fill &p) {
    fill_rectangle(machine, p, 2, pattern_of_pixels(2, p.key));
}

void RelaceMaskWithColorKey(const machine &machine, const call::mask &p) {
    constexpr int step = 16;
    const ptrdiff_t pixels = whole_steps(p.width, step);
    call_rows rows;
    rows.at(pointer::dst, p.dst), rows.at(pointer::mask, p.mask);
    detail::rows_of_mask({p.width, p.pitch, p.height}, rows);
    const bool in_order = keeps_order(machine, rows);
    const byte_rows &dst = rows.written[0], &mask = rows.read[0];
    const auto marker = static_cast<unsigned char>(p.mask_value);
    const auto key = static_cast<unsigned char>(p.key_value);
    for_rows(rows, pixels, in_order, step, [&](const rows_run &run) {
        machine.rows.replace_marker({source_row(mask, run.row), destination_row(dst, run.row),
                                     store_policy::cached, nullptr, run.count, run.next(mask),
                                     run.next(dst)},
                                    run.n, marker, key);
    });
}

} // namespace lumalane
