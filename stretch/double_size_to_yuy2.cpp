// YV12 and packed YUY2 pictures into YUY2 surfaces of twice the width and height.
#include "frame/kernels.h"
#include "stretch/between_rows.h"
#include "stretch/double_width.h"

namespace lumalane::LUMALANE_LANES {

namespace {

template <int n>
LUMALANE_INLINE doubled<n> double_luma(const unsigned char *y) {
    return double_samples<4, n>(y);
}

// Pairs of U and V by themselves.
template <int n>
LUMALANE_INLINE doubled<n> double_chroma(const unsigned char *uv) {
    const bytes<n> own = deal_pixels<4, n>(uv);
    return interleave_pairs(own, average(own, deal_pixels<4, n>(uv + 2)));
}

// Deliberately the second 8 bytes of every 64 are luma alone, that of the first 8 of their pixels.
template <class Put, int n>
LUMALANE_INLINE void put_doubled(unsigned char *to, const doubled<n> &y, const doubled<n> &uv) {
    woven<2, n> left = interleave(y.part[0], uv.part[0]);
    left.part[0] = replace_second_8(left.part[0], y.part[0]);
    put_parts<Put>(to, left);
    woven<2, n> right = interleave(y.part[1], uv.part[1]);
    if constexpr (2 * n % 64 == 0)
        right.part[0] = replace_second_8(right.part[0], y.part[1]);
    put_parts<Put>(to + 2 * n, right);
}

// ---- Lines -------------------------------------------------------------------------------------

// `source` has samples in order: bytes and chroma_pairs.
template <class Source>
struct planar_lines {
    Source source;
    rows_at_hand at;

    LUMALANE_INLINE planar_lines after(ptrdiff_t pixels) const {
        return {source, at.after(pixels)};
    }

    LUMALANE_INLINE void luma(unsigned char *line, ptrdiff_t row, int pixels, bool at_edge) const {
        const unsigned char *const y = at.y + row * at.y_pitch;
        fill_line<1>(line, pixels, at_edge, [&]<int n>(int x) {
            return source.template load_luma<1, n>(y + x, chroma_pairs<n>{});
        });
    }

    // Of a pair of rows.
    LUMALANE_INLINE void chroma(unsigned char *line, ptrdiff_t pair, int pixels,
                                bool at_edge) const {
        const unsigned char *const u = at.u + pair * at.chroma_pitch;
        const unsigned char *const v = at.v + pair * at.chroma_pitch;
        fill_line<2>(line, pixels, at_edge, [&]<int n>(int x) {
            return source.template load_chroma<1, n>(u + x / 2, v + x / 2).uv;
        });
    }
};

// Deliberately the chroma of a packed picture's lower rows is never read.
template <class Source>
struct packed_lines {
    Source source;
    const unsigned char *from;
    ptrdiff_t pitch;

    LUMALANE_INLINE packed_lines after(ptrdiff_t pixels) const {
        return {source, from + 2 * pixels, pitch};
    }

    LUMALANE_INLINE void luma(unsigned char *line, ptrdiff_t row, int pixels, bool at_edge) const {
        const unsigned char *const packed = from + row * pitch;
        fill_line<1>(line, pixels, at_edge, [&]<int n>(int x) {
            return source.template load_luma<1, n>(packed + 2 * x, chroma_pairs<n>{});
        });
    }

