// Pairs of rows of the video under a subpicture, onto RGB and YUY2 surfaces.
#pragma once

#include "picture/machine.h"
#include "picture/surface.h"

#include <lumalane.h>

namespace lumalane {

constexpr mix_distance operator+(const mix_distance &a, const mix_distance &b) {
    return {a.luma + b.luma, a.chroma + b.chroma, a.sub + b.sub, a.sub_chroma + b.sub_chroma,
            a.dst + b.dst};
}

constexpr mix_distance operator*(ptrdiff_t times, const mix_distance &by) {
    return {times * by.luma, times * by.chroma, times * by.sub, times * by.sub_chroma,
            times * by.dst};
}

// `bytes_per_pixel` of the surface per pixel of the video.
constexpr mix_distance along_row(ptrdiff_t pixels, int bytes_per_pixel) {
    return {pixels, pixels / 2, pixels, pixels / 2, pixels * bytes_per_pixel};
}

inline mix_place start_of(const tagMIX_INFO &mix) {
    return {mix.video_y, mix.video_u, mix.video_v, mix.alpha_plane,
            mix.sub_y,   mix.sub_u,   mix.sub_v,   mix.dst};
}

inline mix_place operator+(const mix_place &from, const mix_distance &by) {
    return {from.y + by.luma,           from.u + by.chroma,  from.v + by.chroma,
            from.alpha + by.sub,        from.sub_y + by.sub, from.sub_u + by.sub_chroma,
            from.sub_v + by.sub_chroma, from.dst + by.dst};
}

// The record is the running state of the mixes that consume it.
void consume(tagMIX_INFO &mix, const mix_place &end, int height);

// Two rows that share the video's chroma.
struct mixed_pair {
    mix_place upper;
    // To the lower row. Their chroma is that of the upper row, averaged with the one so much further
    // on, rounded up (0: as it is).
    mix_distance below;
    lower_row lower; // its own luma, or averaged
};

struct mixed_to_surface : planar_to_surface {
    row_kernel::mixing_pairs *mix;
    bool averages_chroma_weights;
};

class row_mixer {
public:
    // `by` is null where nothing is adjusted.
    row_mixer(const machine &, const mixed_to_surface &, const adjustment *by, store_policy);

    // The promised step, of 16 pixels: all that is read of the lower row but the video's chroma is
    // read after the upper one is stored.
    void mix_in_order(const mixed_pair &) const;

    // So many pairs, `next` from one to the next.
    void mix(const mixed_pair &, const mix_distance &next, ptrdiff_t pairs, ptrdiff_t pixels) const;

    // The same with pairs of two kinds in turn.
    void mix(const mixed_pair &, const mixed_pair &other, const mix_distance &next, ptrdiff_t pairs,
             ptrdiff_t pixels) const;

private:
    mixed_pairs pairs_of(const mixed_pair &, const mix_distance &next, ptrdiff_t pairs) const;

    const row_kernels &rows;
    mixed_to_surface surface;
    const adjustment *by;
    store_policy stores;
};

} // namespace lumalane
