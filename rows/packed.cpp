// Rows of packed YUY2 to the pixels of a surface.
#include "rows/adjust.h"
#include "rows/kernels.h"

namespace lumalane::LUMALANE_TARGET_NAME {

namespace {

// ---- Surfaces ----------------------------------------------------------------------------------
//
// `fetch` loads the samples of a group, `chroma` makes of them what the rows of a pair share, `row`
// stores the pixels of a row. `apart` tells whether pairs are stored one row after the other, though
// cached. `Adjusted` is unadjusted_samples or adjusted_samples<...>.

template <class Pixels, class Adjusted>
struct packed_to_rgb {
    static constexpr int bytes_per_pixel = Pixels::bytes_per_pixel, least = 16, most = widest;
    // (With 8 registers there is no place for the next group's samples: up to 1.3 times as long.)
    static constexpr bool fetches_sources = !small_code,
                          looks_ahead = !small_code && vector_registers >= 16;
    static constexpr bool unrolls = false;

    Adjusted adjusted;

    Pixels packed;

    using format = Pixels;

    explicit packed_to_rgb(const adjustment *by, Pixels packed_) : adjusted(by), packed(packed_) {}

    LUMALANE_INLINE static bool apart(const packed_rows &) { return false; }

    template <int n>
    LUMALANE_INLINE static packed_pixels<n> fetch(const unsigned char *from) {
        return load_packed<permuted_for<Pixels, n>, n>(from);
    }

    template <int n>
    LUMALANE_INLINE chroma_terms<n / 2> chroma(packed_pixels<n> samples) const {
        return to_rgb::chroma(adjusted.rgb_chroma(samples));
    }

    template <int n>
    LUMALANE_INLINE auto pixels(packed_pixels<n> samples, const chroma_terms<n / 2> &terms) const {
        return packed.interleaved(to_rgb::pixels(adjusted.rgb_luma(samples), terms));
    }
};

// n pixels are one vector.
struct packed_yuy2 {
    struct format {};

    static constexpr int bytes_per_pixel = 2, least = 8, most = widest / 2;
    [[maybe_unused]] static constexpr bool fetches_sources = false, looks_ahead = false;

    template <int n>
    LUMALANE_INLINE static bytes<2 * n> fetch(const unsigned char *from) {
        return load<2 * n>(from);
    }
};

template <class Adjusted>
struct packed_to_yuy2 : packed_yuy2 {
    static constexpr bool unrolls = false;

    Adjusted adjusted;

    explicit packed_to_yuy2(const adjustment *by, format) : adjusted(by) {}

    LUMALANE_INLINE static bool apart(const packed_rows &rows) { return cross_cache_lines(rows); }

    template <int size>
    LUMALANE_INLINE words<size / 2> chroma(bytes<size> samples) const {
        return adjusted.odd_chroma(samples);
    }

    template <int size>
    LUMALANE_INLINE vectors<1, size> pixels(bytes<size> samples, words<size / 2> chroma) const {
        return {{narrow_interleaved(adjusted.even_luma(samples), chroma)}};
    }
};

template <>
struct packed_to_yuy2<unadjusted_samples> : packed_yuy2 {
    // Beside little more than a copy the loop itself counts.
    static constexpr bool unrolls = !small_code;

    explicit packed_to_yuy2(const adjustment *, format) {}

    // There is nothing to make of chroma that rows share.
    LUMALANE_INLINE static bool apart(const packed_rows &) { return true; }

    template <int size>
    LUMALANE_INLINE static bytes<size> chroma(bytes<size> samples) {
        return samples & as_bytes(fill_words<size / 2>(0xff00));
    }

