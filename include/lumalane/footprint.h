// Which bytes a call reads and writes: for each of its pointers the first and the last one.
//
//     using namespace lumalane;
//     constexpr footprint f = footprint_of(functions::loadimage_rgb32, {854, 480, 864, 4 * 854});
//     static_assert(f[pointer::dst].written.end == ...);   // bytes that dst has to have
//
// Every function has an object of its name in `functions`, and a type of call that has the sizes and
// strides among its arguments: picture_call, mix_call, key_fill_call, mask_call,
// packed_stretch_call, plane_stretch_call, frame_stretch_call (rows_of.h). Everything can be
// computed by the compiler.
//
// Ranges are exact: a call reads and writes the first byte and the last byte of a range and none
// beyond, where the preconditions in lumalane.h are met, sizes are not negative, and neither sizes
// nor strides above largest_size. Between them bytes may remain untouched. (Of mixes, video, alpha
// and subpicture are counted as if all of them was visible.)
#ifndef LUMALANE_FOOTPRINT_H
#define LUMALANE_FOOTPRINT_H

#include <stddef.h>

#include <lumalane.h>

#include <lumalane/compiled_for.h>
#include <lumalane/errors.h>
#include <lumalane/rows_of.h>

namespace lumalane {

namespace detail {
inline namespace LUMALANE_COMPILED_FOR {

constexpr byte_range from_first_to_last(const byte_range &a, const byte_range &b) {
    if (a.empty())
        return b;
    if (b.empty())
        return a;
    return {a.begin < b.begin ? a.begin : b.begin, a.end > b.end ? a.end : b.end};
}

} // namespace LUMALANE_COMPILED_FOR
} // namespace detail

/// What a call does at one of its pointers, in bytes counted from the pointer; empty ranges where it
/// does nothing. Ranges may begin before the pointer: of pictures with a negative stride, say.
struct pointer_footprint {
    byte_range read, written;

    /// From the first to the last byte of both.
    LUMALANE_ALWAYS_INLINE constexpr byte_range touched() const {
        return detail::from_first_to_last(read, written);
    }
};

/// What a call does at all of its pointers. Records count as what they are: bytes that their fields
/// have on the processor that the code is compiled for.
struct footprint {
    pointer_footprint of[pointer_count] = {};

    LUMALANE_ALWAYS_INLINE constexpr const pointer_footprint &operator[](pointer p) const {
        return of[static_cast<int>(p)];
    }
};

// ---- The functions ------------------------------------------------------------------------------
//
// `bytes_per_pixel` is what a pixel of the source makes in a row of the destination (of its Y plane),
// or what a pixel of a drawing surface has. Heights below `least_height` make or read nothing, or do
// not end.

enum class picture_shape {
    copy,
    adjusted_copy,
    halved_copy,
    planar_pairs,
    planar_pairs_with_gaps,
    planar_rows,
    luma_rows,
    packed_pairs,
    doubled_pairs,
    filtered_doubled_pairs,
    doubled_columns,
    adjusted_planes,
};

struct picture_function {
    const char *name;
    picture_shape shape;
    int bytes_per_pixel;
    int step = 16; ///< pixels, where functions of one shape have several
    int least_width = 1, width_step = 1, least_height = 1;
    bool even_height = false;
    bool reads_layout = false;

    LUMALANE_ALWAYS_INLINE constexpr picture_function with_step(int pixels) const {
        picture_function f = *this;
        f.step = pixels;
        return f;
    }
    LUMALANE_ALWAYS_INLINE constexpr picture_function from_height(int rows) const {
        picture_function f = *this;
        f.least_height = rows;
        return f;
    }
    LUMALANE_ALWAYS_INLINE constexpr picture_function from_width(int pixels,
                                                                 int multiples_of = 1) const {
        picture_function f = *this;
        f.least_width = pixels, f.width_step = multiples_of;
        return f;
    }
    LUMALANE_ALWAYS_INLINE constexpr picture_function of_even_height() const {
        picture_function f = *this;
        f.even_height = true;
        return f;
    }
    LUMALANE_ALWAYS_INLINE constexpr picture_function with_layout() const {
        picture_function f = *this;
        f.reads_layout = true;
        return f;
    }
};

enum class mix_shape {
    conversion,
    restored_alpha,
    loaded_alpha,
    subpicture,
    yuy2_pairs,
    half_yuy2_pairs,
    rgb_pairs,
    field_groups,
    field_columns,
    planes,
    field_planes,
};

struct mix_function {
    const char *name;
    mix_shape shape;
    int bytes_per_pixel;
    int step = 16; ///< pixels, where functions of one shape have several
    int least_width = 1, least_height = 1;
    bool reads_layout = false;
    int bytes_beyond = 0;       ///< of each row of the drawing surface
    bool counts_height = false; ///< in the record

