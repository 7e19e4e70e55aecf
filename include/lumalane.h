// Lumalane: from decoded YV12 and YUY2 pictures to the pixels of a display surface.
//
// A player's renderer calls one of these functions per frame. Each reads buffers that the caller
// owns, writes one destination that the caller owns, and returns nothing. The library allocates
// nothing, starts no thread, opens no file and keeps one piece of state: the picture adjustment
// that get_contrast_data() sets. Nothing is checked: a pointer, size or pitch that does not fit its
// buffer is the caller's error.
//
// This header is the reference. It needs C++11 and nothing else. What several functions share
// stands above them; each function's own block tells the rest:
//
//   step          pixels that are converted together; rows are rounded up to whole steps
//   rows          pairs: two rows at a time; single: one row at a time; least heights
//   reads info    the fields of tag_ajust_contrast_info that are read; "no": null will do
//   reads         bytes that are read, and
//   writes        bytes that are written, per buffer: see "Which bytes"
//   record        what a call leaves in its tagMIX_INFO
//   quirk         what one would not expect, and the test that shows it: [suite.test]
//   precondition  what a caller has to see to, or the call does not end or leaves its buffers
//
// Conventions
//   - Samples are unsigned bytes. A pitch is the distance in bytes from the first byte of a row to
//     the first byte of the next, of any sign, unless a function says otherwise. Rows may overlap:
//     the bytes come out as if one step was made after the other, in the order that the function
//     tells. Functions that tell no order go row by row, or row pair by row pair, from left to
//     right; a step of a row pair reads and stores its upper row, then its lower one.
//     Functions onto YV12 make Y, then V, then U.
//   - Picture functions from loadimage_yv12() to LoadYUY2_RGB32_adjust() may convert in place: a
//     step reads what earlier steps have stored. The surface of a mix or of a stretch must not
//     share memory with what the function reads, nor the surface of a function for subpictures,
//     drawing surfaces or the colour key with other planes or the mask.
//   - Widths and heights are counted as unsigned numbers: negative ones run into unmapped memory.
//     (Of Convert_RGB32_To_AYUY2() and the like they convert nothing.)
//     Functions with a least height compare it as a signed number; so are the heights of mixes onto
//     YUY2 and RGB counted, and the widths of those with _i onto RGB, of strech_pic_2X2() and of
//     strech_picture_1X2_yuy2_ajust_rgb32(): there a negative width counts as the least one. With
//     one strech_picture_2X2_yuy2(), with and without _ajust, makes the least number of steps in
//     each row, and drifts by the width that it was given.
//   - Any function may run on several threads at once on separate buffers and separate records. A
//     record must not be shared between threads: most functions that take a tagMIX_INFO change it
//     while they run. The values of get_contrast_data() are read once at the start of each call;
//     changing them while another thread converts is safe, but that picture may see a mixture of
//     old and new values.
//   - A call needs at most 16 KB of stack. On 32-bit x86 a stack aligned to 4 bytes is enough, and
//     every function leaves the multimedia (MMX) state empty.
//   - Planes and surfaces may lie anywhere; records are aligned as their fields are. Large surfaces,
//     which outgrow the processor's cache, are written faster where dst and its pitch are multiples
//     of 64 bytes.
//
// Steps and drift
//   A row always gets whole steps, and at least one. Where `width` is no multiple of the step, the
//   last step of each row reads and writes beyond the row's end. Most functions compute the way to
//   the next row from `width`, not from the pixels that were converted; so each row (or each pair,
//   where rows go in pairs) starts that many pixels further right than the one before, in the
//   source as on the surface. That is drift:
//
//       width 20, step 16: 32 pixels are converted, d = 12 of them (-) beyond the row (=)
//
//       row 0   ====================------------
//       row 1               ====================------------
//       row 2                           ====================------------
//               |<-- d --->|<-- d --->|
//
//   Make buffers large enough for it, or take widths on the step: then every row starts where its
//   pitch says. A height that is not a multiple of the rows that go together is rounded up too.
//
// Which bytes
//   Formulas give bytes as sets: "src: W at p * A + {0, src_pitch}" stands for the W bytes from
//   src + p * A on and the W bytes from src + p * A + src_pitch on, for every p. So the first byte
//   of a set is at the least of its offsets and the last one at the greatest, plus W - 1: for
//   p = 0 .. P-1 that is at min(0, (P-1) * A) + min(0, src_pitch) and at max(0, (P-1) * A) +
//   max(0, src_pitch) + W - 1. The formulas hold for every shape that the preconditions allow, on
//   the step or off it. All that a set of writes has is written, unless its block excepts some; of
//   what may be read, some is not (a subpicture where alpha is 0, say). Nothing else is touched.
//
//       up(x, n)   x rounded up to a multiple of n, but at least n
//       x >> n     x / 2^n rounded down, also of negative numbers
//       x % n      what is left of x beyond a multiple of n; x is not negative
//       W          up(width, step): pixels of a row that are converted
//       d          W - width: drift in pixels
//       c          W / 2 - (width >> 1): drift in samples of chroma
//       P, p       up(height, 2) / 2 row pairs, numbered p = 0 .. P-1
//       R, r       max(height, 1) rows, numbered r = 0 .. R-1
//       B          bytes per pixel: RGB32 4, RGB24 3, RGB16 and YUY2 2, YV12 1
//
//   Products of a height and a pitch are signed 32-bit numbers, and so is twice or four times a
//   pitch less the bytes of a row: they wrap.
//
// Pixel formats
//   YV12    three planes: Y with one byte per pixel, V (Cr) and U (Cb) with one byte per 2x2 pixels
//           and half the pitch of Y. As a source they are given by three pointers; as a destination
//           they lie in one buffer in the order Y, V, U: see "Planes of YV12 surfaces".
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
// Planes of YV12 surfaces: Y at dst, V and U behind it (H: height, D: dst_pitch, S: surface_height,
// E: rows_to_plane_end). "Crossed": V is adjusted with U's offset and U with V's.
//
//   function                       V at                            U at                    offset
//   loadimage_yv12                 dst + H*D - 1                   V + (H*D >> 2)          none
//   loadimage_yv12_ajust           dst + E*D + ((S*D - E*D) >> 2)  V + (S*D >> 2)          crossed
//   loadimage_half_yv12_ajust      dst + H*D                       V + (D >> 1)*(H >> 1)   own
//   strech_picture_2X2_yv12_ajust  dst + 2*H*D                     V + (2*H*D >> 2)        crossed
//   strech_picture_1X2_yv12_ajust  dst + 2*H*D                     V + (2*H*D >> 2)        crossed
//   mix_ayv12_yv12_p, _i           dst_v                           dst_u                   none
//   mix_ayv12_yv12_p_ajust         dst_v                           dst_u                   own
//
// Sources have a pointer to each plane: src, src_u, src_v in this order as arguments; video_y,
// video_v, video_u in a tagMIX_INFO.
//
// Colour: ITU-R BT.601, studio range (Y 16..235, U and V 16..240 around 128), full-range RGB. In
// 16-bit arithmetic, where hi(a, b) is the upper half of the signed product, a * b / 2^16 rounded down:
//
//     R = hi((Y-16) << 2, 19071) + hi((V-128) << 2, 26149)
//     G = hi((Y-16) << 2, 19071) - hi(U-128, 25625) - hi((V-128) << 1, 26641)
//     B = hi((Y-16) << 2, 19071) + hi((U-128) << 3, 16532)
//
// each clamped to a byte. (The factors are BT.601's 1.164, 1.596, 0.391, 0.813 and 2.018 as 16-bit
// fractions.) Two neighbouring pixels take their U and V as they stand; there is no interpolation.
// RGB16 keeps the upper bits of each channel, without dithering.
//
// quirk: nothing is rounded: white (235, 128, 128) gives 254, black (16, 128, 128) gives 0
// [edge_cases.white_is_254_in_every_pixel_of_both_rows, edge_cases.black_is_0]
//
// Adjustment: functions with _ajust or _adjust in their names adjust each sample. A sample x of a
// plane with gain g and offset o becomes, in 16-bit arithmetic,
//
//     clamp_to_byte(((low16(x * g) saturating+ 32) logical>> 6) saturating+ o)
//
// with saturating additions of signed words, so gain 64 and offset 0 change nothing. Y has the gain
// and the offset of Y; U and V have the gain of chroma and an offset each, but where the table of
// planes or a function says otherwise. Samples are adjusted before they become RGB.
//
// quirk: a product x * g from 65504 on begins at 0 again
// [adjusted_copy.gain_257_wraps_at_255_where_200_still_saturates]
// quirk: before the first call of get_contrast_data() all gains and offsets are 0, so that every
// adjusted sample is 0, and every pixel R 0, G 137, B 0
// [before_any_parameters.every_adjusted_sample_is_0,
// before_any_parameters.every_adjusted_pixel_is_the_green_of_three_zero_samples]
#ifndef LUMALANE_H
#define LUMALANE_H

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
#define LUMALANE_API
#elif defined(_WIN32)
#define LUMALANE_API __declspec(dllimport)
#elif defined(LUMALANE_STATIC)
#define LUMALANE_API __attribute__((visibility("hidden")))
#else
#define LUMALANE_API __attribute__((visibility("default")))
#endif

// Windows of 32 bits: the library's convention, whichever one a program's options make the default.
#if defined(_WIN32)
#define LUMALANE_CALL __cdecl
#else
#define LUMALANE_CALL
#endif

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

// The records cross the boundary of a library: their layout is a format, of programs that pack their own
// structures, too.
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
#elif defined(_WIN64) || defined(__LP64__)
static_assert(offsetof(tagMIX_INFO, video_y) == 24, "video_y");
static_assert(offsetof(tagMIX_INFO, adjust_info) == 120, "adjust_info");
static_assert(sizeof(tagMIX_INFO) == 128, "tagMIX_INFO");
static_assert(offsetof(tagVideoFrame, plane_y) == 96, "plane_y");
static_assert(offsetof(tagVideoFrame, luma_pitch) == 144, "luma_pitch");
#endif

// ---- Picture adjustment ---------------------------------------------------------------------

/// Sets the adjustment that functions with _ajust or _adjust apply, from the next call of each on,
/// in all threads. `params` points to a contrast_data.
///
/// - reads: params: 32 bytes at 0
/// - writes: nothing of the caller's
/// - quirk: an offset and its extra add modulo 2^16, of each field only the low 16 bits count
///   [adjusted_copy.offsets_add_up_modulo_2_to_the_16,
///   adjusted_copy.of_each_parameter_only_the_low_half_counts]
LUMALANE_API void LUMALANE_CALL get_contrast_data(void *params);

// ---- Picture functions ----------------------------------------------------------------------
//
// They all take the same nine arguments:
//   src, src_u, src_v   the Y, U and V planes of a YV12 picture, or one packed picture at src
//   dst                 first byte of the first destination row
//   width, height       of the source, in pixels and rows
//   src_pitch           bytes per row of src; src_u and src_v have half of it
//   dst_pitch           bytes per row of dst (of its Y plane for YV12)
//   info                facts about the destination; null will do where it is not read

// ---- YV12 to YV12

