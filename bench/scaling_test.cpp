#include "bench/scaling.h"

#include <gtest/gtest.h>

#include <sstream>

namespace lumalane::bench {
namespace {

TEST(scaling_test, counts_what_is_bound_by_arithmetic) {
    scaling threads;
    threads.add("f", {"1x1", 1, 10, 0.5, 10}, 1.6);
    threads.add("g", {"1x1", 1, 10, 0.5, 10}, 2.5);
    threads.add("h", {"1x1", 1, 10, 1, 10}, 1.1);
    threads.add("f", {"2x2", 1, 10, 1, 10}, 1);
    std::ostringstream text;
    threads.print(text, 1.85);
    EXPECT_EQ(
        text.str(),
        R"(Bound by arithmetic, as it moves less than 0.75 of the bytes per second that memcpy does:

| Picture | functions | geometric mean | least | bound by memory |
|---|---:|---:|---:|---:|
| 1x1 | 2 | 2.00 | 1.60 | 1 |
| 2x2 | 0 | – | – | 1 |

1 of them below 1.85

- 1.600 1x1 `f`, 0.50 of memcpy's rate
)");
}

} // namespace
} // namespace lumalane::bench
