// Lumalane for C99, and for languages that bind to C: the functions and records of lumalane.h, which
// documents them. In C++ this is that header.
//
// Made from the list of the exports by cmake/c_header.cmake: change that, not this file.
//
// The functions have one name each in the library, that of C++. Where compilers know assembler
// labels a declaration here says that name. On Windows the names are plain ones: the import
// libraries and the static library have them as aliases.
#ifndef LUMALANE_C_H
#define LUMALANE_C_H

#ifdef __cplusplus
#include "lumalane.h"
#else

#include <stddef.h>

#define LUMALANE_VERSION_MAJOR 1
#define LUMALANE_VERSION_MINOR 0
#define LUMALANE_VERSION_PATCH 0
// One number for comparisons: 1.2.3 is 10203.
#define LUMALANE_VERSION                                                                           \
    (LUMALANE_VERSION_MAJOR * 10000 + LUMALANE_VERSION_MINOR * 100 + LUMALANE_VERSION_PATCH)

// Shared library: the default. Static library: define LUMALANE_STATIC; every module that it is linked into
// has a copy, and an adjustment, of its own.
#if defined(_WIN32) && defined(LUMALANE_STATIC)
#define LUMALANE_C_API extern
#elif defined(_WIN32)
#define LUMALANE_C_API __declspec(dllimport)
#else
#define LUMALANE_C_API extern
#endif

// Windows of 32 bits: the library's convention, whichever one a program's options make the default.
#if defined(_WIN32)
#define LUMALANE_CALL __cdecl
#else
#define LUMALANE_CALL
#endif

#if defined(_WIN32)
#define LUMALANE_C_NAME(name)
#elif defined(__GNUC__)
// Some platforms put an underscore in front of every name.
#define LUMALANE_C_TEXT_OF(macro) LUMALANE_C_TEXT(macro)
#define LUMALANE_C_TEXT(text) #text
#define LUMALANE_C_NAME(name) __asm__(LUMALANE_C_TEXT_OF(__USER_LABEL_PREFIX__) name)
#else
#error "lumalane_c.h needs a compiler with assembler labels: GCC, clang and those that follow them"
#endif

typedef struct tag_ajust_contrast_info tag_ajust_contrast_info;
typedef struct contrast_data contrast_data;
typedef struct tagMIX_INFO tagMIX_INFO;
typedef struct tagVideoFrame tagVideoFrame;

/// Facts about the destination surface; the last argument of picture functions and most stretches.
/// (In spite of its name it carries no gain and no offset: those come from get_contrast_data().) 48
/// bytes, little-endian.
struct tag_ajust_contrast_info {
    unsigned char unread_0[32]; ///< the caller's own

    /// Bits of an RGB16 pixel, most significant first. Read by the functions whose block says so
    /// ("reads info: rgb16_layout"); any other value makes them return at once and write nothing.
    /// load_subpicture_yuy2_rgb16() and load_subpicture_yuy2_rgb16_ajust() make 5-6-5 whichever of
    /// the four it is, and the rest have 5-6-5 alone.
    ///   0: RRRRRGGG GGGBBBBB   5-6-5
    ///   1: RRRRRGGG GGBBBBB0   5-5-5 in the upper fifteen bits
    ///   2: RRRRRRGG GGGGBBBB   6-6-4
    ///   3: RRRRRRGG GGGBBBBB   6-5-5
    unsigned int rgb16_layout;

    unsigned char unread_36[4]; ///< the caller's own

    /// Rows of the whole YV12 destination surface. Read by loadimage_yv12_ajust() only.
    int surface_height;

    /// Rows from the row at `dst` to the end of the surface's Y plane: surface_height minus the row
    /// at which the picture is placed. Read by loadimage_yv12_ajust() only.
    int rows_to_plane_end;
};

/// What get_contrast_data() reads. Of every field only the low 16 bits count.
struct contrast_data {
    int y_gain;         ///< gain of Y in 1/64: 64 leaves it as it is
    int uv_gain;        ///< gain of U and V in 1/64
    int y_offset;       ///< added to Y after the gain
    int u_offset;       ///< added to U after the gain
    int v_offset;       ///< added to V after the gain
    int y_offset_extra; ///< added to y_offset, modulo 2^16
    int u_offset_extra; ///< added to u_offset, modulo 2^16
    int v_offset_extra; ///< added to v_offset, modulo 2^16
};

