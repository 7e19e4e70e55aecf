// What the stretches promise at the edges of their arguments, one promise per test.
#include <algorithm>

#include "tests/edge_cases.h"

namespace {

using tests::bytes;
using tests::runs;

using picture_function = void (*)(LUMALANE_PARAMETERS_picture);

// Sources in rows of 128 bytes, half of it for chroma; surfaces in rows of 512.
class stretches : public tests::picture_test {
protected:
    static constexpr int pitch = 128, chroma_pitch = pitch / 2, dst_pitch = 512;

    void SetUp() override {
        tests::picture_test::SetUp();
        set_contrast(neutral);
    }

    // Each row another sample, from the first one on.
    static void number_rows(bytes &plane, int row_bytes, int first, int step) {
        for (int row = 0; row < 20; ++row)
            fill_row(plane, row, row_bytes, first + step * row);
    }
    void number_rows() {
        number_rows(y, pitch, 10, 10);
        number_rows(u, chroma_pitch, 20, 20);
        number_rows(v, chroma_pitch, 21, 20);
    }
    // Rows of luma that alternate.
    void alternate(int even, int odd) {
        for (int row = 0; row < 40; ++row)
            fill_row(y, row, pitch, row % 2 == 0 ? even : odd);
    }

    void stretch(picture_function function, int width, int height) {
        load_alone(function, width, height, pitch, dst_pitch);
    }
    bytes row(int number, int count, int at = 0) const {
        return written(count, number * dst_pitch + at);
    }
    // Y, U and V of a pixel pair of a YUY2 surface, as numbers.
    std::vector<int> pair(int number, int x = 0) const {
        const bytes four = row(number, 4, 2 * x);
        EXPECT_EQ(four[0], four[2]);
        return {four[0], four[1], four[3]};
    }
    runs rows_of(int rows, int row_bytes) const {
        runs expected;
        for (int r = 0; r < rows; ++r)
            expected.push_back({r * dst_pitch, row_bytes});
        return expected;
    }
    static bytes repeated(int count, const bytes &some) {
        bytes all;
        for (int i = 0; i < count; ++i)
            all.insert(all.end(), some.begin(), some.end());
        return all;
    }
};

INSTANTIATE_ON_EACH_TARGET(stretches);

// ---- YV12 to YUY2 ------------------------------------------------------------------------------

const picture_function yuy2_1x2[] = {strech_picture_1X2_yuy2, strech_picture_1X2_yuy2_ajust};
const picture_function yuy2_2x2[] = {strech_picture_2X2_yuy2, strech_picture_2X2_yuy2_ajust};

TEST_P(stretches, yuy2_below_the_least_height_writes_nothing) {
    fill(100, 90, 160);
    for (const auto &[function, least] : {std::pair{&strech_picture_1X2_yuy2, 8},
                                          {&strech_picture_1X2_yuy2_ajust, 8},
                                          {&strech_picture_2X2_yuy2, 8},
                                          {&strech_picture_2X2_yuy2_ajust, 16}}) {
        for (const int height : {-16, 0, 6, least - 1}) {
            wipe();
            stretch(function, 32, height);
            EXPECT_EQ(written_runs(), runs{}) << "height " << height << " of " << least;
        }
        stretch(function, 32, least);
        EXPECT_EQ(written_runs().size(), 2u * least);
    }
}

TEST_P(stretches, yuy2_1x2_of_one_colour_is_that_colour) {
    fill(100, 90, 160);
    for (const picture_function function : yuy2_1x2) {
        wipe();
        stretch(function, 32, 8);
        EXPECT_EQ(written_runs(), rows_of(16, 64));
        for (int r = 0; r < 16; ++r)
            EXPECT_EQ(row(r, 64), repeated(16, {100, 90, 100, 160})) << "row " << r;
    }
}

TEST_P(stretches, yuy2_2x2_of_one_colour_has_luma_in_the_second_8_bytes_of_each_step) {
    fill(100, 90, 160);
    bytes step = repeated(16, {100, 90, 100, 160});
    std::fill_n(step.begin() + 8, 8, byte(100));
    for (const picture_function function : yuy2_2x2) {
        wipe();
        stretch(function, 48, 16);
        EXPECT_EQ(written_runs(), rows_of(32, 192));
        for (int r = 0; r < 32; ++r)
            EXPECT_EQ(row(r, 192), repeated(3, step)) << "row " << r;
    }
}

TEST_P(stretches, yuy2_2x2_second_8_bytes_are_the_first_8_luma_samples_of_the_row) {
    for (int x = 0; x < 32; ++x) {
        y[x] = byte(10 * (x % 16));
        y[pitch + x] = byte(10 * (x % 16) + 8);
    }
    stretch(strech_picture_2X2_yuy2, 32, 8);
    const bytes plain{0, 5, 10, 15, 20, 25, 30, 35}, between{4, 9, 14, 19, 24, 29, 34, 39};
    for (const int step : {0, 64}) {
        EXPECT_EQ(row(0, 8, step + 8), plain);
        EXPECT_EQ(row(1, 8, step + 8), between);
        EXPECT_EQ((bytes{row(1, 1, step)[0], row(1, 1, step + 6)[0]}), (bytes{4, 19}));
    }
}

TEST_P(stretches, yuy2_doubles_the_rows_and_stores_the_last_one_twice) {
    number_rows();
    for (const picture_function function : {strech_picture_1X2_yuy2, strech_picture_2X2_yuy2}) {
        stretch(function, 32, 8);
        const int luma[] = {10, 15, 20, 25, 30, 35, 40, 45, 50, 55, 60, 65, 70, 75, 80, 80};
        const int chroma[] = {20, 20, 30, 30, 40, 40, 50, 50, 60, 60, 70, 70, 80, 80, 80, 80};
        for (int r = 0; r < 16; ++r)
            EXPECT_EQ(pair(r), (std::vector{luma[r], chroma[r], chroma[r] + 1})) << "row " << r;
    }
}

TEST_P(stretches, yuy2_of_rows_that_the_cache_has_no_room_for) {
    for (const int width : {8176, 8192, 8208}) {
        bytes luma, surface(std::size_t{32} * width);
        for (int r = 0; r < 8; ++r)
            luma.insert(luma.end(), width, byte(10 * r));
        strech_picture_1X2_yuy2(luma.data(), u.data(), v.data(), surface.data(), width, 8, width,
                                2 * width, nullptr);
        for (int r = 0; r < 16; ++r)
            for (const int x : {0, width - 1})
                EXPECT_EQ(surface[2 * (r * width + x)], std::min(5 * r, 70)) << "row " << r;
    }
}

TEST_P(stretches, yuy2_averages_round_up) {
    alternate(0, 255);
    for (const picture_function function : yuy2_2x2) {
        stretch(function, 32, 16);
        EXPECT_EQ(row(1, 1)[0], 128);
        EXPECT_EQ(row(3, 1)[0], 128);
    }
    stretch(strech_picture_1X2_yuy2, 32, 16);
    EXPECT_EQ(row(1, 1)[0], 128);
    EXPECT_EQ(row(3, 1)[0], 128);
}

TEST_P(stretches, yuy2_2x2_averages_along_the_row_first_and_rounds_twice) {
    y[1] = 3, y[pitch + 1] = 1; // 0, 3 over 0, 1: averaged down first it would be 1
    for (const picture_function function : yuy2_2x2) {
        stretch(function, 32, 16);
        EXPECT_EQ(row(1, 3)[2], 2);
    }
}

TEST_P(stretches, yuy2_2x2_looks_ahead_from_step_to_step_and_repeats_the_last_sample) {
    for (int x = 0; x < pitch; ++x)
        y[x] = byte(4 * (x % 64));
    for (int x = 0; x < chroma_pitch; ++x)
        u[x] = v[x] = byte(8 * (x % 32));
    for (const picture_function function : yuy2_2x2) {
        stretch(function, 32, 16);
        // Pixels 30 and 31 of the first step and 0 and 1 of the second: 15 | 16.
        EXPECT_EQ(row(0, 8, 60), (bytes{60, 60, 62, 60, 64, 64, 66, 64}));
        // The last pixels: not 31 | 32.
        EXPECT_EQ(row(0, 4, 124), (bytes{124, 120, 124, 120}));
    }
}

TEST_P(stretches, yuy2_1x2_adjusted_filters_the_inner_rows_only) {
    // Curved, so that the average and the four taps differ.
    for (int r = 0; r < 12; ++r)
        fill_row(y, r, pitch, r * r);
    for (int r = 0; r < 6; ++r)
        fill_row(u, r, chroma_pitch, 8 * r * r);
    stretch(strech_picture_1X2_yuy2_ajust, 16, 12);
    const auto average = [](int a, int b) { return (a + b + 1) >> 1; };
    const auto filtered = [](int a, int b, int c, int d) { return (5 * b + 5 * c - a - d) >> 3; };
    const auto luma = [](int r) { return r * r; };
    const auto chroma = [](int r) { return 8 * r * r; };
    for (int r = 0; r < 12; ++r) {
        const bool averaged = r < 2 || r == 10;
        const int between = averaged  ? average(luma(r), luma(r + 1))
                            : r == 11 ? luma(11)
                                      : filtered(luma(r - 1), luma(r), luma(r + 1), luma(r + 2));
        EXPECT_EQ(row(2 * r, 1)[0], luma(r)) << "source row " << r;
        EXPECT_EQ(row(2 * r + 1, 1)[0], between) << "below source row " << r;
    }
    for (int c = 0; c < 6; ++c) {
        const bool averaged = c == 0 || c == 4;
        const int between = averaged ? average(chroma(c), chroma(c + 1))
                            : c == 5
                                ? chroma(5)
                                : filtered(chroma(c - 1), chroma(c), chroma(c + 1), chroma(c + 2));
        const auto found = [&](int below) { return row(4 * c + below, 2)[1]; };
        EXPECT_EQ((bytes{found(0), found(1), found(2), found(3)}),
                  (bytes{byte(chroma(c)), byte(chroma(c)), byte(between), byte(between)}))
            << "chroma row " << c;
    }
}

TEST_P(stretches, yuy2_1x2_four_taps_saturate_and_do_not_round) {
    const auto below_row_2 = [&](int a, int b, int c, int d) {
        fill_row(y, 1, pitch, a);
        fill_row(y, 2, pitch, b);
        fill_row(y, 3, pitch, c);
        fill_row(y, 4, pitch, d);
        stretch(strech_picture_1X2_yuy2_ajust, 16, 8);
        return int{row(5, 1)[0]};
    };
    EXPECT_EQ(below_row_2(0, 255, 255, 0), 255);
    EXPECT_EQ(below_row_2(255, 0, 0, 255), 0);
    EXPECT_EQ(below_row_2(0, 1, 0, 0), 0); // 5 / 8
    EXPECT_EQ(below_row_2(0, 2, 1, 0), 1); // 15 / 8
    EXPECT_EQ(below_row_2(1, 0, 0, 0), 0); // -1 / 8
}

TEST_P(stretches, yuy2_1x2_adjusts_after_the_interpolation) {
    alternate(0, 255);
    set_contrast({64, 64, -100, 0, 0, 0, 0, 0});
    stretch(strech_picture_1X2_yuy2_ajust, 16, 8);
    EXPECT_EQ(row(1, 1)[0], 28); // 128 - 100
}

TEST_P(stretches, yuy2_2x2_adjusts_before_the_interpolation) {
    alternate(0, 255);
    set_contrast({64, 64, -100, 0, 0, 0, 0, 0});
    stretch(strech_picture_2X2_yuy2_ajust, 32, 16);
    EXPECT_EQ(row(1, 1)[0], 78); // of 0 and 155
}

TEST_P(stretches, yuy2_adjusts_each_plane_with_its_own_offset) {
    fill(100, 90, 160);
    set_contrast({64, 64, 5, 10, -20, 0, 0, 0});
    for (const picture_function function :
         {strech_picture_1X2_yuy2_ajust, strech_picture_2X2_yuy2_ajust}) {
        stretch(function, 32, 16);
        for (const int r : {0, 1, 7, 31})
            EXPECT_EQ(pair(r), (std::vector{105, 100, 140})) << "row " << r;
    }
}

TEST_P(stretches, yuy2_odd_heights_are_the_next_even_ones) {
    number_rows();
    for (const picture_function function :
         {strech_picture_1X2_yuy2, strech_picture_1X2_yuy2_ajust, strech_picture_2X2_yuy2}) {
        wipe();
        stretch(function, 32, 10);
        const bytes even = dst;
        wipe();
        stretch(function, 32, 9);
        EXPECT_EQ(dst, even);
    }
}

TEST_P(stretches, yuy2_width_20_writes_32_pixels_and_drifts_by_12_a_row) {
    fill(100, 90, 160);
    for (const picture_function function : yuy2_1x2) {
        wipe();
        stretch(function, 20, 8);
        runs expected;
        for (int r = 0; r < 16; ++r)
            expected.push_back({r * dst_pitch + 24 * r, 64});
        EXPECT_EQ(written_runs(), expected);
    }
}

TEST_P(stretches, yuy2_2x2_writes_at_least_two_steps) {
    fill(100, 90, 160);
    for (const int width : {0, 16, 31, 32}) {
        wipe();
        load_alone(strech_picture_2X2_yuy2, width, 8, pitch, dst_pitch + 4 * width);
        // Each row starts where the one before ended, and then the pitch less the width further on.
        runs expected;
        for (int r = 0; r < 16; ++r)
            expected.push_back({r * (128 + dst_pitch), 128});
        EXPECT_EQ(written_runs(), expected) << "width " << width;
    }
}

// ---- YUY2 to YUY2 ------------------------------------------------------------------------------

class packed_stretches : public stretches {
protected:
    static constexpr int row_bytes = 64;

