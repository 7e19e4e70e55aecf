// The rows that rows_of() tells of calls drawn at random, byte by byte, against the bytes that the
// models read and write.
#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <lumalane/footprint.h>

#include "tests/call_memory.h"
#include "tests/differential/drawn_call.h"
#include "tests/proofs.h"
#include "tests/recorded_call.h"

namespace {

using lumalane::pointer;
using model::memory;
using tests::call_memory;

// A mark for each byte that a call may touch of a buffer.
using marks = std::vector<std::uint8_t>;

class rows_told_test : public testing::TestWithParam<differential::subject> {
protected:
    static constexpr std::ptrdiff_t half = call_memory::half;

    static inline std::vector<marks> touched{call_memory::most_buffers, marks(2 * half)};
    static inline std::vector<marks> told{call_memory::most_buffers, marks(2 * half)};
    long long beyond = 0; // bytes that are told and not touched

    // Whether what is told, and what the model touches, lies within the buffers.
    bool compare(const differential::drawn_call &drawn, const call_memory &space) {
        const differential::placement places = space.place(drawn);
        std::vector<model::extent> extents(drawn.buffers.size());
        const bool fits = tell(drawn, places, space, extents) && touch(drawn, places, extents);
        for (std::size_t i = 0; i < extents.size(); ++i) {
            const auto first = static_cast<std::ptrdiff_t>(extents[i].first);
            const auto end = static_cast<std::ptrdiff_t>(extents[i].end);
            const std::uint8_t *const found = touched[i].data(), *const expected = told[i].data();
            if (fits && !drawn.buffers[i].fill) // a record otherwise
                for (std::ptrdiff_t at = first; at < end; ++at)
                    if (found[at] != expected[at])
                        compare(drawn, i, at);
            std::fill(touched[i].begin() + first, touched[i].begin() + end, std::uint8_t{0});
            std::fill(told[i].begin() + first, told[i].begin() + end, std::uint8_t{0});
        }
        return fits;
    }

private:
    void compare(const differential::drawn_call &drawn, std::size_t buffer, std::ptrdiff_t at) {
        const auto untold = [&](const marks &more, const marks &less, std::ptrdiff_t where) {
            return (more[where] & ~less[where]) != 0;
        };
        if (untold(touched[buffer], told[buffer], at))
            ADD_FAILURE() << drawn.buffers[buffer].name << " at " << at - half
                          << " is touched and not told: " << drawn.arguments;
        // Of two pixels of YUY2 the second luma may be left out.
        const bool between = at > 0 && at + 1 < 2 * half && touched[buffer][at - 1] != 0 &&
                             touched[buffer][at + 1] != 0;
        beyond += untold(told[buffer], touched[buffer], at) && !between;
    }

    static void widen(model::extent &extent, std::size_t first, std::size_t end) {
        extent = extent.empty()
                     ? model::extent{first, end}
                     : model::extent{std::min(extent.first, first), std::max(extent.end, end)};
    }

    bool tell(const differential::drawn_call &drawn, const differential::placement &places,
              const call_memory &space, std::vector<model::extent> &extents) {
        for (const tests::recorded_call &call : tests::record(drawn, places))
            for (const auto &[at, read, written, rows] : call.rows) {
                if (rows.empty())
                    continue;
                const auto address =
                    static_cast<const std::uint8_t *>(call.pointers[static_cast<int>(at)]);
                const std::size_t buffer = space.buffer_of(address);
                const long long offset = address - space.origin(buffer);
                if (!call_memory::holds({offset + rows.begin(), offset + rows.end()}))
                    return false;
                const long long origin = half + offset + rows.first;
                const int mark = (read ? memory::is_read : 0) | (written ? memory::is_written : 0);
                for (long long r = 0; r < rows.rows; ++r)
                    for (long long c = 0; c < rows.columns; ++c) {
                        std::uint8_t *const first =
                            told[buffer].data() + origin + r * rows.pitch + c * rows.column_pitch;
                        for (long long i = 0; i < rows.bytes; ++i)
                            first[i] |= mark;
                    }
                widen(extents[buffer], static_cast<std::size_t>(half + offset + rows.begin()),
                      static_cast<std::size_t>(half + offset + rows.end()));
            }
        return true;
    }

    bool touch(const differential::drawn_call &drawn, const differential::placement &places,
               std::vector<model::extent> &extents) {
        memory m;
        for (std::size_t i = 0; i < places.origins.size(); ++i) {
            m.add({places.origins[i] - half, places.origins[i] + half});
            m.mark_in(touched[i].data());
        }
        bool fits = true;
        try {
            drawn.on_model(m, places);
        } catch (const model::stray_access &) {
            fits = false;
        }
        for (std::size_t i = 0; i < places.origins.size(); ++i) {
            const model::extent bytes = m.footprint(i);
            if (!bytes.empty())
                widen(extents[i], bytes.first - (places.origins[i] - half),
                      bytes.end - (places.origins[i] - half));
        }
        return fits;
    }
};

TEST_P(rows_told_test, are_those_that_the_model_touches) {
    const int cases = tests::wanted_proofs() == tests::proofs::some ? 40 : 300;
    static const call_memory memory;
    differential::random r(17);
    int compared = 0;
    for (int drawn = 0; compared < cases && drawn < 20 * cases && !HasFailure(); ++drawn)
        compared += compare(GetParam().draw(r), memory);
    EXPECT_EQ(compared, cases);
    if (GetParam().name != std::string("loadimage_yuy2")) { // which leaves gaps
        EXPECT_EQ(beyond, 0) << "bytes are told that are not touched";
    }
}

INSTANTIATE_TEST_SUITE_P(every, rows_told_test, testing::ValuesIn(differential::subjects()),
                         [](const auto &subject) { return subject.param.name; });

} // namespace
