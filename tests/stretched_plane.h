// One call by which it shows which adjustment a library has.
#pragma once

#include <algorithm>
#include <cstring>
#include <iterator>

#include "abi/signatures.h"

namespace tests {

// Whether every sample of a plane of 77 is stretched to `sample`.
inline bool stretches_to(int sample, void (*stretch)(LUMALANE_PARAMETERS_plane_stretch_ajust)) {
    constexpr int width = 16, height = 4;
    unsigned char plane[width * height], stretched[2 * width * height];
    std::memset(plane, 77, sizeof plane);
    std::memset(stretched, 1, sizeof stretched);
    stretch(plane, stretched, width, height, width, width, nullptr, 1);
    return std::count(std::begin(stretched), std::end(stretched), sample) == 2 * width * height;
}

} // namespace tests
