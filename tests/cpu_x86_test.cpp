// Which target runs, and what is taken for the size of the cache, by the answers of processors that
// are not here.
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "abi/cpu_x86.h"
#include "tests/targets.h"

namespace {

using lumalane::cpuid_answer;

// A processor under an operating system. Leaves above the last one are answered as Intel's
// processors do: with what the last one holds.
class answers {
public:
    std::map<std::pair<unsigned, unsigned>, cpuid_answer> leaves; // by leaf and subleaf
    unsigned xcr0;

    // Leaf 1 apart from the first register, and leaf 7 apart from it.
    static answers of(unsigned last_leaf, cpuid_answer leaf_1, cpuid_answer leaf_7, unsigned xcr0) {
        return {{{{0, 0}, {last_leaf, 0x756e6547, 0x6c65746e, 0x49656e69}},
                 {{1, 0}, leaf_1},
                 {{7, 0}, leaf_7}},
                xcr0};
    }

    cpuid_answer cpuid(unsigned leaf, unsigned subleaf) const {
        const unsigned last = leaves.at({0, 0}).eax;
        const auto extended = leaves.find({0x8000'0000, 0});
        const bool beyond = leaf < 0x8000'0000         ? leaf > last
                            : extended == leaves.end() ? true
                                                       : leaf > extended->second.eax;
        const auto found = leaves.find(beyond ? std::pair{last, 0u} : std::pair{leaf, subleaf});
        return found == leaves.end() ? cpuid_answer{} : found->second;
    }

    // The instruction is an invalid one where the operating system does not allow it.
    unsigned saved_states() const {
        EXPECT_TRUE(lumalane::bit(cpuid(1, 0).ecx, 27));
        return xcr0;
    }
};

// The one that a library for this word size takes, of those that are shipped.
std::string target_on(const answers &processor) {
    std::string widest;
#define LUMALANE_TARGET(name, processors, baseline, flags, runs_here, leave_clean)                 \
    if (lumalane::runs_here(processor))                                                            \
        widest = #name;
#include "shipped/targets_built.inc"
#undef LUMALANE_TARGET
    return widest;
}

constexpr bool wide = sizeof(void *) == 8;
constexpr const char *narrowest = wide ? "sse2" : "mmx";
constexpr const char *widest = wide ? "avx512" : "avx2";

constexpr unsigned x87 = 1, sse = 2, avx = 4, avx512 = 0xe0, pkru = 0x200;
constexpr unsigned osxsave = 1u << 27;

// As their makers' processors answer, under operating systems that save everything.
const answers pentium3 =
    answers::of(3, {0x683, 2, 0, 0x0387fbff}, {0xffffffff, ~0u, ~0u, ~0u}, ~0u);
const answers athlon_xp = answers::of(1, {0x6a0, 0, 0, 0x0383fbff}, {}, 0);
const answers core_duo = answers::of(10, {0x6e8, 0x800, 0xc109, 0xbfe9fbff}, {}, 0);
const answers sandy_bridge =
    answers::of(13, {0x206a7, 0x100800, 0x1fbae3ff, 0xbfebfbff}, {}, x87 | sse | avx);
const answers haswell = answers::of(13, {0x306c3, 0x100800, 0x7ffafbff, 0xbfebfbff},
                                    {0, 0x27ab, 0, 0}, x87 | sse | avx);
const answers skylake_x = answers::of(22, {0x50654, 0x200800, 0x7ffefbbf, 0xbfebfbff},
                                      {0, 0xd39ffffb, 0, 0}, x87 | sse | avx | avx512 | pkru);
const answers ice_lake =
    answers::of(27, {0x706e5, 0x100800, 0x7ffafbbf, 0xbfebfbff},
                {0, 0xf2bf27ef, 0x40405f4e, 0xbc000410}, x87 | sse | avx | avx512 | pkru);
const answers sapphire_rapids =
    answers::of(28, {0xc06f2, 0x20800, 0xfffa3203, 0x1f8bfbff},
                {2, 0xf1bf2ffb, 0x1a415f46, 0x20814010}, x87 | sse | avx | avx512);

TEST(target_of_a_processor, is_the_widest_that_it_runs) {
    if (!wide) {
        EXPECT_EQ(target_on(pentium3), "mmx");
        EXPECT_EQ(target_on(athlon_xp), "mmx");
    }
    EXPECT_EQ(target_on(core_duo), "sse2");
    EXPECT_EQ(target_on(sandy_bridge), "sse2");
    EXPECT_EQ(target_on(haswell), "avx2");
    EXPECT_EQ(target_on(ice_lake), widest);
    EXPECT_EQ(target_on(sapphire_rapids), widest);
}

TEST(target_of_a_processor, is_avx2_without_vbmi) {
    EXPECT_EQ(target_on(skylake_x), "avx2");
    answers without = ice_lake;
    without.leaves[{7, 0}].ecx &= ~2u;
    EXPECT_EQ(target_on(without), "avx2");
}

// Each of the features that avx512 is compiled for, taken away.
TEST(target_of_a_processor, is_avx2_without_any_one_feature_of_avx512) {
    for (const int feature : {16, 30, 31}) {
        answers without = ice_lake;
        without.leaves[{7, 0}].ebx &= ~(1u << feature);
        EXPECT_EQ(target_on(without), "avx2") << "bit " << feature;
    }
    answers without = ice_lake;
    without.leaves[{7, 0}].ebx &= ~(1u << 5);
    EXPECT_EQ(target_on(without), "sse2");
}

TEST(target_of_a_processor, is_sse2_under_an_operating_system_that_does_not_save_wide_registers) {
    for (const answers &processor : {haswell, skylake_x, ice_lake, sapphire_rapids}) {
        answers unsaved = processor; // one that is older than such registers
        unsaved.leaves[{1, 0}].ecx &= ~osxsave;
        EXPECT_EQ(target_on(unsaved), "sse2");
        for (const unsigned saved : {0u, x87, x87 | sse, x87 | avx, x87 | sse | avx512}) {
            unsaved = processor;
            unsaved.xcr0 = saved;
            EXPECT_EQ(target_on(unsaved), "sse2") << "XCR0 " << saved;
        }
    }
}

// Any of the three parts of the 512-bit state may be missing.
TEST(target_of_a_processor, is_avx2_under_an_operating_system_that_does_not_save_512_bits) {
    for (const answers &processor : {ice_lake, sapphire_rapids})
        for (const unsigned part : {avx512, 0x20u, 0x40u, 0x80u}) {
            answers unsaved = processor;
            unsaved.xcr0 &= ~part;
            EXPECT_EQ(target_on(unsaved), "avx2") << "without " << part;
        }
}

// Processors answer for leaves that they do not have.
TEST(target_of_a_processor, is_not_taken_from_a_leaf_that_there_is_not) {
    answers old = haswell;
    old.leaves[{0, 0}].eax = 1; // leaf 7 then answers as leaf 1, which has bit 5 of ebx
    old.leaves[{1, 0}].ebx |= 1u << 5;
    EXPECT_EQ(target_on(old), "sse2");
    old = ice_lake;
    old.leaves[{0, 0}].eax = 6;
    old.leaves[{6, 0}] = {~0u, ~0u, ~0u, ~0u};
    EXPECT_EQ(target_on(old), "sse2");
}

TEST(target_of_a_processor, is_the_narrowest_where_nothing_is_known) {
    if (!wide) {
        EXPECT_EQ(target_on(answers::of(1, {}, {}, 0)), narrowest);
    }
    EXPECT_EQ(target_on(answers::of(1, {0, 0, 0, 1u << 26}, {}, 0)), "sse2");
}

TEST(last_level_cache, is_the_largest_that_the_processor_tells) {
    answers haswell_caches = haswell; // 32 KB, 32 KB, 256 KB and 8 MB
    haswell_caches.leaves[{4, 0}] = {0x1c004121, 0x01c0003f, 0x3f, 0};
    haswell_caches.leaves[{4, 1}] = {0x1c004122, 0x01c0003f, 0x3f, 0};
    haswell_caches.leaves[{4, 2}] = {0x1c004143, 0x01c0003f, 0x1ff, 0};
    haswell_caches.leaves[{4, 3}] = {0x1c03c163, 0x03c0003f, 0x1fff, 6};
    EXPECT_EQ(lumalane::last_level_cache_bytes(haswell_caches), 8u << 20);

    answers skylake_caches = skylake_x; // 14,080 KB of 11 ways
    skylake_caches.leaves[{4, 0}] = {0x3c004121, 0x01c0003f, 0x3f, 0};
    skylake_caches.leaves[{4, 1}] = {0x3c004143, 0x03c0003f, 0x3ff, 0};
    skylake_caches.leaves[{4, 2}] = {0x3c07c163, 0x0280003f, 0x4fff, 4};
    EXPECT_EQ(lumalane::last_level_cache_bytes(skylake_caches), 14080u << 10);
}

TEST(last_level_cache, is_told_in_a_leaf_of_its_own_by_amd) {
    answers zen = haswell;
    zen.leaves[{0x8000'0000, 0}] = {0x8000'001e, 0, 0, 0};
    zen.leaves[{0x8000'001d, 0}] = {0x121, 0x01c0003f, 0x3f, 1};
    zen.leaves[{0x8000'001d, 1}] = {0x122, 0x00c0003f, 0xff, 1};
    zen.leaves[{0x8000'001d, 2}] = {0x43, 0x01c0003f, 0x3ff, 0};
    zen.leaves[{0x8000'001d, 3}] = {0x163, 0x03c0003f, 0x1fff, 6};
    EXPECT_EQ(lumalane::last_level_cache_bytes(zen), 8u << 20);
}

TEST(last_level_cache, is_not_known_where_the_processor_does_not_tell) {
    EXPECT_EQ(lumalane::last_level_cache_bytes(athlon_xp), 0u);
    // What these leave in the registers for a leaf that they do not have is no cache.
    answers old = pentium3;
    old.leaves[{3, 0}] = {0x7f, ~0u, ~0u, ~0u};
    EXPECT_EQ(lumalane::last_level_cache_bytes(old), 0u);
    answers amd = athlon_xp;
    amd.leaves[{0x8000'0000, 0}] = {0x8000'0008, 0x68747541, 0x444d4163, 0x69746e65};
    amd.leaves[{0x8000'001d, 0}] = {0x121, ~0u, ~0u, ~0u};
    EXPECT_EQ(lumalane::last_level_cache_bytes(amd), 0u);
}

TEST(last_level_cache, has_up_to_8_levels_and_partitions) {
    answers many = haswell;
    for (unsigned level = 0; level < 9; ++level) // of 2 ways, 3 partitions and 64 bytes a line
        many.leaves[{4, level}] = {0x143, 1u << 22 | 2u << 12 | 63, level, 0};
    EXPECT_EQ(lumalane::last_level_cache_bytes(many), 2u * 3 * 64 * 8);
    many.leaves[{4, 3}].eax = 0;
    EXPECT_EQ(lumalane::last_level_cache_bytes(many), 2u * 3 * 64 * 3);
}

} // namespace
