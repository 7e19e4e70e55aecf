// Stretched pictures, on every surface that the library has a stretch for.

#include "examples/player/adjustment.h"
#include "examples/player/comparison.h"
#include "examples/player/fixture.h"
#include "examples/player/session.h"
#include "examples/player/target.h"

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

    // The columns of YUY2 where the library's 2X2 promises luma without chroma.
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
        const samples ramp = uniform_rows(width, height, [](int row) { return 40 + 4 * row; });
        write_file(directory / "ramp.y4m", y4m('p', {ramp}));
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
    const samples grey = uniform_rows(64, 32, [](int) { return 120; });
    write_file(directory / "grey.y4m", y4m('p', {grey}));
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

// Neither field reaches into the other.
TEST_P(every_field_stretch, shows_the_first_field_in_all_rows) {
    const samples frame = uniform_rows(77, 35, black_and_white_fields);
    for (const auto &[order, expected] : {std::pair{'t', 0}, std::pair{'b', 255}}) {
        write_file(directory / "fields.y4m", y4m(order, {frame}));
        const auto shown = frames("--field " + arguments() + "fields.y4m");
        ASSERT_EQ(shown.size(), 1u);
        EXPECT_EQ(shown[0].width, 77);
        EXPECT_EQ(shown[0].height, 35);
        for (std::size_t at = 0; at < shown[0].samples.size(); ++at)
            ASSERT_NEAR(shown[0].samples[at], expected, tolerance(at % 3)) << order << at;
    }
}

// Surfaces of a picture of ramps: plain, adjusted, and of its second field (0: it fits none).
const std::map<combination, std::array<std::uint64_t, 3>> stretched{
    {{"rgb32", "1x2"}, {0xff91196362c99824, 0x8a4a19d487c1a69, 0x95999419964ed675}},
    {{"rgb24", "1x2"}, {0x42860db3bb301e84, 0xff5e0b5ad34b8de7, 0x83215e9e94771edb}},
    {{"rgb565", "1x2"}, {0xd11fade7ff849c64, 0xaeb7bd111f5bafb9, 0x10dd5a70f524e62f}},
    {{"rgb555", "1x2"}, {0x16360f54cb298232, 0xa91ea791c500b968, 0xfe267f1d8f9e37fd}},
    {{"rgb664", "1x2"}, {0xad610e348e9d488e, 0xd2a56507a38e547c, 0x3c4df4fe89b548ce}},
    {{"rgb655", "1x2"}, {0x77ed8391d2fb6ebd, 0x956a9e5c24204d3c, 0x8b3ed5c7584a5d9}},
    {{"yuy2", "1x2"}, {0xf0e0773386f9fdca, 0x519cb5a1d5f5a7b8, 0x49e594fa59107104}},
    {{"yuy2", "2x2"}, {0xf36f68481dfeb945, 0x10e96be5df25d680, 0}},
    {{"yuy2", "edge"}, {0xcde31410d1ee99b9, 0x814ee9bdc0599970, 0x77dfd41d46500cdb}},
    {{"yv12", "1x2"}, {0xd06f7601a28a1609, 0xff2aa25ca61bda1e, 0xe9581cd87b1c5fb7}},
    {{"yv12", "2x2"}, {0x3723945a8c3bfd8, 0xd3e1dda272b32af4, 0}},
};

TEST_P(every_stretch, surfaces_stay_what_they_are) {
    picture ramp = picture_of(ramps_420(77, 35));
    const auto loaded = [&](const adjustment &adjusted, bool field) {
        adjusted.apply(format.stretch_has_one_gain);
        surface filled;
        if (field)
            filled.load_field(ramp, 1, format, by);
        else
            filled.load(ramp, format, by);
        return checksum(filled.bytes());
    };
    const auto [plain, adjusted, field] = stretched.at(GetParam());
    for (const std::string &target : target_names()) {
        choose_target(target);
        EXPECT_EQ(loaded({}, false), plain) << target;
        EXPECT_EQ(loaded({10, 120, 70}, false), adjusted) << target;
        if (by.fits_fields()) {
            EXPECT_EQ(loaded({}, true), field) << target;
        }
    }
}

// ---- Whole runs -------------------------------------------------------------------------------

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
    EXPECT_EQ(seen.samples, read_png(LUMALANE_PLAYER_DOCS "/stretch.png").samples)
        << "the manual shows another one: scripts/play --compare-stretch docs/stretch.png";
    expect_refused("--compare-stretch missing/ways.png", "missing/ways.png");
}

} // namespace
