// Every sample with every gain, at the offsets that matter, in each form that the adjustment's
// arithmetic has.
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <vector>

#include "picture/adjustment.h"
#include "tests/model/adjustment.h"
#include "tests/model/lanes.h"
#include "tests/model/rgb.h"
#include "tests/proofs.h"
#include "tests/targets.h"

namespace {

using samples = std::array<unsigned char, 256>;
using rgb32 = std::array<unsigned char, 4>;

constexpr int offsets[] = {0, 1, -1, 32767, -32767, -32768, 17, -300, 12345, -23456};
constexpr int offset_count = std::size(offsets);

samples every_sample() {
    samples all;
    for (int i = 0; i < 256; ++i)
        all[i] = static_cast<unsigned char>(i);
    return all;
}

// What the model makes of every sample, by the number of the offset.
std::array<samples, offset_count> adjusted_by_model(int gain) {
    std::array<samples, offset_count> adjusted;
    for (int offset = 0; offset < offset_count; ++offset)
        for (int i = 0; i < 256; ++i)
            adjusted[offset][i] = model::adjust(
                static_cast<unsigned char>(i),
                {static_cast<std::int16_t>(gain), static_cast<std::int16_t>(offsets[offset])});
    return adjusted;
}

rgb32 rgb32_of(int y, int u, int v) {
    return model::pack_rgb32(model::to_rgb(static_cast<unsigned char>(y),
                                           static_cast<unsigned char>(u),
                                           static_cast<unsigned char>(v)));
}

// A sample before the offset is added.
int amplified(int sample, int gain) {
    return model::shift_right_logical(
        model::add_saturate(
            model::multiply_low(static_cast<std::int16_t>(sample), static_cast<std::int16_t>(gain)),
            32),
        6);
}

class adjustment_test : public tests::on_each_target {
protected:
    samples all = every_sample();
    std::array<samples, 4> luma{all, all, all, all};
    std::array<samples, offset_count> expected; // of the gain in turn, by the number of the offset

    // What becomes of chroma, by 256 U + V, and of luma.
    std::vector<rgb32> on_black, on_white, grey;

    adjustment_test() {
        for (int u = 0; u < 256; ++u)
            for (int v = 0; v < 256; ++v) {
                on_black.push_back(rgb32_of(16, u, v));
                on_white.push_back(rgb32_of(235, u, v));
            }
        for (int y = 0; y < 256; ++y)
            grey.push_back(rgb32_of(y, 128, 128));
    }

    static void set(contrast_data parameters) { get_contrast_data(&parameters); }

    // Numbers of offsets.
    struct choice {
        int y, u, v;
    };
    static choice from(int first) {
        return {first, (first + 1) % offset_count, (first + 2) % offset_count};
    }

    bool planes_agree(int gain, choice by) {
        set({gain, gain, offsets[by.y], offsets[by.u], offsets[by.v], 0, 0, 0});
        constexpr int width = 512, height = 2;
        std::array<samples, 6> adjusted;
        tag_ajust_contrast_info info{};
        info.surface_height = info.rows_to_plane_end = height;
        loadimage_yv12_ajust(luma[0].data(), all.data(), all.data(), adjusted[0].data(), width,
                             height, width, width, &info);
        // V comes before U, and has its offset.
        const samples &y = expected[by.y];
        return adjusted == std::array{y, y, y, y, expected[by.u], expected[by.v]};
    }

    bool packed_picture_agrees(int gain, choice by) {
        set({gain, gain, offsets[by.y], offsets[by.u], offsets[by.v], 0, 0, 0});
        constexpr int width = 512, height = 2;
        std::array<unsigned char, 2 * width * height> packed, adjusted, wanted;
        for (int i = 0; i < width * height; ++i) {
            packed[2 * i] = all[i % 256];
            packed[2 * i + 1] = all[i % width / 2];
            wanted[2 * i] = expected[by.y][i % 256];
            wanted[2 * i + 1] = expected[i % 2 == 0 ? by.u : by.v][i % width / 2];
        }
        LoadYUY2_YUY2_adjust(packed.data(), nullptr, nullptr, adjusted.data(), width, height, width,
                             2 * width, nullptr);
        return adjusted == wanted;
    }

    // With grey chroma all luma between black and white is seen.
    bool luma_of_rgb_agrees(int gain, choice by) {
        set({gain, 64, offsets[by.y], 0, 0, 0, 0, 0});
        constexpr int width = 256, height = 2;
        samples chroma;
        chroma.fill(128);
        std::array<rgb32, width * height> converted, wanted;
        loadimage_rgb32_ajust(luma[0].data(), chroma.data(), chroma.data(), converted[0].data(),
                              width, height, width, 4 * width, nullptr);
        for (int i = 0; i < width * height; ++i)
            wanted[i] = grey[expected[by.y][i % 256]];
        return converted == wanted;
    }

