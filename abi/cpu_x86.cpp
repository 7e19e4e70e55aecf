#include "abi/cpu_x86.h"
#include "abi/cpu.h"

#include <cpuid.h>

namespace lumalane {

namespace {

struct this_processor {
    cpuid_answer cpuid(unsigned leaf, unsigned subleaf) const {
        cpuid_answer r;
        __cpuid_count(leaf, subleaf, r.eax, r.ebx, r.ecx, r.edx);
        return r;
    }

    unsigned saved_states() const {
        unsigned low, high;
        __asm__("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
        return low;
    }
};

} // namespace

bool always() { return true; }

bool has_sse2() { return has_sse2(this_processor()); }

bool has_avx2() { return has_avx2(this_processor()); }

bool has_avx512() { return has_avx512(this_processor()); }

unsigned ask_for_last_level_cache_bytes() { return last_level_cache_bytes(this_processor()); }

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
    .seh_proc __chkstk
__chkstk:
    pushq %rcx
    .seh_pushreg %rcx
    pushq %rax
    .seh_pushreg %rax
    .seh_endprologue
    leaq 24(%rsp), %rcx
)" LUMALANE_TOUCH_PAGES("%rax", "%rcx") R"(
    popq %rax
    popq %rcx
    ret
    .seh_endproc
)");
#endif
