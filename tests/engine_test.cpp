// The differential engine finds what it is for: here the functions under test are the models, as
// they are and with a fault each.
#include <cstring>
#include <string_view>

#include <gtest/gtest.h>

#include "tests/differential/differential.h"
#include "tests/model/models.h"

namespace {

// Enough for each of the faults below; what finds nothing takes a while.
constexpr differential::options few_cases{.cases = 300}, fewest_cases{.cases = 60};

// The models, with all memory open to them.
model::memory everything() {
    model::memory m;
    m.add({0, ~model::address{0}});
    return m;
}

tests::function_table models() {
    return {
        "models",
#define LUMALANE_EXPORT(signature, name)                                                           \
    [](LUMALANE_PARAMETERS_##signature) {                                                          \
        model::memory m = everything();                                                            \
        model::name(m, LUMALANE_ARGUMENTS_##signature);                                            \
    },
#include "abi/exports.inc"
#undef LUMALANE_EXPORT
    };
}

differential::outcome run(std::string_view name, const tests::function_table &functions) {
    for (const differential::subject &s : differential::subjects())
        if (s.name == name)
            return differential::run(s, {{functions}}, few_cases);
    return {};
}

TEST(engine, finds_nothing_in_the_models_themselves) {
    for (const differential::subject &s : differential::subjects()) {
        const differential::outcome result = differential::run(s, {{models()}}, fewest_cases);
        EXPECT_EQ(result.failure, "");
        EXPECT_EQ(result.cases, fewest_cases.cases);
        EXPECT_LE(result.redrawn, result.cases);
    }
}

TEST(engine, finds_a_wrong_bit) {
    tests::function_table wrong = models();
    wrong.loadimage_rgb32 = [](LUMALANE_PARAMETERS_picture) {
        model::memory m = everything();
        model::loadimage_rgb32(m, LUMALANE_ARGUMENTS_picture);
        dst[5] ^= 1;
    };
    EXPECT_NE(run("loadimage_rgb32", wrong).failure, "");
}

TEST(engine, finds_a_write_outside_of_the_footprint) {
    tests::function_table wrong = models();
    wrong.loadimage_rgb24 = [](LUMALANE_PARAMETERS_picture) {
        model::memory m = everything();
        model::loadimage_rgb24(m, LUMALANE_ARGUMENTS_picture);
        dst[-1] ^= 1;
    };
    EXPECT_NE(run("loadimage_rgb24", wrong).failure, "");
}

TEST(engine, finds_rows_stored_in_another_order) {
    tests::function_table wrong = models();
    wrong.loadimage_rgb32 = [](LUMALANE_PARAMETERS_picture) {
        model::memory m = everything();
        // Pair by pair where the widths are on the step: the same but for the order of the steps.
        if (width <= 16 || width % 16 != 0)
            return model::loadimage_rgb32(m, LUMALANE_ARGUMENTS_picture);
        for (int x = width - 16; x >= 0; x -= 16)
            model::loadimage_rgb32(m, src + x, src_u + x / 2, src_v + x / 2, dst + 4 * x, 16,
                                   height, src_pitch, dst_pitch, info);
    };
    EXPECT_NE(run("loadimage_rgb32", wrong).failure, "");
}

TEST(engine, finds_crossed_chroma_parameters) {
    tests::function_table wrong = models();
    wrong.get_contrast_data = [](void *params) {
        contrast_data crossed;
        std::memcpy(&crossed, params, sizeof crossed);
        std::swap(crossed.u_offset, crossed.v_offset);
        model::memory m = everything();
        model::get_contrast_data(m, &crossed);
    };
    EXPECT_NE(run("get_contrast_data", wrong).failure, "");
}

TEST(engine, finds_a_field_of_a_record_that_is_left_as_it_was) {
    tests::function_table wrong = models();
    wrong.Restore_RGB24_To_Alpha = [](tagMIX_INFO *mix) {
        model::memory m = everything();
        const int height = mix->height;
        model::Restore_RGB24_To_Alpha(m, mix);
        mix->height = height;
    };
    EXPECT_NE(run("Restore_RGB24_To_Alpha", wrong).failure, "");
}

TEST(engine, finds_groups_of_the_key_colour_that_are_converted) {
    tests::function_table wrong = models();
    wrong.Convert_RGB16_565_To_AYUY2 = [](tagMIX_INFO *mix) {
        model::memory m = everything();
        mix->color_key ^= 1;
        model::Convert_RGB16_565_To_AYUY2(m, mix);
        mix->color_key ^= 1;
    };
    EXPECT_NE(run("Convert_RGB16_565_To_AYUY2", wrong).failure, "");
}

TEST(engine_death, finds_a_read_outside_of_the_footprint) {
    tests::function_table wrong = models();
    wrong.loadimage_rgb16 = [](LUMALANE_PARAMETERS_picture) {
        model::memory m = everything();
        model::loadimage_rgb16(m, LUMALANE_ARGUMENTS_picture);
        [[maybe_unused]] const volatile unsigned char seen = src[-1];
    };
    EXPECT_EXIT(run("loadimage_rgb16", wrong), testing::ExitedWithCode(1),
                "fault on models, buffers .*: loadimage_rgb16");
}

TEST(engine_death, finds_a_read_through_an_unread_pointer_of_a_record) {
    tests::function_table wrong = models();
    wrong.load_subpicture_alpha_rgb32 = [](tagMIX_INFO *mix) {
        model::memory m = everything();
        [[maybe_unused]] const volatile unsigned char seen = *mix->sub_y;
        model::load_subpicture_alpha_rgb32(m, mix);
    };
    EXPECT_EXIT(run("load_subpicture_alpha_rgb32", wrong), testing::ExitedWithCode(1),
                "fault on models, buffers with room around: load_subpicture_alpha_rgb32");
}

TEST(engine_death, finds_a_read_of_an_unread_record) {
    tests::function_table wrong = models();
    wrong.loadimage_rgb24 = [](LUMALANE_PARAMETERS_picture) {
        model::memory m = everything();
        [[maybe_unused]] const volatile unsigned seen = info->rgb16_layout;
        model::loadimage_rgb24(m, LUMALANE_ARGUMENTS_picture);
    };
    EXPECT_EXIT(run("loadimage_rgb24", wrong), testing::ExitedWithCode(1),
                "fault on models, buffers with room around: loadimage_rgb24");
}

} // namespace
