// Lumalane: from decoded YV12 and YUY2 pictures to the pixels of a display surface.
//
// A player's renderer calls one of these functions per frame. Each reads buffers that the caller
// owns, writes one destination that the caller owns, and returns nothing. The library allocates
// nothing, starts no thread, opens no file and keeps one piece of state: the picture adjustment
// that get_contrast_data() sets. Nothing is checked: a pointer, size or pitch that does not fit its
// buffer is the caller's error.
//
// This header is the manual. It needs C++11 and nothing else.
//
// Conventions
//   - Samples are unsigned bytes. A pitch is the distance in bytes from the first byte of a row to
//     the first byte of the next, unless a function says pixels. Halved pitches and widths are
//     rounded down.
//   - Rows are worked in steps of 8, 16 or 32 pixels. A width that is not a multiple of the step is
//     rounded up: the last step of every row reads and writes up to the next multiple, and since
//     the move to the next row is computed from `width`, every later row (or pair of rows) starts
//     that many pixels further right, in the source and in the destination. Every row gets at
//     least one step. Give buffers room for it, or widths on the step. (The conversions to AYUY2
//     alone round down, and do nothing for a row shorter than a step.)
//   - 4:2:0 pictures are worked two rows at a time: an odd height converts one row more, and a
//     height of 0 or 1 converts two rows.
//   - Widths and heights are counted as unsigned numbers: negative ones run into unmapped memory.
//     Functions with a least height, and the mixes onto YUY2 and RGB, compare them as signed ones.
//   - Any function may run on several threads at once on separate buffers. The values of
//     get_contrast_data() are read once at the start of each call; changing them while another
//     thread converts is safe, but that picture may see a mixture of old and new values.
//   - On 32-bit x86 every function leaves the multimedia (MMX) state empty, and a stack aligned to
//     4 bytes is enough.
//
// Pixel formats
//   YV12    three planes: Y with one byte per pixel, V (Cr) and U (Cb) with one byte per 2x2 pixels
//           and half the pitch of Y. As a source they are given by three pointers; as a destination
//           they lie in one buffer in the order Y, V, U.
//   YUY2    2 bytes per pixel: Y0 U Y1 V for two pixels.
//   RGB32   4 bytes per pixel: B G R 0.
//   RGB24   3 bytes per pixel: B G R, without gaps.
//   RGB16   one little-endian 16-bit word per pixel; tag_ajust_contrast_info::rgb16_layout has the
//           four layouts.
//   AYUY2   a subpicture (subtitle, menu): planes of alpha and Y with one byte per pixel, of V and
//           U with one byte per two pixels on every row. Alpha runs from 0 (video only) to 16
//           (subpicture only); more than 16 counts as 16.
//   AYV12   the same four planes, of whose chroma rows every second one is read.
//
// Colour: ITU-R BT.601, studio range (Y 16..235, U and V 16..240 around 128), full-range RGB.
#ifndef LUMALANE_H
#define LUMALANE_H

#include <stddef.h>

// Shared library: the default. Static library: define LUMALANE_STATIC.
#if defined(LUMALANE_STATIC)
#define LUMALANE_API
#elif defined(_WIN32)
#if defined(LUMALANE_BUILD)
#define LUMALANE_API __declspec(dllexport)
#else
#define LUMALANE_API __declspec(dllimport)
#endif
#else
#define LUMALANE_API __attribute__((visibility("default")))
#endif

// Facts about the destination surface; the last argument of most functions. (In spite of its name
// it carries no gain and no offset: those come from get_contrast_data().) 48 bytes, little-endian.
struct tag_ajust_contrast_info {
    unsigned char unread_0[32]; // the caller's own

    // Bits of an RGB16 pixel, most significant first. Read by the functions that make RGB16
    // pictures (their names end in rgb16, RGB16, rgb16_ajust or RGB16_adjust); any other value
    // makes them return at once and write nothing. The rest take 5-6-5.
    //   0: RRRRRGGG GGGBBBBB   5-6-5
    //   1: RRRRRGGG GGBBBBB0   5-5-5 in the upper fifteen bits
    //   2: RRRRRRGG GGGGBBBB   6-6-4
    //   3: RRRRRRGG GGGBBBBB   6-5-5
    unsigned int rgb16_layout;

    unsigned char unread_36[4]; // the caller's own

    // Rows of the whole YV12 destination surface. Read by loadimage_yv12_ajust() only.
    int surface_height;

    // Rows from the row at `dst` to the end of the surface's Y plane: surface_height minus the row
    // at which the picture is placed. Read by loadimage_yv12_ajust() only.
    int rows_to_plane_end;
};

// What get_contrast_data() reads. Of every field only the low 16 bits count.
struct contrast_data {
    int y_gain;         // gain of Y in 1/64: 64 leaves it as it is
    int uv_gain;        // gain of U and V in 1/64
    int y_offset;       // added to Y after the gain
    int u_offset;       // added to U after the gain
    int v_offset;       // added to V after the gain
    int y_offset_extra; // added to y_offset, modulo 2^16
    int u_offset_extra; // added to u_offset, modulo 2^16
    int v_offset_extra; // added to v_offset, modulo 2^16
};