/// The one argument of every subpicture function: the video, the subpicture and the destination.
/// Most functions use it as their running state and leave it changed: fill it before each call, and
/// give each thread its own.
struct tagMIX_INFO {
    int video_pitch; ///< bytes per row of video_y; video_u and video_v have half of it
    int sub_pitch;   ///< bytes per row of alpha_plane and sub_y; sub_u and sub_v have half of it
    int dst_pitch;   ///< bytes per row of dst; dst_u and dst_v have half of it
    int width;       ///< pixels per row
    int height;      ///< rows

    unsigned char *video_y; ///< the decoded video, 4:2:0
    unsigned char *video_v;
    unsigned char *video_u;

    unsigned char *alpha_plane; ///< the subpicture, AYUY2
    unsigned char *sub_y;
    unsigned char *sub_v;
    unsigned char *sub_u;

    unsigned char *dst;   ///< drawing surface, or the surface that a mix writes (Y plane for YV12)
    unsigned char *dst_u; ///< the YV12 mixes only
    unsigned char *dst_v; ///< the YV12 mixes only

    unsigned int color_key; ///< the drawing surface's colour for "no subpicture here"

    int reserved1; ///< read by no function; the caller's own
    int reserved2; ///< read by no function; the caller's own

    tag_ajust_contrast_info *adjust_info; ///< the RGB16 functions only: rgb16_layout
};

/// The frame that strech_opt_yuy2_ajust() reads.
struct tagVideoFrame {
    unsigned char unread_0[44];
    int field_mode; ///< 1: one field at a time (rows two pitches apart); other values: progressive
    unsigned char unread_48[48];
    unsigned char *plane_y;
    unsigned char *plane_u;
    unsigned char *plane_v;
    unsigned char unread_108[24];
    int luma_pitch; ///< bytes per row of plane_y, and the number of pixels converted per row
};

#if defined(__STDC_VERSION__) && __STDC_VERSION__ >= 201112L
// The records cross the boundary of a library: their layout is a format, of programs that pack their own
// structures, too.
#if defined(_M_IX86) || defined(__i386__)
_Static_assert(offsetof(tag_ajust_contrast_info, rgb16_layout) == 32, "rgb16_layout");
_Static_assert(offsetof(tag_ajust_contrast_info, surface_height) == 40, "surface_height");
_Static_assert(offsetof(tag_ajust_contrast_info, rows_to_plane_end) == 44, "rows_to_plane_end");
_Static_assert(sizeof(tag_ajust_contrast_info) == 48, "tag_ajust_contrast_info");

_Static_assert(offsetof(contrast_data, y_gain) == 0, "y_gain");
_Static_assert(offsetof(contrast_data, uv_gain) == 4, "uv_gain");
_Static_assert(offsetof(contrast_data, y_offset) == 8, "y_offset");
_Static_assert(offsetof(contrast_data, u_offset) == 12, "u_offset");
_Static_assert(offsetof(contrast_data, v_offset) == 16, "v_offset");
_Static_assert(offsetof(contrast_data, y_offset_extra) == 20, "y_offset_extra");
_Static_assert(offsetof(contrast_data, u_offset_extra) == 24, "u_offset_extra");
_Static_assert(offsetof(contrast_data, v_offset_extra) == 28, "v_offset_extra");

_Static_assert(offsetof(tagMIX_INFO, video_pitch) == 0, "video_pitch");
_Static_assert(offsetof(tagMIX_INFO, sub_pitch) == 4, "sub_pitch");
_Static_assert(offsetof(tagMIX_INFO, dst_pitch) == 8, "dst_pitch");
_Static_assert(offsetof(tagMIX_INFO, width) == 12, "width");
_Static_assert(offsetof(tagMIX_INFO, height) == 16, "height");
_Static_assert(offsetof(tagMIX_INFO, video_y) == 20, "video_y");
_Static_assert(offsetof(tagMIX_INFO, video_v) == 24, "video_v");
_Static_assert(offsetof(tagMIX_INFO, video_u) == 28, "video_u");
_Static_assert(offsetof(tagMIX_INFO, alpha_plane) == 32, "alpha_plane");
_Static_assert(offsetof(tagMIX_INFO, sub_y) == 36, "sub_y");
_Static_assert(offsetof(tagMIX_INFO, sub_v) == 40, "sub_v");
_Static_assert(offsetof(tagMIX_INFO, sub_u) == 44, "sub_u");
_Static_assert(offsetof(tagMIX_INFO, dst) == 48, "dst");
_Static_assert(offsetof(tagMIX_INFO, dst_u) == 52, "dst_u");
_Static_assert(offsetof(tagMIX_INFO, dst_v) == 56, "dst_v");
_Static_assert(offsetof(tagMIX_INFO, color_key) == 60, "color_key");
_Static_assert(offsetof(tagMIX_INFO, reserved1) == 64, "reserved1");
_Static_assert(offsetof(tagMIX_INFO, reserved2) == 68, "reserved2");
_Static_assert(offsetof(tagMIX_INFO, adjust_info) == 72, "adjust_info");
_Static_assert(sizeof(tagMIX_INFO) == 76, "tagMIX_INFO");

