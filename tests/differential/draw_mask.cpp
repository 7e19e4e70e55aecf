#include <algorithm>

#include "tests/differential/draw.h"

namespace differential {

namespace {

// Runs of the marker between runs of anything.
std::vector<std::uint8_t> draw_row(random &r, int groups, std::uint8_t marker) {
    std::vector<std::uint8_t> drawn;
    bool marked = r.one_in(2);
    for (int i = 0; i < 16 * groups; ++i) {
        if (r.one_in(12))
            marked = !marked;
        drawn.push_back(marked ? marker : static_cast<std::uint8_t>(r.next()));
    }
    return drawn;
}

} // namespace

drawn_call draw_mask(random &r, const char *name,
                     void (*on_model)(model::memory &, LUMALANE_PARAMETERS_mask),
                     void (*tests::function_table::*function)(LUMALANE_PARAMETERS_mask)) {
    drawn_call drawn;
    drawn.contrast = draw_contrast(r);
    shape s;
    do
        s = draw_shape(r, name);
    while (s.height < 1); // 0 runs around the 32-bit range
    const auto mask_value = static_cast<unsigned>(r.next());
    const auto key_value = static_cast<unsigned>(r.next());

    const spot mask{drawn.add({"mask"}), draw_offset(r)};
    const int groups = std::max(1, (s.width + 15) / 16);
    for (int row = 0; row < s.height; ++row)
        drawn.buffers[mask.buffer].patches.push_back(
            {mask.offset + row * (16 * groups - s.width + s.dst_pitch),
             draw_row(r, groups, static_cast<std::uint8_t>(mask_value))});
    const bool shared = r.one_in(8);
    const spot dst = shared ? spot{mask.buffer, mask.offset + r.between(-64, 64)}
                            : spot{drawn.add({"dst"}), draw_offset(r)};
    drawn.call(on_model, function, [=](const placement &at) {
        return std::tuple(at.at(dst), at.at(mask), mask_value, key_value, s.width, s.dst_pitch,
                          s.height);
    });

    drawn.tell("dst", dst);
    drawn.tell("mask", mask);
    drawn.tell_bits("mask_value", mask_value);
    drawn.tell_bits("key_value", key_value);
    drawn.tell("width", s.width);
    drawn.tell("pitch", s.dst_pitch);
    drawn.tell("height", s.height);
    return drawn;
}

} // namespace differential
