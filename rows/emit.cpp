// Planar rows to the pixels of a surface.
#include "rows/adjust.h"
#include "rows/filter.h"
#include "rows/kernels.h"
#include "rows/rgb.h"

namespace lumalane::LUMALANE_TARGET_NAME {

namespace {

// ---- Surfaces ----------------------------------------------------------------------------------
//
// `permuted` brings luma into the order that the surface's interleaving wants, `chroma` loads and
// makes what the rows of a pair share (to YUY2 averaged with the row `below` where that is not 0),
// `pixels` makes the pixels of a row. `may_be_apart`: rows of a pair that lie across cache lines are
// stored one after the other. `makes_both_first`: both rows of a pair are made before one is stored,
// where that order cannot be observed (up to 1.05 times as fast). `averages_around`: pairs of which the
// lower rows are averages are made in one loop around the cache, too. `Adjusted` is unadjusted_samples or
// adjusted_samples<...>.

template <class Pixels, class Adjusted>
struct to_rgb_surface {
    static constexpr int bytes_per_pixel = Pixels::bytes_per_pixel, least = 16;
    static constexpr bool filters = false, may_be_apart = false, averages_around = !Pixels::is_rare;
    // (With 8 registers pairs take 1.05 times as long then, and those that are not adjusted 1.04 times
    // in vectors of 64 bytes.)
    static constexpr bool makes_both_first =
        vector_registers >= 16 && (widest < 64 || Adjusted::adjusts);

    using format = Pixels;

    Adjusted adjusted;
    Pixels packed;

    explicit to_rgb_surface(const adjustment *by, Pixels packed_) : adjusted(by), packed(packed_) {}

    template <int n>
    LUMALANE_INLINE static bytes<n> permuted(bytes<n> luma) {
        return LUMALANE_TARGET_NAME::permuted<permuted_for<Pixels, n>>(luma);
    }

    template <int n>
    LUMALANE_INLINE chroma_terms<n / 2> chroma(const unsigned char *u, const unsigned char *v,
                                               ptrdiff_t) const {
        constexpr int vectors = permuted_for<Pixels, n>;
        return to_rgb::chroma(adjusted.rgb_chroma(chroma_words<n / 2>{
            load_chroma_permuted<vectors, n / 2>(u), load_chroma_permuted<vectors, n / 2>(v)}));
    }

    template <int n>
    LUMALANE_INLINE auto pixels(bytes<n> luma, const chroma_terms<n / 2> &terms) const {
        return packed.interleaved(to_rgb::pixels(adjusted.rgb_luma(luma), terms));
    }
};

struct yuy2 {};

// Pairs of U and V, permuted for so many vectors.
template <int vectors, int n>
LUMALANE_INLINE bytes<n> load_pairs(const unsigned char *u, const unsigned char *v) {
    if constexpr (n == 8)
        return interleave_lower(load<4>(u), load<4>(v));
    else
        return load_pairs_permuted<vectors, n>(u, v);
}

template <class Adjusted>
struct to_yuy2 {
    static constexpr int bytes_per_pixel = 2, least = 8;
    // Loops of gains that are rare ask for each group; small code averages what is alike.
    static constexpr bool filters = true, may_be_apart = true, makes_both_first = false,
                          averages_around = true, knows = !small_code && !Adjusted::is_rare;

    Adjusted adjusted;

    using format = yuy2;

    explicit to_yuy2(const adjustment *by, yuy2) : adjusted(by) {}

    template <int n>
    LUMALANE_INLINE static bytes<n> permuted(bytes<n> luma) {
        if constexpr (n == 8)
            return luma;
        else
            return LUMALANE_TARGET_NAME::permuted<2>(luma);
    }

    template <int n>
    LUMALANE_INLINE bytes<n> chroma(const unsigned char *u, const unsigned char *v,
                                    ptrdiff_t below) const {
        const bytes<n> pairs = load_pairs<2, n>(u, v);
        if (!small_code && below == 0)
            return adjusted.chroma(pairs);
        return adjusted.chroma(average(pairs, load_pairs<2, n>(u + below, v + below)));
    }

    template <int n>
    LUMALANE_INLINE auto pixels(bytes<n> luma, bytes<n> chroma) const {
        if constexpr (n == 8)
            return vectors<1, 16>{{interleave_lower(adjusted.luma(luma), chroma)}};
        else
            return interleave(adjusted.luma(luma), chroma);
    }
};

// Grey: chroma is 128, and that of the picture is not read.
template <class Adjusted>
struct to_mono_yuy2 : to_yuy2<Adjusted> {
    using to_yuy2<Adjusted>::to_yuy2;

