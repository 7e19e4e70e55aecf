// Builds of the library as contestants.
#pragma once

#include "bench/jobs.h"

#include <string>
#include <vector>

namespace lumalane {
struct target;
}

namespace lumalane::bench {

// Names of the targets of this build that this processor runs, the narrowest first; and of those that
// the library is shipped with.
std::vector<std::string> target_names();
std::vector<std::string> shipped_target_names();

// A build whose functions are called: this one on one of its targets, or another one, from a shared
// library, on the target that it chooses itself.
class library {
public:
    // The name of a target, or the file of a shared library.
    explicit library(const std::string &build);

    // Seconds that `calls` runs of the job take. The adjusting functions adjust: every gain and
    // offset differs from the neutral ones.
    double time(const job &job, scene &scene, long calls) const;

private:
    const target *target_; // null: not ours to choose
    functions functions_;
};

} // namespace lumalane::bench
