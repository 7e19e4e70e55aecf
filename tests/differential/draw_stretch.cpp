#include <algorithm>
#include <cstdlib>

#include "tests/differential/draw.h"

namespace differential {

namespace {

// With lower pictures, or with widths off the step, the function would not end; with narrower ones neither,
// or it would leave its buffers. (Where negative widths mean something, -40 is as good as any.)
struct stretch_function {
    std::string_view name;
    int row_bytes; // that a pixel makes
    int least_width, width_step;
    int least_height;
};

constexpr stretch_function stretch_functions[] = {
    {"strech_picture_1X2_yuy2", 2, 0, 1, -9},
    {"strech_picture_1X2_yuy2_ajust", 2, 0, 1, -9},
    {"strech_picture_2X2_yuy2", 4, -40, 1, -9},
    {"strech_picture_2X2_yuy2_ajust", 4, -40, 1, -9},
    {"yuy2_strech_picture_2X2_yuy2", 4, 32, 16, -9},
    {"yuy2_strech_picture_2X2_yuy2_ajust", 4, 32, 16, -9},
    {"strech_picture_1X2_yuy2_ajust_rgb32", 4, -40, 1, -9},
    {"strech_picture_1X2_yuy2_ajust_rgb24", 3, 16, 16, -9},
    {"strech_picture_1X2_yuy2_ajust_rgb16", 2, 16, 16, -9},
    // Each chroma plane has half of both.
    {"strech_picture_2X2_yv12_ajust", 2, 2, 1, 4},
    {"strech_picture_1X2_yv12_ajust", 1, 2, 1, 4},
    {"strech_pic_2X2", 2, -40, 1, 2},
    {"strech_pic_2X2_adjust", 2, 1, 1, 2},
    {"strech_pic_1X2_adjust", 1, 1, 1, 2},
    {"strech_opt_yuy2_ajust", 2, 0, 1, -9},
};

// From the least one on.
int draw_width(random &r, const stretch_function &f, int most) {
    const int drawn = r.between(f.least_width, most);
    return drawn / f.width_step * f.width_step;
}

// Widths on the step of 16 (on and off 32), even heights that suffice for most functions, rows that
// do not overlap. Source rows are tight more often than not: some functions take them so.
shape draw_regular(random &r, const stretch_function &f) {
    const bool wide = draw_wide(r);
    const int most = wide ? widest_drawn / 16 : r.one_of({3, 24, 24, 60});
    shape s;
    s.width = std::max(16 * r.between(1, most), (f.least_width + 15) / 16 * 16);
    s.height = 2 * r.between(r.one_in(6) ? 2 : 6, wide ? 7 : 11);
    s.src_pitch = s.width + r.one_of({0, 0, 0, 16, 2 * r.between(0, 60)});
    s.dst_pitch = f.row_bytes * s.width + r.one_of({0, 0, 16, 64, r.between(0, 100)});
    return s;
}

shape draw_irregular(random &r, const stretch_function &f) {
    shape s;
    s.width = draw_width(r, f, r.one_in(4) ? 300 : 100);
    s.height = r.between(f.least_height, r.one_in(3) ? 40 : 20);
    const int pixels = std::max(s.width, 16);
    s.src_pitch = draw_irregular_pitch(r, pixels);
    s.dst_pitch = draw_irregular_pitch(r, f.row_bytes * pixels);
    return s;
}

// Regular but for one thing.
shape draw_almost_regular(random &r, const stretch_function &f) {
    shape s = draw_regular(r, f);
    switch (r.between(0, 4)) {
    case 0:
        s.width = r.one_in(3)   ? (s.width + 1) / f.width_step * f.width_step // by one too wide
                  : r.one_in(2) ? draw_width(r, f, std::max(f.least_width + 1, 31))
                                : draw_width(r, f, s.width + 15);
        break;
    case 1:
        s.height = std::max(s.height - r.between(1, 3), f.least_height);
        break;
    case 2:
        s.src_pitch = draw_irregular_pitch(r, s.width);
        break;
    case 3: // of few bits
        s.dst_pitch = r.between(-2, 20);
        break;
    default:
        s.dst_pitch = draw_irregular_pitch(r, f.row_bytes * s.width);
    }
    return s;
}

void tell(drawn_call &drawn, const shape &s) {
    drawn.tell("width", s.width);
    drawn.tell("height", s.height);
    drawn.tell("src_pitch", s.src_pitch);
    drawn.tell("dst_pitch", s.dst_pitch);
}

// A buffer that nobody touches.
spot draw_unread(drawn_call &drawn, const char *name) { return {drawn.add({name}), 0}; }

// The two functions differ in a record that neither reads.
template <class Model, class Function, class... Records>
drawn_call draw_packed(random &r, const char *name, Model on_model, Function function,
                       Records... names) {
    drawn_call drawn;
    drawn.contrast = draw_contrast(r);
    const shape s = draw_stretch_shape(r, name);
    const spot src{drawn.add({"src"}), draw_offset(r)}, dst{drawn.add({"dst"}), draw_offset(r)};
    const spot unread_u = draw_unread(drawn, "unread_u"), unread_v = draw_unread(drawn, "unread_v");
    const auto unread_records = std::tuple(draw_unread(drawn, names)...);
    drawn.call(on_model, function, [=](const placement &at) {
        return std::tuple_cat(
            std::tuple(at.at<void>(src), at.at<void>(unread_u), at.at<void>(unread_v),
                       at.at<void>(dst), 2 * s.width, s.height, s.dst_pitch),
            std::apply(
                [&](auto... spots) { return std::tuple(at.at<tag_ajust_contrast_info>(spots)...); },
                unread_records));
    });
    tell(drawn, s);
    return drawn;
}

// Samples of a plane around the row at `offset`: rows that differ little, about as much as decides
// on the search for edges, or in stripes of any direction.
patch draw_edges(random &r, std::ptrdiff_t offset, int pitch, int rows) {
    const int kind = r.between(0, 2);
    const int noise = r.one_of({0, 1, 5});
    const int low = r.one_of({0, r.between(0, 200)});
    const int high = kind == 0   ? low
                     : kind == 1 ? low + r.between(6, 10)
                                 : r.one_of({255, low + 40});
    const int period = r.between(2, 24), slope = r.between(-5, 5);
    std::vector<std::uint8_t> plane;
    for (int row = -2; row < rows; ++row)
        for (int x = 0; x < pitch; ++x) {
            const int phase = kind == 1 ? row : (x + slope * row + 1000 * period) / period;
            const int sample = (phase % 2 == 0 ? low : high) + r.between(-noise, noise);
            plane.push_back(static_cast<std::uint8_t>(std::clamp(sample, 0, 255)));
        }
    return {offset - 2 * std::ptrdiff_t{pitch}, plane};
}

} // namespace

shape draw_stretch_shape(random &r, std::string_view name) {
    const stretch_function &f = find_by_name(stretch_functions, name, __FILE__);
    return draw_one_of(r, f, draw_regular, draw_almost_regular, draw_irregular);
}

drawn_call
draw_packed_stretch(random &r, const char *name,
                    void (*on_model)(model::memory &, LUMALANE_PARAMETERS_packed_stretch),
                    void (*tests::function_table::*function)(LUMALANE_PARAMETERS_packed_stretch)) {
    return draw_packed(r, name, on_model, function);
}

drawn_call draw_packed_stretch_ajust(
    random &r, const char *name,
    void (*on_model)(model::memory &, LUMALANE_PARAMETERS_packed_stretch_ajust),
    void (*tests::function_table::*function)(LUMALANE_PARAMETERS_packed_stretch_ajust)) {
    return draw_packed(r, name, on_model, function, "info");
}

drawn_call
draw_plane_stretch(random &r, const char *name,
                   void (*on_model)(model::memory &, LUMALANE_PARAMETERS_plane_stretch),
                   void (*tests::function_table::*function)(LUMALANE_PARAMETERS_plane_stretch)) {
    drawn_call drawn;
    drawn.contrast = draw_contrast(r);
    const shape s = draw_stretch_shape(r, name);
    const spot src{drawn.add({"src"}), draw_offset(r)}, dst{drawn.add({"dst"}), draw_offset(r)};
    drawn.call(on_model, function, [=](const placement &at) {
        return std::tuple(at.at(src), at.at(dst), s.width, s.height, s.src_pitch, s.dst_pitch);
    });
    tell(drawn, s);
    return drawn;
}

drawn_call draw_plane_stretch_ajust(
    random &r, const char *name,
    void (*on_model)(model::memory &, LUMALANE_PARAMETERS_plane_stretch_ajust),
    void (*tests::function_table::*function)(LUMALANE_PARAMETERS_plane_stretch_ajust)) {
    drawn_call drawn;
    drawn.contrast = draw_contrast(r);
    const shape s = draw_stretch_shape(r, name);
    const int plane_number = r.between(1, 3);
    const spot src{drawn.add({"src"}), draw_offset(r)}, dst{drawn.add({"dst"}), draw_offset(r)};
    const spot info = draw_unread(drawn, "info");
    drawn.call(on_model, function, [=](const placement &at) {
        return std::tuple(at.at(src), at.at(dst), s.width, s.height, s.src_pitch, s.dst_pitch,
                          at.at<tag_ajust_contrast_info>(info), plane_number);
    });
    tell(drawn, s);
    drawn.tell("plane_number", plane_number);
    return drawn;
}

// The width of the shape is the pitch of the frame.
drawn_call
draw_frame_stretch(random &r, const char *name,
                   void (*on_model)(model::memory &, LUMALANE_PARAMETERS_frame_stretch),
                   void (*tests::function_table::*function)(LUMALANE_PARAMETERS_frame_stretch)) {
    drawn_call drawn;
    drawn.contrast = draw_contrast(r);
    const shape s = draw_stretch_shape(r, name);
    const int field_mode = r.one_of({0, 1, 1, 2, -1, static_cast<int>(r.next())});
    const int start = r.one_of({0, 0, 1, r.between(-5, 9)});
    const spot plane_y{drawn.add({"plane_y"}), draw_offset(r)},
        plane_u{drawn.add({"plane_u"}), draw_offset(r)},
        plane_v{drawn.add({"plane_v"}), draw_offset(r)}, dst{drawn.add({"dst"}), draw_offset(r)};
    if (!r.one_in(3)) {
        const int rows = 2 * std::max(s.height, 0) + 10;
        drawn.buffers[plane_y.buffer].patches = {draw_edges(r, plane_y.offset, s.width, rows)};
        for (const spot &plane : {plane_u, plane_v})
            drawn.buffers[plane.buffer].patches = {
                draw_edges(r, plane.offset, s.width / 2, rows / 2)};
    }
    const spot info = draw_unread(drawn, "info");
    const spot frame{drawn.add({"frame", sizeof(tagVideoFrame),
                                [=](void *record, const placement &at) {
                                    auto &f = *static_cast<tagVideoFrame *>(record);
                                    f.field_mode = field_mode;
                                    f.plane_y = at.at(plane_y);
                                    f.plane_u = at.at(plane_u);
                                    f.plane_v = at.at(plane_v);
                                    f.luma_pitch = s.width;
                                }}),
                     0};
    drawn.call(on_model, function, [=](const placement &at) {
        return std::tuple(at.at<tagVideoFrame>(frame), start, s.height, at.at(dst), s.dst_pitch,
                          at.at<tag_ajust_contrast_info>(info));
    });
    tell(drawn, s);
    drawn.tell("field_mode", field_mode);
    drawn.tell("start", start);
    return drawn;
}

} // namespace differential
