// The functions that exist, as one table of pointers: what the tests call through.
#pragma once

#include "abi/signatures.h"

namespace tests {

struct function_table {
    const char *name; // of who runs them
#define LUMALANE_EXPORT(signature, name) void (*name)(LUMALANE_PARAMETERS_##signature);
#include "abi/exports.inc"
#undef LUMALANE_EXPORT
};

} // namespace tests
