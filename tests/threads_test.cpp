// Calls from many threads: from some that start and end, and from 64 at once on separate buffers, while
// another one sets the adjustment again and again. The header promises that a call reads the five
// values of the adjustment once, each of them whole: so that every picture is exact for one of the
// mixtures of the two adjustments that are set. A test of its own sees that they are read once.
//
// Built with the thread sanitizer, too, which sees whether the state of the library is kept in atomics;
// there `--race` makes a race, which has to be found.
#include <sys/mman.h>

#include <algorithm>
#include <atomic>
#include <barrier>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <set>
#include <string_view>
#include <thread>
#include <vector>

#include "tests/differential/drawn_call.h"
#include "tests/differential/guarded_region.h"
#include "tests/model/models.h"
#include "tests/targets.h"

namespace {

using bytes = std::vector<unsigned char>;
using differential::drawn_call;
using differential::placement;

// The bytes of a buffer that a call may touch, with some around them, from its offset 0.
struct window {
    std::ptrdiff_t first = 0, end = 0;

    std::size_t size() const { return static_cast<std::size_t>(end - first); }
};
constexpr std::ptrdiff_t margin = 64, largest = 16 << 10;

// Two adjustments that have no value in common.
const contrast_data adjustments[] = {{64, 80, 0, 10, -20, 0, 0, 0},
                                     {40, 129, 7, -3, 1000, 0, 0, 0}};

// All of them, each of the five values from either.
std::vector<contrast_data> mixtures() {
    std::vector<contrast_data> all;
    for (int from = 0; from < 32; ++from) {
        const auto value = [&](int number, int contrast_data::*member) {
            return adjustments[from >> number & 1].*member;
        };
        all.push_back({value(0, &contrast_data::y_gain), value(1, &contrast_data::uv_gain),
                       value(2, &contrast_data::y_offset), value(3, &contrast_data::u_offset),
                       value(4, &contrast_data::v_offset), 0, 0, 0});
    }
    return all;
}

void set_on_model(contrast_data values) {
    model::memory m;
    m.add({model::address_of(&values), model::address_of(&values + 1)});
    model::get_contrast_data(m, &values);
}

// The buffers of a call, in memory of their own.
class scene {
public:
    scene(const drawn_call &call, const std::vector<window> &windows_) : windows(windows_) {
        for (const window &w : windows) {
            held.emplace_back(w.size() + 2 * margin);
            places.origins.push_back(model::address_of(held.back().data()) + margin - w.first);
        }
        for (std::size_t i = 0; i < windows.size(); ++i)
            is_record.push_back(call.buffers[i].record_size != 0);
    }

    // Puts the initial bytes there, and the records.
    void fill(const drawn_call &call, const std::vector<bytes> &initial) {
        for (std::size_t i = 0; i < held.size(); ++i)
            std::copy(initial[i].begin(), initial[i].end(), held[i].begin() + margin);
        for (std::size_t i = 0; i < held.size(); ++i)
            if (call.buffers[i].fill && windows[i].size() != 0)
                call.buffers[i].fill(places.at<void>({i, 0}), places);
    }

    // What the call has left in all buffers but records, which hold addresses.
    bytes pictures() const {
        bytes all;
        for (std::size_t i = 0; i < held.size(); ++i)
            if (!is_record[i])
                all.insert(all.end(), held[i].begin(), held[i].end());
        return all;
    }

