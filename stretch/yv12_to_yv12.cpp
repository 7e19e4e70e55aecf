// Planes, by themselves or those of a YV12 picture, to twice the height or twice both.
#include "picture/adjustment.h"
#include "picture/calls.h"
#include "picture/geometry.h"
#include "picture/stores.h"
#include "picture/told_rows.h"
#include "rows/strip.h"
#include "stretch/doubled_pairs.h"
#include "stretch/recent_rows.h"

namespace lumalane {

namespace {

struct plane {
    const unsigned char *src;
    unsigned char *dst;
    int width, height; // of the source
    ptrdiff_t src_pitch, dst_pitch;
};

plane_stretch_call sizes_of(const plane &p) {
    return {p.width, p.height, static_cast<int>(p.src_pitch), static_cast<int>(p.dst_pitch)};
}

call_rows rows_at(const plane &p) {
    call_rows rows;
    rows.at(pointer::src, p.src), rows.at(pointer::dst, p.dst);
    return rows;
}

// ---- Adjusted ----------------------------------------------------------------------------------

// quirk: rows come a row lower than one would expect: rows 0 and 1 are the first one of the source,
// each average lies above the row that it leads to, and the last row of the source is lost
// [plane_stretches.adjusted_2x2_starts_twice_with_the_first_row_and_loses_the_last]
class adjusted_stretch {
public:
    // `bytes`: of all planes that the call writes.
    adjusted_stretch(const machine &machine_, const plane &p_, int times_width,
                     const plane_adjustment &by_, long long bytes_)
        : on(machine_), p(p_), by(by_), times(times_width), bytes(bytes_),
          // quirk: twice the width takes the source's rows as one continuous run, but for the row
          // below, which is a pitch further on
          // [plane_stretches.adjusted_2x2_takes_the_source_rows_as_one_run_and_reads_below_at_the_pitch]
          to_next_row(times == 2 ? p.width : p.src_pitch),
          pairs(static_cast<unsigned>(p.height) - 2u + 1LL), samples(whole_steps(p.width, 8)),
          beyond(p.width % 16), whole(p.width - beyond),
          final_row(p.src + static_cast<ptrdiff_t>(pairs) * to_next_row - p.src_pitch),
          in_order(keeps_order(on, p, [&](call_rows &told) {
              detail::rows_of_adjusted_plane(pointer::src, 0, sizes_of(p), times, told);
          })) {}

    void stretch() const {
        const surface_stores stores(on, p.dst, p.dst_pitch, bytes, in_order,
                                    times == 1 ? bound_by::loads_and_stores : bound_by::stores,
                                    rows_stored::in_turn);
        make_row(p.dst, p.src, stores);
        make_pairs(stores);
        // Over the last average.
        unsigned char *const last = p.dst + 2 * static_cast<ptrdiff_t>(pairs) * p.dst_pitch;
        make_row(last, final_row, stores);
        // quirk: the row that is stored twice comes the second time right behind the first
        // [plane_stretches.adjusted_1x2_stores_the_last_row_right_behind_the_one_before]
        make_row(last + static_cast<ptrdiff_t>(times) * p.width,
                 final_row + to_next_row - p.src_pitch, store_policy::cached);
    }

private:
    stretched_rows rows(unsigned char *dst, const unsigned char *src, rows_made made,
                        store_policy policy) const {
        stretched_rows r{src, dst};
        r.made = made, r.stores = policy, r.by = by.unless_neutral();
        r.src_below = p.src_pitch, r.dst_below = p.dst_pitch;
        return r;
    }

    // `end`: where the row ends, so that the last sample is repeated.
    void make(stretched_rows run, ptrdiff_t count, ptrdiff_t step, ptrdiff_t end) const {
        in_runs(count, in_order ? step : count, [&](ptrdiff_t x, ptrdiff_t n) {
            run.repeats_last = x + n >= end;
            (times == 2 ? on.rows.double_plane : on.rows.stretch_plane)(run, n);
            run.src += n, run.dst += times * n;
        });
    }

    void make_row(unsigned char *dst, const unsigned char *src, store_policy policy) const {
        make(rows(dst, src, rows_made::itself, policy), samples, 8, samples);
    }

    void make_pairs(store_policy policy) const {
        // So many pairs at once that what is beyond whole steps finds their lines in the cache.
        constexpr ptrdiff_t in_cache = 16;
        const ptrdiff_t all = static_cast<ptrdiff_t>(pairs);
        const ptrdiff_t most = in_order ? 1 : beyond != 0 ? in_cache : all;
        for (ptrdiff_t pair = 0; pair < all; pair += most) {
            // From `src_x` samples on to `dst_x` bytes on.
            const auto some = [&](ptrdiff_t src_x, ptrdiff_t dst_x, store_policy stores) {
                stretched_rows r =
                    rows(p.dst + (2 * pair + 1) * p.dst_pitch + dst_x,
                         p.src + pair * to_next_row + src_x, rows_made::both, stores);
                r.count = all - pair < most ? all - pair : most;
                r.src_next = to_next_row, r.dst_next = 2 * p.dst_pitch;
                return r;
            };
            make(some(0, 0, policy), whole, 16 / times, p.width);
            // quirk: what a width off 16 leaves is done in 16 samples that end where the row does, never
            // twice as wide
            // [plane_stretches.adjusted_2x2_does_not_double_the_last_samples_of_a_width_off_16]
            if (beyond != 0)
                on.rows.stretch_plane(
                    some(p.width - 16, times * whole + beyond - 16, store_policy::cached), 16);
        }
    }

