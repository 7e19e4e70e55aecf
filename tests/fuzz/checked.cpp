// Checked calls with any numbers and with buffers that may be short, null, misaligned or shared. Memory
// outside of what the call is told of is poisoned, and all of it while a call is made that is to be
// refused. What is accepted is compared with the model, which has to do with the buffers as well.
#include "tests/fuzz/fuzz.h"

#include <sanitizer/asan_interface.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include <lumalane/checked.h>

#include "tests/model/models.h"

namespace {

using differential::random;
using lumalane::buffer;
using lumalane::byte_range;
using lumalane::footprint;
using lumalane::footprint_of;
using lumalane::pointer;
using lumalane::status;

// ---- Memory and buffers in it --------------------------------------------------------------------

constexpr std::size_t arena_bytes = 1 << 18;
alignas(64) std::uint8_t arena[arena_bytes];

void poison_all() { ASAN_POISON_MEMORY_REGION(arena, arena_bytes); }
void open_all() { ASAN_UNPOISON_MEMORY_REGION(arena, arena_bytes); }

// The buffers of one call.
class buffers {
public:
    buffers(random &r_, const footprint &needed_) : r(r_), needed(needed_) {}

    buffer at(pointer p) {
        if (r.one_in(40))
            return {nullptr, byte_range{0, 1 << 20}};
        const byte_range touched = needed[p].touched();
        byte_range told = touched;
        if (r.one_in(12)) // by little, or by much
            told.end -= r.one_in(2) ? r.between(1, 16) : r.between(0, 1 << 16);
        if (r.one_in(12))
            told.begin += r.one_in(2) ? r.between(1, 16) : r.between(0, 1 << 16);
        if (r.one_in(4))
            told.end += r.between(0, 300);
        if (r.one_in(4))
            told.begin -= r.between(0, 300);
        const long long size = told.end - told.begin;
        if (size <= 0)
            return {arena + r.between(0, arena_bytes - 1), byte_range{}};
        if (size > static_cast<long long>(arena_bytes) / 2)
            told = {0, r.between(0, 1 << 16)};
        const std::size_t bytes = static_cast<std::size_t>(told.end - told.begin);
        std::size_t first;
        if (r.one_in(10)) // anywhere, also on others
            first = static_cast<std::size_t>(r.between(0, static_cast<int>(arena_bytes - bytes)));
        else
            first = next + static_cast<std::size_t>(r.one_of({0, 0, 8, 1, 7, 64}));
        if (first + bytes > arena_bytes)
            first = 0;
        next = (first + bytes + 7) & ~std::size_t{7};
        all.push_back({first, first + bytes});
        return {arena + first - told.begin, told};
    }

    // Only what the call was told of can be touched.
    void open() const {
        poison_all();
        for (const span &s : all)
            ASAN_UNPOISON_MEMORY_REGION(arena + s.first, s.end - s.first);
    }

    model::memory for_model() const {
        model::memory m;
        for (const span &s : all) {
            const model::address first = model::address_of(arena);
            m.add({first + s.first, first + s.end});
        }
        return m;
    }

private:
    struct span {
        std::size_t first, end;
    };

