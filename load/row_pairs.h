// The loop over the row pairs of a planar 4:2:0 picture.
#pragma once

#include "picture/adjustment.h"
#include "picture/calls.h"
#include "picture/surface.h"

namespace lumalane {

// In which order the promised steps of 16 pixels follow each other.
enum class pair_order {
    both_rows_by_steps, // a step of the upper row, the same step of the lower one, the next step
    row_by_row,         // the upper row, then the lower one
};

// For functions that leave chroma unread its pointers may point nowhere.
enum class chroma_is { read, unread };

// A picture onto a surface, as it is or adjusted.
void load_row_pairs(const machine &, const call::picture &, pair_order, const planar_to_surface &);
void load_row_pairs(const machine &, const call::picture &, pair_order, const planar_to_surface &,
                    const adjustment &, chroma_is = chroma_is::read);

} // namespace lumalane
