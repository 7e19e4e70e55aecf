// All 2^24 Y, U and V through loadimage_rgb32().
#include <cstdio>
#include <cstring>
#include <vector>

#include "tests/model/rgb.h"
#include "tests/targets.h"

namespace {

class rgb_kernel_test : public tests::on_each_target {};

TEST_P(rgb_kernel_test, is_that_of_the_model_for_every_colour) {
    // One picture per value of U: V runs along the rows, Y over each 2x2 block and down the blocks.
    constexpr int width = 2 * 256, height = 2 * 256 / 4;
    std::vector<unsigned char> y, u, v;
    for (int row = 0; row < height; ++row)
        for (int x = 0; x < width; ++x)
            y.push_back(static_cast<unsigned char>(row / 2 * 4 + row % 2 * 2 + x % 2));
    for (int row = 0; row < height / 2; ++row)
        for (int x = 0; x < width / 2; ++x)
            v.push_back(static_cast<unsigned char>(x));
    std::vector<unsigned char> converted(4 * width * height);

    unsigned proven = 0;
    for (int cb = 0; cb < 256; ++cb) {
        u.assign(v.size(), static_cast<unsigned char>(cb));
        loadimage_rgb32(y.data(), u.data(), v.data(), converted.data(), width, height, width,
                        4 * width, nullptr);
        for (int i = 0; i < width * height; ++i) {
            const int cr = i % width / 2;
            const auto expected =
                model::pack_rgb32(model::to_rgb(y[i], u[0], static_cast<unsigned char>(cr)));
            ASSERT_EQ(std::memcmp(&converted[4 * i], expected.data(), 4), 0)
                << "Y " << int{y[i]} << ", U " << cb << ", V " << cr;
            ++proven;
        }
    }
    EXPECT_EQ(proven, 1u << 24);
    std::printf("%s: %u colours proven\n", GetParam()->name, proven);
}

INSTANTIATE_ON_EACH_TARGET(rgb_kernel_test);

} // namespace
