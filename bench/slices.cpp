#include "bench/slices.h"

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

std::vector<slice> cut(int height, slicing how, int count) {
    if (!can_be_cut(how))
        return {{0, height}};
    const int step = how == slicing::field ? 4 : 2;
    const int steps = (height + step - 1) / step;
    std::vector<slice> slices;
    for (int i = 0, first = 0; i < count; ++i) {
        const int end = i + 1 == count ? height : step * int(long(steps) * (i + 1) / count);
        if (end > first)
            slices.push_back({first, end - first});
        first = end;
    }
    return slices;
}

} // namespace lumalane::bench
