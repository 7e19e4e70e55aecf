#include <cstring>

#include "tests/differential/draw.h"
#include "tests/model/models.h"

namespace differential {

namespace {

int draw_gain(random &r) {
    switch (r.between(0, 3)) {
    case 0:
        return 64;
    case 1: // only the low half counts
        return 64 + r.between(-100, 100) * 0x10000;
    case 2:
        return r.between(0, 200);
    default:
        return static_cast<int>(r.next());
    }
}

void draw_offsets(random &r, int &offset, int &extra) {
    switch (r.between(0, 3)) {
    case 0:
        offset = extra = 0;
        break;
    case 1:
        offset = r.between(-32768, 32767);
        extra = -offset;
        break;
    case 2:
        offset = r.between(-100, 100);
        extra = r.between(-10, 10);
        break;
    default:
        offset = static_cast<int>(r.next());
        extra = static_cast<int>(r.next());
    }
}

} // namespace

contrast_data draw_contrast(random &r) {
    contrast_data drawn{};
    drawn.y_gain = draw_gain(r);
    drawn.uv_gain = draw_gain(r);
    draw_offsets(r, drawn.y_offset, drawn.y_offset_extra);
    draw_offsets(r, drawn.u_offset, drawn.u_offset_extra);
    draw_offsets(r, drawn.v_offset, drawn.v_offset_extra);
    return drawn;
}

// The state cannot be seen: an adjusting copy shows it.
drawn_call draw_parameters(random &r, const char *, void (*on_model)(model::memory &, void *),
                           void (*tests::function_table::*function)(void *)) {
    constexpr int width = 256, height = 2;
    drawn_call drawn;
    drawn.contrast = draw_contrast(r);
    const contrast_data next = draw_contrast(r);
    const spot params{drawn.add({"params", sizeof next,
                                 [=](void *record, const placement &) {
                                     std::memcpy(record, &next, sizeof next);
                                 }}),
                      0};
    const spot info{drawn.add({"info", sizeof(tag_ajust_contrast_info),
                               [](void *record, const placement &) {
                                   auto &facts = *static_cast<tag_ajust_contrast_info *>(record);
                                   facts.surface_height = facts.rows_to_plane_end = height;
                               }}),
                    0};
    const spot src{drawn.add({"src"}), 0}, src_u{drawn.add({"src_u"}), 0},
        src_v{drawn.add({"src_v"}), 0}, dst{drawn.add({"dst"}), 0};

    const auto copy_arguments = [=](const placement &at) {
        return std::tuple(at.at(src), at.at(src_u), at.at(src_v), at.at(dst), width, height, width,
                          width, at.at<tag_ajust_contrast_info>(info));
    };
    drawn.on_model = [=](model::memory &m, const placement &at) {
        on_model(m, at.at(params));
        std::apply(model::loadimage_yv12_ajust, std::tuple_cat(std::tie(m), copy_arguments(at)));
    };
    drawn.on_function = [=](const tests::function_table &functions, const placement &at) {
        (functions.*function)(at.at(params));
        std::apply(functions.loadimage_yv12_ajust, copy_arguments(at));
    };
    drawn.arguments = "followed by loadimage_yv12_ajust";
    return drawn;
}

} // namespace differential
