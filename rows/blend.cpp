// Rows of the video under rows of a subpicture.
#include "rows/adjust.h"
#include "rows/kernels.h"

namespace lumalane::LUMALANE_TARGET_NAME {

namespace {

template <bool averaged, int n>
LUMALANE_INLINE bytes<n> load_row(const unsigned char *video, ptrdiff_t below) {
    if constexpr (averaged)
        return average(load<n>(video), load<n>(video + below));
    else
        return load<n>(video);
}

// The weights of n chroma samples, from the alpha of 2n pixels. `of_fields`: mixes of fields have them,
// where the video's chroma of every second pair is averaged. (Loops of other mixes do not ask for that,
// which would make them take 1.02 times as long at 320x240.)

struct weight_of_second {
    static constexpr bool of_fields = false;

    template <int n>
    LUMALANE_INLINE static bytes<n> load(const unsigned char *alpha) {
        return load_odd<n>(alpha);
    }
};

struct average_weight {
    static constexpr bool of_fields = true;

    template <int n>
    LUMALANE_INLINE static bytes<n> load(const unsigned char *alpha) {
        return load_averages<n>(alpha);
    }
};

// Along n samples of chroma. (With 8 registers there are no groups between the widest vectors and 8: a
// third of the code.)
template <class Step>
LUMALANE_INLINE void along_chroma(ptrdiff_t n, const Step &step) {
    if constexpr (vector_registers >= 16) {
        along_row<8>(n, step);
    } else {
        ptrdiff_t x = 0;
        for (; x + widest <= n; x += widest)
            step(group_of<widest>{}, x);
        along_row<8, 8>(n, step, x);
    }
}

// Gains that have no loops of their own: a blend is adjusted where it was stored.

void adjust_in_place(unsigned char *samples, ptrdiff_t next, ptrdiff_t count, ptrdiff_t n,
                     const plane_adjustment *by) {
    plane_rows rows{samples, samples};
    rows.by = by;
    rows.count = count, rows.src_next = next, rows.dst_next = next;
    emit_plane(rows, n);
}

// ---- Alpha of pairs of rows --------------------------------------------------------------------

constexpr ptrdiff_t counted_group = 64;
static_assert(counted_group % widest == 0);

template <int n>
LUMALANE_INLINE bytes<n> either_row(const unsigned char *alpha, ptrdiff_t below) {
    return load<n>(alpha) | load<n>(alpha + below);
}

// With how many pixels n begin that are clear in both rows: whole groups, or all.
LUMALANE_INLINE ptrdiff_t count_clear(const unsigned char *alpha, ptrdiff_t below, ptrdiff_t n) {
    ptrdiff_t x = 0;
    for (; x + counted_group <= n; x += counted_group) {
        fetch_source<counted_group>(alpha + x);
        fetch_source<counted_group>(alpha + x + below);
        bytes<widest> any = either_row<widest>(alpha + x, below);
        for (int i = widest; i < counted_group; i += widest)
            any = any | either_row<widest>(alpha + x + i, below);
        if (!all_zero(any))
            return x;
    }
    bytes<16> any = fill_bytes<16>(0);
    for (ptrdiff_t i = x; i < n; i += 16)
        any = any | either_row<16>(alpha + i, below);
    return all_zero(any) ? n : x;
}

// With how many they begin before the first group that is clear, the first one aside.
LUMALANE_INLINE ptrdiff_t count_drawn(const unsigned char *alpha, ptrdiff_t below, ptrdiff_t n) {
    for (ptrdiff_t x = counted_group; x < n; x += counted_group) {
        ptrdiff_t i = 0, end = n - x < counted_group ? n - x : counted_group;
        fetch_source<counted_group>(alpha + x);
        fetch_source<counted_group>(alpha + x + below);
        while (i < end && all_zero(either_row<16>(alpha + x + i, below)))
            i += 16;
        if (i == end)
            return x;
    }
    return n;
}

// ---- Pairs of rows -----------------------------------------------------------------------------

// What is blended at once of a row, and how far alpha is read ahead of the video alone. (Strips of 512
// pixels make full veils in rows of 1280 pixels take 1.02 to 1.05 times as long; a look of 640 makes
// subtitles take 1.02 to 1.1 times as long.)
constexpr ptrdiff_t strip = 1280, longest_look = 2048;

// Around a cache that is not a server's: loads wait less for the stores of the pixels before (rows of 3840
// pixels are 1.05 to 1.2 times as fast).
constexpr ptrdiff_t longest_look_around = 512;

LUMALANE_INLINE ptrdiff_t longest_look_of(store_policy stores) {
    return streams && is_non_temporal(stores) && fetched_ahead(stores) == 0 ? longest_look_around
                                                                            : longest_look;
}

// Pixels of pairs, blended: n from x on, of `count` pairs from `first` on. From one to the next is
// `pitch`, and half of it for chroma.
struct pair_strip {
    static constexpr ptrdiff_t bytes = strip; // of upper rows, and then as many of lower rows