/// Copies a YV12 picture into a YV12 buffer with an addressing of its own: no shape makes it a
/// plain copy. (For that take loadimage_yv12_ajust() with gains of 64 and offsets of 0.)
///
/// - step: 16 pixels of Y, 8 samples of V and U
/// - rows: pairs
/// - reads info: no
/// - reads, C = up(width >> 1, 8): src: W + width at
///   p * (2 * src_pitch + 2 * dst_pitch - 2 * width + W);
///   src_u, src_v: C at p * (C + ((2 * src_pitch - width) >> 1)) + {0, src_pitch >> 1}
/// - writes: dst: P * W at {0, src_pitch}; V and U, which begin as the table of planes says:
///   C at p * (C + ((2 * dst_pitch - width) >> 1)) + {0, dst_pitch >> 1}
/// - quirk: upper rows of Y follow each other without a gap from dst on, lower ones from dst +
///   src_pitch on; a lower row is read `width` bytes after the upper one, and the source moves on
///   by both pitches [edge_cases.the_plain_copy_mixes_the_increments_of_its_rows]
/// - quirk: V starts a byte early, over the last byte of Y
///   [edge_cases.the_plain_copy_of_chroma_starts_one_byte_before_the_end_of_luma]
/// - quirk: V and U get 2P rows each, twice what the planes hold; all of it must be memory
///   [edge_cases.the_plain_copy_takes_as_many_chroma_rows_as_luma_rows]
/// - quirk: V and U are copied together: a step copies both rows of U, then both of V
///   [edge_cases.the_plain_copy_of_chroma_starts_one_byte_before_the_end_of_luma]
/// - precondition: src_pitch and dst_pitch are not negative and at least width / 2; what is halved
///   above is halved as an unsigned number, and a negative one would move by 2^31 bytes
LUMALANE_API void LUMALANE_CALL loadimage_yv12(unsigned char *src, unsigned char *src_u,
                                               unsigned char *src_v, unsigned char *dst, int width,
                                               int height, int src_pitch, int dst_pitch,
                                               tag_ajust_contrast_info *info);

/// Adjusts a YV12 picture into a YV12 surface that may be taller than the picture. The formulas are
/// those of Y; V and U have width >> 1, height >> 1 and dst_pitch >> 1 in them.
///
/// - step: 8 samples
/// - rows: single, at least one of each plane
/// - reads info: surface_height, rows_to_plane_end
/// - reads: src, src_u, src_v: R * W at 0
/// - writes: dst: Y, V and U, which begin as the table of planes says: W at r * (dst_pitch + d)
/// - quirk: src_pitch is not used; a source row starts where the last step of the one before ended
///   [adjusted_copy.the_source_pitch_is_not_used]
/// - quirk: a width off the step drifts on the surface only
///   [adjusted_copy.width_12_writes_16_samples_a_row_and_drifts_by_4]
/// - quirk: V has the offset of U and U that of V [adjusted_copy.the_chroma_offsets_are_crossed]
LUMALANE_API void LUMALANE_CALL loadimage_yv12_ajust(unsigned char *src, unsigned char *src_u,
                                                     unsigned char *src_v, unsigned char *dst,
                                                     int width, int height, int src_pitch,
                                                     int dst_pitch, tag_ajust_contrast_info *info);

// ---- YV12 to RGB
//
// Both rows of a pair take the same row of U and V, each 2x2 pixels one sample of each. Symbols of
// the formulas, p = 0 .. P-1:
//
//   Ay = 2 * src_pitch + d                     from row pair to row pair of Y,
//   Ac = W / 2 + ((src_pitch - width) >> 1)    of U and V,
//   Ad = 2 * dst_pitch + B * d                 and of the surface
//
// quirk: a width off the step drifts by d pixels a pair, in all planes
// [edge_cases.width_20_converts_32_pixels_a_row_and_later_pairs_start_12_pixels_further,
// edge_cases.width_24_starts_the_second_pair_8_pixels_further_in_source_and_destination,
// edge_cases.width_1_converts_16_pixels_a_row]
// quirk: an odd height converts one row more, 0 and 1 convert two
// [edge_cases.height_3_writes_4_rows, edge_cases.height_0_and_1_write_2_rows]
// quirk: where rows overlap, the order of the stores shows: step by step, upper before lower
// [edge_cases.rows_that_overlap_are_stored_step_by_step_upper_before_lower]

/// Converts a YV12 picture to RGB32.
///
/// - step: 16 pixels
/// - rows: pairs
/// - reads info: no
/// - reads: src: W at p * Ay + {0, src_pitch}; src_u, src_v: W / 2 at p * Ac
/// - writes: dst: 4 * W at p * Ad + {0, dst_pitch}, B = 4
/// - quirk: the fourth byte of a pixel is 0 [edge_cases.the_fourth_byte_of_rgb32_is_0]
LUMALANE_API void LUMALANE_CALL loadimage_rgb32(unsigned char *src, unsigned char *src_u,
                                                unsigned char *src_v, unsigned char *dst, int width,
                                                int height, int src_pitch, int dst_pitch,
                                                tag_ajust_contrast_info *info);

/// Adjusts a YV12 picture and converts it to RGB32.
///
/// - step: 16 pixels
/// - rows: pairs
/// - reads info: no
/// - reads: src: W at p * Ay + {0, src_pitch}; src_u, src_v: W / 2 at p * Ac
/// - writes: dst: 4 * W at p * Ad + {0, dst_pitch}, B = 4
/// - quirk: the fourth byte of a pixel is 0 [edge_cases.the_fourth_byte_of_rgb32_is_0]
LUMALANE_API void LUMALANE_CALL loadimage_rgb32_ajust(unsigned char *src, unsigned char *src_u,
                                                      unsigned char *src_v, unsigned char *dst,
                                                      int width, int height, int src_pitch,
                                                      int dst_pitch, tag_ajust_contrast_info *info);

/// Converts a YV12 picture to RGB24.
///
/// - step: 16 pixels
/// - rows: pairs
/// - reads info: no
/// - reads: src: W at p * Ay + {0, src_pitch}; src_u, src_v: W / 2 at p * Ac
/// - writes: dst: 3 * W at p * Ad + {0, dst_pitch}, B = 3
LUMALANE_API void LUMALANE_CALL loadimage_rgb24(unsigned char *src, unsigned char *src_u,
                                                unsigned char *src_v, unsigned char *dst, int width,
                                                int height, int src_pitch, int dst_pitch,
                                                tag_ajust_contrast_info *info);

/// Adjusts a YV12 picture and converts it to RGB24.
///
/// - step: 16 pixels
/// - rows: pairs
/// - reads info: no
/// - reads: src: W at p * Ay + {0, src_pitch}; src_u, src_v: W / 2 at p * Ac
/// - writes: dst: 3 * W at p * Ad + {0, dst_pitch}, B = 3
LUMALANE_API void LUMALANE_CALL loadimage_rgb24_ajust(unsigned char *src, unsigned char *src_u,
                                                      unsigned char *src_v, unsigned char *dst,
                                                      int width, int height, int src_pitch,
                                                      int dst_pitch, tag_ajust_contrast_info *info);

/// Converts a YV12 picture to RGB16 of any of the four layouts.
///
/// - step: 16 pixels
/// - rows: pairs
/// - reads info: rgb16_layout
/// - reads: src: W at p * Ay + {0, src_pitch}; src_u, src_v: W / 2 at p * Ac
/// - writes: dst: 2 * W at p * Ad + {0, dst_pitch}, B = 2
/// - quirk: an rgb16_layout above 3 writes nothing and reads nothing else
///   [edge_cases.rgb16_layouts_out_of_range_leave_the_destination_untouched]
/// - quirk: layout 1 has bit 0 clear, layout 2 only four bits of blue
///   [edge_cases.rgb16_layout_1_has_bit_0_clear,
///   edge_cases.rgb16_layout_2_keeps_the_top_four_bits_of_a_pure_blue]
LUMALANE_API void LUMALANE_CALL loadimage_rgb16(unsigned char *src, unsigned char *src_u,
                                                unsigned char *src_v, unsigned char *dst, int width,
                                                int height, int src_pitch, int dst_pitch,
                                                tag_ajust_contrast_info *info);

/// Adjusts a YV12 picture and converts it to RGB16 of any of the four layouts.
///
/// - step: 16 pixels
/// - rows: pairs
/// - reads info: rgb16_layout
/// - reads: src: W at p * Ay + {0, src_pitch}; src_u, src_v: W / 2 at p * Ac
/// - writes: dst: 2 * W at p * Ad + {0, dst_pitch}, B = 2
/// - quirk: an rgb16_layout above 3 writes nothing and reads nothing else
///   [edge_cases.rgb16_layouts_out_of_range_leave_the_destination_untouched]
LUMALANE_API void LUMALANE_CALL loadimage_rgb16_ajust(unsigned char *src, unsigned char *src_u,
                                                      unsigned char *src_v, unsigned char *dst,
                                                      int width, int height, int src_pitch,
                                                      int dst_pitch, tag_ajust_contrast_info *info);

// ---- YV12 to YUY2, and to half the width
//
// Both rows of a pair get the same row of U and V; there is no interpolation. The adjusting ones go
// row by row: the first one of a pair reads W / 2 samples of chroma at p * Ac, and the second one
// again, c samples further right. Symbols of the formulas, p = 0 .. P-1, r = 0 .. 2P-1:
//
//   Ay = src_pitch + d                                from row to row of Y
//   Ac = W / 2 + c + ((src_pitch - width) >> 1)       from pair to pair of U and V
//
// quirk: a width off the step drifts by d pixels a row in the adjusting functions, a pair in
// loadimage_yuy2() [half_size.yuy2_writes_width_bytes_a_row_and_drifts_in_both_rows,
// yuy2_surface.the_plain_form_drifts_by_12_pixels_a_pair_at_width_20]

/// Converts a YV12 picture to YUY2.
///
/// - step: 16 pixels
/// - rows: pairs
/// - reads info: no
/// - reads: src: W at p * (2 * src_pitch + d) + {0, src_pitch};
///   src_u, src_v: W / 2 at p * (W / 2 + ((src_pitch - width) >> 1))
/// - writes: dst: 2 * W at p * (2 * dst_pitch + 2 * d); and of the lower row of each pair
///   24 at p * (2 * dst_pitch + 2 * d) + dst_pitch + 8 + 32 * i, i = 0 .. W / 16 - 1
/// - quirk: of a lower row the first 8 of every 32 bytes (pixels 0 to 3 of 16) are not written
///   [yuy2_surface.the_plain_form_keeps_8_bytes_of_every_32_in_lower_rows]
LUMALANE_API void LUMALANE_CALL loadimage_yuy2(unsigned char *src, unsigned char *src_u,
                                               unsigned char *src_v, unsigned char *dst, int width,
                                               int height, int src_pitch, int dst_pitch,
                                               tag_ajust_contrast_info *info);

/// Adjusts a YV12 picture and converts it to YUY2.
///
/// - step: 16 pixels
/// - rows: single, even heights of 10 and more (signed)
/// - reads info: no
/// - reads: src: W at r * Ay; src_u, src_v: W / 2 + c at p * Ac
/// - writes: dst: 2 * W at r * (dst_pitch + 2 * d)
/// - quirk: heights of 8 and less and odd ones write nothing
///   [yuy2_surface.the_adjusted_form_alone_does_nothing_at_heights_up_to_8_and_odd_ones]
/// - quirk: with a width off the step the lower row of a pair has its chroma from further right
///   [yuy2_surface.the_adjusted_form_rewinds_chroma_by_half_the_width_between_rows]
LUMALANE_API void LUMALANE_CALL loadimage_yuy2_ajust(unsigned char *src, unsigned char *src_u,
                                                     unsigned char *src_v, unsigned char *dst,
                                                     int width, int height, int src_pitch,
                                                     int dst_pitch, tag_ajust_contrast_info *info);

/// Adjusts the luma of a YV12 picture and converts it to grey YUY2: every U and V is 128.
///
/// - step: 16 pixels
/// - rows: single, an even number of them
/// - reads info: no
/// - reads: src: W at r * Ay
/// - writes: dst: 2 * W at r * (dst_pitch + 2 * d)
/// - quirk: src_u and src_v are not read; they may be anything
///   [yuy2_surface.the_grey_form_never_reads_chroma_and_writes_128]
LUMALANE_API void LUMALANE_CALL loadimage_yuy2_mono_ajust(unsigned char *src, unsigned char *src_u,
                                                          unsigned char *src_v, unsigned char *dst,
                                                          int width, int height, int src_pitch,
                                                          int dst_pitch,
                                                          tag_ajust_contrast_info *info);

