// The library behind the companion, whose own headers name other things alike.
#pragma once

#include <string>
#include <vector>

namespace companion {

std::vector<std::string> runnable_targets();
void force_target(const std::string &name);

// Whether surfaces are stored around the cache, whatever their size.
void store_around_cache(bool);

} // namespace companion
