#include <tuple>

#include "tests/model/models.h"
#include "tests/model/row_pairs.h"
#include "tests/model/samples.h"
#include "tests/model/yuy2.h"

namespace model {

namespace {

// One row after the other in steps of 16 pixels, of which `convert(luma, cb, cr)` makes the bytes
// to be written; both rows of a pair read the same row of U and V.
template <class Convert>
void load_rows(memory &m, const picture &p, Convert convert) {
    constexpr int step_bytes = std::tuple_size_v<decltype(convert(0, 0, 0))>;
    const int luma_increment = low32(std::int64_t{p.src_pitch} - p.width);
    const int chroma_increment = luma_increment >> 1;
    const int chroma_rewind = p.width >> 1;
    const int dst_increment =
        low32(std::int64_t{p.dst_pitch} - step_bytes / 16 * std::int64_t{p.width});

    address luma = address_of(p.src);
    address cb = address_of(p.src_u);
    address cr = address_of(p.src_v);
    address to = address_of(p.dst);
    const auto load_row = [&] {
        count_down(p.width, 16, [&] {
            m.store_run(to, convert(luma, cb, cr));
            luma += 16;
            cb += 8;
            cr += 8;
            to += step_bytes;
        });
        luma += luma_increment;
        to += dst_increment;
    };
    count_down(p.height, 2, [&] {
        load_row();
        cb -= chroma_rewind;
        cr -= chroma_rewind;
        load_row();
        cb += chroma_increment;
        cr += chroma_increment;
    });
}

std::array<std::uint8_t, 16> adjusted_luma(memory &m, address from) {
    return treat(adjust, m.load_run<16>(from), state().luma());
}

// The average of each pair of samples.
template <std::size_t count>
samples<count / 2> averages(const samples<count> &x) {
    return average(every<2>(0, x), every<2>(1, x));
}

// The second sample of each pair of 16, adjusted.
void halve_step(memory &m, address from, address to, adjustment by) {
    const auto odd = every<2>(1, m.load_run<16>(from));
    m.store_run(to, treat(adjust, odd, by));
}

// A plane of which every row ends exactly where its width says, unless it is narrower than a step.
void halve_chroma(memory &m, address from, address to, int width, int height, int from_pitch,
                  int to_pitch, adjustment by) {
    const int remainder = width & 15;
    count_down(height, 1, [&] {
        address step_from = from, step_to = to;
        count_down(width - remainder, 16, [&] {
            halve_step(m, step_from, step_to, by);
            step_from += 16;
            step_to += 8;
        });
        if (remainder != 0)
            halve_step(m, from + width - 16, to + (width >> 1) - 8, by);
        from += from_pitch;
        to += to_pitch;
    });
}

} // namespace

// The first 8 bytes of each step of a lower row are not written.
void loadimage_yuy2(memory &m, LUMALANE_PARAMETERS_picture) {
    load_row_pairs(m, {LUMALANE_ARGUMENTS_picture}, 2, as_it_is,
                   [&](address to, int row, const auto &y, const auto &u, const auto &v) {
                       const auto packed = pack_yuy2(y, u, v);
                       for (std::size_t i = row == 0 ? 0 : 8; i < packed.size(); ++i)
                           m.store(to + i, packed[i]);
                   });
}

void loadimage_yuy2_ajust(memory &m, LUMALANE_PARAMETERS_picture) {
    if (height <= 8 || height % 2 != 0)
        return;
    load_rows(m, {LUMALANE_ARGUMENTS_picture}, [&](address luma, address cb, address cr) {
        const auto u = treat(adjust, m.load_run<8>(cb), state().u());
        const auto v = treat(adjust, m.load_run<8>(cr), state().v());
        return pack_yuy2(adjusted_luma(m, luma), u, v);
    });
}

void loadimage_yuy2_mono_ajust(memory &m, LUMALANE_PARAMETERS_picture) {
    std::array<std::uint8_t, 8> grey;
    grey.fill(128);
    load_rows(m, {LUMALANE_ARGUMENTS_picture}, [&](address luma, address, address) {
        return pack_yuy2(adjusted_luma(m, luma), grey, grey);
    });
}

void loadimage_half_yuy2_ajust(memory &m, LUMALANE_PARAMETERS_picture) {
    load_rows(m, {LUMALANE_ARGUMENTS_picture}, [&](address luma, address cb, address cr) {
        const auto y = treat(adjust, averages(m.load_run<16>(luma)), state().luma());
        const auto u = treat(adjust, averages(m.load_run<8>(cb)), state().u());
        const auto v = treat(adjust, averages(m.load_run<8>(cr)), state().v());
        return pack_yuy2(y, u, v);
    });
}

void loadimage_half_yv12_ajust(memory &m, LUMALANE_PARAMETERS_picture) {
    const picture p{LUMALANE_ARGUMENTS_picture};
    const int luma_increment = low32(std::int64_t{p.src_pitch} - p.width);
    const int dst_increment = low32(std::int64_t{p.dst_pitch} - (p.width >> 1));
    address luma = address_of(p.src);
    address to = address_of(p.dst);
    count_down(p.height, 1, [&] {
        count_down(p.width, 16, [&] {
            halve_step(m, luma, to, state().luma());
            luma += 16;
            to += 8;
        });
        luma += luma_increment;
        to += dst_increment;
    });

    const address dst_v = address_of(p.dst) + low32(std::int64_t{p.height} * p.dst_pitch);
    const address dst_u = dst_v + low32(std::int64_t{p.dst_pitch >> 1} * (p.height >> 1));
    halve_chroma(m, address_of(p.src_v), dst_v, p.width >> 1, p.height >> 1, p.src_pitch >> 1,
                 p.dst_pitch >> 1, state().v());
    halve_chroma(m, address_of(p.src_u), dst_u, p.width >> 1, p.height >> 1, p.src_pitch >> 1,
                 p.dst_pitch >> 1, state().u());
}

} // namespace model
