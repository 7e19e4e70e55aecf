#include "tests/model/mix.h"
#include "tests/model/models.h"
#include "tests/model/rgb.h"

namespace model {

namespace {

// `weigh(alpha)` makes the weights of the chroma samples, `pack` the bytes of a pixel.
template <class Weigh, class Pack>
auto mixed_by(Weigh weigh, Pack pack) {
    return [=](const pixels<16> &video, const pixels<16> &sub, const samples<16> &alpha) {
        const pixels<16> p = blend_and_adjust(video, sub, alpha, weigh(alpha));
        return pack_run(pack, p.y, p.u, p.v);
    };
}

// Chroma has the weight of the second pixel of its pair. The distances from the first row of a pair
// to the second are rounded down to even ones, those from pair to pair are not.
template <class Pack>
void mix_progressive(memory &m, tagMIX_INFO &mix, Pack pack) {
    const int chroma_pitch = m.field(mix.video_pitch) >> 1;
    const int sub_chroma_pitch = m.field(mix.sub_pitch) >> 1;
    const auto second_weights = [](const samples<16> &alpha) { return every<2>(1, alpha); };
    mix_row_pairs(m, mix, {2 * chroma_pitch, 2 * sub_chroma_pitch, chroma_pitch},
                  mixed_by(second_weights, pack));
}

// Strips of 16 pixels from top to bottom. At its end every pointer goes back by what the record's
// height means for it, whatever rows were made. Chroma has the average of the weights of its pair.
template <class Pack>
void mix_interlaced(memory &m, const tagMIX_INFO &mix, Pack pack) {
    const auto average_weights = [](const samples<16> &alpha) {
        return average(every<2>(0, alpha), every<2>(1, alpha));
    };
    const auto convert = mixed_by(average_weights, pack);
    constexpr int step_bytes = 16 * std::tuple_size_v<decltype(pack(rgb{}))>;

    mix_walk w = walk_of(m, mix);
    const auto times_height = [&](int pitch) { return low32(std::int64_t{pitch} * w.height); };
    const std::intptr_t luma_rewind = times_height(w.video_pitch) >> 1;
    const std::intptr_t chroma_rewind = luma_rewind >> 2;
    const std::intptr_t sub_rewind = times_height(w.sub_pitch);
    const std::intptr_t dst_rewind = times_height(w.dst_pitch);
    const auto mix_group = [&](field_group group) {
        mix_four_rows(m, w, group, convert);
        w.video_y += 2 * std::intptr_t{w.video_pitch};
        w.move_video_chroma(w.video_pitch >> 1);
        w.move_alpha_and_sub_luma(4 * std::intptr_t{w.sub_pitch});
        w.move_sub_chroma(4 * std::intptr_t{w.sub_pitch >> 1});
        w.dst += 4 * std::intptr_t{w.dst_pitch};
    };

    count_down_signed(w.width, 16, [&] {
        if (w.height >= 8)
            count_down_signed(w.height - 4, 4, [&] { mix_group(field_group::inner); });
        mix_group(field_group::last);

        w.video_y -= luma_rewind;
        w.move_video_chroma(-chroma_rewind);
        w.move_alpha_and_sub_luma(-sub_rewind);
        w.move_sub_chroma(-(sub_rewind >> 1));
        w.dst -= dst_rewind;
        w.step(step_bytes);
    });
}

} // namespace

void mix_ayuy2_rgb32_p_ajust(memory &m, LUMALANE_PARAMETERS_mix) {
    mix_progressive(m, *mix, pack_rgb32);
}

void mix_ayuy2_rgb24_p_ajust(memory &m, LUMALANE_PARAMETERS_mix) {
    mix_progressive(m, *mix, pack_rgb24);
}

void mix_ayuy2_rgb16_p_ajust(memory &m, LUMALANE_PARAMETERS_mix) {
    if (const auto layout = read_rgb16_layout(m, *m.field(mix->adjust_info)))
        mix_progressive(m, *mix, [=](rgb pixel) { return pack_rgb16(pixel, *layout); });
}

void mix_ayuy2_rgb32_i_ajust(memory &m, LUMALANE_PARAMETERS_mix) {
    mix_interlaced(m, *mix, pack_rgb32);
}

void mix_ayuy2_rgb24_i_ajust(memory &m, LUMALANE_PARAMETERS_mix) {
    mix_interlaced(m, *mix, pack_rgb24);
}

void mix_ayuy2_rgb16_i_ajust(memory &m, LUMALANE_PARAMETERS_mix) {
    if (const auto layout = read_rgb16_layout(m, *m.field(mix->adjust_info)))
        mix_interlaced(m, *mix, [=](rgb pixel) { return pack_rgb16(pixel, *layout); });
}

} // namespace model
