// Every alpha byte with every pair of samples, through each plane of mix_ayv12_yv12_p().
#include <cstdio>
#include <cstring>
#include <vector>

#include "tests/lane_sets.h"
#include "tests/model/blend.h"

namespace {

using bytes = std::vector<unsigned char>;

class blend_test : public tests::on_each_lane_set {};

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

        tagMIX_INFO mix{};
        mix.video_pitch = mix.sub_pitch = mix.dst_pitch = mix.width = mix.height = size;
        mix.video_y = mix.video_v = mix.video_u = video.data();
        mix.alpha_plane = alpha.data();
        mix.sub_y = mix.sub_v = mix.sub_u = sub.data();
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

INSTANTIATE_ON_EACH_LANE_SET(blend_test);

} // namespace
