// A subpicture over a field that is doubled to a frame, onto RGB surfaces.
#include "frame/kernels.h"
#include "frame/mixing.h"

namespace lumalane::LUMALANE_LANES {

namespace {

// Strips of 16 pixels, each from top to bottom. Deliberately a pointer goes back to the next
// strip's top by what `height` means for it, whatever rows were made.
template <class Mixer>
void mix_strips(const tagMIX_INFO &mix, const Mixer &mixer) {
    const field_distances d(mix);
    const int luma_back = product(mix.video_pitch, mix.height) >> 1;
    const int sub_back = product(mix.sub_pitch, mix.height);
    const int dst_back = product(mix.dst_pitch, mix.height);
    mix_position at(mix);
    const auto four_rows = [&](bool last) {
        mix_four_rows<stepwise>(mixer, at, d, 16, last);
        at.move(2 * d.luma, d.chroma, 4 * d.sub, 4 * d.sub_chroma, 4 * d.dst);
    };
    int columns = mix.width;
    do {
        field_groups(mix.height, four_rows);
        at.move(-static_cast<ptrdiff_t>(luma_back), -static_cast<ptrdiff_t>(luma_back >> 2),
                -static_cast<ptrdiff_t>(sub_back), -static_cast<ptrdiff_t>(sub_back >> 1),
                -static_cast<ptrdiff_t>(dst_back));
        at.move_along_row(16, Mixer::bytes_per_pixel);
        columns = difference(columns, 16);
    } while (columns > 0);
}

template <class Put, class Mixer>
void mix_groups(const tagMIX_INFO &mix, const Mixer &mixer) {
    const field_distances d(mix);
    mix_position group(mix);
    field_groups(mix.height, [&](bool last) LUMALANE_INLINE_LAMBDA {
        mix_four_rows<Put>(mixer, group, d, mix.width, last);
        group.move(2 * d.luma, d.chroma, 4 * d.sub, 4 * d.sub_chroma, 4 * d.dst);
    });
}

// The record stays as it is.
template <class Sink>
void mix_interlaced(const tagMIX_INFO &mix, Sink sink) {
    with_adjustment([&](auto adjusted) {
        const auto mixer = make_mixer<planar, average_weight>(
            adjusted, [=](auto source, auto stage)
                          LUMALANE_INLINE_LAMBDA { return source | stage | to_rgb{} | sink; });
        const long long row_bytes = static_cast<long long>(mix.width) * mixer.bytes_per_pixel;
        // Of other heights the strips do not begin where the one before did.
        const bool whole_groups = mix.height == 4 || (mix.height >= 8 && mix.height % 4 == 0);
        if (!whole_groups || !mix_is_regular(mix, field_extents(mix, row_bytes), row_bytes))
            return mix_strips(mix, mixer);
        with_put(mix.dst, mix.dst_pitch, mix.height * row_bytes,
                 [&](auto put) LUMALANE_INLINE_LAMBDA { mix_groups<decltype(put)>(mix, mixer); });
    });
}

} // namespace

void mix_ayuy2_rgb32_i_ajust(LUMALANE_PARAMETERS_mix) { mix_interlaced(*mix, rgb32{}); }

void mix_ayuy2_rgb24_i_ajust(LUMALANE_PARAMETERS_mix) { mix_interlaced(*mix, rgb24{}); }

void mix_ayuy2_rgb16_i_ajust(LUMALANE_PARAMETERS_mix) {
    with_rgb16_layout(mix->adjust_info->rgb16_layout,
                      [&](auto rgb16) { mix_interlaced(*mix, rgb16); });
}

} // namespace lumalane::LUMALANE_LANES
