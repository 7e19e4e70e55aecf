// A subpicture: drawn on a canvas, prepared by the library, and seen again.

#include "examples/player/canvas.h"
#include "examples/player/failure.h"
#include "examples/player/fixture.h"
#include "examples/player/menu.h"
#include "examples/player/subpicture.h"
#include "examples/player/subtitles.h"

#include <cmath>

namespace {

using namespace player;

// ---- Canvas -----------------------------------------------------------------------------------

void expect_pixel(canvas::pixel seen, canvas::pixel expected) {
    EXPECT_EQ(seen.red, expected.red);
    EXPECT_EQ(seen.green, expected.green);
    EXPECT_EQ(seen.blue, expected.blue);
    EXPECT_EQ(seen.alpha, expected.alpha);
}

TEST(canvas, keeps_the_colour_where_coverage_is_partial) {
    canvas drawn(16, 2);
    EXPECT_TRUE(drawn.is_empty());
    lay(drawn, 3, 1, 2, 1, {200, 100, 50, 255}, 51);
    expect_pixel(drawn.at(3, 1), {200, 100, 50, 51});
    expect_pixel(drawn.at(5, 1), {0, 0, 0, 0});
    expect_pixel(drawn.at(3, 0), {0, 0, 0, 0});
    EXPECT_FALSE(drawn.is_empty());
    drawn.clear();
    EXPECT_TRUE(drawn.is_empty());
}

TEST(canvas, lays_shapes_over_one_another) {
    canvas drawn(16, 2);
    lay(drawn, 0, 0, 4, 1, {200, 0, 0, 255});
    lay(drawn, 0, 0, 1, 1, {0, 100, 0, 255});     // opaque: hides
    lay(drawn, 1, 0, 1, 1, {0, 100, 0, 255}, 51); // a fifth covered
    lay(drawn, 2, 0, 1, 1, {0, 100, 0, 51});      // a fifth opaque: the same
    lay(drawn, 3, 0, 1, 1, {0, 100, 0, 255}, 0);  // nothing
    expect_pixel(drawn.at(0, 0), {0, 100, 0, 255});
    expect_pixel(drawn.at(1, 0), {160, 20, 0, 255});
    expect_pixel(drawn.at(2, 0), {160, 20, 0, 255});
    expect_pixel(drawn.at(3, 0), {200, 0, 0, 255});
}

// ---- Subpicture -------------------------------------------------------------------------------

constexpr int width = 32;
constexpr int height = 16;

// Not on the edge of a group of 8, a pair or a block.
constexpr int left = 11;
constexpr int top = 5;
constexpr int columns = 10;
constexpr int rows = 6;

bool is_drawn_on(int x, int y) {
    return x >= left && x < left + columns && y >= top && y < top + rows;
}

// A rectangle there, prepared.
subpicture with_rectangle(canvas::pixel colour, int coverage = 255) {
    canvas drawing(width, height);
    lay(drawing, left, top, columns, rows, colour, coverage);
    subpicture prepared(width, height);
    prepared.prepare(drawing);
    return prepared;
}

std::vector<int> rgb_at(const std::vector<unsigned char> &view, int x, int y) {
    const auto pixel = view.begin() + 3 * (y * width + x);
    return {pixel, pixel + 3};
}

const std::vector<int> key{255, 0, 255};

class every_colour : public testing::TestWithParam<canvas::pixel> {};

INSTANTIATE_TEST_SUITE_P(colours, every_colour,
                         testing::Values(canvas::pixel{255, 255, 255, 255},
                                         canvas::pixel{0, 0, 0, 255}, canvas::pixel{255, 0, 0, 255},
                                         canvas::pixel{20, 200, 60, 255},
                                         canvas::pixel{10, 40, 230, 255},
                                         canvas::pixel{255, 0, 255, 255})); // the key's

TEST_P(every_colour, comes_back_from_the_planes) {
    subpicture prepared = with_rectangle(GetParam());
    const auto painted = prepared.view_painted_back();
    const int expected[] = {GetParam().red, GetParam().green, GetParam().blue};
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            if (!is_drawn_on(x, y)) {
                EXPECT_EQ(rgb_at(painted, x, y), key) << x << ", " << y;
                continue;
            }
            for (int channel = 0; channel < 3; ++channel)
                EXPECT_NEAR(rgb_at(painted, x, y)[channel], expected[channel], 6)
                    << x << ", " << y << ", channel " << channel;
        }
    }
}

