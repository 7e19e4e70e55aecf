// A subpicture over the video: what the mixes share.
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

// Where the video of a pair of rows is. It is the average, rounded up, of a row and the one below
// it where the distance between the two is not 0.
struct video_rows {
    ptrdiff_t lower;        // from the luma of the upper row to that of the lower one
    ptrdiff_t below_lower;  // from there to the luma row below
    ptrdiff_t below_chroma; // from the chroma row of the pair to the one below
};

// ---- Samples of one plane ----------------------------------------------------------------------

template <int n>
LUMALANE_INLINE bytes<n> video_samples(const unsigned char *video, ptrdiff_t below) {
    const bytes<n> samples = load<n>(video);
    return below == 0 ? samples : average(samples, load<n>(video + below));
}

// The weights of n samples, from `per_sample` bytes of alpha each.

struct weight_of_pixel {
    static constexpr int per_sample = 1;

    template <int n>
    LUMALANE_INLINE static bytes<n> of(const unsigned char *alpha) {
        return load<n>(alpha);
    }
};

struct weight_of_second_pixel {
    static constexpr int per_sample = 2;

    template <int n>
    LUMALANE_INLINE static bytes<n> of(const unsigned char *alpha) {
        return deal_odd<1, n>(alpha);
    }
};

struct average_weight {
    static constexpr int per_sample = 2;

    template <int n>
    LUMALANE_INLINE static bytes<n> of(const unsigned char *alpha) {
        return deal_averages<1, n>(alpha);
    }
};

// ---- Two rows ----------------------------------------------------------------------------------

// A mix works in two passes: it blends and adjusts the samples of a strip of a row, plane by plane,
// and puts them through the pipeline that they would take in a loader. The strip stays in the
// first-level cache. As one loop the two take 1.3 to 1.5 times as long: it is too long for the
// processor to look into its next turn, and has more values at hand than there are registers.
//
// Samples come in the form of `Form` (planar for RGB, planar_pairs for YUY2), chroma has the
// weights of `Weight`, `Adjusted` is adjust or as_they_are. `through(source, stage)` is the
// pipeline.
template <class Form, class Weight, class Adjusted, class Through>
struct mixer {
    Adjusted adjusted;
    Through through;

    using pipeline = decltype(through(Form{}, as_they_are{}));
    static constexpr int parts = pipeline::parts();
    static constexpr int bytes_per_pixel = pipeline::bytes_per_pixel();

    // Little is left to do with blended pairs: it is done at once where there are the registers.
    // (With 8 that takes 8 times as long.)
    static constexpr bool pairs_at_once = Form::in_pairs && vector_registers == 16;

    // 16 pixels, x right of `at`, in the order that is promised: all that is read of the lower row
    // but its video chroma is read after the upper one is stored.
    LUMALANE_INLINE void step(const mix_position &at, ptrdiff_t x, const video_rows &video,
                              const to_lower_row &lower) const {
        const chroma<8> uv = video_chroma<8>(at, x / 2, video);
        const auto row = [&](unsigned char *dst, const unsigned char *y, ptrdiff_t below,
                             ptrdiff_t sub, ptrdiff_t sub_chroma) LUMALANE_INLINE_LAMBDA {
            strip s;
            blend_luma<16>(adjusted.y(), s.y, y, below, at.sub_y + sub, at.alpha + sub);
            s.keep(0, blend_chroma(adjusted.u(), adjusted.v(), uv, at.sub_u + sub_chroma,
                                   at.sub_v + sub_chroma, at.alpha + sub));
            put<cached>(dst, s, 16);
        };
        unsigned char *const dst = at.dst + x * bytes_per_pixel;
        const unsigned char *const y = at.y + x;
        row(dst, y, 0, x, x / 2);
        row(dst + lower.dst, y + video.lower, video.below_lower, x + lower.sub,
            x / 2 + lower.sub_chroma);
    }

