// Runs every row kernel of one target, for bench/instructions, which counts what is executed: each
// with n pixels or samples and with twice as many, so that the difference is that of the main loop.
//
//     instructions TARGET
//
// Prints a line for each: the name of the kernel, what is special about the call, how many pixels or
// samples the difference is.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "abi/targets.h"

extern "C" [[gnu::noinline]] void instructions_mark() { __asm__ volatile(""); }

namespace {

constexpr ptrdiff_t least = 512, extent = 16 * least;

using lumalane::row_kernels;
namespace row_kernel = lumalane::row_kernel;

struct planes {
    std::vector<unsigned char> memory = std::vector<unsigned char>(16 * extent + 64);

    unsigned char *operator[](int i) {
        const auto begin = reinterpret_cast<std::uintptr_t>(memory.data());
        return reinterpret_cast<unsigned char *>((begin + 63) & ~std::uintptr_t{63}) + i * extent;
    }
};

class runner {
public:
    explicit runner(const row_kernels &of_target) : kernels(of_target) {
        // Samples that differ much from row to row, so that edges are followed; no pixel of them is
        // of the key's colour or has a fourth byte.
        unsigned state = 1;
        for (unsigned char &byte : sources.memory)
            byte = static_cast<unsigned char>((state = state * 1103515245 + 12345) >> 16);
        for (ptrdiff_t i = 0; i < extent; ++i) {
            surface_pixels[i] = i % 4 == 3 ? 0 : sources[0][i] | 1;
            drawn[i] = static_cast<unsigned char>(1 + i % 15);
        }
    }

    void operator()(const char *name, row_kernel::planar_to_surface *kernel) {
        for_adjustments(name, [&](const lumalane::adjustment *by, ptrdiff_t n) {
            lumalane::planar_rows rows{sources[0], sources[4], sources[5], results[0]};
            rows.lower = lumalane::lower_row::itself, rows.y_below = extent, rows.by = by;
            rows.dst_below = 8 * extent;
            kernel(rows, n);
            return 2 * n;
        });
    }

    void operator()(const char *name, row_kernel::packed_to_surface *kernel) {
        for_adjustments(name, [&](const lumalane::adjustment *by, ptrdiff_t n) {
            lumalane::packed_rows rows{sources[0], sources[0], results[0]};
            rows.lower = lumalane::lower_row::itself, rows.src_below = extent, rows.by = by;
            rows.dst_below = 8 * extent;
            kernel(rows, n);
            return 2 * n;
        });
    }

    void operator()(const char *name, row_kernel::plane_to_surface *kernel) {
        const bool adjusts = std::strstr(name, "plane") != nullptr;
        for_adjustments(
            name,
            [&](const lumalane::adjustment *by, ptrdiff_t n) {
                lumalane::plane_rows rows{sources[0], results[0]};
                rows.by = by ? &by->y : nullptr;
                kernel(rows, n);
                return n;
            },
            adjusts);
    }

    void operator()(const char *name, row_kernel::keyed_to_surface *kernel) {
        for_adjustments(name, [&](const lumalane::adjustment *by, ptrdiff_t n) {
            lumalane::keyed_rows rows{sources[0], sources[4], sources[5], drawn, results[0]};
            rows.by = by;
            kernel(rows, n, key);
            return n;
        });
        call(name, "clear", [&](ptrdiff_t n) {
            kernel({sources[0], sources[4], sources[5], clear, results[0]}, n, key);
            return n;
        });
    }

    void operator()(const char *name, row_kernel::surface_to_planes *kernel) {
        call(name, "", [&](ptrdiff_t n) {
            kernel({surface_pixels, results[0], results[1], results[2]}, n, 0, key.pixels);
            return n;
        });
        call(name, "key alone", [&](ptrdiff_t n) {
            kernel({clear, results[0], results[1], results[2]}, n, 0, key.pixels);
            return n;
        });
    }

    void operator()(const char *name, row_kernel::filling *kernel) {
        call(name, "", [&](ptrdiff_t n) {
            kernel(results[0], 3 * n, key.pixels, lumalane::store_policy::cached);
            return 3 * n;
        });
    }

    void operator()(const char *name, row_kernel::marker_to_key *kernel) {
        call(name, "", [&](ptrdiff_t n) {
            kernel({sources[0], results[0]}, n, 1, 2);
            return n;
        });
    }

    void operator()(const char *name, row_kernel::between_two_rows *kernel) {
        call(name, "", [&](ptrdiff_t n) {
            kernel({results[0], sources[2], extent}, n);
            return n;
        });
        if (std::strcmp(name, "along_edges") == 0)
            call(name, "flat", [&](ptrdiff_t n) {
                kernel({results[0], clear + 64, 64}, n);
                return n;
            });
    }