/// Halves the width of a YV12 picture, adjusts it and converts it to YUY2: width / 2 pixels per
/// row, all rows. Two neighbours make one sample, U with U and V with V: their average, rounded up.
///
/// - step: 16 pixels of the source, 8 of the surface
/// - rows: single, an even number of them
/// - reads info: no
/// - reads: src: W at r * Ay; src_u, src_v: W / 2 + c at p * Ac
/// - writes: dst: W at r * (dst_pitch + d)
/// - quirk: averages are made before the adjustment [half_size.yuy2_averages_before_it_adjusts,
///   half_size.yuy2_takes_the_average_rounded_up]
LUMALANE_API void LUMALANE_CALL loadimage_half_yuy2_ajust(unsigned char *src, unsigned char *src_u,
                                                          unsigned char *src_v, unsigned char *dst,
                                                          int width, int height, int src_pitch,
                                                          int dst_pitch,
                                                          tag_ajust_contrast_info *info);

/// Halves the width of a YV12 picture and adjusts it into YV12: height rows of width / 2 bytes of
/// Y, height / 2 rows of width / 4 bytes of V and U. Of two neighbours the second one stays.
///
/// - step: 16 samples of the source, 8 of the surface
/// - rows: single, at least one of each plane: r = 0 .. R-1; of V and U max(height >> 1, 1),
///   numbered i = 0, 1 ...
/// - reads info: no
/// - reads: src: W at r * Ay; with s = width >> 1 samples in a row of chroma,
///   src_u, src_v: max(s, 16) - f at i * (src_pitch >> 1) + f, f = s - 16 for 0 < s < 16, else 0
/// - writes: dst: W / 2 at r * (dst_pitch + c); V and U, which begin as the table of planes says:
///   max(s >> 1, 8) - g at i * (dst_pitch >> 1) + g, g = (s >> 1) - 8 for 0 < s < 16, else 0
/// - quirk: the second one of two samples stays, there is no average
///   [half_size.yv12_takes_the_odd_samples]
/// - quirk: Y drifts, chroma does not: what whole steps leave over gets one more step that ends
///   where the row ends [half_size.yv12_writes_chroma_rows_of_width_40_exactly]. In rows shorter
///   than a step it begins before the row, and another one starts with the row
/// - quirk: an odd height has all of its rows of Y
///   [half_size.yv12_keeps_every_row_of_an_odd_height]
/// - quirk: offsets are not crossed, unlike loadimage_yv12_ajust()
///   [half_size.yv12_does_not_cross_the_chroma_offsets]
LUMALANE_API void LUMALANE_CALL loadimage_half_yv12_ajust(unsigned char *src, unsigned char *src_u,
                                                          unsigned char *src_v, unsigned char *dst,
                                                          int width, int height, int src_pitch,
                                                          int dst_pitch,
                                                          tag_ajust_contrast_info *info);

// ---- Packed YUY2 to YUY2 and RGB
//
// Two rows at a time: the lower one keeps its luma and takes the chroma of the upper one. src_pitch
// is counted in pixels. src_u and src_v are not read. Symbols of the formulas, p = 0 .. P-1, z = 0
// but for a width of 0, which makes it the step:
//
//   As = 4 * src_pitch + 2 * z      from row pair to row pair of the source,
//   Ad = 2 * dst_pitch + B * z      and of the surface
//
// quirk: the chroma of lower rows has no effect
// [yuy2_source.the_chroma_of_lower_rows_is_never_used,
// yuy2_source.lower_rows_take_the_chroma_of_the_upper_ones]
// quirk: src_pitch is counted in pixels, rows lie 2 * src_pitch bytes apart
// [yuy2_source.the_pitch_is_counted_in_pixels]
// quirk: rows are rounded up to the step but do not drift, unless the width is 0
// [yuy2_source.width_12_writes_32_bytes_a_row_without_drift,
// yuy2_source.width_20_writes_32_pixels_of_rgb_a_row_without_drift]

/// Copies a YUY2 picture; chroma becomes that of every second row.
///
/// - step: 8 pixels
/// - rows: pairs
/// - reads info: no
/// - reads: src: 2 * W at p * As + {0, 2 * src_pitch}
/// - writes: dst: 2 * W at p * Ad + {0, dst_pitch}, B = 2
LUMALANE_API void LUMALANE_CALL LoadYUY2_YUY2(unsigned char *src, unsigned char *src_u,
                                              unsigned char *src_v, unsigned char *dst, int width,
                                              int height, int src_pitch, int dst_pitch,
                                              tag_ajust_contrast_info *info);

/// Adjusts a YUY2 picture; chroma becomes that of every second row.
///
/// - step: 8 pixels
/// - rows: pairs
/// - reads info: no
/// - reads: src: 2 * W at p * As + {0, 2 * src_pitch}
/// - writes: dst: 2 * W at p * Ad + {0, dst_pitch}, B = 2
LUMALANE_API void LUMALANE_CALL LoadYUY2_YUY2_adjust(unsigned char *src, unsigned char *src_u,
                                                     unsigned char *src_v, unsigned char *dst,
                                                     int width, int height, int src_pitch,
                                                     int dst_pitch, tag_ajust_contrast_info *info);

/// Converts a YUY2 picture to RGB16 of any of the four layouts.
///
/// - step: 16 pixels
/// - rows: pairs
/// - reads info: rgb16_layout
/// - reads: src: 2 * W at p * As + {0, 2 * src_pitch}
/// - writes: dst: 2 * W at p * Ad + {0, dst_pitch}, B = 2
/// - quirk: an rgb16_layout above 3 writes nothing and reads nothing else
///   [yuy2_source.rgb16_layouts_out_of_range_leave_the_destination_untouched]
LUMALANE_API void LUMALANE_CALL LoadYUY2_RGB16(unsigned char *src, unsigned char *src_u,
                                               unsigned char *src_v, unsigned char *dst, int width,
                                               int height, int src_pitch, int dst_pitch,
                                               tag_ajust_contrast_info *info);

/// Adjusts a YUY2 picture and converts it to RGB16 of any of the four layouts.
///
/// - step: 16 pixels
/// - rows: pairs
/// - reads info: rgb16_layout
/// - reads: src: 2 * W at p * As + {0, 2 * src_pitch}
/// - writes: dst: 2 * W at p * Ad + {0, dst_pitch}, B = 2
/// - quirk: an rgb16_layout above 3 writes nothing and reads nothing else
///   [yuy2_source.rgb16_layouts_out_of_range_leave_the_destination_untouched]
LUMALANE_API void LUMALANE_CALL LoadYUY2_RGB16_adjust(unsigned char *src, unsigned char *src_u,
                                                      unsigned char *src_v, unsigned char *dst,
                                                      int width, int height, int src_pitch,
                                                      int dst_pitch, tag_ajust_contrast_info *info);

/// Converts a YUY2 picture to RGB24.
///
/// - step: 16 pixels
/// - rows: pairs
/// - reads info: no
/// - reads: src: 2 * W at p * As + {0, 2 * src_pitch}
/// - writes: dst: 3 * W at p * Ad + {0, dst_pitch}, B = 3
LUMALANE_API void LUMALANE_CALL LoadYUY2_RGB24(unsigned char *src, unsigned char *src_u,
                                               unsigned char *src_v, unsigned char *dst, int width,
                                               int height, int src_pitch, int dst_pitch,
                                               tag_ajust_contrast_info *info);

/// Adjusts a YUY2 picture and converts it to RGB24.
///
/// - step: 16 pixels
/// - rows: pairs
/// - reads info: no
/// - reads: src: 2 * W at p * As + {0, 2 * src_pitch}
/// - writes: dst: 3 * W at p * Ad + {0, dst_pitch}, B = 3
LUMALANE_API void LUMALANE_CALL LoadYUY2_RGB24_adjust(unsigned char *src, unsigned char *src_u,
                                                      unsigned char *src_v, unsigned char *dst,
                                                      int width, int height, int src_pitch,
                                                      int dst_pitch, tag_ajust_contrast_info *info);

/// Converts a YUY2 picture to RGB32.
///
/// - step: 16 pixels
/// - rows: pairs
/// - reads info: no
/// - reads: src: 2 * W at p * As + {0, 2 * src_pitch}
/// - writes: dst: 4 * W at p * Ad + {0, dst_pitch}, B = 4
LUMALANE_API void LUMALANE_CALL LoadYUY2_RGB32(unsigned char *src, unsigned char *src_u,
                                               unsigned char *src_v, unsigned char *dst, int width,
                                               int height, int src_pitch, int dst_pitch,
                                               tag_ajust_contrast_info *info);

/// Adjusts a YUY2 picture and converts it to RGB32.
///
/// - step: 16 pixels
/// - rows: pairs
/// - reads info: no
/// - reads: src: 2 * W at p * As + {0, 2 * src_pitch}
/// - writes: dst: 4 * W at p * Ad + {0, dst_pitch}, B = 4
LUMALANE_API void LUMALANE_CALL LoadYUY2_RGB32_adjust(unsigned char *src, unsigned char *src_u,
                                                      unsigned char *src_v, unsigned char *dst,
                                                      int width, int height, int src_pitch,
                                                      int dst_pitch, tag_ajust_contrast_info *info);

// ---- Subpictures ----------------------------------------------------------------------------
//
// Every subpicture function takes one tagMIX_INFO. "reads info" tells what is read through its
// adjust_info. Other fields than those that stand above a family are not read and may be anything.

// ---- Drawing surface to subpicture
//
// An RGB drawing surface (dst) to the Y, V and U planes of a subpicture, row by row in groups of 8
// pixels. G = width / 8 groups; what is left after them is not converted. A group of which all 8
// pixels are equal to color_key is skipped: the planes keep what they had. Otherwise every pixel of
// the group, whatever its colour, gets
//
//     Y = 16 + (263 R + 516 G + 100 B) / 1024
//
// and the first one of each pair its U and V,
//
//     U = 128 + (449 B - 297 G - 151 R) / 1024      V = 128 + (449 R - 376 G - 72 B) / 1024
//
// rounded down: BT.601's 0.257, 0.504, 0.098, 0.439, 0.291, 0.148, 0.368 and 0.071 times 1024,
// truncated. White gives 234, 128, 128. Fields: sub_pitch, dst_pitch, width, height, sub_y,
// sub_v, sub_u, alpha_plane, dst, color_key. Symbols of the formulas, r = 0 .. height-1:
//
//   As = dst_pitch - B * (width % 8)                           from row to row of the surface,
//   Ay = sub_pitch - width % 8                                 of sub_y, and
//   Ac = 4 * G + unsigned(sub_pitch - width) / 2               of sub_u and sub_v
//
// record: sub_y moves on by height * Ay, sub_u and sub_v by height * Ac, alpha_plane by
// height * (sub_pitch - width) [conversion.the_record_is_left_where_the_planes_ended]
// quirk: alpha_plane is moved, but nothing is read or written there
// [conversion.the_record_is_left_where_the_planes_ended]
// quirk: with a width off the group the planes and the surface lag behind
// [conversion.width_20_converts_16_pixels_a_row_and_the_planes_lag,
// conversion.the_surface_lags_as_well]
// quirk: one pixel of another colour converts all 8; the second pixel of a pair does not count for
// U and V [conversion.a_group_with_one_other_pixel_is_converted_whole,
// conversion.a_pair_takes_the_chroma_of_its_first_pixel]
// quirk: (sub_pitch - width) is halved as an unsigned number: a pitch below the width moves U and V
// by 2^31 bytes per row [conversion.a_pitch_below_the_width_moves_chroma_by_2_gigabytes]

/// Converts an RGB32 drawing surface to the Y, V and U of a subpicture.
///
/// - step: 8 pixels, rounded down
/// - rows: single
/// - reads info: no
/// - reads: dst: 32 * G at r * As, B = 4
/// - writes, but for groups of the key's colour: sub_y: 8 * G at r * Ay; sub_u, sub_v: 4 * G at
///   r * Ac
/// - quirk: the fourth byte X of a pixel should be 0: 16 | X stands in place of 16 above and 128 |
///   X in place of 128, and all is clamped to 255 [conversion.the_x_byte_of_rgb32_raises_all_three]
/// - quirk: all 32 bits of color_key are compared, X included
///   [conversion.rgb32_compares_the_x_byte_with_the_key]
/// - precondition: width is at least 8, with less nothing is converted and the record moves on;
///   height is at least 1, with 0 the call runs around 32 bits
LUMALANE_API void LUMALANE_CALL Convert_RGB32_To_AYUY2(tagMIX_INFO *mix);

