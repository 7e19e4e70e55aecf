// What the player's tests have in common: pictures whose samples are known, a directory of their
// own, and the player as a program.
#pragma once

#include "examples/player/canvas.h"
#include "examples/player/options.h"
#include "examples/player/picture.h"
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

inline std::uint64_t checksum(const std::vector<unsigned char> &bytes) {
    std::uint64_t sum = 0xcbf29ce484222325; // FNV-1a
    for (const unsigned char byte : bytes)
        sum = (sum ^ byte) * 0x100000001b3;
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

// ---- Pictures whose samples are known ---------------------------------------------------------

// 4:2:2 if chroma has as many rows as luma, else 4:2:0.
struct samples {
    int width, height, chroma_height;
    std::vector<unsigned char> y, u, v;

    int chroma_width() const { return (width + 1) / 2; }
};

inline samples ramps(int width, int height, int chroma_height, int frame = 0) {
    const auto plane = [frame](int columns, int rows, int across, int down) {
        std::vector<unsigned char> filled;
        for (int row = 0; row < rows; ++row)
            for (int column = 0; column < columns; ++column)
                filled.push_back(static_cast<unsigned char>(
                    16 + (column * across + row * down + frame * 8) % 220));
        return filled;
    };
    const int chroma_width = (width + 1) / 2;
    return {width,
            height,
            chroma_height,
            plane(width, height, 3, 5),
            plane(chroma_width, chroma_height, 7, 52),
            plane(chroma_width, chroma_height, 1, 39)};
}

inline samples ramps_420(int width, int height, int frame = 0) {
    return ramps(width, height, (height + 1) / 2, frame);
}

// The luma of the rows, and the chroma of all; 4:2:0.
template <class LumaOf>
samples uniform_rows(int width, int height, LumaOf luma_of, unsigned char u = 128,
                     unsigned char v = 128) {
    samples made{width, height, (height + 1) / 2, {}, {}, {}};
    for (int row = 0; row < height; ++row)
        made.y.insert(made.y.end(), width, static_cast<unsigned char>(luma_of(row)));
    made.u.assign(made.chroma_width() * made.chroma_height, u);
    made.v.assign(made.chroma_width() * made.chroma_height, v);
    return made;
}

// The rows of one field are black, those of the other white.
inline int black_and_white_fields(int row) { return row % 2 ? 235 : 16; }

// 4:2:0.
inline picture picture_of(const samples &from) {
    picture made;
    made.assign(from.width, from.height, {from.y.data(), from.width},
                {from.u.data(), from.chroma_width()}, {from.v.data(), from.chroma_width()});
    return made;
}

// A video without compression, 4:2:0. `order` is p for whole frames, t or b for fields of which the
// top or the bottom one comes first.
inline std::string y4m(char order, const std::vector<samples> &frames) {
    std::string text = "YUV4MPEG2 W" + std::to_string(frames.front().width) + " H" +
                       std::to_string(frames.front().height) + " F25:1 I" + order +
                       " A1:1 C420jpeg\n";
    for (const samples &frame : frames) {
        text += "FRAME\n";
        for (const auto *plane : {&frame.y, &frame.u, &frame.v})
            text.append(plane->begin(), plane->end());
    }
    return text;
}

// A rectangle that is covered everywhere alike.
inline void lay(canvas &on, int x, int y, int width, int height, canvas::pixel colour,
                int coverage = 255) {
    const std::vector<unsigned char> all(static_cast<std::size_t>(width) * height,
                                         static_cast<unsigned char>(coverage));
    on.lay({all.data(), width, x, y, width, height}, colour);
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
