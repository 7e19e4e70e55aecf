// Checked calls of every function: with buffers that are exactly large enough, and with one byte
// less.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <lumalane/lumalane.hpp>

#include "tests/call_memory.h"
#include "tests/differential/drawn_call.h"
#include "tests/recorded_call.h"
#if UINTPTR_MAX > 0xffffffff // where there is room
#include "tests/sparse_memory.h"
#endif

namespace {

using lumalane::buffer;
using lumalane::byte_range;
using lumalane::const_buffer;
using lumalane::error;
using lumalane::message_of;
using lumalane::pointer;
using lumalane::status;
using tests::call_memory;
using tests::recorded_call;
namespace checked = lumalane::checked;

std::string text_of(const status &s) {
    char text[lumalane::status_text_size];
    return s.write(text, sizeof text);
}

// ---- What was tried ------------------------------------------------------------------------------

// How often something was done to a buffer, and what was said of it: scripts/figures gathers it.
class tally : public testing::Environment {
public:
    static void count(const char *what, const status &said) {
        ++tried[{what, message_of(said.code)}];
    }

    void TearDown() override {
        for (const auto &[what, times] : tried)
            std::printf("bad input | a checked call, a buffer %s | %s | %ld\n", what.first.c_str(),
                        what.second.c_str(), times);
    }

private:
    static inline std::map<std::pair<std::string, std::string>, long> tried;
};
[[maybe_unused]] const auto *const printed = testing::AddGlobalTestEnvironment(new tally);

// ---- Drawn calls, checked ------------------------------------------------------------------------

// What the buffers of the next checked call have, and where they lie if not where the call says.
struct offer {
    byte_range bytes[lumalane::pointer_count];
    const void *elsewhere[lumalane::pointer_count] = {};
    bool null[lumalane::pointer_count] = {};
    // Whether the memory can be touched while the call is made.
    std::function<void(bool)> open = [](bool) {};

    byte_range &operator[](pointer p) { return bytes[static_cast<int>(p)]; }

