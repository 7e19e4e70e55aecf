// Sequences of calls that share memory, records and the adjustment, against the models: a record goes
// into a call as the one before has left it.
#include "tests/fuzz/fuzz.h"

#include <sys/mman.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <tuple>
#include <vector>

#include "abi/targets.h"
#include "tests/model/models.h"

namespace {

using differential::random;

struct records {
    tagMIX_INFO mix;
    tag_ajust_contrast_info info;
    tagVideoFrame frame;
    contrast_data contrast;
};

// Regions so far apart that no pitch leads from one into another, with nothing mapped in between.
enum region { video, subpicture, surface, record_region, region_count };
constexpr std::size_t region_bytes = 96 << 10, region_distance = 64 << 20;

class memory_of_calls {
public:
    memory_of_calls()
        : first(static_cast<std::uint8_t *>(mmap(nullptr, region_count * region_distance, PROT_NONE,
                                                 MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1,
                                                 0))) {
        for (int i = 0; i < region_count; ++i)
            mprotect(begin(i), region_bytes, PROT_READ | PROT_WRITE);
    }

    std::uint8_t *begin(int i) const { return first + i * region_distance + region_distance / 2; }
    records &shared() const { return *reinterpret_cast<records *>(begin(record_region)); }

    model::memory for_model() const {
        model::memory m;
        for (int i = 0; i < region_count; ++i) {
            const model::address at = model::address_of(begin(i));
            m.add({at, at + size(i)});
        }
        return m;
    }

    static std::size_t size(int i) { return i == record_region ? sizeof(records) : region_bytes; }

    using content = std::array<std::vector<std::uint8_t>, region_count>;