/// Converts an RGB24 drawing surface to the Y, V and U of a subpicture.
///
/// - step: 8 pixels, rounded down
/// - rows: single
/// - reads info: no
/// - reads: dst: 24 * G + 1 at r * As, B = 3
/// - writes, but for groups of the key's colour: sub_y: 8 * G at r * Ay; sub_u, sub_v: 4 * G at
///   r * Ac
/// - quirk: color_key is 0x00RRGGBB; with other upper bits nothing is equal to it
///   [conversion.rgb24_never_matches_a_key_with_a_top_byte]
/// - quirk: the byte after the last group is read, without effect
///   [conversion.rgb24_masks_the_byte_after_the_group]
/// - precondition: width is at least 8, with less nothing is converted and the record moves on;
///   height is at least 1, with 0 the call runs around 32 bits
LUMALANE_API void LUMALANE_CALL Convert_RGB24_To_AYUY2(tagMIX_INFO *mix);

/// Converts an RGB16 drawing surface of 5-6-5 to the Y, V and U of a subpicture.
///
/// - step: 8 pixels, rounded down
/// - rows: single
/// - reads info: no
/// - reads: dst: 16 * G at r * As, B = 2
/// - writes, but for groups of the key's colour: sub_y: 8 * G at r * Ay; sub_u, sub_v: 4 * G at
///   r * Ac
/// - quirk: the lower bits of the widened channels are 0; white gives 230, 127, 126
///   [conversion.rgb16_does_not_repeat_the_upper_bits]
/// - quirk: the low 16 bits of color_key are compared
///   [conversion.rgb16_compares_the_low_half_of_the_key]
/// - precondition: width is at least 8, with less nothing is converted and the record moves on;
///   height is at least 1, with 0 the call runs around 32 bits
LUMALANE_API void LUMALANE_CALL Convert_RGB16_565_To_AYUY2(tagMIX_INFO *mix);

// ---- Alpha between drawing surface and subpicture
//
// The alpha plane out of the blue channel of a drawing surface (restore), and into it (load), row
// by row. Fields: video_pitch, dst_pitch, width, height, alpha_plane, dst. Symbols of the formulas,
// r = 0 .. height-1:
//
//   As = dst_pitch + B * d                            from row to row of the surface,
//   Aa = W + ((video_pitch - width) >> 1)             and of the alpha plane
//
// quirk: rows of alpha lie the width and half of video_pitch - width apart, whatever sub_pitch says:
// with video_pitch equal to width they follow each other without a gap
// [alpha_transfer.the_steps_of_alpha_come_from_half_of_video_pitch_beyond_the_width,
// alpha_transfer.loads_step_over_alpha_in_the_same_way]
// quirk: rows are rounded up to whole steps and drift
// [alpha_transfer.width_20_is_rounded_up_to_24_or_32_pixels]
// quirk: the two RGB24 functions leave height at 0, the others as it was
// [alpha_transfer.rgb24_counts_the_rows_in_the_record]

/// Takes alpha from byte 0 of each pixel of an RGB32 drawing surface.
///
/// - step: 8 pixels
/// - rows: single
/// - reads info: no
/// - reads: dst: 4 * W at r * As, B = 4
/// - writes: alpha_plane: W at r * Aa
/// - record: as it was
/// - precondition: height is at least 1; with 0 the call runs around 32 bits
LUMALANE_API void LUMALANE_CALL Restore_RGB32_To_Alpha(tagMIX_INFO *mix);

/// Takes alpha from byte 0 of the pixel after each one of an RGB24 drawing surface.
///
/// - step: 8 pixels
/// - rows: single
/// - reads info: no
/// - reads: dst: 3 * W + 1 at r * As, B = 3
/// - writes: alpha_plane: W at r * Aa
/// - record: height is 0
/// - quirk: a pixel has the alpha of the next one, the last one that of the byte behind the row
///   [alpha_transfer.rgb24_restores_the_lowest_byte_of_the_next_pixel,
///   alpha_transfer.rgb24_round_trips_shift_by_a_pixel]
/// - precondition: height is at least 1; with 0 the call runs around 32 bits
LUMALANE_API void LUMALANE_CALL Restore_RGB24_To_Alpha(tagMIX_INFO *mix);

/// Takes alpha from bits 4 to 0 of each pixel of an RGB16 drawing surface.
///
/// - step: 16 pixels
/// - rows: single
/// - reads info: no
/// - reads: dst: 2 * W at r * As, B = 2
/// - writes: alpha_plane: W at r * Aa
/// - record: as it was
/// - quirk: five bits are left: 31 at most, and 0 of a loaded 32
///   [alpha_transfer.rgb16_restores_five_bits, alpha_transfer.rgb16_round_trips_keep_five_bits]
/// - precondition: height is at least 1; with 0 the call runs around 32 bits
LUMALANE_API void LUMALANE_CALL Restore_RGB16_565_To_Alpha(tagMIX_INFO *mix);

/// Writes alpha to byte 0 of each pixel of an RGB32 drawing surface, 0 to the other three.
///
/// - step: 16 pixels
/// - rows: single
/// - reads info: no
/// - reads: alpha_plane: W at r * Aa
/// - writes: dst: 4 * W at r * As, B = 4
/// - record: as it was
/// - precondition: height is at least 1; with 0 the call runs around 32 bits
LUMALANE_API void LUMALANE_CALL load_subpicture_alpha_rgb32(tagMIX_INFO *mix);

/// Writes alpha to byte 0 of each pixel of an RGB24 drawing surface, 0 to the other two.
///
/// - step: 16 pixels
/// - rows: single
/// - reads info: no
/// - reads: alpha_plane: W at r * Aa
/// - writes: dst: 3 * W at r * As, B = 3
/// - record: height is 0
/// - precondition: height is at least 1; with 0 the call runs around 32 bits
LUMALANE_API void LUMALANE_CALL load_subpicture_alpha_rgb24(tagMIX_INFO *mix);

/// Writes alpha to the low byte of each pixel of an RGB16 drawing surface, 0 to the other.
///
/// - step: 16 pixels
/// - rows: single
/// - reads info: no
/// - reads: alpha_plane: W at r * Aa
/// - writes: dst: 2 * W at r * As, B = 2
/// - record: as it was
/// - precondition: height is at least 1; with 0 the call runs around 32 bits
LUMALANE_API void LUMALANE_CALL load_subpicture_alpha_rgb16_565(tagMIX_INFO *mix);

// ---- Subpicture to drawing surface
//
// Where alpha is 0 the colour key, where it is 1 to 127 the subpicture's colour, and where it is
// 128 and more black. The record stays as it was. Fields: video_pitch, dst_pitch, height,
// alpha_plane, sub_y, sub_v, sub_u, dst, color_key, for RGB16 adjust_info.
// W = up(video_pitch, 16), d = W - video_pitch.
//
// quirk: video_pitch is the number of pixels per row; width and sub_pitch are not read. Each plane
// is one stretch of bytes: a row ends where the next one begins
// [subpicture_load.video_pitch_counts_the_pixels_and_the_planes_are_one_run]
// quirk: alpha is tested against 0 and for its highest bit only
// [subpicture_load.alpha_is_tested_against_0_only, subpicture_load.alpha_of_128_and_more_is_black]
// quirk: color_key has red in its lowest byte and blue in its third one, unlike the key of the
// conversions above; RGB16 takes its low 16 bits as they are
// [subpicture_load.alpha_0_is_the_key_with_red_in_its_lowest_byte]
// quirk: the key is not adjusted [subpicture_load.the_key_is_not_adjusted]

/// Paints a subpicture onto an RGB32 drawing surface.
///
/// - step: 16 pixels
/// - rows: single
/// - reads info: no
/// - reads: alpha_plane, sub_y: height * W at 0; sub_u, sub_v: height * W / 2 at 0
/// - writes: dst: 4 * W at r * (dst_pitch + 4 * d), r = 0 .. height-1
/// - quirk: the fourth byte of a pixel is 0, whatever the key has there
///   [subpicture_load.the_fourth_byte_is_0_whatever_the_key_has_there]
/// - precondition: height is at least 1; with 0 the call runs around 32 bits
LUMALANE_API void LUMALANE_CALL load_subpicture_yuy2_rgb32(tagMIX_INFO *mix);

/// Paints a subpicture, adjusted, onto an RGB32 drawing surface.
///
/// - step: 16 pixels
/// - rows: single
/// - reads info: no
/// - reads: alpha_plane, sub_y: height * W at 0; sub_u, sub_v: height * W / 2 at 0
/// - writes: dst: 4 * W at r * (dst_pitch + 4 * d), r = 0 .. height-1
/// - quirk: the fourth byte of a pixel is 0, whatever the key has there
///   [subpicture_load.the_fourth_byte_is_0_whatever_the_key_has_there]
/// - precondition: height is at least 1; with 0 the call runs around 32 bits
LUMALANE_API void LUMALANE_CALL load_subpicture_yuy2_rgb32_ajust(tagMIX_INFO *mix);

/// Paints a subpicture onto an RGB24 drawing surface.
///
/// - step: 16 pixels
/// - rows: single
/// - reads info: no
/// - reads: alpha_plane, sub_y: height * W at 0; sub_u, sub_v: height * W / 2 at 0
/// - writes: dst: 3 * W at r * (dst_pitch + 3 * d), r = 0 .. height-1
/// - precondition: height is at least 1; with 0 the call runs around 32 bits
LUMALANE_API void LUMALANE_CALL load_subpicture_yuy2_rgb24(tagMIX_INFO *mix);

/// Paints a subpicture, adjusted, onto an RGB24 drawing surface.
///
/// - step: 16 pixels
/// - rows: single
/// - reads info: no
/// - reads: alpha_plane, sub_y: height * W at 0; sub_u, sub_v: height * W / 2 at 0
/// - writes: dst: 3 * W at r * (dst_pitch + 3 * d), r = 0 .. height-1
/// - precondition: height is at least 1; with 0 the call runs around 32 bits
LUMALANE_API void LUMALANE_CALL load_subpicture_yuy2_rgb24_ajust(tagMIX_INFO *mix);

/// Paints a subpicture onto an RGB16 drawing surface.
///
/// - step: 16 pixels
/// - rows: single
/// - reads info: rgb16_layout
/// - reads: alpha_plane, sub_y: height * W at 0; sub_u, sub_v: height * W / 2 at 0
/// - writes: dst: 2 * W at r * (dst_pitch + 2 * d), r = 0 .. height-1
/// - quirk: layouts 0 to 3 all make 5-6-5
///   [subpicture_load.rgb16_layouts_up_to_3_are_all_taken_for_5_6_5]
/// - quirk: a layout above 3 writes nothing and reads nothing else
///   [subpicture_load.rgb16_layouts_above_3_leave_the_surface_untouched]
/// - precondition: height is at least 1; with 0 the call runs around 32 bits
LUMALANE_API void LUMALANE_CALL load_subpicture_yuy2_rgb16(tagMIX_INFO *mix);

/// Paints a subpicture, adjusted, onto an RGB16 drawing surface.
///
/// - step: 16 pixels
/// - rows: single
/// - reads info: rgb16_layout
/// - reads: alpha_plane, sub_y: height * W at 0; sub_u, sub_v: height * W / 2 at 0
/// - writes: dst: 2 * W at r * (dst_pitch + 2 * d), r = 0 .. height-1
/// - quirk: layouts 0 to 3 all make 5-6-5
///   [subpicture_load.rgb16_layouts_up_to_3_are_all_taken_for_5_6_5]
/// - quirk: a layout above 3 writes nothing and reads nothing else
///   [subpicture_load.rgb16_layouts_above_3_leave_the_surface_untouched]
/// - precondition: height is at least 1; with 0 the call runs around 32 bits
LUMALANE_API void LUMALANE_CALL load_subpicture_yuy2_rgb16_ajust(tagMIX_INFO *mix);

