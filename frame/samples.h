// What flows through a pipeline, and the pipe itself.
//
// A pipeline is a source, stages and a sink: planar{} | adjusted | to_rgb{} | rgb32{}. A step works
// on a group of pixels of one or two rows. The source's chroma samples go through chroma() of every
// stage and end as what the rows of the step share; then the luma samples of each row go through
// luma() of every stage, which may look at that, and into the sink's row().
#pragma once

#include "frame/lanes/lanes.h"

namespace lumalane::LUMALANE_LANES {

// Samples on their way to RGB: chroma of 2n pixels, luma even and odd pixels apart. A stage may
// leave them with a bias, which the next one subtracts together with a constant of its own.
template <int n, int bias = 0>
struct chroma_samples {
    words<n> u, v;
};

template <int n, int bias = 0, pairs order = pairs::in_order>
struct luma_samples {
    words<n> even, odd;
};

// Samples on their way to YUY2: the chroma U V U V ... of n pixels, beside their luma bytes<n>.
template <int n>
struct chroma_pairs {
    bytes<n> uv;
};

// The same in 16-bit lanes, beside luma words<n>.
template <int n>
struct wide_chroma_pairs {
    words<n> uv;
};

// For a source whose chroma is not read.
template <int n>
struct no_chroma {};

// A group of a packed YUY2 picture as it stands: luma in the even bytes, chroma in the odd ones.
template <int n>
struct packed_samples {
    bytes<n> all;
};

// Samples of two rows make those of a row between them.

template <int n, int bias>
LUMALANE_INLINE chroma_samples<n, bias> average(chroma_samples<n, bias> a,
                                                chroma_samples<n, bias> b) {
    return {average(a.u, b.u), average(a.v, b.v)};
}

template <int n, int bias>
LUMALANE_INLINE luma_samples<n, bias> average(luma_samples<n, bias> a, luma_samples<n, bias> b) {
    return {average(a.even, b.even), average(a.odd, b.odd)};
}

template <int n>
LUMALANE_INLINE chroma_pairs<n> average(chroma_pairs<n> a, chroma_pairs<n> b) {
    return {average(a.uv, b.uv)};
}

// Two parts of a pipeline in a row. `from` is where the source has the group from: pointers, or for
// some sources the samples themselves.
template <class First, class Second>
struct pipe {
    static constexpr bool is_part = true;

    First first;
    Second second;

    // What the rows of a step of so many pixels share.
    template <int pixels, class... From>
    LUMALANE_INLINE auto shared(From... from) const {
        return first.template load_chroma<Second::parts, pixels>(from...);
    }

    // The group's samples of a row, for sources that have them from nowhere else.
    template <int pixels>
    LUMALANE_INLINE auto fetch(const unsigned char *from) const {
        return first.template fetch<Second::parts, pixels>(from);
    }

    // Puts the group's pixels of a row at `to`.
    template <int pixels, class Put, class From, class Shared>
    LUMALANE_INLINE void row(unsigned char *to, const From &from, const Shared &shared) const {
        second.template row<Put>(to, first.template load_luma<Second::parts, pixels>(from, shared),
                                 shared);
    }

    // The same for the lower row of a pair, which some sinks treat differently.
    template <int pixels, class Put, class Shared>
    LUMALANE_INLINE void lower_row(unsigned char *to, const unsigned char *from,
                                   const Shared &shared) const {
        const auto luma = first.template load_luma<Second::parts, pixels>(from, shared);
        if constexpr (requires { second.template lower_row<Put>(to, luma, shared); })
            second.template lower_row<Put>(to, luma, shared);
        else
            second.template row<Put>(to, luma, shared);
    }

    // The sink's.
    static constexpr int bytes_per_pixel() { return Second::bytes_per_pixel; }
    static constexpr int parts() { return Second::parts; }
    static constexpr bool writes_whole_lines() { return Second::writes_whole_lines; }

    // For the pipe that this one is the first part of. The sink weaves in `parts` parts.
    template <int parts, int pixels>
    LUMALANE_INLINE auto fetch(const unsigned char *from) const {
        return first.template fetch<parts, pixels>(from);
    }

    template <int parts, int pixels, class... From>
    LUMALANE_INLINE auto load_chroma(From... from) const {
        return second.chroma(first.template load_chroma<parts, pixels>(from...));
    }

    template <int parts, int pixels, class From, class Shared>
    LUMALANE_INLINE auto load_luma(const From &from, const Shared &shared) const {
        return second.luma(first.template load_luma<parts, pixels>(from, shared), shared);
    }
};

template <class First, class Second>
requires(First::is_part &&Second::is_part) LUMALANE_INLINE pipe<First, Second>
operator|(First first, Second second) { return {first, second}; }

// `map` of the words of a blend, clamped to bytes.
template <int n, class Map>
LUMALANE_INLINE bytes<n> narrowed(sixteenths<n> a, Map map) {
    if constexpr (n == 8)
        return narrow_saturate(map(a.low));
    else
        return narrow_saturate(map(a.low), map(a.high));
}

// No stage at all, where adjust might stand.
struct as_they_are {
    static constexpr bool is_part = true;

    template <class Run>
    LUMALANE_INLINE void in_registers(const Run &run) const {
        run(*this);
    }

    // For planes by themselves.
    struct plane {
        template <int n>
        LUMALANE_INLINE bytes<n> operator()(bytes<n> samples) const {
            return samples;
        }

        // A blend is truncated.
        template <int n>
        LUMALANE_INLINE bytes<n> operator()(sixteenths<n> samples) const {
            return narrowed(samples, [](auto half) { return shift_right_logical<4>(half); });
        }
    };

    LUMALANE_INLINE plane y() const { return {}; }
    LUMALANE_INLINE plane u() const { return {}; }
    LUMALANE_INLINE plane v() const { return {}; }
};

template <class First>
LUMALANE_INLINE First operator|(First first, as_they_are) {
    return first;
}

} // namespace lumalane::LUMALANE_LANES
