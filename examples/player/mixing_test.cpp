// Subpictures over the video, on every surface that the library mixes onto.

#include "examples/player/adjustment.h"
#include "examples/player/canvas.h"
#include "examples/player/fixture.h"
#include "examples/player/session.h"
#include "examples/player/subpicture.h"

#include <cmath>
#include <map>

namespace {

using namespace player;

bool mixes(const surface_format &format) { return format.functions.mix != nullptr; }
bool mixes_fields(const surface_format &format) { return format.functions.mix_field != nullptr; }

constexpr int width = 64;
constexpr int height = 32;

// A picture of one colour per row.
picture rows_of(unsigned char (*y_of)(int row), unsigned char u, unsigned char v) {
    std::vector<unsigned char> y;
    for (int row = 0; row < height; ++row)
        y.insert(y.end(), width, y_of(row));
    const std::vector<unsigned char> all_u(width / 2 * height / 2, u);
    const std::vector<unsigned char> all_v(width / 2 * height / 2, v);
    picture made;
    made.assign(width, height, {y.data(), width}, {all_u.data(), width / 2},
                {all_v.data(), width / 2});
    return made;
}

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
        const std::vector<unsigned char> all(columns * rows, 255);
        drawing.lay({all.data(), columns, left, top, columns, rows}, colour);
        subpicture over(drawing.width(), drawing.height());
        over.prepare(drawing);
        surface target;
        target.mix(below, over, format);
        return target.expand();
    }

    double tolerance(int channel) const { return 4 + (256 >> format.bits[channel]); }
};

INSTANTIATE_TEST_SUITE_P(surfaces, every_mix, testing::ValuesIn(surface_names(mixes)), name_of);

TEST_P(every_mix, hides_the_video_shows_it_or_both) {
    picture below =
        rows_of([](int row) { return static_cast<unsigned char>(40 + 4 * row); }, 110, 150);
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

// The rows of one field are black, those of the other white: neither reaches into the other.
TEST_P(every_field_mix, shows_one_field_in_all_rows) {
    picture fields =
        rows_of([](int row) { return static_cast<unsigned char>(row % 2 ? 235 : 16); }, 128, 128);
    subpicture nothing(fields.padded_width(), fields.padded_height());
    for (const int field : {0, 1}) {
        surface target;
        target.mix_field(fields, field, nothing, format);
        const auto seen = target.expand();
        for (std::size_t at = 0; at < seen.size(); ++at)
            ASSERT_NEAR(seen[at], field ? 255 : 0, tolerance(at % 3)) << "sample " << at;
    }
}

// ---- Whole runs -------------------------------------------------------------------------------

// Shapes instead of letters, whose pixels would depend on the fonts of the machine: an opaque and a
// translucent rectangle, one after the other.
constexpr const char *shapes = R"([Script Info]
ScriptType: v4.00+
PlayResX: 640
PlayResY: 360

[V4+ Styles]
Format: Name, Fontname, Fontsize, PrimaryColour, SecondaryColour, OutlineColour, BackColour, Bold, Italic, Underline, StrikeOut, ScaleX, ScaleY, Spacing, Angle, BorderStyle, Outline, Shadow, Alignment, MarginL, MarginR, MarginV, Encoding
Style: Opaque,sans-serif,20,&H0000C0FF,&H0,&H0,&H0,0,0,0,0,100,100,0,0,1,0,0,7,0,0,0,1
Style: Translucent,sans-serif,20,&H80FF4020,&H0,&H0,&H0,0,0,0,0,100,100,0,0,1,0,0,7,0,0,0,1

[Events]
Format: Layer, Start, End, Style, Name, MarginL, MarginR, MarginV, Effect, Text
Dialogue: 0,0:00:00.10,0:00:00.90,Opaque,,0,0,0,,{\pos(101,51)\p1}m 0 0 l 200 0 200 61 0 61
Dialogue: 0,0:00:00.30,0:00:01.10,Translucent,,0,0,0,,{\pos(40,200)\p1}m 0 0 l 500 0 500 120 0 120
)";

class every_run : public player_test, public testing::WithParamInterface<std::string> {
protected:
    std::vector<rgb_image> play(const std::string &arguments) const {
        write_file(directory / "shapes.ass", shapes);
        return frames("--frames 30 --subtitles shapes.ass --surface " + GetParam() + " " +
                      arguments);
    }
};

INSTANTIATE_TEST_SUITE_P(surfaces, every_run, testing::ValuesIn(all_surface_names()), name_of);

// Of 30 frames of the clip with the shapes over it, shown whole and field by field.
struct checksums {
    std::uint64_t frames, fields;
};

const std::map<std::string, checksums> known{
    {"rgb32", {0x5c6b0d9adc27a1ed, 0x0676efc8a097cb4e}},
    {"rgb24", {0x5c6b0d9adc27a1ed, 0x0676efc8a097cb4e}},
    {"rgb565", {0xb7ef908a2d7bcec0, 0x03bde0efc7e7b4e5}},
    {"rgb555", {0xef1fcf46b10c309b, 0x0d6c4f7d98796e4a}},
    {"rgb664", {0xd8944dbb96978b1c, 0x8b518522a8392a74}},
    {"rgb655", {0x0a8508677503ed1f, 0x13cf0549a00fd9f8}},
    {"yuy2", {0x88ee57756bc0932e, 0xeea8db7c83b3cb17}},
    {"yuy2_mono", {0x9e0fc3a8304403eb, 0x9e0fc3a8304403eb}},
    {"half_yuy2", {0x61bd6edc72a0eee7, 0x61bd6edc72a0eee7}},
    {"yv12", {0x896fd4b041afb8dc, 0x1123a66bde6919f5}},
    {"half_yv12", {0x22b7aed4055b6af2, 0x22b7aed4055b6af2}},
};

TEST_P(every_run, frames_with_subtitles_stay_what_they_are) {
    const checksums expected = known.at(GetParam());
    EXPECT_EQ(checksum(play("")), expected.frames);
    EXPECT_EQ(checksum(play("--interlaced")), expected.fields);
}

TEST_F(player_test, fields_are_shown_one_after_the_other) {
    const std::string frame = grey_rows(64, 32, [](int row) { return row % 2 ? 235 : 16; });
    write_file(directory / "fields.y4m", y4m(64, 32, 't', {frame}));
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
