// Blends subpictures onto pictures of any size.
#ifndef LUMALANE_BLEND_H
#define LUMALANE_BLEND_H

#include <lumalane/convert.h>

namespace lumalane {

/// A subtitle or a menu: AYUY2 of any size. Alpha and Y have a sample per pixel, U and V one per two
/// pixels (rounded up) on every row. Alpha runs from 0 (video only) to 16 and more (subpicture only).
struct subpicture {
    int width;
    int height;
    const_plane alpha;
    const_plane y;
    const_plane u;
    const_plane v;
};

/// Converts a picture with a subpicture over it, whose upper left corner is at pixel x, y of it.
///
///   from          to
///   yv12, i420    rgb32, rgb24, rgb565, rgb555, rgb664, rgb655, yuy2, yv12, i420
///
/// The subpicture may lie anywhere, also partly or wholly outside; outside of its rectangle alpha is
/// 0. The pixels are those of mix_ayuy2_rgb32_p_ajust(), mix_ayuy2_rgb24_p_ajust(),
/// mix_ayuy2_rgb16_p_ajust(), mix_ayuy2_yuy2_p_ajust(), mix_ayv12_yv12_p() or
/// mix_ayv12_yv12_p_ajust() for a picture that is made larger by repeating its last column and row,
/// and a subpicture as large as it. Two pixels of the picture have the U and V that the subpicture
/// has under the second one, whose alpha weighs them.
///
/// Only the yv12 and i420 destinations do without the adjustment's lock (see <lumalane/adjust.h>):
/// the other functions always adjust, here by nothing.
///
/// Refuses what convert() refuses; of the subpicture the same, and what overlaps it.
status blend(const const_picture &video, const subpicture &over, int x, int y,
             const picture &destination);

/// The same with an adjustment of picture and subpicture.
status blend(const const_picture &video, const subpicture &over, int x, int y,
             const picture &destination, const adjustment &own);

} // namespace lumalane

#endif