// The one argument of every subpicture function: the video, the subpicture and the destination.
// Several functions use it as their running state and leave it changed; fill it before each call.
struct tagMIX_INFO {
    int video_pitch; // bytes per row of video_y; video_u and video_v have half of it
    int sub_pitch;   // bytes per row of alpha_plane and sub_y; sub_u and sub_v have half of it
    int dst_pitch;   // bytes per row of dst; dst_u and dst_v have half of it
    int width;       // pixels per row
    int height;      // rows

    unsigned char *video_y; // the decoded video, 4:2:0
    unsigned char *video_v;
    unsigned char *video_u;

    unsigned char *alpha_plane; // the subpicture, AYUY2
    unsigned char *sub_y;
    unsigned char *sub_v;
    unsigned char *sub_u;

    unsigned char *dst;   // drawing surface, or the surface that a mix writes (Y plane for YV12)
    unsigned char *dst_u; // the YV12 mixes only
    unsigned char *dst_v; // the YV12 mixes only

    unsigned int color_key; // the drawing surface's colour for "no subpicture here"

    int reserved1; // read by no function; the caller's own
    int reserved2; // read by no function; the caller's own

    tag_ajust_contrast_info *adjust_info; // the RGB16 functions only: rgb16_layout
};

// The frame that strech_opt_yuy2_ajust() reads.
struct tagVideoFrame {
    unsigned char unread_0[44];
    int field_mode; // 1: one field at a time (rows two pitches apart); other values: progressive
    unsigned char unread_48[48];
    unsigned char *plane_y;
    unsigned char *plane_u;
    unsigned char *plane_v;
    unsigned char unread_108[24];
    int luma_pitch; // bytes per row of plane_y, and the number of pixels converted per row
};

// The records cross the boundary of a 32-bit library: their layout is a format.
#if defined(_M_IX86) || defined(__i386__)
static_assert(offsetof(tag_ajust_contrast_info, rgb16_layout) == 32, "rgb16_layout");
static_assert(offsetof(tag_ajust_contrast_info, surface_height) == 40, "surface_height");
static_assert(offsetof(tag_ajust_contrast_info, rows_to_plane_end) == 44, "rows_to_plane_end");
static_assert(sizeof(tag_ajust_contrast_info) == 48, "tag_ajust_contrast_info");

static_assert(offsetof(contrast_data, y_gain) == 0, "y_gain");
static_assert(offsetof(contrast_data, uv_gain) == 4, "uv_gain");
static_assert(offsetof(contrast_data, y_offset) == 8, "y_offset");
static_assert(offsetof(contrast_data, u_offset) == 12, "u_offset");
static_assert(offsetof(contrast_data, v_offset) == 16, "v_offset");
static_assert(offsetof(contrast_data, y_offset_extra) == 20, "y_offset_extra");
static_assert(offsetof(contrast_data, u_offset_extra) == 24, "u_offset_extra");
static_assert(offsetof(contrast_data, v_offset_extra) == 28, "v_offset_extra");

static_assert(offsetof(tagMIX_INFO, video_pitch) == 0, "video_pitch");
static_assert(offsetof(tagMIX_INFO, sub_pitch) == 4, "sub_pitch");
static_assert(offsetof(tagMIX_INFO, dst_pitch) == 8, "dst_pitch");
static_assert(offsetof(tagMIX_INFO, width) == 12, "width");
static_assert(offsetof(tagMIX_INFO, height) == 16, "height");
static_assert(offsetof(tagMIX_INFO, video_y) == 20, "video_y");
static_assert(offsetof(tagMIX_INFO, video_v) == 24, "video_v");
static_assert(offsetof(tagMIX_INFO, video_u) == 28, "video_u");
static_assert(offsetof(tagMIX_INFO, alpha_plane) == 32, "alpha_plane");
static_assert(offsetof(tagMIX_INFO, sub_y) == 36, "sub_y");
static_assert(offsetof(tagMIX_INFO, sub_v) == 40, "sub_v");
static_assert(offsetof(tagMIX_INFO, sub_u) == 44, "sub_u");
static_assert(offsetof(tagMIX_INFO, dst) == 48, "dst");
static_assert(offsetof(tagMIX_INFO, dst_u) == 52, "dst_u");
static_assert(offsetof(tagMIX_INFO, dst_v) == 56, "dst_v");
static_assert(offsetof(tagMIX_INFO, color_key) == 60, "color_key");
static_assert(offsetof(tagMIX_INFO, reserved1) == 64, "reserved1");
static_assert(offsetof(tagMIX_INFO, reserved2) == 68, "reserved2");
static_assert(offsetof(tagMIX_INFO, adjust_info) == 72, "adjust_info");
static_assert(sizeof(tagMIX_INFO) == 76, "tagMIX_INFO");

static_assert(offsetof(tagVideoFrame, field_mode) == 44, "field_mode");
static_assert(offsetof(tagVideoFrame, plane_y) == 96, "plane_y");
static_assert(offsetof(tagVideoFrame, plane_u) == 100, "plane_u");
static_assert(offsetof(tagVideoFrame, plane_v) == 104, "plane_v");
static_assert(offsetof(tagVideoFrame, luma_pitch) == 132, "luma_pitch");
#endif

