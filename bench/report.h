// What the benchmark prints: Markdown for people, CSV for the chart.
#pragma once

#include "bench/flatness.h"
#include "bench/scaling.h"
#include "bench/summary.h"

#include <benchmark/benchmark.h>

#include <ostream>
#include <string>
#include <vector>

namespace lumalane::bench {

// A measurement is named "320x240/function". Its counters are nanoseconds per pixel, under the name
// of the contestant, and the quotient to the time of the first contestant, under quotient(name).
std::string quotient(const std::string &contestant);

// Who takes part, and what is listed.
struct report_settings {
    std::string conditions; // one line
    contestant_names names;
    std::string copy{};       // memcpy's name, if it takes part
    std::string one_thread{}; // the first build's on one thread, if the first is on several
    listed_below limits{};
    double flat = 2;      // as of flatness::print()
    double scaled = 1.85; // as of scaling::print()
};

// A table per picture size, a row per function, a column per contestant; the summary; what a pixel
// costs over the sizes, or how threads scale.
class report : public benchmark::BenchmarkReporter {
public:
    report(report_settings settings, std::ostream &markdown, std::ostream &csv);

    bool ReportContext(const Context &) override;
    void ReportRuns(const std::vector<Run> &runs) override;
    void Finalize() override;

private:
    void add_cost(const std::string &picture, const std::string &function, const Run &run);

    report_settings settings_;
    std::vector<std::string> contestants_;
    summary summary_;
    flatness flatness_{};
    scaling scaling_{};
    std::ostream &markdown_;
    std::ostream &csv_;
    std::string picture_{}; // of the table that is being printed
};

// The processor with its caches, in a line; what has built this program.
std::string machine();
std::string compiler();

} // namespace lumalane::bench
