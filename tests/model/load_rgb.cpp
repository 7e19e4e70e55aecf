#include <array>

#include "tests/model/adjustment.h"
#include "tests/model/lanes.h"
#include "tests/model/models.h"
#include "tests/model/picture.h"
#include "tests/model/rgb.h"

namespace model {

namespace {

// What stands in for the adjustment in the functions that do not adjust.
std::uint8_t as_it_is(std::uint8_t sample, adjustment) { return sample; }

// Steps of 16 pixels of two rows. `pack` makes the bytes of a pixel.
template <class Adjust, class Pack>
void load_row_pairs(memory &m, const picture &p, Adjust adjusted, Pack pack) {
    constexpr int pixel_bytes = std::tuple_size_v<decltype(pack(rgb{}))>;
    const int luma_increment = low32(2 * std::int64_t{p.src_pitch} - p.width);
    const int chroma_increment = low32(std::int64_t{p.src_pitch} - p.width) >> 1;
    const int dst_increment =
        low32(2 * std::int64_t{p.dst_pitch} - pixel_bytes * std::int64_t{p.width});

    address luma = address_of(p.src);
    address cb = address_of(p.src_u);
    address cr = address_of(p.src_v);
    address to = address_of(p.dst);
    unsigned rows = p.height;
    unsigned rows_before;
    do {
        unsigned columns = p.width;
        unsigned columns_before;
        do {
            std::array<std::uint8_t, 8> u, v;
            for (int i = 0; i < 8; ++i)
                u[i] = adjusted(m.load(cb + i), state().u());
            for (int i = 0; i < 8; ++i)
                v[i] = adjusted(m.load(cr + i), state().v());

            for (int row = 0; row < 2; ++row) {
                const address from_row = luma + row * std::intptr_t{p.src_pitch};
                const address to_row = to + row * std::intptr_t{p.dst_pitch};
                std::array<std::uint8_t, 16> y;
                for (int i = 0; i < 16; ++i)
                    y[i] = adjusted(m.load(from_row + i), state().luma());
                for (int i = 0; i < 16; ++i) {
                    const auto bytes = pack(to_rgb(y[i], u[i / 2], v[i / 2]));
                    for (int k = 0; k < pixel_bytes; ++k)
                        m.store(to_row + pixel_bytes * i + k, bytes[k]);
                }
            }

            luma += 16;
            cb += 8;
            cr += 8;
            to += 16 * pixel_bytes;
            columns_before = columns;
            columns -= 16;
        } while (columns_before > 16);
        luma += luma_increment;
        cb += chroma_increment;
        cr += chroma_increment;
        to += dst_increment;
        rows_before = rows;
        rows -= 2;
    } while (rows_before > 2);
}

template <class Adjust>
void load_rgb16(memory &m, const picture &p, Adjust adjusted) {
    const unsigned layout = m.field(p.info->rgb16_layout);
    if (layout >= rgb16_layouts)
        return;
    load_row_pairs(m, p, adjusted, [=](rgb pixel) { return pack_rgb16(pixel, layout); });
}

} // namespace

void loadimage_rgb32(memory &m, LUMALANE_PARAMETERS_picture) {
    load_row_pairs(m, {LUMALANE_ARGUMENTS_picture}, as_it_is, pack_rgb32);
}

void loadimage_rgb32_ajust(memory &m, LUMALANE_PARAMETERS_picture) {
    load_row_pairs(m, {LUMALANE_ARGUMENTS_picture}, adjust, pack_rgb32);
}

void loadimage_rgb24(memory &m, LUMALANE_PARAMETERS_picture) {
    load_row_pairs(m, {LUMALANE_ARGUMENTS_picture}, as_it_is, pack_rgb24);
}

void loadimage_rgb24_ajust(memory &m, LUMALANE_PARAMETERS_picture) {
    load_row_pairs(m, {LUMALANE_ARGUMENTS_picture}, adjust, pack_rgb24);
}

void loadimage_rgb16(memory &m, LUMALANE_PARAMETERS_picture) {
    load_rgb16(m, {LUMALANE_ARGUMENTS_picture}, as_it_is);
}

void loadimage_rgb16_ajust(memory &m, LUMALANE_PARAMETERS_picture) {
    load_rgb16(m, {LUMALANE_ARGUMENTS_picture}, adjust);
}

} // namespace model
