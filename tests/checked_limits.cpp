// The numbers that checked calls take, of every function: each least one, each step and each stride,
// and one less or one more.
#include <map>
#include <string_view>

#include <gtest/gtest.h>

#include <lumalane/lumalane.hpp>

#include "tests/differential/draw.h"

namespace {

using lumalane::error;
using lumalane::largest_size;
using lumalane::message_of;
using lumalane::mix_shape;
using lumalane::picture_shape;
using lumalane::detail::check_numbers;
namespace functions = lumalane::functions;

// As lumalane.h has them.
struct limits {
    int width = 1, step = 1, height = 1;
    bool even = false;
};

limits limits_of(std::string_view name) {
    static const std::map<std::string_view, limits> others = {
        {"loadimage_yuy2_ajust", {1, 1, 10, true}},
        {"Convert_RGB32_To_AYUY2", {8, 1, 1}},
        {"Convert_RGB24_To_AYUY2", {8, 1, 1}},
        {"Convert_RGB16_565_To_AYUY2", {8, 1, 1}},
        {"mix_ayuy2_yuy2_i_ajust", {1, 1, 4}},
        {"strech_picture_1X2_yuy2", {1, 1, 8}},
        {"strech_picture_1X2_yuy2_ajust", {1, 1, 8}},
        {"strech_picture_2X2_yuy2", {1, 1, 8}},
        {"strech_picture_2X2_yuy2_ajust", {1, 1, 16}},
        {"yuy2_strech_picture_2X2_yuy2", {64, 32, 16}},
        {"yuy2_strech_picture_2X2_yuy2_ajust", {64, 32, 8}},
        {"strech_picture_1X2_yuy2_ajust_rgb32", {1, 1, 12}},
        {"strech_picture_1X2_yuy2_ajust_rgb24", {16, 16, 12}},
        {"strech_picture_1X2_yuy2_ajust_rgb16", {16, 16, 12}},
        {"strech_picture_2X2_yv12_ajust", {32, 1, 4}},
        {"strech_picture_1X2_yv12_ajust", {32, 1, 4}},
        {"strech_pic_2X2", {1, 1, 2}},
        {"strech_pic_2X2_adjust", {16, 1, 2}},
        {"strech_pic_1X2_adjust", {16, 1, 2}},
        {"strech_opt_yuy2_ajust", {1, 1, 8}},
    };
    const auto found = others.find(name);
    return found == others.end() ? limits{} : found->second;
}

// Of a surface, by what the function's name says.
int row_bytes_of(std::string_view name, int width) {
    return differential::destination_row_bytes(name, width) *
           (name.find("2X2") == name.npos ? 1 : 2);
}

// One function with numbers that it takes, of which one is then another.
template <class Function, class Call>
struct limited {
    Function function;
    Call regular;

    void takes(int Call::*field, int value) const {
        Call c = regular;
        c.*field = value;
        const lumalane::status s = check_numbers(function, c);
        EXPECT_STREQ(message_of(s.code), message_of(error::none))
            << function.name << ", " << (s.argument ? s.argument : "") << " of " << value;
    }
    void refuses(int Call::*field, const char *name, int value, error code) const {
        Call c = regular;
        c.*field = value;
        const lumalane::status s = check_numbers(function, c);
        EXPECT_STREQ(message_of(s.code), message_of(code)) << function.name << ", " << name;
        EXPECT_STREQ(s.argument, name) << function.name;
    }

