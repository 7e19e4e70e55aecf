// Every sample with every gain, at the offsets that matter, through each plane of
// loadimage_yv12_ajust().
#include <array>
#include <cstdio>
#include <cstring>

#include "tests/lane_sets.h"
#include "tests/model/adjustment.h"

namespace {

using samples = std::array<unsigned char, 256>;

class adjustment_test : public tests::on_each_lane_set {};

TEST_P(adjustment_test, is_that_of_the_model_for_every_sample_and_gain) {
    constexpr int offsets[] = {0, 1, -1, 32767, -32767, -32768, 17, -300, 12345, -23456};

    // Two rows of luma and one of each chroma plane: each row is all the samples, luma twice.
    samples all;
    for (int i = 0; i < 256; ++i)
        all[i] = static_cast<unsigned char>(i);
    std::array<samples, 4> luma{all, all, all, all};
    constexpr int width = 512, height = 2;
    std::array<samples, 6> adjusted;
    tag_ajust_contrast_info info{};
    info.surface_height = info.rows_to_plane_end = height;

    unsigned long long proven = 0;
    for (const int offset : offsets)
        for (int gain = 0; gain < 65536; ++gain) {
            contrast_data parameters{gain, gain, offset, offset, offset, 0, 0, 0};
            get_contrast_data(&parameters);
            loadimage_yv12_ajust(luma[0].data(), all.data(), all.data(), adjusted[0].data(), width,
                                 height, width, width, &info);
            samples expected;
            const model::adjustment by{static_cast<std::int16_t>(gain),
                                       static_cast<std::int16_t>(offset)};
            for (int i = 0; i < 256; ++i)
                expected[i] = model::adjust(all[i], by);
            for (const samples &plane : adjusted)
                ASSERT_EQ(std::memcmp(plane.data(), expected.data(), 256), 0)
                    << "gain " << gain << ", offset " << offset;
            proven += 3 * 256;
        }
    std::printf("%s: %llu adjusted samples proven (256 samples x 65,536 gains x %zu offsets x 3 "
                "planes)\n",
                tests::name_of(GetParam()).c_str(), proven, std::size(offsets));
}

INSTANTIATE_ON_EACH_LANE_SET(adjustment_test);

} // namespace
