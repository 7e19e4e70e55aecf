// The element by itself, in a harness that plays its neighbours.
#include "balance.h"
#include "caps.h"
#include "conversion.h"
#include "lumalaneconvert.h"

#include <gst/check/gstharness.h>
#include <gst/controller/gstdirectcontrolbinding.h>
#include <gst/controller/gstinterpolationcontrolsource.h>
#include <gst/video/colorbalance.h>
#include <gst/video/video.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

using lumalane::const_picture;
using lumalane::format;
using lumalane::picture;
using std::string;

struct named_format {
    const char *name;
    lumalane::format format;
};

constexpr named_format yv12{"YV12", format::yv12}, i420{"I420", format::i420},
    yuy2{"YUY2", format::yuy2}, bgrx{"BGRx", format::rgb32}, bgr{"BGR", format::rgb24},
    rgb16{"RGB16", format::rgb565};
constexpr named_format sinks[] = {yv12, i420, yuy2};
constexpr named_format sources[] = {bgrx, bgr, rgb16, yuy2, yv12, i420};

// ---- Pictures ----------------------------------------------------------------------------------

// A picture with memory of its own, of strides that are `gap` bytes longer than the rows and with
// `gap` bytes before, between and behind its planes.
struct drawn {
    std::vector<unsigned char> bytes;
    picture p;
    std::vector<gsize> offsets;

    drawn(format f, int width, int height, int gap = 0) : p{f, width, height, {}} {
        gsize size = gap;
        for (int i = 0; i < lumalane::plane_count(f); ++i) {
            p.planes[i].stride = static_cast<int>(lumalane::row_bytes(f, i, width)) + gap;
            offsets.push_back(size);
            size += static_cast<gsize>(p.planes[i].stride) * plane_rows(i) + gap;
        }
        bytes.resize(size);
        for (size_t i = 0; i < offsets.size(); ++i)
            p.planes[i].data = bytes.data() + offsets[i];
    }
    drawn(drawn &&) = default; // the memory stays where it is

    int plane_rows(int i) const { return lumalane::plane_height(p.format, i, p.height); }
};

drawn noise(format f, int width, int height, int gap = 0, unsigned seed = 1) {
    drawn d(f, width, height, gap);
    std::mt19937 draw(seed);
    for (unsigned char &byte : d.bytes)
        byte = static_cast<unsigned char>(draw());
    return d;
}

// The pixels without what is between them.
std::vector<unsigned char> pixels_of(const const_picture &p) {
    std::vector<unsigned char> all;
    for (int i = 0; i < lumalane::plane_count(p.format); ++i)
        for (int row = 0; row < lumalane::plane_height(p.format, i, p.height); ++row) {
            const unsigned char *const from =
                p.planes[i].data + static_cast<std::ptrdiff_t>(row) * p.planes[i].stride;
            all.insert(all.end(), from, from + lumalane::row_bytes(p.format, i, p.width));
        }
    return all;
}

std::vector<unsigned char> converted(const const_picture &source, format to,
                                     const lumalane::adjustment *adjust = nullptr) {
    drawn made(to, source.width, source.height);
    const lumalane::status s =
        adjust ? lumalane::convert(source, made.p, *adjust) : lumalane::convert(source, made.p);
    EXPECT_TRUE(s);
    return pixels_of(made.p);
}

// ---- The element between its neighbours --------------------------------------------------------

string caps_of(const named_format &f, int width, int height, const string &more = "") {
    return string("video/x-raw, format=") + f.name + ", width=" + std::to_string(width) +
           ", height=" + std::to_string(height) + ", framerate=25/1" +
           (more.empty() ? "" : ", " + more);
}

class element : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        gst_init(nullptr, nullptr);
        ASSERT_TRUE(GST_ELEMENT_REGISTER(lumalaneconvert, nullptr));
    }

    void SetUp() override { start(); }
    void TearDown() override { stop(); }

    void start() {
        harness = gst_harness_new("lumalaneconvert");
        bus = gst_bus_new();
        gst_element_set_bus(harness->element, bus);
    }

    void stop() {
        gst_element_set_bus(harness->element, nullptr);
        gst_object_unref(bus);
        gst_harness_teardown(harness);
    }

    void restart() {
        stop();
        start();
    }

    void set(const char *property, double value) {
        g_object_set(harness->element, property, value, nullptr);
    }

    double get(const char *property) {
        double value = 0;
        g_object_get(harness->element, property, &value, nullptr);
        return value;
    }

    void deinterlace(const char *how) {
        gst_util_set_object_arg(G_OBJECT(harness->element), "deinterlace", how);
    }

    // What the neighbours have; false if that does not come together.
    bool negotiate(const string &from, const string &to) {
        gst_harness_set_sink_caps_str(harness, to.c_str());
        return set_source(from);
    }

    bool set_source(const string &from) {
        GstCaps *caps = gst_caps_from_string(from.c_str());
        gst_harness_play(harness);
        gst_harness_push_event(harness, gst_event_new_stream_start("test"));
        gst_harness_push_event(harness, gst_event_new_caps(caps));
        GstSegment segment;
        gst_segment_init(&segment, GST_FORMAT_TIME);
        gst_harness_push_event(harness, gst_event_new_segment(&segment));
        // That an event is refused shows in nothing but what the pad has then.
        GstPad *const pad = gst_element_get_static_pad(harness->element, "sink");
        GstCaps *const has = gst_pad_get_current_caps(pad);
        const bool taken = has && gst_caps_is_equal(has, caps);
        gst_caps_replace(&caps, nullptr);
        if (has)
            gst_caps_unref(has);
        gst_object_unref(pad);
        return taken;
    }

    // The text of the element's error, or nothing.
    string error() { return last(GST_MESSAGE_ERROR, gst_message_parse_error); }
    string warning() { return last(GST_MESSAGE_WARNING, gst_message_parse_warning); }

    string last(GstMessageType type, void parse(GstMessage *, GError **, gchar **)) {
        string text;
        while (GstMessage *const message = gst_bus_pop_filtered(bus, type)) {
            GError *e = nullptr;
            parse(message, &e, nullptr);
            text = e->message;
            g_error_free(e);
            gst_message_unref(message);
        }
        return text;
    }

    // Whether it can have some of those caps before it.
    bool takes(const char *text) {
        GstCaps *const caps = gst_pad_peer_query_caps(harness->srcpad, nullptr);
        GstCaps *const one = gst_caps_from_string(text);
        const bool can = gst_caps_can_intersect(caps, one);
        gst_caps_unref(one);
        gst_caps_unref(caps);
        return can;
    }

    GstCaps *made_caps() { return gst_pad_get_current_caps(harness->sinkpad); }

    string made(const char *field) {
        GstCaps *const caps = made_caps();
        const char *const text =
            caps ? gst_structure_get_string(gst_caps_get_structure(caps, 0), field) : nullptr;
        const string found = text ? text : "";
        if (caps)
            gst_caps_unref(caps);
        return found;
    }

    // A buffer that says by a video meta where its planes are.
    static GstBuffer *buffer_of(const drawn &d, GstVideoFormat f, GstClockTime at = 0) {
        GstBuffer *const buffer = gst_buffer_new_memdup(d.bytes.data(), d.bytes.size());
        gint strides[GST_VIDEO_MAX_PLANES] = {};
        gsize offsets[GST_VIDEO_MAX_PLANES] = {};
        for (size_t i = 0; i < d.offsets.size(); ++i) {
            strides[i] = d.p.planes[i].stride;
            offsets[i] = d.offsets[i];
        }
        gst_buffer_add_video_meta_full(
            buffer, GST_VIDEO_FRAME_FLAG_NONE, f, static_cast<guint>(d.p.width),
            static_cast<guint>(d.p.height), static_cast<guint>(d.offsets.size()), offsets, strides);
        GST_BUFFER_PTS(buffer) = at;
        return buffer;
    }

    static GstBuffer *cropped(GstBuffer *buffer, guint x, guint y, guint width, guint height) {
        GstVideoCropMeta *const crop = gst_buffer_add_video_crop_meta(buffer);
        crop->x = x, crop->y = y, crop->width = width, crop->height = height;
        return buffer;
    }

    // A buffer of GStreamer's own strides, without a meta.
    static GstBuffer *plain_buffer_of(const drawn &d, const GstVideoInfo &info) {
        GstBuffer *const buffer = gst_buffer_new_allocate(nullptr, info.size, nullptr);
        GstVideoFrame f;
        EXPECT_TRUE(gst_video_frame_map(&f, &info, buffer, GST_MAP_WRITE));
        for (int i = 0; i < lumalane::plane_count(d.p.format); ++i)
            for (int row = 0; row < d.plane_rows(i); ++row)
                std::copy_n(d.p.planes[i].data + row * d.p.planes[i].stride,
                            lumalane::row_bytes(d.p.format, i, d.p.width),
                            static_cast<unsigned char *>(GST_VIDEO_FRAME_PLANE_DATA(&f, i)) +
                                row * GST_VIDEO_FRAME_PLANE_STRIDE(&f, i));
        gst_video_frame_unmap(&f);
        GST_BUFFER_PTS(buffer) = 0;
        return buffer;
    }

    // What it makes of a buffer, or null: a frame that does not come is not waited for.
    GstBuffer *through(GstBuffer *buffer) {
        return gst_harness_push(harness, buffer) == GST_FLOW_OK ? gst_harness_try_pull(harness)
                                                                : nullptr;
    }

    // As an element has it that reads no metas. Takes it.
    static GstBuffer *without_metas(GstBuffer *buffer) {
        GstBuffer *const memory =
            gst_buffer_copy_region(buffer, GST_BUFFER_COPY_MEMORY, 0, static_cast<gsize>(-1));
        gst_buffer_unref(buffer);
        return memory;
    }

    // The pixels of a buffer that the element made. Takes it.
    std::vector<unsigned char> pixels(GstBuffer *buffer, format f) {
        if (!buffer)
            return {};
        GstCaps *const caps = made_caps();
        GstVideoInfo info;
        EXPECT_TRUE(gst_video_info_from_caps(&info, caps));
        gst_caps_unref(caps);
        GstVideoFrame mapped;
        EXPECT_TRUE(gst_video_frame_map(&mapped, &info, buffer, GST_MAP_READ));
        const_picture p{f, GST_VIDEO_FRAME_WIDTH(&mapped), GST_VIDEO_FRAME_HEIGHT(&mapped), {}};
        for (int i = 0; i < lumalane::plane_count(f); ++i)
            p.planes[i] = {static_cast<unsigned char *>(GST_VIDEO_FRAME_PLANE_DATA(&mapped, i)),
                           GST_VIDEO_FRAME_PLANE_STRIDE(&mapped, i)};
        std::vector<unsigned char> all = pixels_of(p);
        gst_video_frame_unmap(&mapped);
        gst_buffer_unref(buffer);
        return all;
    }

    std::vector<unsigned char> pushed(const drawn &d, const named_format &from,
                                      const named_format &to, guint flags = 0) {
        GstBuffer *const buffer = buffer_of(d, gst_video_format_from_string(from.name));
        GST_BUFFER_FLAG_SET(buffer, flags);
        return pixels(through(buffer), to.format);
    }

    GstHarness *harness = nullptr;
    GstBus *bus = nullptr;
};

bool can_convert(const named_format &from, const named_format &to) {
    return lumalane_gst::converts(from.format, to.format, lumalane_gst::deinterlacing::none);
}

// ---- Negotiation -------------------------------------------------------------------------------

TEST_F(element, negotiates_every_pair_of_formats_that_there_is) {
    for (const named_format &from : sinks)
        for (const named_format &to : sources) {
            SCOPED_TRACE(string(from.name) + " to " + to.name);
            restart();
            EXPECT_EQ(negotiate(caps_of(from, 64, 48), string("video/x-raw, format=") + to.name),
                      can_convert(from, to));
            EXPECT_EQ(made("format"), can_convert(from, to) ? to.name : "");
            EXPECT_EQ(error(), "");
        }
}

TEST_F(element, keeps_size_and_frame_rate_and_states_full_range_rgb) {
    ASSERT_TRUE(negotiate(caps_of(i420, 853, 479, "pixel-aspect-ratio=8/9, chroma-site=mpeg2"),
                          "video/x-raw, format=BGRx"));
    GstCaps *const caps = made_caps();
    GstCaps *const wanted =
        gst_caps_from_string("video/x-raw, format=BGRx, width=853, height=479, framerate=25/1, "
                             "pixel-aspect-ratio=8/9, colorimetry=sRGB");
    EXPECT_TRUE(gst_caps_is_equal(caps, wanted)) << gst_caps_to_string(caps);
    gst_caps_unref(caps);
    gst_caps_unref(wanted);
}

