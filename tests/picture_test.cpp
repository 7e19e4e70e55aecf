// How pictures of any size lie in memory. What is made of them is tested in companion/.
#include <lumalane/format.h>

#include <algorithm>
#include <climits>
#include <cstdint>

#include <gtest/gtest.h>

namespace companion {
namespace {

using lumalane::format;

static_assert(lumalane::picture_bytes(format::i420, 5, 3) == 5 * 3 + 2 * 3 * 2);
static_assert(lumalane::picture_bytes(format::yuy2, 5, 3) == 12 * 3);
static_assert(lumalane::picture_bytes(format::rgb24, 5, 3) == 15 * 3);
static_assert(lumalane::picture_bytes(format::rgb32, INT_MAX, INT_MAX) ==
              std::min(4ULL * INT_MAX * INT_MAX, 0ULL + SIZE_MAX));
static_assert(lumalane::row_bytes(format::rgb655, 0, 5) == 10);
static_assert(lumalane::row_bytes(format::rgb32, 0, 1 << 30) == 1LL << 32);

TEST(packed_planes, follow_each_other) {
    unsigned char memory[5 * 3 + 2 * 3 * 2];
    const lumalane::picture p = lumalane::packed_planes(format::yv12, 5, 3, memory);
    EXPECT_EQ(p.planes[0].data, memory);
    EXPECT_EQ(p.planes[0].stride, 5);
    EXPECT_EQ(p.planes[1].data, memory + 15);
    EXPECT_EQ(p.planes[1].stride, 3);
    EXPECT_EQ(p.planes[2].data, memory + 21);
}

// What a failed allocation gives, of which the compiler would refuse to compute an address.
constexpr bool planes_are_null(const lumalane::picture &p) {
    return !p.planes[0].data && !p.planes[1].data && !p.planes[2].data;
}
constexpr lumalane::picture nowhere = lumalane::packed_planes(format::i420, 5, 3, nullptr);
static_assert(planes_are_null(nowhere) && nowhere.planes[1].stride == 3);
static_assert(planes_are_null(lumalane::flipped(nowhere)));

TEST(flipped, begins_with_the_last_row) {
    unsigned char memory[5 * 3 + 2 * 3 * 2];
    const lumalane::picture p =
        lumalane::flipped(lumalane::packed_planes(format::i420, 5, 3, memory));
    EXPECT_EQ(p.planes[0].data, memory + 10);
    EXPECT_EQ(p.planes[0].stride, -5);
    EXPECT_EQ(p.planes[1].data, memory + 18);
    EXPECT_EQ(p.planes[1].stride, -3);
    EXPECT_EQ(lumalane::flipped(p).planes[2].data, memory + 21);
}

} // namespace
} // namespace companion
