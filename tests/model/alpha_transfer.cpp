#include "tests/model/count_down.h"
#include "tests/model/lanes.h"
#include "tests/model/models.h"

namespace model {

namespace {

// Groups of so many pixels between the surface and the alpha plane, which `transfer(surface,
// alpha)` moves.
template <int group_pixels, int pixel_bytes, class Transfer>
void walk(memory &m, const tagMIX_INFO &mix, Transfer transfer) {
    const int width = m.field(mix.width);
    const int alpha_increment = low32(std::int64_t{m.field(mix.video_pitch)} - width) >> 1;
    const int surface_increment =
        low32(std::int64_t{m.field(mix.dst_pitch)} - pixel_bytes * std::int64_t{width});

    address surface = address_of(m.field(mix.dst));
    address alpha = address_of(m.field(mix.alpha_plane));
    count_down_to_zero(m.field(mix.height), [&] {
        count_down(width, group_pixels, [&] {
            transfer(surface, alpha);
            surface += group_pixels * pixel_bytes;
            alpha += group_pixels;
        });
        surface += surface_increment;
        alpha += alpha_increment;
    });
}

// `take(pixel)` reads the alpha of the pixel that starts there.
template <int group_pixels, int pixel_bytes, class Take>
void restore(memory &m, const tagMIX_INFO &mix, Take take) {
    walk<group_pixels, pixel_bytes>(m, mix, [&](address surface, address alpha) {
        std::array<std::uint8_t, group_pixels> taken;
        for (int i = 0; i < group_pixels; ++i)
            taken[i] = take(surface + i * pixel_bytes);
        m.store_run(alpha, taken);
    });
}

// The alpha byte, and zeros in the other bytes of the pixel.
template <int pixel_bytes>
void load(memory &m, const tagMIX_INFO &mix) {
    constexpr int group_pixels = 16;
    walk<group_pixels, pixel_bytes>(m, mix, [&](address surface, address alpha) {
        for (const std::uint8_t loaded : m.load_run<group_pixels>(alpha)) {
            m.store_run(surface, std::array<std::uint8_t, pixel_bytes>{loaded});
            surface += pixel_bytes;
        }
    });
}

} // namespace

void Restore_RGB32_To_Alpha(memory &m, LUMALANE_PARAMETERS_mix) {
    restore<8, 4>(m, *mix, [&](address pixel) { return m.load_run<4>(pixel)[0]; });
}

// The byte after the pixel. The rows are counted in the record.
void Restore_RGB24_To_Alpha(memory &m, LUMALANE_PARAMETERS_mix) {
    restore<8, 3>(m, *mix, [&](address pixel) { return m.load_run<4>(pixel)[3]; });
    m.set_field(mix->height, 0);
}

void Restore_RGB16_565_To_Alpha(memory &m, LUMALANE_PARAMETERS_mix) {
    restore<16, 2>(m, *mix, [&](address pixel) {
        return static_cast<std::uint8_t>(m.load_run<2>(pixel)[0] & 0x1f);
    });
}

void load_subpicture_alpha_rgb32(memory &m, LUMALANE_PARAMETERS_mix) { load<4>(m, *mix); }

// The rows are counted in the record.
void load_subpicture_alpha_rgb24(memory &m, LUMALANE_PARAMETERS_mix) {
    load<3>(m, *mix);
    m.set_field(mix->height, 0);
}

void load_subpicture_alpha_rgb16_565(memory &m, LUMALANE_PARAMETERS_mix) { load<2>(m, *mix); }

} // namespace model
