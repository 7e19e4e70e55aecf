// The 16-bit lane, one at a time.
#pragma once

#include <algorithm>
#include <cstdint>

namespace model {

// The low bits of a result, as a register of that width keeps them.
inline std::int32_t low32(std::int64_t value) { return static_cast<std::int32_t>(value); }
inline std::int16_t low16(std::int32_t value) { return static_cast<std::int16_t>(value); }

inline std::int16_t saturate16(std::int32_t value) {
    return static_cast<std::int16_t>(std::clamp(value, -32768, 32767));
}
inline std::int16_t add_saturate(std::int16_t a, std::int16_t b) { return saturate16(a + b); }
inline std::int16_t subtract_saturate(std::int16_t a, std::int16_t b) { return saturate16(a - b); }

inline std::int16_t shift_left(std::int16_t a, int bits) { return low16(a << bits); }
inline std::int16_t shift_right_logical(std::int16_t a, int bits) {
    return low16(static_cast<std::uint16_t>(a) >> bits);
}

inline std::int16_t multiply_low(std::int16_t a, std::int16_t b) { return low16(a * b); }
inline std::int16_t multiply_high(std::int16_t a, std::int16_t b) { return low16((a * b) >> 16); }

inline std::uint8_t narrow_saturate(std::int16_t a) {
    return static_cast<std::uint8_t>(std::clamp<int>(a, 0, 255));
}

} // namespace model
