#include <cstdint>

#include "tests/model/adjustment.h"
#include "tests/model/count_down.h"
#include "tests/model/lanes.h"
#include "tests/model/models.h"
#include "tests/model/picture.h"
#include "tests/model/rgb.h"
#include "tests/model/samples.h"
#include "tests/model/yuy2.h"

namespace model {

namespace {

// Steps of so many pixels of two rows, which share the U and V of the upper one. `pack(y, u, v)`
// makes the bytes of a step of one row.
template <int step_pixels, class Pack>
void load_packed(memory &m, const picture &p, treatment *treated, Pack pack) {
    using luma = samples<step_pixels>;
    using chroma = samples<step_pixels / 2>;
    constexpr int step_bytes = 2 * step_pixels;
    constexpr int dst_step_bytes = std::tuple_size_v<decltype(pack(luma{}, chroma{}, chroma{}))>;
    const int row_bytes = low32(2 * std::int64_t{p.width});
    const int src_pitch = low32(2 * std::int64_t{p.src_pitch});
    const int src_increment = low32(2 * std::int64_t{src_pitch} - row_bytes);
    const int dst_increment =
        low32(2 * std::int64_t{p.dst_pitch} - dst_step_bytes / step_pixels * std::int64_t{p.width});
    const int overshoot = (row_bytes & -step_bytes) - row_bytes + step_bytes;

    address from = address_of(p.src);
    address to = address_of(p.dst);
    count_down(p.height, 2, [&] {
        count_down(row_bytes, step_bytes, [&] {
            const auto upper = m.load_run<step_bytes>(from);
            const auto u = treat(treated, every<4>(1, upper), state().u());
            const auto v = treat(treated, every<4>(3, upper), state().v());
            const auto store_row = [&](address to_row, const auto &row) {
                const auto y = treat(treated, every<2>(0, row), state().luma());
                m.store_run(to_row, pack(y, u, v));
            };
            store_row(to, upper);
            store_row(to + p.dst_pitch, m.load_run<step_bytes>(from + src_pitch));
            from += step_bytes;
            to += dst_step_bytes;
        });
        if (overshoot != step_bytes) {
            from -= overshoot;
            to -= overshoot * dst_step_bytes / step_bytes;
        }
        from += src_increment;
        to += dst_increment;
    });
}

void load_yuy2(memory &m, const picture &p, treatment *treated) {
    load_packed<8>(m, p, treated, pack_yuy2<8>);
}

// `pack` makes the bytes of a pixel.
template <class Pack>
void load_rgb(memory &m, const picture &p, treatment *treated, Pack pack) {
    load_packed<16>(m, p, treated, [=](const auto &y, const auto &u, const auto &v) {
        return pack_run(pack, y, u, v);
    });
}

void load_rgb16(memory &m, const picture &p, treatment *treated) {
    if (const auto layout = read_rgb16_layout(m, *p.info))
        load_rgb(m, p, treated, [=](rgb pixel) { return pack_rgb16(pixel, *layout); });
}

} // namespace

void LoadYUY2_YUY2(memory &m, LUMALANE_PARAMETERS_picture) {
    load_yuy2(m, {LUMALANE_ARGUMENTS_picture}, as_it_is);
}

void LoadYUY2_YUY2_adjust(memory &m, LUMALANE_PARAMETERS_picture) {
    load_yuy2(m, {LUMALANE_ARGUMENTS_picture}, adjust);
}

void LoadYUY2_RGB16(memory &m, LUMALANE_PARAMETERS_picture) {
    load_rgb16(m, {LUMALANE_ARGUMENTS_picture}, as_it_is);
}

void LoadYUY2_RGB16_adjust(memory &m, LUMALANE_PARAMETERS_picture) {
    load_rgb16(m, {LUMALANE_ARGUMENTS_picture}, adjust);
}

void LoadYUY2_RGB24(memory &m, LUMALANE_PARAMETERS_picture) {
    load_rgb(m, {LUMALANE_ARGUMENTS_picture}, as_it_is, pack_rgb24);
}

void LoadYUY2_RGB24_adjust(memory &m, LUMALANE_PARAMETERS_picture) {
    load_rgb(m, {LUMALANE_ARGUMENTS_picture}, adjust, pack_rgb24);
}

void LoadYUY2_RGB32(memory &m, LUMALANE_PARAMETERS_picture) {
    load_rgb(m, {LUMALANE_ARGUMENTS_picture}, as_it_is, pack_rgb32);
}

void LoadYUY2_RGB32_adjust(memory &m, LUMALANE_PARAMETERS_picture) {
    load_rgb(m, {LUMALANE_ARGUMENTS_picture}, adjust, pack_rgb32);
}

} // namespace model
