#include "bench/timer_process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sstream>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

extern char **environ;

namespace lumalane::bench {

timer_process::timer_process(std::string program, std::string job, size picture,
                             std::vector<std::string> builds)
    : program_(program) {
    std::ostringstream picture_text;
    picture_text << picture;
    std::string size = picture_text.str();
    std::vector<char *> arguments{program.data(), job.data(), size.data()};
    for (std::string &build : builds)
        arguments.push_back(build.data());
    arguments.push_back(nullptr);

    int request[2];
    int answer[2];
    // Another process that held an end would keep this one from seeing the other end closed.
    if (pipe2(request, O_CLOEXEC) || pipe2(answer, O_CLOEXEC))
        throw std::runtime_error("no pipe to " + program);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, request[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, answer[1], STDOUT_FILENO);
    const int error =
        posix_spawn(&process_, program.c_str(), &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error)
        throw std::runtime_error("cannot run " + program);
    close(request[0]);
    close(answer[1]);
    requests_ = fdopen(request[1], "w");
    answers_ = fdopen(answer[0], "r");
}

timer_process::~timer_process() {
    std::fclose(requests_); // ends it
    std::fclose(answers_);
    waitpid(process_, nullptr, 0);
}

double timer_process::time(std::size_t build, long calls) {
    std::fprintf(requests_, "%zu %ld\n", build, calls);
    std::fflush(requests_);
    double seconds;
    if (std::fscanf(answers_, "%lf", &seconds) != 1)
        throw std::runtime_error("no answer from " + program_);
    return seconds;
}

} // namespace lumalane::bench
