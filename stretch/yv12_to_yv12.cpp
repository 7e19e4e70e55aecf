// Planes, by themselves or those of a YV12 picture, to twice the height or twice both.
#include "frame/adjust.h"
#include "frame/kernels.h"
#include "stretch/double_width.h"

namespace lumalane::LUMALANE_LANES {

namespace {

struct plane {
    const unsigned char *src;
    unsigned char *dst;
    int width, height; // of the source
    ptrdiff_t src_pitch, dst_pitch;
};

// 8 samples twice as wide.
LUMALANE_INLINE bytes<16> double_8(bytes<8> samples, unsigned char next) {
    unsigned char line[16 + 1];
    store(line, samples);
    store(line + 8, samples);
    line[8] = next;
    return double_samples<2, 16>(line).part[0];
}

// 16 bytes of a row of the surface: 16 samples, or 8 twice as wide.
template <int times>
LUMALANE_INLINE bytes<16> widened(const unsigned char *from, bool at_edge) {
    if constexpr (times == 1)
        return load<16>(from);
    else
        return double_8(load<8>(from), from[at_edge ? 7 : 8]);
}

// ---- Adjusted ----------------------------------------------------------------------------------

// The rows come a row lower than one would expect: row 0 and 1 are the first one of the source,
// each average lies above the row that it leads to, and the row before the last one of the source
// ends the surface twice. Deliberately twice the width takes the source rows as one continuous run,
// but for the row below, which is a pitch further on.
template <int times>
struct stretched_plane : plane {
    ptrdiff_t to_next_row() const { return times == 2 ? width : src_pitch; }

