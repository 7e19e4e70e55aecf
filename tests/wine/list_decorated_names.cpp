// Prints the names that the DLL has to export, one a line: list_decorated_names x86|x64
#include <cstdio>
#include <cstring>

#include "tests/wine/decoration.h"

int main(int argc, char **argv) {
    const bool wide = argc == 2 && std::strcmp(argv[1], "x64") == 0;
    if (!wide && (argc != 2 || std::strcmp(argv[1], "x86") != 0)) {
        std::fprintf(stderr, "usage: %s x86|x64\n", argv[0]);
        return 2;
    }
#define LUMALANE_EXPORT(signature, name)                                                           \
    std::puts(wide ? LUMALANE_DECORATED_NAME("PEA", signature, name)                               \
                   : LUMALANE_DECORATED_NAME("PA", signature, name));
#include "frame/exports.inc"
#undef LUMALANE_EXPORT
}
