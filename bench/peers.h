// The same conversions by other libraries.
#pragma once

#include "bench/contest.h"
#include "bench/scene.h"

#include <string>

namespace lumalane::bench {

struct peer {
    const char *library;
    const char *way;               // its name for the conversion
    task (*prepare)(scene &scene); // the scene outlives the task
};

extern const peer libyuv_argb, libyuv_rgb24, libyuv_rgb565;
extern const peer swscale_bgra, swscale_bgr24, swscale_rgb565;

std::string peer_versions();

} // namespace lumalane::bench