    unsigned char *address(pointer p, const void *data) const {
        const int i = static_cast<int>(p);
        const void *const at = null[i] ? nullptr : elsewhere[i] ? elsewhere[i] : data;
        return static_cast<unsigned char *>(const_cast<void *>(at));
    }
    buffer of(pointer p, const void *data) const {
        return {address(p, data), bytes[static_cast<int>(p)]};
    }
};

offer offered;
status result;

// Null where the function does not read it, and a copy where it does: the memory is closed.
tag_ajust_contrast_info info_copy;
tag_ajust_contrast_info *copied(const tag_ajust_contrast_info *info) {
    if (offered[pointer::info].empty())
        return nullptr;
    info_copy = *info;
    return &info_copy;
}

template <class Call>
void make(Call call) {
    offered.open(false);
    result = call();
    offered.open(true);
}

template <class F>
void call_parameters(F *, LUMALANE_PARAMETERS_parameters) {
    (void)params;
}

template <class F>
void call_picture(F *function, LUMALANE_PARAMETERS_picture) {
    info = copied(info);
    make([&] {
        return function(offered.of(pointer::src, src), offered.of(pointer::src_u, src_u),
                        offered.of(pointer::src_v, src_v), offered.of(pointer::dst, dst), width,
                        height, src_pitch, dst_pitch, info);
    });
}

template <class F>
void call_mix(F *function, LUMALANE_PARAMETERS_mix) {
    lumalane::mix_buffers m;
    m.video_pitch = mix->video_pitch, m.sub_pitch = mix->sub_pitch, m.dst_pitch = mix->dst_pitch;
    m.width = mix->width, m.height = mix->height;
    m.video_y = offered.of(pointer::video_y, mix->video_y);
    m.video_v = offered.of(pointer::video_v, mix->video_v);
    m.video_u = offered.of(pointer::video_u, mix->video_u);
    m.alpha_plane = offered.of(pointer::alpha_plane, mix->alpha_plane);
    m.sub_y = offered.of(pointer::sub_y, mix->sub_y);
    m.sub_v = offered.of(pointer::sub_v, mix->sub_v);
    m.sub_u = offered.of(pointer::sub_u, mix->sub_u);
    m.dst = offered.of(pointer::dst, mix->dst);
    m.dst_u = offered.of(pointer::dst_u, mix->dst_u);
    m.dst_v = offered.of(pointer::dst_v, mix->dst_v);
    m.color_key = mix->color_key;
    m.adjust_info = copied(mix->adjust_info);
    make([&] { return function(m); });
}

template <class F>
void call_key_fill(F *function, LUMALANE_PARAMETERS_key_fill) {
    make([&] {
        return function(key, offered.of(pointer::surface, surface), width, height, reserved, pitch);
    });
}

template <class F>
void call_mask(F *function, LUMALANE_PARAMETERS_mask) {
    make([&] {
        return function(offered.of(pointer::dst, dst), offered.of(pointer::mask, mask), mask_value,
                        key_value, width, pitch, height);
    });
}

template <class F>
void call_packed_stretch(F *function, LUMALANE_PARAMETERS_packed_stretch) {
    make([&] {
        return function(offered.of(pointer::src, src), {}, {}, offered.of(pointer::dst, dst),
                        row_bytes, height, dst_pitch);
    });
}

template <class F>
void call_packed_stretch_ajust(F *function, LUMALANE_PARAMETERS_packed_stretch_ajust) {
    make([&] {
        return function(offered.of(pointer::src, src), {}, {}, offered.of(pointer::dst, dst),
                        row_bytes, height, dst_pitch, nullptr);
    });
}

template <class F>
void call_plane_stretch(F *function, LUMALANE_PARAMETERS_plane_stretch) {
    make([&] {
        return function(offered.of(pointer::src, src), offered.of(pointer::dst, dst), width, height,
                        src_pitch, dst_pitch);
    });
}

template <class F>
void call_plane_stretch_ajust(F *function, LUMALANE_PARAMETERS_plane_stretch_ajust) {
    make([&] {
        return function(offered.of(pointer::src, src), offered.of(pointer::dst, dst), width, height,
                        src_pitch, dst_pitch, nullptr, plane_number);
    });
}

template <class F>
void call_frame_stretch(F *function, LUMALANE_PARAMETERS_frame_stretch) {
    lumalane::frame_buffers f;
    f.field_mode = frame->field_mode, f.luma_pitch = frame->luma_pitch;
    f.plane_y = offered.of(pointer::plane_y, frame->plane_y);
    f.plane_u = offered.of(pointer::plane_u, frame->plane_u);
    f.plane_v = offered.of(pointer::plane_v, frame->plane_v);
    make([&] {
        return function(f, start, height, offered.of(pointer::dst, dst), dst_pitch, nullptr);
    });
}

const tests::function_table checked_calls = {
    "checked",
#define LUMALANE_EXPORT(signature, name)                                                           \
    [](LUMALANE_PARAMETERS_##signature) {                                                          \
        call_##signature(checked::name, LUMALANE_ARGUMENTS_##signature);                           \
    },
#include "abi/exports.inc"
#undef LUMALANE_EXPORT
};

const tests::function_table plain_calls = {
    "plain",
#define LUMALANE_EXPORT(signature, name) ::name,
#include "abi/exports.inc"
#undef LUMALANE_EXPORT
};

constexpr const char *pointer_names[] = {
    "src",     "src_u",   "src_v",   "dst",         "dst_u", "dst_v", "surface", "mask",
    "video_y", "video_v", "video_u", "alpha_plane", "sub_y", "sub_v", "sub_u",   "plane_y",
    "plane_u", "plane_v", "info",    "mix",         "frame", "params"};
static_assert(std::size(pointer_names) == lumalane::pointer_count);

bool is_record(int p) { return p >= static_cast<int>(pointer::info); }

using bytes = std::vector<std::uint8_t>;

// A drawn call in memory that is as it was before each time it is made.
class prepared_call {
public:
    // Its buffers lie so many bytes behind where the memory has them.
    prepared_call(const differential::drawn_call &drawn_, const call_memory &memory_, int moved_by)
        : drawn(drawn_), memory(memory_), places(memory.place(drawn, moved_by)),
          call(tests::record(drawn, places).at(0)), windows(drawn.buffers.size()) {
        for (int p = 0; p < lumalane::pointer_count; ++p) {
            const byte_range touched = call.bytes.of[p].touched();
            if (touched.empty())
                continue;
            const std::size_t i = memory.buffer_of(call.pointers[p]);
            const std::ptrdiff_t at =
                static_cast<const std::uint8_t *>(call.pointers[p]) - memory.origin(i);
            byte_range &window = windows[i];
            const byte_range more{touched.begin + at - margin, touched.end + at + margin};
            window = window.empty() ? more
                                    : byte_range{std::min(window.begin, more.begin),
                                                 std::max(window.end, more.end)};
            fits = fits && call_memory::holds(window);
        }
        if (fits)
            before = content();
    }

    bytes content() const {
        bytes all;
        for (std::size_t i = 0; i < windows.size(); ++i)
            all.insert(all.end(), memory.origin(i) + windows[i].begin,
                       memory.origin(i) + windows[i].end);
        return all;
    }

    void restore() const {
        const std::uint8_t *from = before.data();
        for (std::size_t i = 0; i < windows.size(); ++i) {
            const std::size_t size = static_cast<std::size_t>(windows[i].end - windows[i].begin);
            if (size > 0)
                std::memcpy(memory.origin(i) + windows[i].begin, from, size);
            from += size;
        }
    }

