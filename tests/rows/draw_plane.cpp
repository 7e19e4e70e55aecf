// Kernels that make a row of one plane of another, and those that touch no row.
#include <algorithm>
#include <cstdint>

#include "tests/rows/draw.h"

namespace row_tests {

namespace {

using lumalane::plane_adjustment;
using lumalane::row_kernels;
using lumalane::store_policy;

// For two calls of three.
std::shared_ptr<const lumalane::adjustment> draw_samples_adjustment(const wanted_call &wanted) {
    if (wanted.number / 3 % 3 == 0)
        return nullptr;
    return std::make_shared<const lumalane::adjustment>(draw_adjustment(wanted.randomness));
}

// The formula of plane_adjustment.
unsigned char adjusted(int sample, const plane_adjustment *by) {
    if (!by)
        return static_cast<unsigned char>(sample);
    const int product = static_cast<std::int16_t>(static_cast<unsigned>(sample * by->gain));
    const int rounded = std::min(product + 32, 32767);
    const int amplified = static_cast<std::uint16_t>(rounded) >> 6;
    return static_cast<unsigned char>(std::clamp(amplified + by->offset, 0, 255));
}

} // namespace

row_call draw_plane_to_surface(const wanted_call &wanted,
                               member<lumalane::row_kernel::plane_to_surface> kernel) {
    using lumalane::plane_rows;
    const std::ptrdiff_t n = wanted.n, size = n * wanted.facts.read;
    const std::ptrdiff_t dst_size = n * wanted.facts.written;
    const repetition<plane_adjustment> drawn(wanted);
    // These store the lines that a row fills in part by themselves, wherever it begins.
    const bool by_lines = drawn.non_temporal() && (wanted.facts.name == "emit_plane" ||
                                                   wanted.facts.name == "emit_half_plane");
    const int alignment =
        by_lines ? lumalane::detail::alignment_of_planes : alignment_for(drawn.stores);
    const std::ptrdiff_t src_next = draw_pitch(wanted.randomness, size);
    const std::ptrdiff_t dst_next = draw_pitch(wanted.randomness, dst_size, alignment);

    enum { src, dst };
    row_call call;
    call.arguments = drawn.told();
    call.rows = {{"src", size, drawn.count, src_next},
                 {"dst", dst_size, drawn.count, dst_next, true}};
    call.alignment = alignment;
    call.reads_again = by_lines;
    call.run = [=](const row_kernels &target, const addresses &at) {
        plane_rows rows{at[src], at[dst]};
        drawn.tell(rows);
        rows.src_next = src_next, rows.dst_next = dst_next;
        (target.*kernel)(rows, n);
        return 0;
    };
    call.expect = [=](const row_kernels &reference, contents &held) {
        for (std::ptrdiff_t i = 0; i < drawn.count; ++i) {
            const bytes samples = held.read(src, i);
            bytes made(dst_size);
            plane_rows row{samples.data(), made.data()};
            row.by = drawn.by.get();
            (reference.*kernel)(row, n);
            held.write(dst, made, i);
        }
        return 0;
    };
    return call;
}

row_call draw_chroma_interleaving(const wanted_call &wanted,
                                  member<lumalane::row_kernel::chroma_interleaving> kernel) {
    using lumalane::interleaved_chroma;
    const std::ptrdiff_t n = wanted.n, count = wanted.randomness.between(1, 3);
    const std::ptrdiff_t src_next = draw_pitch(wanted.randomness, n / 2);
    const std::ptrdiff_t uv_next = draw_pitch(wanted.randomness, n);
    const auto by = draw_samples_adjustment(wanted);

    enum { u, v, uv };
    row_call call;
    call.arguments = std::to_string(count) + " times";
    if (by)
        call.arguments += ", " + told(*by);
    call.rows = {{"u", n / 2, count, src_next},
                 {"v", n / 2, count, src_next},
                 {"uv", n, count, uv_next, true}};
    call.run = [=](const row_kernels &target, const addresses &at) {
        (target.*kernel)({at[u], at[v], at[uv], by.get(), count, src_next, uv_next}, n);
        return 0;
    };
    call.expect = [=](const row_kernels &, contents &held) {
        for (std::ptrdiff_t i = 0; i < count; ++i) {
            const bytes uu = held.read(u, i), vv = held.read(v, i);
            bytes made(n);
            for (std::ptrdiff_t x = 0; x < n; ++x)
                made[x] = x % 2 == 0 ? adjusted(uu[x / 2], by ? &by->u : nullptr)
                                     : adjusted(vv[x / 2], by ? &by->v : nullptr);
            held.write(uv, made, i);
        }
        return 0;
    };
    return call;
}

row_call draw_yuy2_unpacking(const wanted_call &wanted,
                             member<lumalane::row_kernel::yuy2_unpacking> kernel) {
    using lumalane::unpacked_yuy2;
    const std::ptrdiff_t n = wanted.n, count = wanted.randomness.between(1, 3);
    const bool chroma = wanted.number % 3 != 0;
    const std::ptrdiff_t src_next = draw_pitch(wanted.randomness, 2 * n);
    const std::ptrdiff_t y_next = draw_pitch(wanted.randomness, n);
    const std::ptrdiff_t uv_next = draw_pitch(wanted.randomness, n);
    const auto by = draw_samples_adjustment(wanted);

    enum { src, y, uv };
    row_call call;
    call.arguments = std::to_string(count) + (chroma ? " times" : " times, luma alone");
    if (by)
        call.arguments += ", " + told(*by);
    call.rows = {{"src", 2 * n, count, src_next},
                 {"y", n, count, y_next, true},
                 {"uv", chroma ? n : 0, count, uv_next, true}};
    call.run = [=](const row_kernels &target, const addresses &at) {
        (target.*kernel)(
            {at[src], at[y], chroma ? at[uv] : nullptr, by.get(), count, src_next, y_next, uv_next},
            n);
        return 0;
    };
    call.expect = [=](const row_kernels &, contents &held) {
        for (std::ptrdiff_t i = 0; i < count; ++i) {
            const bytes packed = held.read(src, i);
            bytes luma(n), pairs(n);
            for (std::ptrdiff_t x = 0; x < n; ++x) {
                luma[x] = adjusted(packed[2 * x], by ? &by->y : nullptr);
                pairs[x] = adjusted(packed[2 * x + 1], by ? x % 2 == 0 ? &by->u : &by->v : nullptr);
            }
            if (chroma)
                held.write(uv, pairs, i);
            held.write(y, luma, i);
        }
        return 0;
    };
    return call;
}

row_call draw_finishing(const wanted_call &, member<lumalane::row_kernel::finishing> kernel) {
    row_call call;
    call.run = [=](const row_kernels &target, const addresses &) {
        (target.*kernel)();
        return 0;
    };
    call.expect = [](const row_kernels &, contents &) { return 0; };
    return call;
}

} // namespace row_tests
