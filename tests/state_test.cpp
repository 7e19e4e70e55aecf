// Before get_contrast_data() is called for the first time: a program of its own.
#include <vector>

#include "tests/lane_sets.h"

namespace {

class before_any_parameters : public tests::on_each_lane_set {
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

INSTANTIATE_ON_EACH_LANE_SET(before_any_parameters);

} // namespace
