// What the fuzz targets share: choices out of the fuzzer's bytes, memory in which not a byte more than
// is given can be touched, and how a finding is told.
//
// Each file of this directory is a target of libFuzzer: it makes calls out of bytes and aborts where
// one does what it should not. scripts/fuzz builds and runs them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "tests/differential/random.h"

namespace fuzz {

// What is being done, for a fault. Set before each call.
extern std::string doing;

[[noreturn]] void report(const std::string &what);

inline void expect(bool true_of_it, const char *what) {
    if (!true_of_it)
        report(std::string("not so: ") + what);
}

// The first bytes seed the generator of contents, the others choose.
inline differential::random choices_of(const std::uint8_t *data, std::size_t size) {
    std::uint64_t seed = 0;
    const std::size_t count = size < 2 ? size : 2;
    for (std::size_t i = 0; i < count; ++i)
        seed = seed << 8 | data[i];
    return differential::random(seed, std::span(data, size).subspan(count));
}

} // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);
