// Builds of the library as contestants.
#pragma once

#include "bench/contest.h"
#include "bench/jobs.h"
#include "lumalane.h"

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

// Stands for the last of them, which another build may know by another name.
inline constexpr const char *widest_target = "widest";

// What is measured with adjustment: every gain and offset differs from the neutral ones.
inline constexpr contrast_data adjustment{70, 60, 5, -3, 4, 0, 0, 0};

// A build whose functions are called: this one on one of its targets, or another one, from a shared
// library, on the target that it chooses itself.
class library {
public:
    // The name of a target, or widest_target, or the file of a shared library.
    explicit library(const std::string &build);

    // Before its functions are called: chooses the target, and sets the adjustment.
    void prepare() const;

    // The job on a slice of the scene. Library, job and scene outlive it.
    task work(const job &job, scene &scene, slice rows) const;

    // Seconds that `calls` runs of the job on the whole scene take.
    double time(const job &job, scene &scene, long calls) const;

private:
    const target *target_; // null: not ours to choose
    functions functions_;
};

} // namespace lumalane::bench