    void size(int Call::*field, const char *name, int least, int step, error below) const {
        takes(field, least);
        refuses(field, name, least - 1, below);
        takes(field, largest_size);
        refuses(field, name, largest_size + step, error::size_too_large);
        takes(field, least + step);
        for (int beside = 1; beside < step; ++beside)
            refuses(field, name, least + beside, error::width_off_step);
    }
    // Where the row's bytes follow from a width, that is.
    void width(int Call::*field, const char *name, int least, int step = 1) const {
        takes(field, least);
        refuses(field, name, least - 1, error::width_too_small);
        takes(field, least + step);
        for (int beside = 1; beside < step; ++beside)
            refuses(field, name, least + beside, error::width_off_step);
    }
    void stride(int Call::*field, const char *name, int row_bytes, bool negative = true) const {
        takes(field, row_bytes);
        takes(field, largest_size);
        refuses(field, name, largest_size + 2, error::size_too_large);
        if (row_bytes > 0)
            refuses(field, name, row_bytes - (negative ? 1 : 2), error::stride_too_small);
        if (row_bytes > 1)
            refuses(field, name, 0, error::stride_too_small);
        if (!negative)
            return refuses(field, name, -2, error::stride_unsupported);
        takes(field, -row_bytes);
        takes(field, -largest_size);
        if (row_bytes > 1)
            refuses(field, name, 1 - row_bytes, error::stride_too_small);
        refuses(field, name, -largest_size - 2, error::size_too_large);
    }
};

void expect_limits(const lumalane::parameters_function &) {}

void expect_limits(const lumalane::picture_function &f) {
    using call = lumalane::picture_call;
    const limits l = limits_of(f.name);
    const int width = 2 * (l.width > 16 ? l.width : 16), height = 2 * l.height;
    const limited<lumalane::picture_function, call> of{f, {width, height, 1 << 20, 1 << 20}};
    of.width(&call::width, "width", l.width, l.step);
    of.takes(&call::height, l.height);
    of.refuses(&call::height, "height", l.height - 1, error::height_too_small);
    of.takes(&call::height, largest_size);
    of.refuses(&call::height, "height", largest_size + 1, error::size_too_large);
    if (l.even)
        of.refuses(&call::height, "height", height + 1, error::height_odd);
    else
        of.takes(&call::height, height + 1);
    const bool copies = f.shape == picture_shape::copy;
    const bool doubles =
        f.shape == picture_shape::doubled_pairs || f.shape == picture_shape::filtered_doubled_pairs;
    if (f.shape == picture_shape::adjusted_copy)
        of.takes(&call::src_pitch, INT32_MIN); // which is not read
    else
        of.stride(&call::src_pitch, "src_pitch", width, !copies && !doubles);
    if (doubles)
        of.refuses(&call::src_pitch, "src_pitch", width + 1, error::stride_unsupported);
    of.stride(&call::dst_pitch, "dst_pitch", row_bytes_of(f.name, width), !copies);
}

void expect_limits(const lumalane::mix_function &f) {
    using call = lumalane::mix_call;
    const limits l = limits_of(f.name);
    const bool conversion = f.shape == mix_shape::conversion;
    const bool subpicture = f.shape == mix_shape::subpicture;
    const bool transfer =
        f.shape == mix_shape::restored_alpha || f.shape == mix_shape::loaded_alpha;
    const limited<lumalane::mix_function, call> of{f, {32, 1 << 20, 1 << 20, 32, 2 * l.height}};
    of.width(subpicture ? &call::video_pitch : &call::width, subpicture ? "video_pitch" : "width",
             l.width);
    of.takes(&call::height, l.height);
    of.refuses(&call::height, "height", l.height - 1, error::height_too_small);
    of.takes(&call::height, largest_size);
    of.refuses(&call::height, "height", largest_size + 1, error::size_too_large);
    if (!conversion && !subpicture)
        of.stride(&call::video_pitch, "video_pitch", 32);
    if (!subpicture && !transfer)
        of.stride(&call::sub_pitch, "sub_pitch", 32, !conversion);
    else // which have none
        for (const int any : {0, 31, -1, largest_size + 1})
            of.takes(&call::sub_pitch, any);
    of.stride(&call::dst_pitch, "dst_pitch", row_bytes_of(f.name, 32));
}

void expect_limits(const lumalane::key_fill_function &f) {
    using call = lumalane::key_fill_call;
    const limited<lumalane::key_fill_function, call> of{f, {32, 4, 1 << 20}};
    of.width(&call::width, "width", 1);
    of.size(&call::height, "height", 1, 1, error::height_too_small);
    of.stride(&call::pitch, "pitch", row_bytes_of(f.name, 32));
}

void expect_limits(const lumalane::mask_function &f) {
    using call = lumalane::mask_call;
    const limited<lumalane::mask_function, call> of{f, {32, 1 << 20, 4}};
    of.width(&call::width, "width", 1);
    of.size(&call::height, "height", 1, 1, error::height_too_small);
    of.stride(&call::pitch, "pitch", 32);
}

void expect_limits(const lumalane::packed_stretch_function &f) {
    using call = lumalane::packed_stretch_call;
    const limits l = limits_of(f.name);
    const limited<lumalane::packed_stretch_function, call> of{f, {128, 2 * l.height, 1 << 20}};
    of.width(&call::row_bytes, "row_bytes", l.width, l.step);
    of.size(&call::height, "height", l.height, 1, error::height_too_small);
    of.stride(&call::dst_pitch, "dst_pitch", 256);
}

void expect_limits(const lumalane::plane_stretch_function &f) {
    using call = lumalane::plane_stretch_call;
    const limits l = limits_of(f.name);
    const limited<lumalane::plane_stretch_function, call> of{f, {32, 4, 1 << 20, 1 << 20}};
    of.width(&call::width, "width", l.width);
    of.size(&call::height, "height", l.height, 1, error::height_too_small);
    of.stride(&call::src_pitch, "src_pitch", 32);
    of.stride(&call::dst_pitch, "dst_pitch", row_bytes_of(f.name, 32));
}

void expect_limits(const lumalane::frame_stretch_function &f) {
    using call = lumalane::frame_stretch_call;
    const limits l = limits_of(f.name);
    const limited<lumalane::frame_stretch_function, call> of{f, {32, 0, 0, 16, 1 << 20}};
    of.width(&call::luma_pitch, "luma_pitch", l.width);
    of.size(&call::height, "height", l.height, 1, error::height_too_small);
    of.stride(&call::dst_pitch, "dst_pitch", 64);
    of.takes(&call::start, -largest_size);
    of.takes(&call::start, largest_size);
    of.refuses(&call::start, "start", largest_size + 1, error::size_too_large);
}

TEST(checked_limits, are_those_of_the_manual) {
#define LUMALANE_EXPORT(signature, name) expect_limits(functions::name);
#include "abi/exports.inc"
#undef LUMALANE_EXPORT
}

// Where a column ends, the row below begins: also for heights after which columns do not join.
TEST(checked_limits, of_strides_of_columns_are_whole_steps) {
    for (int height = 12; height < 20; ++height) {
        const limited<lumalane::picture_function, lumalane::picture_call> stretches{
            functions::strech_picture_1X2_yuy2_ajust_rgb32, {20, height, 64, 4 * 32}};
        stretches.stride(&lumalane::picture_call::dst_pitch, "dst_pitch", 4 * 32);
        const limited<lumalane::mix_function, lumalane::mix_call> mixes{
            functions::mix_ayuy2_rgb24_i_ajust, {64, 64, 3 * 32, 20, height}};
        mixes.stride(&lumalane::mix_call::dst_pitch, "dst_pitch", 3 * 32);
    }
}

TEST(checked_limits, of_layouts_are_four) {
    for (unsigned layout = 0; layout < 6; ++layout) {
        const error expected = layout < 4 ? error::none : error::unknown_rgb16_layout;
        EXPECT_EQ(check_numbers(functions::loadimage_rgb16, {16, 2, 16, 32, layout}).code,
                  expected);
        EXPECT_EQ(
            check_numbers(functions::mix_ayuy2_rgb16_p_ajust, {16, 16, 32, 16, 2, layout}).code,
            expected);
    }
}

} // namespace