// Their chroma is the same; that of packed pictures has rows of its own.
TEST_F(element, keeps_where_chroma_lies_between_planar_formats) {
    const struct {
        const named_format &from, &to;
        const char *behind, *made; // null: refused
    } cases[] = {{i420, i420, "", "mpeg2"},
                 {i420, yv12, "", "mpeg2"},
                 {yv12, i420, "", "mpeg2"},
                 {i420, yuy2, "", ""},
                 {i420, yv12, ", chroma-site=mpeg2", "mpeg2"},
                 {i420, yv12, ", chroma-site=jpeg", nullptr},
                 {yv12, i420, ", chroma-site=jpeg", nullptr},
                 {yv12, yuy2, ", chroma-site=jpeg", "jpeg"}};
    for (const auto &c : cases) {
        SCOPED_TRACE(string(c.from.name) + " to " + c.to.name + c.behind);
        restart();
        EXPECT_EQ(negotiate(caps_of(c.from, 64, 48, "chroma-site=mpeg2"),
                            string("video/x-raw, format=") + c.to.name + c.behind),
                  c.made != nullptr);
        EXPECT_EQ(made("chroma-site"), c.made ? c.made : "");
    }
}

TEST_F(element, refuses_memory_that_is_not_of_the_system) {
    for (const GstPadDirection side : {GST_PAD_SINK, GST_PAD_SRC}) {
        GstCaps *const caps = gst_caps_from_string("video/x-raw(memory:DMABuf), format=YUY2");
        GstCaps *const across =
            lumalane_gst::transform_caps(side, caps, lumalane_gst::deinterlacing::none);
        EXPECT_TRUE(gst_caps_is_empty(across));
        gst_caps_unref(caps);
        gst_caps_unref(across);
    }
}

TEST_F(element, refuses_another_size) {
    EXPECT_FALSE(negotiate(caps_of(i420, 64, 48), caps_of(bgrx, 64, 49)));
}

TEST_F(element, prefers_the_format_that_keeps_the_most) {
    const struct {
        const named_format &from;
        const char *choices;
        const char *taken;
    } cases[] = {{i420, "{ BGRx, YUY2, YV12, I420 }", "I420"},
                 {i420, "{ BGRx, YUY2, YV12 }", "YV12"},
                 {yuy2, "{ RGB16, BGR, BGRx, I420 }", "BGRx"},
                 {yv12, "{ RGB16, BGR }", "BGR"}};
    for (const auto &c : cases) {
        restart();
        EXPECT_TRUE(negotiate(caps_of(c.from, 64, 48), string("video/x-raw, format=") + c.choices));
        EXPECT_EQ(made("format"), c.taken);
    }
}

TEST_F(element, takes_the_rgb_of_limited_range_bt601_only) {
    const struct {
        const char *colorimetry;
        bool rgb;
    } cases[] = {{"bt601", true},  {"2:4:5:2", true},  {"2:4:7:1", true},  {"2:4:0:0", true},
                 {"bt709", false}, {"1:4:0:0", false}, {"0:4:0:0", false}, {"bt2020", false}};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.colorimetry);
        const string from = caps_of(yv12, 64, 48, string("colorimetry=") + c.colorimetry);
        restart();
        EXPECT_EQ(negotiate(from, "video/x-raw, format={ BGRx, BGR, RGB16 }"), c.rgb);
        const string text = error();
        EXPECT_EQ(text.find("limited-range BT.601") != string::npos, !c.rgb) << text;
        restart();
        EXPECT_TRUE(negotiate(from, "video/x-raw, format={ BGRx, YUY2 }"));
        EXPECT_EQ(made("format"), "YUY2");
        EXPECT_EQ(made("colorimetry"), c.colorimetry);
    }
}

TEST_F(element, takes_the_rgb_of_high_video_if_its_colorimetry_is_named) {
    const struct {
        int height;
        const char *more;
        bool rgb;
    } cases[] = {{576, "", true}, {578, "", false}, {720, "colorimetry=bt601", true}};
    for (const auto &c : cases) {
        restart();
        EXPECT_EQ(negotiate(caps_of(i420, 64, c.height, c.more), "video/x-raw, format=BGRx"),
                  c.rgb);
        EXPECT_EQ(error().empty(), c.rgb);
    }
}

TEST_F(element, tells_of_the_colorimetry_only_where_that_is_the_reason) {
    const string from = caps_of(i420, 64, 48, "colorimetry=bt709");
    const struct {
        const char *what;
        string to;
        bool reason;
    } cases[] = {{"RGB", caps_of(bgrx, 64, 48), true},
                 {"RGB or a format that there is not", "video/x-raw, format={ NV12, BGR }", true},
                 {"a format that there is not", "video/x-raw, format=NV12", false},
                 {"RGB of another size", caps_of(bgrx, 64, 50), false},
                 {"YUV of another size", caps_of(yuy2, 62, 48), false},
                 {"YUV of BT.601", caps_of(yuy2, 64, 48, "colorimetry=bt601"), false}};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        restart();
        EXPECT_FALSE(negotiate(from, c.to));
        EXPECT_EQ(error().find("limited-range BT.601") != string::npos, c.reason);
    }
}

TEST_F(element, takes_video_without_colorimetry_for_that_of_its_height) {
    constexpr char bt601[] = "colorimetry=bt601", bt709[] = "colorimetry=bt709";
    const struct {
        int height;
        const char *behind, *made; // null: refused
    } cases[] = {{48, "", "bt601"},  {48, bt601, "bt601"},  {48, bt709, nullptr},
                 {720, "", "bt709"}, {720, bt709, "bt709"}, {720, bt601, nullptr}};
    for (const named_format &to : {i420, yv12, yuy2})
        for (const auto &c : cases) {
            SCOPED_TRACE(to.name + std::to_string(c.height) + c.behind);
            restart();
            const string more = string(*c.behind ? ", " : "") + c.behind;
            ASSERT_EQ(negotiate(caps_of(i420, 64, c.height),
                                string("video/x-raw, format=") + to.name + more),
                      c.made != nullptr);
            EXPECT_EQ(made("colorimetry"), c.made ? c.made : "");
            if (!c.made || to.format != format::i420)
                continue;
            GstBuffer *const in =
                buffer_of(noise(format::i420, 64, c.height), GST_VIDEO_FORMAT_I420);
            GstBuffer *const out = through(in);
            EXPECT_TRUE(in == out); // it passes
            gst_buffer_unref(out);
        }
}

void count_message(const gchar *, GLogLevelFlags, const gchar *, gpointer count) {
    ++*static_cast<int *>(count);
}

// Caps that leave something open leave that, too, and so do those that a neighbour behind asks for.
TEST_F(element, leaves_the_colorimetry_open_where_caps_are_not_those_of_a_video) {
    constexpr char bt601[] = "video/x-raw, colorimetry=bt601";
    const struct {
        GstPadDirection side;
        const char *caps;
        bool has; // BT.601 on the other side
    } cases[] = {
        {GST_PAD_SINK, "video/x-raw, format=I420, width=64, height=720, framerate=25/1", false},
        {GST_PAD_SINK, "video/x-raw, format=I420, width=64, height=720, framerate=[1/1, 25/1]",
         true},
        {GST_PAD_SINK, "video/x-raw, format=I420, height=720", true},
        {GST_PAD_SRC, "video/x-raw, format=YUY2, width=64, height=720, framerate=25/1", true}};
    int complaints = 0;
    g_log_set_default_handler(count_message, &complaints);
    for (const auto &c : cases) {
        SCOPED_TRACE(c.caps);
        GstCaps *const caps = gst_caps_from_string(c.caps);
        GstCaps *const wanted = gst_caps_from_string(bt601);
        GstCaps *const across =
            lumalane_gst::transform_caps(c.side, caps, lumalane_gst::deinterlacing::none);
        EXPECT_EQ(gst_caps_can_intersect(across, wanted), c.has);
        for (GstCaps *const each : {caps, wanted, across})
            gst_caps_unref(each);
    }
    g_log_set_default_handler(g_log_default_handler, nullptr);
    EXPECT_EQ(complaints, 0);
}

TEST_F(element, takes_what_is_no_colorimetry_for_that_of_the_height) {
    for (const char *text : {"2:0:0:0", "2:0:5:1", "0:0:0:0", "bogus"})
        for (const int height : {48, 720}) {
            SCOPED_TRACE(text + std::to_string(height));
            const string more = string("colorimetry=(string)") + text;
            restart();
            EXPECT_EQ(negotiate(caps_of(i420, 64, height, more), "video/x-raw, format=BGRx"),
                      height == 48);
            EXPECT_EQ(error().find("limited-range BT.601") != string::npos, height != 48);
            restart();
            EXPECT_TRUE(negotiate(caps_of(i420, 64, height, more), "video/x-raw, format=YUY2"));
            EXPECT_EQ(made("colorimetry"), text);
        }
}

TEST_F(element, refuses_rgb_of_a_limited_range) {
    EXPECT_FALSE(negotiate(caps_of(i420, 64, 48), "video/x-raw, format=BGRx, colorimetry=2:1:7:1"));
}

TEST_F(element, asks_for_bt601_where_rgb_is_wanted) {
    gst_harness_set_sink_caps_str(harness, "video/x-raw, format=BGRx, width=64, height=720");
    gst_harness_play(harness);
    EXPECT_TRUE(takes("video/x-raw, format=I420, height=720, colorimetry=bt601"));
    EXPECT_TRUE(takes("video/x-raw, format=YUY2, height=720, colorimetry=2:4:5:3"));
    EXPECT_FALSE(takes("video/x-raw, format=I420, height=720, colorimetry=bt709"));
    EXPECT_FALSE(takes("video/x-raw, format=I420, height=480, colorimetry=bt601"));
}

TEST_F(element, is_negotiated_again_in_the_middle_of_a_stream) {
    ASSERT_TRUE(negotiate(caps_of(i420, 64, 48), "video/x-raw, format=BGRx"));
    const drawn first = noise(format::i420, 64, 48);
    EXPECT_EQ(pushed(first, i420, bgrx), converted(first.p, format::rgb32));
    ASSERT_TRUE(set_source(caps_of(yuy2, 35, 21)));
    const drawn second = noise(format::yuy2, 35, 21);
    EXPECT_EQ(pushed(second, yuy2, bgrx), converted(second.p, format::rgb32));
    gst_harness_set_sink_caps_str(harness, "video/x-raw, format=RGB16");
    gst_harness_push_upstream_event(harness, gst_event_new_reconfigure());
    EXPECT_EQ(pushed(second, yuy2, rgb16), converted(second.p, format::rgb565));
    EXPECT_EQ(made("format"), "RGB16");
}

// ---- Pixels ------------------------------------------------------------------------------------

constexpr struct {
    int width, height;
} sizes[] = {{1, 1}, {2, 1}, {3, 5}, {15, 2}, {16, 16}, {17, 9}, {322, 10}, {321, 7}, {1366, 5}};

TEST_F(element, makes_the_pixels_of_the_library_of_any_size) {
    for (const named_format &from : sinks)
        for (const named_format &to : sources)
            for (const auto &size : sizes) {
                if (!can_convert(from, to))
                    continue;
                SCOPED_TRACE(caps_of(from, size.width, size.height) + " to " + to.name);
                restart();
                set("contrast", 1.25);
                set("saturation", 0.5);
                ASSERT_TRUE(negotiate(caps_of(from, size.width, size.height),
                                      string("video/x-raw, format=") + to.name));
                const lumalane::adjustment adjust = lumalane_gst::adjustment_of({{1.25, 0, 0.5}});
                const drawn d = noise(from.format, size.width, size.height);
                EXPECT_EQ(pushed(d, from, to), converted(d.p, to.format, &adjust));
                set("contrast", 1);
                set("saturation", 1);
                if (from.format != to.format)
                    EXPECT_EQ(pushed(d, from, to), converted(d.p, to.format));
                else
                    EXPECT_EQ(pushed(d, from, to), pixels_of(d.p));
            }
}

