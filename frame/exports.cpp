// Where a call enters the library and where it leaves.
#include "frame/dispatch.h"
#include "frame/wide_registers.h"

namespace {

// Floating-point code of the caller works after the call, also if it worked with MMX before it, and
// its SSE code at full speed. (Compilers clear the upper halves of the wide registers where a
// function that used them returns, but not everywhere.)
struct boundary {
    ~boundary() {
#if defined(__i386__) || defined(__x86_64__)
        if (lumalane::wide_registers_in_use())
            __asm__ volatile("vzeroupper");
#endif
#if defined(__i386__)
        __asm__ volatile("emms");
#endif
    }
};

} // namespace

#define LUMALANE_EXPORT(signature, name)                                                           \
    void name(LUMALANE_PARAMETERS_##signature) {                                                   \
        const boundary leaving;                                                                    \
        lumalane::kernels().name(LUMALANE_ARGUMENTS_##signature);                                  \
    }
#include "frame/exports.inc"
#undef LUMALANE_EXPORT