    // The row before the last.
    const unsigned char *final_row() const {
        return src + (height - 1) * to_next_row() - src_pitch;
    }
};

template <int times, class Map>
void stretch_stepwise(const stretched_plane<times> p, const Map map) {
    const auto whole_row = [&](unsigned char *to, const unsigned char *from) {
        int left = p.width;
        do {
            if constexpr (times == 1)
                store(to, map(load<8>(from)));
            else
                store(to, map(widened<2>(from, left <= 8)));
            from += 8, to += 8 * times;
            left -= 8;
        } while (left > 0);
    };
    constexpr int step = 16 / times;
    const int beyond = p.width % 16, whole = p.width - beyond;

    const unsigned char *from = p.src;
    unsigned char *to = p.dst;
    whole_row(to, from);
    to += p.dst_pitch;
    unsigned rows = static_cast<unsigned>(p.height) - 1;
    do {
        for (int x = 0; x < whole; x += step) {
            const bool at_edge = x + step >= p.width;
            const bytes<16> upper = widened<times>(from + x, at_edge);
            const bytes<16> lower = widened<times>(from + x + p.src_pitch, at_edge);
            store(to + times * x, map(upper));
            store(to + times * x + p.dst_pitch, map(average(upper, lower)));
        }
        if (beyond != 0) {
            // Deliberately never wider, and both pointers go back by as much.
            const unsigned char *const end_from = from + whole + beyond - 16;
            unsigned char *const end_to = to + times * whole + beyond - 16;
            const bytes<16> upper = load<16>(end_from), lower = load<16>(end_from + p.src_pitch);
            store(end_to, map(upper));
            store(end_to + p.dst_pitch, map(average(upper, lower)));
        }
        from += p.to_next_row();
        to += 2 * p.dst_pitch;
    } while (--rows != 0);
    // Over the last average, and once more right behind that.
    to -= p.dst_pitch;
    whole_row(to, p.final_row());
    whole_row(to + times * p.width, p.final_row() + p.to_next_row() - p.src_pitch);
}

// n samples of a row, as wide as they were or twice as wide.
template <int times, int n>
LUMALANE_INLINE auto widened_group(const unsigned char *from) {
    if constexpr (times == 1)
        return woven<1, n>{{load<n>(from)}};
    else
        return double_samples<2, n>(from);
}

template <class Put, int times, int n, class Map>
LUMALANE_INLINE void put_mapped(unsigned char *to, woven<times, n> samples, const Map &map) {
    for (bytes<n> &part : samples.part)
        part = map(part);
    put_parts<Put>(to, samples);
}

// Pairs of rows at `to`: a row, and the average of it and the next one. `row(k)` is where row k is
// to be had; returns where the one after the last pair is.
template <class Put, int times, class Row, class Map>
LUMALANE_INLINE const unsigned char *put_pairs(unsigned char *to, ptrdiff_t dst_pitch, int columns,
                                               ptrdiff_t pairs, const Row &row, const Map map) {
    const unsigned char *upper = row(0);
    for (ptrdiff_t pair = 0; pair < pairs; ++pair) {
        const unsigned char *const lower = row(pair + 1);
        along_row(columns, [&](auto n, ptrdiff_t x) LUMALANE_INLINE_LAMBDA {
            const auto above = widened_group<times, n.count>(upper + x);
            const auto between = average(above, widened_group<times, n.count>(lower + x));
            put_mapped<Put>(to + times * x, above, map);
            put_mapped<Put>(to + times * x + dst_pitch, between, map);
        });
        upper = lower;
        to += 2 * dst_pitch;
    }
    return upper;
}

// Some columns of a regular plane. The row that ends the surface twice comes `behind` bytes further
// on the second time.
template <class Put, int times, class Map>
LUMALANE_INLINE void stretch_columns(const plane p, bool at_edge, int behind, const Map map) {
    unsigned char lines[times][line_room];
    const auto row = [&](ptrdiff_t k) -> const unsigned char * {
        const unsigned char *const from = p.src + k * p.src_pitch;
        if constexpr (times == 1)
            return from;
        else
            return fill_line<1>(lines[k % times], p.width, at_edge,
                                [&]<int n>(int x) { return load<n>(from + x); });
    };
    const unsigned char *const first = row(0);
    along_row(p.width, [&](auto n, ptrdiff_t x) LUMALANE_INLINE_LAMBDA {
        put_mapped<Put>(p.dst + times * x, widened_group<times, n.count>(first + x), map);
    });
    const ptrdiff_t pairs = p.height - 2;
    const unsigned char *const last =
        put_pairs<Put, times>(p.dst + p.dst_pitch, p.dst_pitch, p.width, pairs, row, map);
    unsigned char *const to = p.dst + (2 * pairs + 1) * p.dst_pitch;
    along_row(p.width, [&](auto n, ptrdiff_t x) LUMALANE_INLINE_LAMBDA {
        const auto samples = widened_group<times, n.count>(last + x);
        put_mapped<Put>(to + times * x, samples, map);
        put_mapped<Put>(to + times * x + p.dst_pitch, samples, map);
        put_mapped<cached>(to + times * x + p.dst_pitch + behind, samples, map);
    });
}

// `stretch(part, at_edge)` for so many columns of a plane at a time.
template <int times, class Stretch>
LUMALANE_INLINE void in_columns(const plane &p, int columns, Stretch stretch) {
    for (int first = 0; first < p.width; first += columns) {
        const bool at_edge = p.width - first <= columns;
        stretch(plane{p.src + first, p.dst + times * static_cast<ptrdiff_t>(first),
                      at_edge ? p.width - first : columns, p.height, p.src_pitch, p.dst_pitch},
                at_edge);
    }
}

// True where the rows can be written in any order: whole groups of 16 samples, rows that do not
// overlap, with those that end the surface, and nothing read back that was written.
template <int times>
bool stretch_is_regular(const stretched_plane<times> &p) {
    const long long row_bytes = static_cast<long long>(times) * p.width;
    return p.width > 0 && p.width % 16 == 0 && p.height >= 2 && p.dst_pitch >= row_bytes &&
           p.src_pitch == p.to_next_row() &&
           apart(rows_at(p.dst, 2LL * p.height - 1, p.dst_pitch, 2 * row_bytes),
                 rows_at(p.src, p.height, p.src_pitch, p.width));
}

template <int times, class Map>
void stretch_adjusted(const stretched_plane<times> p, const Map map) {
    if (!stretch_is_regular(p))
        return stretch_stepwise(p, map);
    const long long bytes = 2LL * times * p.width * p.height;
    with_put(p.dst, static_cast<int>(p.dst_pitch), bytes, [&](auto put) {
        in_columns<times>(p, times == 1 ? p.width : line_columns, [&](plane part, bool at_edge) {
            stretch_columns<decltype(put), times>(part, at_edge, times * p.width, map);
        });
    });
}

// Deliberately the gain is that of luma for every plane, and 2, the number of V, stands for the
// offset of U.
template <int times>
void stretch_numbered(const stretched_plane<times> &p, int plane_number, const adjustment &all) {
    const plane_adjustment by = {all.y.gain, (plane_number == 1   ? all.y
                                              : plane_number == 2 ? all.u
                                                                  : all.v)
                                                 .offset};
    with_adjustment({by, by, by}, [&](auto adjusted) { stretch_adjusted(p, adjusted.y()); });
}

template <int times>
void stretch_planes(const picture &p) {
    const int y_bytes = product(twice(p.height), p.dst_pitch);
    unsigned char *const dst_v = p.dst + y_bytes, *const dst_u = dst_v + (y_bytes >> 2);
    const adjustment all = current_adjustment();
    const auto stretch_plane = [&](const unsigned char *src, unsigned char *dst, int width,
                                   int height, int src_pitch, int dst_pitch, int number) {
        stretch_numbered<times>({{src, dst, width, height, src_pitch, dst_pitch}}, number, all);
    };
    stretch_plane(p.src, p.dst, p.width, p.height, p.src_pitch, p.dst_pitch, 1);
    stretch_plane(p.src_v, dst_v, p.width >> 1, p.height >> 1, p.src_pitch >> 1, p.dst_pitch >> 1,
                  2);
    stretch_plane(p.src_u, dst_u, p.width >> 1, p.height >> 1, p.src_pitch >> 1, p.dst_pitch >> 1,
                  3);
}

} // namespace

void strech_pic_2X2_adjust(LUMALANE_PARAMETERS_plane_stretch_ajust) {
    stretch_numbered<2>({{src, dst, width, height, src_pitch, dst_pitch}}, plane_number,
                        current_adjustment());
}

void strech_pic_1X2_adjust(LUMALANE_PARAMETERS_plane_stretch_ajust) {
    stretch_numbered<1>({{src, dst, width, height, src_pitch, dst_pitch}}, plane_number,
                        current_adjustment());
}

void strech_picture_2X2_yv12_ajust(LUMALANE_PARAMETERS_picture) {
    stretch_planes<2>({LUMALANE_ARGUMENTS_picture});
}

void strech_picture_1X2_yv12_ajust(LUMALANE_PARAMETERS_picture) {
    stretch_planes<1>({LUMALANE_ARGUMENTS_picture});
}

// ---- As they are -------------------------------------------------------------------------------

namespace {

// 8 bytes without their `bits` lowest bits, the first byte lowest.
LUMALANE_INLINE bytes<8> without_low_bits(const unsigned char *from, unsigned bits) {
    unsigned char kept[8];
    for (unsigned i = 0; i < 8; ++i) {
        const unsigned lost = bits <= 8 * i ? 0 : bits - 8 * i;
        kept[i] = static_cast<unsigned char>(lost >= 8 ? 0 : from[i] >> lost << lost);
    }
    return load<8>(kept);
}

// Strips of 8 samples from the top to the bottom. Deliberately the first one loses so many bits of
// each 8 bytes as the surface has bytes, and all but the last one write their last row below the
// surface instead of to its last row.
void double_stepwise(const plane &p) {
    const unsigned char *from = p.src;
    unsigned char *to = p.dst;
    const auto strip = [&](unsigned lost_bits, bool at_edge) {
        const auto doubled_row = [&](int row) {
            const unsigned char *const at = from + row * p.src_pitch;
            return double_8(without_low_bits(at, lost_bits), at[at_edge ? 7 : 8]);
        };
        bytes<16> upper = doubled_row(0);
        unsigned char *row_to = to;
        for (int row = 1; row < p.height; ++row) {
            const bytes<16> lower = doubled_row(row);
            store(row_to, upper);
            store(row_to + p.dst_pitch, average(upper, lower));
            upper = lower;
            row_to += 2 * p.dst_pitch;
        }
        store(row_to, upper);
        store(row_to + (at_edge ? 1 : 2) * p.dst_pitch, upper);
        from += 8, to += 16;
    };
    unsigned lost_bits =
        static_cast<unsigned>(product(twice(p.height), static_cast<int>(p.dst_pitch)));
    int left = p.width - 8;
    do {
        strip(lost_bits, false);
        lost_bits = 0;
        left -= 8;
    } while (left > 0);
    strip(0, true);
}

// Some columns of a regular plane.
template <class Put>
LUMALANE_INLINE void double_columns(const plane p, bool at_start, bool at_edge) {
    unsigned char lines[2][line_room];
    const auto row = [&](ptrdiff_t k) -> const unsigned char * {
        const unsigned char *const from = p.src + k * p.src_pitch;
        unsigned char *const line = lines[k % 2];
        fill_line<1>(line, p.width, at_edge, [&]<int n>(int x) { return load<n>(from + x); });
        if (at_start)
            for (int i = 0; i < 8; ++i)
                line[i] = 0;
        return line;
    };
    constexpr as_they_are::plane as_it_is;
    const ptrdiff_t pairs = p.height - 1;
    const unsigned char *const last =
        put_pairs<Put, 2>(p.dst, p.dst_pitch, p.width, pairs, row, as_it_is);
    unsigned char *const to = p.dst + 2 * pairs * p.dst_pitch;
    for (int x = 0; x < p.width; x += 16) {
        const doubled<16> samples = double_samples<2, 16>(last + x);
        put_parts<Put>(to + 2 * x, samples);
        const bool last_strip = at_edge && x + 16 == p.width;
        Put::put(to + 2 * x + 2 * p.dst_pitch, samples.part[0]);
        Put::put(to + 2 * x + 16 + (last_strip ? 1 : 2) * p.dst_pitch, samples.part[1]);
    }
}

// True where the rows can be written in any order: whole groups of 16 samples, rows that do not
// overlap, a surface of 64 bytes at least (so that all bits are lost), and nothing read back that
// was written.
bool doubling_is_regular(const plane &p) {
    const long long rows = 2LL * p.height;
    return p.width > 0 && p.width % 16 == 0 && p.height >= 2 && p.dst_pitch >= 2LL * p.width &&
           rows * p.dst_pitch == product(twice(p.height), static_cast<int>(p.dst_pitch)) &&
           apart(rows_at(p.dst, rows + 1, p.dst_pitch, 2LL * p.width),
                 rows_at(p.src, p.height, p.src_pitch, p.width));
}

} // namespace

void strech_pic_2X2(LUMALANE_PARAMETERS_plane_stretch) {
    const plane p{src, dst, width, height, src_pitch, dst_pitch};
    if (!doubling_is_regular(p))
        return double_stepwise(p);
    with_put(dst, dst_pitch, 4LL * width * height, [&](auto put) {
        in_columns<2>(p, line_columns, [&](plane part, bool at_edge) {
            double_columns<decltype(put)>(part, part.src == p.src, at_edge);
        });
    });
}

} // namespace lumalane::LUMALANE_LANES
