#include <tuple>

#include "tests/model/adjustment.h"
#include "tests/model/count_down.h"
#include "tests/model/lanes.h"
#include "tests/model/models.h"
#include "tests/model/rgb.h"

namespace model {

namespace {

// Groups of 16 pixels; the planes are one run each. `pack` makes the bytes of a pixel, of which
// `key` are those without a subpicture.
template <class Pack, class Bytes>
void load(memory &m, const tagMIX_INFO &mix, treatment *treated, Pack pack, const Bytes &key) {
    constexpr int pixel_bytes = std::tuple_size_v<Bytes>;
    const int row_pixels = m.field(mix.video_pitch);
    const int surface_increment =
        low32(std::int64_t{m.field(mix.dst_pitch)} - pixel_bytes * std::int64_t{row_pixels});

    address luma = address_of(m.field(mix.sub_y));
    address cb = address_of(m.field(mix.sub_u));
    address cr = address_of(m.field(mix.sub_v));
    address alpha = address_of(m.field(mix.alpha_plane));
    address surface = address_of(m.field(mix.dst));
    count_down_to_zero(m.field(mix.height), [&] {
        count_down(row_pixels, 16, [&] {
            const auto u = treat(treated, m.load_run<8>(cb), state().u());
            const auto v = treat(treated, m.load_run<8>(cr), state().v());
            const auto y = treat(treated, m.load_run<16>(luma), state().luma());
            const auto weights = m.load_run<16>(alpha);
            for (int i = 0; i < 16; ++i) {
                const bool positive = static_cast<std::int8_t>(weights[i]) > 0;
                m.store_run(surface + i * pixel_bytes, weights[i] == 0 ? key
                                                       : positive
                                                           ? pack(to_rgb(y[i], u[i / 2], v[i / 2]))
                                                           : Bytes{});
            }
            luma += 16;
            cb += 8;
            cr += 8;
            alpha += 16;
            surface += 16 * pixel_bytes;
        });
        surface += surface_increment;
    });
}

// The colour key's bytes, the lowest one first.
std::array<std::uint8_t, 4> key_bytes(memory &m, const tagMIX_INFO &mix) {
    return m.load_run<4>(address_of(&mix.color_key));
}

// Red is in the lowest byte of the key.
rgb key_of(memory &m, const tagMIX_INFO &mix) {
    const auto key = key_bytes(m, mix);
    return {.r = key[0], .g = key[1], .b = key[2]};
}

void load_rgb32(memory &m, const tagMIX_INFO &mix, treatment *treated) {
    load(m, mix, treated, pack_rgb32, pack_rgb32(key_of(m, mix)));
}

void load_rgb24(memory &m, const tagMIX_INFO &mix, treatment *treated) {
    load(m, mix, treated, pack_rgb24, pack_rgb24(key_of(m, mix)));
}

// The layout only decides whether anything is done.
void load_rgb16(memory &m, const tagMIX_INFO &mix, treatment *treated) {
    if (!read_rgb16_layout(m, *m.field(mix.adjust_info)))
        return;
    const auto key = key_bytes(m, mix);
    load(
        m, mix, treated, [](rgb pixel) { return pack_rgb16(pixel, 0); },
        std::array{key[0], key[1]});
}

} // namespace

void load_subpicture_yuy2_rgb32(memory &m, LUMALANE_PARAMETERS_mix) {
    load_rgb32(m, *mix, as_it_is);
}

void load_subpicture_yuy2_rgb32_ajust(memory &m, LUMALANE_PARAMETERS_mix) {
    load_rgb32(m, *mix, adjust);
}

void load_subpicture_yuy2_rgb24(memory &m, LUMALANE_PARAMETERS_mix) {
    load_rgb24(m, *mix, as_it_is);
}

void load_subpicture_yuy2_rgb24_ajust(memory &m, LUMALANE_PARAMETERS_mix) {
    load_rgb24(m, *mix, adjust);
}

void load_subpicture_yuy2_rgb16(memory &m, LUMALANE_PARAMETERS_mix) {
    load_rgb16(m, *mix, as_it_is);
}

void load_subpicture_yuy2_rgb16_ajust(memory &m, LUMALANE_PARAMETERS_mix) {
    load_rgb16(m, *mix, adjust);
}

} // namespace model
