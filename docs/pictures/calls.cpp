#include "docs/pictures/calls.h"

#include <cstring>
#include <map>
#include <stdexcept>

namespace pictures {

namespace {

using namespace lumalane;

// ---- The functions by their names ----------------------------------------------------------------

using picture_pointer = decltype(&::loadimage_rgb32);
using mix_pointer = decltype(&::mix_ayuy2_rgb32_p_ajust);
using key_fill_pointer = decltype(&::LoadColorKeyRgb32);

template <class Pointer>
const std::map<std::string, Pointer> &named();

struct ignored {
    template <class... Any>
    ignored(Any &&...) {}
};

template <class Pointer>
struct collector {
    std::map<std::string, Pointer> found;
    void add(const char *name, Pointer p) { found[name] = p; }
    void add(const char *, ignored) {}
};

template <class Pointer>
const std::map<std::string, Pointer> &named() {
    static const std::map<std::string, Pointer> all = [] {
        collector<Pointer> c;
#define LUMALANE_EXPORT(signature, name) c.add(#name, &::name);
#include "abi/exports.inc"
#undef LUMALANE_EXPORT
        return c.found;
    }();
    return all;
}

template <class Function, class Call>
call described(const Function &f, const Call &numbers) {
    call made;
    made.name = f.name;
    made.bytes = footprint_of(f, numbers);
    told to;
    rows_of(f, numbers, to);
    made.rows = to.sets;
    return made;
}

std::string text(std::initializer_list<std::pair<const char *, long long>> arguments) {
    std::string made;
    for (const auto &[name, value] : arguments)
        made += (made.empty() ? "" : ", ") + std::string(name) + " " + std::to_string(value);
    return made;
}

unsigned char *address(const addresses &a, pointer p) { return a[static_cast<int>(p)]; }

} // namespace

const char *name_of(pointer p) {
    static const char *const names[] = {
        "src",     "src_u",   "src_v",   "dst",         "dst_u", "dst_v", "surface", "mask",
        "video_y", "video_v", "video_u", "alpha_plane", "sub_y", "sub_v", "sub_u",   "plane_y",
        "plane_u", "plane_v", "info",    "mix",         "frame", "params"};
    static_assert(sizeof names / sizeof *names == pointer_count);
    return names[static_cast<int>(p)];
}

// ---- Memory --------------------------------------------------------------------------------------

memory::memory(const call &c, unsigned char fill) {
    for (int i = 0; i < pointer_count; ++i) {
        const byte_range touched = c.bytes.of[i].touched();
        if (touched.empty() || static_cast<pointer>(i) >= pointer::info)
            continue;
        const long long begin = touched.begin < 0 ? touched.begin : 0;
        bytes[i].assign(static_cast<std::size_t>(touched.end - begin), fill);
        where[i] = bytes[i].data() - begin;
        sizes[i] = touched.end;
    }
}

unsigned char *memory::at(pointer p) const { return where[static_cast<int>(p)]; }
long long memory::size_from(pointer p) const { return sizes[static_cast<int>(p)]; }

// ---- Picture functions ---------------------------------------------------------------------------

call make_call(const picture_function &f, picture_call n) {
    call made = described(f, n);
    made.rgb16_layout = n.rgb16_layout;
    made.arguments = text({{"width", n.width},
                           {"height", n.height},
                           {"src_pitch", n.src_pitch},
                           {"dst_pitch", n.dst_pitch}});
    if (f.shape == picture_shape::adjusted_copy)
        made.arguments += ", " + text({{"surface_height", n.surface_height},
                                       {"rows_to_plane_end", n.rows_to_plane_end}});
    const long long w = n.width, h = n.height, S = n.src_pitch, D = n.dst_pitch,
                    B = f.bytes_per_pixel;
    const auto from_planes = [&](long long pitch) {
        made.parts.push_back({pointer::src, 1, {{0, w, pitch, h}}});
        made.parts.push_back({pointer::src_u, 1, {{0, w / 2, pitch / 2, h / 2}}});
        made.parts.push_back({pointer::src_v, 1, {{0, w / 2, pitch / 2, h / 2}}});
    };
    const auto to = [&](int unit, std::vector<rectangle> picture) {
        made.parts.insert(made.parts.begin(), {pointer::dst, unit, std::move(picture)});
    };
    const auto to_planes = [&](long long columns, long long rows, long long V, long long U) {
        to(1, {{0, columns, D, rows},
               {V, columns / 2, D / 2, rows / 2},
               {U, columns / 2, D / 2, rows / 2}});
    };
    switch (f.shape) {
    case picture_shape::copy:
        from_planes(S);
        to_planes(w, h, h * D - 1, h * D - 1 + (h * D >> 2));
        break;
    case picture_shape::adjusted_copy: {
        from_planes(w);
        const long long E = n.rows_to_plane_end * D, all = n.surface_height * D;
        to_planes(w, h, E + ((all - E) >> 2), E + ((all - E) >> 2) + (all >> 2));
        break;
    }
    case picture_shape::halved_copy:
        from_planes(S);
        to_planes(w / 2, h, h * D, h * D + (D >> 1) * (h >> 1));
        break;
    case picture_shape::planar_pairs:
    case picture_shape::planar_pairs_with_gaps:
    case picture_shape::planar_rows:
    case picture_shape::luma_rows:
        from_planes(S);
        if (f.shape == picture_shape::luma_rows)
            made.parts.resize(1);
        to(B == 1 ? 2 : static_cast<int>(B), {{0, B * w, D, h}});
        break;
    case picture_shape::packed_pairs:
        made.parts.push_back({pointer::src, 2, {{0, 2 * w, 2 * S, h}}});
        to(static_cast<int>(B), {{0, B * w, D, h}});
        break;
    case picture_shape::doubled_pairs:
    case picture_shape::filtered_doubled_pairs:
        from_planes(S);
        to(2, {{0, B * w, D, 2 * h}});
        break;
    case picture_shape::doubled_columns:
        from_planes(S);
        to(static_cast<int>(B), {{0, B * w, D, 2 * h}});
        break;
    case picture_shape::adjusted_planes:
        from_planes(S);
        to_planes(B * w, 2 * h, 2 * h * D, 2 * h * D + (2 * h * D >> 2));
        break;
    }
    made.run = [n](const call &c, const addresses &a) {
        tag_ajust_contrast_info info = {};
        info.rgb16_layout = c.rgb16_layout;
        info.surface_height = n.surface_height;
        info.rows_to_plane_end = n.rows_to_plane_end;
        named<picture_pointer>().at(c.name)(address(a, pointer::src), address(a, pointer::src_u),
                                            address(a, pointer::src_v), address(a, pointer::dst),
                                            n.width, n.height, n.src_pitch, n.dst_pitch, &info);
    };
    return made;
}

// ---- Functions with a tagMIX_INFO ----------------------------------------------------------------

call make_call(const mix_function &f, mix_call n) {
    call made = described(f, n);
    made.rgb16_layout = n.rgb16_layout;
    const long long w = n.width, h = n.height, V = n.video_pitch, S = n.sub_pitch, D = n.dst_pitch,
                    B = f.bytes_per_pixel;
    const auto add = [&](pointer p, int unit, rectangle r) {
        made.parts.push_back({p, unit, {r}});
    };
    const auto surface = [&](long long row_bytes, int unit) {
        add(pointer::dst, unit, {0, row_bytes, D, h});
    };
    const auto video = [&](long long rows) {
        add(pointer::video_y, 1, {0, w, V, rows});
        add(pointer::video_u, 1, {0, w / 2, V / 2, rows / 2});
        add(pointer::video_v, 1, {0, w / 2, V / 2, rows / 2});
    };
    const auto subpicture = [&](long long columns, long long pitch) {
        add(pointer::alpha_plane, 1, {0, columns, pitch, h});
        add(pointer::sub_y, 1, {0, columns, pitch, h});
        add(pointer::sub_u, 1, {0, columns / 2, pitch / 2, h});
        add(pointer::sub_v, 1, {0, columns / 2, pitch / 2, h});
    };
    const long long alpha_pitch = w + ((V - w) >> 1);
    switch (f.shape) {
    case mix_shape::conversion:
        add(pointer::sub_y, 1, {0, w, S, h});
        add(pointer::sub_u, 1, {0, w / 2, S / 2, h});
        add(pointer::sub_v, 1, {0, w / 2, S / 2, h});
        surface(B * w, static_cast<int>(B));
        break;
    case mix_shape::restored_alpha:
        add(pointer::alpha_plane, 1, {0, w, alpha_pitch, h});
        surface(B * w, static_cast<int>(B));
        break;
    case mix_shape::loaded_alpha:
        surface(B * w, static_cast<int>(B));
        add(pointer::alpha_plane, 1, {0, w, alpha_pitch, h});
        break;
    case mix_shape::subpicture:
        surface(B * V, static_cast<int>(B));
        subpicture(V, V);
        break;
    case mix_shape::yuy2_pairs:
    case mix_shape::half_yuy2_pairs:
    case mix_shape::rgb_pairs:
        surface(B * w, B == 1 ? 2 : static_cast<int>(B));
        video(h);
        subpicture(w, S);
        break;
    case mix_shape::field_groups:
    case mix_shape::field_columns:
        surface(B * w, static_cast<int>(B));
        video(h / 2);
        subpicture(w, S);
        break;
    case mix_shape::planes:
    case mix_shape::field_planes:
        surface(w, 1);
        add(pointer::dst_u, 1, {0, w / 2, D / 2, h / 2});
        add(pointer::dst_v, 1, {0, w / 2, D / 2, h / 2});
        video(f.shape == mix_shape::planes ? h : h / 2);
        subpicture(w, S);
        break;
    }
    const bool only_pitch = f.shape == mix_shape::subpicture;
    made.arguments = only_pitch ? text({{"video_pitch", V}, {"height", h}, {"dst_pitch", D}})
                                : text({{"width", w}, {"height", h}});
    const auto also = [&](const char *name, long long value) {
        made.arguments += ", " + text({{name, value}});
    };
    if (!only_pitch) {
        if (f.shape != mix_shape::conversion)
            also("video_pitch", V);
        if (f.shape != mix_shape::restored_alpha && f.shape != mix_shape::loaded_alpha)
            also("sub_pitch", S);
        also("dst_pitch", D);
    }
    made.run = [n](const call &c, const addresses &a) {
        tag_ajust_contrast_info info = {};
        info.rgb16_layout = c.rgb16_layout;
        tagMIX_INFO mix = {};
        mix.video_pitch = n.video_pitch, mix.sub_pitch = n.sub_pitch, mix.dst_pitch = n.dst_pitch;
        mix.width = n.width, mix.height = n.height;
        mix.video_y = address(a, pointer::video_y);
        mix.video_v = address(a, pointer::video_v);
        mix.video_u = address(a, pointer::video_u);
        mix.alpha_plane = address(a, pointer::alpha_plane);
        mix.sub_y = address(a, pointer::sub_y);
        mix.sub_v = address(a, pointer::sub_v);
        mix.sub_u = address(a, pointer::sub_u);
        mix.dst = address(a, pointer::dst);
        mix.dst_u = address(a, pointer::dst_u);
        mix.dst_v = address(a, pointer::dst_v);
        mix.color_key = c.key;
        mix.adjust_info = &info;
        named<mix_pointer>().at(c.name)(&mix);
    };
    return made;
}

// ---- The others ----------------------------------------------------------------------------------

call make_call(const key_fill_function &f, key_fill_call n) {
    call made = described(f, n);
    made.arguments = text({{"width", n.width}, {"height", n.height}, {"pitch", n.pitch}});
    made.parts = {{pointer::surface,
                   f.bytes_per_pixel,
                   {{0, f.bytes_per_pixel * n.width, n.pitch, n.height}}}};
    made.run = [n](const call &c, const addresses &a) {
        named<key_fill_pointer>().at(c.name)(c.key, address(a, pointer::surface), n.width, n.height,
                                             0, n.pitch);
    };
    return made;
}

call make_call(const mask_function &f, mask_call n) {
    call made = described(f, n);
    made.arguments = text({{"width", n.width}, {"pitch", n.pitch}, {"height", n.height}});
    for (const pointer p : {pointer::dst, pointer::mask})
        made.parts.push_back({p, 1, {{0, n.width, n.pitch, n.height}}});
    made.run = [n](const call &c, const addresses &a) {
        RelaceMaskWithColorKey(address(a, pointer::dst), address(a, pointer::mask), 1, c.key,
                               n.width, n.pitch, n.height);
    };
    return made;
}

call make_call(const packed_stretch_function &f, packed_stretch_call n) {
    call made = described(f, n);
    made.arguments =
        text({{"row_bytes", n.row_bytes}, {"height", n.height}, {"dst_pitch", n.dst_pitch}});
    made.parts = {{pointer::dst, 2, {{0, 2 * n.row_bytes, n.dst_pitch, 2 * n.height}}},
                  {pointer::src, 2, {{0, n.row_bytes, n.row_bytes, n.height}}}};
    made.run = [n](const call &c, const addresses &a) {
        unsigned char *src = address(a, pointer::src), *dst = address(a, pointer::dst);
        if (c.name == "yuy2_strech_picture_2X2_yuy2")
            yuy2_strech_picture_2X2_yuy2(src, nullptr, nullptr, dst, n.row_bytes, n.height,
                                         n.dst_pitch);
        else
            yuy2_strech_picture_2X2_yuy2_ajust(src, nullptr, nullptr, dst, n.row_bytes, n.height,
                                               n.dst_pitch, nullptr);
    };
    return made;
}

call make_call(const plane_stretch_function &f, plane_stretch_call n) {
    call made = described(f, n);
    made.arguments = text({{"width", n.width},
                           {"height", n.height},
                           {"src_pitch", n.src_pitch},
                           {"dst_pitch", n.dst_pitch}});
    made.parts = {{pointer::dst, 1, {{0, f.times_width * n.width, n.dst_pitch, 2 * n.height}}},
                  {pointer::src, 1, {{0, n.width, n.src_pitch, n.height}}}};
    made.run = [n](const call &c, const addresses &a) {
        unsigned char *src = address(a, pointer::src), *dst = address(a, pointer::dst);
        if (c.name == "strech_pic_2X2")
            strech_pic_2X2(src, dst, n.width, n.height, n.src_pitch, n.dst_pitch);
        else if (c.name == "strech_pic_2X2_adjust")
            strech_pic_2X2_adjust(src, dst, n.width, n.height, n.src_pitch, n.dst_pitch, nullptr,
                                  1);
        else
            strech_pic_1X2_adjust(src, dst, n.width, n.height, n.src_pitch, n.dst_pitch, nullptr,
                                  1);
    };
    return made;
}

call make_call(const frame_stretch_function &f, frame_stretch_call n) {
    call made = described(f, n);
    made.arguments = text({{"luma_pitch", n.luma_pitch},
                           {"field_mode", n.field_mode},
                           {"start", n.start},
                           {"height", n.height},
                           {"dst_pitch", n.dst_pitch}});
    const long long w = n.luma_pitch, h = n.field_mode == 1 ? 2 * n.height : n.height;
    made.parts = {{pointer::dst, 2, {{0, 2 * w, n.dst_pitch, 2 * n.height}}},
                  {pointer::plane_y, 1, {{0, w, w, h}}},
                  {pointer::plane_u, 1, {{0, w / 2, w / 2, h / 2}}},
                  {pointer::plane_v, 1, {{0, w / 2, w / 2, h / 2}}}};
    made.run = [n](const call &, const addresses &a) {
        tagVideoFrame frame = {};
        frame.field_mode = n.field_mode, frame.luma_pitch = n.luma_pitch;
        frame.plane_y = address(a, pointer::plane_y);
        frame.plane_u = address(a, pointer::plane_u);
        frame.plane_v = address(a, pointer::plane_v);
        strech_opt_yuy2_ajust(&frame, n.start, n.height, address(a, pointer::dst), n.dst_pitch,
                              nullptr);
    };
    return made;
}

// ---- Sizes to show -------------------------------------------------------------------------------

namespace {

constexpr struct { int width, height; } usual_sizes[] = {{320, 240}, {720, 576}, {1366, 768}};

std::string least_text(int width, int width_step, int height) {
    std::string made = "width " + std::to_string(width);
    if (width_step > 1)
        made += ", multiples of " + std::to_string(width_step);
    return made + "; height " + std::to_string(height);
}

} // namespace

samples samples_of(const picture_function &f) {
    samples made;
    made.least = least_text(f.least_width, f.width_step, f.least_height) +
                 (f.even_height ? ", even heights" : "");
    const int B = f.bytes_per_pixel, step = f.step;
    picture_call n{step + 4, 6, 48, 48 * (B == 1 ? 1 : B)};
    switch (f.shape) {
    case picture_shape::copy:
        n = {20, 6, 32, 32};
        break;
    case picture_shape::adjusted_copy:
        n = {12, 6, 32, 32, 0, 8, 7};
        break;
    case picture_shape::halved_copy:
        n = {40, 6, 64, 32};
        break;
    case picture_shape::planar_rows:
        n = {20, f.least_height > 6 ? f.least_height : 6, 48, 48 * (B == 1 ? 2 : B)};
        break;
    case picture_shape::packed_pairs:
        n = {step + 4, 6, 40, 40 * B};
        break;
    case picture_shape::doubled_pairs:
    case picture_shape::filtered_doubled_pairs:
        n = {B == 2 ? 20 : 36, f.least_height, B == 2 ? 48 : 64, B == 2 ? 96 : 192};
        break;
    case picture_shape::doubled_columns:
        n = {f.width_step == 16 ? 32 : 20, 13, 40, 40 * B};
        break;
    case picture_shape::adjusted_planes:
        n = {36, 4, 36, 40 * B};
        break;
    default:
        break;
    }
    made.small = make_call(f, n);
    for (const auto &size : usual_sizes) {
        const int w = f.width_step == 16 ? size.width / 16 * 16 : size.width;
        const bool packed = f.shape == picture_shape::packed_pairs;
        picture_call u{w, size.height, packed ? w + w % 2 : w, B * w, 0, size.height, size.height};
        made.usual.push_back(make_call(f, u));
    }
    return made;
}

samples samples_of(const mix_function &f) {
    samples made;
    const int B = f.bytes_per_pixel, wide = 48;
    made.least = least_text(f.least_width, 1, f.least_height);
    mix_call n{48, 40, wide * B, 20, 6};
    switch (f.shape) {
    case mix_shape::conversion:
        n = {0, 32, 32 * B, 20, 6};
        break;
    case mix_shape::restored_alpha:
    case mix_shape::loaded_alpha:
        n = {44, 0, 48 * B, 20, 6};
        break;
    case mix_shape::subpicture:
        n = {20, 0, 40 * B, 20, 6};
        made.least = "video_pitch 1; height 1";
        break;
    case mix_shape::half_yuy2_pairs:
        n = {48, 48, 96, 24, 6};
        break;
    case mix_shape::field_groups:
        n = {48, 40, 48 * B, 20, 12};
        break;
    case mix_shape::field_columns:
        n = {32, 32, 40 * B, 20, 10};
        break;
    case mix_shape::planes:
    case mix_shape::field_planes:
        n = {32, 32, 32, 12, 8};
        break;
    default:
        break;
    }
    made.small = make_call(f, n);
    for (const auto &size : usual_sizes) {
        const int w = size.width;
        made.usual.push_back(make_call(f, mix_call{w, w, B * w, w, size.height}));
    }
    return made;
}

samples samples_of(const key_fill_function &f) {
    samples made;
    made.least = least_text(1, 1, 1);
    made.small = make_call(f, key_fill_call{20, 5, 48 * f.bytes_per_pixel});
    for (const auto &size : usual_sizes)
        made.usual.push_back(
            make_call(f, key_fill_call{size.width, size.height, f.bytes_per_pixel * size.width}));
    return made;
}

samples samples_of(const mask_function &f) {
    samples made;
    made.least = least_text(1, 1, 1);
    made.small = make_call(f, mask_call{20, 48, 5});
    for (const auto &size : usual_sizes)
        made.usual.push_back(make_call(f, mask_call{size.width, size.width, size.height}));
    return made;
}

samples samples_of(const packed_stretch_function &f) {
    samples made;
    made.least = "row_bytes 64, multiples of 32; height " + std::to_string(f.least_height);
    made.small = make_call(f, packed_stretch_call{64, f.least_height, 160});
    for (const auto &size : usual_sizes) {
        const int w = size.width / 16 * 16;
        made.usual.push_back(make_call(f, packed_stretch_call{2 * w, size.height, 4 * w}));
    }
    return made;
}

samples samples_of(const plane_stretch_function &f) {
    samples made;
    made.least = least_text(f.least_width, 1, 2);
    const int t = f.times_width;
    made.small = make_call(f, plane_stretch_call{20, 5, f.adjusts && t == 2 ? 20 : 32, 48 * t});
    for (const auto &size : usual_sizes)
        made.usual.push_back(
            make_call(f, plane_stretch_call{size.width, size.height, size.width, t * size.width}));
    return made;
}

samples samples_of(const frame_stretch_function &f) {
    samples made;
    made.least = "luma_pitch 0; height 8";
    made.small = make_call(f, frame_stretch_call{40, 0, 0, 8, 112});
    for (const auto &size : usual_sizes)
        made.usual.push_back(
            make_call(f, frame_stretch_call{size.width, 0, 0, size.height, 2 * size.width}));
    return made;
}

} // namespace pictures