// ---- Picture adjustment ---------------------------------------------------------------------

// Sets the adjustment that every function whose name ends in _ajust or _adjust applies, until the
// next call, for all threads. `params` points to a contrast_data. Before the first call all gains
// and offsets are 0, so every adjusted sample comes out 0.
//
// A sample x of a plane with gain g and offset o becomes, in 16-bit lanes,
//     clamp_to_byte(((low16(x * g) saturating+ 32) logical>> 6) saturating+ o)
// so gain 64 and offset 0 change nothing. There is no guard against x * g of 32768 or more: the
// product wraps.
LUMALANE_API void get_contrast_data(void *params);

// ---- Picture functions ----------------------------------------------------------------------
//
// They all take the same nine arguments:
//   src, src_u, src_v   the Y, U and V planes of a YV12 picture, or one packed picture at src
//   dst                 first byte of the first destination row
//   width, height       of the source, in pixels and rows
//   src_pitch           bytes per row of src; src_u and src_v have half of it
//   dst_pitch           bytes per row of dst (of its Y plane for YV12)
//   info                facts about the destination; null will do where it is not read

// Copies a YV12 picture into a YV12 buffer, with addressing that is peculiar and kept (W = width,
// H = height, S = src_pitch, D = dst_pitch; info is not read):
//   - Y, two rows per pass, steps of 16 bytes: W bytes (rounded up) go from the source to the
//     destination, and those W bytes further on in the source go S bytes further down in the
//     destination. Then the source moves on by (2S - W) + (2D - W) and the destination not at all,
//     both on top of the rounded-up W.
//   - V goes to one byte before dst + H * D, U to (H * D) / 4 after that; two rows per pass, steps
//     of 8 bytes over W / 2, rows S / 2 and D / 2 apart, (2S - W) / 2 and (2D - W) / 2 to the next
//     pass.
//   - As many chroma rows as luma rows are copied: H of each plane (rounded up to even), twice what
//     the planes hold. Source and destination must have room for them.
LUMALANE_API void loadimage_yv12(unsigned char *src, unsigned char *src_u, unsigned char *src_v,
                                 unsigned char *dst, int width, int height, int src_pitch,
                                 int dst_pitch, tag_ajust_contrast_info *info);

// Adjusts a YV12 picture into a YV12 surface that may be taller than the picture (D = dst_pitch):
//   - The V plane of the surface starts at dst + rows_to_plane_end * D, the picture's V rows
//     (surface_height - rows_to_plane_end) * D / 4 after that; the U rows surface_height * D / 4
//     after the V rows.
//   - Each plane is worked in steps of 8 bytes. The source rows are taken as one continuous run:
//     every row starts where the last step of the row before ended, whatever src_pitch says.
//     Destination rows are D bytes apart (D / 2 for chroma); a width off the step drifts.
//   - Y gets the Y gain and offset; V gets the chroma gain and the U offset; U the chroma gain and
//     the V offset (crossed, unlike the functions that produce RGB).
//   - Every plane gets at least one row of one step.
LUMALANE_API void loadimage_yv12_ajust(unsigned char *src, unsigned char *src_u,
                                       unsigned char *src_v, unsigned char *dst, int width,
                                       int height, int src_pitch, int dst_pitch,
                                       tag_ajust_contrast_info *info);

// YV12 to RGB32, RGB24 and RGB16, plain and adjusted: row pairs, steps of 16 pixels. Each 2x2 block
// of pixels takes its U and V as they stand; no interpolation. In 16-bit lanes, where hi(a, b) is
// the upper half of the signed product, truncated:
//     R = hi((Y-16) << 2, 19071) + hi((V-128) << 2, 26149)
//     G = hi((Y-16) << 2, 19071) - hi(U-128, 25625) - hi((V-128) << 1, 26641)
//     B = hi((Y-16) << 2, 19071) + hi((U-128) << 3, 16532)
// each clamped to a byte. (The factors are BT.601's 1.164, 1.596, 0.391, 0.813 and 2.018 as 16-bit
// fractions.) Nothing is rounded: white (235, 128, 128) gives 254, black (16, 128, 128) gives 0.
// RGB16 keeps the upper bits of each channel, without dithering.
//
// Only the two RGB16 functions read info. With a width off the step each pair of rows starts
// further right than the pair before (chroma by half as much).
LUMALANE_API void loadimage_rgb32(unsigned char *src, unsigned char *src_u, unsigned char *src_v,
                                  unsigned char *dst, int width, int height, int src_pitch,
                                  int dst_pitch, tag_ajust_contrast_info *info);
LUMALANE_API void loadimage_rgb32_ajust(unsigned char *src, unsigned char *src_u,
                                        unsigned char *src_v, unsigned char *dst, int width,
                                        int height, int src_pitch, int dst_pitch,
                                        tag_ajust_contrast_info *info);
LUMALANE_API void loadimage_rgb24(unsigned char *src, unsigned char *src_u, unsigned char *src_v,
                                  unsigned char *dst, int width, int height, int src_pitch,
                                  int dst_pitch, tag_ajust_contrast_info *info);
