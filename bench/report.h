// What the benchmark prints: Markdown for people, CSV for the chart.
#pragma once

#include "bench/summary.h"

#include <benchmark/benchmark.h>

#include <ostream>
#include <string>
#include <vector>

namespace lumalane::bench {

// A measurement is named "320x240/function". Its counters are nanoseconds per pixel, under the name
// of the contestant, and the quotient to the time of the first contestant, under quotient(name).
std::string quotient(const std::string &contestant);

// A table per picture size, a row per function, a column per contestant; then the summary.
class report : public benchmark::BenchmarkReporter {
public:
    // `below`: as of summary::print().
    report(const contestant_names &names, double below, std::ostream &markdown, std::ostream &csv);

    bool ReportContext(const Context &) override;
    void ReportRuns(const std::vector<Run> &runs) override;
    void Finalize() override;

private:
    std::vector<std::string> contestants_;
    summary summary_;
    double below_;
    std::ostream &markdown_;
    std::ostream &csv_;
    std::string picture_{}; // of the table that is being printed
};

// One line: the processor with its caches, the compiler.
std::string machine();

} // namespace lumalane::bench
