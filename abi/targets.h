// Which target runs. That and the size of the cache are found at the first call, and kept in atomics.
#pragma once

#include "picture/machine.h"

namespace lumalane {

// What the row kernels are compiled for, and when and how a call may use it.
struct target {
    const char *name;
    const row_kernels &rows;
    bool (*runs_here)();
    void (*leave_clean)();
};

struct target_list {
    const target *first, *last;

    const target *begin() const { return first; }
    const target *end() const { return last; }
};

// Those that are linked in, the narrowest first.
target_list targets();

// The one in force: the widest that runs here, unless force() chose another.
const target &current_target();

// For tests, benchmarks and players that link the static library: every later call runs on `target`,
// which must run here. The shared library does not export it.
void force(const target &);

// What the functions of one call work with. (A call asks once: what other threads force meanwhile
// is seen by later ones.)
machine machine_of(const target &);

// For tests: as if the last-level cache had so many bytes (0: as if the processor did not tell; ~0u: what
// it tells), and as if the order of the stores could always be observed.
void assume_last_level_cache(unsigned bytes);
void force_in_order(bool);

} // namespace lumalane
