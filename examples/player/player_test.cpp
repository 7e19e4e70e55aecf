// The player from outside, as a user runs it, and its parts where a picture is judged by samples.

#include "examples/player/adjustment.h"
#include "examples/player/display.h"
#include "examples/player/lanes.h"
#include "examples/player/session.h"
#include "examples/player/surface.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <png.h>
#include <sys/wait.h>

namespace {

using namespace player;
namespace fs = std::filesystem;

std::string read_file(const fs::path &file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

void write_file(const fs::path &file, const std::string &bytes) {
    std::ofstream(file, std::ios::binary) << bytes;
}

struct rgb_image {
    int width = 0;
    int height = 0;
    std::vector<unsigned char> samples; // R, G, B
};

rgb_image read_png(const fs::path &file) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    EXPECT_TRUE(png_image_begin_read_from_file(&image, file.c_str())) << image.message;
    image.format = PNG_FORMAT_RGB;
    rgb_image read{static_cast<int>(image.width), static_cast<int>(image.height), {}};
    read.samples.resize(PNG_IMAGE_SIZE(image));
    EXPECT_TRUE(png_image_finish_read(&image, nullptr, read.samples.data(), 0, nullptr))
        << image.message;
    return read;
}

double mean_difference(const rgb_image &a, const rgb_image &b) {
    EXPECT_EQ(a.samples.size(), b.samples.size());
    double sum = 0;
    for (std::size_t i = 0; i < a.samples.size(); ++i)
        sum += std::abs(a.samples[i] - b.samples[i]);
    return sum / static_cast<double>(a.samples.size());
}

double mean(const rgb_image &image) {
    double sum = 0;
    for (const unsigned char sample : image.samples)
        sum += sample;
    return sum / static_cast<double>(image.samples.size());
}

// A video without compression, so that its samples are known: a ramp in every plane.
std::string y4m(int width, int height, int frames) {
    std::string text = "YUV4MPEG2 W" + std::to_string(width) + " H" + std::to_string(height) +
                       " F25:1 Ip A1:1 C420jpeg\n";
    const auto plane = [&text](int columns, int rows, int across, int down, int frame) {
        for (int row = 0; row < rows; ++row)
            for (int column = 0; column < columns; ++column)
                text += static_cast<char>(16 + (column * across + row * down + frame * 8) % 220);
    };
    for (int frame = 0; frame < frames; ++frame) {
        text += "FRAME\n";
        plane(width, height, 3, 5, frame);
        plane((width + 1) / 2, (height + 1) / 2, 7, 2, frame);
        plane((width + 1) / 2, (height + 1) / 2, 1, 9, frame);
    }
    return text;
}

class player_test : public testing::Test {
protected:
    player_test() {
        std::string name = (fs::temp_directory_path() / "lumalane-player-XXXXXX").string();
        directory = mkdtemp(name.data());
    }
    ~player_test() override { fs::remove_all(directory); }

    struct outcome {
        int status; // of the exit; -1 after a signal
        std::string out, err;
    };

    // Runs the player in the test's directory. `environment` stands before the command.
    outcome run(const std::string &arguments, const std::string &environment = "") const {
        const std::string line = "cd '" + directory.string() + "' && " + environment +
                                 " '" LUMALANE_PLAYER "' " + arguments + " >out 2>err </dev/null";
        const int status = std::system(line.c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, read_file(directory / "out"),
                read_file(directory / "err")};
    }

    std::vector<rgb_image> frames(const std::string &arguments) const {
        const outcome done = run("--png frames " + arguments);
        EXPECT_EQ(done.status, 0) << done.err;
        EXPECT_EQ(done.err, "");
        std::vector<rgb_image> images;
        for (int number = 1;; ++number) {
            char name[32];
            std::snprintf(name, sizeof name, "frame-%05d.png", number);
            if (!fs::exists(directory / "frames" / name))
                break;
            images.push_back(read_png(directory / "frames" / name));
        }
        fs::remove_all(directory / "frames");
        return images;
    }

    void expect_refused(const std::string &arguments, const std::string &saying) const {
        const outcome done = run(arguments);
        EXPECT_GT(done.status, 0);
        EXPECT_NE(done.err.find(saying), std::string::npos) << done.err;
        EXPECT_EQ(std::ranges::count(done.err, '\n'), 1) << done.err;
    }

    options playing(const fs::path &file, const surface_format &format) const {
        options chosen;
        chosen.file = file.string();
        chosen.surface = &format;
        return chosen;
    }

