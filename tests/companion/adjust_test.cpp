// Whose adjustment is in force.
#include "tests/companion/expected.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace companion {
namespace {

using lumalane::adjustment;
using lumalane::format;

constexpr int width = 33, height = 17;

class adjusted : public testing::Test {
protected:
    std::minstd_rand random{1};
    const rows_of_pixels pixels = random_pixels(format::i420, width, height, random);

    static rows_of_pixels converted(const rows_of_pixels &from, const adjustment &by) {
        rows_of_pixels source = from;
        const lumalane::const_picture picture{from.format,
                                              from.width,
                                              from.height,
                                              {{source.planes[0].data(), width},
                                               {source.planes[1].data(), (width + 1) / 2},
                                               {source.planes[2].data(), (width + 1) / 2}}};
        rows_of_pixels made(format::rgb32, from.width, from.height);
        EXPECT_TRUE(lumalane::convert(
            picture, {made.format, width, height, {{made.planes[0].data(), 4 * width}}}, by));
        return made;
    }

    // Luma 100 as the functions of lumalane.h adjust it now.
    static int luma_100() {
        unsigned char y[32], u[8] = {}, v[8] = {}, surface[128];
        std::fill_n(y, 32, 100);
        tag_ajust_contrast_info info{};
        info.surface_height = info.rows_to_plane_end = 2;
        loadimage_yv12_ajust(y, u, v, surface, 16, 2, 16, 16, &info);
        return surface[0];
    }
};

TEST_F(adjusted, by_default_by_nothing) {
    EXPECT_TRUE(converted(pixels, {}) == *expected_conversion(pixels, format::rgb32, {}));
}

TEST_F(adjusted, calls_put_back_what_was_set_last) {
    lumalane::set_adjustment({64, 64, 11, 0, 0});
    EXPECT_EQ(luma_100(), 111);
    converted(pixels, {64, 64, -30, 0, 0});
    EXPECT_EQ(luma_100(), 111);
    lumalane::set_adjustment({32, 64, 1, 0, 0});
    EXPECT_EQ(luma_100(), 51);
}

TEST_F(adjusted, calls_that_are_refused_change_nothing) {
    lumalane::set_adjustment({64, 64, 11, 0, 0});
    EXPECT_FALSE(lumalane::convert({}, {}, {64, 64, -30, 0, 0}));
    EXPECT_EQ(luma_100(), 111);
}

TEST_F(adjusted, calls_that_blend_and_stretch_change_as_little) {
    constexpr adjustment other{64, 64, -30, 0, 0};
    bytes memory(1 << 14, 16);
    const lumalane::picture source = lumalane::packed_planes(format::i420, 16, 4, memory.data()),
                            made = lumalane::packed_planes(format::yuy2, 16, 4, &memory[1024]),
                            high = lumalane::packed_planes(format::yuy2, 16, 8, &memory[2048]);
    const lumalane::const_plane sub{&memory[4096], 16};
    const lumalane::subpicture over{8, 4, sub, sub, sub, sub};
    lumalane::set_adjustment({64, 64, 11, 0, 0});
    EXPECT_TRUE(lumalane::blend(source, over, 0, 0, made, other));
    EXPECT_EQ(luma_100(), 111);
    EXPECT_TRUE(lumalane::stretch(source, high, lumalane::stretching::twice_height, other));
    EXPECT_EQ(luma_100(), 111);
    EXPECT_FALSE(lumalane::blend(source, over, 0, 0, high, other));
    EXPECT_EQ(luma_100(), 111);
    EXPECT_FALSE(lumalane::stretch(source, made, lumalane::stretching::twice_height, other));
    EXPECT_EQ(luma_100(), 111);
}

TEST_F(adjusted, threads_have_each_its_own) {
    const adjustment own[] = {{70, 50, 9, -4, 30}, {50, 80, -20, 14, 3}};
    const rows_of_pixels expected[] = {*expected_conversion(pixels, format::rgb32, own[0]),
                                       *expected_conversion(pixels, format::rgb32, own[1])};
    std::atomic<int> ready{0};
    std::atomic<int> wrong{0}, right{0};
    std::thread threads[2];
    for (int i = 0; i < 2; ++i)
        threads[i] = std::thread([&, i] {
            ++ready;
            while (ready < 2)
                std::this_thread::yield();
            for (int k = 0; k < (few ? 300 : 3000); ++k)
                ++(converted(pixels, own[i]) == expected[i] ? right : wrong);
        });
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(right, 2 * (few ? 300 : 3000));
}

} // namespace
} // namespace companion
