// A subpicture over a progressive picture, onto RGB and YUY2 surfaces.
#include "mix/row_mixer.h"
#include "picture/adjustment.h"
#include "picture/calls.h"
#include "picture/geometry.h"
#include "picture/stores.h"
#include "picture/told_rows.h"

namespace lumalane {

namespace {

constexpr int step = 16;

// Where the pairs of rows are. Rows have whole steps of 16 pixels; what a step goes past a row's
// end, every later pair begins further right.
struct mix_pairs {
    mix_place first;
    int bytes_per_pixel;
    ptrdiff_t pairs, pixels;
    mix_distance below; // from the upper row of a pair to the lower one
    mix_distance next;  // from pair to pair

    mix_pairs(const tagMIX_INFO &mix, int bytes_per_pixel_, const detail::pair_distances &d)
        : first(start_of(mix)), bytes_per_pixel(bytes_per_pixel_),
          pairs(mix.height > 0 ? static_cast<ptrdiff_t>(steps_of(mix.height, 2)) : 1),
          pixels(whole_steps(mix.width, step)), below{static_cast<ptrdiff_t>(d.luma), 0,
                                                      static_cast<ptrdiff_t>(d.sub),
                                                      mix.sub_pitch >> 1, mix.dst_pitch},
          next{difference(twice(mix.video_pitch), mix.width),
               static_cast<ptrdiff_t>(d.chroma) - (mix.width >> 1),
               difference(twice(mix.sub_pitch), mix.width),
               difference(mix.sub_pitch, mix.width >> 1),
               difference(twice(mix.dst_pitch), product(mix.width, bytes_per_pixel))} {
        next = next + along_row(pixels, bytes_per_pixel);
    }
};

void mix_row_pairs(const machine &machine, tagMIX_INFO &mix, const mixed_to_surface &surface,
                   const detail::pair_distances &d) {
    const mix_pairs p(mix, surface.bytes_per_pixel, d);
    const bool in_order = keeps_order(machine, mix, [&](call_rows &rows) {
        detail::rows_of_mix_pairs(sizes_of(mix), surface.bytes_per_pixel, d, rows);
    });
    const surface_stores stores = surface_stores::of_mix(
        machine, p.first.dst, p.below.dst | p.next.dst,
        2LL * p.pairs * p.pixels * p.bytes_per_pixel, in_order, surface.bound);
    const adjustment by = current_adjustment();
    const row_mixer mixer(machine, surface, by.unless_neutral(), stores);
    if (in_order) {
        for (ptrdiff_t i = 0; i < p.pairs; ++i)
            for (ptrdiff_t x = 0; x < p.pixels; x += step)
                mixer.mix_in_order({p.first + i * p.next + along_row(x, p.bytes_per_pixel), p.below,
                                    lower_row::itself});
    } else {
        mixer.mix({p.first, p.below, lower_row::itself}, p.next, p.pairs, p.pixels);
    }
    consume(mix, p.first + p.pairs * p.next, difference(mix.height, static_cast<int>(2 * p.pairs)));
}

void mix_onto_rgb(const machine &machine, tagMIX_INFO &mix, const planar_to_surface &surface) {
    if (surface.emit)
        mix_row_pairs(machine, mix, {surface, machine.rows.mix_pairs, false},
                      detail::mix_rgb_distances(sizes_of(mix)));
}

} // namespace

void mix_ayuy2_rgb32_p_ajust(const machine &machine, const call::mix &p) {
    mix_onto_rgb(machine, *p.record, planar_to_rgb32(machine.rows));
}

void mix_ayuy2_rgb24_p_ajust(const machine &machine, const call::mix &p) {
    mix_onto_rgb(machine, *p.record, planar_to_rgb24(machine.rows));
}

void mix_ayuy2_rgb16_p_ajust(const machine &machine, const call::mix &p) {
    mix_onto_rgb(machine, *p.record,
                 planar_to_rgb16(machine.rows, p.record->adjust_info->rgb16_layout));
}

void mix_ayuy2_yuy2_p_ajust(const machine &machine, const call::mix &p) {
    tagMIX_INFO &mix = *p.record;
    mix_row_pairs(machine, mix,
                  {planar_to_yuy2(machine.rows), machine.rows.mix_pairs_to_yuy2, false},
                  detail::mix_yuy2_distances(sizes_of(mix)));
}

void mix_ayuy2_half_yuy2_p_ajust(const machine &machine, const call::mix &p) {
    tagMIX_INFO &mix = *p.record;
    mix_row_pairs(machine, mix,
                  {{machine.rows.emit_odd_yuy2, 1, on_wide_vectors(machine.rows, bound_by::loads)},
                   machine.rows.mix_pairs_to_odd_yuy2,
                   false},
                  detail::mix_half_yuy2_distances(sizes_of(mix)));
}

} // namespace lumalane
