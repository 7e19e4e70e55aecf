// The kernels of one lane set, declared in its namespace: one per line of exports.inc.
#pragma once

#include "frame/signatures.h"

namespace lumalane::LUMALANE_LANES {

#define LUMALANE_EXPORT(signature, name) void name(LUMALANE_PARAMETERS_##signature);
#include "frame/exports.inc"
#undef LUMALANE_EXPORT

} // namespace lumalane::LUMALANE_LANES
