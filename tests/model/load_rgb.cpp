#include <tuple>

#include "tests/model/models.h"
#include "tests/model/rgb.h"
#include "tests/model/row_pairs.h"

namespace model {

namespace {

// `pack` makes the bytes of a pixel.
template <class Pack>
void load_rgb(memory &m, const picture &p, treatment *treated, Pack pack) {
    constexpr int pixel_bytes = std::tuple_size_v<decltype(pack(rgb{}))>;
    load_row_pairs(m, p, pixel_bytes, treated,
                   [&](address to, int, const auto &y, const auto &u, const auto &v) {
                       m.store_run(to, pack_run(pack, y, u, v));
                   });
}

void load_rgb16(memory &m, const picture &p, treatment *treated) {
    if (const auto layout = read_rgb16_layout(m, *p.info))
        load_rgb(m, p, treated, [=](rgb pixel) { return pack_rgb16(pixel, *layout); });
}

} // namespace

void loadimage_rgb32(memory &m, LUMALANE_PARAMETERS_picture) {
    load_rgb(m, {LUMALANE_ARGUMENTS_picture}, as_it_is, pack_rgb32);
}

void loadimage_rgb32_ajust(memory &m, LUMALANE_PARAMETERS_picture) {
    load_rgb(m, {LUMALANE_ARGUMENTS_picture}, adjust, pack_rgb32);
}

void loadimage_rgb24(memory &m, LUMALANE_PARAMETERS_picture) {
    load_rgb(m, {LUMALANE_ARGUMENTS_picture}, as_it_is, pack_rgb24);
}

void loadimage_rgb24_ajust(memory &m, LUMALANE_PARAMETERS_picture) {
    load_rgb(m, {LUMALANE_ARGUMENTS_picture}, adjust, pack_rgb24);
}

void loadimage_rgb16(memory &m, LUMALANE_PARAMETERS_picture) {
    load_rgb16(m, {LUMALANE_ARGUMENTS_picture}, as_it_is);
}

void loadimage_rgb16_ajust(memory &m, LUMALANE_PARAMETERS_picture) {
    load_rgb16(m, {LUMALANE_ARGUMENTS_picture}, adjust);
}

} // namespace model
