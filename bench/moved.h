// How many bytes a job has to move.
#pragma once

#include "bench/jobs.h"

namespace lumalane::bench {

// Bytes that a call reads and bytes that it writes per pixel of the source picture: each counted once,
// and no more than what the situation lets it read and write.
double bytes_moved_per_pixel(const job &job);

} // namespace lumalane::bench
