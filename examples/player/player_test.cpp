// The player from outside, as a user runs it, and its parts where a picture is judged by samples.

#include "examples/player/adjustment.h"
#include "examples/player/display.h"
#include "examples/player/failure.h"
#include "examples/player/fixture.h"
#include "examples/player/playback.h"
#include "examples/player/session.h"
#include "examples/player/surface.h"
#include "examples/player/target.h"

#include <algorithm>
#include <cctype>
#include <chrono>
#include <cmath>
#include <gtest/gtest.h>
#include <thread>

namespace {

using namespace player;

// Pairs of columns become one.
rgb_image halve(const rgb_image &image) {
    rgb_image halved{image.width / 2, image.height, {}};
    for (std::size_t pair = 0; pair < image.samples.size(); pair += 6)
        for (std::size_t channel = pair; channel < pair + 3; ++channel)
            halved.samples.push_back(static_cast<unsigned char>(
                (image.samples[channel] + image.samples[channel + 3]) / 2));
    return halved;
}

double mean(const rgb_image &image) {
    double sum = 0;
    for (const unsigned char sample : image.samples)
        sum += sample;
    return sum / static_cast<double>(image.samples.size());
}

// Pairs of neighbours become one, in a row-wise plane of any width.
template <class Combine>
std::vector<unsigned char> halve(const std::vector<unsigned char> &plane, int width,
                                 Combine combine) {
    std::vector<unsigned char> halved;
    for (auto row = plane.begin(); row != plane.end(); row += width)
        for (int column = 0; column < width; column += 2)
            halved.push_back(combine(row[column], row[std::min(column + 1, width - 1)]));
    return halved;
}

unsigned char average(int a, int b) { return static_cast<unsigned char>((a + b + 1) / 2); }
unsigned char second(int, int b) { return static_cast<unsigned char>(b); }

std::string ramps_y4m(int width, int height, int frames) {
    std::vector<samples> shown;
    for (int frame = 0; frame < frames; ++frame)
        shown.push_back(ramps_420(width, height, frame));
    return y4m('p', shown);
}

// `order` has the numbers of the bytes of two pixels: where Y0, U, Y1 and V stand.
std::vector<unsigned char> pack(const samples &from, const std::array<int, 4> &order) {
    std::vector<unsigned char> packed;
    for (int row = 0; row < from.height; ++row) {
        for (int pair = 0; pair < from.chroma_width(); ++pair) {
            const int y = row * from.width + 2 * pair;
            const int chroma = row * from.chroma_width() + pair;
            unsigned char bytes[4];
            bytes[order[0]] = from.y[y];
            bytes[order[1]] = from.u[chroma];
            bytes[order[2]] = 2 * pair + 1 < from.width ? from.y[y + 1] : 0;
            bytes[order[3]] = from.v[chroma];
            packed.insert(packed.end(), bytes, bytes + 4);
        }
    }
    return packed;
}

// Raw video in the container of that name: the picture again and again, for so many milliseconds
// each.
void write_raw_video(const fs::path &file, const char *container_name,
                     const std::vector<unsigned char> &bytes, int width, int height,
                     AVPixelFormat format, const std::vector<int> &durations) {
    AVFormatContext *container = nullptr;
    ASSERT_EQ(avformat_alloc_output_context2(&container, nullptr, container_name, file.c_str()), 0);
    AVStream *stream = avformat_new_stream(container, nullptr);
    stream->time_base = {1, 1000};
    AVCodecParameters &kind = *stream->codecpar;
    kind.codec_type = AVMEDIA_TYPE_VIDEO;
    kind.codec_id = AV_CODEC_ID_RAWVIDEO;
    kind.codec_tag = avcodec_pix_fmt_to_codec_tag(format);
    kind.format = format;
    kind.width = width;
    kind.height = height;
    ASSERT_GE(avio_open(&container->pb, file.c_str(), AVIO_FLAG_WRITE), 0);
    ASSERT_GE(avformat_write_header(container, nullptr), 0);
    int64_t time = 0;
    for (const int duration : durations) {
        const handle<AVPacket> packet(av_packet_alloc());
        ASSERT_EQ(av_new_packet(packet.get(), static_cast<int>(bytes.size())), 0);
        std::ranges::copy(bytes, packet->data);
        packet->pts = packet->dts = time;
        packet->duration = duration;
        packet->flags = AV_PKT_FLAG_KEY;
        av_packet_rescale_ts(packet.get(), {1, 1000}, stream->time_base);
        ASSERT_EQ(av_write_frame(container, packet.get()), 0);
        time += duration;
    }
    ASSERT_EQ(av_write_trailer(container), 0);
    avio_closep(&container->pb);
    avformat_free_context(container);
}

void write_packed_video(const fs::path &file, const samples &from, AVPixelFormat format,
                        const std::array<int, 4> &order) {
    write_raw_video(file, "nut", pack(from, order), from.width, from.height, format, {40});
}

// ---- Reference --------------------------------------------------------------------------------

// The samples that a surface keeps of a picture's.
samples kept_by(const surface_format &format, samples all) {
    if (format.name == std::string_view("yuy2_mono"))
        for (auto *plane : {&all.u, &all.v})
            std::ranges::fill(*plane, 128);
    if (!format.half_width)
        return all;
    const auto combine = format.chroma_planes ? second : average;
    return {(all.width + 1) / 2,
            all.height,
            all.chroma_height,
            halve(all.y, all.width, combine),
            halve(all.u, all.chroma_width(), combine),
            halve(all.v, all.chroma_width(), combine)};
}

// BT.601 in floating point. The rows of a pair share the chroma of the upper one.
void expect_bt601(const surface &loaded, const samples &of) {
    ASSERT_EQ(loaded.width(), of.width);
    ASSERT_EQ(loaded.height(), of.height);
    const std::vector<unsigned char> rgb = loaded.expand();
    const int chroma_rows_per_pair = of.chroma_height == of.height ? 2 : 1;
    for (int row = 0; row < of.height; ++row) {
        for (int column = 0; column < of.width; ++column) {
            const int at = row * of.width + column;
            const int chroma = row / 2 * chroma_rows_per_pair * of.chroma_width() + column / 2;
            const double luma = 1.164383 * (of.y[at] - 16);
            const double u = of.u[chroma] - 128;
            const double v = of.v[chroma] - 128;
            const double expected[] = {luma + 1.596027 * v, luma - 0.391762 * u - 0.812968 * v,
                                       luma + 2.017232 * u};
            for (int channel = 0; channel < 3; ++channel) {
                // The library cuts off each product, then the bits that the surface lacks.
                const double tolerance = 1 + (256 >> loaded.format().bits[channel]);
                ASSERT_NEAR(rgb[3 * at + channel],
                            std::lround(std::clamp(expected[channel], 0.0, 255.0)), tolerance)
                    << "row " << row << ", column " << column << ", channel " << channel;
            }
        }
    }
}

// ---- Pictures ---------------------------------------------------------------------------------

class every_surface : public player_test, public testing::WithParamInterface<std::string> {};

bool loads_packed(const surface_format &format) { return format.functions.load_packed != nullptr; }

INSTANTIATE_TEST_SUITE_P(surfaces, every_surface, testing::ValuesIn(all_surface_names()), name_of);

TEST_P(every_surface, the_clip_becomes_moving_pictures_like_those_of_rgb32) {
    const surface_format &format = *find_surface_format(GetParam());
    const auto images = frames("--frames 4 --surface " + GetParam());
    const std::string colours = GetParam() == "yuy2_mono" ? " --saturation 0" : "";
    const auto plain = frames("--frames 4 --surface rgb32" + colours);
    ASSERT_EQ(images.size(), 4u);
    ASSERT_EQ(plain.size(), 4u);
    for (std::size_t n = 0; n < images.size(); ++n) {
        EXPECT_EQ(images[n].width, format.half_width ? 320 : 640);
        EXPECT_EQ(images[n].height, 360);
        const auto [least, most] = std::ranges::minmax(images[n].samples);
        EXPECT_GT(most - least, 100) << "uniform";
        // Fewer bits only drop what is below them: 16 levels of blue in the coarsest layout.
        EXPECT_LT(mean_difference(images[n], format.half_width ? halve(plain[n]) : plain[n]), 4.0);
    }
    EXPECT_GT(mean_difference(images.front(), images.back()), 0.5) << "nothing moves";
}

// Odd sizes, so that every kind of padding is in play, and fewer rows than loadimage_yuy2_ajust()
// works.
TEST_P(every_surface, samples_are_those_of_bt601) {
    const surface_format &format = *find_surface_format(GetParam());
    for (const int height : {35, 3}) {
        write_file(directory / "ramps.y4m", ramps_y4m(77, height, 1));
        session running(playing(directory / "ramps.y4m", format));
        ASSERT_TRUE(running.advance());
        expect_bt601(running.loaded(), kept_by(format, ramps_420(77, height)));
    }
}

TEST_P(every_surface, targets_agree) {
    for (const std::string packed : {"", "--packed "}) {
        const auto of = [&](const std::string &target) {
            return frames(packed + "--frames 2 --surface " + GetParam() + " --target " + target);
        };
        const std::vector<std::string> targets = target_names();
        const auto narrowest = of(targets.front());
        ASSERT_EQ(narrowest.size(), 2u);
        for (auto target = targets.begin() + 1; target != targets.end(); ++target) {
            const auto images = of(*target);
            ASSERT_EQ(images.size(), narrowest.size());
            for (std::size_t n = 0; n < images.size(); ++n)
                EXPECT_EQ(images[n].samples, narrowest[n].samples) << packed << *target;
        }
    }
}

TEST_P(every_surface, saturation_contrast_and_brightness_are_seen) {
    const std::string clip = "--frames 1 --surface " + GetParam();
    const rgb_image plain = frames(clip).at(0);

    // Chroma stays centred: no saturation is grey, not tinted.
    const rgb_image grey = frames(clip + " --saturation 0").at(0);
    double tint = 0;
    for (std::size_t i = 0; i < grey.samples.size(); i += 3)
        tint += std::abs(grey.samples[i] - grey.samples[i + 1]);
    EXPECT_LT(3 * tint / static_cast<double>(grey.samples.size()), 5.0);

    // Luma too: no contrast is middle grey everywhere.
    const rgb_image flat = frames(clip + " --contrast 0 --saturation 0").at(0);
    EXPECT_NEAR(mean(flat), 130, 10);
    EXPECT_LT(mean_difference(flat, {flat.width, flat.height,
                                     std::vector<unsigned char>(flat.samples.size(), 130)}),
              10);

    EXPECT_GT(mean(frames(clip + " --brightness 40").at(0)), mean(plain) + 20);
    EXPECT_LT(mean(frames(clip + " --brightness -40").at(0)), mean(plain) - 20);
}

TEST_P(every_surface, packed_pictures_look_like_planar_ones) {
    const std::string clip = "--frames 2 --surface " + GetParam();
    const auto planar = frames(clip);
    const auto packed = frames(clip + " --packed");
    ASSERT_EQ(packed.size(), planar.size());
    for (std::size_t n = 0; n < packed.size(); ++n)
        EXPECT_LT(mean_difference(packed[n], planar[n]), 1.0);
    const bool can = loads_packed(*find_surface_format(GetParam()));
    const outcome done = run("--png frames --packed " + clip);
    EXPECT_EQ(done.out.find(", packed,") != std::string::npos, can) << done.out;
}

TEST_P(every_surface, a_change_of_surface_reads_the_picture_anew) {
    write_packed_video(directory / "packed.nut", ramps(64, 32, 32), AV_PIX_FMT_YUYV422,
                       {0, 1, 2, 3});
    session running(playing(directory / "packed.nut", *find_surface_format(GetParam())));
    ASSERT_TRUE(running.advance());
    const auto first = running.loaded().expand();
    for (std::size_t n = 0; n < surface_formats().size(); ++n) {
        running.obey(command::next_surface);
        running.reload();
    }
    EXPECT_EQ(running.loaded().expand(), first);
}

class every_packed_surface : public every_surface {};

INSTANTIATE_TEST_SUITE_P(surfaces, every_packed_surface,
                         testing::ValuesIn(surface_names(loads_packed)), name_of);

// The lower row of each pair shows nothing of its own chroma: the library read the video as it is.
TEST_P(every_packed_surface, packed_videos_are_loaded_as_they_are) {
    const surface_format &format = *find_surface_format(GetParam());
    const samples shown = ramps(77, 35, 35);
    const auto expect_shown = [&](AVPixelFormat order, const std::array<int, 4> &bytes) {
        write_packed_video(directory / "packed.nut", shown, order, bytes);
        session running(playing(directory / "packed.nut", format));
        ASSERT_TRUE(running.advance());
        EXPECT_NE(running.summary().find(", packed,"), std::string::npos) << running.summary();
        expect_bt601(running.loaded(), shown);
    };
    expect_shown(AV_PIX_FMT_YUYV422, {0, 1, 2, 3});
    expect_shown(AV_PIX_FMT_UYVY422, {1, 0, 3, 2});
}

TEST_F(player_test, other_pixel_formats_are_converted) {
    // A PNG is a video of one RGB picture.
    const rgb_image drawn = frames("--frames 1").at(0);
    ASSERT_EQ(run("--png . --frames 1").status, 0);
    const rgb_image again = frames("frame-00001.png").at(0);
    EXPECT_LT(mean_difference(drawn, again), 4.0);
}

TEST_F(player_test, repeats_from_the_start) {
    write_file(directory / "ramps.y4m", ramps_y4m(48, 32, 3));
    const auto images = frames("--repeat --frames 5 ramps.y4m");
    ASSERT_EQ(images.size(), 5u);
    EXPECT_NE(images[0].samples, images[1].samples);
    EXPECT_EQ(images[0].samples, images[3].samples);
    EXPECT_EQ(images[1].samples, images[4].samples);
}

// ---- The window -------------------------------------------------------------------------------

TEST_F(player_test, plays_in_a_window) {
    for (const surface_format &format : surface_formats()) {
        const outcome done =
            run("--frames 5 --surface " + std::string(format.name), "SDL_VIDEODRIVER=dummy");
        EXPECT_EQ(done.status, 0) << done.err;
        EXPECT_EQ(done.err, "");
        EXPECT_NE(done.out.find("5 frames of 640x360 to " + std::string(format.name)),
                  std::string::npos)
            << done.out;
    }
}

// Ramps at so few frames a second; `order` as in y4m().
std::string slow_y4m(char order, int frames, int frames_per_second = 4) {
    std::vector<samples> shown;
    for (int frame = 0; frame < frames; ++frame)
        shown.push_back(ramps_420(48, 32, frame));
    std::string text = y4m(order, shown);
    const std::string rate = "F25:1";
    return text.replace(text.find(rate), rate.size(),
                        "F" + std::to_string(frames_per_second) + ":1");
}

void push_key(SDL_Keycode key) {
    SDL_Event event{};
    event.type = SDL_KEYDOWN;
    event.key.keysym.sym = key;
    SDL_PushEvent(&event);
}

struct keys_pressed {
    std::chrono::milliseconds after; // the start, or those before
    std::vector<SDL_Keycode> keys;
};

double seconds_of_playing(session &running, const std::vector<keys_pressed> &by_user = {}) {
    setenv("SDL_VIDEODRIVER", "dummy", 1);
    display window(48, 32);
    const std::jthread user([&by_user] {
        for (const auto &[after, keys] : by_user) {
            std::this_thread::sleep_for(after);
            std::ranges::for_each(keys, push_key);
        }
    });
    const auto start = std::chrono::steady_clock::now();
    playback(running, window).run();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double seconds_of_playing(const options &chosen) {
    session running(chosen);
    return seconds_of_playing(running);
}

TEST_F(player_test, every_picture_has_its_time_in_the_window) {
    write_file(directory / "one.y4m", slow_y4m('p', 1));
    write_file(directory / "two.y4m", slow_y4m('p', 2));
    const surface_format &format = surface_formats().front();
    EXPECT_GE(seconds_of_playing(playing(directory / "one.y4m", format)), 0.25);
    EXPECT_GE(seconds_of_playing(playing(directory / "two.y4m", format)), 0.5);
    for (const char *name : {"one.y4m", "two.y4m"}) {
        options again = playing(directory / name, format);
        again.repeat = true;
        again.frames = 3;
        EXPECT_GE(seconds_of_playing(again), 0.75);
    }
}

// While the next one, if there is one, has been decoded already.
TEST_F(player_test, keys_change_the_picture_that_is_shown) {
    using namespace std::chrono_literals;
    for (const int pictures : {1, 2}) {
        write_file(directory / "slow.y4m", slow_y4m('p', pictures, 1));
        const options chosen = playing(directory / "slow.y4m", surface_formats().front());
        session running(chosen), brighter(chosen);
        seconds_of_playing(running, {{200ms, {SDLK_UP, SDLK_SPACE, SDLK_ESCAPE}}});
        EXPECT_TRUE(running.is_paused());
        brighter.obey(command::brighter);
        ASSERT_TRUE(brighter.advance());
        EXPECT_EQ(running.loaded().expand(), brighter.loaded().expand()) << "of " << pictures;
    }
}

TEST_F(player_test, a_pause_takes_no_time_from_the_pictures) {
    using namespace std::chrono_literals;
    write_file(directory / "slow.y4m", slow_y4m('p', 3));
    session running(playing(directory / "slow.y4m", surface_formats().front()));
    // 0.75 s of pictures and 0.5 s of a pause, of which a user who is late takes some away.
    EXPECT_GE(seconds_of_playing(running, {{100ms, {SDLK_SPACE}}, {500ms, {SDLK_SPACE}}}), 1.1);
}

TEST_F(player_test, pixels_have_the_shape_that_the_video_tells) {
    setenv("SDL_VIDEODRIVER", "dummy", 1);
    const auto shaped = [this](const std::string &shape) {
        const std::string square = "A1:1";
        std::string text = ramps_y4m(48, 32, 1);
        write_file(directory / "shaped.y4m", text.replace(text.find(square), square.size(), shape));
        return directory / "shaped.y4m";
    };
    const auto widths = [this](const fs::path &file, const surface_format &format,
                               const stretching *by = nullptr) {
        options chosen = playing(file, format);
        chosen.stretch = by;
        session running(chosen);
        EXPECT_TRUE(running.advance());
        return std::pair{running.video().shown_width(), running.loaded().shown_width()};
    };
    const surface_format &yuy2 = *find_surface_format("yuy2");
    EXPECT_EQ(widths(shaped("A8:9"), yuy2), std::pair(43, 43));
    for (const char *unknown : {"A1:1", "A0:0", "A1:1000", "A1000:1"})
        EXPECT_EQ(widths(shaped(unknown), yuy2), std::pair(48, 48)) << unknown;
    const fs::path wide = shaped("A64:45");
    for (const surface_format &format : surface_formats())
        EXPECT_EQ(widths(wide, format), std::pair(68, 68)) << format.name;
    EXPECT_EQ(widths(wide, yuy2, find_stretching("1x2")), std::pair(68, 137));
    EXPECT_EQ(widths(wide, yuy2, find_stretching("2x2")), std::pair(68, 137));

    session running(playing(wide, yuy2));
    ASSERT_TRUE(running.advance());
    display window(48, 32);
    window.show(running.loaded());
    int width = 0, height = 0;
    SDL_RenderGetLogicalSize(SDL_GetRenderer(SDL_GetWindowFromID(1)), &width, &height);
    EXPECT_EQ(std::pair(width, height), std::pair(68, 32));
}

TEST_F(player_test, fields_have_half_the_time_of_a_picture) {
    write_file(directory / "fields.y4m", slow_y4m('t', 1));
    options chosen = playing(directory / "fields.y4m", *find_surface_format("rgb32"));
    for (const bool fields : {false, true}) {
        chosen.interlaced = fields;
        session running(chosen);
        ASSERT_TRUE(running.advance());
        EXPECT_DOUBLE_EQ(running.duration(), fields ? 0.125 : 0.25);
    }
}

TEST_F(player_test, without_a_display_it_writes_pngs_and_says_so) {
    const outcome done = run("", "DISPLAY= SDL_VIDEODRIVER=x11");
    EXPECT_EQ(done.status, 0);
    EXPECT_NE(done.err.find("no display"), std::string::npos) << done.err;
    EXPECT_NE(done.err.find((directory / "lumalane-frames").string()), std::string::npos);
    EXPECT_TRUE(fs::exists(directory / "lumalane-frames" / "frame-00060.png"));
    EXPECT_FALSE(fs::exists(directory / "lumalane-frames" / "frame-00061.png"));
}

TEST_F(player_test, without_a_display_it_writes_as_many_pngs_as_it_is_told) {
    write_file(directory / "ramps.y4m", ramps_y4m(48, 32, 63));
    const outcome done = run("--frames 62 ramps.y4m", "DISPLAY= SDL_VIDEODRIVER=x11");
    EXPECT_EQ(done.status, 0);
    EXPECT_NE(done.err.find("up to 62 frames"), std::string::npos) << done.err;
    EXPECT_TRUE(fs::exists(directory / "lumalane-frames" / "frame-00062.png"));
    EXPECT_FALSE(fs::exists(directory / "lumalane-frames" / "frame-00063.png"));
}

TEST_F(player_test, keys_reach_the_session) {
    setenv("SDL_VIDEODRIVER", "dummy", 1);
    session running(playing(LUMALANE_PLAYER_CLIP, surface_formats().front()));
    display window(64, 48);
    const auto press = [&](SDL_Keycode key) {
        push_key(key);
        const auto wish = window.wait(std::chrono::seconds(1));
        if (wish)
            running.obey(*wish);
        return running.describe();
    };
    const std::string before = running.describe();
    EXPECT_EQ(press(SDLK_x), before);
    EXPECT_NE(press(SDLK_UP).find("brightness 5"), std::string::npos);
    EXPECT_NE(press(SDLK_LEFT).find("contrast 95 %"), std::string::npos);
    EXPECT_NE(press(SDLK_PAGEUP).find("saturation 105 %"), std::string::npos);
    EXPECT_EQ(press(SDLK_HOME), before);
    for (std::size_t n = 1; n < surface_formats().size(); ++n)
        EXPECT_EQ(press(SDLK_s).find(surface_formats()[n].name), 0u);
    EXPECT_EQ(press(SDLK_s), before);
    std::string seen;
    for (std::size_t n = 0; n < target_names().size(); ++n)
        seen += press(SDLK_k) + ";";
    for (const std::string &target : target_names())
        EXPECT_NE(seen.find(", " + target + ";"), std::string::npos) << target;
    EXPECT_EQ(running.describe(), before);
}

// ---- The command line -------------------------------------------------------------------------

TEST_F(player_test, help_tells_surfaces_options_and_keys) {
    const outcome done = run("--help");
    EXPECT_EQ(done.status, 0);
    EXPECT_EQ(done.err, "");
    for (const surface_format &format : surface_formats())
        EXPECT_NE(done.out.find(format.name), std::string::npos) << format.name;
    for (const char *option :
         {"--frames", "--surface", "--target", "--brightness", "--contrast", "--saturation",
          "--png", "--packed", "--repeat", "--subtitles", "--dump-subpicture", "--interlaced",
          "--stretch", "--field", "--compare-stretch", "--menu", "--help", "Space"})
        EXPECT_NE(done.out.find(option), std::string::npos) << option;
}

TEST_F(player_test, names_are_taken_in_any_case) {
    const std::string target = target_names().front();
    std::string upper = target;
    std::ranges::transform(upper, upper.begin(),
                           [](char c) { return static_cast<char>(std::toupper(c)); });
    const auto shown = [&](const std::string &arguments) {
        return frames("--frames 1 " + arguments).at(0).samples;
    };
    EXPECT_EQ(shown("--surface YUY2 --stretch EDGE"), shown("--surface yuy2 --stretch edge"));
    EXPECT_EQ(shown("--field --surface RGB24"), shown("--field --surface rgb24"));
    EXPECT_NE(run("--png frames --frames 1 --target " + upper).out.find("(" + target + ")"),
              std::string::npos);
}

TEST_F(player_test, wrong_arguments_are_refused) {
    expect_refused("--surface mauve", "mauve");
    expect_refused("--target none", "none");
    expect_refused("--frames 0", "--frames");
    expect_refused("--contrast 201", "--contrast");
    expect_refused("--dump-subpicture views", "--subtitles");
    expect_refused("--what", "--what");
}

TEST_F(player_test, files_that_are_no_video_are_refused) {
    expect_refused("missing.mp4", "missing.mp4: No such file");
    expect_refused(".", "Is a directory");
    write_file(directory / "empty.mp4", "");
    expect_refused("empty.mp4", "not a video");
    write_file(directory / "text.mp4", std::string(5000, 'a'));
    expect_refused("text.mp4", "not a video");
}

TEST_F(player_test, a_file_without_video_is_refused) {
    const auto word = [](unsigned value, int bytes) {
        std::string text;
        for (; bytes > 0; --bytes, value >>= 8)
            text += static_cast<char>(value & 255);
        return text;
    };
    const std::string silence(16000, '\0');
    write_file(directory / "sound.wav", "RIFF" + word(36 + 16000, 4) + "WAVEfmt " + word(16, 4) +
                                            word(1, 2) + word(1, 2) + word(8000, 4) +
                                            word(16000, 4) + word(2, 2) + word(16, 2) + "data" +
                                            word(16000, 4) + silence);
    expect_refused("sound.wav --png frames", "no video");
}

TEST_F(player_test, a_truncated_file_is_refused) {
    const std::string clip = read_file(LUMALANE_PLAYER_CLIP);
    write_file(directory / "cut.mp4", clip.substr(0, clip.size() / 100));
    expect_refused("cut.mp4 --png frames", "cut.mp4: ");
    // After most of its pictures.
    write_file(directory / "cut.mp4", clip.substr(0, clip.size() * 99 / 100));
    const options chosen = playing(directory / "cut.mp4", surface_formats().front());
    const auto play = [&chosen] {
        for (session running(chosen); running.advance();)
            continue;
    };
    EXPECT_THROW(play(), failure);
}

// Matroska does not tell how long its last picture is to be shown, and libavformat's guess may be
// short.
TEST_F(player_test, matroska_files_are_shown_to_their_ends) {
    const std::vector<unsigned char> grey(2 * 32 * 8, 128);
    for (const auto &durations : {std::vector<int>{100, 30, 70, 200, 500, 40, 40, 300, 20, 700},
                                  {100, 100, 100, 100, 100, 100, 500},
                                  {1000, 1000, 1000, 1000}}) {
        write_raw_video(directory / "whole.mkv", "matroska", grey, 32, 8, AV_PIX_FMT_YUYV422,
                        durations);
        session running(playing(directory / "whole.mkv", surface_formats().front()));
        std::size_t pictures = 0;
        while (running.advance())
            ++pictures;
        EXPECT_EQ(pictures, durations.size());
    }
}

TEST_F(player_test, a_damaged_file_is_refused) {
    std::string clip = read_file(LUMALANE_PLAYER_CLIP);
    for (std::size_t at = clip.size() / 2; at < clip.size() / 2 + 4000; ++at)
        clip[at] = static_cast<char>(at * 37);
    write_file(directory / "damaged.mp4", clip);
    expect_refused("damaged.mp4 --png frames", "damaged.mp4: ");
}

TEST_F(player_test, a_directory_that_cannot_be_made_is_refused) {
    write_file(directory / "taken", "");
    expect_refused("--png taken/frames", "taken/frames");
}

} // namespace
