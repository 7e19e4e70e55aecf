// The scalar peer is to be beaten at the same work: it makes the same bytes.
#include "bench/library.h"
#include "bench/peers.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

namespace lumalane::bench {
namespace {

class scalar_frame_stretch_test : public testing::TestWithParam<std::string> {
protected:
    int compared = 0;

    void compare(const job &job, scene &scene) {
        const std::size_t bytes = std::size_t(scene.dst_pitch) * 2 * scene.height;
        const auto written_by = [&](const auto &stretch) {
            std::memset(scene.dst.data(), 0xa5, bytes);
            stretch();
            return std::vector(scene.dst.data(), scene.dst.data() + bytes);
        };
        const library ours(GetParam());
        ours.prepare();
        const auto of_library = written_by(ours.work(job, scene, scene.whole()));
        const auto of_peer = written_by(scalar_frame_stretch.prepare(scene));
        EXPECT_TRUE(of_peer == of_library)
            << title(job) << ", " << scene.width << 'x' << scene.height;
        ++compared;
    }
};

TEST_P(scalar_frame_stretch_test, makes_the_bytes_of_the_library) {
    for (const job &job : jobs) {
        if (std::strcmp(job.name, "strech_opt_yuy2_ajust") != 0)
            continue;
        for (const size picture : {size{64, 16}, size{720, 64}}) {
            scene scene(picture, job.dst_pitch_per_pixel);
            job.in.arrange(scene);
            compare(job, scene);
            // Differences about as large as decide on the search for edges.
            for (const buffer *plane : {&scene.y, &scene.u, &scene.v})
                for (int i = 0; i < scene.src_pitch * scene.height / 4; ++i)
                    plane->data()[i] %= 32;
            compare(job, scene);
        }
    }
    EXPECT_EQ(compared, 8) << "flat and edges, in two sizes, and each of them softer";
}

INSTANTIATE_TEST_SUITE_P(targets, scalar_frame_stretch_test, testing::ValuesIn(target_names()),
                         [](const auto &target) { return target.param; });

} // namespace
} // namespace lumalane::bench
