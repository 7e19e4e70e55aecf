// What the mixes onto YUY2 and RGB share: 16 pixels of one row of video under a subpicture, in row
// pairs or, of a field that is doubled to a frame, in groups of four rows.
#pragma once

#include "tests/model/adjustment.h"
#include "tests/model/blend.h"
#include "tests/model/count_down.h"
#include "tests/model/lanes.h"
#include "tests/model/memory.h"
#include <lumalane.h>

namespace model {

inline pixels<16> load_pixels(memory &m, address y, address u, address v) {
    return {m.load_run<16>(y), m.load_run<8>(u), m.load_run<8>(v)};
}

// The record of a mix; what moves along the picture moves here.
struct mix_walk {
    int video_pitch, sub_pitch, dst_pitch, width, height;
    address video_y, video_v, video_u, alpha, sub_y, sub_v, sub_u, dst;

    void move_video_chroma(std::intptr_t bytes) {
        video_v += bytes;
        video_u += bytes;
    }
    void move_sub_chroma(std::intptr_t bytes) {
        sub_v += bytes;
        sub_u += bytes;
    }
    void move_alpha_and_sub_luma(std::intptr_t bytes) {
        alpha += bytes;
        sub_y += bytes;
    }
    // On by 16 pixels, which make so many bytes.
    void step(int dst_bytes) {
        video_y += 16;
        move_video_chroma(8);
        move_alpha_and_sub_luma(16);
        move_sub_chroma(8);
        dst += dst_bytes;
    }
};

mix_walk walk_of(memory &, const tagMIX_INFO &);

// Leaves the record of a mix that consumes it: where the walk ended.
void consume(memory &, tagMIX_INFO &, const mix_walk &);

// Each chroma sample has the weight of its own.
template <std::size_t count>
pixels<count> blend_and_adjust(const pixels<count> &video, const pixels<count> &sub,
                               const samples<count> &alpha,
                               const samples<count / 2> &chroma_alpha) {
    return {treat(adjust, blend(video.y, sub.y, alpha), state().luma()),
            treat(adjust, blend(video.u, sub.u, chroma_alpha), state().u()),
            treat(adjust, blend(video.v, sub.v, chroma_alpha), state().v())};
}

// From row to row, where the mixes over row pairs differ.
struct row_pair_pitches {
    int video_luma; // from the first row of a pair to the second
    int sub_luma;   // the same, of the subpicture and its alpha
    int video_chroma;
};

// Row pairs in steps of 16 pixels; both rows of a pair take the same row of video chroma.
// `convert(video, sub, alpha)` makes the bytes of a step of one row. The record is consumed.
template <class Convert>
void mix_row_pairs(memory &m, tagMIX_INFO &mix, row_pair_pitches pitches, Convert convert) {
    constexpr int step_bytes =
        std::tuple_size_v<decltype(convert(pixels<16>{}, pixels<16>{}, samples<16>{}))>;
    mix_walk w = walk_of(m, mix);
    const int sub_chroma_pitch = w.sub_pitch >> 1;
    const int half_width = w.width >> 1;
    const int video_increment = low32(2 * std::int64_t{w.video_pitch} - w.width);
    const int sub_increment = low32(2 * std::int64_t{w.sub_pitch} - w.width);
    const int dst_increment =
        low32(2 * std::int64_t{w.dst_pitch} - step_bytes / 16 * std::int64_t{w.width});

    do {
        count_down(w.width, 16, [&] {
            pixels<16> video = load_pixels(m, w.video_y, w.video_u, w.video_v);
            m.store_run(w.dst, convert(video, load_pixels(m, w.sub_y, w.sub_u, w.sub_v),
                                       m.load_run<16>(w.alpha)));
            video.y = m.load_run<16>(w.video_y + pitches.video_luma);
            m.store_run(w.dst + w.dst_pitch,
                        convert(video,
                                load_pixels(m, w.sub_y + pitches.sub_luma,
                                            w.sub_u + sub_chroma_pitch, w.sub_v + sub_chroma_pitch),
                                m.load_run<16>(w.alpha + pitches.sub_luma)));
            w.step(step_bytes);
        });
        w.video_y += video_increment;
        w.move_video_chroma(low32(std::int64_t{pitches.video_chroma} - half_width));
        w.move_alpha_and_sub_luma(sub_increment);
        w.move_sub_chroma(low32(std::int64_t{w.sub_pitch} - half_width));
        w.dst += dst_increment;
        w.height -= 2;
    } while (w.height > 0);
    consume(m, mix, w);
}

// Whether the field goes on below a group of its rows.
enum class field_group { inner, last };

// Four rows of 16 pixels of a frame, out of two rows of luma and one of chroma of a field and, but
// for the last group, of those below them. The walk stays where it is. `convert` as above.
template <class Convert>
void mix_four_rows(memory &m, const mix_walk &w, field_group group, Convert convert) {
    const int video_chroma_pitch = w.video_pitch >> 1;
    const pixels<16> first = load_pixels(m, w.video_y, w.video_u, w.video_v);
    const samples<16> second_y = m.load_run<16>(w.video_y + w.video_pitch);

    std::array<pixels<16>, 4> video{first, first, first, first};
    video[1].y = average(first.y, second_y);
    video[2].y = video[3].y = second_y;
    if (group == field_group::inner) {
        const pixels<16> third =
            load_pixels(m, w.video_y + 2 * std::intptr_t{w.video_pitch},
                        w.video_u + video_chroma_pitch, w.video_v + video_chroma_pitch);
        video[3].y = average(second_y, third.y);
        video[2].u = video[3].u = average(first.u, third.u);
        video[2].v = video[3].v = average(first.v, third.v);
    }

    for (int row = 0; row < 4; ++row) {
        const std::intptr_t to_row = row * std::intptr_t{w.sub_pitch};
        const std::intptr_t to_chroma_row = row * std::intptr_t{w.sub_pitch >> 1};
        m.store_run(w.dst + row * std::intptr_t{w.dst_pitch},
                    convert(video[row],
                            load_pixels(m, w.sub_y + to_row, w.sub_u + to_chroma_row,
                                        w.sub_v + to_chroma_row),
                            m.load_run<16>(w.alpha + to_row)));
    }
}

} // namespace model