    // `width` pixels where stores cannot change what is read. Where no pixel of either row shows
    // the subpicture nothing of it is read, and the rows share their chroma terms.
    template <class Put>
    void rows(const mix_position &at, ptrdiff_t width, const video_rows &video,
              const to_lower_row &lower) const {
        for (ptrdiff_t x = 0; x < width;) {
            const ptrdiff_t left = width - x < strip::pixels ? width - x : strip::pixels;
            mix_position here = at;
            here.move_along_row(x, bytes_per_pixel);
            if (const ptrdiff_t clear = clear_pixels(here.alpha, lower.sub, left); clear > 0) {
                take_video<Put>(here, clear, video, lower);
                x += clear;
            } else {
                const ptrdiff_t drawn = drawn_pixels(here.alpha, lower.sub, left);
                blend_rows<Put>(here, drawn, video, lower);
                x += drawn;
            }
        }
    }

private:
    template <int n>
    struct chroma {
        bytes<n> u, v;
    };

    struct strip {
        static constexpr ptrdiff_t pixels = 512;

        alignas(64) unsigned char y[pixels];
        alignas(64) unsigned char u[pixels / 2];
        alignas(64) unsigned char v[pixels / 2];

        template <int n>
        LUMALANE_INLINE void keep(ptrdiff_t x, chroma<n> uv) {
            store(u + x, uv.u);
            store(v + x, uv.v);
        }
    };

    template <int n>
    LUMALANE_INLINE static bool is_clear(const unsigned char *alpha, ptrdiff_t lower) {
        return all_zero(load<n>(alpha) | load<n>(alpha + lower));
    }

    // Of `count` pixels of two rows, how many come before the first that shows the subpicture: a
    // multiple of 16.
    LUMALANE_INLINE static ptrdiff_t clear_pixels(const unsigned char *alpha, ptrdiff_t lower,
                                                  ptrdiff_t count) {
        ptrdiff_t x = 0;
        while (x + widest <= count && is_clear<widest>(alpha + x, lower))
            x += widest;
        if (widest > 16 && count - x == 16 && is_clear<16>(alpha + x, lower))
            x += 16;
        return x;
    }

    // How many come before a clear stretch that is worth the change.
    LUMALANE_INLINE static ptrdiff_t drawn_pixels(const unsigned char *alpha, ptrdiff_t lower,
                                                  ptrdiff_t count) {
        constexpr ptrdiff_t stretch = 64;
        ptrdiff_t x = stretch;
        while (x + stretch <= count && clear_pixels(alpha + x, lower, stretch) < stretch)
            x += stretch;
        return x + stretch <= count ? x : count;
    }

    template <class Put>
    void blend_rows(const mix_position &at, ptrdiff_t count, const video_rows &video,
                    const to_lower_row &lower) const {
        strip upper_row, lower_row;
        along_plane(count, [&, y = adjusted.y()](auto n, ptrdiff_t x) LUMALANE_INLINE_LAMBDA {
            blend_luma<n.count>(y, upper_row.y + x, at.y + x, 0, at.sub_y + x, at.alpha + x);
            blend_luma<n.count>(y, lower_row.y + x, at.y + video.lower + x, video.below_lower,
                                at.sub_y + lower.sub + x, at.alpha + lower.sub + x);
        });
        along_plane(count / 2, [&, at, video, lower, u = adjusted.u(),
                                v = adjusted.v()](auto n, ptrdiff_t x) LUMALANE_INLINE_LAMBDA {
            const auto uv = video_chroma<n.count>(at, x, video);
            const auto upper_uv =
                blend_chroma(u, v, uv, at.sub_u + x, at.sub_v + x, at.alpha + 2 * x);
            const auto lower_uv =
                blend_chroma(u, v, uv, at.sub_u + lower.sub_chroma + x,
                             at.sub_v + lower.sub_chroma + x, at.alpha + lower.sub + 2 * x);
            if constexpr (pairs_at_once) {
                unsigned char *const dst = at.dst + 2 * x * bytes_per_pixel;
                put_chroma<Put>(dst, upper_row.y + 2 * x, upper_uv);
                put_chroma<Put>(dst + lower.dst, lower_row.y + 2 * x, lower_uv);
            } else {
                upper_row.keep(x, upper_uv);
                lower_row.keep(x, lower_uv);
            }
        });
        if constexpr (!pairs_at_once) {
            put<Put>(at.dst, upper_row, count);
            put<Put>(at.dst + lower.dst, lower_row, count);
        }
    }

