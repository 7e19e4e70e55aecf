// Calls of all functions with buffers that carry their sizes, in namespace `checked`, by the names
// of the functions.
//
//     using namespace lumalane;
//     const status s = checked::loadimage_rgb32({y, y_bytes}, {u, u_bytes}, {v, v_bytes},
//                                               {pixels, pixel_bytes}, width, height, stride,
//                                               4 * width);
//     char text[status_text_size];
//     if (!s)
//         log(s.write(text, sizeof text)); // "dst: needs bytes [0, 1228800), has 1228799"
//
// Parameters are those of the function. In place of a tagMIX_INFO stands a mix_buffers, in place of a
// tagVideoFrame a frame_buffers. A call is made, or it is refused and has touched nothing:
//
//   - A width or height below the least one, off the step that the call needs to end, or above
//     largest_size; a height for which the function writes nothing.
//   - A stride (pitch) that is less than the bytes of a row, in whole steps, so that rows of a
//     surface overlap; one of a sign or odd where the function does not allow it.
//   - A record that the function reads and that is null; an RGB16 layout or a number of a plane that
//     there is not.
//   - A buffer that the function touches and that is null, or too small by even one byte, at its
//     beginning or at its end. Buffers that it does not touch may be empty.
//   - Bytes that are written and belong to another buffer of the call, too: there is no conversion
//     in place. Rows of one buffer may lie between the rows of another one, as far apart or a multiple
//     of that.
//
// What a function leaves in a tagMIX_INFO is not seen. The adjustment of get_contrast_data() is that
// of the process.
//
// What a surface has to have is told by footprint_of(): see footprint.h.
#ifndef LUMALANE_CHECKED_H
#define LUMALANE_CHECKED_H

#include <stddef.h>
#include <stdint.h>

#include <lumalane.h>

#include <lumalane/compiled_for.h>
#include <lumalane/errors.h>
#include <lumalane/footprint.h>
#include <lumalane/rows_of.h>

namespace lumalane {

// ---- Buffers -------------------------------------------------------------------------------------

/// Memory that a call may read: the pointer that the function gets, and the bytes that there are,
/// counted from it. They may begin before the pointer: the pointer to a bottom-up picture is that to
/// its last row in memory.
struct const_buffer {
    const unsigned char *data = nullptr;
    byte_range bytes{};

    LUMALANE_ALWAYS_INLINE constexpr const_buffer() = default;
    /// `size` bytes from the pointer on.
    LUMALANE_ALWAYS_INLINE constexpr const_buffer(const unsigned char *data_, size_t size)
        : data(data_), bytes{0, static_cast<long long>(size)} {}
    /// The bytes [begin, end), counted from the pointer.
    LUMALANE_ALWAYS_INLINE constexpr const_buffer(const unsigned char *data_, byte_range bytes_)
        : data(data_), bytes(bytes_) {}
};

/// Memory that a call may read and write.
struct buffer {
    unsigned char *data = nullptr;
    byte_range bytes{};

    LUMALANE_ALWAYS_INLINE constexpr buffer() = default;
    LUMALANE_ALWAYS_INLINE constexpr buffer(unsigned char *data_, size_t size)
        : data(data_), bytes{0, static_cast<long long>(size)} {}
    LUMALANE_ALWAYS_INLINE constexpr buffer(unsigned char *data_, byte_range bytes_)
        : data(data_), bytes(bytes_) {}

