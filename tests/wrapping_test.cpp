// Pitches so large that 32-bit products of them wrap, against the models, in memory of which few pages
// are ever touched.
#include <cstddef>
#include <cstdint>
#include <string>

#include "tests/model/models.h"
#include "tests/sparse_memory.h"
#include "tests/targets.h"

namespace {

using tests::sparse_memory;

class wrapping : public tests::on_each_target {
protected:
    sparse_memory y, u, v, alpha, sub, dst, expected;

    void SetUp() override {
        on_each_target::SetUp();
        for (const sparse_memory *memory : {&y, &u, &v, &alpha, &sub, &dst, &expected})
            ASSERT_TRUE(memory->mapped());
        contrast_data parameters{60, 70, 3, -5, 9, 0, 0, 0};
        get_contrast_data(&parameters);
        model::memory memory;
        memory.add({model::address_of(&parameters), model::address_of(&parameters + 1)});
        model::get_contrast_data(memory, &parameters);
    }

    // Compares two calls, of the library and of the model: `call(nullptr, to)` and `call(&memory, to)`.
    template <class Call>
    void compare(const std::string &what, const Call &call) {
        const auto on_model = [&] {
            model::memory memory;
            for (const sparse_memory *buffer : {&y, &u, &v, &alpha, &sub, &expected})
                memory.add(buffer->extent());
            call(&memory, expected);
        };
        // A first call tells which pages are read.
        on_model();
        for (const sparse_memory *source : {&y, &u, &v, &sub})
            source->fill_touched(255);
        alpha.fill_touched(16);
        expected.forget();
        on_model();
        call(nullptr, dst);
        expect_equal(dst, what);
        for (const sparse_memory *buffer : {&y, &u, &v, &alpha, &sub, &dst, &expected})
            buffer->forget();
    }

    void expect_equal(const sparse_memory &found, const std::string &what) const {
        long long made = 0, wrong = 0;
        const auto count = [&](std::ptrdiff_t at) {
            made += expected.origin()[at] != 0;
            wrong += found.origin()[at] != expected.origin()[at];
        };
        expected.each_byte(count);
        found.each_byte(count);
        EXPECT_GT(made, 0) << what;
        EXPECT_EQ(wrong, 0) << what;
    }

    struct size {
        int width, height, src_pitch, dst_pitch;
    };

    template <class Function, class Model>
    void compare(const char *name, Function *function, Model *model, const size &c) {
        compare(std::string(name) + ", height " + std::to_string(c.height) + ", src_pitch " +
                    std::to_string(c.src_pitch) + ", dst_pitch " + std::to_string(c.dst_pitch),
                [&](model::memory *memory, const sparse_memory &to) {
                    if (memory)
                        model(*memory, y.origin(), u.origin(), v.origin(), to.origin(), c.width,
                              c.height, c.src_pitch, c.dst_pitch, nullptr);
                    else
                        function(y.origin(), u.origin(), v.origin(), to.origin(), c.width, c.height,
                                 c.src_pitch, c.dst_pitch, nullptr);
                });
    }

    struct pitches {
        int height, video, sub, dst;
    };

    template <class Function, class Model>
    void compare(const char *name, Function *function, Model *model, const pitches &c) {
        compare(std::string(name) + ", height " + std::to_string(c.height) + ", pitches " +
                    std::to_string(c.video) + ", " + std::to_string(c.sub) + " and " +
                    std::to_string(c.dst),
                [&](model::memory *memory, const sparse_memory &to) {
                    tagMIX_INFO mix{};
                    mix.video_pitch = c.video, mix.sub_pitch = c.sub, mix.dst_pitch = c.dst;
                    mix.width = 32, mix.height = c.height;
                    mix.video_y = y.origin(), mix.video_u = u.origin(), mix.video_v = v.origin();
                    mix.alpha_plane = alpha.origin();
                    mix.sub_y = mix.sub_u = mix.sub_v = sub.origin();
                    mix.dst = to.origin();
                    mix.dst_u = to.origin() + 1024, mix.dst_v = to.origin() + 2048;
                    if (!memory)
                        return function(&mix);
                    memory->add({model::address_of(&mix), model::address_of(&mix + 1)});
                    model(*memory, &mix);
                });
    }