    template <class Put>
    void take_video(const mix_position &at, ptrdiff_t count, const video_rows &video,
                    const to_lower_row &lower) const {
        adjusted.in_registers([&](auto stage) LUMALANE_INLINE_LAMBDA {
            if (video.below_chroma != 0)
                take_field<true, Put>(stage, at, count, video, lower);
            else if (video.below_lower != 0)
                take_field<false, Put>(stage, at, count, video, lower);
            else
                take_frame<Put>(stage, at, count, video, lower);
        });
    }

    template <class Put, class Stage>
    LUMALANE_INLINE void take_frame(const Stage &stage, const mix_position &at, ptrdiff_t count,
                                    const video_rows &video, const to_lower_row &lower) const {
        along_row(count, [at, video, lower, pipe = through(Form{}, stage)](
                             auto pixels, ptrdiff_t x) LUMALANE_INLINE_LAMBDA {
            row_pair_step<pixels.count, Put>(pipe, at.y + x, at.u + x / 2, at.v + x / 2,
                                             at.dst + x * bytes_per_pixel, video.lower, lower.dst);
        });
    }

    // The lower luma is an average, and the chroma if it is `between` rows.
    template <bool between, class Put, class Stage>
    LUMALANE_INLINE void take_field(const Stage &stage, const mix_position &at, ptrdiff_t count,
                                    const video_rows &video, const to_lower_row &lower) const {
        along_row(count, [at, video, lower, stage,
                          through = through](auto pixels, ptrdiff_t x) LUMALANE_INLINE_LAMBDA {
            constexpr int n = pixels.count;
            const auto chroma_at = [&](ptrdiff_t offset) LUMALANE_INLINE_LAMBDA {
                return Form::template load_chroma<parts, n>(at.u + offset, at.v + offset);
            };
            auto uv = chroma_at(x / 2);
            if constexpr (between)
                uv = average(uv, chroma_at(x / 2 + video.below_chroma));
            using row = at_hand<n, decltype(uv)>;
            const row upper{deal_pixels<parts, n>(at.y + x), uv};
            const row below{
                dealt<parts>(video_samples<n>(at.y + x + video.lower, video.below_lower)), uv};
            unsigned char *const dst = at.dst + x * bytes_per_pixel;
            const auto shared = through(upper, stage).template shared<n>();
            through(upper, stage).template row<n, Put>(dst, nullptr, shared);
            through(below, stage).template row<n, Put>(dst + lower.dst, nullptr, shared);
        });
    }

    template <int n>
    LUMALANE_INLINE static chroma<n> video_chroma(const mix_position &at, ptrdiff_t x,
                                                  const video_rows &video) {
        return {video_samples<n>(at.u + x, video.below_chroma),
                video_samples<n>(at.v + x, video.below_chroma)};
    }

    template <int n, class Plane>
    LUMALANE_INLINE static void blend_luma(const Plane &adjusted_y, unsigned char *to,
                                           const unsigned char *video, ptrdiff_t below,
                                           const unsigned char *sub, const unsigned char *alpha) {
        store(to, adjusted_y(blend(video_samples<n>(video, below), load<n>(sub), load<n>(alpha))));
    }

    template <class Plane, int n>
    LUMALANE_INLINE static chroma<n> blend_chroma(const Plane &adjusted_u, const Plane &adjusted_v,
                                                  chroma<n> video, const unsigned char *sub_u,
                                                  const unsigned char *sub_v,
                                                  const unsigned char *alpha) {
        const bytes<n> weight = Weight::template of<n>(alpha);
        return {adjusted_u(blend(video.u, load<n>(sub_u), weight)),
                adjusted_v(blend(video.v, load<n>(sub_v), weight))};
    }