    // A black row shows one half of all chroma, a white one the other.
    bool chroma_of_rgb_agrees(int gain, choice by) {
        set({64, gain, 0, offsets[by.u], offsets[by.v], 0, 0, 0});
        constexpr int width = 512, height = 2;
        std::array<unsigned char, width * height> black_and_white;
        for (int i = 0; i < width * height; ++i)
            black_and_white[i] = i < width ? 16 : 235;
        std::array<rgb32, width * height> converted, wanted;
        loadimage_rgb32_ajust(black_and_white.data(), all.data(), all.data(), converted[0].data(),
                              width, height, width, 4 * width, nullptr);
        for (int i = 0; i < width; ++i) {
            const int colour = 256 * expected[by.u][i / 2] + expected[by.v][i / 2];
            wanted[i] = on_black[colour];
            wanted[width + i] = on_white[colour];
        }
        return converted == wanted;
    }
};

// (Where less is to be proven, the narrowest target, which is slow and not shipped, takes every seventh
// gain.)
TEST_P(adjustment_test, of_planes_is_that_of_the_model_for_every_sample_and_gain) {
    const bool seldom =
        tests::wanted_proofs() == tests::proofs::some && GetParam() == lumalane::targets().begin();
    const int step = seldom ? 7 : 1;
    unsigned proven = 0;
    for (int gain = 0; gain < 65536; gain += step) {
        expected = adjusted_by_model(gain);
        for (int first = 0; first < offset_count; ++first) {
            ASSERT_TRUE(planes_agree(gain, from(first)))
                << "gain " << gain << ", offset " << offsets[first];
            ++proven;
        }
    }
    EXPECT_EQ(proven, (65536u + step - 1) / step * offset_count);
    std::printf("%s: %u gains and offsets of 256 samples proven on 3 planes\n", GetParam()->name,
                proven);
    std::printf("figure: adjusted %llu\n", 3ull * 256 * proven);
}

// Gains of less than 4 with every offset, each of the others with one. The narrowest
// target is slow, and takes every seventh of those.
TEST_P(adjustment_test, of_packed_and_rgb_pictures_is_that_of_the_model_for_every_sample_and_gain) {
    constexpr int all_offsets_below = 256;
    const int step = GetParam() == lumalane::targets().begin() ? 7 : 1;
    unsigned proven = 0;
    for (int gain = 0; gain < 65536; gain += gain < all_offsets_below ? 1 : step) {
        expected = adjusted_by_model(gain);
        for (int first = 0; first < offset_count; ++first) {
            if (gain >= all_offsets_below && gain % offset_count != first)
                continue;
            const choice by = from(first);
            ASSERT_TRUE(packed_picture_agrees(gain, by))
                << "gain " << gain << ", offset " << offsets[first];
            ASSERT_TRUE(luma_of_rgb_agrees(gain, by))
                << "gain " << gain << ", offset " << offsets[first];
            ASSERT_TRUE(chroma_of_rgb_agrees(gain, by))
                << "gain " << gain << ", offset " << offsets[first];
            ++proven;
        }
    }
    EXPECT_GE(proven, (65536u - all_offsets_below) / step + all_offsets_below * offset_count);
    std::printf("%s: %u gains and offsets of 256 samples proven on their way to YUY2 and RGB32\n",
                GetParam()->name, proven);
}

// What offsets do: every one of the 65,536 to each value that amplification can have.
TEST(adjustment_offsets, count_as_ones_from_minus_1023_to_255) {
    int most = 0;
    for (int gain = 0; gain < 65536; ++gain)
        for (int i = 0; i < 256; ++i)
            most = std::max(most, amplified(i, gain));
    EXPECT_EQ(most, 1023);
    unsigned long long proven = 0;
    for (int offset = -32768; offset < 32768; ++offset) {
        const int counts = lumalane::prepared(64, static_cast<short>(offset)).offset;
        ASSERT_GE(counts, -1023);
        ASSERT_LE(counts, 255);
        bool same = true;
        for (int value = 0; value <= most; ++value)
            same = same &&
                   std::clamp(value + counts, 0, 255) ==
                       model::narrow_saturate(model::add_saturate(
                           static_cast<std::int16_t>(value), static_cast<std::int16_t>(offset)));
        ASSERT_TRUE(same) << offset;
        proven += most + 1;
    }
    EXPECT_EQ(proven, 1ull << 26);
}

// Through the row kernel of planes. All gains whose product fits 15 bits, which have arithmetic of their
// own, and others: all of them take minutes.
TEST_P(adjustment_test, of_a_plane_is_that_of_the_model_for_every_offset) {
    const tests::proofs wanted = tests::wanted_proofs();
    const bool slow = GetParam() == lumalane::targets().begin();
    const int step = wanted == tests::proofs::all && !slow ? 1 : slow ? 9973 : 499;
    unsigned long long proven = 0;
    for (int gain = 0; gain < 65536; ++gain) {
        const bool fits = 33 <= gain && gain <= 128;
        if (gain % step != 0 && (!fits || (slow && gain % 31 != 0)))
            continue;
        std::array<std::int16_t, 256> values;
        for (int i = 0; i < 256; ++i)
            values[i] = static_cast<std::int16_t>(amplified(i, gain));
        for (int offset = -1023; offset < 256; ++offset) {
            const lumalane::plane_adjustment by =
                lumalane::prepared(static_cast<short>(gain), static_cast<short>(offset));
            samples wanted_samples, made{};
            for (int i = 0; i < 256; ++i)
                wanted_samples[i] =
                    static_cast<unsigned char>(std::clamp<int>(values[i] + offset, 0, 255));
            lumalane::plane_rows row{all.data(), made.data()};
            row.by = &by;
            GetParam()->rows.emit_plane(row, 256);
            if (std::memcmp(made.data(), wanted_samples.data(), 256) != 0)
                FAIL() << "gain " << gain << ", offset " << offset;
            proven += 256;
        }
    }
    GetParam()->leave_clean();
    std::printf("%s: %llu samples, gains and offsets of 21,457,010,688\n", GetParam()->name,
                proven);
    std::printf("figure: adjusted %llu\n", proven);
}

INSTANTIATE_ON_EACH_TARGET(adjustment_test);

} // namespace