    // Without the arguments that are not read.
    void stretch_plain(int height) {
        yuy2_strech_picture_2X2_yuy2(y.data(), unmapped(), unmapped(), dst.data(), row_bytes,
                                     height, dst_pitch);
    }
    void stretch_adjusted(int height) {
        yuy2_strech_picture_2X2_yuy2_ajust(y.data(), unmapped(), unmapped(), dst.data(), row_bytes,
                                           height, dst_pitch,
                                           reinterpret_cast<tag_ajust_contrast_info *>(unmapped()));
    }
    void fill_packed(int row, int luma, int u_sample, int v_sample) {
        for (int x = 0; x < row_bytes; x += 4) {
            const bytes pixels{byte(luma), byte(u_sample), byte(luma), byte(v_sample)};
            std::copy(pixels.begin(), pixels.end(), y.begin() + row * row_bytes + x);
        }
    }
};

INSTANTIATE_ON_EACH_TARGET(packed_stretches);

TEST_P(packed_stretches, below_the_least_height_write_nothing) {
    y.assign(y.size(), 100);
    for (const int height : {-8, 7})
        stretch_adjusted(height);
    for (const int height : {-8, 7, 8, 15})
        stretch_plain(height);
    EXPECT_EQ(written_runs(), runs{});
    stretch_adjusted(8);
    EXPECT_EQ(written_runs(), rows_of(16, 128));
    stretch_plain(16);
    EXPECT_EQ(written_runs(), rows_of(32, 128));
}

TEST_P(packed_stretches, have_luma_in_the_second_8_bytes_of_each_step) {
    for (int r = 0; r < 8; ++r)
        fill_packed(r, 100, 90, 160);
    stretch_adjusted(8);
    bytes step = repeated(16, {100, 90, 100, 160});
    std::fill_n(step.begin() + 8, 8, byte(100));
    for (int r = 0; r < 16; ++r)
        EXPECT_EQ(row(r, 128), repeated(2, step)) << "row " << r;
}

TEST_P(packed_stretches, take_the_chroma_of_even_rows_and_average_it_in_every_fourth_row) {
    // That of odd rows is of no account.
    for (int r = 0; r < 16; ++r)
        fill_packed(r, 10 * r, r % 2 == 0 ? 10 * r : 255, r % 2 == 0 ? 10 * r + 1 : 255);
    stretch_plain(16);
    for (int r = 0; r < 32; ++r) {
        const int even = r / 4 * 20;
        const int chroma = r % 4 == 3 && r < 31 ? even + 10 : even;
        EXPECT_EQ(pair(r), (std::vector{std::min(5 * r, 150), chroma, chroma + 1})) << "row " << r;
    }
}

TEST_P(packed_stretches, look_ahead_from_strip_to_strip_and_repeat_the_last_sample) {
    for (int x = 0; x < row_bytes; ++x)
        y[x] = byte(3 * x);
    stretch_adjusted(8);
    // Luma is every second byte, U and V every fourth.
    EXPECT_EQ(row(0, 8, 60), (bytes{90, 93, 93, 99, 96, 99, 99, 105}));
    EXPECT_EQ(row(0, 4, 124), (bytes{186, 183, 186, 189}));
}

TEST_P(packed_stretches, average_along_the_row_first_and_round_twice) {
    y[2] = 3, y[row_bytes + 2] = 1; // luma 0, 3 over 0, 1: averaged down first it would be 1
    stretch_adjusted(8);
    EXPECT_EQ(row(1, 3)[2], 2);
}

TEST_P(packed_stretches, adjust_before_the_interpolation) {
    for (int r = 0; r < 8; ++r)
        fill_packed(r, r % 2 == 0 ? 0 : 255, 90, 160);
    set_contrast({64, 64, -100, 10, -20, 0, 0, 0});
    stretch_adjusted(8);
    EXPECT_EQ(pair(1), (std::vector{78, 100, 140})); // of 0 and 155
}

TEST_P(packed_stretches, start_later_strips_lower_after_an_odd_height) {
    for (int r = 0; r < 12; ++r)
        fill_packed(r, 10 * r, 90, 160);
    stretch_adjusted(9);
    // Twenty rows are made of nine; the second strip starts a source row and two rows lower.
    runs expected = rows_of(22, 128);
    for (int r = 0; r < 2; ++r) {
        expected[r].count = 64;
        expected[20 + r] = {(20 + r) * dst_pitch + 64, 64};
    }
    EXPECT_EQ(written_runs(), expected);
    EXPECT_EQ(row(0, 1)[0], 0);
    EXPECT_EQ(row(2, 1)[0], 10);
    EXPECT_EQ(row(2, 1, 64)[0], 10);
}

TEST_P(packed_stretches, read_of_a_strip_that_starts_lower_only_the_next_samples) {
    // Beside the first strip there is nothing in its first row but 4 bytes: the second one starts a row
    // lower. The next page faults.
    constexpr int page = 4096, wide = page + 64, height = 9, rows = height + 1 + wide / 32;
    differential::guarded_region region;
    auto *const src = reinterpret_cast<unsigned char *>(region.begin()) + page - 36;
    for (int i = 0; i < rows * wide; ++i)
        src[i] = byte(i * 7 + i / 251);
    const auto stretched = [](unsigned char *from) {
        bytes to(std::size_t{64} * (4 * height + 4 * wide / 32));
        yuy2_strech_picture_2X2_yuy2_ajust(from, nullptr, nullptr, to.data(), wide, height, 64,
                                           nullptr);
        return to;
    };
    bytes open(src, src + rows * wide);
    region.guard(region.begin() + page, page);
    EXPECT_EQ(stretched(src), stretched(open.data()));
}

TEST_P(packed_stretches, are_stored_strip_by_strip_where_rows_overlap) {
    for (int r = 0; r < 8; ++r)
        fill_packed(r, 10 + r, 90, 160);
    // Half a row apart: the second strip of a row lies on the first one of the next row.
    yuy2_strech_picture_2X2_yuy2_ajust(y.data(), unmapped(), unmapped(), dst.data(), row_bytes, 8,
                                       64, nullptr);
    EXPECT_EQ(dst[0], 10);
    for (int r = 1; r < 16; ++r)
        EXPECT_EQ(dst[64 * r], 10 + r / 2) << "row " << r;
}

TEST_P(packed_stretches, store_the_first_row_of_a_pair_before_the_one_above_it) {
    for (int r = 0; r < 8; ++r)
        fill_packed(r, 10 * r, 90, 160);
    // Rows that lie 60 bytes apart: each strip of 64 ends over the one in the next row. In the last
    // strip only rows 4j and 4j + 2 lie below the end of the row above them.
    yuy2_strech_picture_2X2_yuy2_ajust(y.data(), unmapped(), unmapped(), dst.data(), row_bytes, 8,
                                       60, nullptr);
    for (int r = 0; r < 16; ++r) {
        const bool below = r > 2 && r % 2 == 0;
        EXPECT_EQ(dst[60 * r + 64], below ? 5 * (r - 1) : std::min(5 * r, 70)) << "row " << r;
    }
}

// ---- RGB ---------------------------------------------------------------------------------------

class rgb_stretches : public stretches {
protected:
    void stretch_rgb16(int width, int height, unsigned layout) {
        info.rgb16_layout = layout;
        load(strech_picture_1X2_yuy2_ajust_rgb16, width, height, pitch, dst_pitch);
    }
};

INSTANTIATE_ON_EACH_TARGET(rgb_stretches);

TEST_P(rgb_stretches, below_height_12_write_nothing_and_read_no_record) {
    fill(235, 128, 128);
    for (const int height : {-4, 0, 10, 11}) {
        stretch(strech_picture_1X2_yuy2_ajust_rgb32, 32, height);
        stretch(strech_picture_1X2_yuy2_ajust_rgb24, 32, height);
        stretch(strech_picture_1X2_yuy2_ajust_rgb16, 32, height);
        EXPECT_EQ(written_runs(), runs{}) << "height " << height;
    }
    stretch(strech_picture_1X2_yuy2_ajust_rgb24, 32, 12);
    EXPECT_EQ(written_runs(), rows_of(24, 96));
}

TEST_P(rgb_stretches, rgb16_layouts_out_of_range_write_nothing) {
    fill(235, 128, 128);
    for (const unsigned layout : {4u, ~0u}) {
        stretch_rgb16(32, 12, layout);
        EXPECT_EQ(written_runs(), runs{}) << "layout " << layout;
    }
}

TEST_P(rgb_stretches, rgb16_layout_1_alone_has_bit_0_clear) {
    fill(255, 128, 128);
    for (unsigned layout = 0; layout < 4; ++layout) {
        stretch_rgb16(32, 12, layout);
        const bytes white = layout == 1 ? bytes{0xfe, 0xff} : bytes{0xff, 0xff};
        for (const int r : {0, 1, 2, 3, 23})
            EXPECT_EQ(row(r, 64), repeated(32, white)) << "layout " << layout;
    }
}

TEST_P(rgb_stretches, double_the_rows_and_store_the_last_one_twice) {
    number_rows();
    stretch(strech_picture_1X2_yuy2_ajust_rgb32, 32, 12);
    for (int r = 0; r < 24; ++r) {
        const int luma = std::min(10 + 5 * r, 120);
        const int chroma = std::min(20 + (r + 2) / 4 * 10 + r / 4 * 10, 120);
        for (const int x : {0, 31})
            EXPECT_EQ(row(r, 4, 4 * x), rgb32(luma, chroma, chroma + 1)) << "row " << r;
    }
    EXPECT_EQ(row(23, 128), row(22, 128));
}

TEST_P(rgb_stretches, averages_round_up) {
    fill(0, 128, 128);
    alternate(0, 255);
    stretch(strech_picture_1X2_yuy2_ajust_rgb32, 32, 12);
    for (const int r : {1, 3, 5, 21})
        EXPECT_EQ(row(r, 128), repeated(32, rgb32(128, 128, 128))) << "row " << r;
}

TEST_P(rgb_stretches, adjust_before_the_interpolation) {
    fill(0, 100, 140);
    alternate(0, 255);
    set_contrast({64, 64, -100, 7, -9, 0, 0, 0});
    stretch(strech_picture_1X2_yuy2_ajust_rgb32, 32, 12);
    EXPECT_EQ(row(1, 4), rgb32(78, 107, 131)); // luma of 0 and 155
}

TEST_P(rgb_stretches, rgb32_width_20_writes_32_pixels_without_drift) {
    fill(235, 128, 128);
    stretch(strech_picture_1X2_yuy2_ajust_rgb32, 20, 12);
    for (int r = 0; r < 24; ++r) {
        EXPECT_EQ(row(r, 128), repeated(32, {254, 254, 254, 0})) << "row " << r;
        EXPECT_EQ(dst[r * dst_pitch + 128], untouched) << "row " << r;
    }
}

TEST_P(rgb_stretches, start_later_strips_lower_after_an_odd_height) {
    fill(235, 128, 128);
    stretch(strech_picture_1X2_yuy2_ajust_rgb24, 32, 13);
    // Twenty-eight rows are made of thirteen; the second strip starts two rows lower.
    runs expected = rows_of(30, 96);
    for (int r = 0; r < 2; ++r) {
        expected[r].count = 48;
        expected[28 + r] = {(28 + r) * dst_pitch + 48, 48};
    }
    EXPECT_EQ(written_runs(), expected);
}

TEST_P(rgb_stretches, are_stored_strip_by_strip_where_rows_overlap) {
    // The first strip black and the second white, rows half as far apart as they are long.
    fill(16, 128, 128);
    for (int r = 0; r < 12; ++r)
        std::fill_n(y.begin() + r * pitch + 16, 16, byte(235));
    load_alone(strech_picture_1X2_yuy2_ajust_rgb24, 32, 12, pitch, 48);
    EXPECT_EQ(written(48), bytes(48, 0));
    EXPECT_EQ(written(24 * 48, 48), bytes(24 * 48, 254));
}

// ---- Planes ------------------------------------------------------------------------------------

class plane_stretches : public stretches {
protected:
    // A plane of four rows of 32, each of one sample: 10, 20, 30, 40.
    void fill_tight() {
        for (int r = 0; r < 4; ++r)
            fill_row(y, r, 32, 10 + 10 * r);
    }
    bytes samples_of_rows(std::initializer_list<int> rows, int row_bytes) {
        bytes all;
        for (const int sample : rows)
            all.insert(all.end(), row_bytes, byte(sample));
        return all;
    }
};

INSTANTIATE_ON_EACH_TARGET(plane_stretches);

TEST_P(plane_stretches, adjusted_2x2_starts_twice_with_the_first_row_and_loses_the_last) {
    fill_tight();
    strech_pic_2X2_adjust(y.data(), dst.data(), 32, 4, 32, 64, nullptr, 1);
    EXPECT_EQ(written(8 * 64), samples_of_rows({10, 10, 15, 20, 25, 30, 30, 30}, 64));
    EXPECT_EQ(written_runs(), (runs{{0, 8 * 64}}));
}

TEST_P(plane_stretches, adjusted_2x2_averages_along_the_row_first_and_rounds_twice) {
    y[1] = 3, y[33] = 1; // 0, 3 over 0, 1: averaged down first it would be 1
    strech_pic_2X2_adjust(y.data(), dst.data(), 32, 4, 32, 64, nullptr, 1);
    EXPECT_EQ(written(64, 2 * 64)[1], 2);
}

TEST_P(plane_stretches, adjusted_1x2_starts_twice_with_the_first_row_and_loses_the_last) {
    for (int r = 0; r < 4; ++r)
        fill_row(y, r, pitch, 10 + 10 * r);
    strech_pic_1X2_adjust(y.data(), dst.data(), 32, 4, pitch, 32, nullptr, 1);
    EXPECT_EQ(written(8 * 32), samples_of_rows({10, 10, 15, 20, 25, 30, 30, 30}, 32));
    EXPECT_EQ(written_runs(), (runs{{0, 8 * 32}}));
}

TEST_P(plane_stretches, adjusted_1x2_stores_the_last_row_right_behind_the_one_before) {
    for (int r = 0; r < 4; ++r)
        fill_row(y, r, pitch, 10 + 10 * r);
    strech_pic_1X2_adjust(y.data(), dst.data(), 32, 4, pitch, 100, nullptr, 1);
    EXPECT_EQ(written(64, 600), bytes(64, 30));
    // Of row 7 nothing is written.
    EXPECT_EQ(written_runs().back(), (tests::run{600, 64}));
}

TEST_P(plane_stretches,
       adjusted_2x2_takes_the_source_rows_as_one_run_and_reads_below_at_the_pitch) {
    for (int i = 0; i < 4096; ++i)
        y[i] = byte(i / 16);
    // Rows start 32 bytes apart, which is 2 in samples; a pitch of 80 is 5. At its end the source
    // goes back by the pitch.
    strech_pic_2X2_adjust(y.data() + 160, dst.data(), 32, 3, 80, dst_pitch, nullptr, 1);
    EXPECT_EQ(row(0, 1), bytes{10});
    EXPECT_EQ(row(1, 1), bytes{10});
    EXPECT_EQ(row(2, 1), bytes{13}); // of 10 and 15
    EXPECT_EQ(row(3, 1), bytes{12});
}

TEST_P(plane_stretches, adjusted_2x2_goes_back_by_the_pitch_for_its_last_two_rows) {
    for (int i = 0; i < 4096; ++i)
        y[i] = byte(i / 16);
    // From 640 bytes on: 40. After two rows of 32 the source is at 44, back by 5 at 39, and after
    // that row, which ends at 41, back at 36.
    strech_pic_2X2_adjust(y.data() + 640, dst.data(), 32, 3, 80, dst_pitch, nullptr, 1);
    EXPECT_EQ(row(4, 1), bytes{39});
    EXPECT_EQ(row(4, 1, 64), bytes{36});
}

TEST_P(plane_stretches, adjusted_2x2_does_not_double_the_last_samples_of_a_width_off_16) {
    for (int x = 0; x < 24; ++x)
        y[x] = y[24 + x] = byte(10 * x);
    strech_pic_2X2_adjust(y.data(), dst.data(), 24, 2, 24, dst_pitch, nullptr, 1);
    // 16 samples are doubled; then both pointers go back by 8 and 16 follow as they are.
    const bytes doubled{0, 5, 10, 15, 20, 25};
    bytes as_they_are;
    for (int x = 8; x < 24; ++x)
        as_they_are.push_back(byte(10 * x));
    EXPECT_EQ(row(1, 6), doubled);
    EXPECT_EQ(row(1, 2, 22), (bytes{110, 115}));
    EXPECT_EQ(row(1, 16, 24), as_they_are);
    EXPECT_EQ(dst[dst_pitch + 40], untouched);
    // The first row is doubled throughout.
    EXPECT_EQ(row(0, 4, 44), (bytes{220, 225, 230, 230}));
}

TEST_P(plane_stretches, adjusted_1x2_does_the_last_16_samples_of_a_width_off_16_once_more) {
    for (int x = 0; x < 24; ++x) {
        y[x] = byte(10 * x);
        y[pitch + x] = byte(10 * x + 4);
    }
    strech_pic_1X2_adjust(y.data(), dst.data(), 24, 3, pitch, dst_pitch, nullptr, 1);
    EXPECT_EQ(row(1, 24), slice(y, 24));
    for (int x = 0; x < 24; ++x)
        EXPECT_EQ(row(2, 24)[x], 10 * x + 2);
    EXPECT_EQ(dst[2 * dst_pitch + 24], untouched);
}

TEST_P(plane_stretches, adjusted_ones_have_the_luma_gain_for_every_plane_and_its_offset) {
    y.assign(y.size(), 100);
    set_contrast({32, 128, 1, 2, 3, 0, 0, 0});
    for (int plane_number = 1; plane_number <= 3; ++plane_number) {
        strech_pic_2X2_adjust(y.data(), dst.data(), 16, 2, 16, 32, nullptr, plane_number);
        EXPECT_EQ(written(128), bytes(128, byte(50 + plane_number)));
        strech_pic_1X2_adjust(y.data(), dst.data(), 16, 2, 16, 16, nullptr, plane_number);
        EXPECT_EQ(written(64), bytes(64, byte(50 + plane_number)));
    }
}

TEST_P(plane_stretches, adjusted_ones_adjust_after_the_interpolation) {
    for (int x = 0; x < 64; ++x)
        y[x] = x < 32 ? 0 : 255;
    set_contrast({64, 64, -100, 0, 0, 0, 0, 0});
    strech_pic_2X2_adjust(y.data(), dst.data(), 32, 2, 32, dst_pitch, nullptr, 1);
    strech_pic_1X2_adjust(y.data(), dst.data() + 2000, 32, 3, 32, 32, nullptr, 1);
    EXPECT_EQ(written(1, 2000 + 2 * 32), bytes{28}); // 128 - 100
    y[1] = 255;
    strech_pic_2X2_adjust(y.data(), dst.data(), 32, 2, 32, dst_pitch, nullptr, 1);
    EXPECT_EQ(written(3), (bytes{0, 28, 155}));
}

TEST_P(plane_stretches, yv12_lies_in_one_buffer_with_v_before_u_and_crossed_offsets) {
    fill_tight();
    u.assign(u.size(), 80);
    v.assign(v.size(), 120);
    set_contrast({64, 64, 0, 1, 2, 0, 0, 0});
    load_alone(strech_picture_1X2_yv12_ajust, 32, 4, 32, 32);
    EXPECT_EQ(written(256), samples_of_rows({10, 10, 15, 20, 25, 30, 30, 30}, 32));
    EXPECT_EQ(written(64, 256), bytes(64, 121));
    EXPECT_EQ(written(64, 256 + 64), bytes(64, 82));
    EXPECT_EQ(written_runs(), (runs{{0, 256 + 128}}));

    wipe();
    load_alone(strech_picture_2X2_yv12_ajust, 32, 4, 32, 64);
    EXPECT_EQ(written(512), samples_of_rows({10, 10, 15, 20, 25, 30, 30, 30}, 64));
    EXPECT_EQ(written(128, 512), bytes(128, 121));
    EXPECT_EQ(written(128, 512 + 128), bytes(128, 82));
    EXPECT_EQ(written_runs(), (runs{{0, 512 + 256}}));
}

TEST_P(plane_stretches, plain_2x2_clears_its_first_strip) {
    y.assign(y.size(), 100);
    strech_pic_2X2(y.data(), dst.data(), 24, 4, 24, dst_pitch);
    bytes expected(48, 100);
    std::fill_n(expected.begin(), 15, byte(0));
    expected[15] = 50;
    for (int r = 0; r < 7; ++r)
        EXPECT_EQ(row(r, 48), expected) << "row " << r;
}

TEST_P(plane_stretches, plain_2x2_clears_only_as_many_bits_as_twice_the_height_times_the_pitch) {
    y.assign(y.size(), 100);
    strech_pic_2X2(y.data(), dst.data(), 16, 2, 16, 2); // 8 bits
    EXPECT_EQ(dst[0], 0);
    EXPECT_EQ(dst[1], 50);
    strech_pic_2X2(y.data(), dst.data() + 1000, 16, 2, 16, 3); // 12 bits
    EXPECT_EQ(written(3, 1000), (bytes{0, 48, 96}));
    strech_pic_2X2(y.data(), dst.data() + 2000, 16, 2, 16, 0); // none
    EXPECT_EQ(written(16, 2000), bytes(16, 100));
    strech_pic_2X2(y.data(), dst.data() + 3000, 16, 2, 16, -2); // many: it is counted unsigned
    EXPECT_EQ(written(2, 3000), (bytes{0, 0}));
}

TEST_P(plane_stretches,
       plain_2x2_stores_the_last_row_below_the_picture_in_all_strips_but_the_last) {
    for (int r = 0; r < 4; ++r)
        fill_row(y, r, pitch, 10 + 10 * r);
    strech_pic_2X2(y.data(), dst.data(), 24, 4, pitch, dst_pitch);
    const int luma[] = {10, 15, 20, 25, 30, 35, 40, 40};
    for (int r = 0; r < 8; ++r)
        EXPECT_EQ(row(r, 16, 32), bytes(16, byte(luma[r]))) << "row " << r;
    EXPECT_EQ(row(6, 16, 16), bytes(16, 40));
    EXPECT_EQ(row(7, 32), bytes(32, untouched));
    EXPECT_EQ(row(8, 16, 16), bytes(16, 40));
    EXPECT_EQ(row(8, 1, 32), bytes(1, untouched));
}

TEST_P(plane_stretches, plain_2x2_looks_ahead_from_strip_to_strip_and_repeats_the_last_sample) {
    for (int x = 0; x < pitch; ++x)
        y[x] = y[pitch + x] = byte(10 * x);
    strech_pic_2X2(y.data(), dst.data(), 24, 2, pitch, dst_pitch);
    EXPECT_EQ(row(0, 4, 30), (bytes{150, 155, 160, 165}));
    EXPECT_EQ(row(0, 2, 46), (bytes{230, 230}));
}

TEST_P(plane_stretches, plain_2x2_averages_along_the_row_first_and_rounds_twice) {
    y[9] = 3, y[pitch + 9] = 1; // 0, 3 over 0, 1: averaged down first it would be 1
    strech_pic_2X2(y.data(), dst.data(), 24, 2, pitch, dst_pitch);
    EXPECT_EQ(row(1, 1, 17), bytes{2});
}

TEST_P(plane_stretches, plain_2x2_of_width_8_has_two_strips) {
    y.assign(y.size(), 100);
    strech_pic_2X2(y.data(), dst.data(), 8, 2, pitch, dst_pitch);
    EXPECT_EQ(written_runs(), (runs{{0, 32},
                                    {dst_pitch, 32},
                                    {2 * dst_pitch, 32},
                                    {3 * dst_pitch + 16, 16},
                                    {4 * dst_pitch, 16}}));
}

// ---- Frames ------------------------------------------------------------------------------------

class frame_stretches : public stretches {
protected:
    static constexpr int length = 64, chroma_length = length / 2;
    tagVideoFrame frame{};

