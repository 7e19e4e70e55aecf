// The DLL for 64-bit Windows at work on Linux:
//
//     dll_image_test DLL [--cases N] [--seed N] [--first N]
//
// Its functions are called by the convention of Windows, with something in every register and mode that
// a call must keep, and compared with their models; and so is the library of this platform, on the same
// calls. Ends with a line that tells how many calls of the DLL were checked.
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include "tests/boundary/hostile_call.h"
#include "tests/dll/image.h"
#include "tests/targets.h"

namespace {

// Its functions under their decorated names, which begin with the plain ones.
tests::function_table functions_of(const dll::image &image) {
    const auto find = [&](auto &function, const std::string &name) {
        const auto found = image.exports.lower_bound("?" + name + "@@");
        if (found == image.exports.end() || found->first.rfind("?" + name + "@@", 0) != 0)
            throw std::runtime_error("not exported: " + name);
        function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(found->second);
    };
    tests::function_table functions{};
    functions.name = "the DLL";
#define LUMALANE_EXPORT(signature, name) find(functions.name, #name);
#include "abi/exports.inc"
#undef LUMALANE_EXPORT
    return functions;
}

#if defined(__x86_64__)
#define WINDOWS_CONVENTION __attribute__((ms_abi))
#else
#define WINDOWS_CONVENTION
#endif
using entry_point = int(WINDOWS_CONVENTION *)(void *, unsigned, void *);
constexpr unsigned process_attach = 1;

int run(int argc, char **argv) {
    if (argc < 2) {
        std::fprintf(stderr, "dll_image_test DLL [--cases N] [--seed N] [--first N]\n");
        return 2;
    }
    differential::options options;
    if (!differential::parse(argc - 1, argv + 1, options))
        return 2;

    const dll::image image(argv[1]);
    if (image.exports.size() != differential::subjects().size())
        throw std::runtime_error("not as many functions as there are");
    if (reinterpret_cast<entry_point>(image.entry)(nullptr, process_attach, nullptr) != 1)
        throw std::runtime_error("the DLL does not want to be loaded");

    std::vector<differential::target> targets =
        boundary::hostile_callers(functions_of(image), boundary::convention::of_windows);
    const lumalane::target &here = lumalane::current_target();
    targets.push_back({tests::exported_functions(here), [] {}});
    unsigned long long bytes = 0;
    for (const differential::subject &subject : differential::subjects()) {
        const differential::outcome result = differential::run(subject, targets, options);
        bytes += result.bytes / targets.size();
        for (const std::string &failure : {result.failure, boundary::calls_so_far().complaint})
            if (!failure.empty()) {
                std::fprintf(stderr, "%s\n", failure.c_str());
                return 1;
            }
        if (result.cases != options.cases)
            throw std::runtime_error(std::string("cases left out: ") + subject.name);
    }
    std::printf("%s: %u addresses moved, %zu functions, as the library for Linux on %s\n", argv[1],
                image.relocations, image.exports.size(), here.name);
    std::printf("figure: dll-calls %llu\nfigure: dll-bytes %llu\n", boundary::calls_so_far().calls,
                bytes);
    std::printf("%llu checks\n", boundary::calls_so_far().calls);
    return 0;
}

} // namespace

int main(int argc, char **argv) {
    try {
        return run(argc, argv);
    } catch (const std::exception &e) {
        std::fprintf(stderr, "dll_image_test: %s: %s\n", argv[1], e.what());
        return 1;
    }
}
