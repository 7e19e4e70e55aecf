// YV12 pictures into YUY2 surfaces of twice the height, and of twice both.
#include "picture/adjustment.h"
#include "picture/calls.h"
#include "picture/geometry.h"
#include "picture/stores.h"
#include "stretch/between_rows.h"
#include "stretch/recent_rows.h"

namespace lumalane {

namespace {

// Of the rows of a pair, with the chroma row that they share, and of the row below each come four:
//
//     row 0   the upper row
//     row 1   what lies between it and the lower row
//     row 2   the lower row, with what lies between the chroma row and the next one
//     row 3   what lies between the lower row and the next pair, with the same chroma
//
// The promised order is row by row. After each row pointers go back by the width: with a width off
// the step each row begins further right than the one before, in the source as on the surface.
struct double_height {
    const unsigned char *y, *u, *v;
    unsigned char *dst;
    long long pairs;
    ptrdiff_t pixels, row_bytes; // of a row, of the source and of the surface
    ptrdiff_t y_drift, chroma_drift;
    ptrdiff_t y_below, chroma_below; // to the row that is read below
    ptrdiff_t y_to_lower, y_to_next; // from row 1 to row 2, from pair to pair
    ptrdiff_t chroma_to_next, dst_to_row;

    double_height(const call::picture &p, int times_width, ptrdiff_t pixels_)
        : y(p.src), u(p.src_u), v(p.src_v), dst(p.dst), pairs(steps_of(p.height, 2)),
          pixels(pixels_), row_bytes(2 * times_width * pixels), y_drift(pixels - p.width),
          chroma_drift(pixels / 2 - (p.width >> 1)),
          // quirk: the row below is at an even pitch, the next row is not
          y_below(2 * static_cast<ptrdiff_t>(static_cast<unsigned>(p.src_pitch) >> 1)),
          chroma_below(static_cast<unsigned>(p.src_pitch) >> 1),
          y_to_lower(pixels + difference(p.src_pitch, p.width)),
          y_to_next(2 * y_drift + 2 * y_to_lower),
          chroma_to_next(3 * chroma_drift + pixels / 2 + (difference(p.src_pitch, p.width) >> 1)),
          dst_to_row(row_bytes + difference(p.dst_pitch, product(p.width, 2 * times_width))) {}

    bool drifts() const { return y_drift != 0 || chroma_drift != 0; }

    // For row k of a pair.
    source_rows source(long long pair, int k) const {
        const ptrdiff_t of_y =
            static_cast<ptrdiff_t>(pair) * y_to_next + (k + 1) / 2 * y_drift + k / 2 * y_to_lower;
        const ptrdiff_t of_chroma =
            static_cast<ptrdiff_t>(pair) * chroma_to_next + k * chroma_drift;
        return {y + of_y, u + of_chroma, v + of_chroma, y_below, chroma_below};
    }

    unsigned char *surface(long long pair, int k) const {
        return dst + static_cast<ptrdiff_t>(4 * pair + k) * dst_to_row;
    }

