// Other libraries' ways to the same output.
#pragma once

#include "bench/contest.h"
#include "bench/scene.h"

#include <string>

namespace lumalane::bench {

struct peer {
    const char *project;
    const char *way;               // its name for the conversion
    task (*prepare)(scene &scene); // the scene outlives the task
    bool is_yardstick = false;     // no library that does the same
};

// From planar pictures.
extern const peer libyuv_argb, libyuv_rgb24, libyuv_rgb565, libyuv_yuy2;
extern const peer swscale_bgra, swscale_bgr24, swscale_rgb565, swscale_yuy2;

// To half the width: averaged for YUY2, every second sample for YV12.
extern const peer libyuv_half_yuy2, libyuv_half_yv12;
extern const peer swscale_half_yuy2, swscale_half_yv12;

// From packed YUY2 pictures.
extern const peer libyuv_argb_from_yuy2, libyuv_rgb24_from_yuy2, libyuv_rgb565_from_yuy2;
extern const peer swscale_bgra_from_yuy2, swscale_bgr24_from_yuy2, swscale_rgb565_from_yuy2;

// From the colour planes of the subpicture, which have chroma on every row. (Alpha is not looked at.)
extern const peer libyuv_argb_from_i422, libyuv_rgb24_from_i422, libyuv_rgb565_from_i422;
extern const peer swscale_bgra_from_i422, swscale_bgr24_from_i422, swscale_rgb565_from_i422;

// From a drawing surface to the colour planes of the subpicture.
extern const peer libyuv_i422_from_argb, libyuv_i422_from_rgb24, libyuv_i422_from_rgb565;
extern const peer swscale_i422_from_bgra, swscale_i422_from_bgr24, swscale_i422_from_rgb565;

// The surface all of one colour.
extern const peer libyuv_fill_argb;

// What is no peer: the same bytes with less work.
extern const peer memset_surface, bilinear_1x2_yuy2;

// Nor this: the same work on one pixel after the other.
extern const peer scalar_frame_stretch;

// With the subpicture over the picture, and over a field that is stretched to a frame.
extern const peer libyuv_mix_yuy2, libyuv_mix_half_yuy2, libyuv_mix_yv12;
extern const peer libyuv_mix_argb, libyuv_mix_rgb24, libyuv_mix_rgb565;
extern const peer libyuv_mix_field_yuy2, libyuv_mix_field_yv12;
extern const peer libyuv_mix_field_argb, libyuv_mix_field_rgb24, libyuv_mix_field_rgb565;

// To twice the height and to twice both, bilinearly; a plane by itself is the picture's luma.
extern const peer libyuv_1x2_yuy2, libyuv_1x2_argb, libyuv_1x2_rgb24, libyuv_1x2_rgb565;
extern const peer libyuv_2x2_yuy2, libyuv_2x2_yuy2_from_yuy2;
extern const peer libyuv_1x2_yv12, libyuv_2x2_yv12, libyuv_1x2_plane, libyuv_2x2_plane;
extern const peer swscale_1x2_yuy2, swscale_1x2_bgra, swscale_1x2_bgr24, swscale_1x2_rgb565;
extern const peer swscale_2x2_yuy2;

std::string libyuv_version();
std::string swscale_version();

} // namespace lumalane::bench
