// Every alpha byte with every pair of samples, through each plane of mix_ayv12_yv12_p(); and blends
// of every weight with the adjustment behind them, at many gains, through mix_ayv12_yv12_p_ajust(). And
// every weight with every pair of samples through the row kernels of the other mixes.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <vector>

#include "tests/model/adjustment.h"
#include "tests/model/blend.h"
#include "tests/proofs.h"
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
    std::printf("figure: blends %llu\n", 3ull * proven);
}

// Through the row kernels of mixes onto YUY2 and RGB, which store YUY2 here: what a blend is can be seen
// of it. Every row has another sample of the subpicture; the first of two pixels has another weight.
TEST_P(blend_test, of_row_pairs_is_that_of_the_model_for_every_weight_and_pair_of_samples) {
    using lumalane::row_kernels;
    constexpr int n = 256, rows = 512, chroma = n / 2;
    bytes y(rows * n), sub_y(rows * n), u(rows / 2 * chroma), v(u.size());
    bytes sub_u(rows * chroma), sub_v(sub_u.size()), alpha(rows * n);
    for (int row = 0; row < rows; ++row)
        for (int x = 0; x < n; ++x) {
            y[row * n + x] = static_cast<unsigned char>(x);
            sub_y[row * n + x] = static_cast<unsigned char>(row);
            const int video = row / 2 % 2 * chroma + x / 2, sub = row / 4 * 2 + row % 2;
            u[row / 2 * chroma + x / 2] = static_cast<unsigned char>(video);
            v[row / 2 * chroma + x / 2] = static_cast<unsigned char>(255 - video);
            sub_u[row * chroma + x / 2] = static_cast<unsigned char>(sub);
            sub_v[row * chroma + x / 2] = static_cast<unsigned char>(255 - sub);
        }
    struct kernel {
        const char *name;
        lumalane::row_kernel::mixing_pairs *row_kernels::*mix;
        bool by_averages;
    };
    static constexpr kernel kernels[] = {
        {"mix_pairs", &row_kernels::mix_pairs, false},
        {"mix_pairs_by_averages", &row_kernels::mix_pairs_by_averages, true},
        {"mix_pairs_to_yuy2", &row_kernels::mix_pairs_to_yuy2, false}};

    const row_kernels &target = GetParam()->rows;
    bytes made(2 * rows * n), expected(made.size());
    unsigned long long proven = 0;
    const int step = tests::wanted_proofs() == tests::proofs::some ? 6 : 1;
    for (int weight = 0; weight < 20; weight += step)
        for (const bool same : {true, false}) {
            // Alpha beyond 16 counts as 16.
            const int second = weight < 18 ? weight : weight == 18 ? 128 : 255;
            const int first = same ? second : (weight * 5 + 3) % 17;
            for (int i = 0; i < rows * n; ++i)
                alpha[i] = static_cast<unsigned char>(i % 2 == 0 ? first : second);
            for (const kernel &k : kernels) {
                const int of_chroma = k.by_averages ? (first + second + 1) >> 1 : second;
                for (int i = 0; i < rows * n; ++i) {
                    const int row = i / n, x = i % n;
                    const bytes &video = x % 2 == 0 ? u : v, &sub = x % 2 == 0 ? sub_u : sub_v;
                    expected[2 * i] = model::blend(y[i], sub_y[i], alpha[i]);
                    expected[2 * i + 1] =
                        model::blend(video[row / 2 * chroma + x / 2], sub[row * chroma + x / 2],
                                     static_cast<unsigned char>(of_chroma));
                }
                // Whole rows, and runs of 16.
                for (const int run : {n, 16}) {
                    made.assign(made.size(), 0xa5);
                    for (int x = 0; x < n; x += run)
                        (target.*k.mix)({{&y[x], &u[x / 2], &v[x / 2], &alpha[x], &sub_y[x],
                                          &sub_u[x / 2], &sub_v[x / 2], &made[2 * x]},
                                         {n, 0, n, chroma, 2 * n},
                                         lumalane::lower_row::itself,
                                         target.emit_yuy2,
                                         2,
                                         lumalane::store_policy::cached,
                                         nullptr,
                                         rows / 2,
                                         {2 * n, chroma, 2 * n, 2 * chroma, 4 * n}},
                                        run);
                    GetParam()->leave_clean();
                    const auto wrong =
                        std::mismatch(made.begin(), made.end(), expected.begin()).first;
                    ASSERT_TRUE(wrong == made.end())
                        << k.name << ", runs of " << run << ", weights " << first << " and "
                        << second << ": byte " << wrong - made.begin();
                }
                proven += 2 * rows * n;
            }
        }
    std::printf("%s: %llu blends of row pairs\n", GetParam()->name, proven);
    std::printf("figure: blends %llu\n", proven);
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
