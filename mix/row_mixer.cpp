#include "mix/row_mixer.h"

namespace lumalane {

namespace {

constexpr int step = 16;

} // namespace

void consume(tagMIX_INFO &mix, const mix_place &end, int height) {
    mix.video_u = const_cast<unsigned char *>(end.u);
    mix.video_v = const_cast<unsigned char *>(end.v);
    mix.alpha_plane = const_cast<unsigned char *>(end.alpha);
    mix.sub_y = const_cast<unsigned char *>(end.sub_y);
    mix.sub_u = const_cast<unsigned char *>(end.sub_u);
    mix.sub_v = const_cast<unsigned char *>(end.sub_v);
    mix.height = height;
}

row_mixer::row_mixer(const machine &machine, const mixed_to_surface &surface_,
                     const adjustment *by_, store_policy stores_)
    : rows(machine.rows), surface(surface_), by(by_), stores(stores_) {}

mixed_pairs row_mixer::pairs_of(const mixed_pair &pair, const mix_distance &next,
                                ptrdiff_t pairs) const {
    return {pair.upper, pair.below, pair.lower, surface.emit, surface.bytes_per_pixel,
            stores,     by,         pairs,      next};
}

void row_mixer::mix(const mixed_pair &pair, const mix_distance &next, ptrdiff_t pairs,
                    ptrdiff_t pixels) const {
    surface.mix(pairs_of(pair, next, pairs), pixels);
}

void row_mixer::mix(const mixed_pair &pair, const mixed_pair &other, const mix_distance &next,
                    ptrdiff_t pairs, ptrdiff_t pixels) const {
    const mixed_pairs others = pairs_of(other, next, pairs);
    mixed_pairs first = pairs_of(pair, next, pairs);
    first.alternate = &others;
    surface.mix(first, pixels);
}

void row_mixer::mix_in_order(const mixed_pair &pair) const {
    const mix_place &at = pair.upper;
    unsigned char video_u[step / 2], video_v[step / 2], video_y[step];
    rows.average_rows({video_u, at.u, pair.below.chroma}, step / 2);
    rows.average_rows({video_v, at.v, pair.below.chroma}, step / 2);

    const auto mix_row_at = [&](const mix_place &row, const unsigned char *row_y) {
        unsigned char y[step], u[step / 2], v[step / 2], weights[step];
        rows.blend_plane({{y, nullptr},
                          {row_y, nullptr},
                          {row.sub_y, nullptr},
                          row.alpha,
                          {by ? &by->y : nullptr, nullptr}},
                         step);
        // Chroma has the weight of the second of every two pixels.
        const unsigned char *alpha = row.alpha;
        if (surface.averages_chroma_weights) {
            for (int x = 0; x < step; x += 2)
                weights[x] = weights[x + 1] =
                    static_cast<unsigned char>((row.alpha[x] + row.alpha[x + 1] + 1) >> 1);
            alpha = weights;
        }
        rows.blend_chroma_planes({{u, v},
                                  {video_u, video_v},
                                  {row.sub_u, row.sub_v},
                                  alpha,
                                  {by ? &by->u : nullptr, by ? &by->v : nullptr}},
                                 step);
        surface.emit({y, u, v, row.dst}, step);
    };
    mix_row_at(at, at.y);
    if (pair.lower == lower_row::average) {
        rows.average_rows({video_y, at.y, pair.below.luma}, step);
        mix_row_at(at + pair.below, video_y);
    } else {
        mix_row_at(at + pair.below, at.y + pair.below.luma);
    }
}

} // namespace lumalane
