// A subpicture over the video: what the mixes onto RGB and YUY2 surfaces share.
#pragma once

#include "frame/adjust.h"
#include "frame/walks.h"

namespace lumalane::LUMALANE_LANES {

// Where a step of a mix is: in the upper row of a pair.
struct mix_position {
    const unsigned char *y, *u, *v; // the video
    const unsigned char *alpha, *sub_y, *sub_u, *sub_v;
    unsigned char *dst;

    explicit mix_position(const tagMIX_INFO &mix)
        : y(mix.video_y), u(mix.video_u), v(mix.video_v), alpha(mix.alpha_plane), sub_y(mix.sub_y),
          sub_u(mix.sub_u), sub_v(mix.sub_v), dst(mix.dst) {}

    // Distances in bytes: of video luma, video chroma, alpha and subpicture luma, subpicture chroma
    // and the destination.
    LUMALANE_INLINE void move(ptrdiff_t luma, ptrdiff_t chroma, ptrdiff_t sub, ptrdiff_t sub_chroma,
                              ptrdiff_t surface) {
        y += luma, u += chroma, v += chroma;
        alpha += sub, sub_y += sub, sub_u += sub_chroma, sub_v += sub_chroma;
        dst += surface;
    }

    LUMALANE_INLINE void move_along_row(ptrdiff_t pixels, int bytes_per_pixel) {
        move(pixels, pixels / 2, pixels, pixels / 2, pixels * bytes_per_pixel);
    }

    // The record is the running state of the functions that consume it.
    void consume(tagMIX_INFO &mix, int height) const {
        mix.video_u = const_cast<unsigned char *>(u);
        mix.video_v = const_cast<unsigned char *>(v);
        mix.alpha_plane = const_cast<unsigned char *>(alpha);
        mix.sub_y = const_cast<unsigned char *>(sub_y);
        mix.sub_u = const_cast<unsigned char *>(sub_u);
        mix.sub_v = const_cast<unsigned char *>(sub_v);
        mix.height = height;
    }
};

// From the upper row of a pair to the lower one.
struct to_lower_row {
    ptrdiff_t sub, sub_chroma, dst;
};

// ---- The video of a pair of rows ---------------------------------------------------------------

template <int n>
LUMALANE_INLINE chroma_samples<n> average(chroma_samples<n> a, chroma_samples<n> b) {
    return {average(a.u, b.u), average(a.v, b.v)};
}

template <int n>
LUMALANE_INLINE chroma_pairs<n> average(chroma_pairs<n> a, chroma_pairs<n> b) {
    return {average(a.uv, b.uv)};
}

// Two rows of a frame and their chroma row.
struct frame_rows {
    ptrdiff_t lower; // from one row to the other

    template <int parts, int pixels>
    LUMALANE_INLINE bytes<pixels> lower_luma(const unsigned char *y) const {
        return deal_pixels<parts, pixels>(y + lower);
    }

    template <class Form, int parts, int pixels>
    LUMALANE_INLINE auto chroma(const unsigned char *u, const unsigned char *v) const {
        return Form::template load_chroma<parts, pixels>(u, v);
    }
};

// A row of a field, and the row between it and the field's next one: their average, rounded up. A
// distance of 0 gives the row itself.
struct field_rows {
    ptrdiff_t luma_below, chroma_below;

    template <int parts, int pixels>
    LUMALANE_INLINE bytes<pixels> lower_luma(const unsigned char *y) const {
        return average(deal_pixels<parts, pixels>(y), deal_pixels<parts, pixels>(y + luma_below));
    }

