// How many times as fast several threads are as one, where the memory does not bound the function.
#pragma once

#include "bench/flatness.h"

#include <ostream>
#include <string>
#include <vector>

namespace lumalane::bench {

class scaling {
public:
    // What it costs one thread, and how many times as fast the threads together are.
    void add(const std::string &function, const pixel_cost &one_thread, double times_as_fast);

    // A line per size of what takes its time for arithmetic: how much, geometric mean, least; then
    // what is below `wanted`.
    void print(std::ostream &markdown, double wanted) const;

private:
    struct result {
        std::string picture, function;
        double times_as_fast;
        double share_of_copy;
    };
    std::vector<result> by_arithmetic_{}, by_memory_{};
};

} // namespace lumalane::bench
