#include "tests/model/rgb.h"

#include "tests/model/lanes.h"

namespace model {

rgb to_rgb(std::uint8_t luma, std::uint8_t cb, std::uint8_t cr) {
    const std::int16_t y = subtract_saturate(luma, 16);
    const std::int16_t u = subtract_saturate(cb, 128);
    const std::int16_t v = subtract_saturate(cr, 128);

    const std::int16_t v_to_r = multiply_high(shift_left(v, 2), 26149);
    const std::int16_t u_to_g = multiply_high(u, 25625);
    const std::int16_t v_to_g = multiply_high(shift_left(v, 1), 26641);
    const std::int16_t u_to_b = multiply_high(shift_left(u, 3), 16532);
    const std::int16_t y_term = multiply_high(shift_left(y, 2), 19071);

    return {
        .r = narrow_saturate(add_saturate(y_term, v_to_r)),
        .g = narrow_saturate(subtract_saturate(subtract_saturate(y_term, u_to_g), v_to_g)),
        .b = narrow_saturate(add_saturate(y_term, u_to_b)),
    };
}

std::array<std::uint8_t, 4> pack_rgb32(rgb pixel) { return {pixel.b, pixel.g, pixel.r, 0}; }

std::array<std::uint8_t, 3> pack_rgb24(rgb pixel) { return {pixel.b, pixel.g, pixel.r}; }

std::array<std::uint8_t, 2> pack_rgb16(rgb pixel, unsigned layout) {
    // The upper `bits` bits of a channel, the lowest of them at bit `at` of the word.
    const auto place = [](std::uint8_t channel, int bits, int at) {
        return (channel >> (8 - bits)) << at;
    };
    int word = 0;
    switch (layout) {
    case 0:
        word = place(pixel.r, 5, 11) | place(pixel.g, 6, 5) | place(pixel.b, 5, 0);
        break;
    case 1:
        word = place(pixel.r, 5, 11) | place(pixel.g, 5, 6) | place(pixel.b, 5, 1);
        break;
    case 2:
        word = place(pixel.r, 6, 10) | place(pixel.g, 6, 4) | place(pixel.b, 4, 0);
        break;
    case 3:
        word = place(pixel.r, 6, 10) | place(pixel.g, 5, 5) | place(pixel.b, 5, 0);
        break;
    }
    return {static_cast<std::uint8_t>(word), static_cast<std::uint8_t>(word >> 8)};
}

std::optional<unsigned> read_rgb16_layout(memory &m, const tag_ajust_contrast_info &info) {
    const unsigned layout = m.field(info.rgb16_layout);
    if (layout > 3)
        return std::nullopt;
    return layout;
}

} // namespace model
