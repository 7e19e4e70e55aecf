// What the mixes promise at the edges of their arguments, one promise per test.
#include <algorithm>
#include <cstring>

#include "tests/edge_cases.h"

namespace {

using tests::bytes;
using tests::runs;

using mix_function = void (*)(tagMIX_INFO *);

// A subpicture beside the video of the fixture; everything is in rows of 256 bytes, half of it for
// chroma, and rows of 1024 on the surface (512 for its chroma).
class mixes : public tests::picture_test {
protected:
    static constexpr int pitch = 256, chroma_pitch = pitch / 2, dst_pitch = 1024;

    bytes alpha = bytes(1 << 16), sub_y = bytes(1 << 16), sub_u = bytes(1 << 16),
          sub_v = bytes(1 << 16);
    bytes dst_u = bytes(1 << 16, untouched), dst_v = bytes(1 << 16, untouched);
    tagMIX_INFO mix{};

    void SetUp() override {
        tests::picture_test::SetUp();
        set_contrast(neutral);
    }

    static void assign(bytes &plane, int sample) {
        plane.assign(plane.size(), static_cast<unsigned char>(sample));
    }
    void fill_sub(int y_sample, int u_sample, int v_sample) {
        assign(sub_y, y_sample);
        assign(sub_u, u_sample);
        assign(sub_v, v_sample);
    }
    void forget() {
        wipe();
        assign(dst_u, untouched);
        assign(dst_v, untouched);
    }

    // Fills the record.
    void prepare(int width, int height) {
        mix = {.video_pitch = pitch,
               .sub_pitch = pitch,
               .dst_pitch = dst_pitch,
               .width = width,
               .height = height,
               .video_y = y.data(),
               .video_v = v.data(),
               .video_u = u.data(),
               .alpha_plane = alpha.data(),
               .sub_y = sub_y.data(),
               .sub_v = sub_v.data(),
               .sub_u = sub_u.data(),
               .dst = dst.data(),
               .dst_u = dst_u.data(),
               .dst_v = dst_v.data(),
               .color_key = 0,
               .reserved1 = 0,
               .reserved2 = 0,
               .adjust_info = nullptr};
    }
    void run(mix_function function, int width, int height) {
        prepare(width, height);
        function(&mix);
    }

    // The pixel of an RGB32 surface.
    bytes pixel(int row, int x) const { return written(4, row * dst_pitch + 4 * x); }
    // Of a YUY2 surface: Y, U, Y and V of a pair.
    bytes pair(int row, int x) const { return written(4, row * dst_pitch + 2 * x); }

