// What calls on 64-bit processors share.
#pragma once

#include <cstdint>
#include <cstring>

#include "tests/boundary/hostile_functions.h"

namespace {

using word = std::uint64_t;

boundary::convention spoken;

// As it lies in a register, the upper half of an int anything.
template <class T>
word as_word(T argument) {
    word bits = 0xabababab'abababab;
    std::memcpy(&bits, &argument, sizeof argument);
    return bits;
}

} // namespace

std::vector<differential::target> boundary::hostile_callers(const tests::function_table &functions,
                                                            convention c) {
    called = functions;
    spoken = c;
    return {{calling("registers in use"), [] {}}};
}
