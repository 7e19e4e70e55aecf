// Where a call enters the library and where it leaves.
#include "frame/dispatch.h"

namespace {

// Floating-point code of the caller works after the call, also if it worked with MMX before it.
struct boundary {
#if defined(__i386__)
    ~boundary() { __asm__ volatile("emms"); }
#else
    ~boundary() {}
#endif
};

} // namespace

#define LUMALANE_EXPORT(signature, name)                                                           \
    void name(LUMALANE_PARAMETERS_##signature) {                                                   \
        const boundary leaving;                                                                    \
        lumalane::kernels().name(LUMALANE_ARGUMENTS_##signature);                                  \
    }
#include "frame/exports.inc"
#undef LUMALANE_EXPORT
