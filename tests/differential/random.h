// Random numbers that are the same on every platform, so that a seed reproduces a case anywhere.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>

namespace differential {

class random {
public:
    explicit random(std::uint64_t seed) : state(seed) {}

    // What is chosen is told by these bytes, each by as few of them as can tell it, and at random once
    // they are used up.
    random(std::uint64_t seed, std::span<const std::uint8_t> choices_)
        : state(seed), choices(choices_) {}

    std::uint64_t next() { // splitmix64
        std::uint64_t z = state += 0x9e3779b97f4a7c15;
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9;
        z = (z ^ (z >> 27)) * 0x94d049bb133111eb;
        return z ^ (z >> 31);
    }

    // Both ends are drawn.
    int between(int low, int high) {
        return low + static_cast<int>(below(static_cast<std::uint64_t>(high) - low + 1));
    }
    bool one_in(int count) { return between(1, count) == 1; }
    int one_of(std::initializer_list<int> of) { return of.begin()[below(of.size())]; }

private:
    std::uint64_t below(std::uint64_t count) {
        if (choices.empty())
            return next() % count;
        std::uint64_t told = 0;
        for (std::uint64_t numbers = 1; numbers < count && !choices.empty(); numbers <<= 8) {
            told = told << 8 | choices.front();
            choices = choices.subspan(1);
        }
        return told % count;
    }

    std::uint64_t state;
    std::span<const std::uint8_t> choices;
};

} // namespace differential
