#include <vector>

#include "tests/model/adjustment.h"
#include "tests/model/lanes.h"
#include "tests/model/models.h"
#include "tests/model/picture.h"

namespace model {

namespace {

using bytes = std::vector<std::uint8_t>;

bytes read(memory &m, address from, unsigned count) {
    bytes found;
    for (unsigned i = 0; i < count; ++i)
        found.push_back(m.load(from + i));
    return found;
}

void write(memory &m, address to, const bytes &written) {
    for (const std::uint8_t byte : written)
        m.store(to++, byte);
}

void adjust_plane(memory &m, address from, address to, int width, int height, int to_pitch,
                  adjustment by) {
    const int to_next_row = low32(std::int64_t{to_pitch} - width);
    unsigned rows = height;
    unsigned rows_before;
    do {
        unsigned columns = width;
        unsigned columns_before;
        do {
            bytes samples = read(m, from, 8);
            for (std::uint8_t &sample : samples)
                sample = adjust(sample, by);
            write(m, to, samples);
            from += 8;
            to += 8;
            columns_before = columns;
            columns -= 8;
        } while (columns_before > 8);
        to += to_next_row;
        rows_before = rows;
        rows -= 1;
    } while (rows_before > 1);
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
    unsigned rows = p.height;
    unsigned rows_before;
    do {
        unsigned columns = p.width;
        unsigned columns_before;
        do {
            write(m, to, read(m, from, 16));
            write(m, to + p.src_pitch, read(m, from + p.width, 16));
            from += 16;
            to += 16;
            columns_before = columns;
            columns -= 16;
        } while (columns_before > 16);
        from += src_increment;
        from += dst_increment;
        rows_before = rows;
        rows -= 2;
    } while (rows_before > 2);

    const auto halve = [](int value) { return static_cast<unsigned>(value) >> 1; };
    address from_u = address_of(p.src_u);
    address from_v = address_of(p.src_v);
    address to_v = address_of(p.dst) + luma_bytes - 1;
    address to_u = to_v + (luma_bytes >> 2);
    rows = p.height;
    do {
        unsigned columns = p.width >> 1;
        unsigned columns_before;
        do {
            write(m, to_u, read(m, from_u, 8));
            write(m, to_u + halve(p.dst_pitch), read(m, from_u + halve(p.src_pitch), 8));
            write(m, to_v, read(m, from_v, 8));
            write(m, to_v + halve(p.dst_pitch), read(m, from_v + halve(p.src_pitch), 8));
            from_u += 8;
            from_v += 8;
            to_u += 8;
            to_v += 8;
            columns_before = columns;
            columns -= 8;
        } while (columns_before > 8);
        from_u += halve(src_increment);
        from_v += halve(src_increment);
        to_u += halve(dst_increment);
        to_v += halve(dst_increment);
        rows_before = rows;
        rows -= 2;
    } while (rows_before > 2);
}

} // namespace model