_Static_assert(offsetof(tagVideoFrame, field_mode) == 44, "field_mode");
_Static_assert(offsetof(tagVideoFrame, plane_y) == 96, "plane_y");
_Static_assert(offsetof(tagVideoFrame, plane_u) == 100, "plane_u");
_Static_assert(offsetof(tagVideoFrame, plane_v) == 104, "plane_v");
_Static_assert(offsetof(tagVideoFrame, luma_pitch) == 132, "luma_pitch");
#elif defined(_WIN64) || defined(__LP64__)
_Static_assert(offsetof(tagMIX_INFO, video_y) == 24, "video_y");
_Static_assert(offsetof(tagMIX_INFO, adjust_info) == 120, "adjust_info");
_Static_assert(sizeof(tagMIX_INFO) == 128, "tagMIX_INFO");
_Static_assert(offsetof(tagVideoFrame, plane_y) == 96, "plane_y");
_Static_assert(offsetof(tagVideoFrame, luma_pitch) == 144, "luma_pitch");
#endif
#endif

// clang-format off

LUMALANE_C_API void LUMALANE_CALL get_contrast_data(void *params)
    LUMALANE_C_NAME("_Z17get_contrast_dataPv");
LUMALANE_C_API void LUMALANE_CALL loadimage_yv12(unsigned char *src, unsigned char *src_u,
                                                 unsigned char *src_v, unsigned char *dst,
                                                 int width, int height, int src_pitch,
                                                 int dst_pitch, tag_ajust_contrast_info *info)
    LUMALANE_C_NAME("_Z14loadimage_yv12PhS_S_S_iiiiP23tag_ajust_contrast_info");
LUMALANE_C_API void LUMALANE_CALL loadimage_yv12_ajust(unsigned char *src, unsigned char *src_u,
                                                       unsigned char *src_v, unsigned char *dst,
                                                       int width, int height, int src_pitch,
                                                       int dst_pitch, tag_ajust_contrast_info *info)
    LUMALANE_C_NAME("_Z20loadimage_yv12_ajustPhS_S_S_iiiiP23tag_ajust_contrast_info");
LUMALANE_C_API void LUMALANE_CALL loadimage_rgb32(unsigned char *src, unsigned char *src_u,
                                                  unsigned char *src_v, unsigned char *dst,
                                                  int width, int height, int src_pitch,
                                                  int dst_pitch, tag_ajust_contrast_info *info)
    LUMALANE_C_NAME("_Z15loadimage_rgb32PhS_S_S_iiiiP23tag_ajust_contrast_info");
LUMALANE_C_API void LUMALANE_CALL loadimage_rgb32_ajust(unsigned char *src, unsigned char *src_u,
                                                        unsigned char *src_v, unsigned char *dst,
                                                        int width, int height, int src_pitch,
                                                        int dst_pitch,
                                                        tag_ajust_contrast_info *info)
    LUMALANE_C_NAME("_Z21loadimage_rgb32_ajustPhS_S_S_iiiiP23tag_ajust_contrast_info");
LUMALANE_C_API void LUMALANE_CALL loadimage_rgb24(unsigned char *src, unsigned char *src_u,
                                                  unsigned char *src_v, unsigned char *dst,
                                                  int width, int height, int src_pitch,
                                                  int dst_pitch, tag_ajust_contrast_info *info)
    LUMALANE_C_NAME("_Z15loadimage_rgb24PhS_S_S_iiiiP23tag_ajust_contrast_info");
LUMALANE_C_API void LUMALANE_CALL loadimage_rgb24_ajust(unsigned char *src, unsigned char *src_u,
                                                        unsigned char *src_v, unsigned char *dst,
                                                        int width, int height, int src_pitch,
                                                        int dst_pitch,
                                                        tag_ajust_contrast_info *info)
    LUMALANE_C_NAME("_Z21loadimage_rgb24_ajustPhS_S_S_iiiiP23tag_ajust_contrast_info");
