// What the player's tests have in common: a directory of their own, and the player as a program.
#pragma once

#include "examples/player/options.h"
#include "examples/player/surface.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <png.h>
#include <string>
#include <sys/wait.h>
#include <vector>

namespace player {

namespace fs = std::filesystem;

inline std::string read_file(const fs::path &file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

inline void write_file(const fs::path &file, const std::string &bytes) {
    std::ofstream(file, std::ios::binary) << bytes;
}

struct rgb_image {
    int width = 0;
    int height = 0;
    std::vector<unsigned char> samples; // R, G, B
};

inline rgb_image read_png(const fs::path &file) {
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

inline std::uint64_t checksum(const std::vector<rgb_image> &images) {
    std::uint64_t sum = 0xcbf29ce484222325; // FNV-1a
    for (const rgb_image &image : images)
        for (const unsigned char sample : image.samples)
            sum = (sum ^ sample) * 0x100000001b3;
    return sum;
}

// Of two pictures of one size, from sample to sample.
inline double mean_difference(const std::vector<unsigned char> &a,
                              const std::vector<unsigned char> &b) {
    EXPECT_EQ(a.size(), b.size());
    double sum = 0;
    for (std::size_t i = 0; i < a.size(); ++i)
        sum += std::abs(a[i] - b[i]);
    return sum / static_cast<double>(a.size());
}

inline double mean_difference(const rgb_image &a, const rgb_image &b) {
    return mean_difference(a.samples, b.samples);
}

// ---- Videos without compression, so that their samples are known ------------------------------

// A grey frame: the luma of its rows, and the chroma.
template <class LumaOf>
std::string grey_rows(int width, int height, LumaOf luma_of) {
    std::string samples;
    for (int row = 0; row < height; ++row)
        samples.append(width, static_cast<char>(luma_of(row)));
    const int chroma = (width + 1) / 2 * ((height + 1) / 2);
    return samples.append(2 * chroma, static_cast<char>(128));
}

// `order` is p for whole frames, t or b for fields of which the top or the bottom one comes first.
inline std::string y4m(int width, int height, char order, const std::vector<std::string> &frames) {
    std::string text = "YUV4MPEG2 W" + std::to_string(width) + " H" + std::to_string(height) +
                       " F25:1 I" + order + " A1:1 C420jpeg\n";
    for (const std::string &frame : frames)
        text += "FRAME\n" + frame;
    return text;
}

// ---- The tests --------------------------------------------------------------------------------

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

// For suites with a case per surface: the names of those that fit, which may be the names of tests.
inline std::vector<std::string> surface_names(bool (*fits)(const surface_format &)) {
    std::vector<std::string> names;
    for (const surface_format &format : surface_formats())
        if (fits(format))
            names.emplace_back(format.name);
    return names;
}

inline std::vector<std::string> all_surface_names() {
    return surface_names([](const surface_format &) { return true; });
}

inline std::string name_of(const testing::TestParamInfo<std::string> &each) { return each.param; }

} // namespace player
