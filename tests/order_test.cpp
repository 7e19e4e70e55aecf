// Whether the order of a call's stores can be observed, and whether they go around the cache: also
// where neither changes a byte, only the time that a call takes.
#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "picture/geometry.h"
#include "picture/surface.h"
#include "tests/differential/random.h"
#include "tests/targets.h"

namespace {

using differential::random;
using lumalane::apart;
using lumalane::bound_by;
using lumalane::joined;
using lumalane::pointer;
using lumalane::row_set;
using lumalane::store_policy;
using lumalane::surface_stores;

// ---- Rows ----------------------------------------------------------------------------------------

std::set<long long> bytes_of(const row_set &s) {
    std::set<long long> bytes;
    for (long long r = 0; r < s.rows; ++r)
        for (long long c = 0; c < s.columns; ++c)
            for (long long i = 0; i < s.bytes; ++i)
                bytes.insert(s.first + r * s.pitch + c * s.column_pitch + i);
    return bytes;
}

bool have_one_in_common(const std::set<long long> &a, const std::set<long long> &b) {
    for (const long long byte : a)
        if (b.count(byte) != 0)
            return true;
    return false;
}

row_set draw_rows(random &r) {
    row_set s{r.between(-20, 20), r.between(0, 6), r.between(0, 4), r.between(-9, 9)};
    if (r.one_in(4))
        s.columns = r.between(0, 3),
        s.column_pitch = r.one_of({static_cast<int>(s.bytes), r.between(-9, 9)});
    return s;
}

TEST(rows, begin_and_end_where_their_bytes_do) {
    random r(1);
    for (int i = 0; i < 20000; ++i) {
        const row_set s = draw_rows(r);
        const std::set<long long> bytes = bytes_of(s);
        ASSERT_EQ(s.empty(), bytes.empty());
        if (!bytes.empty()) {
            ASSERT_EQ(s.begin(), *bytes.begin());
            ASSERT_EQ(s.end(), *bytes.rbegin() + 1);
        }
        ASSERT_EQ(bytes_of(lumalane::moved(s, 7)).size(), bytes.size());
        ASSERT_EQ(lumalane::moved(s, 7).first, s.first + 7);
    }
}

TEST(rows, are_joined_from_columns_side_by_side) {
    random r(2);
    int joinable = 0;
    for (int i = 0; i < 20000; ++i) {
        const row_set s = draw_rows(r), j = joined(s);
        ASSERT_TRUE(bytes_of(j) == bytes_of(s));
        const bool side_by_side = s.column_pitch == s.bytes;
        ASSERT_EQ(j.columns, side_by_side ? 1 : s.columns);
        joinable += side_by_side;
    }
    EXPECT_GT(joinable, 500);
}

TEST(rows, are_apart_where_no_byte_is_in_two_of_them) {
    random r(3);
    for (int i = 0; i < 20000; ++i) {
        row_set s = draw_rows(r);
        s.columns = 1, s.bytes = r.between(1, 6), s.rows = r.between(1, 4);
        ASSERT_EQ(lumalane::rows_apart(s),
                  bytes_of(s).size() == static_cast<std::size_t>(s.rows * s.bytes));
    }
}

// How far the nearest rows of one set are apart; 0: it has one row or less.
long long distance_of_rows(const row_set &s) {
    return s.rows <= 1 ? 0 : s.pitch < 0 ? -s.pitch : s.pitch;
}

// Of rows that interleave, all of which have the same places between those of the other set.
bool places_are_apart(const row_set &a, const row_set &b) {
    const long long of_a = distance_of_rows(a), of_b = distance_of_rows(b);
    const long long pitch = of_a == 0 || (of_b != 0 && of_b < of_a) ? of_b : of_a;
    if (pitch == 0 || of_a % pitch != 0 || of_b % pitch != 0)
        return false;
    std::set<long long> places[2];
    for (const row_set *s : {&a, &b})
        for (long long i = 0; i < s->bytes; ++i)
            places[s == &b].insert(((s->begin() + i) % pitch + pitch) % pitch);
    return !have_one_in_common(places[0], places[1]);
}

TEST(sets_of_rows, are_apart_where_no_byte_is_in_both) {
    random r(4);
    int interleaved = 0, others = 0, outside = 0, unknown = 0;
    for (int i = 0; i < 100000; ++i) {
        const row_set a = joined(draw_rows(r));
        row_set b = joined(draw_rows(r));
        if (r.one_in(2))
            b.pitch = a.pitch * r.one_of({-3, -2, -1, -1, 1, 1, 2, 3});
        const bool common = have_one_in_common(bytes_of(a), bytes_of(b));
        bool expected = a.empty() || b.empty() || a.end() <= b.begin() || b.end() <= a.begin();
        outside += expected;
        if (!expected && a.columns == 1 && b.columns == 1 && (a.rows == 1 || a.pitch != 0) &&
            (b.rows == 1 || b.pitch != 0)) {
            expected = places_are_apart(a, b);
            (distance_of_rows(a) == distance_of_rows(b) ? interleaved : others) += expected;
        }
        ASSERT_EQ(apart(a, b), expected)
            << "{" << a.first << ", " << a.bytes << ", " << a.rows << ", " << a.pitch << "} and {"
            << b.first << ", " << b.bytes << ", " << b.rows << ", " << b.pitch << "}";
        ASSERT_FALSE(expected && common);
        unknown += !expected && !common;
    }
    EXPECT_GT(interleaved, 300);
    EXPECT_GT(others, 500);
    EXPECT_GT(outside, 500);
    EXPECT_GT(unknown, 300);
}

// ---- Calls ---------------------------------------------------------------------------------------

TEST(order_of_stores, can_be_observed_where_rows_overlap) {
    random r(5);
    static unsigned char memory[4096];
    int observed = 0, reading = 0, unobserved = 0;
    for (int i = 0; i < 100000; ++i) {
        lumalane::call_rows call;
        std::vector<row_set> read, written;
        const int at[] = {2000, 2000 + r.one_of({0, 40, 200}), 2000 + r.one_of({0, -40, -200})};
        const pointer pointers[] = {pointer::src, pointer::dst, pointer::dst_u};
        for (int p = 0; p < 3; ++p)
            call.at(pointers[p], memory + at[p]);
        bool columns = false;
        for (int sets = r.between(1, 4); sets > 0; --sets) {
            row_set s = draw_rows(r);
            if (s.columns == 0 || !r.one_in(8))
                s.columns = 1;
            const int p = r.between(0, 2);
            columns = columns || joined(s).columns > 1;
            const row_set placed = lumalane::moved(joined(s), at[p]);
            if (p == 0) {
                call.reads(pointers[p], s);
                read.push_back(placed);
            } else {
                call.writes(pointers[p], s);
                written.push_back(placed);
            }
        }
        // (Columns that differ decide by themselves.)
        bool reads = false, overlap = columns;
        for (std::size_t j = 0; j < written.size(); ++j) {
            for (const row_set &s : read)
                reads = reads || !apart(written[j], s);
            overlap = overlap || !lumalane::rows_apart(written[j]);
            for (std::size_t k = 0; k < j; ++k)
                overlap = overlap || !apart(written[k], written[j]);
        }
        if (!columns) {
            ASSERT_EQ(call.reads_what_it_writes(), reads);
        }
        ASSERT_EQ(call.order_can_be_observed(), overlap || reads);
        observed += overlap && !columns;
        reading += reads && !columns;
        unobserved += !overlap && !reads;
    }
    EXPECT_GT(observed, 1000);
    EXPECT_GT(reading, 1000);
    EXPECT_GT(unobserved, 1000);
}

TEST(geometry, counts_as_loops_that_count_down) {
    using namespace lumalane;
    EXPECT_EQ(steps_of(0, 16), 1);
    EXPECT_EQ(steps_of(1, 16), 1);
    EXPECT_EQ(steps_of(16, 16), 1);
    EXPECT_EQ(steps_of(17, 16), 2);
    EXPECT_EQ(steps_of(-1, 16), 1 << 28);
    EXPECT_EQ(whole_steps(17, 16), 32);
    EXPECT_EQ(difference(INT32_MIN, 1), INT32_MAX);
    EXPECT_EQ(product(1 << 30, 6), INT32_MIN);
    EXPECT_EQ(twice(-3), -6);
}

// ---- Stores around the cache ---------------------------------------------------------------------

int finished = 0;

class stores_test : public tests::on_each_target {
protected:
    lumalane::row_kernels counting = GetParam()->rows;

