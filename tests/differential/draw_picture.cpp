#include <bit>
#include <cstdio>
#include <cstdlib>

#include "tests/differential/draw.h"

namespace differential {

int destination_pixel_bytes(std::string_view name) {
    const auto spells = [&](const char *lower, const char *upper) {
        return name.find(lower) != name.npos || name.find(upper) != name.npos;
    };
    return spells("rgb32", "RGB32")   ? 4
           : spells("rgb24", "RGB24") ? 3
           : spells("rgb16", "RGB16") ? 2
           : spells("yuy2", "YUY2")   ? 2
                                      : 1;
}

namespace {

struct shape {
    int width, height, src_pitch, dst_pitch;
};

// Widths on the step of 16 (on and off 32), even heights, rows that do not overlap.
shape draw_regular(random &r, int pixel_bytes) {
    shape s;
    s.width = 16 * r.between(1, r.one_of({3, 44, 44, 120}));
    s.height = 2 * r.between(1, 6);
    s.src_pitch = s.width + r.one_of({0, 0, 16, 32, 2 * r.between(0, 60)});
    s.dst_pitch = pixel_bytes * s.width + r.one_of({0, 0, 16, 64, r.between(0, 100)});
    return s;
}

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

shape draw_irregular(random &r, int pixel_bytes) {
    shape s;
    s.width = r.between(0, r.one_in(4) ? 700 : 100);
    s.height = r.between(0, r.one_in(6) ? 40 : 9);
    s.src_pitch = draw_irregular_pitch(r, s.width);
    s.dst_pitch = draw_irregular_pitch(r, pixel_bytes * s.width);
    return s;
}

// Regular but for one thing.
shape draw_almost_regular(random &r, int pixel_bytes) {
    shape s = draw_regular(r, pixel_bytes);
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
        s.dst_pitch = draw_irregular_pitch(r, pixel_bytes * s.width);
    }
    return s;
}

shape draw_shape(random &r, int pixel_bytes) {
    switch (r.between(0, 2)) {
    case 0:
        return draw_regular(r, pixel_bytes);
    case 1:
        return draw_almost_regular(r, pixel_bytes);
    default:
        return draw_irregular(r, pixel_bytes);
    }
}

struct surface_facts {
    unsigned rgb16_layout;
    int surface_height, rows_to_plane_end;
};

surface_facts draw_surface(random &r, const shape &s) {
    surface_facts facts;
    facts.rgb16_layout = r.one_in(8) ? r.one_of({4, 7, -1}) : r.between(0, 3);
    if (r.one_in(4)) {
        facts.surface_height = r.between(-10, 60);
        facts.rows_to_plane_end = r.between(-10, 60);
    } else {
        facts.surface_height = s.height + r.between(0, 20);
        facts.rows_to_plane_end = s.height + r.between(0, facts.surface_height - s.height);
    }
    // A height that makes the same number of bytes, modulo 2^32.
    const int even_bits = std::countr_zero(static_cast<unsigned>(s.dst_pitch));
    if (r.one_in(8) && even_bits > 0 && even_bits < 32)
        facts.surface_height = static_cast<int>(static_cast<unsigned>(facts.surface_height) +
                                                (1u << (32 - even_bits)));
    return facts;
}

struct layout {
    spot src, src_u, src_v, dst;
};

// Each plane in a buffer of its own, or some of them in that of the first.
layout draw_layout(random &r, drawn_call &drawn, const shape &s) {
    const auto alignment = [&] { return r.one_in(2) ? 0 : r.between(0, 63); };
    const int plane_bytes = std::abs(s.src_pitch) * s.height;
    const auto distance = [&] {
        return r.one_of({0, r.between(-64, 64), s.src_pitch, -s.src_pitch, s.dst_pitch, plane_bytes,
                         r.between(-2 * plane_bytes, 2 * plane_bytes)});
    };
    const bool shared = r.one_in(3);
    layout l;
    l.src = {drawn.add({"src"}), alignment()};
    for (auto [plane, name] :
         {std::pair{&l.src_u, "src_u"}, {&l.src_v, "src_v"}, {&l.dst, "dst"}}) {
        if (shared && r.one_in(2))
            *plane = {l.src.buffer, l.src.offset + distance()};
        else
            *plane = {drawn.add({name}), alignment()};
    }
    return l;
}

} // namespace

drawn_call draw_picture(random &r, const char *name,
                        void (*on_model)(model::memory &, LUMALANE_PARAMETERS_picture),
                        void (*lumalane::kernel_table::*function)(LUMALANE_PARAMETERS_picture)) {
    drawn_call drawn;
    drawn.contrast = draw_contrast(r);
    const shape s = draw_shape(r, destination_pixel_bytes(name));
    const layout l = draw_layout(r, drawn, s);
    const surface_facts surface = draw_surface(r, s);
    const spot info{drawn.add({"info", sizeof(tag_ajust_contrast_info),
                               [=](void *record, const placement &) {
                                   auto &facts = *static_cast<tag_ajust_contrast_info *>(record);
                                   facts.rgb16_layout = surface.rgb16_layout;
                                   facts.surface_height = surface.surface_height;
                                   facts.rows_to_plane_end = surface.rows_to_plane_end;
                               }}),
                    0};
    drawn.call(on_model, function, [=](const placement &at) {
        return std::tuple(at.at(l.src), at.at(l.src_u), at.at(l.src_v), at.at(l.dst), s.width,
                          s.height, s.src_pitch, s.dst_pitch, at.at<tag_ajust_contrast_info>(info));
    });

    char text[400];
    const auto buffer_of = [&](spot p) { return drawn.buffers[p.buffer].name; };
    const auto offset_of = [](spot p) { return static_cast<int>(p.offset); };
    std::snprintf(text, sizeof text,
                  "width %d, height %d, src_pitch %d, dst_pitch %d, src %s%+d, src_u %s%+d, "
                  "src_v %s%+d, dst %s%+d, rgb16_layout %u, surface_height %d, "
                  "rows_to_plane_end %d",
                  s.width, s.height, s.src_pitch, s.dst_pitch, buffer_of(l.src), offset_of(l.src),
                  buffer_of(l.src_u), offset_of(l.src_u), buffer_of(l.src_v), offset_of(l.src_v),
                  buffer_of(l.dst), offset_of(l.dst), surface.rgb16_layout, surface.surface_height,
                  surface.rows_to_plane_end);
    drawn.arguments = text;
    return drawn;
}

} // namespace differential
