// What each function makes of a picture: before and after.
#pragma once

#include <string>
#include <vector>

#include "docs/pictures/calls.h"
#include "docs/pictures/image.h"
#include "docs/pictures/scene.h"

namespace pictures {

struct shown {
    std::string caption;
    image picture;
};

struct scene {
    planar frame;  ///< of the clip
    planar wheel;  ///< for stretches
    subtitle over; ///< for mixes
};

/// The adjustment that all of them have, and how captions tell it.
void set_adjustment_for_pictures();
extern const char *const adjustment_text;

std::vector<shown> show(const lumalane::parameters_function &, const scene &);
std::vector<shown> show(const lumalane::picture_function &, const scene &);
std::vector<shown> show(const lumalane::mix_function &, const scene &);
std::vector<shown> show(const lumalane::key_fill_function &, const scene &);
std::vector<shown> show(const lumalane::mask_function &, const scene &);
std::vector<shown> show(const lumalane::packed_stretch_function &, const scene &);
std::vector<shown> show(const lumalane::plane_stretch_function &, const scene &);
std::vector<shown> show(const lumalane::frame_stretch_function &, const scene &);

} // namespace pictures
