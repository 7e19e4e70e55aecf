// Measures every function of the library beside the same conversion by other libraries and beside
// memcpy of as many bytes as the function writes.
#include "bench/contest.h"
#include "bench/library.h"
#include "bench/peers.h"
#include "bench/report.h"
#include "bench/table.h"
#include "bench/team.h"
#include "bench/timer_process.h"

#include <CLI/CLI.hpp>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <csignal>
#include <cstring>
#include <fstream>
#include <iostream>
#include <map>
#include <memory>
#include <regex>
#include <sstream>
#include <stdexcept>

namespace lumalane::bench {
namespace {

// A build of the library as a contestant.
struct build {
    std::string name;
    std::string which;   // a target, or the file of a shared library
    std::string program; // that times it in a process of its own; empty: here
};

struct options {
    std::vector<size> pictures{{320, 240}, {1280, 720}, {1920, 1080}, {3840, 2160}};
    std::string filter = ".";
    std::vector<std::string> targets;
    std::vector<std::string> against;
    std::vector<std::string> beside;
    bool shipped_targets = false;
    bool no_own = false;
    bool no_peers = false;
    int rounds = 9;
    double milliseconds = 10;
    int threads = 0; // none: not how they scale
    listed_below limits{};
    std::string json;
    std::string csv = "/dev/null";
    // What the others come to; the first is what all others are compared with.
    std::vector<build> builds;
};

// In the order of `jobs`.
const std::vector<peer> &peers_of(const job &job) {
    static const std::vector<peer> peers[] = {
#define LUMALANE_JOB(name, situation, family, how, pitch, bytes, ...) {__VA_ARGS__},
#include "bench/jobs.inc"
#undef LUMALANE_JOB
    };
    return peers[&job - jobs];
}

// What is measured: a job on a picture.
struct measurement {
    const job *what;
    size picture;
    std::string name;
};

std::vector<measurement> choose(const std::vector<size> &pictures, const std::regex &filter) {
    std::vector<measurement> chosen;
    for (size picture : pictures)
        for (const job &job : jobs) {
            std::ostringstream name;
            name << picture << '/' << title(job);
            if (std::regex_search(name.str(), filter))
                chosen.push_back({&job, picture, name.str()});
        }
    return chosen;
}

// Their jobs, each once.
std::vector<const job *> jobs_of(const std::vector<measurement> &chosen) {
    std::vector<const job *> found;
    for (const job &job : jobs)
        if (std::any_of(chosen.begin(), chosen.end(),
                        [&](const measurement &m) { return m.what == &job; }))
            found.push_back(&job);
    return found;
}

constexpr char copy[] = "memcpy";

// One line.
std::string conditions_of(const options &options) {
    const std::string peers =
        options.no_peers ? ""
                         : "; libyuv " + libyuv_version() + ", libswscale " + swscale_version();
    // Who built the others is not known.
    return machine() + (options.no_own ? "" : "; built by " + compiler()) + peers;
}

// How many times as much arithmetic as one thread so many do together in the same time.
double arithmetic_scaling(const options &options) {
    team team(options.threads);
    std::vector<contestant> contestants;
    for (const int threads : {options.threads, 1}) {
        const std::vector<task> works(threads, arithmetic_in_registers());
        contestants.push_back({"", [&team, works](long calls) { return team.time(works, calls); }});
        calibrate(contestants.back(), options.milliseconds / 1000);
    }
    for (int i = 0; i < options.rounds; ++i)
        round(contestants);
    return options.threads * paired_ratio(contestants[1], contestants[0]);
}

// What `--threads` does, and with what it cannot be done.
void print_slices(const std::vector<const job *> &jobs, const options &options, std::ostream &out) {
    out << "Each of " << options.threads
        << " threads has its own slices of the rows and its own processor; they begin each turn "
           "together, and a turn takes as long as the one that takes longest. Arithmetic in "
           "registers alone, which shares nothing but the processor, is "
        << fixed(arithmetic_scaling(options), 2) << " times as fast on them as on one.\n";
    for (const slicing how : {slicing::planes_by_height, slicing::last_rows_differ}) {
        std::vector<std::string> functions;
        for (const job *job : jobs)
            if (job->how == how && (functions.empty() || functions.back() != job->name))
                functions.push_back(job->name);
        if (functions.empty())
            continue;
        out << "\nNot cut into slices, as " << reason_not_to_cut(how) << ": ";
        for (const std::string &function : functions)
            out << (function == functions.front() ? "`" : ", `") << function << '`';
        out << ".\n";
    }
}

std::string on_threads(const std::string &name, int threads) {
    return name + (threads == 1 ? ", 1 thread" : ", " + std::to_string(threads) + " threads");
}

contestant_names names_of(const std::vector<const job *> &jobs, const options &options) {
    contestant_names names;
    if (options.threads) {
        const std::string &build = options.builds.front().name;
        names.builds = {on_threads(build, options.threads), on_threads(build, 1)};
        names.yardsticks = {on_threads(copy, options.threads), on_threads(copy, 1)};
        return names;
    }
    for (const build &build : options.builds)
        names.builds.push_back(build.name);
    if (options.no_peers)
        return names;
    for (const job *job : jobs)
        for (const peer &peer : peers_of(*job)) {
            std::vector<std::string> &list = peer.is_yardstick ? names.yardsticks : names.peers;
            if (std::find(list.begin(), list.end(), peer.project) == list.end())
                list.push_back(peer.project);
        }
    names.yardsticks.push_back(copy);
    return names;
}

report_settings settings_of(const std::vector<const job *> &jobs, const options &options) {
    report_settings settings;
    settings.names = names_of(jobs, options);
    if (options.threads) {
        settings.copy = settings.names.yardsticks.back();
        settings.one_thread = settings.names.builds.back();
    } else if (!options.no_peers) {
        settings.copy = copy;
    }
    settings.limits = options.limits;
    settings.conditions = conditions_of(options);
    return settings;
}

// Calibrates the contestants and times them, a round an iteration.
void compete(benchmark::State &state, std::vector<contestant> &contestants, size picture,
             const options &options) {
    for (contestant &contestant : contestants)
        calibrate(contestant, options.milliseconds / 1000);
    const contestant &ours = contestants.front();
    for (auto _ : state) {
        round(contestants);
        state.SetIterationTime(ours.seconds.back());
    }
    for (const contestant &contestant : contestants) {
        state.counters[contestant.name] = median(contestant.seconds) * 1e9 / picture.pixels();
        state.counters[quotient(contestant.name)] = paired_ratio(contestant, ours);
    }
}

// Parts of `bytes`, of whole cache lines but for the last.
std::vector<task> copies(std::size_t bytes, int count) {
    const auto from = std::make_shared<buffer>(bytes), to = std::make_shared<buffer>(bytes);
    std::vector<task> parts;
    const std::size_t most = (bytes / count + 63) / 64 * 64;
    for (std::size_t first = 0; first < bytes; first += most)
        parts.push_back([=, part = std::min(most, bytes - first)] {
            std::memcpy(to->data() + first, from->data() + first, part);
        });
    return parts;
}

// One build on several threads, each on its slices of the rows, and on one.
void measure_threads(benchmark::State &state, const job &job, size picture,
                     const options &options) {
    scene scene(picture, job.dst_pitch_per_pixel);
    job.in.arrange(scene);
    const library library(options.builds.front().which);
    library.prepare();
    std::vector<task> shares;
    for (const std::vector<slice> &slices :
         share(picture.height, job.how, options.threads, job.in.busy_rows(picture.height))) {
        std::vector<task> calls;
        for (const slice rows : slices)
            calls.push_back(library.work(job, scene, rows));
        shares.push_back([calls] {
            for (const task &call : calls)
                call();
        });
    }
    const std::vector<task> whole{library.work(job, scene, scene.whole())};
    const std::size_t bytes = job.bytes_per_pixel * picture.pixels();
    const contestant_names names = names_of({&job}, options);
    team team(options.threads);
    std::vector<contestant> contestants;
    const auto add = [&](const std::string &name, const std::vector<task> &works) {
        contestants.push_back(
            {name, [&team, works](long calls) { return team.time(works, calls); }});
    };
    add(names.builds[0], shares);
    add(names.builds[1], whole);
    add(names.yardsticks[0], copies(bytes, options.threads));
    add(names.yardsticks[1], copies(bytes, 1));
    compete(state, contestants, picture, options);
}

void measure(benchmark::State &state, const job &job, size picture, const options &options) {
    scene scene(picture, job.dst_pitch_per_pixel);
    job.in.arrange(scene);
    std::vector<contestant> contestants;
    std::map<std::string, std::vector<std::string>> builds_of_programs;
    std::map<std::string, timer_process> processes;
    for (const build &build : options.builds) {
        if (build.program.empty()) {
            contestants.push_back({build.name, [&, library = library(build.which)](long calls) {
                                       return library.time(job, scene, calls);
                                   }});
            continue;
        }
        // Builds of one program work on the same buffers.
        std::vector<std::string> &builds = builds_of_programs[build.program];
        contestants.push_back(
            {build.name, [&processes, &program = build.program, i = builds.size()](long calls) {
                 return processes.at(program).time(i, calls);
             }});
        builds.push_back(build.which);
    }
    for (const auto &[program, builds] : builds_of_programs)
        processes.try_emplace(program, program, title(job), picture, builds);
    if (!options.no_peers) {
        for (const peer &peer : peers_of(job))
            contestants.push_back({peer.project, [convert = peer.prepare(scene)](long calls) {
                                       return time(convert, calls);
                                   }});
        const std::size_t bytes = job.bytes_per_pixel * picture.pixels();
        contestants.push_back(
            {copy, [work = copies(bytes, 1).front()](long calls) { return time(work, calls); }});
    }
    compete(state, contestants, picture, options);
}

void print_conditions(const std::vector<const job *> &jobs, const options &options,
                      std::ostream &out) {
    out << "Measured on " << conditions_of(options) << ".\n"
        << "Nanoseconds per pixel, medians of " << options.rounds << " rounds of at least "
        << options.milliseconds << " ms each. In brackets: how many times as long as "
        << names_of(jobs, options).builds.front() << " (median of the rounds' quotients).\n";
    if (options.threads) {
        print_slices(jobs, options, out);
        return;
    }
    if (options.no_peers)
        return;
    out << "\n| Function | Bytes per pixel | Peers |\n|---|---:|---|\n";
    for (const job *job : jobs) {
        out << "| `" << title(*job) << "` | " << job->bytes_per_pixel << " | ";
        for (const peer &peer : peers_of(*job))
            out << peer.project << ' ' << peer.way << ", ";
        out << copy << " |\n";
    }
}

void add(const measurement &chosen, const options &options) {
    const auto run = [&](benchmark::State &state) {
        (options.threads ? measure_threads : measure)(state, *chosen.what, chosen.picture, options);
    };
    benchmark::RegisterBenchmark(chosen.name.c_str(), run)
        ->Iterations(options.rounds)
        ->UseManualTime();
}

// What is before and what is after the first `separator`.
std::pair<std::string, std::string> split(const std::string &text, char separator) {
    const std::size_t at = text.find(separator);
    return {text.substr(0, at), at == std::string::npos ? "" : text.substr(at + 1)};
}

void describe(CLI::App &app, options &options) {
    app.add_option("--sizes", options.pictures,
                   "instead of the usual four: multiples of 16 wide and of 4 high, 48x16 at least")
        ->delimiter(',')
        ->type_name("WIDTHxHEIGHT,...");
    app.add_option("--filter", options.filter, "only the matching, as 1920x1080/.*rgb32$")
        ->type_name("REGEX");
    app.add_option("--targets", options.targets, "run these instead of the widest")
        ->delimiter(',')
        ->check(CLI::IsMember(target_names()))
        ->type_name("TARGET,...");
    app.add_flag("--shipped-targets", options.shipped_targets,
                 "run those that the library is shipped with, the widest first");
    app.add_option("--against", options.against,
                   "also a shared library of another build, on the target that it chooses")
        ->allow_extra_args(false)
        ->type_name("NAME=LIBRARY");
    app.add_option("--beside", options.beside,
                   "also the lumalane_timer of another build, in a process of its own: on the "
                   "widest of its targets, or on another one, or with a shared library")
        ->allow_extra_args(false)
        ->type_name("NAME=PROGRAM[,TARGET|,LIBRARY]");
    app.add_option("--threads", options.threads,
                   "how much faster so many threads are, each on its slices of rows, than one")
        ->check(CLI::Range(2, 1024));
    app.add_flag("--no-own", options.no_own,
                 "leave this build out: compare with the first of the others");
    app.add_flag("--no-peers", options.no_peers, "leave other libraries and memcpy out");
    app.add_option("--below", options.limits.builds,
                   "list other builds where they are fewer times as long")
        ->type_name("RATIO");
    app.add_option("--rounds", options.rounds, "rounds per measurement")
        ->check(CLI::PositiveNumber);
    app.add_option("--milliseconds", options.milliseconds, "least duration of a turn");
    app.add_option("--json", options.json, "write Google Benchmark's JSON too")->type_name("FILE");
    app.add_option("--csv", options.csv, "write the table as CSV too")->type_name("FILE");
}

std::vector<build> builds_of(const options &options) {
    std::vector<std::string> targets = options.targets;
    if (options.shipped_targets) {
        targets = shipped_target_names();
        std::reverse(targets.begin(), targets.end());
    }
    std::vector<build> builds;
    const auto add = [&](const std::string &name, const std::string &which,
                         const std::string &program) {
        if (std::any_of(builds.begin(), builds.end(),
                        [&](const build &other) { return other.name == name; }))
            throw std::runtime_error("two are named " + name);
        builds.push_back({name, which, program});
    };
    if (!options.no_own)
        for (const std::string &target : targets)
            add("Lumalane " + target, target, "");
    const auto split_name = [](const std::string &other) {
        if (other.find('=') == std::string::npos)
            throw std::runtime_error(other + " needs a name: NAME=" + other);
        return split(other, '=');
    };
    for (const std::string &other : options.against) {
        const auto [name, library] = split_name(other);
        add(name, library, "");
    }
    for (const std::string &other : options.beside) {
        const auto [name, process] = split_name(other);
        const auto [program, which] = split(process, ',');
        add(name, which.empty() ? widest_target : which, program);
    }
    if (builds.empty())
        throw std::runtime_error("there is no build to measure");
    if (options.threads && (builds.size() > 1 || !builds.front().program.empty()))
        throw std::runtime_error("--threads is for one build that this process can load");
    return builds;
}

int run(int argc, char **argv) {
    options options;
    options.targets = {target_names().back()};
    CLI::App app("Times the functions of Lumalane beside other libraries and memcpy.");
    describe(app, options);
    CLI11_PARSE(app, argc, argv);
    options.builds = builds_of(options);
    options.no_peers = options.no_peers || options.threads;
    // A process that has ended is told by its missing answer.
    std::signal(SIGPIPE, SIG_IGN);

    const std::vector<measurement> chosen = choose(options.pictures, std::regex(options.filter));
    const std::vector<const job *> chosen_jobs = jobs_of(chosen);
    if (chosen.empty())
        throw std::runtime_error("nothing is named " + options.filter);
    for (const measurement &measured : chosen)
        if (!options.threads || can_be_cut(measured.what->how))
            add(measured, options);

    std::string program = argv[0];
    std::string out = "--benchmark_out=" + options.json;
    char *arguments[] = {program.data(), out.data(), nullptr};
    int count = 2;
    benchmark::Initialize(&count, arguments);

    std::ofstream csv_file(options.csv);
    if (!csv_file)
        throw std::runtime_error("cannot write " + options.csv);
    report report(settings_of(chosen_jobs, options), std::cout, csv_file);
    print_conditions(chosen_jobs, options, std::cout);
    return benchmark::RunSpecifiedBenchmarks(&report) ? 0 : 1;
}

} // namespace
} // namespace lumalane::bench

int main(int argc, char **argv) try {
    return lumalane::bench::run(argc, argv);
} catch (const std::exception &error) {
    std::cerr << "lumalane_bench: " << error.what() << '\n';
    return 1;
}