LUMALANE_C_API void LUMALANE_CALL loadimage_rgb16(unsigned char *src, unsigned char *src_u,
                                                  unsigned char *src_v, unsigned char *dst,
                                                  int width, int height, int src_pitch,
                                                  int dst_pitch, tag_ajust_contrast_info *info)
    LUMALANE_C_NAME("_Z15loadimage_rgb16PhS_S_S_iiiiP23tag_ajust_contrast_info");
LUMALANE_C_API void LUMALANE_CALL loadimage_rgb16_ajust(unsigned char *src, unsigned char *src_u,
                                                        unsigned char *src_v, unsigned char *dst,
                                                        int width, int height, int src_pitch,
                                                        int dst_pitch,
                                                        tag_ajust_contrast_info *info)
    LUMALANE_C_NAME("_Z21loadimage_rgb16_ajustPhS_S_S_iiiiP23tag_ajust_contrast_info");
LUMALANE_C_API void LUMALANE_CALL loadimage_yuy2(unsigned char *src, unsigned char *src_u,
                                                 unsigned char *src_v, unsigned char *dst,
                                                 int width, int height, int src_pitch,
                                                 int dst_pitch, tag_ajust_contrast_info *info)
    LUMALANE_C_NAME("_Z14loadimage_yuy2PhS_S_S_iiiiP23tag_ajust_contrast_info");
LUMALANE_C_API void LUMALANE_CALL loadimage_yuy2_ajust(unsigned char *src, unsigned char *src_u,
                                                       unsigned char *src_v, unsigned char *dst,
                                                       int width, int height, int src_pitch,
                                                       int dst_pitch, tag_ajust_contrast_info *info)
    LUMALANE_C_NAME("_Z20loadimage_yuy2_ajustPhS_S_S_iiiiP23tag_ajust_contrast_info");
LUMALANE_C_API void LUMALANE_CALL loadimage_yuy2_mono_ajust(unsigned char *src,
                                                            unsigned char *src_u,
                                                            unsigned char *src_v,
                                                            unsigned char *dst, int width,
                                                            int height, int src_pitch,
                                                            int dst_pitch,
                                                            tag_ajust_contrast_info *info)
    LUMALANE_C_NAME("_Z25loadimage_yuy2_mono_ajustPhS_S_S_iiiiP23tag_ajust_contrast_info");
LUMALANE_C_API void LUMALANE_CALL loadimage_half_yuy2_ajust(unsigned char *src,
                                                            unsigned char *src_u,
                                                            unsigned char *src_v,
                                                            unsigned char *dst, int width,
                                                            int height, int src_pitch,
                                                            int dst_pitch,
                                                            tag_ajust_contrast_info *info)
    LUMALANE_C_NAME("_Z25loadimage_half_yuy2_ajustPhS_S_S_iiiiP23tag_ajust_contrast_info");
LUMALANE_C_API void LUMALANE_CALL loadimage_half_yv12_ajust(unsigned char *src,
                                                            unsigned char *src_u,
                                                            unsigned char *src_v,
                                                            unsigned char *dst, int width,
                                                            int height, int src_pitch,
                                                            int dst_pitch,
                                                            tag_ajust_contrast_info *info)
    LUMALANE_C_NAME("_Z25loadimage_half_yv12_ajustPhS_S_S_iiiiP23tag_ajust_contrast_info");
LUMALANE_C_API void LUMALANE_CALL LoadYUY2_YUY2(unsigned char *src, unsigned char *src_u,
                                                unsigned char *src_v, unsigned char *dst, int width,
                                                int height, int src_pitch, int dst_pitch,
                                                tag_ajust_contrast_info *info)
    LUMALANE_C_NAME("_Z13LoadYUY2_YUY2PhS_S_S_iiiiP23tag_ajust_contrast_info");
LUMALANE_C_API void LUMALANE_CALL LoadYUY2_YUY2_adjust(unsigned char *src, unsigned char *src_u,
                                                       unsigned char *src_v, unsigned char *dst,
                                                       int width, int height, int src_pitch,
                                                       int dst_pitch, tag_ajust_contrast_info *info)
    LUMALANE_C_NAME("_Z20LoadYUY2_YUY2_adjustPhS_S_S_iiiiP23tag_ajust_contrast_info");
