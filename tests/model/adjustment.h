// The adjustment of one sample, and the state that it takes its gains and offsets from.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace model {

struct adjustment {
    std::int16_t gain;
    std::int16_t offset;
};

// What get_contrast_data() of the model set last; zero before.
struct adjustment_state {
    std::int16_t luma_gain;
    std::int16_t chroma_gain;
    std::int16_t luma_offset;
    std::int16_t u_offset;
    std::int16_t v_offset;

    adjustment luma() const { return {luma_gain, luma_offset}; }
    adjustment u() const { return {chroma_gain, u_offset}; }
    adjustment v() const { return {chroma_gain, v_offset}; }
};
const adjustment_state &state();

// What a function does to each sample that it reads: it adjusts it, or takes it as it is.
using treatment = std::uint8_t(std::uint8_t sample, adjustment by);
treatment adjust;
treatment as_it_is;

template <std::size_t count>
std::array<std::uint8_t, count> treat(treatment *treated, std::array<std::uint8_t, count> samples,
                                      adjustment by) {
    for (std::uint8_t &sample : samples)
        sample = treated(sample, by);
    return samples;
}

} // namespace model
