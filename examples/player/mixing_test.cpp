// Subpictures over the video, on every surface that the library mixes onto.

#include "examples/player/adjustment.h"
#include "examples/player/canvas.h"
#include "examples/player/fixture.h"
#include "examples/player/session.h"
#include "examples/player/subpicture.h"
#include "examples/player/target.h"

#include <cmath>
#include <map>

namespace {

using namespace player;

bool mixes(const surface_format &format) { return format.functions.mix != nullptr; }
bool mixes_fields(const surface_format &format) { return format.functions.mix_field != nullptr; }

constexpr int width = 64;
constexpr int height = 32;

class every_mix : public testing::TestWithParam<std::string> {
protected:
    every_mix() { adjustment().apply(); }

    const surface_format &format = *find_surface_format(GetParam());

    // Whole groups of pixels for each of the half-width surface.
    static constexpr int left = 20, top = 6, columns = 24, rows = 10;

    bool is_drawn_on(int column, int row) const {
        const int x = format.half_width ? 2 * column : column;
        return x >= left && x < left + columns && row >= top && row < top + rows;
    }

    // A rectangle of a colour over a picture, expanded.
    std::vector<unsigned char> mixed(picture &below, canvas::pixel colour) const {
        canvas drawing(below.padded_width(), below.padded_height());
        lay(drawing, left, top, columns, rows, colour);
        subpicture over(drawing.width(), drawing.height());
        over.prepare(drawing);
        surface filled;
        filled.mix(below, over, format);
        return filled.expand();
    }

