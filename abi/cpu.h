// What is known of the processor: one cpu_<family>.cpp answers.
#pragma once

namespace lumalane {

// The predicates and the ways to leave that abi/targets.inc names.
#define LUMALANE_TARGET(name, processors, baseline, flags, runs_here, leave_clean)                 \
    bool runs_here();                                                                              \
    void leave_clean();
#include "targets_built.inc"
#undef LUMALANE_TARGET

// Size in bytes of the last-level cache; 0 where the processor does not tell.
unsigned ask_for_last_level_cache_bytes();

} // namespace lumalane