// ---- Colour key
//
// Fill a rectangle of width x height pixels at `surface`, rows `pitch` bytes apart.
//
// quirk: rows are filled up to the step, an odd height fills the row below as well, and a width off
// the step drifts from pair to pair [colour_key.width_20_and_height_3_fill_32_pixels_of_4_rows]
// quirk: a height of 0 writes nothing [colour_key.height_0_fills_nothing]
// quirk: `reserved` is not read [colour_key.the_fifth_argument_has_no_effect]

/// Fills a rectangle of an RGB32 surface with all of the key.
///
/// - step: 16 pixels
/// - rows: pairs; none for a height of 0
/// - reads: nothing
/// - writes: surface: 4 * W at p * (2 * pitch + 4 * d) + {0, pitch}
LUMALANE_API void LUMALANE_CALL LoadColorKeyRgb32(unsigned int key, void *surface, int width,
                                                  int height, int reserved, int pitch);

/// Fills a rectangle of an RGB24 surface with 24 bytes over and over. For a key of bytes k0
/// (lowest) to k3 and X, which is k3 | k0, they are
///
///     k1 k2 X k1 k2 X k1 k2   k2 X k1 k2 X k1 k2 X   k0 k1 k2 X k1 k2 X k1
///
/// - step: 16 pixels
/// - rows: pairs; none for a height of 0
/// - reads: nothing
/// - writes: surface: 3 * W at p * (2 * pitch + 3 * d) + {0, pitch}
/// - quirk: that is one colour only for a grey key, 0xXXgggggg, whose top byte has no bit that gg
///   has not
///   [colour_key.rgb24_is_out_of_phase_for_any_other_key,
///   colour_key.rgb24_is_uniform_for_a_grey_key]
/// - quirk: the key's top byte shows [colour_key.rgb24_ors_the_top_byte_into_the_lowest_one]
LUMALANE_API void LUMALANE_CALL LoadColorKeyRgb24(unsigned int key, void *surface, int width,
                                                  int height, int reserved, int pitch);

/// Fills a rectangle of an RGB16 surface with the low 16 bits of the key.
///
/// - step: 16 pixels
/// - rows: pairs; none for a height of 0
/// - reads: nothing
/// - writes: surface: 2 * W at p * (2 * pitch + 2 * d) + {0, pitch}
LUMALANE_API void LUMALANE_CALL LoadColorKeyRgb16(unsigned int key, void *surface, int width,
                                                  int height, int reserved, int pitch);

/// Writes the low byte of key_value into every byte of dst under which mask holds the low byte of
/// mask_value. Both have rows of `width` bytes, `pitch` apart.
///
/// - step: 16 bytes
/// - rows: single
/// - reads: dst, mask: W at r * (pitch + d), r = 0 .. height-1
/// - writes: dst: the same; what does not match is written back as it was
/// - quirk: rows are rounded up to the step; a width off it drifts, in both
///   [colour_key.replacing_rounds_rows_up_and_drifts]
/// - quirk: of the two values only the low bytes count
///   [colour_key.replacing_takes_the_low_bytes_of_its_values]
/// - precondition: height is at least 1; with 0 the call runs around 32 bits
LUMALANE_API void LUMALANE_CALL RelaceMaskWithColorKey(unsigned char *dst, unsigned char *mask,
                                                       unsigned int mask_value,
                                                       unsigned int key_value, int width, int pitch,
                                                       int height);

// ---- Mixes: a subpicture over YV12 video
//
// Each sample is
//
//     (video * (16 - a) + subpicture * a) >> 4,   a = min(alpha, 16)
//
// truncated; then, in the functions with _ajust, adjusted; then converted. Chroma has the alpha of
// the second pixel of its pair, unless a function says otherwise. The surface is written only,
// every pixel of it; of the subpicture nothing need be read where alpha is 0. Fields: the sizes,
// the pointers from video_y to dst, for YV12 dst_u and dst_v, for RGB16 adjust_info.
//
// Progressive (_p): video_y, video_u and video_v are a picture. A field (_i): they are a field with
// half of the rows, which is doubled to `height` rows: of four rows the first is field row j, the
// second the average of j and j + 1, the third j + 1, the fourth the average of j + 1 and j + 2
// (all rounded up); the first two have chroma row i, the last two the average of i and i + 1. The
// last four rows repeat the field's last row and have one chroma row, unless a function says
// otherwise.
//
// quirk: weights truncate; alpha 0 is the video, 16 and more the subpicture
// [mixes.weights_between_truncate, mixes.alpha_0_is_the_video_and_16_and_more_the_subpicture]
// quirk: the subpicture is adjusted with the video
// [mixes.the_subpicture_is_adjusted_with_the_video_and_the_chroma_offsets_are_not_crossed]
// quirk: reserved1 and reserved2 are the caller's own
// [mixes.what_the_reserved_fields_hold_makes_no_difference]
//
// Row pairs, onto YUY2 and RGB. Bytes, p = 0 .. P-1 (a height of 0 and below makes one pair):
//
//   video_y              W at p * (2 * video_pitch + d) + {0, Ly}
//   video_u, video_v     W / 2 at p * (Lc + c)
//   alpha_plane, sub_y   W at p * (2 * sub_pitch + d) + {0, Ls}
//   sub_u, sub_v         W / 2 at p * (sub_pitch + c) + {0, sub_pitch >> 1}
//   dst                  B * W at p * (2 * dst_pitch + B * d) + {0, dst_pitch}
//
// Where a block says that the record is consumed, video_u, video_v, alpha_plane, sub_y, sub_u and
// sub_v end P of these steps from row pair to row pair further on, and height ends at
// height - 2 * P: from heights of 1 on at 0, or -1 if it was odd. A second call goes on there.
// [mixes.the_progressive_ones_leave_the_record_one_row_pair_past_the_last,
// mixes.an_odd_height_leaves_minus_1_in_the_record,
// mixes.a_consumed_record_goes_on_where_the_first_call_stopped]

/// Mixes a subpicture over a picture onto YUY2.
///
/// - step: 16 pixels
/// - rows: pairs, at least one
/// - reads info: no
/// - reads: video and subpicture as above, Ly = video_pitch, Ls = sub_pitch,
///   Lc = video_pitch >> 1
/// - writes: dst as above, B = 2
/// - record: consumed
/// - quirk: both rows of a pair have the same chroma of the video, but each its own of the
///   subpicture [mixes.yuy2_rows_of_a_pair_share_the_video_chroma_and_have_the_subpictures_own]
/// - quirk: chroma has the alpha of the second pixel of its own row
///   [mixes.yuy2_chroma_has_the_alpha_of_the_second_pixel_of_its_own_row]
/// - quirk: an odd height writes one row more, 0 and below write two
///   [mixes.yuy2_odd_heights_write_one_row_more_and_heights_of_0_and_below_write_two]
/// - quirk: a width off the step drifts [mixes.yuy2_width_24_drifts_by_8_pixels_a_row_pair]
LUMALANE_API void LUMALANE_CALL mix_ayuy2_yuy2_p_ajust(tagMIX_INFO *mix);

/// Mixes a subpicture over a picture onto YUY2 of half the width: width / 2 pixels per row, all
/// rows.
///
/// - step: 16 pixels of the video, 8 of the surface
/// - rows: pairs, at least one
/// - reads info: no
/// - reads: video and subpicture as above, Ly = sub_pitch, Ls = sub_pitch,
///   Lc = sub_pitch >> 1
/// - writes: dst as above, B = 1
/// - record: consumed
/// - quirk: of the pixels the odd ones stay, of the chroma samples too, with the alpha of the
///   pixels 3, 7, 11 ... [mixes.yuy2_half_keeps_the_odd_pixels_and_the_odd_chroma_samples]
/// - quirk: the lower row of video luma lies sub_pitch below the upper one, and the rows of video
///   chroma sub_pitch / 2 apart; luma still goes on by 2 * video_pitch
///   [mixes.yuy2_half_reads_the_second_row_and_the_next_chroma_at_the_subpictures_pitch]
/// - quirk: a width off the step drifts [mixes.yuy2_half_width_24_drifts_by_4_pixels_a_row_pair]
LUMALANE_API void LUMALANE_CALL mix_ayuy2_half_yuy2_p_ajust(tagMIX_INFO *mix);

/// Mixes a subpicture over a field onto YUY2, in groups of four rows: Q = up(height, 4) / 4 of
/// them, but one for heights up to 7. A step stores its four rows from top to bottom.
///
/// - step: 16 pixels
/// - rows: groups of four, heights of 4 and more (signed)
/// - reads info: no
/// - reads, for q = 0 .. Q-1: video_y: W at q * (2 * video_pitch + d) + {0, 1, 2} * video_pitch;
///   video_u, video_v: W / 2 at q * ((video_pitch >> 1) + c) + {0, video_pitch >> 1};
///   alpha_plane, sub_y: W at q * (4 * sub_pitch + d) + {0, 1, 2, 3} * sub_pitch;
///   sub_u, sub_v: W / 2 at q * (2 * sub_pitch + c) + {0, 1, 2, 3} * (sub_pitch >> 1);
///   but in the last group (q = Q-1) not the third row of video_y, nor the second one of video_u
///   and video_v
/// - writes: dst: 2 * W at q * (4 * dst_pitch + 2 * d) + {0, 1, 2, 3} * dst_pitch
/// - record: height is 0; video_u, video_v, alpha_plane, sub_y, sub_u and sub_v are Q of the steps
///   above further on [mixes.yuy2_of_a_field_leaves_the_record_below_what_was_mixed]
/// - quirk: a height below 4 writes nothing and leaves the record
///   [mixes.yuy2_of_a_field_below_height_4_writes_nothing_and_leaves_the_record]
/// - quirk: heights of 4 to 7 write four rows, greater ones whole groups
///   [mixes.yuy2_of_a_field_writes_4_rows_below_height_8_and_whole_blocks_above]
/// - quirk: a width off the step drifts once per group
///   [mixes.yuy2_of_a_field_drifts_once_per_block_of_four_rows]
/// - quirk: the last group repeats the field's last row and has one row of video chroma
///   [mixes.yuy2_of_a_field_makes_four_rows_of_two_and_repeats_the_last]
LUMALANE_API void LUMALANE_CALL mix_ayuy2_yuy2_i_ajust(tagMIX_INFO *mix);

// Onto YV12: Y at dst, V at dst_v and U at dst_u, plane by plane in this order. Symbols of the
// formulas, with C = up(width >> 1, 8) and e = C - (width >> 1):
//
//   Av = C + ((video_pitch - width) >> 1)      from row to row of the video's V and U,
//   Ad = C + ((dst_pitch - width) >> 1)        of V and U of the surface,
//   Aa = 2 * C + 2 * sub_pitch - width         and of the alpha over them
//
// quirk: chroma has every second row of the subpicture's chroma (0, 2, 4 ...) and the alpha of the
// second pixel in the first row of each pair
// [mixes.yv12_takes_every_second_row_of_the_subpictures_chroma,
// mixes.yv12_chroma_has_the_alpha_of_the_second_pixel_in_the_first_row]
// quirk: a width off the step drifts in every plane
// [mixes.yv12_width_12_writes_16_samples_a_row_and_drifts_by_4_in_every_plane]
// quirk: the record's height is halved, and by mix_ayv12_yv12_i() its width
// [mixes.the_yv12_ones_halve_the_height_and_the_doubling_one_the_width_too]
// quirk: heights of 0 and 1 make one row of each plane, or two when doubling
// [mixes.yv12_heights_of_0_and_1_make_a_row_of_each_plane_or_two_when_doubling]

