// What the boundary has to know of the lane set in force.
#pragma once

namespace lumalane {

// True if its kernels work with 256-bit registers, whose upper halves slow down older code that
// finds them in use.
bool wide_registers_in_use();

} // namespace lumalane