    LUMALANE_ALWAYS_INLINE constexpr mix_function with_step(int pixels) const {
        mix_function f = *this;
        f.step = pixels;
        return f;
    }
    LUMALANE_ALWAYS_INLINE constexpr mix_function from(int width, int height) const {
        mix_function f = *this;
        f.least_width = width, f.least_height = height;
        return f;
    }
    LUMALANE_ALWAYS_INLINE constexpr mix_function with_layout() const {
        mix_function f = *this;
        f.reads_layout = true;
        return f;
    }
    LUMALANE_ALWAYS_INLINE constexpr mix_function reading_beyond(int bytes) const {
        mix_function f = *this;
        f.bytes_beyond = bytes;
        return f;
    }
    LUMALANE_ALWAYS_INLINE constexpr mix_function counting_height() const {
        mix_function f = *this;
        f.counts_height = true;
        return f;
    }
};

struct parameters_function {
    const char *name;
};
struct key_fill_function {
    const char *name;
    int bytes_per_pixel;
};
struct mask_function {
    const char *name;
};
struct packed_stretch_function {
    const char *name;
    int least_height;
};
struct plane_stretch_function {
    const char *name;
    int times_width;
    bool adjusts;
    int least_width;
};
struct frame_stretch_function {
    const char *name;
};

/// The functions of lumalane.h, in its order.
namespace functions {

inline constexpr parameters_function get_contrast_data{"get_contrast_data"};

inline constexpr auto loadimage_yv12 = picture_function{"loadimage_yv12", picture_shape::copy, 1};
inline constexpr auto loadimage_yv12_ajust =
    picture_function{"loadimage_yv12_ajust", picture_shape::adjusted_copy, 1};

inline constexpr auto loadimage_rgb32 =
    picture_function{"loadimage_rgb32", picture_shape::planar_pairs, 4};
inline constexpr auto loadimage_rgb32_ajust =
    picture_function{"loadimage_rgb32_ajust", picture_shape::planar_pairs, 4};
inline constexpr auto loadimage_rgb24 =
    picture_function{"loadimage_rgb24", picture_shape::planar_pairs, 3};
inline constexpr auto loadimage_rgb24_ajust =
    picture_function{"loadimage_rgb24_ajust", picture_shape::planar_pairs, 3};
inline constexpr auto loadimage_rgb16 =
    picture_function{"loadimage_rgb16", picture_shape::planar_pairs, 2}.with_layout();
inline constexpr auto loadimage_rgb16_ajust =
    picture_function{"loadimage_rgb16_ajust", picture_shape::planar_pairs, 2}.with_layout();

inline constexpr auto loadimage_yuy2 =
    picture_function{"loadimage_yuy2", picture_shape::planar_pairs_with_gaps, 2};
inline constexpr auto loadimage_yuy2_ajust =
    picture_function{"loadimage_yuy2_ajust", picture_shape::planar_rows, 2}
        .from_height(detail::least_height::loadimage_yuy2_ajust)
        .of_even_height();
inline constexpr auto loadimage_yuy2_mono_ajust =
    picture_function{"loadimage_yuy2_mono_ajust", picture_shape::luma_rows, 2};
inline constexpr auto loadimage_half_yuy2_ajust =
    picture_function{"loadimage_half_yuy2_ajust", picture_shape::planar_rows, 1};
inline constexpr auto loadimage_half_yv12_ajust =
    picture_function{"loadimage_half_yv12_ajust", picture_shape::halved_copy, 1};

inline constexpr auto LoadYUY2_YUY2 =
    picture_function{"LoadYUY2_YUY2", picture_shape::packed_pairs, 2}.with_step(8);
inline constexpr auto LoadYUY2_YUY2_adjust =
    picture_function{"LoadYUY2_YUY2_adjust", picture_shape::packed_pairs, 2}.with_step(8);
inline constexpr auto LoadYUY2_RGB16 =
    picture_function{"LoadYUY2_RGB16", picture_shape::packed_pairs, 2}.with_layout();
inline constexpr auto LoadYUY2_RGB16_adjust =
    picture_function{"LoadYUY2_RGB16_adjust", picture_shape::packed_pairs, 2}.with_layout();
inline constexpr auto LoadYUY2_RGB24 =
    picture_function{"LoadYUY2_RGB24", picture_shape::packed_pairs, 3};
inline constexpr auto LoadYUY2_RGB24_adjust =
    picture_function{"LoadYUY2_RGB24_adjust", picture_shape::packed_pairs, 3};
inline constexpr auto LoadYUY2_RGB32 =
    picture_function{"LoadYUY2_RGB32", picture_shape::packed_pairs, 4};
inline constexpr auto LoadYUY2_RGB32_adjust =
    picture_function{"LoadYUY2_RGB32_adjust", picture_shape::packed_pairs, 4};

inline constexpr auto Convert_RGB32_To_AYUY2 =
    mix_function{"Convert_RGB32_To_AYUY2", mix_shape::conversion, 4}.from(8, 1);
inline constexpr auto Convert_RGB24_To_AYUY2 =
    mix_function{"Convert_RGB24_To_AYUY2", mix_shape::conversion, 3}.from(8, 1).reading_beyond(1);
inline constexpr auto Convert_RGB16_565_To_AYUY2 =
    mix_function{"Convert_RGB16_565_To_AYUY2", mix_shape::conversion, 2}.from(8, 1);

inline constexpr auto Restore_RGB32_To_Alpha =
    mix_function{"Restore_RGB32_To_Alpha", mix_shape::restored_alpha, 4}.with_step(8);
inline constexpr auto Restore_RGB24_To_Alpha =
    mix_function{"Restore_RGB24_To_Alpha", mix_shape::restored_alpha, 3}
        .with_step(8)
        .reading_beyond(1)
        .counting_height();
inline constexpr auto Restore_RGB16_565_To_Alpha =
    mix_function{"Restore_RGB16_565_To_Alpha", mix_shape::restored_alpha, 2};
inline constexpr auto load_subpicture_alpha_rgb32 =
    mix_function{"load_subpicture_alpha_rgb32", mix_shape::loaded_alpha, 4};
inline constexpr auto load_subpicture_alpha_rgb24 =
    mix_function{"load_subpicture_alpha_rgb24", mix_shape::loaded_alpha, 3}.counting_height();
inline constexpr auto load_subpicture_alpha_rgb16_565 =
    mix_function{"load_subpicture_alpha_rgb16_565", mix_shape::loaded_alpha, 2};

inline constexpr auto load_subpicture_yuy2_rgb32 =
    mix_function{"load_subpicture_yuy2_rgb32", mix_shape::subpicture, 4};
inline constexpr auto load_subpicture_yuy2_rgb32_ajust =
    mix_function{"load_subpicture_yuy2_rgb32_ajust", mix_shape::subpicture, 4};
inline constexpr auto load_subpicture_yuy2_rgb24 =
    mix_function{"load_subpicture_yuy2_rgb24", mix_shape::subpicture, 3};
inline constexpr auto load_subpicture_yuy2_rgb24_ajust =
    mix_function{"load_subpicture_yuy2_rgb24_ajust", mix_shape::subpicture, 3};
inline constexpr auto load_subpicture_yuy2_rgb16 =
    mix_function{"load_subpicture_yuy2_rgb16", mix_shape::subpicture, 2}.with_layout();
inline constexpr auto load_subpicture_yuy2_rgb16_ajust =
    mix_function{"load_subpicture_yuy2_rgb16_ajust", mix_shape::subpicture, 2}.with_layout();

inline constexpr key_fill_function LoadColorKeyRgb32{"LoadColorKeyRgb32", 4};
inline constexpr key_fill_function LoadColorKeyRgb24{"LoadColorKeyRgb24", 3};
inline constexpr key_fill_function LoadColorKeyRgb16{"LoadColorKeyRgb16", 2};
inline constexpr mask_function RelaceMaskWithColorKey{"RelaceMaskWithColorKey"};

inline constexpr auto mix_ayuy2_yuy2_p_ajust =
    mix_function{"mix_ayuy2_yuy2_p_ajust", mix_shape::yuy2_pairs, 2};
inline constexpr auto mix_ayuy2_half_yuy2_p_ajust =
    mix_function{"mix_ayuy2_half_yuy2_p_ajust", mix_shape::half_yuy2_pairs, 1};
inline constexpr auto mix_ayuy2_yuy2_i_ajust =
    mix_function{"mix_ayuy2_yuy2_i_ajust", mix_shape::field_groups, 2}.from(
        1, detail::least_height::mix_ayuy2_yuy2_i_ajust);
inline constexpr auto mix_ayv12_yv12_p = mix_function{"mix_ayv12_yv12_p", mix_shape::planes, 1};
inline constexpr auto mix_ayv12_yv12_i =
    mix_function{"mix_ayv12_yv12_i", mix_shape::field_planes, 1};
inline constexpr auto mix_ayv12_yv12_p_ajust =
    mix_function{"mix_ayv12_yv12_p_ajust", mix_shape::planes, 1};

inline constexpr auto mix_ayuy2_rgb32_p_ajust =
    mix_function{"mix_ayuy2_rgb32_p_ajust", mix_shape::rgb_pairs, 4};
inline constexpr auto mix_ayuy2_rgb24_p_ajust =
    mix_function{"mix_ayuy2_rgb24_p_ajust", mix_shape::rgb_pairs, 3};
inline constexpr auto mix_ayuy2_rgb16_p_ajust =
    mix_function{"mix_ayuy2_rgb16_p_ajust", mix_shape::rgb_pairs, 2}.with_layout();
inline constexpr auto mix_ayuy2_rgb32_i_ajust =
    mix_function{"mix_ayuy2_rgb32_i_ajust", mix_shape::field_columns, 4};
inline constexpr auto mix_ayuy2_rgb24_i_ajust =
    mix_function{"mix_ayuy2_rgb24_i_ajust", mix_shape::field_columns, 3};
inline constexpr auto mix_ayuy2_rgb16_i_ajust =
    mix_function{"mix_ayuy2_rgb16_i_ajust", mix_shape::field_columns, 2}.with_layout();

inline constexpr auto strech_picture_1X2_yuy2 =
    picture_function{"strech_picture_1X2_yuy2", picture_shape::doubled_pairs, 2}.from_height(
        detail::least_height::strech_picture_1X2_yuy2);
inline constexpr auto strech_picture_1X2_yuy2_ajust =
    picture_function{"strech_picture_1X2_yuy2_ajust", picture_shape::filtered_doubled_pairs, 2}
        .from_height(detail::least_height::strech_picture_1X2_yuy2);
inline constexpr auto strech_picture_2X2_yuy2 =
    picture_function{"strech_picture_2X2_yuy2", picture_shape::doubled_pairs, 4}.from_height(
        detail::least_height::strech_picture_2X2_yuy2);
inline constexpr auto strech_picture_2X2_yuy2_ajust =
    picture_function{"strech_picture_2X2_yuy2_ajust", picture_shape::doubled_pairs, 4}.from_height(
        detail::least_height::strech_picture_2X2_yuy2_ajust);
inline constexpr packed_stretch_function yuy2_strech_picture_2X2_yuy2{
    "yuy2_strech_picture_2X2_yuy2", detail::least_height::yuy2_strech_picture_2X2_yuy2};
inline constexpr packed_stretch_function yuy2_strech_picture_2X2_yuy2_ajust{
    "yuy2_strech_picture_2X2_yuy2_ajust", detail::least_height::yuy2_strech_picture_2X2_yuy2_ajust};

inline constexpr auto strech_picture_1X2_yuy2_ajust_rgb32 =
    picture_function{"strech_picture_1X2_yuy2_ajust_rgb32", picture_shape::doubled_columns, 4}
        .from_height(detail::least_height::strech_picture_1X2_yuy2_ajust_rgb);
inline constexpr auto strech_picture_1X2_yuy2_ajust_rgb24 =
    picture_function{"strech_picture_1X2_yuy2_ajust_rgb24", picture_shape::doubled_columns, 3}
        .from_height(detail::least_height::strech_picture_1X2_yuy2_ajust_rgb)
        .from_width(16, 16);
inline constexpr auto strech_picture_1X2_yuy2_ajust_rgb16 =
    picture_function{"strech_picture_1X2_yuy2_ajust_rgb16", picture_shape::doubled_columns, 2}
        .from_height(detail::least_height::strech_picture_1X2_yuy2_ajust_rgb)
        .from_width(16, 16)
        .with_layout();

inline constexpr auto strech_picture_2X2_yv12_ajust =
    picture_function{"strech_picture_2X2_yv12_ajust", picture_shape::adjusted_planes, 2}
        .from_height(4)
        .from_width(32);
inline constexpr auto strech_picture_1X2_yv12_ajust =
    picture_function{"strech_picture_1X2_yv12_ajust", picture_shape::adjusted_planes, 1}
        .from_height(4)
        .from_width(32);
inline constexpr plane_stretch_function strech_pic_2X2{"strech_pic_2X2", 2, false, 1};
inline constexpr plane_stretch_function strech_pic_2X2_adjust{"strech_pic_2X2_adjust", 2, true, 16};
inline constexpr plane_stretch_function strech_pic_1X2_adjust{"strech_pic_1X2_adjust", 1, true, 16};

inline constexpr frame_stretch_function strech_opt_yuy2_ajust{"strech_opt_yuy2_ajust"};

} // namespace functions

// ---- The rows of a call --------------------------------------------------------------------------

inline namespace LUMALANE_COMPILED_FOR {

/// Tells `to` the rows of planes and surfaces that a call reads and writes: see rows_of.h.
template <class Receiver>
constexpr void rows_of(const picture_function &f, const picture_call &c, Receiver &to) {
    const int B = f.bytes_per_pixel;
    if (f.least_height > 1 && c.height < f.least_height)
        return;
    if ((f.even_height && c.height % 2 != 0) ||
        (f.reads_layout && !detail::is_rgb16_layout(c.rgb16_layout)))
        return;
    switch (f.shape) {
    case picture_shape::copy:
        return detail::rows_of_copy(c, to);
    case picture_shape::adjusted_copy:
        return detail::rows_of_adjusted_copy(c, to);
    case picture_shape::halved_copy:
        return detail::rows_of_halved_copy(c, to);
    case picture_shape::planar_pairs:
        return detail::rows_of_planar_pairs(c, B, 0, to);
    case picture_shape::planar_pairs_with_gaps:
        return detail::rows_of_planar_pairs(c, B, 8, to);
    case picture_shape::planar_rows:
        return detail::rows_of_planar_rows(c, B, true, to);
    case picture_shape::luma_rows:
        return detail::rows_of_planar_rows(c, B, false, to);
    case picture_shape::packed_pairs:
        return detail::rows_of_packed_pairs(c, f.step, B, to);
    case picture_shape::doubled_pairs:
        return detail::rows_of_doubled_pairs(c, B / 2, false, to);
    case picture_shape::filtered_doubled_pairs:
        return detail::rows_of_doubled_pairs(c, B / 2, true, to);
    case picture_shape::doubled_columns:
        return detail::rows_of_doubled_columns(c, B, to);
    case picture_shape::adjusted_planes:
        return detail::rows_of_adjusted_planes(c, B, to);
    }
}

template <class Receiver>
constexpr void rows_of(const mix_function &f, const mix_call &c, Receiver &to) {
    const int B = f.bytes_per_pixel;
    if (f.reads_layout && !detail::is_rgb16_layout(c.rgb16_layout))
        return;
    switch (f.shape) {
    case mix_shape::conversion:
        return detail::rows_of_conversion(c, B, f.bytes_beyond, to);
    case mix_shape::restored_alpha:
        return detail::rows_of_restored_alpha(c, f.step, B, f.bytes_beyond, to);
    case mix_shape::loaded_alpha:
        return detail::rows_of_loaded_alpha(c, f.step, B, to);
    case mix_shape::subpicture:
        return detail::rows_of_subpicture(c, B, to);
    case mix_shape::yuy2_pairs:
        return detail::rows_of_mix_pairs(c, B, detail::mix_yuy2_distances(c), to);
    case mix_shape::half_yuy2_pairs:
        return detail::rows_of_mix_pairs(c, B, detail::mix_half_yuy2_distances(c), to);
    case mix_shape::rgb_pairs:
        return detail::rows_of_mix_pairs(c, B, detail::mix_rgb_distances(c), to);
    case mix_shape::field_groups:
        if (c.height >= f.least_height)
            detail::rows_of_mix_groups(c, to);
        return;
    case mix_shape::field_columns:
        return detail::rows_of_mix_columns(c, B, to);
    case mix_shape::planes:
        return detail::rows_of_mixed_planes(c, false, to);
    case mix_shape::field_planes:
        return detail::rows_of_mixed_planes(c, true, to);
    }
}

template <class Receiver>
constexpr void rows_of(const key_fill_function &f, const key_fill_call &c, Receiver &to) {
    detail::rows_of_key_fill(c, f.bytes_per_pixel, to);
}

template <class Receiver>
constexpr void rows_of(const mask_function &, const mask_call &c, Receiver &to) {
    detail::rows_of_mask(c, to);
}

template <class Receiver>
constexpr void rows_of(const packed_stretch_function &f, const packed_stretch_call &c,
                       Receiver &to) {
    if (c.height >= f.least_height)
        detail::rows_of_doubled_packed(c, to);
}

template <class Receiver>
constexpr void rows_of(const plane_stretch_function &f, const plane_stretch_call &c, Receiver &to) {
    if (f.adjusts)
        detail::rows_of_adjusted_plane(pointer::src, 0, c, f.times_width, to);
    else
        detail::rows_of_plain_plane(c, to);
}

template <class Receiver>
constexpr void rows_of(const frame_stretch_function &, const frame_stretch_call &c, Receiver &to) {
    if (c.height >= detail::least_height::strech_opt_yuy2_ajust)
        detail::rows_of_frame(c, to);
}

} // namespace LUMALANE_COMPILED_FOR

// ---- The records of a call -----------------------------------------------------------------------

namespace detail {
inline namespace LUMALANE_COMPILED_FOR {

// From the first byte of one field to the last one of another.
#define LUMALANE_FIELDS(record, first, last)                                                       \
    row_set {                                                                                      \
        static_cast<long long>(offsetof(record, first)),                                           \
            static_cast<long long>(offsetof(record, last) + sizeof(record::last) -                 \
                                   offsetof(record, first))                                        \
    }

template <class Receiver>
constexpr void records_of(const picture_function &f, const picture_call &c, Receiver &to) {
    if (f.shape == picture_shape::doubled_columns && c.height < f.least_height)
        return;
    if (f.reads_layout)
        to.reads(pointer::info,
                 LUMALANE_FIELDS(tag_ajust_contrast_info, rgb16_layout, rgb16_layout));
    if (f.shape == picture_shape::adjusted_copy)
        to.reads(pointer::info,
                 LUMALANE_FIELDS(tag_ajust_contrast_info, surface_height, rows_to_plane_end));
}

template <class Receiver>
constexpr void records_of(const mix_function &f, const mix_call &c, Receiver &to) {
    if (f.reads_layout) {
        to.reads(pointer::info,
                 LUMALANE_FIELDS(tag_ajust_contrast_info, rgb16_layout, rgb16_layout));
        to.reads(pointer::mix, LUMALANE_FIELDS(tagMIX_INFO, adjust_info, adjust_info));
        if (!detail::is_rgb16_layout(c.rgb16_layout))
            return;
    }
    if (f.shape == mix_shape::field_groups && c.height < f.least_height)
        return to.reads(pointer::mix, LUMALANE_FIELDS(tagMIX_INFO, height, height));
    switch (f.shape) {
    case mix_shape::conversion:
        to.reads(pointer::mix, LUMALANE_FIELDS(tagMIX_INFO, sub_pitch, color_key));
        to.writes(pointer::mix, LUMALANE_FIELDS(tagMIX_INFO, alpha_plane, sub_u));
        return;
    case mix_shape::restored_alpha:
    case mix_shape::loaded_alpha:
        to.reads(pointer::mix, LUMALANE_FIELDS(tagMIX_INFO, video_pitch, dst));
        if (f.counts_height)
            to.writes(pointer::mix, LUMALANE_FIELDS(tagMIX_INFO, height, height));
        return;
    case mix_shape::subpicture:
        to.reads(pointer::mix, LUMALANE_FIELDS(tagMIX_INFO, video_pitch, color_key));
        return;
    case mix_shape::yuy2_pairs:
    case mix_shape::half_yuy2_pairs:
    case mix_shape::rgb_pairs:
    case mix_shape::field_groups:
        to.reads(pointer::mix, LUMALANE_FIELDS(tagMIX_INFO, video_pitch, dst));
        to.writes(pointer::mix, LUMALANE_FIELDS(tagMIX_INFO, height, sub_u));
        return;
    case mix_shape::field_columns:
        to.reads(pointer::mix, LUMALANE_FIELDS(tagMIX_INFO, video_pitch, dst));
        return;
    case mix_shape::planes:
        to.reads(pointer::mix, LUMALANE_FIELDS(tagMIX_INFO, video_pitch, dst_v));
        to.writes(pointer::mix, LUMALANE_FIELDS(tagMIX_INFO, height, height));
        return;
    case mix_shape::field_planes:
        to.reads(pointer::mix, LUMALANE_FIELDS(tagMIX_INFO, video_pitch, dst_v));
        to.writes(pointer::mix, LUMALANE_FIELDS(tagMIX_INFO, width, height));
        return;
    }
}

template <class Receiver>
constexpr void records_of(const frame_stretch_function &, const frame_stretch_call &c,
                          Receiver &to) {
    if (c.height >= least_height::strech_opt_yuy2_ajust)
        to.reads(pointer::frame, LUMALANE_FIELDS(tagVideoFrame, field_mode, luma_pitch));
}

#undef LUMALANE_FIELDS

// The others have none.
template <class Function, class Call, class Receiver>
constexpr void records_of(const Function &, const Call &, Receiver &) {}

constexpr void widen(byte_range &range, const row_set &rows) {
    if (!rows.empty())
        range = from_first_to_last(range, {rows.begin(), rows.end()});
}

// Keeps the first and the last byte.
struct footprint_receiver {
    footprint found{};

    constexpr void reads(pointer p, const row_set &rows) {
        widen(found.of[static_cast<int>(p)].read, rows);
    }
    constexpr void writes(pointer p, const row_set &rows) {
        widen(found.of[static_cast<int>(p)].written, rows);
    }
    constexpr void writes_again(pointer p, const row_set &rows) { writes(p, rows); }
    constexpr void replaces(pointer p, const row_set &rows) {
        reads(p, rows);
        writes(p, rows);
    }
};

template <class Function, class Call>
constexpr footprint footprint_of_call(const Function &f, const Call &c) {
    footprint_receiver to;
    rows_of(f, c, to);
    records_of(f, c, to);
    return to.found;
}

} // namespace LUMALANE_COMPILED_FOR
} // namespace detail

// ---- Footprints ----------------------------------------------------------------------------------

inline namespace LUMALANE_COMPILED_FOR {

/// The bytes that a call of `f` with the sizes, strides and facts `c` reads and writes.
constexpr footprint footprint_of(const picture_function &f, const picture_call &c) {
    return detail::footprint_of_call(f, c);
}
constexpr footprint footprint_of(const mix_function &f, const mix_call &c) {
    return detail::footprint_of_call(f, c);
}
constexpr footprint footprint_of(const key_fill_function &f, const key_fill_call &c) {
    return detail::footprint_of_call(f, c);
}
constexpr footprint footprint_of(const mask_function &f, const mask_call &c) {
    return detail::footprint_of_call(f, c);
}
constexpr footprint footprint_of(const packed_stretch_function &f, const packed_stretch_call &c) {
    return detail::footprint_of_call(f, c);
}
constexpr footprint footprint_of(const plane_stretch_function &f, const plane_stretch_call &c) {
    return detail::footprint_of_call(f, c);
}
constexpr footprint footprint_of(const frame_stretch_function &f, const frame_stretch_call &c) {
    return detail::footprint_of_call(f, c);
}
constexpr footprint footprint_of(const parameters_function &) {
    detail::footprint_receiver to;
    to.reads(pointer::params, {0, static_cast<long long>(sizeof(contrast_data))});
    return to.found;
}

} // namespace LUMALANE_COMPILED_FOR
} // namespace lumalane

#endif
