#include "tests/model/blend.h"

#include "tests/model/lanes.h"

namespace model {

std::uint8_t blend(std::uint8_t video, std::uint8_t sub, std::uint8_t alpha) {
    const std::int16_t weight = std::min<std::int16_t>(alpha, 16);
    const std::int16_t rest = low16(16 - weight);
    const std::int16_t sum = add_saturate(multiply_low(video, rest), multiply_low(sub, weight));
    return narrow_saturate(shift_right_logical(sum, 4));
}

} // namespace model