    void operator()(const char *name, row_kernel::chroma_interleaving *kernel) {
        for_adjustments(name, [&](const lumalane::adjustment *by, ptrdiff_t n) {
            kernel({sources[0], sources[1], results[0], by}, n);
            return n;
        });
    }

    void operator()(const char *name, row_kernel::yuy2_unpacking *kernel) {
        for_adjustments(name, [&](const lumalane::adjustment *by, ptrdiff_t n) {
            kernel({sources[0], results[0], results[1], by}, n);
            return n;
        });
    }

    void operator()(const char *name, row_kernel::plane_stretching *kernel) {
        for_adjustments(name, [&](const lumalane::adjustment *by, ptrdiff_t n) {
            lumalane::stretched_rows rows{sources[0], results[0], lumalane::rows_made::both};
            rows.by = by ? &by->y : nullptr;
            rows.src_below = extent, rows.dst_below = 4 * extent;
            kernel(rows, n);
            return n;
        });
    }

    void operator()(const char *name, row_kernel::doubled_to_surface *kernel) {
        call(name, "", [&](ptrdiff_t n) {
            lumalane::doubled_rows rows{};
            rows.y = sources[0], rows.u = sources[4], rows.v = sources[6], rows.dst = results[0];
            rows.made = lumalane::pair_made::all;
            rows.y_below = rows.chroma_below = extent, rows.dst_below = 3 * extent;
            kernel(rows, n);
            return 4 * n;
        });
    }

    // With the kernel for the surface through which they go: RGB32, where it is left open.
    void operator()(const char *name, row_kernel::mixing_pairs *kernel) {
        const bool odd = std::strstr(name, "odd") != nullptr, yuy2 = std::strstr(name, "yuy2");
        for_adjustments(name, [&](const lumalane::adjustment *by, ptrdiff_t n) {
            lumalane::mixed_pairs pairs{};
            pairs.upper = {sources[0], sources[2], sources[3], drawn,
                           sources[4], sources[6], sources[8], results[0]};
            pairs.below = {extent, 0, 64, 64, 8 * extent};
            pairs.lower = lumalane::lower_row::itself;
            pairs.emit = odd    ? kernels.emit_odd_yuy2
                         : yuy2 ? kernels.emit_yuy2
                                : kernels.emit_rgb32;
            pairs.bytes_per_pixel = odd ? 1 : yuy2 ? 2 : 4;
            pairs.by = by, pairs.count = 1;
            kernel(pairs, n);
            return 2 * n;
        });
    }

    void operator()(const char *name, row_kernel::blending_planes *kernel) {
        const auto blend = [&](const unsigned char *alpha, const lumalane::adjustment *by,
                               ptrdiff_t n) {
            lumalane::blended_planes rows{{results[0], results[1]},
                                          {sources[0], sources[1]},
                                          {sources[2], sources[3]},
                                          alpha,
                                          {by ? &by->u : nullptr, by ? &by->v : nullptr}};
            kernel(rows, n);
            return n;
        };
        for_adjustments(
            name, [&](const lumalane::adjustment *by, ptrdiff_t n) { return blend(drawn, by, n); });
        call(name, "clear", [&](ptrdiff_t n) { return blend(clear, nullptr, n); });
    }

    void operator()(const char *, row_kernel::finishing *) {}

private:
    template <class Call>
    void call(const char *name, const char *how, const Call &make) {
        instructions_mark();
        const ptrdiff_t once = make(least);
        instructions_mark();
        const ptrdiff_t twice = make(2 * least);
        instructions_mark();
        std::printf("%s%s%s;%td\n", name, *how ? ", " : "", how, twice - once);
    }

    template <class Call>
    void for_adjustments(const char *name, const Call &make, bool adjusts = true) {
        call(name, "", [&](ptrdiff_t n) { return make(nullptr, n); });
        if (adjusts && !std::strstr(name, "gaps"))
            call(name, "adjusted", [&](ptrdiff_t n) { return make(&adjustment, n); });
    }

    const row_kernels &kernels;
    planes sources, results;
    unsigned char drawn[extent + 64], clear[4 * extent] = {}, surface_pixels[extent];
    const lumalane::key_colour key{};
    const lumalane::plane_adjustment of_plane{80, -7, true, 103};
    const lumalane::adjustment adjustment{of_plane, of_plane, of_plane};
};

} // namespace

int main(int, char **arguments) {
    for (const lumalane::target &target : lumalane::targets())
        if (arguments[1] && std::strcmp(target.name, arguments[1]) == 0) {
            const row_kernels &rows = target.rows;
            static runner run(rows);
#define LUMALANE_ROW_KERNEL(kind, name, ...) run(#name, rows.name);
#include "rows/rows.inc"
#undef LUMALANE_ROW_KERNEL
            return 0;
        }
    std::fprintf(stderr, "instructions: no such target\n");
    return 1;
}
