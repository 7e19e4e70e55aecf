// What convert(), blend() and stretch() are to make, from the plain models of the functions.
#pragma once

#include "tests/companion/pictures.h"

#include <optional>

namespace companion {

using optional_adjustment = std::optional<lumalane::adjustment>;

// What the model's function makes of the picture made larger, cut to its size; no value where there
// is no such function.
std::optional<rows_of_pixels> expected_conversion(const rows_of_pixels &source, lumalane::format to,
                                                  const optional_adjustment &by);

} // namespace companion
