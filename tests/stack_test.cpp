// How much stack a call needs, in either order of the stores.
#include <algorithm>
#include <cstdio>
#include <utility>
#include <vector>

#include "tests/differential/differential.h"
#include "tests/own_stack.h"
#include "tests/targets.h"

namespace {

constexpr std::size_t most = 16 * 1024; // as the header promises
tests::own_stack stack(2 * most);
std::size_t *used; // by the call that needed most

template <auto function>
struct measured;

template <class... Arguments, void (*function)(Arguments...)>
struct measured<function> {
    static void call(Arguments... arguments) {
        *used = std::max(*used, stack.used_by([&] { function(arguments...); }));
    }
};

const tests::function_table measured_functions = {
    "measured",
#define LUMALANE_EXPORT(signature, name) measured<name>::call,
#include "abi/exports.inc"
#undef LUMALANE_EXPORT
};

class stack_test : public testing::TestWithParam<differential::subject> {};

TEST_P(stack_test, calls_need_no_more_than_promised) {
    struct order {
        const lumalane::target *target;
        bool in_order;
        unsigned cache_bytes; // with 1 surfaces are stored around the cache
        std::size_t used = 0;
    };
    std::vector<order> orders;
    for (const lumalane::target *target : tests::runnable_targets())
        for (const auto &[in_order, cache_bytes] :
             {std::pair{false, 0u}, std::pair{false, 1u}, std::pair{true, 0u}})
            orders.push_back({target, in_order, cache_bytes});
    std::vector<differential::target> measured;
    for (order &o : orders)
        measured.push_back({measured_functions, [&o] {
                                lumalane::force(*o.target);
                                lumalane::force_in_order(o.in_order);
                                lumalane::assume_last_level_cache(o.cache_bytes);
                                used = &o.used;
                            }});
    const differential::outcome result = differential::run(GetParam(), measured, {.cases = 60});
    EXPECT_EQ(result.failure, "");
    for (const order &o : orders) {
        EXPECT_GT(o.used, 0u);
        EXPECT_LE(o.used, most);
        std::printf("%s, %s%s: %zu bytes\n", GetParam().name, o.target->name,
                    o.in_order           ? ", in order"
                    : o.cache_bytes != 0 ? ", around the cache"
                                         : "",
                    o.used);
    }
}

INSTANTIATE_TEST_SUITE_P(every, stack_test, testing::ValuesIn(differential::subjects()),
                         [](const auto &subject) { return subject.param.name; });

} // namespace
