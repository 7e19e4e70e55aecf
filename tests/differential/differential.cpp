#include "tests/differential/differential.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>

#include "tests/differential/guarded_region.h"
#include "tests/model/models.h"

namespace differential {

namespace {

// What is running, for the line that a fault or a disagreement leaves behind: the case, and the
// target with the layout of its buffers.
std::string running;
std::string running_on;

void report_fault(int) {
    std::fprintf(stderr, "fault on %s\n", what_runs().c_str());
    std::_Exit(EXIT_FAILURE);
}

using bytes = std::vector<std::uint8_t>;

// The bytes [first, end) of a buffer, counted from its offset 0.
struct range {
    std::ptrdiff_t first = 0;
    std::ptrdiff_t end = 0;

    bool empty() const { return first == end; }
    std::size_t size() const { return static_cast<std::size_t>(end - first); }
};

// Where the buffers lie in one run, and which bytes of them are filled and compared.
struct scene {
    const char *name;
    placement places;
    std::vector<range> ranges;

    std::uint8_t *begin(std::size_t buffer) const {
        return places.at<std::uint8_t>({buffer, ranges[buffer].first});
    }
};

// Filled and compared on both sides of what is touched.
constexpr std::ptrdiff_t margin = 128;

// Of the offset 0 of a buffer, where the buffer is not laid against a guard.
constexpr std::ptrdiff_t origin_alignment = 64;

bytes draw_samples(random &r, std::size_t count) {
    static constexpr std::uint8_t extremes[] = {0, 1, 16, 128, 235, 240, 254, 255};
    const int kind = r.between(0, 2);
    const int base = r.between(0, 252);
    bytes samples(count);
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < count; ++i, bits >>= 8) {
        if (i % 8 == 0)
            bits = r.next();
        const auto byte = static_cast<std::uint8_t>(bits);
        samples[i] = kind == 0   ? byte
                     : kind == 1 ? extremes[byte % 8]
                                 : static_cast<std::uint8_t>(base + byte % 4);
    }
    return samples;
}

// Lays the patches over what is held of a buffer.
void apply(const std::vector<patch> &patches, range held, std::uint8_t *first) {
    for (const patch &p : patches) {
        const std::ptrdiff_t begin = std::max(p.at, held.first);
        const std::ptrdiff_t end =
            std::min(p.at + static_cast<std::ptrdiff_t>(p.bytes.size()), held.end);
        if (begin < end)
            std::copy(p.bytes.begin() + (begin - p.at), p.bytes.begin() + (end - p.at),
                      first + (begin - held.first));
    }
}

// One case: a drawn call with what its buffers hold. What does not fit the regions throws a
// model::stray_access.
class experiment {
public:
    using regions = std::vector<std::unique_ptr<guarded_region>>;

    experiment(const drawn_call &drawn_, random &r, regions &memory_)
        : drawn(drawn_), memory(memory_) {
        while (memory.size() < drawn.buffers.size())
            memory.push_back(std::make_unique<guarded_region>());
        for (const range &touched : scout()) {
            const range widened{touched.first - margin, touched.end + margin};
            covered.push_back(touched.empty() ? range{} : widened);
            if (widened.size() + origin_alignment > guarded_region::size)
                throw model::stray_access{};
            held.push_back(draw_samples(r, covered.back().size()));
            apply(drawn.buffers[held.size() - 1].patches, covered.back(), held.back().data());
        }
    }

    // Returns the first disagreement, or nothing; and counts.
    std::string run(const std::vector<target> &targets, outcome &counted) {
        const std::vector<range> exact = compare(roomy(), targets);
        if (failure.empty())
            compare(against_the_end(exact), targets);
        if (failure.empty())
            compare(against_the_start(exact), targets);
        counted.calls += calls, counted.bytes += compared;
        return failure;
    }

private:
    // What the model touches when every buffer has a whole region.
    std::vector<range> scout() {
        scene wide{"scout", {}, {}};
        for (std::size_t i = 0; i < drawn.buffers.size(); ++i) {
            const std::ptrdiff_t half = guarded_region::size / 2;
            wide.places.origins.push_back(memory[i]->begin() + half);
            wide.ranges.push_back({-half, half});
            apply(drawn.buffers[i].patches, wide.ranges[i], wide.begin(i));
        }
        fill_records(wide);
        return run_model(wide);
    }

    scene roomy() const {
        return lay_out("with room around", covered, [](const guarded_region &region, range r) {
            return region.begin() - (r.first & -origin_alignment);
        });
    }

    scene against_the_end(const std::vector<range> &touched) const {
        scene s = lay_out("against the end", touched, [](const guarded_region &region, range r) {
            return region.end() - r.end;
        });
        for (std::size_t i = 0; i < touched.size(); ++i)
            if (!touched[i].empty())
                s.ranges[i].first = std::max(touched[i].first - margin, covered[i].first);
        return s;
    }

    scene against_the_start(const std::vector<range> &touched) const {
        scene s = lay_out("against the start", touched, [](const guarded_region &region, range r) {
            return region.begin() - r.first;
        });
        for (std::size_t i = 0; i < touched.size(); ++i)
            if (!touched[i].empty())
                s.ranges[i].end = std::min(touched[i].end + margin, covered[i].end);
        return s;
    }

