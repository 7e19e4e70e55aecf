// Sources: where the samples of a group come from.
#pragma once

#include "frame/samples.h"

namespace lumalane::LUMALANE_LANES {

// Planar 4:2:0, for RGB.
struct planar {
    static constexpr bool is_part = true;
    static constexpr bool in_pairs = false;

    template <int parts, int pixels>
    LUMALANE_INLINE static chroma_samples<pixels / 2> load_chroma(const unsigned char *u,
                                                                  const unsigned char *v) {
        return {deal_chroma<parts, pixels / 2>(u), deal_chroma<parts, pixels / 2>(v)};
    }

    template <int parts, int pixels, class Shared>
    LUMALANE_INLINE static bytes<pixels> load_luma(const unsigned char *y, const Shared &) {
        return deal_pixels<parts, pixels>(y);
    }
};

// Planar 4:2:0, for YUY2.
struct planar_pairs : planar {
    static constexpr bool in_pairs = true;

    template <int parts, int pixels>
    LUMALANE_INLINE static chroma_pairs<pixels> load_chroma(const unsigned char *u,
                                                            const unsigned char *v) {
        return {deal_pairs<parts, pixels>(u, v)};
    }
};

// Samples that are at hand already, dealt.
template <int pixels, class Chroma>
struct at_hand {
    static constexpr bool is_part = true;

    bytes<pixels> y;
    Chroma uv;

    template <int, int>
    LUMALANE_INLINE Chroma load_chroma() const {
        return uv;
    }

    template <int, int, class Shared>
    LUMALANE_INLINE bytes<pixels> load_luma(const unsigned char *, const Shared &) const {
        return y;
    }
};

// The luma plane alone: the chroma pointers may point nowhere.
struct luma_alone : planar {
    template <int parts, int pixels>
    LUMALANE_INLINE no_chroma<pixels> load_chroma(const unsigned char *,
                                                  const unsigned char *) const {
        return {};
    }
};

// Samples that are fetched, or made, before the pipeline has them.
struct fetched {
    static constexpr bool is_part = true;

    template <int, int, class Samples>
    LUMALANE_INLINE Samples load_chroma(Samples samples) const {
        return samples;
    }

    template <int, int, class Samples, class Shared>
    LUMALANE_INLINE Samples load_luma(Samples samples, const Shared &) const {
        return samples;
    }
};

// Packed YUY2, for RGB.
struct packed : fetched {
    template <int parts, int pixels>
    LUMALANE_INLINE packed_pixels<pixels> fetch(const unsigned char *from) const {
        return deal_packed<parts, pixels>(from);
    }
};

// Packed YUY2, for YUY2.
struct packed_as_it_is : fetched {
    template <int, int pixels>
    LUMALANE_INLINE packed_samples<2 * pixels> fetch(const unsigned char *from) const {
        return {load<2 * pixels>(from)};
    }
};

} // namespace lumalane::LUMALANE_LANES
