// Frames into YUY2 surfaces of twice the height, interpolated along edges.
#include "frame/kernels.h"
#include "stretch/between_rows.h"

namespace lumalane::LUMALANE_LANES {

namespace {

constexpr int least_height = 8;

// The average in the direction in which two rows match best.
//
// Direction d of five, from right below (0) to left below (4), pairs the upper sample at d - 2 with
// the lower one at 2 - d. What it costs is the sum of the differences of four pairs, from the
// sample on to the right. Where a group of four samples differs by no more than `flat` in all
// straight down, the average straight down serves.
struct along_edges {
    static constexpr int directions = 5, straight_down = 2, flat = 32;

    template <class Row>
    LUMALANE_INLINE auto operator()(const Row &row) const {
        return between(row, row(0));
    }

private:
    // Eight times the costs of the even and of the odd samples.
    template <int n>
    struct costs {
        words<n / 2> even, odd;
    };

    template <int n, class Row>
    LUMALANE_INLINE static costs<n> cost(const Row &row, int direction) {
        const auto differences = [&](int offset) {
            return absolute_difference(row(0, direction - 2 + offset),
                                       row(1, 2 - direction + offset));
        };
        const bytes<n> first = differences(0), third = differences(2), fifth = differences(4);
        const words<n / 2> shared =
            add(odd_times<8>(first), add(even_times<8>(third), odd_times<8>(third)));
        return {add(even_times<8>(first), shared), add(shared, even_times<8>(fifth))};
    }

    // Cost and direction in one number: of equal costs the lowest direction is the smallest.
    template <int direction, int n, class Row>
    LUMALANE_INLINE static costs<n> smallest(const Row &row, const costs<n> &down) {
        costs<n> here = direction == straight_down ? down : cost<n>(row, direction);
        here = {add(here.even, fill_words<n / 2>(direction)),
                add(here.odd, fill_words<n / 2>(direction))};
        if constexpr (direction + 1 < directions) {
            const costs<n> others = smallest<direction + 1>(row, down);
            here = {minimum(here.even, others.even), minimum(here.odd, others.odd)};
        }
        return here;
    }

    template <int direction, int n, class Row>
    LUMALANE_INLINE static bytes<n> average_along(const Row &row, bytes<n> best) {
        const bytes<n> here = average(row(0, direction - 2), row(1, 2 - direction));
        if constexpr (direction + 1 < directions)
            return choose(equal(best, fill_bytes<n>(direction)), here,
                          average_along<direction + 1>(row, best));
        else
            return here;
    }

    template <int n, class Row>
    LUMALANE_INLINE static bytes<n> between(const Row &row, bytes<n> upper) {
        const bytes<n> down = average(upper, row(1));
        const costs<n> down_costs = cost<n>(row, straight_down);
        const bytes<n> edges = groups_above(down_costs.even, 8 * flat);
        if (all_zero(edges))
            return down;
        const costs<n> found = smallest<0>(row, down_costs);
        const words<n / 2> direction = fill_words<n / 2>(7);
        const bytes<n> best = join(found.even & direction, found.odd & direction);
        return choose(edges, average_along<0>(row, best), down);
    }

    // U and V by themselves, in one vector.
    template <int n, class Row>
    LUMALANE_INLINE static chroma_halves<n> between(const Row &row, chroma_halves<n> upper) {
        return {between([&](int k, ptrdiff_t offset = 0) { return row(k, offset).uv; }, upper.uv)};
    }
};

// Near the ends of a row there is nothing to search on one side.
LUMALANE_INLINE average_below at_ends(along_edges) { return {}; }
LUMALANE_INLINE the_row_itself at_ends(the_row_itself) { return {}; }

// What is to be done, as the frame tells.
struct frame_picture {
    rows_at_hand at;
    unsigned char *dst;
    int width, height, row_step, dst_pitch;

    frame_picture(const tagVideoFrame &frame, int start, int height_, unsigned char *dst_,
                  int dst_pitch_)
        : dst(dst_), width(frame.luma_pitch), height(height_), dst_pitch(dst_pitch_) {
        const bool one_field = frame.field_mode == 1;
        row_step = one_field ? twice(width) : width;
        const int to_start = product(width, start);
        const int offset = one_field ? to_start : to_start >> 1;
        const ptrdiff_t chroma_step = row_step >> 1;
        // Deliberately a quarter, which for an odd start in a field is no row of chroma.
        at = {frame.plane_y + offset, frame.plane_u + (offset >> 2), frame.plane_v + (offset >> 2),
              2 * chroma_step, chroma_step};
    }
};

// One row after the other in steps of 16 pixels.
template <class Stretch>
struct rows_stepwise {
    const Stretch &stretched;
    const frame_picture &frame;

