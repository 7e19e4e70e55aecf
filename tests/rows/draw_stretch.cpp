// Kernels of stretches: what lies between two rows, and rows of twice the width.
#include <algorithm>

#include "tests/rows/draw.h"

namespace row_tests {

namespace {

using lumalane::row_kernels;
using lumalane::rows_made;
using lumalane::store_policy;

std::string told(rows_made made) {
    constexpr const char *names[] = {"the row", "between the rows", "both"};
    return names[static_cast<int>(made)];
}

// Of the rows that a kernel reads: what lies before and after the n of each.
struct surroundings {
    int rows_above, rows, before, after;
};

surroundings surroundings_of(std::string_view name) {
    if (name == "four_taps")
        return {1, 4, 0, 0};
    if (name == "along_edges")
        return {0, 2, 2, 6};
    return {0, 2, 0, 0};
}

} // namespace

row_call draw_between_rows(const wanted_call &wanted,
                           member<lumalane::row_kernel::between_rows> kernel) {
    const std::ptrdiff_t n = wanted.n;
    const surroundings read = surroundings_of(wanted.facts.name);
    const std::ptrdiff_t size = n == 0 ? 0 : read.before + n + read.after;
    const std::ptrdiff_t pitch = draw_pitch(wanted.randomness, size, store_policy::cached);

    enum { src, dst };
    row_call call;
    call.rows = {{"src", size, read.rows, pitch}, {"dst", n, 1, 0, true}};
    call.run = [=](const row_kernels &target, const addresses &at) {
        (target.*kernel)(at[dst], at[src] + read.rows_above * pitch + read.before, pitch, n);
        return 0;
    };
    call.expect = [=](const row_kernels &reference, contents &held) {
        bytes rows;
        for (int i = 0; i < read.rows; ++i) {
            const bytes row = held.read(src, i);
            rows.insert(rows.end(), row.begin(), row.end());
        }
        bytes made(n);
        if (n != 0)
            (reference.*kernel)(made.data(), rows.data() + read.rows_above * size + read.before,
                                size, n);
        held.write(dst, made);
        return 0;
    };
    return call;
}

row_call draw_plane_stretching(const wanted_call &wanted,
                               member<lumalane::row_kernel::plane_stretching> kernel) {
    using lumalane::stretched_rows;
    const bool doubles = wanted.facts.destination_bytes == 2;
    const std::ptrdiff_t n = wanted.n, row_bytes = n * wanted.facts.destination_bytes;
    const auto made = static_cast<rows_made>(wanted.number / 4 % 3);
    const bool both = made == rows_made::both, reads_below = made != rows_made::itself;
    const bool repeats_last = wanted.number / 12 % 2 == 1;
    const std::ptrdiff_t size = n == 0 ? 0 : n + (doubles && !repeats_last);

    repetition<lumalane::plane_adjustment> drawn;
    drawn.count = wanted.randomness.between(1, 3);
    drawn.stores = policy(wanted.number);
    if (wanted.number / 2 % 2 == 1)
        drawn.by = std::make_shared<const lumalane::plane_adjustment>(
            draw_plane_adjustment(wanted.randomness));
    const std::ptrdiff_t src_next = draw_pitch(wanted.randomness, size, store_policy::cached);
    const std::ptrdiff_t dst_next = draw_pitch(wanted.randomness, row_bytes, drawn.stores);

    enum { src, src_below, dst, dst_below };
    row_call call;
    call.arguments =
        told(made) + (repeats_last ? ", the last one again" : "") + ", " + drawn.told();
    call.rows = {{"src", size, drawn.count, src_next},
                 {"src below", reads_below ? size : 0, drawn.count, src_next},
                 {"dst", row_bytes, drawn.count, dst_next, true},
                 {"dst below", both ? row_bytes : 0, drawn.count, dst_next, true}};
    call.non_temporal = drawn.stores == store_policy::non_temporal;
    call.reads_again = call.non_temporal && both;
    call.run = [=](const row_kernels &target, const addresses &at) {
        stretched_rows rows{at[src], at[dst]};
        rows.made = made;
        rows.repeats_last = repeats_last;
        rows.stores = drawn.stores;
        rows.by = drawn.by.get();
        if (reads_below)
            rows.src_below = at[src_below] - at[src];
        if (both)
            rows.dst_below = at[dst_below] - at[dst];
        rows.count = drawn.count;
        rows.src_next = src_next, rows.dst_next = dst_next;
        (target.*kernel)(rows, n);
        return 0;
    };
    call.expect = [=](const row_kernels &reference, contents &held) {
        for (std::ptrdiff_t i = 0; i < drawn.count; ++i) {
            bytes samples = held.read(src, i);
            const bytes below = held.read(src_below, i);
            samples.insert(samples.end(), below.begin(), below.end());
            const auto row = [&](rows_made one) {
                bytes result(row_bytes);
                stretched_rows rows{samples.data(), result.data()};
                rows.made = one;
                rows.repeats_last = repeats_last;
                rows.by = drawn.by.get();
                rows.src_below = size;
                (reference.*kernel)(rows, n);
                return result;
            };
            held.write(dst, row(both ? rows_made::itself : made), i);
            if (both)
                held.write(dst_below, row(rows_made::between), i);
        }
        return 0;
    };
    return call;
}

row_call draw_doubled_to_surface(const wanted_call &wanted,
                                 member<lumalane::row_kernel::doubled_to_surface> kernel) {
    using lumalane::doubled_rows;
    const std::ptrdiff_t n = wanted.n, row_bytes = n * wanted.facts.destination_bytes;
    const auto made = static_cast<rows_made>(wanted.number / 2 % 3);
    const bool both = made == rows_made::both, reads_below = made != rows_made::itself;
    const bool repeats_last = wanted.number / 6 % 2 == 1, two_of_chroma = wanted.number / 12 % 2;
    const std::ptrdiff_t more = n != 0 && !repeats_last;
    const store_policy stores = policy(wanted.number);
    const std::ptrdiff_t chroma_below = draw_pitch(
        wanted.randomness, std::max<std::ptrdiff_t>(n / 2 + more, 1), store_policy::cached);

    enum { y, y_below, u, v, dst, dst_below };
    row_call call;
    call.arguments = told(made) + (repeats_last ? ", the last one again" : "") +
                     (two_of_chroma ? ", two rows of chroma" : "") + ", " + told(stores);
    call.rows = {{"y", n + more},
                 {"y below", reads_below ? n + more : 0},
                 {"u", n / 2 + more, two_of_chroma ? 2 : 1, chroma_below},
                 {"v", n / 2 + more, two_of_chroma ? 2 : 1, chroma_below},
                 {"dst", row_bytes, 1, 0, true},
                 {"dst below", both ? row_bytes : 0, 1, 0, true}};
    call.non_temporal = stores == store_policy::non_temporal;
    call.reads_again = call.non_temporal && both;
    call.run = [=](const row_kernels &target, const addresses &at) {
        doubled_rows rows{at[y], at[u], at[v], at[dst]};
        rows.made = made;
        rows.repeats_last = repeats_last;
        rows.stores = stores;
        if (reads_below)
            rows.y_below = at[y_below] - at[y];
        if (both)
            rows.dst_below = at[dst_below] - at[dst];
        if (two_of_chroma)
            rows.chroma_below = chroma_below;
        (target.*kernel)(rows, n);
        return 0;
    };
    call.expect = [=](const row_kernels &reference, contents &held) {
        const auto appended = [](bytes row, const bytes &below) {
            row.insert(row.end(), below.begin(), below.end());
            return row;
        };
        const auto chroma = [&](std::size_t plane) {
            return two_of_chroma ? appended(held.read(plane), held.read(plane, 1))
                                 : held.read(plane);
        };
        const bytes luma = appended(held.read(y), held.read(y_below));
        const bytes uu = chroma(u), vv = chroma(v);
        const auto row = [&](rows_made one) {
            bytes result(row_bytes);
            doubled_rows rows{luma.data(), uu.data(), vv.data(), result.data()};
            rows.made = one;
            rows.repeats_last = repeats_last;
            rows.y_below = n + more;
            rows.chroma_below = two_of_chroma ? n / 2 + more : 0;
            (reference.*kernel)(rows, n);
            return result;
        };
        held.write(dst, row(both ? rows_made::itself : made));
        if (both)
            held.write(dst_below, row(rows_made::between));
        return 0;
    };
    return call;
}

} // namespace row_tests
