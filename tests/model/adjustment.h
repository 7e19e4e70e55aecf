// The adjustment of one sample, and the state that it takes its gains and offsets from.
#pragma once

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

std::uint8_t adjust(std::uint8_t sample, adjustment by);

} // namespace model
