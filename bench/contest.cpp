#include "bench/contest.h"

#include <algorithm>
#include <cmath>
#include <ctime>
#include <functional>

namespace lumalane::bench {
double processor_seconds() {
    timespec spent;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &spent);
    return spent.tv_sec + spent.tv_nsec * 1e-9;
}

double time(const task &work, long calls) {
    for (long i = 0; i < untimed_calls; ++i)
        work();
    const double start = processor_seconds();
    for (long i = 0; i < calls; ++i)
        work();
    return processor_seconds() - start;
}

void calibrate(contestant &contestant, double seconds) {
    for (;;) {
        const double taken = contestant.time(contestant.calls);
        if (taken >= seconds)
            return;
        // A fifth more than the proportion says, but never a wild guess from a short run.
        const double factor = std::clamp(1.2 * seconds / taken, 1.2, 100.0);
        contestant.calls = long(contestant.calls * factor) + 1;
    }
}

void round(std::vector<contestant> &contestants) {
    const std::size_t count = contestants.size(), first = contestants.front().seconds.size();
    for (std::size_t i = first; i < first + count; ++i) {
        contestant &next = contestants[i % count];
        next.seconds.push_back(next.time(next.calls) / next.calls);
    }
}

double geometric_mean(const std::vector<double> &values) {
    double logarithms = 0;
    for (double value : values)
        logarithms += std::log(value);
    return std::exp(logarithms / double(values.size()));
}

double paired_ratio(const contestant &a, const contestant &b) {
    std::vector<double> quotients(a.seconds.size());
    std::transform(a.seconds.begin(), a.seconds.end(), b.seconds.begin(), quotients.begin(),
                   std::divides<>());
    return median(quotients);
}

} // namespace lumalane::bench
