// What the functions to and from YUY2, and to half the size, promise at the edges of their
// arguments.
#include <algorithm>
#include <numeric>

#include "tests/edge_cases.h"

namespace {

using tests::bytes;
using tests::runs;

using picture_function = void (*)(LUMALANE_PARAMETERS_picture);

// ---- YV12 to YUY2 ------------------------------------------------------------------------------

class yuy2_surface : public tests::picture_test {
protected:
    // Samples that tell their positions.
    void number_samples() {
        std::iota(y.begin(), y.end(), static_cast<unsigned char>(0));
        std::iota(u.begin(), u.end(), static_cast<unsigned char>(64));
        std::iota(v.begin(), v.end(), static_cast<unsigned char>(128));
    }

    // So many pixels of YUY2 from these positions on.
    bytes interleaved(int luma, int chroma, int pixels) const {
        bytes expected;
        for (int i = 0; i < pixels; i += 2)
            expected.insert(expected.end(),
                            {y[luma + i], u[chroma + i / 2], y[luma + i + 1], v[chroma + i / 2]});
        return expected;
    }
};

INSTANTIATE_ON_EACH_TARGET(yuy2_surface);

TEST_P(yuy2_surface, the_plain_form_keeps_8_bytes_of_every_32_in_lower_rows) {
    fill(235, 90, 240);
    dst.assign(dst.size(), 0xff);
    load_alone(loadimage_yuy2, 32, 4, 32, 64);
    const bytes pixels{235, 90, 235, 240};
    for (int row = 0; row < 4; ++row)
        for (int at = 0; at < 64; ++at) {
            const bool kept = row % 2 == 1 && at % 32 < 8;
            EXPECT_EQ(dst[64 * row + at], kept ? 0xff : pixels[at % 4])
                << "row " << row << ", byte " << at;
        }
}

TEST_P(yuy2_surface, the_plain_form_gives_both_rows_the_same_chroma) {
    number_samples();
    load_alone(loadimage_yuy2, 16, 4, 16, 32);
    EXPECT_EQ(written(32), interleaved(0, 0, 16));
    EXPECT_EQ(written(24, 32 + 8), interleaved(16 + 4, 2, 12));
    EXPECT_EQ(written(32, 64), interleaved(32, 8, 16));
    EXPECT_EQ(written(24, 96 + 8), interleaved(48 + 4, 8 + 2, 12));
}

TEST_P(yuy2_surface, the_plain_form_drifts_by_12_pixels_a_pair_at_width_20) {
    fill(235, 128, 128);
    load_alone(loadimage_yuy2, 20, 4, 32, 400);
    EXPECT_EQ(written_runs(), (runs{{0, 64},
                                    {400 + 8, 24},
                                    {400 + 40, 24},
                                    {800 + 24, 64},
                                    {1200 + 24 + 8, 24},
                                    {1200 + 24 + 40, 24}}));
}

TEST_P(yuy2_surface, the_adjusted_form_alone_does_nothing_at_heights_up_to_8_and_odd_ones) {
    fill(235, 128, 128);
    set_contrast(neutral);
    for (const int height : {-10, -1, 0, 1, 2, 7, 8, 9, 11}) {
        load_alone(loadimage_yuy2_ajust, 16, height, 16, 100);
        EXPECT_EQ(written_runs(), runs{}) << "height " << height;
    }
    for (const picture_function function :
         {loadimage_yuy2, loadimage_yuy2_mono_ajust, loadimage_half_yuy2_ajust})
        for (const int height : {0, 1, 7, 8}) {
            wipe();
            load_alone(function, 16, height, 16, 100);
            const int rows = std::max(2, (height + 1) / 2 * 2);
            EXPECT_EQ(written_runs().back().at / 100, rows - 1) << "height " << height;
        }
    for (const int height : {7, 8}) {
        wipe();
        load_alone(loadimage_half_yv12_ajust, 32, height, 32, 100);
        EXPECT_EQ(written(16, 100 * (height - 1)), bytes(16, 235)) << "height " << height;
    }
}

TEST_P(yuy2_surface, the_adjusted_form_writes_all_rows_at_height_10) {
    number_samples();
    set_contrast(neutral);
    load_alone(loadimage_yuy2_ajust, 16, 10, 16, 32);
    for (int row = 0; row < 10; ++row)
        EXPECT_EQ(written(32, 32 * row), interleaved(16 * row, 8 * (row / 2), 16)) << "row " << row;
    EXPECT_EQ(written(32, 320), bytes(32, untouched));
}

TEST_P(yuy2_surface, the_adjusted_form_adjusts_each_plane_by_its_own_offset) {
    fill(100, 100, 100);
    set_contrast({64, 32, 7, 10, -20, 0, 0, 0});
    load_alone(loadimage_yuy2_ajust, 16, 10, 16, 32);
    EXPECT_EQ(written(4), (bytes{107, 60, 107, 30}));
}

TEST_P(yuy2_surface, the_adjusted_form_rewinds_chroma_by_half_the_width_between_rows) {
    number_samples();
    set_contrast(neutral);
    load_alone(loadimage_yuy2_ajust, 20, 10, 32, 100);
    // 32 pixels a row: 12 of luma too many, 16 samples of chroma of which 10 are taken back.
    EXPECT_EQ(written(64), interleaved(0, 0, 32));
    EXPECT_EQ(written(64, 100 + 24), interleaved(32 + 12, 6, 32));
    EXPECT_EQ(written(64, 200 + 48), interleaved(64 + 24, 16 + 12, 32));
}

TEST_P(yuy2_surface, the_grey_form_never_reads_chroma_and_writes_128) {
    fill(100, 0, 0);
    set_contrast({64, 200, 5, 50, -50, 0, 0, 0});
    load_luma_alone(loadimage_yuy2_mono_ajust, 16, 2, 16, 32);
    bytes expected;
    for (int i = 0; i < 32; ++i)
        expected.insert(expected.end(), {105, 128});
    EXPECT_EQ(written(64), expected);
    // Nor is anything added to null pointers, step by step either: the rows overlap.
    wipe();
    loadimage_yuy2_mono_ajust(y.data(), nullptr, nullptr, dst.data(), 32, 2, 32, 0, nullptr);
    EXPECT_EQ(written(64), expected);
}

// ---- Half the size -----------------------------------------------------------------------------

class half_size : public yuy2_surface {
protected:
    // Pairs of these samples all over a plane.
    static void fill_pairs(bytes &plane, int even, int odd) {
        for (std::size_t i = 0; i < plane.size(); i += 2) {
            plane[i] = static_cast<unsigned char>(even);
            plane[i + 1] = static_cast<unsigned char>(odd);
        }
    }
};

INSTANTIATE_ON_EACH_TARGET(half_size);

TEST_P(half_size, yuy2_takes_the_average_rounded_up) {
    fill_pairs(y, 10, 11);
    fill_pairs(u, 20, 23);
    fill_pairs(v, 255, 254);
    set_contrast(neutral);
    load_alone(loadimage_half_yuy2_ajust, 16, 2, 16, 16);
    EXPECT_EQ(written(4), (bytes{11, 22, 11, 255}));
    EXPECT_EQ(written_runs(), (runs{{0, 32}}));
}

TEST_P(half_size, yuy2_averages_before_it_adjusts) {
    fill_pairs(y, 10, 11);
    fill_pairs(u, 20, 21);
    fill_pairs(v, 0, 255);
    set_contrast({128, 128, 0, 0, -100, 0, 0, 0});
    load_alone(loadimage_half_yuy2_ajust, 16, 2, 16, 16);
    EXPECT_EQ(written(4), (bytes{22, 42, 22, 156}));
}

TEST_P(half_size, yuy2_writes_width_bytes_a_row_and_drifts_in_both_rows) {
    fill(235, 128, 128);
    set_contrast(neutral);
    load_alone(loadimage_half_yuy2_ajust, 20, 4, 32, 400);
    EXPECT_EQ(written_runs(), (runs{{0, 32}, {400 + 12, 32}, {800 + 24, 32}, {1200 + 36, 32}}));
}

TEST_P(half_size, yv12_takes_the_odd_samples) {
    fill_pairs(y, 10, 11);
    fill_pairs(u, 200, 20);
    fill_pairs(v, 0, 30);
    set_contrast(neutral);
    load_alone(loadimage_half_yv12_ajust, 32, 2, 32, 16);
    bytes expected(32, 11);
    expected.insert(expected.end(), 8, 30);
    expected.insert(expected.end(), 8, 20);
    EXPECT_EQ(written(48), expected);
    EXPECT_EQ(written_runs(), (runs{{0, 48}}));
}

TEST_P(half_size, yv12_does_not_cross_the_chroma_offsets) {
    fill(100, 100, 100);
    set_contrast({64, 64, 1, 10, -20, 0, 0, 0});
    load_alone(loadimage_half_yv12_ajust, 32, 4, 32, 32);
    const int v_rows = 4 * 32, u_rows = v_rows + 2 * 16;
    EXPECT_EQ(written(16), bytes(16, 101));
    EXPECT_EQ(written(8, v_rows), bytes(8, 80));
    EXPECT_EQ(written(8, u_rows), bytes(8, 110));
}

TEST_P(half_size, yv12_writes_chroma_rows_of_width_40_exactly) {
    number_samples();
    set_contrast(neutral);
    constexpr int pitch = 100, height = 4, v_rows = height * pitch;
    constexpr int u_rows = v_rows + pitch / 2 * (height / 2);
    load_alone(loadimage_half_yv12_ajust, 40, height, 40, pitch);
    for (int row = 0; row < 2; ++row) {
        bytes odd_u, odd_v;
        for (int i = 1; i < 20; i += 2) {
            odd_u.push_back(u[20 * row + i]);
            odd_v.push_back(v[20 * row + i]);
        }
        EXPECT_EQ(written(10, v_rows + 50 * row), odd_v) << "row " << row;
        EXPECT_EQ(written(10, u_rows + 50 * row), odd_u) << "row " << row;
    }
    wipe();
    fill(235, 235, 235);
    load_alone(loadimage_half_yv12_ajust, 40, height, 40, pitch);
    // Luma is rounded up to 24 bytes a row, and drifts.
    EXPECT_EQ(written_runs(), (runs{{0, 24},
                                    {pitch + 4, 24},
                                    {2 * pitch + 8, 24},
                                    {3 * pitch + 12, 24},
                                    {v_rows, 10},
                                    {v_rows + 50, 10},
                                    {u_rows, 10},
                                    {u_rows + 50, 10}}));
}

TEST_P(half_size, yv12_keeps_every_row_of_an_odd_height) {
    fill(235, 90, 90);
    set_contrast(neutral);
    load_alone(loadimage_half_yv12_ajust, 32, 3, 32, 100);
    EXPECT_EQ(written_runs(), (runs{{0, 16}, {100, 16}, {200, 16}, {300, 8}, {350, 8}}));
}

// ---- YUY2 sources ------------------------------------------------------------------------------

class yuy2_source : public tests::picture_test {
protected:
    // Every pair of pixels of rows [first, end) of so many bytes.
    void fill_rows(int first, int end, int row_bytes, const bytes &pair) {
        for (int i = first * row_bytes; i < end * row_bytes; ++i)
            y[i] = pair[i % 4];
    }
};

INSTANTIATE_ON_EACH_TARGET(yuy2_source);

TEST_P(yuy2_source, lower_rows_take_the_chroma_of_the_upper_ones) {
    fill_rows(0, 1, 32, {10, 20, 30, 40});
    fill_rows(1, 2, 32, {50, 60, 70, 80});
    load_luma_alone(LoadYUY2_YUY2, 16, 2, 16, 32);
    EXPECT_EQ(written(32), slice(y, 32));
    for (int i = 32; i < 64; i += 4)
        EXPECT_EQ(written(4, i), (bytes{50, 20, 70, 40})) << "byte " << i;
}

TEST_P(yuy2_source, the_chroma_of_lower_rows_is_never_used) {
    set_contrast({70, 60, 1, 2, 3, 0, 0, 0});
    for (const picture_function function :
         {LoadYUY2_YUY2, LoadYUY2_YUY2_adjust, LoadYUY2_RGB32, LoadYUY2_RGB32_adjust,
          LoadYUY2_RGB24, LoadYUY2_RGB24_adjust, LoadYUY2_RGB16, LoadYUY2_RGB16_adjust}) {
        fill_rows(0, 1, 64, {100, 90, 110, 150});
        fill_rows(1, 2, 64, {120, 60, 130, 80});
        load(function, 32, 2, 32, 128);
        const bytes before = dst;
        fill_rows(1, 2, 64, {120, 0, 130, 255});
        load(function, 32, 2, 32, 128);
        EXPECT_EQ(dst, before);
    }
}

TEST_P(yuy2_source, width_12_writes_32_bytes_a_row_without_drift) {
    std::iota(y.begin(), y.end(), static_cast<unsigned char>(0));
    load_luma_alone(LoadYUY2_YUY2, 12, 4, 40, 100);
    EXPECT_EQ(written(32), slice(y, 32));
    EXPECT_EQ(written(32, 200), slice(y, 32, 160));
    wipe();
    fill(235, 0, 0);
    load_luma_alone(LoadYUY2_YUY2, 12, 4, 40, 100);
    EXPECT_EQ(written_runs(), (runs{{0, 32}, {100, 32}, {200, 32}, {300, 32}}));
}

TEST_P(yuy2_source, width_20_writes_32_pixels_of_rgb_a_row_without_drift) {
    const struct {
        picture_function function;
        int pixel_bytes;
    } members[] = {{LoadYUY2_RGB32, 4}, {LoadYUY2_RGB24, 3}, {LoadYUY2_RGB16, 2}};
    for (const auto &[function, pixel_bytes] : members) {
        wipe();
        fill_rows(0, 4, 80, {235, 128, 235, 128});
        y[2 * 80] = 16; // the first pixel of the second pair is black
        load(function, 20, 4, 40, 400);
        const int row_bytes = 32 * pixel_bytes;
        EXPECT_EQ(written_runs(),
                  (runs{{0, row_bytes}, {400, row_bytes}, {800, row_bytes}, {1200, row_bytes}}));
        EXPECT_EQ(written(pixel_bytes, 800), bytes(pixel_bytes, 0));
        EXPECT_NE(dst[800 + pixel_bytes], 0);
    }
}

TEST_P(yuy2_source, the_pitch_is_counted_in_pixels) {
    constexpr int row_bytes = 1440;
    for (int row = 0; row < 4; ++row)
        fill_rows(row, row + 1, row_bytes, bytes(4, static_cast<unsigned char>(50 * row)));
    load_luma_alone(LoadYUY2_YUY2, 720, 4, 720, row_bytes);
    for (int row = 0; row < 4; ++row)
        for (const int at : {0, row_bytes - 2})
            EXPECT_EQ(dst[row * row_bytes + at], 50 * row) << "row " << row;
}

TEST_P(yuy2_source, rgb16_layouts_out_of_range_leave_the_destination_untouched) {
    for (const unsigned layout : {4u, 7u, ~0u}) {
        info.rgb16_layout = layout;
        load(LoadYUY2_RGB16, 16, 2, 16, 32);
        load(LoadYUY2_RGB16_adjust, 16, 2, 16, 32);
        EXPECT_EQ(written_runs(), runs{}) << "layout " << layout;
    }
}

TEST_P(yuy2_source, each_plane_is_adjusted_by_its_own_offset) {
    fill(100, 0, 0);
    set_contrast({64, 32, 7, 10, -20, 0, 0, 0});
    load_luma_alone(LoadYUY2_YUY2_adjust, 8, 2, 8, 16);
    EXPECT_EQ(written(4), (bytes{107, 60, 107, 30}));
    EXPECT_EQ(written(4, 16), (bytes{107, 60, 107, 30}));
}

} // namespace
