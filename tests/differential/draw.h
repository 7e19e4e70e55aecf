// How the arguments of each signature are drawn, and what several signatures need for it.
#pragma once

#include <string_view>

#include "tests/differential/drawn_call.h"

namespace differential {

template <class... Arguments>
using model_of = void(model::memory &, Arguments...);
template <class... Arguments>
using function_of = void (*)(Arguments...);

// One function per signature that frame/exports.inc uses.
drawn_call draw_parameters(random &, const char *name, void (*on_model)(model::memory &, void *),
                           void (*lumalane::kernel_table::*function)(void *));
drawn_call draw_picture(random &, const char *name,
                        void (*on_model)(model::memory &, LUMALANE_PARAMETERS_picture),
                        void (*lumalane::kernel_table::*function)(LUMALANE_PARAMETERS_picture));

// Bytes per pixel of what a picture function writes (of the Y plane for YV12), which its name
// spells.
int destination_pixel_bytes(std::string_view name);

// Gains and offsets: neutral, moderate and hostile.
contrast_data draw_contrast(random &);

} // namespace differential