    static constexpr bool filters = false, averages_around = false;

    template <int n>
    LUMALANE_INLINE static bytes<n> chroma(const unsigned char *, const unsigned char *,
                                           ptrdiff_t) {
        if constexpr (n == 8)
            return lower_half(fill_bytes<16>(128));
        else
            return fill_bytes<n>(128);
    }
};

// Two neighbours make one sample, their average: U with U and V with V.
template <class Adjusted>
struct to_half_yuy2 {
    static constexpr int bytes_per_pixel = 1, least = 16;
    static constexpr bool filters = false, may_be_apart = false, makes_both_first = false,
                          averages_around = false;

    Adjusted adjusted;

    using format = yuy2;

    explicit to_half_yuy2(const adjustment *by, yuy2) : adjusted(by) {}

    template <int n>
    LUMALANE_INLINE static bytes<n> permuted(bytes<n> luma) {
        return luma;
    }

    template <int n>
    LUMALANE_INLINE words<n / 2> chroma(const unsigned char *u, const unsigned char *v,
                                        ptrdiff_t) const {
        return adjusted.chroma(average_neighbour_pairs(load_pairs<1, n>(u, v)));
    }

    template <int n>
    LUMALANE_INLINE vectors<1, n> pixels(bytes<n> luma, words<n / 2> chroma) const {
        return {{narrow_interleaved(adjusted.luma(average_neighbours(luma)), chroma)}};
    }
};

// The same with the second of every two neighbours.
template <class Adjusted>
struct to_odd_yuy2 : to_half_yuy2<Adjusted> {
    using to_half_yuy2<Adjusted>::to_half_yuy2;

    template <int n>
    LUMALANE_INLINE words<n / 2> chroma(const unsigned char *u, const unsigned char *v,
                                        ptrdiff_t) const {
        return this->adjusted.chroma(second_pairs(load_pairs<1, n>(u, v)));
    }

    template <int n>
    LUMALANE_INLINE vectors<1, n> pixels(bytes<n> luma, words<n / 2> chroma) const {
        return {{narrow_interleaved(this->adjusted.luma(odd(luma)), chroma)}};
    }
};

// ---- Rows --------------------------------------------------------------------------------------

// Where a row (or a pair) is.
struct row_place {
    const unsigned char *y, *u, *v;
    unsigned char *dst;
    ptrdiff_t y_below;
};

// And what is made of it, which is the same for all of them.
struct row_start : row_place {
    ptrdiff_t dst_below, chroma_below, ahead;
    store_policy stores;
    lower_row lower;

