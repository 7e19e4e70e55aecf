// What all measurements come to.
#pragma once

#include <map>
#include <ostream>
#include <string>
#include <vector>

namespace lumalane::bench {

// Who competes, in the order of the columns. The first build is what all others are compared with.
struct contestant_names {
    std::vector<std::string> builds; // of the library
    std::vector<std::string> peers;
    std::vector<std::string> yardsticks; // which do not do the same, the closest first

    std::vector<std::string> all() const;
};

// Quotients less than these are listed.
struct listed_below {
    double peers = 1;         // of the fastest peer
    double builds = 0.95;     // of other builds
    double yardsticks = 0.95; // of the closest yardstick where no peer takes part
};

class summary {
public:
    explicit summary(contestant_names names);

    // `quotients`: how many times as long as the first each of those who took part needed.
    void add(const std::string &picture, const std::string &family, const std::string &function,
             std::map<std::string, double> quotients);

    // A table of the geometric means and the least quotients; the same of the fastest peer for every
    // family; then the quotients that are less than the limits.
    void print(std::ostream &markdown, const listed_below &limits) const;

private:
    struct result {
        std::string picture, family, function;
        std::map<std::string, double> quotients;
    };

    // Of every picture, of every family if it is empty.
    std::vector<double> quotients(const std::string &column, const std::string &picture,
                                  const std::string &family) const;
    void print_means(std::ostream &markdown) const;
    void print_families(std::ostream &markdown) const;
    void list(std::ostream &markdown, const std::string &column, double below) const;

    contestant_names names_;
    std::vector<std::string> columns_;
    std::vector<std::string> pictures_{}, families_{};
    std::vector<result> results_{};
};

} // namespace lumalane::bench
