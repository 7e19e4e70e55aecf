// Rows of the video under rows of a subpicture.
#include "rows/adjust.h"
#include "rows/kernels.h"

namespace lumalane::LUMALANE_TARGET_NAME {

namespace {

// The average of a row with itself is the row: it takes no branch.
template <int n>
LUMALANE_INLINE bytes<n> load_video(const unsigned char *video, ptrdiff_t below) {
    return average(load<n>(video), load<n>(video + below));
}

// The weights of n chroma samples, from the alpha of 2n pixels.

struct weight_of_second {
    template <int n>
    LUMALANE_INLINE static bytes<n> load(const unsigned char *alpha) {
        return load_odd<1, n>(alpha);
    }
};

struct average_weight {
    template <int n>
    LUMALANE_INLINE static bytes<n> load(const unsigned char *alpha) {
        return load_averages<1, n>(alpha);
    }
};

// Gains that are too rare to have loops of their own: a blend is adjusted where it was stored.

bool is_rare(const plane_adjustment *by) { return by && !by->product_fits_15_bits; }

void adjust_in_place(unsigned char *samples, ptrdiff_t next, ptrdiff_t count, ptrdiff_t n,
                     const plane_adjustment *by) {
    plane_rows rows{samples, samples};
    rows.by = by;
    rows.count = count, rows.src_next = next, rows.dst_next = next;
    emit_plane(rows, n);
}

// Runs `run(map)` with what makes samples of the destination of a blend, for other gains.
template <class Run>
LUMALANE_INLINE void with_map(const plane_adjustment *by, const Run &run) {
    if (!by)
        run(unadjusted_plane{});
    else
        run(adjusted_plane<true>(*by));
}

// The same with the maps of U and of V, which have the same gain.
template <class Run>
LUMALANE_INLINE void with_chroma_maps(const plane_adjustment *by_u, const plane_adjustment *by_v,
                                      const Run &run) {
    if (!by_u)
        run(unadjusted_plane{}, unadjusted_plane{});
    else
        run(adjusted_plane<true>(*by_u), adjusted_plane<true>(*by_v));
}

// ---- Pairs of rows -----------------------------------------------------------------------------

// Calls `row.operator()<n>(lower, x, u, v)` with the blended chroma of n samples from x on, for each
// row of a pair. What is loaded of the video serves both. (Fields are copied one by one: vectors
// would be loaded from what was just stored in smaller pieces.)
template <class Weight, class Row>
LUMALANE_INLINE void blend_chroma(const blended_chroma &pair, ptrdiff_t n, const Row &row) {
    const adjustment *const by = pair.by;
    const auto of_maps = [&](const auto map_u, const auto map_v) LUMALANE_INLINE_LAMBDA {
        const unsigned char *const video_u = pair.video_u, *const video_v = pair.video_v;
        const unsigned char *const sub_u = pair.sub_u, *const sub_v = pair.sub_v;
        const unsigned char *const alpha = pair.alpha;
        const ptrdiff_t below = pair.below, sub_next = pair.sub_next, alpha_next = pair.alpha_next;
        along_row<8>(n / 2, [=](auto group, ptrdiff_t x) LUMALANE_INLINE_LAMBDA {
            constexpr int size = group.size;
            const bytes<size> u = load_video<size>(video_u + x, below);
            const bytes<size> v = load_video<size>(video_v + x, below);
            const auto blended = [&](bool lower, ptrdiff_t sub,
                                     const unsigned char *weights) LUMALANE_INLINE_LAMBDA {
                const bytes<size> weight = Weight::template load<size>(weights + 2 * x);
                const bytes<size> of_u = load<size>(sub_u + sub);
                const bytes<size> of_v = load<size>(sub_v + sub);
                row.template operator()<size>(lower, x, map_u(blend(u, of_u, weight)),
                                              map_v(blend(v, of_v, weight)));
            };
            blended(false, x, alpha);
            blended(true, x + sub_next, alpha + alpha_next);
        });
    };
    with_chroma_maps(by ? &by->u : nullptr, by ? &by->v : nullptr, of_maps);
}

template <class Weight>
LUMALANE_INLINE void blend_chroma_into_strip(const blended_chroma &pair, ptrdiff_t n);

// Before it is blended nothing is adjusted, afterwards both rows.
template <class Weight>
[[gnu::noinline]] void blend_rare_chroma_into_strip(const blended_chroma &pair, ptrdiff_t n) {
    blended_chroma plain = pair;
    plain.by = nullptr;
    blend_chroma_into_strip<Weight>(plain, n);
    adjust_in_place(pair.u, pair.dst_next, 2, n / 2, &pair.by->u);
    adjust_in_place(pair.v, pair.dst_next, 2, n / 2, &pair.by->v);
}

template <class Weight>
LUMALANE_INLINE void blend_chroma_into_strip(const blended_chroma &pair, ptrdiff_t n) {
    if (pair.by && is_rare(&pair.by->u))
        return blend_rare_chroma_into_strip<Weight>(pair, n);
    unsigned char *const u = pair.u, *const v = pair.v;
    const ptrdiff_t dst_next = pair.dst_next;
    blend_chroma<Weight>(pair, n,
                         [=]<int size>(bool lower, ptrdiff_t x, bytes<size> of_u, bytes<size> of_v)
                             LUMALANE_INLINE_LAMBDA {
                                 const ptrdiff_t to = lower ? x + dst_next : x;
                                 store(u + to, of_u);
                                 store(v + to, of_v);
                             });
}

// ---- Pairs of rows to YUY2 ---------------------------------------------------------------------
//
// `pixels` makes n pixels from luma and from pairs of chroma, permuted for `parts` vectors.

struct whole_yuy2 {
    static constexpr int parts = 2, bytes_per_pixel = 2;