    // Rows are read over as much as they drift to. `filtered`: rows above and two below are read,
    // from the second pair to the one before the last.
    bool order_can_be_observed(bool filtered) const {
        const byte_rows written[] = {{dst, 4 * pairs, dst_to_row, row_bytes}};
        const unsigned char *const below_upper = y + y_drift + y_below;
        const unsigned char *const lower = y + y_drift + y_to_lower;
        const unsigned char *const below_lower = lower + y_drift + y_below;
        const ptrdiff_t next_chroma = 2 * chroma_drift + chroma_below;
        const ptrdiff_t chroma_bytes = pixels / 2 + 3 * chroma_drift;
        const byte_rows read[] = {{y, pairs, y_to_next, pixels + y_drift},
                                  {below_upper, pairs, y_to_next, pixels},
                                  {lower, pairs, y_to_next, pixels + y_drift},
                                  {below_lower, pairs - 1, y_to_next, pixels},
                                  {u, pairs, chroma_to_next, chroma_bytes},
                                  {u + next_chroma, pairs - 1, chroma_to_next, chroma_bytes},
                                  {v, pairs, chroma_to_next, chroma_bytes},
                                  {v + next_chroma, pairs - 1, chroma_to_next, chroma_bytes}};
        if (lumalane::order_can_be_observed(written, read))
            return true;
        if (!filtered)
            return false;
        const long long inner = pairs - 2;
        const byte_rows outer[] = {
            {below_upper + y_to_next - 2 * y_below, inner, y_to_next, pixels},
            {below_upper + y_to_next + y_below, inner, y_to_next, pixels},
            {below_lower + y_to_next - 2 * y_below, inner, y_to_next, pixels},
            {below_lower + y_to_next + y_below, inner, y_to_next, pixels},
            {u + next_chroma + chroma_to_next - 2 * chroma_below, inner, chroma_to_next,
             chroma_bytes},
            {u + next_chroma + chroma_to_next + chroma_below, inner - 1, chroma_to_next,
             chroma_bytes},
            {v + next_chroma + chroma_to_next - 2 * chroma_below, inner, chroma_to_next,
             chroma_bytes},
            {v + next_chroma + chroma_to_next + chroma_below, inner - 1, chroma_to_next,
             chroma_bytes}};
        return lumalane::order_can_be_observed(written, outer);
    }
};

// ---- The same width ----------------------------------------------------------------------------

void stretch(const machine &machine, const call::picture &p, bool filtered, const adjustment *by) {
    constexpr int least_height = 8, step = 16;
    if (p.height < least_height)
        return;
    const double_height rows(p, 1, 2 * whole_steps(p.width >> 1, step / 2));
    const bool in_order = machine.in_order || rows.order_can_be_observed(filtered);
    const surface_stores stores(machine, p.dst, rows.dst_to_row, 4 * rows.pairs * rows.row_bytes,
                                in_order);
    rows_to_yuy2 to_yuy2(machine.rows, by, rows.pixels, in_order ? step : strip_pixels, stores);
    const bool in_pairs = !in_order && !rows.drifts();

    const way_between itself{nullptr}, average{machine.rows.average_rows},
        four_taps{machine.rows.four_taps};
    for (long long pair = 0; pair < rows.pairs; ++pair) {
        const long long after = rows.pairs - 1 - pair;
        // quirk: of the rows between the first pair and the last two, whose neighbours all exist,
        // each is filtered; so is luma between the last two
        // [stretches.yuy2_1x2_adjusted_filters_the_inner_rows_only]
        const bool inner = filtered && pair > 0;
        const way_between &upper = inner && after > 0 ? four_taps : average;
        const way_between &lower = after == 0 ? itself : inner ? four_taps : average;
        const way_between &chroma = after == 0 ? itself : inner && after > 1 ? four_taps : average;
        if (in_pairs) {
            to_yuy2.pair(rows.surface(pair, 0), rows.dst_to_row, rows.source(pair, 0), upper,
                         itself);
            to_yuy2.pair(rows.surface(pair, 2), rows.dst_to_row, rows.source(pair, 2), lower,
                         chroma);
        } else {
            to_yuy2.row(rows.surface(pair, 0), rows.source(pair, 0), itself, itself);
            to_yuy2.row(rows.surface(pair, 1), rows.source(pair, 1), upper, itself);
            to_yuy2.row(rows.surface(pair, 2), rows.source(pair, 2), itself, chroma);
            to_yuy2.row(rows.surface(pair, 3), rows.source(pair, 3), lower, chroma);
        }
    }
}

} // namespace

void strech_picture_1X2_yuy2(const machine &machine, const call::picture &p) {
    stretch(machine, p, false, nullptr);
}

// Adjusted after the interpolation.
void strech_picture_1X2_yuy2_ajust(const machine &machine, const call::picture &p) {
    const adjustment by = current_adjustment();
    stretch(machine, p, true, by.neutral() ? nullptr : &by);
}

// ---- Twice the width ---------------------------------------------------------------------------

namespace {

// Runs of source rows with what follows them, adjusted unless `by` is null.
class adjusted_runs {
public:
    adjusted_runs(const row_kernels &kernels_, const adjustment *by_)
        : kernels(kernels_), by(by_) {}

    static constexpr ptrdiff_t most = 4 * strip_pixels;
    static constexpr ptrdiff_t following = 16; // pixels: one sample is needed, and kernels want 8

    void forget() { luma.forget(), chroma.forget(); }

    // So many samples at `from`, of the row of luma of that number.
    const unsigned char *y(long long number, const unsigned char *from, ptrdiff_t samples) {
        if (!by)
            return from;
        return luma.row(number, [&](unsigned char *to) { adjust(to, from, samples, by->y); });
    }

    struct chroma_run {
        const unsigned char *u, *v;
    };

    chroma_run uv(long long pair, const unsigned char *u, const unsigned char *v,
                  ptrdiff_t samples) {
        if (!by)
            return {u, v};
        const unsigned char *const run = chroma.row(pair, [&](unsigned char *to) {
            adjust(to, u, samples, by->u);
            adjust(to + most_chroma, v, samples, by->v);
        });
        return {run, run + most_chroma};
    }

private:
    static constexpr ptrdiff_t most_chroma = (most + following) / 2;

    void adjust(unsigned char *to, const unsigned char *from, ptrdiff_t samples,
                const plane_adjustment &map) {
        row.src = from, row.dst = to, row.by = &map;
        kernels.emit_plane(row, samples);
    }