// A mix may take the chroma of a block from any of its rows.
TEST_P(every_colour, reaches_the_chroma_of_every_block_that_it_touches) {
    subpicture prepared = with_rectangle(GetParam());
    const tagMIX_INFO mix = prepared.record();
    const auto chroma_at = [&](int x, int y) {
        const int at = y * mix.sub_pitch / 2 + x / 2;
        return std::pair{mix.sub_u[at], mix.sub_v[at]};
    };
    for (int y = top / 2 * 2; y < top + rows + 1; ++y)
        for (int x = left / 2 * 2; x < left + columns + 1; x += 2)
            EXPECT_EQ(chroma_at(x, y), chroma_at(left + 2, top)) << x << ", " << y;
}

TEST(subpicture, the_drawing_is_the_key_and_the_colours) {
    canvas drawing(width, height);
    lay(drawing, left, top, columns, rows, {200, 100, 50, 255});
    const auto view = subpicture(width, height).view_drawing(drawing);
    EXPECT_EQ(rgb_at(view, left, top), (std::vector{200, 100, 50}));
    EXPECT_EQ(rgb_at(view, left + columns + 1, top), key);
    EXPECT_EQ(rgb_at(view, width - 1, height - 1), key);
}

TEST(subpicture, alpha_runs_from_0_to_16) {
    for (int alpha = 0; alpha < 256; ++alpha) {
        subpicture prepared = with_rectangle({0, 0, 0, 255}, alpha);
        const auto expected = std::lround(alpha * 16 / 255.0);
        const tagMIX_INFO mix = prepared.record();
        const auto view = prepared.view_alpha();
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                const auto here = is_drawn_on(x, y) ? expected : 0;
                ASSERT_EQ(mix.alpha_plane[y * mix.sub_pitch + x], here) << x << ", " << y;
                ASSERT_EQ(rgb_at(view, x, y)[0], here * 255 / 16) << x << ", " << y;
            }
        }
    }
}

TEST(subpicture, nothing_stays_of_the_one_before) {
    canvas drawing(width, height);
    subpicture prepared(width, height);
    lay(drawing, 0, 0, width, height, {255, 255, 255, 255});
    prepared.prepare(drawing);
    drawing.clear();
    lay(drawing, left, top, columns, rows, {0, 200, 0, 255});
    prepared.prepare(drawing);
    const auto painted = prepared.view_painted_back();
    EXPECT_EQ(rgb_at(painted, 0, 0), key);
    EXPECT_EQ(rgb_at(painted, left - 1, top), key);
    EXPECT_LT(rgb_at(painted, left, top)[0], 20);
}

// ---- Subtitles --------------------------------------------------------------------------------

class subtitle_test : public player_test {
protected:
    void write_srt(const std::string &text) const {
        write_file(directory / "text.srt", "1\n00:00:01,000 --> 00:00:02,000\n" + text + "\n\n");
    }

    void expect_failure(const fs::path &file, const std::string &saying) const {
        try {
            subtitles unreadable(file);
            FAIL() << file << " was read";
        } catch (const failure &wrong) {
            const std::string line = wrong.what();
            EXPECT_EQ(line.find(file.string() + ": "), 0u) << line;
            EXPECT_NE(line.find(saying), std::string::npos) << line;
        }
    }
};