TEST_F(element, makes_rgb_within_2_of_exact_bt601) {
    ASSERT_TRUE(negotiate(caps_of(i420, 512, 512), "video/x-raw, format=BGRx"));
    drawn d = noise(format::i420, 512, 512);
    for (int i = 0; i < 3; ++i)
        for (int row = 0; row < d.plane_rows(i); ++row)
            for (int x = 0; x < d.p.planes[i].stride; ++x) {
                unsigned char &sample = d.p.planes[i].data[row * d.p.planes[i].stride + x];
                sample = static_cast<unsigned char>(16 + sample % (i == 0 ? 220 : 225));
            }
    const std::vector<unsigned char> out = pushed(d, i420, bgrx);
    ASSERT_EQ(out.size(), 512u * 512 * 4);
    for (int row = 0; row < 512; ++row)
        for (int x = 0; x < 512; ++x) {
            const double y = 255.0 / 219 * (d.p.planes[0].data[row * 512 + x] - 16);
            const double u = 255.0 / 224 * (d.p.planes[1].data[row / 2 * 256 + x / 2] - 128);
            const double v = 255.0 / 224 * (d.p.planes[2].data[row / 2 * 256 + x / 2] - 128);
            const double exact[3] = {y + 2 * (1 - 0.114) * u,
                                     y - 2 * (1 - 0.114) * 0.114 / 0.587 * u -
                                         2 * (1 - 0.299) * 0.299 / 0.587 * v,
                                     y + 2 * (1 - 0.299) * v};
            for (int k = 0; k < 3; ++k)
                ASSERT_LE(std::abs(out[(row * 512 + x) * 4 + k] -
                                   std::round(std::clamp(exact[k], 0.0, 255.0))),
                          2)
                    << x << " " << row << " " << k;
        }
}

TEST_F(element, takes_strides_from_the_video_meta_or_the_caps) {
    for (const named_format &from : sinks)
        for (const int gap : {1, 5, 64}) {
            SCOPED_TRACE(from.name + std::to_string(gap));
            restart();
            ASSERT_TRUE(negotiate(caps_of(from, 322, 9), "video/x-raw, format=BGR"));
            const drawn d = noise(from.format, 322, 9, gap);
            EXPECT_EQ(pushed(d, from, bgr), converted(d.p, format::rgb24));
            GstVideoInfo info;
            gst_video_info_set_format(&info, gst_video_format_from_string(from.name), 322, 9);
            EXPECT_EQ(pixels(through(plain_buffer_of(d, info)), format::rgb24),
                      converted(d.p, format::rgb24));
        }
}

// A neighbour with a pool of buffers that have gaps around their rows.
GstPadProbeReturn propose_gaps(GstPad *, GstPadProbeInfo *info, gpointer used) {
    GstQuery *const query = GST_PAD_PROBE_INFO_QUERY(info);
    if (GST_QUERY_TYPE(query) != GST_QUERY_ALLOCATION)
        return GST_PAD_PROBE_OK;
    GstCaps *caps = nullptr;
    gst_query_parse_allocation(query, &caps, nullptr);
    GstVideoInfo video;
    gst_video_info_from_caps(&video, caps);
    GstVideoAlignment align;
    gst_video_alignment_reset(&align);
    align.padding_left = align.padding_top = 3;
    align.padding_right = align.padding_bottom = 8;
    GstBufferPool *const pool = gst_video_buffer_pool_new();
    GstStructure *const config = gst_buffer_pool_get_config(pool);
    gst_buffer_pool_config_set_params(config, caps, static_cast<guint>(video.size), 1, 0);
    gst_buffer_pool_config_add_option(config, GST_BUFFER_POOL_OPTION_VIDEO_META);
    gst_buffer_pool_config_add_option(config, GST_BUFFER_POOL_OPTION_VIDEO_ALIGNMENT);
    gst_buffer_pool_config_set_video_alignment(config, &align);
    EXPECT_TRUE(gst_buffer_pool_set_config(pool, config));
    gst_query_add_allocation_pool(query, pool, static_cast<guint>(video.size), 1, 0);
    gst_query_add_allocation_meta(query, GST_VIDEO_META_API_TYPE, nullptr);
    gst_object_unref(pool);
    *static_cast<bool *>(used) = true;
    return GST_PAD_PROBE_HANDLED;
}

TEST_F(element, writes_into_the_memory_that_its_neighbour_proposes) {
    bool used = false;
    gst_pad_add_probe(harness->sinkpad, GST_PAD_PROBE_TYPE_QUERY_DOWNSTREAM, propose_gaps, &used,
                      nullptr);
    for (const named_format &to : {bgrx, yuy2, yv12}) {
        ASSERT_TRUE(negotiate(caps_of(i420, 61, 7), string("video/x-raw, format=") + to.name));
        const drawn d = noise(format::i420, 61, 7);
        GstBuffer *const out = through(buffer_of(d, GST_VIDEO_FORMAT_I420));
        ASSERT_TRUE(out && used);
        const GstVideoMeta *const meta = gst_buffer_get_video_meta(out);
        ASSERT_TRUE(meta);
        EXPECT_GT(meta->stride[0], lumalane::row_bytes(to.format, 0, 61) + 3);
        EXPECT_GT(meta->offset[0], 0u);
        EXPECT_EQ(pixels(out, to.format), converted(d.p, to.format));
    }
}

// The same bytes, with a memory for each plane, one behind the other; without metas. Takes it.
GstBuffer *plane_by_plane(GstBuffer *whole, const std::vector<gsize> &offsets) {
    GstBuffer *const made = gst_buffer_new();
    const gsize size = gst_buffer_get_size(whole);
    auto *const bytes = static_cast<unsigned char *>(g_malloc(size));
    gst_buffer_extract(whole, 0, bytes, size);
    for (size_t i = 0; i < offsets.size(); ++i) {
        const gsize of_plane = (i + 1 < offsets.size() ? offsets[i + 1] : size) - offsets[i];
        gst_buffer_append_memory(made, gst_memory_new_wrapped(GstMemoryFlags(0), bytes + offsets[i],
                                                              of_plane, 0, of_plane, bytes,
                                                              i == 0 ? g_free : nullptr));
    }
    gst_buffer_unref(whole);
    return made;
}

TEST_F(element, takes_planes_that_have_each_a_memory_of_its_own) {
    for (const named_format &from : {i420, yv12}) {
        restart();
        ASSERT_TRUE(negotiate(caps_of(from, 35, 7), "video/x-raw, format=BGRx"));
        const drawn d = noise(from.format, 35, 7);
        const GstVideoFormat has = gst_video_format_from_string(from.name);
        GstBuffer *const in = plane_by_plane(buffer_of(d, has), d.offsets);
        gsize offsets[GST_VIDEO_MAX_PLANES] = {d.offsets[0], d.offsets[1], d.offsets[2]};
        gint strides[GST_VIDEO_MAX_PLANES] = {35, 18, 18};
        gst_buffer_add_video_meta_full(in, GST_VIDEO_FRAME_FLAG_NONE, has, 35, 7, 3, offsets,
                                       strides);
        ASSERT_EQ(gst_buffer_n_memory(in), 3u);
        EXPECT_EQ(pixels(through(in), format::rgb32), converted(d.p, format::rgb32));
        EXPECT_EQ(error(), "");
    }
}

TEST_F(element, takes_frames_whose_rows_go_up) {
    for (const char *how : {"none", "double", "edge"})
        for (const char *mode : {"progressive", "interleaved"})
            for (const int height : {8, 9, 12}) {
                SCOPED_TRACE(string(how) + " " + mode + std::to_string(height));
                restart();
                deinterlace(how);
                ASSERT_TRUE(negotiate(caps_of(i420, 37, height, string("interlace-mode=") + mode),
                                      "video/x-raw, format=BGRx"));
                const drawn d = noise(format::i420, 37, height, 3);
                const picture up = lumalane::flipped(d.p);
                drawn down(format::i420, 37, height);
                ASSERT_TRUE(lumalane::convert(up, down.p));
                GstBuffer *const in = buffer_of(d, GST_VIDEO_FORMAT_I420);
                GstVideoMeta *const meta = gst_buffer_get_video_meta(in);
                for (int i = 0; i < 3; ++i) {
                    meta->offset[i] += static_cast<gsize>(up.planes[i].data - d.p.planes[i].data);
                    meta->stride[i] = up.planes[i].stride;
                }
                EXPECT_EQ(pixels(through(in), format::rgb32), pushed(down, i420, bgrx));
            }
}

TEST_F(element, makes_frames_that_begin_on_lines_of_the_cache) {
    ASSERT_TRUE(negotiate(caps_of(i420, 70, 40), "video/x-raw, format=BGRx"));
    std::vector<GstBuffer *> held;
    for (int i = 0; i < 8; ++i) {
        held.push_back(through(buffer_of(noise(format::i420, 70, 40), GST_VIDEO_FORMAT_I420)));
        ASSERT_TRUE(held.back());
        GstMapInfo mapped;
        ASSERT_TRUE(gst_buffer_map(held.back(), &mapped, GST_MAP_READ));
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(mapped.data) % 64, 0u);
        gst_buffer_unmap(held.back(), &mapped);
    }
    for (GstBuffer *const each : held)
        gst_buffer_unref(each);
}

TEST_F(element, takes_the_memory_that_its_neighbour_proposes_when_frames_stop_passing) {
    bool used = false;
    gst_pad_add_probe(harness->sinkpad, GST_PAD_PROBE_TYPE_QUERY_DOWNSTREAM, propose_gaps, &used,
                      nullptr);
    ASSERT_TRUE(negotiate(caps_of(i420, 61, 7), "video/x-raw, format=I420"));
    const drawn d = noise(format::i420, 61, 7);
    EXPECT_EQ(pushed(d, i420, i420), pixels_of(d.p));
    set("contrast", 1.5);
    GstBuffer *const out = through(buffer_of(d, GST_VIDEO_FORMAT_I420));
    ASSERT_TRUE(out);
    const GstVideoMeta *const meta = gst_buffer_get_video_meta(out);
    EXPECT_TRUE(meta && meta->stride[0] > 61 + 3);
    const lumalane::adjustment adjust = lumalane_gst::adjustment_of({{1.5, 0, 1}});
    EXPECT_EQ(pixels(out, format::i420), converted(d.p, format::i420, &adjust));
}

TEST_F(element, keeps_times_and_passes_what_there_is_nothing_to_do_to) {
    gst_harness_add_propose_allocation_meta(harness, GST_VIDEO_META_API_TYPE, nullptr);
    ASSERT_TRUE(negotiate(caps_of(yuy2, 34, 6), "video/x-raw, format=YUY2"));
    const drawn d = noise(format::yuy2, 34, 6);
    const auto push = [&](GstClockTime at) {
        GstBuffer *const in = buffer_of(d, GST_VIDEO_FORMAT_YUY2, at);
        GstBuffer *const out = through(in);
        EXPECT_EQ(GST_BUFFER_PTS(out), at);
        const bool same = in == out; // compared, not read
        gst_buffer_unref(out);
        return same;
    };
    EXPECT_TRUE(push(1));
    set("contrast", 1.001); // the nearest 1/64 is 1
    EXPECT_TRUE(push(2));
    set("brightness", 0.5);
    EXPECT_FALSE(push(3));
    EXPECT_FALSE(push(4));
    set("brightness", 0);
    EXPECT_TRUE(push(5));
}

// While it converts, its neighbours may lay planes as they like, which the next element may not know.
TEST_F(element, passes_no_planes_that_the_next_element_does_not_find) {
    const drawn d = noise(format::i420, 34, 6, 5);
    GstVideoInfo info;
    gst_video_info_set_format(&info, GST_VIDEO_FORMAT_I420, 34, 6);
    for (const bool finds : {false, true}) {
        SCOPED_TRACE(finds);
        restart();
        if (finds)
            gst_harness_add_propose_allocation_meta(harness, GST_VIDEO_META_API_TYPE, nullptr);
        set("contrast", 1.5);
        ASSERT_TRUE(negotiate(caps_of(i420, 34, 6), "video/x-raw, format=I420"));
        EXPECT_FALSE(pushed(d, i420, i420).empty());
        set("contrast", 1);
        for (int i = 0; i < 3; ++i) {
            if (i == 2) // what the next element takes it tells again
                gst_harness_push_upstream_event(harness, gst_event_new_reconfigure());
            GstBuffer *const in = buffer_of(d, GST_VIDEO_FORMAT_I420);
            GstBuffer *out = through(in);
            EXPECT_EQ(in == out, finds); // compared, not read
            if (!finds)
                out = without_metas(out);
            EXPECT_EQ(pixels(out, format::i420), pixels_of(d.p));
        }
        GstBuffer *const plain = plain_buffer_of(d, info);
        GstBuffer *const out = through(plain);
        EXPECT_TRUE(plain == out);
        gst_buffer_unref(out);
    }
}