/// Mixes a subpicture over a picture onto YV12.
///
/// - step: 8 samples
/// - rows: single, at least one of each plane: r = 0 .. R-1;
///   of V and U Rc = max(height >> 1, 1), i = 0 .. Rc-1
/// - reads info: no
/// - reads: video_y: W at r * (video_pitch + d); video_v, video_u: C at i * Av;
///   sub_y: W at r * (sub_pitch + d); sub_v, sub_u: C at i * (sub_pitch + e);
///   alpha_plane: W at r * (sub_pitch + d), and 2 * C at i * Aa
/// - writes: dst: W at r * (dst_pitch + d); dst_v, dst_u: C at i * Ad
/// - record: height is height >> 1
/// - quirk: nothing is adjusted [mixes.two_of_the_yv12_ones_do_not_adjust]
LUMALANE_API void LUMALANE_CALL mix_ayv12_yv12_p(tagMIX_INFO *mix);

/// Mixes a subpicture over a field onto YV12. Rows are doubled in pairs, those of chroma too: a row
/// of the field, then its average with the next one, rounded up. Rows are stored one after the
/// other.
///
/// - step: 8 samples
/// - rows: pairs, r = 0 .. 2P-1; of V and U Rc = up(height >> 1, 2), i = 0 .. Rc-1, in pairs
///   j = 0 .. Rc / 2 - 1
/// - reads info: no
/// - reads: video_y: W + d at p * (video_pitch + 2 * d), and W there + d + video_pitch;
///   video_v, video_u: C + e at j * (Av + e), and C there + e + (video_pitch >> 1);
///   sub_y: W at r * (sub_pitch + d); sub_v, sub_u: C at i * (sub_pitch + e);
///   alpha_plane: W at r * (sub_pitch + d), and 2 * C at i * Aa
/// - writes: dst: W at r * (dst_pitch + d); dst_v, dst_u: C at i * Ad
/// - record: height is height >> 1, width is width >> 1
/// - quirk: nothing is adjusted [mixes.two_of_the_yv12_ones_do_not_adjust]
/// - quirk: the last pair reads one row past the field, of luma and of chroma
///   [mixes.yv12_doubling_averages_in_the_second_row_and_reads_a_row_past_the_field]
/// - quirk: the video goes back to the start of a row by the width, so that with a width off the
///   step the second row of a pair starts further right too
///   [mixes.yv12_doubling_goes_back_by_the_width_to_the_start_of_a_row]
LUMALANE_API void LUMALANE_CALL mix_ayv12_yv12_i(tagMIX_INFO *mix);

/// Mixes a subpicture over a picture onto YV12 and adjusts it.
///
/// - step: 8 samples
/// - rows: single, at least one of each plane: r = 0 .. R-1;
///   of V and U Rc = max(height >> 1, 1), i = 0 .. Rc-1
/// - reads info: no
/// - reads: video_y: W at r * (video_pitch + d); video_v, video_u: C at i * Av;
///   sub_y: W at r * (sub_pitch + d); sub_v, sub_u: C at i * (sub_pitch + e);
///   alpha_plane: W at r * (sub_pitch + d), and 2 * C at i * Aa
/// - writes: dst: W at r * (dst_pitch + d); dst_v, dst_u: C at i * Ad
/// - record: height is height >> 1
/// - quirk: offsets are not crossed
///   [mixes.the_subpicture_is_adjusted_with_the_video_and_the_chroma_offsets_are_not_crossed]
LUMALANE_API void LUMALANE_CALL mix_ayv12_yv12_p_ajust(tagMIX_INFO *mix);

// Onto RGB, progressive (_p): row pairs as above.
//
// quirk: the lower row of a pair lies a pitch below the upper one that is rounded down to an even
// number: video luma, alpha and subpicture luma
// [mixes.rgb_second_rows_of_odd_pitches_start_one_byte_early]
// quirk: both rows of a pair have the same chroma of the video, but each its own of the subpicture
// [mixes.rgb_rows_of_a_pair_have_their_own_chroma_over_the_shared_one]
// quirk: a width off the step drifts, a width of 0 writes 16 pixels
// [mixes.rgb_width_24_writes_32_pixels_and_drifts_by_8_pixels_a_row_pair,
// mixes.rgb_width_0_writes_16_pixels]
// quirk: an odd height writes one row more, 0 and below write two
// [mixes.rgb_odd_heights_write_one_row_more_and_heights_of_0_and_below_write_two]

/// Mixes a subpicture over a picture onto RGB32.
///
/// - step: 16 pixels
/// - rows: pairs, at least one
/// - reads info: no
/// - reads: video and subpicture as above, Ly = 2 * (video_pitch >> 1), Ls = 2 * (sub_pitch >> 1),
///   Lc = video_pitch >> 1
/// - writes: dst as above, B = 4
/// - record: consumed
/// - quirk: the fourth byte of a pixel is 0 [mixes.rgb_fourth_bytes_are_0]
LUMALANE_API void LUMALANE_CALL mix_ayuy2_rgb32_p_ajust(tagMIX_INFO *mix);

/// Mixes a subpicture over a picture onto RGB24.
///
/// - step: 16 pixels
/// - rows: pairs, at least one
/// - reads info: no
/// - reads: video and subpicture as above, Ly = 2 * (video_pitch >> 1), Ls = 2 * (sub_pitch >> 1),
///   Lc = video_pitch >> 1
/// - writes: dst as above, B = 3
/// - record: consumed
LUMALANE_API void LUMALANE_CALL mix_ayuy2_rgb24_p_ajust(tagMIX_INFO *mix);

/// Mixes a subpicture over a picture onto RGB16 of any of the four layouts.
///
/// - step: 16 pixels
/// - rows: pairs, at least one
/// - reads info: rgb16_layout
/// - reads: video and subpicture as above, Ly = 2 * (video_pitch >> 1), Ls = 2 * (sub_pitch >> 1),
///   Lc = video_pitch >> 1
/// - writes: dst as above, B = 2
/// - record: consumed
/// - quirk: a layout above 3 writes nothing and leaves the record
///   [mixes.rgb16_layouts_out_of_range_leave_surface_and_record_untouched]
LUMALANE_API void LUMALANE_CALL mix_ayuy2_rgb16_p_ajust(tagMIX_INFO *mix);

// Onto RGB, of a field (_i): strips of 16 pixels from top to bottom, from left to right. K strips
// of Q groups of four rows: K = up(width, 16) / 16; Q = up(height, 4) / 4, but 1 for heights below
// 8. Chroma has the average of the alpha of its pair, rounded up. Bytes, k = 0 .. K-1:
//
//   video_y              16 at k * Ky + r * video_pitch, r = 0 .. 2Q-1
//   video_u, video_v     8 at k * Kc + r * (video_pitch >> 1), r = 0 .. Q-1
//   alpha_plane, sub_y   16 at k * Ks + r * sub_pitch, r = 0 .. 4Q-1
//   sub_u, sub_v         8 at k * Ku + r * (sub_pitch >> 1), r = 0 .. 4Q-1
//   dst                  16 * B at k * Kd + r * dst_pitch, r = 0 .. 4Q-1
//
// From strip to strip each pointer goes on by what its rows came to and back by what `height` means
// for it. (For a height of 4 or a multiple of 4 from 8 on, even pitches and products that do not
// wrap 16, 8 and 16 * B are left: each strip starts right beside the one before.)
//
//   Ky = 16 + 2*Q * video_pitch - (height * video_pitch >> 1)
//   Kc = 8 + Q * (video_pitch >> 1) - (height * video_pitch >> 1 >> 2)
//   Ks = 16 + 4*Q * sub_pitch - height * sub_pitch
//   Ku = 8 + 4*Q * (sub_pitch >> 1) - (height * sub_pitch >> 1)
//   Kd = 16 * B + 4*Q * dst_pitch - height * dst_pitch
//
// quirk: below a height of 8 strips have four rows, else whole groups
// [mixes.rgb_of_a_field_below_height_8_is_four_rows_per_strip]
// quirk: of other heights later strips start lower or higher
// [mixes.rgb_of_a_field_starts_later_strips_lower_where_more_rows_were_made_than_the_height,
// mixes.rgb_of_a_field_starts_later_strips_higher_where_fewer_rows_were_made]
// quirk: chroma has the average of the alpha of its pair
// [mixes.rgb_of_a_field_weighs_chroma_with_the_average_alpha_of_the_pair]
// quirk: rows are rounded up to the step and do not drift; no width is one strip
// [mixes.rgb_of_a_field_of_width_20_writes_32_pixels_of_every_row,
// mixes.rgb_of_a_field_of_no_width_is_one_strip]
// quirk: where rows overlap, later strips are stored over earlier ones
// [mixes.rgb_of_a_field_is_stored_strip_by_strip_where_rows_overlap]
// quirk: the last group repeats the field's last row and has one row of video chroma
// [mixes.rgb_of_a_field_makes_four_rows_of_two_and_repeats_the_last]
// quirk: the record stays as it was [mixes.the_interlaced_rgb_ones_leave_the_record_alone]

/// Mixes a subpicture over a field onto RGB32.
///
/// - step: 16 pixels, in strips
/// - rows: groups of four, at least one
/// - reads info: no
/// - reads: video and subpicture as above
/// - writes: dst as above, B = 4
/// - record: as it was
/// - quirk: the fourth byte of a pixel is 0 [mixes.rgb_fourth_bytes_are_0]
LUMALANE_API void LUMALANE_CALL mix_ayuy2_rgb32_i_ajust(tagMIX_INFO *mix);

/// Mixes a subpicture over a field onto RGB24.
///
/// - step: 16 pixels, in strips
/// - rows: groups of four, at least one
/// - reads info: no
/// - reads: video and subpicture as above
/// - writes: dst as above, B = 3
/// - record: as it was
LUMALANE_API void LUMALANE_CALL mix_ayuy2_rgb24_i_ajust(tagMIX_INFO *mix);

/// Mixes a subpicture over a field onto RGB16 of any of the four layouts.
///
/// - step: 16 pixels, in strips
/// - rows: groups of four, at least one
/// - reads info: rgb16_layout
/// - reads: video and subpicture as above
/// - writes: dst as above, B = 2
/// - record: as it was
/// - quirk: a layout above 3 writes nothing and leaves the record
///   [mixes.rgb16_layouts_out_of_range_leave_surface_and_record_untouched]
LUMALANE_API void LUMALANE_CALL mix_ayuy2_rgb16_i_ajust(tagMIX_INFO *mix);

// ---- Stretching -----------------------------------------------------------------------------
//
// All of them write 2 * height rows, of `width` pixels (1X2) or 2 * width (2X2). A new sample is
// the average of its neighbours, (a + b + 1) >> 1, unless a function says otherwise; an average of
// averages rounds twice. Twice the width puts after each sample its average with the next one, and
// after the last one that sample again. The last source row makes the last two rows, unless a
// function says otherwise. Sources and surface are separate memory.
//
// From YV12 to YUY2 and RGB: of every four rows the first two have the chroma of their source pair,
// the other two the average of that and the next pair's; the last pair has no next one, and all four
// have its own.
//
// quirk: twice both averages along rows first, so that it rounds twice
// [stretches.yuy2_2x2_averages_along_the_row_first_and_rounds_twice,
// packed_stretches.average_along_the_row_first_and_round_twice,
// plane_stretches.adjusted_2x2_averages_along_the_row_first_and_rounds_twice,
// plane_stretches.plain_2x2_averages_along_the_row_first_and_rounds_twice]

// ---- YV12 to YUY2, stretched
//
// Surface rows are made one after the other, from top to bottom, in steps of 16 source pixels.
// Symbols of the formulas, with t = 1 for 1X2 and 2 for 2X2:
//
//   W  = max(2 * up(width >> 1, 8), 16 * t);  d and c from it, as for every function
//   n  = 0 .. 4P-1, a row of the surface
//   Sn = n * d + (n >> 1) * src_pitch, where it begins in src
//   Cn = n * c + (n >> 2) * ((width >> 1) + ((src_pitch - width) >> 1)), in src_u and src_v
//   L  = 2 * (src_pitch >> 1), to the source row below, and L / 2 to the row of chroma below
//
// quirk: W comes from half of the width; so an odd width counts as the even one below it, and d may
// be -1
// quirk: rows are rounded up to the step, to two steps at least in 2X2, and drift, each row of the
// surface [stretches.yuy2_width_20_writes_32_pixels_and_drifts_by_12_a_row,
// stretches.yuy2_2x2_writes_at_least_two_steps]
// quirk: an odd height counts as the next even one
// [stretches.yuy2_odd_heights_are_the_next_even_ones]
// quirk: heights below the least one write nothing
// [stretches.yuy2_below_the_least_height_writes_nothing]
// quirk: the last row is stored twice
// [stretches.yuy2_doubles_the_rows_and_stores_the_last_one_twice]

