// convert() against the models of the functions, on pictures between unmapped pages.
#include "tests/companion/comparison.h"
#if UINTPTR_MAX > 0xffffffff // where there is room
#include "tests/sparse_memory.h"
#endif

#include <cstdint>
#include <numeric>

namespace companion {
namespace {

using lumalane::format;

lumalane::status convert(const lumalane::const_picture &source, const lumalane::picture &to,
                         const optional_adjustment &by) {
    return by ? lumalane::convert(source, to, *by) : lumalane::convert(source, to);
}

class conversion : public comparison, public testing::TestWithParam<std::tuple<format, format>> {
protected:
    void compare(const rows_of_pixels &pixels, const rows_of_pixels &expected,
                 const optional_adjustment &by, placement source_at, placement destination_at) {
        comparison::compare(pixels, expected, by, source_at, destination_at,
                            [&](const lumalane::picture &source, const lumalane::picture &to) {
                                return convert(source, to, by);
                            });
    }
};

// On the step and beside it.
const std::vector<int> telling_widths{1,  2,  7,  8,  15, 16, 17, 30, 31, 32,
                                      33, 40, 47, 48, 49, 63, 64, 65, 70};
const std::vector<int> all_widths = [] {
    std::vector<int> widths(70);
    std::iota(widths.begin(), widths.end(), 1);
    return widths;
}();

TEST_P(conversion, makes_the_pixels_of_the_function_and_touches_nothing_else) {
    const auto [from, to] = GetParam();
    for (const optional_adjustment &by : adjustments)
        for (const int width : few ? telling_widths : all_widths)
            for (int height = 1; height <= 9; ++height) {
                const rows_of_pixels pixels = random_pixels(from, width, height, random);
                const auto expected = expected_conversion(pixels, to, by);
                ASSERT_TRUE(expected);
                for (const int gap : {0, 1, 18})
                    for (const bool source_bottom_up : {false, true})
                        for (const bool bottom_up : {false, true}) {
                            const bool at_end = (width + height + gap + bottom_up) % 2 == 0;
                            compare(pixels, *expected, by, {gap, source_bottom_up, at_end},
                                    {gap, bottom_up, !source_bottom_up});
                            if (HasFatalFailure())
                                return;
                        }
            }
}

// Rows whose chroma has half the stride of luma and others, more rows than go at a time.
TEST_P(conversion, makes_the_pixels_of_the_function_of_larger_pictures) {
    const auto [from, to] = GetParam();
    for (int i = 0; i < (few ? 3 : 12); ++i) {
        const bool tall = i % 3 == 0;
        const int width = 1 + random() % (tall ? 70 : 520);
        const int height = 1 + random() % 300 + (tall ? 800 : 0);
        const rows_of_pixels pixels = random_pixels(from, width, height, random);
        const optional_adjustment &by = adjustments[i % 2];
        const auto expected = expected_conversion(pixels, to, by);
        ASSERT_TRUE(expected);
        for (const bool bottom_up : {false, true}) {
            compare(pixels, *expected, by,
                    {int(random() % 3 * 16), bottom_up, i % 4 < 2, i % 5 == 0 ? 16 : 0, i % 5 == 2},
                    {int(random() % 40), random() % 2 == 0, i % 3 == 0, i % 5 == 1 ? 16 : 0,
                     i % 5 == 2});
            if (HasFatalFailure())
                return;
        }
    }
}

// Planes of which one or two begin with their last row: all that the functions are told of chroma is the
// stride of luma.
TEST_P(conversion, makes_the_pixels_of_the_function_of_planes_that_go_different_ways) {
    const auto [from, to] = GetParam();
    for (const int width : {16, 32, 46, 64})
        for (const optional_adjustment &by : adjustments)
            for (int which = 1; which < 7; ++which) {
                const rows_of_pixels pixels = random_pixels(from, width, 12, random);
                const auto expected = expected_conversion(pixels, to, by);
                ASSERT_TRUE(expected);
                const auto turned = [&](const lumalane::picture &p, int planes) {
                    lumalane::picture made = p, up = lumalane::flipped(p);
                    for (int i = 0; i < lumalane::plane_count(p.format); ++i)
                        if (planes >> i & 1)
                            made.planes[i] = up.planes[i];
                    return made;
                };
                const lumalane::picture source =
                    turned(source_memory.lay_out(from, width, 12, {0, false, true}), which);
                store(pixels, source);
                const lumalane::picture made =
                    turned(destination_memory.lay_out(to, width, 12, {0, false, true}), 7 - which);
                ASSERT_TRUE(convert(source, made, by));
                expect_made(made, *expected, [&](std::ostream &text) {
                    text << width << (by ? " adjusted" : "") << ", planes " << which;
                });
                if (HasFatalFailure())
                    return;
            }
}

// Rows that are longer than the alpha of no subpicture.
TEST_P(conversion, makes_the_pixels_of_the_function_of_long_rows) {
    const auto [from, to] = GetParam();
    for (const int width : {4097, 8208}) {
        const rows_of_pixels pixels = random_pixels(from, width, 3, random);
        for (const optional_adjustment &by : adjustments) {
            compare(pixels, *expected_conversion(pixels, to, by), by, {0, false, true},
                    {2, false, true});
            if (HasFatalFailure())
                return;
        }
    }
}

// Surfaces of so many bytes that the library may store around the cache: steps end where a line does.
TEST_P(conversion, makes_the_pixels_of_the_function_on_surfaces_that_outgrow_the_cache) {
    constexpr int stride = 1 << 16, height = 129;
    constexpr std::size_t plane_bytes = std::size_t{height} * stride;
    static bytes memory(3 * plane_bytes + 64);
    unsigned char *const aligned =
        memory.data() + (64 - reinterpret_cast<std::uintptr_t>(memory.data()) % 64) % 64;
    const auto [from, to] = GetParam();
    for (int i = 0; i < (few ? 1 : 4); ++i) {
        const bool planar = lumalane::plane_count(to) > 1;
        const int width = 65 + random() % 300, indent = i % 2 * 32 + (planar ? i / 2 * 8 : 0);
        const rows_of_pixels pixels = random_pixels(from, width, height, random);
        const optional_adjustment &by = adjustments[i / 2 % 2];
        const auto expected = expected_conversion(pixels, to, by);
        ASSERT_TRUE(expected);
        const lumalane::picture source =
            source_memory.lay_out(from, width, height, {0, false, true});
        store(pixels, source);
        std::ranges::fill(memory, guarded_planes::mark);
        lumalane::picture made{to, width, height, {}};
        for (int plane = 0; plane < lumalane::plane_count(to); ++plane)
            made.planes[plane] = {aligned + plane * plane_bytes + indent,
                                  plane == 0 ? stride : stride / 2};
        ASSERT_TRUE(convert(source, made, by));
        expect_made(made, *expected, [&](std::ostream &text) {
            text << width << "x" << height << (by ? " adjusted" : "") << ", " << indent
                 << " bytes from a line of the cache";
        });
        if (HasFatalFailure())
            return;
    }
}

// The function finds its planes by sizes, from which neither the strides of chroma follow nor that there
// are sizes for any two places.
TEST(conversion_of_planes, makes_chroma_wherever_it_lies) {
    std::minstd_rand random{1};
    const rows_of_pixels pixels = random_pixels(format::i420, 32, 16, random);
    guarded_planes memory;
    const lumalane::picture source = memory.lay_out(format::i420, 32, 16, {0, false, true});
    store(pixels, source);
    const struct {
        int first, second, stride;
    } chroma[] = {
        {1280, 1792, 32}, {1280, 1792, 40}, {1281, 1792, 32}, {1280, 1800, 32}, {1968, 2480, 32}};
    for (const auto &[first, second, stride] : chroma) {
        bytes surface(4096);
        const lumalane::picture made{format::i420,
                                     32,
                                     16,
                                     {{surface.data(), 64},
                                      {surface.data() + first, stride},
                                      {surface.data() + second, stride}}};
        ASSERT_TRUE(convert(source, made, some));
        EXPECT_TRUE(load(made) == expected_conversion(pixels, format::i420, some))
            << first << ", " << second << ", " << stride;
    }
}

// As one function has them, if their distances are those that it can be told.
TEST(planes_of_one_memory, are_adjusted_wherever_they_are) {
    std::minstd_rand random{1};
    for (const int width : {16, 18, 24, 32, 40})
        for (const int height : {2, 4, 6, 8})
            for (const int gap : {0, 2, 8, 16})
                for (const int between : {0, 1, 3, 8, 24})
                    for (const bool up : {false, true}) {
                        const rows_of_pixels pixels =
                            random_pixels(format::i420, width, height, random);
                        bytes source = bytes(lumalane::picture_bytes(format::i420, width, height));
                        const lumalane::picture from =
                            lumalane::packed_planes(format::i420, width, height, source.data());
                        store(pixels, from);
                        bytes memory(4096, guarded_planes::mark), expected = memory;
                        const auto picture_in = [&](bytes &in) {
                            const int stride = width + gap;
                            unsigned char *const y = in.data() + 64,
                                                 *const v = y + height * stride + between,
                                                 *const u =
                                                     v + height / 2 * (stride / 2) + 2 * between;
                            const lumalane::picture p{
                                between % 2 == 0 ? format::yv12 : format::i420,
                                width,
                                height,
                                {{y, stride}, {v, stride / 2}, {u, stride / 2}}};
                            return up ? lumalane::flipped(p) : p;
                        };
                        store(*expected_conversion(pixels, picture_in(memory).format, some),
                              picture_in(expected));
                        ASSERT_TRUE(lumalane::convert(from, picture_in(memory), some));
                        ASSERT_TRUE(memory == expected)
                            << width << "x" << height << ", gap " << gap << ", " << between
                            << (up ? " between, bottom up" : " between");
                    }
}

#if UINTPTR_MAX > 0xffffffff

// The function could be told such distances, and would compute with 32 bits of them.
TEST(planes_far_apart, are_adjusted_like_others) {
    constexpr long long apart = 1LL << 31;
    const tests::sparse_memory far;
    ASSERT_TRUE(far.mapped());
    unsigned char *const y = far.origin();
    std::minstd_rand random{1};
    const rows_of_pixels pixels = random_pixels(format::i420, 16, 4, random);
    bytes memory(1 << 10);
    const lumalane::picture source = lumalane::packed_planes(format::i420, 16, 4, memory.data());
    store(pixels, source);
    for (unsigned char *const u : {y + apart, y + 128}) {
        const lumalane::picture made{format::i420, 16, 4, {{y, 16}, {u, 8}, {y + 2 * apart, 8}}};
        EXPECT_TRUE(lumalane::convert(source, made, some));
        EXPECT_TRUE(load(made) == *expected_conversion(pixels, format::i420, some));
    }
}

#endif

// Of which not all rows lie side by side.
TEST(conversion_of_planes, adjusts_sources_with_a_gap_in_any_plane) {
    std::minstd_rand random{1};
    const rows_of_pixels pixels = random_pixels(format::i420, 32, 16, random);
    for (const auto &[luma, first, second] :
         {std::array{32, 16, 16}, {40, 16, 16}, {32, 24, 16}, {32, 16, 24}, {32, 16, 64}}) {
        bytes memory(4096), surface(4096);
        const lumalane::picture source{
            format::i420,
            32,
            16,
            {{memory.data(), luma}, {&memory[1024], first}, {&memory[2048], second}}};
        store(pixels, source);
        const lumalane::picture made =
            lumalane::packed_planes(format::i420, 32, 16, surface.data());
        ASSERT_TRUE(convert(source, made, some));
        EXPECT_TRUE(load(made) == expected_conversion(pixels, format::i420, some))
            << luma << ", " << first << ", " << second;
    }
}

std::vector<std::tuple<format, format>> served_pairs() {
    std::vector<std::tuple<format, format>> pairs;
    for (const format from : {format::yv12, format::i420, format::yuy2})
        for (const format to : formats)
            if (from != format::yuy2 || to >= format::yuy2)
                pairs.push_back({from, to});
    return pairs;
}

INSTANTIATE_TEST_SUITE_P(pairs, conversion, testing::ValuesIn(served_pairs()),
                         [](const auto &pair) {
                             return std::string(name_of(std::get<0>(pair.param))) + "_to_" +
                                    name_of(std::get<1>(pair.param));
                         });

} // namespace
} // namespace companion