    double tolerance(int channel) const { return 4 + (256 >> format.bits[channel]); }
};

INSTANTIATE_TEST_SUITE_P(surfaces, every_mix, testing::ValuesIn(surface_names(mixes)), name_of);

TEST_P(every_mix, hides_the_video_shows_it_or_both) {
    picture below = picture_of(uniform_rows(
        width, height, [](int row) { return 40 + 4 * row; }, 110, 150));
    surface plain;
    plain.load(below, format);
    const auto video = plain.expand();
    const int colour[] = {30, 90, 200};
    for (const int alpha : {255, 128}) {
        const auto seen = mixed(below, {30, 90, 200, static_cast<unsigned char>(alpha)});
        ASSERT_EQ(seen.size(), video.size());
        const double weight = std::lround(alpha * 16 / 255.0) / 16.0;
        for (int row = 0; row < plain.height(); ++row) {
            for (int column = 0; column < plain.width(); ++column) {
                for (int channel = 0; channel < 3; ++channel) {
                    const int at = 3 * (row * plain.width() + column) + channel;
                    const std::string place = std::to_string(column) + ", " + std::to_string(row) +
                                              ", channel " + std::to_string(channel);
                    if (is_drawn_on(column, row))
                        ASSERT_NEAR(seen[at], weight * colour[channel] + (1 - weight) * video[at],
                                    tolerance(channel))
                            << place;
                    else
                        ASSERT_EQ(seen[at], video[at]) << place;
                }
            }
        }
    }
}

class every_field_mix : public every_mix {};

INSTANTIATE_TEST_SUITE_P(surfaces, every_field_mix, testing::ValuesIn(surface_names(mixes_fields)),
                         name_of);

// Neither field reaches into the other.
TEST_P(every_field_mix, shows_one_field_in_all_rows) {
    picture fields = picture_of(uniform_rows(width, height, black_and_white_fields));
    subpicture nothing(fields.padded_width(), fields.padded_height());
    for (const int field : {0, 1}) {
        surface filled;
        filled.mix_field(fields, field, nothing, format);
        const auto seen = filled.expand();
        for (std::size_t at = 0; at < seen.size(); ++at)
            ASSERT_NEAR(seen[at], field ? 255 : 0, tolerance(at % 3)) << "sample " << at;
    }
}

// Surfaces of a picture of ramps under two rectangles: of the frame and of the second field (0: the
// surface has no fields).
struct checksums {
    std::uint64_t frame, field;
};

const std::map<std::string, checksums> mixed_surfaces{
    {"rgb32", {0xdce29106314ab820, 0x52009c2b28bee687}},
    {"rgb24", {0xa824f4d817b66ee0, 0x7703e7136e2d68c1}},
    {"rgb565", {0xb7cca27a7a6eb030, 0x65966798b40411a9}},
    {"rgb555", {0xe12fcd1985fc394e, 0xa126f47b17a3ddd}},
    {"rgb664", {0xe9ac55b0af0e1730, 0xc206fd6e5036c855}},
    {"rgb655", {0xeea9c6aa22393d5, 0x7eb9e1d09561ea6b}},
    {"yuy2", {0xea0230f42fe37652, 0xf1cf6254254a1f4e}},
    {"half_yuy2", {0x720c74cc7c1be3b2, 0}},
    {"yv12", {0x734a5fa8ca94860e, 0xb34d2abe35ebe9b3}},
};

TEST_P(every_mix, surfaces_stay_what_they_are) {
    picture below = picture_of(ramps_420(77, 35));
    canvas drawing(below.padded_width(), below.padded_height());
    lay(drawing, 5, 3, 50, 17, {250, 200, 20, 255});
    lay(drawing, 31, 9, 40, 22, {30, 60, 240, 100});
    subpicture over(drawing.width(), drawing.height());
    over.prepare(drawing);
    adjustment{10, 120, 70}.apply();
    const checksums expected = mixed_surfaces.at(GetParam());
    for (const std::string &target : target_names()) {
        choose_target(target);
        surface frame, field;
        frame.mix(below, over, format);
        EXPECT_EQ(checksum(frame.bytes()), expected.frame) << target;
        if (!mixes_fields(format))
            continue;
        field.mix_field(below, 1, over, format);
        EXPECT_EQ(checksum(field.bytes()), expected.field) << target;
    }
}

// ---- Whole runs -------------------------------------------------------------------------------

// Shapes instead of letters, whose pixels would depend on the fonts of the machine: an opaque and a
// translucent rectangle, one after the other.
constexpr const char *shapes = R"([Script Info]
ScriptType: v4.00+
PlayResX: 160
PlayResY: 90

[V4+ Styles]
Format: Name, Fontname, Fontsize, PrimaryColour, SecondaryColour, OutlineColour, BackColour, Bold, Italic, Underline, StrikeOut, ScaleX, ScaleY, Spacing, Angle, BorderStyle, Outline, Shadow, Alignment, MarginL, MarginR, MarginV, Encoding
Style: Opaque,sans-serif,20,&H0000C0FF,&H0,&H0,&H0,0,0,0,0,100,100,0,0,1,0,0,7,0,0,0,1
Style: Translucent,sans-serif,20,&H80FF4020,&H0,&H0,&H0,0,0,0,0,100,100,0,0,1,0,0,7,0,0,0,1

[Events]
Format: Layer, Start, End, Style, Name, MarginL, MarginR, MarginV, Effect, Text
Dialogue: 0,0:00:00.11,0:00:00.91,Opaque,,0,0,0,,{\pos(25,11)\p1}m 0 0 l 50 0 50 20 0 20
Dialogue: 0,0:00:00.31,0:00:01.11,Translucent,,0,0,0,,{\pos(10,50)\p1}m 0 0 l 125 0 125 30 0 30
)";

struct shown_rectangle {
    int left, top, right, bottom; // right and bottom are outside
    double first, last;           // seconds
    int colour[3];
    double weight;

    bool is_shown_at(double time) const { return time >= first && time < last; }

    // So many pixels larger, or smaller.
    bool contains(int x, int y, int more) const {
        return x >= left - more && x < right + more && y >= top - more && y < bottom + more;
    }
};

constexpr shown_rectangle rectangles[] = {{25, 11, 75, 31, 0.11, 0.91, {0xff, 0xc0, 0}, 1},
                                          {10, 50, 135, 80, 0.31, 1.11, {0x20, 0x40, 0xff}, 0.5}};

