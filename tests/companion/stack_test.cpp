// How much stack convert(), blend() and stretch() need, with what the functions need in them.
#include "tests/companion/comparison.h"
#include "tests/companion/machine.h"
#include "tests/own_stack.h"

namespace companion {
namespace {

using lumalane::format;

constexpr std::size_t most = 40 * 1024; // as the header promises

struct size {
    int width, height;
};
constexpr size sizes[] = {
    {1, 1}, {70, 9}, {301, 131}, {1366, 34}}; // off the step, and rows of strips

class stack_test : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override { force_target(GetParam()); }
    void TearDown() override { store_around_cache(false); }

    // What `call(source, destination, adjustment)` needs, with and without one, where surfaces are stored
    // in the cache and around it.
    template <class Call>
    void measure(format from, format to, size source_size, size made_size, const Call &call) {
        for (const int gap : {0, 5})
            for (const bool around_cache : {false, true})
                for (const optional_adjustment &by : adjustments) {
                    store_around_cache(around_cache);
                    const lumalane::picture source = source_memory.lay_out(
                        from, source_size.width, source_size.height, {gap, false, true});
                    const lumalane::picture made = destination_memory.lay_out(
                        to, made_size.width, made_size.height, {gap, gap != 0, true});
                    lumalane::status status{};
                    const std::size_t needed =
                        stack.used_by([&] { status = call(source, made, by); });
                    if (status.code == lumalane::error::unsupported_formats)
                        continue;
                    ASSERT_TRUE(status) << message_of(status.code);
                    ASSERT_LE(needed, most)
                        << name_of(from) << " to " << name_of(to) << ", " << source_size.width
                        << "x" << source_size.height << (by ? ", adjusted" : "")
                        << (around_cache ? ", around the cache" : "");
                    greatest = std::max(greatest, needed);
                    ++measured;
                }
    }

    // Tells the most that was needed, and that so many pairs of formats were served.
    void finish(std::size_t pairs) const {
        EXPECT_EQ(measured, pairs * std::size(sizes) * 8);
        std::printf("%s: %zu bytes\n", GetParam().c_str(), greatest);
    }

    tests::own_stack stack{2 * most};
    guarded_planes source_memory, destination_memory, subpicture_memory;
    std::size_t greatest = 0, measured = 0;
};

TEST_P(stack_test, conversions_need_no_more_than_promised) {
    for (const format from : formats)
        for (const format to : formats)
            for (const size s : sizes)
                ASSERT_NO_FATAL_FAILURE(
                    measure(from, to, s, s,
                            [](const lumalane::picture &source, const lumalane::picture &made,
                               const optional_adjustment &by) {
                                return by ? convert(source, made, *by) : convert(source, made);
                            }));
    finish(25);
}

TEST_P(stack_test, blends_need_no_more_than_promised) {
    for (const format from : formats)
        for (const format to : formats)
            for (const size s : sizes) {
                const auto plane = [&](int i, int width) {
                    return subpicture_memory.lay_out_plane(i, width, s.height, {3, false, true});
                };
                const int half = (s.width + 1) / 2;
                const lumalane::subpicture over{s.width,           s.height,
                                                plane(0, s.width), plane(1, s.width),
                                                plane(2, half),    plane(3, half)};
                ASSERT_NO_FATAL_FAILURE(
                    measure(from, to, s, s,
                            [&](const lumalane::picture &video, const lumalane::picture &made,
                                const optional_adjustment &by) {
                                return by ? blend(video, over, s.width / 3, 0, made, *by)
                                          : blend(video, over, s.width / 3, 0, made);
                            }));
            }
    finish(18);
}

TEST_P(stack_test, stretches_need_no_more_than_promised) {
    using lumalane::stretching;
    for (const stretching how :
         {stretching::twice_height, stretching::twice_both, stretching::along_edges})
        for (const format from : formats)
            for (const format to : formats)
                for (const size s : sizes)
                    ASSERT_NO_FATAL_FAILURE(measure(
                        from, to, s,
                        {how == stretching::twice_both ? 2 * s.width : s.width, 2 * s.height},
                        [how](const lumalane::picture &source, const lumalane::picture &made,
                              const optional_adjustment &by) {
                            return by ? stretch(source, made, how, *by)
                                      : stretch(source, made, how);
                        }));
    finish(27);
}

INSTANTIATE_TEST_SUITE_P(targets, stack_test, testing::ValuesIn(runnable_targets()),
                         [](const auto &target) { return target.param; });

} // namespace
} // namespace companion
