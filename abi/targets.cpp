#include "abi/targets.h"
#include "abi/cpu.h"

namespace lumalane {

#define LUMALANE_TARGET(name, ...)                                                                 \
    namespace name {                                                                               \
    extern constinit const row_kernels kernels;                                                    \
    }
#include "targets_built.inc"
#undef LUMALANE_TARGET

namespace {

constinit const target all[] = {
#define LUMALANE_TARGET(name, processors, baseline, flags, runs_here, leave_clean)                 \
    {#name, name::kernels, runs_here, leave_clean},
#include "targets_built.inc"
#undef LUMALANE_TARGET
};

// The narrowest needs no question: the library is built for processors that run it.
const target &widest_that_runs() {
    const target *widest = targets().end() - 1;
    while (widest != all && !widest->runs_here())
        --widest;
    return *widest;
}

// Null until the first call. Two threads that race both find the same one.
const target *chosen;

// ~0 until asked.
unsigned cache_bytes = ~0u;

unsigned last_level_cache_bytes() {
    unsigned bytes = __atomic_load_n(&cache_bytes, __ATOMIC_RELAXED);
    if (bytes == ~0u) {
        bytes = ask_for_last_level_cache_bytes();
        __atomic_store_n(&cache_bytes, bytes, __ATOMIC_RELAXED);
    }
    return bytes;
}

bool in_order = false;

} // namespace

target_list targets() { return {all, all + sizeof all / sizeof *all}; }

const target &current_target() {
    const target *target = __atomic_load_n(&chosen, __ATOMIC_RELAXED);
    if (!target) {
        target = &widest_that_runs();
        __atomic_store_n(&chosen, target, __ATOMIC_RELAXED);
    }
    return *target;
}

machine machine_of(const target &target) {
    return {target.rows, last_level_cache_bytes(), __atomic_load_n(&in_order, __ATOMIC_RELAXED)};
}

void assume_last_level_cache(unsigned bytes) {
    __atomic_store_n(&cache_bytes, bytes, __ATOMIC_RELAXED);
}

void force_in_order(bool forced) { __atomic_store_n(&in_order, forced, __ATOMIC_RELAXED); }

void force(const target &target) { __atomic_store_n(&chosen, &target, __ATOMIC_RELAXED); }

} // namespace lumalane