    // What the call leaves.
    bytes made(const tests::function_table &calls) const {
        restore();
        contrast_data contrast = drawn.contrast;
        get_contrast_data(&contrast);
        drawn.on_function(calls, places);
        const bytes after = content();
        restore();
        return after;
    }

    // Of a call with buffers that have exactly what it touches.
    offer exact() const {
        offer o;
        for (int p = 0; p < lumalane::pointer_count; ++p)
            o.bytes[p] = call.bytes.of[p].touched();
        return o;
    }

    // Of a call that has to be refused; its memory is not there meanwhile.
    status refused(const offer &o) const {
        restore();
        offered = o;
        offered.open = [this](bool it_is) { memory.open(windows, it_is); };
        drawn.on_function(checked_calls, places);
        EXPECT_NE(result.code, error::none) << drawn.arguments;
        return result;
    }

    static constexpr std::ptrdiff_t margin = 64;

    const differential::drawn_call &drawn;
    const call_memory &memory;
    const differential::placement places;
    const recorded_call call;
    bool fits = true;
    std::vector<byte_range> windows; // of the buffers
    bytes before;
};

bool is_mix_record(const differential::buffer &b) { return std::string_view(b.name) == "mix"; }

// The record of a plain mix changes, that of a checked one is its own.
bytes without_records(const prepared_call &prepared, bytes content) {
    std::size_t at = 0;
    for (std::size_t i = 0; i < prepared.windows.size(); ++i) {
        const std::size_t size =
            static_cast<std::size_t>(prepared.windows[i].end - prepared.windows[i].begin);
        if (is_mix_record(prepared.drawn.buffers[i]))
            std::fill_n(content.begin() + static_cast<std::ptrdiff_t>(at), size, std::uint8_t{0});
        at += size;
    }
    return content;
}

const call_memory &shared_memory() {
    static const call_memory memory;
    return memory;
}

class checked_test : public testing::TestWithParam<differential::subject> {
protected:
    // Calls `test` for so many drawn calls that are accepted; every other one is refused and has
    // touched nothing.
    template <class Test>
    void for_accepted(int count, Test test, int moved_by = 0) {
        differential::random r(5);
        int accepted = 0;
        for (int drawn_calls = 0; accepted < count && drawn_calls < 400 * count; ++drawn_calls) {
            const differential::drawn_call drawn = GetParam().draw(r);
            const prepared_call prepared(drawn, shared_memory(), moved_by);
            if (!prepared.fits)
                continue;
            offered = prepared.exact();
            const bytes after = prepared.made(checked_calls);
            if (!result) {
                ASSERT_NE(result.code, error::buffer_too_small) << drawn.arguments;
                ASSERT_TRUE(after == prepared.before) << drawn.arguments;
                (void)prepared.refused(prepared.exact());
                continue;
            }
            ++accepted;
            test(prepared, after);
            if (HasFatalFailure())
                return;
        }
        EXPECT_EQ(accepted, count);
    }
};

TEST_P(checked_test, with_exact_buffers_does_what_the_plain_call_does) {
    for_accepted(40, [](const prepared_call &prepared, const bytes &after) {
        tally::count("that has what the call touches", result);
        ASSERT_TRUE(without_records(prepared, after) ==
                    without_records(prepared, prepared.made(plain_calls)))
            << prepared.drawn.arguments;
    });
}

TEST_P(checked_test, refuses_buffers_that_lack_a_byte_at_an_end) {
    for_accepted(8, [](const prepared_call &prepared, const bytes &) {
        int buffers = 0;
        for (int p = 0; p < lumalane::pointer_count; ++p) {
            const byte_range needed = prepared.call.bytes.of[p].touched();
            if (needed.empty() || is_record(p))
                continue;
            ++buffers;
            for (const bool at_the_end : {false, true}) {
                offer o = prepared.exact();
                (at_the_end ? o.bytes[p].end : o.bytes[p].begin) += at_the_end ? -1 : 1;
                const status s = prepared.refused(o);
                tally::count(at_the_end ? "that lacks the last byte" : "that lacks the first byte",
                             s);
                ASSERT_EQ(s.code, error::buffer_too_small) << prepared.drawn.arguments;
                ASSERT_STREQ(s.argument, pointer_names[p]) << prepared.drawn.arguments;
                ASSERT_EQ(s.needed.begin, needed.begin);
                ASSERT_EQ(s.needed.end, needed.end);
                ASSERT_EQ(s.available.begin, o.bytes[p].begin);
                ASSERT_EQ(s.available.end, o.bytes[p].end);
            }
        }
        ASSERT_GT(buffers, 0);
    });
}

TEST_P(checked_test, refuses_null_where_it_touches_something) {
    for_accepted(4, [](const prepared_call &prepared, const bytes &after) {
        offer all_others_null = prepared.exact();
        for (int p = 0; p < lumalane::pointer_count; ++p) {
            if (is_record(p))
                continue;
            offer o = prepared.exact();
            o.null[p] = true;
            if (prepared.call.bytes.of[p].touched().empty()) {
                all_others_null.null[p] = true;
                continue;
            }
            const status s = prepared.refused(o);
            tally::count("that is null", s);
            ASSERT_EQ(s.code, error::null_plane) << prepared.drawn.arguments;
            ASSERT_STREQ(s.argument, pointer_names[p]) << prepared.drawn.arguments;
        }
        offered = all_others_null;
        ASSERT_TRUE(prepared.made(checked_calls) == after);
        tally::count("that is null and not touched", result);
        ASSERT_EQ(result.code, error::none);
    });
}

TEST_P(checked_test, refuses_buffers_that_have_nothing) {
    for_accepted(4, [](const prepared_call &prepared, const bytes &) {
        for (int p = 0; p < lumalane::pointer_count; ++p) {
            if (prepared.call.bytes.of[p].touched().empty() || is_record(p))
                continue;
            // Nothing, and less than nothing.
            for (const byte_range none :
                 {byte_range{0, 0}, byte_range{1, 0}, byte_range{INT64_MAX, INT64_MIN}}) {
                offer o = prepared.exact();
                o.bytes[p] = none;
                const status s = prepared.refused(o);
                tally::count("that has no bytes", s);
                ASSERT_EQ(s.code, error::buffer_too_small) << prepared.drawn.arguments;
                ASSERT_STREQ(s.argument, pointer_names[p]) << prepared.drawn.arguments;
            }
        }
    });
}

TEST_P(checked_test, takes_buffers_at_any_address) {
    for (const int by : {1, 2, 3, 7, 31, 63})
        for_accepted(
            3,
            [](const prepared_call &prepared, const bytes &after) {
                tally::count("at any address, off every alignment", result);
                ASSERT_TRUE(without_records(prepared, after) ==
                            without_records(prepared, prepared.made(plain_calls)))
                    << prepared.drawn.arguments;
            },
            by);
}

// The first byte of both is the same one, or the last one of the other is the first that is written.
TEST_P(checked_test, refuses_a_destination_on_another_buffer) {
    for_accepted(4, [](const prepared_call &prepared, const bytes &) {
        for (int p = 0; p < lumalane::pointer_count; ++p) {
            const byte_range written = prepared.call.bytes.of[p].written;
            if (written.empty() || is_record(p))
                continue;
            for (int q = 0; q < lumalane::pointer_count; ++q) {
                const byte_range other = prepared.call.bytes.of[q].touched();
                if (q == p || other.empty() || is_record(q))
                    continue;
                for (const long long shared : {other.begin, other.end - 1}) {
                    offer o = prepared.exact();
                    o.elsewhere[q] = static_cast<const std::uint8_t *>(prepared.call.pointers[p]) +
                                     written.begin - shared;
                    const status s = prepared.refused(o);
                    tally::count(shared == other.begin
                                     ? "on another one that is written"
                                     : "that has one byte of another one that is written",
                                 s);
                    ASSERT_EQ(s.code, error::buffers_overlap) << prepared.drawn.arguments;
                    ASSERT_NE(s.argument, s.other);
                }
            }
        }
    });
}

std::vector<differential::subject> with_buffers() {
    std::vector<differential::subject> all = differential::subjects();
    std::erase_if(all, [](const differential::subject &s) {
        return std::string_view(s.name) == "get_contrast_data";
    });
    return all;
}

INSTANTIATE_TEST_SUITE_P(every, checked_test, testing::ValuesIn(with_buffers()),
                         [](const auto &subject) { return subject.param.name; });

// ---- One thing that is wrong ---------------------------------------------------------------------

struct pixels {
    bytes memory = bytes(1 << 16);
    buffer all{memory.data() + (1 << 15), {-(1 << 15), 1 << 15}};
    operator buffer() const { return all; }
    operator const_buffer() const { return all; }
};

struct picture_buffers {
    pixels y, u, v, dst;

