#include "abi/cpu.h"

namespace lumalane {

bool always() { return true; }

// The registers that tell are not for user code (CCSIDR_EL1 traps). Nor would the answer be used: see
// streams in simd/neon.h.
unsigned ask_for_last_level_cache_bytes() { return 0; }

// There is no state to leave clean: compilers save the lower halves of v8 to v15, which belong to the
// caller, and there are no modes.
void leave_baseline_clean() {}

} // namespace lumalane

// ---- Windows, without a C runtime

// Called before a function takes a stack frame of a page or more, to touch every page of it in
// order: that is how the system grows a stack. x15 is the size in units of 16 bytes, and stays.
#if defined(_M_ARM64)
__asm__(R"(
    .globl __chkstk
__chkstk:
    lsl x16, x15, #4
    mov x17, sp
1:  cmp x16, #0x1000
    b.lo 2f
    sub x17, x17, #0x1000
    ldr xzr, [x17]
    sub x16, x16, #0x1000
    b 1b
2:  sub x17, x17, x16
    ldr xzr, [x17]
    ret
)");
#endif