    void SetUp() override {
        counting.finish_stores = [](auto...) { ++finished; };
        finished = 0;
    }

    // What is decided on for so many bytes, with a cache of so many.
    store_policy decided(unsigned cache, long long bytes, bound_by bound = bound_by::stores,
                         std::uintptr_t at = 1 << 20, long long pitch = 1 << 10,
                         bool in_order = false) {
        const int before = finished;
        store_policy policy;
        {
            const surface_stores stores({counting, cache, false},
                                        reinterpret_cast<const unsigned char *>(at), pitch, bytes,
                                        in_order, bound);
            policy = stores;
            EXPECT_EQ(finished, before);
        }
        EXPECT_EQ(finished - before, is_non_temporal(policy));
        return policy;
    }
};

TEST_P(stores_test, go_around_the_cache_from_a_third_of_it_on) {
    // In a cache of so many bytes cached stores are best up to `most`.
    const auto expect = [&](unsigned cache, long long most, bound_by bound) {
        const bool fetches = cache > 128'000'000;
        EXPECT_EQ(decided(cache, most, bound),
                  fetches ? store_policy::cached_fetching : store_policy::cached)
            << cache << " " << most;
        EXPECT_EQ(decided(cache, most + 1, bound),
                  fetches ? store_policy::non_temporal_fetching : store_policy::non_temporal)
            << cache << " " << most;
    };
    for (const bound_by bound :
         {bound_by::loads, bound_by::loads_and_stores, bound_by::stores,
          bound_by::stores_and_arithmetic, bound_by::arithmetic_and_stores, bound_by::arithmetic}) {
        expect(3'000'002, 1'000'000, bound);
        expect(24'000'000, 8'000'000, bound);
        expect(1, 0, bound);
        EXPECT_EQ(decided(0, 1LL << 40, bound), store_policy::cached);
    }
    for (const bound_by bound : {bound_by::loads, bound_by::loads_and_stores})
        expect(128'000'000, 8'000'000, bound);
    expect(128'000'000, 12'000'000, bound_by::stores);
    for (const bound_by bound : {bound_by::stores_and_arithmetic, bound_by::arithmetic_and_stores})
        expect(128'000'000, 16'000'000, bound);
    expect(128'000'001, 800'000, bound_by::loads);
    expect(128'000'001, 1'250'000, bound_by::loads_and_stores);
    expect(300'000'000, 2'300'000, bound_by::stores);
    expect(300'000'000, 2'300'000, bound_by::stores_and_arithmetic);
    expect(300'000'000, 32'000'000, bound_by::arithmetic_and_stores);
    expect(300'000'000, 100'000'000, bound_by::arithmetic);
}

TEST_P(stores_test, of_mixes_go_around_small_caches_earlier) {
    const auto mixed = [&](unsigned cache, long long bytes, bound_by bound,
                           long long pitch = 1 << 10) {
        return store_policy(surface_stores::of_mix({counting, cache, false},
                                                   reinterpret_cast<const unsigned char *>(1 << 20),
                                                   pitch, bytes, false, bound));
    };
    for (const bound_by bound : {bound_by::stores_and_arithmetic, bound_by::arithmetic}) {
        EXPECT_EQ(mixed(128'000'000, 8'000'000, bound), store_policy::cached);
        EXPECT_EQ(mixed(128'000'000, 8'000'001, bound), store_policy::non_temporal);
        EXPECT_EQ(mixed(15'000'000, 5'000'000, bound), store_policy::cached);
        EXPECT_EQ(mixed(15'000'000, 5'000'001, bound), store_policy::non_temporal);
    }
    EXPECT_EQ(mixed(300'000'000, 2'300'000, bound_by::stores_and_arithmetic),
              store_policy::cached_fetching);
    EXPECT_EQ(mixed(300'000'000, 2'300'001, bound_by::stores_and_arithmetic),
              store_policy::non_temporal_fetching);
    EXPECT_EQ(mixed(300'000'000, 100'000'000, bound_by::arithmetic), store_policy::cached_fetching);
    // Rows begin where their bound wants them.
    EXPECT_EQ(mixed(3, 2, bound_by::stores_and_arithmetic, 96), store_policy::cached);
    if (counting.streamed_bytes <= 32) {
        EXPECT_EQ(mixed(3, 2, bound_by::arithmetic, 96), store_policy::non_temporal);
    }
}

TEST_P(stores_test, stay_in_the_cache_off_the_vectors_and_in_order) {
    const int vector = counting.streamed_bytes;
    const auto around = [&](std::uintptr_t at, long long pitch, bool in_order) {
        return decided(1, 1 << 20, bound_by::stores, at, pitch, in_order);
    };
    EXPECT_EQ(around(vector, 3 * vector, false), store_policy::non_temporal);
    EXPECT_EQ(around(vector, -vector, false), store_policy::non_temporal);
    EXPECT_EQ(around(vector, vector, true), store_policy::cached);
    EXPECT_EQ(decided(300'000'000, 1 << 20, bound_by::stores, vector, vector, true),
              store_policy::cached);
    const auto in_pairs = [&](std::uintptr_t at, long long pitch) {
        return decided(1, 1 << 20, bound_by::stores_and_arithmetic, at, pitch);
    };
    EXPECT_EQ(in_pairs(64, -192), store_policy::non_temporal);
    EXPECT_EQ(in_pairs(32, 64), store_policy::cached);
    EXPECT_EQ(in_pairs(64, 32), store_policy::cached);
    const auto plane_around = [&](std::uintptr_t at, long long pitch, bool in_order) {
        return store_policy(surface_stores::of_plane(
            {counting, 3, false}, reinterpret_cast<const unsigned char *>(at), pitch, 2, in_order));
    };
    EXPECT_EQ(plane_around(8, 24, false), store_policy::non_temporal);
    EXPECT_EQ(plane_around(24, -8, false), store_policy::non_temporal);
    EXPECT_EQ(plane_around(8, 8, true), store_policy::cached);
    EXPECT_EQ(plane_around(4, 8, false), store_policy::cached);
    EXPECT_EQ(plane_around(8, 12, false), store_policy::cached);
    if (vector > 1) {
        EXPECT_EQ(around(vector / 2, vector, false), store_policy::cached);
        EXPECT_EQ(around(vector, vector / 2, false), store_policy::cached);
        EXPECT_EQ(around(vector + 1, vector + 1, false), store_policy::cached);
    }
}

INSTANTIATE_ON_EACH_TARGET(stores_test);

TEST(bounds, are_arithmetic_where_vectors_are_narrow_or_rows_of_pairs_go_around_the_cache_apart) {
    struct {
        int vector_bytes, registers;
        bound_by rgb32, rgb24, yuy2;
    } const cases[] = {
        {16, 8, bound_by::arithmetic_and_stores, bound_by::arithmetic, bound_by::arithmetic},
        {32, 8, bound_by::arithmetic_and_stores, bound_by::arithmetic, bound_by::loads_and_stores},
        {16, 16, bound_by::stores_and_arithmetic, bound_by::arithmetic, bound_by::arithmetic},
        {32, 16, bound_by::stores_and_arithmetic, bound_by::arithmetic, bound_by::loads_and_stores},
        {64, 16, bound_by::stores_and_arithmetic, bound_by::stores_and_arithmetic,
         bound_by::loads_and_stores},
    };
    for (const auto &expected : cases) {
        SCOPED_TRACE(std::to_string(expected.vector_bytes) + " " +
                     std::to_string(expected.registers));
        lumalane::row_kernels rows = lumalane::targets().begin()->rows;
        rows.vector_bytes = expected.vector_bytes, rows.vector_registers = expected.registers;
        EXPECT_EQ(lumalane::planar_to_rgb32(rows).bound, expected.rgb32);
        EXPECT_EQ(lumalane::packed_to_rgb32(rows).bound, expected.rgb32);
        EXPECT_EQ(lumalane::planar_to_rgb24(rows).bound, expected.rgb24);
        EXPECT_EQ(lumalane::packed_to_rgb24(rows).bound, expected.rgb24);
        EXPECT_EQ(lumalane::planar_to_yuy2(rows).bound, expected.yuy2);
        EXPECT_EQ(lumalane::packed_to_adjusted_yuy2(rows).bound, expected.yuy2);
        EXPECT_EQ(lumalane::packed_to_yuy2(rows).bound, bound_by::loads_and_stores);
        EXPECT_EQ(lumalane::planar_to_rgb16(rows, 0).bound, bound_by::arithmetic);
        EXPECT_EQ(lumalane::packed_to_rgb16(rows, 0).bound, bound_by::arithmetic);
    }
}

TEST(machine, has_the_cache_that_the_processor_tells_or_that_is_assumed) {
    const auto told = [] {
        return lumalane::machine_of(lumalane::current_target()).last_level_cache_bytes;
    };
    lumalane::assume_last_level_cache(~0u); // asks again
    const unsigned asked = told();
    EXPECT_NE(asked, ~0u);
    EXPECT_EQ(told(), asked);
    for (const unsigned assumed : {0u, 1u, 3'000'000u}) {
        lumalane::assume_last_level_cache(assumed);
        EXPECT_EQ(told(), assumed);
    }
}

} // namespace
