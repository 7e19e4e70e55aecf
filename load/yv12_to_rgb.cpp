// YV12 pictures into RGB surfaces.
#include "frame/adjust.h"
#include "frame/kernels.h"
#include "frame/walks.h"

namespace lumalane::LUMALANE_LANES {

void loadimage_rgb32(LUMALANE_PARAMETERS_picture) {
    row_pairs({LUMALANE_ARGUMENTS_picture}, planar{} | to_rgb{} | rgb32{});
}

void loadimage_rgb24(LUMALANE_PARAMETERS_picture) {
    row_pairs({LUMALANE_ARGUMENTS_picture}, planar{} | to_rgb{} | rgb24{});
}

void loadimage_rgb16(LUMALANE_PARAMETERS_picture) {
    with_rgb16_layout(info->rgb16_layout, [&](auto packed) {
        row_pairs({LUMALANE_ARGUMENTS_picture}, planar{} | to_rgb{} | packed);
    });
}

void loadimage_rgb32_ajust(LUMALANE_PARAMETERS_picture) {
    with_adjustment([&](auto adjusted) {
        row_pairs({LUMALANE_ARGUMENTS_picture}, planar{} | adjusted | to_rgb{} | rgb32{});
    });
}

void loadimage_rgb24_ajust(LUMALANE_PARAMETERS_picture) {
    with_adjustment([&](auto adjusted) {
        row_pairs({LUMALANE_ARGUMENTS_picture}, planar{} | adjusted | to_rgb{} | rgb24{});
    });
}

void loadimage_rgb16_ajust(LUMALANE_PARAMETERS_picture) {
    with_rgb16_layout(info->rgb16_layout, [&](auto packed) {
        with_adjustment([&](auto adjusted) {
            row_pairs({LUMALANE_ARGUMENTS_picture}, planar{} | adjusted | to_rgb{} | packed);
        });
    });
}

} // namespace lumalane::LUMALANE_LANES
