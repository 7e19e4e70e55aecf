// The library under test, one target at a time.
#pragma once

#include <cstdio>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "abi/targets.h"
#include "tests/functions.h"

namespace lumalane {

// How GoogleTest shows the parameter of a test.
inline void PrintTo(const target *target, std::ostream *out) { *out << target->name; }

} // namespace lumalane

namespace tests {

// Those that this processor runs. A line for each of the others, once.
inline std::vector<const lumalane::target *> runnable_targets() {
    static const auto runnable = [] {
        std::vector<const lumalane::target *> found;
        for (const lumalane::target &target : lumalane::targets())
            if (target.runs_here())
                found.push_back(&target);
            else
                std::printf("%s: skipped, this processor does not run it\n", target.name);
        return found;
    }();
    return runnable;
}

// The exported functions under the name of a target. They run the target that is in force.
inline function_table exported_functions(const lumalane::target &target) {
    return {
        target.name,
#define LUMALANE_EXPORT(signature, name) name,
#include "abi/exports.inc"
#undef LUMALANE_EXPORT
    };
}

// A test that runs on every target.
class on_each_target : public testing::TestWithParam<const lumalane::target *> {
protected:
    void SetUp() override { lumalane::force(*GetParam()); }
};

#define INSTANTIATE_ON_EACH_TARGET(test)                                                           \
    INSTANTIATE_TEST_SUITE_P(targets, test, testing::ValuesIn(tests::runnable_targets()),          \
                             [](const auto &target) { return target.param->name; })

} // namespace tests