    template <int size>
    LUMALANE_INLINE static vectors<1, size> pixels(bytes<size> samples, bytes<size> chroma) {
        return {{(samples & as_bytes(fill_words<size / 2>(0x00ff))) | chroma}};
    }
};

// ---- Rows --------------------------------------------------------------------------------------

template <int n, class Surface, class Stores>
LUMALANE_INLINE void emit_row_group(const Surface &surface, const packed_rows &rows, ptrdiff_t x,
                                    Stores stores) {
    const auto samples = surface.template fetch<n>(rows.src + 2 * x);
    const auto chroma = surface.chroma(surface.template fetch<n>(rows.chroma + 2 * x));
    store_all(stores, rows.dst + x * Surface::bytes_per_pixel, surface.pixels(samples, chroma));
}

template <int n, class Surface>
LUMALANE_INLINE void emit_pair_group(const Surface &surface, const packed_rows &rows, ptrdiff_t x) {
    const unsigned char *const src = rows.src + 2 * x;
    unsigned char *const dst = rows.dst + x * Surface::bytes_per_pixel;
    if constexpr (Surface::fetches_sources && !Surface::looks_ahead) {
        fetch_source<2 * n>(src);
        fetch_source<2 * n>(src + rows.src_below);
    }
    const auto upper = surface.template fetch<n>(src);
    const auto chroma = surface.chroma(upper);
    store_all<cached>(dst, surface.pixels(upper, chroma));
    const auto lower = surface.template fetch<n>(src + rows.src_below);
    store_all<cached>(dst + rows.dst_below, surface.pixels(lower, chroma));
}

// A record of its own for a call: what is only in registers stays there. (Where all vectors are the
// widest there is no such call.)
[[maybe_unused]] LUMALANE_INLINE packed_rows own(const packed_rows &rows) {
    return {rows.src,       rows.chroma,    rows.dst,    rows.lower,
            rows.src_below, rows.dst_below, rows.stores, rows.by};
}

// What the widest vectors leave of a row. (Once for both loops: it is as long as they are.)
template <class Surface>
[[gnu::noinline]] void emit_rest(const packed_rows &rows, typename Surface::format format,
                                 bool pair, ptrdiff_t n, ptrdiff_t x) {
    const Surface surface(rows.by, format);
    constexpr int most = Surface::most < 16 ? Surface::most : 16;
    along_row<Surface::least, most>(
        n,
        [&](auto group, ptrdiff_t at) LUMALANE_INLINE_LAMBDA {
            if (pair)
                emit_pair_group<group.size>(surface, rows, at);
            else
                emit_row_group<group.size>(surface, rows, at, rows.stores);
        },
        x);
}

// The next group's samples are fetched before this one's pixels are stored: the processor's window
// is too short to reach them by itself. Not for a run of one group, whose order is promised.
template <class Stores, class Surface>
LUMALANE_INLINE ptrdiff_t emit_pair_ahead(const Surface &surface, const packed_rows &rows,
                                          ptrdiff_t n) {
    constexpr int most = Surface::most;
    if (n < 2 * most)
        return 0;
    const unsigned char *const src_below = rows.src + rows.src_below;
    unsigned char *const dst_below = rows.dst + rows.dst_below;
    const ptrdiff_t ahead = fetched_ahead(rows.stores);
    auto upper = surface.template fetch<most>(rows.src);
    auto lower = surface.template fetch<most>(src_below);
    ptrdiff_t x = 0;
    for (; x + most <= n; x += most) {
        constexpr int vectors = most * Surface::bytes_per_pixel / widest;
        if constexpr (Stores::takes_lines) {
            fetch_ahead<widest, vectors>(rows.dst + x * Surface::bytes_per_pixel, ahead);
            fetch_ahead<widest, vectors>(dst_below + x * Surface::bytes_per_pixel, ahead);
        }
        if constexpr (Surface::fetches_sources) {
            fetch_source<2 * most>(rows.src + 2 * x);
            fetch_source<2 * most>(src_below + 2 * x);
        }
        const auto chroma = surface.chroma(upper);
        // The last one is fetched again.
        const unsigned char *const next = rows.src + 2 * (x + 2 * most <= n ? x + most : x);
        const auto next_upper = surface.template fetch<most>(next);
        store_all<Stores>(rows.dst + x * Surface::bytes_per_pixel, surface.pixels(upper, chroma));
        const auto next_lower = surface.template fetch<most>(next + rows.src_below);
        store_all<Stores>(dst_below + x * Surface::bytes_per_pixel, surface.pixels(lower, chroma));
        upper = next_upper, lower = next_lower;
    }
    return x;
}

template <class Surface>
LUMALANE_INLINE void emit_pair(const Surface &surface, typename Surface::format format,
                               const packed_rows &rows, ptrdiff_t n) {
    ptrdiff_t x = 0;
    if constexpr (streams_its_pairs<Surface>)
        if (is_non_temporal(rows.stores)) {
            x = emit_pair_ahead<non_temporal>(surface, rows, n);
            if (x < n) { // cached stores would hold up the others
                packed_rows row = own(rows);
                emit_rest<Surface>(row, format, false, n, x);
                row.src += rows.src_below, row.dst += rows.dst_below;
                emit_rest<Surface>(row, format, false, n, x);
            }
            return;
        }
    if constexpr (Surface::looks_ahead)
        x = emit_pair_ahead<cached>(surface, rows, n);
    else
        for (; x + Surface::most <= n; x += Surface::most)
            emit_pair_group<Surface::most>(surface, rows, x);
    if constexpr (Surface::looks_ahead || Surface::most > Surface::least)
        if (x < n)
            emit_rest<Surface>(own(rows), format, true, n, x);
}

template <class Surface>
LUMALANE_INLINE void emit_row(const Surface &surface, typename Surface::format format,
                              const packed_rows &rows, ptrdiff_t n) {
    constexpr int most = Surface::most;
    ptrdiff_t x = 0;
    if constexpr (Surface::unrolls)
        with_stores(rows.stores, [&](auto stores) LUMALANE_INLINE_LAMBDA {
            const auto two_groups = [&](const auto &group) LUMALANE_INLINE_LAMBDA {
                for (; x + 2 * most <= n; x += 2 * most)
                    group(x), group(x + most);
            };
            if (rows.chroma == rows.src) // a copy
                two_groups([&](ptrdiff_t at) LUMALANE_INLINE_LAMBDA {
                    store_all(stores, rows.dst + 2 * at,
                              vectors<1, widest>{{load<widest>(rows.src + 2 * at)}});
                });
            else
                two_groups([&](ptrdiff_t at) LUMALANE_INLINE_LAMBDA {
                    emit_row_group<most>(surface, rows, at, stores);
                });
        });
    for (; x + most <= n; x += most)
        emit_row_group<most>(surface, rows, x, rows.stores);
    if constexpr (Surface::most > Surface::least)
        if (x < n)
            emit_rest<Surface>(own(rows), format, false, n, x);
}

template <class Surface>
LUMALANE_INLINE void emit_rows(const packed_rows &told, ptrdiff_t n,
                               typename Surface::format format = {}) {
    const Surface surface(told.by, format);
    packed_rows rows{told.src,       told.chroma,    told.dst,     told.lower,
                     told.src_below, told.dst_below, told.stores,  told.by,
                     told.count,     told.src_next,  told.dst_next};
    const bool pairs = rows.lower != lower_row::none;
    const bool in_turn =
        pairs && (rows_in_turn(rows.stores)
                      ? n <= longest_run_in_order || !Surface::apart(rows)
                      : streams_its_pairs<Surface> && begin_at_multiples(rows, cache_line));
    for (ptrdiff_t left = rows.count; left > 0; --left) {
        if (in_turn) {
            emit_pair(surface, format, rows, n);
        } else {
            packed_rows row = rows;
            for (ptrdiff_t more = pairs ? 1 : 0;; --more) {
                emit_row(surface, format, row, n);
                if (more == 0)
                    break;
                row.src += rows.src_below, row.dst += rows.dst_below;
            }
        }
        advance(rows);
    }
}

// Adjusts into a strip, for gains that have no loops of their own.
[[gnu::noinline]] void emit_in_strips(row_kernel::packed_to_surface *emit, int bytes_per_pixel,
                                      packed_rows rows, ptrdiff_t n) {
    constexpr ptrdiff_t bytes = 2 * strip_pixels;
    alignas(stack_alignment) unsigned char chroma[bytes], lower[bytes], upper[bytes];
    const auto strip = [&](const packed_rows &at, ptrdiff_t x,
                           ptrdiff_t run) LUMALANE_INLINE_LAMBDA {
        const auto adjust = [&](unsigned char *to, const unsigned char *from) {
            packed_rows row{from, from, to};
            row.by = at.by;
            emit_packed_yuy2(row, run);
        };
        packed_rows row{upper, chroma, at.dst + x * bytes_per_pixel};
        row.stores = at.stores;
        adjust(chroma, at.chroma + 2 * x);
        adjust(upper, at.src + 2 * x);
        emit(row, run);
        if (at.lower == lower_row::none)
            return;
        adjust(lower, at.src + at.src_below + 2 * x);
        row.src = lower, row.dst += at.dst_below;
        emit(row, run);
    };
    in_strips(rows, n, strip);
}

template <class Pixels>
LUMALANE_INLINE void emit_rgb(row_kernel::packed_to_surface *itself, const packed_rows &rows,
                              ptrdiff_t n, Pixels format = {}) {
    with_gain(rows.by, [&]<class Gain>(Gain) LUMALANE_INLINE_LAMBDA {
        if constexpr (Gain::is_rare)
            emit_in_strips(itself, Pixels::bytes_per_pixel, rows, n);
        else
            emit_rows<packed_to_rgb<Pixels, typename Gain::samples>>(rows, n, format);
    });
}

[[gnu::noinline]] void emit_rare_rgb16(row_kernel::packed_to_surface *itself,
                                       const packed_rows &rows, ptrdiff_t n, rare_rgb16 layout) {
    emit_rgb<rare_rgb16>(itself, rows, n, layout);
}

} // namespace

void emit_packed_rgb32(const packed_rows &rows, ptrdiff_t n) {
    emit_rgb<rgb32>(emit_packed_rgb32, rows, n);
}

void emit_packed_rgb24(const packed_rows &rows, ptrdiff_t n) {
    emit_rgb<rgb24>(emit_packed_rgb24, rows, n);
}

void emit_packed_rgb16_565(const packed_rows &rows, ptrdiff_t n) {
    emit_rgb<rgb16<5, 6, 5>>(emit_packed_rgb16_565, rows, n);
}

void emit_packed_rgb16_555(const packed_rows &rows, ptrdiff_t n) {
    emit_rare_rgb16(emit_packed_rgb16_555, rows, n, {rare_rgb16::rgb_555});
}

void emit_packed_rgb16_664(const packed_rows &rows, ptrdiff_t n) {
    emit_rare_rgb16(emit_packed_rgb16_664, rows, n, {rare_rgb16::rgb_664});
}

void emit_packed_rgb16_655(const packed_rows &rows, ptrdiff_t n) {
    emit_rare_rgb16(emit_packed_rgb16_655, rows, n, {rare_rgb16::rgb_655});
}

void emit_packed_yuy2(const packed_rows &rows, ptrdiff_t n) {
    with_gain(rows.by, [&]<class Gain>(Gain) LUMALANE_INLINE_LAMBDA {
        emit_rows<packed_to_yuy2<typename Gain::samples>>(rows, n);
    });
}

} // namespace lumalane::LUMALANE_TARGET_NAME