// Whether it tells its neighbour that planes may lie anywhere.
bool takes_planes_anywhere(GstHarness *harness, const string &text) {
    GstCaps *const caps = gst_caps_from_string(text.c_str());
    GstQuery *const query = gst_query_new_allocation(caps, TRUE);
    EXPECT_TRUE(gst_pad_peer_query(harness->srcpad, query));
    const bool takes = gst_query_find_allocation_meta(query, GST_VIDEO_META_API_TYPE, nullptr);
    gst_query_unref(query);
    gst_caps_unref(caps);
    return takes;
}

TEST_F(element, takes_no_planes_anywhere_for_new_caps_of_which_frames_pass) {
    set("contrast", 1.5);
    ASSERT_TRUE(negotiate(caps_of(i420, 34, 6), "video/x-raw, format=I420"));
    EXPECT_TRUE(takes_planes_anywhere(harness, caps_of(i420, 34, 6)));
    pushed(noise(format::i420, 34, 6, 5), i420, i420);
    set("contrast", 1);
    pushed(noise(format::i420, 34, 6, 5), i420, i420);
    EXPECT_TRUE(takes_planes_anywhere(harness, caps_of(i420, 34, 6)));
    ASSERT_TRUE(set_source(caps_of(i420, 34, 8)));
    EXPECT_FALSE(takes_planes_anywhere(harness, caps_of(i420, 34, 8)));
}

// Sets an element's brightness to 0 where the metadata of a frame are copied: its buffer has been taken
// then, and nothing been written into it.
gboolean stop_adjusting(GstBuffer *, GstCustomMeta *, GstBuffer *, GQuark, gpointer, gpointer of) {
    g_object_set(*static_cast<GstElement **>(of), "brightness", 0.0, nullptr);
    return TRUE;
}

TEST_F(element, writes_a_frame_whose_adjustment_ends_meanwhile) {
    static GstElement *told; // the meta stays registered
    static const char *const no_tags[] = {nullptr};
    static const GstMetaInfo *const meta = gst_meta_register_custom(
        "stop-adjusting", const_cast<const gchar **>(no_tags), stop_adjusting, &told, nullptr);
    ASSERT_TRUE(meta);
    told = harness->element;
    ASSERT_TRUE(negotiate(caps_of(yuy2, 33, 6), "video/x-raw, format=YUY2"));
    const drawn d = noise(format::yuy2, 33, 6);
    set("brightness", 0.5);
    GstBuffer *const in = buffer_of(d, GST_VIDEO_FORMAT_YUY2);
    ASSERT_TRUE(gst_buffer_add_custom_meta(in, "stop-adjusting"));
    EXPECT_EQ(pixels(through(in), format::yuy2), pixels_of(d.p));
    EXPECT_EQ(get("brightness"), 0);
}

// Which of them a frame has.
string metas_of(GstBuffer *buffer) {
    string all;
    if (const GstVideoRegionOfInterestMeta *const m =
            gst_buffer_get_video_region_of_interest_meta_id(buffer, 7))
        all += "region " + std::to_string(m->x) + " " + std::to_string(m->y) + " " +
               std::to_string(m->w) + " " + std::to_string(m->h) + ", ";
    if (gst_buffer_get_meta(buffer, GST_VIDEO_AFD_META_API_TYPE))
        all += "AFD, ";
    if (gst_buffer_get_meta(buffer, GST_VIDEO_CAPTION_META_API_TYPE))
        all += "caption, ";
    if (gst_buffer_get_custom_meta(buffer, "of-colours"))
        all += "colours, ";
    return all;
}

TEST_F(element, keeps_what_metas_tell_of_the_picture_and_not_of_its_format) {
    static const gchar *of_colours[] = {GST_META_TAG_VIDEO_STR, GST_META_TAG_VIDEO_COLORSPACE_STR,
                                        nullptr};
    static const GstMetaInfo *const info =
        gst_meta_register_custom("of-colours", of_colours, nullptr, nullptr, nullptr);
    ASSERT_TRUE(info);
    const struct {
        const char *what, *deinterlace, *mode;
        double contrast;
        const named_format &to;
        bool passes = false;
    } cases[] = {{"converted", "none", "progressive", 1, bgrx},
                 {"adjusted", "none", "progressive", 1.5, i420},
                 {"of fields", "none", "interleaved", 1, yuy2},
                 {"doubled", "double", "interleaved", 1, bgrx},
                 {"along edges", "edge", "interleaved", 1, yuy2},
                 {"as it is", "none", "progressive", 1, i420, true}};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        restart();
        deinterlace(c.deinterlace);
        set("contrast", c.contrast);
        ASSERT_TRUE(negotiate(caps_of(i420, 70, 40, string("interlace-mode=") + c.mode),
                              string("video/x-raw, format=") + c.to.name));
        GstBuffer *const in = buffer_of(noise(format::i420, 70, 40, 5), GST_VIDEO_FORMAT_I420);
        gst_buffer_add_video_region_of_interest_meta(in, "face", 3, 5, 30, 20)->id = 7;
        gst_buffer_add_video_afd_meta(in, 0, GST_VIDEO_AFD_SPEC_ATSC_A53,
                                      GST_VIDEO_AFD_4_3_FULL_16_9_FULL);
        const guint8 caption[] = {0xfc, 0x20, 0x20};
        gst_buffer_add_video_caption_meta(in, GST_VIDEO_CAPTION_TYPE_CEA708_RAW, caption, 3);
        ASSERT_TRUE(gst_buffer_add_custom_meta(in, "of-colours"));
        GstBuffer *const out = through(in);
        ASSERT_TRUE(out);
        EXPECT_EQ(metas_of(out),
                  string("region 3 5 30 20, AFD, caption, ") + (c.passes ? "colours, " : ""));
        // Where its own planes are.
        const GstVideoMeta *const planes = gst_buffer_get_video_meta(out);
        EXPECT_EQ(planes && planes->format == GST_VIDEO_FORMAT_I420 && planes->stride[0] == 75,
                  c.passes);
        gst_buffer_unref(out);
    }
}

// Places in the frame of a crop meta would be others in what is made of it.
TEST_F(element, keeps_no_places_in_what_it_crops) {
    ASSERT_TRUE(negotiate(caps_of(i420, 32, 16), "video/x-raw, format=BGRx"));
    for (const auto &[x, y] : {std::pair{0u, 0u}, std::pair{16u, 0u}, std::pair{0u, 8u}}) {
        GstBuffer *const in =
            cropped(buffer_of(noise(format::i420, 64, 32), GST_VIDEO_FORMAT_I420), x, y, 32, 16);
        gst_buffer_add_video_region_of_interest_meta(in, "face", 3, 5, 30, 20)->id = 7;
        const guint8 caption[] = {0xfc, 0x20, 0x20};
        gst_buffer_add_video_caption_meta(in, GST_VIDEO_CAPTION_TYPE_CEA708_RAW, caption, 3);
        GstBuffer *const out = through(in);
        EXPECT_EQ(metas_of(out), x + y == 0 ? "region 3 5 30 20, caption, " : "caption, ");
        gst_buffer_unref(out);
    }
}

// ---- Balance -----------------------------------------------------------------------------------

TEST_F(element, has_properties_of_the_ranges_of_videobalance) {
    GstElement *const other = gst_element_factory_make("videobalance", nullptr);
    ASSERT_TRUE(other);
    for (const char *name : {"brightness", "contrast", "saturation"}) {
        GParamSpec *const a =
            g_object_class_find_property(G_OBJECT_GET_CLASS(harness->element), name);
        GParamSpec *const b = g_object_class_find_property(G_OBJECT_GET_CLASS(other), name);
        ASSERT_TRUE(a && b);
        ASSERT_TRUE(G_IS_PARAM_SPEC_DOUBLE(a) && G_IS_PARAM_SPEC_DOUBLE(b));
        EXPECT_EQ(G_PARAM_SPEC_DOUBLE(a)->minimum, G_PARAM_SPEC_DOUBLE(b)->minimum);
        EXPECT_EQ(G_PARAM_SPEC_DOUBLE(a)->maximum, G_PARAM_SPEC_DOUBLE(b)->maximum);
        EXPECT_EQ(G_PARAM_SPEC_DOUBLE(a)->default_value, G_PARAM_SPEC_DOUBLE(b)->default_value);
        EXPECT_TRUE(a->flags & GST_PARAM_CONTROLLABLE);
        EXPECT_EQ(get(name), G_PARAM_SPEC_DOUBLE(a)->default_value);
        set(name, 0.75);
        EXPECT_EQ(get(name), 0.75);
    }
    gst_object_unref(other);
}

TEST_F(element, adjusts_as_videobalance_does_but_for_roundings) {
    // Every value of Y, U and V.
    drawn d(format::i420, 256, 2);
    for (int x = 0; x < 512; ++x)
        d.bytes[x] = static_cast<unsigned char>(x);
    for (int x = 0; x < 128; ++x)
        d.bytes[512 + x] = d.bytes[640 + x] = static_cast<unsigned char>(2 * x + x / 64);
    const auto clamped = [](double x) { return std::clamp(std::round(x), 0.0, 255.0); };
    std::mt19937 draw(3);
    const auto between = [&](double a, double b) {
        return std::uniform_real_distribution<double>(a, b)(draw);
    };
    ASSERT_TRUE(negotiate(caps_of(i420, 256, 2), "video/x-raw, format=I420"));
    for (int i = 0; i < 200; ++i) {
        const double c = i == 0 ? 0 : i == 1 ? 2 : between(0, 2);
        const double b = i == 0 ? 1 : i == 1 ? -1 : between(-1, 1);
        const double s = i == 0 ? 2 : i == 1 ? 0 : between(0, 2);
        SCOPED_TRACE(std::to_string(c) + " " + std::to_string(b) + " " + std::to_string(s));
        set("contrast", c);
        set("brightness", b);
        set("saturation", s);
        const std::vector<unsigned char> out = pushed(d, i420, i420);
        ASSERT_EQ(out.size(), 768u);
        for (int k = 0; k < 768; ++k) {
            const double x = d.bytes[k];
            const double meant =
                k < 512 ? clamped(16 + (x - 16) * c + b * 255) : clamped(128 + (x - 128) * s);
            // The gain is off by at most 1/128; four numbers are rounded for Y, two for chroma.
            const double limit = k < 512 ? 2 + std::abs(x - 16) / 128 : 1 + std::abs(x - 128) / 128;
            ASSERT_LE(std::abs(out[k] - meant), limit) << k << " " << x;
        }
    }
}

TEST_F(element, leaves_black_and_grey) {
    for (int i = 0; i <= 1000; ++i) {
        const lumalane::adjustment a = lumalane_gst::adjustment_of({{i / 500.0, 0, i / 500.0}});
        ASSERT_EQ((16 * a.y_gain + 32) / 64 + a.y_offset, 16);
        ASSERT_EQ((128 * a.uv_gain + 32) / 64 + a.u_offset, 128);
        ASSERT_EQ(a.u_offset, a.v_offset);
    }
}

void count_change(GstColorBalance *, GstColorBalanceChannel *, gint value, std::vector<int> *seen) {
    seen->push_back(value);
}

TEST_F(element, is_a_color_balance) {
    GstColorBalance *const balance = GST_COLOR_BALANCE(harness->element);
    EXPECT_EQ(gst_color_balance_get_balance_type(balance), GST_COLOR_BALANCE_SOFTWARE);
    std::vector<int> seen;
    g_signal_connect(balance, "value-changed", G_CALLBACK(count_change), &seen);
    const struct {
        const char *channel, *property;
        double low, high;
    } expected[] = {{"CONTRAST", "contrast", 0, 2},
                    {"BRIGHTNESS", "brightness", -1, 1},
                    {"SATURATION", "saturation", 0, 2}};
    const GList *const channels = gst_color_balance_list_channels(balance);
    ASSERT_EQ(g_list_length(const_cast<GList *>(channels)), 3u);
    for (const auto &e : expected) {
        GstColorBalanceChannel *found = nullptr;
        for (const GList *c = channels; c; c = c->next)
            if (string(GST_COLOR_BALANCE_CHANNEL(c->data)->label) == e.channel)
                found = GST_COLOR_BALANCE_CHANNEL(c->data);
        ASSERT_TRUE(found);
        EXPECT_EQ(gst_color_balance_get_value(balance, found), 0);
        gst_color_balance_set_value(balance, found, found->min_value);
        EXPECT_EQ(get(e.property), e.low);
        gst_color_balance_set_value(balance, found, found->max_value);
        EXPECT_EQ(get(e.property), e.high);
        set(e.property, e.low + 0.25 * (e.high - e.low));
        EXPECT_EQ(gst_color_balance_get_value(balance, found), -500);
        EXPECT_EQ(seen, (std::vector<int>{found->min_value, found->max_value, -500}));
        seen.clear();
        // What it has already changes nothing, nor does the channel's step that comes closest to it.
        const double finer = e.low + 0.25001 * (e.high - e.low);
        set(e.property, e.low + 0.25 * (e.high - e.low));
        EXPECT_TRUE(seen.empty());
        set(e.property, finer);
        seen.clear();
        gst_color_balance_set_value(balance, found, gst_color_balance_get_value(balance, found));
        EXPECT_EQ(get(e.property), finer);
        EXPECT_TRUE(seen.empty());
        seen.clear();
    }
}

