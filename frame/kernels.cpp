// The kernel table of one lane set, and the one kernel that touches no picture.
#include "frame/kernels.h"
#include "frame/adjustment.h"
#include "frame/dispatch.h"

namespace lumalane::LUMALANE_LANES {

void get_contrast_data(void *params) {
    set_adjustment(*static_cast<const contrast_data *>(params));
}

#define LUMALANE_QUOTE(name) #name
#define LUMALANE_NAME(set) LUMALANE_QUOTE(set)

extern constinit const kernel_table table;
constinit const kernel_table table = {
    LUMALANE_NAME(LUMALANE_LANES),
#define LUMALANE_EXPORT(signature, name) name,
#include "frame/exports.inc"
#undef LUMALANE_EXPORT
};

} // namespace lumalane::LUMALANE_LANES