    void SetUp() override {
        stretches::SetUp();
        fill(100, 90, 160);
    }
    void stretch_frame(int start = 0, int height = 8) {
        frame.plane_y = y.data();
        frame.plane_u = u.data();
        frame.plane_v = v.data();
        frame.luma_pitch = length;
        strech_opt_yuy2_ajust(&frame, start, height, dst.data(), dst_pitch, nullptr);
    }
    // All rows of a plane: to the left of the edge 0, from there on 200, with an edge in the even
    // rows and one in the odd rows.
    static void draw_edge(bytes &plane, int row_bytes, int even, int odd) {
        for (int r = 0; r < 20; ++r)
            for (int x = 0; x < row_bytes; ++x)
                plane[r * row_bytes + x] = x < (r % 2 == 0 ? even : odd) ? 0 : 200;
    }
    // One component of a row of the surface.
    bytes every(int number, int first, int distance) const {
        bytes taken;
        for (int at = first; at < 2 * length; at += distance)
            taken.push_back(dst[number * dst_pitch + at]);
        return taken;
    }
    bytes luma_of(int number) const { return every(number, 0, 2); }
    static bytes edge_at(int x, int count) {
        bytes samples(count, 0);
        std::fill(samples.begin() + x, samples.end(), byte(200));
        return samples;
    }
};

INSTANTIATE_ON_EACH_TARGET(frame_stretches);

TEST_P(frame_stretches, below_height_8_write_nothing_and_read_no_record) {
    for (const int height : {7, 0, -8})
        strech_opt_yuy2_ajust(reinterpret_cast<tagVideoFrame *>(unmapped()), 0, height, dst.data(),
                              dst_pitch, nullptr);
    EXPECT_EQ(written_runs(), runs{});
}

TEST_P(frame_stretches, of_one_colour_are_that_colour) {
    stretch_frame();
    EXPECT_EQ(written_runs(), rows_of(16, 2 * length));
    for (int r = 0; r < 16; ++r)
        EXPECT_EQ(row(r, 2 * length), repeated(length / 2, {100, 90, 100, 160})) << "row " << r;
}

TEST_P(frame_stretches, double_the_rows_and_store_the_last_one_twice) {
    number_rows(y, length, 10, 8);
    number_rows(u, chroma_length, 20, 6);
    number_rows(v, chroma_length, 21, 6);
    stretch_frame();
    for (int r = 0; r < 16; ++r) {
        const int luma = std::min(10 + 4 * r, 66);
        const int chroma = std::min(20 + r / 4 * 6 + (r % 4 < 2 ? 0 : 3), 38);
        for (const int x : {0, 30, 62})
            EXPECT_EQ(pair(r, x), (std::vector{luma, chroma, chroma + 1})) << "row " << r;
    }
}

TEST_P(frame_stretches, odd_heights_are_the_next_lower_even_ones) {
    stretch_frame(0, 9);
    EXPECT_EQ(written_runs(), rows_of(16, 2 * length));
}

TEST_P(frame_stretches, follow_edges_in_five_directions) {
    for (int d = 0; d < 5; ++d) {
        // The lower edge lies 4, 2, 0, -2 or -4 pixels further right; the new one in the middle.
        draw_edge(y, length, 32, 36 - 2 * d);
        stretch_frame();
        EXPECT_EQ(luma_of(0), edge_at(32, length)) << "direction " << d;
        EXPECT_EQ(luma_of(1), edge_at(34 - d, length)) << "direction " << d;
        EXPECT_EQ(luma_of(2), edge_at(36 - 2 * d, length)) << "direction " << d;
        // Between the second row and the third it is the other way round.
        EXPECT_EQ(luma_of(3), edge_at(34 - d, length)) << "direction " << d;
    }
}

TEST_P(frame_stretches, follow_edges_of_chroma) {
    for (int d = 0; d < 5; ++d) {
        draw_edge(u, chroma_length, 16, 20 - 2 * d);
        draw_edge(v, chroma_length, 12, 8 + 2 * d);
        stretch_frame();
        for (const int r : {2, 3}) {
            EXPECT_EQ(every(r, 1, 4), edge_at(18 - d, chroma_length)) << "direction " << d;
            EXPECT_EQ(every(r, 3, 4), edge_at(10 + d, chroma_length)) << "direction " << d;
        }
        for (const int r : {0, 1})
            EXPECT_EQ(every(r, 1, 4), edge_at(16, chroma_length)) << "direction " << d;
    }
}

TEST_P(frame_stretches, follow_no_edge_in_the_first_and_the_last_16_pixels) {
    draw_edge(y, length, 8, 12);
    stretch_frame();
    bytes averaged = edge_at(8, length);
    std::fill_n(averaged.begin() + 8, 4, byte(100));
    EXPECT_EQ(luma_of(1), averaged);
    draw_edge(y, length, 52, 56);
    stretch_frame();
    bytes at_the_end = edge_at(52, length);
    std::fill_n(at_the_end.begin() + 52, 4, byte(100));
    EXPECT_EQ(luma_of(1), at_the_end);
}

TEST_P(frame_stretches, search_where_four_samples_differ_by_more_than_32) {
    // One sample of the lower row: half of its difference remains, or the search finds the row
    // beside it.
    const auto below_a_spot = [&](int sample) {
        fill(100, 90, 160);
        for (const int r : {1, 3, 5, 7})
            y[r * length + 33] = byte(100 + sample);
        stretch_frame();
        return int{luma_of(1)[33]};
    };
    EXPECT_EQ(below_a_spot(32), 116);
    EXPECT_EQ(below_a_spot(33), 100);
}

TEST_P(frame_stretches, prefer_the_lowest_of_the_directions_that_match_equally) {
    fill(10, 90, 160);
    // At pixel 32 directions 0, 1, 2 and 4 cost 80 each; only the first one finds 90 in the lower
    // row.
    y[length + 31] = y[length + 34] = 90;
    stretch_frame();
    EXPECT_EQ(luma_of(1)[32], 50);
}

TEST_P(frame_stretches, tell_the_greatest_cost_from_the_next_lower_one) {
    // Black above white costs 4 * 255 in every direction but those that meet the one sample of 254.
    // At pixel 40 that is the last direction alone; before pixel 36 none leads straight to it.
    for (int r = 0; r < 8; ++r)
        fill_row(y, r, length, r % 2 == 0 ? 0 : 255);
    y[length + 38] = 254;
    stretch_frame();
    bytes expected(length, 128);
    std::fill(expected.begin() + 36, expected.begin() + 41, byte(127));
    EXPECT_EQ(luma_of(1), expected);
}

TEST_P(frame_stretches, adjust_after_the_search) {
    draw_edge(y, length, 32, 32);
    set_contrast({64, 64, -50, 7, -9, 0, 0, 0});
    stretch_frame();
    EXPECT_EQ(luma_of(1)[31], 0);
    EXPECT_EQ(luma_of(1)[32], 150);
    EXPECT_EQ(pair(1, 40), (std::vector{150, 97, 151}));
    EXPECT_EQ(pair(2, 40), (std::vector{150, 97, 151}));
}

TEST_P(frame_stretches, of_one_field_take_every_second_row_from_the_first_or_the_second_on) {
    number_rows(y, length, 10, 4);
    frame.field_mode = 1;
    for (const int start : {0, 1}) {
        stretch_frame(start);
        for (int r = 0; r < 15; ++r)
            EXPECT_EQ(luma_of(r)[20], 10 + 4 * start + 4 * r) << "row " << r;
    }
}

TEST_P(frame_stretches, take_the_chroma_of_a_field_from_a_quarter_of_the_start_on) {
    for (int i = 0; i < 4096; ++i)
        u[i] = v[i] = byte(i / 16);
    frame.field_mode = 1;
    // A start of 1 is 64 bytes of luma and 16 of chroma, half of a row; the field's rows of chroma
    // are 64 bytes apart.
    stretch_frame(1);
    EXPECT_EQ(pair(0, 0)[1], 1);
    EXPECT_EQ(pair(4, 0)[1], 5);
}

TEST_P(frame_stretches, that_are_progressive_start_at_half_of_the_start_row) {
    number_rows(y, length, 10, 4);
    number_rows(u, chroma_length, 20, 4);
    for (const int field_mode : {0, 2, -1}) {
        frame.field_mode = field_mode;
        stretch_frame(8);
        EXPECT_EQ(luma_of(0)[20], 10 + 4 * 4);
        EXPECT_EQ(luma_of(2)[20], 10 + 4 * 5);
        EXPECT_EQ(pair(0, 20)[1], 20 + 4 * 2);
    }
}

} // namespace