    // Rows of luma that can be told apart: 10, 50, 90 ..., and rows of chroma: 60, 80, 100 ...
    void number_video_rows() {
        for (int row = 0; row < 6; ++row) {
            fill_row(y, row, pitch, 10 + 40 * row);
            fill_row(u, row, chroma_pitch, 60 + 20 * row);
            fill_row(v, row, chroma_pitch, 61 + 20 * row);
        }
    }
};

INSTANTIATE_ON_EACH_TARGET(mixes);

const mix_function rgb32_mixes[] = {mix_ayuy2_rgb32_p_ajust, mix_ayuy2_rgb32_i_ajust};
const mix_function rgb16_mixes[] = {mix_ayuy2_rgb16_p_ajust, mix_ayuy2_rgb16_i_ajust};
const mix_function yuy2_mixes[] = {mix_ayuy2_yuy2_p_ajust, mix_ayuy2_half_yuy2_p_ajust,
                                   mix_ayuy2_yuy2_i_ajust};
const mix_function yv12_mixes[] = {mix_ayv12_yv12_p, mix_ayv12_yv12_p_ajust, mix_ayv12_yv12_i};

// ---- The record --------------------------------------------------------------------------------

TEST_P(mixes, what_the_reserved_fields_hold_makes_no_difference) {
    fill(100, 90, 160);
    fill_sub(200, 30, 220);
    assign(alpha, 5);
    for (const mix_function function : {mix_ayuy2_rgb32_p_ajust, mix_ayuy2_yuy2_i_ajust,
                                        mix_ayv12_yv12_p, mix_ayuy2_rgb24_i_ajust}) {
        forget();
        run(function, 32, 8);
        const bytes expected = dst;
        forget();
        prepare(32, 8);
        mix.reserved1 = -1;
        mix.reserved2 = 0x12345678;
        function(&mix);
        EXPECT_EQ(dst, expected);
        EXPECT_EQ(mix.reserved1, -1);
        EXPECT_EQ(mix.reserved2, 0x12345678);
    }
}

TEST_P(mixes, the_progressive_ones_leave_the_record_one_row_pair_past_the_last) {
    for (const mix_function function :
         {mix_ayuy2_rgb32_p_ajust, mix_ayuy2_rgb24_p_ajust, mix_ayuy2_rgb16_p_ajust,
          mix_ayuy2_yuy2_p_ajust, mix_ayuy2_half_yuy2_p_ajust}) {
        prepare(32, 6);
        mix.adjust_info = &info;
        function(&mix);
        EXPECT_EQ(mix.height, 0);
        EXPECT_EQ(mix.video_v - v.data(), 3 * chroma_pitch);
        EXPECT_EQ(mix.video_u - u.data(), 3 * chroma_pitch);
        EXPECT_EQ(mix.alpha_plane - alpha.data(), 6 * pitch);
        EXPECT_EQ(mix.sub_y - sub_y.data(), 6 * pitch);
        EXPECT_EQ(mix.sub_v - sub_v.data(), 6 * chroma_pitch);
        EXPECT_EQ(mix.sub_u - sub_u.data(), 6 * chroma_pitch);
        // The rest is as it was.
        EXPECT_EQ(mix.video_y, y.data());
        EXPECT_EQ(mix.dst, dst.data());
        EXPECT_EQ(mix.dst_u, dst_u.data());
        EXPECT_EQ(mix.width, 32);
        EXPECT_EQ(mix.video_pitch, pitch);
        EXPECT_EQ(mix.sub_pitch, pitch);
        EXPECT_EQ(mix.dst_pitch, dst_pitch);
        EXPECT_EQ(mix.adjust_info, &info);
    }
}

TEST_P(mixes, a_consumed_record_goes_on_where_the_first_call_stopped) {
    number_video_rows();
    run(mix_ayuy2_yuy2_p_ajust, 16, 2);
    EXPECT_EQ(pair(0, 0), (bytes{10, 60, 10, 61}));
    // One more row pair, for a height of 0: luma from the top, chroma from its second row.
    mix_ayuy2_yuy2_p_ajust(&mix);
    EXPECT_EQ(pair(0, 0), (bytes{10, 80, 10, 81}));
    EXPECT_EQ(mix.height, -2);
}

TEST_P(mixes, an_odd_height_leaves_minus_1_in_the_record) {
    for (const mix_function function :
         {mix_ayuy2_rgb32_p_ajust, mix_ayuy2_yuy2_p_ajust, mix_ayuy2_half_yuy2_p_ajust}) {
        run(function, 16, 5);
        EXPECT_EQ(mix.height, -1);
    }
}

TEST_P(mixes, the_yv12_ones_halve_the_height_and_the_doubling_one_the_width_too) {
    for (const mix_function function : yv12_mixes) {
        for (const int height : {8, 5}) {
            run(function, 32, height);
            EXPECT_EQ(mix.height, height / 2);
            EXPECT_EQ(mix.width, function == mix_ayv12_yv12_i ? 16 : 32);
            EXPECT_EQ(mix.video_y, y.data());
            EXPECT_EQ(mix.video_v, v.data());
            EXPECT_EQ(mix.alpha_plane, alpha.data());
            EXPECT_EQ(mix.sub_u, sub_u.data());
            EXPECT_EQ(mix.dst_v, dst_v.data());
        }
    }
}

TEST_P(mixes, the_interlaced_rgb_ones_leave_the_record_alone) {
    for (const mix_function function :
         {mix_ayuy2_rgb32_i_ajust, mix_ayuy2_rgb24_i_ajust, mix_ayuy2_rgb16_i_ajust}) {
        forget();
        fill(100, 90, 160);
        number_video_rows();
        fill_sub(200, 30, 220);
        assign(alpha, 7);
        prepare(32, 8);
        mix.adjust_info = &info;
        const tagMIX_INFO before = mix;
        function(&mix);
        EXPECT_EQ(std::memcmp(&mix, &before, sizeof mix), 0);
        // So a second call makes the same picture.
        const bytes first = dst;
        forget();
        function(&mix);
        EXPECT_EQ(dst, first);
    }
}

TEST_P(mixes, rgb16_layouts_out_of_range_leave_surface_and_record_untouched) {
    fill(235, 128, 128);
    for (const mix_function function : rgb16_mixes)
        for (const unsigned layout : {4u, ~0u}) {
            prepare(16, 8);
            info.rgb16_layout = layout;
            mix.adjust_info = &info;
            const tagMIX_INFO before = mix;
            function(&mix);
            EXPECT_EQ(written_runs(), runs{}) << "layout " << layout;
            EXPECT_EQ(std::memcmp(&mix, &before, sizeof mix), 0) << "layout " << layout;
        }
}

TEST_P(mixes, rgb16_layout_1_alone_has_bit_0_clear) {
    fill(255, 128, 128);
    for (const mix_function function : rgb16_mixes)
        for (unsigned layout = 0; layout < 4; ++layout) {
            prepare(16, 8);
            info.rgb16_layout = layout;
            mix.adjust_info = &info;
            function(&mix);
            EXPECT_EQ(dst[0] | dst[1] << 8, layout == 1 ? 0xfffe : 0xffff) << "layout " << layout;
        }
}

// ---- The blend ---------------------------------------------------------------------------------

TEST_P(mixes, alpha_0_is_the_video_and_16_and_more_the_subpicture) {
    fill(200, 90, 160);
    fill_sub(100, 30, 220);
    for (const auto &[weight, colour] : {std::pair{0, bytes{200, 90, 200, 160}},
                                         {16, bytes{100, 30, 100, 220}},
                                         {17, bytes{100, 30, 100, 220}},
                                         {128, bytes{100, 30, 100, 220}},
                                         {255, bytes{100, 30, 100, 220}}}) {
        assign(alpha, weight);
        for (const mix_function function : yuy2_mixes) {
            forget();
            run(function, 32, 8);
            EXPECT_EQ(pair(0, 0), colour) << "alpha " << weight;
        }
        for (const mix_function function : yv12_mixes) {
            forget();
            run(function, 32, 8);
            EXPECT_EQ((bytes{dst[0], dst_u[0], dst[0], dst_v[0]}), colour) << "alpha " << weight;
        }
        for (const mix_function function : rgb32_mixes) {
            forget();
            run(function, 32, 8);
            EXPECT_EQ(pixel(0, 0), rgb32(colour[0], colour[1], colour[3])) << "alpha " << weight;
        }
    }
}

TEST_P(mixes, weights_between_truncate) {
    fill(200, 200, 200);
    fill_sub(100, 100, 100);
    for (const auto &[weight, sample] : {std::pair{8, 150}, {4, 175}, {1, 193}, {15, 106}}) {
        const auto expected = static_cast<unsigned char>(sample);
        assign(alpha, weight);
        for (const mix_function function : yuy2_mixes) {
            run(function, 32, 8);
            EXPECT_EQ(pair(0, 0), bytes(4, expected)) << "alpha " << weight;
        }
        for (const mix_function function : yv12_mixes) {
            run(function, 32, 8);
            EXPECT_EQ((bytes{dst[0], dst_u[0], dst_v[0]}), bytes(3, expected))
                << "alpha " << weight;
        }
        for (const mix_function function : rgb32_mixes) {
            run(function, 32, 8);
            EXPECT_EQ(pixel(0, 0), rgb32(sample, sample, sample)) << "alpha " << weight;
        }
    }
}

TEST_P(mixes, the_subpicture_is_adjusted_with_the_video_and_the_chroma_offsets_are_not_crossed) {
    fill(100, 100, 100);
    fill_sub(50, 50, 50);
    set_contrast({64, 32, 5, 10, -20, 0, 0, 0});
    for (const auto &[weight, sample] : {std::pair{0, 100}, {16, 50}, {8, 75}}) {
        assign(alpha, weight);
        const int half_gain = (sample * 32 + 32) >> 6;
        const bytes expected{static_cast<unsigned char>(sample + 5),
                             static_cast<unsigned char>(half_gain + 10),
                             static_cast<unsigned char>(half_gain - 20)};
        for (const mix_function function : yuy2_mixes) {
            run(function, 32, 8);
            EXPECT_EQ((bytes{dst[0], dst[1], dst[3]}), expected) << "alpha " << weight;
        }
        run(mix_ayv12_yv12_p_ajust, 32, 8);
        EXPECT_EQ((bytes{dst[0], dst_u[0], dst_v[0]}), expected) << "alpha " << weight;
        for (const mix_function function : rgb32_mixes) {
            run(function, 32, 8);
            EXPECT_EQ(pixel(0, 0), rgb32(expected[0], expected[1], expected[2]))
                << "alpha " << weight;
        }
    }
}

TEST_P(mixes, two_of_the_yv12_ones_do_not_adjust) {
    fill(100, 90, 160);
    set_contrast({10, 10, 99, 99, 99, 0, 0, 0});
    for (const mix_function function : {mix_ayv12_yv12_p, mix_ayv12_yv12_i}) {
        run(function, 16, 4);
        EXPECT_EQ((bytes{dst[0], dst_u[0], dst_v[0]}), (bytes{100, 90, 160}));
    }
}

// ---- YV12 --------------------------------------------------------------------------------------

TEST_P(mixes, yv12_chroma_has_the_alpha_of_the_second_pixel_in_the_first_row) {
    fill(100, 90, 160);
    fill_sub(50, 30, 220);
    for (const mix_function function : yv12_mixes) {
        // Only first pixels, and second ones in second rows only.
        assign(alpha, 0);
        for (int row = 0; row < 4; ++row)
            for (int x = row % 2; x < 32; x += 2)
                alpha[row * pitch + x] = 16;
        run(function, 32, 4);
        EXPECT_EQ(slice(dst_u, 16), bytes(16, 90));
        EXPECT_EQ(slice(dst_v, 16, 512), bytes(16, 160));
        EXPECT_EQ(written(4), (bytes{50, 100, 50, 100}));
        EXPECT_EQ(written(4, dst_pitch), (bytes{100, 50, 100, 50}));
        // One second pixel in the third row.
        alpha[2 * pitch + 5] = 16;
        run(function, 32, 4);
        EXPECT_EQ(slice(dst_u, 4), (bytes{90, 90, 90, 90}));
        EXPECT_EQ(slice(dst_u, 4, 512), (bytes{90, 90, 30, 90}));
        EXPECT_EQ(slice(dst_v, 4, 512), (bytes{160, 160, 220, 160}));
    }
}

TEST_P(mixes, yv12_takes_every_second_row_of_the_subpictures_chroma) {
    assign(alpha, 16);
    for (int row = 0; row < 4; ++row) {
        fill_row(sub_u, row, chroma_pitch, 10 + row);
        fill_row(sub_v, row, chroma_pitch, 20 + row);
    }
    for (const mix_function function : yv12_mixes) {
        run(function, 16, 4);
        EXPECT_EQ(dst_u[0], 10);
        EXPECT_EQ(dst_u[512], 12);
        EXPECT_EQ(dst_v[0], 20);
        EXPECT_EQ(dst_v[512], 22);
    }
}

TEST_P(mixes, yv12_doubling_averages_in_the_second_row_and_reads_a_row_past_the_field) {
    number_video_rows();
    run(mix_ayv12_yv12_i, 16, 8);
    // The field has four rows of luma and two of chroma; row 4 and row 2 lie below it.
    const int luma[] = {10, 30, 50, 70, 90, 110, 130, 150};
    for (int row = 0; row < 8; ++row)
        EXPECT_EQ(written(16, row * dst_pitch), bytes(16, static_cast<unsigned char>(luma[row])))
            << "row " << row;
    const int chroma[] = {60, 70, 80, 90};
    for (int row = 0; row < 4; ++row) {
        const auto expected = static_cast<unsigned char>(chroma[row]);
        EXPECT_EQ(slice(dst_u, 8, row * 512), bytes(8, expected)) << "row " << row;
        EXPECT_EQ(slice(dst_v, 8, row * 512), bytes(8, expected + 1)) << "row " << row;
    }
}

TEST_P(mixes, yv12_averages_round_up) {
    fill_row(y, 1, pitch, 1);
    fill_row(u, 1, chroma_pitch, 1);
    run(mix_ayv12_yv12_i, 16, 4);
    EXPECT_EQ(dst[dst_pitch], 1);
    EXPECT_EQ(dst_u[512], 1);
}

TEST_P(mixes, yv12_width_12_writes_16_samples_a_row_and_drifts_by_4_in_every_plane) {
    fill(10, 20, 30);
    for (const mix_function function : {mix_ayv12_yv12_p, mix_ayv12_yv12_i}) {
        forget();
        run(function, 12, 4);
        EXPECT_EQ(
            written_runs(),
            (runs{
                {0, 16}, {dst_pitch + 4, 16}, {2 * dst_pitch + 8, 16}, {3 * dst_pitch + 12, 16}}));
        dst = dst_v;
        // Chroma: 6 samples of 8 a row.
        EXPECT_EQ(written_runs(), (runs{{0, 8}, {512 + 2, 8}}));
    }
}

TEST_P(mixes, yv12_doubling_goes_back_by_the_width_to_the_start_of_a_row) {
    for (int i = 0; i < pitch; ++i)
        y[i] = y[pitch + i] = static_cast<unsigned char>(i);
    run(mix_ayv12_yv12_i, 12, 2);
    EXPECT_EQ(dst[0], 0);
    EXPECT_EQ(dst[dst_pitch + 4], 4);
}

TEST_P(mixes, yv12_doubling_averages_under_one_clear_row_for_all_rows) {
    for (int row = 0; row < 8; ++row)
        fill_row(y, row, pitch, 10 * row);
    prepare(32, 8);
    mix.sub_pitch = 0;
    mix_ayv12_yv12_i(&mix);
    for (int row = 0; row < 8; ++row)
        EXPECT_EQ(dst[row * dst_pitch + 20], 5 * row) << "row " << row;
}

TEST_P(mixes, yv12_chroma_is_drawn_where_only_what_is_past_the_width_is) {
    // Of 12 samples 16 are made, the last four with the alpha behind the 24 of the row.
    fill(100, 90, 160);
    fill_sub(200, 30, 220);
    std::fill_n(alpha.begin() + 24, 8, byte(16));
    prepare(24, 8);
    mix.sub_pitch = 0;
    mix_ayv12_yv12_p(&mix);
    bytes expected(16, 90);
    std::fill_n(expected.begin() + 12, 4, byte(30));
    EXPECT_EQ(slice(dst_u, 16), expected);
    EXPECT_EQ(written(24), bytes(24, 100));
}

TEST_P(mixes, yv12_heights_of_0_and_1_make_a_row_of_each_plane_or_two_when_doubling) {
    fill(10, 20, 30);
    for (const int height : {0, 1}) {
        forget();
        run(mix_ayv12_yv12_p, 16, height);
        EXPECT_EQ(written_runs(), (runs{{0, 16}}));
        dst = dst_u;
        EXPECT_EQ(written_runs(), (runs{{0, 8}}));
        forget();
        run(mix_ayv12_yv12_i, 16, height);
        EXPECT_EQ(written_runs(), (runs{{0, 16}, {dst_pitch, 16}}));
        dst = dst_v;
        EXPECT_EQ(written_runs(), (runs{{0, 8}, {512, 8}}));
    }
}

// ---- YUY2, progressive -------------------------------------------------------------------------

TEST_P(mixes, yuy2_rows_of_a_pair_share_the_video_chroma_and_have_the_subpictures_own) {
    fill(100, 90, 160);
    fill_row(u, 1, chroma_pitch, 70);
    for (int row = 0; row < 4; ++row)
        fill_row(sub_u, row, chroma_pitch, 10 + row);
    run(mix_ayuy2_yuy2_p_ajust, 16, 4);
    EXPECT_EQ((bytes{pair(0, 0)[1], pair(1, 0)[1], pair(2, 0)[1], pair(3, 0)[1]}),
              (bytes{90, 90, 70, 70}));
    assign(alpha, 16);
    run(mix_ayuy2_yuy2_p_ajust, 16, 4);
    EXPECT_EQ((bytes{pair(0, 0)[1], pair(1, 0)[1], pair(2, 0)[1], pair(3, 0)[1]}),
              (bytes{10, 11, 12, 13}));
}

TEST_P(mixes, yuy2_chroma_has_the_alpha_of_the_second_pixel_of_its_own_row) {
    fill(100, 90, 160);
    fill_sub(50, 30, 220);
    for (const mix_function function : {mix_ayuy2_yuy2_p_ajust, mix_ayuy2_yuy2_i_ajust}) {
        assign(alpha, 0);
        alpha[0] = alpha[pitch + 3] = 16;
        run(function, 16, 4);
        EXPECT_EQ(written(8), (bytes{50, 90, 100, 160, 100, 90, 100, 160}));
        EXPECT_EQ(written(8, dst_pitch), (bytes{100, 90, 100, 160, 100, 30, 50, 220}));
    }
}

TEST_P(mixes, yuy2_odd_heights_write_one_row_more_and_heights_of_0_and_below_write_two) {
    fill(10, 20, 30);
    for (const auto &[height, rows] : {std::pair{3, 4}, {1, 2}, {0, 2}, {-7, 2}}) {
        forget();
        run(mix_ayuy2_yuy2_p_ajust, 16, height);
        runs expected;
        for (int row = 0; row < rows; ++row)
            expected.push_back({row * dst_pitch, 32});
        EXPECT_EQ(written_runs(), expected) << "height " << height;
    }
}

TEST_P(mixes, yuy2_width_24_drifts_by_8_pixels_a_row_pair) {
    fill(10, 20, 30);
    run(mix_ayuy2_yuy2_p_ajust, 24, 4);
    EXPECT_EQ(written_runs(),
              (runs{{0, 64}, {dst_pitch, 64}, {2 * dst_pitch + 16, 64}, {3 * dst_pitch + 16, 64}}));
    EXPECT_EQ(mix.video_u - u.data(), 2 * chroma_pitch + 2 * 4);
    EXPECT_EQ(mix.alpha_plane - alpha.data(), 4 * pitch + 2 * 8);
    EXPECT_EQ(mix.sub_v - sub_v.data(), 4 * chroma_pitch + 2 * 4);
}

TEST_P(mixes, yuy2_half_width_32_writes_16_pixels_a_row) {
    fill(10, 20, 30);
    run(mix_ayuy2_half_yuy2_p_ajust, 32, 2);
    EXPECT_EQ(written_runs(), (runs{{0, 32}, {dst_pitch, 32}}));
}

TEST_P(mixes, yuy2_half_keeps_the_odd_pixels_and_the_odd_chroma_samples) {
    for (int i = 0; i < 32; ++i) {
        y[i] = static_cast<unsigned char>(i);
        u[i] = static_cast<unsigned char>(40 + i);
        v[i] = static_cast<unsigned char>(80 + i);
        sub_y[i] = static_cast<unsigned char>(100 + i);
        sub_u[i] = static_cast<unsigned char>(180 + i);
        sub_v[i] = static_cast<unsigned char>(220 + i);
    }
    run(mix_ayuy2_half_yuy2_p_ajust, 32, 2);
    EXPECT_EQ(written(8), (bytes{1, 41, 3, 81, 5, 43, 7, 83}));
    EXPECT_EQ(written(8, 16), (bytes{17, 49, 19, 89, 21, 51, 23, 91}));
    // Chroma with the alpha of pixels 3, 7, 11 and 15, luma with that of the odd ones.
    for (const int x : {0, 1, 2, 7})
        alpha[x] = 16;
    run(mix_ayuy2_half_yuy2_p_ajust, 32, 2);
    EXPECT_EQ(written(8), (bytes{101, 41, 3, 81, 5, 183, 107, 223}));
}

TEST_P(mixes, yuy2_half_reads_the_second_row_and_the_next_chroma_at_the_subpictures_pitch) {
    for (int i = 0; i < 4 * pitch; ++i) {
        y[i] = static_cast<unsigned char>(i / 64);
        u[i] = static_cast<unsigned char>(100 + i / 32);
    }
    prepare(16, 4);
    mix.sub_pitch = 64;
    mix_ayuy2_half_yuy2_p_ajust(&mix);
    // A row of video is 4 of the subpicture's.
    EXPECT_EQ(written(2), (bytes{0, 100}));
    EXPECT_EQ(written(2, dst_pitch), (bytes{1, 100}));
    EXPECT_EQ(written(2, 2 * dst_pitch), (bytes{8, 101}));
    EXPECT_EQ(written(2, 3 * dst_pitch), (bytes{9, 101}));
    EXPECT_EQ(mix.video_u - u.data(), 2 * 32);
    EXPECT_EQ(mix.video_v - v.data(), 2 * 32);
}

TEST_P(mixes, yuy2_half_width_24_drifts_by_4_pixels_a_row_pair) {
    fill(10, 20, 30);
    run(mix_ayuy2_half_yuy2_p_ajust, 24, 4);
    EXPECT_EQ(written_runs(),
              (runs{{0, 32}, {dst_pitch, 32}, {2 * dst_pitch + 8, 32}, {3 * dst_pitch + 8, 32}}));
}

// ---- YUY2, of a field --------------------------------------------------------------------------

TEST_P(mixes, yuy2_of_a_field_makes_four_rows_of_two_and_repeats_the_last) {
    number_video_rows();
    run(mix_ayuy2_yuy2_i_ajust, 16, 8);
    const bytes expected[] = {{10, 60, 10, 61},   {30, 60, 30, 61},  {50, 70, 50, 71},
                              {70, 70, 70, 71},   {90, 80, 90, 81},  {110, 80, 110, 81},
                              {130, 80, 130, 81}, {130, 80, 130, 81}};
    for (int row = 0; row < 8; ++row)
        EXPECT_EQ(pair(row, 14), expected[row]) << "row " << row;
}

TEST_P(mixes, yuy2_of_a_field_takes_the_subpicture_row_by_row) {
    assign(alpha, 16);
    for (int row = 0; row < 8; ++row) {
        fill_row(sub_y, row, pitch, 10 + row);
        fill_row(sub_u, row, chroma_pitch, 20 + row);
        fill_row(sub_v, row, chroma_pitch, 30 + row);
    }
    run(mix_ayuy2_yuy2_i_ajust, 16, 8);
    for (int row = 0; row < 8; ++row) {
        const auto r = static_cast<unsigned char>(row);
        EXPECT_EQ(pair(row, 0),
                  (bytes{static_cast<unsigned char>(10 + r), static_cast<unsigned char>(20 + r),
                         static_cast<unsigned char>(10 + r), static_cast<unsigned char>(30 + r)}))
            << "row " << row;
    }
}

TEST_P(mixes, yuy2_of_a_field_below_height_4_writes_nothing_and_leaves_the_record) {
    fill(10, 20, 30);
    for (const int height : {3, 1, 0, -8}) {
        prepare(16, height);
        const tagMIX_INFO before = mix;
        mix_ayuy2_yuy2_i_ajust(&mix);
        EXPECT_EQ(written_runs(), runs{}) << "height " << height;
        EXPECT_EQ(std::memcmp(&mix, &before, sizeof mix), 0) << "height " << height;
    }
}

TEST_P(mixes, yuy2_of_a_field_writes_4_rows_below_height_8_and_whole_blocks_above) {
    fill(10, 20, 30);
    for (const auto &[height, rows] :
         {std::pair{4, 4}, {6, 4}, {7, 4}, {8, 8}, {9, 12}, {10, 12}}) {
        forget();
        run(mix_ayuy2_yuy2_i_ajust, 16, height);
        runs expected;
        for (int row = 0; row < rows; ++row)
            expected.push_back({row * dst_pitch, 32});
        EXPECT_EQ(written_runs(), expected) << "height " << height;
        EXPECT_EQ(mix.height, 0) << "height " << height;
    }
}

TEST_P(mixes, yuy2_of_a_field_leaves_the_record_below_what_was_mixed) {
    run(mix_ayuy2_yuy2_i_ajust, 32, 8);
    EXPECT_EQ(mix.video_u - u.data(), 2 * chroma_pitch);
    EXPECT_EQ(mix.video_v - v.data(), 2 * chroma_pitch);
    EXPECT_EQ(mix.alpha_plane - alpha.data(), 8 * pitch);
    EXPECT_EQ(mix.sub_y - sub_y.data(), 8 * pitch);
    EXPECT_EQ(mix.sub_u - sub_u.data(), 8 * chroma_pitch);
    EXPECT_EQ(mix.sub_v - sub_v.data(), 8 * chroma_pitch);
    EXPECT_EQ(mix.video_y, y.data());
    EXPECT_EQ(mix.width, 32);
}

TEST_P(mixes, yuy2_of_a_field_drifts_once_per_block_of_four_rows) {
    fill(10, 20, 30);
    run(mix_ayuy2_yuy2_i_ajust, 24, 8);
    runs expected;
    for (int row = 0; row < 8; ++row)
        expected.push_back({row * dst_pitch + (row < 4 ? 0 : 16), 64});
    EXPECT_EQ(written_runs(), expected);
}

// ---- RGB, progressive --------------------------------------------------------------------------

TEST_P(mixes, rgb_without_alpha_is_the_adjusted_video) {
    for (int i = 0; i < 1 << 16; ++i) {
        y[i] = static_cast<unsigned char>(i * 7);
        u[i] = static_cast<unsigned char>(i * 5);
        v[i] = static_cast<unsigned char>(i * 3);
    }
    fill_sub(255, 255, 255);
    set_contrast({70, 50, -3, 9, -14, 0, 0, 0});
    info.rgb16_layout = 3;
    for (const auto &[function, loader] :
         {std::pair{&mix_ayuy2_rgb32_p_ajust, &loadimage_rgb32_ajust},
          {mix_ayuy2_rgb24_p_ajust, loadimage_rgb24_ajust},
          {mix_ayuy2_rgb16_p_ajust, loadimage_rgb16_ajust}}) {
        forget();
        load(loader, 48, 6, pitch, dst_pitch);
        const bytes expected = dst;
        forget();
        prepare(48, 6);
        mix.adjust_info = &info;
        function(&mix);
        EXPECT_EQ(dst, expected);
    }
}

TEST_P(mixes, rgb_luma_follows_each_pixels_alpha_and_chroma_the_second_ones) {
    fill(100, 90, 160);
    fill_sub(50, 30, 220);
    alpha[0] = 16; // of the first pair the first pixel, of the second pair the second one
    alpha[3] = 16;
    run(mix_ayuy2_rgb32_p_ajust, 16, 2);
    EXPECT_EQ(pixel(0, 0), rgb32(50, 90, 160));
    EXPECT_EQ(pixel(0, 1), rgb32(100, 90, 160));
    EXPECT_EQ(pixel(0, 2), rgb32(100, 30, 220));
    EXPECT_EQ(pixel(0, 3), rgb32(50, 30, 220));
}

TEST_P(mixes, rgb_rows_of_a_pair_have_their_own_chroma_over_the_shared_one) {
    fill(100, 80, 160);
    assign(alpha, 8);
    fill_sub(100, 80, 160);
    fill_row(sub_u, 1, chroma_pitch, 120);
    run(mix_ayuy2_rgb32_p_ajust, 16, 2);
    EXPECT_EQ(pixel(0, 5), rgb32(100, 80, 160));
    EXPECT_EQ(pixel(1, 5), rgb32(100, 100, 160));
}

TEST_P(mixes, rgb_width_24_writes_32_pixels_and_drifts_by_8_pixels_a_row_pair) {
    fill(235, 128, 128);
    run(mix_ayuy2_rgb24_p_ajust, 24, 4);
    EXPECT_EQ(written_runs(),
              (runs{{0, 96}, {dst_pitch, 96}, {2 * dst_pitch + 24, 96}, {3 * dst_pitch + 24, 96}}));
}

TEST_P(mixes, rgb_width_0_writes_16_pixels) {
    fill(235, 128, 128);
    run(mix_ayuy2_rgb24_p_ajust, 0, 2);
    EXPECT_EQ(written_runs(), (runs{{0, 48}, {dst_pitch, 48}}));
}

TEST_P(mixes, rgb_odd_heights_write_one_row_more_and_heights_of_0_and_below_write_two) {
    fill(235, 128, 128);
    for (const auto &[height, rows] : {std::pair{3, 4}, {1, 2}, {0, 2}, {-5, 2}}) {
        forget();
        run(mix_ayuy2_rgb24_p_ajust, 16, height);
        runs expected;
        for (int row = 0; row < rows; ++row)
            expected.push_back({row * dst_pitch, 48});
        EXPECT_EQ(written_runs(), expected) << "height " << height;
        EXPECT_EQ(mix.height, height - rows) << "height " << height;
    }
}

TEST_P(mixes, rgb_second_rows_of_odd_pitches_start_one_byte_early) {
    for (int i = 0; i < 1 << 16; ++i)
        y[i] = sub_y[i] = static_cast<unsigned char>(i % 101 + 20);
    assign(u, 128);
    assign(v, 128);
    assign(sub_u, 128);
    assign(sub_v, 128);
    const auto grey = [&](int at) { return rgb32(y[at], 128, 128); };
    for (const int weight : {0, 16}) {
        assign(alpha, weight);
        prepare(16, 4);
        mix.video_pitch = mix.sub_pitch = 257;
        mix_ayuy2_rgb32_p_ajust(&mix);
        EXPECT_EQ(pixel(0, 0), grey(0));
        EXPECT_EQ(pixel(1, 0), grey(256));
        // From pair to pair the pitch counts as it is.
        EXPECT_EQ(pixel(2, 0), grey(514));
        EXPECT_EQ(pixel(3, 0), grey(514 + 256));
    }
    EXPECT_EQ(mix.video_u - u.data(), 2 * 128);
    EXPECT_EQ(mix.sub_u - sub_u.data(), 2 * 257);
    EXPECT_EQ(mix.alpha_plane - alpha.data(), 4 * 257);
}

TEST_P(mixes, rgb_fourth_bytes_are_0) {
    fill(200, 90, 160);
    fill_sub(100, 30, 220);
    assign(alpha, 3);
    for (const mix_function function : rgb32_mixes) {
        forget();
        run(function, 32, 4);
        for (int row = 0; row < 4; ++row)
            for (int x = 0; x < 32; ++x)
                EXPECT_EQ(pixel(row, x)[3], 0);
    }
}

// ---- RGB, of a field ---------------------------------------------------------------------------

TEST_P(mixes, rgb_of_a_field_makes_four_rows_of_two_and_repeats_the_last) {
    number_video_rows();
    run(mix_ayuy2_rgb32_i_ajust, 32, 8);
    const int luma[] = {10, 30, 50, 70, 90, 110, 130, 130};
    const int chroma[] = {60, 60, 70, 70, 80, 80, 80, 80};
    for (int row = 0; row < 8; ++row)
        for (const int x : {0, 31})
            EXPECT_EQ(pixel(row, x), rgb32(luma[row], chroma[row], chroma[row] + 1))
                << "row " << row;
}

TEST_P(mixes, rgb_of_a_field_below_height_8_is_four_rows_per_strip) {
    number_video_rows();
    for (const int height : {4, 5, 7, 3, 1, 0, -4}) {
        forget();
        run(mix_ayuy2_rgb32_i_ajust, 16, height);
        const int luma[] = {10, 30, 50, 50};
        for (int row = 0; row < 4; ++row)
            EXPECT_EQ(pixel(row, 15), rgb32(luma[row], 60, 61)) << "row " << row;
        EXPECT_EQ(written_runs(),
                  (runs{{0, 64}, {dst_pitch, 64}, {2 * dst_pitch, 64}, {3 * dst_pitch, 64}}))
            << "height " << height;
    }
}

TEST_P(mixes, rgb_of_a_field_weighs_chroma_with_the_average_alpha_of_the_pair) {
    fill(100, 10, 250);
    fill_sub(100, 170, 90);
    alpha[0] = 3;
    alpha[1] = 4; // 4
    alpha[2] = 15;
    alpha[3] = 200; // 16
    alpha[5] = 16;  // 8
    run(mix_ayuy2_rgb32_i_ajust, 16, 4);
    EXPECT_EQ(pixel(0, 0), rgb32(100, 50, 210));
    EXPECT_EQ(pixel(0, 1), rgb32(100, 50, 210));
    EXPECT_EQ(pixel(0, 3), rgb32(100, 170, 90));
    EXPECT_EQ(pixel(0, 4), rgb32(100, 90, 170));
}

TEST_P(mixes, rgb_of_a_field_takes_the_subpicture_row_by_row) {
    assign(alpha, 16);
    assign(sub_v, 128);
    for (int row = 0; row < 8; ++row) {
        fill_row(sub_y, row, pitch, 50 + 10 * row);
        fill_row(sub_u, row, chroma_pitch, 100 + 5 * row);
    }
    run(mix_ayuy2_rgb32_i_ajust, 32, 8);
    for (int row = 0; row < 8; ++row)
        for (const int x : {0, 31})
            EXPECT_EQ(pixel(row, x), rgb32(50 + 10 * row, 100 + 5 * row, 128)) << "row " << row;
}

TEST_P(mixes, rgb_of_a_field_of_width_20_writes_32_pixels_of_every_row) {
    fill(235, 128, 128);
    run(mix_ayuy2_rgb24_i_ajust, 20, 4);
    EXPECT_EQ(written_runs(),
              (runs{{0, 96}, {dst_pitch, 96}, {2 * dst_pitch, 96}, {3 * dst_pitch, 96}}));
}

TEST_P(mixes, rgb_of_a_field_of_no_width_is_one_strip) {
    fill(235, 128, 128);
    for (const int width : {0, -16, -100}) {
        forget();
        run(mix_ayuy2_rgb24_i_ajust, width, 4);
        EXPECT_EQ(written_runs().front(), (tests::run{0, 48})) << "width " << width;
        EXPECT_EQ(written_runs().size(), 4u) << "width " << width;
    }
}

TEST_P(mixes, rgb_of_a_field_starts_later_strips_lower_where_more_rows_were_made_than_the_height) {
    fill(235, 128, 128);
    for (const auto &[height, rows, lower] : {std::tuple{10, 12, 2}, {9, 12, 3}, {1, 4, 3}}) {
        forget();
        run(mix_ayuy2_rgb24_i_ajust, 32, height);
        runs expected;
        for (int row = 0; row < rows + lower; ++row) {
            const bool first = row < rows, second = row >= lower;
            expected.push_back({row * dst_pitch + (first ? 0 : 48), first && second ? 96 : 48});
        }
        EXPECT_EQ(written_runs(), expected) << "height " << height;
    }
}

TEST_P(mixes, rgb_of_a_field_starts_later_strips_higher_where_fewer_rows_were_made) {
    fill(235, 128, 128);
    // The first strip in rows 10 to 13, the second one from row 8 on.
    prepare(32, 6);
    mix.dst += 10 * dst_pitch;
    // Rows above the planes are read, too.
    for (unsigned char **plane : {&mix.video_y, &mix.video_u, &mix.video_v, &mix.alpha_plane,
                                  &mix.sub_y, &mix.sub_u, &mix.sub_v})
        *plane += 10 * pitch;
    mix_ayuy2_rgb24_i_ajust(&mix);
    EXPECT_EQ(written_runs(), (runs{{8 * dst_pitch + 48, 48},
                                    {9 * dst_pitch + 48, 48},
                                    {10 * dst_pitch, 96},
                                    {11 * dst_pitch, 96},
                                    {12 * dst_pitch, 48},
                                    {13 * dst_pitch, 48}}));
}

TEST_P(mixes, rgb_of_a_field_is_stored_strip_by_strip_where_rows_overlap) {
    // Rows half as far apart as they are long: the right half of a row lies on the left half of
    // the next one, and the second strip is stored over the first.
    fill(16, 128, 128);
    for (int row = 0; row < 2; ++row)
        std::fill_n(y.begin() + row * pitch + 16, 16, byte(235));
    prepare(32, 4);
    mix.dst_pitch = 48;
    mix_ayuy2_rgb24_i_ajust(&mix);
    bytes expected(5 * 48, 254);
    std::fill_n(expected.begin(), 48, static_cast<unsigned char>(0));
    EXPECT_EQ(written(5 * 48), expected);
}

} // namespace
