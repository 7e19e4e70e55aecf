#include "examples/player/target.h"

#include "abi/targets.h"

#include <algorithm>
#include <iterator>

namespace player {
namespace {

std::vector<const lumalane::target *> targets_that_run() {
    std::vector<const lumalane::target *> found;
    for (const lumalane::target &target : lumalane::targets())
        if (target.runs_here())
            found.push_back(&target);
    return found;
}

} // namespace

std::vector<std::string> target_names() {
    std::vector<std::string> names;
    for (const lumalane::target *target : targets_that_run())
        names.emplace_back(target->name);
    return names;
}

const char *target_name() { return lumalane::current_target().name; }

void choose_target(std::string_view name) {
    for (const lumalane::target *target : targets_that_run())
        if (target->name == name)
            lumalane::force(*target);
}

void choose_next_target() {
    const auto all = targets_that_run();
    const auto present = std::ranges::find(all, &lumalane::current_target());
    lumalane::force(std::next(present) == all.end() ? *all.front() : **std::next(present));
}

} // namespace player
