#include "bench/flatness.h"

#include "bench/table.h"

#include <algorithm>

namespace lumalane::bench {
namespace {

bool takes_less(const pixel_cost &a, const pixel_cost &b) { return a.nanoseconds < b.nanoseconds; }

std::string bound(const pixel_cost &slowest, const pixel_cost &smallest_picture) {
    const std::string by = slowest.share_of_copy() >= memory_bound ? "the memory"
                           : &slowest == &smallest_picture         ? "what each call and row costs"
                                                                   : "not the memory alone";
    return by + " bounds it at " + slowest.picture + ", where it moves " + fixed(slowest.bytes, 2) +
           " bytes per pixel at " + fixed(slowest.rate(), 1) + " GB/s and memcpy " +
           fixed(slowest.copy_rate(), 1) + " GB/s.";
}

} // namespace

void flatness::add(const std::string &function, const pixel_cost &cost) {
    const auto found = std::find_if(entries_.begin(), entries_.end(),
                                    [&](const entry &known) { return known.function == function; });
    entry &known = found == entries_.end() ? entries_.emplace_back(entry{function, {}}) : *found;
    known.costs.push_back(cost);
}

bool flatness::compares() const {
    return std::any_of(entries_.begin(), entries_.end(),
                       [](const entry &known) { return known.costs.size() > 1; });
}

void flatness::print(std::ostream &markdown, double most) const {
    if (!compares())
        return;
    print_head(markdown, "Function",
               {"greatest / smallest", "least ns", "at", "greatest ns", "at", "bytes per pixel",
                "GB/s there", "memcpy's GB/s", "of memcpy's"});
    std::vector<std::string> sentences;
    for (const entry &known : entries_) {
        const auto [least, greatest] =
            std::minmax_element(known.costs.begin(), known.costs.end(), takes_less);
        const double ratio = greatest->nanoseconds / least->nanoseconds;
        print_row(markdown, '`' + known.function + '`',
                  {fixed(ratio, 2), fixed(least->nanoseconds, 3), least->picture,
                   fixed(greatest->nanoseconds, 3), greatest->picture, fixed(greatest->bytes, 2),
                   fixed(greatest->rate(), 1), fixed(greatest->copy_rate(), 1),
                   fixed(greatest->share_of_copy(), 2)});
        if (ratio > most)
            sentences.push_back('`' + known.function + "`, " + fixed(ratio, 2) +
                                " times: " + bound(*greatest, known.costs.front()));
    }
    markdown << '\n' << sentences.size() << " above " << fixed(most, 1) << '\n';
    if (!sentences.empty())
        markdown << '\n';
    for (const std::string &sentence : sentences)
        markdown << "- " << sentence << '\n';
}

} // namespace lumalane::bench
