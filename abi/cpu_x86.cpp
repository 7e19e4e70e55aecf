#include "abi/cpu.h"

#include <cpuid.h>

namespace lumalane {

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

// Parts of the registers' state that the operating system saves.
enum saved_state : unsigned {
    halves_of_256_bits = 0x06, // 128-bit registers and their upper halves
    all_of_512_bits = 0xe6     // and masks, the upper halves of 512 bits, and 16 more registers
};

bool is_saved(saved_state state) {
    if (!bit(cpuid(1).ecx, 27)) // OSXSAVE
        return false;
    unsigned low, high;
    __asm__("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
    return (low & state) == state;
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

} // namespace

bool always() { return true; }

bool has_sse2() { return bit(cpuid(1).edx, 26); }

bool has_avx2() { return is_saved(halves_of_256_bits) && bit(cpuid(7).ebx, 5); }

bool has_avx512() {
    if (!is_saved(all_of_512_bits))
        return false;
    const registers features = cpuid(7);
    const auto both = [](unsigned bits, int a, int b) { return bit(bits, a) && bit(bits, b); };
    return both(features.ebx, 16, 30) && // F, BW
           both(features.ebx, 31, 5) &&  // VL, AVX2
           bit(features.ecx, 1);         // VBMI
}

unsigned ask_for_last_level_cache_bytes() {
    const unsigned intel = largest_cache(4);
    return intel != 0 ? intel : largest_cache(0x8000001d);
}

// Floating-point code of a 32-bit caller works after a call, also if it worked with MMX before.
void leave_baseline_clean() {
#if defined(__i386__)
    __asm__ volatile("emms");
#endif
}

// Older SSE code is slow while upper halves are in use. (Compilers clear them where a function that
// used them returns, but not everywhere.)
void leave_upper_halves_clean() {
    __asm__ volatile("vzeroupper");
    leave_baseline_clean();
}

} // namespace lumalane

// ---- Windows, without a C runtime

// Called before a function takes a stack frame of a page or more, to touch every page of it in
// order: that is how the system grows a stack. The size comes in eax or rax; the 32-bit one also
// takes the frame. Leaves `at`, the stack before the call, where the frame ends.
#define LUMALANE_TOUCH_PAGES(size, at)                                                             \
    "1:  cmp $0x1000, " size "\n"                                                                  \
    "    jb 2f\n"                                                                                  \
    "    sub $0x1000, " at "\n"                                                                    \
    "    orl $0, (" at ")\n"                                                                       \
    "    sub $0x1000, " size "\n"                                                                  \
    "    jmp 1b\n"                                                                                 \
    "2:  sub " size ", " at "\n"                                                                   \
    "    orl $0, (" at ")\n"
#if defined(_M_IX86)
__asm__(R"(
    .globl __chkstk
__chkstk:
    pushl %ecx
    leal 8(%esp), %ecx
)" LUMALANE_TOUCH_PAGES("%eax", "%ecx") R"(
    movl %esp, %eax
    movl %ecx, %esp
    movl (%eax), %ecx
    jmpl *4(%eax)
)");
#elif defined(_M_X64)
__asm__(R"(
    .globl __chkstk
__chkstk:
    pushq %rcx
    pushq %rax
    leaq 24(%rsp), %rcx
)" LUMALANE_TOUCH_PAGES("%rax", "%rcx") R"(
    popq %rax
    popq %rcx
    ret
)");
#endif