    LUMALANE_INLINE row_start(const row_place &at, const planar_rows &rows)
        : row_place(at), dst_below(rows.dst_below), chroma_below(rows.chroma_below),
          ahead(fetched_ahead(rows.stores)), stores(rows.stores), lower(rows.lower) {}
};

LUMALANE_INLINE row_place place_of(const planar_rows &rows) {
    return {rows.y, rows.u, rows.v, rows.dst, rows.y_below};
}

// Luma of the lower row of a pair, from x on.
template <class Surface, int n>
LUMALANE_INLINE bytes<n> lower_luma(const row_start &at, bytes<n> upper, ptrdiff_t x) {
    const unsigned char *const from = at.y + at.y_below + x;
    const bytes<n> lower = load<n>(from);
    if constexpr (Surface::filters && filters_pairs)
        if (at.lower == lower_row::four_taps)
            return filtered(load<n>(at.y - at.y_below + x), upper, lower,
                            load<n>(from + at.y_below));
    const bool averages = at.lower == lower_row::average;
    if constexpr (small_code && n > 8)
        return average(choose(fill_bytes<n>(averages ? 0xff : 0), upper, lower), lower);
    else
        return averages ? average(upper, lower) : lower;
}

// What a loop to YUY2 knows of its rows, and does not ask for each group. (With 8 registers asking
// makes pairs of which both are averages take 1.18 times as long.)
enum class known {
    nothing,
    one_of_each,   // the lower row of a pair is itself, and chroma that of one row
    average_luma,  // the lower row is the average
    both_averages, // and chroma is averaged
};

// A group from x on: of a pair of rows, or of one, which asks how to store. Where order may be observed
// the upper row of two is stored before the lower one is loaded.
template <int n, bool pair, known is = known::nothing, class Stores = cached, class Surface>
LUMALANE_INLINE void emit_group(const Surface &surface, const row_start &at, ptrdiff_t x) {
    constexpr bool one_chroma = is == known::one_of_each || is == known::average_luma;
    if (is == known::both_averages && at.chroma_below == 0)
        __builtin_unreachable(); // or the compiler asks
    const auto chroma =
        surface.template chroma<n>(at.u + x / 2, at.v + x / 2, one_chroma ? 0 : at.chroma_below);
    unsigned char *const dst = at.dst + x * Surface::bytes_per_pixel;
    const auto pixels = [&](bytes<n> luma) LUMALANE_INLINE_LAMBDA {
        return surface.pixels(surface.permuted(luma), chroma);
    };
    const bytes<n> upper = load<n>(at.y + x);
    if constexpr (pair) {
        if constexpr (Stores::takes_lines) {
            fetch_ahead<n, Surface::bytes_per_pixel>(dst, at.ahead);
            fetch_ahead<n, Surface::bytes_per_pixel>(dst + at.dst_below, at.ahead);
        }
        const auto load_lower = [&]() LUMALANE_INLINE_LAMBDA {
            if constexpr (is == known::nothing)
                return lower_luma<Surface>(at, upper, x);
            else if constexpr (is == known::one_of_each)
                return load<n>(at.y + at.y_below + x);
            else
                return average(upper, load<n>(at.y + at.y_below + x));
        };
        if constexpr (Surface::makes_both_first && n > longest_run_in_order) {
            const bytes<n> lower = load_lower();
            const auto of_upper = pixels(upper), of_lower = pixels(lower);
            store_all<Stores>(dst, of_upper);
            store_all<Stores>(dst + at.dst_below, of_lower);
        } else {
            store_all<Stores>(dst, pixels(upper));
            store_all<Stores>(dst + at.dst_below, pixels(load_lower()));
        }
    } else {
        store_all(at.stores, dst, pixels(upper));
    }
}

// What the widest vectors leave of a row (or pair). (Once for all loops: it is as long as they are.)
template <class Surface>
[[gnu::noinline]] void emit_rest(const planar_rows &rows, typename Surface::format format,
                                 const row_place &place, bool pair, ptrdiff_t n, ptrdiff_t x) {
    const Surface surface(rows.by, format);
    along_row<Surface::least, Surface::least == 16 ? 16 : most_left>(
        n,
        [&, at = row_start(place, rows)](auto group, ptrdiff_t from) LUMALANE_INLINE_LAMBDA {
            if (pair)
                emit_group<group.size, true>(surface, at, from);
            else
                emit_group<group.size, false>(surface, at, from);
        },
        x);
}

// Rows one by one, or pairs of them: the groups of the widest vectors in a loop of their own, then the
// rest. (One loop along the rows that chooses among those takes up to 1.09 times as long at 320x240.)
template <bool pair, known is, class Stores, class Surface>
LUMALANE_INLINE void emit_rows_as(const Surface &surface, const planar_rows &rows, ptrdiff_t n,
                                  typename Surface::format format) {
    row_start at(place_of(rows), rows);
    for (ptrdiff_t k = 0; k < rows.count; ++k) {
        row_start row = at;
        for (bool more = !pair && rows.lower != lower_row::none;; more = false) {
            ptrdiff_t x = 0;
            for (; x + widest <= n; x += widest)
                emit_group<widest, pair, is, Stores>(surface, row, x);
            if constexpr (widest > Surface::least)
                if (x < n) {
                    // A record of its own: what is only in registers is not copied for each row.
                    row_place rest{row.y, row.u, row.v, row.dst, row.y_below};
                    if (pair && !Stores::takes_lines && rows.lower == lower_row::itself) {
                        // Cached stores, which pairs have here, would hold up those around the cache.
                        emit_rest<Surface>(rows, format, rest, false, n, x);
                        rest.y += row.y_below, rest.dst += row.dst_below;
                        emit_rest<Surface>(rows, format, rest, false, n, x);
                    } else {
                        emit_rest<Surface>(rows, format, rest, pair, n, x);
                    }
                }
            if (!more)
                break;
            row.y += row.y_below, row.dst += row.dst_below;
        }
        at.y += rows.y_next, at.u += rows.chroma_next, at.v += rows.chroma_next;
        at.dst += rows.dst_next, at.y_below += rows.y_below_next;
    }
}

// Whether lower rows are averages that are made in the loop of their pairs around the cache. (In a strip,
// and with chroma for either row, surfaces of 3840 pixels take 1.15 to 1.3 times as long.)
template <class Surface>
inline constexpr bool averages_in_turn = streams &&Surface::averages_around &&
    streams_averages(widest, vector_registers, Surface::bytes_per_pixel);

template <class Surface>
LUMALANE_INLINE bool streams_in_turn(const planar_rows &rows) {
    const bool streams_pair =
        rows.lower == lower_row::average ? averages_in_turn<Surface> : streams_its_pairs<Surface>;
    return streams_pair && begin_at_multiples(rows, cache_line);
}

// Whether the rows of a pair are stored in turn.
template <class Surface>
LUMALANE_INLINE bool in_turn(const planar_rows &rows, ptrdiff_t n) {
    if (rows.lower == lower_row::none)
        return false;
    if (!rows_in_turn(rows.stores))
        return streams_in_turn<Surface>(rows);
    return !Surface::may_be_apart || n <= longest_run_in_order || rows.lower != lower_row::itself ||
           !cross_cache_lines(rows);
}

template <class Surface>
LUMALANE_INLINE void emit_rows(const planar_rows &rows, ptrdiff_t n,
                               typename Surface::format format = {}) {
    const Surface surface(rows.by, format);
    const bool one_chroma = rows.chroma_below == 0;
    if (!in_turn<Surface>(rows, n)) {
        // (A loop for both rows that asks how to store is slower in the cache, by 2 to 10 %.)
        if constexpr (Surface::filters)
            if (Surface::knows && one_chroma)
                return emit_rows_as<false, known::one_of_each, cached>(surface, rows, n, format);
        return emit_rows_as<false, known::nothing, cached>(surface, rows, n, format);
    }
    if constexpr (averages_in_turn<Surface>)
        if (is_non_temporal(rows.stores))
            return emit_rows_as<true, known::nothing, non_temporal>(surface, rows, n, format);
    if constexpr (Surface::filters) {
        if (one_chroma && rows.lower == lower_row::itself)
            return emit_rows_as<true, known::one_of_each, cached>(surface, rows, n, format);
        if constexpr (Surface::knows)
            if (rows.lower == lower_row::average) {
                if (one_chroma)
                    return emit_rows_as<true, known::average_luma, cached>(surface, rows, n,
                                                                           format);
                return emit_rows_as<true, known::both_averages, cached>(surface, rows, n, format);
            }
    }
    emit_rows_as<true, known::nothing, cached>(surface, rows, n, format);
}

// Whether the lower rows are made in a strip: the loops make them of rows that are stored in turn.
template <class Surface>
LUMALANE_INLINE bool makes_lower_rows(const planar_rows &rows) {
    return rows.lower == lower_row::four_taps
               ? !filters_pairs || !rows_in_turn(rows.stores)
               : rows.lower == lower_row::average && !rows_in_turn(rows.stores) &&
                     !streams_in_turn<Surface>(rows);
}

[[gnu::noinline]] void emit_with_lower_rows(row_kernel::planar_to_surface *emit,
                                            int bytes_per_pixel, const planar_rows &told,
                                            ptrdiff_t n) {
    planar_rows rows = told;
    alignas(stack_alignment) unsigned char between[strip_pixels];
    row_kernel::between_two_rows *const make =
        rows.lower == lower_row::average ? average_rows : four_taps;
    for (ptrdiff_t left = rows.count; left > 0; --left) {
        planar_rows row{rows.y, rows.u, rows.v, rows.dst};
        row.stores = rows.stores, row.by = rows.by, row.chroma_below = rows.chroma_below;
        emit(row, n);
        in_runs(n, strip_pixels, [&](ptrdiff_t x, ptrdiff_t run) LUMALANE_INLINE_LAMBDA {
            make({between, row.y + x, rows.y_below}, run);
            planar_rows lower = row;
            lower.y = between, lower.u += x / 2, lower.v += x / 2;
            lower.dst += rows.dst_below + x * bytes_per_pixel;
            emit(lower, run);
        });
        advance(rows);
    }
}

// Adjusts into a strip, for gains that have no loops of their own.
[[gnu::noinline]] void emit_in_strips(row_kernel::planar_to_surface *emit, int bytes_per_pixel,
                                      planar_rows rows, ptrdiff_t n) {
    alignas(stack_alignment) unsigned char upper[strip_pixels], y[strip_pixels],
        u[strip_pixels / 2], v[strip_pixels / 2];
    const auto adjust = [](unsigned char *to, const unsigned char *from, ptrdiff_t samples,
                           const plane_adjustment *by) {
        emit_plane({from, to, store_policy::cached, by}, samples);
    };
    const auto strip = [&](const planar_rows &at, ptrdiff_t x,
                           ptrdiff_t run) LUMALANE_INLINE_LAMBDA {
        const adjustment &by = *at.by;
        planar_rows row{y, u, v, at.dst + x * bytes_per_pixel};
        row.stores = at.stores;
        adjust(u, at.u + x / 2, run / 2, &by.u);
        adjust(v, at.v + x / 2, run / 2, &by.v);
        adjust(upper, at.y + x, run, nullptr);
        adjust(y, upper, run, &by.y);
        emit(row, run);
        if (at.lower == lower_row::none)
            return;
        const unsigned char *const lower = at.y + at.y_below + x;
        if (at.lower == lower_row::average)
            along_row<16>(run, [&](auto group, ptrdiff_t i) LUMALANE_INLINE_LAMBDA {
                store(upper + i, average(load<group.size>(upper + i), load<group.size>(lower + i)));
            });
        else
            adjust(upper, lower, run, nullptr);
        adjust(y, upper, run, &by.y);
        row.dst += at.dst_below;
        emit(row, run);
    };
    in_strips(rows, n, strip);
}

// Averages chroma into a strip, of several narrow rows at once. (A branch in the loops to RGB makes
// them 0.9 times as fast.)
[[gnu::noinline]] void emit_chroma_between(row_kernel::planar_to_surface *emit, int bytes_per_pixel,
                                           const planar_rows &told, ptrdiff_t n) {
    constexpr ptrdiff_t strip = 1024; // of chroma
    alignas(stack_alignment) unsigned char u[strip], v[strip];
    planar_rows rows = told;
    rows.u = u, rows.v = v, rows.chroma_below = 0;
    for (ptrdiff_t left = told.count, first = 0; left > 0;) {
        const ptrdiff_t pitch = rounded_up(n / 2, cache_line);
        const ptrdiff_t most = pitch > 0 && pitch <= strip / 2 ? strip / pitch : 1;
        rows.count = left < most ? left : most;
        rows.chroma_next = pitch;
        in_runs(n, 2 * strip, [&](ptrdiff_t x, ptrdiff_t run) LUMALANE_INLINE_LAMBDA {
            const ptrdiff_t from = first * told.chroma_next + x / 2, below = told.chroma_below;
            average_rows({u, told.u + from, below, rows.count, told.chroma_next, pitch}, run / 2);
            average_rows({v, told.v + from, below, rows.count, told.chroma_next, pitch}, run / 2);
            rows.y = told.y + first * told.y_next + x;
            rows.y_below = told.y_below + first * told.y_below_next;
            rows.dst = told.dst + first * told.dst_next + x * bytes_per_pixel;
            emit(rows, run);
        });
        first += rows.count, left -= rows.count;
    }
}

// Every kind of row but those above, which come back here: by themselves, or what their loops keep on the
// stack would stand on it several times.

template <class Pixels>
[[gnu::noinline]] void emit_rgb_rows(row_kernel::planar_to_surface *itself, const planar_rows &rows,
                                     ptrdiff_t n, Pixels format) {
    with_gain(rows.by, [&]<class Gain>(Gain) LUMALANE_INLINE_LAMBDA {
        if constexpr (Gain::is_rare)
            emit_in_strips(itself, Pixels::bytes_per_pixel, rows, n);
        else
            emit_rows<to_rgb_surface<Pixels, typename Gain::samples>>(rows, n, format);
    });
}

template <template <class> class Surface>
[[gnu::noinline]] void emit_yuv_rows(const planar_rows &rows, ptrdiff_t n) {
    with_gain(rows.by, [&]<class Gain>(Gain) LUMALANE_INLINE_LAMBDA {
        emit_rows<Surface<typename Gain::samples>>(rows, n);
    });
}

template <class Pixels>
LUMALANE_INLINE void emit_rgb(row_kernel::planar_to_surface *itself, const planar_rows &rows,
                              ptrdiff_t n, Pixels format = {}) {
    if (rows.chroma_below != 0)
        emit_chroma_between(itself, Pixels::bytes_per_pixel, rows, n);
    else if (makes_lower_rows<to_rgb_surface<Pixels, unadjusted_samples>>(rows))
        emit_with_lower_rows(itself, Pixels::bytes_per_pixel, rows, n);
    else
        emit_rgb_rows(itself, rows, n, format);
}

template <template <class> class Surface>
LUMALANE_INLINE void emit_yuv(row_kernel::planar_to_surface *itself, const planar_rows &rows,
                              ptrdiff_t n) {
    if (makes_lower_rows<Surface<unadjusted_samples>>(rows))
        emit_with_lower_rows(itself, Surface<unadjusted_samples>::bytes_per_pixel, rows, n);
    else
        emit_yuv_rows<Surface>(rows, n);
}

} // namespace

void emit_rgb32(const planar_rows &rows, ptrdiff_t n) { emit_rgb<rgb32>(emit_rgb32, rows, n); }

void emit_rgb24(const planar_rows &rows, ptrdiff_t n) { emit_rgb<rgb24>(emit_rgb24, rows, n); }

void emit_rgb16_565(const planar_rows &rows, ptrdiff_t n) {
    emit_rgb<rgb16<5, 6, 5>>(emit_rgb16_565, rows, n);
}

void emit_rgb16_555(const planar_rows &rows, ptrdiff_t n) {
    emit_rgb<rare_rgb16>(emit_rgb16_555, rows, n, {rare_rgb16::rgb_555});
}

void emit_rgb16_664(const planar_rows &rows, ptrdiff_t n) {
    emit_rgb<rare_rgb16>(emit_rgb16_664, rows, n, {rare_rgb16::rgb_664});
}

void emit_rgb16_655(const planar_rows &rows, ptrdiff_t n) {
    emit_rgb<rare_rgb16>(emit_rgb16_655, rows, n, {rare_rgb16::rgb_655});
}

void emit_yuy2(const planar_rows &rows, ptrdiff_t n) { emit_yuv<to_yuy2>(emit_yuy2, rows, n); }

void emit_mono_yuy2(const planar_rows &rows, ptrdiff_t n) {
    emit_yuv<to_mono_yuy2>(emit_mono_yuy2, rows, n);
}

void emit_half_yuy2(const planar_rows &rows, ptrdiff_t n) {
    emit_yuv<to_half_yuy2>(emit_half_yuy2, rows, n);
}

void emit_odd_yuy2(const planar_rows &rows, ptrdiff_t n) {
    emit_yuv<to_odd_yuy2>(emit_odd_yuy2, rows, n);
}

void emit_yuy2_with_gaps(const planar_rows &rows, ptrdiff_t n) {
    const to_yuy2<unadjusted_samples> surface(nullptr, {});
    const ptrdiff_t y_next = rows.y_next, chroma_next = rows.chroma_next, dst_next = rows.dst_next;
    const ptrdiff_t dst_to_lower = rows.dst_below, ahead = fetched_ahead(rows.stores);
    row_place at = place_of(rows);
    const auto chroma = [&]<int size>(group_of<size>, ptrdiff_t x) LUMALANE_INLINE_LAMBDA {
        return surface.chroma<size>(at.u + x / 2, at.v + x / 2, 0);
    };
    const auto pixels = [&]<int size>(const unsigned char *y, bytes<size> pairs)
                            LUMALANE_INLINE_LAMBDA {
                                return surface.pixels(surface.permuted(load<size>(y)), pairs);
                            };
    for (ptrdiff_t left = rows.count; left > 0; --left) {
        const unsigned char *const below = at.y + at.y_below;
        unsigned char *const dst_below = at.dst + dst_to_lower;
        if (n == 16) {
            const auto pairs = chroma(group_of<16>{}, 0);
            store_all<cached>(at.dst, pixels(at.y, pairs));
            store_after_8(dst_below, pixels(below, pairs));
        } else {
            // Stores of both rows in turn take 1.4 times as long here.
            along_row<16>(n, [&](auto group, ptrdiff_t x) LUMALANE_INLINE_LAMBDA {
                store_and_fetch(at.dst + 2 * x, pixels(at.y + x, chroma(group, x)), ahead);
            });
            along_row<16, widest_with_gaps<widest>>(
                n, [&](auto group, ptrdiff_t x) LUMALANE_INLINE_LAMBDA {
                    fetch_ahead<group.size, 2>(dst_below + 2 * x, ahead);
                    store_after_8(dst_below + 2 * x, pixels(below + x, chroma(group, x)));
                });
        }
        at.y += y_next, at.u += chroma_next, at.v += chroma_next, at.dst += dst_next;
        at.y_below += rows.y_below_next;
    }
}

} // namespace lumalane::LUMALANE_TARGET_NAME