    template <class Form, int parts, int pixels>
    LUMALANE_INLINE auto chroma(const unsigned char *u, const unsigned char *v) const {
        return average(
            Form::template load_chroma<parts, pixels>(u, v),
            Form::template load_chroma<parts, pixels>(u + chroma_below, v + chroma_below));
    }
};

// ---- The weight of a chroma sample, for U and for V --------------------------------------------

struct weight_of_second_pixel {
    template <int n>
    LUMALANE_INLINE static bytes<n> pairs(bytes<n> alpha) {
        return repeat_odd(alpha);
    }
};

struct average_weight {
    template <int n>
    LUMALANE_INLINE static bytes<n> pairs(bytes<n> alpha) {
        return average(alpha, swap_couples(alpha));
    }
};

// ---- One step ----------------------------------------------------------------------------------

// Chroma of the video under that of the subpicture.
template <class Weight, int n>
LUMALANE_INLINE chroma_pairs<n> blend_chroma(chroma_pairs<n> video, bytes<n> sub, bytes<n> alpha) {
    return {blend(video.uv, sub, Weight::pairs(alpha))};
}

template <class Weight, int n>
LUMALANE_INLINE chroma_samples<n> blend_chroma(chroma_samples<n> video, bytes<2 * n> sub,
                                               bytes<2 * n> alpha) {
    const bytes<2 *n> blended = blend(join(video.u, video.v), sub, Weight::pairs(alpha));
    return {even(blended), odd(blended)};
}

// How a mix is made: samples in the form of `Form` (planar for RGB, planar_pairs for YUY2), chroma
// with the weights of `Weight`, and `through(source)`, the pipeline behind a source.
template <class Form, class Weight, class Through>
struct mixer {
    Through through;

    static constexpr int parts = decltype(through(Form{}))::parts();
    static constexpr int bytes_per_pixel = decltype(through(Form{}))::bytes_per_pixel();

