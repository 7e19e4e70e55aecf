#include "bench/other_build.h"

#include <spawn.h>
#include <sstream>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

extern char **environ;

namespace lumalane::bench {

other_build::other_build(std::string program, std::string job, std::string lanes, size picture) {
    std::ostringstream picture_text;
    picture_text << picture;
    std::string size = picture_text.str();
    char *arguments[] = {program.data(), job.data(), lanes.data(), size.data(), nullptr};

    int request[2];
    int answer[2];
    if (pipe(request) || pipe(answer))
        throw std::runtime_error("no pipe to " + program);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, request[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, answer[1], STDOUT_FILENO);
    for (int end : {request[0], request[1], answer[0], answer[1]})
        posix_spawn_file_actions_addclose(&actions, end);
    const int error =
        posix_spawn(&process_, program.c_str(), &actions, nullptr, arguments, environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error)
        throw std::runtime_error("cannot run " + program);
    close(request[0]);
    close(answer[1]);
    requests_ = fdopen(request[1], "w");
    answers_ = fdopen(answer[0], "r");
}

other_build::~other_build() {
    std::fclose(requests_); // ends it
    std::fclose(answers_);
    waitpid(process_, nullptr, 0);
}

double other_build::time(long calls) {
    std::fprintf(requests_, "%ld\n", calls);
    std::fflush(requests_);
    double seconds;
    if (std::fscanf(answers_, "%lf", &seconds) != 1)
        throw std::runtime_error("no answer from the other build");
    return seconds;
}

} // namespace lumalane::bench