    ptrdiff_t first, count, x, n, pitch;
    alignas(stack_alignment) unsigned char y[2 * bytes];
    alignas(stack_alignment) unsigned char u[bytes];
    alignas(stack_alignment) unsigned char v[bytes];
};

// Of rows of n pixels. (Those of chroma begin in the middle of lines of the cache, too.)
LUMALANE_INLINE ptrdiff_t pitch_of_strip(ptrdiff_t n) { return rounded_up(n, cache_line); }

// Both rows of a pair. (Where there are 8 registers row by row, the upper one averaged with itself: in
// one loop they take 1.6 times as long there.)
template <bool averaged, class Map>
LUMALANE_INLINE void blend_rows(unsigned char *dst, const unsigned char *video,
                                ptrdiff_t luma_below, ptrdiff_t to_average,
                                const unsigned char *sub, const unsigned char *alpha,
                                ptrdiff_t sub_below, ptrdiff_t n, const Map &map) {
    if constexpr (vector_registers < 16) {
        ptrdiff_t with = 0;
        for (int left = 2;;) {
            along_row<16>(n, [=](auto group, ptrdiff_t x) LUMALANE_INLINE_LAMBDA {
                constexpr int size = group.size;
                fetch_source<size>(video + x);
                fetch_source<size>(sub + x);
                const bytes<size> samples = load_row<averaged, size>(video + x, with);
                store(dst + x, map(blend(samples, load<size>(sub + x), load<size>(alpha + x))));
            });
            if (--left == 0)
                break;
            dst += pair_strip::bytes, video += luma_below, sub += sub_below, alpha += sub_below;
            with = to_average;
        }
    } else {
        const unsigned char *const lower_video = video + luma_below;
        const unsigned char *const lower_sub = sub + sub_below, *const lower_alpha =
                                                                    alpha + sub_below;
        along_row<16>(n, [=](auto group, ptrdiff_t x) LUMALANE_INLINE_LAMBDA {
            constexpr int size = group.size;
            fetch_source<size>(video + x);
            fetch_source<size>(lower_video + x);
            fetch_source<size>(sub + x);
            fetch_source<size>(lower_sub + x);
            const bytes<size> upper = load<size>(video + x);
            bytes<size> lower = load<size>(lower_video + x);
            if constexpr (averaged)
                lower = average(lower, upper);
            store(dst + x, map(blend(upper, load<size>(sub + x), load<size>(alpha + x))));
            store(dst + pair_strip::bytes + x,
                  map(blend(lower, load<size>(lower_sub + x), load<size>(lower_alpha + x))));
        });
    }
}

template <bool averaged, class Map>
LUMALANE_INLINE void blend_luma(pair_strip &to, const mixed_pairs &pairs, const Map &map) {
    const ptrdiff_t n = to.n, pitch = to.pitch, sub_below = pairs.below.sub;
    const ptrdiff_t luma_below = pairs.below.luma;
    const ptrdiff_t to_average = pairs.lower == lower_row::average ? -luma_below : 0;
    const ptrdiff_t luma_next = pairs.next.luma, sub_next = pairs.next.sub;
    const ptrdiff_t from = to.first * luma_next + to.x, sub_from = to.first * sub_next + to.x;
    unsigned char *dst = to.y;
    const unsigned char *video = pairs.upper.y + from;
    const unsigned char *sub = pairs.upper.sub_y + sub_from, *alpha = pairs.upper.alpha + sub_from;
    for (ptrdiff_t left = to.count;;) {
        blend_rows<averaged>(dst, video, luma_below, to_average, sub, alpha, sub_below, n, map);
        if (--left == 0)
            break;
        dst += pitch, video += luma_next, sub += sub_next, alpha += sub_next;
    }
}

// What adjusts the planes of a blend: made once for all pairs. (Small code adjusts otherwise.)
struct pair_maps {
    adjusted_plane<true> y, u, v;

