// Every row kernel of every target against those of the first target, one row at a time: for every
// length up to a few vectors, at every alignment, between unmapped pages, and where sources and
// destinations overlap in a run of one group.
#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <ostream>

#include "tests/differential/guarded_region.h"
#include "tests/rows/draw.h"
#include "tests/targets.h"

namespace {

using differential::guarded_region;
using row_tests::addresses;
using row_tests::bytes;
using row_tests::row;
using row_tests::row_call;

// A dozen vectors of the widest target.
const std::ptrdiff_t longest = 12 * (lumalane::targets().end() - 1)->rows.vector_bytes;

// Every alignment is tried that makes a difference to any target.
constexpr int alignments = 64;

// Sanitized calls take many times as long: of each length every fourth alignment is tried, another fourth
// of them in turn.
#ifdef LUMALANE_SANITIZED
constexpr int part = 4;
#else
constexpr int part = 1;
#endif

// Compared on both sides of a row, where there is memory.
constexpr std::ptrdiff_t margin = 64;

struct kernel {
    row_tests::kernel_facts facts;
    row_call (*draw)(const row_tests::wanted_call &);
};

void PrintTo(const kernel &k, std::ostream *out) { *out << k.facts.name; }

// A kind without a function to draw its calls does not compile.
const kernel kernels[] = {
#define LUMALANE_ROW_KERNEL(kind, name, multiple, group, read, written)                            \
    {{#name, multiple, group, read, written}, [](const row_tests::wanted_call &wanted) {           \
         return row_tests::draw_##kind(wanted, &lumalane::row_kernels::name);                      \
     }},
#include "rows/rows.inc"
#undef LUMALANE_ROW_KERNEL
};

// What is running, for the line that a fault or a disagreement leaves behind.
std::string running;

void report_fault(int) {
    std::fprintf(stderr, "fault in %s\n", running.c_str());
    std::_Exit(EXIT_FAILURE);
}

// A stretch of memory around a row (or several) with what it should hold in the end.
struct window {
    unsigned char *first;
    bytes before, expected;
};

// Where the rows of a call are: each at an address, in one of the windows.
struct layout {
    std::string name;
    addresses at;
    std::vector<std::size_t> window_of;
    std::vector<window> windows;
};

class in_windows final : public row_tests::contents {
public:
    in_windows(const row_call &call_, layout &l_) : call(call_), l(l_) {}

    bytes read(std::size_t row, std::ptrdiff_t number) const override {
        if (call.rows[row].size == 0)
            return {};
        const unsigned char *from = place(row, number);
        return {from, from + call.rows[row].size};
    }
    void write(std::size_t row, const bytes &made, std::ptrdiff_t number) override {
        const auto size = static_cast<std::ptrdiff_t>(made.size());
        if (!call.rows[row].written || size != call.rows[row].size)
            std::abort(); // what draws the call contradicts itself
        if (size != 0)
            std::copy(made.begin(), made.end(), place(row, number));
    }

private:
    unsigned char *place(std::size_t row, std::ptrdiff_t number) const {
        if (number < 0 || number >= call.rows[row].count)
            std::abort();
        window &w = l.windows[l.window_of[row]];
        return w.expected.data() + (l.at[row] - w.first) + number * call.rows[row].pitch;
    }

    const row_call &call;
    layout &l;
};

void fill(bytes &held, row_tests::random &r) {
    static constexpr unsigned char extremes[] = {0, 1, 16, 127, 128, 235, 254, 255};
    const int kind = r.between(0, 3), base = r.between(0, 252);
    for (unsigned char &byte : held) {
        const std::uint64_t bits = r.next();
        byte = kind == 0   ? static_cast<unsigned char>(bits)
               : kind == 1 ? extremes[bits % 8]
               : kind == 2 ? static_cast<unsigned char>(base + bits % 4)
                           : static_cast<unsigned char>(bits % 8 == 0 ? bits >> 8 : 0);
    }
}

class row_kernels_test : public testing::TestWithParam<kernel> {
protected:
    const lumalane::row_kernels &reference = lumalane::targets().begin()->rows;
    std::vector<const lumalane::target *> targets = tests::runnable_targets();
    row_tests::random randomness{1};
    std::vector<std::unique_ptr<guarded_region>> regions;
    guarded_region untouched;
    unsigned number = 0;
    unsigned compared = 0;

