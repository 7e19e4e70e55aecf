// A processor of which nothing is known: it runs the portable row kernels.
#include "abi/cpu.h"

namespace lumalane {

bool always() { return true; }

unsigned ask_for_last_level_cache_bytes() { return 0; }

void leave_baseline_clean() {}

} // namespace lumalane