    placement places;

private:
    std::vector<window> windows;
    std::vector<bytes> held;
    std::vector<bool> is_record;
};

// A call with what its model makes of it under each mixture.
struct plan {
    const char *function;
    drawn_call call;
    std::vector<window> windows;
    std::vector<bytes> initial;
    std::vector<bytes> results; // without repetitions
    bytes with_either[2];       // of the two adjustments as they are set
};

// The bytes that the model touches, if there are some of a picture, and not many.
bool scout(plan &p, std::vector<std::unique_ptr<differential::guarded_region>> &regions) {
    while (regions.size() < p.call.buffers.size())
        regions.push_back(std::make_unique<differential::guarded_region>());
    constexpr std::ptrdiff_t half = differential::guarded_region::size / 2;
    placement places;
    model::memory m;
    for (std::size_t i = 0; i < p.call.buffers.size(); ++i) {
        places.origins.push_back(regions[i]->begin() + half);
        m.add({regions[i]->begin(), regions[i]->end()});
    }
    for (std::size_t i = 0; i < p.call.buffers.size(); ++i) {
        for (const differential::patch &patch : p.call.buffers[i].patches)
            std::copy(patch.bytes.begin(), patch.bytes.end(),
                      places.at({i, patch.at})); // on top of each other
        if (p.call.buffers[i].fill)
            p.call.buffers[i].fill(places.at<void>({i, 0}), places);
    }
    try {
        p.call.on_model(m, places);
    } catch (const model::stray_access &) {
        return false;
    }
    p.windows.clear();
    bool touches_a_picture = false;
    for (std::size_t i = 0; i < p.call.buffers.size(); ++i) {
        const model::extent touched = m.footprint(i);
        window w;
        if (!touched.empty()) {
            w = {static_cast<std::ptrdiff_t>(touched.first - places.origins[i]),
                 static_cast<std::ptrdiff_t>(touched.end - places.origins[i])};
            if (p.call.buffers[i].record_size != 0)
                w = {0, static_cast<std::ptrdiff_t>(p.call.buffers[i].record_size)};
        }
        if (w.end - w.first > largest)
            return false;
        touches_a_picture |= w.size() != 0 && p.call.buffers[i].record_size == 0;
        p.windows.push_back(w);
    }
    return touches_a_picture;
}

plan plan_of(const differential::subject &subject, differential::random &r,
             std::vector<std::unique_ptr<differential::guarded_region>> &regions) {
    plan p{subject.name, {}, {}, {}, {}, {}};
    do
        p.call = subject.draw(r);
    while (!scout(p, regions));
    for (std::size_t i = 0; i < p.windows.size(); ++i) {
        bytes held(p.windows[i].size());
        for (unsigned char &byte : held)
            byte = static_cast<unsigned char>(r.next());
        for (const differential::patch &patch : p.call.buffers[i].patches)
            for (std::size_t k = 0; k < patch.bytes.size(); ++k) {
                const std::ptrdiff_t at = patch.at + static_cast<std::ptrdiff_t>(k);
                if (at >= p.windows[i].first && at < p.windows[i].end)
                    held[static_cast<std::size_t>(at - p.windows[i].first)] = patch.bytes[k];
            }
        p.initial.push_back(held);
    }

    scene s(p.call, p.windows);
    const auto made_with = [&](const contrast_data &values) {
        set_on_model(values);
        s.fill(p.call, p.initial);
        model::memory m;
        for (std::size_t i = 0; i < p.windows.size(); ++i)
            m.add(
                {s.places.origins[i] + p.windows[i].first, s.places.origins[i] + p.windows[i].end});
        p.call.on_model(m, s.places);
        return s.pictures();
    };
    std::set<bytes> different;
    for (const contrast_data &values : mixtures())
        different.insert(made_with(values));
    p.results = {different.begin(), different.end()};
    for (int i = 0; i < 2; ++i)
        p.with_either[i] = made_with(adjustments[i]);
    return p;
}

// Of every function but the one that sets the adjustment. Models alone are called: the library sees
// its first calls on the threads.
const std::vector<plan> &plans() {
    static const std::vector<plan> all = [] {
        std::vector<plan> drawn;
        std::vector<std::unique_ptr<differential::guarded_region>> regions;
        differential::random r(1);
        for (const differential::subject &subject : differential::subjects())
            if (std::string_view(subject.name) != "get_contrast_data")
                drawn.push_back(plan_of(subject, r, regions));
        return drawn;
    }();
    return all;
}

const tests::function_table functions {
    "",
#define LUMALANE_EXPORT(signature, name) name,
#include "abi/exports.inc"
#undef LUMALANE_EXPORT
};

struct counts {
    std::atomic<unsigned> calls = 0, first = 0, second = 0, mixed = 0;
    std::atomic<const char *> wrong = nullptr; // a function that made something else
};

void make(const plan &p, counts &made) {
    scene s(p.call, p.windows);
    s.fill(p.call, p.initial);
    p.call.on_function(functions, s.places);
    const bytes found = s.pictures();
    ++made.calls;
    if (std::find(p.results.begin(), p.results.end(), found) == p.results.end())
        made.wrong = p.function;
    else if (p.results.size() > 1)
        ++(found == p.with_either[0]   ? made.first
           : found == p.with_either[1] ? made.second
                                       : made.mixed);
}

// As many at once, each of which runs `run(number)`.
template <class Run>
std::vector<std::thread> at_once(unsigned count, std::barrier<> &start, const Run &run) {
    std::vector<std::thread> threads;
    for (unsigned t = 0; t < count; ++t)
        threads.emplace_back([&start, &run, t] {
            start.arrive_and_wait();
            run(t);
        });
    return threads;
}

// Before all others: the first calls of the process ask the processor. (Of functions that have no
// adjustment; none is set yet.)
TEST(threads, whose_calls_are_the_first_ones_make_the_same_pictures) {
    constexpr unsigned count = 64;
    std::vector<const plan *> unadjusted;
    for (const plan &p : plans())
        if (p.results.size() == 1)
            unadjusted.push_back(&p);
    ASSERT_GT(unadjusted.size(), 30u);
    counts made;
    std::barrier start(count);
    const auto run = [&](unsigned t) { make(*unadjusted[t % unadjusted.size()], made); };
    for (std::thread &thread : at_once(count, start, run))
        thread.join();
    EXPECT_EQ(made.wrong.load(), nullptr) << made.wrong.load();
    EXPECT_EQ(made.calls, count);
}

TEST(threads, at_once_make_the_pictures_of_an_adjustment_that_was_set) {
    constexpr unsigned count = 64, sets = 150;
    ASSERT_EQ(plans().size(), 67u);
    counts made;
    std::atomic<bool> over = false; // the adjustment was set so often
    std::barrier start(count + 1);
    contrast_data first = adjustments[0];
    get_contrast_data(&first);

    std::thread setting([&] {
        start.arrive_and_wait();
        for (unsigned i = 0; i < sets; ++i) {
            contrast_data values = adjustments[i % 2];
            get_contrast_data(&values);
            std::this_thread::sleep_for(std::chrono::microseconds(50));
        }
        over = true;
    });
    const auto run = [&](unsigned t) {
        for (std::size_t i = 0; i < plans().size() || !over; ++i)
            make(plans()[(i + t) % plans().size()], made);
    };
    for (std::thread &thread : at_once(count, start, run))
        thread.join();
    setting.join();

    EXPECT_EQ(made.wrong.load(), nullptr) << made.wrong.load();
    EXPECT_GE(made.calls, count * plans().size());
    EXPECT_GT(made.first, 0u);
    EXPECT_GT(made.second, 0u);
    std::printf("%u calls on %u threads: %u with one adjustment, %u with the other, %u with a "
                "mixture, the rest has none\n",
                made.calls.load(), count, made.first.load(), made.second.load(), made.mixed.load());
    std::printf("figure: thread-calls %u\n", made.calls.load());
}

TEST(threads, that_start_and_end_make_the_same_pictures) {
    contrast_data values = adjustments[1];
    get_contrast_data(&values);
    constexpr unsigned count = 1000;
    counts made;
    for (unsigned t = 0; t < count; t += 4) {
        std::vector<std::thread> threads;
        for (unsigned i = t; i < t + 4; ++i)
            threads.emplace_back([&, i] { make(plans()[i % plans().size()], made); });
        for (std::thread &thread : threads)
            thread.join();
    }
    EXPECT_EQ(made.wrong.load(), nullptr) << made.wrong.load();
    EXPECT_EQ(made.calls, count);
    EXPECT_GT(made.second, 0u);
    EXPECT_EQ(made.first + made.mixed, 0u);
    std::printf("figure: threads-ended %u\n", count);
}

// ---- The adjustment is read once ---------------------------------------------------------------
//
// A call whose pages are all out of reach faults at the first byte that it touches; there the other
// adjustment is set, and the page opened. What a call reads later it would see.

std::uintptr_t closed_begin, closed_end;
volatile std::sig_atomic_t faults;

void set_the_other(int, siginfo_t *fault, void *) {
    const auto address = reinterpret_cast<std::uintptr_t>(fault->si_addr);
    if (address < closed_begin || address >= closed_end)
        std::_Exit(EXIT_FAILURE);
    contrast_data values = adjustments[1];
    get_contrast_data(&values);
    constexpr std::uintptr_t page = 4096;
    mprotect(reinterpret_cast<void *>(address & ~(page - 1)), page, PROT_READ | PROT_WRITE);
    faults = faults + 1;
}

TEST(adjustment, is_read_before_the_first_byte_of_a_picture_and_never_again) {
    struct sigaction on_fault = {}, before = {};
    on_fault.sa_sigaction = set_the_other;
    on_fault.sa_flags = SA_SIGINFO;
    sigaction(SIGSEGV, &on_fault, &before);
    differential::guarded_region region;
    closed_begin = region.begin(), closed_end = region.end();
    constexpr std::size_t page = 4096;
    for (const plan &p : plans()) {
        // Records where they are, every buffer at the end of its own pages.
        scene s(p.call, p.windows);
        model::address next = region.begin();
        for (std::size_t i = 0; i < p.windows.size(); ++i)
            if (p.call.buffers[i].record_size == 0) {
                next += (p.windows[i].size() + page - 1) / page * page + page;
                ASSERT_LE(next, region.end());
                s.places.origins[i] = next - static_cast<model::address>(p.windows[i].end);
                std::copy(p.initial[i].begin(), p.initial[i].end(),
                          s.places.at<unsigned char>({i, p.windows[i].first}));
            }
        s.fill(p.call, p.initial);

        contrast_data values = adjustments[0];
        get_contrast_data(&values);
        faults = 0;
        mprotect(reinterpret_cast<void *>(closed_begin), region.size, PROT_NONE);
        p.call.on_function(functions, s.places);
        mprotect(reinterpret_cast<void *>(closed_begin), region.size, PROT_READ | PROT_WRITE);

        EXPECT_GE(faults, 1) << p.function;
        bytes found;
        for (std::size_t i = 0; i < p.windows.size(); ++i)
            if (p.call.buffers[i].record_size == 0) {
                const auto at = s.places.at<const unsigned char>({i, p.windows[i].first});
                found.insert(found.end(), margin, 0);
                found.insert(found.end(), at, at + p.windows[i].size());
                found.insert(found.end(), margin, 0);
            }
        EXPECT_TRUE(found == p.with_either[0]) << p.function;
    }
    sigaction(SIGSEGV, &before, nullptr);
}

// What the sanitizer must find.
int race() {
    static int shared = 0;
    std::thread other([] { ++shared; });
    ++shared;
    other.join();
    std::printf("%d\n", shared);
    return 0;
}

} // namespace

int main(int argc, char **argv) {
    if (argc == 2 && std::strcmp(argv[1], "--race") == 0)
        return race();
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
