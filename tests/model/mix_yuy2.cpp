#include "tests/model/mix.h"
#include "tests/model/models.h"
#include "tests/model/yuy2.h"

namespace model {

namespace {

// Chroma has the weight of the second pixel of its pair.
template <std::size_t count>
samples<2 * count> mixed(const pixels<count> &video, const pixels<count> &sub,
                         const samples<count> &alpha) {
    const pixels<count> p = blend_and_adjust(video, sub, alpha, every<2>(1, alpha));
    return pack_yuy2(p.y, p.u, p.v);
}

// Every second pixel, and of the chroma samples every second one.
pixels<8> half(const pixels<16> &p) {
    return {every<2>(1, p.y), every<2>(1, p.u), every<2>(1, p.v)};
}

} // namespace

void mix_ayuy2_yuy2_p_ajust(memory &m, LUMALANE_PARAMETERS_mix) {
    const int video_pitch = m.field(mix->video_pitch);
    mix_row_pairs(m, *mix, {video_pitch, m.field(mix->sub_pitch), video_pitch >> 1}, mixed<16>);
}

// The second row of video luma and the video chroma lie at the subpicture's pitch.
void mix_ayuy2_half_yuy2_p_ajust(memory &m, LUMALANE_PARAMETERS_mix) {
    const int sub_pitch = m.field(mix->sub_pitch);
    mix_row_pairs(m, *mix, {sub_pitch, sub_pitch, sub_pitch >> 1},
                  [](const pixels<16> &video, const pixels<16> &sub, const samples<16> &alpha) {
                      return mixed(half(video), half(sub), every<2>(1, alpha));
                  });
}

// Where nothing is said of a move, it is that of the row pairs above with four rows in a step
// instead of two: every block, the last one included, ends 4 rows further down less the width, the
// video chroma one row further down less half of it. So a width off the step drifts once per block,
// and the record's pointers end below all that was mixed.
void mix_ayuy2_yuy2_i_ajust(memory &m, LUMALANE_PARAMETERS_mix) {
    if (m.field(mix->height) < 4)
        return;
    mix_walk w = walk_of(m, *mix);
    const int half_width = w.width >> 1;
    const auto mix_block = [&](field_group group) {
        count_down(w.width, 16, [&] {
            mix_four_rows(m, w, group, mixed<16>);
            w.step(32);
        });
        w.video_y += low32(2 * std::int64_t{w.video_pitch} - w.width);
        w.move_video_chroma(low32((w.video_pitch >> 1) - std::int64_t{half_width}));
        w.move_alpha_and_sub_luma(low32(4 * std::int64_t{w.sub_pitch} - w.width));
        w.move_sub_chroma(low32(2 * std::int64_t{w.sub_pitch} - half_width));
        w.dst += low32(4 * std::int64_t{w.dst_pitch} - 2 * std::int64_t{w.width});
    };
    if (w.height >= 8)
        count_down(low32(std::int64_t{w.height} - 4), 4, [&] { mix_block(field_group::inner); });
    mix_block(field_group::last);
    w.height = 0; // its last two rows count it down to here
    consume(m, *mix, w);
}

} // namespace model
