// A child process that runs bench/timer.cpp: for builds of the library that this process cannot
// load, such as 32-bit ones.
#pragma once

#include "bench/scene.h"

#include <cstdio>
#include <string>
#include <sys/types.h>
#include <vector>

namespace lumalane::bench {

class timer_process {
public:
    // `builds`: targets of the program's own build, or files of shared libraries.
    timer_process(std::string program, std::string job, size picture,
                  std::vector<std::string> builds);
    ~timer_process();
    timer_process(const timer_process &) = delete;
    timer_process &operator=(const timer_process &) = delete;

    // Seconds that `calls` runs of the job take there on builds[build].
    double time(std::size_t build, long calls);

private:
    std::string program_;
    pid_t process_;
    std::FILE *requests_;
    std::FILE *answers_;
};

} // namespace lumalane::bench