TEST_F(element, follows_a_control_source) {
    GstControlSource *const source = gst_interpolation_control_source_new();
    g_object_set(source, "mode", GST_INTERPOLATION_MODE_LINEAR, nullptr);
    auto *const values = GST_TIMED_VALUE_CONTROL_SOURCE(source);
    gst_timed_value_control_source_set(values, 0, 0.5);          // brightness 0
    gst_timed_value_control_source_set(values, GST_SECOND, 0.6); // and 0.2
    gst_object_add_control_binding(
        GST_OBJECT(harness->element),
        gst_direct_control_binding_new(GST_OBJECT(harness->element), "brightness", source));
    gst_object_unref(source);
    ASSERT_TRUE(negotiate(caps_of(i420, 16, 2), "video/x-raw, format=I420"));
    drawn d(format::i420, 16, 2);
    std::fill(d.bytes.begin(), d.bytes.end(), 100);
    for (const auto &[at, luma] : {std::pair<GstClockTime, int>{0, 100},
                                   {GST_SECOND / 2, 100 + 26}, // 25.5 is rounded up
                                   {GST_SECOND, 100 + 51}}) {
        GstBuffer *const in = buffer_of(d, GST_VIDEO_FORMAT_I420, at);
        EXPECT_NEAR(pixels(through(in), format::i420).at(0), luma, 1);
    }
    // Their times are those of the stream, which begins anywhere in what is played.
    GstSegment segment;
    gst_segment_init(&segment, GST_FORMAT_TIME);
    segment.start = 3 * GST_SECOND;
    segment.time = GST_SECOND / 2;
    segment.base = 7 * GST_SECOND;
    ASSERT_TRUE(gst_harness_push_event(harness, gst_event_new_segment(&segment)));
    GstBuffer *const in = buffer_of(d, GST_VIDEO_FORMAT_I420, 3 * GST_SECOND);
    EXPECT_NEAR(pixels(through(in), format::i420).at(0), 100 + 26, 1);
}

// ---- Streams -----------------------------------------------------------------------------------

TEST_F(element, passes_the_end_of_the_stream_on) {
    ASSERT_TRUE(negotiate(caps_of(i420, 18, 4), "video/x-raw, format=BGRx"));
    const drawn d = noise(format::i420, 18, 4);
    EXPECT_EQ(pushed(d, i420, bgrx), converted(d.p, format::rgb32));
    EXPECT_TRUE(gst_harness_push_event(harness, gst_event_new_eos()));
    bool ended = false;
    while (GstEvent *const event = gst_harness_try_pull_event(harness)) {
        ended = ended || GST_EVENT_TYPE(event) == GST_EVENT_EOS;
        gst_event_unref(event);
    }
    EXPECT_TRUE(ended);
    EXPECT_EQ(gst_harness_push(harness, buffer_of(d, GST_VIDEO_FORMAT_I420)), GST_FLOW_EOS);
}

TEST_F(element, takes_segments_of_other_formats_than_time) {
    ASSERT_TRUE(negotiate(caps_of(i420, 18, 4), "video/x-raw, format=BGRx"));
    GstSegment segment;
    gst_segment_init(&segment, GST_FORMAT_BYTES);
    ASSERT_TRUE(gst_harness_push_event(harness, gst_event_new_segment(&segment)));
    int criticals = 0;
    const guint handler =
        g_log_set_handler("GStreamer", G_LOG_LEVEL_CRITICAL, count_message, &criticals);
    const drawn d = noise(format::i420, 18, 4);
    EXPECT_EQ(pushed(d, i420, bgrx), converted(d.p, format::rgb32));
    g_log_remove_handler("GStreamer", handler);
    EXPECT_EQ(criticals, 0);
}

TEST_F(element, takes_frames_without_a_time) {
    GstControlSource *const source = gst_interpolation_control_source_new();
    gst_timed_value_control_source_set(GST_TIMED_VALUE_CONTROL_SOURCE(source), 0, 0.5);
    gst_object_add_control_binding(
        GST_OBJECT(harness->element),
        gst_direct_control_binding_new(GST_OBJECT(harness->element), "brightness", source));
    gst_object_unref(source);
    ASSERT_TRUE(negotiate(caps_of(i420, 18, 4), "video/x-raw, format=BGRx"));
    int criticals = 0;
    const guint handler =
        g_log_set_handler("GStreamer", G_LOG_LEVEL_CRITICAL, count_message, &criticals);
    const drawn d = noise(format::i420, 18, 4);
    EXPECT_EQ(
        pixels(through(buffer_of(d, GST_VIDEO_FORMAT_I420, GST_CLOCK_TIME_NONE)), format::rgb32),
        converted(d.p, format::rgb32));
    g_log_remove_handler("GStreamer", handler);
    EXPECT_EQ(criticals, 0);
}

TEST_F(element, keeps_its_balance_when_it_starts_again) {
    set("contrast", 1.5);
    gst_element_set_state(harness->element, GST_STATE_NULL);
    gst_element_set_state(harness->element, GST_STATE_PLAYING);
    EXPECT_EQ(get("contrast"), 1.5);
}

TEST_F(element, goes_on_after_flushing) {
    ASSERT_TRUE(negotiate(caps_of(i420, 18, 4), "video/x-raw, format=BGRx"));
    const drawn d = noise(format::i420, 18, 4);
    EXPECT_EQ(pushed(d, i420, bgrx), converted(d.p, format::rgb32));
    EXPECT_TRUE(gst_harness_push_event(harness, gst_event_new_flush_start()));
    EXPECT_EQ(gst_harness_push(harness, buffer_of(d, GST_VIDEO_FORMAT_I420)), GST_FLOW_FLUSHING);
    EXPECT_TRUE(gst_harness_push_event(harness, gst_event_new_flush_stop(TRUE)));
    GstSegment segment;
    gst_segment_init(&segment, GST_FORMAT_TIME);
    EXPECT_TRUE(gst_harness_push_event(harness, gst_event_new_segment(&segment)));
    EXPECT_EQ(pushed(d, i420, bgrx), converted(d.p, format::rgb32));
}

TEST_F(element, takes_the_size_of_the_caps_of_a_larger_frame) {
    const drawn d = noise(format::i420, 20, 6);
    const_picture part = d.p;
    part.width = 17;
    part.height = 3;
    ASSERT_TRUE(negotiate(caps_of(i420, 17, 3), "video/x-raw, format=BGRx"));
    EXPECT_EQ(pushed(d, i420, bgrx), converted(part, format::rgb32));
    EXPECT_EQ(error(), "");
    // Frames that are copied.
    restart();
    deinterlace("double");
    ASSERT_TRUE(
        negotiate(caps_of(i420, 17, 3, "interlace-mode=mixed"), "video/x-raw, format=I420"));
    EXPECT_EQ(pushed(d, i420, i420), pixels_of(part));
    EXPECT_EQ(error(), "");
}

// Where a neighbour crops, it leaves that to the next element if frames pass to one that can.
void propose_crop(GstHarness *harness) {
    gst_harness_add_propose_allocation_meta(harness, GST_VIDEO_META_API_TYPE, nullptr);
    gst_harness_add_propose_allocation_meta(harness, GST_VIDEO_CROP_META_API_TYPE, nullptr);
}

TEST_F(element, takes_the_part_of_a_larger_frame_that_a_crop_meta_tells) {
    const lumalane::adjustment adjust = lumalane_gst::adjustment_of({{1.5, 0, 1}});
    constexpr struct { guint x, y; } parts[] = {{0, 0}, {16, 8}, {5, 3}, {31, 15}};
    for (const named_format &from : sinks)
        for (const auto &at : parts) {
            SCOPED_TRACE(from.name + std::to_string(at.x));
            restart();
            propose_crop(harness);
            const auto push = [&](const drawn &d) {
                return gst_harness_push_and_pull(
                    harness, cropped(buffer_of(d, gst_video_format_from_string(from.name)), at.x,
                                     at.y, 33, 17));
            };
            ASSERT_TRUE(
                negotiate(caps_of(from, 33, 17), string("video/x-raw, format=") + from.name));
            const drawn d = noise(from.format, 64, 32, 4);
            GstBuffer *const passed = push(d);
            EXPECT_TRUE(gst_buffer_get_video_crop_meta(passed));
            gst_buffer_unref(passed);
            set("contrast", 1.5);
            const_picture part = d.p;
            part.width = 33;
            part.height = 17;
            for (int i = 0; i < lumalane::plane_count(from.format); ++i) {
                const guint x = from.format == format::yuy2 ? at.x / 2 * 4 : i ? at.x / 2 : at.x;
                part.planes[i].data += (i ? at.y / 2 : at.y) * part.planes[i].stride + x;
            }
            GstBuffer *const made = push(d);
            EXPECT_FALSE(gst_buffer_get_video_crop_meta(made)); // it has been cropped
            EXPECT_EQ(pixels(made, from.format), converted(part, from.format, &adjust));
            EXPECT_EQ(error(), "");
        }
}

TEST_F(element, tells_of_a_crop_meta_that_leads_out_of_its_frame) {
    constexpr struct {
        guint x, y, width, height;
        bool fits;
    } parts[] = {{31, 15, 33, 17, true},
                 {32, 15, 33, 17, false},
                 {31, 16, 33, 17, false},
                 {G_MAXUINT, 0, 33, 17, false},
                 {0, G_MAXUINT, 33, 17, false},
                 // Of another size than the caps it is not of them.
                 {32, 16, 32, 17, true},
                 {32, 16, 33, 16, true}};
    for (const auto &c : parts) {
        SCOPED_TRACE(std::to_string(c.x) + " " + std::to_string(c.y));
        restart();
        ASSERT_TRUE(negotiate(caps_of(i420, 33, 17), "video/x-raw, format=BGRx"));
        GstBuffer *const in = cropped(buffer_of(noise(format::i420, 64, 64), GST_VIDEO_FORMAT_I420),
                                      c.x, c.y, c.width, c.height);
        gst_buffer_get_video_meta(in)->height = 32; // there is memory behind it
        EXPECT_EQ(gst_harness_push(harness, in), c.fits ? GST_FLOW_OK : GST_FLOW_ERROR);
        EXPECT_EQ(error().empty(), c.fits);
    }
}

TEST_F(element, tells_of_a_frame_that_is_smaller_than_the_caps) {
    ASSERT_TRUE(negotiate(caps_of(i420, 18, 4), "video/x-raw, format=BGRx"));
    const drawn d = noise(format::i420, 16, 4);
    EXPECT_EQ(gst_harness_push(harness, buffer_of(d, GST_VIDEO_FORMAT_I420)), GST_FLOW_ERROR);
    EXPECT_NE(error(), "");
}

// Buffers that are not what the caps or their meta say. What was answered scripts/figures gathers.
struct bad_buffer {
    const char *what;
    int left_out; // bytes at the end
    gssize moved; // the last plane, by so many bytes
    int wider;    // the stride of the last plane, by so many bytes
    bool with_meta;
    bool converted = false;
    size_t address = 0; // to a multiple of 16
};

constexpr int all_but_one = -1, everything = -2;
constexpr gssize onto_the_first = G_MINSSIZE;

GstBuffer *buffer_at(size_t address, const unsigned char *bytes, size_t size) {
    if (size == 0)
        return gst_buffer_new();
    auto *const memory = static_cast<unsigned char *>(g_malloc(address + size));
    std::copy_n(bytes, size, memory + address);
    return gst_buffer_new_wrapped_full(GstMemoryFlags(0), memory, address + size, address, size,
                                       memory, g_free);
}

