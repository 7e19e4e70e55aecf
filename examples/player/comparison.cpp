#include "examples/player/comparison.h"

#include "examples/player/adjustment.h"
#include "examples/player/canvas.h"
#include "examples/player/menu.h"
#include "examples/player/png_file.h"
#include "examples/player/surface.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace player {
namespace {

// The edge-directed stretch leaves out the first and the last 16 pixels of a row; those and more
// are around what is shown.
constexpr int width = 128;
constexpr int height = 128;
constexpr int left = (width - compared_width) / 2;
constexpr int top = (height - compared_height) / 2;

// A wheel of spokes: edges of every slope. Smooth, as a camera's picture is.
std::vector<unsigned char> draw_wheel() {
    constexpr int spokes = 14;
    constexpr int parts = 8; // of a pixel, each way
    constexpr int middle_column = width / 2, middle_row = height / 2;
    std::vector<unsigned char> y;
    for (int row = 0; row < height; ++row) {
        for (int column = 0; column < width; ++column) {
            int lit = 0;
            for (int part = 0; part < parts * parts; ++part) {
                const int part_column = part % parts, part_row = part / parts;
                const double across = column - middle_column + (part_column + 0.5) / parts;
                const double down = row - middle_row + (part_row + 0.5) / parts;
                const double turn = std::atan2(down, across) / (2 * std::numbers::pi) + 1;
                lit += std::fmod(turn * spokes + 0.25, 1) < 0.5;
            }
            y.push_back(static_cast<unsigned char>(40 + 180 * lit / (parts * parts)));
        }
    }
    return y;
}

// Every so many rows of the wheel, the others left out.
picture wheel(int every) {
    static const std::vector<unsigned char> y = draw_wheel();
    static const std::vector<unsigned char> chroma(width / 2 * height / 2, 128);
    picture drawn;
    drawn.assign(width, height / every, {y.data(), every * width}, {chroma.data(), width / 2},
                 {chroma.data(), width / 2});
    return drawn;
}

// The compared part of what was loaded, every row so many times.
std::vector<unsigned char> part_of(const surface &loaded, int times = 1) {
    const std::vector<unsigned char> all = loaded.expand();
    std::vector<unsigned char> part;
    for (int row = top; row < top + compared_height; ++row) {
        const auto from = all.begin() + 3 * (row / times * width + left);
        part.insert(part.end(), from, from + 3 * compared_width);
    }
    return part;
}

constexpr int zoom = 3;
constexpr int panel_width = zoom * compared_width;
constexpr int panel_height = zoom * compared_height;
constexpr int gap = 6; // pixels

// In the box of the menu, which is made for this many rows.
canvas draw_label(const char *text) {
    constexpr int rows = 360;
    canvas drawn(panel_width, rows);
    menu label;
    label.say({text});
    label.render(0, panel_width, rows);
    label.lay(drawn);
    return drawn;
}

} // namespace

std::vector<doubled_field> compare_stretches() {
    adjustment().apply();
    const surface_format &four_tap = *find_surface_format("yuy2");
    // The adjusting function has four taps, the plain one averages.
    surface_format averaging = four_tap;
    averaging.functions.load_1x2 = strech_picture_1X2_yuy2;

    picture frame = wheel(1);
    picture field = wheel(2);
    const auto stretched = [&field](const surface_format &into, const char *by) {
        surface filled;
        filled.load(field, into, *find_stretching(by));
        return part_of(filled);
    };
    surface whole, half;
    whole.load(frame, four_tap);
    half.load(field, four_tap);
    return {{"Frame", part_of(whole)},
            {"Line doubling", part_of(half, 2)},
            {"Averaging", stretched(averaging, "1x2")},
            {"Four-tap", stretched(four_tap, "1x2")},
            {"Edge-directed", stretched(four_tap, "edge")}};
}

void write_comparison(const std::filesystem::path &file) {
    std::vector<doubled_field> ways = compare_stretches();
    ways.erase(ways.begin()); // the frame
    const int columns = static_cast<int>(ways.size()) * (panel_width + gap) - gap;
    std::vector<unsigned char> rgb(static_cast<std::size_t>(columns) * panel_height * 3, 255);
    int panel_left = 0;
    for (const doubled_field &way : ways) {
        const canvas label = draw_label(way.label);
        for (int row = 0; row < panel_height; ++row) {
            for (int column = 0; column < panel_width; ++column) {
                const canvas::pixel above = label.at(column, row);
                const unsigned char channels[] = {above.red, above.green, above.blue};
                const int from = 3 * (row / zoom * compared_width + column / zoom);
                const int to = 3 * (row * columns + panel_left + column);
                for (int channel = 0; channel < 3; ++channel)
                    rgb[to + channel] = static_cast<unsigned char>(
                        (channels[channel] * above.alpha +
                         way.rgb[from + channel] * (255 - above.alpha) + 127) /
                        255);
            }
        }
        panel_left += panel_width + gap;
    }
    write_png(file, columns, panel_height, rgb);
}

} // namespace player
