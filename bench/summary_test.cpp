#include "bench/summary.h"

#include <gtest/gtest.h>

#include <sstream>

namespace lumalane::bench {
namespace {

std::string printed(const summary &summary) {
    std::ostringstream text;
    summary.print(text, {});
    return text.str();
}

TEST(summary_test, has_means_families_and_what_is_below) {
    summary all({{"new", "old"}, {"a", "b"}, {"set", "copy"}});
    all.add("1x1", "Tall", "f", {{"new", 1}, {"old", 2}, {"a", 4}, {"b", 3}, {"copy", 0.1}});
    all.add("1x1", "Wide", "g", {{"new", 1}, {"old", 0.5}, {"a", 1}, {"set", 0.2}});
    all.add("2x2", "Tall", "f", {{"new", 1}, {"old", 1}, {"b", 0.9}});
    EXPECT_EQ(printed(all), R"(| Times as long as new | old | a | b | set | copy | fastest peer |
|---|---:|---:|---:|---:|---:|---:|
| Geometric mean of 1x1 | 1.000 | 2.000 | 3.000 | 0.200 | 0.100 | 1.732 |
| Geometric mean of 2x2 | 1.000 | – | 0.900 | – | – | 0.900 |
| Geometric mean of all | 1.000 | 2.000 | 1.643 | 0.200 | 0.100 | 1.392 |
| Least | 0.500 | 1.000 | 0.900 | 0.200 | 0.100 | 0.900 |

The fastest peer, by family: geometric means

| Times as long as new | 1x1 | 2x2 | all | least | measurements |
|---|---:|---:|---:|---:|---:|
| Tall | 3.00 | 0.90 | 1.64 | 0.90 | 2 |
| Wide | 1.00 | – | 1.00 | 1.00 | 1 |
| All | 1.73 | 0.90 | 1.39 | 0.90 | 3 |

fastest peer: 1 below 1.00

- 0.900 2x2 `f`

closest yardstick, where there is no peer: 0 below 0.95

old: 1 below 0.95

- 0.500 1x1 `g`
)");
}

TEST(summary_test, without_peers_the_closest_yardstick_counts) {
    summary moves({{"new"}, {}, {"set", "copy"}});
    moves.add("1x1", "Moves", "fill", {{"new", 1}, {"set", 0.97}, {"copy", 0.5}});
    moves.add("1x1", "Moves", "move", {{"new", 1}, {"copy", 0.94}});
    EXPECT_NE(printed(moves).find(R"(

closest yardstick, where there is no peer: 1 below 0.95

- 0.940 1x1 `move`
)"),
              std::string::npos);
}

TEST(summary_test, says_nothing_of_one) {
    summary alone({{"new"}, {}, {}});
    alone.add("1x1", "Tall", "f", {{"new", 1}});
    EXPECT_EQ(printed(alone), "");
}

} // namespace
} // namespace lumalane::bench
