// From how many bytes on each function stores its surface around the cache: from those that it writes.
#include <algorithm>
#include <cstdint>
#include <map>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "tests/model/models.h"
#include "tests/targets.h"

namespace {

// A call of each signature with pictures of 128x32 pixels, whose rows begin on lines of the cache unless
// the surface's have `more_pitch`.
struct memory_of_call {
    static constexpr int width = 128, height = 32;
    static constexpr std::size_t plane_bytes = 1 << 17;
    const int dst_pitch;

    struct alignas(64) plane {
        unsigned char bytes[plane_bytes] = {};
    };
    // Sources, alpha, then surfaces.
    std::vector<plane> planes = std::vector<plane>(10);
    tag_ajust_contrast_info info{};
    tagMIX_INFO mix{};
    tagVideoFrame frame{};
    contrast_data contrast{};

    explicit memory_of_call(int more_pitch = 0) : dst_pitch(1024 + more_pitch) {
        info.surface_height = info.rows_to_plane_end = height;
        std::fill_n(alpha(), plane_bytes, static_cast<unsigned char>(8)); // drawn everywhere
        mix.video_y = at(0), mix.video_u = at(1), mix.video_v = at(2);
        mix.sub_y = at(3), mix.sub_u = at(4), mix.sub_v = at(5);
        mix.alpha_plane = alpha();
        mix.dst = at(7), mix.dst_u = at(8), mix.dst_v = at(9);
        mix.video_pitch = mix.sub_pitch = width, mix.dst_pitch = dst_pitch;
        mix.width = width, mix.height = height;
        mix.color_key = 1;
        mix.adjust_info = &info;
        frame.luma_pitch = width;
        frame.plane_y = at(0), frame.plane_u = at(1), frame.plane_v = at(2);
    }

    unsigned char *at(std::size_t number) { return planes[number].bytes; }
    unsigned char *alpha() { return at(6); }

    void call(auto run, void (*)(LUMALANE_PARAMETERS_parameters)) { run(&contrast); }
    void call(auto run, void (*)(LUMALANE_PARAMETERS_picture)) {
        run(at(0), at(1), at(2), at(7), width, height, width, dst_pitch, &info);
    }
    void call(auto run, void (*)(LUMALANE_PARAMETERS_mix)) {
        tagMIX_INFO record = mix;
        run(&record);
    }
    void call(auto run, void (*)(LUMALANE_PARAMETERS_key_fill)) {
        run(1u, static_cast<void *>(at(7)), width, height, 0, dst_pitch);
    }
    void call(auto run, void (*)(LUMALANE_PARAMETERS_mask)) {
        run(at(7), at(0), 1u, 2u, width, width, height);
    }
    void call(auto run, void (*)(LUMALANE_PARAMETERS_packed_stretch)) {
        run(at(0), nullptr, nullptr, at(7), 2 * width, height, dst_pitch);
    }
    void call(auto run, void (*)(LUMALANE_PARAMETERS_packed_stretch_ajust)) {
        run(at(0), nullptr, nullptr, at(7), 2 * width, height, dst_pitch, &info);
    }
    void call(auto run, void (*)(LUMALANE_PARAMETERS_plane_stretch)) {
        run(at(0), at(7), width, height, width, dst_pitch);
    }
    void call(auto run, void (*)(LUMALANE_PARAMETERS_plane_stretch_ajust)) {
        run(at(0), at(7), width, height, width, dst_pitch, &info, 1);
    }
    void call(auto run, void (*)(LUMALANE_PARAMETERS_frame_stretch)) {
        run(&frame, 0, height, at(7), dst_pitch, &info);
    }
};

struct function {
    const char *name;
    void (*run)(memory_of_call &);
    void (*model)(memory_of_call &, model::memory &);
};

const function functions[] = {
#define LUMALANE_EXPORT(signature, name)                                                           \
    {#name, [](memory_of_call &m) { m.call(name, name); },                                         \
     [](memory_of_call &m, model::memory &memory) {                                                \
         m.call([&](auto... arguments) { model::name(memory, arguments...); }, name);              \
     }},
#include "abi/exports.inc"
#undef LUMALANE_EXPORT
};

long long bytes_written(const function &f) {
    static std::map<std::string_view, long long> known;
    if (const auto found = known.find(f.name); found != known.end())
        return found->second;
    memory_of_call m;
    std::vector<std::vector<std::uint8_t>> marks;
    model::memory memory;
    const model::address begin = model::address_of(m.at(0));
    for (std::size_t i = 0; i < m.planes.size(); ++i) {
        marks.emplace_back(memory_of_call::plane_bytes);
        const model::address first = begin + i * sizeof(memory_of_call::plane);
        memory.add({first, first + memory_of_call::plane_bytes});
        memory.mark_in(marks.back().data());
    }
    // Records are on the stack and elsewhere.
    memory.add({0, begin});
    memory.add({begin + m.planes.size() * sizeof(memory_of_call::plane), ~model::address{0}});
    f.model(m, memory);
    long long written = 0;
    for (const auto &plane : marks)
        written += std::ranges::count_if(
            plane, [](std::uint8_t mark) { return mark & model::memory::is_written; });
    return known[f.name] = written;
}

int finished;

class store_policy_test : public tests::on_each_target {
protected:
    lumalane::row_kernels counting = GetParam()->rows;
    lumalane::target counted{GetParam()->name, counting, [] { return true; }, [] {}};

    void SetUp() override {
        counting.finish_stores = [](auto...) { ++finished; };
        lumalane::force(counted);
    }
    void TearDown() override { lumalane::force(*GetParam()); }