    void SetUp() override { std::signal(SIGSEGV, report_fault); }

    row_call draw(std::ptrdiff_t n) {
        return GetParam().draw({GetParam().facts, n, number++, randomness});
    }

    // Each row in a region of its own, its lowest byte where `place(region, row, index)` says.
    template <class Place>
    layout in_regions(const char *name, const row_call &call, const Place &place) {
        layout l{name, {}, {}, {}};
        while (regions.size() < call.rows.size())
            regions.push_back(std::make_unique<guarded_region>());
        for (std::size_t i = 0; i < call.rows.size(); ++i) {
            const row &row = call.rows[i];
            if (row.size == 0) {
                l.at.push_back(reinterpret_cast<unsigned char *>(untouched.end()));
                l.window_of.push_back(0);
                continue;
            }
            const guarded_region &region = *regions[i];
            const model::address first = place(region, row, i);
            const model::address begin = std::max(region.begin(), first - margin);
            const model::address end = std::min(region.end(), first + row.extent() + margin);
            l.at.push_back(reinterpret_cast<unsigned char *>(first) + row.offset());
            l.window_of.push_back(l.windows.size());
            l.windows.push_back({reinterpret_cast<unsigned char *>(begin), bytes(end - begin), {}});
        }
        return l;
    }

    // Rows at alignments that follow from `alignment`, those of non-temporal stores as these
    // have to be. Any alignment comes up for every row.
    layout aligned(const row_call &call, int alignment) {
        return in_regions("with room around", call,
                          [&](const guarded_region &region, const row &row, std::size_t i) {
                              const int index = static_cast<int>(i);
                              const int written = alignment + 13 * index;
                              const int offset = row.written ? written & -call.alignment
                                                             : 5 * alignment + 27 * index;
                              return region.begin() + alignments + offset % alignments;
                          });
    }

    layout against_the_start(const row_call &call) {
        return in_regions(
            "against the start", call,
            [](const guarded_region &region, const row &, std::size_t) { return region.begin(); });
    }

    layout against_the_end(const row_call &call) {
        return in_regions("against the end", call,
                          [&](const guarded_region &region, const row &row, std::size_t) {
                              const model::address first = region.end() - row.extent();
                              return row.written ? first & -call.alignment : first;
                          });
    }

    // All rows in one stretch, wherever they fall.
    layout overlapping(const row_call &call) {
        layout l{"in one stretch", {}, {}, {}};
        std::ptrdiff_t size = 0;
        for (const row &row : call.rows)
            size = std::max(size, row.extent());
        unsigned char *const first = reinterpret_cast<unsigned char *>(untouched.begin());
        for (const row &row : call.rows) {
            const int at = randomness.between(0, static_cast<int>(2 * size));
            l.at.push_back(first + margin + (row.written ? at & -call.alignment : at) +
                           (row.size == 0 ? 0 : row.offset()));
            l.window_of.push_back(0);
        }
        l.windows.push_back({first, bytes(3 * size + 2 * margin), {}});
        return l;
    }

    // The call on every target, in that layout.
    void expect_equal(const row_call &call, layout l) {
        for (window &w : l.windows)
            fill(w.before, randomness);
        for (std::size_t i = 0; i < call.rows.size(); ++i) {
            const row &row = call.rows[i];
            if (row.size == 0 || row.held.empty())
                continue;
            window &w = l.windows[l.window_of[i]];
            for (std::ptrdiff_t k = 0; k < row.count; ++k)
                std::copy(row.held.begin(), row.held.end(),
                          w.before.begin() + (l.at[i] - w.first) + k * row.pitch);
        }
        for (window &w : l.windows)
            w.expected = w.before;
        in_windows held(call, l);
        const long long expected = call.expect(reference, held);
        for (const lumalane::target *target : targets) {
            running = std::string(GetParam().facts.name) + " of " + target->name + ": call " +
                      std::to_string(number - 1) + ", " + call.arguments + ", rows " + l.name;
            for (const window &w : l.windows)
                std::copy(w.before.begin(), w.before.end(), w.first);
            const long long found = call.run(target->rows, l.at);
            target->leave_clean();
            ASSERT_EQ(found, expected) << running;
            for (std::size_t i = 0; i < l.windows.size(); ++i)
                ASSERT_EQ(first_difference(call, l, i), "") << running;
            ++compared;
        }
    }

