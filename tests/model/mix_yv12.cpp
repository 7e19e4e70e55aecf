#include "tests/model/adjustment.h"
#include "tests/model/blend.h"
#include "tests/model/count_down.h"
#include "tests/model/lanes.h"
#include "tests/model/models.h"

namespace model {

namespace {

// One plane of the video, the subpicture and the surface, with the ways from the end of a row to
// the next one. What was moved along a row is taken back by `width`, not by the whole steps that it
// was moved: a width off the step drifts.
struct plane {
    address video, sub, alpha, to;
    int width;
    int video_pitch;
    int video_increment, sub_increment, alpha_increment, to_increment;
    adjustment by;
    // Luma has a weight for every sample, chroma that of the second pixel of its pair.
    samples<8> (*weights)(memory &, address);
    int alpha_step;
};

plane luma_plane(memory &m, const tagMIX_INFO &mix) {
    const int width = m.field(mix.width);
    const int video_pitch = m.field(mix.video_pitch);
    const int sub_increment = low32(std::int64_t{m.field(mix.sub_pitch)} - width);
    return {
        .video = address_of(m.field(mix.video_y)),
        .sub = address_of(m.field(mix.sub_y)),
        .alpha = address_of(m.field(mix.alpha_plane)),
        .to = address_of(m.field(mix.dst)),
        .width = width,
        .video_pitch = video_pitch,
        .video_increment = low32(std::int64_t{video_pitch} - width),
        .sub_increment = sub_increment,
        .alpha_increment = sub_increment,
        .to_increment = low32(std::int64_t{m.field(mix.dst_pitch)} - width),
        .by = state().luma(),
        .weights = [](memory &memory, address alpha) { return memory.load_run<8>(alpha); },
        .alpha_step = 8,
    };
}

// Of the subpicture's rows of alpha and chroma every second one is skipped.
plane chroma_plane(memory &m, const tagMIX_INFO &mix, address video, address sub, address to,
                   adjustment by) {
    const int width = m.field(mix.width);
    const int video_pitch = m.field(mix.video_pitch);
    const std::int64_t sub_pitch = m.field(mix.sub_pitch);
    return {
        .video = video,
        .sub = sub,
        .alpha = address_of(m.field(mix.alpha_plane)),
        .to = to,
        .width = width >> 1,
        .video_pitch = video_pitch >> 1,
        .video_increment = low32(std::int64_t{video_pitch} - width) >> 1,
        .sub_increment = low32(sub_pitch - (width >> 1)),
        .alpha_increment = low32(2 * sub_pitch - width),
        .to_increment = low32(std::int64_t{m.field(mix.dst_pitch)} - width) >> 1,
        .by = by,
        .weights = [](memory &memory,
                      address alpha) { return every<2>(1, memory.load_run<16>(alpha)); },
        .alpha_step = 16,
    };
}

// A row of the surface. `video(at)` makes 8 samples of the video; its pointer is left at the row's
// end.
template <class Video>
void mix_row(memory &m, plane &p, treatment *treated, Video video) {
    count_down(p.width, 8, [&] {
        const auto blended = blend(video(p.video), m.load_run<8>(p.sub), p.weights(m, p.alpha));
        m.store_run(p.to, treat(treated, blended, p.by));
        p.video += 8;
        p.sub += 8;
        p.alpha += p.alpha_step;
        p.to += 8;
    });
    p.sub += p.sub_increment;
    p.alpha += p.alpha_increment;
    p.to += p.to_increment;
}

void mix_rows(memory &m, plane p, int rows, treatment *treated) {
    count_down(rows, 1, [&] {
        mix_row(m, p, treated, [&](address at) { return m.load_run<8>(at); });
        p.video += p.video_increment;
    });
}

// The second row of each pair lies between a row of the field and the one below it.
void mix_doubled_rows(memory &m, plane p, int rows, treatment *treated) {
    count_down(rows, 2, [&] {
        mix_row(m, p, treated, [&](address at) { return m.load_run<8>(at); });
        // Back to the start of the row like everything else: by the width.
        p.video -= p.width;
        mix_row(m, p, treated, [&](address at) {
            return average(m.load_run<8>(at), m.load_run<8>(at + p.video_pitch));
        });
        p.video += p.video_increment;
    });
}

// Luma, and with half of the record's height V and then U.
template <class Rows>
void mix_planes(memory &m, tagMIX_INFO &mix, treatment *treated, Rows rows) {
    const plane y = luma_plane(m, mix);
    const plane v =
        chroma_plane(m, mix, address_of(m.field(mix.video_v)), address_of(m.field(mix.sub_v)),
                     address_of(m.field(mix.dst_v)), state().v());
    const plane u =
        chroma_plane(m, mix, address_of(m.field(mix.video_u)), address_of(m.field(mix.sub_u)),
                     address_of(m.field(mix.dst_u)), state().u());
    rows(m, y, m.field(mix.height), treated);
    m.set_field(mix.height, static_cast<int>(static_cast<unsigned>(m.field(mix.height)) >> 1));
    rows(m, v, m.field(mix.height), treated);
    rows(m, u, m.field(mix.height), treated);
}

} // namespace

void mix_ayv12_yv12_p(memory &m, LUMALANE_PARAMETERS_mix) {
    mix_planes(m, *mix, as_it_is, mix_rows);
}

void mix_ayv12_yv12_p_ajust(memory &m, LUMALANE_PARAMETERS_mix) {
    mix_planes(m, *mix, adjust, mix_rows);
}

void mix_ayv12_yv12_i(memory &m, LUMALANE_PARAMETERS_mix) {
    mix_planes(m, *mix, as_it_is, mix_doubled_rows);
    m.set_field(mix->width, m.field(mix->width) >> 1);
}

} // namespace model