    // Whether stores go around a cache of which a third holds so many bytes.
    static bool go_around(long long third, const auto &run) {
        finished = 0;
        lumalane::assume_last_level_cache(static_cast<unsigned>(3 * third));
        run();
        return finished > 0;
    }
};

// Of how many bytes, where it is not those: loadimage_yuy2() leaves gaps, and what reads a surface and
// writes alpha goes by the surface. 0: of none, all stores are cached.
const std::map<std::string_view, long long> others = {
    {"get_contrast_data", 0},
    {"loadimage_yv12", 0},
    {"loadimage_yuy2", 8192},
    {"Convert_RGB32_To_AYUY2", 0},
    {"Convert_RGB24_To_AYUY2", 0},
    {"Convert_RGB16_565_To_AYUY2", 0},
    {"Restore_RGB32_To_Alpha", 16384},
    {"Restore_RGB24_To_Alpha", 12288},
    {"Restore_RGB16_565_To_Alpha", 8192},
    {"RelaceMaskWithColorKey", 0},
};

TEST_P(store_policy_test, is_that_of_the_bytes_that_are_written) {
    memory_of_call memory;
    for (const function &f : functions) {
        const auto run = [&] { f.run(memory); };
        const auto other = others.find(f.name);
        const long long bytes = other == others.end() ? bytes_written(f) : other->second;
        EXPECT_FALSE(go_around(std::max(bytes, 1LL), run)) << f.name;
        EXPECT_EQ(go_around(std::max(bytes - 1, 1LL), run), bytes > 0) << f.name;
    }
}

// Under a subpicture whose one row is clear: that of the bytes of all planes.
TEST_P(store_policy_test, of_video_alone_is_that_of_all_planes) {
    memory_of_call memory;
    std::fill_n(memory.alpha(), memory_of_call::plane_bytes, static_cast<unsigned char>(0));
    memory.mix.sub_pitch = 0;
    constexpr long long bytes = memory_of_call::width * memory_of_call::height * 3 / 2;
    for (auto *const mix : {mix_ayv12_yv12_p, mix_ayv12_yv12_p_ajust}) {
        const auto run = [&] { memory.call(mix, mix); };
        EXPECT_FALSE(go_around(bytes, run));
        EXPECT_TRUE(go_around(bytes - 1, run));
    }
}

// Rows off the lines of the cache that are stored in turn would fill lines by half.
TEST_P(store_policy_test, is_cached_off_lines_where_rows_are_stored_in_turn) {
    constexpr int more_pitch = 32;
    ASSERT_LE(GetParam()->rows.streamed_bytes, more_pitch);
    memory_of_call memory(more_pitch);
    const bool row_by_row = GetParam()->rows.vector_bytes < 32;
    const std::map<std::string_view, bool> around = {
        {"loadimage_yv12_ajust", true},
        {"LoadYUY2_YUY2", true},
        {"strech_picture_1X2_yuy2", row_by_row},
        {"strech_picture_1X2_yuy2_ajust", true},
        {"strech_picture_1X2_yuy2_ajust_rgb32", true},
        {"strech_picture_1X2_yuy2_ajust_rgb24", true},
        {"strech_picture_1X2_yuy2_ajust_rgb16", true},
        {"strech_opt_yuy2_ajust", true},
        {"strech_picture_2X2_yuy2", false},
        {"strech_picture_2X2_yuy2_ajust", false},
        {"yuy2_strech_picture_2X2_yuy2", false},
        {"yuy2_strech_picture_2X2_yuy2_ajust", false},
        {"strech_picture_1X2_yv12_ajust", false},
        {"strech_picture_2X2_yv12_ajust", false},
        {"strech_pic_1X2_adjust", false},
        {"strech_pic_2X2", false},
        {"strech_pic_2X2_adjust", false},
    };
    std::size_t found = 0;
    for (const function &f : functions) {
        const auto expected = around.find(f.name);
        if (expected == around.end()) {
            EXPECT_EQ(std::string_view(f.name).find("strech"), std::string_view::npos) << f.name;
            continue;
        }
        ++found;
        EXPECT_EQ(go_around(1, [&] { f.run(memory); }), expected->second) << f.name;
    }
    EXPECT_EQ(found, around.size());
}

// On a server, by what bounds the function: later where little is read beside what is stored.
TEST_P(store_policy_test, of_alpha_on_a_server_is_that_of_what_is_mostly_read_or_stored) {
    constexpr int width = 1024, most_height = 640;
    struct alignas(64) line {
        unsigned char bytes[64] = {};
    };
    std::vector<line> alpha(width * most_height / 64), surface(4 * alpha.size());
    const struct {
        void (*run)(LUMALANE_PARAMETERS_mix);
        int height;
        bool around;
    } cases[] = {
        {load_subpicture_alpha_rgb32, 560, false},
        {load_subpicture_alpha_rgb32, 564, true},
        {Restore_RGB32_To_Alpha, 304, false},
        {Restore_RGB32_To_Alpha, 308, true},
    };
    for (const auto &c : cases) {
        tagMIX_INFO mix{};
        mix.alpha_plane = alpha.front().bytes, mix.dst = surface.front().bytes;
        mix.video_pitch = mix.sub_pitch = width, mix.dst_pitch = 4 * width;
        mix.width = width, mix.height = c.height;
        EXPECT_EQ(go_around(200'000'000, [&] { c.run(&mix); }), c.around) << c.height;
    }
}

INSTANTIATE_ON_EACH_TARGET(store_policy_test);

} // namespace
