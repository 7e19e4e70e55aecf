#include "examples/player/lanes.h"

#include "frame/dispatch.h"

#include <algorithm>

namespace player {
namespace {

using lumalane::lane_set;

// A lane set has its name in its table, so it is asked by putting it in force.
std::string_view choose(lane_set set) {
    lumalane::force(set);
    return lumalane::kernels().name;
}

} // namespace

const char *lane_set_name() { return lumalane::kernels().name; }

std::vector<std::string> lane_set_names() {
    const char *present = lane_set_name();
    std::vector<std::string> names;
    for (const lane_set set : lumalane::all_lane_sets)
        if (lumalane::can_run(set))
            names.emplace_back(choose(set));
    choose_lane_set(present);
    return names;
}

void choose_lane_set(std::string_view name) {
    for (const lane_set set : lumalane::all_lane_sets)
        if (lumalane::can_run(set) && choose(set) == name)
            return;
}

void choose_next_lane_set() {
    const std::vector<std::string> names = lane_set_names();
    const auto present = std::ranges::find(names, lane_set_name());
    choose_lane_set(std::next(present) == names.end() ? names.front() : *std::next(present));
}

} // namespace player
