#include "bench/flatness.h"

#include <gtest/gtest.h>

#include <sstream>

namespace lumalane::bench {
namespace {

TEST(flatness_test, rates_are_bytes_per_nanosecond) {
    const pixel_cost cost{"1x1", 0.5, 6, 0.2, 8};
    EXPECT_DOUBLE_EQ(cost.rate(), 12);
    EXPECT_DOUBLE_EQ(cost.copy_rate(), 40);
    EXPECT_DOUBLE_EQ(cost.share_of_copy(), 0.3);
}

TEST(flatness_test, says_what_bounds_what_is_not_flat) {
    flatness costs;
    costs.add("flat", {"1x1", 0.1, 5, 0.1, 8});
    costs.add("moves", {"1x1", 0.1, 5, 0.1, 8});
    costs.add("computes", {"1x1", 0.1, 5, 0.1, 8});
    costs.add("begins", {"1x1", 0.5, 5, 0.1, 8});
    costs.add("flat", {"2x2", 0.2, 5, 0.4, 8});
    costs.add("moves", {"2x2", 0.25, 5, 0.4, 8});
    costs.add("computes", {"2x2", 0.5, 5, 0.4, 8});
    costs.add("begins", {"2x2", 0.2, 5, 0.4, 8});
    std::ostringstream text;
    costs.print(text, 2);
    EXPECT_EQ(
        text.str(),
        R"(| Function | greatest / smallest | least ns | at | greatest ns | at | bytes per pixel | GB/s there | memcpy's GB/s | of memcpy's |
|---|---:|---:|---:|---:|---:|---:|---:|---:|---:|
| `flat` | 2.00 | 0.100 | 1x1 | 0.200 | 2x2 | 5.00 | 25.0 | 20.0 | 1.25 |
| `moves` | 2.50 | 0.100 | 1x1 | 0.250 | 2x2 | 5.00 | 20.0 | 20.0 | 1.00 |
| `computes` | 5.00 | 0.100 | 1x1 | 0.500 | 2x2 | 5.00 | 10.0 | 20.0 | 0.50 |
| `begins` | 2.50 | 0.200 | 2x2 | 0.500 | 1x1 | 5.00 | 10.0 | 80.0 | 0.12 |

3 above 2.0

- `moves`, 2.50 times: the memory bounds it at 2x2, where it moves 5.00 bytes per pixel at 20.0 GB/s and memcpy 20.0 GB/s.
- `computes`, 5.00 times: not the memory alone bounds it at 2x2, where it moves 5.00 bytes per pixel at 10.0 GB/s and memcpy 20.0 GB/s.
- `begins`, 2.50 times: what each call and row costs bounds it at 1x1, where it moves 5.00 bytes per pixel at 10.0 GB/s and memcpy 80.0 GB/s.
)");
}

TEST(flatness_test, wants_more_than_one_size) {
    flatness costs;
    costs.add("f", {"1x1", 0.1, 5, 0.1, 8});
    std::ostringstream text;
    costs.print(text, 2);
    EXPECT_EQ(text.str(), "");
}

} // namespace
} // namespace lumalane::bench