    // Two rows, x pixels right of `at`. `apart` where stores cannot change what is read: then the
    // rows may be looked at together, and where no pixel of either shows the subpicture they share
    // their chroma terms.
    template <int pixels, class Put, bool apart, class Rows>
    LUMALANE_INLINE void step(const mix_position &at, ptrdiff_t x, const Rows &rows,
                              to_lower_row lower) const {
        unsigned char *const dst = at.dst + x * bytes_per_pixel;
        auto uv = rows.template chroma<Form, parts, pixels>(at.u + x / 2, at.v + x / 2);
        using row = at_hand<pixels, decltype(uv)>;
        const row upper{deal_pixels<parts, pixels>(at.y + x), uv};
        if constexpr (apart) {
            if (all_zero(load<pixels>(at.alpha + x) | load<pixels>(at.alpha + x + lower.sub))) {
                const auto pipe = through(upper);
                const auto shared = pipe.template shared<pixels>();
                pipe.template row<pixels, Put>(dst, nullptr, shared);
                const auto lower_luma = rows.template lower_luma<parts, pixels>(at.y + x);
                through(row{lower_luma, uv})
                    .template row<pixels, Put>(dst + lower.dst, nullptr, shared);
                return;
            }
        }
        put<pixels, Put>(dst, upper, at.alpha + x, at.sub_y + x, at.sub_u + x / 2,
                         at.sub_v + x / 2);
        put<pixels, Put>(dst + lower.dst,
                         row{rows.template lower_luma<parts, pixels>(at.y + x), uv},
                         at.alpha + x + lower.sub, at.sub_y + x + lower.sub,
                         at.sub_u + x / 2 + lower.sub_chroma, at.sub_v + x / 2 + lower.sub_chroma);
    }

private:
    // A row of the video under a row of the subpicture, of which nothing is read where nothing
    // shows.
    template <int pixels, class Put, class Chroma>
    LUMALANE_INLINE void put(unsigned char *to, at_hand<pixels, Chroma> row,
                             const unsigned char *alpha_row, const unsigned char *sub_y,
                             const unsigned char *sub_u, const unsigned char *sub_v) const {
        const bytes<pixels> alpha = deal_pixels<parts, pixels>(alpha_row);
        if (!all_zero(alpha)) {
            row.y = blend(row.y, deal_pixels<parts, pixels>(sub_y), alpha);
            row.uv = blend_chroma<Weight>(row.uv, deal_pairs<parts, pixels>(sub_u, sub_v), alpha);
        }
        const auto pipe = through(row);
        pipe.template row<pixels, Put>(to, nullptr, pipe.template shared<pixels>());
    }
};

template <class Form, class Weight, class Through>
LUMALANE_INLINE mixer<Form, Weight, Through> make_mixer(Through through) {
    return {through};
}

// ---- Regular shapes ----------------------------------------------------------------------------

// What a mix reads and writes.
struct mix_extents {
    extent y, u, v, alpha, sub_y, sub_u, sub_v, dst;
};

// True where the wide forms of a mix cannot be told from the stepwise ones: widths on the step (no
// row drifts) and even pitches (halves are exact), rows of the surface that do not overlap, and
// nothing read back that was written.
LUMALANE_INLINE bool mix_is_regular(const tagMIX_INFO &mix, const mix_extents &e, int row_bytes) {
    return mix.width > 0 && mix.width % 16 == 0 && (mix.video_pitch | mix.sub_pitch) % 2 == 0 &&
           rows_apart(mix.dst_pitch, row_bytes) && apart(e.dst, e.y) && apart(e.dst, e.u) &&
           apart(e.dst, e.v) && apart(e.dst, e.alpha) && apart(e.dst, e.sub_y) &&
           apart(e.dst, e.sub_u) && apart(e.dst, e.sub_v);
}

// ---- Row pairs of a frame ----------------------------------------------------------------------

// What differs between the mixes that walk row pairs, in bytes.
struct mix_distances {
    ptrdiff_t lower_luma;  // from the upper row of a pair to the lower one: video luma
    ptrdiff_t lower_sub;   // alpha and subpicture luma
    ptrdiff_t next_chroma; // from pair to pair: video chroma
};

template <bool wide, class Put, class Mixer>
LUMALANE_INLINE void mix_row_pairs(tagMIX_INFO &mix, const mix_distances &d, const Mixer &mixer) {
    constexpr int size = Mixer::bytes_per_pixel;
    const int width = mix.width;
    const frame_rows rows{d.lower_luma};
    const to_lower_row lower{d.lower_sub, mix.sub_pitch >> 1, mix.dst_pitch};
    const int luma_rest = difference(twice(mix.video_pitch), width);
    const ptrdiff_t chroma_rest = d.next_chroma - (width >> 1);
    const int sub_rest = difference(twice(mix.sub_pitch), width);
    const int sub_chroma_rest = difference(mix.sub_pitch, width >> 1);
    const int dst_rest = difference(twice(mix.dst_pitch), product(width, size));
    mix_position at(mix);
    int height = mix.height;
    do {
        at.move_along_row(along_row<wide>(width,
                                          [&](auto pixels, ptrdiff_t x) LUMALANE_INLINE_LAMBDA {
                                              mixer.template step<pixels.count, Put, wide>(
                                                  at, x, rows, lower);
                                          }),
                          size);
        at.move(luma_rest, chroma_rest, sub_rest, sub_chroma_rest, dst_rest);
        height = difference(height, 2);
    } while (height > 0);
    at.consume(mix, height);
}

// A mix of pairs of rows. It uses the record as its running state: height counts down by 2 per
// pair, and all pointers but video_y and dst end one pair past the last.
template <class Mixer>
LUMALANE_INLINE void mix_row_pairs(tagMIX_INFO &mix, const mix_distances &d, const Mixer &mixer) {
    const long long pairs = mix.height > 0 ? (static_cast<long long>(mix.height) + 1) / 2 : 1;
    const int width = mix.width, row_bytes = product(width, Mixer::bytes_per_pixel);
    const auto sub_rows = [&](const unsigned char *first) {
        return rows_at(first, 2 * pairs, mix.sub_pitch, width);
    };
    const auto sub_chroma_rows = [&](const unsigned char *first) {
        return rows_at(first, 2 * pairs, mix.sub_pitch >> 1, width / 2);
    };
    const auto chroma_rows = [&](const unsigned char *first) {
        return rows_at(first, pairs, d.next_chroma, width / 2);
    };
    const auto luma_rows = [&](const unsigned char *first) {
        return rows_at(first, pairs, 2LL * mix.video_pitch, width);
    };
    const mix_extents e{joined(luma_rows(mix.video_y), luma_rows(mix.video_y + d.lower_luma)),
                        chroma_rows(mix.video_u),
                        chroma_rows(mix.video_v),
                        sub_rows(mix.alpha_plane),
                        sub_rows(mix.sub_y),
                        sub_chroma_rows(mix.sub_u),
                        sub_chroma_rows(mix.sub_v),
                        rows_at(mix.dst, 2 * pairs, mix.dst_pitch, row_bytes)};
    if (!mix_is_regular(mix, e, row_bytes))
        return mix_row_pairs<false, cached>(mix, d, mixer);
    if (!outgrows_cache(mix.dst, mix.dst_pitch, 2 * pairs * row_bytes))
        return mix_row_pairs<true, cached>(mix, d, mixer);
    mix_row_pairs<true, streamed>(mix, d, mixer);
    stream_fence();
}

// ---- Four rows of a field that is doubled to a frame -------------------------------------------

// From row to row, in bytes.
struct field_distances {
    ptrdiff_t luma, chroma, sub, sub_chroma, dst;

