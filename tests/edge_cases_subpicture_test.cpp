// What the functions that prepare a subpicture promise at the edges of their arguments.
#include <algorithm>
#include <cstdint>
#include <numeric>

#include "tests/edge_cases.h"

namespace {

using tests::bytes;
using tests::runs;

using mix_function = void (*)(tagMIX_INFO *);

// A drawing surface, which is the destination or the source, and the planes of a subpicture.
class subpicture_test : public tests::surface_test {
protected:
    bytes alpha = bytes(1 << 14, untouched), y = alpha, u = alpha, v = alpha;
    tag_ajust_contrast_info info{};

    // A record whose rows follow one another, with nothing to read where nothing is to be read.
    tagMIX_INFO record(int width, int height, int pixel_bytes) {
        tagMIX_INFO mix{};
        mix.video_pitch = mix.sub_pitch = mix.width = width;
        mix.dst_pitch = pixel_bytes * width;
        mix.height = height;
        mix.video_y = mix.video_v = mix.video_u = mix.dst_u = mix.dst_v = unmapped();
        mix.alpha_plane = alpha.data();
        mix.sub_y = y.data();
        mix.sub_v = v.data();
        mix.sub_u = u.data();
        mix.dst = dst.data();
        return mix;
    }

    // Lays pixels of so many bytes on the surface.
    void draw(const std::vector<unsigned> &pixels, int pixel_bytes, std::size_t at = 0) {
        for (const unsigned pixel : pixels)
            for (int i = 0; i < pixel_bytes; ++i)
                dst[at++] = static_cast<unsigned char>(pixel >> (8 * i));
    }
};

// ---- Drawing surface to AYUY2 ------------------------------------------------------------------

class conversion : public subpicture_test {
protected:
    static constexpr unsigned key = 0x00123456;

    // Y, U and V of a group of 8 pixels of one colour.
    bytes convert(mix_function function, unsigned pixel, int pixel_bytes) {
        draw(std::vector<unsigned>(8, pixel), pixel_bytes);
        tagMIX_INFO mix = record(8, 1, pixel_bytes);
        mix.color_key = ~pixel & 0xffff;
        function(&mix);
        EXPECT_EQ(slice(y, 8), bytes(8, y[0]));
        EXPECT_EQ(slice(u, 4), bytes(4, u[0]));
        EXPECT_EQ(slice(v, 4), bytes(4, v[0]));
        return {y[0], u[0], v[0]};
    }

    // The record after these pixels were converted.
    tagMIX_INFO converted(mix_function function, const std::vector<unsigned> &pixels,
                          int pixel_bytes, unsigned color_key) {
        draw(pixels, pixel_bytes);
        tagMIX_INFO mix = record(static_cast<int>(pixels.size()), 1, pixel_bytes);
        mix.color_key = color_key;
        function(&mix);
        return mix;
    }

