// Pairs of rows of the video under a subpicture, onto RGB and YUY2 surfaces.
#pragma once

#include "picture/machine.h"
#include "picture/surface.h"

#include <lumalane.h>

namespace lumalane {

// From one place of a mix to another, in bytes.
struct mix_distance {
    ptrdiff_t luma, chroma;    // of the video
    ptrdiff_t sub, sub_chroma; // of the subpicture; of its alpha as of its luma
    ptrdiff_t dst;
};

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

struct mix_place {
    const unsigned char *y, *u, *v; // the video
    const unsigned char *alpha, *sub_y, *sub_u, *sub_v;
    unsigned char *dst;

    explicit mix_place(const tagMIX_INFO &mix)
        : y(mix.video_y), u(mix.video_u), v(mix.video_v), alpha(mix.alpha_plane), sub_y(mix.sub_y),
          sub_u(mix.sub_u), sub_v(mix.sub_v), dst(mix.dst) {}

    mix_place &operator+=(const mix_distance &by) {
        y += by.luma, u += by.chroma, v += by.chroma;
        alpha += by.sub, sub_y += by.sub, sub_u += by.sub_chroma, sub_v += by.sub_chroma;
        dst += by.dst;
        return *this;
    }
};

inline mix_place operator+(mix_place place, const mix_distance &by) { return place += by; }

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
    row_kernel::blending_to_surface *emit_blended; // null: chroma is blended into a strip
};

class row_mixer {
public:
    // The weights of chroma are those of `blend_chroma`. `by` is null where nothing is adjusted.
    row_mixer(const machine &, const mixed_to_surface &, row_kernel::blending_chroma *blend_chroma,
              const adjustment *by, store_policy);

    // The promised step, of 16 pixels: all that is read of the lower row but the video's chroma is
    // read after the upper one is stored.
    void mix_in_order(const mixed_pair &) const;

    // So many pairs, `next` from one to the next. Where no pixel of both rows shows the subpicture
    // nothing of it is read.
    void mix(mixed_pair, const mix_distance &next, ptrdiff_t pairs, ptrdiff_t pixels) const;

    // The same of two pairs in turn.
    void mix(mixed_pair, mixed_pair, const mix_distance &next, ptrdiff_t pairs,
             ptrdiff_t pixels) const;

private:
    ptrdiff_t count_clear(const mixed_pair &, ptrdiff_t pixels) const;
    void mix_row(const mixed_pair &, ptrdiff_t clear, ptrdiff_t pixels) const;
    void take_video(const mixed_pair &, const mix_distance &next, ptrdiff_t pairs, ptrdiff_t x,
                    ptrdiff_t n) const;
    void blend(const mixed_pair &, ptrdiff_t x, ptrdiff_t n) const;

    const row_kernels &rows;
    mixed_to_surface surface;
    row_kernel::blending_chroma *blend_chroma;
    const adjustment *by;
    const plane_adjustment *luma_by;
    store_policy stores;
};

} // namespace lumalane
