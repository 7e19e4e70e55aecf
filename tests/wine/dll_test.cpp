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
#include "tests/stretched_plane.h"

// The names under which the 32-bit library for Windows exports its functions.
namespace decoration {
#define LUMALANE_DECORATION(signature, linux_, windows_32, windows_64)                             \
    constexpr char signature[] = windows_32;
#include "abi/decorations.inc"
#undef LUMALANE_DECORATION
} // namespace decoration

namespace {

// Says so on standard error if the DLL has no such function.
template <class Function>
bool look_up(HMODULE dll, const std::string &name, const char *signature, Function *&function) {
    const std::string decorated = "?" + name + "@@YAX" + signature + "@Z";
    function = reinterpret_cast<Function *>(
        reinterpret_cast<void *>(GetProcAddress(dll, decorated.c_str())));
    if (!function)
        std::fprintf(stderr, "not exported: %s\n", decorated.c_str());
    return function;
}

// Loads the DLL and unloads it so often, calling it each time. Its one state is new then: before it
// is set, every adjusted sample is 0.
bool load_and_unload(unsigned times) {
    for (unsigned i = 0; i < times; ++i) {
        const HMODULE dll = LoadLibraryA("lumalane.dll");
        void (*stretch)(LUMALANE_PARAMETERS_plane_stretch_ajust);
        void (*set)(LUMALANE_PARAMETERS_parameters);
        if (!dll ||
            !look_up(dll, "strech_pic_1X2_adjust", decoration::plane_stretch_ajust, stretch) ||
            !look_up(dll, "get_contrast_data", decoration::parameters, set))
            return false;
        const bool unset = tests::stretches_to(0, stretch);
        contrast_data unchanged{64, 64, 0, 0, 0, 0, 0, 0};
        set(&unchanged);
        if (!unset || !tests::stretches_to(77, stretch) || !FreeLibrary(dll) ||
            GetModuleHandleA("lumalane.dll")) {
            std::fprintf(stderr, "lumalane.dll is not new when it is loaded for the %u. time\n", i);
            return false;
        }
    }
    return true;
}

} // namespace

int main(int argc, char **argv) {
    differential::options options;
    if (!differential::parse(argc, argv, options))
        return 2;
    std::printf("seed %llu\n", static_cast<unsigned long long>(options.seed));

    constexpr unsigned loads = 1000;
    if (!load_and_unload(loads))
        return 1;
    std::printf("figure: loads-windows %u\n", loads);

    const HMODULE dll = LoadLibraryA("lumalane.dll");
    if (!dll) {
        std::fprintf(stderr, "lumalane.dll does not load: error %lu\n", GetLastError());
        return 1;
    }
    tests::function_table exported{};
    bool complete = true;
#define LUMALANE_EXPORT(signature, name)                                                           \
    complete &= look_up(dll, #name, decoration::signature, exported.name);
#include "abi/exports.inc"
#undef LUMALANE_EXPORT
    if (!complete)
        return 1;

    const auto callers = boundary::hostile_callers(exported);
    unsigned long long bytes = 0;
    for (const differential::subject &subject : differential::subjects()) {
        const differential::outcome result = differential::run(subject, callers, options);
        std::printf("%s: %u cases (%u redrawn)\n", subject.name, result.cases, result.redrawn);
        bytes += result.bytes;
        for (const std::string &failure : {result.failure, boundary::calls_so_far().complaint})
            if (!failure.empty()) {
                std::fprintf(stderr, "%s\n", failure.c_str());
                return 1;
            }
    }
    std::printf("figure: dll-calls %llu\nfigure: dll-bytes %llu\n", boundary::calls_so_far().calls,
                bytes);
    std::printf("%llu checks\n", boundary::calls_so_far().calls);
}