LUMALANE_API void loadimage_rgb24_ajust(unsigned char *src, unsigned char *src_u,
                                        unsigned char *src_v, unsigned char *dst, int width,
                                        int height, int src_pitch, int dst_pitch,
                                        tag_ajust_contrast_info *info);
LUMALANE_API void loadimage_rgb16(unsigned char *src, unsigned char *src_u, unsigned char *src_v,
                                  unsigned char *dst, int width, int height, int src_pitch,
                                  int dst_pitch, tag_ajust_contrast_info *info);
LUMALANE_API void loadimage_rgb16_ajust(unsigned char *src, unsigned char *src_u,
                                        unsigned char *src_v, unsigned char *dst, int width,
                                        int height, int src_pitch, int dst_pitch,
                                        tag_ajust_contrast_info *info);

// YV12 to YUY2, plain, adjusted, and adjusted with grey chroma (every U and V byte 128). Both rows
// of a pair get the same chroma row; no interpolation. Steps of 16 pixels; info is not read.
//   loadimage_yuy2              row pairs, as loadimage_rgb32(). Of every lower row the first 8
//                               bytes of each 32 (pixels 0 to 3 of 16) are not written.
//   loadimage_yuy2_ajust        one row after the other: with a width off the step every row starts
//                               further right, and the lower row of a pair reads its chroma further
//                               right than the upper one. Writes nothing for a height of 8 or less
//                               (signed) or an odd one.
//   loadimage_yuy2_mono_ajust   rows as above, any height. src_u and src_v are not read.
//   loadimage_half_yuy2_ajust   rows as above, any height; half the width: width / 2 pixels, that
//                               is `width` bytes, per row, all rows. Two neighbours make one
//                               sample, their average rounded up, U with U and V with V, before the
//                               adjustment.
LUMALANE_API void loadimage_yuy2(unsigned char *src, unsigned char *src_u, unsigned char *src_v,
                                 unsigned char *dst, int width, int height, int src_pitch,
                                 int dst_pitch, tag_ajust_contrast_info *info);
LUMALANE_API void loadimage_yuy2_ajust(unsigned char *src, unsigned char *src_u,
                                       unsigned char *src_v, unsigned char *dst, int width,
                                       int height, int src_pitch, int dst_pitch,
                                       tag_ajust_contrast_info *info);
LUMALANE_API void loadimage_yuy2_mono_ajust(unsigned char *src, unsigned char *src_u,
                                            unsigned char *src_v, unsigned char *dst, int width,
                                            int height, int src_pitch, int dst_pitch,
                                            tag_ajust_contrast_info *info);
LUMALANE_API void loadimage_half_yuy2_ajust(unsigned char *src, unsigned char *src_u,
                                            unsigned char *src_v, unsigned char *dst, int width,
                                            int height, int src_pitch, int dst_pitch,
                                            tag_ajust_contrast_info *info);

// YV12 to YV12 of half the width, adjusted; of two neighbours the second stays. Y at dst, height
// rows of width / 2 bytes; V at dst + height * dst_pitch; U (dst_pitch / 2) * (height / 2) bytes
// after V; both with height / 2 rows of width / 4 bytes, dst_pitch / 2 apart. V gets the V offset
// and U the U offset. Y is worked in steps of 16 source samples and drifts with a width off the
// step. Chroma does not: what whole steps leave over gets one more step of 16 samples and 8 bytes
// that ends where the row ends (for rows shorter than a step it begins before the row). At least
// one row of each plane. info is not read.
LUMALANE_API void loadimage_half_yv12_ajust(unsigned char *src, unsigned char *src_u,
                                            unsigned char *src_v, unsigned char *dst, int width,
                                            int height, int src_pitch, int dst_pitch,
                                            tag_ajust_contrast_info *info);

// Packed YUY2 to YUY2, RGB16, RGB24 and RGB32, plain and adjusted. src_pitch is counted in pixels
// (rows lie 2 * src_pitch bytes apart); src_u and src_v are not read; info is read by the RGB16
// functions alone. Two rows at a time: the lower row keeps its luma and takes the chroma of the
// upper one. Steps of 8 pixels to YUY2, of 16 to RGB; the last step reads and writes up to the next
// multiple, but rows do not drift: each pair starts two pitches below the one before. (A width of 0
// is worked as one step and does drift by it.)
LUMALANE_API void LoadYUY2_YUY2(unsigned char *src, unsigned char *src_u, unsigned char *src_v,
                                unsigned char *dst, int width, int height, int src_pitch,
                                int dst_pitch, tag_ajust_contrast_info *info);
LUMALANE_API void LoadYUY2_YUY2_adjust(unsigned char *src, unsigned char *src_u,
                                       unsigned char *src_v, unsigned char *dst, int width,
                                       int height, int src_pitch, int dst_pitch,
                                       tag_ajust_contrast_info *info);
LUMALANE_API void LoadYUY2_RGB16(unsigned char *src, unsigned char *src_u, unsigned char *src_v,
                                 unsigned char *dst, int width, int height, int src_pitch,
                                 int dst_pitch, tag_ajust_contrast_info *info);