    const machine &on;
    const plane p;
    const plane_adjustment by;
    const int times;
    const long long bytes;
    const ptrdiff_t to_next_row;
    const long long pairs;
    const ptrdiff_t samples;              // of a row that is by itself
    const int beyond;                     // of a row of a pair, past whole steps of 16
    const ptrdiff_t whole;                // and before
    const unsigned char *const final_row; // the one before the last
    const bool in_order;
};

// quirk: the gain is that of luma for every plane, and 2, the number of V, stands for the offset of
// U [plane_stretches.adjusted_ones_have_the_luma_gain_for_every_plane_and_its_offset]
void stretch_numbered(const machine &machine, const plane &p, const adjustment &all,
                      int times_width, int plane_number, long long bytes) {
    plane_adjustment by = all.y;
    by.offset = (plane_number == 1 ? all.y : plane_number == 2 ? all.u : all.v).offset;
    adjusted_stretch(machine, p, times_width, by, bytes).stretch();
}

long long bytes_of_plane(int width, int height, int times_width) {
    return 2LL * height * times_width * width;
}

void stretch_planes(const machine &machine, const call::picture &p, int times_width) {
    const long long bytes = bytes_of_plane(p.width, p.height, times_width) * 3 / 2;
    const detail::chroma_places chroma = detail::chroma_of_adjusted_planes(lumalane::sizes_of(p));
    const adjustment all = current_adjustment();
    const auto stretch_chroma = [&](const unsigned char *src, long long place, int number) {
        stretch_numbered(machine,
                         {src, p.dst + static_cast<ptrdiff_t>(place), p.width >> 1, p.height >> 1,
                          p.src_pitch >> 1, p.dst_pitch >> 1},
                         all, times_width, number, bytes);
    };
    stretch_numbered(machine, {p.src, p.dst, p.width, p.height, p.src_pitch, p.dst_pitch}, all,
                     times_width, 1, bytes);
    // quirk: V gets the offset of U, and U that of V
    // [plane_stretches.yv12_lies_in_one_buffer_with_v_before_u_and_crossed_offsets]
    stretch_chroma(p.src_v, chroma.v, 2);
    stretch_chroma(p.src_u, chroma.u, 3);
}

plane plane_of(const call::plane_stretch &p) {
    return {p.src, p.dst, p.width, p.height, p.src_pitch, p.dst_pitch};
}

} // namespace

void strech_pic_2X2_adjust(const machine &machine, const call::plane_stretch_ajust &p) {
    stretch_numbered(machine, plane_of(p), current_adjustment(), 2, p.plane_number,
                     bytes_of_plane(p.width, p.height, 2));
}

void strech_pic_1X2_adjust(const machine &machine, const call::plane_stretch_ajust &p) {
    stretch_numbered(machine, plane_of(p), current_adjustment(), 1, p.plane_number,
                     bytes_of_plane(p.width, p.height, 1));
}

void strech_picture_2X2_yv12_ajust(const machine &machine, const call::picture &p) {
    stretch_planes(machine, p, 2);
}

void strech_picture_1X2_yv12_ajust(const machine &machine, const call::picture &p) {
    stretch_planes(machine, p, 1);
}

// ---- As they are -------------------------------------------------------------------------------

namespace {

constexpr int column = 8; // samples
constexpr int head = 64;  // samples, of whole vectors at twice the width

// Stores 8 samples without their `bits` lowest bits, the first sample lowest.
void store_without_low_bits(unsigned char *to, const unsigned char *from, unsigned bits) {
    for (unsigned i = 0; i < column; ++i) {
        const unsigned lost = bits <= 8 * i ? 0 : bits - 8 * i;
        to[i] = static_cast<unsigned char>(lost >= 8 ? 0 : from[i] >> lost << lost);
    }
}

// The promised order is that of columns of 8 samples, each from top to bottom.
class plain_doubling {
public:
    plain_doubling(const machine &machine_, const plane &p_)
        : on(machine_), p(p_), height(p.height < 1 ? 1 : p.height),
          // quirk: the first column loses so many bits of each 8 samples as the surface has bytes
          // [plane_stretches.plain_2x2_clears_only_as_many_bits_as_twice_the_height_times_the_pitch]
          lost_bits(static_cast<unsigned>(product(twice(p.height), static_cast<int>(p.dst_pitch)))),
          // quirk: there are two columns at least
          // [plane_stretches.plain_2x2_of_width_8_has_two_strips]
          samples(whole_steps_signed(p.width, column, 2)) {}

