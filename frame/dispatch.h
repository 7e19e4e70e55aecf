// Which lane set runs. The processor is asked once; the answer is kept in one atomic pointer.
#pragma once

#include "frame/signatures.h"

namespace lumalane {

// The kernels of one lane set, one pointer per exported function.
struct kernel_table {
    const char *name; // "portable", "sse2" or "avx2"
#define LUMALANE_EXPORT(signature, name) void (*name)(LUMALANE_PARAMETERS_##signature);
#include "frame/exports.inc"
#undef LUMALANE_EXPORT
};

enum class lane_set { portable, sse2, avx2 };
inline constexpr lane_set all_lane_sets[] = {lane_set::portable, lane_set::sse2, lane_set::avx2};

// True if this processor (and operating system) can run the set.
bool can_run(lane_set set);

// The table in force: the widest set that the processor runs, unless force() chose another.
const kernel_table &kernels();

// True if its kernels work with 256-bit registers, whose upper halves slow down older code that
// finds them in use.
bool uses_wide_registers(const kernel_table &table);

// For tests, benchmarks and players that link the static library: every later call runs `set`,
// which the processor must be able to run. The shared library does not export it.
void force(lane_set set);

// Size in bytes of the last-level cache; 0 where the processor does not tell.
unsigned last_level_cache_bytes();

// For tests: as if the last-level cache had so many bytes.
void assume_last_level_cache(unsigned bytes);

} // namespace lumalane