    // A packed picture of 512x4 with its upper left byte at 0 and the second pair of rows so far from the
    // first one, onto a surface within it.
    void convert_in_place(int src_pitch, std::ptrdiff_t second_pair);
};

INSTANTIATE_ON_EACH_TARGET(wrapping);

#define LUMALANE_BOTH(name) #name, name, model::name

// Where the end of luma wraps, V and U lie ahead of it and further from each other than rows say.
TEST_P(wrapping, the_plain_copy_makes_all_rows_of_chroma) {
    for (const size &c :
         {size{16, 30, 16, 1 << 26}, size{16, 32, 16, 1 << 26}, size{16, 64, 16, 1 << 25},
          size{16, 2, 16, 1 << 30}, size{32, 4, 32, 1 << 29}})
        compare(LUMALANE_BOTH(loadimage_yv12), c);
}

// Two rows of a gigabyte are still a distance: what wraps is the way on from a row's end.
TEST_P(wrapping, packed_pairs_are_two_rows_apart) {
    compare(LUMALANE_BOTH(LoadYUY2_RGB32), size{48, 4, 48, 1 << 30});
    compare(LUMALANE_BOTH(LoadYUY2_YUY2), size{48, 4, 1 << 29, 96});
}

TEST_P(wrapping, loads_of_planes_and_packed_pictures) {
    for (const int pitch : {1 << 30, -(1 << 30)})
        for (const size &c : {size{32, 4, pitch, 256}, size{32, 4, 64, pitch}}) {
            compare(LUMALANE_BOTH(loadimage_rgb32), c);
            compare(LUMALANE_BOTH(loadimage_rgb24_ajust), c);
            compare(LUMALANE_BOTH(loadimage_yuy2), c);
            compare(LUMALANE_BOTH(loadimage_half_yuy2_ajust), c);
            compare(LUMALANE_BOTH(LoadYUY2_RGB32), c);
        }
}

TEST_P(wrapping, chroma_behind_planes) {
    compare(LUMALANE_BOTH(loadimage_half_yv12_ajust), size{32, 34, 32, 1 << 28});
    compare(LUMALANE_BOTH(strech_picture_1X2_yv12_ajust), size{32, 16, 32, 3 << 26});
}

TEST_P(wrapping, columns_of_stretches_to_rgb) {
    compare(LUMALANE_BOTH(strech_picture_1X2_yuy2_ajust_rgb32), size{32, 12, 1 << 28, 256});
    compare(LUMALANE_BOTH(strech_picture_1X2_yuy2_ajust_rgb32), size{32, 12, 64, 1 << 27});
}

TEST_P(wrapping, mixes_of_frames) {
    for (const int pitch : {1 << 30, -(1 << 30)})
        for (const pitches &c :
             {pitches{4, pitch, 32, 128}, pitches{4, 32, pitch, 128}, pitches{4, 32, 32, pitch}}) {
            compare(LUMALANE_BOTH(mix_ayuy2_yuy2_p_ajust), c);
            compare(LUMALANE_BOTH(mix_ayuy2_rgb32_p_ajust), c);
            compare(LUMALANE_BOTH(mix_ayv12_yv12_p), c);
        }
}

TEST_P(wrapping, mixes_of_fields) {
    for (const int sign : {1, -1}) {
        const int pitch = sign * (3 << 27), quarter = sign * (1 << 29);
        for (const pitches &c : {pitches{8, pitch, 32, 128}, pitches{8, 32, pitch, 128},
                                 pitches{8, 32, quarter, 128}}) {
            compare(LUMALANE_BOTH(mix_ayuy2_rgb32_i_ajust), c);
            compare(LUMALANE_BOTH(mix_ayuy2_yuy2_i_ajust), c);
        }
        compare(LUMALANE_BOTH(mix_ayuy2_rgb32_i_ajust), pitches{8, 32, 32, pitch});
        compare(LUMALANE_BOTH(mix_ayuy2_yuy2_i_ajust), pitches{8, 32, 32, quarter});
    }
}

#undef LUMALANE_BOTH

void wrapping::convert_in_place(int src_pitch, std::ptrdiff_t second_pair) {
    const int width = 512, height = 4, dst_pitch = 2048;
    const std::ptrdiff_t lower = 2 * std::ptrdiff_t{src_pitch};
    const std::ptrdiff_t to = second_pair + 16 - 3 * dst_pitch;
    for (const sparse_memory *memory : {&y, &expected})
        for (const std::ptrdiff_t row :
             {std::ptrdiff_t{0}, lower, second_pair, second_pair + lower})
            for (int i = 0; i < 2 * width; ++i)
                memory->origin()[row + i] =
                    static_cast<std::uint8_t>(row / 7 + i * 31 + (i * i >> 5));
    LoadYUY2_YUY2(y.origin(), nullptr, nullptr, y.origin() + to, width, height, src_pitch,
                  dst_pitch, nullptr);
    model::memory memory;
    memory.add(expected.extent());
    model::LoadYUY2_YUY2(memory, expected.origin(), nullptr, nullptr, expected.origin() + to, width,
                         height, src_pitch, dst_pitch, nullptr);
    expect_equal(y, "src_pitch " + std::to_string(src_pitch));
}

// The second pair lies ahead of the first one: the surface covers it, but only what is told of it
// without wrapping lies elsewhere.
TEST_P(wrapping, a_row_that_is_stored_before_it_is_loaded) {
    convert_in_place(0x30000000, -0x40000000);
}

TEST_P(wrapping, a_row_of_a_bottom_up_picture_that_is_stored_before_it_is_loaded) {
    convert_in_place(-0x30000000, 0x40000000);
}

} // namespace
