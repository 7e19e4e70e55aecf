#include "bench/summary.h"

#include "bench/contest.h"
#include "bench/table.h"

#include <algorithm>

namespace lumalane::bench {
namespace {

constexpr char fastest_peer[] = "fastest peer";

double least(const std::vector<double> &values) {
    return *std::min_element(values.begin(), values.end());
}

} // namespace

std::vector<std::string> contestant_names::all() const {
    std::vector<std::string> names = builds;
    names.insert(names.end(), peers.begin(), peers.end());
    names.insert(names.end(), yardsticks.begin(), yardsticks.end());
    return names;
}

summary::summary(contestant_names names) : names_(std::move(names)), columns_(names_.all()) {
    columns_.erase(columns_.begin());
    if (!names_.peers.empty())
        columns_.push_back(fastest_peer);
}

void summary::add(const std::string &picture, const std::string &function,
                  std::map<std::string, double> quotients) {
    std::vector<double> of_peers;
    for (const std::string &peer : names_.peers)
        if (const auto found = quotients.find(peer); found != quotients.end())
            of_peers.push_back(found->second);
    if (!of_peers.empty())
        quotients[fastest_peer] = least(of_peers);
    if (std::find(pictures_.begin(), pictures_.end(), picture) == pictures_.end())
        pictures_.push_back(picture);
    results_.push_back({picture, function, std::move(quotients)});
}

std::vector<double> summary::quotients(const std::string &column,
                                       const std::string &picture) const {
    std::vector<double> found;
    for (const result &measured : results_) {
        const auto quotient = measured.quotients.find(column);
        if (quotient != measured.quotients.end() &&
            (picture.empty() || picture == measured.picture))
            found.push_back(quotient->second);
    }
    return found;
}

void summary::print(std::ostream &markdown, double below) const {
    if (columns_.empty())
        return;
    print_head(markdown, "Times as long as " + names_.builds.front(), columns_);
    const auto row = [&](const std::string &title, const std::string &picture,
                         double (*sum_up)(const std::vector<double> &)) {
        std::vector<std::string> cells;
        for (const std::string &column : columns_) {
            const std::vector<double> values = quotients(column, picture);
            cells.push_back(values.empty() ? empty_cell : fixed(sum_up(values), 3));
        }
        print_row(markdown, title, cells);
    };
    for (const std::string &picture : pictures_)
        row("Geometric mean of " + picture, picture, geometric_mean);
    row("Geometric mean of all", "", geometric_mean);
    row("Least", "", least);
    list(markdown, below);
}

void summary::list(std::ostream &markdown, double below) const {
    std::vector<std::string> listed(names_.builds.begin() + 1, names_.builds.end());
    if (!names_.peers.empty())
        listed.push_back(fastest_peer);
    for (const std::string &column : listed) {
        std::vector<std::pair<double, std::string>> found;
        for (const result &measured : results_)
            if (const auto quotient = measured.quotients.find(column);
                quotient != measured.quotients.end() && quotient->second < below)
                found.emplace_back(quotient->second,
                                   measured.picture + " `" + measured.function + '`');
        std::sort(found.begin(), found.end());
        markdown << "\n" << column << ": " << found.size() << " below " << fixed(below, 2) << "\n";
        if (!found.empty())
            markdown << '\n';
        for (const auto &[quotient, measurement] : found)
            markdown << "- " << fixed(quotient, 3) << ' ' << measurement << '\n';
    }
}

} // namespace lumalane::bench
