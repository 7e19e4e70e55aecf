#include <bit>

#include "tests/model/adjustment.h"
#include "tests/model/count_down.h"
#include "tests/model/lanes.h"
#include "tests/model/models.h"
#include "tests/model/picture.h"
#include "tests/model/stretch.h"

namespace model {

namespace {

struct stretched_plane {
    address from, to;
    int width, height, from_pitch, to_pitch;
};

// Chroma planes have the luma gain, too.
adjustment adjustment_of(int plane_number) {
    const adjustment_state &s = state();
    return {s.luma_gain, plane_number == 1   ? s.luma_offset
                         : plane_number == 2 ? s.u_offset
                                             : s.v_offset};
}

// As wide as it was, or twice as wide.
template <int times_width>
void stretch_adjusted(memory &m, const stretched_plane &p, int plane_number) {
    const adjustment by = adjustment_of(plane_number);
    const std::intptr_t from_pitch = p.from_pitch, to_pitch = p.to_pitch;
    const auto store = [&](address to, const auto &row) {
        m.store_run(to, treat(adjust, row, by));
    };
    const auto widened = [&]<std::size_t count>(address from, bool last) {
        const auto x = m.load_run<count>(from);
        if constexpr (times_width == 1)
            return x;
        else
            return last ? doubled_at_edge(x) : doubled(x, m.load(from + count));
    };
    const auto store_row = [&](address from, address to) {
        for (int x = 0; x < p.width; x += 8)
            store(to + times_width * x, widened.template operator()<8>(from + x, x + 8 >= p.width));
    };

    address from = p.from;
    address to = p.to;
    store_row(from, to);
    to += to_pitch;

    // Twice the width takes the source rows as one run; it reads the row below at the pitch.
    const std::intptr_t to_next_row = times_width == 2 ? p.width : from_pitch;
    constexpr int step = times_width == 2 ? 8 : 16;
    const int beyond = p.width % 16;
    const int whole = p.width - beyond;
    for (int row = 0; row < p.height - 1; ++row) {
        for (int x = 0; x < whole; x += step) {
            const bool last = x + step >= p.width;
            const auto upper = widened.template operator()<step>(from + x, last);
            const auto lower = widened.template operator()<step>(from + x + from_pitch, last);
            store(to + times_width * x, upper);
            store(to + times_width * x + to_pitch, average(upper, lower));
        }
        if (beyond != 0) {
            // The last 16 samples once more; they are not doubled, and both pointers go back by as
            // much.
            const int back = 16 - beyond;
            const address last_from = from + whole - back;
            const address last_to = to + times_width * whole - back;
            const auto upper = m.load_run<16>(last_from);
            store(last_to, upper);
            store(last_to + to_pitch, average(upper, m.load_run<16>(last_from + from_pitch)));
        }
        from += to_next_row;
        to += 2 * to_pitch;
    }

    // Over the last average: the row before the last, and once more behind it.
    from -= from_pitch;
    to -= to_pitch;
    store_row(from, to);
    store_row(from + to_next_row - from_pitch, to + times_width * p.width);
}

// Luma, then V with the offset of U, then U with that of V.
template <int times_width>
void stretch_planes(memory &m, const picture &p) {
    const int luma_bytes = low32(2 * std::int64_t{p.height} * p.dst_pitch);
    const address luma_to = address_of(p.dst);
    const address v_to = luma_to + luma_bytes;
    const address u_to = v_to + (luma_bytes >> 2);
    const auto stretch_chroma = [&](unsigned char *from, address to, int plane_number) {
        stretch_adjusted<times_width>(
            m,
            {address_of(from), to, p.width >> 1, p.height >> 1, p.src_pitch >> 1, p.dst_pitch >> 1},
            plane_number);
    };
    stretch_adjusted<times_width>(
        m, {address_of(p.src), luma_to, p.width, p.height, p.src_pitch, p.dst_pitch}, 1);
    stretch_chroma(p.src_v, v_to, 2);
    stretch_chroma(p.src_u, u_to, 3);
}

// Shifts 8 samples, the first of them lowest, down and back up: the lower bits are lost.
samples<8> without_low_bits(const samples<8> &x, unsigned bits) {
    if (bits >= 64)
        return {};
    std::uint64_t all = 0;
    for (int i = 7; i >= 0; --i)
        all = all << 8 | x[i];
    all = all >> bits << bits;
    samples<8> kept;
    for (std::uint8_t &sample : kept) {
        sample = static_cast<std::uint8_t>(all);
        all >>= 8;
    }
    return kept;
}

} // namespace

void strech_picture_2X2_yv12_ajust(memory &m, LUMALANE_PARAMETERS_picture) {
    stretch_planes<2>(m, {LUMALANE_ARGUMENTS_picture});
}

void strech_picture_1X2_yv12_ajust(memory &m, LUMALANE_PARAMETERS_picture) {
    stretch_planes<1>(m, {LUMALANE_ARGUMENTS_picture});
}

void strech_pic_2X2_adjust(memory &m, LUMALANE_PARAMETERS_plane_stretch_ajust) {
    stretch_adjusted<2>(m, {address_of(src), address_of(dst), width, height, src_pitch, dst_pitch},
                        plane_number);
}

void strech_pic_1X2_adjust(memory &m, LUMALANE_PARAMETERS_plane_stretch_ajust) {
    stretch_adjusted<1>(m, {address_of(src), address_of(dst), width, height, src_pitch, dst_pitch},
                        plane_number);
}

// Strips of 8 samples from top to bottom. The first one loses as many bits of each row as a strip
// has bytes to the next one's top. All but the last one store their last row below the picture and
// leave the row above that.
void strech_pic_2X2(memory &m, LUMALANE_PARAMETERS_plane_stretch) {
    address from = address_of(src);
    address to = address_of(dst);
    const auto stretch_strip = [&](unsigned lost_bits, bool last) {
        const auto doubled_row = [&](int row) {
            const address at = from + row * std::intptr_t{src_pitch};
            const auto x = without_low_bits(m.load_run<8>(at), lost_bits);
            return last ? doubled_at_edge(x) : doubled(x, m.load(at + 8));
        };
        const auto store_row = [&](int row, const samples<16> &stored) {
            m.store_run(to + row * std::intptr_t{dst_pitch}, stored);
        };
        samples<16> upper = doubled_row(0);
        for (int row = 0; row < height - 1; ++row) {
            const samples<16> lower = doubled_row(row + 1);
            store_row(2 * row, upper);
            store_row(2 * row + 1, average(upper, lower));
            upper = lower;
        }
        store_row(2 * height - 2, upper);
        store_row(last ? 2 * height - 1 : 2 * height, upper);
        from += 8;
        to += 16;
    };
    unsigned lost_bits = low32(2 * std::int64_t{height} * dst_pitch);
    count_down_signed(width - 8, 8, [&] {
        stretch_strip(lost_bits, false);
        lost_bits = 0;
    });
    stretch_strip(0, true);
}

} // namespace model