    explicit field_distances(const tagMIX_INFO &mix)
        : luma(mix.video_pitch), chroma(mix.video_pitch >> 1), sub(mix.sub_pitch),
          sub_chroma(mix.sub_pitch >> 1), dst(mix.dst_pitch) {}
};

// A field row, its average with the next one, the next row, its average with the one after it; the
// lower two with the average of their chroma row and the next one. The last four rows of a picture
// read nothing below the field: the last row is the one above it again, and their chroma is that of
// one row. Calls `pair(at, rows)` for each pair of rows.
template <class Pair>
LUMALANE_INLINE void field_pairs(mix_position at, const field_distances &d, bool last,
                                 const Pair &pair) {
    pair(at, field_rows{d.luma, 0});
    at.move(d.luma, 0, 2 * d.sub, 2 * d.sub_chroma, 2 * d.dst);
    pair(at, last ? field_rows{0, 0} : field_rows{d.luma, d.chroma});
}

// Four rows: step by step of all four, or pair by pair where nobody can tell. Returns how far the
// steps came.
template <bool wide, class Put, class Mixer>
LUMALANE_INLINE ptrdiff_t mix_four_rows(const Mixer &mixer, const mix_position &at,
                                        const field_distances &d, int width, bool last) {
    const to_lower_row lower{d.sub, d.sub_chroma, d.dst};
    if constexpr (wide) {
        field_pairs(
            at, d, last,
            [&](const mix_position &pair_at, const field_rows &rows) LUMALANE_INLINE_LAMBDA {
                along_row<true>(width, [&](auto pixels, ptrdiff_t x) LUMALANE_INLINE_LAMBDA {
                    mixer.template step<pixels.count, Put, true>(pair_at, x, rows, lower);
                });
            });
        return width;
    } else {
        return along_row<false>(width, [&](auto pixels, ptrdiff_t x) LUMALANE_INLINE_LAMBDA {
            field_pairs(
                at, d, last,
                [&](const mix_position &pair_at, const field_rows &rows) LUMALANE_INLINE_LAMBDA {
                    mixer.template step<pixels.count, Put, false>(pair_at, x, rows, lower);
                });
        });
    }
}

// Of `groups` groups of four rows.
LUMALANE_INLINE mix_extents field_extents(const tagMIX_INFO &mix, long long groups, int row_bytes) {
    const auto sub_rows = [&](const unsigned char *first) {
        return rows_at(first, 4 * groups, mix.sub_pitch, mix.width);
    };
    const auto sub_chroma_rows = [&](const unsigned char *first) {
        return rows_at(first, 4 * groups, mix.sub_pitch >> 1, mix.width / 2);
    };
    const auto chroma_rows = [&](const unsigned char *first) {
        return rows_at(first, groups, mix.video_pitch >> 1, mix.width / 2);
    };
    return {rows_at(mix.video_y, 2 * groups, mix.video_pitch, mix.width),
            chroma_rows(mix.video_u),
            chroma_rows(mix.video_v),
            sub_rows(mix.alpha_plane),
            sub_rows(mix.sub_y),
            sub_chroma_rows(mix.sub_u),
            sub_chroma_rows(mix.sub_v),
            rows_at(mix.dst, 4 * groups, mix.dst_pitch, row_bytes)};
}

} // namespace lumalane::LUMALANE_LANES
