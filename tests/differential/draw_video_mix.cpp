#include <algorithm>
#include <cstdlib>

#include "tests/differential/draw.h"

namespace differential {

namespace {

struct mix_function {
    std::string_view name;
    int rows; // that are worked together
    int least_width, least_height;
    bool planar; // writes dst_u and dst_v
};

// Widths and heights below the least ones would be counted unsigned.
constexpr mix_function mix_functions[] = {
    {"mix_ayuy2_yuy2_p_ajust", 2, 0, -4, false},
    {"mix_ayuy2_half_yuy2_p_ajust", 2, 0, -4, false},
    {"mix_ayuy2_yuy2_i_ajust", 4, 0, -4, false},
    {"mix_ayv12_yv12_p", 2, 0, 0, true},
    {"mix_ayv12_yv12_i", 4, 0, 0, true},
    {"mix_ayv12_yv12_p_ajust", 2, 0, 0, true},
    {"mix_ayuy2_rgb32_p_ajust", 2, 0, -4, false},
    {"mix_ayuy2_rgb24_p_ajust", 2, 0, -4, false},
    {"mix_ayuy2_rgb16_p_ajust", 2, 0, -4, false},
    {"mix_ayuy2_rgb32_i_ajust", 4, -20, -20, false},
    {"mix_ayuy2_rgb24_i_ajust", 4, -20, -20, false},
    {"mix_ayuy2_rgb16_i_ajust", 4, -20, -20, false},
};

// Widths on the step of 16 (on and off 32), heights on the rows that are worked together, rows that
// do not overlap.
mix_shape draw_regular(random &r, const mix_function &f) {
    const bool tight = r.one_in(6); // rows that are one run
    const auto padding = [&] { return tight ? 0 : r.one_of({0, 0, 16, 32, 2 * r.between(0, 60)}); };
    const bool wide = draw_wide(r);
    mix_shape s;
    s.width = 16 * r.between(1, wide ? widest_drawn / 16 : r.one_of({3, 24, 24, 80}));
    s.height = f.rows * r.between(1, wide ? 2 : r.one_in(8) ? 24 : 5);
    s.video_pitch = s.width + padding();
    s.sub_pitch = r.one_in(8) ? 0 : s.width + padding(); // 0: one row for all
    s.dst_pitch = destination_row_bytes(f.name, s.width) +
                  (tight ? 0 : r.one_of({0, 0, 16, 64, r.between(0, 100)}));
    return s;
}

mix_shape draw_irregular(random &r, const mix_function &f) {
    mix_shape s;
    s.width = r.between(f.least_width, r.one_in(4) ? 400 : 100);
    s.height = r.between(f.least_height, r.one_in(6) ? 40 : 13);
    const int pixels = std::max(s.width, 16);
    s.video_pitch = draw_irregular_pitch(r, pixels);
    s.sub_pitch = draw_irregular_pitch(r, pixels);
    s.dst_pitch = draw_irregular_pitch(r, destination_row_bytes(f.name, pixels));
    return s;
}

// Regular but for one thing.
mix_shape draw_almost_regular(random &r, const mix_function &f) {
    mix_shape s = draw_regular(r, f);
    switch (r.between(0, 4)) {
    case 0:
        s.width += r.between(-15, 15);
        break;
    case 1:
        s.height -= r.between(1, f.rows);
        break;
    case 2:
        s.video_pitch = draw_irregular_pitch(r, s.width);
        break;
    case 3:
        s.sub_pitch = draw_irregular_pitch(r, s.width);
        break;
    default:
        s.dst_pitch = draw_irregular_pitch(r, destination_row_bytes(f.name, s.width));
    }
    return s;
}

// Subpictures that are seen in places, everywhere and nowhere, at every weight.
patch draw_alpha(random &r, std::ptrdiff_t offset, const mix_shape &s) {
    const int rows_bytes = (std::abs(s.height) + 4) * s.sub_pitch;
    std::vector<std::uint8_t> alpha(std::abs(rows_bytes) + std::abs(s.width) + 16);
    const int one_shown_in = r.one_of({1, 1, 2, 6, 1000});
    const int most = r.one_of({16, 17, 255});
    for (std::size_t i = 0; i < alpha.size();) {
        const bool shown = r.one_in(one_shown_in);
        for (int run = r.between(1, 80); run > 0 && i < alpha.size(); --run)
            alpha[i++] = static_cast<std::uint8_t>(shown ? r.between(0, most) : 0);
    }
    return {offset + std::min(rows_bytes, 0), alpha};
}

struct mix_layout {
    spot video_y, video_v, video_u, alpha_plane, sub_y, sub_v, sub_u, dst, dst_u, dst_v;
};

// Each plane in a buffer of its own, or some of them in that of the video or, those of the surface,
// in that of the surface. A mix never reads the surface.
mix_layout draw_layout(random &r, drawn_call &drawn, const mix_function &f, const mix_shape &s) {
    const auto distance = [&] {
        return r.one_of({0, r.between(-64, 64), s.video_pitch, -s.sub_pitch, s.dst_pitch,
                         r.between(-2000, 2000)});
    };
    const bool shared = r.one_in(3);
    const auto place = [&](spot beside, const char *name) -> spot {
        if (shared && r.one_in(2))
            return {beside.buffer, beside.offset + distance()};
        return {drawn.add({name}), draw_offset(r)};
    };
    mix_layout l;
    l.video_y = {drawn.add({"video_y"}), draw_offset(r)};
    l.video_v = place(l.video_y, "video_v");
    l.video_u = place(l.video_y, "video_u");
    l.alpha_plane = {drawn.add({"alpha_plane"}), draw_offset(r)};
    drawn.buffers[l.alpha_plane.buffer].patches = {draw_alpha(r, l.alpha_plane.offset, s)};
    l.sub_y = place(l.video_y, "sub_y");
    l.sub_v = place(l.video_y, "sub_v");
    l.sub_u = place(l.video_y, "sub_u");
    l.dst = {drawn.add({"dst"}), draw_offset(r)};
    if (f.planar) {
        l.dst_u = place(l.dst, "dst_u");
        l.dst_v = place(l.dst, "dst_v");
    }
    return l;
}

} // namespace

drawn_call draw_video_mix(random &r, const char *name,
                          void (*on_model)(model::memory &, LUMALANE_PARAMETERS_mix),
                          void (*tests::function_table::*function)(LUMALANE_PARAMETERS_mix)) {
    const mix_function &f = find_by_name(mix_functions, name, __FILE__);
    drawn_call drawn;
    drawn.contrast = draw_contrast(r);
    const mix_shape s = draw_one_of(r, f, draw_regular, draw_almost_regular, draw_irregular);
    const mix_layout l = draw_layout(r, drawn, f, s);

    const bool with_info = f.name.find("rgb16") != f.name.npos;
    const unsigned rgb16_layout = draw_rgb16_layout(r);
    spot info{};
    if (with_info)
        info = add_rgb16_info(drawn, rgb16_layout);

    // The fields that the function does not read keep random bytes, pointers included.
    const spot mix{drawn.add({"mix", sizeof(tagMIX_INFO),
                              [=, planar = f.planar](void *record, const placement &at) {
                                  auto &m = *static_cast<tagMIX_INFO *>(record);
                                  s.fill(m);
                                  m.video_y = at.at(l.video_y);
                                  m.video_v = at.at(l.video_v);
                                  m.video_u = at.at(l.video_u);
                                  m.alpha_plane = at.at(l.alpha_plane);
                                  m.sub_y = at.at(l.sub_y);
                                  m.sub_v = at.at(l.sub_v);
                                  m.sub_u = at.at(l.sub_u);
                                  m.dst = at.at(l.dst);
                                  if (planar) {
                                      m.dst_u = at.at(l.dst_u);
                                      m.dst_v = at.at(l.dst_v);
                                  }
                                  if (with_info)
                                      m.adjust_info = at.at<tag_ajust_contrast_info>(info);
                              }}),
                   0};
    drawn.call(on_model, function,
               [=](const placement &at) { return std::tuple(at.at<tagMIX_INFO>(mix)); });

    s.tell(drawn);
    drawn.tell("rgb16_layout", rgb16_layout);
    drawn.tell("video_y", l.video_y);
    drawn.tell("video_v", l.video_v);
    drawn.tell("video_u", l.video_u);
    drawn.tell("alpha_plane", l.alpha_plane);
    drawn.tell("sub_y", l.sub_y);
    drawn.tell("sub_v", l.sub_v);
    drawn.tell("sub_u", l.sub_u);
    drawn.tell("dst", l.dst);
    if (f.planar) {
        drawn.tell("dst_u", l.dst_u);
        drawn.tell("dst_v", l.dst_v);
    }
    return drawn;
}

} // namespace differential
