// Which of the library's lane sets runs.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace player {

// Names of the lane sets that this processor can run, the narrowest first.
std::vector<std::string> lane_set_names();

const char *lane_set_name();

// `name` is one of lane_set_names().
void choose_lane_set(std::string_view name);

// The one after the present one, and after the last the first.
void choose_next_lane_set();

} // namespace player
