// All 2^24 Y, U and V through every row kernel that makes RGB of them: rows as long as they come, in the
// target's widest groups, and rows of one narrower group each; by themselves, and as pairs that share
// chroma.
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "tests/model/rgb.h"
#include "tests/proofs.h"
#include "tests/targets.h"

namespace {

using lumalane::row_kernels;
using bytes = std::vector<unsigned char>;

// One value of U: all V, and for each of them all Y.
constexpr int pixels = 1 << 16;

enum class surface { rgb32, rgb24, rgb16_565, rgb16_555, rgb16_664, rgb16_655 };
constexpr int surfaces = 6;
constexpr int pixel_bytes[surfaces] = {4, 3, 2, 2, 2, 2};

// A pixel as the model packs it.
void pack(surface s, model::rgb pixel, unsigned char *to) {
    const auto put = [&](const auto &packed) { std::copy(packed.begin(), packed.end(), to); };
    if (s == surface::rgb32)
        put(model::pack_rgb32(pixel));
    else if (s == surface::rgb24)
        put(model::pack_rgb24(pixel));
    else
        put(model::pack_rgb16(pixel, static_cast<unsigned>(s) - 2));
}

// The rows of the value of U, and what the model makes of them.
struct inputs {
    bytes y = bytes(pixels), opposite = y; // of the row itself, and of the one below it in a pair
    bytes u = bytes(pixels / 2), v = u;
    bytes packed = bytes(2 * pixels), packed_opposite = packed;
    bytes opaque = bytes(pixels, 1); // alpha that shows every pixel
    std::array<bytes, surfaces> expected, expected_opposite;

    inputs() {
        for (int i = 0; i < pixels; ++i) {
            y[i] = packed[2 * i] = static_cast<unsigned char>(i);
            opposite[i] = packed_opposite[2 * i] = static_cast<unsigned char>(~i);
            v[i / 2] = packed[2 * (i | 1) + 1] = static_cast<unsigned char>(i / 256);
        }
        for (int s = 0; s < surfaces; ++s)
            expected[s] = expected_opposite[s] = bytes(pixels * pixel_bytes[s]);
    }

    void set(int cb) {
        std::fill(u.begin(), u.end(), static_cast<unsigned char>(cb));
        for (int i = 0; i < pixels; i += 2)
            packed[2 * i + 1] = static_cast<unsigned char>(cb);
        for (int i = 0; i < pixels; ++i) {
            const model::rgb pixel = model::to_rgb(y[i], static_cast<unsigned char>(cb), v[i / 2]);
            for (int s = 0; s < surfaces; ++s) {
                unsigned char *const at = &expected[s][i * pixel_bytes[s]];
                pack(static_cast<surface>(s), pixel, at);
                std::copy_n(at, pixel_bytes[s], &expected_opposite[s][(i ^ 255) * pixel_bytes[s]]);
            }
        }
    }
};

// A kernel that makes rows of n pixels of the inputs, and rows below them where `below` is not null.
struct kernel {
    const char *name;
    surface to;
    bool makes_pairs;
    std::function<void(const row_kernels &, const inputs &, unsigned char *dst,
                       unsigned char *below, std::ptrdiff_t n)>
        run;
};

using planar = lumalane::row_kernel::planar_to_surface *row_kernels::*;
using packed = lumalane::row_kernel::packed_to_surface *row_kernels::*;
using keyed = lumalane::row_kernel::keyed_to_surface *row_kernels::*;

kernel of(const char *name, surface to, planar emit) {
    return {name, to, true,
            [=](const row_kernels &target, const inputs &in, unsigned char *dst,
                unsigned char *below, std::ptrdiff_t n) {
                lumalane::planar_rows rows{in.y.data(), in.u.data(), in.v.data(), dst};
                if (below) {
                    rows.lower = lumalane::lower_row::itself;
                    rows.y_below = in.opposite.data() - in.y.data();
                    rows.dst_below = below - dst;
                }
                rows.count = pixels / n;
                rows.y_next = n, rows.chroma_next = n / 2;
                rows.dst_next = n * pixel_bytes[static_cast<int>(to)];
                (target.*emit)(rows, n);
            }};
}

kernel of(const char *name, surface to, packed emit) {
    return {name, to, true,
            [=](const row_kernels &target, const inputs &in, unsigned char *dst,
                unsigned char *below, std::ptrdiff_t n) {
                lumalane::packed_rows rows{in.packed.data(), in.packed.data(), dst};
                if (below) {
                    rows.lower = lumalane::lower_row::itself;
                    rows.src_below = in.packed_opposite.data() - in.packed.data();
                    rows.dst_below = below - dst;
                }
                rows.count = pixels / n;
                rows.src_next = 2 * n;
                rows.dst_next = n * pixel_bytes[static_cast<int>(to)];
                (target.*emit)(rows, n);
            }};
}

kernel of(const char *name, surface to, keyed emit) {
    return {
        name, to, false,
        [=](const row_kernels &target, const inputs &in, unsigned char *dst, unsigned char *,
            std::ptrdiff_t n) {
            lumalane::keyed_rows rows{in.y.data(), in.u.data(), in.v.data(), in.opaque.data(), dst};
            rows.count = pixels / n;
            rows.luma_next = n, rows.chroma_next = n / 2;
            rows.dst_next = n * pixel_bytes[static_cast<int>(to)];
            static const lumalane::key_colour key{};
            (target.*emit)(rows, n, key);
        }};
}

const kernel kernels[] = {
    of("emit_rgb32", surface::rgb32, &row_kernels::emit_rgb32),
    of("emit_rgb24", surface::rgb24, &row_kernels::emit_rgb24),
    of("emit_rgb16_565", surface::rgb16_565, &row_kernels::emit_rgb16_565),
    of("emit_rgb16_555", surface::rgb16_555, &row_kernels::emit_rgb16_555),
    of("emit_rgb16_664", surface::rgb16_664, &row_kernels::emit_rgb16_664),
    of("emit_rgb16_655", surface::rgb16_655, &row_kernels::emit_rgb16_655),
    of("emit_packed_rgb32", surface::rgb32, &row_kernels::emit_packed_rgb32),
    of("emit_packed_rgb24", surface::rgb24, &row_kernels::emit_packed_rgb24),
    of("emit_packed_rgb16_565", surface::rgb16_565, &row_kernels::emit_packed_rgb16_565),
    of("emit_packed_rgb16_555", surface::rgb16_555, &row_kernels::emit_packed_rgb16_555),
    of("emit_packed_rgb16_664", surface::rgb16_664, &row_kernels::emit_packed_rgb16_664),
    of("emit_packed_rgb16_655", surface::rgb16_655, &row_kernels::emit_packed_rgb16_655),
    of("emit_keyed_rgb32", surface::rgb32, &row_kernels::emit_keyed_rgb32),
    of("emit_keyed_rgb24", surface::rgb24, &row_kernels::emit_keyed_rgb24),
    of("emit_keyed_rgb16_565", surface::rgb16_565, &row_kernels::emit_keyed_rgb16_565),
};

// Every kernel of rows.inc that makes RGB of samples is above.
TEST(rgb_kernels, are_all_those_of_the_list) {
    std::vector<std::string> listed, here;
#define LUMALANE_ROW_KERNEL(kind, name, ...) listed.push_back(#name);
#include "rows/rows.inc"
#undef LUMALANE_ROW_KERNEL
    std::erase_if(listed, [](const std::string &name) {
        return name.rfind("emit_", 0) != 0 || name.find("rgb") == std::string::npos;
    });
    for (const kernel &k : kernels)
        here.push_back(k.name);
    std::sort(listed.begin(), listed.end());
    std::sort(here.begin(), here.end());
    EXPECT_EQ(here, listed);
}

class rgb_kernel_test : public testing::Test {
protected:
    inputs in;
    bytes dst = bytes(4 * pixels), below = dst;

