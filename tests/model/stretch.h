// What the stretches share beyond the average: twice the width.
#pragma once

#include "tests/model/samples.h"

namespace model {

// Each sample, and the average of it and the one after it. `next` comes after the last.
template <std::size_t count>
samples<2 * count> doubled(const samples<count> &x, std::uint8_t next) {
    samples<2 * count> wide;
    for (std::size_t i = 0; i < count; ++i) {
        wide[2 * i] = x[i];
        wide[2 * i + 1] = average(x[i], i + 1 < count ? x[i + 1] : next);
    }
    return wide;
}

// At the right edge the last sample is repeated.
template <std::size_t count>
samples<2 * count> doubled_at_edge(const samples<count> &x) {
    return doubled(x, x.back());
}

} // namespace model