    explicit pair_maps(const adjustment &by) : y(&by.y), u(&by.u), v(&by.v) {}
};

template <class Map>
LUMALANE_INLINE void blend_luma_by(pair_strip &to, const mixed_pairs &pairs, const Map &map) {
    if (pairs.lower == lower_row::average)
        blend_luma<true>(to, pairs, map);
    else
        blend_luma<false>(to, pairs, map);
}

[[gnu::noinline]] void blend_luma(pair_strip &to, const mixed_pairs &pairs, const pair_maps *by) {
    if (!small_code && by)
        blend_luma_by(to, pairs, by->y);
    else
        blend_luma_by(to, pairs, unadjusted_plane{});
}

// Where the chroma of a pair is.
struct pair_chroma {
    const unsigned char *video_u, *video_v, *sub_u, *sub_v, *alpha;
};

// Calls `row.operator()<n>(lower, x, u, v)` with the blended chroma of n samples from x on, for each
// row of a pair. What is loaded of the video serves both. (Averaged by itself first, into the strip, it
// makes full veils over fields take 1.02 to 1.05 times as long.)
template <class Weight, bool averages, class Map, class Row>
LUMALANE_INLINE void blend_chroma(const mixed_pairs &pairs, const pair_chroma at, ptrdiff_t n,
                                  const Map &map_u, const Map &map_v, const Row &row) {
    const ptrdiff_t sub_next = pairs.below.sub_chroma;
    const ptrdiff_t alpha_next = pairs.below.sub, below = pairs.below.chroma;
    along_chroma(n / 2, [=](auto group, ptrdiff_t x) LUMALANE_INLINE_LAMBDA {
        constexpr int size = group.size;
        bytes<size> u = load<size>(at.video_u + x), v = load<size>(at.video_v + x);
        if (averages && below != 0) {
            u = average(u, load<size>(at.video_u + x + below));
            v = average(v, load<size>(at.video_v + x + below));
        }
        const auto blended = [&](bool lower, ptrdiff_t sub,
                                 const unsigned char *weights) LUMALANE_INLINE_LAMBDA {
            const bytes<size> weight = Weight::template load<size>(weights + 2 * x);
            const bytes<size> of_u = load<size>(at.sub_u + sub);
            const bytes<size> of_v = load<size>(at.sub_v + sub);
            row.template operator()<size>(lower, x, map_u(blend(u, of_u, weight)),
                                          map_v(blend(v, of_v, weight)));
        };
        blended(false, x, at.alpha);
        blended(true, x + sub_next, at.alpha + alpha_next);
    });
}

// ---- Where blended chroma goes to --------------------------------------------------------------

// Into the strip.
template <class ChromaWeight>
struct strip_chroma {
    using weight = ChromaWeight;
    static constexpr bool emits = false, averages = ChromaWeight::of_fields;

    unsigned char *u, *v;

    strip_chroma(pair_strip &to, const mixed_pairs &, ptrdiff_t pair)
        : u(to.u + pair * (to.pitch / 2)), v(to.v + pair * (to.pitch / 2)) {}

    template <int n>
    LUMALANE_INLINE void operator()(bool lower, ptrdiff_t x, bytes<n> of_u, bytes<n> of_v) const {
        const ptrdiff_t to = lower ? x + pair_strip::bytes / 2 : x;
        store(u + to, of_u);
        store(v + to, of_v);
    }
};

// `pixels` makes n pixels from luma and from pairs of chroma, permuted for `parts` vectors.

struct whole_yuy2 {
    [[maybe_unused]] static constexpr int parts = 2, bytes_per_pixel = 2;
    [[maybe_unused]] static constexpr bool of_fields = true;

    template <int n>
    LUMALANE_INLINE static auto pixels(const unsigned char *y, bytes<n> pairs) {
        return interleave(load_permuted<2, n>(y), pairs);
    }
};

// The second of every two pixels and of every two chroma samples.
struct odd_yuy2 {
    [[maybe_unused]] static constexpr int parts = 1, bytes_per_pixel = 1;
    [[maybe_unused]] static constexpr bool of_fields = false;

    template <int n>
    LUMALANE_INLINE static vectors<1, n> pixels(const unsigned char *y, bytes<n> pairs) {
        return {{narrow_interleaved(odd(load<n>(y)), second_pairs(pairs))}};
    }
};

// To the surface at once, with the strip's luma, which makes full veils 1.08 to 1.17 times as fast.
// (With 8 registers of 16 bytes it takes 8 times as long.)
constexpr bool emits_at_once = vector_registers >= 16 || widest > 16;
// Small code is worth more than what that gains where stores are the bound.
constexpr bool streams_at_once = streams && vector_registers >= 16;

template <class Surface>
struct surface_chroma {
    using weight = weight_of_second;
    static constexpr bool emits = true, averages = Surface::of_fields;

