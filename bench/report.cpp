#include "bench/report.h"

#include "bench/jobs.h"
#include "bench/moved.h"
#include "bench/table.h"

#include <algorithm>
#include <fstream>
#include <map>

namespace lumalane::bench {
namespace {

// "AMD EPYC, family 25, model 17": the first processor's entry ends with an empty line.
std::string processor() {
    std::string family, model, name;
    std::ifstream facts("/proc/cpuinfo");
    for (std::string line; std::getline(facts, line) && !line.empty();) {
        const std::string key = line.substr(0, line.find('\t'));
        const std::string value = line.substr(std::min(line.find(':') + 2, line.size()));
        if (key == "model name")
            name = value;
        else if (key == "cpu family")
            family = ", family " + value;
        else if (key == "model")
            model = ", model " + value;
    }
    return name + family + model;
}

} // namespace

std::string quotient(const std::string &contestant) { return contestant + " quotient"; }

report::report(report_settings settings, std::ostream &markdown, std::ostream &csv)
    : settings_(std::move(settings)), contestants_(settings_.names.all()),
      summary_(settings_.names), markdown_(markdown), csv_(csv) {}

bool report::ReportContext(const Context &) {
    csv_ << "# " << settings_.conditions << "\npicture,family,function";
    for (const std::string &contestant : contestants_)
        csv_ << ",\"" << contestant << "\",\"" << quotient(contestant) << '"';
    csv_ << '\n';
    return true;
}

void report::ReportRuns(const std::vector<Run> &runs) {
    for (const Run &run : runs) {
        const std::string &name = run.run_name.function_name;
        const std::string picture = name.substr(0, name.find('/'));
        const std::string function = name.substr(name.find('/') + 1);
        const std::string family = find_job(function)->family;
        if (picture != picture_) {
            picture_ = picture;
            markdown_ << "\n### " << picture << "\n\n";
            print_head(markdown_, "Function", contestants_);
        }
        std::vector<std::string> cells;
        std::map<std::string, double> quotients;
        csv_ << picture << ",\"" << family << "\"," << function;
        for (const std::string &contestant : contestants_) {
            const auto time = run.counters.find(contestant);
            if (time == run.counters.end()) {
                cells.push_back(empty_cell);
                csv_ << ",,";
                continue;
            }
            const double times_ours = run.counters.at(quotient(contestant));
            quotients[contestant] = times_ours;
            cells.push_back(fixed(time->second, 3));
            if (contestant != contestants_.front())
                cells.back() += " (" + fixed(times_ours, 2) + ')';
            csv_ << ',' << fixed(time->second, 5) << ',' << fixed(times_ours, 4);
        }
        print_row(markdown_, '`' + function + '`', cells);
        csv_ << std::endl;
        summary_.add(picture, family, function, std::move(quotients));
        add_cost(picture, function, run);
    }
}

void report::add_cost(const std::string &picture, const std::string &function, const Run &run) {
    if (settings_.copy.empty())
        return;
    const job &job = *find_job(function);
    const std::string &one_thread = settings_.one_thread;
    const std::string &build = one_thread.empty() ? contestants_.front() : one_thread;
    const pixel_cost cost{picture, run.counters.at(build), bytes_moved_per_pixel(job),
                          run.counters.at(settings_.copy), 2 * job.bytes_per_pixel};
    if (one_thread.empty())
        flatness_.add(function, cost);
    else
        scaling_.add(function, cost, run.counters.at(quotient(one_thread)));
}

void report::Finalize() {
    markdown_ << "\n### Summary\n\n";
    summary_.print(markdown_, settings_.limits);
    if (settings_.copy.empty())
        return;
    if (flatness_.compares()) {
        markdown_ << "\n### The time of a pixel over the sizes of pictures\n\n";
        flatness_.print(markdown_, settings_.flat);
    }
    if (!settings_.one_thread.empty()) {
        markdown_ << "\n### Threads\n\n";
        scaling_.print(markdown_, settings_.scaled);
    }
}

std::string machine() {
    std::string text = processor();
    for (const auto &cache : benchmark::CPUInfo::Get().caches)
        if (cache.type != "Instruction")
            text += ", L" + std::to_string(cache.level) + ' ' + std::to_string(cache.size / 1024) +
                    " KiB";
    return text;
}

std::string compiler() {
#ifdef __clang__
    return std::string("clang ") + __clang_version__;
#else
    return std::string("gcc ") + __VERSION__;
#endif
}

} // namespace lumalane::bench
