#include <cstdlib>

#include "tests/model/adjustment.h"
#include "tests/model/count_down.h"
#include "tests/model/lanes.h"
#include "tests/model/models.h"
#include "tests/model/samples.h"
#include "tests/model/yuy2.h"

namespace model {

namespace {

// Where samples of an upper row lie, and those of the lower row below them.
struct two_rows {
    address upper, lower;
};

// How little the rows match in a direction: from 0, down to the right, to 4, down to the left; 2 is
// straight down.
std::int16_t cost(memory &m, two_rows at, int direction) {
    std::int16_t sum = 0;
    for (int k = 0; k < 4; ++k)
        sum = add_saturate(sum, low16(std::abs(m.load(at.upper + direction - 2 + k) -
                                               m.load(at.lower + 2 - direction + k))));
    return sum;
}

// The average along the direction that matches best; of several the lowest one.
std::uint8_t along_the_edge(memory &m, two_rows at) {
    std::int16_t best = 32767;
    for (int direction = 0; direction < 5; ++direction)
        best = std::min(best, low16(shift_left(cost(m, at, direction), 3) | direction));
    const int direction = best & 7;
    return average(m.load(at.upper + direction - 2), m.load(at.lower + 2 - direction));
}

// Groups of 4 samples: the average straight down where the rows differ by 32 in all or less.
template <std::size_t count>
samples<count> directed(memory &m, two_rows at) {
    samples<count> between = average(m.load_run<count>(at.upper), m.load_run<count>(at.lower));
    for (std::size_t group = 0; group < count; group += 4) {
        const auto upper = m.load_run<4>(at.upper + group);
        const auto lower = m.load_run<4>(at.lower + group);
        int difference = 0;
        for (int i = 0; i < 4; ++i)
            difference += std::abs(upper[i] - lower[i]);
        if (difference > 32)
            for (std::size_t i = group; i < group + 4; ++i)
                between[i] = along_the_edge(m, {at.upper + i, at.lower + i});
    }
    return between;
}

enum class origin { copied, averaged, directed };

template <std::size_t count>
samples<count> interpolate(memory &m, origin from, two_rows at, adjustment by) {
    return treat(adjust,
                 from == origin::copied ? m.load_run<count>(at.upper)
                 : from == origin::averaged
                     ? average(m.load_run<count>(at.upper), m.load_run<count>(at.lower))
                     : directed<count>(m, at),
                 by);
}

// A row of the frame and its chroma, to a row of the surface.
class row_stretcher {
public:
    row_stretcher(memory &memory_, address y_, address u_, address v_, address to_,
                  int chroma_step_)
        : m(memory_), y(y_), u(u_), v(v_), to(to_), chroma_step(chroma_step_) {}

    void copy(int length) {
        count_down(length, 16, [&] { store_step(origin::copied, origin::copied); });
    }
    // Only what lies between rows is interpolated; without an edge in the first and the last 16
    // pixels.
    void interpolate_between(int length, bool luma, bool chroma) {
        const auto step = [&](origin between) {
            store_step(luma ? between : origin::copied, chroma ? between : origin::copied);
        };
        step(origin::averaged);
        count_down_signed(length - 32, 16, [&] { step(origin::directed); });
        step(origin::averaged);
    }

private:
    void store_step(origin luma, origin chroma) {
        const std::intptr_t luma_step = 2 * std::intptr_t{chroma_step};
        m.store_run(to, pack_yuy2(interpolate<16>(m, luma, {y, y + luma_step}, state().luma()),
                                  interpolate<8>(m, chroma, {u, u + chroma_step}, state().u()),
                                  interpolate<8>(m, chroma, {v, v + chroma_step}, state().v())));
        y += 16;
        u += 8;
        v += 8;
        to += 32;
    }

    memory &m;
    address y, u, v, to;
    int chroma_step;
};

} // namespace

void strech_opt_yuy2_ajust(memory &m, LUMALANE_PARAMETERS_frame_stretch) {
    if (height < 8)
        return;
    const int length = m.field(frame->luma_pitch);
    const bool one_field = m.field(frame->field_mode) == 1;
    const int row_step = one_field ? low32(2 * std::int64_t{length}) : length;
    const int chroma_step = row_step >> 1;
    const int rows_to_start = low32(std::int64_t{length} * start);
    const int offset = one_field ? rows_to_start : rows_to_start >> 1;
    address y = address_of(m.field(frame->plane_y)) + offset;
    address u = address_of(m.field(frame->plane_u)) + (offset >> 2);
    address v = address_of(m.field(frame->plane_v)) + (offset >> 2);
    address to = address_of(dst);

    // A row of the pair to a row of the surface.
    const auto row_of_pair = [&](int row, int to_row) {
        return row_stretcher(m, y + row * std::intptr_t{row_step}, u, v,
                             to + to_row * std::intptr_t{dst_pitch}, chroma_step);
    };
    for (int pair = 0; pair < height / 2 - 1; ++pair) {
        row_of_pair(0, 0).copy(length);
        row_of_pair(0, 1).interpolate_between(length, true, false);
        row_of_pair(1, 2).interpolate_between(length, false, true);
        row_of_pair(1, 3).interpolate_between(length, true, true);
        y += 2 * std::intptr_t{row_step};
        u += chroma_step;
        v += chroma_step;
        to += 4 * std::intptr_t{dst_pitch};
    }
    row_of_pair(0, 0).copy(length);
    row_of_pair(0, 1).interpolate_between(length, true, false);
    row_of_pair(1, 2).copy(length);
    row_of_pair(1, 3).copy(length);
}

} // namespace model