    void stretch() const {
        // Rows are cleared of all bits of the first column.
        const bool in_order = lost_bits < 8 * column || keeps_order(on, p, [&](call_rows &rows) {
                                  detail::rows_of_plain_plane(sizes_of(p), rows);
                              });
        const surface_stores stores(on, p.dst, p.dst_pitch, 2LL * height * 2 * samples, in_order,
                                    bound_by::stores, rows_stored::in_turn);
        if (in_order)
            for (ptrdiff_t x = 0; x < samples; x += column)
                double_column(x);
        else
            double_rows(stores);
    }

private:
    const unsigned char *row_at(ptrdiff_t row) const { return p.src + row * p.src_pitch; }

    unsigned char *surface(ptrdiff_t row) const { return p.dst + 2 * row * p.dst_pitch; }

    void double_column(ptrdiff_t x) const {
        const bool at_end = x + column == samples;
        recent_rows<2, 2 * column> rows;
        const auto row = [&](ptrdiff_t number) {
            return rows.row(number, [&](unsigned char *line) {
                const unsigned char *const from = row_at(number) + x;
                store_without_low_bits(line, from, x == 0 ? lost_bits : 0);
                line[column] = from[at_end ? column - 1 : column];
            });
        };
        for (ptrdiff_t number = 0; number < height; ++number) {
            stretched_rows r{row(number), surface(number) + 2 * x};
            if (number + 1 < height) {
                r.made = rows_made::both;
                r.src_below = distance(r.src, row(number + 1)), r.dst_below = p.dst_pitch;
                on.rows.double_plane(r, column);
                continue;
            }
            on.rows.double_plane(r, column);
            // quirk: all columns but the last one store their last row below the surface, not in
            // its last row [plane_stretches.plain_2x2_stores_the_last_row_below_the_picture_in_all_strips_but_the_last]
            r.dst += (at_end ? 1 : 2) * p.dst_pitch;
            on.rows.double_plane(r, column);
        }
    }

    // Some rows at a time, while those that are cleared afterwards are still in the cache. Around the
    // cache nothing is cleared afterwards: there the first 64 samples of a row come from a copy of which
    // the first 8 are cleared.
    void double_rows(store_policy stores) const {
        const ptrdiff_t at_once = doubled_pairs::most(samples), last = height - 1;
        const bool clears = !is_non_temporal(stores) || samples <= head;
        const auto make = [&](stretched_rows r, ptrdiff_t from, ptrdiff_t to, store_policy policy) {
            r.src += from, r.dst += 2 * from;
            r.repeats_last = to == samples, r.stores = policy;
            on.rows.double_plane(r, to - from);
        };
        recent_rows<2, head + column> heads;
        const auto head_of = [&](ptrdiff_t number) {
            return heads.row(number, [&](unsigned char *line) {
                __builtin_memcpy(line, row_at(number), head + 1);
                __builtin_memset(line, 0, column);
            });
        };
        in_runs(last, at_once, [&](ptrdiff_t first, ptrdiff_t count) {
            stretched_rows r{row_at(first), surface(first), rows_made::both};
            r.src_below = p.src_pitch, r.dst_below = p.dst_pitch;
            r.count = count, r.src_next = p.src_pitch, r.dst_next = 2 * p.dst_pitch;
            make(r, clears ? 0 : head, samples, clears ? in_cache(stores) : stores);
            for (ptrdiff_t row = first; row < first + count; ++row) {
                if (clears) {
                    const unsigned char next = row_at(row)[column], below = row_at(row + 1)[column];
                    clear_column(surface(row), next, next);
                    clear_column(surface(row) + p.dst_pitch, next, below);
                } else {
                    r.src = head_of(row), r.dst = surface(row), r.count = 1;
                    r.src_below = distance(r.src, head_of(row + 1));
                    make(r, 0, head, stores);
                }
            }
        });
        stretched_rows r{row_at(last), surface(last)};
        const unsigned char next = r.src[column];
        make(r, 0, samples, store_policy::cached);
        clear_column(r.dst, next, next);
        r.dst += 2 * p.dst_pitch;
        make(r, 0, samples - column, store_policy::cached);
        clear_column(r.dst, next, next);
        r.dst -= p.dst_pitch;
        make(r, samples - column, samples, store_policy::cached);
    }

    // The first column of a row without all bits, between rows with those samples after it.
    static void clear_column(unsigned char *to, unsigned char next, unsigned char next_below) {
        __builtin_memset(to, 0, 2 * column - 1);
        const unsigned between = (next + 1u) / 2, between_below = (next_below + 1u) / 2;
        to[2 * column - 1] = static_cast<unsigned char>((between + between_below + 1) / 2);
    }

    const machine &on;
    const plane p;
    const int height; // one at least
    const unsigned lost_bits;
    const ptrdiff_t samples;
};

} // namespace

void strech_pic_2X2(const machine &machine, const call::plane_stretch &p) {
    plain_doubling(machine, plane_of(p)).stretch();
}

} // namespace lumalane
