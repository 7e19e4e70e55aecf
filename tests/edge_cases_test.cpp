// What the functions promise at the edges of their arguments, one promise per test.
#include <algorithm>

#include "tests/edge_cases.h"

namespace {

using tests::bytes;
using tests::runs;

class edge_cases : public tests::picture_test {
protected:
    int rgb16(int y_sample, int u_sample, int v_sample, unsigned layout) {
        fill(y_sample, u_sample, v_sample);
        info.rgb16_layout = layout;
        load(loadimage_rgb16, 16, 2, 16, 32);
        return dst[0] | dst[1] << 8;
    }
};

INSTANTIATE_ON_EACH_TARGET(edge_cases);

// ---- Shapes ------------------------------------------------------------------------------------

TEST_P(edge_cases, width_20_converts_32_pixels_a_row_and_later_pairs_start_12_pixels_further) {
    fill(235, 128, 128);
    load_alone(loadimage_rgb32, 20, 4, 32, 400);
    EXPECT_EQ(written_runs(), (runs{{0, 128}, {400, 128}, {800 + 48, 128}, {1200 + 48, 128}}));
}

TEST_P(edge_cases, width_24_starts_the_second_pair_8_pixels_further_in_source_and_destination) {
    fill(235, 128, 128);
    // 8 samples further in the second pair of luma rows, 4 in its chroma row.
    y[2 * 32 + 8] = 16;
    u[16 + 4] = 90;
    v[16 + 4] = 90;
    load_alone(loadimage_rgb32, 24, 4, 32, 400);
    EXPECT_EQ(written_runs(), (runs{{0, 128}, {400, 128}, {800 + 32, 128}, {1200 + 32, 128}}));
    const bytes second_pair = written(12, 832);
    const bytes black_and_tinted_then_white{0, 46, 0, 0, 177, 255, 193, 0, 254, 254, 254, 0};
    EXPECT_EQ(second_pair, black_and_tinted_then_white);
}

TEST_P(edge_cases, width_1_converts_16_pixels_a_row) {
    fill(235, 128, 128);
    load_alone(loadimage_rgb24, 1, 2, 16, 100);
    EXPECT_EQ(written_runs(), (runs{{0, 48}, {100, 48}}));
}

TEST_P(edge_cases, height_3_writes_4_rows) {
    fill(235, 128, 128);
    load_alone(loadimage_rgb32, 16, 3, 16, 100);
    EXPECT_EQ(written_runs(), (runs{{0, 64}, {100, 64}, {200, 64}, {300, 64}}));
}

TEST_P(edge_cases, height_0_and_1_write_2_rows) {
    fill(235, 128, 128);
    for (const int height : {0, 1}) {
        wipe();
        load_alone(loadimage_rgb24, 16, height, 16, 100);
        EXPECT_EQ(written_runs(), (runs{{0, 48}, {100, 48}})) << "height " << height;
    }
}

TEST_P(edge_cases, rows_that_overlap_are_stored_step_by_step_upper_before_lower) {
    // Upper row black and then white, lower row black, at half the pitch: the second step of the
    // upper row is stored after the first step of the lower one, over it.
    fill(16, 128, 128);
    std::fill_n(y.begin() + 16, 16, byte(235));
    load_alone(loadimage_rgb24, 32, 2, 100, 48);
    bytes expected(48, 0);
    expected.insert(expected.end(), 48, 254);
    expected.insert(expected.end(), 48, 0);
    EXPECT_EQ(written(3 * 48), expected);
}

// ---- RGB16 layouts -----------------------------------------------------------------------------

TEST_P(edge_cases, rgb16_layouts_out_of_range_leave_the_destination_untouched) {
    fill(235, 128, 128);
    for (const unsigned layout : {4u, ~0u}) {
        info.rgb16_layout = layout;
        load(loadimage_rgb16, 16, 2, 16, 32);
        load(loadimage_rgb16_ajust, 16, 2, 16, 32);
        EXPECT_EQ(written_runs(), runs{}) << "layout " << layout;
    }
}

TEST_P(edge_cases, rgb16_layout_1_has_bit_0_clear) {
    EXPECT_EQ(rgb16(255, 255, 255, 1) & 1, 0);
    EXPECT_EQ(rgb16(255, 128, 128, 1), 0xfffe);
}

TEST_P(edge_cases, rgb16_layout_2_keeps_the_top_four_bits_of_a_pure_blue) {
    const bytes pixel = rgb32(16, 200, 128); // blue only
    ASSERT_EQ(pixel, (bytes{145, 0, 0, 0}));
    EXPECT_EQ(rgb16(16, 200, 128, 2), 145 >> 4);
    EXPECT_EQ(rgb16(16, 200, 128, 3), 145 >> 3);
}

TEST_P(edge_cases, rgb16_layouts_place_the_upper_bits_of_each_channel) {
    ASSERT_EQ(rgb32(100, 150, 110), (bytes{141, 104, 68, 0}));
    EXPECT_EQ(rgb16(100, 150, 110, 0), 68 / 8 << 11 | 104 / 4 << 5 | 141 / 8);
    EXPECT_EQ(rgb16(100, 150, 110, 1), 68 / 8 << 11 | 104 / 8 << 6 | 141 / 8 << 1);
    EXPECT_EQ(rgb16(100, 150, 110, 2), 68 / 4 << 10 | 104 / 4 << 4 | 141 / 16);
    EXPECT_EQ(rgb16(100, 150, 110, 3), 68 / 4 << 10 | 104 / 8 << 5 | 141 / 8);
}

// ---- Colours -----------------------------------------------------------------------------------

TEST_P(edge_cases, the_fourth_byte_of_rgb32_is_0) {
    for (int i = 0; i < 32; ++i)
        y[i] = static_cast<unsigned char>(8 * i);
    load_alone(loadimage_rgb32, 16, 2, 16, 64);
    set_contrast(neutral);
    const bytes plain = written(128);
    load_alone(loadimage_rgb32_ajust, 16, 2, 16, 64);
    for (int i = 3; i < 128; i += 4) {
        EXPECT_EQ(plain[i], 0);
        EXPECT_EQ(dst[i], 0);
    }
}

TEST_P(edge_cases, white_is_254_in_every_pixel_of_both_rows) {
    fill(235, 128, 128);
    load_alone(loadimage_rgb32, 16, 2, 16, 64);
    for (int i = 0; i < 128; i += 4)
        EXPECT_EQ(written(4, i), (bytes{254, 254, 254, 0}));
    EXPECT_EQ(written_runs(), (runs{{0, 128}}));
}

TEST_P(edge_cases, black_is_0) { EXPECT_EQ(rgb32(16, 128, 128), (bytes{0, 0, 0, 0})); }

TEST_P(edge_cases, luma_above_white_saturates_to_255) {
    EXPECT_EQ(rgb32(255, 128, 128), (bytes{255, 255, 255, 0}));
}

TEST_P(edge_cases, the_least_u_makes_blue_0_and_green_181) {
    EXPECT_EQ(rgb32(128, 0, 128), (bytes{0, 181, 130, 0}));
}

TEST_P(edge_cases, the_most_v_saturates_red_to_255) {
    const bytes pixel = rgb32(128, 128, 255);
    EXPECT_EQ(pixel[2], 255);
    EXPECT_EQ(pixel[0], 130);
}

// ---- Adjustment --------------------------------------------------------------------------------

class adjusted_copy : public edge_cases {
protected:
    // Luma of one row of 16 samples.
    bytes luma() {
        info.surface_height = info.rows_to_plane_end = 1;
        load(loadimage_yv12_ajust, 16, 1, 16, 64);
        return written(16);
    }
};

INSTANTIATE_ON_EACH_TARGET(adjusted_copy);

TEST_P(adjusted_copy, gain_64_without_offsets_leaves_every_sample) {
    for (int i = 0; i < 256; ++i)
        y[i] = static_cast<unsigned char>(i);
    set_contrast(neutral);
    info.surface_height = info.rows_to_plane_end = 2;
    load(loadimage_yv12_ajust, 256, 1, 256, 256);
    EXPECT_EQ(written(256), slice(y, 256));
}

TEST_P(adjusted_copy, offsets_add_up_modulo_2_to_the_16) {
    for (int i = 0; i < 256; ++i)
        y[i] = static_cast<unsigned char>(i);
    set_contrast({64, 64, 30000, 0, 0, 30000, 0, 0}); // -5536
    info.surface_height = info.rows_to_plane_end = 2;
    load(loadimage_yv12_ajust, 256, 1, 256, 256);
    EXPECT_EQ(written(256), bytes(256, 0));
}

TEST_P(adjusted_copy, of_each_parameter_only_the_low_half_counts) {
    fill(100, 100, 100);
    set_contrast({0x12340000 + 64, 0x00010000 + 64, 0x7fff0000 + 5, 0, 0, 0x00010000 - 2, 0, 0});
    EXPECT_EQ(luma(), bytes(16, 103));
}

TEST_P(adjusted_copy, gain_128_saturates_255) {
    fill(255, 255, 255);
    set_contrast({128, 64, 0, 0, 0, 0, 0, 0});
    EXPECT_EQ(luma(), bytes(16, 255));
    set_contrast({128, 64, -300, 0, 0, 0, 0, 0}); // 510 before the offset
    EXPECT_EQ(luma(), bytes(16, 210));
}

TEST_P(adjusted_copy, gain_257_wraps_at_255_where_200_still_saturates) {
    fill(255, 255, 255);
    set_contrast({200, 64, 0, 0, 0, 0, 0, 0});
    EXPECT_EQ(luma(), bytes(16, 255));
    set_contrast({200, 64, -700, 0, 0, 0, 0, 0}); // 797 before the offset
    EXPECT_EQ(luma(), bytes(16, 97));
    set_contrast({256, 64, 0, 0, 0, 0, 0, 0});
    EXPECT_EQ(luma(), bytes(16, 255));
    set_contrast({257, 64, 0, 0, 0, 0, 0, 0});
    EXPECT_EQ(luma(), bytes(16, 0));
}

TEST_P(adjusted_copy, width_12_writes_16_samples_a_row_and_drifts_by_4) {
    for (int i = 0; i < 64; ++i)
        y[i] = static_cast<unsigned char>(i);
    set_contrast(neutral);
    info.surface_height = info.rows_to_plane_end = 100;
    load(loadimage_yv12_ajust, 12, 4, 99, 12);
    // A pitch of 12 and a drift of 4: 16 samples a row, and the source is one run of them.
    EXPECT_EQ(written(64), slice(y, 64));
    load(loadimage_yv12_ajust, 12, 2, 99, 20);
    EXPECT_EQ(written(16, 24), slice(y, 16, 16));
}

TEST_P(adjusted_copy, the_source_pitch_is_not_used) {
    for (int i = 0; i < 64; ++i)
        y[i] = static_cast<unsigned char>(i);
    set_contrast(neutral);
    info.surface_height = info.rows_to_plane_end = 100;
    load(loadimage_yv12_ajust, 16, 4, 1000, 16);
    EXPECT_EQ(written(64), slice(y, 64));
}

TEST_P(adjusted_copy, the_chroma_offsets_are_crossed) {
    fill(100, 100, 100);
    set_contrast({64, 64, 0, 10, -20, 0, 0, 0});
    info.surface_height = 8;
    info.rows_to_plane_end = 4;
    load(loadimage_yv12_ajust, 16, 4, 16, 16);
    const int v_rows = 4 * 16 + 4 * 16 / 4, u_rows = v_rows + 8 * 16 / 4;
    EXPECT_EQ(written_runs(), (runs{{0, 64}, {v_rows, 16}, {u_rows, 16}}));
    EXPECT_EQ(written(64), bytes(64, 100));
    EXPECT_EQ(written(16, v_rows), bytes(16, 110));
    EXPECT_EQ(written(16, u_rows), bytes(16, 80));
}

TEST_P(adjusted_copy, the_functions_that_produce_rgb_do_not_cross_the_chroma_offsets) {
    fill(128, 128, 128);
    set_contrast({64, 64, 0, 40, 0, 0, 0, 0});
    load_alone(loadimage_rgb32_ajust, 16, 2, 16, 64);
    const bytes adjusted = written(4);
    EXPECT_EQ(adjusted, rgb32(128, 168, 128));
    EXPECT_GT(adjusted[0], adjusted[2]); // more blue
}

// ---- Plain copy --------------------------------------------------------------------------------

TEST_P(edge_cases, the_plain_copy_of_chroma_starts_one_byte_before_the_end_of_luma) {
    fill(1, 2, 3);
    load_alone(loadimage_yv12, 16, 2, 16, 16);
    bytes expected(32, 1);
    expected.resize(31);
    // 2 rows of 8 of V, of which U had the second before.
    expected.insert(expected.end(), 16, 3);
    // U starts 32 / 4 after V and has 2 rows of 8.
    expected.insert(expected.end(), 8, 2);
    EXPECT_EQ(written(expected.size()), expected);
    EXPECT_EQ(written_runs(), (runs{{0, static_cast<int>(expected.size())}}));
}

TEST_P(edge_cases, the_plain_copy_mixes_the_increments_of_its_rows) {
    for (std::size_t i = 0; i < y.size(); ++i)
        y[i] = static_cast<unsigned char>(i % 251 % 128);
    constexpr int width = 16, src_pitch = 200, dst_pitch = 300;
    load_alone(loadimage_yv12, width, 4, src_pitch, dst_pitch);
    // Upper rows lie in a row, lower rows src_pitch further down; the source moves on by both.
    constexpr int second_pass = 2 * src_pitch + 2 * dst_pitch - width;
    const auto source = [&](int at) { return slice(y, width, at); };
    const auto copied = [&](int at) { return written(width, at); };
    EXPECT_EQ(copied(0), source(0));
    EXPECT_EQ(copied(src_pitch), source(width));
    EXPECT_EQ(copied(width), source(second_pass));
    EXPECT_EQ(copied(width + src_pitch), source(second_pass + width));
}

TEST_P(edge_cases, the_plain_copy_takes_as_many_chroma_rows_as_luma_rows) {
    fill(1, 2, 3);
    load_alone(loadimage_yv12, 16, 4, 100, 100);
    const int v_rows = 4 * 100 - 1, u_rows = v_rows + 100;
    for (int row = 0; row < 4; ++row) {
        EXPECT_EQ(dst[v_rows + 50 * row + 7], 3) << "row " << row;
        EXPECT_EQ(dst[u_rows + 50 * row + 7], row < 2 ? 3 : 2) << "row " << row;
    }
}

} // namespace
