// The walk that converts both rows of a pair with the same samples of U and V.
#pragma once

#include "tests/model/adjustment.h"
#include "tests/model/count_down.h"
#include "tests/model/lanes.h"
#include "tests/model/picture.h"

namespace model {

// Steps of 16 pixels, which `store(to, row, y, u, v)` writes: of the upper row (0), then of the
// lower one (1).
template <class Store>
void load_row_pairs(memory &m, const picture &p, int pixel_bytes, treatment *treated, Store store) {
    const int luma_increment = low32(2 * std::int64_t{p.src_pitch} - p.width);
    const int chroma_increment = low32(std::int64_t{p.src_pitch} - p.width) >> 1;
    const int dst_increment =
        low32(2 * std::int64_t{p.dst_pitch} - pixel_bytes * std::int64_t{p.width});

    address luma = address_of(p.src);
    address cb = address_of(p.src_u);
    address cr = address_of(p.src_v);
    address to = address_of(p.dst);
    count_down(p.height, 2, [&] {
        count_down(p.width, 16, [&] {
            const auto u = treat(treated, m.load_run<8>(cb), state().u());
            const auto v = treat(treated, m.load_run<8>(cr), state().v());
            for (int row = 0; row < 2; ++row) {
                const address from = luma + row * std::intptr_t{p.src_pitch};
                const auto y = treat(treated, m.load_run<16>(from), state().luma());
                store(to + row * std::intptr_t{p.dst_pitch}, row, y, u, v);
            }
            luma += 16;
            cb += 8;
            cr += 8;
            to += 16 * pixel_bytes;
        });
        luma += luma_increment;
        cb += chroma_increment;
        cr += chroma_increment;
        to += dst_increment;
    });
}

} // namespace model
