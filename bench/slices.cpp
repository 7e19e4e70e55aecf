#include "bench/slices.h"

#include <algorithm>

namespace lumalane::bench {

bool can_be_cut(slicing how) {
    return how != slicing::planes_by_height && how != slicing::last_rows_differ;
}

std::string reason_not_to_cut(slicing how) {
    switch (how) {
    case slicing::planes_by_height:
        return "the height tells where the planes of the surface are";
    case slicing::last_rows_differ:
        return "the last rows of a call are made otherwise than those before";
    default:
        return "";
    }
}

std::vector<std::vector<slice>> share(int height, slicing how, int threads, slice busy) {
    if (!can_be_cut(how))
        return {{{0, height}}};
    const int step = how == slicing::field ? 4 : 2;
    const auto is_busy = [&](int row) {
        return row + step > busy.first && row < busy.first + busy.rows;
    };
    int alike[2] = {}, dealt[2] = {};
    for (int row = 0; row < height; row += step)
        ++alike[is_busy(row)];
    std::vector<std::vector<slice>> shares(threads);
    for (int row = 0; row < height; row += step) {
        const bool kind = is_busy(row);
        std::vector<slice> &slices = shares[long(threads) * dealt[kind]++ / alike[kind]];
        const int rows = std::min(step, height - row);
        if (!slices.empty() && slices.back().first + slices.back().rows == row)
            slices.back().rows += rows;
        else
            slices.push_back({row, rows});
    }
    shares.erase(std::remove_if(shares.begin(), shares.end(),
                                [](const std::vector<slice> &slices) { return slices.empty(); }),
                 shares.end());
    return shares;
}

} // namespace lumalane::bench
