// YV12 pictures into YUY2 surfaces of the same and of half the width.
#include "frame/adjust.h"
#include "frame/kernels.h"
#include "frame/walks.h"

namespace lumalane::LUMALANE_LANES {

namespace {

// Deliberately the first 8 bytes of every 32 of a lower row are not written.
struct yuy2_with_gaps : yuy2 {
    static constexpr bool writes_whole_lines = false;

    template <class Put, int n>
    LUMALANE_INLINE void lower_row(unsigned char *to, bytes<n> y,
                                   const chroma_pairs<n> &chroma) const {
        store_after_8(to, interleave(y, chroma.uv));
    }
};

// Grey chroma whatever the source has.
struct grey {
    static constexpr bool is_part = true;

    template <int n>
    LUMALANE_INLINE chroma_pairs<n> chroma(no_chroma<n>) const {
        return {fill_bytes<n>(128)};
    }

    template <int n>
    LUMALANE_INLINE bytes<n> luma(bytes<n> samples, const chroma_pairs<n> &) const {
        return samples;
    }
};

// Neighbours averaged, rounding up: U with U and V with V.
struct halved {
    static constexpr bool is_part = true;

    template <int n>
    LUMALANE_INLINE wide_chroma_pairs<n / 2> chroma(chroma_pairs<n> samples) const {
        return {average_couples_of_pairs(samples.uv)};
    }

    template <int n>
    LUMALANE_INLINE words<n / 2> luma(bytes<n> samples, const wide_chroma_pairs<n / 2> &) const {
        return average_couples(samples);
    }
};

} // namespace

void loadimage_yuy2(LUMALANE_PARAMETERS_picture) {
    row_pairs({LUMALANE_ARGUMENTS_picture}, planar_pairs{} | yuy2_with_gaps{});
}

void loadimage_yuy2_ajust(LUMALANE_PARAMETERS_picture) {
    if (height <= 8 || height % 2 != 0)
        return;
    with_adjustment([&](auto adjusted) {
        rows_in_pairs({LUMALANE_ARGUMENTS_picture}, planar_pairs{} | adjusted | yuy2{});
    });
}

void loadimage_yuy2_mono_ajust(LUMALANE_PARAMETERS_picture) {
    with_adjustment([&](auto adjusted) {
        rows_in_pairs({LUMALANE_ARGUMENTS_picture}, luma_alone{} | adjusted | grey{} | yuy2{});
    });
}

void loadimage_half_yuy2_ajust(LUMALANE_PARAMETERS_picture) {
    with_adjustment([&](auto adjusted) {
        rows_in_pairs({LUMALANE_ARGUMENTS_picture},
                      planar_pairs{} | halved{} | adjusted | packed_yuy2<1>{});
    });
}

} // namespace lumalane::LUMALANE_LANES
