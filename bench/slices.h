// Slices of rows of one picture, each a call of its own, and the threads that share them.
#pragma once

#include <string>
#include <vector>

namespace lumalane::bench {

// Rows of the picture, from `first` on.
struct slice {
    int first, rows;
};

// How the calls of a function are cut. Widths are whole steps: others drift from row to row.
enum class slicing {
    planar,           // from an even row on; every second row of the source has a row of chroma
    packed,           // from an even row on, of a packed source
    field,            // from a fourth row on: two rows of the surface have one of the source
    planes_by_height, // not at all: the height tells where the planes of the surface are
    last_rows_differ, // not at all: the last rows of a call are made otherwise than those before
};

bool can_be_cut(slicing how);
std::string reason_not_to_cut(slicing how);

// What each of `threads` has to do: nearly as many of the `busy` rows, which take longer, as the others,
// and nearly as many of the rest; fewer than `threads` if there are not as many places to cut.
std::vector<std::vector<slice>> share(int height, slicing how, int threads, slice busy);

} // namespace lumalane::bench
