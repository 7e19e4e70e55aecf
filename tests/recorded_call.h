// A call that is not made: its pointers, and what footprint_of() says of it.
#pragma once

#include <vector>

#include <lumalane/footprint.h>

#include "tests/differential/drawn_call.h"

namespace tests {

struct recorded_call {
    const void *pointers[lumalane::pointer_count] = {};
    lumalane::footprint bytes;
    struct told_rows {
        lumalane::pointer at;
        bool read, written;
        lumalane::row_set rows;
    };
    std::vector<told_rows> rows;         // of planes and surfaces
    int sets_read = 0, sets_written = 0; // of them

    void at(lumalane::pointer p, const void *address) { pointers[static_cast<int>(p)] = address; }
};

// What a drawn call, which may be several ones, does with its buffers at `places`, where its records
// have to be filled.
std::vector<recorded_call> record(const differential::drawn_call &,
                                  const differential::placement &places);

} // namespace tests
