// Runs of samples.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace model {

template <std::size_t count>
using samples = std::array<std::uint8_t, count>;

// The average of two bytes, rounded up.
inline std::uint8_t average(std::uint8_t a, std::uint8_t b) {
    return static_cast<std::uint8_t>((a + b + 1) >> 1);
}

template <std::size_t count>
samples<count> average(const samples<count> &a, const samples<count> &b) {
    samples<count> between;
    for (std::size_t i = 0; i < count; ++i)
        between[i] = average(a[i], b[i]);
    return between;
}

// A run of pixels; each pair of them has its U and V.
template <std::size_t count>
struct pixels {
    samples<count> y;
    samples<count / 2> u, v;
};

// Every `distance`th sample, from the one at `first` on.
template <std::size_t distance, std::size_t count>
samples<count / distance> every(std::size_t first, const samples<count> &all) {
    samples<count / distance> taken;
    for (std::size_t i = 0; i < taken.size(); ++i)
        taken[i] = all[first + distance * i];
    return taken;
}

} // namespace model
