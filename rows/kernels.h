// The row kernels of the target that this file is being compiled for, declared.
#pragma once

#include "rows/rows.h"

namespace lumalane::LUMALANE_TARGET_NAME {

#define LUMALANE_ROW_KERNEL(kind, name, ...) row_kernel::kind name;
#include "rows/rows.inc"
#undef LUMALANE_ROW_KERNEL

} // namespace lumalane::LUMALANE_TARGET_NAME
