#include "bench/moved.h"

#include <gtest/gtest.h>

namespace lumalane::bench {
namespace {

double moved(const char *title) { return bytes_moved_per_pixel(*find_job(title)); }

TEST(moved_test, counts_what_is_read_and_what_is_written) {
    EXPECT_DOUBLE_EQ(moved("loadimage_rgb32"), 1.5 + 4);
    EXPECT_DOUBLE_EQ(moved("LoadYUY2_RGB24"), 2 + 3);
    EXPECT_DOUBLE_EQ(moved("LoadColorKeyRgb16"), 2);
    EXPECT_DOUBLE_EQ(moved("loadimage_yuy2"), 1.5 + 1.75);
    EXPECT_NEAR(moved("loadimage_yv12"), 2 + 1.25, 0.01); // as many rows of chroma as of luma
    EXPECT_DOUBLE_EQ(moved("RelaceMaskWithColorKey"), 1 + 1 + 1);
}

TEST(moved_test, counts_a_byte_once) {
    // Rows of the source are read for more than one row of the destination.
    EXPECT_NEAR(moved("strech_picture_2X2_yuy2_ajust"), 1.5 + 2 * 4, 0.01);
    EXPECT_NEAR(moved("strech_pic_1X2_adjust"), 1 + 2, 0.01);
}

TEST(moved_test, counts_of_the_subpicture_what_is_seen) {
    EXPECT_DOUBLE_EQ(moved("mix_ayuy2_rgb32_p_ajust/veil"), 1.5 + 1 + 2 + 4);
    EXPECT_DOUBLE_EQ(moved("mix_ayuy2_rgb32_p_ajust/subtitles"), 1.5 + 1 + 0.05 * 2 + 4);
    EXPECT_DOUBLE_EQ(moved("Convert_RGB32_To_AYUY2/drawn"), 4 + 2);
    EXPECT_DOUBLE_EQ(moved("Convert_RGB32_To_AYUY2/90%key"), 4 + 0.1 * 2);
}

TEST(moved_test, is_no_less_than_what_is_beside) {
    for (const job &job : jobs)
        EXPECT_GE(bytes_moved_per_pixel(job), job.bytes_per_pixel) << title(job);
}

} // namespace
} // namespace lumalane::bench