    void save(content &to) const {
        for (int i = 0; i < region_count; ++i)
            to[i].assign(begin(i), begin(i) + size(i));
    }
    void restore(const content &from) const {
        for (int i = 0; i < region_count; ++i)
            std::memcpy(begin(i), from[i].data(), size(i));
    }
    void expect_equal(const content &expected) const {
        static constexpr const char *names[] = {"video", "subpicture", "surface", "records"};
        for (int i = 0; i < region_count; ++i) {
            if (std::memcmp(begin(i), expected[i].data(), size(i)) == 0)
                continue;
            std::size_t at = 0;
            while (begin(i)[at] == expected[i][at])
                ++at;
            fuzz::report("byte " + std::to_string(at) + " of " + names[i] + " is " +
                         std::to_string(begin(i)[at]) + " instead of " +
                         std::to_string(expected[i][at]));
        }
    }

private:
    std::uint8_t *first;
};

const memory_of_calls &memory() {
    static const memory_of_calls mapped;
    return mapped;
}

unsigned char *choose_place(random &r, region in) {
    return memory().begin(in) + region_bytes / 4 + 32 * r.between(0, 800) + r.one_of({0, 0, 1, 7});
}

int choose_width(random &r) { return r.one_in(2) ? 16 * r.between(1, 12) : r.between(0, 200); }
int choose_height(random &r) { return r.one_in(2) ? 2 * r.between(1, 10) : r.between(0, 23); }
int choose_pitch(random &r, int row_bytes) {
    return r.one_of(
        {row_bytes, row_bytes, row_bytes + 16, 2 * row_bytes, -row_bytes, 0, r.between(-600, 600)});
}

bool lies_in(const unsigned char *pointer, region in) {
    const std::ptrdiff_t far = 8 << 20;
    const std::ptrdiff_t at = pointer - memory().begin(in);
    return -far < at && at < far;
}

// The pointers of the records, each of its region alone.
struct record_pointer {
    unsigned char *&pointer;
    region in;
};
std::vector<record_pointer> pointers() {
    tagMIX_INFO &m = memory().shared().mix;
    tagVideoFrame &f = memory().shared().frame;
    return {{m.video_y, video},    {m.video_v, video},
            {m.video_u, video},    {f.plane_y, video},
            {f.plane_u, video},    {f.plane_v, video},
            {m.sub_y, subpicture}, {m.alpha_plane, subpicture},
            {m.sub_v, subpicture}, {m.sub_u, subpicture},
            {m.dst, surface},      {m.dst_u, surface},
            {m.dst_v, surface}};
}

void fill_mix(random &r) {
    tagMIX_INFO &m = memory().shared().mix;
    m.width = choose_width(r);
    m.height = choose_height(r);
    m.video_pitch = choose_pitch(r, m.width);
    m.sub_pitch = choose_pitch(r, m.width);
    m.dst_pitch = choose_pitch(r, m.width * r.between(1, 4));
    m.color_key = static_cast<unsigned>(r.next());
    m.adjust_info = &memory().shared().info;
    for (const record_pointer &p : pointers())
        p.pointer = choose_place(r, p.in);
}

void fill_info(random &r) {
    tag_ajust_contrast_info &info = memory().shared().info;
    info.rgb16_layout = static_cast<unsigned>(r.between(0, 4));
    info.surface_height = r.between(0, 40);
    info.rows_to_plane_end = r.between(0, 40);
}

void fill_contrast(random &r) {
    contrast_data &c = memory().shared().contrast;
    const auto value = [&](int plain) {
        return r.one_in(2)   ? plain
               : r.one_in(2) ? r.between(-255, 255)
                             : static_cast<int>(r.next());
    };
    c = {value(64), value(64), value(0), value(0), value(0), value(0), value(0), value(0)};
}

// One thing in the records or in memory becomes another one.
void change(random &r) {
    records &all = memory().shared();
    tagMIX_INFO &m = all.mix;
    switch (r.between(0, 9)) {
    case 0:
        return fill_mix(r);
    case 1:
        m.width = choose_width(r);
        return;
    case 2:
    case 3:
        m.height = choose_height(r);
        return;
    case 4:
        *std::array{&m.video_pitch, &m.sub_pitch, &m.dst_pitch}[r.between(0, 2)] =
            choose_pitch(r, 16 * r.between(0, 40));
        return;
    case 5:
        fill_info(r);
        return;
    case 6:
        fill_contrast(r);
        return;
    case 7:
        all.frame.field_mode = r.between(-1, 2);
        all.frame.luma_pitch = r.one_in(2) ? 16 * r.between(0, 20) : r.between(0, 400);
        return;
    case 8: {
        const std::vector<record_pointer> all_pointers = pointers();
        const record_pointer &p = all_pointers[r.between(0, 12)];
        p.pointer = choose_place(r, p.in);
        return;
    }
    default: { // alpha that is mostly one value
        std::uint8_t *const alpha = memory().begin(subpicture) + region_bytes / 4;
        std::memset(alpha, r.between(0, 20), region_bytes / 2);
        alpha[r.between(0, 40000)] = static_cast<std::uint8_t>(r.next());
    }
    }
}

// ---- Arguments, of the shared records and of places in memory ------------------------------------

auto arguments(random &, const char *, void (*)(LUMALANE_PARAMETERS_parameters)) {
    return std::tuple(static_cast<void *>(&memory().shared().contrast));
}

auto arguments(random &r, const char *name, void (*)(LUMALANE_PARAMETERS_picture)) {
    // Functions that load may convert in place.
    const bool stretched = name[0] == 's';
    // What has a precondition of its size does anything below it.
    const bool planes = stretched && std::strstr(name, "_yv12");
    const auto source = [&] {
        return choose_place(r, !stretched && r.one_in(4) ? surface : video);
    };
    const int width = choose_width(r) + (planes ? 32 : 0);
    return std::tuple(source(), source(), source(), choose_place(r, surface), width,
                      choose_height(r) + (planes ? 4 : 0), choose_pitch(r, width),
                      choose_pitch(r, r.between(1, 4) * width), &memory().shared().info);
}

auto arguments(random &, const char *, void (*)(LUMALANE_PARAMETERS_mix)) {
    return std::tuple(&memory().shared().mix);
}

auto arguments(random &r, const char *, void (*)(LUMALANE_PARAMETERS_key_fill)) {
    const int width = choose_width(r);
    return std::tuple(static_cast<unsigned>(r.next()),
                      static_cast<void *>(choose_place(r, surface)), width, choose_height(r), 0,
                      choose_pitch(r, r.between(2, 4) * width));
}

auto arguments(random &r, const char *, void (*)(LUMALANE_PARAMETERS_mask)) {
    const int width = choose_width(r);
    return std::tuple(choose_place(r, surface), choose_place(r, r.one_in(4) ? surface : subpicture),
                      static_cast<unsigned>(r.between(0, 20)), static_cast<unsigned>(r.next()),
                      width, choose_pitch(r, width), choose_height(r));
}

auto arguments(random &r, const char *, void (*)(LUMALANE_PARAMETERS_packed_stretch)) {
    const int row_bytes = r.one_in(8) ? 32 : 32 * r.between(2, 12);
    return std::tuple(static_cast<void *>(choose_place(r, video)), static_cast<void *>(nullptr),
                      static_cast<void *>(nullptr), static_cast<void *>(choose_place(r, surface)),
                      row_bytes, choose_height(r), choose_pitch(r, 2 * row_bytes));
}

auto arguments(random &r, const char *name, void (*)(LUMALANE_PARAMETERS_packed_stretch_ajust)) {
    using plain = void(LUMALANE_PARAMETERS_packed_stretch);
    return std::tuple_cat(arguments(r, name, static_cast<plain *>(nullptr)),
                          std::tuple(&memory().shared().info));
}

auto arguments(random &r, const char *, void (*)(LUMALANE_PARAMETERS_plane_stretch)) {
    const int width = choose_width(r) + 16;
    return std::tuple(choose_place(r, video), choose_place(r, surface), width, choose_height(r) + 2,
                      choose_pitch(r, width), choose_pitch(r, 2 * width));
}

auto arguments(random &r, const char *name, void (*)(LUMALANE_PARAMETERS_plane_stretch_ajust)) {
    using plain = void(LUMALANE_PARAMETERS_plane_stretch);
    return std::tuple_cat(arguments(r, name, static_cast<plain *>(nullptr)),
                          std::tuple(&memory().shared().info, r.between(1, 3)));
}

auto arguments(random &r, const char *, void (*)(LUMALANE_PARAMETERS_frame_stretch)) {
    return std::tuple(&memory().shared().frame, r.between(-2, 4), choose_height(r),
                      choose_place(r, surface), choose_pitch(r, r.between(0, 400)),
                      &memory().shared().info);
}

// ---- Calls ---------------------------------------------------------------------------------------

// Makes one call on the model and on the function, from the same bytes to the same bytes. One that does
// not fit is not made.
template <class Model, class Function>
void make(random &r, const char *name, Model on_model, Function *function) {
    static memory_of_calls::content before, expected;
    const auto with = arguments(r, name, function);
    fuzz::doing += std::string(" ") + name;
    memory().save(before);
    model::memory m = memory().for_model();
    m.allow(300000);
    try {
        std::apply(on_model, std::tuple_cat(std::tie(m), with));
    } catch (const model::stray_access &) {
        memory().restore(before);
        fuzz::doing += " (not made)";
        return;
    }
    memory().save(expected);
    memory().restore(before);
    std::apply(function, with);
    memory().expect_equal(expected);
}

constexpr void (*functions[])(random &) = {
#define LUMALANE_EXPORT(signature, name) [](random &r) { make(r, #name, model::name, ::name); },
#include "abi/exports.inc"
#undef LUMALANE_EXPORT
};

void choose_target(random &r) {
    std::vector<const lumalane::target *> runnable;
    for (const lumalane::target &t : lumalane::targets())
        if (t.runs_here())
            runnable.push_back(&t);
    const lumalane::target &chosen = *runnable[r.between(0, static_cast<int>(runnable.size()) - 1)];
    lumalane::force(chosen);
    lumalane::assume_last_level_cache(r.one_in(2) ? 0 : 1);
    fuzz::doing = chosen.name;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    differential::random r = fuzz::choices_of(data, size);
    choose_target(r);
    for (int i = 0; i < region_count; ++i)
        for (std::size_t at = 0; at < memory_of_calls::size(i); at += sizeof(std::uint64_t)) {
            const std::uint64_t bytes = r.next();
            const std::size_t left = memory_of_calls::size(i) - at;
            std::memcpy(memory().begin(i) + at, &bytes, std::min(left, sizeof bytes));
        }
    fill_mix(r), fill_info(r), fill_contrast(r);
    memory().shared().frame.luma_pitch = 16 * r.between(0, 20);
    make(r, "get_contrast_data", model::get_contrast_data, ::get_contrast_data);

    const int calls = r.between(2, 12);
    for (int call = 0; call < calls; ++call) {
        // What has run away stays in its region.
        for (const record_pointer &p : pointers())
            if (!lies_in(p.pointer, p.in))
                p.pointer = choose_place(r, p.in);
        const int last = static_cast<int>(std::size(functions)) - 1;
        functions[r.between(0, last)](r);
        for (int changes = r.between(0, 3); changes > 0; --changes)
            change(r);
    }
    return 0;
}