    bool nothing_written() const {
        return slice(y, 8) == bytes(8, untouched) && slice(u, 4) == bytes(4, untouched) &&
               slice(v, 4) == bytes(4, untouched);
    }
};

INSTANTIATE_ON_EACH_TARGET(conversion);

TEST_P(conversion, a_group_of_the_key_colour_leaves_the_planes_under_it) {
    std::vector<unsigned> pixels(24, key);
    std::fill_n(pixels.begin(), 8, 0x00ffffff);
    std::fill_n(pixels.begin() + 16, 8, 0x00ffffff);
    converted(Convert_RGB32_To_AYUY2, pixels, 4, key);
    bytes expected(8, 234);
    expected.insert(expected.end(), 8, untouched);
    expected.insert(expected.end(), 8, 234);
    EXPECT_EQ(slice(y, 24), expected);
    const bytes chroma{128,       128,       128, 128, untouched, untouched,
                       untouched, untouched, 128, 128, 128,       128};
    EXPECT_EQ(slice(u, 12), chroma);
    EXPECT_EQ(slice(v, 12), chroma);
}

TEST_P(conversion, a_group_with_one_other_pixel_is_converted_whole) {
    const bytes of_the_key = convert(Convert_RGB32_To_AYUY2, key, 4);
    for (int other = 0; other < 8; ++other) {
        std::vector<unsigned> pixels(8, key);
        pixels[other] = 0x00ffffff;
        converted(Convert_RGB32_To_AYUY2, pixels, 4, key);
        for (int i = 0; i < 8; ++i)
            EXPECT_EQ(y[i], i == other ? 234 : of_the_key[0]) << "pixels " << other << ", " << i;
        for (int i = 0; i < 4; ++i) {
            EXPECT_EQ(u[i], 2 * i == other ? 128 : of_the_key[1]) << "pixel " << 2 * i;
            EXPECT_EQ(v[i], 2 * i == other ? 128 : of_the_key[2]) << "pixel " << 2 * i;
        }
    }
}

TEST_P(conversion, rgb32_and_rgb24_give_white_and_the_primaries) {
    const struct {
        unsigned pixel;
        bytes yuv;
    } colours[] = {{0x00ffffff, {234, 128, 128}},
                   {0x00ff0000, {81, 90, 239}},
                   {0x0000ff00, {144, 54, 34}},
                   {0x000000ff, {40, 239, 110}},
                   {0x00000000, {16, 128, 128}}};
    for (const auto &[pixel, yuv] : colours) {
        EXPECT_EQ(convert(Convert_RGB32_To_AYUY2, pixel, 4), yuv) << std::hex << pixel;
        EXPECT_EQ(convert(Convert_RGB24_To_AYUY2, pixel, 3), yuv) << std::hex << pixel;
    }
}

TEST_P(conversion, rgb16_does_not_repeat_the_upper_bits) {
    EXPECT_EQ(convert(Convert_RGB16_565_To_AYUY2, 0xffff, 2), (bytes{230, 127, 126}));
}

TEST_P(conversion, the_x_byte_of_rgb32_raises_all_three) {
    EXPECT_EQ(convert(Convert_RGB32_To_AYUY2, 0x01000000, 4), (bytes{17, 129, 129}));
    EXPECT_EQ(convert(Convert_RGB32_To_AYUY2, 0xff000000, 4), (bytes{255, 255, 255}));
    // 16 and 128 are ORed, not added.
    EXPECT_EQ(convert(Convert_RGB32_To_AYUY2, 0x90000000, 4), (bytes{144, 144, 144}));
}

TEST_P(conversion, rgb32_compares_the_x_byte_with_the_key) {
    converted(Convert_RGB32_To_AYUY2, std::vector<unsigned>(8, 0x77123456), 4, 0x77123456);
    EXPECT_TRUE(nothing_written());
    converted(Convert_RGB32_To_AYUY2, std::vector<unsigned>(8, key), 4, 0x77123456);
    EXPECT_FALSE(nothing_written());
}

TEST_P(conversion, rgb24_never_matches_a_key_with_a_top_byte) {
    converted(Convert_RGB24_To_AYUY2, std::vector<unsigned>(8, key), 3, key);
    EXPECT_TRUE(nothing_written());
    // The fourth byte that is read is the first of the next pixel.
    converted(Convert_RGB24_To_AYUY2, std::vector<unsigned>(8, 0x565656), 3, 0x56565656);
    EXPECT_FALSE(nothing_written());
}

TEST_P(conversion, rgb24_masks_the_byte_after_the_group) {
    dst[24] = 0xff;
    EXPECT_EQ(convert(Convert_RGB24_To_AYUY2, 0x000000, 3), (bytes{16, 128, 128}));
}

TEST_P(conversion, rgb16_compares_the_low_half_of_the_key) {
    converted(Convert_RGB16_565_To_AYUY2, std::vector<unsigned>(8, 0xf81f), 2, 0x1234f81f);
    EXPECT_TRUE(nothing_written());
    converted(Convert_RGB16_565_To_AYUY2, std::vector<unsigned>(8, 0xf81e), 2, 0x1234f81f);
    EXPECT_FALSE(nothing_written());
}

TEST_P(conversion, a_pair_takes_the_chroma_of_its_first_pixel) {
    const unsigned red = 0xff0000, blue = 0x0000ff;
    converted(Convert_RGB32_To_AYUY2, {red, blue, blue, red, red, blue, blue, red}, 4, key);
    EXPECT_EQ(slice(y, 8), (bytes{81, 40, 40, 81, 81, 40, 40, 81}));
    EXPECT_EQ(slice(u, 4), (bytes{90, 239, 90, 239}));
    EXPECT_EQ(slice(v, 4), (bytes{239, 110, 239, 110}));
}

TEST_P(conversion, width_20_converts_16_pixels_a_row_and_the_planes_lag) {
    draw(std::vector<unsigned>(80, 0x00ffffff), 4);
    tagMIX_INFO mix = record(20, 2, 4);
    mix.dst_pitch = 160;
    mix.sub_pitch = 32;
    mix.color_key = key;
    Convert_RGB32_To_AYUY2(&mix);
    // 12 to the next row on top of the 16 of the groups; chroma half of both.
    bytes expected(16, 234);
    expected.insert(expected.end(), 12, untouched);
    expected.insert(expected.end(), 16, 234);
    expected.insert(expected.end(), 12, untouched);
    EXPECT_EQ(slice(y, 56), expected);
    bytes chroma(8, 128);
    chroma.insert(chroma.end(), 6, untouched);
    chroma.insert(chroma.end(), 8, 128);
    chroma.insert(chroma.end(), 6, untouched);
    EXPECT_EQ(slice(u, 28), chroma);
    EXPECT_EQ(slice(v, 28), chroma);
}

TEST_P(conversion, the_surface_lags_as_well) {
    draw(std::vector<unsigned>(16, 0x00ffffff), 4);
    draw(std::vector<unsigned>(40, 0x00000000), 4, 64);
    draw(std::vector<unsigned>(1, 0x00ff0000), 4, 160 - 16);
    tagMIX_INFO mix = record(20, 2, 4);
    mix.dst_pitch = 160;
    mix.color_key = key;
    Convert_RGB32_To_AYUY2(&mix);
    EXPECT_EQ(slice(y, 18, 15), (bytes{234, 81, 16, 16, 16, 16, 16, 16, 16, 16, 16, 16, 16, 16, 16,
                                       16, 16, untouched}));
}

TEST_P(conversion, the_record_is_left_where_the_planes_ended) {
    const struct {
        mix_function function;
        int pixel_bytes;
    } members[] = {
        {Convert_RGB32_To_AYUY2, 4}, {Convert_RGB24_To_AYUY2, 3}, {Convert_RGB16_565_To_AYUY2, 2}};
    for (const auto &[function, pixel_bytes] : members) {
        tagMIX_INFO mix = record(20, 3, pixel_bytes);
        mix.sub_pitch = 32;
        mix.color_key = key;
        function(&mix);
        EXPECT_EQ(mix.sub_y - y.data(), 3 * (16 + 12));
        EXPECT_EQ(mix.sub_u - u.data(), 3 * (8 + 6));
        EXPECT_EQ(mix.sub_v - v.data(), 3 * (8 + 6));
        EXPECT_EQ(mix.alpha_plane - alpha.data(), 3 * 12);
        EXPECT_EQ(mix.dst, dst.data());
        EXPECT_EQ(mix.width, 20);
        EXPECT_EQ(mix.height, 3);
    }
    EXPECT_EQ(slice(alpha, 100), bytes(100, untouched));
}

TEST_P(conversion, groups_of_the_key_colour_move_the_planes_as_others_do) {
    const tagMIX_INFO mix =
        converted(Convert_RGB32_To_AYUY2, std::vector<unsigned>(24, key), 4, key);
    EXPECT_EQ(mix.sub_y - y.data(), 24);
    EXPECT_EQ(mix.sub_u - u.data(), 12);
    EXPECT_EQ(mix.sub_v - v.data(), 12);
}

TEST_P(conversion, a_second_call_goes_on_where_the_first_one_stopped) {
    draw(std::vector<unsigned>(16, 0x00ffffff), 4);
    tagMIX_INFO mix = record(8, 2, 4);
    mix.color_key = key;
    Convert_RGB32_To_AYUY2(&mix);
    bytes one_call(16, 234);
    one_call.resize(32, untouched);
    EXPECT_EQ(slice(y, 32), one_call);
    Convert_RGB32_To_AYUY2(&mix);
    EXPECT_EQ(slice(y, 32), bytes(32, 234));
}

TEST_P(conversion, a_pitch_below_the_width_moves_chroma_by_2_gigabytes) {
    draw(std::vector<unsigned>(16, 0x00ffffff), 4);
    tagMIX_INFO mix = record(16, 1, 4);
    mix.sub_pitch = 8;
    mix.color_key = key;
    Convert_RGB32_To_AYUY2(&mix);
    const auto moved = [](const unsigned char *plane, const bytes &from) {
        return reinterpret_cast<std::uintptr_t>(plane) -
               reinterpret_cast<std::uintptr_t>(from.data());
    };
    EXPECT_EQ(moved(mix.sub_u, u), 8 + 0x7ffffffcu);
    EXPECT_EQ(moved(mix.sub_v, v), 8 + 0x7ffffffcu);
    EXPECT_EQ(moved(mix.sub_y, y), 8u);
    EXPECT_EQ(moved(mix.alpha_plane, alpha), static_cast<std::uintptr_t>(-8));
}

// ---- Alpha -------------------------------------------------------------------------------------

class alpha_transfer : public subpicture_test {
protected:
    // A record of which only the surface and the alpha plane exist.
    tagMIX_INFO alpha_record(int width, int height, int pixel_bytes) {
        tagMIX_INFO mix = record(width, height, pixel_bytes);
        mix.sub_y = mix.sub_v = mix.sub_u = unmapped();
        mix.sub_pitch = -12345;
        return mix;
    }

