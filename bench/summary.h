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
    std::vector<std::string> yardsticks; // which do not do the same

    std::vector<std::string> all() const;
};

class summary {
public:
    explicit summary(contestant_names names);

    // `quotients`: how many times as long as the first each of those who took part needed.
    void add(const std::string &picture, const std::string &function,
             std::map<std::string, double> quotients);

    // A table of the geometric means and the least quotients, then the quotients of other builds
    // and of the fastest peer that are less than `below`.
    void print(std::ostream &markdown, double below) const;

private:
    struct result {
        std::string picture, function;
        std::map<std::string, double> quotients;
    };

    // Of every picture if it is empty.
    std::vector<double> quotients(const std::string &column, const std::string &picture) const;
    void list(std::ostream &markdown, double below) const;

    contestant_names names_;
    std::vector<std::string> columns_;
    std::vector<std::string> pictures_{};
    std::vector<result> results_{};
};

} // namespace lumalane::bench
