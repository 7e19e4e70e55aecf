// All 2^24 colours through the four RGB16 packings.
#include <algorithm>
#include <cstdio>
#include <numeric>
#include <vector>

#include "tests/lane_sets.h"
#include "tests/lanes/probe.h"
#include "tests/model/rgb.h"

namespace {

class rgb16_packing_test : public tests::on_each_lane_set {};

// The bytes of consecutive blues, beginning with `first`.
std::vector<unsigned char> packed_by_model(model::rgb first, int pixels, unsigned layout) {
    std::vector<unsigned char> packed;
    for (int pixel = 0; pixel < pixels; ++pixel, ++first.b)
        for (const unsigned char byte : model::pack_rgb16(first, layout))
            packed.push_back(byte);
    return packed;
}

void prove(const tests::rgb16_packing &packing, unsigned layout) {
    const int pixels = packing.pixels;
    std::vector<unsigned char> planes(3 * pixels), packed(2 * pixels);
    const auto red = planes.begin(), green = red + pixels, blue = green + pixels;
    unsigned proven = 0;
    for (unsigned colour = 0; colour < 1u << 24; colour += pixels) {
        const model::rgb first = {.r = static_cast<unsigned char>(colour >> 16),
                                  .g = static_cast<unsigned char>(colour >> 8),
                                  .b = static_cast<unsigned char>(colour)};
        std::fill(red, green, first.r);
        std::fill(green, blue, first.g);
        std::iota(blue, planes.end(), first.b);
        packing.run(packed.data(), planes.data(), layout);
        ASSERT_EQ(packed, packed_by_model(first, pixels, layout))
            << "from red " << int{first.r} << ", green " << int{first.g} << ", blue "
            << int{first.b} << " on";
        proven += pixels;
    }
    EXPECT_EQ(proven, 1u << 24);
    std::printf("layout %u, %d pixels at once: %u colours proven\n", layout, pixels, proven);
}

TEST_P(rgb16_packing_test, is_that_of_the_model_for_every_colour) {
    for (const tests::rgb16_packing &packing : tests::probe_of(GetParam()).rgb16_packings)
        for (const unsigned layout : {0u, 1u, 2u, 3u})
            prove(packing, layout);
}

INSTANTIATE_ON_EACH_LANE_SET(rgb16_packing_test);

} // namespace
