#include <bit>
#include <cstdlib>

#include "tests/differential/draw.h"

namespace differential {

unsigned draw_rgb16_layout(random &r) {
    return r.one_in(8) ? r.one_of({4, 7, -1}) : r.between(0, 3);
}

spot add_rgb16_info(drawn_call &drawn, unsigned rgb16_layout) {
    return {drawn.add({"adjust_info", sizeof(tag_ajust_contrast_info),
                       [=](void *record, const placement &) {
                           static_cast<tag_ajust_contrast_info *>(record)->rgb16_layout =
                               rgb16_layout;
                       }}),
            0};
}

namespace {

struct surface_facts {
    unsigned rgb16_layout;
    int surface_height, rows_to_plane_end;
};

surface_facts draw_surface(random &r, const shape &s) {
    surface_facts facts;
    facts.rgb16_layout = draw_rgb16_layout(r);
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

struct picture_layout {
    spot src, src_u, src_v, dst;
};

// Each plane in a buffer of its own, or some of them in that of the first. A stretch never reads
// what it writes.
picture_layout draw_layout(random &r, drawn_call &drawn, const shape &s, bool stretched) {
    const int plane_bytes = std::abs(s.src_pitch) * s.height;
    const auto distance = [&] {
        return r.one_of({0, r.between(-64, 64), s.src_pitch, -s.src_pitch, s.dst_pitch, plane_bytes,
                         r.between(-2 * plane_bytes, 2 * plane_bytes)});
    };
    const bool shared = r.one_in(3);
    picture_layout l;
    l.src = {drawn.add({"src"}), draw_offset(r)};
    for (auto [plane, name] :
         {std::pair{&l.src_u, "src_u"}, {&l.src_v, "src_v"}, {&l.dst, "dst"}}) {
        if (shared && r.one_in(2) && !(stretched && plane == &l.dst))
            *plane = {l.src.buffer, l.src.offset + distance()};
        else
            *plane = {drawn.add({name}), draw_offset(r)};
    }
    return l;
}

} // namespace

drawn_call draw_picture(random &r, const char *name,
                        void (*on_model)(model::memory &, LUMALANE_PARAMETERS_picture),
                        void (*tests::function_table::*function)(LUMALANE_PARAMETERS_picture)) {
    drawn_call drawn;
    drawn.contrast = draw_contrast(r);
    const bool stretched = std::string_view(name).starts_with("strech");
    const shape s = stretched ? draw_stretch_shape(r, name) : draw_shape(r, name);
    const picture_layout l = draw_layout(r, drawn, s, stretched);
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

    drawn.tell("width", s.width);
    drawn.tell("height", s.height);
    drawn.tell("src_pitch", s.src_pitch);
    drawn.tell("dst_pitch", s.dst_pitch);
    drawn.tell("src", l.src);
    drawn.tell("src_u", l.src_u);
    drawn.tell("src_v", l.src_v);
    drawn.tell("dst", l.dst);
    drawn.tell("rgb16_layout", surface.rgb16_layout);
    drawn.tell("surface_height", surface.surface_height);
    drawn.tell("rows_to_plane_end", surface.rows_to_plane_end);
    return drawn;
}

} // namespace differential
