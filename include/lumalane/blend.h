// Blends subpictures onto pictures of any size.
#ifndef LUMALANE_BLEND_H
#define LUMALANE_BLEND_H

#include <lumalane/convert.h>

namespace lumalane {

/// A subtitle or a menu: AYUY2 of any size. Alpha and Y have a sample per pixel, U and V one per two
/// pixels (rounded up) on every row. Alpha runs from 0 (video only) to 16 and more (subpicture only).
struct subpicture {
    int width;
    int height;
    const_plane alpha;
    const_plane y;
    const_plane u;
    const_plane v;
};

inline namespace LUMALANE_COMPILED_FOR {

/// Converts a picture with a subpicture over it, whose upper left corner is at pixel x, y of it.
///
///   from          to
///   yv12, i420    rgb32, rgb24, rgb565, rgb555, rgb664, rgb655, yuy2, yv12, i420
///
/// The subpicture may lie anywhere, also partly or wholly outside; outside of its rectangle alpha is
/// 0. The pixels are those of mix_ayuy2_rgb32_p_ajust(), mix_ayuy2_rgb24_p_ajust(),
/// mix_ayuy2_rgb16_p_ajust(), mix_ayuy2_yuy2_p_ajust(), mix_ayv12_yv12_p() or
/// mix_ayv12_yv12_p_ajust() for a picture that is made larger by repeating its last column and row,
/// and a subpicture as large as it. Two pixels of the picture have the U and V that the subpicture
/// has under the second one, whose alpha weighs them.
///
/// Only the yv12 and i420 destinations do without the adjustment's lock (see <lumalane/adjust.h>):
/// the other functions always adjust, here by nothing.
///
/// Refuses what convert() refuses; of the subpicture the same, and what overlaps it.
inline status blend(const const_picture &video, const subpicture &over, int x, int y,
                    const picture &destination);

/// The same with an adjustment of picture and subpicture.
inline status blend(const const_picture &video, const subpicture &over, int x, int y,
                    const picture &destination, const adjustment &own);

} // namespace LUMALANE_COMPILED_FOR

// ---- How ---------------------------------------------------------------------------------------

namespace detail {
inline namespace LUMALANE_COMPILED_FOR {

inline mixer mixer_of(format to, bool adjusts) {
    const layout made = layout_of(to);
    switch (made) {
    case layout::rgb32:
        return {mix_ayuy2_rgb32_p_ajust, made};
    case layout::rgb24:
        return {mix_ayuy2_rgb24_p_ajust, made};
    case layout::rgb16:
        return {mix_ayuy2_rgb16_p_ajust, made};
    case layout::yuy2:
        return {mix_ayuy2_yuy2_p_ajust, made};
    default:
        return {adjusts ? mix_ayv12_yv12_p_ajust : mix_ayv12_yv12_p, made};
    }
}

// A subpicture at its place in a picture.
struct placed_subpicture {
    const subpicture &over;
    int x, y;

    view planes() const {
        return {{const_cast<unsigned char *>(over.y.data), const_cast<unsigned char *>(over.u.data),
                 const_cast<unsigned char *>(over.v.data)},
                {over.y.stride, over.u.stride, over.v.stride}};
    }

    // The sample of U and V that is under the second pixel of the pair at an even column.
    int chroma_at(int column) const { return (column + 1 - x) >> 1; }
    int chroma_width() const { return over.width / 2 + over.width % 2; }

    // Whether functions can be told how its rows lie: they have one pitch, halved for chroma.
    bool has_one_pitch() const {
        return over.alpha.stride == over.y.stride && over.y.stride % 2 == 0 &&
               planes().chroma_has_half_the_stride();
    }

    const_plane alpha_at(int column, int row) const {
        return {over.alpha.data + static_cast<std::ptrdiff_t>(row - y) * over.alpha.stride +
                    (column - x),
                over.alpha.stride};
    }
    view planes_at(int column, int row) const {
        view moved = planes();
        for (int i = 0; i < 3; ++i)
            moved.data[i] += static_cast<std::ptrdiff_t>(row - y) * moved.stride[i] +
                             (i == 0 ? column - x : chroma_at(column));
        return moved;
    }

    // What is over `count` pixels of a row from an even column on; alpha is 0 beside the subpicture.
    void copy_row(int column, int row, int count, unsigned char *alpha, unsigned char *luma,
                  unsigned char *u, unsigned char *v) const {
        std::memset(alpha, 0, static_cast<std::size_t>(count));
        if (row < y || row - y >= over.height)
            return;
        const int first = most(column, x), end = least(column + count, x + over.width);
        if (first >= end)
            return;
        const std::ptrdiff_t down_to_row = row - y;
        const std::size_t samples = static_cast<std::size_t>(end - first);
        std::memcpy(alpha + (first - column),
                    over.alpha.data + down_to_row * over.alpha.stride + (first - x), samples);
        std::memcpy(luma + (first - column),
                    over.y.data + down_to_row * over.y.stride + (first - x), samples);
        for (int pair = 0; pair < count / 2; ++pair) {
            const int sample = chroma_at(column + 2 * pair);
            if (sample < 0 || sample >= chroma_width())
                continue;
            u[pair] = over.u.data[down_to_row * over.u.stride + sample];
            v[pair] = over.v.data[down_to_row * over.v.stride + sample];
        }
    }
};

// Any columns and rows: row pairs side by side.
inline void blend_by_strip(const mixer &m, tag_ajust_contrast_info &info, const view &video,
                           const placed_subpicture &placed, const view &d, const rectangle &part) {
    constexpr int pixels = 1024;
    strip<2 * pixels> read;
    strip<pixels> alpha;
    strip<2 * pixels> over;
    strip<4 * pixels> written;
    const int columns = least(128, rounded_up(part.width, 16)),
              most_groups = pixels / (2 * columns);
    std::memset(over.memory, 0, sizeof over.memory);
    for (int x = part.x; x < part.right(); x += columns) {
        const int n = least(columns, part.right() - x);
        for (int y = part.y, groups; y < part.bottom(); y += 2 * groups) {
            const int left = part.bottom() - y;
            groups = least(most_groups, rounded_up(left, 2) / 2);
            const int width = groups * columns, known = least(left, 2 * groups);
            const view from = read.lay_out(layout::yuv420, width, 2);
            const view sub = over.lay_out(layout::yuv422, width, 2);
            const view made = written.lay_out(m.to, width, 2);
            gather(layout::yuv420, from, groups, columns, 2, video.at(layout::yuv420, x, y), n,
                   known);
            for (int row = 0; row < 2 * groups; ++row) {
                const int to_x = row / 2 * columns, to_y = row % 2;
                const view to = sub.at(layout::yuv422, to_x, to_y);
                placed.copy_row(x, y + row, columns, alpha.memory + to_y * width + to_x, to.data[0],
                                to.data[1], to.data[2]);
            }
            call(m, info, from, {alpha.memory, width}, sub, made, width, 2);
            scatter(m.to, d.at(m.to, x, y), 2, n, known, made, columns);
        }
    }
}

inline void blend_views(format from, const view &video, const subpicture &over, long long x,
                        long long y, format to, const view &d, int width, int height,
                        bool adjusts) {
    const auto convert_part = [&](const rectangle &part) {
        if (part.width > 0 && part.height > 0)
            convert_views(from, video.at(layout::yuv420, part.x, part.y), to,
                          d.at(layout_of(to), part.x, part.y), part.width, part.height, adjusts);
    };
    // Of an odd width, the repeated column still weighs U and V of the last pair.
    if (x >= rounded_up(width, 2) || y >= height || x + over.width <= 0 || y + over.height <= 0) {
        convert_part({0, 0, width, height});
        return;
    }
    const placed_subpicture placed{over, static_cast<int>(x), static_cast<int>(y)};
    const mixer m = mixer_of(to, adjusts);
    tag_ajust_contrast_info info = info_of(to);

    // What is under the subpicture: of the pixels, and of whole pairs of columns and rows.
    const int left = most(0, placed.x), right = least(width, placed.x + over.width);
    const int top = most(0, placed.y), bottom = least(height, placed.y + over.height);
    const int first_column = rounded_down(left, 2), end_column = least(width, rounded_up(right, 2));
    const int first_row = rounded_down(top, 2), end_row = least(height, rounded_up(bottom, 2));
    const int rows = end_row - first_row;
    convert_part({0, 0, width, first_row});
    convert_part({0, first_row, first_column, rows});
    convert_part({end_column, first_row, width - end_column, rows});
    convert_part({0, end_row, width, height - end_row});

    const auto blend_part = [&](const rectangle &part) {
        if (part.width > 0 && part.height > 0)
            blend_by_strip(m, info, video, placed, d, part);
    };
    // Whole steps under nothing but the subpicture.
    const int x0 = rounded_up(left, 2), x1 = x0 + rounded_down(most(0, right - x0), 16);
    const int y0 = rounded_up(top, 2), y1 = most(y0, rounded_down(bottom, 2));
    if (x0 == x1 || y0 == y1 || !placed.has_one_pitch() || video.stride[0] % 2 != 0 ||
        !video.chroma_has_half_the_stride() ||
        (m.to == layout::yuv420 && !d.chroma_has_half_the_stride())) {
        blend_part({first_column, first_row, end_column - first_column, rows});
        return;
    }
    call(m, info, video.at(layout::yuv420, x0, y0), placed.alpha_at(x0, y0),
         placed.planes_at(x0, y0), d.at(m.to, x0, y0), x1 - x0, y1 - y0);
    blend_part({first_column, first_row, end_column - first_column, y0 - first_row});
    blend_part({first_column, y0, x0 - first_column, y1 - y0});
    blend_part({x1, y0, end_column - x1, y1 - y0});
    blend_part({first_column, y1, end_column - first_column, end_row - y1});
}

inline status check_blend(const const_picture &video, const subpicture &over,
                          const picture &destination) {
    status s = check(video, destination);
    if (s && (!is_planar(video.format) || !converts(video.format, destination.format)))
        s = refused(error::unsupported_formats, "destination");
    if (s)
        s = check_size(over.width, over.height, "subpicture");
    const const_plane *const planes[] = {&over.alpha, &over.y, &over.u, &over.v};
    for (int i = 0; s && i < 4; ++i) {
        const long long bytes = bytes_of_row(layout::yuv422, i < 2 ? 0 : 1, over.width);
        s = check_plane(*planes[i], bytes, "subpicture");
        for (int k = 0; s && k < plane_count(destination.format); ++k)
            if (overlap(rows_of_plane(*planes[i], bytes, over.height),
                        rows_of_plane(destination, k)))
                s = refused(error::buffers_overlap, "destination", "subpicture");
    }
    return s;
}

} // namespace LUMALANE_COMPILED_FOR
} // namespace detail

inline namespace LUMALANE_COMPILED_FOR {

inline status blend(const const_picture &video, const subpicture &over, int x, int y,
                    const picture &destination) {
    if (!is_planar(destination.format))
        return blend(video, over, x, y, destination, adjustment{});
    const status s = detail::check_blend(video, over, destination);
    if (s)
        detail::blend_views(video.format, detail::view_of(video), over, x, y, destination.format,
                            detail::view_of(destination), video.width, video.height, false);
    return s;
}

inline status blend(const const_picture &video, const subpicture &over, int x, int y,
                    const picture &destination, const adjustment &own) {
    const status s = detail::check_blend(video, over, destination);
    if (!s)
        return s;
    const detail::own_adjustment in_force(own);
    detail::blend_views(video.format, detail::view_of(video), over, x, y, destination.format,
                        detail::view_of(destination), video.width, video.height, true);
    return s;
}

} // namespace LUMALANE_COMPILED_FOR
} // namespace lumalane

#endif
