// Packed YUY2 pictures into YUY2 surfaces.
#include "frame/adjust.h"
#include "frame/kernels.h"
#include "frame/walks.h"

namespace lumalane::LUMALANE_LANES {

void LoadYUY2_YUY2(LUMALANE_PARAMETERS_picture) {
    packed_row_pairs<8>({LUMALANE_ARGUMENTS_picture}, packed_as_it_is{} | packed_yuy2<2>{});
}

void LoadYUY2_YUY2_adjust(LUMALANE_PARAMETERS_picture) {
    with_adjustment([&](auto adjusted) {
        packed_row_pairs<8>({LUMALANE_ARGUMENTS_picture},
                            packed_as_it_is{} | adjusted | packed_yuy2<2>{});
    });
}

} // namespace lumalane::LUMALANE_LANES
