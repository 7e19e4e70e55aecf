#include "tests/companion/machine.h"

#include <cstdlib>

#include "tests/targets.h"

namespace companion {

std::vector<std::string> runnable_targets() {
    std::vector<std::string> names;
    for (const lumalane::target *target : tests::runnable_targets())
        names.emplace_back(target->name);
    return names;
}

void force_target(const std::string &name) {
    for (const lumalane::target *target : tests::runnable_targets())
        if (name == target->name)
            return lumalane::force(*target);
    std::abort();
}

void store_around_cache(bool around) { lumalane::assume_last_level_cache(around ? 1 : 0); }

} // namespace companion