    // The 2n pixels that n samples of chroma serve, through the pipeline.
    template <class Put, int n>
    LUMALANE_INLINE void put_chroma(unsigned char *dst, const unsigned char *y,
                                    chroma<n> uv) const {
        const auto group = [&](auto pixels, int first, auto pairs) LUMALANE_INLINE_LAMBDA {
            constexpr int count = pixels.count;
            const auto row = through(
                at_hand<count, chroma_pairs<count>>{deal_pixels<parts, count>(y + first), {pairs}},
                as_they_are{});
            row.template row<count, Put>(dst + first * bytes_per_pixel, nullptr,
                                         row.template shared<count>());
        };
        if constexpr (n == 8) {
            group(pixels_of<16>{}, 0, join(widen(uv.u), widen(uv.v)));
        } else {
            const auto pairs = interleave(dealt<2 * parts>(uv.u), dealt<2 * parts>(uv.v));
            group(pixels_of<n>{}, 0, pairs.part[0]);
            group(pixels_of<n>{}, n, pairs.part[1]);
        }
    }

    // The strip's pixels through the pipeline.
    template <class Put>
    LUMALANE_INLINE void put(unsigned char *dst, const strip &s, ptrdiff_t count) const {
        along_row(count, [=, pipe = through(Form{}, as_they_are{}), &s](auto pixels, ptrdiff_t x)
                             LUMALANE_INLINE_LAMBDA {
                                 pipe.template row<pixels.count, Put>(
                                     dst + x * bytes_per_pixel, s.y + x,
                                     pipe.template shared<pixels.count>(s.u + x / 2, s.v + x / 2));
                             });
    }
};

template <class Form, class Weight, class Adjusted, class Through>
LUMALANE_INLINE mixer<Form, Weight, Adjusted, Through> make_mixer(Adjusted adjusted,
                                                                  Through through) {
    return {adjusted, through};
}

// ---- Regular shapes ----------------------------------------------------------------------------

// What a mix reads and writes.
struct mix_extents {
    extent y, u, v, alpha, sub_y, sub_u, sub_v, dst;

    // `rows` of the surface, of row_bytes each.
    mix_extents(const tagMIX_INFO &mix, extent luma, long long chroma_rows, ptrdiff_t chroma_pitch,
                long long rows, long long row_bytes)
        : y(luma), u(rows_at(mix.video_u, chroma_rows, chroma_pitch, mix.width / 2)),
          v(rows_at(mix.video_v, chroma_rows, chroma_pitch, mix.width / 2)),
          alpha(rows_at(mix.alpha_plane, rows, mix.sub_pitch, mix.width)),
          sub_y(rows_at(mix.sub_y, rows, mix.sub_pitch, mix.width)),
          sub_u(rows_at(mix.sub_u, rows, mix.sub_pitch >> 1, mix.width / 2)),
          sub_v(rows_at(mix.sub_v, rows, mix.sub_pitch >> 1, mix.width / 2)),
          dst(rows_at(mix.dst, rows, mix.dst_pitch, row_bytes)) {}
};

// True where the wide forms of a mix cannot be told from the stepwise ones: widths on the step (no
// row drifts) and even pitches (halves are exact), rows of the surface that do not overlap, and
// nothing read back that was written.
LUMALANE_INLINE bool mix_is_regular(const tagMIX_INFO &mix, const mix_extents &e,
                                    long long row_bytes) {
    return mix.width > 0 && mix.width % 16 == 0 && (mix.video_pitch | mix.sub_pitch) % 2 == 0 &&
           rows_apart(mix.dst_pitch, row_bytes) && apart(e.dst, e.y) && apart(e.dst, e.u) &&
           apart(e.dst, e.v) && apart(e.dst, e.alpha) && apart(e.dst, e.sub_y) &&
           apart(e.dst, e.sub_u) && apart(e.dst, e.sub_v);
}

// Two rows, step by step where somebody could tell. Returns how far the steps came.
template <class Put, class Mixer>
LUMALANE_INLINE ptrdiff_t mix_two_rows(const Mixer &mixer, const mix_position &at, int width,
                                       const video_rows &video, const to_lower_row &lower) {
    if constexpr (Put::wide) {
        mixer.template rows<Put>(at, width, video, lower);
        return width;
    } else {
        return along_row_stepwise(
            width, [&](ptrdiff_t x) LUMALANE_INLINE_LAMBDA { mixer.step(at, x, video, lower); });
    }
}

