#include "tests/fuzz/fuzz.h"

#include <cstdio>
#include <cstdlib>

namespace fuzz {

std::string doing;

void report(const std::string &what) {
    std::fprintf(stderr, "%s\n  %s\n", what.c_str(), doing.c_str());
    std::abort();
}

} // namespace fuzz

// The sanitizers call these when they have found something.
extern "C" void __asan_on_error() { std::fprintf(stderr, "while: %s\n", fuzz::doing.c_str()); }
extern "C" void __ubsan_on_report() { std::fprintf(stderr, "while: %s\n", fuzz::doing.c_str()); }
