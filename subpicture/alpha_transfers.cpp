// Alpha planes to and from the blue channel of a drawing surface.
#include "frame/kernels.h"
#include "subpicture/rows.h"

namespace lumalane::LUMALANE_LANES {

namespace {

// Deliberately the alpha plane's steps come from the pitch of the video.
rows alpha_rows(const tagMIX_INFO &mix, unsigned pixels) {
    return {mix.alpha_plane, pixels, difference(mix.video_pitch, mix.width) >> 1};
}

// `take` makes the alpha of n pixels from the surface, `offset` bytes on.
template <int group, int size, class Take>
LUMALANE_INLINE void restore_alpha(const tagMIX_INFO &mix, int offset, const Take &take) {
    const unsigned pixels = in_whole_groups(mix.width, group);
    rows surface = surface_rows(mix.dst, size, pixels, mix.width, mix.dst_pitch);
    surface.first += offset;
    const rows alpha = alpha_rows(mix, pixels);
    walk_rows<group>(
        mix.height, pixels, alpha, {surface}, [&]<int n, class Put>(unsigned row, ptrdiff_t x) {
            Put::put(alpha.at(row) + x, take.template operator()<n>(surface.at(row) + size * x));
        });
}

template <int size>
LUMALANE_INLINE void load_alpha(const tagMIX_INFO &mix) {
    constexpr int group = 16;
    const unsigned pixels = in_whole_groups(mix.width, group);
    const rows surface = surface_rows(mix.dst, size, pixels, mix.width, mix.dst_pitch);
    const rows alpha = alpha_rows(mix, pixels);
    walk_rows<group>(
        mix.height, pixels, surface, {alpha}, [&]<int n, class Put>(unsigned row, ptrdiff_t x) {
            put_parts<Put>(surface.at(row) + size * x, load_spread<size, n>(alpha.at(row) + x));
        });
}

} // namespace

void Restore_RGB32_To_Alpha(LUMALANE_PARAMETERS_mix) {
    restore_alpha<8, 4>(
        *mix, 0, []<int n>(const unsigned char *from) { return load_channel<4, 0, n>(from); });
}

void Restore_RGB24_To_Alpha(LUMALANE_PARAMETERS_mix) {
    // Deliberately the blue of the pixel after the one whose alpha it becomes.
    restore_alpha<8, 3>(
        *mix, 1, []<int n>(const unsigned char *from) { return load_channel<3, 2, n>(from); });
    mix->height = 0; // counted down here, and in load_subpicture_alpha_rgb24()
}

void Restore_RGB16_565_To_Alpha(LUMALANE_PARAMETERS_mix) {
    restore_alpha<16, 2>(*mix, 0, []<int n>(const unsigned char *from) {
        return deal_even<1, n>(from) & fill_bytes<n>(0x1f);
    });
}

void load_subpicture_alpha_rgb32(LUMALANE_PARAMETERS_mix) { load_alpha<4>(*mix); }

void load_subpicture_alpha_rgb24(LUMALANE_PARAMETERS_mix) {
    load_alpha<3>(*mix);
    mix->height = 0;
}

void load_subpicture_alpha_rgb16_565(LUMALANE_PARAMETERS_mix) { load_alpha<2>(*mix); }

} // namespace lumalane::LUMALANE_LANES
