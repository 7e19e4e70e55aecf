#include "bench/library.h"

#include "bench/contest.h"
#include "frame/dispatch.h"

#include <stdexcept>

namespace lumalane::bench {
namespace {

struct named_set {
    std::string name;
    lane_set set;
};

std::vector<named_set> named_sets() {
    std::vector<named_set> sets;
    for (lane_set set : all_lane_sets)
        if (can_run(set)) {
            force(set);
            sets.push_back({kernels().name, set});
        }
    return sets;
}

void force_named(const std::string &name) {
    static const std::vector<named_set> sets = named_sets();
    for (const named_set &candidate : sets)
        if (candidate.name == name)
            return force(candidate.set);
    throw std::runtime_error("this processor runs no lane set " + name);
}

} // namespace

std::vector<std::string> lane_sets() {
    std::vector<std::string> names;
    for (const named_set &set : named_sets())
        names.push_back(set.name);
    return names;
}

double time(const job &job, scene &scene, const std::string &lanes, long calls) {
    contrast_data adjustment{70, 60, 5, -3, 4, 0, 0, 0};
    get_contrast_data(&adjustment);
    force_named(lanes);
    return time([&] { job.run(scene); }, calls);
}

} // namespace lumalane::bench