LUMALANE_API void LoadYUY2_RGB16_adjust(unsigned char *src, unsigned char *src_u,
                                        unsigned char *src_v, unsigned char *dst, int width,
                                        int height, int src_pitch, int dst_pitch,
                                        tag_ajust_contrast_info *info);
LUMALANE_API void LoadYUY2_RGB24(unsigned char *src, unsigned char *src_u, unsigned char *src_v,
                                 unsigned char *dst, int width, int height, int src_pitch,
                                 int dst_pitch, tag_ajust_contrast_info *info);
LUMALANE_API void LoadYUY2_RGB24_adjust(unsigned char *src, unsigned char *src_u,
                                        unsigned char *src_v, unsigned char *dst, int width,
                                        int height, int src_pitch, int dst_pitch,
                                        tag_ajust_contrast_info *info);
LUMALANE_API void LoadYUY2_RGB32(unsigned char *src, unsigned char *src_u, unsigned char *src_v,
                                 unsigned char *dst, int width, int height, int src_pitch,
                                 int dst_pitch, tag_ajust_contrast_info *info);
LUMALANE_API void LoadYUY2_RGB32_adjust(unsigned char *src, unsigned char *src_u,
                                        unsigned char *src_v, unsigned char *dst, int width,
                                        int height, int src_pitch, int dst_pitch,
                                        tag_ajust_contrast_info *info);

// ---- Subpictures ----------------------------------------------------------------------------

// An RGB drawing surface (dst, dst_pitch, width, height) to the Y, V and U planes of a subpicture
// (sub_y, sub_v, sub_u, sub_pitch). RGB16 is 5-6-5 here; the lower bits of its channels are 0.
//   - Rows are worked in groups of 8 pixels; what is left after the last whole group (width % 8) is
//     not converted.
//   - A group of which all 8 pixels are equal to color_key is skipped: the planes keep what they
//     had. color_key is a pixel as it lies in memory: all 32 bits for RGB32, 0x00RRGGBB for RGB24
//     (with other upper bits nothing is equal to it), the low 16 bits for RGB16.
//   - Otherwise every pixel of the group, whatever its colour, gets
//         Y = 16 + (263 R + 516 G + 100 B) / 1024
//     and the first one of each pair its U and V,
//         U = 128 + (449 B - 297 G - 151 R) / 1024      V = 128 + (449 R - 376 G - 72 B) / 1024
//     rounded down. White gives 234, 128, 128.
//   - The fourth byte X of RGB32 should be 0: 16 | X stands in place of 16 above and 128 | X in
//     place of 128, and all is clamped to 255.
// The record keeps where the conversion stands. Per row sub_y moves by the whole groups and
// sub_pitch - width, sub_u and sub_v by half of the groups and (sub_pitch - width) >> 1 as an
// unsigned number, and alpha_plane by sub_pitch - width alone; nothing is read or written there. A
// height of 0 runs around the 32-bit range.
LUMALANE_API void Convert_RGB32_To_AYUY2(tagMIX_INFO *mix);
LUMALANE_API void Convert_RGB24_To_AYUY2(tagMIX_INFO *mix);
LUMALANE_API void Convert_RGB16_565_To_AYUY2(tagMIX_INFO *mix);

// The alpha plane out of the blue channel of a drawing surface (restore), and into it (load): width
// x height pixels at dst and alpha_plane. After each row the alpha plane is stepped over by
// (video_pitch - width) >> 1 bytes: with video_pitch equal to width it is one run.
//   Restore_RGB32_To_Alpha            byte 0 of each pixel; groups of 8 pixels
//   Restore_RGB24_To_Alpha            byte 0 of the pixel after it, also past the end of a row;
//                                     groups of 8 pixels
//   Restore_RGB16_565_To_Alpha        bits 4..0 of each pixel; groups of 16 pixels
//   load_subpicture_alpha_...         alpha in byte 0 of each pixel, 0 in the others; groups of 16
// Rows are rounded up to whole groups, and with a width off the group each starts further right
// than the one before. The two RGB24 functions leave height at 0, the others as it was. A height of
// 0 runs around the 32-bit range.
LUMALANE_API void Restore_RGB32_To_Alpha(tagMIX_INFO *mix);
LUMALANE_API void Restore_RGB24_To_Alpha(tagMIX_INFO *mix);
LUMALANE_API void Restore_RGB16_565_To_Alpha(tagMIX_INFO *mix);
LUMALANE_API void load_subpicture_alpha_rgb32(tagMIX_INFO *mix);
LUMALANE_API void load_subpicture_alpha_rgb24(tagMIX_INFO *mix);
LUMALANE_API void load_subpicture_alpha_rgb16_565(tagMIX_INFO *mix);

