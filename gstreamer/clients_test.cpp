// The built plugin as its users have it: gst-inspect-1.0, gst-launch-1.0, and what comes out beside
// videoconvert's.
#include <gtest/gtest.h>
#include <png.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using std::string;
using bytes = std::vector<unsigned char>;

const fs::path scratch = LUMALANE_SCRATCH;

// What a command printed, and its exit status.
struct outcome {
    int status;
    string text;
};

outcome run(const string &command, const string &environment = "", int seconds = 60) {
    const string limit = " timeout " + std::to_string(seconds) + " ";
    std::FILE *const pipe = popen((environment + limit + command + " 2>&1").c_str(), "r");
    outcome done{-1, ""};
    std::array<char, 4096> part{};
    while (const size_t n = std::fread(part.data(), 1, part.size(), pipe))
        done.text.append(part.data(), n);
    done.status = pclose(pipe);
    return done;
}

void launch(const string &pipeline, const string &environment = "") {
    const outcome done = run("gst-launch-1.0 -q " + pipeline, environment);
    ASSERT_EQ(done.status, 0) << pipeline << "\n" << done.text;
}

bytes contents(const fs::path &file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

// Pixels in the order of the channels B, G and R.
bytes contents_of_png(const fs::path &file) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    EXPECT_TRUE(png_image_begin_read_from_file(&image, file.c_str())) << file;
    image.format = PNG_FORMAT_BGR;
    bytes pixels(PNG_IMAGE_SIZE(image));
    EXPECT_TRUE(png_image_finish_read(&image, nullptr, pixels.data(), 0, nullptr));
    return pixels;
}

// Without interpolation of chroma (and where rows of a pair of YUY2 have the same), arithmetic is all
// that differs: the library is within 2 of exact BT.601, as the element's own test shows, and the
// 8-bit products of videoconvert are up to 5 off in green.
void expect_close(const bytes &a, const bytes &b, size_t bytes_of_pixel) {
    ASSERT_EQ(a.size(), b.size());
    ASSERT_GT(a.size(), 0u);
    int most[3] = {};
    for (size_t i = 0; i < a.size(); ++i)
        if (const size_t channel = i % bytes_of_pixel; channel < 3)
            most[channel] = std::max(most[channel], std::abs(a[i] - b[i]));
    EXPECT_LE(most[0], 3);
    EXPECT_LE(most[1], 7);
    EXPECT_LE(most[2], 3);
}

// Of rows of red, green and blue in a word, of which each has the lower bits truncated.
void expect_close_rgb16(const bytes &a, const bytes &b) {
    ASSERT_EQ(a.size(), b.size());
    ASSERT_GT(a.size(), 0u);
    int most = 0;
    for (size_t i = 0; i + 1 < a.size(); i += 2) {
        const int x = a[i] | a[i + 1] << 8, y = b[i] | b[i + 1] << 8;
        most =
            std::max({most, std::abs((x >> 11) - (y >> 11)),
                      std::abs((x >> 5 & 63) - (y >> 5 & 63)) / 2, std::abs((x & 31) - (y & 31))});
    }
    EXPECT_LE(most, 1);
}

class clients : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        fs::create_directories(scratch);
        setenv("GST_PLUGIN_PATH", LUMALANE_PLUGIN_FOLDER, 1);
        setenv("GST_REGISTRY", (scratch / "registry.bin").c_str(), 1);
    }

    void SetUp() override {
        for (const char *name : {"a", "b"})
            fs::remove_all(scratch / name);
    }

    // Writes what both converters make of the same source to the files a and b.
    static void convert_both(const string &source, const string &ours, const string &others,
                             const string &to) {
        const auto file = [&](const char *name) {
            return " filesink location=" + (scratch / name).string();
        };
        launch(source + " ! tee name=t t. ! queue ! " + ours + " ! " + to + " !" + file("a") +
               " t. ! queue ! " + others + " ! " + to + " !" + file("b"));
    }
};

