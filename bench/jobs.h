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

// In the order in which they are listed.
namespace families {
inline constexpr char yv12_to_yv12[] = "YV12 to YV12";
inline constexpr char yv12_to_rgb[] = "YV12 to RGB";
inline constexpr char yv12_to_yuy2[] = "YV12 to YUY2";
inline constexpr char from_yuy2[] = "YUY2 sources";
inline constexpr char surface_to_subpicture[] = "Drawing surface to subpicture";
inline constexpr char subpicture_to_surface[] = "Subpicture to drawing surface";
inline constexpr char colour_key[] = "Colour key";
inline constexpr char mix_onto_rgb[] = "Subpicture over video onto RGB";
inline constexpr char mix_onto_yuy2[] = "Subpicture over video onto YUY2";
inline constexpr char mix_onto_yv12[] = "Subpicture over video onto YV12";
inline constexpr char stretch_to_yuy2[] = "Stretching to YUY2";
inline constexpr char stretch_to_rgb[] = "Stretching to RGB";
inline constexpr char stretch_to_yv12[] = "Stretching to YV12";
} // namespace families

struct job {
    const char *name;
    const situation &in;
    const char *family;
    slicing how;
    void (*run)(const functions &, scene &, slice);
    double dst_pitch_per_pixel;
    double bytes_per_pixel; // that memcpy moves beside it
};

inline constexpr job jobs[] = {
#define LUMALANE_JOB(name, situation, family, how, pitch, bytes, ...)                              \
    {#name,                                                                                        \
     situations::situation,                                                                        \
     families::family,                                                                             \
     slicing::how,                                                                                 \
     [](const functions &library, scene &scene, slice rows) {                                      \
         call(library.name, scene, slicing::how, rows);                                            \
     },                                                                                            \
     pitch,                                                                                        \
     bytes},
#include "bench/jobs.inc"
#undef LUMALANE_JOB
};

// "function" or "function/situation".
inline std::string title(const job &job) {
    const std::string situation = job.in.name;
    return job.name + (situation.empty() ? "" : '/' + situation);
}

// Null: there is none of that title.
inline const job *find_job(const std::string &wanted) {
    const job *const found =
        std::find_if(std::begin(jobs), std::end(jobs),
                     [&](const job &candidate) { return title(candidate) == wanted; });
    return found == std::end(jobs) ? nullptr : found;
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
