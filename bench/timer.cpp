// lumalane_timer JOB LANES WIDTHxHEIGHT: the other end of bench/other_build.h. Answers each number
// of calls on its input with the seconds that they took.
#include "bench/library.h"

#include <algorithm>
#include <iostream>
#include <iterator>
#include <sstream>
#include <stdexcept>

using namespace lumalane::bench;

int main(int argc, char **argv) try {
    if (argc != 4)
        throw std::runtime_error("wants JOB LANES WIDTHxHEIGHT");
    const std::string name = argv[1];
    const std::string lanes = argv[2];
    size picture;
    if (!(std::istringstream(argv[3]) >> picture))
        throw std::runtime_error(std::string("no size ") + argv[3]);
    const job *job = std::find_if(std::begin(jobs), std::end(jobs),
                                  [&](const auto &candidate) { return title(candidate) == name; });
    if (job == std::end(jobs))
        throw std::runtime_error("no job " + name);

    scene scene(picture, job->dst_pitch_per_pixel);
    job->in.arrange(scene);
    for (long calls; std::cin >> calls;)
        std::cout << time(*job, scene, lanes, calls) << std::endl;
} catch (const std::exception &error) {
    std::cerr << "lumalane_timer: " << error.what() << '\n';
    return 1;
}