TEST_F(clients, gst_inspect_finds_nothing_to_warn_of) {
    for (const char *what : {"lumalaneconvert", "lumalane"}) {
        const outcome done =
            run(string("gst-inspect-1.0 ") + what, "GST_DEBUG=2 G_DEBUG=fatal-warnings");
        EXPECT_EQ(done.status, 0);
        EXPECT_NE(done.text.find("Lumalane video converter"), string::npos) << done.text;
        for (const char *sign : {"WARN", "CRITICAL", "ERROR"})
            EXPECT_EQ(done.text.find(sign), string::npos) << done.text;
    }
}

TEST_F(clients, pictures_are_those_of_videoconvert_but_for_truncation) {
    for (const char *from : {"I420", "YV12", "YUY2"})
        for (const char *to : {"BGRx", "RGB16"}) {
            SCOPED_TRACE(string(from) + " to " + to);
            convert_both(string("videotestsrc num-buffers=1 pattern=smpte ! video/x-raw,format=") +
                             from + ",width=322,height=240,colorimetry=bt601",
                         "lumalaneconvert", "videoconvert chroma-mode=none dither=none",
                         string("video/x-raw,format=") + to);
            const bytes a = contents(scratch / "a"), b = contents(scratch / "b");
            if (string(to) == "BGRx")
                expect_close(a, b, 4);
            else
                expect_close_rgb16(a, b);
        }
}

TEST_F(clients, balance_is_that_of_videobalance_but_for_roundings) {
    const string balance = " brightness=0.1 contrast=1.3 saturation=0.7";
    convert_both("videotestsrc num-buffers=1 pattern=smpte ! "
                 "video/x-raw,format=I420,width=320,height=180",
                 "lumalaneconvert" + balance, "videobalance" + balance, "video/x-raw,format=I420");
    const bytes a = contents(scratch / "a"), b = contents(scratch / "b");
    ASSERT_EQ(a.size(), size_t(320 * 180 * 3 / 2));
    ASSERT_EQ(a.size(), b.size());
    int most = 0;
    for (size_t i = 0; i < a.size(); ++i)
        most = std::max(most, std::abs(a[i] - b[i]));
    EXPECT_LE(most, 3);
}

// Of 243 rows of chroma 122 are of the upper field, and as many are read of the lower one.
TEST_F(clients, interlaced_video_keeps_its_colour_down_to_the_last_row) {
    for (const char *format : {"I420", "YV12"}) {
        SCOPED_TRACE(format);
        launch(string("videotestsrc num-buffers=3 pattern=red ! "
                      "video/x-raw,format=I420,width=64,height=486,interlace-mode=interleaved,"
                      "colorimetry=bt601 ! lumalaneconvert saturation=0.9 ! video/x-raw,format=") +
                   format + " ! videoconvert ! video/x-raw,format=BGRx ! filesink location=" +
                   (scratch / "a").string(),
               "MALLOC_PERTURB_=85");
        const bytes a = contents(scratch / "a");
        ASSERT_EQ(a.size(), size_t(3 * 64 * 486 * 4));
        for (size_t i = 4; i < a.size(); ++i)
            if (i % 4 < 3) {
                ASSERT_NEAR(a[i], a[i % 4], 2) << "row " << i / 256 % 486;
            }
    }
}

TEST_F(clients, the_clip_becomes_the_same_png_files) {
    const auto branch = [](const string &converter, const char *name) {
        fs::create_directory(scratch / name);
        return " t. ! queue ! " + converter +
               " ! video/x-raw,format=BGRx ! videoconvert ! video/x-raw,format=RGB ! " +
               "pngenc compression-level=1 ! multifilesink location=" +
               (scratch / name / "%d.png").string();
    };
    launch(string("filesrc location=") + LUMALANE_CLIP +
           " ! decodebin ! videorate drop-only=true ! video/x-raw,framerate=2/1 ! tee name=t" +
           branch("lumalaneconvert", "a") +
           branch("videoconvert chroma-mode=none dither=none", "b"));
    int pictures = 0;
    for (; fs::exists(scratch / "a" / (std::to_string(pictures) + ".png")); ++pictures) {
        const string name = std::to_string(pictures) + ".png";
        expect_close(contents_of_png(scratch / "a" / name), contents_of_png(scratch / "b" / name),
                     3);
    }
    EXPECT_GE(pictures, 2);
}

