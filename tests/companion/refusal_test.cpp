// What convert(), blend() and stretch() refuse, and that nothing is written then.
#include "tests/companion/pictures.h"

#include <gtest/gtest.h>

#include <climits>

namespace companion {
namespace {

using lumalane::error;
using lumalane::format;
using lumalane::stretching;

constexpr int width = 20, height = 6;

class refusal : public testing::Test {
protected:
    bytes source_memory = bytes(1 << 12, 1), destination_memory = bytes(1 << 14, 2),
          subpicture_memory = bytes(1 << 12, 16);
    lumalane::const_picture source = packed(format::i420, source_memory);
    lumalane::picture destination = packed(format::rgb32, destination_memory);
    lumalane::picture high =
        lumalane::packed_planes(format::rgb32, width, 2 * height, destination_memory.data());
    lumalane::const_plane sub{subpicture_memory.data(), 64};
    lumalane::subpicture over{8, 4, sub, sub, sub, sub};

    static lumalane::picture packed(format f, bytes &memory) {
        return lumalane::packed_planes(f, width, height, memory.data());
    }

    void nothing_is_written() {
        EXPECT_EQ(destination_memory, bytes(destination_memory.size(), 2));
        EXPECT_EQ(source_memory, bytes(source_memory.size(), 1));
    }

    // By every call that takes them, with and without an adjustment.
    void refused(error why, const char *argument) {
        for (const lumalane::status s :
             {lumalane::convert(source, destination), lumalane::convert(source, destination, {}),
              lumalane::blend(source, over, 0, 0, destination),
              lumalane::blend(source, over, 0, 0, destination, {}),
              lumalane::stretch(source, high, stretching::twice_height),
              lumalane::stretch(source, high, stretching::twice_height, {})}) {
            EXPECT_FALSE(s);
            EXPECT_EQ(message_of(s.code), std::string(message_of(why)));
            EXPECT_STREQ(s.argument, argument);
        }
        nothing_is_written();
    }

