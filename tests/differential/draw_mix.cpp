#include <algorithm>

#include "tests/differential/draw.h"

namespace differential {

unsigned draw_key(random &r) {
    const auto any = static_cast<unsigned>(r.next());
    return r.one_in(4) ? any : r.one_in(4) ? (any & 0xff) * 0x010101 : any & 0xffffff;
}

namespace {

enum class family { conversion, alpha_transfer, subpicture_load };

family family_of(std::string_view name) {
    return name.starts_with("Convert")                ? family::conversion
           : name.starts_with("load_subpicture_yuy2") ? family::subpicture_load
                                                      : family::alpha_transfer;
}

// Of the picture that the function works on. A height of 0 and no group of 8 pixels to convert run
// around the 32-bit range.
shape draw_mix_shape(random &r, std::string_view name) {
    const int least_width = family_of(name) == family::conversion ? 8 : 0;
    shape s;
    do
        s = draw_shape(r, name);
    while (s.height < 1 || s.width < least_width);
    // Then the rows of chroma lie 2 GB apart.
    if (family_of(name) == family::conversion && s.src_pitch < s.width && !r.one_in(8))
        s.height = 1;
    return s;
}

// What the function does not read is anything.
mix_shape draw_sizes(random &r, std::string_view name, const shape &s) {
    mix_shape drawn;
    for (int *field : {&drawn.video_pitch, &drawn.sub_pitch, &drawn.width})
        *field = static_cast<int>(r.next());
    drawn.dst_pitch = s.dst_pitch;
    drawn.height = s.height;
    switch (family_of(name)) {
    case family::conversion:
        drawn.width = s.width;
        drawn.sub_pitch = s.src_pitch;
        break;
    case family::alpha_transfer:
        drawn.width = s.width;
        drawn.video_pitch = s.src_pitch;
        break;
    case family::subpicture_load:
        drawn.video_pitch = s.width;
        break;
    }
    return drawn;
}

// So many groups of 8 pixels of a surface, many of them of the key colour only.
std::vector<std::uint8_t> draw_groups(random &r, int groups, int pixel_bytes, unsigned key) {
    std::vector<std::uint8_t> drawn;
    for (int group = 0; group < groups; ++group) {
        // One bit per pixel: another colour than the key.
        const int others = r.one_of({0, 0, 1 << r.between(0, 7), r.between(0, 255)});
        for (int i = 0; i < 8; ++i) {
            unsigned pixel = key;
            if (others >> i & 1)
                pixel = r.one_in(2)   ? key ^ 1u << r.between(0, 31)
                        : r.one_in(2) ? static_cast<unsigned>(r.next())
                                      : static_cast<unsigned>(r.next()) & 0xffffff;
            for (int byte = 0; byte < pixel_bytes; ++byte)
                drawn.push_back(static_cast<std::uint8_t>(pixel >> (8 * byte)));
        }
    }
    return drawn;
}

// The rows of a surface as a conversion finds them.
std::vector<patch> draw_surface(random &r, const spot &surface, const shape &s, int pixel_bytes,
                                unsigned key) {
    const int groups = s.width / 8;
    const int to_next_row = pixel_bytes * (8 * groups - s.width) + s.dst_pitch;
    std::vector<patch> rows;
    for (int row = 0; row < s.height; ++row)
        rows.push_back(
            {surface.offset + row * to_next_row, draw_groups(r, groups, pixel_bytes, key)});
    return rows;
}

// Groups of 16 pixels: transparent, opaque, out of range, or mixed.
std::vector<std::uint8_t> draw_alpha(random &r, int groups) {
    std::vector<std::uint8_t> drawn;
    for (int group = 0; group < groups; ++group) {
        const int kind = r.between(0, 4);
        for (int i = 0; i < 16; ++i)
            drawn.push_back(static_cast<std::uint8_t>(kind == 0   ? 0
                                                      : kind == 1 ? r.between(1, 16)
                                                      : kind == 2 ? r.between(128, 255)
                                                      : kind == 3
                                                          ? r.one_of({0, 1, 16, 17, 127, 128, 255})
                                                          : r.between(0, 255)));
    }
    return drawn;
}

struct layout {
    spot alpha, sub_y, sub_v, sub_u, dst;
};

// The surface in a buffer of its own; the planes as well, or some of them in that of the first.
layout draw_layout(random &r, drawn_call &drawn, const shape &s) {
    const auto distance = [&] {
        return r.one_of(
            {0, r.between(-64, 64), s.src_pitch, s.src_pitch * s.height, r.between(-2000, 2000)});
    };
    const bool shared = r.one_in(4);
    layout l;
    l.dst = {drawn.add({"dst"}), draw_offset(r)};
    l.sub_y = {drawn.add({"sub_y"}), draw_offset(r)};
    for (auto [plane, name] :
         {std::pair{&l.alpha, "alpha_plane"}, {&l.sub_v, "sub_v"}, {&l.sub_u, "sub_u"}}) {
        if (shared && r.one_in(2))
            *plane = {l.sub_y.buffer, l.sub_y.offset + distance()};
        else
            *plane = {drawn.add({name}), draw_offset(r)};
    }
    return l;
}

} // namespace

drawn_call draw_mix(random &r, const char *name,
                    void (*on_model)(model::memory &, LUMALANE_PARAMETERS_mix),
                    void (*tests::function_table::*function)(LUMALANE_PARAMETERS_mix)) {
    if (std::string_view(name).starts_with("mix_"))
        return draw_video_mix(r, name, on_model, function);
    drawn_call drawn;
    drawn.contrast = draw_contrast(r);
    const shape s = draw_mix_shape(r, name);
    const mix_shape drawn_sizes = draw_sizes(r, name, s);
    const layout l = draw_layout(r, drawn, s);
    const unsigned key = draw_key(r);
    const unsigned rgb16_layout = draw_rgb16_layout(r);
    if (family_of(name) == family::conversion)
        drawn.buffers[l.dst.buffer].patches =
            draw_surface(r, l.dst, s, destination_row_bytes(name, 1), key);
    if (family_of(name) == family::subpicture_load)
        drawn.buffers[l.alpha.buffer].patches = {
            {l.alpha.offset, draw_alpha(r, s.height * std::max(1, (s.width + 15) / 16))}};

    const spot info = add_rgb16_info(drawn, rgb16_layout);
    // Pointers that the function does not read are null or lie in unmapped memory. What the record
    // reserves keeps its random bytes.
    const spot unread{drawn.add({"unread"}), 0};
    const bool null = r.one_in(3);
    const bool reads_info = std::string_view(name).starts_with("load_subpicture_yuy2_rgb16");
    const spot record{drawn.add({"mix", sizeof(tagMIX_INFO),
                                 [=](void *bytes, const placement &at) {
                                     auto &mix = *static_cast<tagMIX_INFO *>(bytes);
                                     drawn_sizes.fill(mix);
                                     mix.video_y = mix.video_v = mix.video_u = mix.dst_u =
                                         mix.dst_v = null ? nullptr : at.at(unread);
                                     mix.alpha_plane = at.at(l.alpha);
                                     mix.sub_y = at.at(l.sub_y);
                                     mix.sub_v = at.at(l.sub_v);
                                     mix.sub_u = at.at(l.sub_u);
                                     mix.dst = at.at(l.dst);
                                     mix.color_key = key;
                                     mix.adjust_info = null && !reads_info
                                                           ? nullptr
                                                           : at.at<tag_ajust_contrast_info>(info);
                                 }}),
                      0};
    drawn.call(on_model, function,
               [=](const placement &at) { return std::tuple(at.at<tagMIX_INFO>(record)); });

    drawn_sizes.tell(drawn);
    drawn.tell("alpha_plane", l.alpha);
    drawn.tell("sub_y", l.sub_y);
    drawn.tell("sub_v", l.sub_v);
    drawn.tell("sub_u", l.sub_u);
    drawn.tell("dst", l.dst);
    drawn.tell_bits("color_key", key);
    drawn.tell("rgb16_layout", rgb16_layout);
    return drawn;
}

} // namespace differential
