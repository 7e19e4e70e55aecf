// stretch() against the models of the functions, on pictures between unmapped pages.
#include "tests/companion/comparison.h"

namespace companion {
namespace {

using lumalane::format;
using lumalane::stretching;

struct served {
    format from, to;
    stretching how;
};

class stretched : public comparison, public testing::TestWithParam<served> {
protected:
    // Smooth, or the edges of noise would all be the same.
    rows_of_pixels draw(int width, int height) {
        rows_of_pixels pixels = random_pixels(GetParam().from, width, height, random);
        for (bytes &plane : pixels.planes)
            for (unsigned char &sample : plane)
                sample = static_cast<unsigned char>(random() % 3 == 0 ? sample : sample / 8 + 100);
        return pixels;
    }

    void compare(const rows_of_pixels &pixels, const rows_of_pixels &expected,
                 const optional_adjustment &by, placement source_at, placement destination_at) {
        const stretching how = GetParam().how;
        comparison::compare(pixels, expected, by, source_at, destination_at,
                            [&](const lumalane::picture &source, const lumalane::picture &to) {
                                return by ? lumalane::stretch(source, to, how, *by)
                                          : lumalane::stretch(source, to, how);
                            });
    }
};

TEST_P(stretched, makes_the_pixels_of_the_function_and_touches_nothing_else) {
    for (const optional_adjustment &by : adjustments)
        for (int width = 1; width <= 70; width += few ? 7 : 1)
            for (int height = 1; height <= 21; height += height < 9 ? 1 : 3) {
                const rows_of_pixels pixels = draw(width, height);
                const auto expected = expected_stretch(pixels, GetParam().to, GetParam().how, by);
                ASSERT_TRUE(expected);
                for (const auto &[source_gap, gap] : {std::pair(0, 0), {0, 1}, {1, 18}, {18, 1}})
                    for (const bool bottom_up : {false, true}) {
                        const bool at_end = (width + height + gap + bottom_up) % 2 == 0;
                        compare(pixels, *expected, by, {source_gap, bottom_up, at_end},
                                {gap, (width + height) % 3 == 0, !bottom_up});
                        if (HasFatalFailure())
                            return;
                    }
            }
}

// On the step and off it, more than a strip has.
TEST_P(stretched, makes_the_pixels_of_the_function_of_larger_pictures) {
    for (int i = 0; i < (few ? 4 : 16); ++i) {
        int width = 1 + random() % 330, height = 1 + random() % 130;
        if (i % 4 == 0)
            width = 48 + width / 16 * 16, height = 16 + height / 2 * 2;
        const rows_of_pixels pixels = draw(width, height);
        const optional_adjustment &by = adjustments[i / 4 % 2];
        const auto expected = expected_stretch(pixels, GetParam().to, GetParam().how, by);
        ASSERT_TRUE(expected);
        for (const int gap : {0, 32, 5}) {
            compare(
                pixels, *expected, by, {gap, i % 3 == 0, i % 2 == 0, i % 5 == 0 ? 16 : 0},
                {i % 4 == 0 ? 0 : int(random() % 40), i % 3 == 1, i % 5 < 2, i % 5 == 1 ? 16 : 0});
            if (HasFatalFailure())
                return;
        }
    }
}

// The function would go wrong, in pictures of 2 GB.
TEST(stretched_columns, go_back_by_no_more_than_32_bits_hold) {
    using namespace lumalane::detail;
    for (const bool adjusts : {false, true}) {
        const stretcher packed =
            stretcher_of(format::yuy2, format::yuy2, stretching::twice_both, adjusts);
        const auto fit = [&](int size, int to_row, int to_row_of_surface) {
            return fits(packed, {{}, {to_row}}, {{}, {to_row_of_surface}}, size, size);
        };
        EXPECT_TRUE(fit(16352, 2 * 16352, 4 * 16352));
        EXPECT_TRUE(fit(16352, 2 * 16352, -4 * 16352));
        EXPECT_FALSE(fit(16384, 2 * 16384, 4 * 16384));
        EXPECT_FALSE(fit(16384, 2 * 16384, -4 * 16384 - 32));
    }
}

TEST(stretched_rows_of_rgb, go_back_by_no_more_than_32_bits_hold) {
    using namespace lumalane::detail;
    const stretcher t = stretcher_of(format::i420, format::rgb32, stretching::twice_height, false);
    const auto fit = [&](int size, int to_row_of_surface) {
        return fits(t, {{}, {size, size / 2, size / 2}}, {{}, {to_row_of_surface}}, size, size);
    };
    EXPECT_TRUE(fit(16368, 4 * 16368));
    EXPECT_FALSE(fit(16384, 4 * 16384));
    EXPECT_FALSE(fit(16384, -4 * 16384 - 32));
}

std::vector<served> all_served() {
    std::vector<served> found;
    for (const format from : {format::yv12, format::i420}) {
        for (const format to : formats)
            found.push_back({from, to, stretching::twice_height});
        for (const format to : {format::yv12, format::i420, format::yuy2})
            found.push_back({from, to, stretching::twice_both});
        found.push_back({from, format::yuy2, stretching::along_edges});
    }
    found.push_back({format::yuy2, format::yuy2, stretching::twice_both});
    return found;
}

std::string title(const served &s) {
    constexpr const char *how[] = {"_twice_height", "_twice_both", "_along_edges"};
    return std::string(name_of(s.from)) + "_to_" + name_of(s.to) + how[static_cast<int>(s.how)];
}

INSTANTIATE_TEST_SUITE_P(pairs, stretched, testing::ValuesIn(all_served()),
                         [](const auto &served) { return title(served.param); });

} // namespace
} // namespace companion
