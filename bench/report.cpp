#include "bench/report.h"

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

report::report(const contestant_names &names, double below, std::ostream &markdown,
               std::ostream &csv)
    : contestants_(names.all()), summary_(names), below_(below), markdown_(markdown), csv_(csv) {}

bool report::ReportContext(const Context &) {
    csv_ << "picture,function";
    for (const std::string &contestant : contestants_)
        csv_ << ',' << contestant << ',' << quotient(contestant);
    csv_ << '\n';
    return true;
}

void report::ReportRuns(const std::vector<Run> &runs) {
    for (const Run &run : runs) {
        if (run.error_occurred) {
            GetErrorStream() << run.benchmark_name() << ": " << run.error_message << '\n';
            continue;
        }
        const std::string &name = run.run_name.function_name;
        const std::string picture = name.substr(0, name.find('/'));
        const std::string function = name.substr(name.find('/') + 1);
        if (picture != picture_) {
            picture_ = picture;
            markdown_ << "\n### " << picture << "\n\n";
            print_head(markdown_, "Function", contestants_);
        }
        std::vector<std::string> cells;
        std::map<std::string, double> quotients;
        csv_ << picture << ',' << function;
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
        summary_.add(picture, function, std::move(quotients));
    }
}

void report::Finalize() {
    markdown_ << "\n### Summary\n\n";
    summary_.print(markdown_, below_);
}

std::string machine() {
    std::string text = processor();
    for (const auto &cache : benchmark::CPUInfo::Get().caches)
        if (cache.type != "Instruction")
            text += ", L" + std::to_string(cache.level) + ' ' + std::to_string(cache.size / 1024) +
                    " KiB";
#ifdef __clang__
    return text + "; built by clang " + __clang_version__;
#else
    return text + "; built by gcc " + __VERSION__;
#endif
}

} // namespace lumalane::bench
