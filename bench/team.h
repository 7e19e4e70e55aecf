// Threads that begin and end a timing together. They are made once, not within a timing.
#pragma once

#include "bench/contest.h"

#include <atomic>
#include <sched.h>
#include <thread>
#include <vector>

namespace lumalane::bench {

// Where members wait for each other, awake: a processor that sleeps takes part of a turn until it is as
// fast as it can be.
class meeting {
public:
    explicit meeting(int members) : members_(members) {}
    void arrive_and_wait();

private:
    const int members_;
    std::atomic<int> here_{0};
    std::atomic<unsigned> number_{0}; // of meetings that are over
};

class team {
public:
    // The calling thread is one of the `members`. Where there are as many processors as members, each
    // has one of its own, as long as the team exists.
    explicit team(int members);
    ~team();
    team(const team &) = delete;
    team &operator=(const team &) = delete;

    // Seconds that `calls` runs take the member whose work takes longest, after those that are not
    // counted. All begin together, members without work wait, and no member's time is that of others.
    double time(const std::vector<task> &works, long calls);

private:
    void run_member(std::size_t member, int processor);
    void take_turn(std::size_t member);

    const cpu_set_t allowed_; // to the calling thread before
    meeting together_;
    const std::vector<task> *works_ = nullptr; // null: there is no further timing
    long calls_ = 0;
    std::vector<double> seconds_; // of each member
    std::vector<std::thread> others_{};
};

// Arithmetic in vector registers, which touches no memory: what the processor itself lets threads do.
// Processors that are two threads of one core share what it is done with.
task arithmetic_in_registers();

} // namespace lumalane::bench