    random &r;
    const footprint needed;
    std::size_t next = 0;
    std::vector<span> all;
};

std::vector<std::uint8_t> content() { return {arena, arena + arena_bytes}; }

// `call()` returns the status; `on_model(m)` makes the same call on the model.
template <class Call, class OnModel>
void make(const char *name, const buffers &in, const Call &call, const OnModel &on_model) {
    fuzz::doing = name;
    const std::vector<std::uint8_t> before = content();
    in.open();
    const status made = call();
    open_all();
    if (!made) {
        fuzz::expect(content() == before, "a refused call changes nothing");
        char text[lumalane::status_text_size];
        fuzz::expect(std::strlen(made.write(text, sizeof text)) < sizeof text, "a text ends");
        fuzz::expect(message_of(made.code) != std::string("unknown error"), "an error is known");
        poison_all();
        const status again = call();
        open_all();
        fuzz::expect(again.code == made.code, "a refused call is refused again");
        return;
    }
    const std::vector<std::uint8_t> after = content();
    std::copy(before.begin(), before.end(), arena);
    model::memory m = in.for_model();
    try {
        on_model(m);
    } catch (const model::stray_access &) {
        fuzz::report("the model of a call that is accepted leaves the buffers");
    }
    fuzz::expect(content() == after, "an accepted call does what the model does");
}

// ---- Numbers -------------------------------------------------------------------------------------

int choose_hostile(random &r) {
    return r.one_of({0, -1, 1, 2147483647, -2147483647 - 1, lumalane::largest_size,
                     lumalane::largest_size + 1, -lumalane::largest_size, 65536, 46341,
                     static_cast<int>(r.next())});
}

int choose_width(random &r) {
    return r.one_in(30)  ? choose_hostile(r)
           : r.one_in(2) ? 16 * r.between(1, 12)
                         : r.between(-1, 200);
}
int choose_height(random &r) {
    return r.one_in(30)  ? choose_hostile(r)
           : r.one_in(2) ? 2 * r.between(1, 12)
                         : r.between(-1, 30);
}
int choose_pitch(random &r, int width, int pixel_bytes) {
    const int row = std::clamp(width, -2000, 2000) * pixel_bytes;
    return r.one_in(30) ? choose_hostile(r)
                        : r.one_of({row, row, row + 64, row + 63, -row - 64, 2 * row,
                                    row + r.between(-20, 100)});
}

tag_ajust_contrast_info choose_info(random &r, int height) {
    tag_ajust_contrast_info info{};
    info.rgb16_layout = static_cast<unsigned>(r.one_in(8) ? choose_hostile(r) : r.between(0, 3));
    const int rows = std::clamp(height, 0, 64);
    info.surface_height = r.one_in(16) ? choose_hostile(r) : rows + r.between(-1, 9);
    info.rows_to_plane_end = r.one_in(16) ? choose_hostile(r) : rows + r.between(-1, 9);
    return info;
}

// What a call with these sizes and strides touches, where they are among those of which it can be told.
template <class Function, class Call>
footprint told_footprint(const Function &f, const Call &c, std::initializer_list<int> sizes,
                         std::initializer_list<int> strides) {
    const bool sizes_tell = std::all_of(sizes.begin(), sizes.end(), [](int size) {
        return 0 < size && size <= lumalane::largest_size;
    });
    const bool strides_tell = std::all_of(strides.begin(), strides.end(), [](int stride) {
        return -lumalane::largest_size <= stride && stride <= lumalane::largest_size;
    });
    return sizes_tell && strides_tell ? footprint_of(f, c) : footprint{};
}

// ---- Calls, by signature -------------------------------------------------------------------------

template <class Checked, class Model>
void call_parameters(random &r, const char *, const lumalane::parameters_function &,
                     Checked *checked, Model *model_of) {
    contrast_data values{};
    for (int *field : {&values.y_gain, &values.uv_gain, &values.y_offset, &values.u_offset,
                       &values.v_offset, &values.y_offset_extra})
        *field = r.one_in(2) ? r.between(-300, 300) : choose_hostile(r);
    fuzz::expect(!checked(nullptr), "null is refused");
    fuzz::expect(static_cast<bool>(checked(&values)), "any adjustment is accepted");
    model::memory m;
    const model::address first = model::address_of(&values);
    m.add({first, first + sizeof values});
    model_of(m, &values);
}

template <class Checked, class Model>
void call_picture(random &r, const char *name, const lumalane::picture_function &f,
                  Checked *checked, Model *model_of) {
    const int width = choose_width(r), height = choose_height(r);
    const int src_pitch = choose_pitch(r, width, 1),
              dst_pitch = choose_pitch(r, width, f.bytes_per_pixel * r.one_of({1, 1, 1, 2}));
    tag_ajust_contrast_info info = choose_info(r, height);
    const bool null_info = r.one_in(30);
    buffers in(r, told_footprint(f,
                                 lumalane::picture_call{width, height, src_pitch, dst_pitch,
                                                        info.rgb16_layout, info.surface_height,
                                                        info.rows_to_plane_end},
                                 {width, height}, {src_pitch, dst_pitch}));
    const buffer src = in.at(pointer::src), src_u = in.at(pointer::src_u),
                 src_v = in.at(pointer::src_v), dst = in.at(pointer::dst);
    make(
        name, in,
        [&] {
            return checked(src, src_u, src_v, dst, width, height, src_pitch, dst_pitch,
                           null_info ? nullptr : &info);
        },
        [&](model::memory &m) {
            const model::address first = model::address_of(&info);
            m.add({first, first + sizeof info});
            model_of(m, src.data, src_u.data, src_v.data, dst.data, width, height, src_pitch,
                     dst_pitch, &info);
        });
}

template <class Checked, class Model>
void call_mix(random &r, const char *name, const lumalane::mix_function &f, Checked *checked,
              Model *model_of) {
    lumalane::mix_buffers mix;
    mix.width = choose_width(r), mix.height = choose_height(r);
    mix.video_pitch = r.one_in(4) ? choose_width(r) : choose_pitch(r, mix.width, 1);
    mix.sub_pitch = choose_pitch(r, mix.width, 1);
    mix.dst_pitch = choose_pitch(r, mix.width, f.bytes_per_pixel);
    mix.color_key = static_cast<unsigned>(r.next());
    tag_ajust_contrast_info info = choose_info(r, mix.height);
    mix.adjust_info = r.one_in(30) ? nullptr : &info;
    buffers in(
        r, told_footprint(f,
                          lumalane::mix_call{mix.video_pitch, mix.sub_pitch, mix.dst_pitch,
                                             mix.width, mix.height, info.rgb16_layout},
                          {f.shape == lumalane::mix_shape::subpicture ? mix.video_pitch : mix.width,
                           mix.height},
                          {mix.video_pitch, mix.sub_pitch, mix.dst_pitch}));
    const buffer video_y = in.at(pointer::video_y), video_v = in.at(pointer::video_v),
                 video_u = in.at(pointer::video_u);
    mix.video_y = video_y, mix.video_v = video_v, mix.video_u = video_u;
    mix.alpha_plane = in.at(pointer::alpha_plane), mix.sub_y = in.at(pointer::sub_y);
    mix.sub_v = in.at(pointer::sub_v), mix.sub_u = in.at(pointer::sub_u);
    mix.dst = in.at(pointer::dst), mix.dst_u = in.at(pointer::dst_u);
    mix.dst_v = in.at(pointer::dst_v);
    make(
        name, in, [&] { return checked(mix); },
        [&](model::memory &m) {
            tagMIX_INFO record{};
            record.video_pitch = mix.video_pitch, record.sub_pitch = mix.sub_pitch;
            record.dst_pitch = mix.dst_pitch;
            record.width = mix.width, record.height = mix.height;
            record.video_y = video_y.data, record.video_v = video_v.data;
            record.video_u = video_u.data;
            record.alpha_plane = mix.alpha_plane.data, record.sub_y = mix.sub_y.data;
            record.sub_v = mix.sub_v.data, record.sub_u = mix.sub_u.data;
            record.dst = mix.dst.data, record.dst_u = mix.dst_u.data;
            record.dst_v = mix.dst_v.data;
            record.color_key = mix.color_key;
            record.adjust_info = &info;
            const model::address first = model::address_of(&record),
                                 first_of_info = model::address_of(&info);
            m.add({first, first + sizeof record});
            m.add({first_of_info, first_of_info + sizeof info});
            model_of(m, &record);
        });
}

template <class Checked, class Model>
void call_key_fill(random &r, const char *name, const lumalane::key_fill_function &f,
                   Checked *checked, Model *model_of) {
    const int width = choose_width(r), height = choose_height(r),
              pitch = choose_pitch(r, width, f.bytes_per_pixel);
    const unsigned key = static_cast<unsigned>(r.next());
    buffers in(r, told_footprint(f, lumalane::key_fill_call{width, height, pitch}, {width, height},
                                 {pitch}));
    const buffer surface = in.at(pointer::surface);
    make(
        name, in, [&] { return checked(key, surface, width, height, 0, pitch); },
        [&](model::memory &m) { model_of(m, key, surface.data, width, height, 0, pitch); });
}

template <class Checked, class Model>
void call_mask(random &r, const char *name, const lumalane::mask_function &f, Checked *checked,
               Model *model_of) {
    const int width = choose_width(r), height = choose_height(r), pitch = choose_pitch(r, width, 1);
    const unsigned mask_value = static_cast<unsigned>(r.next()),
                   key_value = static_cast<unsigned>(r.next());
    buffers in(
        r, told_footprint(f, lumalane::mask_call{width, pitch, height}, {width, height}, {pitch}));
    const buffer dst = in.at(pointer::dst), mask = in.at(pointer::mask);
    make(
        name, in, [&] { return checked(dst, mask, mask_value, key_value, width, pitch, height); },
        [&](model::memory &m) {
            model_of(m, dst.data, mask.data, mask_value, key_value, width, pitch, height);
        });
}

template <class Checked, class Model, class... Info>
void call_packed_stretch(random &r, const char *name, const lumalane::packed_stretch_function &f,
                         Checked *checked, Model *model_of, Info... info) {
    const int row_bytes = r.one_in(6) ? choose_width(r) : 32 * r.between(2, 12),
              height = choose_height(r), dst_pitch = choose_pitch(r, row_bytes, 2);
    buffers in(r, told_footprint(f, lumalane::packed_stretch_call{row_bytes, height, dst_pitch},
                                 {row_bytes, height}, {dst_pitch}));
    const buffer src = in.at(pointer::src), dst = in.at(pointer::dst);
    make(
        name, in, [&] { return checked(src, {}, {}, dst, row_bytes, height, dst_pitch, info...); },
        [&](model::memory &m) {
            model_of(m, src.data, nullptr, nullptr, dst.data, row_bytes, height, dst_pitch,
                     info...);
        });
}

template <class Checked, class Model>
void call_packed_stretch_ajust(random &r, const char *name,
                               const lumalane::packed_stretch_function &f, Checked *checked,
                               Model *model_of) {
    call_packed_stretch(r, name, f, checked, model_of, nullptr);
}

template <class Checked, class Model, class... More>
void call_plane_stretch(random &r, const char *name, const lumalane::plane_stretch_function &f,
                        Checked *checked, Model *model_of, More... more) {
    const int width = choose_width(r), height = choose_height(r),
              src_pitch = choose_pitch(r, width, 1),
              dst_pitch = choose_pitch(r, width, f.times_width);
    buffers in(r,
               told_footprint(f, lumalane::plane_stretch_call{width, height, src_pitch, dst_pitch},
                              {width, height}, {src_pitch, dst_pitch}));
    const buffer src = in.at(pointer::src), dst = in.at(pointer::dst);
    make(
        name, in, [&] { return checked(src, dst, width, height, src_pitch, dst_pitch, more...); },
        [&](model::memory &m) {
            model_of(m, src.data, dst.data, width, height, src_pitch, dst_pitch, more...);
        });
}

template <class Checked, class Model>
void call_plane_stretch_ajust(random &r, const char *name,
                              const lumalane::plane_stretch_function &f, Checked *checked,
                              Model *model_of) {
    const int number = r.one_in(16) ? choose_hostile(r) : r.between(1, 3);
    call_plane_stretch(r, name, f, checked, model_of, nullptr, number);
}

template <class Checked, class Model>
void call_frame_stretch(random &r, const char *name, const lumalane::frame_stretch_function &f,
                        Checked *checked, Model *model_of) {
    lumalane::frame_buffers frame;
    frame.field_mode = r.one_of({0, 1, 2, choose_hostile(r)});
    frame.luma_pitch = choose_width(r);
    const int start = r.one_in(16) ? choose_hostile(r) : r.between(-2, 4),
              height = choose_height(r), dst_pitch = choose_pitch(r, frame.luma_pitch, 2);
    buffers in(r, told_footprint(f,
                                 lumalane::frame_stretch_call{frame.luma_pitch, frame.field_mode,
                                                              start, height, dst_pitch},
                                 {frame.luma_pitch, height}, {start, dst_pitch}));
    const buffer y = in.at(pointer::plane_y), u = in.at(pointer::plane_u),
                 v = in.at(pointer::plane_v), dst = in.at(pointer::dst);
    frame.plane_y = y, frame.plane_u = u, frame.plane_v = v;
    make(
        name, in, [&] { return checked(frame, start, height, dst, dst_pitch, nullptr); },
        [&](model::memory &m) {
            tagVideoFrame record{};
            record.field_mode = frame.field_mode, record.luma_pitch = frame.luma_pitch;
            record.plane_y = y.data, record.plane_u = u.data, record.plane_v = v.data;
            const model::address first = model::address_of(&record);
            m.add({first, first + sizeof record});
            model_of(m, &record, start, height, dst.data, dst_pitch, nullptr);
        });
}

constexpr void (*calls[])(random &) = {
#define LUMALANE_EXPORT(signature, name)                                                           \
    [](random &r) {                                                                                \
        call_##signature(r, #name, lumalane::functions::name, lumalane::checked::name,             \
                         model::name);                                                             \
    },
#include "abi/exports.inc"
#undef LUMALANE_EXPORT
};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    differential::random r = fuzz::choices_of(data, size);
    for (std::size_t at = 0; at < arena_bytes; at += sizeof(std::uint64_t)) {
        const std::uint64_t bytes = r.next();
        std::memcpy(arena + at, &bytes, sizeof bytes);
    }
    // The adjustment of the last input would make this one another one.
    contrast_data neutral{64, 64, 0, 0, 0, 0, 0, 0};
    model::memory m;
    const model::address first = model::address_of(&neutral);
    m.add({first, first + sizeof neutral});
    model::get_contrast_data(m, &neutral);
    get_contrast_data(&neutral);

    for (int left = r.between(1, 4); left > 0; --left)
        calls[r.between(0, static_cast<int>(std::size(calls)) - 1)](r);
    return 0;
}
