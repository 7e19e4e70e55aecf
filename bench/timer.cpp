// lumalane_timer JOB WIDTHxHEIGHT BUILD...: the other end of bench/timer_process.h. Reads "build calls"
// (builds are counted from 0) and answers with the seconds that so many calls took.
#include "bench/library.h"

#include <iostream>
#include <sstream>
#include <stdexcept>

using namespace lumalane::bench;

int main(int argc, char **argv) try {
    if (argc < 4)
        throw std::runtime_error("wants JOB WIDTHxHEIGHT BUILD...");
    const std::string name = argv[1];
    size picture;
    if (!(std::istringstream(argv[2]) >> picture))
        throw std::runtime_error(std::string("no size ") + argv[2]);
    const std::vector<library> builds(argv + 3, argv + argc);
    const job *const job = find_job(name);
    if (!job)
        throw std::runtime_error("no job " + name);

    scene scene(picture, job->dst_pitch_per_pixel);
    job->in.arrange(scene);
    std::size_t build;
    for (long calls; std::cin >> build >> calls;)
        std::cout << builds.at(build).time(*job, scene, calls) << std::endl;
} catch (const std::exception &error) {
    std::cerr << "lumalane_timer: " << error.what() << '\n';
    return 1;
}
