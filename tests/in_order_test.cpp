// Forcing the promised order takes effect: every function then calls its row kernels for shorter
// runs. (That both orders make the same bytes is what differential_test.cpp tests.)
#include <cstdio>

#include "tests/differential/differential.h"
#include "tests/targets.h"

namespace {

// Of row kernels.
unsigned long calls;

template <auto kernel>
struct counted;

template <class Result, class... Arguments, Result (*lumalane::row_kernels::*kernel)(Arguments...)>
struct counted<kernel> {
    static Result call(Arguments... arguments) {
        ++calls;
        return (lumalane::targets().begin()->rows.*kernel)(arguments...);
    }
};

// The first target, which runs everywhere.
const lumalane::row_kernels counted_rows = {
    "counted",
    lumalane::targets().begin()->rows.vector_bytes,
    lumalane::targets().begin()->rows.vector_registers,
    lumalane::targets().begin()->rows.streamed_bytes,
    lumalane::targets().begin()->rows.filters_pairs,
#define LUMALANE_ROW_KERNEL(kind, name, ...) counted<&lumalane::row_kernels::name>::call,
#include "rows/rows.inc"
#undef LUMALANE_ROW_KERNEL
};

const lumalane::target counted_target = {"counted", counted_rows, [] { return true; }, [] {}};

unsigned long calls_made(const differential::subject &subject, bool in_order) {
    calls = 0;
    const differential::outcome result =
        differential::run(subject,
                          {{tests::exported_functions(counted_target),
                            [=] {
                                lumalane::force(counted_target);
                                lumalane::force_in_order(in_order);
                            }}},
                          {.cases = 60});
    EXPECT_EQ(result.failure, "");
    return calls;
}

class in_order_test : public testing::TestWithParam<differential::subject> {};

TEST_P(in_order_test, makes_more_and_shorter_runs) {
    const unsigned long decided = calls_made(GetParam(), false);
    const unsigned long forced = calls_made(GetParam(), true);
    EXPECT_GT(decided, 0u);
    EXPECT_GT(forced, decided);
    std::printf("%s: %lu calls of row kernels, in order %lu\n", GetParam().name, decided, forced);
}

INSTANTIATE_TEST_SUITE_P(every, in_order_test, testing::ValuesIn(differential::subjects()),
                         [](const auto &subject) { return subject.param.name; });

} // namespace
