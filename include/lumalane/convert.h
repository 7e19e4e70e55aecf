// Converts pictures of any size.
#ifndef LUMALANE_CONVERT_H
#define LUMALANE_CONVERT_H

#include <lumalane/adjust.h>
#include <lumalane/format.h>
#include <lumalane/store_bounds.h>
#include <lumalane/strip.h>

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#define LUMALANE_SSE2
#endif

namespace lumalane {
inline namespace LUMALANE_COMPILED_FOR {

/// Converts a picture to the format of `destination`, which has its size.
///
///   from          to
///   yv12, i420    rgb32, rgb24, rgb565, rgb555, rgb664, rgb655, yuy2, yv12, i420
///   yuy2          rgb32, rgb24, rgb565, rgb555, rgb664, rgb655, yuy2
///
/// The pixels are those that the function of lumalane.h makes (loadimage_rgb32() for yv12 to rgb32,
/// LoadYUY2_RGB32() for yuy2, and so on) of a picture that is made larger by repeating its last
/// column and its last row. Width and height are any, from 1 on, and so are the strides. Not a byte
/// outside of the pictures is read or written, and every pixel is written: also those that
/// loadimage_yuy2() leaves out.
///
///   - Between yv12 and i420 without an adjustment, the planes are copied.
///   - yuy2 to yuy2: lower rows of row pairs get the chroma of the upper ones.
///   - yuy2 of an odd width: the last Y1 is not read; it is written as if it were a pixel.
///
/// Refuses: null_plane, width_too_small, height_too_small, size_too_large, stride_too_small,
/// sizes_differ, unsupported_formats, buffers_overlap (of source and destination, from their first
/// to their last bytes), planes_overlap (of the destination; rows of one plane may lie between those of
/// another one).
inline status convert(const const_picture &source, const picture &destination);

/// The same with an adjustment, which this call alone has: see <lumalane/adjust.h>.
inline status convert(const const_picture &source, const picture &destination,
                      const adjustment &own);

} // namespace LUMALANE_COMPILED_FOR

// ---- How ---------------------------------------------------------------------------------------

namespace detail {
inline namespace LUMALANE_COMPILED_FOR {

// Rows that go at a time where there is more to do in them than one call does: few enough to find
// them in the cache, and many enough for calls to cost nothing.
constexpr int rows_before_strip = 256;
constexpr int rows_before_gaps = 64;

// The rows of the next band; the last one has at least as many as the others.
constexpr int band(int left, int rows) { return left < 2 * rows ? left : rows; }

// Whether the library may store a surface of so many rows of its stride around the cache, which bands
// of it would not outgrow. It decides that for each call: then there is one for all rows. Rows have to
// begin on multiples of `alignment`.
inline bool may_outgrow_cache(unsigned most_cached, const view &d, int rows, int alignment) {
    const long long stride = d.stride[0] < 0 ? -d.stride[0] : d.stride[0];
    const std::uintptr_t bits =
        reinterpret_cast<std::uintptr_t>(d.data[0]) | static_cast<std::uintptr_t>(stride);
    return bits % static_cast<unsigned>(alignment) == 0 && stride * rows > most_cached;
}

// Where the last columns begin that are left after whole steps: 15 or 16 of them, of which some were in
// a step, are copied faster than any other number.
constexpr int columns_left(int width, int whole) {
    return whole > 0 && whole < width ? rounded_up(width, 2) - 16 : whole;
}

// ---- To RGB and YUY2

struct loader {
    static constexpr int step = 16;

    decltype(&loadimage_rgb32) function; // null: there is none
    layout from;
    layout to;
    int least_rows;
    bool leaves_gaps;
    unsigned most_cached; // of the surface's bytes, on a server: there it is the least
};

inline loader loader_of(format from, format to, bool adjusts) {
    const layout made = layout_of(to);
    constexpr unsigned of_yuy2 = most_cached_bytes(bound_of_yuy2, true);
    constexpr unsigned of_rgb = most_cached_bytes(bound_of_rgb, true);
    loader l{nullptr, layout_of(from), made, 2, false, made == layout::yuy2 ? of_yuy2 : of_rgb};
    if (l.from == layout::yuv420) {
        switch (made) {
        case layout::rgb32:
            l.function = adjusts ? loadimage_rgb32_ajust : loadimage_rgb32;
            break;
        case layout::rgb24:
            l.function = adjusts ? loadimage_rgb24_ajust : loadimage_rgb24;
            break;
        case layout::rgb16:
            l.function = adjusts ? loadimage_rgb16_ajust : loadimage_rgb16;
            break;
        case layout::yuy2:
            l.function = adjusts ? loadimage_yuy2_ajust : loadimage_yuy2;
            l.least_rows = adjusts ? 10 : 2;
            l.leaves_gaps = !adjusts;
            break;
        default:
            break;
        }
    } else if (l.from == layout::yuy2) {
        switch (made) {
        case layout::rgb32:
            l.function = adjusts ? LoadYUY2_RGB32_adjust : LoadYUY2_RGB32;
            break;
        case layout::rgb24:
            l.function = adjusts ? LoadYUY2_RGB24_adjust : LoadYUY2_RGB24;
            break;
        case layout::rgb16:
            l.function = adjusts ? LoadYUY2_RGB16_adjust : LoadYUY2_RGB16;
            break;
        case layout::yuy2:
            l.function = adjusts ? LoadYUY2_YUY2_adjust : LoadYUY2_YUY2;
            break;
        default:
            break;
        }
    }
    return l;
}

inline void interleave_pair(unsigned char *to, unsigned char y0, unsigned char u, unsigned char y1,
                            unsigned char v) {
    const unsigned char pixels[4] = {y0, u, y1, v};
    std::memcpy(to, pixels, sizeof pixels);
}

// The first 4 of each 16 pixels of lower rows, which loadimage_yuy2() leaves out.
inline void fill_gaps(const view &s, const view &d, int width, int height) {
    for (int row = 1; row < height; row += 2) {
        const unsigned char *y = s.data[0] + static_cast<std::ptrdiff_t>(row) * s.stride[0];
        const unsigned char *u = s.data[1] + static_cast<std::ptrdiff_t>(row / 2) * s.stride[1];
        const unsigned char *v = s.data[2] + static_cast<std::ptrdiff_t>(row / 2) * s.stride[2];
        unsigned char *to = d.data[0] + static_cast<std::ptrdiff_t>(row) * d.stride[0];
        for (int x = 0; x < width; x += 16, y += 16, u += 8, v += 8, to += 32) {
            interleave_pair(to, y[0], u[0], y[1], v[0]);
            interleave_pair(to + 4, y[2], u[1], y[3], v[1]);
        }
    }
}

// A picture of whole steps and, but for the pitches of 0 below, of an even height.
inline void call(const loader &l, tag_ajust_contrast_info &info, const view &s, const view &d,
                 int width, int height, int stride, int dst_stride) {
    // Packed sources count their pitch in pixels.
    l.function(s.data[0], s.data[1], s.data[2], d.data[0], width, height,
               l.from == layout::yuy2 ? stride / 2 : stride, dst_stride, &info);
}

// Where whole steps end ahead of the last columns and of the cache lines that these are in: lines that
// were stored around the cache would have to come back. (A surface begins on one, or on a half.)
constexpr int steps_before(layout l, int left) {
    const int bytes_per_pixel = static_cast<int>(bytes_of_row(l, 0, 2) / 2);
    return rounded_down(left, cache_line / (bytes_per_pixel & -bytes_per_pixel));
}

// Any columns and rows. Row groups of the least height stand side by side in the strip, so that it
// has long rows for any part.
inline void load_by_strip(const loader &l, tag_ajust_contrast_info &info, const view &s,
                          const view &d, const rectangle &part) {
    constexpr int pixels = 2048;
    strip<2 * pixels> read;
    strip<4 * pixels> written;
    const int columns = least(128, rounded_up(part.width, 16)), rows = l.least_rows;
    const int most_groups = pixels / (columns * rows);
    for (int x = part.x; x < part.right(); x += columns) {
        const int n = least(columns, part.right() - x);
        for (int y = part.y, groups; y < part.bottom(); y += groups * rows) {
            const int left = part.bottom() - y;
            groups = least(most_groups, rounded_up(left, rows) / rows);
            const int width = groups * columns, known = least(left, groups * rows);
            const view from = read.lay_out(l.from, width, rows);
            const view made = written.lay_out(l.to, width, rows);
            const view read_at = s.at(l.from, x, y), written_at = d.at(l.to, x, y);
            if (columns == 16) {
                fetch_rows(l.from, read_at, known);
                fetch_rows(l.to, written_at, known);
            }
            gather(l.from, from, groups, columns, rows, read_at, n, known);
            call(l, info, from, made, width, rows, from.stride[0], made.stride[0]);
            if (l.leaves_gaps)
                fill_gaps(from, made, width, rows);
            scatter(l.to, written_at, rows, n, known, made, columns);
        }
    }
}

// Whole steps of any height, in as few calls as there can be.
inline void load_steps(const loader &l, tag_ajust_contrast_info &info, const view &s, const view &d,
                       int width, int height, bool in_one_call) {
    const int even = rounded_down(height, 2);
    for (int y = 0, rows; y < even; y += rows) {
        rows = !in_one_call ? 2 : l.leaves_gaps ? band(even - y, rows_before_gaps) : even;
        const view from = s.at(l.from, 0, y), to = d.at(l.to, 0, y);
        call(l, info, from, to, width, rows, s.stride[0], d.stride[0]);
        if (l.leaves_gaps)
            fill_gaps(from, to, width, rows);
    }
    if (height == even)
        return;
    // Pitches of 0 repeat the last row, in the source and on the surface.
    if (l.least_rows == 2)
        call(l, info, s.at(l.from, 0, even), d.at(l.to, 0, even), width, 2, 0, 0);
    else
        load_by_strip(l, info, s, d, {0, even, width, 1});
}

inline void load(const loader &l, tag_ajust_contrast_info &info, const view &s, const view &d,
                 int width, int height) {
    const bool packed = l.from == layout::yuy2;
    const bool in_one_call = packed ? s.stride[0] % 2 == 0 : s.chroma_has_half_the_stride();
    // One row pair does not depend on where the next one is.
    const bool in_pairs = !packed && l.least_rows == 2;
    const int even = rounded_down(height, 2);
    const bool direct = in_pairs || (in_one_call && even >= l.least_rows);
    const int whole = direct ? rounded_down(width, l.step) : 0;
    if (whole == 0) {
        load_by_strip(l, info, s, d, {0, 0, width, height});
        return;
    }
    const int left = columns_left(width, whole);
    const bool around = whole < width && may_outgrow_cache(l.most_cached, d, height, 32);
    const int before = around ? steps_before(l.to, left) : 0, steps = before > 0 ? before : whole;
    for (int y = 0, rows; y < height; y += rows) {
        rows = whole == width || around ? height : band(height - y, rows_before_strip);
        load_steps(l, info, s.at(l.from, 0, y), d.at(l.to, 0, y), steps, rows, in_one_call);
        for (int x = steps; x < width; x += l.step) {
            x = least(x, left);
            load_by_strip(l, info, s, d, {x, y, least(l.step, width - x), rows});
        }
    }
}

// ---- Planes to YUY2 without an adjustment
//
// Filling the gaps of loadimage_yuy2() takes a quarter of its time, and loadimage_yuy2_ajust() would
// need the adjustment of the process. Bytes only move here: SSE2 does it as fast as the memory can.

#ifdef LUMALANE_SSE2
#undef LUMALANE_SSE2
inline void interleave_32_pixels(unsigned char *to, const unsigned char *y, const unsigned char *u,
                                 const unsigned char *v) {
    const auto load = [](const unsigned char *from) {
        return _mm_loadu_si128(reinterpret_cast<const __m128i *>(from));
    };
    const auto store = [&](int pixel, __m128i luma, __m128i chroma) {
        __m128i *const at = reinterpret_cast<__m128i *>(to + 2 * pixel);
        _mm_storeu_si128(at, _mm_unpacklo_epi8(luma, chroma));
        _mm_storeu_si128(at + 1, _mm_unpackhi_epi8(luma, chroma));
    };
    store(0, load(y), _mm_unpacklo_epi8(load(u), load(v)));
    store(16, load(y + 16), _mm_unpackhi_epi8(load(u), load(v)));
}

inline void interleave_row(unsigned char *to, const unsigned char *y, const unsigned char *u,
                           const unsigned char *v, int width) {
    const int even = rounded_down(width, 2);
    const auto group = [&](int x) {
        interleave_32_pixels(to + 2 * x, y + x, u + x / 2, v + x / 2);
    };
    if (even >= 32) {
        group(0);
        // All but the last one are cache lines.
        const int misaligned = static_cast<int>(reinterpret_cast<std::uintptr_t>(to) % cache_line);
        for (int x = misaligned % 4 == 0 ? 32 - misaligned / 2 : 32; x < even - 32; x += 32)
            group(x);
        group(even - 32);
    } else {
        for (int x = 0; x < even; x += 2)
            interleave_pair(to + 2 * x, y[x], u[x / 2], y[x + 1], v[x / 2]);
    }
    if (width > even)
        interleave_pair(to + 2 * even, y[even], u[even / 2], y[even], v[even / 2]);
}

inline void interleave(const view &s, const view &d, int width, int height) {
    for (int row = 0; row < height; ++row) {
        const std::ptrdiff_t pair = row / 2;
        interleave_row(d.data[0] + static_cast<std::ptrdiff_t>(row) * d.stride[0],
                       s.data[0] + static_cast<std::ptrdiff_t>(row) * s.stride[0],
                       s.data[1] + pair * s.stride[1], s.data[2] + pair * s.stride[2], width);
    }
}
#else
inline void interleave(const view &s, const view &d, int width, int height) {
    tag_ajust_contrast_info info{};
    load(loader_of(format::i420, format::yuy2, false), info, s, d, width, height);
}
#endif

// ---- To YV12

struct mixer {
    decltype(&mix_ayv12_yv12_p) function; // null: there is none
    layout to;
};

// The alpha of no subpicture, and the rest of it.
constexpr int longest_row_without_alpha = 4096;
inline constexpr unsigned char no_alpha[longest_row_without_alpha] = {};

// A picture of whole steps under a subpicture, of which one row is enough for a pitch of 0.
inline void call(const mixer &m, tag_ajust_contrast_info &info, const view &video,
                 const const_plane &alpha, const view &over, const view &d, int width, int height) {
    tagMIX_INFO record{};
    record.video_pitch = video.stride[0];
    record.sub_pitch = alpha.stride;
    record.dst_pitch = d.stride[0];
    record.width = width;
    record.height = height;
    record.video_y = video.data[0];
    record.video_u = video.data[1];
    record.video_v = video.data[2];
    record.alpha_plane = const_cast<unsigned char *>(alpha.data);
    record.sub_y = over.data[0];
    record.sub_u = over.data[1];
    record.sub_v = over.data[2];
    record.dst = d.data[0];
    record.dst_u = d.data[1];
    record.dst_v = d.data[2];
    record.adjust_info = &info;
    m.function(&record);
}

// Adjusts whole steps of 16 samples. (loadimage_yv12_ajust() has no pitch for its source.)
inline void adjust_steps(const view &s, const view &d, int width, int height) {
    tag_ajust_contrast_info info{};
    const mixer m{mix_ayv12_yv12_p_ajust, layout::yuv420};
    unsigned char *const nothing = const_cast<unsigned char *>(no_alpha);
    const view no_subpicture{{nothing, nothing, nothing}, {0, 0, 0}};
    const int even = rounded_down(height, 2);
    const int rows = s.chroma_has_half_the_stride() && d.chroma_has_half_the_stride() ? even : 2;
    for (int x = 0, n; x < width; x += n) {
        n = least(width - x, longest_row_without_alpha);
        const auto adjust = [&](int y, int count) {
            call(m, info, s.at(m.to, x, y), {nothing, 0}, no_subpicture, d.at(m.to, x, y), n,
                 count);
        };
        for (int y = 0; y < even; y += rows)
            adjust(y, rows);
        if (height > even)
            adjust(even, 1);
    }
}

// At most 16 columns: row pairs side by side.
inline void adjust_by_strip(const view &s, const view &d, const rectangle &part) {
    constexpr layout planes = layout::yuv420;
    constexpr int pixels = 2048, columns = 16, most_rows = pixels / columns;
    strip<2 * pixels> read, written;
    for (int y = part.y; y < part.bottom(); y += most_rows) {
        const int known = least(most_rows, part.bottom() - y), groups = rounded_up(known, 2) / 2;
        const view from = read.lay_out(planes, columns * groups, 2);
        const view made = written.lay_out(planes, columns * groups, 2);
        gather(planes, from, groups, columns, 2, s.at(planes, part.x, y), part.width, known);
        adjust_steps(from, made, columns * groups, 2);
        scatter(planes, d.at(planes, part.x, y), 2, part.width, known, made, columns);
    }
}

// Adjusts planes that lie as loadimage_yv12_ajust() has them, or returns false. That crosses the
// offsets of U and V; so it gets U for V.
inline bool adjust_without_gaps(const view &s, const view &d, int width, int height) {
    const auto has_gaps = [=](const view &v) {
        return v.stride[0] != width || v.stride[1] != width / 2 || v.stride[2] != width / 2;
    };
    if (width % 2 != 0 || height % 2 != 0 || has_gaps(s) || d.stride[0] < width ||
        !d.chroma_has_half_the_stride())
        return false;
    int pitch = d.stride[0];
    if (width % 16 != 0) {
        // Where there are no gaps at all, rows are as long as the function wants them.
        const long long pairs_of_steps = static_cast<long long>(width) * height / 32;
        if (has_gaps(d) || pairs_of_steps * 32 != static_cast<long long>(width) * height ||
            pairs_of_steps > largest_size)
            return false;
        width = pitch = 16, height = static_cast<int>(2 * pairs_of_steps);
    }
    // The least surface height H and rows E to its plane's end, of pitch D, for which
    // H * D >> 2 and E * D + ((H * D - E * D) >> 2) are where the planes are.
    const auto distance = [](const unsigned char *from, const unsigned char *to) {
        return static_cast<long long>(reinterpret_cast<std::intptr_t>(to)) -
               static_cast<long long>(reinterpret_cast<std::intptr_t>(from));
    };
    constexpr long long farthest = 1 << 28;
    const long long to_first = distance(d.data[0], d.data[1]),
                    to_second = distance(d.data[1], d.data[2]);
    if (to_first > farthest || to_first < -farthest || to_second > farthest ||
        to_second < -farthest)
        return false;
    const auto divided_up = [](long long a, long long b) { return a / b + (a % b > 0); };
    const long long surface = divided_up(4 * to_second, pitch) * pitch;
    const long long plane = divided_up(4 * to_first - surface, 3 * pitch) * pitch;
    if (surface >> 2 != to_second || plane + ((surface - plane) >> 2) != to_first)
        return false;
    tag_ajust_contrast_info info{};
    info.surface_height = static_cast<int>(surface / pitch);
    info.rows_to_plane_end = static_cast<int>(plane / pitch);
    loadimage_yv12_ajust(s.data[0], s.data[2], s.data[1], d.data[0], width, height, width, pitch,
                         &info);
    return true;
}

inline void adjust(const view &s, const view &d, int width, int height) {
    if (adjust_without_gaps(s, d, width, height))
        return;
    const int whole = rounded_down(width, 16), left = columns_left(width, whole);
    // The last step may begin in one that was made, but not within a pair.
    const bool in_steps = whole == width || (whole > 0 && width % 2 == 0);
    const bool around = may_outgrow_cache(most_cached_bytes(bound_by::loads_and_stores, true), d,
                                          height + height / 2, alignment_of_planes);
    for (int y = 0, rows; y < height; y += rows) {
        rows = in_steps || around ? height : band(height - y, rows_before_strip);
        const view from = s.at(layout::yuv420, 0, y), to = d.at(layout::yuv420, 0, y);
        if (whole > 0)
            adjust_steps(from, to, whole, rows);
        if (whole == width)
            continue;
        if (in_steps)
            adjust_steps(from.at(layout::yuv420, left, 0), to.at(layout::yuv420, left, 0), 16,
                         rows);
        else
            adjust_by_strip(s, d, {left, y, width - left, rows});
    }
}

// ---- All of them

inline bool converts(format from, format to) {
    return (is_planar(from) && is_planar(to)) || loader_of(from, to, false).function;
}

inline void convert_views(format from, const view &s, format to, const view &d, int width,
                          int height, bool adjusts) {
    if (is_planar(from) && to == format::yuy2 && !adjusts) {
        interleave(s, d, width, height);
    } else if (!is_planar(to)) {
        tag_ajust_contrast_info info = info_of(to);
        load(loader_of(from, to, adjusts), info, s, d, width, height);
    } else if (adjusts) {
        adjust(s, d, width, height);
    } else {
        for (int i = 0; i < 3; ++i)
            copy_rows({d.data[i], d.stride[i], 0}, {s.data[i], s.stride[i], 0}, height,
                      rows_of(layout::yuv420, i, height), bytes_of_row(layout::yuv420, i, width));
    }
}

inline status check_conversion(const const_picture &source, const picture &destination) {
    const status s = check(source, destination);
    return s && !converts(source.format, destination.format)
               ? refused(error::unsupported_formats, "destination")
               : s;
}

} // namespace LUMALANE_COMPILED_FOR
} // namespace detail

inline namespace LUMALANE_COMPILED_FOR {

inline status convert(const const_picture &source, const picture &destination) {
    const status s = detail::check_conversion(source, destination);
    if (s)
        detail::convert_views(source.format, detail::view_of(source), destination.format,
                              detail::view_of(destination), source.width, source.height, false);
    return s;
}

inline status convert(const const_picture &source, const picture &destination,
                      const adjustment &own) {
    const status s = detail::check_conversion(source, destination);
    if (!s)
        return s;
    const detail::own_adjustment in_force(own);
    detail::convert_views(source.format, detail::view_of(source), destination.format,
                          detail::view_of(destination), source.width, source.height, true);
    return s;
}

} // namespace LUMALANE_COMPILED_FOR
} // namespace lumalane

#endif