    LUMALANE_INLINE void chroma(unsigned char *line, ptrdiff_t pair, int pixels,
                                bool at_edge) const {
        const unsigned char *const packed = from + 2 * pair * pitch;
        fill_line<2>(line, pixels, at_edge, [&]<int n>(int x) {
            return source.template load_chroma<1, n>(packed + 2 * x).uv;
        });
    }
};

// 16 pixels of a row twice as wide.
template <class Lines>
LUMALANE_INLINE doubled<16> double_luma_step(const Lines &lines, ptrdiff_t row, bool at_edge) {
    unsigned char line[16 + after_line];
    lines.luma(line, row, 16, at_edge);
    return double_luma<16>(line);
}

template <class Lines>
LUMALANE_INLINE doubled<16> double_chroma_step(const Lines &lines, ptrdiff_t pair, bool at_edge) {
    unsigned char line[16 + after_line];
    lines.chroma(line, pair, 16, at_edge);
    return double_chroma<16>(line);
}

// ---- Whole rows --------------------------------------------------------------------------------

// Whether row 2 of a pair has chroma between its pair's and the next one's, as row 3 does, or its
// pair's own.
enum class chroma_of_row_2 { between, own };

// Where a pair's rows start in the lines.
struct pair_lines {
    const unsigned char *upper, *lower, *next, *chroma, *next_chroma;
};

// The four rows of n pixels of a pair; of the last one, whose last row is the one above it once
// more.
template <int n, class Put, chroma_of_row_2 row_2, bool last>
LUMALANE_INLINE void double_pair(unsigned char *to, ptrdiff_t dst_pitch, const pair_lines &lines,
                                 ptrdiff_t x) {
    const doubled<n> upper = double_luma<n>(lines.upper + x);
    const doubled<n> lower = double_luma<n>(lines.lower + x);
    const doubled<n> chroma = double_chroma<n>(lines.chroma + x);
    put_doubled<Put>(to, upper, chroma);
    put_doubled<Put>(to + dst_pitch, average(upper, lower), chroma);
    if constexpr (last) {
        put_doubled<Put>(to + 2 * dst_pitch, lower, chroma);
        put_doubled<Put>(to + 3 * dst_pitch, lower, chroma);
    } else {
        const doubled<n> next = double_luma<n>(lines.next + x);
        const doubled<n> between = average(chroma, double_chroma<n>(lines.next_chroma + x));
        put_doubled<Put>(to + 2 * dst_pitch, lower,
                         row_2 == chroma_of_row_2::between ? between : chroma);
        put_doubled<Put>(to + 3 * dst_pitch, average(lower, next), between);
    }
}

template <class Put, chroma_of_row_2 row_2, bool last>
LUMALANE_INLINE void double_pair_wide(unsigned char *to, ptrdiff_t dst_pitch,
                                      const pair_lines lines, int pixels) {
    along_row(pixels, [&](auto n, ptrdiff_t x) LUMALANE_INLINE_LAMBDA {
        double_pair<n.count, Put, row_2, last>(to + 4 * x, dst_pitch, lines, x);
    });
}

// A regular picture, a few hundred columns at a time, for whose lines there is room here.
template <class Put, chroma_of_row_2 row_2, class Lines>
void double_wide(const Lines lines, unsigned char *dst, int width, int height,
                 ptrdiff_t dst_pitch) {
    unsigned char luma[3][line_room], chroma[2][line_room];
    for (int first = 0; first < width; first += line_columns) {
        const bool at_edge = width - first <= line_columns;
        const int pixels = at_edge ? width - first : line_columns;
        const Lines from = lines.after(first);
        unsigned char *upper = luma[0], *lower = luma[1], *next = luma[2];
        unsigned char *own = chroma[0], *other = chroma[1];
        unsigned char *to = dst + 4 * static_cast<ptrdiff_t>(first);
        from.luma(upper, 0, pixels, at_edge);
        from.chroma(own, 0, pixels, at_edge);
        for (int row = 0; row < height; row += 2) {
            from.luma(lower, row + 1, pixels, at_edge);
            if (row + 2 == height) {
                double_pair_wide<Put, row_2, true>(to, dst_pitch, {upper, lower, next, own, other},
                                                   pixels);
                break;
            }
            from.luma(next, row + 2, pixels, at_edge);
            from.chroma(other, row / 2 + 1, pixels, at_edge);
            double_pair_wide<Put, row_2, false>(to, dst_pitch, {upper, lower, next, own, other},
                                                pixels);
            exchange(upper, next);
            exchange(own, other);
            to += 4 * dst_pitch;
        }
    }
}

// ---- From YV12 ---------------------------------------------------------------------------------

template <class Source>
void double_planar(const picture p, const Source source) {
    const long long row_bytes = 4LL * p.width;
    if (p.width >= 32 && stretch_is_regular(p, row_bytes))
        return with_put(p.dst, p.dst_pitch, 2 * p.height * row_bytes, [&](auto put) {
            double_wide<decltype(put), chroma_of_row_2::between>(
                planar_lines<Source>{source, rows_of(p)}, p.dst, p.width, p.height, p.dst_pitch);
        });
    pairs_stepwise(p, 4, pairs_by_averages{},
                   [&](unsigned char *&to, rows_at_hand &at, auto luma_by, auto chroma_by) {
                       const auto step = [&](bool at_edge) {
                           const planar_lines<Source> lines{source, at};
                           const doubled<16> y = luma_by(
                               [&](int row) { return double_luma_step(lines, row, at_edge); });
                           put_doubled<cached>(to, y, chroma_by([&](int pair) {
                                                   return double_chroma_step(lines, pair, at_edge);
                                               }));
                           at = at.after(16), to += 64;
                       };
                       int left = (p.width >> 1) - 8;
                       do {
                           step(false);
                           left -= 8;
                       } while (left > 0);
                       step(true);
                   });
}

// ---- From packed YUY2 --------------------------------------------------------------------------

struct packed_picture {
    const unsigned char *src;
    unsigned char *dst;
    int row_bytes, height, dst_pitch;
};

// Packed YUY2 in order.
struct packed_pairs {
    static constexpr bool is_part = true;

    template <int parts, int pixels>
    LUMALANE_INLINE chroma_pairs<pixels> load_chroma(const unsigned char *from) const {
        return {deal_odd<parts, pixels>(from)};
    }

