#include "tests/model/adjustment.h"
#include "tests/model/count_down.h"
#include "tests/model/lanes.h"
#include "tests/model/models.h"
#include "tests/model/picture.h"
#include "tests/model/stretch.h"
#include "tests/model/yuy2.h"

namespace model {

namespace {

// ---- From YV12 ---------------------------------------------------------------------------------

std::uint8_t four_tap(std::uint8_t a, std::uint8_t b, std::uint8_t c, std::uint8_t d) {
    const auto five = [](std::int16_t x) { return add_saturate(shift_left(x, 2), x); };
    const std::int16_t inner = add_saturate(five(b), five(c));
    const std::int16_t sum = subtract_saturate(inner, add_saturate(a, d));
    return narrow_saturate(low16(sum >> 3));
}

// How a row comes about: it is a row of the source, or lies between that and the one below it.
enum class origin { copied, averaged, filtered };

// `row(at)` makes samples of the source row that lies there.
template <class Row>
auto interpolate(origin from, Row row, address at, std::intptr_t pitch) {
    if (from == origin::copied)
        return row(at);
    if (from == origin::averaged)
        return average(row(at), row(at + pitch));
    const auto a = row(at - pitch), b = row(at), c = row(at + pitch), d = row(at + 2 * pitch);
    auto filtered = b;
    for (std::size_t i = 0; i < filtered.size(); ++i)
        filtered[i] = four_tap(a[i], b[i], c[i], d[i]);
    return filtered;
}

// The walk over a picture, one row of the surface after the other. What was moved along a row is
// taken back by the width, not by the whole steps that it was moved: a width off the step drifts,
// in the source as well as on the surface.
struct stretch_walk {
    address y, u, v, to;
    int width, src_pitch;
    std::intptr_t chroma_pitch, luma_pitch; // to the rows that are read below
    int to_next_row;

    stretch_walk(const picture &p, int pixel_bytes)
        : y(address_of(p.src)), u(address_of(p.src_u)), v(address_of(p.src_v)),
          to(address_of(p.dst)), width(p.width), src_pitch(p.src_pitch),
          chroma_pitch(static_cast<unsigned>(p.src_pitch) >> 1), luma_pitch(2 * chroma_pitch),
          to_next_row(low32(p.dst_pitch - pixel_bytes * std::int64_t{p.width})) {}