    void subpicture_refused(error why, const char *argument = "subpicture") {
        const lumalane::status s = lumalane::blend(source, over, 0, 0, destination);
        EXPECT_EQ(message_of(s.code), std::string(message_of(why)));
        EXPECT_STREQ(s.argument, argument);
        nothing_is_written();
    }
};

TEST_F(refusal, does_not_happen_to_what_the_others_start_from) {
    EXPECT_TRUE(lumalane::convert(source, destination));
    EXPECT_TRUE(lumalane::blend(source, over, 0, 0, destination));
    EXPECT_TRUE(lumalane::stretch(source, high, stretching::twice_height));
}

TEST_F(refusal, of_null_planes) {
    source.planes[2].data = nullptr;
    refused(error::null_plane, "source");
}

TEST_F(refusal, of_a_null_destination) {
    destination.planes[0].data = high.planes[0].data = nullptr;
    refused(error::null_plane, "destination");
}

TEST_F(refusal, of_strides_below_the_bytes_of_a_row) {
    source.planes[1].stride = -(width / 2 - 1);
    refused(error::stride_too_small, "source");
    source.planes[1].stride = 0;
    refused(error::stride_too_small, "source");
}

TEST_F(refusal, of_destination_strides_below_the_bytes_of_a_row) {
    destination.planes[0].stride = high.planes[0].stride = 4 * width - 1;
    refused(error::stride_too_small, "destination");
}

TEST_F(refusal, of_strides_that_are_too_large) {
    for (const int stride : {lumalane::largest_size + 1, INT_MAX, INT_MIN}) {
        source.planes[0].stride = stride;
        refused(error::size_too_large, "source");
    }
}

TEST_F(refusal, of_no_width) {
    for (const int none : {0, -1, INT_MIN}) {
        source.width = destination.width = high.width = none;
        refused(error::width_too_small, "source");
    }
}

TEST_F(refusal, of_no_height) {
    for (const int none : {0, -1, INT_MIN}) {
        source.height = destination.height = none;
        refused(error::height_too_small, "source");
    }
}

TEST_F(refusal, of_a_height_that_is_too_large) {
    source.height = INT_MAX;
    refused(error::size_too_large, "source");
}

TEST_F(refusal, of_a_width_that_is_too_large) {
    source.width = lumalane::largest_size + 1;
    refused(error::size_too_large, "source");
    EXPECT_TRUE(lumalane::detail::check_size(lumalane::largest_size, lumalane::largest_size, ""));
}

TEST_F(refusal, of_other_sizes) {
    --destination.width, ++high.height;
    refused(error::sizes_differ, "destination");
}

TEST_F(refusal, of_a_column_more_than_twice_the_width) {
    const lumalane::picture wider =
        lumalane::packed_planes(format::yuy2, 2 * width + 1, 2 * height, destination_memory.data());
    EXPECT_EQ(lumalane::stretch(source, wider, stretching::twice_both).code, error::sizes_differ);
    nothing_is_written();
}

TEST_F(refusal, of_rgb_sources) {
    const bytes memory(1 << 12);
    source = lumalane::const_picture{format::rgb32, width, height, {{memory.data(), 4 * width}}};
    refused(error::unsupported_formats, "destination");
}

TEST_F(refusal, of_formats_that_do_not_exist) {
    source.format = static_cast<format>(9);
    refused(error::unsupported_formats, "source");
    source.format = static_cast<format>(-1);
    refused(error::unsupported_formats, "source");
}

TEST_F(refusal, of_pairs_that_no_function_serves) {
    const lumalane::const_picture yuy2 = packed(format::yuy2, source_memory);
    const lumalane::picture yv12 = packed(format::yv12, destination_memory);
    EXPECT_EQ(lumalane::convert(yuy2, yv12).code, error::unsupported_formats);
    EXPECT_EQ(lumalane::blend(yuy2, over, 0, 0, destination).code, error::unsupported_formats);
    EXPECT_EQ(lumalane::stretch(yuy2, high, stretching::twice_height).code,
              error::unsupported_formats);
    EXPECT_EQ(lumalane::stretch(source, high, stretching::along_edges).code,
              error::unsupported_formats);
    const lumalane::picture large =
        lumalane::packed_planes(format::rgb24, 2 * width, 2 * height, destination_memory.data());
    EXPECT_EQ(lumalane::stretch(source, large, stretching::twice_both).code,
              error::unsupported_formats);
    EXPECT_EQ(lumalane::stretch(
                  yuy2,
                  lumalane::packed_planes(format::yuy2, width, 2 * height, high.planes[0].data),
                  stretching::twice_height)
                  .code,
              error::unsupported_formats);
    for (const format to : {format::yv12, format::yuy2}) {
        const lumalane::picture twice =
            lumalane::packed_planes(to, width, 2 * height, destination_memory.data());
        const lumalane::const_picture &from = to == format::yuy2 ? yuy2 : source;
        EXPECT_EQ(lumalane::stretch(from, twice, stretching::along_edges).code,
                  error::unsupported_formats);
    }
    nothing_is_written();
}

TEST_F(refusal, of_ways_to_stretch_that_do_not_exist) {
    const lumalane::picture yuy2 =
        lumalane::packed_planes(format::yuy2, width, 2 * height, destination_memory.data());
    for (const int how : {-1, 3}) {
        const lumalane::status s = lumalane::stretch(source, yuy2, static_cast<stretching>(how));
        EXPECT_EQ(s.code, error::unsupported_formats) << how;
    }
    nothing_is_written();
}

TEST_F(refusal, of_source_and_destination_that_share_a_byte) {
    // The last byte of the last plane, the first one of the destination.
    const lumalane::picture to = lumalane::packed_planes(
        format::rgb32, width, height,
        source_memory.data() + lumalane::picture_bytes(format::i420, width, height) - 1);
    const lumalane::status s = lumalane::convert(source, to);
    EXPECT_EQ(s.code, error::buffers_overlap);
    EXPECT_STREQ(s.other, "source");
    nothing_is_written();
    EXPECT_TRUE(lumalane::convert(
        source, lumalane::packed_planes(format::rgb32, width, height, to.planes[0].data + 1)));
}

TEST_F(refusal, of_any_two_planes_of_source_and_destination_that_share_a_byte) {
    for (int i = 0; i < 3; ++i)
        for (int k = 0; k < 3; ++k) {
            destination = packed(format::yv12, destination_memory);
            destination.planes[k].data = const_cast<unsigned char *>(source.planes[i].data);
            const lumalane::status s = lumalane::convert(source, destination);
            EXPECT_EQ(s.code, error::buffers_overlap) << i << k;
        }
    nothing_is_written();
}

TEST_F(refusal, of_planes_of_the_destination_that_share_a_byte) {
    destination = packed(format::yv12, destination_memory);
    high = lumalane::packed_planes(format::yv12, width, 2 * height, destination_memory.data());
    destination.planes[1].data -= 1, high.planes[1].data -= 1;
    refused(error::planes_overlap, "destination");
    destination.planes[1].data += 1, high.planes[1].data += 1;
    unsigned char *const last = destination.planes[2].data, *const last_of_high =
                                                                high.planes[2].data;
    destination.planes[2].data = destination.planes[1].data;
    high.planes[2].data = high.planes[1].data;
    refused(error::planes_overlap, "destination");
    destination.planes[1].data = last, high.planes[1].data = last_of_high;
    destination.planes[2].data = destination.planes[0].data;
    high.planes[2].data = high.planes[0].data;
    refused(error::planes_overlap, "destination");
}

TEST_F(refusal, is_not_for_rows_of_planes_beside_those_of_others) {
    // U to the right of Y, in every second row of it; V in the rows between.
    unsigned char *const y = destination_memory.data();
    destination = {format::i420, width, height, {{y, 32}, {y + width, 64}, {y + width + 32, 64}}};
    EXPECT_TRUE(lumalane::convert(source, destination));
    destination.planes[1].data -= 1;
    EXPECT_EQ(lumalane::convert(source, destination).code, error::planes_overlap);
}

TEST_F(refusal, of_bottom_up_pictures_that_share_a_byte) {
    lumalane::picture to = lumalane::flipped(lumalane::packed_planes(
        format::i420, width, height, source_memory.data() + width * height - 1));
    source = lumalane::flipped(packed(format::i420, source_memory));
    EXPECT_EQ(lumalane::convert(source, to).code, error::buffers_overlap);
    nothing_is_written();
}

TEST_F(refusal, of_subpictures_without_a_plane) {
    over.u.data = nullptr;
    subpicture_refused(error::null_plane);
}

TEST_F(refusal, of_subpictures_without_a_size) {
    over.width = 0;
    subpicture_refused(error::width_too_small);
    over.width = 1, over.height = INT_MIN;
    subpicture_refused(error::height_too_small);
}

TEST_F(refusal, of_subpictures_with_strides_below_the_bytes_of_a_row) {
    over.alpha.stride = 7;
    subpicture_refused(error::stride_too_small);
    over.alpha.stride = 8, over.v.stride = 3;
    subpicture_refused(error::stride_too_small);
}

TEST_F(refusal, of_subpictures_that_overlap_the_destination) {
    over.v.data = destination_memory.data() + 4 * width * height - 1;
    subpicture_refused(error::buffers_overlap, "destination");
    EXPECT_STREQ(lumalane::blend(source, over, 0, 0, destination).other, "subpicture");
    for (lumalane::const_plane lumalane::subpicture::*plane :
         {&lumalane::subpicture::alpha, &lumalane::subpicture::y, &lumalane::subpicture::u,
          &lumalane::subpicture::v})
        for (int i = 0; i < 3; ++i) {
            destination = packed(format::i420, destination_memory);
            over = {8, 4, sub, sub, sub, sub};
            (over.*plane).data = destination.planes[i].data;
            destination.planes[(i + 1) % 3].data += 1024,
                destination.planes[(i + 2) % 3].data += 4096;
            subpicture_refused(error::buffers_overlap, "destination");
        }
}

// Far away is outside, and no error.
TEST_F(refusal, is_not_for_any_position) {
    bytes plain(destination_memory.size(), 2);
    ASSERT_TRUE(lumalane::convert(source, packed(format::rgb32, plain)));
    for (const int x : {INT_MIN, -8, width, INT_MAX})
        for (const int y : {INT_MIN, -4, height, INT_MAX}) {
            destination_memory.assign(destination_memory.size(), 2);
            ASSERT_TRUE(lumalane::blend(source, over, x, y, destination));
            EXPECT_EQ(destination_memory, plain) << x << ", " << y;
        }
}

} // namespace
} // namespace companion
