// A call of an exported function as one object: its arguments in their order, by the names of
// signatures that abi/exports.inc uses.
#pragma once

#include <lumalane.h>

namespace lumalane::call {

struct parameters {
    void *params;
};

struct picture {
    unsigned char *src, *src_u, *src_v, *dst;
    int width, height, src_pitch, dst_pitch;
    const tag_ajust_contrast_info *info;
};

struct mix {
    tagMIX_INFO *record;
};

struct key_fill {
    unsigned key;
    void *surface;
    int width, height, reserved, pitch;
};

struct mask {
    unsigned char *dst, *mask;
    unsigned mask_value, key_value;
    int width, pitch, height;
};

struct packed_stretch {
    const void *src, *unread_u, *unread_v;
    void *dst;
    int row_bytes, height, dst_pitch;
    const tag_ajust_contrast_info *info = nullptr; // the adjusting one alone has it
};

using packed_stretch_ajust = packed_stretch;

struct plane_stretch {
    const unsigned char *src;
    unsigned char *dst;
    int width, height, src_pitch, dst_pitch;
    const tag_ajust_contrast_info *info = nullptr; // the adjusting ones alone have these
    int plane_number = 0;
};

using plane_stretch_ajust = plane_stretch;

struct frame_stretch {
    const tagVideoFrame *frame;
    int start, height;
    unsigned char *dst;
    int dst_pitch;
    const tag_ajust_contrast_info *info;
};

} // namespace lumalane::call