    template <class F>
    status call(F *function, int width, int height, int src_pitch, int dst_pitch,
                const tag_ajust_contrast_info *info = nullptr) const {
        return function(y, u, v, dst, width, height, src_pitch, dst_pitch, info);
    }
};

void expect(const status &s, error code, const char *argument) {
    EXPECT_EQ(message_of(s.code), message_of(code));
    EXPECT_STREQ(s.argument, argument);
}

TEST(checked_calls, refuse_sizes_of_pictures) {
    const picture_buffers p;
    EXPECT_TRUE(p.call(checked::loadimage_rgb32, 16, 2, 16, 64));
    EXPECT_TRUE(p.call(checked::loadimage_rgb32, 16, 2, 16, -64));
    expect(p.call(checked::loadimage_rgb32, 0, 2, 16, 64), error::width_too_small, "width");
    expect(p.call(checked::loadimage_rgb32, -16, 2, 16, 64), error::width_too_small, "width");
    expect(p.call(checked::loadimage_rgb32, 16, 0, 16, 64), error::height_too_small, "height");
    expect(p.call(checked::loadimage_rgb32, lumalane::largest_size + 1, 2, 16, 64),
           error::size_too_large, "width");
    expect(p.call(checked::loadimage_rgb32, 16, 2, 16, -lumalane::largest_size - 1),
           error::size_too_large, "dst_pitch");
    expect(p.call(checked::loadimage_rgb32, 16, 2, 16, INT32_MIN), error::size_too_large,
           "dst_pitch");
    expect(p.call(checked::loadimage_yuy2_ajust, 16, 8, 16, 32), error::height_too_small, "height");
    expect(p.call(checked::loadimage_yuy2_ajust, 16, 11, 16, 32), error::height_odd, "height");
    expect(p.call(checked::strech_picture_1X2_yuy2, 16, 7, 16, 32), error::height_too_small,
           "height");
    expect(p.call(checked::strech_picture_2X2_yuy2_ajust, 16, 15, 16, 64), error::height_too_small,
           "height");
    expect(p.call(checked::strech_picture_1X2_yuy2_ajust_rgb32, 16, 11, 16, 64),
           error::height_too_small, "height");
    expect(p.call(checked::strech_picture_1X2_yuy2_ajust_rgb24, 24, 12, 24, 72),
           error::width_off_step, "width");
    expect(p.call(checked::strech_picture_1X2_yuy2_ajust_rgb24, 8, 12, 8, 24),
           error::width_too_small, "width");
    expect(p.call(checked::strech_picture_2X2_yv12_ajust, 31, 4, 31, 62), error::width_too_small,
           "width");
    expect(p.call(checked::strech_picture_2X2_yv12_ajust, 32, 3, 32, 64), error::height_too_small,
           "height");
}

TEST(checked_calls, tell_of_the_first_of_several_buffers) {
    const picture_buffers p;
    const auto call = [&](const const_buffer &y, const const_buffer &u, const const_buffer &v,
                          const buffer &dst) {
        return checked::loadimage_rgb32(y, u, v, dst, 16, 2, 16, 64, nullptr);
    };
    expect(call({}, {}, {}, {}), error::null_plane, "src");
    expect(call(p.y, {}, {}, {}), error::null_plane, "src_u");
    expect(call(p.y, p.u, {}, {}), error::null_plane, "src_v");
    expect(call(p.y, p.u, p.v, {}), error::null_plane, "dst");
    // In the order of the record's fields.
    const pixels memory[8];
    lumalane::mix_buffers m;
    m.video_pitch = m.sub_pitch = 16, m.dst_pitch = 64, m.width = 16, m.height = 4;
    const auto refused_without = [&](const char *name, auto &field, const pixels &found) {
        expect(checked::mix_ayuy2_rgb32_p_ajust(m), error::null_plane, name);
        field = found;
    };
    refused_without("video_y", m.video_y, memory[0]);
    refused_without("video_v", m.video_v, memory[1]);
    refused_without("video_u", m.video_u, memory[2]);
    refused_without("alpha_plane", m.alpha_plane, memory[3]);
    refused_without("sub_y", m.sub_y, memory[4]);
    refused_without("sub_v", m.sub_v, memory[5]);
    refused_without("sub_u", m.sub_u, memory[6]);
    refused_without("dst", m.dst, memory[7]);
    EXPECT_TRUE(checked::mix_ayuy2_rgb32_p_ajust(m));
}

TEST(checked_calls, refuse_strides) {
    const picture_buffers p;
    expect(p.call(checked::loadimage_rgb32, 16, 2, 15, 64), error::stride_too_small, "src_pitch");
    expect(p.call(checked::loadimage_rgb32, 16, 2, 0, 64), error::stride_too_small, "src_pitch");
    expect(p.call(checked::loadimage_rgb32, 16, 2, 16, 63), error::stride_too_small, "dst_pitch");
    expect(p.call(checked::loadimage_rgb32, 16, 2, 16, -63), error::stride_too_small, "dst_pitch");
    // Rows of 20 pixels become rows of 32.
    expect(p.call(checked::LoadYUY2_RGB32, 20, 2, 20, 80), error::stride_too_small, "dst");
    EXPECT_TRUE(p.call(checked::LoadYUY2_RGB32, 20, 2, 20, 128));
    expect(p.call(checked::strech_picture_1X2_yuy2, 16, 8, 17, 32), error::stride_unsupported,
           "src_pitch");
    expect(p.call(checked::strech_picture_1X2_yuy2, 16, 8, -16, 32), error::stride_unsupported,
           "src_pitch");
    expect(p.call(checked::loadimage_yv12, 16, 2, -16, 16), error::stride_unsupported, "src_pitch");
    expect(p.call(checked::loadimage_yv12, 16, 2, 16, -16), error::stride_unsupported, "dst_pitch");
}

TEST(checked_calls, refuse_records_layouts_and_plane_numbers) {
    const picture_buffers p;
    tag_ajust_contrast_info info = {};
    for (unsigned layout = 0; layout < 4; ++layout) {
        info.rgb16_layout = layout;
        EXPECT_TRUE(p.call(checked::loadimage_rgb16, 16, 2, 16, 32, &info));
    }
    info.rgb16_layout = 4;
    expect(p.call(checked::loadimage_rgb16, 16, 2, 16, 32, &info), error::unknown_rgb16_layout,
           "rgb16_layout");
    expect(p.call(checked::LoadYUY2_RGB16, 16, 2, 16, 32, &info), error::unknown_rgb16_layout,
           "rgb16_layout");
    expect(p.call(checked::loadimage_rgb16, 16, 2, 16, 32), error::null_record, "info");
    expect(p.call(checked::loadimage_yv12_ajust, 16, 2, 16, 16), error::null_record, "info");
    lumalane::mix_buffers mix;
    expect(checked::mix_ayuy2_rgb16_p_ajust(mix), error::null_record, "adjust_info");
    expect(checked::get_contrast_data(nullptr), error::null_record, "params");
    for (const int number : {0, 4, -1})
        expect(checked::strech_pic_2X2_adjust(p.y, p.dst, 16, 2, 16, 32, nullptr, number),
               error::unknown_plane_number, "plane_number");
    for (const int number : {1, 2, 3})
        EXPECT_TRUE(checked::strech_pic_1X2_adjust(p.y, p.dst, 16, 2, 16, 16, nullptr, number));
}

TEST(checked_calls, refuse_planes_of_a_surface_that_overlap) {
    const picture_buffers p;
    tag_ajust_contrast_info info = {};
    info.surface_height = 8, info.rows_to_plane_end = 8;
    EXPECT_TRUE(p.call(checked::loadimage_yv12_ajust, 16, 8, 16, 16, &info));
    info.rows_to_plane_end = 6;
    expect(p.call(checked::loadimage_yv12_ajust, 16, 8, 16, 16, &info), error::planes_overlap,
           "dst");
    // Its steps of chroma have more samples than its rows.
    expect(p.call(checked::loadimage_half_yv12_ajust, 16, 4, 16, 8), error::planes_overlap, "dst");
}

TEST(checked_calls, refuse_sizes_and_strides_of_mixes) {
    const pixels memory[10];
    lumalane::mix_buffers regular;
    regular.video_pitch = regular.sub_pitch = 16, regular.dst_pitch = 64;
    regular.width = 16, regular.height = 4;
    regular.video_y = memory[0], regular.video_v = memory[1], regular.video_u = memory[2];
    regular.alpha_plane = memory[3], regular.sub_y = memory[4];
    regular.sub_v = memory[5], regular.sub_u = memory[6];
    regular.dst = memory[7], regular.dst_u = memory[8], regular.dst_v = memory[9];
    const auto with = [&](int lumalane::mix_buffers::*field, int value) {
        lumalane::mix_buffers m = regular;
        m.*field = value;
        return m;
    };
    using mix = lumalane::mix_buffers;
    EXPECT_TRUE(checked::mix_ayuy2_rgb32_p_ajust(regular));
    // What is not set is 0.
    const mix unset;
    for (const int field : {unset.video_pitch, unset.sub_pitch, unset.dst_pitch, unset.width,
                            unset.height, static_cast<int>(unset.color_key)})
        EXPECT_EQ(field, 0);
    EXPECT_EQ(lumalane::frame_buffers().field_mode, 0);
    EXPECT_EQ(lumalane::frame_buffers().luma_pitch, 0);
    EXPECT_TRUE(checked::mix_ayuy2_rgb32_p_ajust(with(&mix::dst_pitch, -64)));
    expect(checked::mix_ayuy2_rgb32_p_ajust(with(&mix::width, 0)), error::width_too_small, "width");
    expect(checked::mix_ayuy2_rgb32_p_ajust(with(&mix::height, 0)), error::height_too_small,
           "height");
    expect(checked::mix_ayuy2_rgb32_p_ajust(with(&mix::video_pitch, 14)), error::stride_too_small,
           "video_pitch");
    expect(checked::mix_ayuy2_rgb32_p_ajust(with(&mix::sub_pitch, 15)), error::stride_too_small,
           "sub_pitch");
    expect(checked::mix_ayuy2_rgb32_p_ajust(with(&mix::dst_pitch, 63)), error::stride_too_small,
           "dst_pitch");
    expect(checked::mix_ayuy2_yuy2_i_ajust(with(&mix::height, 3)), error::height_too_small,
           "height");
    expect(checked::Convert_RGB32_To_AYUY2(with(&mix::width, 7)), error::width_too_small, "width");
    expect(checked::Convert_RGB32_To_AYUY2(with(&mix::sub_pitch, -16)), error::stride_unsupported,
           "sub_pitch");
    expect(checked::load_subpicture_yuy2_rgb32(with(&mix::video_pitch, 0)), error::width_too_small,
           "video_pitch");
    // Its width is that of the video.
    const tag_ajust_contrast_info info = {};
    regular.adjust_info = &info;
    EXPECT_TRUE(checked::load_subpicture_yuy2_rgb16(with(&mix::width, 0)));
    expect(checked::Restore_RGB32_To_Alpha(with(&mix::height, -1)), error::height_too_small,
           "height");
}

TEST(checked_calls, refuse_sizes_and_strides_of_the_rest) {
    const pixels src, dst;
    EXPECT_TRUE(checked::LoadColorKeyRgb16(1, dst, 16, 2, 0, 32));
    expect(checked::LoadColorKeyRgb16(1, dst, 16, 0, 0, 32), error::height_too_small, "height");
    expect(checked::LoadColorKeyRgb16(1, dst, 0, 2, 0, 32), error::width_too_small, "width");
    expect(checked::LoadColorKeyRgb16(1, dst, 16, 2, 0, 31), error::stride_too_small, "pitch");
    expect(checked::RelaceMaskWithColorKey(dst, src, 1, 2, 16, 15, 2), error::stride_too_small,
           "pitch");
    expect(checked::RelaceMaskWithColorKey(dst, src, 1, 2, 16, 16, 0), error::height_too_small,
           "height");
    EXPECT_TRUE(checked::yuy2_strech_picture_2X2_yuy2_ajust(src, {}, {}, dst, 64, 8, 128));
    expect(checked::yuy2_strech_picture_2X2_yuy2_ajust(src, {}, {}, dst, 32, 8, 64),
           error::width_too_small, "row_bytes");
    expect(checked::yuy2_strech_picture_2X2_yuy2_ajust(src, {}, {}, dst, 80, 8, 160),
           error::width_off_step, "row_bytes");
    expect(checked::yuy2_strech_picture_2X2_yuy2_ajust(src, {}, {}, dst, 64, 7, 128),
           error::height_too_small, "height");
    expect(checked::yuy2_strech_picture_2X2_yuy2(src, {}, {}, dst, 64, 15, 128),
           error::height_too_small, "height");
    expect(checked::yuy2_strech_picture_2X2_yuy2_ajust(src, {}, {}, dst, 64, 8, 127),
           error::stride_too_small, "dst_pitch");
    expect(checked::strech_pic_2X2(src, dst, 16, 1, 16, 32), error::height_too_small, "height");
    expect(checked::strech_pic_2X2(src, dst, 16, 2, 16, 31), error::stride_too_small, "dst_pitch");
    expect(checked::strech_pic_1X2_adjust(src, dst, 15, 2, 16, 16, nullptr, 1),
           error::width_too_small, "width");
    const lumalane::frame_buffers frame{0, 48, src, src, src};
    EXPECT_TRUE(checked::strech_opt_yuy2_ajust(frame, 0, 8, dst, 96));
    expect(checked::strech_opt_yuy2_ajust(frame, 0, 7, dst, 96), error::height_too_small, "height");
    expect(checked::strech_opt_yuy2_ajust(frame, 0, 8, dst, 95), error::stride_too_small,
           "dst_pitch");
    expect(checked::strech_opt_yuy2_ajust({0, -48, src, src, src}, 0, 8, dst, 96),
           error::width_too_small, "luma_pitch");
}

TEST(checked_calls, allow_rows_of_one_buffer_between_those_of_another) {
    const picture_buffers p;
    // Source rows of 32 bytes, each beside a row of the surface.
    const buffer beside{p.y.all.data + 32, p.y.all.bytes};
    EXPECT_TRUE(checked::LoadYUY2_YUY2(p.y, {}, {}, beside, 16, 4, 32, 64));
    const buffer within{p.y.all.data + 31, p.y.all.bytes};
    expect(checked::LoadYUY2_YUY2(p.y, {}, {}, within, 16, 4, 32, 64), error::buffers_overlap,
           "dst");
    // As many rows of the source, twice as far apart as those of the surface, which come between them.
    bytes memory(64 * 64);
    const buffer left{memory.data(), memory.size()}, right{left.data + 32, memory.size() - 32};
    EXPECT_TRUE(checked::strech_picture_1X2_yuy2(left, p.u, p.v, right, 16, 16, 128, 64));
    expect(checked::strech_picture_1X2_yuy2(left, p.u, p.v, {left.data + 15, right.bytes}, 16, 16,
                                            128, 64),
           error::buffers_overlap, "dst");
}

#if UINTPTR_MAX > 0xffffffff

// As far as 32 bits would count as nothing.
TEST(checked_calls, allow_buffers_that_are_far_apart) {
    const tests::sparse_memory memory;
    ASSERT_TRUE(memory.mapped());
    constexpr std::size_t page = 1 << 16;
    unsigned char *const src = memory.origin(), *const dst = src + (1LL << 32);
    EXPECT_TRUE(checked::LoadYUY2_YUY2({src, page}, {}, {}, {dst, page}, 16, 2, 16, 32));
}

#endif

TEST(checked_calls, set_the_adjustment) {
    contrast_data halved = {32, 32, 0, 0, 0, 0, 0, 0};
    ASSERT_TRUE(checked::get_contrast_data(&halved));
    std::uint8_t src[16 * 2], dst[16 * 2];
    std::fill_n(src, std::size(src), std::uint8_t{100});
    ASSERT_TRUE(
        checked::strech_pic_1X2_adjust({src, sizeof src}, {dst, {0, 0}}, 16, 2, 16, 16, nullptr, 1)
            .code == error::buffer_too_small);
    std::uint8_t stretched[16 * 4];
    ASSERT_TRUE(checked::strech_pic_1X2_adjust({src, sizeof src}, {stretched, sizeof stretched}, 16,
                                               2, 16, 16, nullptr, 1));
    EXPECT_EQ(stretched[0], 50);
}

// ---- Texts ---------------------------------------------------------------------------------------

TEST(status_text, tells_which_bytes_a_buffer_lacks) {
    bytes y(640 * 480), u(320 * 240), v(320 * 240), dst(4 * 640 * 480);
    const auto call = [&](const buffer &to, int dst_pitch) {
        return text_of(checked::loadimage_rgb32({y.data(), y.size()}, {u.data(), u.size()},
                                                {v.data(), v.size()}, to, 640, 480, 640,
                                                dst_pitch));
    };
    EXPECT_EQ(call({dst.data(), dst.size() - 1}, 2560),
              "dst: needs bytes [0, 1228800), has 1228799");
    unsigned char *const last_row = dst.data() + 479 * 2560;
    EXPECT_EQ(call({last_row, byte_range{-479 * 2560 + 1, 2560}}, -2560),
              "dst: needs bytes [-1226240, 2560), has [-1226239, 2560)");
    EXPECT_EQ(call({dst.data(), byte_range{1, 1228800}}, 2560),
              "dst: needs bytes [0, 1228800), has [1, 1228800)");
    EXPECT_EQ(call({nullptr, dst.size()}, 2560), "dst: the plane is null");
    EXPECT_EQ(call({dst.data(), dst.size()}, 2559),
              "dst_pitch: the stride is less than the bytes of a row, in whole steps");
    EXPECT_EQ(call({y.data(), dst.size()}, 2560), "dst: bytes that are written belong to src, too");
    EXPECT_EQ(call({dst.data(), dst.size()}, 2560), "no error");
}

TEST(status_text, ends_where_its_memory_does) {
    status s;
    s.code = error::buffer_too_small, s.argument = "alpha_plane";
    s.needed = s.available = {INT64_MIN, INT64_MAX};
    const std::string whole = text_of(s);
    EXPECT_EQ(whole, "alpha_plane: needs bytes [-9223372036854775808, 9223372036854775807), has "
                     "[-9223372036854775808, 9223372036854775807)");
    EXPECT_LT(whole.size(), lumalane::status_text_size);
    for (std::size_t size = 0; size <= whole.size() + 1; ++size) {
        std::string text(whole.size() + 2, '#');
        EXPECT_EQ(s.write(text.data(), size), text.data());
        const std::size_t length = size == 0 ? 0 : size - 1;
        EXPECT_EQ(text.substr(0, length), whole.substr(0, length));
        EXPECT_EQ(text[length], size == 0 ? '#' : '\0');
        EXPECT_EQ(text.find_first_not_of('#', size), std::string::npos);
    }
}

TEST(status_text, is_another_one_for_each_error) {
    std::vector<std::string> messages;
    for (int code = 0; code <= static_cast<int>(error::buffers_overlap); ++code) {
        status s;
        s.code = static_cast<error>(code);
        messages.push_back(message_of(s.code));
        EXPECT_LT(text_of(s).size(), lumalane::status_text_size);
    }
    std::sort(messages.begin(), messages.end());
    EXPECT_EQ(std::adjacent_find(messages.begin(), messages.end()), messages.end());
    EXPECT_FALSE(std::binary_search(messages.begin(), messages.end(), "unknown error"));
}

} // namespace