    ::testing::AssertionResult agrees(const lumalane::target &target, const kernel &k,
                                      std::ptrdiff_t n, bool pair) {
        const int s = static_cast<int>(k.to);
        std::fill(dst.begin(), dst.end(), static_cast<unsigned char>(0xa5));
        std::fill(below.begin(), below.end(), static_cast<unsigned char>(0xa5));
        k.run(target.rows, in, dst.data(), pair ? below.data() : nullptr, n);
        target.leave_clean();
        const auto difference = [&](const bytes &made, const bytes &expected) {
            if (std::memcmp(made.data(), expected.data(), expected.size()) == 0)
                return ::testing::AssertionSuccess();
            const auto wrong = std::mismatch(expected.begin(), expected.end(), made.begin()).first;
            return ::testing::AssertionFailure()
                   << k.name << " of " << target.name << ", rows of " << n
                   << (pair ? ", a pair" : "") << ": pixel "
                   << (wrong - expected.begin()) / pixel_bytes[s] << ", U " << int{in.u[0]};
        };
        const ::testing::AssertionResult upper = difference(dst, in.expected[s]);
        return upper && pair ? difference(below, in.expected_opposite[s]) : upper;
    }
};

TEST_F(rgb_kernel_test, is_that_of_the_model_for_every_colour) {
    const tests::proofs wanted = tests::wanted_proofs();
    std::map<std::string, unsigned long long> proven;
    for (int cb = 0; cb < 256; ++cb) {
        in.set(cb);
        for (const lumalane::target *target : tests::runnable_targets()) {
            // The narrowest one is slow, and is not shipped.
            const bool slow = target == lumalane::targets().begin();
            if (slow && wanted == tests::proofs::some)
                continue;
            for (const kernel &k : kernels) {
                const int step = wanted == tests::proofs::all    ? 1
                                 : slow                          ? 51
                                 : &k == kernels                 ? 1
                                 : wanted == tests::proofs::some ? 15
                                                                 : 1;
                if (cb % step != 0)
                    continue;
                std::vector<std::ptrdiff_t> lengths{pixels, 16};
                if (target->rows.vector_bytes > 32)
                    lengths.push_back(32);
                for (const std::ptrdiff_t n : lengths) {
                    ASSERT_TRUE(agrees(*target, k, n, false));
                    if (k.makes_pairs) {
                        ASSERT_TRUE(agrees(*target, k, n, true));
                    }
                }
                proven[target->name] += pixels;
            }
        }
    }
    for (const auto &[target, count] : proven) {
        std::printf("%s: %llu of %llu triples and kernels\n", target.c_str(), count,
                    std::size(kernels) * (1ull << 24));
        std::printf("figure: triples %llu\n", count);
    }
    EXPECT_EQ(proven.size() + (wanted == tests::proofs::some), tests::runnable_targets().size());
}

} // namespace