TEST_F(subtitle_test, are_seen_in_their_time) {
    write_srt("Tulips");
    subtitles text(directory / "text.srt");
    const auto seen = [&text] {
        canvas drawing(640, 360);
        text.lay(drawing);
        return !drawing.is_empty();
    };
    text.render(0.9, 640, 360);
    EXPECT_FALSE(seen());
    EXPECT_TRUE(text.render(1.1, 640, 360));
    EXPECT_TRUE(seen());
    EXPECT_FALSE(text.render(1.5, 640, 360));
    EXPECT_TRUE(seen());
    EXPECT_TRUE(text.render(2.1, 640, 360));
    EXPECT_FALSE(seen());
}

TEST_F(subtitle_test, have_colours_and_a_place) {
    write_srt("<font color=\"#ff0000\">WWWWWW</font>");
    subtitles text(directory / "text.srt");
    text.render(1.5, 640, 360);
    canvas drawing(640, 360);
    text.lay(drawing);
    int red = 0;
    for (int y = 0; y < 360; ++y) {
        for (int x = 0; x < 640; ++x) {
            const canvas::pixel seen = drawing.at(x, y);
            EXPECT_TRUE(y >= 180 || seen.alpha == 0) << x << ", " << y;
            red += seen.alpha == 255 && seen.red == 255 && seen.green == 0 && seen.blue == 0;
        }
    }
    EXPECT_GT(red, 100);
}

TEST(menu, says_what_it_is_told) {
    menu told;
    const auto rendered = [&told] { return told.render(0, 640, 360); };
    rendered();
    told.say({"Paused", "Surface rgb32"});
    EXPECT_TRUE(rendered());
    canvas first(640, 360);
    told.lay(first);
    EXPECT_FALSE(first.is_empty());
    told.say({"Paused", "Surface rgb32"});
    EXPECT_FALSE(rendered());
    told.say({"Paused", "Surface yuy2"});
    EXPECT_TRUE(rendered());
    told.say({});
    EXPECT_TRUE(rendered());
    canvas last(640, 360);
    told.lay(last);
    EXPECT_TRUE(last.is_empty());
}

TEST_F(subtitle_test, files_that_are_none_are_refused) {
    expect_failure(directory / "missing.srt", "No such file");
    write_file(directory / "noise.srt", std::string(5000, 'a'));
    expect_failure(directory / "noise.srt", "not a subtitle file");
    expect_failure(LUMALANE_PLAYER_CLIP, "no subtitle stream");
    write_srt("\xff\xfe not UTF-8");
    expect_failure(directory / "text.srt", "not in UTF-8");
}

TEST_F(subtitle_test, of_the_clip_are_dumped_in_three_views) {
    const outcome done =
        run("--frames 30 --png frames --dump-subpicture views --subtitles '" +
            fs::path(LUMALANE_PLAYER_CLIP).replace_extension(".ass").string() + "'");
    ASSERT_EQ(done.status, 0) << done.err;
    EXPECT_EQ(done.err, "");
    // The last subpicture of those frames.
    std::vector<fs::path> views;
    for (const auto &entry : fs::directory_iterator(directory / "views"))
        views.push_back(entry.path());
    std::ranges::sort(views);
    ASSERT_GE(views.size(), 3u);
    EXPECT_EQ(views.size() % 3, 0u);
    const rgb_image painted = read_png(views.at(views.size() - 1));
    const rgb_image drawn = read_png(views.at(views.size() - 2));
    const rgb_image alpha = read_png(views.at(views.size() - 3));
    ASSERT_EQ(painted.width, 640);
    ASSERT_EQ(painted.height, 360);
    int opaque = 0;
    for (std::size_t at = 0; at < alpha.samples.size(); at += 3) {
        const std::vector<int> seen(&painted.samples[at], &painted.samples[at] + 3);
        if (alpha.samples[at] == 0) {
            ASSERT_EQ(seen, key) << at / 3;
        } else {
            opaque += alpha.samples[at] == 255;
            // Green keeps luma best where neighbours share their chroma.
            ASSERT_NEAR(seen[1], drawn.samples[at + 1], 60) << at / 3;
        }
    }
    EXPECT_GT(opaque, 1000);
}

TEST_F(subtitle_test, a_missing_file_is_refused) {
    expect_refused("--subtitles missing.srt --png frames", "missing.srt: No such file");
}

} // namespace
