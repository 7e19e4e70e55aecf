// Where a call enters the library and where it leaves.
#include "abi/signatures.h"
#include "abi/targets.h"
#include "picture/calls.h"

namespace lumalane {

// The functions, defined in the directories of their families, and get_contrast_data() in picture/.
#define LUMALANE_EXPORT(signature, name) void name(const machine &, const call::signature &);
#include "abi/exports.inc"
#undef LUMALANE_EXPORT

namespace {

// Leaves the processor as the caller expects it, whichever way a function returns.
struct entered {
    const target &on = current_target();

    ~entered() { on.leave_clean(); }
};

} // namespace
} // namespace lumalane

#define LUMALANE_EXPORT(signature, name)                                                           \
    void name(LUMALANE_PARAMETERS_##signature) {                                                   \
        const lumalane::entered entered;                                                           \
        lumalane::name(machine_of(entered.on), {LUMALANE_ARGUMENTS_##signature});                  \
    }
#include "abi/exports.inc"
#undef LUMALANE_EXPORT

#if defined(_WIN32)
// The plain names and those of MinGW, for who links the static library.
#include "windows_names.inc"
#endif
