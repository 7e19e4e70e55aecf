// blend() against the models of the mixes, on pictures between unmapped pages.
#include "tests/companion/comparison.h"

namespace companion {
namespace {

using lumalane::format;

class blended : public testing::TestWithParam<std::tuple<format, format>> {
protected:
    guarded_planes video_memory, subpicture_memory, destination_memory;
    std::minstd_rand random{1};

    int below(int bound) { return static_cast<int>(random() % bound); }

    subpicture_rows draw(int width, int height) {
        subpicture_rows drawn{width, height, bytes(width * height), bytes(width * height), {}, {}};
        drawn.u.resize(drawn.chroma_width() * height);
        drawn.v.resize(drawn.u.size());
        for (bytes *plane : {&drawn.alpha, &drawn.y, &drawn.u, &drawn.v})
            fill(*plane, random);
        for (unsigned char &alpha : drawn.alpha)
            alpha %= 18;
        return drawn;
    }

    lumalane::subpicture lay_out(const subpicture_rows &drawn, placement where) {
        const auto plane = [&](int i, const bytes &samples, int width) {
            placement at = where;
            at.gap += i == 0 ? where.gap_of_last : 0; // of alpha
            const lumalane::plane p = subpicture_memory.lay_out_plane(i, width, drawn.height, at);
            for (int row = 0; row < drawn.height; ++row)
                std::copy_n(&samples[row * width], width, p.data + std::ptrdiff_t(row) * p.stride);
            return p;
        };
        return {drawn.width,
                drawn.height,
                plane(0, drawn.alpha, drawn.width),
                plane(1, drawn.y, drawn.width),
                plane(2, drawn.u, drawn.chroma_width()),
                plane(3, drawn.v, drawn.chroma_width())};
    }

    void compare(int width, int height, const subpicture_rows &over, int x, int y,
                 const optional_adjustment &by, const placement (&at)[3]) {
        const auto [from, to] = GetParam();
        const rows_of_pixels pixels = random_pixels(from, width, height, random);
        const auto expected = expected_blend(pixels, over, x, y, to, by);
        ASSERT_TRUE(expected);
        const lumalane::picture video = video_memory.lay_out(from, width, height, at[0]);
        store(pixels, video);
        const lumalane::subpicture subpicture = lay_out(over, at[1]);
        const lumalane::picture made = destination_memory.lay_out(to, width, height, at[2]);
        const lumalane::status status = by ? lumalane::blend(video, subpicture, x, y, made, *by)
                                           : lumalane::blend(video, subpicture, x, y, made);
        ASSERT_TRUE(status) << message_of(status.code);
        expect_made(made, *expected, [&](std::ostream &text) {
            text << width << "x" << height << (by ? " adjusted" : "") << ", subpicture "
                 << over.width << "x" << over.height << " at " << x << ", " << y << "; video "
                 << at[0] << ", subpicture " << at[1] << ", destination " << at[2];
        });
    }
};

TEST_P(blended, makes_the_pixels_of_the_function_and_touches_nothing_else) {
    for (int i = 0; i < (few ? 400 : 3000); ++i) {
        const int width = 1 + below(70), height = 1 + below(i % 8 == 0 ? 30 : 9);
        const subpicture_rows over = draw(1 + below(60), 1 + below(20));
        const int gap = below(4) < 2 ? 0 : below(20);
        const placement at[] = {{gap, below(2) == 0, below(2) == 0},
                                {below(3) * below(9), below(2) == 0, below(2) == 0},
                                {below(20), below(2) == 0, below(2) == 0}};
        compare(width, height, over, below(width + over.width + 20) - over.width - 10,
                below(height + over.height + 6) - over.height - 3, adjustments[i % 2], at);
        if (HasFatalFailure())
            return;
    }
}

// Strides that the functions can be told, so that most of it goes through them in place.
TEST_P(blended, makes_the_pixels_of_the_function_of_larger_pictures) {
    for (int i = 0; i < (few ? 6 : 60); ++i) {
        const int width = 2 * (1 + below(150)), height = 1 + below(100);
        const subpicture_rows over = draw(2 * (1 + below(150)), 1 + below(100));
        const placement at[] = {{0, i % 4 == 0, i % 2 == 0},
                                {0, i % 3 == 0, i % 2 == 1, i % 5 == 1 ? 16 : 0},
                                {0, i % 5 == 0, i % 4 < 2}};
        compare(width, height, over, below(width) - below(over.width),
                below(height) - below(over.height), adjustments[i % 2], at);
        if (HasFatalFailure())
            return;
    }
}

std::vector<std::tuple<format, format>> served_pairs() {
    std::vector<std::tuple<format, format>> pairs;
    for (const format from : {format::yv12, format::i420})
        for (const format to : formats)
            pairs.push_back({from, to});
    return pairs;
}

INSTANTIATE_TEST_SUITE_P(pairs, blended, testing::ValuesIn(served_pairs()), [](const auto &pair) {
    return std::string(name_of(std::get<0>(pair.param))) + "_to_" +
           name_of(std::get<1>(pair.param));
});

} // namespace
} // namespace companion
