// What footprint_of() says about calls drawn at random, against what the models read and write.
#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <lumalane/checked.h>

#include "picture/geometry.h"
#include "tests/call_memory.h"
#include "tests/differential/drawn_call.h"
#include "tests/proofs.h"
#include "tests/recorded_call.h"

namespace {

using lumalane::byte_range;
using lumalane::footprint;
using lumalane::footprint_of;
using lumalane::pointer;
using tests::call_memory;
namespace functions = lumalane::functions;

// ---- Examples, made by the compiler --------------------------------------------------------------

constexpr bool equal(const byte_range &a, long long begin, long long end) {
    return a.begin == begin && a.end == end;
}

// Eight rows of 32 pixels, without gaps.
constexpr footprint rgb32 = footprint_of(functions::loadimage_rgb32, {32, 8, 32, 128});
static_assert(equal(rgb32[pointer::src].read, 0, 8 * 32));
static_assert(equal(rgb32[pointer::src_u].read, 0, 4 * 16));
static_assert(equal(rgb32[pointer::src_v].read, 0, 4 * 16));
static_assert(equal(rgb32[pointer::dst].written, 0, 8 * 128));
static_assert(rgb32[pointer::src].written.empty() && rgb32[pointer::dst].read.empty());
static_assert(rgb32[pointer::info].touched().empty() && rgb32[pointer::mix].touched().empty());

// Bottom-up: the picture begins with its last row.
constexpr footprint bottom_up = footprint_of(functions::loadimage_rgb32, {32, 8, 32, -128});
static_assert(equal(bottom_up[pointer::dst].written, -7 * 128, 128));

// A width off the step drifts: three more pairs, 12 pixels each, and the last step.
constexpr footprint off_step = footprint_of(functions::loadimage_rgb32, {20, 8, 20, 80});
static_assert(equal(off_step[pointer::dst].written, 0, 3 * (160 + 48) + 80 + 128));

// Layouts that there are not make nothing.
constexpr footprint no_layout = footprint_of(functions::loadimage_rgb16, {32, 8, 32, 64, 4});
static_assert(no_layout[pointer::dst].written.empty() && no_layout[pointer::src].read.empty());
static_assert(equal(no_layout[pointer::info].read, 32, 36));

// In place: a surface is read and written.
constexpr footprint masked = footprint_of(functions::RelaceMaskWithColorKey, {16, 20, 3});
static_assert(equal(masked[pointer::dst].touched(), 0, 2 * 20 + 16));
static_assert(equal(masked[pointer::mask].touched(), 0, 2 * 20 + 16));

// Of an RGB24 surface a byte beyond each row is read.
constexpr footprint converted = footprint_of(functions::Convert_RGB24_To_AYUY2, {0, 16, 48, 16, 2});
static_assert(equal(converted[pointer::dst].read, 0, 2 * 48 + 1));

static_assert(equal(footprint_of(functions::get_contrast_data)[pointer::params].read, 0, 32));

// ---- Drawn calls ---------------------------------------------------------------------------------

struct comparison {
    bool strays = false; // out of its buffers, by the formulas and in the model
    bool before_a_pointer = false;
    std::string failure;
};

std::string text_of(const byte_range &r) {
    return r.empty() ? "nothing"
                     : "[" + std::to_string(r.begin) + ", " + std::to_string(r.end) + ")";
}

byte_range united(const byte_range &a, const byte_range &b) {
    return a.empty()   ? b
           : b.empty() ? a
                       : byte_range{std::min(a.begin, b.begin), std::max(a.end, b.end)};
}

comparison compare(const differential::drawn_call &drawn, const call_memory &memory) {
    const differential::placement places = memory.place(drawn);
    model::memory m;
    for (const model::address origin : places.origins)
        m.add({origin - call_memory::half, origin + call_memory::half});

    // What the buffers see of all pointers that lie in them, counted from their origins.
    comparison result;
    std::vector<byte_range> read(drawn.buffers.size()), written(drawn.buffers.size());
    for (const tests::recorded_call &call : tests::record(drawn, places)) {
        // There is room for all rows.
        EXPECT_LE(call.sets_read, lumalane::call_rows::most_read);
        EXPECT_LE(call.sets_written, lumalane::call_rows::most_written);
        EXPECT_LE(call.sets_read + call.sets_written, lumalane::detail::row_list::most);
        for (int p = 0; p < lumalane::pointer_count; ++p) {
            const lumalane::pointer_footprint &bytes = call.bytes.of[p];
            if (bytes.touched().empty())
                continue;
            const auto address = static_cast<const std::uint8_t *>(call.pointers[p]);
            const std::size_t buffer = memory.buffer_of(address);
            const std::ptrdiff_t offset = address - memory.origin(buffer);
            const auto moved = [&](const byte_range &r) {
                return r.empty() ? r : byte_range{r.begin + offset, r.end + offset};
            };
            read[buffer] = united(read[buffer], moved(bytes.read));
            written[buffer] = united(written[buffer], moved(bytes.written));
            result.strays |= !call_memory::holds(moved(bytes.touched()));
            result.before_a_pointer |= bytes.touched().begin < 0;
        }
    }

    bool model_strays = false;
    try {
        drawn.on_model(m, places);
    } catch (const model::stray_access &) {
        model_strays = true;
    }
    if (model_strays != result.strays)
        result.failure = model_strays ? "the model alone leaves its buffers"
                                      : "the footprint alone leaves its buffers";
    if (model_strays || !result.failure.empty())
        return result;
    for (std::size_t i = 0; i < drawn.buffers.size(); ++i) {
        const auto compare_bytes = [&](const char *how, const model::extent &found,
                                       const byte_range &expected) {
            byte_range bytes;
            if (!found.empty())
                bytes = {static_cast<std::ptrdiff_t>(found.first - places.origins[i]),
                         static_cast<std::ptrdiff_t>(found.end - places.origins[i])};
            if (bytes.empty() != expected.empty() ||
                (!bytes.empty() && !equal(bytes, expected.begin, expected.end)))
                result.failure = std::string(drawn.buffers[i].name) + ": the model " + how + ' ' +
                                 text_of(bytes) + ", the footprint says " + text_of(expected);
        };
        compare_bytes("reads", m.read(i), read[i]);
        compare_bytes("writes", m.written(i), written[i]);
    }
    return result;
}

class footprint_test : public testing::TestWithParam<differential::subject> {};

TEST_P(footprint_test, is_what_the_model_reads_and_writes) {
    const int cases = tests::wanted_proofs() == tests::proofs::some ? 75 : 300;
    static const call_memory memory;
    differential::random r(13);
    int compared = 0, strays = 0, before_a_pointer = 0;
    while (compared < cases && strays < 20 * cases) {
        const differential::drawn_call drawn = GetParam().draw(r);
        const comparison c = compare(drawn, memory);
        ASSERT_EQ(c.failure, "") << drawn.arguments;
        compared += !c.strays;
        strays += c.strays;
        before_a_pointer += !c.strays && c.before_a_pointer;
    }
    EXPECT_EQ(compared, cases);
    if (GetParam().name != std::string("get_contrast_data")) {
        EXPECT_GE(before_a_pointer, cases / 50);
    }
}

INSTANTIATE_TEST_SUITE_P(every, footprint_test, testing::ValuesIn(differential::subjects()),
                         [](const auto &subject) { return subject.param.name; });

constexpr auto name_of = [](const auto &function) { return function.name; };

TEST(footprint_functions, have_the_names_of_the_exports) {
#define LUMALANE_EXPORT(signature, name) EXPECT_STREQ(name_of(functions::name), #name);
#include "abi/exports.inc"
#undef LUMALANE_EXPORT
}

} // namespace
