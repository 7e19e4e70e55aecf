// Where a call enters the library and where it leaves.
#include "frame/dispatch.h"

namespace {

// A call of the kernels in force. Floating-point code of the caller works after it, also if it
// worked with MMX before, and its SSE code at full speed. (Compilers clear the upper halves of the
// wide registers where a function that used them returns, but not everywhere.)
struct call {
    const lumalane::kernel_table &to = lumalane::kernels();

    ~call() {
        if (lumalane::uses_wide_registers(to))
            __asm__ volatile("vzeroupper");
#if defined(__i386__)
        __asm__ volatile("emms");
#endif
    }
};

} // namespace

#define LUMALANE_EXPORT(signature, name)                                                           \
    void name(LUMALANE_PARAMETERS_##signature) { call().to.name(LUMALANE_ARGUMENTS_##signature); }
#include "frame/exports.inc"
#undef LUMALANE_EXPORT
