#include "tests/differential/draw.h"

namespace differential {

drawn_call draw_key_fill(random &r, const char *name,
                         void (*on_model)(model::memory &, LUMALANE_PARAMETERS_key_fill),
                         void (*tests::function_table::*function)(LUMALANE_PARAMETERS_key_fill)) {
    drawn_call drawn;
    drawn.contrast = draw_contrast(r);
    const shape s = draw_shape(r, name);
    const unsigned key = draw_key(r);
    const int reserved = static_cast<int>(r.next());
    const spot surface{drawn.add({"surface"}), draw_offset(r)};
    drawn.call(on_model, function, [=](const placement &at) {
        return std::tuple(key, at.at<void>(surface), s.width, s.height, reserved, s.dst_pitch);
    });

    drawn.tell_bits("key", key);
    drawn.tell("surface", surface);
    drawn.tell("width", s.width);
    drawn.tell("height", s.height);
    drawn.tell("pitch", s.dst_pitch);
    return drawn;
}

} // namespace differential
