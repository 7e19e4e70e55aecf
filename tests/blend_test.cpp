// Every alpha byte with every pair of samples, through each plane of mix_ayv12_yv12_p(); and blends
// of every weight with the adjustment behind them, through mix_ayv12_yv12_p_ajust().
#include <cstdio>
#include <cstring>
#include <vector>

#include "tests/lane_sets.h"
#include "tests/model/adjustment.h"
#include "tests/model/blend.h"

namespace {

using bytes = std::vector<unsigned char>;

class blend_test : public tests::on_each_lane_set {};

// A picture of which every plane is `video`, under a subpicture of which every plane is `sub`; all
// pitches are its width.
tagMIX_INFO mix_of(bytes &video, bytes &sub, bytes &alpha, int width, int height) {
    tagMIX_INFO mix{};
    mix.video_pitch = mix.sub_pitch = mix.dst_pitch = mix.width = width;
    mix.height = height;
    mix.video_y = mix.video_v = mix.video_u = video.data();
    mix.alpha_plane = alpha.data();
    mix.sub_y = mix.sub_v = mix.sub_u = sub.data();
    return mix;
}

TEST_P(blend_test, is_that_of_the_model_for_every_alpha_and_pair_of_samples) {
    // Rows of 512 of luma and of 256 of chroma: the video has its samples in order along both. The
    // subpicture has another sample in every row of luma, and in every second one of chroma, which
    // is what the mix takes.
    constexpr int size = 512, pairs = 256 * 256;
    bytes video(size * size), sub(size * size);
    for (int i = 0; i < size * size; ++i) {
        video[i] = static_cast<unsigned char>(i);
        sub[i] = static_cast<unsigned char>(i / size);
    }
    bytes alpha(size * size), y(size * size), u(pairs), v(pairs), expected(pairs);

    unsigned proven = 0;
    for (int weight = 0; weight < 256; ++weight) {
        alpha.assign(alpha.size(), static_cast<unsigned char>(weight));
        for (int i = 0; i < pairs; ++i)
            expected[i] =
                model::blend(static_cast<unsigned char>(i), static_cast<unsigned char>(i / 256),
                             static_cast<unsigned char>(weight));

        tagMIX_INFO mix = mix_of(video, sub, alpha, size, size);
        mix.dst = y.data();
        mix.dst_u = u.data();
        mix.dst_v = v.data();
        mix_ayv12_yv12_p(&mix);

        // The first and the second 256 of a row of luma are the same.
        for (int i = 0; i < 2 * size; ++i)
            ASSERT_EQ(std::memcmp(&y[256 * i], &expected[i / 2 % 256 * 256], 256), 0)
                << "alpha " << weight << ", subpicture " << i / 2 % 256;
        ASSERT_EQ(u, expected) << "alpha " << weight;
        ASSERT_EQ(v, expected) << "alpha " << weight;
        proven += pairs;
    }
    EXPECT_EQ(proven, 1u << 24);
    std::printf("%s: %u blends proven on each plane\n", tests::name_of(GetParam()).c_str(), proven);
}

TEST_P(blend_test, is_adjusted_as_the_model_does_for_every_weight_and_gain) {
    // A row of luma for every weight, and one of chroma for every second.
    constexpr int width = 256, rows = 18, chroma_width = width / 2;
    bytes video(width * rows), sub(width * rows), alpha(width * rows);
    for (int i = 0; i < width * rows; ++i) {
        video[i] = static_cast<unsigned char>(i);
        sub[i] = static_cast<unsigned char>(i * 37 + i / width);
        alpha[i] = static_cast<unsigned char>(i / width);
    }
    const auto blended = [&](int video_at, int sub_at, int row) {
        return model::blend(video[video_at], sub[sub_at], static_cast<unsigned char>(row));
    };
    bytes y(width * rows), u(chroma_width * rows / 2), v(u.size());
    bytes expected_y(y.size()), expected_u(u.size()), expected_v(u.size());

    // All gains that may be gentle, and enough of the others.
    for (int gain = 0; gain < 65536; gain += gain < 1100 ? 1 : 13) {
        contrast_data parameters{gain, gain, 5, -40, 200, 0, 0, 0};
        get_contrast_data(&parameters);
        const auto adjusted = [&](unsigned char sample, int offset) {
            return model::adjust(
                sample, {static_cast<std::int16_t>(gain), static_cast<std::int16_t>(offset)});
        };
        for (int row = 0; row < rows; ++row)
            for (int x = 0; x < width; ++x)
                expected_y[row * width + x] =
                    adjusted(blended(row * width + x, row * width + x, row), 5);
        for (int row = 0; row < rows / 2; ++row)
            for (int x = 0; x < chroma_width; ++x) {
                // The video's chroma rows follow each other, of the subpicture's every second one
                // is taken.
                const int at = row * chroma_width + x;
                const unsigned char sample = blended(at, 2 * row * chroma_width + x, 2 * row);
                expected_u[at] = adjusted(sample, -40);
                expected_v[at] = adjusted(sample, 200);
            }

        tagMIX_INFO mix = mix_of(video, sub, alpha, width, rows);
        mix.dst = y.data();
        mix.dst_u = u.data();
        mix.dst_v = v.data();
        mix_ayv12_yv12_p_ajust(&mix);
        ASSERT_EQ(y, expected_y) << "gain " << gain;
        ASSERT_EQ(u, expected_u) << "gain " << gain;
        ASSERT_EQ(v, expected_v) << "gain " << gain;
    }
}

INSTANTIATE_ON_EACH_LANE_SET(blend_test);

} // namespace