    unsigned char *dst;
    const unsigned char *y;
    ptrdiff_t dst_next;
    store_policy stores;

    surface_chroma(const pair_strip &from, const mixed_pairs &pairs, ptrdiff_t pair)
        : dst(pairs.upper.dst + (from.first + pair) * pairs.next.dst +
              from.x * Surface::bytes_per_pixel),
          y(from.y + pair * from.pitch), dst_next(pairs.below.dst), stores(pairs.stores) {}

    // The 2n pixels of n samples of chroma.
    template <int n>
    LUMALANE_INLINE void operator()(bool lower, ptrdiff_t x, bytes<n> u, bytes<n> v) const {
        const ptrdiff_t to = 2 * x * Surface::bytes_per_pixel;
        unsigned char *const pixels = dst + (lower ? to + dst_next : to);
        const unsigned char *const luma = y + (lower ? 2 * x + pair_strip::bytes : 2 * x);
        if constexpr (n == 8) {
            store(pixels, Surface::pixels(luma, join(widen(u), widen(v))));
        } else {
            constexpr int parts = 2 * Surface::parts;
            const vectors<2, n> pairs = interleave(permuted<parts>(u), permuted<parts>(v));
            store(pixels, Surface::pixels(luma, pairs.part[0]));
            store(pixels + n * Surface::bytes_per_pixel, Surface::pixels(luma + n, pairs.part[1]));
        }
    }

private:
    // As store_all() does, but fetches no lines.
    template <class Pixels>
    LUMALANE_INLINE void store(unsigned char *to, const Pixels &pixels) const {
        if (streams_at_once && is_non_temporal(stores))
            store_all<non_temporal>(to, pixels);
        else
            store_all<cached>(to, pixels);
    }
};

// Blends the chroma of a strip. Returns whether its pixels are on the surface.
using blending = bool(pair_strip &, const mixed_pairs &, const pair_maps *by);

template <class Chroma, class Map>
LUMALANE_INLINE void blend_chroma_by(pair_strip &to, const mixed_pairs &pairs, const Map &map_u,
                                     const Map &map_v) {
    using weight = typename Chroma::weight;
    const ptrdiff_t n = to.n, chroma_next = pairs.next.chroma, sub_next = pairs.next.sub_chroma;
    const ptrdiff_t luma_next = pairs.next.sub;
    const ptrdiff_t from = to.first * chroma_next + to.x / 2;
    const ptrdiff_t sub_from = to.first * sub_next + to.x / 2;
    pair_chroma at{pairs.upper.u + from, pairs.upper.v + from, pairs.upper.sub_u + sub_from,
                   pairs.upper.sub_v + sub_from, pairs.upper.alpha + to.first * luma_next + to.x};
    ptrdiff_t video_next = chroma_next;
    if (const ptrdiff_t below = pairs.below.chroma; !Chroma::averages && below != 0) {
        video_next = to.pitch / 2;
        average_rows({to.u, at.video_u, below, to.count, chroma_next, video_next}, n / 2);
        average_rows({to.v, at.video_v, below, to.count, chroma_next, video_next}, n / 2);
        at.video_u = to.u, at.video_v = to.v;
    }
    for (ptrdiff_t pair = 0;;) {
        blend_chroma<weight, Chroma::averages>(pairs, at, n, map_u, map_v, Chroma(to, pairs, pair));
        if (++pair == to.count)
            break;
        at.video_u += video_next, at.video_v += video_next;
        at.sub_u += sub_next, at.sub_v += sub_next, at.alpha += luma_next;
    }
}

template <class Chroma>
bool blend_chroma_of_pairs(pair_strip &to, const mixed_pairs &pairs, const pair_maps *by) {
    if (!small_code && by)
        blend_chroma_by<Chroma>(to, pairs, by->u, by->v);
    else
        blend_chroma_by<Chroma>(to, pairs, unadjusted_plane{}, unadjusted_plane{});
    return Chroma::emits;
}

// ---- Runs of pairs -----------------------------------------------------------------------------

// Pairs that show nothing of the subpicture are emitted together: in rows of 320 pixels a call for
// each takes 1.1 times as long. But alpha must not be read far ahead of the rest.
constexpr ptrdiff_t most_clear_pixels = 4096;

LUMALANE_INLINE ptrdiff_t most_clear_pairs(ptrdiff_t n) {
    constexpr ptrdiff_t whole_lines = 128; // of chroma
    const ptrdiff_t row = rounded_up(n, whole_lines);
    return row == 0 ? 1 : most_clear_pixels / row;
}

// Emits n pixels of the video alone, from x on, of `count` pairs.
[[gnu::noinline]] void take_video(const mixed_pairs &pairs, ptrdiff_t first, ptrdiff_t count,
                                  ptrdiff_t x, ptrdiff_t n) {
    const ptrdiff_t chroma = first * pairs.next.chroma + x / 2;
    planar_rows video{pairs.upper.y + first * pairs.next.luma + x, pairs.upper.u + chroma,
                      pairs.upper.v + chroma,
                      pairs.upper.dst + first * pairs.next.dst + x * pairs.bytes_per_pixel};
    video.lower = pairs.lower;
    video.y_below = pairs.below.luma, video.dst_below = pairs.below.dst;
    video.stores = pairs.stores, video.by = pairs.by, video.count = count;
    video.y_next = pairs.next.luma, video.dst_next = pairs.next.dst;
    video.chroma_below = pairs.below.chroma, video.chroma_next = pairs.next.chroma;
    pairs.emit(video, n);
}

// Emits what was blended.
LUMALANE_INLINE void take_strip(pair_strip &blended, const mixed_pairs &pairs, bool adjusted) {
    constexpr ptrdiff_t lower = pair_strip::bytes;
    const ptrdiff_t pitch = blended.pitch, n = blended.n, count = blended.count;
    planar_rows rows{blended.y, blended.u, blended.v,
                     pairs.upper.dst + blended.first * pairs.next.dst +
                         blended.x * pairs.bytes_per_pixel};
    rows.stores = pairs.stores;
    if (const adjustment *const by = pairs.by; by && !adjusted)
        for (ptrdiff_t from = 0; from < 2 * lower; from += lower) {
            adjust_in_place(blended.y + from, pitch, count, n, &by->y);
            adjust_in_place(blended.u + from / 2, pitch / 2, count, n / 2, &by->u);
            adjust_in_place(blended.v + from / 2, pitch / 2, count, n / 2, &by->v);
        }
    if (count == 1) {
        rows.count = 2, rows.dst_next = pairs.below.dst;
        rows.y_next = lower, rows.chroma_next = lower / 2;
        pairs.emit(rows, n);
    } else {
        rows.count = count, rows.dst_next = pairs.next.dst;
        rows.y_next = pitch, rows.chroma_next = pitch / 2;
        pairs.emit(rows, n);
        rows.y += lower, rows.u += lower / 2, rows.v += lower / 2, rows.dst += pairs.below.dst;
        pairs.emit(rows, n);
    }
}

// Into a strip, and from there to the surface. (In one loop the two take 1.3 to 1.5 times as long:
// it is too long for the processor to look into its next turn, and has more values at hand than
// there are registers.)
LUMALANE_INLINE void blend_pixels(pair_strip &blended, const mixed_pairs &pairs, ptrdiff_t first,
                                  ptrdiff_t count, ptrdiff_t x, ptrdiff_t n, blending *blend,
                                  const pair_maps *maps) {
    blended.first = first, blended.count = count, blended.x = x, blended.n = n;
    blended.pitch = pitch_of_strip(n);
    blend_luma(blended, pairs, maps);
    if (!blend(blended, pairs, maps))
        take_strip(blended, pairs, maps);
}

// What all runs of pairs have in common.
struct mixing {
    ptrdiff_t n, most_clear, most_drawn, longest_look;
    blending *blend;
    const pair_maps *maps;
};

LUMALANE_INLINE void mix_run(pair_strip &blended, const mixed_pairs &pairs, ptrdiff_t first,
                             ptrdiff_t count, const mixing &how) {
    const ptrdiff_t below = pairs.below.sub, next = pairs.next.sub, n = how.n, end = first + count;
    const ptrdiff_t most = how.most_clear, most_drawn = how.most_drawn;
    const ptrdiff_t longest = how.longest_look;
    blending *const blend = how.blend;
    const pair_maps *const maps = how.maps;
    const unsigned char *alpha = pairs.upper.alpha + first * next;
    for (ptrdiff_t pair = first; pair < end;) {
        const ptrdiff_t left = end - pair;
        ptrdiff_t look = n < longest ? n : longest, clear = 0, together = 0;
        for (; together < most && together < left; ++together) {
            clear = count_clear(alpha, below, look);
            if (clear < n)
                break;
            alpha += next;
        }
        if (together > 0) {
            take_video(pairs, pair, together, 0, n);
            pair += together;
            if (clear == n)
                continue;
            together = 0;
        }
        if (clear == 0) {
            const ptrdiff_t drawn_most = most_drawn < end - pair ? most_drawn : end - pair;
            while (together < drawn_most && count_drawn(alpha, below, n) == n)
                ++together, alpha += next;
            if (together > 0) {
                blend_pixels(blended, pairs, pair, together, 0, n, blend, maps);
                pair += together;
                continue;
            }
        }
        for (ptrdiff_t x = 0;;) {
            if (clear > 0)
                take_video(pairs, pair, 1, x, clear);
            x += clear, look -= clear;
            if (look > 0) {
                const ptrdiff_t drawn = count_drawn(alpha + x, below, look < strip ? look : strip);
                blend_pixels(blended, pairs, pair, 1, x, drawn, blend, maps);
                x += drawn;
            }
            if (x == n)
                break;
            look = n - x < longest ? n - x : longest;
            clear = count_clear(alpha + x, below, look);
        }
        alpha += next;
        ++pair;
    }
}

// Of pairs of two kinds as many are mixed at once as have few pixels. (Narrow pairs in smaller runs take
// 1.03 times as long; wide ones not one by one 1.05 times: nothing is read then in the order in which it
// lies in memory.)
LUMALANE_INLINE ptrdiff_t pairs_in_turn(ptrdiff_t n) {
    constexpr ptrdiff_t narrow = 512, pixels = 20480;
    return n > 0 && n <= narrow ? pixels / n : 1;
}

[[gnu::noinline]] void mix(const mixed_pairs &pairs, ptrdiff_t n, blending *blend,
                           const pair_maps *maps) {
    pair_strip blended;
    // Narrow pairs that are drawn all over are blended together: full veils in rows of 320 pixels are
    // 1.02 to 1.05 times as fast.
    const ptrdiff_t most_drawn = n == 0 || n > strip ? 0 : pair_strip::bytes / pitch_of_strip(n);
    const ptrdiff_t longest = longest_look_of(pairs.stores);
    const mixing how{n, most_clear_pairs(n), most_drawn, longest, blend, maps};
    const mixed_pairs *const others = pairs.alternate;
    const ptrdiff_t count = pairs.count;
    const ptrdiff_t run = others ? pairs_in_turn(n) : count;
    for (ptrdiff_t first = 0; first < count; first += run) {
        const ptrdiff_t pairs_of_run = count - first < run ? count - first : run;
        for (const mixed_pairs *kind = &pairs;; kind = others) {
            mix_run(blended, *kind, first, pairs_of_run, how);
            if (!others || kind == others)
                break;
        }
    }
}

// (By itself: other gains need the stack.)
[[gnu::noinline]] void mix_by_maps(const mixed_pairs &pairs, ptrdiff_t n, blending *blend) {
    const pair_maps maps(*pairs.by);
    mix(pairs, n, blend, &maps);
}

// Gains that are rare are done in the strip.
[[gnu::noinline]] void mix(const mixed_pairs &pairs, ptrdiff_t n, blending *blend,
                           blending *blend_into_strip) {
    const pair_maps *const none = nullptr;
    if (!pairs.by)
        mix(pairs, n, blend, none);
    else if (!fits_15_bits(*pairs.by))
        mix(pairs, n, blend_into_strip, none);
    else
        mix_by_maps(pairs, n, blend);
}

template <class Surface>
LUMALANE_INLINE void mix_to(const mixed_pairs &pairs, ptrdiff_t n) {
    constexpr blending *into_strip = blend_chroma_of_pairs<strip_chroma<weight_of_second>>;
    if constexpr (emits_at_once) {
        const bool at_once = !streams || streams_at_once || !is_non_temporal(pairs.stores);
        mix(pairs, n, at_once ? blend_chroma_of_pairs<surface_chroma<Surface>> : into_strip,
            into_strip);
    } else {
        mix(pairs, n, into_strip, into_strip);
    }
}

// ---- Rows of planes ----------------------------------------------------------------------------

// Of 2n pixels. (Cheaper than of the weights that come from them.)
template <int n>
LUMALANE_INLINE bool are_clear(const unsigned char *alpha) {
    if constexpr (n == 8)
        return all_zero(load<16>(alpha));
    else
        return all_zero(load<n>(alpha) | load<n>(alpha + n));
}

// Rows of planes: where the first one is in each of them, and how far it is from one to the next.
struct rows_of_planes {
    ptrdiff_t dst, video, sub;
    const unsigned char *alpha;
    ptrdiff_t dst_next, video_next, sub_next, alpha_next, count;