TEST_F(element, refuses_buffers_that_have_not_what_they_say) {
    constexpr bad_buffer all[] = {
        {"that is whole", 0, 0, 0, true, true},
        {"that is whole, without a meta", 0, 0, 0, false, true},
        {"that begins at an odd address", 0, 0, 0, true, true, 1},
        {"whose planes lie on each other", 0, onto_the_first, 0, true, true},
        {"that has no memory", everything, 0, 0, true},
        {"that has no memory, without a meta", everything, 0, 0, false},
        {"that is a byte short", 1, 0, 0, true},
        {"that is a byte short, without a meta", 1, 0, 0, false},
        {"of which half is there", 200, 0, 0, true},
        {"of which half is there, without a meta", 200, 0, 0, false},
        {"of a byte alone", all_but_one, 0, 0, true},
        {"with a plane that ends a byte behind it", 0, 1, 0, true},
        {"with a plane that begins behind it", 0, 100000, 0, true},
        {"with strides that lead out of it", 0, 0, 4096, true},
        {"with negative strides that lead out of it", 0, 0, -4096, true},
    };
    constexpr int width = 24, height = 12; // GStreamer's strides are those of the rows
    for (const named_format &from : sinks)
        for (const bad_buffer &b : all) {
            int frames = 0, errors = 0, neither = 0;
            for (const named_format &to : sources) {
                // The same format passes, unread.
                if (!can_convert(from, to) || from.format == to.format)
                    continue;
                SCOPED_TRACE(string(b.what) + ", " + from.name + " to " + to.name);
                restart();
                ASSERT_TRUE(negotiate(caps_of(from, width, height),
                                      string("video/x-raw, format=") + to.name));
                const drawn d = noise(from.format, width, height);
                const auto size = b.left_out == everything ? 0
                                  : b.left_out == all_but_one
                                      ? 1
                                      : d.bytes.size() - static_cast<size_t>(b.left_out);
                GstBuffer *const buffer = buffer_at(b.address, d.bytes.data(), size);
                if (b.with_meta) {
                    gint strides[GST_VIDEO_MAX_PLANES] = {};
                    gsize offsets[GST_VIDEO_MAX_PLANES] = {};
                    const size_t planes = d.offsets.size();
                    for (size_t i = 0; i < planes; ++i)
                        strides[i] = d.p.planes[i].stride, offsets[i] = d.offsets[i];
                    offsets[planes - 1] = b.moved == onto_the_first
                                              ? 0
                                              : offsets[planes - 1] + static_cast<gsize>(b.moved);
                    strides[planes - 1] += b.wider;
                    gst_buffer_add_video_meta_full(
                        buffer, GST_VIDEO_FRAME_FLAG_NONE, gst_video_format_from_string(from.name),
                        width, height, static_cast<guint>(planes), offsets, strides);
                }
                GST_BUFFER_PTS(buffer) = 0;
                const GstFlowReturn flow = gst_harness_push(harness, buffer);
                GstBuffer *const made = gst_harness_try_pull(harness);
                ++(made ? frames : flow != GST_FLOW_OK ? errors : neither);
                EXPECT_EQ(error().empty(), flow == GST_FLOW_OK);
                const_picture expected = d.p;
                if (b.moved == onto_the_first)
                    expected.planes[lumalane::plane_count(from.format) - 1].data =
                        d.p.planes[0].data;
                if (made) {
                    EXPECT_EQ(pixels(made, to.format), converted(expected, to.format));
                }
            }
            std::printf("bad input | lumalaneconvert, a buffer %s | %s | %d\n", b.what,
                        b.converted ? "a frame" : "an error", b.converted ? frames : errors);
            EXPECT_EQ(b.converted ? frames : errors, frames + errors + neither) << b.what;
            EXPECT_GT(frames + errors, 0);
        }
}

// ---- Fields ------------------------------------------------------------------------------------

constexpr char interleaved[] = "interlace-mode=interleaved";
constexpr guint upper_first = GST_VIDEO_BUFFER_FLAG_TFF | GST_VIDEO_BUFFER_FLAG_INTERLACED;

// Two fields, each of one colour.
drawn two_fields(format f, int width, int height) {
    drawn d(f, width, height);
    const unsigned char colours[2][3] = {{60, 90, 200}, {180, 140, 40}};
    for (int i = 0; i < lumalane::plane_count(f); ++i)
        for (int row = 0; row < d.plane_rows(i); ++row) {
            const auto &colour = colours[row % 2];
            unsigned char *const to = d.p.planes[i].data + row * d.p.planes[i].stride;
            const unsigned char packed[4] = {colour[0], colour[1], colour[0], colour[2]};
            for (int x = 0; x < lumalane::row_bytes(f, i, width); ++x)
                to[x] = f == format::yuy2 ? packed[x % 4]
                                          : colour[f == format::yv12 && i > 0 ? 3 - i : i];
        }
    return d;
}

// A picture of the one colour.
drawn one_field(format f, int width, int height, int parity) {
    drawn d(f, width, height);
    const drawn both = two_fields(f, width, 4);
    for (int i = 0; i < lumalane::plane_count(f); ++i)
        for (int row = 0; row < d.plane_rows(i); ++row)
            std::copy_n(both.p.planes[i].data + parity * both.p.planes[i].stride,
                        lumalane::row_bytes(f, i, width),
                        d.p.planes[i].data + row * d.p.planes[i].stride);
    return d;
}

TEST_F(element, converts_each_field_with_its_own_chroma) {
    for (const named_format &from : sinks)
        for (const named_format &to : {bgrx, rgb16, yuy2})
            for (const int height : {4, 5, 6, 7, 8, 22}) {
                if (from.format == to.format)
                    continue;
                SCOPED_TRACE(string(from.name) + " to " + to.name + std::to_string(height));
                restart();
                ASSERT_TRUE(negotiate(caps_of(from, 37, height, interleaved),
                                      string("video/x-raw, format=") + to.name));
                EXPECT_EQ(made("interlace-mode"), "interleaved");
                const std::vector<unsigned char> out =
                    pushed(two_fields(from.format, 37, height), from, to);
                const size_t row = static_cast<size_t>(lumalane::row_bytes(to.format, 0, 37));
                ASSERT_EQ(out.size(), row * height);
                for (const int parity : {0, 1}) {
                    const std::vector<unsigned char> of_field =
                        converted(one_field(from.format, 37, height, parity).p, to.format);
                    for (int y = parity; y < height; y += 2)
                        ASSERT_TRUE(
                            std::equal(&of_field[row * y], &of_field[row * y] + row, &out[row * y]))
                            << y;
                }
            }
}

// A row of a plane of a buffer that has GStreamer's own strides, whether the picture has it or not.
std::vector<unsigned char> row_of(GstBuffer *buffer, const string &caps_text, int plane, int row) {
    GstCaps *const caps = gst_caps_from_string(caps_text.c_str());
    GstVideoInfo info;
    EXPECT_TRUE(gst_video_info_from_caps(&info, caps));
    gst_caps_unref(caps);
    std::vector<unsigned char> bytes(static_cast<size_t>(GST_VIDEO_INFO_COMP_WIDTH(&info, plane)));
    const gsize at = GST_VIDEO_INFO_PLANE_OFFSET(&info, plane) +
                     static_cast<gsize>(row * GST_VIDEO_INFO_PLANE_STRIDE(&info, plane));
    EXPECT_EQ(gst_buffer_extract(buffer, at, bytes.data(), bytes.size()), bytes.size());
    return bytes;
}

// GStreamer's interlaced frames have an even number of chroma rows, which other elements read.
TEST_F(element, writes_the_last_row_of_chroma_of_lower_fields) {
    for (const named_format &to : {i420, yv12})
        for (const double saturation : {0.9, 1.0})
            for (const char *mode : {"interleaved", "mixed"})
                for (const int height : {1, 2, 5, 6, 486}) {
                    SCOPED_TRACE(to.name + std::to_string(saturation) + mode +
                                 std::to_string(height));
                    restart();
                    set("saturation", saturation);
                    const string mode_field = string("interlace-mode=") + mode;
                    ASSERT_TRUE(negotiate(caps_of(i420, 38, height, mode_field),
                                          string("video/x-raw, format=") + to.name));
                    const int rows = (height + 1) / 2;
                    for (const unsigned seed : {1u, 2u}) {
                        const drawn d = noise(format::i420, 38, height, 0, seed);
                        GstBuffer *const in = buffer_of(d, GST_VIDEO_FORMAT_I420);
                        GST_BUFFER_FLAG_SET(in, upper_first);
                        GstBuffer *const out = through(in);
                        if (out == in) { // it passes
                            gst_buffer_unref(out);
                            continue;
                        }
                        const string caps = caps_of(to, 38, height, mode_field);
                        for (const int plane : {1, 2})
                            EXPECT_EQ(row_of(out, caps, plane, rows),
                                      row_of(out, caps, plane, std::max(rows - 2, 0)));
                        gst_buffer_unref(out);
                    }
                }
}

// Buffers of I420 of 38x6 with the three rows that planes of chroma need at least, and so many bytes
// behind each plane.
constexpr gsize tight_chroma = 19 * 3;

struct tight_layout {
    gsize behind_u, behind_v;
    bool apart = false; // each plane in a memory of its own

    gsize offset_of_v() const { return 38 * 6 + tight_chroma + behind_u; }
    gsize size() const { return offset_of_v() + tight_chroma + behind_v; }
};

struct tight_pool {
    GstBufferPool parent;
    tight_layout layout;
};
struct tight_poolClass {
    GstBufferPoolClass parent;
};
G_DEFINE_TYPE(tight_pool, tight_pool, GST_TYPE_BUFFER_POOL)

GstFlowReturn alloc_tight(GstBufferPool *pool, GstBuffer **made, GstBufferPoolAcquireParams *) {
    const tight_layout &layout = reinterpret_cast<tight_pool *>(pool)->layout;
    gsize offsets[GST_VIDEO_MAX_PLANES] = {0, 38 * 6, layout.offset_of_v()};
    gint strides[GST_VIDEO_MAX_PLANES] = {38, 19, 19};
    // What lies behind it is there, and not its own.
    *made = gst_buffer_new_allocate(nullptr, layout.size() + tight_chroma, nullptr);
    gst_buffer_memset(*made, 0, 0xee, layout.size() + tight_chroma);
    gst_buffer_set_size(*made, static_cast<gssize>(layout.size()));
    if (layout.apart)
        *made = plane_by_plane(*made, {offsets[0], offsets[1], offsets[2]});
    gst_buffer_add_video_meta_full(*made, GST_VIDEO_FRAME_FLAG_NONE, GST_VIDEO_FORMAT_I420, 38, 6,
                                   3, offsets, strides);
    return GST_FLOW_OK;
}

void tight_pool_class_init(tight_poolClass *klass) {
    GST_BUFFER_POOL_CLASS(klass)->alloc_buffer = alloc_tight;
}
void tight_pool_init(tight_pool *) {}

GstPadProbeReturn propose_tight(GstPad *, GstPadProbeInfo *info, gpointer layout) {
    GstQuery *const query = GST_PAD_PROBE_INFO_QUERY(info);
    if (GST_QUERY_TYPE(query) != GST_QUERY_ALLOCATION)
        return GST_PAD_PROBE_OK;
    auto *const pool = static_cast<tight_pool *>(g_object_new(tight_pool_get_type(), nullptr));
    pool->layout = *static_cast<tight_layout *>(layout);
    gst_query_add_allocation_pool(query, &pool->parent, static_cast<guint>(pool->layout.size()), 1,
                                  0);
    gst_query_add_allocation_meta(query, GST_VIDEO_META_API_TYPE, nullptr);
    gst_object_unref(pool);
    return GST_PAD_PROBE_HANDLED;
}

