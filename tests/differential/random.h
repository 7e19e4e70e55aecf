// Random numbers that are the same on every platform, so that a seed reproduces a case anywhere.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>

namespace differential {

class random {
public:
    explicit random(std::uint64_t seed) : state(seed) {}

    std::uint64_t next() { // splitmix64
        std::uint64_t z = state += 0x9e3779b97f4a7c15;
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9;
        z = (z ^ (z >> 27)) * 0x94d049bb133111eb;
        return z ^ (z >> 31);
    }

    // Both ends are drawn.
    int between(int low, int high) {
        return low + static_cast<int>(next() % (static_cast<std::uint64_t>(high) - low + 1));
    }
    bool one_in(int count) { return between(1, count) == 1; }
    int one_of(std::initializer_list<int> choices) {
        return choices.begin()[next() % choices.size()];
    }

private:
    std::uint64_t state;
};

} // namespace differential
