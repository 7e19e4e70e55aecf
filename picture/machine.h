// What the functions of one call work with.
#pragma once

#include "rows/rows.h"

namespace lumalane {

struct machine {
    const row_kernels &rows;
    unsigned last_level_cache_bytes; // 0: unknown
    bool in_order; // for tests: take every loop in the promised order, whether or not that shows
};

} // namespace lumalane
