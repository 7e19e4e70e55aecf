#include "tests/differential/draw.h"

namespace differential {

int destination_row_bytes(std::string_view name, int width) {
    const auto spells = [&](const char *part) { return name.find(part) != name.npos; };
    const int pixel_bytes = spells("32")                       ? 4
                            : spells("24")                     ? 3
                            : spells("16")                     ? 2
                            : spells("yuy2") || spells("YUY2") ? 2
                                                               : 1;
    return pixel_bytes * (spells("half") ? width / 2 : width);
}

int draw_offset(random &r) { return r.one_in(2) ? 0 : r.between(0, 63); }

int draw_irregular_pitch(random &r, int row_bytes) {
    switch (r.between(0, 4)) {
    case 0:
        return row_bytes + r.between(0, 40);
    case 1: // rows that overlap
        return r.between(0, row_bytes);
    case 2: // bottom-up
        return -row_bytes - r.between(0, 40);
    case 3:
        return row_bytes - r.between(-2, 2);
    default:
        return r.between(-row_bytes, 3 * row_bytes);
    }
}

namespace {

// Widths on the step of 16 (on and off 32), even heights, rows that do not overlap.
shape draw_regular(random &r, const std::string_view &name) {
    const bool wide = draw_wide(r);
    shape s;
    s.width = 16 * r.between(1, wide ? widest_drawn / 16 : r.one_of({3, 44, 44, 120}));
    s.height = 2 * r.between(1, wide ? 2 : 8);
    s.src_pitch = s.width + r.one_of({0, 0, 16, 32, 2 * r.between(0, 60)});
    s.dst_pitch =
        destination_row_bytes(name, s.width) + r.one_of({0, 0, 16, 64, r.between(0, 100)});
    return s;
}

shape draw_irregular(random &r, const std::string_view &name) {
    shape s;
    s.width = r.between(0, r.one_in(4) ? 700 : 100);
    s.height = r.between(0, r.one_in(4) ? 40 : 9);
    s.src_pitch = draw_irregular_pitch(r, s.width);
    s.dst_pitch = draw_irregular_pitch(r, destination_row_bytes(name, s.width));
    return s;
}

// Regular but for one thing.
shape draw_almost_regular(random &r, const std::string_view &name) {
    shape s = draw_regular(r, name);
    switch (r.between(0, 3)) {
    case 0:
        s.width += r.between(-15, 15);
        break;
    case 1:
        s.height -= r.between(1, 2);
        break;
    case 2:
        s.src_pitch = draw_irregular_pitch(r, s.width);
        break;
    default:
        s.dst_pitch = draw_irregular_pitch(r, destination_row_bytes(name, s.width));
    }
    return s;
}

} // namespace

shape draw_shape(random &r, std::string_view name) {
    return draw_one_of(r, name, draw_regular, draw_almost_regular, draw_irregular);
}

} // namespace differential
