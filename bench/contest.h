// Timing in turns: A B C, B C A, C A B, ... Whatever disturbs the machine disturbs all alike, and
// nobody always comes after the same other one.
#pragma once

#include "bench/median.h"

#include <functional>
#include <string>
#include <vector>

namespace lumalane::bench {

using task = std::function<void()>;

// The processor's time of the calling thread: other programs that run meanwhile do not count.
double processor_seconds();

// At the beginning of a turn, which are not counted: the cache is full of what came before.
inline constexpr long untimed_calls = 2;

// Seconds that `calls` runs of the work take, after those that are not counted.
double time(const task &work, long calls);

struct contestant {
    std::string name;
    std::function<double(long calls)> time;
    long calls = 1;                // per round
    std::vector<double> seconds{}; // per call, one entry per round
};

// Raises `calls` until a round of this contestant takes at least `seconds`.
void calibrate(contestant &contestant, double seconds);

// One round: everybody once. Each round begins one further on.
void round(std::vector<contestant> &contestants);

double geometric_mean(const std::vector<double> &values);

// Median of the quotients of the rounds, a's time over b's.
double paired_ratio(const contestant &a, const contestant &b);

} // namespace lumalane::bench
