// What an x86 processor and its operating system can do, from their raw answers alone.
//
// `Processor` has two functions: cpuid(leaf, subleaf) returns what the instruction leaves in the
// registers, whatever that is for a leaf that the processor does not have; and saved_states() the lower
// half of XCR0, which can be read only where OSXSAVE is set.
#pragma once

namespace lumalane {

struct cpuid_answer {
    unsigned eax, ebx, ecx, edx;
};

constexpr bool bit(unsigned bits, int index) { return bits >> index & 1; }

// All zero for a leaf that the processor does not have. (It answers with something else.)
template <class Processor>
constexpr cpuid_answer answer_of(const Processor &processor, unsigned leaf) {
    const unsigned first = leaf & 0x8000'0000;
    return leaf <= processor.cpuid(first, 0).eax ? processor.cpuid(leaf, 0) : cpuid_answer{};
}

// Parts of the registers' state that the operating system saves.
enum saved_state : unsigned {
    halves_of_256_bits = 0x06, // 128-bit registers and their upper halves
    all_of_512_bits = 0xe6     // and masks, the upper halves of 512 bits, and 16 more registers
};

template <class Processor>
constexpr bool is_saved(const Processor &processor, saved_state state) {
    return bit(answer_of(processor, 1).ecx, 27) && // OSXSAVE
           (processor.saved_states() & state) == state;
}

// The predicates that abi/targets.inc names.

template <class Processor>
constexpr bool always(const Processor &) {
    return true;
}

template <class Processor>
constexpr bool has_sse2(const Processor &processor) {
    return bit(answer_of(processor, 1).edx, 26);
}

template <class Processor>
constexpr bool has_avx2(const Processor &processor) {
    return is_saved(processor, halves_of_256_bits) && bit(answer_of(processor, 7).ebx, 5);
}

template <class Processor>
constexpr bool has_avx512(const Processor &processor) {
    if (!is_saved(processor, all_of_512_bits))
        return false;
    const cpuid_answer features = answer_of(processor, 7);
    const auto both = [](unsigned bits, int a, int b) { return bit(bits, a) && bit(bits, b); };
    return both(features.ebx, 16, 30) && // F, BW
           both(features.ebx, 31, 5) &&  // VL, AVX2
           bit(features.ecx, 1);         // VBMI
}

// Intel: leaf 4. AMD: leaf 0x8000001d, of the same form.
template <class Processor>
constexpr unsigned largest_cache(const Processor &processor, unsigned leaf) {
    unsigned largest = 0;
    cpuid_answer r = answer_of(processor, leaf);
    // Without a type: no further cache.
    for (unsigned subleaf = 1; subleaf <= 8 && (r.eax & 31) != 0; ++subleaf) {
        const unsigned ways = (r.ebx >> 22) + 1, partitions = (r.ebx >> 12 & 1023) + 1;
        const unsigned line = (r.ebx & 4095) + 1, sets = r.ecx + 1;
        const unsigned size = ways * partitions * line * sets;
        largest = size > largest ? size : largest;
        r = processor.cpuid(leaf, subleaf);
    }
    return largest;
}

template <class Processor>
constexpr unsigned last_level_cache_bytes(const Processor &processor) {
    const unsigned intel = largest_cache(processor, 4);
    return intel != 0 ? intel : largest_cache(processor, 0x8000'001d);
}

} // namespace lumalane
