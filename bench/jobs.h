// The functions that are measured, from bench/jobs.inc.
#pragma once

#include "bench/scene.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>

namespace lumalane::bench {

// The exported functions of a build of the library.
struct functions {
#define LUMALANE_EXPORT(signature, name) decltype(&::name) name;
#include "abi/exports.inc"
#undef LUMALANE_EXPORT
};

struct job {
    const char *name;
    const situation &in;
    void (*run)(const functions &, scene &);
    double dst_pitch_per_pixel;
    double bytes_per_pixel; // that memcpy moves beside it
};

inline constexpr job jobs[] = {
#define LUMALANE_JOB(name, situation, pitch, bytes, ...)                                           \
    {#name, situations::situation,                                                                 \
     [](const functions &library, scene &scene) { call(library.name, scene); }, pitch, bytes},
#include "bench/jobs.inc"
#undef LUMALANE_JOB
};

// "function" or "function/situation".
inline std::string title(const job &job) {
    const std::string situation = job.in.name;
    return job.name + (situation.empty() ? "" : '/' + situation);
}

constexpr bool is_measured(std::string_view function) {
    // It stores five numbers: nothing to measure.
    return function == "get_contrast_data" ||
           std::any_of(std::begin(jobs), std::end(jobs),
                       [&](const job &job) { return function == job.name; });
}

#define LUMALANE_EXPORT(signature, name)                                                           \
    static_assert(is_measured(#name), #name " has no row in bench/jobs.inc");
#include "abi/exports.inc"
#undef LUMALANE_EXPORT

} // namespace lumalane::bench
