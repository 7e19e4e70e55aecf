// Every function that exists, on every target, against its model: with loops that run as far as the
// order of the stores cannot be observed, and with loops that are forced to take the promised order.
#include <cstdio>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/differential/differential.h"
#include "tests/targets.h"

namespace {

differential::options from_command_line;
const char *program;

class differential_test : public testing::TestWithParam<differential::subject> {};

// Every target that runs here, with everything cached and with everything outgrowing the cache.
std::vector<differential::target> runnable(bool in_order) {
    std::vector<differential::target> targets;
    for (const lumalane::target *target : tests::runnable_targets())
        for (const unsigned cache_bytes : {0u, 1u})
            targets.push_back({tests::exported_functions(*target),
                               [=] {
                                   lumalane::force(*target);
                                   lumalane::assume_last_level_cache(cache_bytes);
                                   lumalane::force_in_order(in_order);
                               },
                               std::string(cache_bytes == 0 ? "cached" : "non-temporal") +
                                   " stores, " +
                                   (in_order ? "forced in order" : "in the order decided on")});
    return targets;
}

// Runs `cases` cases of the function that is tested, from the case `first` on.
differential::outcome run(const std::vector<differential::target> &targets, unsigned first,
                          unsigned cases) {
    differential::options options = from_command_line;
    options.first += first;
    options.cases = cases;
    const differential::outcome result =
        differential::run(differential_test::GetParam(), targets, options);
    EXPECT_EQ(result.failure, "") << program << " --gtest_filter='*/"
                                  << differential_test::GetParam().name << "' --seed "
                                  << options.seed << " --first " << options.first + result.cases
                                  << " --cases 1";
    EXPECT_EQ(result.cases, cases);
    return result;
}

// The first eighth of the cases is run in both orders, which then agree with the same model.
TEST_P(differential_test, agrees_with_its_model) {
    const unsigned cases = from_command_line.cases, in_both_orders = (cases + 7) / 8;
    const std::vector<differential::target> decided = runnable(false);
    std::vector<differential::target> both = decided;
    for (const differential::target &in_order : runnable(true))
        both.push_back(in_order);
    const differential::outcome first = run(both, 0, in_both_orders);
    const differential::outcome rest = run(decided, in_both_orders, cases - in_both_orders);
    EXPECT_LE(first.redrawn + rest.redrawn, cases);
    std::printf("figure: differential-calls %llu\nfigure: differential-bytes %llu\n",
                first.calls + rest.calls, first.bytes + rest.bytes);

    for (const lumalane::target *target : tests::runnable_targets())
        std::printf("%s, %s: %u cases (%u redrawn), and %u forced in order, in 3 layouts, with "
                    "cached and with non-temporal stores\n",
                    GetParam().name, target->name, first.cases + rest.cases,
                    first.redrawn + rest.redrawn, first.cases);
}

INSTANTIATE_TEST_SUITE_P(every, differential_test, testing::ValuesIn(differential::subjects()),
                         [](const auto &subject) { return subject.param.name; });

} // namespace

int main(int argc, char **argv) {
    program = argv[0];
    testing::InitGoogleTest(&argc, argv);
    if (!differential::parse(argc, argv, from_command_line))
        return 2;
    std::printf("seed %llu\n", static_cast<unsigned long long>(from_command_line.seed));
    return RUN_ALL_TESTS();
}