    template <int n>
    LUMALANE_INLINE static vectors<2, n> pixels(const unsigned char *y, bytes<n> pairs) {
        return interleave(load_permuted<2, n>(y), pairs);
    }
};

// The second of every two pixels and of every two chroma samples.
struct odd_yuy2 {
    static constexpr int parts = 1, bytes_per_pixel = 1;

    template <int n>
    LUMALANE_INLINE static vectors<1, n> pixels(const unsigned char *y, bytes<n> pairs) {
        return {{narrow_interleaved(odd(load<n>(y)), second_pairs(pairs))}};
    }
};

// The 2n pixels of n samples of chroma.
template <class Surface, int n>
LUMALANE_INLINE void emit_chroma(unsigned char *dst, const unsigned char *y, bytes<n> u, bytes<n> v,
                                 store_policy stores) {
    if constexpr (n == 8) {
        store_all(stores, dst, Surface::pixels(y, join(widen(u), widen(v))));
    } else {
        constexpr int parts = 2 * Surface::parts;
        const vectors<2, n> pairs = interleave(permuted<parts>(u), permuted<parts>(v));
        store_all(stores, dst, Surface::pixels(y, pairs.part[0]));
        store_all(stores, dst + n * Surface::bytes_per_pixel,
                  Surface::pixels(y + n, pairs.part[1]));
    }
}

// Blended chroma goes to the surface at once, which makes full veils 1.08 times as fast. (With 8
// registers it takes 8 times as long.)
template <class Surface>
LUMALANE_INLINE void emit_blended(const blended_to_surface &pair, ptrdiff_t n,
                                  row_kernel::planar_to_surface *emit) {
    const blended_chroma &chroma = *pair.chroma;
    if (vector_registers < 16 || (chroma.by && is_rare(&chroma.by->u))) {
        blend_chroma_pair(chroma, n);
        planar_rows rows{pair.y, chroma.u, chroma.v, pair.dst};
        rows.stores = pair.stores, rows.count = 2, rows.dst_next = pair.dst_next;
        rows.y_next = pair.y_next, rows.chroma_next = chroma.dst_next;
        return emit(rows, n);
    }
    unsigned char *const dst = pair.dst;
    const unsigned char *const y = pair.y;
    const ptrdiff_t dst_next = pair.dst_next, y_next = pair.y_next;
    const store_policy stores = pair.stores;
    blend_chroma<weight_of_second>(chroma, n,
                                   [=]<int size>(bool lower, ptrdiff_t x, bytes<size> u,
                                                 bytes<size> v) LUMALANE_INLINE_LAMBDA {
                                       const ptrdiff_t to = 2 * x * Surface::bytes_per_pixel;
                                       emit_chroma<Surface>(dst + (lower ? to + dst_next : to),
                                                            y + (lower ? 2 * x + y_next : 2 * x), u,
                                                            v, stores);
                                   });
}

// ---- Rows of planes ----------------------------------------------------------------------------

template <bool averaged, int n>
LUMALANE_INLINE bytes<n> load_row(const unsigned char *video, ptrdiff_t below) {
    if constexpr (averaged)
        return load_video<n>(video, below);
    else
        return load<n>(video);
}

// Of 2n pixels. (Cheaper than of the weights that come from them.)
template <int n>
LUMALANE_INLINE bool are_clear(const unsigned char *alpha) {
    if constexpr (n == 8)
        return all_zero(load<16>(alpha));
    else
        return all_zero(load<n>(alpha) | load<n>(alpha + n));
}

// Calls `row.operator()<averaged>(dst, video, sub, alpha, below)` for every row, with the offsets of
// the row in its planes. Only videos that are not adjusted are averaged.
template <bool adjusted, class Row>
LUMALANE_INLINE void for_rows(const blended_planes &rows, const Row &row) {
    ptrdiff_t dst = 0, video = 0, sub = 0;
    const unsigned char *alpha = rows.alpha;
    for (ptrdiff_t i = 0; i < rows.count; ++i) {
        const bool lower = i % 2 != 0;
        if (!adjusted && lower && rows.below_lower != 0)
            row.template operator()<!adjusted>(dst, video, sub, alpha, rows.below_lower);
        else
            row.template operator()<false>(dst, video, sub, alpha, 0);
        dst += rows.dst_next, sub += rows.sub_next, alpha += rows.alpha_next;
        video += lower ? rows.video_next - rows.video_to_lower : rows.video_to_lower;
    }
}

// The rows of one plane or of two, one by one, n samples of each.
void blend_rare_rows(row_kernel::blending_planes *blend, const blended_planes &rows, int planes,
                     ptrdiff_t n, ptrdiff_t samples) {
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

template <class Map>
inline constexpr bool is_adjusted = true;
template <>
inline constexpr bool is_adjusted<const unadjusted_plane> = false;

} // namespace

void blend_pair(const blended_pair &pair, ptrdiff_t n) {
    if (is_rare(pair.by)) {
        blended_pair plain = pair;
        plain.by = nullptr;
        blend_pair(plain, n);
        return adjust_in_place(pair.dst, pair.dst_next, 2, n, pair.by);
    }
    with_map(pair.by, [&](const auto map) LUMALANE_INLINE_LAMBDA {
        unsigned char *const dst = pair.dst, *const lower_dst = dst + pair.dst_next;
        const unsigned char *const video = pair.video, *const sub = pair.sub,
                                   *const alpha = pair.alpha;
        const unsigned char *const lower_video = video + pair.video_next,
                                   *const lower_sub = sub + pair.sub_next,
                                   *const lower_alpha = alpha + pair.sub_next;
        const ptrdiff_t below = pair.below_lower;
        along_row<8>(n, [=](auto group, ptrdiff_t x) LUMALANE_INLINE_LAMBDA {
            constexpr int size = group.size;
            store(dst + x,
                  map(blend(load<size>(video + x), load<size>(sub + x), load<size>(alpha + x))));
            store(lower_dst + x,
                  map(blend(load_video<size>(lower_video + x, below), load<size>(lower_sub + x),
                            load<size>(lower_alpha + x))));
        });
    });
}

void blend_chroma_pair(const blended_chroma &pair, ptrdiff_t n) {
    blend_chroma_into_strip<weight_of_second>(pair, n);
}

void blend_chroma_pair_by_averages(const blended_chroma &pair, ptrdiff_t n) {
    blend_chroma_into_strip<average_weight>(pair, n);
}

void emit_blended_yuy2(const blended_to_surface &pair, ptrdiff_t n) {
    emit_blended<whole_yuy2>(pair, n, emit_yuy2);
}

void emit_blended_odd_yuy2(const blended_to_surface &pair, ptrdiff_t n) {
    emit_blended<odd_yuy2>(pair, n, emit_odd_yuy2);
}

void blend_plane(const blended_planes &rows, ptrdiff_t n) {
    if (is_rare(rows.by[0]))
        return blend_rare_rows(blend_plane, rows, 1, n, n);
    with_map(rows.by[0], [&](const auto map) LUMALANE_INLINE_LAMBDA {
        with_stores(rows.stores, [&](auto stores) LUMALANE_INLINE_LAMBDA {
            const auto row = [&]<bool averaged>(ptrdiff_t to, ptrdiff_t from, ptrdiff_t sub_at,
                                                const unsigned char *alpha,
                                                ptrdiff_t below) LUMALANE_INLINE_LAMBDA {
                unsigned char *const dst = rows.dst[0] + to;
                const unsigned char *const video = rows.video[0] + from, *const sub =
                                                                             rows.sub[0] + sub_at;
                const auto take = [=](auto group, ptrdiff_t x) LUMALANE_INLINE_LAMBDA {
                    stores.store(dst + x, map(load_row<averaged, group.size>(video + x, below)));
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
                    [=](auto group, ptrdiff_t at) LUMALANE_INLINE_LAMBDA {
                        const bytes<group.size> weight = load<group.size>(alpha + at);
                        if (all_zero(weight))
                            take(group, at);
                        else
                            blended(at, weight);
                    },
                    x);
            };
            for_rows<is_adjusted<decltype(map)>>(rows, row);
        });
    });
}

void blend_chroma_planes(const blended_planes &rows, ptrdiff_t n) {
    if (is_rare(rows.by[0]))
        return blend_rare_rows(blend_chroma_planes, rows, 2, n, n / 2);
    const auto of_maps = [&](const auto map_u, const auto map_v) LUMALANE_INLINE_LAMBDA {
        with_stores(rows.stores, [&](auto stores) LUMALANE_INLINE_LAMBDA {
            const auto row = [&]<bool averaged>(ptrdiff_t to, ptrdiff_t from, ptrdiff_t sub_at,
                                                const unsigned char *alpha,
                                                ptrdiff_t below) LUMALANE_INLINE_LAMBDA {
                unsigned char *const dst_u = rows.dst[0] + to, *const dst_v = rows.dst[1] + to;
                const unsigned char *const video_u = rows.video[0] + from, *const video_v =
                                                                               rows.video[1] + from;
                const unsigned char *const sub_u = rows.sub[0] + sub_at, *const sub_v =
                                                                             rows.sub[1] + sub_at;
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
            };
            for_rows<is_adjusted<decltype(map_u)>>(rows, row);
        });
    };
    with_chroma_maps(rows.by[0], rows.by[1], of_maps);
}

} // namespace lumalane::LUMALANE_TARGET_NAME