// A subpicture onto a drawing surface: where alpha is 0 the colour key, where it is 1 to 127 the
// subpicture's colour, converted as in loadimage_rgb32(), and where it is 128 and more black.
//   - video_pitch is the number of pixels per row, rounded up to whole groups of 16; width and
//     sub_pitch are not read. The four planes are one run each: a row ends where the next one
//     begins.
//   - At the surface each row starts dst_pitch bytes below the one before, and with video_pitch off
//     the group further right.
//   - color_key has red in its lowest byte and blue in its third one, unlike the key of the
//     conversions above; the fourth byte of RGB32 is always 0. RGB16 takes the low 16 bits as they
//     are.
//   - RGB16 is 5-6-5 for every rgb16_layout of adjust_info up to 3; above that nothing is written.
// The record stays as it was. A height of 0 runs around the 32-bit range.
LUMALANE_API void load_subpicture_yuy2_rgb32(tagMIX_INFO *mix);
LUMALANE_API void load_subpicture_yuy2_rgb32_ajust(tagMIX_INFO *mix);
LUMALANE_API void load_subpicture_yuy2_rgb24(tagMIX_INFO *mix);
LUMALANE_API void load_subpicture_yuy2_rgb24_ajust(tagMIX_INFO *mix);
LUMALANE_API void load_subpicture_yuy2_rgb16(tagMIX_INFO *mix);
LUMALANE_API void load_subpicture_yuy2_rgb16_ajust(tagMIX_INFO *mix);

// Fills a rectangle of width x height pixels at `surface`, rows `pitch` bytes apart, with the
// colour key: two rows at a time, in groups of 16 pixels. Every row is filled up to the next
// multiple of 16 pixels and an odd height fills the row below as well; with a width off the group
// each pair of rows starts further right. A height of 0 writes nothing. `reserved` is not read.
//   LoadColorKeyRgb32   all of the key
//   LoadColorKeyRgb24   24 bytes over and over, for a key of bytes k0 (lowest) to k3 and X, which
//                       is k3 | k0:
//                           k1 k2 X k1 k2 X k1 k2   k2 X k1 k2 X k1 k2 X   k0 k1 k2 X k1 k2 X k1
//                       which is one colour for a grey key 0x00gggggg only
//   LoadColorKeyRgb16   the low 16 bits of the key
LUMALANE_API void LoadColorKeyRgb32(unsigned int key, void *surface, int width, int height,
                                    int reserved, int pitch);
LUMALANE_API void LoadColorKeyRgb24(unsigned int key, void *surface, int width, int height,
                                    int reserved, int pitch);
LUMALANE_API void LoadColorKeyRgb16(unsigned int key, void *surface, int width, int height,
                                    int reserved, int pitch);

// Writes the low byte of key_value into every byte of dst under which mask holds the low byte of
// mask_value. Both have rows of `width` bytes, `pitch` apart, and are worked in groups of 16: the
// last one of a row goes on to the next multiple, and with a width off the group each row starts
// further right, in both. A height of 0 runs around the 32-bit range.
LUMALANE_API void RelaceMaskWithColorKey(unsigned char *dst, unsigned char *mask,
                                         unsigned int mask_value, unsigned int key_value, int width,
                                         int pitch, int height);

// A subpicture over YV12 video. Each sample is
//     (video * (16 - a) + subpicture * a) >> 4,   a = min(alpha, 16)
// truncated; then, in the functions with _ajust, adjusted; then converted. Chroma has the alpha of
// the second pixel of its pair, unless a function says otherwise. The surface is written only,
// every pixel of it; of the subpicture nothing need be read where alpha is 0. A surface must not
// share memory with what a mix reads.
//
// Progressive (_p): `video_y`, `video_u` and `video_v` are a picture. A field (_i): they are a
// field with half of the rows, which is doubled to `height` rows: of four rows the first is field
// row j, the second the average of j and j + 1, the third j + 1, the fourth the average of j + 1
// and j + 2 (all rounded up); the first two have chroma row i, the last two the average of the rows
// i and i + 1. The last four rows repeat the field's last row and have one chroma row, unless a
// function says otherwise.
//
// Onto YUY2: steps of 16 pixels.
//   mix_ayuy2_yuy2_p_ajust        row pairs; the record is the running state: height ends at 0, or
//                                 at -1 if it was odd, with one row more written; video_u, video_v,
//                                 alpha_plane, sub_y, sub_u and sub_v end one pair past the last.
//                                 At least one pair.
//   mix_ayuy2_half_yuy2_p_ajust   the same with every second pixel, the odd ones, and the odd ones
//                                 of the chroma samples, with the alpha of pixels 3, 7, 11 ...:
//                                 width / 2 pixels per row, all rows. The lower row of a pair of
//                                 the video's luma lies sub_pitch below the upper one, and the
//                                 video's chroma rows are sub_pitch / 2 apart.
//   mix_ayuy2_yuy2_i_ajust        blocks of four rows: one for heights of 4 to 7, else height / 4
//                                 rounded up; nothing for a height below 4. The record is the
//                                 running state: height ends at 0, the six pointers one block past
//                                 the last; from block to block each moves by four rows (the
//                                 video's chroma by one) less the width, so a width off the step
//                                 drifts once per block.
//
// Onto YV12 (Y at dst, dst_pitch; V at dst_v and U at dst_u, dst_pitch / 2): plane by plane in
// steps of 8 samples. Chroma has the subpicture's chroma rows 0, 2, 4 ... and alpha of the rows 0,
// 2, 4 ... The record's height is halved, and by mix_ayv12_yv12_i its width. mix_ayv12_yv12_i
// doubles rows in pairs, chroma rows too; the last pair reads one row past the field; the video
// goes back to the start of a row by the width, so a width off the step drifts.
LUMALANE_API void mix_ayuy2_yuy2_p_ajust(tagMIX_INFO *mix);
LUMALANE_API void mix_ayuy2_half_yuy2_p_ajust(tagMIX_INFO *mix);
LUMALANE_API void mix_ayuy2_yuy2_i_ajust(tagMIX_INFO *mix);
LUMALANE_API void mix_ayv12_yv12_p(tagMIX_INFO *mix);
LUMALANE_API void mix_ayv12_yv12_i(tagMIX_INFO *mix);
LUMALANE_API void mix_ayv12_yv12_p_ajust(tagMIX_INFO *mix);

