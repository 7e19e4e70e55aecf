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

// A subpicture whose rows follow each other without gaps.
struct subpicture_rows {
    int width, height;
    bytes alpha, y, u, v;

    int chroma_width() const { return (width + 1) / 2; }
};

// The same of pictures with a subpicture at column x and row y.
std::optional<rows_of_pixels> expected_blend(const rows_of_pixels &video,
                                             const subpicture_rows &over, int x, int y,
                                             lumalane::format to, const optional_adjustment &by);

// And of stretched ones.
std::optional<rows_of_pixels> expected_stretch(const rows_of_pixels &source, lumalane::format to,
                                               lumalane::stretching how,
                                               const optional_adjustment &by);

} // namespace companion
