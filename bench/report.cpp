#include "bench/report.h"

#include <fstream>
#include <iomanip>
#include <set>
#include <sstream>

namespace lumalane::bench {
namespace {

std::string fixed(double value, int decimals) {
    std::ostringstream stream;
    stream << std::fixed << std::setprecision(decimals) << value;
    return stream.str();
}

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

report::report(std::vector<std::string> contestants, std::ostream &markdown, std::ostream &csv)
    : contestants_(std::move(contestants)), markdown_(markdown), csv_(csv) {}

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
            head_of_table();
        }
        markdown_ << "| `" << function << '`';
        csv_ << picture << ',' << function;
        for (const std::string &contestant : contestants_) {
            const auto time = run.counters.find(contestant);
            if (time == run.counters.end()) {
                markdown_ << " | –";
                csv_ << ",,";
                continue;
            }
            const double times_ours = run.counters.at(quotient(contestant));
            markdown_ << " | " << fixed(time->second, 3);
            if (contestant != contestants_.front())
                markdown_ << " (" << fixed(times_ours, 2) << ')';
            csv_ << ',' << fixed(time->second, 5) << ',' << fixed(times_ours, 4);
        }
        markdown_ << " |" << std::endl;
        csv_ << std::endl;
    }
}

void report::head_of_table() {
    markdown_ << "\n### " << picture_ << "\n\n| Function";
    for (const std::string &contestant : contestants_)
        markdown_ << " | " << contestant;
    markdown_ << " |\n|---";
    for (std::size_t i = 0; i < contestants_.size(); ++i)
        markdown_ << "|---:";
    markdown_ << "|\n";
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
