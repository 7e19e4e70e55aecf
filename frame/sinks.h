// Sinks: what packs the pixels of a group and puts them into memory.
//
// `Put` decides how: cached or streamed.
#pragma once

#include "frame/rgb.h"

namespace lumalane::LUMALANE_LANES {

struct cached {
    static constexpr bool wide = true;
    static constexpr bool fills_lines_in_turn = false; // two rows at once are as good as one

    template <int n>
    LUMALANE_INLINE static void put(unsigned char *to, bytes<n> a) {
        store(to, a);
    }
};

// Around the cache; `to` is aligned to n bytes.
struct streamed {
    static constexpr bool wide = true;
    static constexpr bool fills_lines_in_turn = true;

    template <int n>
    LUMALANE_INLINE static void put(unsigned char *to, bytes<n> a) {
        if constexpr (n < 16)
            store(to, a); // half a register has no way around
        else
            stream(to, a);
    }
};

// For walks that serve both: in the promised steps and their order.
struct stepwise : cached {
    static constexpr bool wide = false;
};

// One after the other; not a loop, which compilers may leave rolled, with the parts in memory.
template <class Put, int first = 0, int count, int n>
LUMALANE_INLINE void put_parts(unsigned char *to, const woven<count, n> &parts) {
    if constexpr (first < count) {
        Put::put(to + first * n, parts.part[first]);
        put_parts<Put, first + 1>(to, parts);
    }
}

// What sinks have in common: the bytes that they write per pixel of the source, and the parts in
// which they weave a group.
template <int size, int parts_>
struct sink {
    static constexpr bool is_part = true;
    static constexpr int bytes_per_pixel = size;
    static constexpr int parts = parts_;
    static constexpr bool writes_whole_lines = true; // of the cache, row by row
};

// ---- RGB ---------------------------------------------------------------------------------------

struct rgb32 : sink<4, 4> {
    template <class Put, int n, pairs order>
    LUMALANE_INLINE void row(unsigned char *to, rgb_pixels<n, order> p,
                             const chroma_terms<n> &) const {
        put_parts<Put>(to, weave_padded<order>(p.blue, p.green, p.red));
    }
};

struct rgb24 : sink<3, 3> {
    template <class Put, int n, pairs order>
    LUMALANE_INLINE void row(unsigned char *to, rgb_pixels<n, order> p,
                             const chroma_terms<n> &) const {
        put_parts<Put>(to, weave<order>(p.blue, p.green, p.red));
    }
};

// Upper bits of red, green and blue from bit 15 down, then 16 - red - green - blue zero bits.
template <int red, int green, int blue>
struct rgb16 : sink<2, 2> {
    template <class Put, int n, pairs order>
    LUMALANE_INLINE void row(unsigned char *to, rgb_pixels<n, order> p,
                             const chroma_terms<n> &) const {
        // Green lies across the two bytes of the pixel.
        const auto upper_bits = [](bytes<2 * n> channel, int bits) {
            return channel & fill_bytes<2 * n>(0xff00 >> bits);
        };
        const bytes<2 *n> g = upper_bits(p.green, green);
        const bytes<2 *n> high = upper_bits(p.red, red) | shift_right_logical<red>(g);
        const bytes<2 *n> low =
            shift_left<8 - red>(g) | shift_right_logical<red + green - 8>(upper_bits(p.blue, blue));
        put_parts<Put>(to, weave<order>(low, high));
    }
};

// Runs `run` with the RGB16 sink of tag_ajust_contrast_info::rgb16_layout; not at all for a value
// that is none.
template <class Run>
LUMALANE_INLINE void with_rgb16_layout(unsigned layout, Run run) {
    switch (layout) {
    case 0:
        return run(rgb16<5, 6, 5>{});
    case 1:
        return run(rgb16<5, 5, 5>{});
    case 2:
        return run(rgb16<6, 6, 4>{});
    case 3:
        return run(rgb16<6, 5, 5>{});
    }
}

// ---- YUY2 --------------------------------------------------------------------------------------

struct yuy2 : sink<2, 2> {
    template <class Put, int n>
    LUMALANE_INLINE void row(unsigned char *to, bytes<n> y, const chroma_pairs<n> &chroma) const {
        put_parts<Put>(to, interleave(y, chroma.uv));
    }
};

// From samples that are words or already packed: a group is one part. `size` is that of sink.
template <int size>
struct packed_yuy2 : sink<size, 1> {
    template <class Put, int n>
    LUMALANE_INLINE void row(unsigned char *to, words<n> y,
                             const wide_chroma_pairs<n> &chroma) const {
        Put::put(to, narrow_interleaved(y, chroma.uv));
    }

    template <class Put, int n>
    LUMALANE_INLINE void row(unsigned char *to, packed_samples<n> luma,
                             const packed_samples<n> &chroma) const {
        const bytes<n> luma_bytes = join(fill_words<n / 2>(0xff), fill_words<n / 2>(0));
        const bytes<n> chroma_bytes = join(fill_words<n / 2>(0), fill_words<n / 2>(0xff));
        Put::put(to, (luma.all & luma_bytes) | (chroma.all & chroma_bytes));
    }
};

} // namespace lumalane::LUMALANE_LANES
