// This build of the library as a contestant.
#pragma once

#include "bench/jobs.h"

#include <string>
#include <vector>

namespace lumalane::bench {

// Names of the lane sets that this processor runs, the widest last.
std::vector<std::string> lane_sets();

// Seconds that `calls` runs of the job take on that lane set. The adjusting functions adjust:
// every gain and offset differs from the neutral ones.
double time(const job &job, scene &scene, const std::string &lanes, long calls);

} // namespace lumalane::bench
