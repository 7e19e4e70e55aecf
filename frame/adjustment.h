// The picture adjustment: the one state of the library.
#pragma once

#include "frame/lumalane.h"

namespace lumalane {

// Gain in 1/64 and offset of one plane.
struct plane_adjustment {
    short gain, offset;

    bool neutral() const { return gain == 64 && offset == 0; }
};

struct adjustment {
    plane_adjustment y, u, v;

    // A neutral adjustment leaves every sample as it is.
    bool neutral() const { return y.neutral() && u.neutral() && v.neutral(); }

    bool gains_within(int low, int high) const {
        return low <= y.gain && y.gain <= high && low <= u.gain && u.gain <= high &&
               low <= v.gain && v.gain <= high;
    }
};

// Takes over what get_contrast_data() was given.
void set_adjustment(const contrast_data &data);

// The values in force, each read once.
adjustment current_adjustment();

} // namespace lumalane
