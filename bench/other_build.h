// Another build of the library (32-bit, another compiler, an older version), measured in turn with
// this one: a child process that runs bench/timer.cpp.
#pragma once

#include "bench/scene.h"

#include <cstdio>
#include <string>
#include <sys/types.h>

namespace lumalane::bench {

class other_build {
public:
    other_build(std::string program, std::string job, std::string lanes, size picture);
    ~other_build();
    other_build(const other_build &) = delete;
    other_build &operator=(const other_build &) = delete;

    // Seconds that `calls` runs of the job take there.
    double time(long calls);

private:
    pid_t process_;
    std::FILE *requests_;
    std::FILE *answers_;
};

} // namespace lumalane::bench
