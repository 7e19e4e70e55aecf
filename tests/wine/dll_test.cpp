// Drives the library for Windows as a program would: loads the DLL that lies beside this program,
// looks its functions up by their decorated names, and compares them with their models, with the
// caller's stack at every alignment that it may have.
//
// Ends with a line that tells how many checks were made, for a Wine that runs nothing at all.
#include <windows.h>

#include <cstdio>
#include <cstring>
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

// Loads the DLL and unloads it so often, calling it each time. Its one state is new then: before it
// is set, every adjusted sample is 0.
bool load_and_unload(unsigned times) {
    for (unsigned i = 0; i < times; ++i) {
        const HMODULE dll = LoadLibraryA("lumalane.dll");
        void (*stretch)(LUMALANE_PARAMETERS_plane_stretch_ajust);
        void (*set)(LUMALANE_PARAMETERS_parameters);
        if (!dll ||
            !look_up(dll, LUMALANE_DECORATED_NAME(plane_stretch_ajust, strech_pic_1X2_adjust),
                     stretch) ||
            !look_up(dll, LUMALANE_DECORATED_NAME(parameters, get_contrast_data), set))
            return false;
        constexpr int width = 16, height = 4;
        unsigned char plane[width * height], stretched[2 * width * height];
        std::memset(plane, 77, sizeof plane);
        std::memset(stretched, 1, sizeof stretched);
        stretch(plane, stretched, width, height, width, width, nullptr, 1);
        const bool unset = stretched[0] == 0 && stretched[2 * width * height - 1] == 0;
        contrast_data unchanged{64, 64, 0, 0, 0, 0, 0, 0};
        set(&unchanged);
        stretch(plane, stretched, width, height, width, width, nullptr, 1);
        if (!unset || stretched[0] != 77 || !FreeLibrary(dll) || GetModuleHandleA("lumalane.dll")) {
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
    complete &= look_up(dll, LUMALANE_DECORATED_NAME(signature, name), exported.name);
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
