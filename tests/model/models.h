// The plain model of every exported function: its name, its arguments behind the memory it works
// in. Written straight from the description of the function, sample by sample, in the order of
// reads and writes that it promises; it shares nothing with the library but the public header.
#pragma once

#include "abi/signatures.h"
#include "tests/model/memory.h"

namespace model {

#define LUMALANE_EXPORT(signature, name) void name(memory &, LUMALANE_PARAMETERS_##signature);
#include "abi/exports.inc"
#undef LUMALANE_EXPORT

} // namespace model