/// Converts a YV12 picture to YUY2 of twice the height.
///
/// - step: 16 pixels
/// - rows: pairs, heights of 8 and more (signed)
/// - reads info: no
/// - reads: src: W at Sn, and for odd n < 4P-1 W at Sn + L;
///   src_u, src_v: W / 2 at Cn, and for n % 4 > 1, n < 4P-4 W / 2 at Cn + L / 2
/// - writes: dst: 2 * W at n * (dst_pitch + 2 * d)
/// - precondition: src_pitch is even and not negative; it is halved as an unsigned number
LUMALANE_API void LUMALANE_CALL strech_picture_1X2_yuy2(unsigned char *src, unsigned char *src_u,
                                                        unsigned char *src_v, unsigned char *dst,
                                                        int width, int height, int src_pitch,
                                                        int dst_pitch,
                                                        tag_ajust_contrast_info *info);

/// Converts a YV12 picture to YUY2 of twice the height, with a filter of four rows, and adjusts it.
///
/// - step: 16 pixels
/// - rows: pairs, heights of 8 and more (signed)
/// - reads info: no
/// - reads: src: W at Sn, and for odd n < 4P-1 W at Sn + L;
///   src_u, src_v: W / 2 at Cn, and for n % 4 > 1, n < 4P-4 W / 2 at Cn + L / 2;
///   four rows: for odd n, 4 < n < 4P-4 also src: W at Sn + {-L, 2 * L}; for n % 4 > 1,
///   4 < n < 4P-8 also src_u, src_v: W / 2 at Cn + {-L / 2, L}
/// - writes: dst: 2 * W at n * (dst_pitch + 2 * d)
/// - quirk: between the first and the last pair a new row comes of four source rows in a column,
///   (5 b + 5 c - a - d) >> 3, clamped to 0..255; of chroma up to the last pair but one
///   [stretches.yuy2_1x2_adjusted_filters_the_inner_rows_only,
///   stretches.yuy2_1x2_four_taps_saturate_and_do_not_round]
/// - quirk: samples are adjusted after the interpolation
///   [stretches.yuy2_1x2_adjusts_after_the_interpolation]
/// - precondition: src_pitch is even and not negative; it is halved as an unsigned number
LUMALANE_API void LUMALANE_CALL strech_picture_1X2_yuy2_ajust(
    unsigned char *src, unsigned char *src_u, unsigned char *src_v, unsigned char *dst, int width,
    int height, int src_pitch, int dst_pitch, tag_ajust_contrast_info *info);

/// Converts a YV12 picture to YUY2 of twice the width and height.
///
/// - step: 16 pixels, at least two steps
/// - rows: pairs, heights of 8 and more (signed)
/// - reads info: no
/// - reads: src: W at Sn, and for odd n < 4P-1 W at Sn + L;
///   src_u, src_v: W / 2 at Cn, and for n % 4 > 1, n < 4P-4 W / 2 at Cn + L / 2
/// - writes: dst: 4 * W at n * (dst_pitch + 4 * d)
/// - quirk: in the rows the second 8 of every 64 bytes are not pixels, but the luma of the first 8
///   pixels of the 64 bytes
///   [stretches.yuy2_2x2_second_8_bytes_are_the_first_8_luma_samples_of_the_row,
///   stretches.yuy2_2x2_of_one_colour_has_luma_in_the_second_8_bytes_of_each_step]
/// - precondition: src_pitch is even and not negative; it is halved as an unsigned number
LUMALANE_API void LUMALANE_CALL strech_picture_2X2_yuy2(unsigned char *src, unsigned char *src_u,
                                                        unsigned char *src_v, unsigned char *dst,
                                                        int width, int height, int src_pitch,
                                                        int dst_pitch,
                                                        tag_ajust_contrast_info *info);

/// Adjusts a YV12 picture and converts it to YUY2 of twice the width and height.
///
/// - step: 16 pixels, at least two steps
/// - rows: pairs, heights of 16 and more (signed)
/// - reads info: no
/// - reads: src: W at Sn, and for odd n < 4P-1 W at Sn + L;
///   src_u, src_v: W / 2 at Cn, and for n % 4 > 1, n < 4P-4 W / 2 at Cn + L / 2
/// - writes: dst: 4 * W at n * (dst_pitch + 4 * d)
/// - quirk: in the rows the second 8 of every 64 bytes are not pixels, but the luma of the first 8
///   pixels of the 64 bytes
///   [stretches.yuy2_2x2_second_8_bytes_are_the_first_8_luma_samples_of_the_row,
///   stretches.yuy2_2x2_of_one_colour_has_luma_in_the_second_8_bytes_of_each_step]
/// - quirk: samples are adjusted before the interpolation
///   [stretches.yuy2_2x2_adjusts_before_the_interpolation]
/// - precondition: src_pitch is even and not negative; it is halved as an unsigned number
LUMALANE_API void LUMALANE_CALL strech_picture_2X2_yuy2_ajust(
    unsigned char *src, unsigned char *src_u, unsigned char *src_v, unsigned char *dst, int width,
    int height, int src_pitch, int dst_pitch, tag_ajust_contrast_info *info);

// ---- Packed YUY2 to YUY2, stretched
//
// Twice the width and height, in strips of 16 source pixels from top to bottom, from left to right.
// K = row_bytes / 32 strips. Symbols of the formulas, k = 0 .. K-1:
//
//   Ks = 32 + 2*P * row_bytes - height * row_bytes       from strip to strip of the source,
//   Kd = 64 + 4*P * dst_pitch - 2*height * dst_pitch     and of the surface
//
// (For even heights whose products do not wrap 32 and 64: each strip starts right beside the one
// before.)
//
// quirk: row_bytes is the length of a source row and the pitch of the source
// quirk: only the chroma of even source rows counts; it is averaged with the next for the row
// before each pair's first
// [packed_stretches.take_the_chroma_of_even_rows_and_average_it_in_every_fourth_row]
// quirk: the second 8 of every 64 bytes are the luma of the first 8 pixels of the 64 bytes
// [packed_stretches.have_luma_in_the_second_8_bytes_of_each_step]
// quirk: after an odd height later strips start a source row, two surface rows, lower
// [packed_stretches.start_later_strips_lower_after_an_odd_height]
// quirk: heights below the least one write nothing
// [packed_stretches.below_the_least_height_write_nothing]
// quirk: where rows overlap, later strips are stored over earlier ones, and the row above a pair
// over the pair's first one [packed_stretches.are_stored_strip_by_strip_where_rows_overlap,
// packed_stretches.store_the_first_row_of_a_pair_before_the_one_above_it]

/// Stretches a YUY2 picture to YUY2 of twice the width and height.
///
/// - step: 32 bytes of the source, 64 of the surface, in strips
/// - rows: pairs, heights of 16 and more (signed)
/// - reads, i = 0 .. 2P-1: src: 32 at k * Ks + i * row_bytes, and of the next strip (k < K-1) 2 at
///   k * Ks + i * row_bytes + 32 and 1 at k * Ks + i * row_bytes + 35
/// - writes: dst: 64 at k * Kd + n * dst_pitch, n = 0 .. 4P-1
/// - precondition: row_bytes is a multiple of 32 and at least 64, or the call does not end
LUMALANE_API void LUMALANE_CALL yuy2_strech_picture_2X2_yuy2(void *src, void *unread_u,
                                                             void *unread_v, void *dst,
                                                             int row_bytes, int height,
                                                             int dst_pitch);

/// Adjusts a YUY2 picture and stretches it to YUY2 of twice the width and height.
///
/// - step: 32 bytes of the source, 64 of the surface, in strips
/// - rows: pairs, heights of 8 and more (signed)
/// - reads info: no
/// - reads, i = 0 .. 2P-1: src: 32 at k * Ks + i * row_bytes, and of the next strip (k < K-1) 2 at
///   k * Ks + i * row_bytes + 32 and 1 at k * Ks + i * row_bytes + 35
/// - writes: dst: 64 at k * Kd + n * dst_pitch, n = 0 .. 4P-1
/// - quirk: samples are adjusted before the interpolation
///   [packed_stretches.adjust_before_the_interpolation]
/// - precondition: row_bytes is a multiple of 32 and at least 64, or the call does not end
LUMALANE_API void LUMALANE_CALL yuy2_strech_picture_2X2_yuy2_ajust(void *src, void *unread_u,
                                                                   void *unread_v, void *dst,
                                                                   int row_bytes, int height,
                                                                   int dst_pitch,
                                                                   tag_ajust_contrast_info *info);

// ---- YV12 to RGB, stretched
//
// Twice the height, in strips of 16 pixels from top to bottom, from left to right; in spite of the
// names no YUY2 is made. Source samples are adjusted, then averaged, then converted. Symbols of the
// formulas, with K = up(width, 16) / 16 strips, k = 0 .. K-1:
//
//   Ky = 16 + 2*P * src_pitch - height * src_pitch                from strip to strip of Y,
//   Kc = 8 + P * (src_pitch >> 1) - (height * src_pitch >> 2)     of U and V,
//   Kd = 16 * B + 4*P * dst_pitch - 2*height * dst_pitch          and of the surface
//
// (For an even height, an even pitch and products that do not wrap 16, 8 and 16 * B: each strip
// starts right beside the one before.)
//
// quirk: heights below 12 write nothing, and read no record
// [rgb_stretches.below_height_12_write_nothing_and_read_no_record]
// quirk: an odd height counts as the next even one, and each strip then starts a source row, two
// surface rows, lower than the one before
// [rgb_stretches.start_later_strips_lower_after_an_odd_height]
// quirk: samples are adjusted before the interpolation
// [rgb_stretches.adjust_before_the_interpolation]
// quirk: where rows overlap, later strips are stored over earlier ones
// [rgb_stretches.are_stored_strip_by_strip_where_rows_overlap]
// quirk: the last row is stored twice
// [rgb_stretches.double_the_rows_and_store_the_last_one_twice]

/// Adjusts a YV12 picture and converts it to RGB32 of twice the height.
///
/// - step: 16 pixels, in strips
/// - rows: pairs, heights of 12 and more (signed)
/// - reads info: no
/// - reads: src: 16 at k * Ky + i * src_pitch, i = 0 .. 2P-1;
///   src_u, src_v: 8 at k * Kc + p * (src_pitch >> 1)
/// - writes: dst: 64 at k * Kd + n * dst_pitch, n = 0 .. 4P-1, B = 4
/// - quirk: a width off 16 is rounded up, without drift
///   [rgb_stretches.rgb32_width_20_writes_32_pixels_without_drift]
LUMALANE_API void LUMALANE_CALL strech_picture_1X2_yuy2_ajust_rgb32(
    unsigned char *src, unsigned char *src_u, unsigned char *src_v, unsigned char *dst, int width,
    int height, int src_pitch, int dst_pitch, tag_ajust_contrast_info *info);

/// Adjusts a YV12 picture and converts it to RGB24 of twice the height.
///
/// - step: 16 pixels, in strips
/// - rows: pairs, heights of 12 and more (signed)
/// - reads info: no
/// - reads: src: 16 at k * Ky + i * src_pitch, i = 0 .. 2P-1;
///   src_u, src_v: 8 at k * Kc + p * (src_pitch >> 1)
/// - writes: dst: 48 at k * Kd + n * dst_pitch, n = 0 .. 4P-1, B = 3
/// - precondition: width is a multiple of 16 and at least 16, or the call does not end
LUMALANE_API void LUMALANE_CALL strech_picture_1X2_yuy2_ajust_rgb24(
    unsigned char *src, unsigned char *src_u, unsigned char *src_v, unsigned char *dst, int width,
    int height, int src_pitch, int dst_pitch, tag_ajust_contrast_info *info);

