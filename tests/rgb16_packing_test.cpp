// All 2^24 colours through the four RGB16 packings.
#include <algorithm>
#include <array>
#include <cstdio>
#include <numeric>
#include <vector>

#include "tests/model/rgb.h"
#include "tests/simd/probe.h"
#include "tests/targets.h"

namespace {

class rgb16_packing_test : public tests::on_each_target {};

// The 256 blues of one red and green.
using row = std::array<unsigned char, 2 * 256>;

row packed_by(const tests::rgb16_packing &packing, unsigned layout, int red, int green) {
    const int pixels = packing.pixels;
    std::vector<unsigned char> planes(3 * pixels);
    std::fill_n(planes.begin(), pixels, static_cast<unsigned char>(red));
    std::fill_n(planes.begin() + pixels, pixels, static_cast<unsigned char>(green));
    row packed;
    for (int blue = 0; blue < 256; blue += pixels) {
        std::iota(planes.begin() + 2 * pixels, planes.end(), static_cast<unsigned char>(blue));
        packing.run(&packed[2 * blue], planes.data(), layout);
    }
    return packed;
}

row packed_by_model(unsigned layout, int red, int green) {
    row packed;
    model::rgb colour = {static_cast<unsigned char>(red), static_cast<unsigned char>(green), 0};
    for (int blue = 0; blue < 256; ++blue, ++colour.b) {
        const auto pixel = model::pack_rgb16(colour, layout);
        std::copy(pixel.begin(), pixel.end(), &packed[2 * blue]);
    }
    return packed;
}

void prove(const tests::rgb16_packing &packing, unsigned layout) {
    int proven = 0;
    for (int red = 0; red < 256; ++red)
        for (int green = 0; green < 256; ++green) {
            ASSERT_EQ(packed_by(packing, layout, red, green), packed_by_model(layout, red, green))
                << "red " << red << ", green " << green;
            proven += 256;
        }
    EXPECT_EQ(proven, 1 << 24);
    std::printf("layout %u, %d pixels at once: %d colours proven\n", layout, packing.pixels,
                proven);
}

TEST_P(rgb16_packing_test, is_that_of_the_model_for_every_colour) {
    const auto &packings = tests::probe_of(*GetParam()).rgb16_packings;
    ASSERT_GT(packings.size, 0);
    for (const tests::rgb16_packing &packing : packings)
        for (const unsigned layout : {0u, 1u, 2u, 3u})
            prove(packing, layout);
    std::printf("figure: packed %llu\n", 4ull * packings.size << 24);
}

INSTANTIATE_ON_EACH_TARGET(rgb16_packing_test);

} // namespace
