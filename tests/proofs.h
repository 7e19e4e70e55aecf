// How much of what tests prove over all inputs they are to prove here, by the environment:
//
//     LUMALANE_PROOFS=some   a part, where the same has been proven on another build, or takes long
//     (not set)              all that takes seconds
//     LUMALANE_PROOFS=all    what takes minutes, too (scripts/test --exhaustive)
#pragma once

#include <cstdlib>
#include <string_view>

namespace tests {

enum class proofs { some, most, all };

inline proofs wanted_proofs() {
    const char *const told = std::getenv("LUMALANE_PROOFS");
    const std::string_view wanted = told ? told : "";
    return wanted == "some" ? proofs::some : wanted == "all" ? proofs::all : proofs::most;
}

} // namespace tests
