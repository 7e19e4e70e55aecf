// Measures every function of the library beside the same conversion by other libraries and beside
// memcpy of as many bytes as the function writes.
#include "bench/contest.h"
#include "bench/library.h"
#include "bench/other_build.h"
#include "bench/peers.h"
#include "bench/report.h"

#include <CLI/CLI.hpp>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iostream>
#include <optional>
#include <regex>
#include <sstream>
#include <stdexcept>

namespace lumalane::bench {
namespace {

struct options {
    std::vector<std::string> lanes; // the first is what all others are compared with
    std::string beside_name;        // empty: nobody
    std::string beside_program;
    int rounds = 9;
    double milliseconds = 10;
};

// In the order of `jobs`.
const std::vector<peer> &peers_of(const job &job) {
    static const std::vector<peer> peers[] = {
#define LUMALANE_JOB(name, situation, pitch, bytes, ...) {__VA_ARGS__},
#include "bench/jobs.inc"
#undef LUMALANE_JOB
    };
    return peers[&job - jobs];
}

constexpr char copy[] = "memcpy";

std::string column(const std::string &lanes) { return "Lumalane " + lanes; }

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

// Everybody who may compete, in the order of the columns.
std::vector<std::string> contestant_names(const std::vector<const job *> &jobs,
                                          const options &options) {
    std::vector<std::string> names;
    for (const std::string &lanes : options.lanes)
        names.push_back(column(lanes));
    if (!options.beside_name.empty())
        names.push_back(options.beside_name);
    for (const job *job : jobs)
        for (const peer &peer : peers_of(*job))
            if (std::find(names.begin(), names.end(), peer.project) == names.end())
                names.push_back(peer.project);
    names.push_back(copy);
    return names;
}

void measure(benchmark::State &state, const job &job, size picture, const options &options) {
    scene scene(picture, job.dst_pitch_per_pixel);
    job.in.arrange(scene);
    const std::size_t bytes = job.bytes_per_pixel * picture.pixels();
    const buffer original(bytes), copied(bytes);

    std::vector<contestant> contestants;
    for (const std::string &lanes : options.lanes)
        contestants.push_back(
            {column(lanes), [&](long calls) { return time(job, scene, lanes, calls); }});
    std::optional<other_build> beside;
    if (!options.beside_name.empty()) {
        beside.emplace(options.beside_program, title(job), options.lanes.front(), picture);
        contestants.push_back(
            {options.beside_name, [&](long calls) { return beside->time(calls); }});
    }
    for (const peer &peer : peers_of(job))
        contestants.push_back({peer.project, [convert = peer.prepare(scene)](long calls) {
                                   return time(convert, calls);
                               }});
    contestants.push_back(
        {copy, [&](long calls) {
             return time([&] { std::memcpy(copied.data(), original.data(), bytes); }, calls);
         }});

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

void print_head(const std::vector<const job *> &jobs, const options &options, std::ostream &out) {
    out << "Measured on " << machine() << "; libyuv " << libyuv_version() << ", libswscale "
        << swscale_version() << ".\n"
        << "Nanoseconds per pixel, medians of " << options.rounds << " rounds of at least "
        << options.milliseconds << " ms each. In brackets: how many times as long as "
        << column(options.lanes.front()) << " (median of the rounds' quotients).\n\n"
        << "| Function | Bytes per pixel | Peers |\n|---|---:|---|\n";
    for (const job *job : jobs) {
        out << "| `" << title(*job) << "` | " << job->bytes_per_pixel << " | ";
        for (const peer &peer : peers_of(*job))
            out << peer.project << ' ' << peer.way << ", ";
        out << copy << " |\n";
    }
}

void add(const measurement &chosen, const options &options) {
    const auto run = [&](benchmark::State &state) {
        measure(state, *chosen.what, chosen.picture, options);
    };
    benchmark::RegisterBenchmark(chosen.name.c_str(), run)
        ->Iterations(options.rounds)
        ->UseManualTime();
}

int run(int argc, char **argv) {
    options options;
    std::vector<size> pictures{{320, 240}, {1280, 720}, {1920, 1080}, {3840, 2160}};
    std::string filter = ".";
    std::string beside;
    std::string json;
    std::string csv = "/dev/null";
    std::vector<std::string> sets = lane_sets();
    std::reverse(sets.begin(), sets.end());

    CLI::App app("Times the functions of Lumalane beside other libraries and memcpy.");
    app.add_option("--sizes", pictures, "instead of the usual four")
        ->delimiter(',')
        ->type_name("WIDTHxHEIGHT,...");
    app.add_option("--filter", filter, "only the matching, as 1920x1080/.*rgb32$")
        ->type_name("REGEX");
    options.lanes = {sets.front()};
    app.add_option("--lanes", options.lanes, "run these lane sets instead of the widest")
        ->delimiter(',')
        ->check(CLI::IsMember(sets))
        ->type_name("SET,...");
    app.add_option("--beside", beside, "also the lumalane_timer of another build")
        ->type_name("NAME=PROGRAM");
    app.add_option("--rounds", options.rounds, "rounds per measurement")
        ->check(CLI::PositiveNumber);
    app.add_option("--milliseconds", options.milliseconds, "least duration of a turn");
    app.add_option("--json", json, "write Google Benchmark's JSON too")->type_name("FILE");
    app.add_option("--csv", csv, "write the table as CSV too")->type_name("FILE");
    CLI11_PARSE(app, argc, argv);

    options.beside_name = beside.substr(0, beside.find('='));
    options.beside_program = beside.substr(beside.find('=') + 1);
    const std::vector<measurement> chosen = choose(pictures, std::regex(filter));
    const std::vector<const job *> chosen_jobs = jobs_of(chosen);
    if (chosen.empty())
        throw std::runtime_error("nothing is named " + filter);
    for (const measurement &measured : chosen)
        add(measured, options);

    std::string program = argv[0];
    std::string out = "--benchmark_out=" + json;
    char *arguments[] = {program.data(), out.data(), nullptr};
    int count = 2;
    benchmark::Initialize(&count, arguments);

    std::ofstream csv_file(csv);
    if (!csv_file)
        throw std::runtime_error("cannot write " + csv);
    report report(contestant_names(chosen_jobs, options), std::cout, csv_file);
    print_head(chosen_jobs, options, std::cout);
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
