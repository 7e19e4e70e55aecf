// A subpicture over a field that is doubled to a frame, onto RGB and YUY2 surfaces.
#include "mix/row_mixer.h"
#include "picture/adjustment.h"
#include "picture/calls.h"
#include "picture/geometry.h"
#include "picture/stores.h"
#include "picture/told_rows.h"

namespace lumalane {

namespace {

constexpr int step = 16;

// Where the groups of four rows are.
struct mix_groups {
    mix_place first;
    int bytes_per_pixel;
    ptrdiff_t groups, pixels;
    mix_distance row;  // from row to row
    mix_distance next; // from group to group

    mix_groups(const tagMIX_INFO &mix, int bytes_per_pixel_, ptrdiff_t pixels_)
        : first(start_of(mix)), bytes_per_pixel(bytes_per_pixel_),
          groups(static_cast<ptrdiff_t>(detail::field_groups_of(mix.height))),
          pixels(pixels_), row{mix.video_pitch, mix.video_pitch >> 1, mix.sub_pitch,
                               mix.sub_pitch >> 1, mix.dst_pitch} {
        next = {times(2, row.luma), row.chroma, times(4, row.sub), times(4, row.sub_chroma),
                times(4, row.dst)};
    }

    // A field row, its average with the next one, the next row, its average with the one after it;
    // the lower two with the average of their chroma row and the next one. The last four rows of a
    // picture read nothing below the field: the last row is the one above it again, and their chroma
    // is that of one row.

    mixed_pair upper_pair(const mix_place &group) const {
        return {group, {row.luma, 0, row.sub, row.sub_chroma, row.dst}, lower_row::average};
    }

    mixed_pair lower_pair(const mix_place &group) const {
        return {group + to_lower_pair(), row, lower_row::average};
    }

