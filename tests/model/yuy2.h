// Packed 4:2:2: Y0 U Y1 V for two pixels.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace model {

template <std::size_t pixels>
std::array<std::uint8_t, 2 * pixels> pack_yuy2(const std::array<std::uint8_t, pixels> &y,
                                               const std::array<std::uint8_t, pixels / 2> &u,
                                               const std::array<std::uint8_t, pixels / 2> &v) {
    std::array<std::uint8_t, 2 * pixels> packed;
    for (std::size_t i = 0; i < pixels; ++i) {
        packed[2 * i] = y[i];
        packed[2 * i + 1] = i % 2 == 0 ? u[i / 2] : v[i / 2];
    }
    return packed;
}

} // namespace model