TEST_F(clients, playbin_has_it_as_a_filter) {
    launch(string("playbin uri=file://") + LUMALANE_CLIP +
           " video-filter=\"lumalaneconvert contrast=1.2 ! video/x-raw,format=BGRx\""
           " video-sink=\"fakesink sync=false\" audio-sink=\"fakesink sync=false\"");
}

TEST_F(clients, what_is_not_bt601_is_refused_with_a_reason) {
    const fs::path file = scratch / "black.yuv";
    std::ofstream(file) << string(64 * 720 * 3, '\0'); // two frames
    const outcome done = run("gst-launch-1.0 filesrc location=" + file.string() +
                                 " ! rawvideoparse format=i420 width=64 height=720 ! "
                                 "lumalaneconvert ! video/x-raw,format=BGRx ! fakesink",
                             "", 10);
    // (It may tell the reason and not end: so it does after an error with any element in that place.)
    EXPECT_NE(done.status, 0);
    EXPECT_NE(done.text.find("limited-range BT.601"), string::npos) << done.text;
}

TEST_F(clients, videoconvert_makes_bt601_of_what_is_not) {
    for (const char *const height : {"480", "720"})
        for (const char *const colorimetry : {"bt709", "1:4:0:0"}) { // the latter is that of JPEG
            const outcome done =
                run(string("gst-launch-1.0 videotestsrc num-buffers=2 ! ") +
                    "\"video/x-raw,format=I420,width=64,height=" + height +
                    ",colorimetry=(string)" + colorimetry + "\" ! videoconvert ! " +
                    "lumalaneconvert ! video/x-raw,format=BGRx ! fakesink");
            EXPECT_EQ(done.status, 0) << done.text;
        }
}

TEST_F(clients, no_object_stays_alive) {
    const outcome done = run("gst-launch-1.0 -q videotestsrc num-buffers=3 ! "
                             "video/x-raw,format=I420,interlace-mode=interleaved ! "
                             "lumalaneconvert deinterlace=edge saturation=0.5 ! "
                             "video/x-raw,format=BGR ! fakesink",
                             "GST_TRACERS=leaks GST_DEBUG=GST_TRACER:7");
    EXPECT_EQ(done.status, 0) << done.text;
    EXPECT_NE(done.text.find("GST_TRACER"), string::npos) << done.text; // it has looked
    EXPECT_FALSE(
        std::regex_search(done.text, std::regex(R"(object-alive, type-name=\(string\)\w)")))
        << done.text;
}

TEST_F(clients, is_installed_where_gstreamer_looks) {
    const fs::path root = scratch / "installed";
    fs::remove_all(root);
    const outcome done =
        run("cmake --install " LUMALANE_BUILD " --component gstreamer", "DESTDIR=" + root.string());
    ASSERT_EQ(done.status, 0) << done.text;
    const outcome folder = run("pkg-config --variable=pluginsdir gstreamer-1.0");
    const string plugins = folder.text.substr(0, folder.text.find('\n'));
    const string file = root.string() + plugins + "/libgstlumalane.so";
    EXPECT_TRUE(fs::exists(file)) << file << "\n" << done.text;
    const outcome inspected = run("gst-inspect-1.0 " + file);
    EXPECT_EQ(inspected.status, 0) << inspected.text;
}

// The functions of the library that it has inside are nobody else's.
TEST_F(clients, exports_nothing_but_the_plugin) {
    const outcome done = run("nm -D --defined-only " LUMALANE_PLUGIN_FOLDER "/libgstlumalane.so");
    ASSERT_EQ(done.status, 0);
    EXPECT_EQ(std::count(done.text.begin(), done.text.end(), '\n'), 2) << done.text;
    EXPECT_NE(done.text.find("gst_plugin_lumalane_get_desc"), string::npos);
    EXPECT_NE(done.text.find("gst_plugin_lumalane_register"), string::npos);
}

} // namespace