    mixed_pair last_pair(const mix_place &group) const {
        return {
            group + to_lower_pair(), {0, 0, row.sub, row.sub_chroma, row.dst}, lower_row::itself};
    }

private:
    mix_distance to_lower_pair() const {
        return {row.luma, 0, 2 * row.sub, 2 * row.sub_chroma, 2 * row.dst};
    }
};

void mix_step(const row_mixer &mixer, const mix_groups &p, const mix_place &at, bool last) {
    mixer.mix_in_order(p.upper_pair(at));
    mixer.mix_in_order(last ? p.last_pair(at) : p.lower_pair(at));
}

// Group by group. Returns where they end.
mix_place mix_by_groups(const row_mixer &mixer, const mix_groups &p, bool in_order) {
    const mix_place last = p.first + (p.groups - 1) * p.next;
    if (in_order) {
        mix_place group = p.first;
        for (ptrdiff_t left = p.groups; left > 0; --left) {
            for (ptrdiff_t x = 0; x < p.pixels; x += step)
                mix_step(mixer, p, group + along_row(x, p.bytes_per_pixel), left == 1);
            group = group + p.next;
        }
    } else {
        mixer.mix(p.upper_pair(p.first), p.lower_pair(p.first), p.next, p.groups - 1, p.pixels);
        mixer.mix(p.upper_pair(last), p.last_pair(last), p.next, 1, p.pixels);
    }
    return last + p.next;
}

// ---- Onto RGB: columns of 16 pixels, each from top to bottom; the record stays as it is ---------

// quirk: a pointer goes back to the next column's top by what `height` means for it, whatever rows
// were made [mixes.rgb_of_a_field_starts_later_strips_lower_where_more_rows_were_made_than_the_height].
mix_distance rewind_of(const tagMIX_INFO &mix) {
    const int luma = product(mix.video_pitch, mix.height) >> 1;
    const int sub = product(mix.sub_pitch, mix.height);
    return {luma, luma >> 2, sub, sub >> 1, product(mix.dst_pitch, mix.height)};
}

// A second loop: the promised order is another one here.
void mix_by_columns(const row_mixer &mixer, const mix_groups &p, const mix_distance &rewind) {
    mix_place at = p.first;
    for (ptrdiff_t x = 0; x < p.pixels; x += step) {
        for (ptrdiff_t left = p.groups; left > 0; --left) {
            mix_step(mixer, p, at, left == 1);
            at = at + p.next;
        }
        at = at + -1 * rewind + along_row(step, p.bytes_per_pixel);
    }
}

void mix_onto_rgb(const machine &machine, const tagMIX_INFO &mix,
                  const planar_to_surface &surface) {
    if (!surface.emit)
        return;
    const ptrdiff_t pixels = whole_steps_signed(mix.width, step);
    const mix_groups p(mix, surface.bytes_per_pixel, pixels);
    const mix_distance rewind = rewind_of(mix);
    const bool in_order = keeps_order(machine, mix, [&](call_rows &rows) {
        detail::rows_of_mix_columns(sizes_of(mix), surface.bytes_per_pixel, rows);
    });
    const surface_stores stores = surface_stores::of_mix(
        machine, p.first.dst, mix.dst_pitch, 4LL * p.groups * pixels * p.bytes_per_pixel, in_order,
        bound_by::arithmetic);
    const adjustment by = current_adjustment();
    const row_mixer mixer(machine, {surface, machine.rows.mix_pairs_by_averages, true},
                          by.unless_neutral(), stores);
    if (in_order)
        mix_by_columns(mixer, p, rewind);
    else
        mix_by_groups(mixer, p, false);
}

} // namespace

void mix_ayuy2_rgb32_i_ajust(const machine &machine, const call::mix &p) {
    mix_onto_rgb(machine, *p.record, planar_to_rgb32(machine.rows));
}

void mix_ayuy2_rgb24_i_ajust(const machine &machine, const call::mix &p) {
    mix_onto_rgb(machine, *p.record, planar_to_rgb24(machine.rows));
}

void mix_ayuy2_rgb16_i_ajust(const machine &machine, const call::mix &p) {
    mix_onto_rgb(machine, *p.record,
                 planar_to_rgb16(machine.rows, p.record->adjust_info->rgb16_layout));
}

// ---- Onto YUY2: group by group -------------------------------------------------------------------

void mix_ayuy2_yuy2_i_ajust(const machine &machine, const call::mix &call) {
    tagMIX_INFO &mix = *call.record;
    if (mix.height < detail::least_height::mix_ayuy2_yuy2_i_ajust)
        return;
    const planar_to_surface surface = planar_to_yuy2(machine.rows);
    mix_groups p(mix, surface.bytes_per_pixel, whole_steps(mix.width, step));
    // What a step goes past a row's end, every later group begins further right.
    const int half_width = mix.width >> 1;
    p.next = {difference(twice(mix.video_pitch), mix.width),
              difference(mix.video_pitch >> 1, half_width),
              difference(twice(twice(mix.sub_pitch)), mix.width),
              difference(twice(mix.sub_pitch), half_width),
              difference(twice(twice(mix.dst_pitch)), product(mix.width, p.bytes_per_pixel))};
    p.next = p.next + along_row(p.pixels, p.bytes_per_pixel);

    const bool in_order = keeps_order(
        machine, mix, [&](call_rows &rows) { detail::rows_of_mix_groups(sizes_of(mix), rows); });
    const surface_stores stores = surface_stores::of_mix(
        machine, p.first.dst, p.row.dst | p.next.dst, 4LL * p.groups * p.pixels * p.bytes_per_pixel,
        in_order, bound_by::arithmetic);
    const adjustment by = current_adjustment();
    const row_mixer mixer(machine, {surface, machine.rows.mix_pairs_to_yuy2, false},
                          by.unless_neutral(), stores);
    consume(mix, mix_by_groups(mixer, p, in_order), 0);
}

} // namespace lumalane
