// The argument lists of the exported functions, by the signature names that exports.inc uses:
// LUMALANE_PARAMETERS_<signature> declares them, LUMALANE_ARGUMENTS_<signature> passes them on.
#pragma once

#include <lumalane.h>

#define LUMALANE_PARAMETERS_parameters void *params
#define LUMALANE_ARGUMENTS_parameters params

#define LUMALANE_PARAMETERS_picture                                                                \
    unsigned char *src, unsigned char *src_u, unsigned char *src_v, unsigned char *dst, int width, \
        int height, int src_pitch, int dst_pitch, tag_ajust_contrast_info *info
#define LUMALANE_ARGUMENTS_picture src, src_u, src_v, dst, width, height, src_pitch, dst_pitch, info

#define LUMALANE_PARAMETERS_mix tagMIX_INFO *mix
#define LUMALANE_ARGUMENTS_mix mix

#define LUMALANE_PARAMETERS_key_fill                                                               \
    unsigned int key, void *surface, int width, int height, [[maybe_unused]] int reserved, int pitch
#define LUMALANE_ARGUMENTS_key_fill key, surface, width, height, reserved, pitch

#define LUMALANE_PARAMETERS_mask                                                                   \
    unsigned char *dst, unsigned char *mask, unsigned int mask_value, unsigned int key_value,      \
        int width, int pitch, int height
#define LUMALANE_ARGUMENTS_mask dst, mask, mask_value, key_value, width, pitch, height

#define LUMALANE_PARAMETERS_packed_stretch                                                         \
    void *src, [[maybe_unused]] void *unread_u, [[maybe_unused]] void *unread_v, void *dst,        \
        int row_bytes, int height, int dst_pitch
#define LUMALANE_ARGUMENTS_packed_stretch src, unread_u, unread_v, dst, row_bytes, height, dst_pitch

#define LUMALANE_PARAMETERS_packed_stretch_ajust                                                   \
    LUMALANE_PARAMETERS_packed_stretch, [[maybe_unused]] tag_ajust_contrast_info *info
#define LUMALANE_ARGUMENTS_packed_stretch_ajust LUMALANE_ARGUMENTS_packed_stretch, info

#define LUMALANE_PARAMETERS_plane_stretch                                                          \
    unsigned char *src, unsigned char *dst, int width, int height, int src_pitch, int dst_pitch
#define LUMALANE_ARGUMENTS_plane_stretch src, dst, width, height, src_pitch, dst_pitch

#define LUMALANE_PARAMETERS_plane_stretch_ajust                                                    \
    LUMALANE_PARAMETERS_plane_stretch, [[maybe_unused]] tag_ajust_contrast_info *info,             \
        int plane_number
#define LUMALANE_ARGUMENTS_plane_stretch_ajust LUMALANE_ARGUMENTS_plane_stretch, info, plane_number

#define LUMALANE_PARAMETERS_frame_stretch                                                          \
    tagVideoFrame *frame, int start, int height, unsigned char *dst, int dst_pitch,                \
        [[maybe_unused]] tag_ajust_contrast_info *info
#define LUMALANE_ARGUMENTS_frame_stretch frame, start, height, dst, dst_pitch, info
