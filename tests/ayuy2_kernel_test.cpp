// Every colour through the conversion of a drawing surface.
#include <algorithm>
#include <cstdio>
#include <vector>

#include "tests/targets.h"

namespace {

class ayuy2_kernel : public tests::on_each_target {};

int clamped_sum(int b, int g, int r, int coefficient_b, int coefficient_g, int coefficient_r,
                int constant) {
    const int sum = coefficient_b * b + coefficient_g * g + coefficient_r * r;
    return std::clamp(constant + (sum >> 10), 0, 255);
}

// Two pixels of each colour, since the first pixel of a pair alone makes its chroma.
TEST_P(ayuy2_kernel, converts_every_colour) {
    constexpr int colours = 1 << 16; // in one call: all of one red
    std::vector<unsigned> surface(2 * colours);
    std::vector<unsigned char> y(2 * colours), u(colours), v(colours);
    long proven = 0;
    for (int r = 0; r < 256; ++r) {
        for (int bg = 0; bg < colours; ++bg)
            surface[2 * bg] = surface[2 * bg + 1] = static_cast<unsigned>(r << 16 | bg);
        tagMIX_INFO mix{};
        mix.dst = reinterpret_cast<unsigned char *>(surface.data());
        mix.width = mix.sub_pitch = 2 * colours;
        mix.dst_pitch = 8 * colours;
        mix.height = 1;
        mix.sub_y = y.data();
        mix.sub_u = u.data();
        mix.sub_v = v.data();
        mix.color_key = 0xff000000; // no pixel's
        Convert_RGB32_To_AYUY2(&mix);
        for (int bg = 0; bg < colours; ++bg) {
            const int b = bg & 255, g = bg >> 8;
            ASSERT_EQ(y[2 * bg], clamped_sum(b, g, r, 100, 516, 263, 16)) << r << ' ' << bg;
            ASSERT_EQ(y[2 * bg + 1], y[2 * bg]) << r << ' ' << bg;
            ASSERT_EQ(u[bg], clamped_sum(b, g, r, 449, -297, -151, 128)) << r << ' ' << bg;
            ASSERT_EQ(v[bg], clamped_sum(b, g, r, -72, -376, 449, 128)) << r << ' ' << bg;
            ++proven;
        }
    }
    EXPECT_EQ(proven, 1L << 24);
    std::printf("%s: %ld colours\n", GetParam()->name, proven);
}

INSTANTIATE_ON_EACH_TARGET(ayuy2_kernel);

} // namespace
