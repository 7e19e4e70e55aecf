// Before get_contrast_data() is called for the first time: a program of its own.
#include <vector>

#include "tests/targets.h"

namespace {

class before_any_parameters : public tests::on_each_target {
protected:
    static constexpr int width = 64, height = 10;

    // As many as a packed picture needs.
    std::vector<unsigned char> samples = std::vector<unsigned char>(2 * width * height, 200);
    std::vector<unsigned char> dst = std::vector<unsigned char>(4 * width * height, 0xa5);
    tag_ajust_contrast_info info{};

    void load(void (*function)(LUMALANE_PARAMETERS_picture), int dst_pitch) {
        info.surface_height = info.rows_to_plane_end = height;
        function(samples.data(), samples.data(), samples.data(), dst.data(), width, height, width,
                 dst_pitch, &info);
    }
};

TEST_P(before_any_parameters, every_adjusted_sample_is_0) {
    load(loadimage_yv12_ajust, width);
    const std::size_t written = width * height * 3 / 2;
    EXPECT_EQ(std::vector(dst.begin(), dst.begin() + written),
              std::vector<unsigned char>(written, 0));
}

TEST_P(before_any_parameters, every_adjusted_sample_of_yuy2_is_0) {
    using bytes = std::vector<unsigned char>;
    for (const auto function : {loadimage_yuy2_ajust, LoadYUY2_YUY2_adjust}) {
        dst.assign(dst.size(), 0xa5);
        load(function, 2 * width);
        const std::size_t written = 2 * width * height;
        EXPECT_EQ(bytes(dst.begin(), dst.begin() + written), bytes(written, 0));
    }
    load(loadimage_half_yuy2_ajust, width);
    EXPECT_EQ(bytes(dst.begin(), dst.begin() + width * height), bytes(width * height, 0));
    load(loadimage_half_yv12_ajust, width / 2);
    const std::size_t half_size = width * height * 3 / 4;
    EXPECT_EQ(bytes(dst.begin(), dst.begin() + half_size), bytes(half_size, 0));
    load(loadimage_yuy2_mono_ajust, 2 * width);
    for (std::size_t i = 0; i < 2u * width * height; ++i)
        ASSERT_EQ(dst[i], i % 2 == 0 ? 0 : 128) << "byte " << i;
}

TEST_P(before_any_parameters, every_adjusted_pixel_is_the_green_of_three_zero_samples) {
    for (const auto function : {loadimage_rgb32_ajust, LoadYUY2_RGB32_adjust}) {
        load(function, 4 * width);
        for (std::size_t i = 0; i < dst.size(); i += 4)
            ASSERT_EQ(std::vector(dst.begin() + i, dst.begin() + i + 4),
                      (std::vector<unsigned char>{0, 137, 0, 0}))
                << "pixel " << i / 4;
    }
    for (const auto function : {loadimage_rgb24_ajust, LoadYUY2_RGB24_adjust}) {
        load(function, 3 * width);
        for (std::size_t i = 0; i < 3u * width * height; i += 3)
            ASSERT_EQ(std::vector(dst.begin() + i, dst.begin() + i + 3),
                      (std::vector<unsigned char>{0, 137, 0}))
                << "pixel " << i / 3;
    }
    for (const auto function : {loadimage_rgb16_ajust, LoadYUY2_RGB16_adjust}) {
        load(function, 2 * width);
        for (std::size_t i = 0; i < 2u * width * height; i += 2)
            ASSERT_EQ(dst[i] | dst[i + 1] << 8, 137 >> 2 << 5) << "pixel " << i / 2;
    }
}

TEST_P(before_any_parameters, every_adjusted_pixel_of_a_subpicture_is_that_green) {
    std::vector<unsigned char> opaque(width * height, 16);
    const auto last_pixel = [&](void (*function)(tagMIX_INFO *), int pixel_bytes) {
        tagMIX_INFO mix{};
        mix.video_pitch = width;
        mix.dst_pitch = pixel_bytes * width;
        mix.height = height;
        mix.alpha_plane = opaque.data();
        mix.sub_y = mix.sub_v = mix.sub_u = samples.data();
        mix.dst = dst.data();
        mix.adjust_info = &info;
        function(&mix);
        const auto end = dst.begin() + pixel_bytes * width * height;
        return std::vector(end - pixel_bytes, end);
    };
    using bytes = std::vector<unsigned char>;
    EXPECT_EQ(last_pixel(load_subpicture_yuy2_rgb32_ajust, 4), (bytes{0, 137, 0, 0}));
    EXPECT_EQ(last_pixel(load_subpicture_yuy2_rgb24_ajust, 3), (bytes{0, 137, 0}));
    constexpr int green = 137 >> 2 << 5;
    EXPECT_EQ(last_pixel(load_subpicture_yuy2_rgb16_ajust, 2), (bytes{green & 0xff, green >> 8}));
}

// Mixes and stretches: eight rows of a mix, the doubled rows of sixteen.
class mixes_and_stretches_before_any_parameters : public before_any_parameters {
protected:
    static constexpr int mix_height = 8, stretch_height = 16, stretched_height = 2 * stretch_height;
    using bytes = std::vector<unsigned char>;

    mixes_and_stretches_before_any_parameters() { samples.assign(1 << 14, 200); }

