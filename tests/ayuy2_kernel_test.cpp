// Every colour through the conversions of drawing surfaces.
#include <algorithm>
#include <cstdio>
#include <vector>

#include "tests/proofs.h"
#include "tests/targets.h"

namespace {

using bytes = std::vector<unsigned char>;

int clamped_sum(int b, int g, int r, int coefficient_b, int coefficient_g, int coefficient_r,
                int constant) {
    const int sum = coefficient_b * b + coefficient_g * g + coefficient_r * r;
    return std::clamp(constant + (sum >> 10), 0, 255);
}

// Pixels of some colours, each of them twice: the first one of a pair alone makes its chroma. And what
// becomes of them.
struct surface {
    int pixel_bytes;
    void (*convert)(tagMIX_INFO *);
    bytes pixels;
    bytes y, u, v;

    void add(int b, int g, int r) {
        for (int twice = 0; twice < 2; ++twice) {
            if (pixel_bytes == 2) {
                const int word = r >> 3 << 11 | g >> 2 << 5 | b >> 3;
                pixels.push_back(static_cast<unsigned char>(word));
                pixels.push_back(static_cast<unsigned char>(word >> 8));
            } else {
                for (const int channel : {b, g, r})
                    pixels.push_back(static_cast<unsigned char>(channel));
                if (pixel_bytes == 4)
                    pixels.push_back(0);
            }
            y.push_back(static_cast<unsigned char>(clamped_sum(b, g, r, 100, 516, 263, 16)));
        }
        u.push_back(static_cast<unsigned char>(clamped_sum(b, g, r, 449, -297, -151, 128)));
        v.push_back(static_cast<unsigned char>(clamped_sum(b, g, r, -72, -376, 449, 128)));
    }
};

class ayuy2_kernel : public testing::Test {
protected:
    bytes y, u, v;

    // One row; and rows of 8, which are narrower than the groups of all targets.
    void expect_agreement(const surface &s, const lumalane::target &target, int width) {
        const int count = static_cast<int>(s.y.size());
        y.assign(s.y.size(), 0xa5), u.assign(s.u.size(), 0xa5), v.assign(s.v.size(), 0xa5);
        tagMIX_INFO mix{};
        mix.dst = const_cast<unsigned char *>(s.pixels.data());
        mix.width = mix.sub_pitch = width;
        mix.dst_pitch = s.pixel_bytes * width;
        mix.height = count / width;
        mix.sub_y = y.data();
        mix.sub_u = u.data();
        mix.sub_v = v.data();
        mix.color_key = 0xff000000; // no pixel's, of 16 bits that of black
        lumalane::force(target);
        s.convert(&mix);
        const auto wrong = [&](const bytes &found, const bytes &expected) {
            return std::mismatch(found.begin(), found.end(), expected.begin()).first -
                   found.begin();
        };
        if (y != s.y || u != s.u || v != s.v)
            FAIL() << target.name << ", " << s.pixel_bytes << " bytes, rows of " << width
                   << ": luma of pixel " << wrong(y, s.y) << ", U of pair " << wrong(u, s.u)
                   << ", V of pair " << wrong(v, s.v) << " of " << count;
    }

    void prove(const surface &s, const lumalane::target &target) {
        expect_agreement(s, target, static_cast<int>(s.y.size()));
        expect_agreement(s, target, 8);
    }
};

TEST_F(ayuy2_kernel, converts_every_colour) {
    const tests::proofs wanted = tests::wanted_proofs();
    unsigned long long proven = 0;
    for (int r = 0; r < 256; ++r) {
        surface of_32{4, Convert_RGB32_To_AYUY2, {}, {}, {}, {}};
        surface of_24{3, Convert_RGB24_To_AYUY2, {}, {}, {}, {}};
        for (int bg = 0; bg < 1 << 16; ++bg) {
            of_32.add(bg & 255, bg >> 8, r);
            of_24.add(bg & 255, bg >> 8, r);
        }
        for (const lumalane::target *target : tests::runnable_targets()) {
            // The narrowest one is slow, and is not shipped.
            const int step = wanted == tests::proofs::all            ? 1
                             : target == lumalane::targets().begin() ? 51
                             : wanted == tests::proofs::some         ? 15
                                                                     : 1;
            if (r % step != 0)
                continue;
            for (const surface *s : {&of_32, &of_24})
                ASSERT_NO_FATAL_FAILURE(prove(*s, *target));
            proven += 2 << 16;
        }
    }
    EXPECT_GE(proven, (1u << 24) / 15);
    std::printf("figure: colours %llu\n", proven);
}

// Black, which is the key, is left out: it has no group of its own.
TEST_F(ayuy2_kernel, converts_every_colour_of_16_bits) {
    surface s{2, Convert_RGB16_565_To_AYUY2, {}, {}, {}, {}};
    for (int word = 0; word < 1 << 16; ++word)
        s.add((word & 31) << 3, (word >> 5 & 63) << 2, word >> 11 << 3);
    for (const lumalane::target *target : tests::runnable_targets())
        ASSERT_NO_FATAL_FAILURE(prove(s, *target));
    std::printf("figure: colours %zu\n", tests::runnable_targets().size() << 16);
}

} // namespace
