#include "bench/team.h"

#include <gtest/gtest.h>

#include <atomic>

namespace lumalane::bench {
namespace {

TEST(team_test, every_member_does_its_own_work) {
    team team(3);
    std::atomic<int> first{0}, second{0}, third{0};
    const std::vector<task> works{[&] { ++first; }, [&] { ++second; }, [&] { ++third; }};
    EXPECT_GE(team.time(works, 5), 0);
    EXPECT_EQ(first, 5 + untimed_calls);
    EXPECT_EQ(second, 5 + untimed_calls);
    EXPECT_EQ(third, 5 + untimed_calls);
}

TEST(team_test, members_without_work_wait) {
    team team(2);
    std::atomic<int> calls{0};
    for (int i = 0; i < 3; ++i)
        team.time({[&] { ++calls; }}, 1);
    EXPECT_EQ(calls, 3 * (1 + untimed_calls));
}

TEST(team_test, a_turn_takes_as_long_as_the_longest_work) {
    team team(2);
    const auto work = [] {
        for (const double start = processor_seconds(); processor_seconds() < start + 0.002;) {
        }
    };
    EXPECT_GE(team.time({[] {}, work}, 3), 0.006);
    EXPECT_GE(team.time({work, [] {}}, 3), 0.006);
}

TEST(team_test, works_are_done_by_threads_of_their_own) {
    team team(2);
    std::thread::id first, second;
    team.time(
        {[&] { first = std::this_thread::get_id(); }, [&] { second = std::this_thread::get_id(); }},
        1);
    EXPECT_EQ(first, std::this_thread::get_id());
    EXPECT_NE(first, second);
}

// The processors of the calling thread, as a count.
int processors() {
    cpu_set_t allowed;
    CPU_ZERO(&allowed);
    return sched_getaffinity(0, sizeof allowed, &allowed) == 0 ? CPU_COUNT(&allowed) : 0;
}

TEST(team_test, members_have_processors_of_their_own_while_there_is_a_team) {
    const int before = processors();
    for (int i = 0; i < 2; ++i) {
        team team(2);
        int first = -1, second = -1;
        team.time({[&] { first = sched_getcpu(); }, [&] { second = sched_getcpu(); }}, 1);
        EXPECT_EQ(first != second, before > 1); // of one processor they share it
        EXPECT_EQ(processors(), 1);
    }
    EXPECT_EQ(processors(), before);
}

} // namespace
} // namespace lumalane::bench
