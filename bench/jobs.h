// The functions that are measured, from bench/jobs.inc.
#pragma once

#include "bench/scene.h"

namespace lumalane::bench {

struct job {
    const char *name;
    void (*run)(scene &);
    int dst_pitch_per_pixel;
    double bytes_per_pixel; // written
};

inline constexpr job jobs[] = {
#define LUMALANE_JOB(name, pitch, bytes, ...)                                                      \
    {#name, [](scene &scene) { call(::name, scene); }, pitch, bytes},
#include "bench/jobs.inc"
#undef LUMALANE_JOB
};

// Every function that exists has its row: this does not compile otherwise.
namespace rows {
enum row {
    get_contrast_data, // stores five numbers: nothing to measure
#define LUMALANE_JOB(name, ...) name,
#include "bench/jobs.inc"
#undef LUMALANE_JOB
};
#define LUMALANE_EXPORT(signature, name) static_assert(rows::name >= 0);
#include "frame/exports.inc"
#undef LUMALANE_EXPORT
} // namespace rows

} // namespace lumalane::bench