    void wipe() { dst.assign(1 << 15, 0xa5); }

    void mix(void (*function)(tagMIX_INFO *), int dst_pitch) {
        wipe();
        bytes alpha(samples.size(), 5);
        tagMIX_INFO mix{};
        mix.video_pitch = mix.sub_pitch = mix.width = width;
        mix.dst_pitch = dst_pitch;
        mix.height = mix_height;
        mix.video_y = mix.video_v = mix.video_u = samples.data();
        mix.alpha_plane = alpha.data();
        mix.sub_y = mix.sub_v = mix.sub_u = samples.data();
        mix.dst = dst.data();
        mix.dst_v = mix.dst + dst_pitch * mix_height;
        mix.dst_u = mix.dst_v + dst_pitch * mix_height / 4;
        mix.adjust_info = &info;
        function(&mix);
    }

    void stretch(void (*function)(LUMALANE_PARAMETERS_picture), int dst_pitch) {
        wipe();
        function(samples.data(), samples.data(), samples.data(), dst.data(), width, stretch_height,
                 width, dst_pitch, &info);
    }

    // So many bytes are repetitions of this pixel.
    void expect_all(const bytes &pixel, std::size_t count) const {
        bytes expected;
        while (expected.size() < count)
            expected.insert(expected.end(), pixel.begin(), pixel.end());
        EXPECT_EQ(bytes(dst.begin(), dst.begin() + count), expected);
    }

    static inline const bytes rgb32{0, 137, 0, 0}, rgb24{0, 137, 0},
        rgb16{(137 >> 2 << 5) & 0xff, 137 >> 2 << 5 >> 8};
};

TEST_P(mixes_and_stretches_before_any_parameters, every_adjusted_mix_is_of_zero_samples) {
    for (const auto function : {mix_ayuy2_yuy2_p_ajust, mix_ayuy2_yuy2_i_ajust}) {
        mix(function, 2 * width);
        expect_all({0}, 2 * width * mix_height);
    }
    mix(mix_ayuy2_half_yuy2_p_ajust, width);
    expect_all({0}, width * mix_height);
    mix(mix_ayv12_yv12_p_ajust, width);
    expect_all({0}, width * mix_height * 3 / 2);
    for (const auto function : {mix_ayuy2_rgb32_p_ajust, mix_ayuy2_rgb32_i_ajust}) {
        mix(function, 4 * width);
        expect_all(rgb32, 4 * width * mix_height);
    }
    for (const auto function : {mix_ayuy2_rgb24_p_ajust, mix_ayuy2_rgb24_i_ajust}) {
        mix(function, 3 * width);
        expect_all(rgb24, 3 * width * mix_height);
    }
    for (const auto function : {mix_ayuy2_rgb16_p_ajust, mix_ayuy2_rgb16_i_ajust}) {
        mix(function, 2 * width);
        expect_all(rgb16, 2 * width * mix_height);
    }
}

TEST_P(mixes_and_stretches_before_any_parameters, every_adjusted_stretch_is_of_zero_samples) {
    stretch(strech_picture_1X2_yuy2_ajust, 2 * width);
    expect_all({0}, 2 * width * stretched_height);
    stretch(strech_picture_2X2_yuy2_ajust, 4 * width);
    expect_all({0}, 4 * width * stretched_height);
    wipe();
    yuy2_strech_picture_2X2_yuy2_ajust(samples.data(), nullptr, nullptr, dst.data(), 2 * width,
                                       stretch_height, 4 * width, &info);
    expect_all({0}, 4 * width * stretched_height);

    stretch(strech_picture_1X2_yuy2_ajust_rgb32, 4 * width);
    expect_all(rgb32, 4 * width * stretched_height);
    stretch(strech_picture_1X2_yuy2_ajust_rgb24, 3 * width);
    expect_all(rgb24, 3 * width * stretched_height);
    stretch(strech_picture_1X2_yuy2_ajust_rgb16, 2 * width);
    expect_all(rgb16, 2 * width * stretched_height);

    stretch(strech_picture_1X2_yv12_ajust, width);
    expect_all({0}, width * stretched_height * 3 / 2);
    stretch(strech_picture_2X2_yv12_ajust, 2 * width);
    expect_all({0}, 2 * width * stretched_height * 3 / 2);
    for (const int plane : {1, 2, 3}) {
        wipe();
        strech_pic_1X2_adjust(samples.data(), dst.data(), width, stretch_height, width, width,
                              &info, plane);
        expect_all({0}, width * stretched_height);
        wipe();
        strech_pic_2X2_adjust(samples.data(), dst.data(), width, stretch_height, width, 2 * width,
                              &info, plane);
        expect_all({0}, 2 * width * stretched_height);
    }

    wipe();
    tagVideoFrame frame{};
    frame.plane_y = frame.plane_u = frame.plane_v = samples.data();
    frame.luma_pitch = width;
    strech_opt_yuy2_ajust(&frame, 0, stretch_height, dst.data(), 2 * width, &info);
    expect_all({0}, 2 * width * stretched_height);
}

INSTANTIATE_ON_EACH_TARGET(before_any_parameters);
INSTANTIATE_ON_EACH_TARGET(mixes_and_stretches_before_any_parameters);

} // namespace
