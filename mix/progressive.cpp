// A subpicture over a progressive picture, onto RGB surfaces.
#include "frame/kernels.h"
#include "frame/mixing.h"

namespace lumalane::LUMALANE_LANES {

namespace {

// Deliberately the lower row of a pair lies a pitch further that is rounded down to an even number.
template <class Sink>
LUMALANE_INLINE void mix_progressive(tagMIX_INFO &mix, Sink sink) {
    const ptrdiff_t chroma_pitch = mix.video_pitch >> 1, sub_chroma_pitch = mix.sub_pitch >> 1;
    with_adjustment([&](auto adjusted) {
        mix_row_pairs(mix, {2 * chroma_pitch, 2 * sub_chroma_pitch, chroma_pitch},
                      make_mixer<planar, weight_of_second_pixel>(
                          adjusted, [=](auto source, auto stage) LUMALANE_INLINE_LAMBDA {
                              return source | stage | to_rgb{} | sink;
                          }));
    });
}

} // namespace

void mix_ayuy2_rgb32_p_ajust(LUMALANE_PARAMETERS_mix) { mix_progressive(*mix, rgb32{}); }

void mix_ayuy2_rgb24_p_ajust(LUMALANE_PARAMETERS_mix) { mix_progressive(*mix, rgb24{}); }

void mix_ayuy2_rgb16_p_ajust(LUMALANE_PARAMETERS_mix) {
    with_rgb16_layout(mix->adjust_info->rgb16_layout,
                      [&](auto rgb16) { mix_progressive(*mix, rgb16); });
}

} // namespace lumalane::LUMALANE_LANES
