// Which of the library's targets runs.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace player {

// Names of the targets that this processor runs, the narrowest first.
std::vector<std::string> target_names();

// Of the present one.
const char *target_name();

// `name` is one of target_names().
void choose_target(std::string_view name);

// The one after the present one, and after the last the first.
void choose_next_target();

} // namespace player