/// Adjusts a YV12 picture and converts it to RGB16 of any of the four layouts of twice the height.
///
/// - step: 16 pixels, in strips
/// - rows: pairs, heights of 12 and more (signed)
/// - reads info: rgb16_layout
/// - reads: src: 16 at k * Ky + i * src_pitch, i = 0 .. 2P-1;
///   src_u, src_v: 8 at k * Kc + p * (src_pitch >> 1)
/// - writes: dst: 32 at k * Kd + n * dst_pitch, n = 0 .. 4P-1, B = 2
/// - quirk: an rgb16_layout above 3 writes nothing and reads nothing else
///   [rgb_stretches.rgb16_layouts_out_of_range_write_nothing]
/// - precondition: width is a multiple of 16 and at least 16, or the call does not end
LUMALANE_API void LUMALANE_CALL strech_picture_1X2_yuy2_ajust_rgb16(
    unsigned char *src, unsigned char *src_u, unsigned char *src_v, unsigned char *dst, int width,
    int height, int src_pitch, int dst_pitch, tag_ajust_contrast_info *info);

// ---- Planes and YV12 to YV12, stretched
//
// The adjusting ones interpolate first and adjust afterwards, with the gain of Y and the offset of
// Y, U or V for a plane number of 1, 2 or 3. Rows 0 and 1 are the first source row; rows 2k + 1 and
// 2k + 2 are row k and its average with the next one; the last three are the source row before the
// last one. Rows 2k + 1 and 2k + 2 are stored together, step by step; row 0 comes before them, the
// last two rows after them. Symbols of the formulas: W = up(width, 8); t = 1 for 1X2 and 2 for 2X2;
// T from source row to source row, which is src_pitch for 1X2 and width for 2X2;
// i = 0 .. height-2. Bytes:
//
//   src   W at 0;  width at i * T + {0, src_pitch};
//         W at {(height-1) * T - src_pitch, height * T - 2 * src_pitch}
//   dst   t * W at 0;  X at (2*i + {1, 2}) * dst_pitch;
//         t * W at (2*height - 2) * dst_pitch + {0, t * width}
//
// with X = width for 1X2 and 2 * width - width % 16 for 2X2.
//
// quirk: the first source row makes rows 0 and 1, and the last one no row of its own
// [plane_stretches.adjusted_2x2_starts_twice_with_the_first_row_and_loses_the_last,
// plane_stretches.adjusted_1x2_starts_twice_with_the_first_row_and_loses_the_last]
// quirk: the last row lies right behind the one before it, as if rows had no gap between them
// [plane_stretches.adjusted_1x2_stores_the_last_row_right_behind_the_one_before]
// quirk: all planes have the gain of Y
// [plane_stretches.adjusted_ones_have_the_luma_gain_for_every_plane_and_its_offset]
// quirk: samples are adjusted after the interpolation
// [plane_stretches.adjusted_ones_adjust_after_the_interpolation]
// quirk: twice the width takes the source rows as one stretch of `width` bytes each; src_pitch only
// tells where the row below is, and how far the source goes back for the last two rows. The two
// belong together: src_pitch = width
// [plane_stretches.adjusted_2x2_takes_the_source_rows_as_one_run_and_reads_below_at_the_pitch,
// plane_stretches.adjusted_2x2_goes_back_by_the_pitch_for_its_last_two_rows]
// quirk: for widths off 16 the last 16 samples of each row but the first and the last two are
// written once more; for twice the width not doubled, and so that they end where X does
// [plane_stretches.adjusted_2x2_does_not_double_the_last_samples_of_a_width_off_16,
// plane_stretches.adjusted_1x2_does_the_last_16_samples_of_a_width_off_16_once_more]

/// Stretches a YV12 picture to YV12 of twice the width and height and adjusts it: each plane as by
/// strech_pic_2X2_adjust(), Y with plane number 1, V with 2 and U with 3. The surface is one
/// buffer: 2 * height rows of Y, then V, then U, as in the table of planes.
///
/// - step: 8 samples
/// - rows: single, at least 4
/// - reads info: no
/// - reads: src as above; src_v, src_u as above, with half of width, height and src_pitch (>> 1)
/// - writes: dst: Y as above; V and U as above from where they begin, with half of width, height
///   and dst_pitch (>> 1)
/// - quirk: V has the offset of U and U that of V, both the gain of Y
///   [plane_stretches.yv12_lies_in_one_buffer_with_v_before_u_and_crossed_offsets]
/// - precondition: width is at least 32 and height at least 4, so that V and U meet what is asked
///   by strech_pic_2X2_adjust()
LUMALANE_API void LUMALANE_CALL strech_picture_2X2_yv12_ajust(
    unsigned char *src, unsigned char *src_u, unsigned char *src_v, unsigned char *dst, int width,
    int height, int src_pitch, int dst_pitch, tag_ajust_contrast_info *info);

/// Stretches a YV12 picture to YV12 of twice the height and adjusts it: each plane as by
/// strech_pic_1X2_adjust(), Y with plane number 1, V with 2 and U with 3. The surface is one
/// buffer: 2 * height rows of Y, then V, then U, as in the table of planes.
///
/// - step: 16 samples, 8 in the first row and the last two
/// - rows: single, at least 4
/// - reads info: no
/// - reads: src as above; src_v, src_u as above, with half of width, height and src_pitch (>> 1)
/// - writes: dst: Y as above; V and U as above from where they begin, with half of width, height
///   and dst_pitch (>> 1)
/// - quirk: V has the offset of U and U that of V, both the gain of Y
///   [plane_stretches.yv12_lies_in_one_buffer_with_v_before_u_and_crossed_offsets]
/// - precondition: width is at least 32 and height at least 4, so that V and U meet what is asked
///   by strech_pic_1X2_adjust()
LUMALANE_API void LUMALANE_CALL strech_picture_1X2_yv12_ajust(
    unsigned char *src, unsigned char *src_u, unsigned char *src_v, unsigned char *dst, int width,
    int height, int src_pitch, int dst_pitch, tag_ajust_contrast_info *info);

/// Stretches a plane to twice the width and height, in strips of 8 samples from top to bottom, from
/// left to right. W = max(up(width, 8), 16).
///
/// - step: 8 samples, in strips, at least two
/// - rows: single, at least 2
/// - reads: src: W at i * src_pitch, i = 0 .. height-1
/// - writes: dst: 2 * W at n * dst_pitch, n = 0 .. 2*height - 2;
///   16 at (2*height - 1) * dst_pitch + 2 * W - 16; 2 * W - 16 at 2*height * dst_pitch
/// - quirk: the first 8 samples of each row count as 0 on a surface of 64 bytes or more: as one
///   number with the first sample lowest they lose 2 * height * dst_pitch, unsigned, of their bits
///   [plane_stretches.plain_2x2_clears_its_first_strip,
///   plane_stretches.plain_2x2_clears_only_as_many_bits_as_twice_the_height_times_the_pitch]
/// - quirk: the last row comes twice only for the last 8 samples; for all others the second one is
///   written to the row below the surface, for which there must be memory, and the surface's last
///   row is left as it is
///   [plane_stretches.plain_2x2_stores_the_last_row_below_the_picture_in_all_strips_but_the_last]
/// - quirk: a width up to 8 makes two strips [plane_stretches.plain_2x2_of_width_8_has_two_strips]
/// - precondition: height is at least 2
LUMALANE_API void LUMALANE_CALL strech_pic_2X2(unsigned char *src, unsigned char *dst, int width,
                                               int height, int src_pitch, int dst_pitch);

/// Stretches a plane to twice the width and height and adjusts it.
///
/// - step: 8 samples
/// - rows: single, at least 2
/// - reads info: no
/// - reads: src as above, t = 2, T = width
/// - writes: dst as above, X = 2 * width - width % 16
/// - precondition: width is at least 16, or bytes before the rows are read and written; height is
///   at least 2, or the call runs around 32 bits; plane_number is 1, 2 or 3
LUMALANE_API void LUMALANE_CALL strech_pic_2X2_adjust(unsigned char *src, unsigned char *dst,
                                                      int width, int height, int src_pitch,
                                                      int dst_pitch, tag_ajust_contrast_info *info,
                                                      int plane_number);

/// Stretches a plane to twice the height and adjusts it.
///
/// - step: 16 samples, 8 in the first row and the last two
/// - rows: single, at least 2
/// - reads info: no
/// - reads: src as above, t = 1, T = src_pitch
/// - writes: dst as above, X = width
/// - precondition: width is at least 16, or bytes before the rows are read and written; height is
///   at least 2, or the call runs around 32 bits; plane_number is 1, 2 or 3
LUMALANE_API void LUMALANE_CALL strech_pic_1X2_adjust(unsigned char *src, unsigned char *dst,
                                                      int width, int height, int src_pitch,
                                                      int dst_pitch, tag_ajust_contrast_info *info,
                                                      int plane_number);

// ---- Frames to YUY2, stretched

/// Converts a frame to YUY2 of twice the height, interpolated along edges, and adjusts it. `start`
/// is the row to start at, counted in pitches for a field and in half pitches otherwise; `height`
/// counts source rows. Rows have luma_pitch pixels.
///
/// Surface rows are made one after the other, from top to bottom.
///
/// Between two rows, four samples that differ from those below by no more than 32 in all become
/// averages straight down. Otherwise each sample becomes the average of the two samples that lie in
/// the best of five directions, from two to the left above and two to the right below to the
/// opposite; the best one has the smallest sum of differences over four samples to the right, or of
/// several is the first. The first and the last 16 pixels of a row are averaged straight down.
///
/// Symbols: W = up(luma_pitch, 16), E = max(W, 48); N = height >> 1 pairs, j = 0 .. N-1 and
/// i = 0 .. N-2; h from row to row, 2 * luma_pitch for a field, else luma_pitch; o to the first
/// row, luma_pitch * start for a field, else luma_pitch * start >> 1.
///
/// - step: 16 pixels
/// - rows: pairs, heights of 8 and more (signed)
/// - reads info: no
/// - reads frame: field_mode, plane_y, plane_u, plane_v, luma_pitch
/// - reads: plane_y: E at o + {2*j, 2*i + 1} * h + {0, 2 * (h >> 1)}; W at o + (2*N - 1) * h;
///   plane_u, plane_v: E / 2 at (o >> 2) + j * (h >> 1)
/// - writes: dst: 2 * W at 4*j * dst_pitch; 2 * E at (4*j + 1) * dst_pitch;
///   2 * E at (4*i + {2, 3}) * dst_pitch; 2 * W at (4*N - {2, 1}) * dst_pitch
/// - quirk: heights below 8 write nothing and read no record
///   [frame_stretches.below_height_8_write_nothing_and_read_no_record]
/// - quirk: an odd height counts as the next lower even one
///   [frame_stretches.odd_heights_are_the_next_lower_even_ones]
/// - quirk: a progressive frame starts at half of `start` rows
///   [frame_stretches.that_are_progressive_start_at_half_of_the_start_row]
/// - quirk: chroma starts at a quarter of where luma starts, which for an odd `start` is within a
///   row [frame_stretches.take_the_chroma_of_a_field_from_a_quarter_of_the_start_on]
/// - quirk: the first and the last 16 pixels follow no edge
///   [frame_stretches.follow_no_edge_in_the_first_and_the_last_16_pixels]
/// - quirk: samples are adjusted after the search [frame_stretches.adjust_after_the_search]
/// - quirk: the last row is stored twice
///   [frame_stretches.double_the_rows_and_store_the_last_one_twice]
/// - quirk: a luma_pitch off 16 is rounded up, interpolated rows have at least 48 pixels; rows do
///   not drift
/// - precondition: luma_pitch is not negative
LUMALANE_API void LUMALANE_CALL strech_opt_yuy2_ajust(tagVideoFrame *frame, int start, int height,
                                                      unsigned char *dst, int dst_pitch,
                                                      tag_ajust_contrast_info *info);

#endif