LUMALANE_C_API void LUMALANE_CALL LoadYUY2_RGB16(unsigned char *src, unsigned char *src_u,
                                                 unsigned char *src_v, unsigned char *dst,
                                                 int width, int height, int src_pitch,
                                                 int dst_pitch, tag_ajust_contrast_info *info)
    LUMALANE_C_NAME("_Z14LoadYUY2_RGB16PhS_S_S_iiiiP23tag_ajust_contrast_info");
LUMALANE_C_API void LUMALANE_CALL LoadYUY2_RGB16_adjust(unsigned char *src, unsigned char *src_u,
                                                        unsigned char *src_v, unsigned char *dst,
                                                        int width, int height, int src_pitch,
                                                        int dst_pitch,
                                                        tag_ajust_contrast_info *info)
    LUMALANE_C_NAME("_Z21LoadYUY2_RGB16_adjustPhS_S_S_iiiiP23tag_ajust_contrast_info");
LUMALANE_C_API void LUMALANE_CALL LoadYUY2_RGB24(unsigned char *src, unsigned char *src_u,
                                                 unsigned char *src_v, unsigned char *dst,
                                                 int width, int height, int src_pitch,
                                                 int dst_pitch, tag_ajust_contrast_info *info)
    LUMALANE_C_NAME("_Z14LoadYUY2_RGB24PhS_S_S_iiiiP23tag_ajust_contrast_info");
LUMALANE_C_API void LUMALANE_CALL LoadYUY2_RGB24_adjust(unsigned char *src, unsigned char *src_u,
                                                        unsigned char *src_v, unsigned char *dst,
                                                        int width, int height, int src_pitch,
                                                        int dst_pitch,
                                                        tag_ajust_contrast_info *info)
    LUMALANE_C_NAME("_Z21LoadYUY2_RGB24_adjustPhS_S_S_iiiiP23tag_ajust_contrast_info");
LUMALANE_C_API void LUMALANE_CALL LoadYUY2_RGB32(unsigned char *src, unsigned char *src_u,
                                                 unsigned char *src_v, unsigned char *dst,
                                                 int width, int height, int src_pitch,
                                                 int dst_pitch, tag_ajust_contrast_info *info)
    LUMALANE_C_NAME("_Z14LoadYUY2_RGB32PhS_S_S_iiiiP23tag_ajust_contrast_info");
LUMALANE_C_API void LUMALANE_CALL LoadYUY2_RGB32_adjust(unsigned char *src, unsigned char *src_u,
                                                        unsigned char *src_v, unsigned char *dst,
                                                        int width, int height, int src_pitch,
                                                        int dst_pitch,
                                                        tag_ajust_contrast_info *info)
    LUMALANE_C_NAME("_Z21LoadYUY2_RGB32_adjustPhS_S_S_iiiiP23tag_ajust_contrast_info");
LUMALANE_C_API void LUMALANE_CALL Convert_RGB32_To_AYUY2(tagMIX_INFO *mix)
    LUMALANE_C_NAME("_Z22Convert_RGB32_To_AYUY2P11tagMIX_INFO");
LUMALANE_C_API void LUMALANE_CALL Convert_RGB24_To_AYUY2(tagMIX_INFO *mix)
    LUMALANE_C_NAME("_Z22Convert_RGB24_To_AYUY2P11tagMIX_INFO");
LUMALANE_C_API void LUMALANE_CALL Convert_RGB16_565_To_AYUY2(tagMIX_INFO *mix)
    LUMALANE_C_NAME("_Z26Convert_RGB16_565_To_AYUY2P11tagMIX_INFO");
LUMALANE_C_API void LUMALANE_CALL Restore_RGB32_To_Alpha(tagMIX_INFO *mix)
    LUMALANE_C_NAME("_Z22Restore_RGB32_To_AlphaP11tagMIX_INFO");
LUMALANE_C_API void LUMALANE_CALL Restore_RGB24_To_Alpha(tagMIX_INFO *mix)
    LUMALANE_C_NAME("_Z22Restore_RGB24_To_AlphaP11tagMIX_INFO");
LUMALANE_C_API void LUMALANE_CALL Restore_RGB16_565_To_Alpha(tagMIX_INFO *mix)
    LUMALANE_C_NAME("_Z26Restore_RGB16_565_To_AlphaP11tagMIX_INFO");
LUMALANE_C_API void LUMALANE_CALL load_subpicture_alpha_rgb32(tagMIX_INFO *mix)
    LUMALANE_C_NAME("_Z27load_subpicture_alpha_rgb32P11tagMIX_INFO");
