// The colour key: filled in, put in place of a marker, and chosen where a subpicture is clear.
#include "rows/adjust.h"
#include "rows/kernels.h"
#include "rows/pattern.h"
#include "rows/rgb.h"

namespace lumalane::LUMALANE_TARGET_NAME {

namespace {

template <class Stores>
LUMALANE_INLINE void fill_row(unsigned char *dst, ptrdiff_t count, const pattern &with,
                              Stores stores) {
    constexpr ptrdiff_t size = 3 * widest;
    const vectors<3, widest> pieces = pattern_vectors<3, widest>(with);
    ptrdiff_t x = 0;
    for (; x + 2 * size <= count; x += 2 * size) {
        if constexpr (Stores::takes_lines)
            fetch_ahead<widest, 6>(dst + x, stores.ahead);
        store_all<Stores>(dst + x, pieces);
        store_all<Stores>(dst + x + size, pieces);
    }
    if (x + size <= count) {
        store_all<Stores>(dst + x, pieces);
        x += size;
    }
    const ptrdiff_t rest = count - x;
    along_row<16>(rest, [=, &with](auto group, ptrdiff_t at) LUMALANE_INLINE_LAMBDA {
        Stores::store(dst + x + at, load<group.size>(with.byte + at));
    });
}

// Even pixels and odd ones apart in each block, as those of the channels are.
template <int n>
LUMALANE_INLINE bytes<n> even_then_odd(bytes<n> pixels) {
    return narrow_saturate(even(pixels), odd(pixels));
}

// The key where alpha is 0, black where it is 128 or more.
template <int n>
LUMALANE_INLINE rgb_pixels<n / 2> keyed(const rgb_pixels<n / 2> &pixels, bytes<n> alpha,
                                        const key_colour &key) {
    const bytes<n> shown = in_1_to_127(alpha), clear = equal(alpha, fill_bytes<n>(0));
    const auto channel = [=](bytes<n> of_pixels, int of_key) LUMALANE_INLINE_LAMBDA {
        return (of_pixels & shown) | (fill_bytes<n>(of_key) & clear);
    };
    return {channel(pixels.red, key.red), channel(pixels.green, key.green),
            channel(pixels.blue, key.blue)};
}

// The key for a group of m pixels and for those after it that are clear; returns how many. (A
// function of its own: among the other pixels compilers store the vectors in another order than
// that of their addresses, or keep the count in memory, which takes 1.3 to 1.9 times as long.)
template <int m, int size>
[[gnu::noinline]] ptrdiff_t emit_clear(unsigned char *dst, const unsigned char *alpha, ptrdiff_t n,
                                       const pattern &key_pixels, store_policy stores) {
    const vectors<size, m> pixels = pattern_vectors<size, m>(key_pixels);
    ptrdiff_t x = 0;
    with_stores(stores, [&](auto policy) LUMALANE_INLINE_LAMBDA {
        const auto store_group = [&]() LUMALANE_INLINE_LAMBDA {
            if constexpr (decltype(policy)::takes_lines)
                fetch_ahead<m, size>(dst + size * x, policy.ahead);
            store_all<decltype(policy)>(dst + size * x, pixels);
            x += m;
        };
        store_group();
        while (x + 2 * m <= n && all_zero(load<m>(alpha + x) | load<m>(alpha + x + m))) {
            store_group();
            store_group();
        }
        while (x + m <= n && all_zero(load<m>(alpha + x)))
            store_group();
    });
    return x;
}

// Groups of m pixels from x on; returns how far it came.
template <int m, class Pixels, class Adjusted>
LUMALANE_INLINE ptrdiff_t emit_keyed_groups(const keyed_rows &row, ptrdiff_t x, ptrdiff_t n,
                                            const key_colour &key, const Adjusted &adjusted) {
    constexpr int size = Pixels::bytes_per_pixel, count = permuted_for<Pixels, m>;
    const auto pixels_at = [&](ptrdiff_t at) LUMALANE_INLINE_LAMBDA {
        const auto terms = to_rgb::chroma(adjusted.rgb_chroma(
            chroma_words<m / 2>{load_chroma_permuted<count, m / 2>(row.u + at / 2),
                                load_chroma_permuted<count, m / 2>(row.v + at / 2)}));
        return to_rgb::pixels(adjusted.rgb_luma(load_permuted<count, m>(row.y + at)), terms);
    };
    while (x + m <= n) {
        if constexpr (calls_are_apart<m>) {
            for (; x + m <= n && all_in_1_to_127(load<m>(row.alpha + x)); x += m) {
                fetch_source<m>(row.alpha + x);
                fetch_source<m>(row.y + x);
                fetch_source<m / 2>(row.u + x / 2);
                fetch_source<m / 2>(row.v + x / 2);
                store_all(row.stores, row.dst + size * x, Pixels::interleaved(pixels_at(x)));
            }
            if (x + m > n)
                break;
        }
        const bytes<m> alpha = load<m>(row.alpha + x);
        if (all_zero(alpha)) {
            x += emit_clear<m, size>(row.dst + size * x, row.alpha + x, n - x, key.pixels,
                                     row.stores);
            continue;
        }
        auto pixels = pixels_at(x);
        if (calls_are_apart<m> || !all_in_1_to_127(alpha))
            pixels = keyed(pixels, even_then_odd(permuted<count>(alpha)), key);
        store_all(row.stores, row.dst + size * x, Pixels::interleaved(pixels));
        x += m;
    }
    return x;
}

template <class Pixels, class Adjusted>
LUMALANE_INLINE void emit_keyed_rows(keyed_rows row, ptrdiff_t n, const key_colour &key) {
    const Adjusted adjusted(row.by);
    for (ptrdiff_t left = row.count; left > 0; --left) {
        const ptrdiff_t x = emit_keyed_groups<widest, Pixels>(row, 0, n, key, adjusted);
        if constexpr (widest > 16)
            emit_keyed_groups<16, Pixels>(row, x, n, key, adjusted);
        advance(row);
    }
}

// Adjusts into a strip, for gains that have no loops of their own.
template <class Pixels>
LUMALANE_INLINE void emit_keyed_in_strips(row_kernel::keyed_to_surface *emit, keyed_rows rows,
                                          ptrdiff_t n, const key_colour &key) {
    alignas(stack_alignment) unsigned char y[strip_pixels], u[strip_pixels / 2],
        v[strip_pixels / 2];
    const auto strip = [&](const keyed_rows &at, ptrdiff_t x,
                           ptrdiff_t run) LUMALANE_INLINE_LAMBDA {
        emit_plane({at.y + x, y, store_policy::cached, &at.by->y}, run);
        emit_plane({at.u + x / 2, u, store_policy::cached, &at.by->u}, run / 2);
        emit_plane({at.v + x / 2, v, store_policy::cached, &at.by->v}, run / 2);
        emit({y, u, v, at.alpha + x, at.dst + Pixels::bytes_per_pixel * x, at.stores}, run, key);
    };
    in_strips(rows, n, strip);
}

template <class Pixels>
LUMALANE_INLINE void emit_keyed(row_kernel::keyed_to_surface *itself, const keyed_rows &row,
                                ptrdiff_t n, const key_colour &key) {
    with_gain(row.by, [&]<class Gain>(Gain) LUMALANE_INLINE_LAMBDA {
        if constexpr (Gain::is_rare)
            emit_keyed_in_strips<Pixels>(itself, row, n, key);
        else
            emit_keyed_rows<Pixels, typename Gain::samples>(row, n, key);
    });
}

} // namespace

void fill(unsigned char *dst, ptrdiff_t bytes, const pattern &with, store_policy stores) {
    with_stores(stores, [=, &with](auto policy)
                            LUMALANE_INLINE_LAMBDA { fill_row(dst, bytes, with, policy); });
}

// The destination is read: non-temporal stores have nothing to spare there.
void replace_marker(const plane_rows &mask, ptrdiff_t n, unsigned char marker, unsigned char key) {
    const unsigned char *src = mask.src;
    unsigned char *dst = mask.dst;
    for (ptrdiff_t left = mask.count; left > 0; --left) {
        along_row<16>(n, [=](auto group, ptrdiff_t x) LUMALANE_INLINE_LAMBDA {
            constexpr int m = group.size;
            const bytes<m> marked = equal(load<m>(src + x), fill_bytes<m>(marker));
            store(dst + x, choose(marked, fill_bytes<m>(key), load<m>(dst + x)));
        });
        src += mask.src_next, dst += mask.dst_next;
    }
}

void emit_keyed_rgb32(const keyed_rows &row, ptrdiff_t n, const key_colour &key) {
    emit_keyed<rgb32>(emit_keyed_rgb32, row, n, key);
}

void emit_keyed_rgb24(const keyed_rows &row, ptrdiff_t n, const key_colour &key) {
    emit_keyed<rgb24>(emit_keyed_rgb24, row, n, key);
}

void emit_keyed_rgb16_565(const keyed_rows &row, ptrdiff_t n, const key_colour &key) {
    emit_keyed<rgb16<5, 6, 5>>(emit_keyed_rgb16_565, row, n, key);
}

} // namespace lumalane::LUMALANE_TARGET_NAME
