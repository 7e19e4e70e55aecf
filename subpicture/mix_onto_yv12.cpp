// A subpicture over the video, onto YV12 surfaces: plane by plane.
#include "frame/kernels.h"
#include "frame/mixing.h"

namespace lumalane::LUMALANE_LANES {

namespace {

// One plane of a mix. What a pointer moves from a row to the next, on top of the whole steps of the
// row, is its rest.
struct mixed_plane {
    const unsigned char *video, *sub, *alpha;
    unsigned char *dst;
    int width, rows;
    int video_rest, sub_rest, alpha_rest, dst_rest;
    int video_pitch, dst_pitch;
};

// So many samples of a row. The video's sample is the average of that at hand and the one `below`,
// for a distance that is not 0; nothing of the subpicture is read where nothing of it shows.
template <int n, class Put, class Weight, class Map>
LUMALANE_INLINE void mix_samples(const mixed_plane &p, ptrdiff_t x, ptrdiff_t below,
                                 const Map &map) {
    const bytes<n> weight = Weight::template of<n>(p.alpha + x * Weight::per_sample);
    const bytes<n> video = video_samples<n>(p.video + x, below);
    if (all_zero(weight))
        Put::put(p.dst + x, map(video));
    else
        Put::put(p.dst + x, map(blend(video, load<n>(p.sub + x), weight)));
}

// A row in steps of 8 samples, at least one and past its end if need be, or in the widest there
// are.
template <class Put, class Weight, class Map>
LUMALANE_INLINE void mix_row(mixed_plane &p, ptrdiff_t below, const Map &map) {
    ptrdiff_t end = 0;
    if constexpr (Put::wide) {
        along_plane(p.width, [&](auto n, ptrdiff_t x) LUMALANE_INLINE_LAMBDA {
            mix_samples<n.count, Put, Weight>(p, x, below, map);
        });
        end = p.width;
    } else {
        unsigned left = static_cast<unsigned>(p.width);
        do {
            mix_samples<8, Put, Weight>(p, end, below, map);
            end += 8;
        } while (again(left, 8));
    }
    p.video += end, p.sub += end + p.sub_rest, p.dst += end + p.dst_rest;
    p.alpha += end * Weight::per_sample + p.alpha_rest;
}

struct whole_frame {
    template <class Put, class Weight, class Map>
    LUMALANE_INLINE static void mix(mixed_plane p, const Map &map) {
        unsigned rows = static_cast<unsigned>(p.rows);
        do {
            mix_row<Put, Weight>(p, 0, map);
            p.video += p.video_rest;
        } while (again(rows, 1));
    }
};

// Every second row lies between a row of the field and the one below it, also the last: it reads
// one row past the field, deliberately. Between the two the video goes back by the width.
struct doubled_field {
    template <class Put, class Weight, class Map>
    LUMALANE_INLINE static void mix(mixed_plane p, const Map &map) {
        unsigned rows = static_cast<unsigned>(p.rows);
        do {
            mix_row<Put, Weight>(p, 0, map);
            p.video -= p.width;
            mix_row<Put, Weight>(p, p.video_pitch, map);
            p.video += p.video_rest;
        } while (again(rows, 2));
    }
};

// Nobody can tell the wide form of a plane where no row drifts, halves of pitches are exact, rows
// of the surface do not overlap, and nothing is read back that was written.
template <class Weight>
bool plane_is_regular(const mixed_plane &p) {
    if (p.width <= 0 || p.width % 8 != 0 || p.rows <= 0 || !rows_apart(p.dst_pitch, p.width))
        return false;
    const long long rows = p.rows + 1LL,
                    alpha_width = static_cast<long long>(Weight::per_sample) * p.width;
    const extent dst = rows_at(p.dst, rows, p.dst_pitch, p.width);
    return p.dst_rest == p.dst_pitch - p.width &&
           apart(dst,
                 rows_at(p.video, rows, static_cast<long long>(p.video_rest) + p.width, p.width)) &&
           apart(dst,
                 rows_at(p.sub, rows, static_cast<long long>(p.sub_rest) + p.width, p.width)) &&
           apart(dst, rows_at(p.alpha, rows, p.alpha_rest + alpha_width, alpha_width));
}

template <class Rows, class Weight, class Map>
LUMALANE_INLINE void mix_plane(const mixed_plane &p, const Map &map) {
    with_put_if(plane_is_regular<Weight>(p), p.dst, p.dst_pitch,
                static_cast<long long>(p.rows) * p.width, [&](auto put) LUMALANE_INLINE_LAMBDA {
                    Rows::template mix<decltype(put), Weight>(p, map);
                });
}

mixed_plane luma_plane(const tagMIX_INFO &mix) {
    const int sub_rest = difference(mix.sub_pitch, mix.width);
    return {mix.video_y,
            mix.sub_y,
            mix.alpha_plane,
            mix.dst,
            mix.width,
            mix.height,
            difference(mix.video_pitch, mix.width),
            sub_rest,
            sub_rest,
            difference(mix.dst_pitch, mix.width),
            mix.video_pitch,
            mix.dst_pitch};
}

// The subpicture's chroma and alpha skip every second row.
mixed_plane chroma_plane(const tagMIX_INFO &mix, const unsigned char *video,
                         const unsigned char *sub, unsigned char *dst) {
    const int width = mix.width >> 1;
    return {video,
            sub,
            mix.alpha_plane,
            dst,
            width,
            mix.height,
            difference(mix.video_pitch, mix.width) >> 1,
            difference(mix.sub_pitch, width),
            difference(twice(mix.sub_pitch), mix.width),
            difference(mix.dst_pitch, mix.width) >> 1,
            mix.video_pitch >> 1,
            mix.dst_pitch >> 1};
}

// Y, then V and U with half of the height that the record has. The chroma of two rows has the
// weights of the upper one.
template <class Rows, class Adjusted>
LUMALANE_INLINE void mix_planes(tagMIX_INFO &mix, Adjusted adjusted) {
    mix_plane<Rows, weight_of_pixel>(luma_plane(mix), adjusted.y());
    mix.height = static_cast<int>(static_cast<unsigned>(mix.height) >> 1);
    mix_plane<Rows, weight_of_second_pixel>(chroma_plane(mix, mix.video_v, mix.sub_v, mix.dst_v),
                                            adjusted.v());
    mix_plane<Rows, weight_of_second_pixel>(chroma_plane(mix, mix.video_u, mix.sub_u, mix.dst_u),
                                            adjusted.u());
}

} // namespace

void mix_ayv12_yv12_p(LUMALANE_PARAMETERS_mix) { mix_planes<whole_frame>(*mix, as_they_are{}); }

void mix_ayv12_yv12_p_ajust(LUMALANE_PARAMETERS_mix) {
    with_adjustment([&](auto adjusted) { mix_planes<whole_frame>(*mix, adjusted); });
}

void mix_ayv12_yv12_i(LUMALANE_PARAMETERS_mix) {
    mix_planes<doubled_field>(*mix, as_they_are{});
    mix->width >>= 1;
}

} // namespace lumalane::LUMALANE_LANES