    const row_kernels &kernels;
    const adjustment *const by;
    plane_rows row{};
    recent_rows<4, most + following> luma;
    recent_rows<2, 2 * most_chroma> chroma; // U, then V
};

// quirk: the steps of a row are counted from one step less on, tested after each, and followed by the
// last one: there are two at least [stretches.yuy2_2x2_writes_at_least_two_steps]
ptrdiff_t pixels_of_double_width(int width) {
    const int left = (width >> 1) - 8;
    return static_cast<ptrdiff_t>(16 * ((left <= 0 ? 1 : steps_of(left, 8)) + 1));
}

// Adjusted, unless `by` is null, before the interpolation.
void double_both(const machine &machine, const call::picture &p, const adjustment *by) {
    constexpr int step = 16;
    const double_height rows(p, 2, pixels_of_double_width(p.width));
    const bool in_order = machine.in_order || rows.order_can_be_observed(false);
    const surface_stores stores(machine, p.dst, rows.dst_to_row, 4 * rows.pairs * rows.row_bytes,
                                in_order);
    const bool in_pairs = !in_order && !rows.drifts();
    const bool row_below_is_next = rows.y_below == rows.y_to_lower &&
                                   2 * rows.y_below == rows.y_to_next &&
                                   rows.chroma_below == rows.chroma_to_next;
    adjusted_runs runs(machine.rows, by);
    doubled_rows row{};
    row.stores = stores, row.dst_below = rows.dst_to_row;

    // Row k of a pair from x on, what lies between it and the row below, or both.
    const bool keeps_rows = in_pairs && row_below_is_next;
    const auto emit = [&](long long pair, int k, rows_made made, bool chroma_between, ptrdiff_t x,
                          ptrdiff_t n) {
        if (!keeps_rows)
            runs.forget();
        const source_rows at = rows.source(pair, k);
        const bool at_end = x + n == rows.pixels;
        const ptrdiff_t samples = at_end ? n : n + adjusted_runs::following;
        const auto luma = [&](int below) {
            return runs.y(2 * pair + k / 2 + below, at.y + below * at.y_below + x, samples);
        };
        const auto chroma = [&](int below) {
            const ptrdiff_t from = below * at.chroma_below + x / 2;
            return runs.uv(pair + below, at.u + from, at.v + from, samples / 2);
        };
        const unsigned char *const y = luma(0);
        const adjusted_runs::chroma_run uv = chroma(0);
        row.y = y, row.u = uv.u, row.v = uv.v, row.dst = rows.surface(pair, k) + 4 * x;
        row.made = made, row.repeats_last = at_end;
        if (made != rows_made::itself)
            row.y_below = distance(y, luma(1));
        row.chroma_below = chroma_between ? distance(uv.u, chroma(1).u) : 0;
        machine.rows.emit_doubled_yuy2(row, n);
    };

    const ptrdiff_t columns = !in_order && by ? adjusted_runs::most : rows.pixels;
    in_runs(rows.pixels, columns, [&](ptrdiff_t first, ptrdiff_t width) {
        runs.forget();
        const auto emit_row = [&](long long pair, int k, rows_made made, bool chroma_between) {
            in_runs(width, in_order ? step : width, [&](ptrdiff_t x, ptrdiff_t n) {
                emit(pair, k, made, chroma_between, first + x, n);
            });
        };
        // Rows are adjusted a pair ahead: so soon that their stores are over when they are loaded.
        const auto prepare = [&](long long pair) {
            if (!keeps_rows || pair >= rows.pairs)
                return;
            const ptrdiff_t samples =
                first + width == rows.pixels ? width : width + adjusted_runs::following;
            const source_rows upper = rows.source(pair, 0), lower = rows.source(pair, 2);
            runs.y(2 * pair, upper.y + first, samples);
            runs.uv(pair, upper.u + first / 2, upper.v + first / 2, samples / 2);
            runs.y(2 * pair + 1, lower.y + first, samples);
        };
        prepare(0);
        for (long long pair = 0; pair < rows.pairs; ++pair) {
            const bool last = pair + 1 == rows.pairs;
            prepare(pair + 1);
            if (in_pairs) {
                emit_row(pair, 0, rows_made::both, false);
            } else {
                emit_row(pair, 0, rows_made::itself, false);
                emit_row(pair, 1, rows_made::between, false);
            }
            if (in_pairs && !last) {
                emit_row(pair, 2, rows_made::both, true);
            } else {
                emit_row(pair, 2, rows_made::itself, !last);
                emit_row(pair, 3, last ? rows_made::itself : rows_made::between, !last);
            }
        }
    });
}

} // namespace

void strech_picture_2X2_yuy2(const machine &machine, const call::picture &p) {
    constexpr int least_height = 8;
    if (p.height >= least_height)
        double_both(machine, p, nullptr);
}

// quirk: the least height is twice that of the function without adjustment
// [stretches.yuy2_below_the_least_height_writes_nothing]
void strech_picture_2X2_yuy2_ajust(const machine &machine, const call::picture &p) {
    constexpr int least_height = 16;
    if (p.height < least_height)
        return;
    const adjustment by = current_adjustment();
    double_both(machine, p, by.neutral() ? nullptr : &by);
}

} // namespace lumalane