    LUMALANE_ALWAYS_INLINE constexpr operator const_buffer() const { return {data, bytes}; }
};

/// The buffers and sizes of a tagMIX_INFO, by the names of its fields.
struct mix_buffers {
    int video_pitch = 0, sub_pitch = 0, dst_pitch = 0;
    int width = 0, height = 0;
    const_buffer video_y, video_v, video_u;
    buffer alpha_plane, sub_y, sub_v, sub_u; ///< written by conversions from a drawing surface
    buffer dst, dst_u, dst_v;
    unsigned color_key = 0;
    const tag_ajust_contrast_info *adjust_info = nullptr;
};

/// The buffers and sizes of a tagVideoFrame, by the names of its fields.
struct frame_buffers {
    int field_mode = 0, luma_pitch = 0;
    const_buffer plane_y, plane_u, plane_v;
};

namespace detail {
inline namespace LUMALANE_COMPILED_FOR {

// ---- Numbers -------------------------------------------------------------------------------------

// Keeps the first thing that is wrong.
class number_checks {
public:
    status found{};

    constexpr void size(const char *name, int value, int least, error below, int step = 1) {
        if (value < least)
            refuse(below, name);
        else if (value % step != 0)
            refuse(error::width_off_step, name);
        else
            not_above_largest(name, value);
    }

    constexpr void width(const char *name, int value, int least = 1, int step = 1) {
        size(name, value, least, error::width_too_small, step);
    }

    constexpr void height(int value, int least = 1) {
        size("height", value, least, error::height_too_small);
    }

    // Of rows of so many bytes.
    constexpr void stride(const char *name, int value, number row_bytes) {
        not_above_largest(name, value);
        if (magnitude(value) < row_bytes)
            refuse(error::stride_too_small, name);
    }

    constexpr void allowed(const char *name, bool stride_is_allowed) {
        if (!stride_is_allowed)
            refuse(error::stride_unsupported, name);
    }

    constexpr void record(const char *name, const void *record_is) {
        if (!record_is)
            refuse(error::null_record, name);
    }

    constexpr void layout(unsigned rgb16_layout) {
        if (!is_rgb16_layout(rgb16_layout))
            refuse(error::unknown_rgb16_layout, "rgb16_layout");
    }

    constexpr void not_above_largest(const char *name, int value) {
        if (magnitude(value) > largest_size)
            refuse(error::size_too_large, name);
    }

    constexpr void refuse(error code, const char *name) {
        if (found.code == error::none)
            found.code = code, found.argument = name;
    }
};

constexpr status check_numbers(const picture_function &f, const picture_call &c) {
    number_checks check;
    check.width("width", c.width, f.least_width, f.width_step);
    check.height(c.height, f.least_height);
    if (f.even_height && c.height % 2 != 0)
        check.refuse(error::height_odd, "height");
    const bool doubles =
        f.shape == picture_shape::doubled_pairs || f.shape == picture_shape::filtered_doubled_pairs;
    if (doubles)
        check.allowed("src_pitch", c.src_pitch >= 0 && c.src_pitch % 2 == 0);
    if (f.shape == picture_shape::copy) {
        check.allowed("src_pitch", c.src_pitch >= 0);
        check.allowed("dst_pitch", c.dst_pitch >= 0);
    }
    // Source rows that are one continuous run have no stride.
    if (f.shape != picture_shape::adjusted_copy)
        check.stride("src_pitch", c.src_pitch, c.width);
    // Columns are whole steps; how far rows drift is told by their sets.
    const number pixels = f.shape == picture_shape::halved_copy       ? half(c.width)
                          : f.shape == picture_shape::doubled_columns ? whole(c.width, 16)
                                                                      : c.width;
    check.stride("dst_pitch", c.dst_pitch, f.bytes_per_pixel * pixels);
    if (f.reads_layout)
        check.layout(c.rgb16_layout);
    return check.found;
}

constexpr status check_numbers(const mix_function &f, const mix_call &c) {
    number_checks check;
    const bool conversion = f.shape == mix_shape::conversion;
    const bool subpicture = f.shape == mix_shape::subpicture;
    const bool transfer =
        f.shape == mix_shape::restored_alpha || f.shape == mix_shape::loaded_alpha;
    const int width = subpicture ? c.video_pitch : c.width;
    check.width(subpicture ? "video_pitch" : "width", width, f.least_width);
    check.height(c.height, f.least_height);
    if (!conversion)
        check.stride("video_pitch", c.video_pitch, width);
    if (conversion)
        check.allowed("sub_pitch", c.sub_pitch >= 0);
    if (!subpicture && !transfer)
        check.stride("sub_pitch", c.sub_pitch, width);
    const number pixels = f.shape == mix_shape::field_columns ? whole(width, 16) : width;
    check.stride("dst_pitch", c.dst_pitch, f.bytes_per_pixel * pixels);
    if (f.reads_layout)
        check.layout(c.rgb16_layout);
    return check.found;
}

constexpr status check_numbers(const key_fill_function &f, const key_fill_call &c) {
    number_checks check;
    check.width("width", c.width);
    check.height(c.height);
    check.stride("pitch", c.pitch, number{f.bytes_per_pixel} * c.width);
    return check.found;
}

constexpr status check_numbers(const mask_function &, const mask_call &c) {
    number_checks check;
    check.width("width", c.width);
    check.height(c.height);
    check.stride("pitch", c.pitch, c.width);
    return check.found;
}

constexpr status check_numbers(const packed_stretch_function &f, const packed_stretch_call &c) {
    number_checks check;
    check.width("row_bytes", c.row_bytes, 64, 32);
    check.height(c.height, f.least_height);
    check.stride("dst_pitch", c.dst_pitch, 2 * number{c.row_bytes});
    return check.found;
}

constexpr status check_numbers(const plane_stretch_function &f, const plane_stretch_call &c) {
    number_checks check;
    check.width("width", c.width, f.least_width);
    check.height(c.height, 2);
    check.stride("src_pitch", c.src_pitch, c.width);
    check.stride("dst_pitch", c.dst_pitch, number{f.times_width} * c.width);
    return check.found;
}

constexpr status check_numbers(const frame_stretch_function &, const frame_stretch_call &c) {
    number_checks check;
    check.width("luma_pitch", c.luma_pitch);
    check.height(c.height, least_height::strech_opt_yuy2_ajust);
    check.not_above_largest("start", c.start);
    check.stride("dst_pitch", c.dst_pitch, 2 * number{c.luma_pitch});
    return check.found;
}

// ---- Memory --------------------------------------------------------------------------------------

struct named_buffer {
    pointer at;
    const char *name;
    const_buffer memory;
};

// All rows of a call.
struct row_list {
    struct entry {
        pointer at;
        bool written, over_others; // of the same pointer
        row_set rows;
    };
    static constexpr int most = 40; // a field onto YUY2 has 27

    entry list[most] = {};
    int count = 0;

    constexpr void reads(pointer p, const row_set &rows) { add({p, false, false, rows}); }
    constexpr void writes(pointer p, const row_set &rows) { add({p, true, false, rows}); }
    constexpr void writes_again(pointer p, const row_set &rows) { add({p, true, true, rows}); }
    constexpr void replaces(pointer p, const row_set &rows) { writes(p, rows); }

private:
    constexpr void add(const entry &e) {
        if (!e.rows.empty())
            list[count++] = e;
    }
};

constexpr byte_range touched_bytes(const row_list &rows, pointer p) {
    byte_range bytes{};
    for (int i = 0; i < rows.count; ++i)
        if (rows.list[i].at == p)
            widen(bytes, rows.list[i].rows);
    return bytes;
}

// `planes`: different rows of one surface are those of different planes.
inline status check_memory(const row_list &rows, const named_buffer *buffers, int count,
                           bool planes) {
    const auto named = [&](pointer p) {
        const named_buffer *found = buffers;
        while (found->at != p)
            ++found;
        return found;
    };
    status refused{};
    for (int i = 0; i < count; ++i) {
        const byte_range needed = touched_bytes(rows, buffers[i].at);
        const byte_range available = buffers[i].memory.bytes;
        if (needed.empty())
            continue;
        refused.argument = buffers[i].name;
        if (!buffers[i].memory.data) {
            refused.code = error::null_plane;
            return refused;
        }
        if (needed.begin < available.begin || available.end < needed.end) {
            refused.code = error::buffer_too_small;
            refused.needed = needed, refused.available = available;
            return refused;
        }
    }

    for (int i = 0; i < rows.count; ++i) {
        const row_list::entry &a = rows.list[i];
        if (!a.written)
            continue;
        const row_set written = joined(a.rows);
        refused.argument = named(a.at)->name;
        if (!a.over_others && !rows_apart(written)) {
            refused.code = error::stride_too_small;
            return refused;
        }
        const auto address = [&](pointer p) {
            return static_cast<long long>(reinterpret_cast<uintptr_t>(named(p)->memory.data));
        };
        for (int j = 0; j < rows.count; ++j) {
            const row_list::entry &b = rows.list[j];
            const bool same = a.at == b.at;
            // Of one buffer, rows may be read and written, and written over others.
            if (same && (j <= i || !b.written || a.over_others || b.over_others))
                continue;
            const long long distance = same ? 0 : address(b.at) - address(a.at);
            if (apart(written, moved(joined(b.rows), distance)))
                continue;
            refused.code = !same    ? error::buffers_overlap
                           : planes ? error::planes_overlap
                                    : error::stride_too_small;
            refused.other = same ? nullptr : named(b.at)->name;
            return refused;
        }
    }
    refused.argument = nullptr;
    return refused;
}

template <class Function, class Call, int count>
status check_call(const Function &f, const Call &c, const named_buffer (&buffers)[count],
                  bool planes = false) {
    const status numbers = check_numbers(f, c);
    if (!numbers)
        return numbers;
    row_list rows;
    rows_of(f, c, rows);
    return check_memory(rows, buffers, count, planes);
}

// ---- Calls ---------------------------------------------------------------------------------------

// Functions take pointers to what they read as if they wrote it.
inline unsigned char *writable(const const_buffer &b) {
    return const_cast<unsigned char *>(b.data);
}
inline tag_ajust_contrast_info *writable(const tag_ajust_contrast_info *info) {
    return const_cast<tag_ajust_contrast_info *>(info);
}

template <class Plain>
status call_picture(const picture_function &f, Plain *plain, const const_buffer &src,
                    const const_buffer &src_u, const const_buffer &src_v, const buffer &dst,
                    int width, int height, int src_pitch, int dst_pitch,
                    const tag_ajust_contrast_info *info) {
    picture_call c{width, height, src_pitch, dst_pitch};
    if (f.reads_layout || f.shape == picture_shape::adjusted_copy) {
        number_checks check;
        check.record("info", info);
        if (!check.found)
            return check.found;
        c.rgb16_layout = f.reads_layout ? info->rgb16_layout : 0;
        c.surface_height = info->surface_height;
        c.rows_to_plane_end = info->rows_to_plane_end;
    }
    const bool planes = f.shape == picture_shape::adjusted_copy ||
                        f.shape == picture_shape::halved_copy ||
                        f.shape == picture_shape::adjusted_planes;
    const status checked = check_call(f, c,
                                      {{pointer::src, "src", src},
                                       {pointer::src_u, "src_u", src_u},
                                       {pointer::src_v, "src_v", src_v},
                                       {pointer::dst, "dst", dst}},
                                      planes);
    if (checked)
        plain(writable(src), writable(src_u), writable(src_v), dst.data, width, height, src_pitch,
              dst_pitch, writable(info));
    return checked;
}

template <class Plain>
status call_mix(const mix_function &f, Plain *plain, const mix_buffers &m) {
    mix_call c{m.video_pitch, m.sub_pitch, m.dst_pitch, m.width, m.height};
    if (f.reads_layout) {
        number_checks check;
        check.record("adjust_info", m.adjust_info);
        if (!check.found)
            return check.found;
        c.rgb16_layout = m.adjust_info->rgb16_layout;
    }
    const status checked = check_call(f, c,
                                      {{pointer::video_y, "video_y", m.video_y},
                                       {pointer::video_v, "video_v", m.video_v},
                                       {pointer::video_u, "video_u", m.video_u},
                                       {pointer::alpha_plane, "alpha_plane", m.alpha_plane},
                                       {pointer::sub_y, "sub_y", m.sub_y},
                                       {pointer::sub_v, "sub_v", m.sub_v},
                                       {pointer::sub_u, "sub_u", m.sub_u},
                                       {pointer::dst, "dst", m.dst},
                                       {pointer::dst_u, "dst_u", m.dst_u},
                                       {pointer::dst_v, "dst_v", m.dst_v}});
    if (!checked)
        return checked;
    tagMIX_INFO record = {};
    record.video_pitch = m.video_pitch, record.sub_pitch = m.sub_pitch;
    record.dst_pitch = m.dst_pitch;
    record.width = m.width, record.height = m.height;
    record.video_y = writable(m.video_y), record.video_v = writable(m.video_v);
    record.video_u = writable(m.video_u);
    record.alpha_plane = m.alpha_plane.data, record.sub_y = m.sub_y.data;
    record.sub_v = m.sub_v.data, record.sub_u = m.sub_u.data;
    record.dst = m.dst.data, record.dst_u = m.dst_u.data, record.dst_v = m.dst_v.data;
    record.color_key = m.color_key;
    record.adjust_info = writable(m.adjust_info);
    plain(&record);
    return checked;
}

template <class Plain>
status call_key_fill(const key_fill_function &f, Plain *plain, unsigned key, const buffer &surface,
                     int width, int height, int reserved, int pitch) {
    const status checked = check_call(f, key_fill_call{width, height, pitch},
                                      {{pointer::surface, "surface", surface}});
    if (checked)
        plain(key, surface.data, width, height, reserved, pitch);
    return checked;
}

template <class Plain, class... Unread>
status call_packed_stretch(const packed_stretch_function &f, Plain *plain, const const_buffer &src,
                           const buffer &dst, int row_bytes, int height, int dst_pitch,
                           Unread... info) {
    const status checked = check_call(f, packed_stretch_call{row_bytes, height, dst_pitch},
                                      {{pointer::src, "src", src}, {pointer::dst, "dst", dst}});
    if (checked)
        plain(writable(src), nullptr, nullptr, dst.data, row_bytes, height, dst_pitch, info...);
    return checked;
}

template <class Plain, class... More>
status call_plane_stretch(const plane_stretch_function &f, Plain *plain, const const_buffer &src,
                          const buffer &dst, int width, int height, int src_pitch, int dst_pitch,
                          More... more) {
    const status checked = check_call(f, plane_stretch_call{width, height, src_pitch, dst_pitch},
                                      {{pointer::src, "src", src}, {pointer::dst, "dst", dst}});
    if (checked)
        plain(writable(src), dst.data, width, height, src_pitch, dst_pitch, more...);
    return checked;
}

template <class Plain>
status call_plane_stretch_ajust(const plane_stretch_function &f, Plain *plain,
                                const const_buffer &src, const buffer &dst, int width, int height,
                                int src_pitch, int dst_pitch, const tag_ajust_contrast_info *info,
                                int plane_number) {
    if (plane_number < 1 || plane_number > 3) {
        number_checks check;
        check.refuse(error::unknown_plane_number, "plane_number");
        return check.found;
    }
    return call_plane_stretch(f, plain, src, dst, width, height, src_pitch, dst_pitch,
                              writable(info), plane_number);
}

} // namespace LUMALANE_COMPILED_FOR
} // namespace detail

// ---- The calls -----------------------------------------------------------------------------------

namespace checked {
inline namespace LUMALANE_COMPILED_FOR {

/// Sets the adjustment of the process; refuses null.
inline status get_contrast_data(contrast_data *params) {
    detail::number_checks check;
    check.record("params", params);
    if (check.found)
        ::get_contrast_data(params);
    return check.found;
}

/// Pictures, with the parameters of the functions. Packed sources need no src_u and src_v; `info` may
/// be null where the function does not read it.
#define LUMALANE_CHECKED_PICTURE(name)                                                             \
    inline status name(const const_buffer &src, const const_buffer &src_u,                         \
                       const const_buffer &src_v, const buffer &dst, int width, int height,        \
                       int src_pitch, int dst_pitch,                                               \
                       const tag_ajust_contrast_info *info = nullptr) {                            \
        return detail::call_picture(functions::name, ::name, src, src_u, src_v, dst, width,        \
                                    height, src_pitch, dst_pitch, info);                           \
    }

/// Subpictures and mixes.
#define LUMALANE_CHECKED_MIX(name)                                                                 \
    inline status name(const mix_buffers &mix) {                                                   \
        return detail::call_mix(functions::name, ::name, mix);                                     \
    }

/// Rectangles of a colour key.
#define LUMALANE_CHECKED_KEY_FILL(name)                                                            \
    inline status name(unsigned key, const buffer &surface, int width, int height, int reserved,   \
                       int pitch) {                                                                \
        return detail::call_key_fill(functions::name, ::name, key, surface, width, height,         \
                                     reserved, pitch);                                             \
    }

LUMALANE_CHECKED_PICTURE(loadimage_yv12)
LUMALANE_CHECKED_PICTURE(loadimage_yv12_ajust)

LUMALANE_CHECKED_PICTURE(loadimage_rgb32)
LUMALANE_CHECKED_PICTURE(loadimage_rgb32_ajust)
LUMALANE_CHECKED_PICTURE(loadimage_rgb24)
LUMALANE_CHECKED_PICTURE(loadimage_rgb24_ajust)
LUMALANE_CHECKED_PICTURE(loadimage_rgb16)
LUMALANE_CHECKED_PICTURE(loadimage_rgb16_ajust)

LUMALANE_CHECKED_PICTURE(loadimage_yuy2)
LUMALANE_CHECKED_PICTURE(loadimage_yuy2_ajust)
LUMALANE_CHECKED_PICTURE(loadimage_yuy2_mono_ajust)
LUMALANE_CHECKED_PICTURE(loadimage_half_yuy2_ajust)
LUMALANE_CHECKED_PICTURE(loadimage_half_yv12_ajust)

LUMALANE_CHECKED_PICTURE(LoadYUY2_YUY2)
LUMALANE_CHECKED_PICTURE(LoadYUY2_YUY2_adjust)
LUMALANE_CHECKED_PICTURE(LoadYUY2_RGB16)
LUMALANE_CHECKED_PICTURE(LoadYUY2_RGB16_adjust)
LUMALANE_CHECKED_PICTURE(LoadYUY2_RGB24)
LUMALANE_CHECKED_PICTURE(LoadYUY2_RGB24_adjust)
LUMALANE_CHECKED_PICTURE(LoadYUY2_RGB32)
LUMALANE_CHECKED_PICTURE(LoadYUY2_RGB32_adjust)

LUMALANE_CHECKED_MIX(Convert_RGB32_To_AYUY2)
LUMALANE_CHECKED_MIX(Convert_RGB24_To_AYUY2)
LUMALANE_CHECKED_MIX(Convert_RGB16_565_To_AYUY2)

LUMALANE_CHECKED_MIX(Restore_RGB32_To_Alpha)
LUMALANE_CHECKED_MIX(Restore_RGB24_To_Alpha)
LUMALANE_CHECKED_MIX(Restore_RGB16_565_To_Alpha)
LUMALANE_CHECKED_MIX(load_subpicture_alpha_rgb32)
LUMALANE_CHECKED_MIX(load_subpicture_alpha_rgb24)
LUMALANE_CHECKED_MIX(load_subpicture_alpha_rgb16_565)

LUMALANE_CHECKED_MIX(load_subpicture_yuy2_rgb32)
LUMALANE_CHECKED_MIX(load_subpicture_yuy2_rgb32_ajust)
LUMALANE_CHECKED_MIX(load_subpicture_yuy2_rgb24)
LUMALANE_CHECKED_MIX(load_subpicture_yuy2_rgb24_ajust)
LUMALANE_CHECKED_MIX(load_subpicture_yuy2_rgb16)
LUMALANE_CHECKED_MIX(load_subpicture_yuy2_rgb16_ajust)

LUMALANE_CHECKED_KEY_FILL(LoadColorKeyRgb32)
LUMALANE_CHECKED_KEY_FILL(LoadColorKeyRgb24)
LUMALANE_CHECKED_KEY_FILL(LoadColorKeyRgb16)

/// A marker of a mask replaced by the colour key.
inline status RelaceMaskWithColorKey(const buffer &dst, const const_buffer &mask,
                                     unsigned mask_value, unsigned key_value, int width, int pitch,
                                     int height) {
    const status checked =
        detail::check_call(functions::RelaceMaskWithColorKey, mask_call{width, pitch, height},
                           {{pointer::dst, "dst", dst}, {pointer::mask, "mask", mask}});
    if (checked)
        ::RelaceMaskWithColorKey(dst.data, detail::writable(mask), mask_value, key_value, width,
                                 pitch, height);
    return checked;
}

LUMALANE_CHECKED_MIX(mix_ayuy2_yuy2_p_ajust)
LUMALANE_CHECKED_MIX(mix_ayuy2_half_yuy2_p_ajust)
LUMALANE_CHECKED_MIX(mix_ayuy2_yuy2_i_ajust)
LUMALANE_CHECKED_MIX(mix_ayv12_yv12_p)
LUMALANE_CHECKED_MIX(mix_ayv12_yv12_i)
LUMALANE_CHECKED_MIX(mix_ayv12_yv12_p_ajust)

LUMALANE_CHECKED_MIX(mix_ayuy2_rgb32_p_ajust)
LUMALANE_CHECKED_MIX(mix_ayuy2_rgb24_p_ajust)
LUMALANE_CHECKED_MIX(mix_ayuy2_rgb16_p_ajust)
LUMALANE_CHECKED_MIX(mix_ayuy2_rgb32_i_ajust)
LUMALANE_CHECKED_MIX(mix_ayuy2_rgb24_i_ajust)
LUMALANE_CHECKED_MIX(mix_ayuy2_rgb16_i_ajust)

LUMALANE_CHECKED_PICTURE(strech_picture_1X2_yuy2)
LUMALANE_CHECKED_PICTURE(strech_picture_1X2_yuy2_ajust)
LUMALANE_CHECKED_PICTURE(strech_picture_2X2_yuy2)
LUMALANE_CHECKED_PICTURE(strech_picture_2X2_yuy2_ajust)

/// YUY2 to YUY2 of twice both. The unread pointers are for the sake of the parameters.
inline status yuy2_strech_picture_2X2_yuy2(const const_buffer &src, const const_buffer &,
                                           const const_buffer &, const buffer &dst, int row_bytes,
                                           int height, int dst_pitch) {
    return detail::call_packed_stretch(functions::yuy2_strech_picture_2X2_yuy2,
                                       ::yuy2_strech_picture_2X2_yuy2, src, dst, row_bytes, height,
                                       dst_pitch);
}
inline status yuy2_strech_picture_2X2_yuy2_ajust(const const_buffer &src, const const_buffer &,
                                                 const const_buffer &, const buffer &dst,
                                                 int row_bytes, int height, int dst_pitch,
                                                 const tag_ajust_contrast_info *info = nullptr) {
    return detail::call_packed_stretch(functions::yuy2_strech_picture_2X2_yuy2_ajust,
                                       ::yuy2_strech_picture_2X2_yuy2_ajust, src, dst, row_bytes,
                                       height, dst_pitch, detail::writable(info));
}

LUMALANE_CHECKED_PICTURE(strech_picture_1X2_yuy2_ajust_rgb32)
LUMALANE_CHECKED_PICTURE(strech_picture_1X2_yuy2_ajust_rgb24)
LUMALANE_CHECKED_PICTURE(strech_picture_1X2_yuy2_ajust_rgb16)

LUMALANE_CHECKED_PICTURE(strech_picture_2X2_yv12_ajust)
LUMALANE_CHECKED_PICTURE(strech_picture_1X2_yv12_ajust)

/// Planes to twice the height, and to twice both.
inline status strech_pic_2X2(const const_buffer &src, const buffer &dst, int width, int height,
                             int src_pitch, int dst_pitch) {
    return detail::call_plane_stretch(functions::strech_pic_2X2, ::strech_pic_2X2, src, dst, width,
                                      height, src_pitch, dst_pitch);
}
inline status strech_pic_2X2_adjust(const const_buffer &src, const buffer &dst, int width,
                                    int height, int src_pitch, int dst_pitch,
                                    const tag_ajust_contrast_info *info, int plane_number) {
    return detail::call_plane_stretch_ajust(functions::strech_pic_2X2_adjust,
                                            ::strech_pic_2X2_adjust, src, dst, width, height,
                                            src_pitch, dst_pitch, info, plane_number);
}
inline status strech_pic_1X2_adjust(const const_buffer &src, const buffer &dst, int width,
                                    int height, int src_pitch, int dst_pitch,
                                    const tag_ajust_contrast_info *info, int plane_number) {
    return detail::call_plane_stretch_ajust(functions::strech_pic_1X2_adjust,
                                            ::strech_pic_1X2_adjust, src, dst, width, height,
                                            src_pitch, dst_pitch, info, plane_number);
}

/// Frames to YUY2 of twice the height.
inline status strech_opt_yuy2_ajust(const frame_buffers &frame, int start, int height,
                                    const buffer &dst, int dst_pitch,
                                    const tag_ajust_contrast_info *info = nullptr) {
    const status checked = detail::check_call(
        functions::strech_opt_yuy2_ajust,
        frame_stretch_call{frame.luma_pitch, frame.field_mode, start, height, dst_pitch},
        {{pointer::plane_y, "plane_y", frame.plane_y},
         {pointer::plane_u, "plane_u", frame.plane_u},
         {pointer::plane_v, "plane_v", frame.plane_v},
         {pointer::dst, "dst", dst}});
    if (!checked)
        return checked;
    tagVideoFrame record = {};
    record.field_mode = frame.field_mode, record.luma_pitch = frame.luma_pitch;
    record.plane_y = detail::writable(frame.plane_y);
    record.plane_u = detail::writable(frame.plane_u);
    record.plane_v = detail::writable(frame.plane_v);
    ::strech_opt_yuy2_ajust(&record, start, height, dst.data, dst_pitch, detail::writable(info));
    return checked;
}

#undef LUMALANE_CHECKED_PICTURE
#undef LUMALANE_CHECKED_MIX
#undef LUMALANE_CHECKED_KEY_FILL

} // namespace LUMALANE_COMPILED_FOR
} // namespace checked

} // namespace lumalane

#endif