// Onto RGB: steps of 16 pixels; the RGB16 functions read adjust_info, the others do not.
//   _p   row pairs; the record is the running state as in mix_ayuy2_yuy2_p_ajust(). The lower row
//        of a pair lies a pitch below the upper one that is rounded down to an even number (video
//        luma, alpha and subpicture luma). A width off the step drifts.
//   _i   strips of 16 pixels, each of four rows for a height below 8, else of height / 4 groups of
//        four, rounded up. Chroma has the average of the alpha of its pair, rounded up. From strip
//        to strip the pointers go back by what `height` means for them: of heights that are not 4
//        or a multiple of 4 of at least 8, later strips begin lower or higher. The record stays as
//        it is.
LUMALANE_API void mix_ayuy2_rgb32_p_ajust(tagMIX_INFO *mix);
LUMALANE_API void mix_ayuy2_rgb24_p_ajust(tagMIX_INFO *mix);
LUMALANE_API void mix_ayuy2_rgb16_p_ajust(tagMIX_INFO *mix);
LUMALANE_API void mix_ayuy2_rgb32_i_ajust(tagMIX_INFO *mix);
LUMALANE_API void mix_ayuy2_rgb24_i_ajust(tagMIX_INFO *mix);
LUMALANE_API void mix_ayuy2_rgb16_i_ajust(tagMIX_INFO *mix);

// ---- Stretching -----------------------------------------------------------------------------

// All of them write 2 * `height` rows, of `width` pixels (1X2) or 2 * `width` (2X2). A new sample
// is the average of its neighbours, (a + b + 1) >> 1, unless a function says otherwise; an average
// of averages rounds twice. Twice the width puts after each sample its average with the next one,
// and after the last one that sample again. The last source row makes the last two rows, unless a
// function says otherwise. Sources and surface are separate memory.

// YV12 to YUY2 of twice the height (1X2) or twice both (2X2).
//
// `src_pitch` is even. Fewer than 8 rows, 16 for strech_picture_2X2_yuy2_ajust, write nothing; an
// odd height counts as the next even one. Widths round up to a multiple of 16, and to 32 at least
// for 2X2; rows that are rounded up drift right by as much, in the source as on the surface. Of
// every four rows the first two have the chroma of their source pair, the other two the average of
// that and the next pair's.
//
// strech_picture_1X2_yuy2_ajust makes the new rows between the first and the last pair of four
// source rows in a column, (5 b + 5 c - a - d) >> 3, clamped to 0..255, and adjusts afterwards;
// strech_picture_2X2_yuy2_ajust adjusts every source sample first. In the rows of 2X2 the second 8
// of every 64 bytes are not pixels, but the luma of the first 8 pixels of the 64 bytes.
LUMALANE_API void strech_picture_1X2_yuy2(unsigned char *src, unsigned char *src_u,
                                          unsigned char *src_v, unsigned char *dst, int width,
                                          int height, int src_pitch, int dst_pitch,
                                          tag_ajust_contrast_info *info);
LUMALANE_API void strech_picture_1X2_yuy2_ajust(unsigned char *src, unsigned char *src_u,
                                                unsigned char *src_v, unsigned char *dst, int width,
                                                int height, int src_pitch, int dst_pitch,
                                                tag_ajust_contrast_info *info);
LUMALANE_API void strech_picture_2X2_yuy2(unsigned char *src, unsigned char *src_u,
                                          unsigned char *src_v, unsigned char *dst, int width,
                                          int height, int src_pitch, int dst_pitch,
                                          tag_ajust_contrast_info *info);
LUMALANE_API void strech_picture_2X2_yuy2_ajust(unsigned char *src, unsigned char *src_u,
                                                unsigned char *src_v, unsigned char *dst, int width,
                                                int height, int src_pitch, int dst_pitch,
                                                tag_ajust_contrast_info *info);

// YUY2 to YUY2 of twice the width and height.
//
// `row_bytes` is the length of a source row and the pitch of the source: a multiple of 32, and 64
// at least, or the call does not end. Heights are even; fewer than 16 rows, 8 for the adjusting
// one, write nothing. Only the chroma of even source rows is read. Between pairs of rows it is
// averaged for the row before each pair's first. The adjusting one adjusts every source sample
// first. The second 8 of every 64 bytes are luma as above.
LUMALANE_API void yuy2_strech_picture_2X2_yuy2(void *src, void *unread_u, void *unread_v, void *dst,
                                               int row_bytes, int height, int dst_pitch);
