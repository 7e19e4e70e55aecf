// Stretches pictures of any size.
#ifndef LUMALANE_STRETCH_H
#define LUMALANE_STRETCH_H

#include <lumalane/adjust.h>
#include <lumalane/format.h>
#include <lumalane/strip.h>

namespace lumalane {

enum class stretching {
    twice_height, ///< new rows are averages of their neighbours
    twice_both,   ///< twice the width and the height
    along_edges,  ///< twice the height; new rows follow the edges
};

inline namespace LUMALANE_COMPILED_FOR {

/// Converts a picture to the format of `destination`, which is twice as high, and for twice_both
/// twice as wide.
///
///   how            from          to                                         like
///   twice_height   yv12, i420    yuy2                                       strech_picture_1X2_yuy2
///                                rgb32, rgb24, rgb565, rgb555, rgb664, rgb655
///                                                             strech_picture_1X2_yuy2_ajust_rgb32
///                                yv12, i420                          strech_picture_1X2_yv12_ajust
///   twice_both     yv12, i420    yuy2                                       strech_picture_2X2_yuy2
///                                yv12, i420                          strech_picture_2X2_yv12_ajust
///                  yuy2          yuy2                                  yuy2_strech_picture_2X2_yuy2
///   along_edges    yv12, i420    yuy2                                         strech_opt_yuy2_ajust
///
/// The pixels are those of the function for a picture that is made larger by repeating its last
/// column and row: to a multiple of its step and its least size, to 48 pixels along_edges, and to
/// even heights; from yv12 to yv12 to a multiple of 32 pixels, an even height from 4 on and rows
/// without gaps. Each of U and V has its own offset there, but the gain of Y: uv_gain is not used, and
/// offsets of 128 - 2 * y_gain leave grey as it is. What the functions promise about new samples
/// holds, the quirks of their pixels too.
///
/// Functions that always adjust do it by nothing here, with the lock of <lumalane/adjust.h>.
///
/// Refuses what convert() refuses; sizes_differ if `destination` is not as large as that.
inline status stretch(const const_picture &source, const picture &destination, stretching how);

/// The same with an adjustment; twice_height onto yuy2 then has the filter of four rows of
/// strech_picture_1X2_yuy2_ajust().
inline status stretch(const const_picture &source, const picture &destination, stretching how,
                      const adjustment &own);

} // namespace LUMALANE_COMPILED_FOR

// ---- How ---------------------------------------------------------------------------------------

namespace detail {
inline namespace LUMALANE_COMPILED_FOR {

// Products of a height and a pitch are numbers of 32 bits.
constexpr long long largest_rewind = 2147483647;

// How a function wants its picture, and what may lie beside a part of one for the part to come out
// as it does in the whole: so many columns on both sides, and rows.
struct stretcher {
    enum class kind { none, planar, packed, plane, frame };

    kind is = kind::none;
    decltype(&strech_picture_2X2_yuy2) planar = nullptr; // the function of that kind
    bool adjusts = true;
    layout from = layout::yuv420;
    layout to = layout::yuy2;
    int times_width = 1;
    int plane_number = 0;
    int row_step = 2;
    int least_width = 16;
    int least_rows = 8;
    int beside = 0;

    static constexpr int step = 16, above = 2, below = 4;
};

inline stretcher stretcher_of(format from, format to, stretching how, bool adjusts) {
    stretcher t;
    const bool planar = is_planar(from);
    t.from = layout_of(from);
    t.to = layout_of(to);
    t.times_width = how == stretching::twice_both ? 2 : 1;
    t.beside = how == stretching::twice_height ? 0 : 16;
    if (how == stretching::twice_both && from == format::yuy2 && to == format::yuy2) {
        t.is = stretcher::kind::packed;
        t.adjusts = adjusts;
        t.least_width = 32;
        t.least_rows = adjusts ? 8 : 16;
    } else if (!planar || how < stretching::twice_height || how > stretching::along_edges) {
        return t;
    } else if (how == stretching::along_edges) {
        t.is = to == format::yuy2 ? stretcher::kind::frame : stretcher::kind::none;
        t.least_width = 48;
    } else if (is_planar(to)) {
        t.is = stretcher::kind::plane;
        t.from = t.to = layout::single;
    } else if (to == format::yuy2) {
        t.is = stretcher::kind::planar;
        t.adjusts = adjusts;
        if (how == stretching::twice_height) {
            t.planar = adjusts ? strech_picture_1X2_yuy2_ajust : strech_picture_1X2_yuy2;
        } else {
            t.planar = adjusts ? strech_picture_2X2_yuy2_ajust : strech_picture_2X2_yuy2;
            t.least_width = 32;
            t.least_rows = adjusts ? 16 : 8;
        }
    } else if (how == stretching::twice_height) {
        t.is = stretcher::kind::planar;
        t.planar = t.to == layout::rgb32   ? strech_picture_1X2_yuy2_ajust_rgb32
                   : t.to == layout::rgb24 ? strech_picture_1X2_yuy2_ajust_rgb24
                                           : strech_picture_1X2_yuy2_ajust_rgb16;
        t.least_rows = 12;
    }
    return t;
}

// Whether the function itself can be told how the rows of whole steps lie.
inline bool fits(const stretcher &t, const view &s, const view &d, int width, int height) {
    // At the end of columns and strips some go back by all rows.
    const auto rewinds = [](const view &v, long long rows) {
        const long long by = rows * v.stride[0];
        return by <= largest_rewind && by >= -largest_rewind;
    };
    const bool both_rewind = rewinds(s, height) && rewinds(d, 2LL * height);
    switch (t.is) {
    case stretcher::kind::planar:
        if (s.stride[0] % 2 != 0 || !s.chroma_has_half_the_stride())
            return false;
        if (t.to == layout::yuy2)
            return s.stride[0] >= 0;
        return both_rewind;
    case stretcher::kind::packed:
        return s.stride[0] == 2 * width && both_rewind;
    case stretcher::kind::plane:
        return d.stride[0] == t.times_width * width && (t.times_width == 1 || s.stride[0] == width);
    case stretcher::kind::frame:
        return s.stride[0] == width && s.chroma_has_half_the_stride();
    default:
        return false;
    }
}

// A picture of whole steps.
inline void call(const stretcher &t, tag_ajust_contrast_info &info, const view &s, const view &d,
                 int width, int height) {
    switch (t.is) {
    case stretcher::kind::planar:
        t.planar(s.data[0], s.data[1], s.data[2], d.data[0], width, height, s.stride[0],
                 d.stride[0], &info);
        break;
    case stretcher::kind::packed:
        if (t.adjusts)
            yuy2_strech_picture_2X2_yuy2_ajust(s.data[0], nullptr, nullptr, d.data[0], 2 * width,
                                               height, d.stride[0], &info);
        else
            yuy2_strech_picture_2X2_yuy2(s.data[0], nullptr, nullptr, d.data[0], 2 * width, height,
                                         d.stride[0]);
        break;
    case stretcher::kind::plane:
        (t.times_width == 2 ? strech_pic_2X2_adjust : strech_pic_1X2_adjust)(
            s.data[0], d.data[0], width, height, s.stride[0], d.stride[0], &info, t.plane_number);
        break;
    case stretcher::kind::frame: {
        tagVideoFrame frame{};
        frame.plane_y = s.data[0];
        frame.plane_u = s.data[1];
        frame.plane_v = s.data[2];
        frame.luma_pitch = width;
        strech_opt_yuy2_ajust(&frame, 0, height, d.data[0], d.stride[0], &info);
        break;
    }
    default:
        break;
    }
}

// A source of `width` x `height` and a surface of `to_width` x `to_height`, which is less than twice
// as large where odd sizes make chroma planes larger than half.
struct stretched {
    view s, d;
    int width, height, to_width, to_height;
};

// Any columns and rows, from a multiple of 16 and an even number on.
inline void stretch_by_strip(const stretcher &t, tag_ajust_contrast_info &info, const stretched &p,
                             const rectangle &part) {
    constexpr int pixels = 2048;
    strip<2 * pixels> read;
    strip<8 * pixels> written;
    const int padded_width = most(rounded_up(p.width, t.step), t.least_width);
    const int padded_height = most(rounded_up(p.height, t.row_step), t.least_rows);
    const int most_columns =
        most(t.least_width, least(128, rounded_up(part.width, t.step) + 2 * t.beside));
    const int columns = most_columns - 2 * t.beside;
    const int rows = rounded_down(pixels / most_columns, 2) - t.above - t.below;
    // The part that is made for [x, end), within what there is and not less than the least.
    const auto widen = [](int &first, int &end, int before, int after, int padded, int fewest) {
        end = least(padded, end + after);
        first = most(0, least(first - before, end - fewest));
        end = most(end, first + fewest);
    };
    for (int y = part.y; y < part.bottom(); y += rows)
        for (int x = part.x; x < part.right(); x += columns) {
            int left = x, right = x + columns, top = y, bottom = y + rows;
            widen(left, right, t.beside, t.beside, padded_width, t.least_width);
            widen(top, bottom, t.above, t.below, padded_height, t.least_rows);
            const int width = right - left, height = bottom - top;
            const view from = read.lay_out(t.from, width, height);
            const view made = written.lay_out(t.to, t.times_width * width, 2 * height);
            gather(t.from, from, 1, width, height, p.s.at(t.from, left, top),
                   least(width, p.width - left), least(height, p.height - top));
            call(t, info, from, made, width, height);
            const int to_x = t.times_width * x, to_y = 2 * y;
            scatter(t.to, p.d.at(t.to, to_x, to_y), 2 * height,
                    least(t.times_width * columns, p.to_width - to_x),
                    least(2 * rows, p.to_height - to_y),
                    made.at(t.to, to_x - t.times_width * left, to_y - 2 * top),
                    t.times_width * width);
        }
}

inline void stretch_picture(const stretcher &t, tag_ajust_contrast_info &info, const stretched &p) {
    const int whole = rounded_down(p.width, t.step), even = rounded_down(p.height, t.row_step);
    if (whole < t.least_width || even < t.least_rows || t.times_width * whole > p.to_width ||
        2 * even > p.to_height || !fits(t, p.s, p.d, whole, even)) {
        stretch_by_strip(t, info, p, {0, 0, p.width, p.height});
        return;
    }
    call(t, info, p.s, p.d, whole, even);
    const int left = whole - t.beside, below = even - t.below;
    if (whole < p.width)
        stretch_by_strip(t, info, p, {left, 0, p.width - left, p.height});
    if (even < p.height)
        stretch_by_strip(t, info, p, {0, below, p.width, p.height - below});
}

inline void stretch_views(const stretcher &t, const const_picture &source,
                          const picture &destination) {
    tag_ajust_contrast_info info = info_of(destination.format);
    const view s = view_of(source), d = view_of(destination);
    if (t.is != stretcher::kind::plane) {
        stretch_picture(t, info,
                        {s, d, source.width, source.height, destination.width, destination.height});
        return;
    }
    // Each plane by itself, as many rows of them as an even height has.
    for (int i = 0; i < 3; ++i) {
        stretcher of_plane = t;
        of_plane.plane_number = i + 1;
        of_plane.row_step = i == 0 ? 2 : 1;
        of_plane.least_rows = i == 0 ? 4 : 2;
        const auto width = [&](int of) { return plane_width(format::i420, i, of); };
        stretch_picture(of_plane, info,
                        {{{s.data[i]}, {s.stride[i]}},
                         {{d.data[i]}, {d.stride[i]}},
                         width(source.width),
                         width(source.height),
                         width(destination.width),
                         width(destination.height)});
    }
}

inline status check_stretch(const stretcher &t, const const_picture &source,
                            const picture &destination) {
    const status s = check(source, destination, t.times_width, 2);
    return s && t.is == stretcher::kind::none ? refused(error::unsupported_formats, "destination")
                                              : s;
}

} // namespace LUMALANE_COMPILED_FOR
} // namespace detail

inline namespace LUMALANE_COMPILED_FOR {

inline status stretch(const const_picture &source, const picture &destination, stretching how) {
    const detail::stretcher t = detail::stretcher_of(source.format, destination.format, how, false);
    if (t.adjusts)
        return stretch(source, destination, how, adjustment{});
    const status s = detail::check_stretch(t, source, destination);
    if (s)
        detail::stretch_views(t, source, destination);
    return s;
}

inline status stretch(const const_picture &source, const picture &destination, stretching how,
                      const adjustment &own) {
    const detail::stretcher t = detail::stretcher_of(source.format, destination.format, how, true);
    const status s = detail::check_stretch(t, source, destination);
    if (!s)
        return s;
    const detail::own_adjustment in_force(own);
    detail::stretch_views(t, source, destination);
    return s;
}

} // namespace LUMALANE_COMPILED_FOR
} // namespace lumalane

#endif
