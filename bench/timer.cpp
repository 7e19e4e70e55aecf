// lumalane_timer JOB WIDTHxHEIGHT BUILD...: the other end of bench/timer_process.h. Reads "build calls"
// (builds are counted from 0) and answers with the seconds that so many calls took.
// lumalane_timer --targets: prints the targets that the library is shipped with and that this processor
// runs, the narrowest first.
#include "bench/library.h"

#include <iostream>
#include <sstream>
#include <stdexcept>
#include <string_view>

using namespace lumalane::bench;

int main(int argc, char **argv) try {
    if (argc == 2 && std::string_view(argv[1]) == "--targets") {
        for (const std::string &target : shipped_target_names())
            std::cout << target << '\n';
        return 0;
    }
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
