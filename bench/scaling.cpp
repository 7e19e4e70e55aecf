#include "bench/scaling.h"

#include "bench/contest.h"
#include "bench/table.h"

#include <algorithm>

namespace lumalane::bench {

void scaling::add(const std::string &function, const pixel_cost &one_thread, double times_as_fast) {
    const double share = one_thread.share_of_copy();
    (share >= memory_bound ? by_memory_ : by_arithmetic_)
        .push_back({one_thread.picture, function, times_as_fast, share});
}

void scaling::print(std::ostream &markdown, double wanted) const {
    markdown << "Bound by arithmetic, as it moves less than " << fixed(memory_bound, 2)
             << " of the bytes per second that memcpy does:\n\n";
    print_head(markdown, "Picture", {"functions", "geometric mean", "least", "bound by memory"});
    std::vector<std::string> pictures;
    for (const std::vector<result> *results : {&by_arithmetic_, &by_memory_})
        for (const result &measured : *results)
            if (std::find(pictures.begin(), pictures.end(), measured.picture) == pictures.end())
                pictures.push_back(measured.picture);
    for (const std::string &picture : pictures) {
        std::vector<double> values;
        for (const result &measured : by_arithmetic_)
            if (measured.picture == picture)
                values.push_back(measured.times_as_fast);
        const auto others =
            std::count_if(by_memory_.begin(), by_memory_.end(),
                          [&](const result &measured) { return measured.picture == picture; });
        const bool none = values.empty();
        print_row(markdown, picture,
                  {std::to_string(values.size()),
                   none ? empty_cell : fixed(geometric_mean(values), 2),
                   none ? empty_cell : fixed(*std::min_element(values.begin(), values.end()), 2),
                   std::to_string(others)});
    }

    std::vector<result> slow = by_arithmetic_;
    slow.erase(std::remove_if(slow.begin(), slow.end(),
                              [&](const result &m) { return m.times_as_fast >= wanted; }),
               slow.end());
    std::stable_sort(slow.begin(), slow.end(), [](const result &a, const result &b) {
        return a.times_as_fast < b.times_as_fast;
    });
    markdown << '\n' << slow.size() << " of them below " << fixed(wanted, 2) << '\n';
    if (!slow.empty())
        markdown << '\n';
    for (const result &measured : slow)
        markdown << "- " << fixed(measured.times_as_fast, 3) << ' ' << measured.picture << " `"
                 << measured.function << "`, " << fixed(measured.share_of_copy, 2)
                 << " of memcpy's rate\n";
}

} // namespace lumalane::bench
