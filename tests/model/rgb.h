// From Y, U and V to R, G and B, and from there to the bytes of a pixel.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "tests/model/memory.h"
#include <lumalane.h>

namespace model {

struct rgb {
    std::uint8_t r, g, b;
};

rgb to_rgb(std::uint8_t y, std::uint8_t u, std::uint8_t v);

// The bytes of one pixel in memory order.
std::array<std::uint8_t, 4> pack_rgb32(rgb pixel);
std::array<std::uint8_t, 3> pack_rgb24(rgb pixel);
std::array<std::uint8_t, 2> pack_rgb16(rgb pixel, unsigned layout);

// The layout that the record asks for; nothing if pack_rgb16() does not know it.
std::optional<unsigned> read_rgb16_layout(memory &, const tag_ajust_contrast_info &);

// The bytes of a run of pixels; each pair of them shares its U and V. `pack` makes those of one.
template <class Pack, std::size_t pixels>
auto pack_run(Pack pack, const std::array<std::uint8_t, pixels> &y,
              const std::array<std::uint8_t, pixels / 2> &u,
              const std::array<std::uint8_t, pixels / 2> &v) {
    constexpr std::size_t pixel_bytes = std::tuple_size_v<decltype(pack(rgb{}))>;
    std::array<std::uint8_t, pixels * pixel_bytes> packed;
    auto next = packed.begin();
    for (std::size_t i = 0; i < pixels; ++i)
        for (const std::uint8_t byte : pack(to_rgb(y[i], u[i / 2], v[i / 2])))
            *next++ = byte;
    return packed;
}

} // namespace model
