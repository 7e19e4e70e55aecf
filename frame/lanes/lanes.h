// The vocabulary of the arithmetic, for the lane set that this file is being compiled for.
//
// The build compiles every kernel file once per lane set, with LUMALANE_LANES defined as the set's
// name, which is also the namespace of everything in it. A set defines the same types and
// operations under the same names; portable.h is their plain definition.
//
// Nothing in such a file may come from the standard library: an inline function compiled for a wide
// set could be the copy that the linker keeps for all.
#pragma once

#define LUMALANE_INLINE [[gnu::always_inline]] inline
#define LUMALANE_INLINE_LAMBDA __attribute__((always_inline)) // after the parameters

#define LUMALANE_QUOTE(name) #name
#define LUMALANE_LANES_HEADER(set) LUMALANE_QUOTE(set.h)
#include LUMALANE_LANES_HEADER(LUMALANE_LANES)

namespace lumalane::LUMALANE_LANES {

// x86 has 16 vector registers with 64 bits and 8 with 32 bits.
inline constexpr int vector_registers = sizeof(void *) == 8 ? 16 : 8;

} // namespace lumalane::LUMALANE_LANES
