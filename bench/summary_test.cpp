#include "bench/summary.h"

#include <gtest/gtest.h>

#include <sstream>

namespace lumalane::bench {
namespace {

std::string printed(const summary &summary, double below) {
    std::ostringstream text;
    summary.print(text, below);
    return text.str();
}

TEST(summary_test, has_means_least_and_what_is_below) {
    summary all({{"new", "old"}, {"a", "b"}, {"copy"}});
    all.add("1x1", "f", {{"new", 1}, {"old", 2}, {"a", 4}, {"b", 3}, {"copy", 0.1}});
    all.add("1x1", "g", {{"new", 1}, {"old", 0.5}, {"a", 1}});
    all.add("2x2", "f", {{"new", 1}, {"old", 1}, {"b", 0.9}});
    EXPECT_EQ(printed(all, 0.95), R"(| Times as long as new | old | a | b | copy | fastest peer |
|---|---:|---:|---:|---:|---:|
| Geometric mean of 1x1 | 1.000 | 2.000 | 3.000 | 0.100 | 1.732 |
| Geometric mean of 2x2 | 1.000 | – | 0.900 | – | 0.900 |
| Geometric mean of all | 1.000 | 2.000 | 1.643 | 0.100 | 1.392 |
| Least | 0.500 | 1.000 | 0.900 | 0.100 | 0.900 |

old: 1 below 0.95

- 0.500 1x1 `g`

fastest peer: 1 below 0.95

- 0.900 2x2 `f`
)");
}

TEST(summary_test, says_nothing_of_one) {
    summary alone({{"new"}, {}, {}});
    alone.add("1x1", "f", {{"new", 1}});
    EXPECT_EQ(printed(alone, 0.95), "");
}

} // namespace
} // namespace lumalane::bench
