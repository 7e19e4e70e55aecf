// Whether a picture comes out the same in slices, each with pointers moved to its first row.
#pragma once

#include "docs/pictures/calls.h"

namespace pictures {

bool same_in_slices(const lumalane::picture_function &);
bool same_in_slices(const lumalane::mix_function &);
bool same_in_slices(const lumalane::key_fill_function &);
bool same_in_slices(const lumalane::mask_function &);
bool same_in_slices(const lumalane::packed_stretch_function &);
bool same_in_slices(const lumalane::plane_stretch_function &);
bool same_in_slices(const lumalane::frame_stretch_function &);

} // namespace pictures
