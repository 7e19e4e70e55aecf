// Packed YUY2 pictures into RGB surfaces.
#include "frame/adjust.h"
#include "frame/kernels.h"
#include "frame/walks.h"

namespace lumalane::LUMALANE_LANES {

void LoadYUY2_RGB32(LUMALANE_PARAMETERS_picture) {
    packed_row_pairs<16>({LUMALANE_ARGUMENTS_picture}, packed{} | to_rgb{} | rgb32{});
}

void LoadYUY2_RGB24(LUMALANE_PARAMETERS_picture) {
    packed_row_pairs<16>({LUMALANE_ARGUMENTS_picture}, packed{} | to_rgb{} | rgb24{});
}

void LoadYUY2_RGB16(LUMALANE_PARAMETERS_picture) {
    with_rgb16_layout(info->rgb16_layout, [&](auto rgb16) {
        packed_row_pairs<16>({LUMALANE_ARGUMENTS_picture}, packed{} | to_rgb{} | rgb16);
    });
}

void LoadYUY2_RGB32_adjust(LUMALANE_PARAMETERS_picture) {
    with_adjustment([&](auto adjusted) {
        packed_row_pairs<16>({LUMALANE_ARGUMENTS_picture},
                             packed{} | adjusted | to_rgb{} | rgb32{});
    });
}

void LoadYUY2_RGB24_adjust(LUMALANE_PARAMETERS_picture) {
    with_adjustment([&](auto adjusted) {
        packed_row_pairs<16>({LUMALANE_ARGUMENTS_picture},
                             packed{} | adjusted | to_rgb{} | rgb24{});
    });
}

void LoadYUY2_RGB16_adjust(LUMALANE_PARAMETERS_picture) {
    with_rgb16_layout(info->rgb16_layout, [&](auto rgb16) {
        with_adjustment([&](auto adjusted) {
            packed_row_pairs<16>({LUMALANE_ARGUMENTS_picture},
                                 packed{} | adjusted | to_rgb{} | rgb16);
        });
    });
}

} // namespace lumalane::LUMALANE_LANES
