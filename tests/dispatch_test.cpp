// The target that this processor takes: that of the argument, `--expect NAME`, or without one that
// which the compiler's own questions to the processor lead to.
#include <cstring>
#include <string>

#include "tests/targets.h"

namespace {

std::string expected;

// What is shipped for this word size, by the compiler's runtime.
std::string widest_by_the_compiler() {
#if defined(__x86_64__)
    const bool avx512 = __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
                        __builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("avx512vbmi");
    return avx512 ? "avx512" : __builtin_cpu_supports("avx2") ? "avx2" : "sse2";
#elif defined(__i386__)
    return __builtin_cpu_supports("avx2")   ? "avx2"
           : __builtin_cpu_supports("sse2") ? "sse2"
                                            : "mmx";
#elif defined(__aarch64__)
    return "neon";
#else
    return "portable";
#endif
}

TEST(dispatch, takes_the_widest_target_of_this_processor) {
    const lumalane::target &taken = lumalane::current_target();
    EXPECT_EQ(taken.name, expected);
    EXPECT_EQ(std::string(taken.rows.target), taken.name);
    EXPECT_TRUE(taken.runs_here());
    // The processor is asked once.
    EXPECT_EQ(&lumalane::current_target(), &taken);
    std::printf("takes %s\n", taken.name);
}

} // namespace

int main(int argc, char **argv) {
    testing::InitGoogleTest(&argc, argv);
    expected =
        argc == 3 && std::strcmp(argv[1], "--expect") == 0 ? argv[2] : widest_by_the_compiler();
    return RUN_ALL_TESTS();
}
