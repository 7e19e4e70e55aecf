#include "frame/dispatch.h"

#include <cpuid.h>

namespace lumalane {

namespace portable {
extern constinit const kernel_table table;
}
namespace sse2 {
extern constinit const kernel_table table;
}
namespace avx2 {
extern constinit const kernel_table table;
}

namespace {

struct registers {
    unsigned eax, ebx, ecx, edx;
};

// All zero for a leaf that the processor does not have.
registers cpuid(unsigned leaf, unsigned subleaf = 0) {
    registers r{};
    __get_cpuid_count(leaf, subleaf, &r.eax, &r.ebx, &r.ecx, &r.edx);
    return r;
}

constexpr bool bit(unsigned bits, int index) { return bits >> index & 1; }

// The operating system saves the 256-bit registers.
bool wide_registers_enabled() {
    if (!bit(cpuid(1).ecx, 27)) // OSXSAVE
        return false;
    unsigned low, high;
    __asm__("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
    return (low & 6) == 6; // 128-bit registers and their upper halves
}

// Intel: leaf 4. AMD: leaf 0x8000001d, of the same form.
unsigned largest_cache(unsigned leaf) {
    unsigned largest = 0;
    for (unsigned subleaf = 0; subleaf < 8; ++subleaf) {
        const registers r = cpuid(leaf, subleaf);
        if ((r.eax & 31) == 0) // no further cache
            break;
        const unsigned ways = (r.ebx >> 22) + 1, partitions = (r.ebx >> 12 & 1023) + 1;
        const unsigned line = (r.ebx & 4095) + 1, sets = r.ecx + 1;
        const unsigned size = ways * partitions * line * sets;
        largest = size > largest ? size : largest;
    }
    return largest;
}

unsigned ask_for_cache() {
    const unsigned intel = largest_cache(4);
    return intel != 0 ? intel : largest_cache(0x8000001d);
}

const kernel_table &table_of(lane_set set) {
    switch (set) {
    case lane_set::portable:
        break;
    case lane_set::sse2:
        return sse2::table;
    case lane_set::avx2:
        return avx2::table;
    }
    return portable::table;
}

const kernel_table &widest_table() {
    lane_set widest = lane_set::portable;
    for (const lane_set set : all_lane_sets)
        if (can_run(set))
            widest = set;
    return table_of(widest);
}

// Null until the first call. Two threads that race both find the same table.
const kernel_table *chosen;

// Of the last-level cache; ~0 until asked.
unsigned cache_bytes = ~0u;

} // namespace

bool can_run(lane_set set) {
    switch (set) {
    case lane_set::portable:
        return true;
    case lane_set::sse2:
        return bit(cpuid(1).edx, 26);
    case lane_set::avx2:
        return wide_registers_enabled() && bit(cpuid(7).ebx, 5);
    }
    return false;
}

const kernel_table &kernels() {
    const kernel_table *table = __atomic_load_n(&chosen, __ATOMIC_RELAXED);
    if (!table) {
        table = &widest_table();
        __atomic_store_n(&chosen, table, __ATOMIC_RELAXED);
    }
    return *table;
}

bool uses_wide_registers(const kernel_table &table) { return &table == &avx2::table; }

void force(lane_set set) { __atomic_store_n(&chosen, &table_of(set), __ATOMIC_RELAXED); }

unsigned last_level_cache_bytes() {
    unsigned bytes = __atomic_load_n(&cache_bytes, __ATOMIC_RELAXED);
    if (bytes == ~0u) {
        bytes = ask_for_cache();
        __atomic_store_n(&cache_bytes, bytes, __ATOMIC_RELAXED);
    }
    return bytes;
}

void assume_last_level_cache(unsigned bytes) {
    __atomic_store_n(&cache_bytes, bytes, __ATOMIC_RELAXED);
}

} // namespace lumalane
