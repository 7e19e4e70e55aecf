#include "examples/player/adjustment.h"

#include <lumalane.h>

namespace player {
namespace {

// The library's gains are in 1/64. Up to a gain of 256, 400 %, no product wraps: 255 * 256 < 65504.
int gain(int percent) { return (percent * 64 + 50) / 100; }

// A gain multiplies the whole sample and so moves the middle of the range, 128, to 2 * gain; this
// offset brings it back. For chroma that is a must: 128 stands for no colour, and any other middle
// would tint the picture. For luma it makes contrast pivot around middle grey, so that dark parts
// become darker as bright parts become brighter.
int recentre(int gain) { return 128 - 2 * gain; }

} // namespace

void adjustment::apply(bool one_gain) const {
    contrast_data data{};
    data.y_gain = gain(contrast);
    data.uv_gain = gain(saturation);
    data.y_offset = recentre(data.y_gain);
    data.y_offset_extra = brightness;
    data.u_offset = data.v_offset = recentre(one_gain ? data.y_gain : data.uv_gain);
    get_contrast_data(&data);
}

} // namespace player