    void call(mix_function function, int width, int pixel_bytes) {
        tagMIX_INFO mix = alpha_record(width, 1, pixel_bytes);
        function(&mix);
    }

    // How many bytes of alpha are written, from the first on.
    std::ptrdiff_t restored() const {
        return std::find(alpha.begin(), alpha.end(), untouched) - alpha.begin();
    }
};

INSTANTIATE_ON_EACH_TARGET(alpha_transfer);

TEST_P(alpha_transfer, rgb32_restores_the_lowest_byte) {
    draw(std::vector<unsigned>(8, 0x00123456), 4);
    draw({0xffffff80, 0x000000ff}, 4);
    call(Restore_RGB32_To_Alpha, 8, 4);
    EXPECT_EQ(slice(alpha, 9), (bytes{0x80, 0xff, 0x56, 0x56, 0x56, 0x56, 0x56, 0x56, untouched}));
}

TEST_P(alpha_transfer, rgb24_restores_the_lowest_byte_of_the_next_pixel) {
    std::vector<unsigned> pixels;
    for (unsigned i = 1; i <= 17; ++i)
        pixels.push_back(0xcccc00 | 10 * i);
    draw(pixels, 3);
    call(Restore_RGB24_To_Alpha, 16, 3);
    EXPECT_EQ(slice(alpha, 17), (bytes{20, 30, 40, 50, 60, 70, 80, 90, 100, 110, 120, 130, 140, 150,
                                       160, 170, untouched}));
}

TEST_P(alpha_transfer, rgb16_restores_five_bits) {
    draw(std::vector<unsigned>(16, 0xffff), 2);
    draw({0x0010, 0xffe0}, 2);
    call(Restore_RGB16_565_To_Alpha, 16, 2);
    EXPECT_EQ(slice(alpha, 4), (bytes{16, 0, 31, 31}));
}

TEST_P(alpha_transfer, loads_write_the_alpha_and_zeros) {
    std::iota(alpha.begin(), alpha.end(), static_cast<unsigned char>(200));
    alpha[1] = 16;
    call(load_subpicture_alpha_rgb32, 16, 4);
    EXPECT_EQ(written(8), (bytes{200, 0, 0, 0, 16, 0, 0, 0}));
    EXPECT_EQ(written(4, 60), (bytes{215, 0, 0, 0}));
    call(load_subpicture_alpha_rgb24, 16, 3);
    EXPECT_EQ(written(6), (bytes{200, 0, 0, 16, 0, 0}));
    EXPECT_EQ(written(3, 45), (bytes{215, 0, 0}));
    call(load_subpicture_alpha_rgb16_565, 16, 2);
    EXPECT_EQ(written(4), (bytes{200, 0, 16, 0}));
    EXPECT_EQ(written(2, 30), (bytes{215, 0}));
}

TEST_P(alpha_transfer, rgb32_round_trips_are_exact) {
    std::iota(alpha.begin(), alpha.end(), static_cast<unsigned char>(0));
    const bytes before = slice(alpha, 256);
    call(load_subpicture_alpha_rgb32, 256, 4);
    std::fill(alpha.begin(), alpha.end(), untouched);
    call(Restore_RGB32_To_Alpha, 256, 4);
    EXPECT_EQ(slice(alpha, 256), before);
}

TEST_P(alpha_transfer, rgb24_round_trips_shift_by_a_pixel) {
    std::iota(alpha.begin(), alpha.end(), static_cast<unsigned char>(0));
    const bytes shifted = slice(alpha, 31, 1);
    call(load_subpicture_alpha_rgb24, 32, 3);
    call(Restore_RGB24_To_Alpha, 32, 3);
    EXPECT_EQ(slice(alpha, 31), shifted);
    EXPECT_EQ(alpha[31], untouched); // of the surface after the row
}

TEST_P(alpha_transfer, rgb16_round_trips_keep_five_bits) {
    std::iota(alpha.begin(), alpha.end(), static_cast<unsigned char>(0));
    call(load_subpicture_alpha_rgb16_565, 256, 2);
    EXPECT_EQ(written(2, 2 * 200), (bytes{0xc8, 0x00}));
    call(Restore_RGB16_565_To_Alpha, 256, 2);
    for (int i = 0; i < 256; ++i)
        EXPECT_EQ(alpha[i], i & 0x1f) << "alpha " << i;
}

TEST_P(alpha_transfer, width_20_is_rounded_up_to_24_or_32_pixels) {
    const struct {
        mix_function function;
        int pixel_bytes, pixels;
    } restores[] = {{Restore_RGB32_To_Alpha, 4, 24},
                    {Restore_RGB24_To_Alpha, 3, 24},
                    {Restore_RGB16_565_To_Alpha, 2, 32}};
    for (const auto &[function, pixel_bytes, pixels] : restores) {
        std::fill(alpha.begin(), alpha.end(), untouched);
        std::fill(dst.begin(), dst.end(), static_cast<unsigned char>(1));
        call(function, 20, pixel_bytes);
        EXPECT_EQ(restored(), pixels);
    }
    const struct {
        mix_function function;
        int pixel_bytes;
    } loads[] = {{load_subpicture_alpha_rgb32, 4},
                 {load_subpicture_alpha_rgb24, 3},
                 {load_subpicture_alpha_rgb16_565, 2}};
    std::fill(alpha.begin(), alpha.end(), static_cast<unsigned char>(1));
    for (const auto &[function, pixel_bytes] : loads) {
        wipe();
        call(function, 20, pixel_bytes);
        EXPECT_EQ(written_runs(), (runs{{0, 32 * pixel_bytes}}));
    }
}

TEST_P(alpha_transfer, the_steps_of_alpha_come_from_half_of_video_pitch_beyond_the_width) {
    for (const int beyond : {32, 5, -7}) {
        std::fill(alpha.begin(), alpha.end(), untouched);
        draw(std::vector<unsigned>(16, 0x01), 4);
        draw(std::vector<unsigned>(16, 0x02), 4, 64);
        tagMIX_INFO mix = alpha_record(16, 2, 4);
        mix.video_pitch = 16 + beyond;
        Restore_RGB32_To_Alpha(&mix);
        const int second_row = 16 + (beyond >> 1);
        EXPECT_EQ(slice(alpha, 16, second_row), bytes(16, 2)) << "beyond the width: " << beyond;
        EXPECT_EQ(slice(alpha, std::min(16, second_row)), bytes(std::min(16, second_row), 1))
            << "beyond the width: " << beyond;
    }
}

TEST_P(alpha_transfer, loads_step_over_alpha_in_the_same_way) {
    std::iota(alpha.begin(), alpha.end(), static_cast<unsigned char>(0));
    tagMIX_INFO mix = alpha_record(16, 2, 2);
    mix.video_pitch = 16 + 32;
    load_subpicture_alpha_rgb16_565(&mix);
    EXPECT_EQ(written(2, 32), (bytes{32, 0}));
}

TEST_P(alpha_transfer, rgb24_counts_the_rows_in_the_record) {
    const struct {
        mix_function function;
        int height_after;
    } members[] = {{Restore_RGB32_To_Alpha, 3},      {Restore_RGB24_To_Alpha, 0},
                   {Restore_RGB16_565_To_Alpha, 3},  {load_subpicture_alpha_rgb32, 3},
                   {load_subpicture_alpha_rgb24, 0}, {load_subpicture_alpha_rgb16_565, 3}};
    for (const auto &[function, height_after] : members) {
        tagMIX_INFO mix = alpha_record(16, 3, 4);
        function(&mix);
        EXPECT_EQ(mix.height, height_after);
        EXPECT_EQ(mix.alpha_plane, alpha.data());
        EXPECT_EQ(mix.dst, dst.data());
    }
}

// ---- AYUY2 to the drawing surface --------------------------------------------------------------

class subpicture_load : public subpicture_test {
protected:
    void fill(int y_sample, int u_sample, int v_sample, int alpha_sample) {
        std::fill(y.begin(), y.end(), static_cast<unsigned char>(y_sample));
        std::fill(u.begin(), u.end(), static_cast<unsigned char>(u_sample));
        std::fill(v.begin(), v.end(), static_cast<unsigned char>(v_sample));
        std::fill(alpha.begin(), alpha.end(), static_cast<unsigned char>(alpha_sample));
    }

