#include "bench/summary.h"

#include "bench/contest.h"
#include "bench/table.h"

#include <algorithm>

namespace lumalane::bench {
namespace {

constexpr char fastest_peer[] = "fastest peer";

// The quotient of the closest yardstick where no peer takes part.
constexpr char without_peers[] = "closest yardstick, where there is no peer";

double least(const std::vector<double> &values) {
    return *std::min_element(values.begin(), values.end());
}

void add_once(std::vector<std::string> &names, const std::string &name) {
    if (std::find(names.begin(), names.end(), name) == names.end())
        names.push_back(name);
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

void summary::add(const std::string &picture, const std::string &family,
                  const std::string &function, std::map<std::string, double> quotients) {
    std::vector<double> of_peers;
    for (const std::string &peer : names_.peers)
        if (const auto found = quotients.find(peer); found != quotients.end())
            of_peers.push_back(found->second);
    if (!of_peers.empty())
        quotients[fastest_peer] = least(of_peers);
    else
        for (const std::string &yardstick : names_.yardsticks)
            if (const auto found = quotients.find(yardstick); found != quotients.end()) {
                quotients[without_peers] = found->second;
                break;
            }
    add_once(pictures_, picture);
    add_once(families_, family);
    results_.push_back({picture, family, function, std::move(quotients)});
}

std::vector<double> summary::quotients(const std::string &column, const std::string &picture,
                                       const std::string &family) const {
    std::vector<double> found;
    for (const result &measured : results_) {
        const auto quotient = measured.quotients.find(column);
        if (quotient != measured.quotients.end() &&
            (picture.empty() || picture == measured.picture) &&
            (family.empty() || family == measured.family))
            found.push_back(quotient->second);
    }
    return found;
}

void summary::print(std::ostream &markdown, const listed_below &limits) const {
    if (columns_.empty())
        return;
    print_means(markdown);
    if (!names_.peers.empty())
        print_families(markdown);
    if (!names_.peers.empty())
        list(markdown, fastest_peer, limits.peers);
    if (!names_.yardsticks.empty())
        list(markdown, without_peers, limits.yardsticks);
    for (auto build = names_.builds.begin() + 1; build != names_.builds.end(); ++build)
        list(markdown, *build, limits.builds);
}

void summary::print_means(std::ostream &markdown) const {
    print_head(markdown, "Times as long as " + names_.builds.front(), columns_);
    const auto row = [&](const std::string &title, const std::string &picture,
                         double (*sum_up)(const std::vector<double> &)) {
        std::vector<std::string> cells;
        for (const std::string &column : columns_) {
            const std::vector<double> values = quotients(column, picture, "");
            cells.push_back(values.empty() ? empty_cell : fixed(sum_up(values), 3));
        }
        print_row(markdown, title, cells);
    };
    for (const std::string &picture : pictures_)
        row("Geometric mean of " + picture, picture, geometric_mean);
    row("Geometric mean of all", "", geometric_mean);
    row("Least", "", least);
}

void summary::print_families(std::ostream &markdown) const {
    std::vector<std::string> heads = pictures_;
    heads.insert(heads.end(), {"all", "least", "measurements"});
    markdown << "\nThe fastest peer, by family: geometric means\n\n";
    print_head(markdown, "Times as long as " + names_.builds.front(), heads);
    const auto row = [&](const std::string &title, const std::string &family) {
        const std::vector<double> all = quotients(fastest_peer, "", family);
        if (all.empty())
            return;
        std::vector<std::string> cells;
        for (const std::string &picture : pictures_) {
            const std::vector<double> values = quotients(fastest_peer, picture, family);
            cells.push_back(values.empty() ? empty_cell : fixed(geometric_mean(values), 2));
        }
        cells.push_back(fixed(geometric_mean(all), 2));
        cells.push_back(fixed(least(all), 2));
        cells.push_back(std::to_string(all.size()));
        print_row(markdown, title, cells);
    };
    for (const std::string &family : families_)
        row(family, family);
    row("All", "");
}

void summary::list(std::ostream &markdown, const std::string &column, double below) const {
    std::vector<std::pair<double, std::string>> found;
    for (const result &measured : results_)
        if (const auto quotient = measured.quotients.find(column);
            quotient != measured.quotients.end() && quotient->second < below)
            found.emplace_back(quotient->second, measured.picture + " `" + measured.function + '`');
    std::sort(found.begin(), found.end());
    markdown << "\n" << column << ": " << found.size() << " below " << fixed(below, 2) << "\n";
    if (!found.empty())
        markdown << '\n';
    for (const auto &[quotient, measurement] : found)
        markdown << "- " << fixed(quotient, 3) << ' ' << measurement << '\n';
}

} // namespace lumalane::bench
