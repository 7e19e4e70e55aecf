// lumalane_bench_any_size [ROUNDS [PAIR]]: what convert() costs beside the functions themselves, which
// take whole steps: at 1280x720, where both do the same, and at 1366x768 and 1365x767 beside the
// functions at 1376x768, the next whole steps. As a Markdown table; only the pairs whose names have
// PAIR in them.
#include "bench/contest.h"
#include "bench/scene.h"

#include <lumalane/picture.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace lumalane::bench {
namespace {

constexpr adjustment some{70, 60, 3, 2, 1};

struct pair {
    const char *name;
    format from, to;
    bool adjusts;
    picture_function *function;
};

const pair pairs[] = {
    {"loadimage_yv12_ajust", format::i420, format::i420, true, loadimage_yv12_ajust},
    {"loadimage_yuy2", format::i420, format::yuy2, false, loadimage_yuy2},
    {"loadimage_yuy2_ajust", format::i420, format::yuy2, true, loadimage_yuy2_ajust},
    {"loadimage_rgb32", format::i420, format::rgb32, false, loadimage_rgb32},
    {"loadimage_rgb32_ajust", format::i420, format::rgb32, true, loadimage_rgb32_ajust},
    {"loadimage_rgb24", format::i420, format::rgb24, false, loadimage_rgb24},
    {"loadimage_rgb24_ajust", format::i420, format::rgb24, true, loadimage_rgb24_ajust},
    {"loadimage_rgb16", format::i420, format::rgb565, false, loadimage_rgb16},
    {"loadimage_rgb16_ajust", format::i420, format::rgb565, true, loadimage_rgb16_ajust},
    {"LoadYUY2_YUY2", format::yuy2, format::yuy2, false, LoadYUY2_YUY2},
    {"LoadYUY2_YUY2_adjust", format::yuy2, format::yuy2, true, LoadYUY2_YUY2_adjust},
    {"LoadYUY2_RGB32", format::yuy2, format::rgb32, false, LoadYUY2_RGB32},
    {"LoadYUY2_RGB32_adjust", format::yuy2, format::rgb32, true, LoadYUY2_RGB32_adjust},
    {"LoadYUY2_RGB24", format::yuy2, format::rgb24, false, LoadYUY2_RGB24},
    {"LoadYUY2_RGB24_adjust", format::yuy2, format::rgb24, true, LoadYUY2_RGB24_adjust},
    {"LoadYUY2_RGB16", format::yuy2, format::rgb565, false, LoadYUY2_RGB16},
    {"LoadYUY2_RGB16_adjust", format::yuy2, format::rgb565, true, LoadYUY2_RGB16_adjust},
};

// A picture in the memory of another one that is as large or larger.
picture within(format f, size shown, size laid_out, const buffer &memory) {
    picture p = packed_planes(f, laid_out.width, laid_out.height, memory.data());
    p.width = shown.width;
    p.height = shown.height;
    return p;
}

struct contest {
    const pair &what;
    buffer from, to;
    std::vector<contestant> contestants{};

    explicit contest(const pair &p)
        : what(p), from(picture_bytes(p.from, 1376, 768)), to(picture_bytes(p.to, 1376, 768)) {}

    void add(const task &work) {
        contestants.push_back({"", [work](long calls) { return time(work, calls); }});
    }
    void add_function(size s) {
        const picture source = within(what.from, s, s, from), made = within(what.to, s, s, to);
        tag_ajust_contrast_info info{};
        info.surface_height = info.rows_to_plane_end = s.height;
        add([=, function = what.function]() mutable {
            // Of a packed source, too, the pitch is its width: it is counted in pixels.
            function(source.planes[0].data, source.planes[1].data, source.planes[2].data,
                     made.planes[0].data, s.width, s.height, s.width, made.planes[0].stride, &info);
        });
    }
    void add_convert(size shown, size laid_out) {
        const picture source = within(what.from, shown, laid_out, from);
        const picture made = within(what.to, shown, laid_out, to);
        add([=, adjusts = what.adjusts] {
            if (!(adjusts ? convert(source, made, some) : convert(source, made)))
                std::abort();
        });
    }
};

void measure(const pair &p, int rounds) {
    contest c(p);
    const size even{1280, 720}, steps{1376, 768}, off{1366, 768}, odd{1365, 767};
    c.add_function(even);
    c.add_convert(even, even);
    c.add_function(steps);
    c.add_convert(off, steps);
    c.add_convert(odd, steps);
    c.add_convert(off, off);
    for (contestant &contestant : c.contestants)
        calibrate(contestant, 0.002);
    for (int i = 0; i < rounds; ++i)
        round(c.contestants);
    const auto ratio = [&](int a, int b) {
        return paired_ratio(c.contestants[a], c.contestants[b]);
    };
    std::printf("| `%s` | %.2f | %.2f | %.2f | %.2f |\n", p.name, ratio(1, 0), ratio(3, 2),
                ratio(4, 2), ratio(5, 2));
}

} // namespace
} // namespace lumalane::bench

int main(int argc, char **argv) {
    using namespace lumalane::bench;
    const int rounds = argc > 1 ? std::atoi(argv[1]) : 99;
    lumalane::set_adjustment(some);
    std::puts("| Function | 1280x720 | 1366x768 | 1365x767 | 1366x768 without gaps |\n"
              "|---|---:|---:|---:|---:|");
    bool measured = false;
    for (const pair &p : pairs)
        if (rounds > 0 && (argc < 3 || std::string(p.name).find(argv[2]) != std::string::npos)) {
            measure(p, rounds);
            measured = true;
        }
    if (!measured)
        return std::fputs("lumalane_bench_any_size [ROUNDS [PART OF A NAME]]\n", stderr), 1;
}
