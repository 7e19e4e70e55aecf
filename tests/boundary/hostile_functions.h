// The exported functions, each called through the `call` of the file that includes this.
#pragma once

#include "tests/boundary/hostile_call.h"

namespace {

tests::function_table called;
boundary::report so_far;

// The first complaint stays.
void complain(const char *function, const std::string &what) {
    if (so_far.complaint.empty())
        so_far.complaint = std::string(function) + " " + what;
}

template <class Function, class... Arguments>
void call(const char *name, Function function, Arguments... arguments);

namespace hostile {
#define LUMALANE_EXPORT(signature, name)                                                           \
    void name(LUMALANE_PARAMETERS_##signature) {                                                   \
        call(#name, called.name, LUMALANE_ARGUMENTS_##signature);                                  \
    }
#include "abi/exports.inc"
#undef LUMALANE_EXPORT
} // namespace hostile

tests::function_table calling(const char *target) {
    return {
        target,
#define LUMALANE_EXPORT(signature, name) hostile::name,
#include "abi/exports.inc"
#undef LUMALANE_EXPORT
    };
}

} // namespace

const boundary::report &boundary::calls_so_far() { return so_far; }
