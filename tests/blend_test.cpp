// Every alpha byte with every pair of samples, through each plane of mix_ayv12_yv12_p(); and blends
// of every weight with the adjustment behind them, at many gains, through mix_ayv12_yv12_p_ajust().
#include <cstdio>
#include <cstring>
#include <vector>

#include "tests/model/adjustment.h"
#include "tests/model/blend.h"
#include "tests/targets.h"

namespace {

using bytes = std::vector<unsigned char>;

class blend_test : public tests::on_each_target {};

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
    std::printf("%s: %u blends proven on each plane\n", GetParam()->name, proven);
}

TEST_P(blend_test, is_adjusted_as_the_model_does_for_every_weight_and_many_gains) {
    // For every weight, and for two alphas that count as the greatest one, a row of chroma and two
    // of luma: a chroma row has the alpha of the upper one.
    constexpr int width = 256, alphas = 19, rows = 2 * alphas, chroma_width = width / 2;
    const auto alpha_of = [](int row) {
        return static_cast<unsigned char>(row / 2 == alphas - 1 ? 255 : row / 2);
    };
    bytes video(width * rows), sub(width * rows), alpha(width * rows);
    for (int i = 0; i < width * rows; ++i) {
        video[i] = static_cast<unsigned char>(i);
        sub[i] = static_cast<unsigned char>(i * 37 + i / width);
        alpha[i] = alpha_of(i / width);
    }
    bytes y(width * rows), u(chroma_width * alphas), v(u.size());
    bytes blended_y(y.size()), blended_uv(u.size());
    for (int row = 0; row < rows; ++row)
        for (int x = 0; x < width; ++x) {
            const int at = row * width + x;
            blended_y[at] = model::blend(video[at], sub[at], alpha_of(row));
        }
    for (int row = 0; row < alphas; ++row)
        for (int x = 0; x < chroma_width; ++x) {
            // The video's chroma rows follow each other, of the subpicture's every second one is
            // taken.
            const int at = row * chroma_width + x;
            blended_uv[at] =
                model::blend(video[at], sub[2 * row * chroma_width + x], alpha_of(2 * row));
        }

    unsigned long proven = 0;
    // All gains whose product may fit 15 bits, and enough of the others.
    for (int gain = 0; gain < 65536; gain += gain < 1100 ? 1 : 13) {
        contrast_data parameters{gain, gain, 5, -40, 200, 0, 0, 0};
        get_contrast_data(&parameters);
        const auto adjusted = [&](bytes samples, int offset) {
            for (unsigned char &sample : samples)
                sample = model::adjust(
                    sample, {static_cast<std::int16_t>(gain), static_cast<std::int16_t>(offset)});
            return samples;
        };
        tagMIX_INFO mix = mix_of(video, sub, alpha, width, rows);
        mix.dst = y.data();
        mix.dst_u = u.data();
        mix.dst_v = v.data();
        mix_ayv12_yv12_p_ajust(&mix);
        ASSERT_EQ(y, adjusted(blended_y, 5)) << "gain " << gain;
        ASSERT_EQ(u, adjusted(blended_uv, -40)) << "gain " << gain;
        ASSERT_EQ(v, adjusted(blended_uv, 200)) << "gain " << gain;
        proven += y.size() + u.size() + v.size();
    }
    EXPECT_EQ(proven, (1100ul + (65536 - 1100 + 12) / 13) * width * rows * 3 / 2);
    std::printf("%s: %lu adjusted blends\n", GetParam()->name, proven);
}

INSTANTIATE_ON_EACH_TARGET(blend_test);

} // namespace
