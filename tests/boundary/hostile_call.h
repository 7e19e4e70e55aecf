// Calls functions as badly as a caller of the library may, and sees what they leave behind. On 32-bit
// x86 the stack is aligned to 4 bytes and no more, and every MMX register in use; with 64 bits every
// register that a call must keep; and modes are not what programs begin with.
#pragma once

#include <string>
#include <vector>

#include "tests/differential/differential.h"

namespace boundary {

// How arguments are passed, and what a call must keep.
enum class convention {
    of_this_platform,
    of_windows, // of 64 bits, called from Linux
};

// Targets that call `functions` in this way: on 32-bit x86 one for each place, 0, 4, 8 and 12 bytes
// above a multiple of 16, where the caller's stack may stand. The functions are those of the latest
// call.
std::vector<differential::target> hostile_callers(const tests::function_table &functions,
                                                  convention = convention::of_this_platform);

// What came of all calls made.
struct report {
    unsigned long long calls = 0;
    std::string complaint; // the first thing that a function left in disorder; empty if none did
};
const report &calls_so_far();

} // namespace boundary
