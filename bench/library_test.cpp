// What is compared does the same work: every build makes the same bytes of every job.
#include "bench/library.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace lumalane::bench {
namespace {

using contents = std::vector<std::vector<unsigned char>>;

// Everything that a job can write.
contents of(const scene &scene) {
    contents found;
    for (const buffer *buffer :
         {&scene.dst, &scene.alpha, &scene.sub_y, &scene.sub_u, &scene.sub_v})
        found.emplace_back(buffer->data(), buffer->data() + buffer->bytes());
    return found;
}

class library_test : public testing::TestWithParam<std::string> {};

std::vector<std::string> builds() {
    std::vector<std::string> all = target_names();
    all.push_back(LUMALANE_SHARED_LIBRARY);
    return all;
}

TEST_P(library_test, makes_the_bytes_of_the_narrowest_target) {
    for (const job &job : jobs) {
        const auto work = [&job](const std::string &build) {
            scene scene({96, 48}, job.dst_pitch_per_pixel);
            job.in.arrange(scene);
            const contents before = of(scene);
            library(build).time(job, scene, 1);
            const contents after = of(scene);
            EXPECT_TRUE(after != before) << build << " does nothing as " << title(job);
            return after;
        };
        EXPECT_TRUE(work(GetParam()) == work(target_names().front())) << title(job);
    }
}

INSTANTIATE_TEST_SUITE_P(builds, library_test, testing::ValuesIn(builds()),
                         [](const auto &build) { return "build_" + std::to_string(build.index); });

TEST(library_test, what_is_no_library_is_refused) {
    EXPECT_THROW(library("/missing/library.so"), std::runtime_error);
    EXPECT_THROW(library("no target"), std::runtime_error);
}

} // namespace
} // namespace lumalane::bench
