// The search along edges at every cost that a direction can have, decided against every other direction
// that costs one less, as much, or one more, and no direction less than these two: rows are constructed
// for each. The lowest of equal costs wins; four samples that differ by 32 or less straight down are
// averaged straight down whatever they cost.
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "tests/differential/random.h"
#include "tests/targets.h"

namespace {

using bytes = std::vector<unsigned char>;

constexpr int directions = 5, straight_down = 2, flat = 32, most = 4 * 255;

// Two rows from 2 samples before the one that is made to 5 after it.
struct place {
    std::array<unsigned char, 8> upper, lower;

    int cost(int direction) const {
        int sum = 0;
        for (int k = 0; k < 4; ++k)
            sum += std::abs(upper[direction + k] - lower[4 - direction + k]);
        return sum;
    }
    int average(int direction) const { return (upper[direction] + lower[4 - direction] + 1) >> 1; }
};

// As lumalane.h tells.
int best_of(const place &p) {
    int best = 0;
    for (int direction = 1; direction < directions; ++direction)
        if (p.cost(direction) < p.cost(best))
            best = direction;
    return best;
}

// What is wanted: two directions with these costs and different averages, the cheaper or lower of which
// wins, and none that costs less than the dearer one.
struct decision {
    int one, other, cost, of_other;

    // 0 where it is so.
    int distance(const place &p) const {
        int sum = 4 * std::abs(p.cost(one) - cost) + 4 * std::abs(p.cost(other) - of_other) +
                  (p.average(one) == p.average(other));
        const int wins = of_other < cost || (of_other == cost && other < one) ? other : one;
        const int dearer = std::max(cost, of_other), cheaper = std::min(cost, of_other);
        for (int direction = 0; direction < directions; ++direction)
            if (direction != one && direction != other)
                sum += std::max(0, std::max(dearer, direction < wins ? cheaper + 1 : 0) -
                                       p.cost(direction));
        return sum;
    }
};

// Changes samples as long as that brings it nearer; from where it is, then from where all costs are the
// greatest.
bool construct(const decision &wanted, place &p, differential::random &r) {
    for (int attempt = 0; attempt < 20; ++attempt) {
        place near = p;
        if (attempt % 2 != 0)
            near.upper.fill(0), near.lower.fill(255);
        int distance = wanted.distance(near);
        for (int tries = 0; distance != 0 && tries < 2000; ++tries) {
            place changed = near;
            for (int samples = r.between(1, 2); samples > 0; --samples) {
                auto &row = r.one_in(2) ? changed.upper : changed.lower;
                unsigned char &sample = row[r.between(0, 7)];
                sample = static_cast<unsigned char>(
                    r.one_in(3) ? r.between(0, 255)
                                : std::clamp(sample + r.between(-4, 4), 0, 255));
            }
            const int there = wanted.distance(changed);
            if (there <= distance)
                near = changed, distance = there;
        }
        if (distance == 0) {
            p = near;
            return true;
        }
    }
    return false;
}

// Places in rows: each with its sample as the first, second, third and last of a group of four.
struct rows {
    static constexpr int block = 16, before = 2, after = 6;
    bytes upper = bytes(before), lower = bytes(before, 255), expected;

    void add(const place &p) {
        for (int at = 4; at < 8; ++at) {
            bytes u(block), l(block, 255);
            std::copy(p.upper.begin(), p.upper.end(), u.begin() + at - 2);
            std::copy(p.lower.begin(), p.lower.end(), l.begin() + at - 2);
            upper.insert(upper.end(), u.begin(), u.end());
            lower.insert(lower.end(), l.begin(), l.end());
        }
    }

    std::ptrdiff_t size() const { return static_cast<std::ptrdiff_t>(upper.size()) - before; }

    void finish() {
        const std::ptrdiff_t n = size();
        upper.resize(upper.size() + after);
        lower.resize(lower.size() + after, 255);
        expected.resize(n);
        for (std::ptrdiff_t group = 0; group < n; group += 4) {
            int down = 0;
            for (std::ptrdiff_t x = group; x < group + 4; ++x)
                down += std::abs(upper[before + x] - lower[before + x]);
            for (std::ptrdiff_t x = group; x < group + 4; ++x) {
                place p;
                std::copy_n(upper.begin() + x, 8, p.upper.begin());
                std::copy_n(lower.begin() + x, 8, p.lower.begin());
                expected[x] =
                    static_cast<unsigned char>(p.average(down > flat ? best_of(p) : straight_down));
            }
        }
    }
};

struct constructed {
    rows all;
    unsigned decisions = 0, impossible = 0;
    // By direction and cost: whether it has won with that.
    std::array<std::array<bool, most + 1>, directions> won{};
};

const constructed &decisions() {
    static const constructed built = [] {
        constructed made;
        differential::random r(1);
        for (int one = 0; one < directions; ++one)
            for (int other = 0; other < directions; ++other)
                for (const int more : {0, 1}) {
                    if (one == other || (more == 0 && one > other))
                        continue;
                    // From the dearest on, each from the one before.
                    place p;
                    p.upper.fill(0), p.lower.fill(255);
                    for (int cost = most - more; cost >= 0; --cost) {
                        place next = p;
                        if (!construct({one, other, cost, cost + more}, next, r)) {
                            ++made.impossible;
                            continue;
                        }
                        p = next;
                        made.all.add(p);
                        ++made.decisions;
                        made.won[best_of(p)][cost] = true;
                    }
                }
        made.all.finish();
        return made;
    }();
    return built;
}

TEST(edge_search, is_decided_at_every_cost_that_can_occur) {
    const constructed &made = decisions();
    for (int direction = 0; direction < directions; ++direction)
        for (int cost = 0; cost < most; ++cost)
            EXPECT_TRUE(made.won[direction][cost]) << direction << " at " << cost;
    // Where all differences are the greatest, all averages are the same. What else is missing of the
    // 30,610 has a cost of 1019 or 1020.
    EXPECT_EQ(made.decisions, 30583u);
    EXPECT_EQ(made.decisions + made.impossible, 30u * (most + 1) - 20u);
    std::printf("%u decisions constructed, %u not found\n", made.decisions, made.impossible);
}

class edge_search_test : public tests::on_each_target {};

TEST_P(edge_search_test, is_that_of_the_header_at_every_cost) {
    const rows &in = decisions().all;
    // Both rows in one piece of memory.
    const std::ptrdiff_t pitch = static_cast<std::ptrdiff_t>(in.upper.size());
    bytes memory(2 * pitch), made(in.expected.size());
    std::copy(in.upper.begin(), in.upper.end(), memory.begin());
    std::copy(in.lower.begin(), in.lower.end(), memory.begin() + pitch);
    for (const std::ptrdiff_t n :
         {in.size(), std::ptrdiff_t{32}, std::ptrdiff_t{16}, std::ptrdiff_t{8}}) {
        std::fill(made.begin(), made.end(), static_cast<unsigned char>(0xa5));
        lumalane::between_rows between{made.data(), memory.data() + rows::before, pitch};
        between.count = in.size() / n;
        between.src_next = between.dst_next = n;
        GetParam()->rows.along_edges(between, n);
        GetParam()->leave_clean();
        const auto wrong = std::mismatch(made.begin(), made.end(), in.expected.begin()).first;
        ASSERT_TRUE(wrong == made.end()) << "rows of " << n << ": sample " << wrong - made.begin();
    }
    std::printf("figure: edges %u\n", decisions().decisions);
}

INSTANTIATE_ON_EACH_TARGET(edge_search_test);

} // namespace
