// Stretched pictures, on every surface that the library has a stretch for.

#include "examples/player/comparison.h"
#include "examples/player/fixture.h"
#include "examples/player/session.h"

#include <array>
#include <cmath>
#include <map>
#include <tuple>

namespace {

using namespace player;

// Surface, stretch.
using combination = std::pair<std::string, std::string>;

std::vector<combination> combinations(bool (*fits)(const stretching &)) {
    std::vector<combination> all;
    for (const surface_format &format : surface_formats())
        for (const stretching &by : stretchings().subspan(1))
            if (fits(by) && format.loader(by, false))
                all.emplace_back(format.name, by.name);
    return all;
}

std::string name_of(const testing::TestParamInfo<combination> &each) {
    return each.param.first + "_" + each.param.second;
}

class every_stretch : public player_test, public testing::WithParamInterface<combination> {
protected:
    const surface_format &format = *find_surface_format(GetParam().first);
    const stretching &by = *find_stretching(GetParam().second);

    std::string arguments() const {
        return "--surface " + GetParam().first + " --stretch " + GetParam().second + " ";
    }

    double tolerance(int channel) const { return 3 + (256 >> format.bits[channel]); }

    // Deliberately, 2X2 to YUY2 writes bare luma there.
    bool is_raw(int column) const {
        return by.columns == 2 && !format.chroma_planes && column % 32 / 4 == 1;
    }
};

INSTANTIATE_TEST_SUITE_P(surfaces, every_stretch,
                         testing::ValuesIn(combinations([](const stretching &) { return true; })),
                         name_of);

// Sizes that need every kind of padding.
TEST_P(every_stretch, of_a_ramp_is_a_finer_ramp) {
    for (const auto &[width, height] : {std::pair{77, 35}, std::pair{5, 3}}) {
        const std::string ramp = grey_rows(width, height, [](int row) { return 40 + 4 * row; });
        write_file(directory / "ramp.y4m", y4m(width, height, 'p', {ramp}));
        options chosen = playing(directory / "ramp.y4m", format);
        chosen.stretch = &by;
        session running(chosen);
        ASSERT_TRUE(running.advance());
        const surface &seen = running.loaded();
        ASSERT_EQ(seen.width(), width * by.columns);
        ASSERT_EQ(seen.height(), height * 2);
        EXPECT_EQ(seen.shown_width(), 2 * width);
        const auto rgb = seen.expand();
        // The last rows may go on with the padding.
        for (int row = 0; row < seen.height() - 2; ++row) {
            const int from_above = std::max(format.chroma_planes ? row - 1 : row, 0); // a row lower
            const double expected = 1.164383 * (40 + 2 * from_above - 16);
            for (int column = 0; column < seen.width(); ++column)
                for (int channel = 0; channel < 3 && !is_raw(column); ++channel)
                    ASSERT_NEAR(rgb[3 * (row * seen.width() + column) + channel], expected,
                                tolerance(channel))
                        << "row " << row << ", column " << column;
        }
    }
}

TEST_P(every_stretch, is_adjusted_without_a_tint) {
    const std::string grey = grey_rows(64, 32, [](int) { return 120; });
    write_file(directory / "grey.y4m", y4m(64, 32, 'p', {grey}));
    options chosen = playing(directory / "grey.y4m", format);
    chosen.stretch = &by;
    chosen.picture = {20, 150, 50};
    session running(chosen);
    ASSERT_TRUE(running.advance());
    const auto rgb = running.loaded().expand();
    const double expected = 1.164383 * (128 + (120 - 128) * 1.5 + 20 - 16);
    for (std::size_t at = 0; at < rgb.size(); ++at) {
        if (is_raw(static_cast<int>(at / 3) % running.loaded().width()))
            continue;
        ASSERT_NEAR(rgb[at], expected, tolerance(static_cast<int>(at % 3))) << at;
    }
}

class every_field_stretch : public every_stretch {};

INSTANTIATE_TEST_SUITE_P(surfaces, every_field_stretch,
                         testing::ValuesIn(combinations([](const stretching &by) {
                             return by.fits_fields();
                         })),
                         name_of);

// The rows of one field are black, those of the other white: neither reaches into the other.
TEST_P(every_field_stretch, shows_the_first_field_in_all_rows) {
    const std::string frame = grey_rows(77, 35, [](int row) { return row % 2 ? 235 : 16; });
    for (const auto &[order, expected] : {std::pair{'t', 0}, std::pair{'b', 255}}) {
        write_file(directory / "fields.y4m", y4m(77, 35, order, {frame}));
        const auto shown = frames("--field " + arguments() + "fields.y4m");
        ASSERT_EQ(shown.size(), 1u);
        EXPECT_EQ(shown[0].width, 77);
        EXPECT_EQ(shown[0].height, 35);
        for (std::size_t at = 0; at < shown[0].samples.size(); ++at)
            ASSERT_NEAR(shown[0].samples[at], expected, tolerance(at % 3)) << order << at;
    }
}

// ---- Whole runs -------------------------------------------------------------------------------

// Of two frames of the clip: plain, adjusted, and their first fields (0: it fits none).
const std::map<combination, std::array<std::uint64_t, 3>> known{
    {{"rgb32", "1x2"}, {0x9212c4d9b3d1aa91, 0xc40ebc7d6be75bb9, 0x12bf07afe182216a}},
    {{"rgb24", "1x2"}, {0x9212c4d9b3d1aa91, 0xc40ebc7d6be75bb9, 0x12bf07afe182216a}},
    {{"rgb565", "1x2"}, {0x7639017b5cf0a72e, 0x76edf4152607e2d0, 0xf821c6797a026090}},
    {{"rgb555", "1x2"}, {0x6bc72d256fabd11b, 0x0e9daa2c178d330b, 0xb2f3cb28f47e190c}},
    {{"rgb664", "1x2"}, {0x3ac3266e51d7832e, 0xf0f986d0d84215e1, 0x651835c6a80a1c01}},
    {{"rgb655", "1x2"}, {0xb21bd35c7474ce84, 0x707f8085ab102528, 0x383fb64a55754c2e}},
    {{"yuy2", "1x2"}, {0xc5a8be6229bfa6f2, 0x50b2e805494d709a, 0x011895a78a49708b}},
    {{"yuy2", "2x2"}, {0x60e2a34a13f4aa3d, 0x1092ab3dbddffd10, 0}},
    {{"yuy2", "edge"}, {0x5d765670a9f89ac0, 0xa7adece7719c3a48, 0x8111ac353e038c35}},
    {{"yv12", "1x2"}, {0xccaa216aa9cda05b, 0x80a56a49868ba9ff, 0x9ebfa29d467e2aea}},
    {{"yv12", "2x2"}, {0xe6363523886716ea, 0x47a9cf516d5d8b17, 0}},
};

TEST_P(every_stretch, frames_stay_what_they_are) {
    const auto sum = [this](const std::string &more) {
        return checksum(frames("--frames 2 " + arguments() + more));
    };
    const auto [plain, adjusted, fields] = known.at(GetParam());
    EXPECT_EQ(sum(""), plain);
    EXPECT_EQ(sum("--lanes portable"), plain);
    EXPECT_EQ(sum("--brightness 10 --contrast 120 --saturation 70"), adjusted);
    if (by.fits_fields()) {
        EXPECT_EQ(sum("--field"), fields);
    }
}

TEST_F(player_test, packed_pictures_are_stretched) {
    const outcome done = run("--packed --stretch 2x2 --frames 1 --png frames");
    EXPECT_EQ(done.status, 0) << done.err;
    EXPECT_NE(done.out.find(", packed, to yuy2, 2x2"), std::string::npos) << done.out;
    const rgb_image packed = frames("--packed --stretch 2x2 --frames 1").at(0);
    const rgb_image planar = frames("--stretch 2x2 --frames 1").at(0);
    ASSERT_EQ(packed.width, 1280);
    ASSERT_EQ(packed.height, 720);
    EXPECT_LT(mean_difference(packed, planar), 2.0);
}

TEST_F(player_test, the_stretch_key_goes_through_those_of_the_surface) {
    session running(playing(LUMALANE_PLAYER_CLIP, *find_surface_format("yuy2")));
    ASSERT_TRUE(running.advance());
    const auto press = [&running](command wish) {
        running.obey(wish);
        running.reload();
        const surface &shown = running.loaded();
        return std::tuple{running.describe().substr(0, 10), shown.width(), shown.height()};
    };
    const std::string before = running.describe();
    EXPECT_EQ(press(command::next_stretch), (std::tuple{"yuy2, 1x2,", 640, 720}));
    EXPECT_EQ(press(command::next_stretch), (std::tuple{"yuy2, 2x2,", 1280, 720}));
    EXPECT_EQ(press(command::next_stretch), (std::tuple{"yuy2, edge", 640, 720}));
    // The next surface has none, and the picture is as it was.
    EXPECT_EQ(press(command::next_surface), (std::tuple{"yuy2_mono,", 640, 360}));
    EXPECT_EQ(press(command::next_stretch), (std::tuple{"yuy2_mono,", 640, 360}));
    for (std::size_t n = 1; n < surface_formats().size(); ++n)
        press(command::next_surface);
    EXPECT_EQ(running.describe(), before);
}

TEST_F(player_test, stretches_that_do_not_exist_are_refused) {
    expect_refused("--stretch 3x3", "--stretch");
    expect_refused("--stretch 2x2 --surface rgb32", "onto yuy2, yv12");
    expect_refused("--stretch edge --surface yv12", "onto yuy2");
    expect_refused("--stretch 1x2 --surface half_yuy2", "half_yuy2");
    expect_refused("--field --stretch 2x2", "--field");
    expect_refused("--field --surface yuy2_mono", "yuy2_mono");
    expect_refused("--field --interlaced", "--interlaced");
    expect_refused("--stretch 1x2 --interlaced", "--interlaced");
}

// ---- The comparison ---------------------------------------------------------------------------

TEST(comparison, every_way_comes_nearer_to_the_frame_than_line_doubling) {
    const auto ways = compare_stretches();
    ASSERT_EQ(ways.size(), 5u);
    const auto error = [&ways](int way) { return mean_difference(ways[way].rgb, ways[0].rgb); };
    for (const int way : {2, 3, 4})
        EXPECT_LT(error(way), error(1)) << ways[way].label;
    EXPECT_LT(error(4), error(2)) << "edges are not followed";
}

TEST_F(player_test, the_comparison_is_written) {
    ASSERT_EQ(run("--compare-stretch ways.png").status, 0);
    const rgb_image seen = read_png(directory / "ways.png");
    EXPECT_EQ(seen.width, 4 * 3 * compared_width + 3 * 6);
    EXPECT_EQ(seen.height, 3 * compared_height);
    expect_refused("--compare-stretch missing/ways.png", "missing/ways.png");
}

} // namespace