    void step(int dst_bytes) {
        y += 16;
        u += 8;
        v += 8;
        to += dst_bytes;
    }
    void end_row(bool luma_goes_on, bool chroma_goes_on) {
        const int luma_move = low32(std::int64_t{src_pitch} - width);
        const int chroma_move = chroma_goes_on ? luma_move >> 1 : -(width >> 1);
        y += luma_goes_on ? luma_move : -width;
        u += chroma_move;
        v += chroma_move;
        to += to_next_row;
    }
};

// Four rows of a pair of source rows. `row(luma, chroma)` stores the steps of one.
template <class Row>
void stretch_pair(stretch_walk &w, Row row, origin luma, origin chroma) {
    row(origin::copied, origin::copied);
    w.end_row(false, false);
    row(luma, origin::copied);
    w.end_row(true, false);
    row(origin::copied, chroma);
    w.end_row(false, false);
    row(luma, chroma);
    w.end_row(true, true);
}

// The last row is stored twice.
template <class Row>
void stretch_last_pair(stretch_walk &w, Row row) {
    row(origin::copied, origin::copied);
    w.end_row(false, false);
    row(origin::averaged, origin::copied);
    w.end_row(true, false);
    row(origin::copied, origin::copied);
    w.end_row(false, false);
    row(origin::copied, origin::copied);
}

template <class Row>
void stretch_by_averages(stretch_walk &w, int height, Row row) {
    count_down_signed(height - 2, 2,
                      [&] { stretch_pair(w, row, origin::averaged, origin::averaged); });
    stretch_last_pair(w, row);
}

// The steps of a row of the same width; each new sample is treated.
auto narrow_row(memory &m, stretch_walk &w, treatment *treated) {
    return [&m, &w, treated](origin luma, origin chroma) {
        count_down(w.width >> 1, 8, [&] {
            const auto luma_row = [&](address at) { return m.load_run<16>(at); };
            const auto chroma_row = [&](address at) { return m.load_run<8>(at); };
            const auto y = interpolate(luma, luma_row, w.y, w.luma_pitch);
            const auto u = interpolate(chroma, chroma_row, w.u, w.chroma_pitch);
            const auto v = interpolate(chroma, chroma_row, w.v, w.chroma_pitch);
            m.store_run(w.to,
                        pack_yuy2(treat(treated, y, state().luma()), treat(treated, u, state().u()),
                                  treat(treated, v, state().v())));
            w.step(32);
        });
    };
}

// In the second 8 bytes of a step lies the luma of its first 8 pixels instead of pixels.
samples<64> pack_wide(const pixels<32> &p) {
    auto packed = pack_yuy2(p.y, p.u, p.v);
    std::copy_n(p.y.begin(), 8, packed.begin() + 8);
    return packed;
}

// The steps of a row of twice the width; each sample is treated where it is read.
auto wide_row(memory &m, stretch_walk &w, treatment *treated) {
    return [&m, &w, treated](origin luma, origin chroma) {
        const auto step = [&](bool last) {
            const auto doubled_row = [&]<std::size_t count>(address at, adjustment by) {
                const auto x = treat(treated, m.load_run<count>(at), by);
                return last ? doubled_at_edge(x) : doubled(x, treated(m.load(at + count), by));
            };
            const auto luma_row = [&](address at) {
                return doubled_row.template operator()<16>(at, state().luma());
            };
            const auto chroma_row = [&](adjustment by) {
                return [&, by](address at) { return doubled_row.template operator()<8>(at, by); };
            };
            m.store_run(
                w.to,
                pack_wide({interpolate(luma, luma_row, w.y, w.luma_pitch),
                           interpolate(chroma, chroma_row(state().u()), w.u, w.chroma_pitch),
                           interpolate(chroma, chroma_row(state().v()), w.v, w.chroma_pitch)}));
            w.step(64);
        };
        count_down_signed((w.width >> 1) - 8, 8, [&] { step(false); });
        step(true);
    };
}

// ---- From YUY2 ---------------------------------------------------------------------------------

// 16 pixels of a row made 32, before the right edge or at it.
pixels<32> load_doubled(memory &m, address from, treatment *treated, bool last) {
    const auto packed = m.load_run<32>(from);
    const auto double_up = [&](const auto &x, int first, adjustment by) {
        const auto treated_samples = treat(treated, x, by);
        return last ? doubled_at_edge(treated_samples)
                    : doubled(treated_samples, treated(m.load(from + 32 + first), by));
    };
    return {double_up(every<2>(0, packed), 0, state().luma()),
            double_up(every<4>(1, packed), 1, state().u()),
            double_up(every<4>(3, packed), 3, state().v())};
}

// Strips of 16 pixels from top to bottom; of the rows' chroma only that of the even ones counts. At
// its end a strip goes back by what the height means, whatever rows were made: after an odd height
// the next strip starts a row lower, on the surface two.
void stretch_packed(memory &m, void *src, void *dst, int row_bytes, int height, int dst_pitch,
                    treatment *treated) {
    address from = address_of(src);
    address to = address_of(dst);
    const auto stretch_strip = [&](bool last_strip) {
        pixels<32> even{}, odd{};
        const auto load_row = [&] {
            const pixels<32> loaded = load_doubled(m, from, treated, last_strip);
            from += row_bytes;
            return loaded;
        };
        // In the rows from the first one of the pair on.
        const auto store_row = [&](int row, const samples<32> &y, const samples<16> &u,
                                   const samples<16> &v) {
            m.store_run(to + row * std::intptr_t{dst_pitch}, pack_wide({y, u, v}));
        };

        even = load_row();
        odd = load_row();
        store_row(0, even.y, even.u, even.v);
        store_row(1, average(even.y, odd.y), even.u, even.v);
        store_row(2, odd.y, even.u, even.v);
        to += 4 * std::intptr_t{dst_pitch};

        const auto stretch_pair_below = [&] {
            const pixels<32> even_above = even, odd_above = odd;
            even = load_row();
            store_row(0, even.y, even.u, even.v);
            store_row(-1, average(odd_above.y, even.y), average(even_above.u, even.u),
                      average(even_above.v, even.v));
            odd = load_row();
            store_row(2, odd.y, even.u, even.v);
            store_row(1, average(even.y, odd.y), even.u, even.v);
        };
        count_down_signed(height - 4, 2, [&] {
            stretch_pair_below();
            to += 4 * std::intptr_t{dst_pitch};
        });
        stretch_pair_below();
        store_row(3, odd.y, even.u, even.v);
        to += 4 * std::intptr_t{dst_pitch};

        from += 32 - low32(std::int64_t{row_bytes} * height);
        to += 64 - low32(2 * std::int64_t{height} * dst_pitch);
    };
    count_down_exactly(row_bytes - 32, 32, [&] { stretch_strip(false); });
    stretch_strip(true);
}

} // namespace

void strech_picture_1X2_yuy2(memory &m, LUMALANE_PARAMETERS_picture) {
    if (height < 8)
        return;
    stretch_walk w({LUMALANE_ARGUMENTS_picture}, 2);
    stretch_by_averages(w, height, narrow_row(m, w, as_it_is));
}

void strech_picture_1X2_yuy2_ajust(memory &m, LUMALANE_PARAMETERS_picture) {
    if (height < 8)
        return;
    stretch_walk w({LUMALANE_ARGUMENTS_picture}, 2);
    const auto row = narrow_row(m, w, adjust);
    stretch_pair(w, row, origin::averaged, origin::averaged);
    count_down_signed(height - 6, 2,
                      [&] { stretch_pair(w, row, origin::filtered, origin::filtered); });
    stretch_pair(w, row, origin::filtered, origin::averaged);
    stretch_last_pair(w, row);
}

void strech_picture_2X2_yuy2(memory &m, LUMALANE_PARAMETERS_picture) {
    if (height < 8)
        return;
    stretch_walk w({LUMALANE_ARGUMENTS_picture}, 4);
    stretch_by_averages(w, height, wide_row(m, w, as_it_is));
}

void strech_picture_2X2_yuy2_ajust(memory &m, LUMALANE_PARAMETERS_picture) {
    if (height < 16)
        return;
    stretch_walk w({LUMALANE_ARGUMENTS_picture}, 4);
    stretch_by_averages(w, height, wide_row(m, w, adjust));
}

void yuy2_strech_picture_2X2_yuy2(memory &m, LUMALANE_PARAMETERS_packed_stretch) {
    if (height >= 16)
        stretch_packed(m, src, dst, row_bytes, height, dst_pitch, as_it_is);
}

void yuy2_strech_picture_2X2_yuy2_ajust(memory &m, LUMALANE_PARAMETERS_packed_stretch_ajust) {
    if (height >= 8)
        stretch_packed(m, src, dst, row_bytes, height, dst_pitch, adjust);
}

} // namespace model
