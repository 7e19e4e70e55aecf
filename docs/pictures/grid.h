// The bytes of a small call as coloured cells, a row of the buffer to a line.
#pragma once

#include <string>
#include <vector>

#include "docs/pictures/calls.h"

namespace pictures {

struct grid {
    std::string title, svg;
};

/// Makes the call and draws each of its buffers. What is written is what was seen to change; fails
/// where the companion tells something else.
std::vector<grid> grids_of(const call &);

} // namespace pictures