LUMALANE_C_API void LUMALANE_CALL load_subpicture_alpha_rgb24(tagMIX_INFO *mix)
    LUMALANE_C_NAME("_Z27load_subpicture_alpha_rgb24P11tagMIX_INFO");
LUMALANE_C_API void LUMALANE_CALL load_subpicture_alpha_rgb16_565(tagMIX_INFO *mix)
    LUMALANE_C_NAME("_Z31load_subpicture_alpha_rgb16_565P11tagMIX_INFO");
LUMALANE_C_API void LUMALANE_CALL load_subpicture_yuy2_rgb32(tagMIX_INFO *mix)
    LUMALANE_C_NAME("_Z26load_subpicture_yuy2_rgb32P11tagMIX_INFO");
LUMALANE_C_API void LUMALANE_CALL load_subpicture_yuy2_rgb32_ajust(tagMIX_INFO *mix)
    LUMALANE_C_NAME("_Z32load_subpicture_yuy2_rgb32_ajustP11tagMIX_INFO");
LUMALANE_C_API void LUMALANE_CALL load_subpicture_yuy2_rgb24(tagMIX_INFO *mix)
    LUMALANE_C_NAME("_Z26load_subpicture_yuy2_rgb24P11tagMIX_INFO");
LUMALANE_C_API void LUMALANE_CALL load_subpicture_yuy2_rgb24_ajust(tagMIX_INFO *mix)
    LUMALANE_C_NAME("_Z32load_subpicture_yuy2_rgb24_ajustP11tagMIX_INFO");
LUMALANE_C_API void LUMALANE_CALL load_subpicture_yuy2_rgb16(tagMIX_INFO *mix)
    LUMALANE_C_NAME("_Z26load_subpicture_yuy2_rgb16P11tagMIX_INFO");
LUMALANE_C_API void LUMALANE_CALL load_subpicture_yuy2_rgb16_ajust(tagMIX_INFO *mix)
    LUMALANE_C_NAME("_Z32load_subpicture_yuy2_rgb16_ajustP11tagMIX_INFO");
LUMALANE_C_API void LUMALANE_CALL LoadColorKeyRgb32(unsigned int key, void *surface, int width,
                                                    int height, int reserved, int pitch)
    LUMALANE_C_NAME("_Z17LoadColorKeyRgb32jPviiii");
LUMALANE_C_API void LUMALANE_CALL LoadColorKeyRgb24(unsigned int key, void *surface, int width,
                                                    int height, int reserved, int pitch)
    LUMALANE_C_NAME("_Z17LoadColorKeyRgb24jPviiii");
LUMALANE_C_API void LUMALANE_CALL LoadColorKeyRgb16(unsigned int key, void *surface, int width,
                                                    int height, int reserved, int pitch)
    LUMALANE_C_NAME("_Z17LoadColorKeyRgb16jPviiii");
LUMALANE_C_API void LUMALANE_CALL RelaceMaskWithColorKey(unsigned char *dst, unsigned char *mask,
                                                         unsigned int mask_value,
                                                         unsigned int key_value, int width,
                                                         int pitch, int height)
    LUMALANE_C_NAME("_Z22RelaceMaskWithColorKeyPhS_jjiii");
LUMALANE_C_API void LUMALANE_CALL mix_ayuy2_yuy2_p_ajust(tagMIX_INFO *mix)
    LUMALANE_C_NAME("_Z22mix_ayuy2_yuy2_p_ajustP11tagMIX_INFO");
LUMALANE_C_API void LUMALANE_CALL mix_ayuy2_half_yuy2_p_ajust(tagMIX_INFO *mix)
    LUMALANE_C_NAME("_Z27mix_ayuy2_half_yuy2_p_ajustP11tagMIX_INFO");
LUMALANE_C_API void LUMALANE_CALL mix_ayuy2_yuy2_i_ajust(tagMIX_INFO *mix)
    LUMALANE_C_NAME("_Z22mix_ayuy2_yuy2_i_ajustP11tagMIX_INFO");
LUMALANE_C_API void LUMALANE_CALL mix_ayv12_yv12_p(tagMIX_INFO *mix)
    LUMALANE_C_NAME("_Z16mix_ayv12_yv12_pP11tagMIX_INFO");
LUMALANE_C_API void LUMALANE_CALL mix_ayv12_yv12_i(tagMIX_INFO *mix)
    LUMALANE_C_NAME("_Z16mix_ayv12_yv12_iP11tagMIX_INFO");
