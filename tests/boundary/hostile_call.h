// Calls functions as badly as a caller of the 32-bit library may, and sees what they leave behind:
// the stack aligned to 4 bytes and no more, every MMX register in use.
#pragma once

#include <string>
#include <vector>

#include "tests/differential/differential.h"

namespace boundary {

// Targets that call `functions` in this way: one for each place, 0, 4, 8 and 12 bytes above a
// multiple of 16, where the caller's stack may stand. The functions are those of the latest call.
std::vector<differential::target> hostile_callers(const tests::function_table &functions);

// What came of all calls made.
struct report {
    unsigned long long calls = 0;
    std::string complaint; // the first thing that a function left in disorder; empty if none did
};
const report &calls_so_far();

} // namespace boundary