class every_run : public player_test, public testing::WithParamInterface<std::string> {
protected:
    const surface_format &format = *find_surface_format(GetParam());

    // So many pixels larger or smaller; null: there is none.
    const shown_rectangle *find_rectangle(double time, int x, int y, int more) const {
        for (const shown_rectangle &each : rectangles)
            if (format.functions.mix && each.is_shown_at(time) && each.contains(x, y, more))
                return &each;
        return nullptr;
    }

    // What is under a rectangle, and what is clear of all of them; not their edges, where pixels
    // share chroma and coverage is the renderer's.
    void expect_shapes(const rgb_image &seen, const rgb_image &video, double time) const {
        constexpr int edge = 4;
        ASSERT_EQ(seen.samples.size(), video.samples.size());
        for (int row = 0; row < seen.height; ++row) {
            for (int column = 0; column < seen.width; ++column) {
                const int x = format.half_width ? 2 * column : column;
                const shown_rectangle *const over = find_rectangle(time, x, row, -edge);
                if (!over && find_rectangle(time, x, row, edge))
                    continue;
                for (int channel = 0; channel < 3; ++channel) {
                    const int at = 3 * (row * seen.width + column) + channel;
                    const double below = video.samples[at];
                    const double expected =
                        over ? over->weight * over->colour[channel] + (1 - over->weight) * below
                             : below;
                    const int allowed = over ? 6 + (256 >> format.bits[channel]) : 0;
                    // (One assertion per sample would take half of the test's time.)
                    if (std::abs(seen.samples[at] - expected) > allowed)
                        FAIL() << int{seen.samples[at]} << " instead of " << expected << " at " << x
                               << ", " << row << " after " << time << " s";
                }
            }
        }
    }
};

INSTANTIATE_TEST_SUITE_P(surfaces, every_run, testing::ValuesIn(all_surface_names()), name_of);

TEST_P(every_run, subtitles_are_over_the_video_in_their_time) {
    std::vector<samples> video;
    for (int frame = 0; frame < 30; ++frame)
        video.push_back(
            uniform_rows(160, 90, [frame](int row) { return 40 + (row + 4 * frame) % 160; }));
    write_file(directory / "video.y4m", y4m('t', video));
    write_file(directory / "shapes.ass", shapes);
    for (const std::string interlaced : {"", " --interlaced"}) {
        const std::string arguments = "video.y4m --surface " + GetParam() + interlaced;
        const auto plain = frames(arguments);
        const auto seen = frames(arguments + " --subtitles shapes.ass");
        const int per_second = interlaced.empty() || !mixes_fields(format) ? 25 : 50;
        ASSERT_EQ(plain.size(), video.size() * per_second / 25);
        ASSERT_EQ(seen.size(), plain.size());
        for (std::size_t n = 0; n < seen.size(); ++n)
            expect_shapes(seen[n], plain[n], static_cast<double>(n) / per_second);
    }
}

TEST_F(player_test, fields_are_shown_one_after_the_other) {
    const samples frame = uniform_rows(64, 32, black_and_white_fields);
    write_file(directory / "fields.y4m", y4m('t', {frame}));
    const auto shown = frames("--interlaced fields.y4m");
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_LT(*std::ranges::max_element(shown[0].samples), 5);
    EXPECT_GT(*std::ranges::min_element(shown[1].samples), 250);
}

TEST_F(player_test, the_menu_opens_and_closes) {
    options chosen = playing(LUMALANE_PLAYER_CLIP, surface_formats().front());
    session running(chosen);
    ASSERT_TRUE(running.advance());
    const auto without = running.loaded().expand();
    const auto after = [&running](command wish) {
        running.obey(wish);
        running.reload();
        return running.loaded().expand();
    };
    const auto open = after(command::menu);
    EXPECT_NE(open, without);
    EXPECT_NE(after(command::pause), open) << "it does not say that it is paused";
    EXPECT_EQ(after(command::pause), open);
    EXPECT_EQ(after(command::menu), without);
}

} // namespace
