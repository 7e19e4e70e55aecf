// Slices of a picture make the bytes that one call makes.
#include "bench/library.h"

#include <gtest/gtest.h>

namespace lumalane::bench {

bool operator==(const slice &a, const slice &b) { return a.first == b.first && a.rows == b.rows; }
std::ostream &operator<<(std::ostream &out, const slice &rows) {
    return out << rows.rows << " rows from " << rows.first << " on";
}

namespace {

using shares = std::vector<std::vector<slice>>;

constexpr slice none{0, 0};

TEST(slices_test, begin_on_even_rows) {
    EXPECT_EQ(share(240, slicing::planar, 1, none), (shares{{{0, 240}}}));
    EXPECT_EQ(share(240, slicing::planar, 2, none), (shares{{{0, 120}}, {{120, 120}}}));
    EXPECT_EQ(share(10, slicing::packed, 2, none), (shares{{{0, 6}}, {{6, 4}}}));
    EXPECT_EQ(share(7, slicing::planar, 3, none), (shares{{{0, 4}}, {{4, 2}}, {{6, 1}}}));
}

TEST(slices_test, of_fields_begin_on_fourth_rows) {
    EXPECT_EQ(share(24, slicing::field, 2, none), (shares{{{0, 12}}, {{12, 12}}}));
    EXPECT_EQ(share(20, slicing::field, 2, none), (shares{{{0, 12}}, {{12, 8}}}));
}

TEST(slices_test, are_no_more_than_places_to_cut) {
    EXPECT_EQ(share(4, slicing::planar, 8, none), (shares{{{0, 2}}, {{2, 2}}}));
}

TEST(slices_test, share_the_rows_that_take_longer) {
    // At the end, at the beginning, in between, everywhere.
    EXPECT_EQ(share(240, slicing::planar, 2, {216, 24}),
              (shares{{{0, 108}, {216, 12}}, {{108, 108}, {228, 12}}}));
    EXPECT_EQ(share(240, slicing::planar, 2, {0, 24}),
              (shares{{{0, 12}, {24, 108}}, {{12, 12}, {132, 108}}}));
    EXPECT_EQ(share(240, slicing::planar, 2, {204, 24}),
              (shares{{{0, 108}, {204, 12}}, {{108, 96}, {216, 24}}}));
    EXPECT_EQ(share(240, slicing::planar, 2, {0, 240}), (shares{{{0, 120}}, {{120, 120}}}));
    // Steps count with which some of their rows are busy.
    EXPECT_EQ(share(40, slicing::field, 2, {23, 7}),
              (shares{{{0, 16}, {20, 8}}, {{16, 4}, {28, 12}}}));
}

TEST(slices_test, of_what_cannot_be_cut_are_one_with_a_reason) {
    for (const slicing how : {slicing::planes_by_height, slicing::last_rows_differ}) {
        EXPECT_FALSE(can_be_cut(how));
        EXPECT_NE(reason_not_to_cut(how), "");
        EXPECT_EQ(share(240, how, 2, {216, 24}), (shares{{{0, 240}}}));
    }
    for (const slicing how : {slicing::planar, slicing::packed, slicing::field}) {
        EXPECT_TRUE(can_be_cut(how));
        EXPECT_EQ(reason_not_to_cut(how), "");
    }
}

using contents = std::vector<std::vector<unsigned char>>;

contents made(const job &job, int count) {
    scene scene({96, 72}, job.dst_pitch_per_pixel);
    job.in.arrange(scene);
    const library library(target_names().back());
    library.prepare();
    for (const std::vector<slice> &slices :
         share(scene.height, job.how, count, job.in.busy_rows(scene.height)))
        for (const slice rows : slices)
            library.work(job, scene, rows)();
    contents found;
    for (const buffer *buffer :
         {&scene.dst, &scene.alpha, &scene.sub_y, &scene.sub_u, &scene.sub_v})
        found.emplace_back(buffer->data(), buffer->data() + buffer->bytes());
    return found;
}

TEST(slices_test, make_the_bytes_of_one_call) {
    int compared = 0;
    for (const job &job : jobs)
        if (can_be_cut(job.how)) {
            const contents whole = made(job, 1);
            for (const int count : {2, 3})
                EXPECT_TRUE(made(job, count) == whole) << title(job) << " in " << count;
            ++compared;
        }
    EXPECT_GE(compared, 50);
}

} // namespace
} // namespace lumalane::bench
