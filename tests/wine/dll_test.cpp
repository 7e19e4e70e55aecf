// Drives the library for Windows as a program would: loads the DLL that lies beside this program,
// looks its functions up by their decorated names, and compares them with their models, with the
// caller's stack at every alignment that it may have.
//
// Ends with a line that tells how many checks were made, for a Wine that runs nothing at all.
#include <windows.h>

#include <cstdio>
#include <string>

#include "tests/boundary/hostile_call.h"
#include "tests/differential/differential.h"
#include "tests/wine/decoration.h"

namespace {

// Says so on standard error if the DLL has no such function.
template <class Function>
bool look_up(HMODULE dll, const char *decorated_name, Function *&function) {
    function =
        reinterpret_cast<Function *>(reinterpret_cast<void *>(GetProcAddress(dll, decorated_name)));
    if (!function)
        std::fprintf(stderr, "not exported: %s\n", decorated_name);
    return function;
}

} // namespace

int main(int argc, char **argv) {
    differential::options options;
    if (!differential::parse(argc, argv, options))
        return 2;
    std::printf("seed %llu\n", static_cast<unsigned long long>(options.seed));

    const HMODULE dll = LoadLibraryA("lumalane.dll");
    if (!dll) {
        std::fprintf(stderr, "lumalane.dll does not load: error %lu\n", GetLastError());
        return 1;
    }
    tests::function_table exported{};
    bool complete = true;
#define LUMALANE_EXPORT(signature, name)                                                           \
    complete &= look_up(dll, LUMALANE_DECORATED_NAME(signature, name), exported.name);
#include "abi/exports.inc"
#undef LUMALANE_EXPORT
    if (!complete)
        return 1;

    const auto callers = boundary::hostile_callers(exported);
    for (const differential::subject &subject : differential::subjects()) {
        const differential::outcome result = differential::run(subject, callers, options);
        std::printf("%s: %u cases (%u redrawn)\n", subject.name, result.cases, result.redrawn);
        for (const std::string &failure : {result.failure, boundary::calls_so_far().complaint})
            if (!failure.empty()) {
                std::fprintf(stderr, "%s\n", failure.c_str());
                return 1;
            }
    }
    std::printf("%llu checks\n", boundary::calls_so_far().calls);
}
