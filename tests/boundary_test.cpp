// Every function, on every target, called by the worst caller that the library may have.
#include <gtest/gtest.h>

#include "tests/boundary/hostile_call.h"
#include "tests/targets.h"

namespace {

class boundary_test : public tests::on_each_target {};

constexpr unsigned cases = 12;

TEST_P(boundary_test, bears_hostile_callers) {
    const unsigned long long before = boundary::calls_so_far().calls;
    const auto callers = boundary::hostile_callers(tests::exported_functions(*GetParam()));
    for (const differential::subject &subject : differential::subjects())
        EXPECT_EQ(differential::run(subject, callers, {.cases = cases}).failure, "");
    EXPECT_EQ(boundary::calls_so_far().complaint, "");
    EXPECT_GT(boundary::calls_so_far().calls, before);
    std::printf("figure: hostile-calls %llu\n", boundary::calls_so_far().calls - before);
}

INSTANTIATE_ON_EACH_TARGET(boundary_test);

} // namespace
