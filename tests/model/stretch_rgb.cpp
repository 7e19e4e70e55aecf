#include "tests/model/adjustment.h"
#include "tests/model/count_down.h"
#include "tests/model/lanes.h"
#include "tests/model/models.h"
#include "tests/model/picture.h"
#include "tests/model/rgb.h"
#include "tests/model/samples.h"

namespace model {

namespace {

// Strips of 16 pixels from top to bottom; samples are adjusted before they are averaged. At its end
// a strip goes back by what the height means, whatever rows were made: after an odd height the next
// strip starts a row lower, on the surface two. `count_strips(width, 16, strip)` runs the strips.
template <class Pack, class CountStrips>
void stretch_strips(memory &m, const picture &p, Pack pack, CountStrips count_strips) {
    constexpr int pixel_bytes = std::tuple_size_v<decltype(pack(rgb{}))>;
    const int chroma_pitch = p.src_pitch >> 1;
    const int luma_rewind = low32(std::int64_t{p.height} * p.src_pitch);
    const int dst_rewind = low32(2 * std::int64_t{p.height} * p.dst_pitch);

    address luma = address_of(p.src);
    address cb = address_of(p.src_u);
    address cr = address_of(p.src_v);
    address to = address_of(p.dst);

    count_strips(p.width, 16, [&] {
        struct chroma_row {
            samples<8> u, v;
        };
        const auto next_luma = [&] {
            const auto y = treat(adjust, m.load_run<16>(luma), state().luma());
            luma += p.src_pitch;
            return y;
        };
        const auto next_chroma = [&] {
            const chroma_row c{treat(adjust, m.load_run<8>(cb), state().u()),
                               treat(adjust, m.load_run<8>(cr), state().v())};
            cb += chroma_pitch;
            cr += chroma_pitch;
            return c;
        };
        const auto store_row = [&](const samples<16> &y, const chroma_row &c) {
            m.store_run(to, pack_run(pack, y, c.u, c.v));
            to += p.dst_pitch;
        };

        samples<16> upper = next_luma();
        chroma_row chroma = next_chroma();
        count_down_signed(p.height - 2, 2, [&] {
            store_row(upper, chroma);
            const samples<16> lower = next_luma();
            store_row(average(upper, lower), chroma);
            const chroma_row below = next_chroma();
            const chroma_row between{average(chroma.u, below.u), average(chroma.v, below.v)};
            store_row(lower, between);
            upper = next_luma();
            store_row(average(lower, upper), between);
            chroma = below;
        });
        store_row(upper, chroma);
        const samples<16> last = next_luma();
        store_row(average(upper, last), chroma);
        store_row(last, chroma);
        store_row(last, chroma);

        luma += 16 - luma_rewind;
        cb += 8 - (luma_rewind >> 2);
        cr += 8 - (luma_rewind >> 2);
        to += 16 * pixel_bytes - dst_rewind;
    });
}

constexpr int least_height = 12;

} // namespace

void strech_picture_1X2_yuy2_ajust_rgb32(memory &m, LUMALANE_PARAMETERS_picture) {
    if (height >= least_height)
        stretch_strips(m, {LUMALANE_ARGUMENTS_picture}, pack_rgb32,
                       [](auto... counted) { count_down_signed(counted...); });
}

void strech_picture_1X2_yuy2_ajust_rgb24(memory &m, LUMALANE_PARAMETERS_picture) {
    if (height >= least_height)
        stretch_strips(m, {LUMALANE_ARGUMENTS_picture}, pack_rgb24,
                       [](auto... counted) { count_down_exactly(counted...); });
}

void strech_picture_1X2_yuy2_ajust_rgb16(memory &m, LUMALANE_PARAMETERS_picture) {
    if (height < least_height)
        return;
    if (const auto layout = read_rgb16_layout(m, *info))
        stretch_strips(
            m, {LUMALANE_ARGUMENTS_picture}, [=](rgb pixel) { return pack_rgb16(pixel, *layout); },
            [](auto... counted) { count_down_exactly(counted...); });
}

} // namespace model
