// The table of the row kernels of one target.
#include "rows/kernels.h"
#include "rows/row.h"

namespace lumalane::LUMALANE_TARGET_NAME {

#define LUMALANE_QUOTED(name) #name
#define LUMALANE_STRING(name) LUMALANE_QUOTED(name)

extern constinit const row_kernels kernels;
constinit const row_kernels kernels = {
    LUMALANE_STRING(LUMALANE_TARGET_NAME),
    widest,
    vector_registers,
    streamed_bytes<widest>,
    filters_pairs,
#define LUMALANE_ROW_KERNEL(kind, name, ...) name,
#include "rows/rows.inc"
#undef LUMALANE_ROW_KERNEL
};

} // namespace lumalane::LUMALANE_TARGET_NAME
