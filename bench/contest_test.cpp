#include "bench/contest.h"

#include <gtest/gtest.h>

namespace lumalane::bench {
namespace {

TEST(contest_test, rounds_rotate) {
    std::string order;
    std::vector<contestant> contestants;
    for (const char *name : {"A", "B", "C"})
        contestants.push_back({name, [&order, name](long calls) {
                                   order += name;
                                   return double(calls);
                               }});
    for (int i = 0; i < 4; ++i) {
        round(contestants);
        order += ' ';
    }
    EXPECT_EQ(order, "ABC BCA CAB ABC ");
    for (const contestant &contestant : contestants)
        EXPECT_EQ(contestant.seconds, std::vector<double>(4, 1)) << contestant.name;
}

TEST(contest_test, the_first_calls_are_not_counted) {
    int calls = 0;
    EXPECT_GE(time([&] { ++calls; }, 5), 0);
    EXPECT_EQ(calls, 7);
}

TEST(contest_test, calls_are_as_many_as_the_time_wants) {
    contestant slow{"a millisecond a call", [](long calls) { return calls * 1e-3; }};
    calibrate(slow, 0.1);
    EXPECT_GE(slow.calls, 100);
    EXPECT_LE(slow.calls, 150);
}

TEST(contest_test, ratios_are_of_the_same_round) {
    // Twice as slow in every round, while the machine becomes slower.
    contestant a{"a", nullptr}, b{"b", nullptr};
    b.seconds = {1, 2, 40};
    a.seconds = {2, 4, 80};
    EXPECT_EQ(paired_ratio(a, b), 2);
    EXPECT_EQ(median({3, 1, 2}), 2);
    EXPECT_EQ(median({8, 1, 4, 2}), 3);
    EXPECT_DOUBLE_EQ(geometric_mean({0.5, 8, 2}), 2);
}

} // namespace
} // namespace lumalane::bench
