// From Y, U and V to R, G and B, and from there to the bytes of a pixel.
#pragma once

#include <array>
#include <cstdint>

namespace model {

struct rgb {
    std::uint8_t r, g, b;
};

rgb to_rgb(std::uint8_t y, std::uint8_t u, std::uint8_t v);

// The bytes of one pixel in memory order.
std::array<std::uint8_t, 4> pack_rgb32(rgb pixel);
std::array<std::uint8_t, 3> pack_rgb24(rgb pixel);
std::array<std::uint8_t, 2> pack_rgb16(rgb pixel, unsigned layout);

// pack_rgb16() knows the layouts below this one.
inline constexpr unsigned rgb16_layouts = 4;

} // namespace model
