// The library under test, one lane set at a time.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "frame/dispatch.h"

namespace lumalane {

// How GoogleTest shows the parameter of a test.
inline void PrintTo(lane_set set, std::ostream *out) {
    force(set);
    *out << kernels().name;
}

} // namespace lumalane

namespace tests {

// Those that this processor runs.
inline std::vector<lumalane::lane_set> runnable_lane_sets() {
    std::vector<lumalane::lane_set> sets;
    for (const lumalane::lane_set set : lumalane::all_lane_sets)
        if (lumalane::can_run(set))
            sets.push_back(set);
    return sets;
}

inline std::string name_of(lumalane::lane_set set) {
    lumalane::force(set);
    return lumalane::kernels().name;
}

// The exported functions under the name of the set. They run the set that is in force.
inline lumalane::kernel_table exported_functions(lumalane::lane_set set) {
    lumalane::force(set);
    return {
        lumalane::kernels().name,
#define LUMALANE_EXPORT(signature, name) name,
#include "frame/exports.inc"
#undef LUMALANE_EXPORT
    };
}

// A test that runs on every lane set.
class on_each_lane_set : public testing::TestWithParam<lumalane::lane_set> {
protected:
    void SetUp() override { lumalane::force(GetParam()); }
};

#define INSTANTIATE_ON_EACH_LANE_SET(test)                                                         \
    INSTANTIATE_TEST_SUITE_P(lanes, test, testing::ValuesIn(tests::runnable_lane_sets()),          \
                             [](const auto &set) { return tests::name_of(set.param); })

} // namespace tests