// ---- Row pairs of a frame ----------------------------------------------------------------------

// What differs between the mixes that walk row pairs, in bytes.
struct mix_distances {
    ptrdiff_t lower_luma;  // from the upper row of a pair to the lower one: video luma
    ptrdiff_t lower_sub;   // alpha and subpicture luma
    ptrdiff_t next_chroma; // from pair to pair: video chroma
};

template <class Put, class Mixer>
LUMALANE_INLINE void mix_row_pairs(tagMIX_INFO &mix, const mix_distances &d, const Mixer &mixer) {
    constexpr int size = Mixer::bytes_per_pixel;
    const int width = mix.width;
    const video_rows video{d.lower_luma, 0, 0};
    const to_lower_row lower{d.lower_sub, mix.sub_pitch >> 1, mix.dst_pitch};
    const int luma_rest = difference(twice(mix.video_pitch), width);
    const ptrdiff_t chroma_rest = d.next_chroma - (width >> 1);
    const int sub_rest = difference(twice(mix.sub_pitch), width);
    const int sub_chroma_rest = difference(mix.sub_pitch, width >> 1);
    const int dst_rest = difference(twice(mix.dst_pitch), product(width, size));
    mix_position at(mix);
    int height = mix.height;
    do {
        at.move_along_row(mix_two_rows<Put>(mixer, at, width, video, lower), size);
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
    const long long row_bytes = static_cast<long long>(mix.width) * Mixer::bytes_per_pixel;
    const auto luma_rows = [&](const unsigned char *first) {
        return rows_at(first, pairs, 2LL * mix.video_pitch, mix.width);
    };
    const mix_extents extents(mix,
                              joined(luma_rows(mix.video_y), luma_rows(mix.video_y + d.lower_luma)),
                              pairs, d.next_chroma, 2 * pairs, row_bytes);
    with_put_if(
        mix_is_regular(mix, extents, row_bytes), mix.dst, mix.dst_pitch, 2 * pairs * row_bytes,
        [&](auto put) LUMALANE_INLINE_LAMBDA { mix_row_pairs<decltype(put)>(mix, d, mixer); });
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
    pair(at, video_rows{0, d.luma, 0});
    at.move(d.luma, 0, 2 * d.sub, 2 * d.sub_chroma, 2 * d.dst);
    pair(at, last ? video_rows{0, 0, 0} : video_rows{0, d.luma, d.chroma});
}

// Four rows: step by step of all four, or pair by pair where nobody can tell. Returns how far the
// steps came.
template <class Put, class Mixer>
LUMALANE_INLINE ptrdiff_t mix_four_rows(const Mixer &mixer, const mix_position &at,
                                        const field_distances &d, int width, bool last) {
    const to_lower_row lower{d.sub, d.sub_chroma, d.dst};
    if constexpr (Put::wide) {
        field_pairs(at, d, last, [&](const mix_position &pair_at, const video_rows &video) {
            mixer.template rows<Put>(pair_at, width, video, lower);
        });
        return width;
    } else {
        return along_row_stepwise(width, [&](ptrdiff_t x) LUMALANE_INLINE_LAMBDA {
            field_pairs(at, d, last, [&](const mix_position &pair_at, const video_rows &video) {
                mixer.step(pair_at, x, video, lower);
            });
        });
    }
}

// Groups of four rows: `group(last)` for each.
template <class Group>
LUMALANE_INLINE void field_groups(int height, const Group &group) {
    if (height >= 8)
        for (int rows = height - 4; rows > 0; rows -= 4)
            group(false);
    group(true);
}

LUMALANE_INLINE long long field_group_count(int height) {
    return height < 8 ? 1 : (height + 3LL) / 4;
}

// What is read and written of them.
inline mix_extents field_extents(const tagMIX_INFO &mix, long long row_bytes) {
    const long long groups = field_group_count(mix.height);
    return {mix,        rows_at(mix.video_y, 2 * groups, mix.video_pitch, mix.width),
            groups,     mix.video_pitch >> 1,
            4 * groups, row_bytes};
}

} // namespace lumalane::LUMALANE_LANES
