// A subpicture over the video, onto YUY2 surfaces.
#include "frame/kernels.h"
#include "frame/mixing.h"

namespace lumalane::LUMALANE_LANES {

namespace {

// The second of every two pixels, and of every two chroma samples.
struct second_of_two {
    static constexpr bool is_part = true;

    template <int n>
    LUMALANE_INLINE wide_chroma_pairs<n / 2> chroma(chroma_pairs<n> samples) const {
        return {second_pairs(samples.uv)};
    }

    template <int n>
    LUMALANE_INLINE words<n / 2> luma(bytes<n> samples, const wide_chroma_pairs<n / 2> &) const {
        return odd(samples);
    }
};

// Blocks of four rows. Where nothing else is promised a pointer moves from block to block as from
// pair to pair in the progressive mix: by its rows less the width.
template <class Put, class Mixer>
void mix_blocks(tagMIX_INFO &mix, const Mixer &mixer) {
    constexpr int size = Mixer::bytes_per_pixel;
    const field_distances d(mix);
    const int width = mix.width, half_width = width >> 1;
    const int luma_rest = difference(twice(mix.video_pitch), width);
    const int chroma_rest = difference(mix.video_pitch >> 1, half_width);
    const int sub_rest = difference(twice(twice(mix.sub_pitch)), width);
    const int sub_chroma_rest = difference(twice(mix.sub_pitch), half_width);
    const int dst_rest = difference(twice(twice(mix.dst_pitch)), product(width, size));
    mix_position at(mix);
    field_groups(mix.height, [&](bool last) LUMALANE_INLINE_LAMBDA {
        at.move_along_row(mix_four_rows<Put>(mixer, at, d, width, last), size);
        at.move(luma_rest, chroma_rest, sub_rest, sub_chroma_rest, dst_rest);
    });
    at.consume(mix, 0);
}

} // namespace

void mix_ayuy2_yuy2_p_ajust(LUMALANE_PARAMETERS_mix) {
    with_adjustment([&](auto adjusted) {
        mix_row_pairs(*mix, {mix->video_pitch, mix->sub_pitch, mix->video_pitch >> 1},
                      make_mixer<planar_pairs, weight_of_second_pixel>(
                          adjusted, [](auto source, auto stage) LUMALANE_INLINE_LAMBDA {
                              return source | stage | yuy2{};
                          }));
    });
}

// Deliberately the lower row of the video's luma and its chroma rows lie at the subpicture's pitch.
void mix_ayuy2_half_yuy2_p_ajust(LUMALANE_PARAMETERS_mix) {
    with_adjustment([&](auto adjusted) {
        mix_row_pairs(*mix, {mix->sub_pitch, mix->sub_pitch, mix->sub_pitch >> 1},
                      make_mixer<planar_pairs, weight_of_second_pixel>(
                          adjusted, [](auto source, auto stage) LUMALANE_INLINE_LAMBDA {
                              return source | second_of_two{} | stage | packed_yuy2<1>{};
                          }));
    });
}

void mix_ayuy2_yuy2_i_ajust(LUMALANE_PARAMETERS_mix) {
    if (mix->height < 4)
        return;
    with_adjustment([&](auto adjusted) {
        const auto mixer = make_mixer<planar_pairs, weight_of_second_pixel>(
            adjusted,
            [](auto source, auto stage) LUMALANE_INLINE_LAMBDA { return source | stage | yuy2{}; });
        const long long row_bytes = static_cast<long long>(mix->width) * mixer.bytes_per_pixel;
        const bool regular = mix_is_regular(*mix, field_extents(*mix, row_bytes), row_bytes);
        with_put_if(
            regular, mix->dst, mix->dst_pitch, 4 * field_group_count(mix->height) * row_bytes,
            [&](auto put) LUMALANE_INLINE_LAMBDA { mix_blocks<decltype(put)>(*mix, mixer); });
    });
}

} // namespace lumalane::LUMALANE_LANES