    static std::string first_difference(const row_call &call, const layout &l, std::size_t index) {
        const window &w = l.windows[index];
        const auto [found, wanted] =
            std::mismatch(w.first, w.first + w.expected.size(), w.expected.begin());
        if (wanted == w.expected.end())
            return {};
        std::string where;
        for (std::size_t i = 0; i < call.rows.size(); ++i)
            if (call.rows[i].size != 0 && l.window_of[i] == index)
                where += std::string(call.rows[i].name) + "[" + std::to_string(found - l.at[i]) +
                         "] of " + std::to_string(call.rows[i].extent()) + ", ";
        return where + std::to_string(*found) + " instead of " + std::to_string(*wanted);
    }

    // Tells how much was compared, and that it was as much as it should be.
    void finish(unsigned calls) {
        EXPECT_EQ(compared, calls * targets.size());
        std::printf("%s: %u calls on %zu targets\n", std::string(GetParam().facts.name).c_str(),
                    calls, targets.size());
        std::printf("figure: kernel-calls %u\n", compared);
    }
};

TEST_P(row_kernels_test, makes_the_same_bytes_at_every_length_and_alignment) {
    const int multiple = GetParam().facts.multiple;
    for (std::ptrdiff_t n = multiple; n <= longest; n += multiple) {
        const int index = static_cast<int>(n / multiple);
        for (int i = index % part; i < alignments; i += part) {
            const row_call call = draw(n);
            ASSERT_NO_FATAL_FAILURE(expect_equal(call, aligned(call, i + index / part)));
        }
    }
    finish(static_cast<unsigned>(longest / multiple * (alignments / part)));
}

// Longer than anything that a kernel does in pieces, and the widest pairs of which several are mixed in
// turn with others.
TEST_P(row_kernels_test, makes_the_same_bytes_of_long_rows) {
    const int multiple = GetParam().facts.multiple;
    constexpr int calls = 48 / part;
    for (int i = 0; i < calls; ++i) {
        const int most = 5280 / multiple, usual = randomness.between(1, most);
        const row_call call = draw(i % 5 == 0 ? 512 : multiple * std::ptrdiff_t{usual});
        ASSERT_NO_FATAL_FAILURE(expect_equal(call, aligned(call, i)));
    }
    finish(calls);
}

TEST_P(row_kernels_test, touches_the_bytes_of_its_rows_and_no_other) {
    const int multiple = GetParam().facts.multiple;
    // As many calls as go through all modes of any kind, or within `part` lengths do.
    constexpr int modes = part == 1 ? 48 : 48 / part + 1;
    for (std::ptrdiff_t n = 0; n <= longest; n += multiple)
        for (int i = 0; i < modes; ++i) {
            const row_call call = draw(n);
            ASSERT_NO_FATAL_FAILURE(expect_equal(call, against_the_start(call)));
            ASSERT_NO_FATAL_FAILURE(expect_equal(call, against_the_end(call)));
        }
    finish(static_cast<unsigned>(2 * (longest / multiple + 1) * modes));
}

// Kernels that promise an order; the others are called only where nothing overlaps.
class ordered_row_kernels_test : public row_kernels_test {};

std::vector<kernel> ordered_kernels() {
    std::vector<kernel> ordered;
    for (const kernel &k : kernels)
        if (k.facts.group != 0)
            ordered.push_back(k);
    return ordered;
}

TEST_P(ordered_row_kernels_test, loads_a_group_before_it_stores_any_of_it) {
    const auto &facts = GetParam().facts;
    constexpr unsigned calls = 4000 / part;
    for (unsigned i = 0; i < calls; ++i) {
        const int groups = facts.group / facts.multiple;
        const std::ptrdiff_t n = facts.multiple * randomness.between(1, groups);
        row_call call = draw(n);
        while (call.reads_again)
            call = draw(n);
        ASSERT_NO_FATAL_FAILURE(expect_equal(call, overlapping(call)));
    }
    finish(calls);
}

std::string name_of(const testing::TestParamInfo<kernel> &kernel) {
    return std::string(kernel.param.facts.name);
}

INSTANTIATE_TEST_SUITE_P(every, row_kernels_test, testing::ValuesIn(kernels), name_of);
INSTANTIATE_TEST_SUITE_P(every, ordered_row_kernels_test, testing::ValuesIn(ordered_kernels()),
                         name_of);

} // namespace
