#include "tests/model/adjustment.h"
#include "tests/model/count_down.h"
#include "tests/model/lanes.h"
#include "tests/model/models.h"
#include "tests/model/picture.h"

namespace model {

namespace {

void adjust_plane(memory &m, address from, address to, int width, int height, int to_pitch,
                  adjustment by) {
    const int to_next_row = low32(std::int64_t{to_pitch} - width);
    count_down(height, 1, [&] {
        count_down(width, 8, [&] {
            m.store_run(to, treat(adjust, m.load_run<8>(from), by));
            from += 8;
            to += 8;
        });
        to += to_next_row;
    });
}

} // namespace

void loadimage_yv12_ajust(memory &m, LUMALANE_PARAMETERS_picture) {
    const picture p{LUMALANE_ARGUMENTS_picture};
    const int surface_bytes = low32(std::int64_t{m.field(p.info->surface_height)} * p.dst_pitch);
    const int bytes_to_plane_end =
        low32(std::int64_t{m.field(p.info->rows_to_plane_end)} * p.dst_pitch);
    const address dst_v = address_of(p.dst) + bytes_to_plane_end +
                          (low32(std::int64_t{surface_bytes} - bytes_to_plane_end) >> 2);
    const address dst_u = dst_v + (surface_bytes >> 2);

    // V gets the offset of U and the other way round.
    adjust_plane(m, address_of(p.src), address_of(p.dst), p.width, p.height, p.dst_pitch,
                 state().luma());
    adjust_plane(m, address_of(p.src_v), dst_v, p.width >> 1, p.height >> 1, p.dst_pitch >> 1,
                 state().u());
    adjust_plane(m, address_of(p.src_u), dst_u, p.width >> 1, p.height >> 1, p.dst_pitch >> 1,
                 state().v());
}

void loadimage_yv12(memory &m, LUMALANE_PARAMETERS_picture) {
    const picture p{LUMALANE_ARGUMENTS_picture};
    const int luma_bytes = low32(std::int64_t{p.height} * p.dst_pitch);
    const int src_increment = low32(2 * std::int64_t{p.src_pitch} - p.width);
    const int dst_increment = low32(2 * std::int64_t{p.dst_pitch} - p.width);

    address from = address_of(p.src);
    address to = address_of(p.dst);
    count_down(p.height, 2, [&] {
        count_down(p.width, 16, [&] {
            m.store_run(to, m.load_run<16>(from));
            m.store_run(to + p.src_pitch, m.load_run<16>(from + p.width));
            from += 16;
            to += 16;
        });
        from += src_increment;
        from += dst_increment;
    });

    const auto halve = [](int value) { return static_cast<unsigned>(value) >> 1; };
    address from_u = address_of(p.src_u);
    address from_v = address_of(p.src_v);
    address to_v = address_of(p.dst) + luma_bytes - 1;
    address to_u = to_v + (luma_bytes >> 2);
    count_down(p.height, 2, [&] {
        count_down(p.width >> 1, 8, [&] {
            m.store_run(to_u, m.load_run<8>(from_u));
            m.store_run(to_u + halve(p.dst_pitch), m.load_run<8>(from_u + halve(p.src_pitch)));
            m.store_run(to_v, m.load_run<8>(from_v));
            m.store_run(to_v + halve(p.dst_pitch), m.load_run<8>(from_v + halve(p.src_pitch)));
            from_u += 8;
            from_v += 8;
            to_u += 8;
            to_v += 8;
        });
        from_u += halve(src_increment);
        from_v += halve(src_increment);
        to_u += halve(dst_increment);
        to_v += halve(dst_increment);
    });
}

} // namespace model