TEST_F(element, writes_no_row_of_chroma_where_there_is_no_room) {
    const lumalane::adjustment adjust = lumalane_gst::adjustment_of({{1, 0, 0.9}});
    const drawn d = noise(format::i420, 38, 6);
    tight_layout layouts[] = {{0, 0}, {0, 19}, {19, 0}, {0, 38}, {18, 18}};
    for (tight_layout &layout : layouts) {
        SCOPED_TRACE(std::to_string(layout.behind_u) + " " + std::to_string(layout.behind_v));
        restart();
        gst_pad_add_probe(harness->sinkpad, GST_PAD_PROBE_TYPE_QUERY_DOWNSTREAM, propose_tight,
                          &layout, nullptr);
        set("saturation", 0.9);
        ASSERT_TRUE(negotiate(caps_of(i420, 38, 6, interleaved), "video/x-raw, format=I420"));
        GstBuffer *const in = buffer_of(d, GST_VIDEO_FORMAT_I420);
        GST_BUFFER_FLAG_SET(in, upper_first);
        GstBuffer *const out = through(in);
        ASSERT_TRUE(out);
        EXPECT_EQ(gst_buffer_get_size(out), layout.size());
        gst_buffer_set_size(out, static_cast<gssize>(layout.size() + tight_chroma));
        const std::vector<unsigned char> behind(tight_chroma, 0xee);
        EXPECT_EQ(gst_buffer_memcmp(out, layout.size(), behind.data(), behind.size()), 0);
        EXPECT_EQ(pixels(out, format::i420), converted(d.p, format::i420, &adjust));
    }
}

TEST_F(element, writes_the_row_of_chroma_where_each_plane_has_a_memory_with_room) {
    for (const gsize behind : {gsize{0}, gsize{19}}) {
        SCOPED_TRACE(behind);
        tight_layout layout{behind, behind, true};
        restart();
        gst_pad_add_probe(harness->sinkpad, GST_PAD_PROBE_TYPE_QUERY_DOWNSTREAM, propose_tight,
                          &layout, nullptr);
        set("saturation", 0.9);
        ASSERT_TRUE(negotiate(caps_of(i420, 38, 6, interleaved), "video/x-raw, format=I420"));
        GstBuffer *const in = buffer_of(noise(format::i420, 38, 6), GST_VIDEO_FORMAT_I420);
        GST_BUFFER_FLAG_SET(in, upper_first);
        GstBuffer *const out = through(in);
        ASSERT_TRUE(out);
        ASSERT_EQ(gst_buffer_n_memory(out), 3u);
        for (const guint plane : {1u, 2u}) {
            GstMapInfo mapped;
            ASSERT_TRUE(gst_buffer_map_range(out, plane, 1, &mapped, GST_MAP_READ));
            ASSERT_EQ(mapped.size, tight_chroma + behind);
            EXPECT_TRUE(std::equal(mapped.data + tight_chroma, mapped.data + mapped.size,
                                   mapped.data + 19));
            gst_buffer_unmap(out, &mapped);
        }
        gst_buffer_unref(out);
    }
}

TEST_F(element, writes_nothing_where_the_frame_has_no_room) {
    tight_layout a_byte_less{0, static_cast<gsize>(-1)};
    gst_pad_add_probe(harness->sinkpad, GST_PAD_PROBE_TYPE_QUERY_DOWNSTREAM, propose_tight,
                      &a_byte_less, nullptr);
    set("saturation", 0.9);
    ASSERT_TRUE(negotiate(caps_of(i420, 38, 6), "video/x-raw, format=I420"));
    EXPECT_EQ(
        gst_harness_push(harness, buffer_of(noise(format::i420, 38, 6), GST_VIDEO_FORMAT_I420)),
        GST_FLOW_ERROR);
    EXPECT_NE(error(), "");
}

TEST_F(element, writes_no_row_of_chroma_that_no_field_lacks) {
    using lumalane_gst::deinterlacing;
    const drawn d = noise(format::i420, 38, 6);
    constexpr struct {
        bool interlaced;
        deinterlacing how;
        bool writes;
    } cases[] = {{true, deinterlacing::none, true},
                 {true, deinterlacing::doubled, false},
                 {false, deinterlacing::none, false}};
    for (const auto &c : cases) {
        drawn out = noise(format::i420, 38, 8, 0, 2); // of four chroma rows
        const std::vector<unsigned char> before = out.bytes;
        out.p.height = 6;
        lumalane_gst::frame f{d.p, out.p};
        f.interlaced = c.interlaced;
        f.how = c.how;
        f.chroma_rows = 4;
        ASSERT_TRUE(lumalane_gst::converter().convert(f));
        for (const int plane : {1, 2}) {
            const auto last = static_cast<std::ptrdiff_t>(out.offsets[plane]) + 19 * 3;
            EXPECT_EQ(std::equal(out.bytes.begin() + last, out.bytes.begin() + last + 19,
                                 before.begin() + last),
                      !c.writes);
        }
    }
}

TEST_F(element, makes_a_frame_of_the_first_field) {
    const auto takes = [](const named_format &from, const named_format &to, const string &how) {
        return lumalane_gst::converts(from.format, to.format,
                                      how == "edge" ? lumalane_gst::deinterlacing::edge
                                                    : lumalane_gst::deinterlacing::doubled);
    };
    for (const char *how : {"double", "edge"})
        for (const named_format &from : sinks)
            for (const named_format &to : sources)
                for (const int height : {3, 4, 5, 6, 7, 22, 64})
                    for (const int parity : {0, 1}) {
                        if (height != 22 &&
                            (to.format == format::rgb24 || from.format == format::yv12))
                            continue; // the sizes have been seen
                        SCOPED_TRACE(string(how) + from.name + " to " + to.name +
                                     std::to_string(height) + (parity ? " lower" : " upper"));
                        restart();
                        deinterlace(how);
                        set("saturation", 0.5);
                        ASSERT_EQ(negotiate(caps_of(from, 37, height, interleaved),
                                            string("video/x-raw, format=") + to.name),
                                  takes(from, to, how));
                        if (!takes(from, to, how))
                            continue;
                        EXPECT_EQ(made("interlace-mode"), "progressive");
                        const lumalane::adjustment adjust =
                            lumalane_gst::adjustment_of({{1, 0, 0.5}});
                        EXPECT_EQ(pushed(two_fields(from.format, 37, height), from, to,
                                         parity ? 0 : upper_first),
                                  converted(one_field(from.format, 37, height, parity).p, to.format,
                                            &adjust));
                    }
}

TEST_F(element, takes_the_order_of_fields_from_the_caps_where_frames_do_not_tell) {
    for (const char *mode : {"interleaved", "mixed"})
        for (const auto &[order, parity] :
             {std::pair{"top-field-first", 0}, std::pair{"bottom-field-first", 1}}) {
            SCOPED_TRACE(string(mode) + order);
            restart();
            deinterlace("double");
            ASSERT_TRUE(negotiate(
                caps_of(i420, 37, 12, string("interlace-mode=") + mode + ", field-order=" + order),
                "video/x-raw, format=BGRx"));
            EXPECT_EQ(pushed(two_fields(format::i420, 37, 12), i420, bgrx,
                             GST_VIDEO_BUFFER_FLAG_INTERLACED),
                      converted(one_field(format::i420, 37, 12, parity).p, format::rgb32));
        }
}

TEST_F(element, takes_frames_of_one_row_as_they_are) {
    for (const char *how : {"none", "double", "edge"})
        for (const guint flags : {0u, upper_first}) {
            SCOPED_TRACE(how + std::to_string(flags));
            restart();
            deinterlace(how);
            ASSERT_TRUE(negotiate(caps_of(i420, 37, 1, interleaved), "video/x-raw, format=BGRx"));
            const drawn d = noise(format::i420, 37, 1, 40);
            EXPECT_EQ(pushed(d, i420, bgrx, flags), converted(d.p, format::rgb32));
        }
}

TEST_F(element, says_what_fields_frames_keep) {
    ASSERT_TRUE(negotiate(caps_of(i420, 38, 12, interleaved), "video/x-raw, format=BGRx"));
    GstBuffer *const in = buffer_of(noise(format::i420, 38, 12), GST_VIDEO_FORMAT_I420);
    GST_BUFFER_FLAG_SET(in, upper_first | GST_VIDEO_BUFFER_FLAG_RFF);
    GstBuffer *const out = through(in);
    ASSERT_TRUE(out);
    EXPECT_TRUE(GST_BUFFER_FLAG_IS_SET(out, upper_first | GST_VIDEO_BUFFER_FLAG_RFF));
    gst_buffer_unref(out);
}

TEST_F(element, doubles_and_follows_edges_as_the_library_does) {
    const drawn d = noise(format::i420, 70, 40);
    const_picture field = d.p;
    field.height = 20;
    for (int i = 0; i < 3; ++i)
        field.planes[i].stride *= 2;
    const struct {
        const char *how;
        lumalane::stretching stretching;
    } cases[] = {{"double", lumalane::stretching::twice_height},
                 {"edge", lumalane::stretching::along_edges}};
    for (const auto &c : cases) {
        restart();
        deinterlace(c.how);
        ASSERT_TRUE(negotiate(caps_of(i420, 70, 40, interleaved), "video/x-raw, format=YUY2"));
        drawn expected(format::yuy2, 70, 40);
        ASSERT_TRUE(lumalane::stretch(field, expected.p, c.stretching));
        EXPECT_EQ(pushed(d, i420, yuy2, upper_first), pixels_of(expected.p));
        restart();
        deinterlace(c.how);
        ASSERT_TRUE(negotiate(caps_of(i420, 70, 40, interleaved), "video/x-raw, format=BGRx"));
        std::vector<unsigned char> rgb = converted(expected.p, format::rgb32);
        if (c.stretching == lumalane::stretching::twice_height) {
            drawn direct(format::rgb32, 70, 40);
            ASSERT_TRUE(lumalane::stretch(field, direct.p, c.stretching));
            rgb = pixels_of(direct.p);
        }
        EXPECT_EQ(pushed(d, i420, bgrx, upper_first), rgb);
    }
}

TEST_F(element, deinterlaces_what_is_interlaced_in_a_mixed_stream) {
    deinterlace("double");
    ASSERT_TRUE(
        negotiate(caps_of(i420, 37, 12, "interlace-mode=mixed"), "video/x-raw, format=I420"));
    EXPECT_EQ(made("interlace-mode"), "progressive");
    const drawn d = two_fields(format::i420, 37, 12);
    EXPECT_EQ(pushed(d, i420, i420), pixels_of(d.p));
    GstBuffer *const in = buffer_of(d, GST_VIDEO_FORMAT_I420);
    constexpr guint of_fields =
        upper_first | GST_VIDEO_BUFFER_FLAG_RFF | GST_VIDEO_BUFFER_FLAG_ONEFIELD;
    GST_BUFFER_FLAG_SET(in, of_fields);
    GstBuffer *const out = through(in);
    ASSERT_TRUE(out);
    EXPECT_EQ(GST_BUFFER_FLAGS(out) & of_fields, 0u);
    EXPECT_EQ(pixels(out, format::i420), pixels_of(one_field(format::i420, 37, 12, 0).p));
}

// The last Y of their rows is no pixel, but goes with them: who reads pairs of pixels reads it.
TEST_F(element, copies_the_whole_rows_of_packed_frames) {
    deinterlace("double");
    for (const int width : {1, 5, 37}) {
        SCOPED_TRACE(width);
        ASSERT_TRUE(negotiate(caps_of(yuy2, width, 12, "interlace-mode=mixed"),
                              "video/x-raw, format=YUY2"));
        for (const unsigned seed : {1u, 2u}) {
            const drawn d = noise(format::yuy2, width, 12, 3, seed);
            EXPECT_EQ(pushed(d, yuy2, yuy2), pixels_of(d.p));
        }
    }
}

TEST_F(element, tells_of_the_order_of_fields_only_where_there_are_some) {
    const string from =
        caps_of(i420, 38, 12, string(interleaved) + ", field-order=top-field-first");
    for (const auto &[how, order] :
         {std::pair{"none", "top-field-first"}, std::pair{"double", ""}}) {
        SCOPED_TRACE(how);
        restart();
        deinterlace(how);
        ASSERT_TRUE(negotiate(from, "video/x-raw, format=BGRx"));
        EXPECT_EQ(made("field-order"), order);
    }
    // Nor does it matter to the element before what the progressive ones would be.
    EXPECT_TRUE(takes("video/x-raw, format=I420, interlace-mode=interleaved, "
                      "field-order=bottom-field-first"));
}