    // A record of 16 pixels a row in which everything that is not read is wild.
    tagMIX_INFO load_record(int height, int pixel_bytes) {
        tagMIX_INFO mix = record(16, height, pixel_bytes);
        mix.width = -54321;
        mix.sub_pitch = 98765;
        mix.color_key = 0x00112233;
        return mix;
    }

    // The first pixel.
    bytes load(mix_function function, int pixel_bytes) {
        tagMIX_INFO mix = load_record(1, pixel_bytes);
        mix.adjust_info = &info;
        function(&mix);
        return written(pixel_bytes);
    }
};

INSTANTIATE_ON_EACH_TARGET(subpicture_load);

TEST_P(subpicture_load, alpha_0_is_the_key_with_red_in_its_lowest_byte) {
    fill(100, 90, 150, 0);
    EXPECT_EQ(load(load_subpicture_yuy2_rgb32, 4), (bytes{0x11, 0x22, 0x33, 0x00}));
    EXPECT_EQ(load(load_subpicture_yuy2_rgb24, 3), (bytes{0x11, 0x22, 0x33}));
    EXPECT_EQ(load(load_subpicture_yuy2_rgb16, 2), (bytes{0x33, 0x22}));
}

TEST_P(subpicture_load, the_fourth_byte_is_0_whatever_the_key_has_there) {
    fill(100, 90, 150, 0);
    tagMIX_INFO mix = load_record(1, 4);
    mix.color_key = 0xff112233;
    load_subpicture_yuy2_rgb32(&mix);
    EXPECT_EQ(written(4), (bytes{0x11, 0x22, 0x33, 0x00}));
}

TEST_P(subpicture_load, alpha_is_tested_against_0_only) {
    fill(100, 90, 150, 1);
    const bytes colour = load(load_subpicture_yuy2_rgb32, 4);
    for (const int opaque : {2, 16, 17, 127}) {
        fill(100, 90, 150, opaque);
        EXPECT_EQ(load(load_subpicture_yuy2_rgb32, 4), colour) << "alpha " << opaque;
    }
}

TEST_P(subpicture_load, alpha_of_128_and_more_is_black) {
    for (const int negative : {128, 200, 255}) {
        fill(235, 128, 128, negative);
        EXPECT_EQ(load(load_subpicture_yuy2_rgb32, 4), bytes(4, 0)) << "alpha " << negative;
        EXPECT_EQ(load(load_subpicture_yuy2_rgb24, 3), bytes(3, 0)) << "alpha " << negative;
        EXPECT_EQ(load(load_subpicture_yuy2_rgb16, 2), bytes(2, 0)) << "alpha " << negative;
    }
}

TEST_P(subpicture_load, each_pixel_is_chosen_by_its_own_alpha) {
    fill(235, 128, 128, 0);
    alpha[1] = 16;
    alpha[2] = 128;
    alpha[15] = 1;
    load(load_subpicture_yuy2_rgb24, 3);
    EXPECT_EQ(written(12), (bytes{0x11, 0x22, 0x33, 254, 254, 254, 0, 0, 0, 0x11, 0x22, 0x33}));
    EXPECT_EQ(written(6, 42), (bytes{0x11, 0x22, 0x33, 254, 254, 254}));
}

TEST_P(subpicture_load, black_white_and_beyond) {
    fill(16, 128, 128, 16);
    EXPECT_EQ(load(load_subpicture_yuy2_rgb32, 4), (bytes{0, 0, 0, 0}));
    fill(235, 128, 128, 16);
    EXPECT_EQ(load(load_subpicture_yuy2_rgb32, 4), (bytes{254, 254, 254, 0}));
    fill(255, 128, 128, 16);
    EXPECT_EQ(load(load_subpicture_yuy2_rgb32, 4), (bytes{255, 255, 255, 0}));
}

TEST_P(subpicture_load, rgb16_layouts_up_to_3_are_all_taken_for_5_6_5) {
    fill(16, 200, 128, 16); // blue only
    for (const unsigned layout : {0u, 1u, 2u, 3u}) {
        info.rgb16_layout = layout;
        EXPECT_EQ(load(load_subpicture_yuy2_rgb16, 2), (bytes{145 >> 3, 0})) << layout;
    }
}

TEST_P(subpicture_load, rgb16_layouts_above_3_leave_the_surface_untouched) {
    fill(235, 128, 128, 16);
    for (const unsigned layout : {4u, ~0u}) {
        info.rgb16_layout = layout;
        load(load_subpicture_yuy2_rgb16, 2);
        load(load_subpicture_yuy2_rgb16_ajust, 2);
        EXPECT_EQ(written_runs(), runs{}) << "layout " << layout;
    }
}

TEST_P(subpicture_load, rgb32_and_rgb24_do_not_read_the_layout) {
    fill(235, 128, 128, 16);
    set_contrast(neutral);
    for (const mix_function function :
         {load_subpicture_yuy2_rgb32, load_subpicture_yuy2_rgb32_ajust, load_subpicture_yuy2_rgb24,
          load_subpicture_yuy2_rgb24_ajust}) {
        wipe();
        tagMIX_INFO mix = load_record(1, 3);
        function(&mix);
        EXPECT_EQ(written(3), bytes(3, 254));
    }
}

TEST_P(subpicture_load, video_pitch_counts_the_pixels_and_the_planes_are_one_run) {
    fill(16, 128, 128, 16);
    y[32] = 235; // first of the second row: 20 is rounded up to 32
    std::fill_n(u.begin() + 16 + 8, 8, static_cast<unsigned char>(200));
    tagMIX_INFO mix = load_record(2, 4);
    mix.video_pitch = 20;
    mix.dst_pitch = 400;
    load_subpicture_yuy2_rgb32(&mix);
    EXPECT_EQ(written_runs(), (runs{{0, 128}, {400 + 48, 128}}));
    EXPECT_EQ(written(8, 400 + 48), (bytes{254, 254, 254, 0, 0, 0, 0, 0}));
    EXPECT_EQ(written(4, 400 + 48 + 64), (bytes{145, 0, 0, 0}));
}

TEST_P(subpicture_load, the_record_is_left_as_it_was) {
    fill(100, 90, 150, 16);
    for (const mix_function function :
         {load_subpicture_yuy2_rgb32, load_subpicture_yuy2_rgb24, load_subpicture_yuy2_rgb16}) {
        tagMIX_INFO mix = load_record(3, 4);
        mix.adjust_info = &info;
        function(&mix);
        EXPECT_EQ(mix.height, 3);
        EXPECT_EQ(mix.video_pitch, 16);
        EXPECT_EQ(mix.alpha_plane, alpha.data());
        EXPECT_EQ(mix.sub_y, y.data());
        EXPECT_EQ(mix.sub_u, u.data());
        EXPECT_EQ(mix.sub_v, v.data());
        EXPECT_EQ(mix.dst, dst.data());
    }
}

TEST_P(subpicture_load, the_adjusting_forms_adjust_each_plane_by_its_own_offset) {
    set_contrast({64, 64, 3, 40, -20, 0, 0, 0});
    fill(100, 100, 140, 16);
    const bytes adjusted = load(load_subpicture_yuy2_rgb32_ajust, 4);
    fill(103, 140, 120, 16);
    EXPECT_EQ(adjusted, load(load_subpicture_yuy2_rgb32, 4));
}

TEST_P(subpicture_load, the_key_is_not_adjusted) {
    set_contrast({0, 0, 255, 255, 255, 0, 0, 0});
    fill(100, 100, 100, 0);
    EXPECT_EQ(load(load_subpicture_yuy2_rgb32_ajust, 4), (bytes{0x11, 0x22, 0x33, 0x00}));
    EXPECT_EQ(load(load_subpicture_yuy2_rgb16_ajust, 2), (bytes{0x33, 0x22}));
}

// ---- What no function reads --------------------------------------------------------------------

class mix_record : public subpicture_test {};

INSTANTIATE_ON_EACH_TARGET(mix_record);

TEST_P(mix_record, reserved_fields_may_hold_anything_and_keep_it) {
    for (const mix_function function :
         {Convert_RGB32_To_AYUY2, Convert_RGB24_To_AYUY2, Convert_RGB16_565_To_AYUY2,
          Restore_RGB32_To_Alpha, Restore_RGB24_To_Alpha, Restore_RGB16_565_To_Alpha,
          load_subpicture_alpha_rgb32, load_subpicture_alpha_rgb24, load_subpicture_alpha_rgb16_565,
          load_subpicture_yuy2_rgb32, load_subpicture_yuy2_rgb24, load_subpicture_yuy2_rgb16}) {
        const auto result = [&](int reserved) {
            for (bytes *buffer : {&dst, &alpha, &y, &u, &v})
                std::iota(buffer->begin(), buffer->end(), static_cast<unsigned char>(1));
            tagMIX_INFO mix = record(16, 2, 4);
            mix.adjust_info = &info;
            mix.reserved1 = reserved;
            mix.reserved2 = ~reserved;
            function(&mix);
            EXPECT_EQ(mix.reserved1, reserved);
            EXPECT_EQ(mix.reserved2, ~reserved);
            return std::vector{dst, alpha, y, u, v};
        };
        EXPECT_EQ(result(0), result(0x76543210));
    }
}

// ---- Colour key --------------------------------------------------------------------------------

class colour_key : public tests::surface_test {
protected:
    bytes mask = bytes(dst.size());
};

INSTANTIATE_ON_EACH_TARGET(colour_key);

TEST_P(colour_key, width_20_and_height_3_fill_32_pixels_of_4_rows) {
    LoadColorKeyRgb32(0x00112233, dst.data(), 20, 3, 0, 400);
    // 12 pixels too far after the first pair.
    EXPECT_EQ(written_runs(), (runs{{0, 128}, {400, 128}, {800 + 48, 128}, {1200 + 48, 128}}));
    EXPECT_EQ(written(8, 1200 + 48), (bytes{0x33, 0x22, 0x11, 0x00, 0x33, 0x22, 0x11, 0x00}));
    wipe();
    LoadColorKeyRgb24(0x00112233, dst.data(), 20, 3, 0, 400);
    EXPECT_EQ(written_runs(), (runs{{0, 96}, {400, 96}, {800 + 36, 96}, {1200 + 36, 96}}));
    wipe();
    LoadColorKeyRgb16(0x00112233, dst.data(), 20, 3, 0, 400);
    EXPECT_EQ(written_runs(), (runs{{0, 64}, {400, 64}, {800 + 24, 64}, {1200 + 24, 64}}));
}

TEST_P(colour_key, height_0_fills_nothing) {
    for (const auto function : {LoadColorKeyRgb32, LoadColorKeyRgb24, LoadColorKeyRgb16})
        function(0, dst.data(), 20, 0, 0, 400);
    EXPECT_EQ(written_runs(), runs{});
}

TEST_P(colour_key, rgb32_writes_all_of_the_key) {
    LoadColorKeyRgb32(0x44332211, dst.data(), 16, 2, 0, 64);
    for (int i = 0; i < 128; i += 4)
        EXPECT_EQ(written(4, i), (bytes{0x11, 0x22, 0x33, 0x44})) << "byte " << i;
}

TEST_P(colour_key, rgb16_writes_the_low_half_of_the_key) {
    LoadColorKeyRgb16(0x1234f81f, dst.data(), 16, 2, 0, 32);
    for (int i = 0; i < 64; i += 2)
        EXPECT_EQ(written(2, i), (bytes{0x1f, 0xf8})) << "byte " << i;
    EXPECT_EQ(dst[64], untouched);
}

TEST_P(colour_key, rgb24_is_uniform_for_a_grey_key) {
    LoadColorKeyRgb24(0x00808080, dst.data(), 16, 2, 0, 48);
    EXPECT_EQ(written(96), bytes(96, 0x80));
    EXPECT_EQ(written_runs(), (runs{{0, 96}}));
    LoadColorKeyRgb24(0x80808080, dst.data(), 16, 2, 0, 48);
    EXPECT_EQ(written(96), bytes(96, 0x80));
}

TEST_P(colour_key, rgb24_is_out_of_phase_for_any_other_key) {
    LoadColorKeyRgb24(0x00332211, dst.data(), 16, 2, 0, 48);
    const bytes pattern{0x22, 0x33, 0x11, 0x22, 0x33, 0x11, 0x22, 0x33, 0x33, 0x11, 0x22, 0x33,
                        0x11, 0x22, 0x33, 0x11, 0x11, 0x22, 0x33, 0x11, 0x22, 0x33, 0x11, 0x22};
    for (int i = 0; i < 96; i += 24)
        EXPECT_EQ(written(24, i), pattern) << "byte " << i;
}

TEST_P(colour_key, rgb24_ors_the_top_byte_into_the_lowest_one) {
    LoadColorKeyRgb24(0x40332211, dst.data(), 16, 2, 0, 48);
    const bytes pattern{0x22, 0x33, 0x51, 0x22, 0x33, 0x51, 0x22, 0x33, 0x33, 0x51, 0x22, 0x33,
                        0x51, 0x22, 0x33, 0x51, 0x11, 0x22, 0x33, 0x51, 0x22, 0x33, 0x51, 0x22};
    EXPECT_EQ(written(24), pattern);
}

TEST_P(colour_key, the_fifth_argument_has_no_effect) {
    for (const auto function : {LoadColorKeyRgb32, LoadColorKeyRgb24, LoadColorKeyRgb16}) {
        wipe();
        function(0x00332211, dst.data(), 16, 2, 0, 64);
        const bytes without = dst;
        wipe();
        function(0x00332211, dst.data(), 16, 2, -1, 64);
        EXPECT_EQ(dst, without);
    }
}

TEST_P(colour_key, replacing_takes_the_low_bytes_of_its_values) {
    mask[3] = 0xff;
    mask[4] = 0xfe;
    RelaceMaskWithColorKey(dst.data(), mask.data(), 0x1ff, 0x77777712, 16, 16, 1);
    bytes expected(16, untouched);
    expected[3] = 0x12;
    EXPECT_EQ(written(16), expected);
}

TEST_P(colour_key, replacing_rounds_rows_up_and_drifts) {
    std::fill(mask.begin(), mask.end(), static_cast<unsigned char>(7));
    RelaceMaskWithColorKey(dst.data(), mask.data(), 7, 9, 20, 100, 3);
    EXPECT_EQ(written_runs(), (runs{{0, 32}, {100 + 12, 32}, {200 + 24, 32}}));
    // The mask drifts with it.
    wipe();
    std::fill(mask.begin(), mask.end(), static_cast<unsigned char>(0));
    mask[100 + 12] = 7;
    RelaceMaskWithColorKey(dst.data(), mask.data(), 7, 9, 20, 100, 3);
    EXPECT_EQ(written_runs(), (runs{{100 + 12, 1}}));
}

} // namespace
