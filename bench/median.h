// The value in the middle; of an even count, the mean of both.
#pragma once

#include <algorithm>
#include <vector>

namespace lumalane::bench {

inline double median(std::vector<double> values) {
    const auto middle = values.begin() + values.size() / 2;
    std::nth_element(values.begin(), middle, values.end());
    return values.size() % 2 ? *middle : (*middle + *std::max_element(values.begin(), middle)) / 2;
}

} // namespace lumalane::bench