    // Where dst is after the last one. (See end_of().)
    LUMALANE_INLINE ptrdiff_t end() const { return dst + count * dst_next; }
};

// Calls `some.operator()<averaged>(rows_of_planes, below)` until every row is made: all at once, or the
// upper rows of a field and the lower ones, which are averaged unless they are adjusted, in turn.
template <bool adjusted, class Some>
LUMALANE_INLINE void for_rows(const blended_planes &rows, ptrdiff_t n, const Some &some) {
    const ptrdiff_t to_lower = rows.video_to_lower, below = adjusted ? 0 : rows.below_lower;
    const bool alike = below == 0 && rows.video_next == 2 * to_lower;
    const ptrdiff_t kinds = alike ? 1 : 2;
    // Wide rows pair by pair: what the lower one shares with the upper one is in the cache. Runs of one
    // group row by row.
    constexpr ptrdiff_t narrow = 1024, one_group = 2 * longest_run_in_order;
    const ptrdiff_t together = alike || (n > one_group && n < narrow) ? rows.count : 2;
    for (ptrdiff_t first = 0; first < rows.count; first += together) {
        const ptrdiff_t left = rows.count - first < together ? rows.count - first : together;
        for (ptrdiff_t kind = 0; kind < kinds && kind < left; ++kind) {
            const ptrdiff_t row = first + kind;
            const rows_of_planes places{row * rows.dst_next,
                                        first / 2 * rows.video_next + kind * to_lower,
                                        row * rows.sub_next,
                                        rows.alpha + row * rows.alpha_next,
                                        kinds * rows.dst_next,
                                        alike ? to_lower : rows.video_next,
                                        kinds * rows.sub_next,
                                        kinds * rows.alpha_next,
                                        (left - kind + kinds - 1) / kinds};
            if (!adjusted && below != 0 && kind != 0)
                some.template operator()<!adjusted>(places, below);
            else
                some.template operator()<false>(places, 0);
        }
    }
}

// The rows of one plane or of two, one by one, n samples of each.
[[gnu::noinline]] void blend_rare_rows(row_kernel::blending_planes *blend,
                                       const blended_planes &rows, int planes, ptrdiff_t n,
                                       ptrdiff_t samples) {
    blended_planes row = rows;
    row.by[0] = row.by[1] = nullptr;
    row.stores = store_policy::cached;
    row.count = 1;
    for (ptrdiff_t i = 0; i < rows.count; ++i) {
        blend(row, n);
        const ptrdiff_t to_next =
            i % 2 != 0 ? rows.video_next - rows.video_to_lower : rows.video_to_lower;
        for (int plane = 0; plane < planes; ++plane) {
            adjust_in_place(row.dst[plane], 0, 1, samples, rows.by[plane]);
            row.dst[plane] += rows.dst_next, row.sub[plane] += rows.sub_next;
            row.video[plane] += to_next;
        }
        row.alpha += rows.alpha_next;
    }
}

} // namespace

void mix_pairs(const mixed_pairs &pairs, ptrdiff_t n) {
    constexpr blending *blend = blend_chroma_of_pairs<strip_chroma<weight_of_second>>;
    mix(pairs, n, blend, blend);
}

void mix_pairs_by_averages(const mixed_pairs &pairs, ptrdiff_t n) {
    constexpr blending *blend = blend_chroma_of_pairs<strip_chroma<average_weight>>;
    mix(pairs, n, blend, blend);
}

void mix_pairs_to_yuy2(const mixed_pairs &pairs, ptrdiff_t n) { mix_to<whole_yuy2>(pairs, n); }

void mix_pairs_to_odd_yuy2(const mixed_pairs &pairs, ptrdiff_t n) { mix_to<odd_yuy2>(pairs, n); }

void blend_plane(const blended_planes &rows, ptrdiff_t n) {
    const auto of_map = [&](const auto map) LUMALANE_INLINE_LAMBDA {
        with_stores(rows.stores, [&](auto stores) LUMALANE_INLINE_LAMBDA {
            const auto some = [&]<bool averaged>(const rows_of_planes &at,
                                                 ptrdiff_t below) LUMALANE_INLINE_LAMBDA {
                unsigned char *dst = rows.dst[0] + at.dst;
                const unsigned char *video = rows.video[0] + at.video, *sub = rows.sub[0] + at.sub;
                const unsigned char *alpha = at.alpha, *const end = rows.dst[0] + at.end();
                for (bool more = true; more; more = dst != end) {
                    const auto take = [=](auto group, ptrdiff_t x) LUMALANE_INLINE_LAMBDA {
                        stores.store(dst + x,
                                     map(load_row<averaged, group.size>(video + x, below)));
                    };
                    const auto blended = [=]<int size>(ptrdiff_t x,
                                                       bytes<size> weight) LUMALANE_INLINE_LAMBDA {
                        const bytes<size> samples = load_row<averaged, size>(video + x, below);
                        stores.store(dst + x, map(blend(samples, load<size>(sub + x), weight)));
                    };
                    // Two vectors with one test.
                    ptrdiff_t x = 0;
                    for (; x + 2 * widest <= n; x += 2 * widest) {
                        constexpr group_of<widest> group;
                        const bytes<widest> first = load<widest>(alpha + x);
                        const bytes<widest> second = load<widest>(alpha + x + widest);
                        if (all_zero(first | second)) {
                            take(group, x);
                            take(group, x + widest);
                        } else {
                            blended(x, first);
                            blended(x + widest, second);
                        }
                    }
                    along_row<8>(
                        n,
                        [=](auto group, ptrdiff_t i) LUMALANE_INLINE_LAMBDA {
                            const bytes<group.size> weight = load<group.size>(alpha + i);
                            if (all_zero(weight))
                                take(group, i);
                            else
                                blended(i, weight);
                        },
                        x);
                    dst += at.dst_next, video += at.video_next, sub += at.sub_next;
                    alpha += at.alpha_next;
                }
            };
            for_rows<decltype(map)::adjusts>(rows, n, some);
        });
    };
    with_gain(rows.by[0], [&]<class Gain>(Gain) LUMALANE_INLINE_LAMBDA {
        if constexpr (Gain::is_rare)
            blend_rare_rows(blend_plane, rows, 1, n, n);
        else
            of_map(typename Gain::plane(rows.by[0]));
    });
}

void blend_chroma_planes(const blended_planes &rows, ptrdiff_t n) {
    const auto of_maps = [&](const auto map_u, const auto map_v) LUMALANE_INLINE_LAMBDA {
        with_stores(rows.stores, [&](auto stores) LUMALANE_INLINE_LAMBDA {
            const auto some = [&]<bool averaged>(const rows_of_planes &at,
                                                 ptrdiff_t below) LUMALANE_INLINE_LAMBDA {
                unsigned char *dst_u = rows.dst[0] + at.dst, *dst_v = rows.dst[1] + at.dst;
                const unsigned char *video_u = rows.video[0] + at.video;
                const unsigned char *video_v = rows.video[1] + at.video;
                const unsigned char *sub_u = rows.sub[0] + at.sub, *sub_v = rows.sub[1] + at.sub;
                const unsigned char *alpha = at.alpha, *const end = rows.dst[0] + at.end();
                for (bool more = true; more; more = dst_u != end) {
                    along_row<8>(n / 2, [=](auto group, ptrdiff_t x) LUMALANE_INLINE_LAMBDA {
                        constexpr int size = group.size;
                        const bytes<size> u = load_row<averaged, size>(video_u + x, below);
                        const bytes<size> v = load_row<averaged, size>(video_v + x, below);
                        const unsigned char *const of_pairs = alpha + 2 * x;
                        if (are_clear<size>(of_pairs)) {
                            stores.store(dst_u + x, map_u(u));
                            stores.store(dst_v + x, map_v(v));
                        } else {
                            const bytes<size> weight = weight_of_second::load<size>(of_pairs);
                            const bytes<size> of_u = load<size>(sub_u + x);
                            const bytes<size> of_v = load<size>(sub_v + x);
                            stores.store(dst_u + x, map_u(blend(u, of_u, weight)));
                            stores.store(dst_v + x, map_v(blend(v, of_v, weight)));
                        }
                    });
                    dst_u += at.dst_next, dst_v += at.dst_next;
                    video_u += at.video_next, video_v += at.video_next;
                    sub_u += at.sub_next, sub_v += at.sub_next;
                    alpha += at.alpha_next;
                }
            };
            for_rows<decltype(map_u)::adjusts>(rows, n, some);
        });
    };
    const plane_adjustment *const by_u = rows.by[0], *const by_v = rows.by[1]; // of one gain
    with_gain(by_u, [&]<class Gain>(Gain) LUMALANE_INLINE_LAMBDA {
        if constexpr (Gain::is_rare)
            blend_rare_rows(blend_chroma_planes, rows, 2, n, n / 2);
        else
            of_maps(typename Gain::plane(by_u), typename Gain::plane(by_v));
    });
}

} // namespace lumalane::LUMALANE_TARGET_NAME