LUMALANE_API void yuy2_strech_picture_2X2_yuy2_ajust(void *src, void *unread_u, void *unread_v,
                                                     void *dst, int row_bytes, int height,
                                                     int dst_pitch, tag_ajust_contrast_info *info);

// YV12 to RGB of twice the height; reads and writes no YUY2.
//
// Source samples are adjusted, then averaged, then converted. Fewer than 12 rows write nothing, nor
// does an `info->rgb16_layout` above 3. Strips of 16 pixels, one after the other: a width off 16
// writes past the row's end in RGB32, and does not end in RGB24 and RGB16. An odd height counts as
// the next even one, and each strip then starts two rows lower than the one before.
LUMALANE_API void strech_picture_1X2_yuy2_ajust_rgb32(unsigned char *src, unsigned char *src_u,
                                                      unsigned char *src_v, unsigned char *dst,
                                                      int width, int height, int src_pitch,
                                                      int dst_pitch, tag_ajust_contrast_info *info);
LUMALANE_API void strech_picture_1X2_yuy2_ajust_rgb24(unsigned char *src, unsigned char *src_u,
                                                      unsigned char *src_v, unsigned char *dst,
                                                      int width, int height, int src_pitch,
                                                      int dst_pitch, tag_ajust_contrast_info *info);
LUMALANE_API void strech_picture_1X2_yuy2_ajust_rgb16(unsigned char *src, unsigned char *src_u,
                                                      unsigned char *src_v, unsigned char *dst,
                                                      int width, int height, int src_pitch,
                                                      int dst_pitch, tag_ajust_contrast_info *info);

// YV12 to YV12 of twice the width and height, or twice the height.
//
// The surface is one buffer: 2 * `height` rows of Y, `dst_pitch` apart, then V and then U, each
// with half the rows and half the pitch. Each plane is stretched as by the functions below, V as
// plane 2 and U as plane 3: V gets the U offset and U the V offset, both the gain of luma.
LUMALANE_API void strech_picture_2X2_yv12_ajust(unsigned char *src, unsigned char *src_u,
                                                unsigned char *src_v, unsigned char *dst, int width,
                                                int height, int src_pitch, int dst_pitch,
                                                tag_ajust_contrast_info *info);
LUMALANE_API void strech_picture_1X2_yv12_ajust(unsigned char *src, unsigned char *src_u,
                                                unsigned char *src_v, unsigned char *dst, int width,
                                                int height, int src_pitch, int dst_pitch,
                                                tag_ajust_contrast_info *info);

// One plane of at least 2 rows, to twice both or to twice the height.
//
// strech_pic_2X2: `width` is a multiple of 8, 16 at least. The first 8 samples of each row count as
// 0 (on a surface of 64 bytes or more; 2 * `height` * `dst_pitch` bits are lost from them, as one
// number with the first sample lowest). The last row comes twice only for the last 8 samples; for
// all others the second one is written to the row below the surface, for which there must be
// memory, and the surface's last row is left as it is.
//
// The adjusting ones interpolate first and adjust afterwards, with the gain of luma and the offset
// of luma, U or V for `plane_number` 1, 2 or 3. Rows 0 and 1 are the first source row; rows 2k + 1
// and 2k + 2 are row k and its average with the next one; the last three are the source row before
// the last one. The last of these lies behind the one before it, as if rows had no gap between
// them. Twice the width takes source rows as one run of `width` bytes each, whatever `src_pitch`
// says, which only tells where the row below is: they belong together. For widths off 16 the last
// 16 samples of each row but the first and the last two are written once more; for twice the width
// not doubled, and where the 16 bytes before them end.
LUMALANE_API void strech_pic_2X2(unsigned char *src, unsigned char *dst, int width, int height,
                                 int src_pitch, int dst_pitch);
LUMALANE_API void strech_pic_2X2_adjust(unsigned char *src, unsigned char *dst, int width,
                                        int height, int src_pitch, int dst_pitch,
                                        tag_ajust_contrast_info *info, int plane_number);
LUMALANE_API void strech_pic_1X2_adjust(unsigned char *src, unsigned char *dst, int width,
                                        int height, int src_pitch, int dst_pitch,
                                        tag_ajust_contrast_info *info, int plane_number);

// A frame to YUY2 of twice the height, interpolated along edges, then adjusted.
//
// `start` is the row to start at, counted in pitches for a field and in half pitches otherwise;
// `height` counts source rows; an odd one counts as the next lower even one, and fewer than 8 write
// nothing. Rows have `luma_pitch` pixels, a
// multiple of 16 and at least 48.
//
// Between two rows, four samples that differ from those below by no more than 32 in all become
// averages straight down. Otherwise each sample becomes the average of the two samples that lie in
// the best of five directions, from two to the left above and two to the right below to the
// opposite; the best one has the smallest sum of differences over four samples to the right, or of
// several is the first. The first and the last 16 pixels of a row are averaged straight down.
LUMALANE_API void strech_opt_yuy2_ajust(tagVideoFrame *frame, int start, int height,
                                        unsigned char *dst, int dst_pitch,
                                        tag_ajust_contrast_info *info);

#endif