    // What is not touched has its origin in the guard.
    template <class Origin>
    scene lay_out(const char *name, const std::vector<range> &ranges, Origin origin) const {
        scene s{name, {}, ranges};
        for (std::size_t i = 0; i < ranges.size(); ++i)
            s.places.origins.push_back(ranges[i].empty()
                                           ? memory[i]->end() + guarded_region::guard_size / 2
                                           : origin(*memory[i], ranges[i]));
        return s;
    }

    void fill_records(const scene &s) const {
        for (std::size_t i = 0; i < drawn.buffers.size(); ++i)
            if (drawn.buffers[i].fill && !s.ranges[i].empty())
                drawn.buffers[i].fill(s.places.at<void>({i, 0}), s.places);
    }

    void fill(const scene &s) const {
        for (std::size_t i = 0; i < s.ranges.size(); ++i)
            std::copy_n(held[i].begin() + (s.ranges[i].first - covered[i].first),
                        s.ranges[i].size(), s.begin(i));
        fill_records(s);
    }

    std::vector<range> run_model(const scene &s) const {
        model::memory m;
        for (std::size_t i = 0; i < s.ranges.size(); ++i) {
            const model::address first = model::address_of(s.begin(i));
            m.add({first, first + s.ranges[i].size()});
        }
        drawn.on_model(m, s.places);
        std::vector<range> touched;
        for (std::size_t i = 0; i < s.ranges.size(); ++i) {
            const model::extent e = m.footprint(i);
            const auto offset = [&](model::address where) {
                return static_cast<std::ptrdiff_t>(where - s.places.origins[i]);
            };
            if (e.empty())
                touched.push_back({});
            else if (drawn.buffers[i].record_size > 0)
                touched.push_back({0, static_cast<std::ptrdiff_t>(drawn.buffers[i].record_size)});
            else
                touched.push_back({offset(e.first), offset(e.end)});
        }
        return touched;
    }

    // Returns what the model touched.
    std::vector<range> compare(const scene &s, const std::vector<target> &targets) {
        contrast_data contrast = drawn.contrast;
        model::memory parameters;
        parameters.add({model::address_of(&contrast), model::address_of(&contrast + 1)});
        model::get_contrast_data(parameters, &contrast);
        fill(s);
        const std::vector<range> touched = run_model(s);

        std::vector<bytes> expected;
        for (std::size_t i = 0; i < s.ranges.size(); ++i)
            expected.emplace_back(s.begin(i), s.begin(i) + s.ranges[i].size());

        for (const target &t : targets) {
            running_on =
                t.functions.name + (t.how.empty() ? "" : ", " + t.how) + ", buffers " + s.name;
            fill(s);
            t.select();
            t.functions.get_contrast_data(&contrast);
            drawn.on_function(t.functions, s.places);
            ++calls;
            for (std::size_t i = 0; i < s.ranges.size() && failure.empty(); ++i) {
                failure = difference(s, i, expected[i]);
                compared += expected[i].size();
            }
        }
        return touched;
    }

    std::string difference(const scene &s, std::size_t buffer, const bytes &expected) const {
        const std::uint8_t *found = s.begin(buffer);
        if (expected.empty() || std::memcmp(found, expected.data(), expected.size()) == 0)
            return {};
        std::size_t at = 0;
        while (found[at] == expected[at])
            ++at;
        char text[100];
        std::snprintf(text, sizeof text, "%s%+ld is %d instead of %d on ",
                      drawn.buffers[buffer].name,
                      static_cast<long>(s.ranges[buffer].first + static_cast<std::ptrdiff_t>(at)),
                      found[at], expected[at]);
        return text + what_runs();
    }

    const drawn_call &drawn;
    regions &memory;
    std::vector<range> covered; // what each buffer holds before a call: these offsets ...
    std::vector<bytes> held;    // ... of these bytes
    std::string failure;
    unsigned long long calls = 0, compared = 0;
};

random randomness_of_case(std::string_view name, std::uint64_t seed, unsigned number) {
    std::uint64_t mixed = random(seed).next();
    for (const char c : name)
        mixed = random(mixed + static_cast<unsigned char>(c)).next();
    return random(random(mixed + number).next());
}

} // namespace

std::string what_runs() { return running_on + ": " + running; }

outcome run(const subject &s, const std::vector<target> &targets, random &r) {
    static experiment::regions memory;
    outcome result;
    try {
        const drawn_call drawn = s.draw(r);
        running = std::string(s.name) + ": " + drawn.arguments;
        result.failure = experiment(drawn, r, memory).run(targets, result);
        result.cases = result.failure.empty() ? 1 : 0;
    } catch (const model::stray_access &) {
        result.redrawn = 1;
    }
    return result;
}

outcome run(const subject &s, const std::vector<target> &targets, const options &o) {
    std::signal(SIGSEGV, report_fault);
    experiment::regions memory;
    outcome result;
    for (unsigned number = o.first; number - o.first < o.cases; ++number) {
        random r = randomness_of_case(s.name, o.seed, number);
        for (bool fits = false; !fits;) {
            try {
                const drawn_call drawn = s.draw(r);
                running = std::string(s.name) + " (--seed " + std::to_string(o.seed) + " --first " +
                          std::to_string(number) + " --cases 1): " + drawn.arguments;
                result.failure = experiment(drawn, r, memory).run(targets, result);
                fits = true;
            } catch (const model::stray_access &) {
                ++result.redrawn;
            }
        }
        if (!result.failure.empty())
            break;
        ++result.cases;
    }
    return result;
}

} // namespace differential