LUMALANE_C_API void LUMALANE_CALL mix_ayv12_yv12_p_ajust(tagMIX_INFO *mix)
    LUMALANE_C_NAME("_Z22mix_ayv12_yv12_p_ajustP11tagMIX_INFO");
LUMALANE_C_API void LUMALANE_CALL mix_ayuy2_rgb32_p_ajust(tagMIX_INFO *mix)
    LUMALANE_C_NAME("_Z23mix_ayuy2_rgb32_p_ajustP11tagMIX_INFO");
LUMALANE_C_API void LUMALANE_CALL mix_ayuy2_rgb24_p_ajust(tagMIX_INFO *mix)
    LUMALANE_C_NAME("_Z23mix_ayuy2_rgb24_p_ajustP11tagMIX_INFO");
LUMALANE_C_API void LUMALANE_CALL mix_ayuy2_rgb16_p_ajust(tagMIX_INFO *mix)
    LUMALANE_C_NAME("_Z23mix_ayuy2_rgb16_p_ajustP11tagMIX_INFO");
LUMALANE_C_API void LUMALANE_CALL mix_ayuy2_rgb32_i_ajust(tagMIX_INFO *mix)
    LUMALANE_C_NAME("_Z23mix_ayuy2_rgb32_i_ajustP11tagMIX_INFO");
LUMALANE_C_API void LUMALANE_CALL mix_ayuy2_rgb24_i_ajust(tagMIX_INFO *mix)
    LUMALANE_C_NAME("_Z23mix_ayuy2_rgb24_i_ajustP11tagMIX_INFO");
LUMALANE_C_API void LUMALANE_CALL mix_ayuy2_rgb16_i_ajust(tagMIX_INFO *mix)
    LUMALANE_C_NAME("_Z23mix_ayuy2_rgb16_i_ajustP11tagMIX_INFO");
LUMALANE_C_API void LUMALANE_CALL strech_picture_1X2_yuy2(unsigned char *src, unsigned char *src_u,
                                                          unsigned char *src_v, unsigned char *dst,
                                                          int width, int height, int src_pitch,
                                                          int dst_pitch,
                                                          tag_ajust_contrast_info *info)
    LUMALANE_C_NAME("_Z23strech_picture_1X2_yuy2PhS_S_S_iiiiP23tag_ajust_contrast_info");
LUMALANE_C_API void LUMALANE_CALL strech_picture_1X2_yuy2_ajust(unsigned char *src,
                                                                unsigned char *src_u,
                                                                unsigned char *src_v,
                                                                unsigned char *dst, int width,
                                                                int height, int src_pitch,
                                                                int dst_pitch,
                                                                tag_ajust_contrast_info *info)
    LUMALANE_C_NAME("_Z29strech_picture_1X2_yuy2_ajustPhS_S_S_iiiiP23tag_ajust_contrast_info");
LUMALANE_C_API void LUMALANE_CALL strech_picture_2X2_yuy2(unsigned char *src, unsigned char *src_u,
                                                          unsigned char *src_v, unsigned char *dst,
                                                          int width, int height, int src_pitch,
                                                          int dst_pitch,
                                                          tag_ajust_contrast_info *info)
    LUMALANE_C_NAME("_Z23strech_picture_2X2_yuy2PhS_S_S_iiiiP23tag_ajust_contrast_info");
LUMALANE_C_API void LUMALANE_CALL strech_picture_2X2_yuy2_ajust(unsigned char *src,
                                                                unsigned char *src_u,
                                                                unsigned char *src_v,
                                                                unsigned char *dst, int width,
                                                                int height, int src_pitch,
                                                                int dst_pitch,
                                                                tag_ajust_contrast_info *info)
    LUMALANE_C_NAME("_Z29strech_picture_2X2_yuy2_ajustPhS_S_S_iiiiP23tag_ajust_contrast_info");
LUMALANE_C_API void LUMALANE_CALL yuy2_strech_picture_2X2_yuy2(void *src, void *unread_u,
                                                               void *unread_v, void *dst,
                                                               int row_bytes, int height,
                                                               int dst_pitch)
    LUMALANE_C_NAME("_Z28yuy2_strech_picture_2X2_yuy2PvS_S_S_iii");
LUMALANE_C_API void LUMALANE_CALL yuy2_strech_picture_2X2_yuy2_ajust(void *src, void *unread_u,
                                                                     void *unread_v, void *dst,
                                                                     int row_bytes, int height,
                                                                     int dst_pitch,
                                                                     tag_ajust_contrast_info *info)
    LUMALANE_C_NAME("_Z34yuy2_strech_picture_2X2_yuy2_ajustPvS_S_S_iiiP23tag_ajust_contrast_info");