    fs::path directory;
};

// ---- Pictures ---------------------------------------------------------------------------------

class every_surface : public player_test, public testing::WithParamInterface<std::string> {};

std::vector<std::string> surface_names() {
    std::vector<std::string> names;
    for (const surface_format &format : surface_formats())
        names.emplace_back(format.name);
    return names;
}

INSTANTIATE_TEST_SUITE_P(surfaces, every_surface, testing::ValuesIn(surface_names()),
                         [](const auto &each) { return each.param; });

TEST_P(every_surface, the_clip_becomes_moving_pictures_like_those_of_rgb32) {
    const auto images = frames("--frames 9 --surface " + GetParam());
    const auto plain = frames("--frames 9 --surface rgb32");
    ASSERT_EQ(images.size(), 9u);
    ASSERT_EQ(plain.size(), 9u);
    for (std::size_t n = 0; n < images.size(); ++n) {
        EXPECT_EQ(images[n].width, 640);
        EXPECT_EQ(images[n].height, 360);
        const auto [least, most] = std::ranges::minmax(images[n].samples);
        EXPECT_GT(most - least, 100) << "uniform";
        // Fewer bits only drop what is below them: 16 levels of blue in the coarsest layout.
        EXPECT_LT(mean_difference(images[n], plain[n]), 4.0);
    }
    EXPECT_GT(mean_difference(images.front(), images.back()), 0.5) << "nothing moves";
}

// Odd sizes, so that every kind of padding is in play.
TEST_P(every_surface, samples_are_those_of_bt601) {
    const surface_format &format = *find_surface_format(GetParam());
    const int width = 77, height = 35;
    const std::string video = y4m(width, height, 1);
    write_file(directory / "ramps.y4m", video);
    session running(playing(directory / "ramps.y4m", format));
    ASSERT_TRUE(running.advance());
    ASSERT_EQ(running.loaded().width(), width);
    ASSERT_EQ(running.loaded().height(), height);
    const std::vector<unsigned char> rgb = running.loaded().expand();

    const auto *y = reinterpret_cast<const unsigned char *>(video.data()) + video.find("FRAME\n") +
                    std::string("FRAME\n").size();
    const int chroma_width = (width + 1) / 2;
    const unsigned char *u = y + width * height;
    const unsigned char *v = u + chroma_width * ((height + 1) / 2);
    for (int row = 0; row < height; ++row) {
        for (int column = 0; column < width; ++column) {
            const int chroma = row / 2 * chroma_width + column / 2;
            const double luma = 1.164383 * (y[row * width + column] - 16);
            const double expected[] = {luma + 1.596027 * (v[chroma] - 128),
                                       luma - 0.391762 * (u[chroma] - 128) -
                                           0.812968 * (v[chroma] - 128),
                                       luma + 2.017232 * (u[chroma] - 128)};
            for (int channel = 0; channel < 3; ++channel) {
                // The library cuts off each product, then the bits that the surface lacks.
                const double tolerance = 4 + (256 >> format.bits[channel]);
                ASSERT_NEAR(rgb[(row * width + column) * 3 + channel],
                            std::clamp(expected[channel], 0.0, 255.0), tolerance)
                    << "row " << row << ", column " << column << ", channel " << channel;
            }
        }
    }
}

TEST_P(every_surface, lane_sets_agree) {
    const auto of = [&](const std::string &lanes) {
        return frames("--frames 2 --surface " + GetParam() + " --lanes " + lanes);
    };
    const auto portable = of("portable");
    for (const std::string &lanes : lane_set_names()) {
        const auto images = of(lanes);
        ASSERT_EQ(images.size(), portable.size());
        for (std::size_t n = 0; n < images.size(); ++n)
            EXPECT_EQ(images[n].samples, portable[n].samples) << lanes;
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

TEST_F(player_test, other_pixel_formats_are_converted) {
    // A PNG is a video of one RGB picture.
    const rgb_image drawn = frames("--frames 1").at(0);
    ASSERT_EQ(run("--png . --frames 1").status, 0);
    const rgb_image again = frames("frame-00001.png").at(0);
    EXPECT_LT(mean_difference(drawn, again), 4.0);
}

TEST_F(player_test, repeats_from_the_start) {
    write_file(directory / "ramps.y4m", y4m(48, 32, 3));
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

TEST_F(player_test, without_a_display_it_writes_pngs_and_says_so) {
    const outcome done = run("", "DISPLAY= SDL_VIDEODRIVER=x11");
    EXPECT_EQ(done.status, 0);
    EXPECT_NE(done.err.find("no display"), std::string::npos) << done.err;
    EXPECT_NE(done.err.find((directory / "lumalane-frames").string()), std::string::npos);
    EXPECT_TRUE(fs::exists(directory / "lumalane-frames" / "frame-00060.png"));
    EXPECT_FALSE(fs::exists(directory / "lumalane-frames" / "frame-00061.png"));
}

TEST_F(player_test, keys_reach_the_session) {
    setenv("SDL_VIDEODRIVER", "dummy", 1);
    session running(playing(LUMALANE_PLAYER_CLIP, surface_formats().front()));
    display window(64, 48);
    const auto press = [&](SDL_Keycode key) {
        SDL_Event event{};
        event.type = SDL_KEYDOWN;
        event.key.keysym.sym = key;
        SDL_PushEvent(&event);
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
    std::string lanes_seen;
    for (std::size_t n = 0; n < lane_set_names().size(); ++n)
        lanes_seen += press(SDLK_l) + ";";
    for (const std::string &lanes : lane_set_names())
        EXPECT_NE(lanes_seen.find(", " + lanes + ";"), std::string::npos) << lanes;
    EXPECT_EQ(running.describe(), before);
}

// ---- The command line -------------------------------------------------------------------------

TEST_F(player_test, help_tells_surfaces_options_and_keys) {
    const outcome done = run("--help");
    EXPECT_EQ(done.status, 0);
    EXPECT_EQ(done.err, "");
    for (const surface_format &format : surface_formats())
        EXPECT_NE(done.out.find(format.name), std::string::npos) << format.name;
    for (const char *option : {"--frames", "--surface", "--lanes", "--brightness", "--contrast",
                               "--saturation", "--png", "--repeat", "--help", "Space"})
        EXPECT_NE(done.out.find(option), std::string::npos) << option;
}

TEST_F(player_test, wrong_arguments_are_refused) {
    expect_refused("--surface mauve", "mauve");
    expect_refused("--lanes none", "none");
    expect_refused("--frames 0", "--frames");
    expect_refused("--contrast 201", "--contrast");
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
    for (const std::size_t percent : {1, 50, 99}) {
        write_file(directory / "cut.mp4", clip.substr(0, clip.size() * percent / 100));
        expect_refused("cut.mp4 --png frames", "cut.mp4: ");
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