// Of these a buffer has one field, or each in a place of its own.
TEST_F(element, refuses_fields_that_are_not_in_one_frame) {
    using lumalane_gst::deinterlacing;
    for (const char *mode : {"fields", "alternate"}) {
        SCOPED_TRACE(mode);
        const string caps_text = caps_of(i420, 38, 12, string("interlace-mode=") + mode);
        restart();
        EXPECT_FALSE(negotiate(caps_text, "video/x-raw, format=BGRx"));
        for (const deinterlacing how : {deinterlacing::none, deinterlacing::doubled})
            for (const GstPadDirection side : {GST_PAD_SINK, GST_PAD_SRC}) {
                GstCaps *const caps = gst_caps_from_string(caps_text.c_str());
                GstCaps *const across = lumalane_gst::transform_caps(side, caps, how);
                EXPECT_TRUE(gst_caps_is_empty(across));
                gst_caps_unref(caps);
                gst_caps_unref(across);
            }
    }
}

TEST_F(element, leaves_progressive_streams_alone) {
    deinterlace("edge");
    ASSERT_TRUE(negotiate(caps_of(yuy2, 37, 12), "video/x-raw, format=YUY2"));
    const drawn d = noise(format::yuy2, 37, 12);
    EXPECT_EQ(pushed(d, yuy2, yuy2), pixels_of(d.p));
}

TEST_F(element, can_be_told_to_deinterlace_while_it_runs) {
    ASSERT_TRUE(negotiate(caps_of(i420, 37, 12, interleaved), "video/x-raw, format=BGRx"));
    const drawn d = two_fields(format::i420, 37, 12);
    pushed(d, i420, bgrx, upper_first);
    EXPECT_EQ(made("interlace-mode"), "interleaved");
    deinterlace("double");
    EXPECT_EQ(pushed(d, i420, bgrx, upper_first),
              converted(one_field(format::i420, 37, 12, 0).p, format::rgb32));
    EXPECT_EQ(made("interlace-mode"), "progressive");
}

drawn stretched_field(const drawn &frame, format to, lumalane::stretching how) {
    const_picture field = frame.p;
    field.height = frame.p.height / 2;
    for (int i = 0; i < lumalane::plane_count(field.format); ++i)
        field.planes[i].stride *= 2;
    drawn made(to, frame.p.width, frame.p.height);
    EXPECT_TRUE(lumalane::stretch(field, made.p, how));
    return made;
}

TEST_F(element, can_be_told_to_deinterlace_in_another_way) {
    const drawn d = noise(format::i420, 70, 40);
    deinterlace("double");
    ASSERT_TRUE(negotiate(caps_of(i420, 70, 40, interleaved), "video/x-raw, format=YUY2"));
    for (const auto &[told, how] : {std::pair{"double", lumalane::stretching::twice_height},
                                    std::pair{"edge", lumalane::stretching::along_edges},
                                    std::pair{"double", lumalane::stretching::twice_height}}) {
        SCOPED_TRACE(told);
        deinterlace(told);
        EXPECT_EQ(pushed(d, i420, yuy2, upper_first),
                  pixels_of(stretched_field(d, format::yuy2, how).p));
    }
}

// Tells an element to deinterlace in another way while it asks its neighbour something.
struct telling {
    GstElement *element;
    GstQueryType when;
    const char *how;
    int told = 0;
};

GstPadProbeReturn tell(GstPad *, GstPadProbeInfo *info, gpointer data) {
    telling &t = *static_cast<telling *>(data);
    if (GST_QUERY_TYPE(GST_PAD_PROBE_INFO_QUERY(info)) == t.when && t.told++ == 0)
        gst_util_set_object_arg(G_OBJECT(t.element), "deinterlace", t.how);
    return GST_PAD_PROBE_OK;
}

TEST_F(element, can_be_told_not_to_deinterlace_while_caps_are_negotiated) {
    deinterlace("double");
    telling t{harness->element, GST_QUERY_ACCEPT_CAPS, "none"};
    gst_pad_add_probe(harness->sinkpad, GST_PAD_PROBE_TYPE_QUERY_DOWNSTREAM, tell, &t, nullptr);
    ASSERT_TRUE(negotiate(caps_of(i420, 37, 12, interleaved), "video/x-raw, format=I420"));
    EXPECT_GT(t.told, 0);
    EXPECT_EQ(made("interlace-mode"), "progressive");
    const drawn d = two_fields(format::i420, 37, 12);
    EXPECT_EQ(pushed(d, i420, i420, upper_first), pixels_of(d.p));
    EXPECT_EQ(made("interlace-mode"), "interleaved");
    EXPECT_EQ(error(), "");
}

TEST_F(element, deinterlaces_as_before_where_it_is_told_what_formats_do_not_have) {
    deinterlace("double");
    ASSERT_TRUE(negotiate(caps_of(i420, 37, 12, interleaved), "video/x-raw, format={I420, YUY2}"));
    telling t{harness->element, GST_QUERY_ALLOCATION, "edge"};
    gst_pad_add_probe(harness->sinkpad, GST_PAD_PROBE_TYPE_QUERY_DOWNSTREAM, tell, &t, nullptr);
    deinterlace("double"); // the next frame is negotiated for
    const drawn d = two_fields(format::i420, 37, 12);
    const drawn field = one_field(format::i420, 37, 12, 0);
    EXPECT_EQ(pushed(d, i420, i420, upper_first), pixels_of(field.p));
    EXPECT_GT(t.told, 0);
    EXPECT_EQ(error(), "");
    // What has been told is had from the next frame on.
    EXPECT_EQ(pushed(d, i420, yuy2, upper_first), converted(field.p, format::yuy2));
    EXPECT_EQ(made("format"), "YUY2");
}

TEST_F(element, goes_on_where_it_is_told_while_it_runs_what_formats_do_not_have) {
    const drawn d = noise(format::yuy2, 38, 12);
    ASSERT_TRUE(negotiate(caps_of(yuy2, 38, 12, interleaved), "video/x-raw, format=BGRx"));
    const std::vector<unsigned char> fields = pushed(d, yuy2, bgrx, upper_first);
    deinterlace("edge");
    EXPECT_EQ(pushed(d, yuy2, bgrx, upper_first), fields);
    EXPECT_EQ(made("interlace-mode"), "interleaved");
    EXPECT_NE(warning().find("deinterlace=edge: it stays none"), string::npos);
    // What the next element asks for changes nothing, and nothing is told again.
    gst_harness_push_upstream_event(harness, gst_event_new_reconfigure());
    EXPECT_EQ(pushed(d, yuy2, bgrx, upper_first), fields);
    EXPECT_EQ(warning(), "");
    // By double, which there is, and on with that.
    deinterlace("double");
    const std::vector<unsigned char> doubled = pushed(d, yuy2, bgrx, upper_first);
    EXPECT_EQ(made("interlace-mode"), "progressive");
    EXPECT_NE(doubled, fields);
    deinterlace("edge");
    EXPECT_EQ(pushed(d, yuy2, bgrx, upper_first), doubled);
    EXPECT_NE(warning().find("deinterlace=edge: it stays double"), string::npos);
    // Caps that do not have it either, and caps that do.
    ASSERT_TRUE(set_source(caps_of(yuy2, 38, 10, interleaved)));
    EXPECT_FALSE(pushed(noise(format::yuy2, 38, 10), yuy2, bgrx, upper_first).empty());
    EXPECT_NE(warning(), "");
    ASSERT_TRUE(set_source(caps_of(i420, 38, 12, interleaved)));
    const drawn planes = noise(format::i420, 38, 12);
    const drawn edges = stretched_field(planes, format::yuy2, lumalane::stretching::along_edges);
    EXPECT_EQ(pushed(planes, i420, bgrx, upper_first), converted(edges.p, format::rgb32));
    EXPECT_EQ(warning(), "");
    EXPECT_EQ(error(), "");
}

TEST_F(element, has_what_it_was_told_when_it_starts_again) {
    constexpr char packed[] = "video/x-raw, format=YUY2, interlace-mode=interleaved",
                   planes[] = "video/x-raw, format=I420, interlace-mode=interleaved";
    ASSERT_TRUE(negotiate(caps_of(yuy2, 38, 12, interleaved), "video/x-raw, format=BGRx"));
    deinterlace("edge");
    EXPECT_FALSE(pushed(noise(format::yuy2, 38, 12), yuy2, bgrx, upper_first).empty());
    EXPECT_NE(warning(), "");
    EXPECT_TRUE(takes(packed)); // it stays none
    gst_element_set_state(harness->element, GST_STATE_NULL);
    gst_element_set_state(harness->element, GST_STATE_PLAYING);
    EXPECT_FALSE(takes(packed));
    EXPECT_TRUE(takes(planes));
    ASSERT_TRUE(set_source(caps_of(i420, 38, 12, interleaved)));
    EXPECT_EQ(made("interlace-mode"), "progressive");
}

TEST_F(element, finds_out_anew_when_it_starts_again_what_the_next_element_finds) {
    set("contrast", 1.5);
    ASSERT_TRUE(negotiate(caps_of(i420, 34, 6), "video/x-raw, format=I420"));
    const drawn d = noise(format::i420, 34, 6, 5);
    pushed(d, i420, i420); // the next one does not read metas
    set("contrast", 1);
    gst_element_set_state(harness->element, GST_STATE_NULL);
    gst_harness_add_propose_allocation_meta(harness, GST_VIDEO_META_API_TYPE, nullptr);
    gst_element_set_state(harness->element, GST_STATE_PLAYING);
    ASSERT_TRUE(set_source(caps_of(i420, 34, 6)));
    GstBuffer *const in = buffer_of(d, GST_VIDEO_FORMAT_I420);
    GstBuffer *const out = through(in);
    EXPECT_TRUE(in == out);
    gst_buffer_unref(out);
}

TEST_F(element, repeats_the_rows_of_packed_fields) {
    for (const named_format &to : {yuy2, bgrx})
        for (const int height : {4, 5, 6, 7, 9})
            for (const int parity : {0, 1}) {
                const int field_rows = (height - parity + 1) / 2;
                if (to.format != format::yuy2 && height % 2 != 0 && field_rows % 2 == 0)
                    continue; // the last row is converted by itself, not with the chroma of a pair
                SCOPED_TRACE(to.name + std::to_string(height) + (parity ? " lower" : " upper"));
                restart();
                deinterlace("double");
                ASSERT_TRUE(negotiate(caps_of(yuy2, 38, height, interleaved),
                                      string("video/x-raw, format=") + to.name));
                const drawn d = noise(format::yuy2, 38, height);
                const_picture field = d.p;
                field.planes[0].data += parity * d.p.planes[0].stride;
                field.planes[0].stride *= 2;
                field.height = field_rows;
                const std::vector<unsigned char> rows =
                    to.format == format::yuy2 ? pixels_of(field) : converted(field, to.format);
                const std::ptrdiff_t row = lumalane::row_bytes(to.format, 0, 38);
                std::vector<unsigned char> expected;
                for (int y = 0; y < height; ++y) {
                    const auto from = rows.begin() + std::min(y / 2, field_rows - 1) * row;
                    expected.insert(expected.end(), from, from + row);
                }
                EXPECT_EQ(pushed(d, yuy2, to, parity ? 0 : upper_first), expected);
            }
}

// Of these heights the last row of the upper field has chroma of its own, that of the frame's last row.
TEST_F(element, keeps_the_last_row_of_fields_of_odd_heights) {
    for (const char *how : {"double", "edge"})
        for (const named_format &to : {yuy2, bgrx, i420})
            for (const int height : {5, 9, 21}) {
                if (to.format == format::i420 && string(how) == "edge")
                    continue;
                SCOPED_TRACE(string(how) + " " + to.name + std::to_string(height));
                restart();
                deinterlace(how);
                ASSERT_TRUE(negotiate(caps_of(i420, 37, height, interleaved),
                                      string("video/x-raw, format=") + to.name));
                const drawn d = noise(format::i420, 37, height);
                const std::vector<unsigned char> out = pushed(d, i420, to, upper_first),
                                                 whole = converted(d.p, to.format);
                const size_t row = static_cast<size_t>(lumalane::row_bytes(to.format, 0, 37));
                ASSERT_EQ(out.size(), whole.size());
                EXPECT_TRUE(std::equal(&out[row * (height - 1)], &out[row * (height - 1)] + row,
                                       &whole[row * (height - 1)]));
                if (to.format == format::i420) {
                    const auto last = [&](const std::vector<unsigned char> &v, size_t plane) {
                        const size_t chroma = 19, planes = (height + 1) / 2 * chroma;
                        const auto end = v.begin() + 37 * height + (plane + 1) * planes;
                        return std::vector<unsigned char>(end - chroma, end);
                    };
                    EXPECT_EQ(last(out, 0), last(whole, 0));
                    EXPECT_EQ(last(out, 1), last(whole, 1));
                }
            }
}

} // namespace