LUMALANE_C_API void LUMALANE_CALL strech_picture_1X2_yuy2_ajust_rgb32(unsigned char *src,
                                                                      unsigned char *src_u,
                                                                      unsigned char *src_v,
                                                                      unsigned char *dst, int width,
                                                                      int height, int src_pitch,
                                                                      int dst_pitch,
                                                                      tag_ajust_contrast_info *info)
    LUMALANE_C_NAME("_Z35strech_picture_1X2_yuy2_ajust_rgb32PhS_S_S_iiiiP23tag_ajust_contrast_info");
LUMALANE_C_API void LUMALANE_CALL strech_picture_1X2_yuy2_ajust_rgb24(unsigned char *src,
                                                                      unsigned char *src_u,
                                                                      unsigned char *src_v,
                                                                      unsigned char *dst, int width,
                                                                      int height, int src_pitch,
                                                                      int dst_pitch,
                                                                      tag_ajust_contrast_info *info)
    LUMALANE_C_NAME("_Z35strech_picture_1X2_yuy2_ajust_rgb24PhS_S_S_iiiiP23tag_ajust_contrast_info");
LUMALANE_C_API void LUMALANE_CALL strech_picture_1X2_yuy2_ajust_rgb16(unsigned char *src,
                                                                      unsigned char *src_u,
                                                                      unsigned char *src_v,
                                                                      unsigned char *dst, int width,
                                                                      int height, int src_pitch,
                                                                      int dst_pitch,
                                                                      tag_ajust_contrast_info *info)
    LUMALANE_C_NAME("_Z35strech_picture_1X2_yuy2_ajust_rgb16PhS_S_S_iiiiP23tag_ajust_contrast_info");
LUMALANE_C_API void LUMALANE_CALL strech_picture_2X2_yv12_ajust(unsigned char *src,
                                                                unsigned char *src_u,
                                                                unsigned char *src_v,
                                                                unsigned char *dst, int width,
                                                                int height, int src_pitch,
                                                                int dst_pitch,
                                                                tag_ajust_contrast_info *info)
    LUMALANE_C_NAME("_Z29strech_picture_2X2_yv12_ajustPhS_S_S_iiiiP23tag_ajust_contrast_info");
LUMALANE_C_API void LUMALANE_CALL strech_picture_1X2_yv12_ajust(unsigned char *src,
                                                                unsigned char *src_u,
                                                                unsigned char *src_v,
                                                                unsigned char *dst, int width,
                                                                int height, int src_pitch,
                                                                int dst_pitch,
                                                                tag_ajust_contrast_info *info)
    LUMALANE_C_NAME("_Z29strech_picture_1X2_yv12_ajustPhS_S_S_iiiiP23tag_ajust_contrast_info");
LUMALANE_C_API void LUMALANE_CALL strech_pic_2X2(unsigned char *src, unsigned char *dst, int width,
                                                 int height, int src_pitch, int dst_pitch)
    LUMALANE_C_NAME("_Z14strech_pic_2X2PhS_iiii");
LUMALANE_C_API void LUMALANE_CALL strech_pic_2X2_adjust(unsigned char *src, unsigned char *dst,
                                                        int width, int height, int src_pitch,
                                                        int dst_pitch,
                                                        tag_ajust_contrast_info *info,
                                                        int plane_number)
    LUMALANE_C_NAME("_Z21strech_pic_2X2_adjustPhS_iiiiP23tag_ajust_contrast_infoi");
LUMALANE_C_API void LUMALANE_CALL strech_pic_1X2_adjust(unsigned char *src, unsigned char *dst,
                                                        int width, int height, int src_pitch,
                                                        int dst_pitch,
                                                        tag_ajust_contrast_info *info,
                                                        int plane_number)
    LUMALANE_C_NAME("_Z21strech_pic_1X2_adjustPhS_iiiiP23tag_ajust_contrast_infoi");
LUMALANE_C_API void LUMALANE_CALL strech_opt_yuy2_ajust(tagVideoFrame *frame, int start, int height,
                                                        unsigned char *dst, int dst_pitch,
                                                        tag_ajust_contrast_info *info)
    LUMALANE_C_NAME("_Z21strech_opt_yuy2_ajustP13tagVideoFrameiiPhiP23tag_ajust_contrast_info");
// clang-format on

#endif
#endif
