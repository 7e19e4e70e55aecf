#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "tests/differential/differential.h"

namespace differential {

bool parse(int argc, char **argv, options &o) {
    for (int i = 1; i < argc; ++i) {
        const std::string_view flag = argv[i];
        char *end = nullptr;
        const unsigned long long value = i + 1 < argc ? std::strtoull(argv[++i], &end, 10) : 0;
        const bool number = end && *end == '\0' && end != argv[i];
        if (number && flag == "--seed") {
            o.seed = value;
        } else if (number && flag == "--first") {
            o.first = static_cast<unsigned>(value);
        } else if (number && flag == "--cases") {
            o.cases = static_cast<unsigned>(value);
        } else {
            std::fprintf(stderr, "%s: unexpected %s (flags: --seed N, --first N, --cases N)\n",
                         argv[0], flag.data());
            return false;
        }
    }
    return true;
}

} // namespace differential
