// Every function that exists, on every lane set, against its model.
#include <cstdio>
#include <ostream>

#include <gtest/gtest.h>

#include "tests/differential/differential.h"
#include "tests/lane_sets.h"

namespace differential {

// How GoogleTest shows the parameter of a test.
void PrintTo(const subject &s, std::ostream *out) { *out << s.name; }

} // namespace differential

namespace {

differential::options from_command_line;

class differential_test : public testing::TestWithParam<differential::subject> {};

TEST_P(differential_test, agrees_with_its_model) {
    std::vector<differential::target> targets;
    for (const lumalane::lane_set set : tests::runnable_lane_sets())
        for (const unsigned cache_bytes : {0u, 1u}) // everything is cached; everything outgrows it
            targets.push_back({tests::exported_functions(set), [=] {
                                   lumalane::force(set);
                                   lumalane::assume_last_level_cache(cache_bytes);
                               }});

    const differential::outcome result = differential::run(GetParam(), targets, from_command_line);

    EXPECT_EQ(result.failure, "");
    EXPECT_EQ(result.cases, from_command_line.cases);
    EXPECT_LE(result.redrawn, result.cases);
    for (const lumalane::lane_set set : tests::runnable_lane_sets())
        std::printf("%s, %s: %u cases in 3 layouts, with cached and with streamed stores "
                    "(%u redrawn)\n",
                    GetParam().name, tests::name_of(set).c_str(), result.cases, result.redrawn);
}

INSTANTIATE_TEST_SUITE_P(every, differential_test, testing::ValuesIn(differential::subjects()),
                         [](const auto &subject) { return subject.param.name; });

} // namespace

int main(int argc, char **argv) {
    testing::InitGoogleTest(&argc, argv);
    if (!differential::parse(argc, argv, from_command_line))
        return 2;
    std::printf("seed %llu\n", static_cast<unsigned long long>(from_command_line.seed));
    return RUN_ALL_TESTS();
}
