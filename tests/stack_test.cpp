// How much stack a call needs, in either order of the stores: each runs on a stack of its own, of which
// one then sees how far down it was written.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <utility>
#include <vector>

#include <ucontext.h>

#include "tests/differential/differential.h"
#include "tests/targets.h"

namespace {

constexpr std::size_t most = 16 * 1024; // as the header promises
constexpr unsigned char unused = 0xA5;

std::vector<unsigned char> stack(2 * most);
ucontext_t caller, callee;
std::function<void()> called;

// Bytes of the stack that were written, with those of the entry and the return.
std::size_t used_by(std::function<void()> function) {
    called = std::move(function);
    std::fill(stack.begin(), stack.end(), unused);
    getcontext(&callee);
    callee.uc_stack.ss_sp = stack.data();
    callee.uc_stack.ss_size = stack.size();
    callee.uc_link = &caller;
    makecontext(
        &callee, [] { called(); }, 0);
    swapcontext(&caller, &callee);
    const auto deepest =
        std::find_if(stack.begin(), stack.end(), [](unsigned char byte) { return byte != unused; });
    return static_cast<std::size_t>(stack.end() - deepest);
}

std::size_t *used; // by the call that needed most

template <auto function>
struct measured;

template <class... Arguments, void (*function)(Arguments...)>
struct measured<function> {
    static void call(Arguments... arguments) {
        *used = std::max(*used, used_by([&] { function(arguments...); }));
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
    const std::size_t entry = used_by([] {});
    ASSERT_LT(entry, 2048u);
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
    const differential::outcome result = differential::run(GetParam(), measured, {.cases = 20});
    EXPECT_EQ(result.failure, "");
    for (const order &o : orders) {
        EXPECT_GT(o.used, entry);
        EXPECT_LE(o.used - entry, most);
        std::printf("%s, %s%s: %zu bytes\n", GetParam().name, o.target->name,
                    o.in_order           ? ", in order"
                    : o.cache_bytes != 0 ? ", around the cache"
                                         : "",
                    o.used - entry);
    }
}

INSTANTIATE_TEST_SUITE_P(every, stack_test, testing::ValuesIn(differential::subjects()),
                         [](const auto &subject) { return subject.param.name; });

} // namespace
