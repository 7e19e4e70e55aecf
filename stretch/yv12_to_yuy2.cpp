// YV12 pictures into YUY2 surfaces of twice the height.
#include "frame/kernels.h"
#include "stretch/between_rows.h"

namespace lumalane::LUMALANE_LANES {

namespace {

constexpr int least_height = 8;

// Deliberately only inner rows, whose neighbours all exist, are filtered.
struct pairs_by_four_taps {
    template <class Run>
    LUMALANE_INLINE void operator()(int height, Run run) const {
        run(pair_by<average_below>{});
        int left = height - 6;
        do {
            run(pair_by<four_taps>{});
            left -= 2;
        } while (left > 0);
        run(pair_of<four_taps, four_taps, average_below>{});
        run(last_pair_by<average_below>{});
    }
};

// `pairs(height, run)` tells how each pair is made.
template <class Stretch, class Pairs>
void stretch_rows(const picture p, const Stretch stretched, Pairs pairs) {
    const long long row_bytes = 2LL * p.width;
    if (stretch_is_regular(p, row_bytes))
        return pairs_wide(p, row_bytes, stretched, pairs);
    pairs_stepwise(p, 2, pairs,
                   [&](unsigned char *&to, rows_at_hand &at, auto luma_by, auto chroma_by) {
                       unsigned columns = static_cast<unsigned>(p.width >> 1);
                       do {
                           stretched.template row<16>(to, at, luma_by, chroma_by);
                           at = at.after(16), to += 32;
                       } while (again(columns, 8));
                   });
}

} // namespace

void strech_picture_1X2_yuy2(LUMALANE_PARAMETERS_picture) {
    if (height < least_height)
        return;
    stretch_rows({LUMALANE_ARGUMENTS_picture}, stretch{undealt_planes{}, made_rows{} | yuy2{}},
                 pairs_by_averages{});
}

void strech_picture_1X2_yuy2_ajust(LUMALANE_PARAMETERS_picture) {
    if (height < least_height)
        return;
    // Deliberately after the interpolation.
    with_adjustment([&](auto adjusted) {
        stretch_rows({LUMALANE_ARGUMENTS_picture},
                     stretch{undealt_planes{}, made_rows{} | adjusted | yuy2{}},
                     pairs_by_four_taps{});
    });
}

} // namespace lumalane::LUMALANE_LANES