    template <int parts, int pixels, class Shared>
    LUMALANE_INLINE bytes<pixels> load_luma(const unsigned char *from, const Shared &) const {
        return deal_even<parts, pixels>(from);
    }
};

// Strips of 16 pixels from the top to the bottom, which goes back up by what the height means.
template <class Source>
void double_packed_stepwise(const packed_picture p, const Source source) {
    packed_lines<Source> from{source, p.src, p.row_bytes};
    unsigned char *to = p.dst;
    const ptrdiff_t dst_pitch = p.dst_pitch;
    const int src_back = product(p.row_bytes, p.height);
    const int dst_back = product(twice(p.height), p.dst_pitch);
    const auto strip = [&](bool at_edge) {
        const auto next_row = [&] {
            const doubled<16> y = double_luma_step(from, 0, at_edge);
            from.from += p.row_bytes;
            return y;
        };
        doubled<16> chroma = double_chroma_step(from, 0, at_edge);
        doubled<16> upper = next_row(), lower = next_row();
        put_doubled<cached>(to, upper, chroma);
        put_doubled<cached>(to + dst_pitch, average(upper, lower), chroma);
        put_doubled<cached>(to + 2 * dst_pitch, lower, chroma);
        to += 4 * dst_pitch;
        const auto next_pair = [&] {
            const doubled<16> chroma_above = chroma;
            chroma = double_chroma_step(from, 0, at_edge);
            upper = next_row();
            put_doubled<cached>(to, upper, chroma);
            put_doubled<cached>(to - dst_pitch, average(lower, upper),
                                average(chroma_above, chroma));
            lower = next_row();
            put_doubled<cached>(to + 2 * dst_pitch, lower, chroma);
            put_doubled<cached>(to + dst_pitch, average(upper, lower), chroma);
        };
        int left = p.height - 4;
        do {
            next_pair();
            to += 4 * dst_pitch;
            left -= 2;
        } while (left > 0);
        next_pair();
        put_doubled<cached>(to + 3 * dst_pitch, lower, chroma);
        to += 4 * dst_pitch;
        from.from += 32 - src_back;
        to += 64 - dst_back;
    };
    int left = difference(p.row_bytes, 32);
    do {
        strip(false);
        left -= 32;
    } while (left != 0);
    strip(true);
}

// True where the rows can be written in any order, as with stretch_is_regular().
bool doubling_is_regular(const packed_picture &p) {
    const long long row_bytes = p.row_bytes, rows = p.height, pitch = p.dst_pitch;
    return row_bytes >= 64 && row_bytes % 32 == 0 && rows % 2 == 0 &&
           rows_apart(pitch, 2 * row_bytes) && row_bytes * rows == product(p.row_bytes, p.height) &&
           2 * rows * pitch == product(twice(p.height), p.dst_pitch) &&
           apart(rows_at(p.dst, 2 * rows, pitch, 2 * row_bytes),
                 rows_at(p.src, rows, row_bytes, row_bytes));
}

// Deliberately the source's rows are one continuous run.
template <class Source>
void double_packed(const packed_picture p, const Source source) {
    if (!doubling_is_regular(p))
        return double_packed_stepwise(p, source);
    with_put(p.dst, p.dst_pitch, 4LL * p.row_bytes * p.height, [&](auto put) {
        double_wide<decltype(put), chroma_of_row_2::own>(
            packed_lines<Source>{source, p.src, p.row_bytes}, p.dst, p.row_bytes / 2, p.height,
            p.dst_pitch);
    });
}

} // namespace

void strech_picture_2X2_yuy2(LUMALANE_PARAMETERS_picture) {
    if (height >= 8)
        double_planar({LUMALANE_ARGUMENTS_picture}, planar_pairs{});
}

// Deliberately its least height is twice that of its sibling.
void strech_picture_2X2_yuy2_ajust(LUMALANE_PARAMETERS_picture) {
    if (height < 16)
        return;
    with_adjustment([&](auto adjusted) {
        double_planar({LUMALANE_ARGUMENTS_picture}, planar_pairs{} | adjusted);
    });
}

// Deliberately the other way round here.
void yuy2_strech_picture_2X2_yuy2(LUMALANE_PARAMETERS_packed_stretch) {
    if (height >= 16)
        double_packed({static_cast<const unsigned char *>(src), static_cast<unsigned char *>(dst),
                       row_bytes, height, dst_pitch},
                      packed_pairs{});
}

void yuy2_strech_picture_2X2_yuy2_ajust(LUMALANE_PARAMETERS_packed_stretch_ajust) {
    if (height < 8)
        return;
    const packed_picture p{static_cast<const unsigned char *>(src),
                           static_cast<unsigned char *>(dst), row_bytes, height, dst_pitch};
    with_adjustment([&](auto adjusted) { double_packed(p, packed_pairs{} | adjusted); });
}

} // namespace lumalane::LUMALANE_LANES