    void copy(unsigned char *to, rows_at_hand at) const {
        unsigned columns = static_cast<unsigned>(frame.width);
        do
            step(to, at, the_row_itself{}, the_row_itself{});
        while (again(columns, 16));
    }

    template <class Luma, class Chroma>
    void between(unsigned char *to, rows_at_hand at, Luma luma_by, Chroma chroma_by) const {
        step(to, at, at_ends(luma_by), at_ends(chroma_by));
        int left = difference(frame.width, 32);
        do {
            step(to, at, luma_by, chroma_by);
            left -= 16;
        } while (left > 0);
        step(to, at, at_ends(luma_by), at_ends(chroma_by));
    }

private:
    template <class Luma, class Chroma>
    void step(unsigned char *&to, rows_at_hand &at, Luma luma_by, Chroma chroma_by) const {
        stretched.template row<16>(to, at, luma_by, chroma_by);
        at = at.after(16), to += 32;
    }
};

template <class Stretch>
void frame_stepwise(const frame_picture frame, const Stretch stretched) {
    const rows_stepwise<Stretch> rows{stretched, frame};
    const ptrdiff_t dst_pitch = frame.dst_pitch;
    rows_at_hand upper = frame.at, lower = frame.at;
    lower.y += frame.row_step;
    unsigned char *to = frame.dst;
    for (int pairs = frame.height / 2; pairs > 1; --pairs) {
        rows.copy(to, upper);
        rows.between(to + dst_pitch, upper, along_edges{}, the_row_itself{});
        rows.between(to + 2 * dst_pitch, lower, the_row_itself{}, along_edges{});
        rows.between(to + 3 * dst_pitch, lower, along_edges{}, along_edges{});
        const ptrdiff_t y_step = 2 * static_cast<ptrdiff_t>(frame.row_step);
        rows_at_hand *const both[] = {&upper, &lower};
        for (rows_at_hand *const at : both)
            at->y += y_step, at->u += at->chroma_pitch, at->v += at->chroma_pitch;
        to += 4 * dst_pitch;
    }
    rows.copy(to, upper);
    rows.between(to + dst_pitch, upper, along_edges{}, the_row_itself{});
    rows.copy(to + 2 * dst_pitch, lower);
    rows.copy(to + 3 * dst_pitch, lower);
}

template <class Put, class Stretch>
void frame_wide(const frame_picture frame, const Stretch stretched) {
    const ptrdiff_t dst_pitch = frame.dst_pitch, last = frame.width - 16;
    rows_at_hand at = frame.at;
    unsigned char *to = frame.dst;
    const auto pair = [&](auto inner, auto at_the_ends) {
        stretched.template pair<16, Put>(to, dst_pitch, at, at_the_ends);
        stretched.template pair_wide<Put>(to, dst_pitch, at, 16, last, inner);
        stretched.template pair<16, Put>(to + 2 * last, dst_pitch, at.after(last), at_the_ends);
        at = at.next_pair();
        to += 4 * dst_pitch;
    };
    for (int pairs = frame.height / 2; pairs > 1; --pairs)
        pair(pair_by<along_edges>{}, pair_by<average_below>{});
    pair(last_pair_by<along_edges>{}, last_pair_by<average_below>{});
}

// True where nobody can tell the order of the stores: rows have whole steps, and at least the three
// that they are made of; those on the surface do not overlap; nothing is read back that was
// written.
bool frame_is_regular(const frame_picture &frame) {
    const long long pairs = frame.height / 2, width = frame.width;
    if (width < 48 || width % 16 != 0 || !rows_apart(frame.dst_pitch, 2 * width))
        return false;
    const rows_at_hand &at = frame.at;
    const extent dst = rows_at(frame.dst, 4 * pairs, frame.dst_pitch, 2 * width);
    return apart(dst, rows_at(at.y, 2 * pairs, at.y_pitch, width)) &&
           apart(dst, rows_at(at.u, pairs, at.chroma_pitch, width / 2)) &&
           apart(dst, rows_at(at.v, pairs, at.chroma_pitch, width / 2));
}

} // namespace

void strech_opt_yuy2_ajust(LUMALANE_PARAMETERS_frame_stretch) {
    if (height < least_height)
        return;
    const frame_picture picture(*frame, start, height, dst, dst_pitch);
    with_adjustment([&](auto adjusted) {
        const stretch stretched{undealt_planes{}, made_rows{} | adjusted | yuy2{}};
        if (!frame_is_regular(picture))
            return frame_stepwise(picture, stretched);
        with_put(dst, dst_pitch, 4LL * height * picture.width,
                 [&](auto put) { frame_wide<decltype(put)>(picture, stretched); });
    });
}

} // namespace lumalane::LUMALANE_LANES
