// Kernels of stretches: what lies between two rows, and rows of twice the width.
#include <algorithm>

#include "tests/rows/draw.h"

namespace row_tests {

namespace {

using lumalane::pair_made;
using lumalane::row_kernels;
using lumalane::rows_made;
using lumalane::store_policy;

std::string told(rows_made made) {
    constexpr const char *names[] = {"the row", "between the rows", "both"};
    return names[static_cast<int>(made)];
}

std::string told(pair_made made) {
    constexpr const char *names[] = {"the row", "between the rows", "all four"};
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

row_call draw_between_two_rows(const wanted_call &wanted,
                               member<lumalane::row_kernel::between_two_rows> kernel) {
    const std::ptrdiff_t n = wanted.n;
    const surroundings read = surroundings_of(wanted.facts.name);
    const std::ptrdiff_t size = n == 0 ? 0 : read.before + n + read.after;
    const std::ptrdiff_t pitch = draw_pitch(wanted.randomness, size);
    const std::ptrdiff_t count = wanted.randomness.between(1, 3), rows_next = wanted.number % 3;
    const std::ptrdiff_t dst_next = draw_pitch(wanted.randomness, n);

    enum { src, dst };
    row_call call;
    call.arguments = std::to_string(count) + " times, " + std::to_string(rows_next) + " rows on";
    call.rows = {{"src", size, read.rows + (count - 1) * rows_next, pitch},
                 {"dst", n, count, dst_next, true}};
    call.run = [=](const row_kernels &target, const addresses &at) {
        (target.*kernel)({at[dst], at[src] + read.rows_above * pitch + read.before, pitch, count,
                          rows_next * pitch, dst_next},
                         n);
        return 0;
    };
    call.expect = [=](const row_kernels &reference, contents &held) {
        for (std::ptrdiff_t k = 0; k < count; ++k) {
            bytes rows;
            for (int i = 0; i < read.rows; ++i) {
                const bytes row = held.read(src, k * rows_next + i);
                rows.insert(rows.end(), row.begin(), row.end());
            }
            bytes made(n);
            if (n != 0)
                (reference.*kernel)(
                    {made.data(), rows.data() + read.rows_above * size + read.before, size}, n);
            held.write(dst, made, k);
        }
        return 0;
    };
    return call;
}

row_call draw_plane_stretching(const wanted_call &wanted,
                               member<lumalane::row_kernel::plane_stretching> kernel) {
    using lumalane::stretched_rows;
    const bool doubles = wanted.facts.written == 2;
    const std::ptrdiff_t n = wanted.n, row_bytes = n * wanted.facts.written;
    const auto made = static_cast<rows_made>(wanted.number / 4 % 3);
    const bool both = made == rows_made::both, reads_below = made != rows_made::itself;
    const bool repeats_last = wanted.number / 12 % 2 == 1;
    const std::ptrdiff_t size = n == 0 ? 0 : n + (doubles && !repeats_last);

    const repetition<lumalane::plane_adjustment> drawn(wanted);
    const std::ptrdiff_t src_next = draw_pitch(wanted.randomness, size);
    const std::ptrdiff_t dst_next =
        draw_pitch(wanted.randomness, row_bytes, alignment_for(drawn.stores));

    enum { src, src_below, dst, dst_below };
    row_call call;
    call.arguments =
        told(made) + (repeats_last ? ", the last one again" : "") + ", " + drawn.told();
    call.rows = {{"src", size, drawn.count, src_next},
                 {"src below", reads_below ? size : 0, drawn.count, src_next},
                 {"dst", row_bytes, drawn.count, dst_next, true},
                 {"dst below", both ? row_bytes : 0, drawn.count, dst_next, true}};
    call.alignment = alignment_for(drawn.stores);
    call.run = [=](const row_kernels &target, const addresses &at) {
        stretched_rows rows{at[src], at[dst]};
        rows.made = made;
        rows.repeats_last = repeats_last;
        drawn.tell(rows);
        if (reads_below)
            rows.src_below = at[src_below] - at[src];
        if (both)
            rows.dst_below = at[dst_below] - at[dst];
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
    const bool doubles_width = wanted.facts.written == 4;
    const std::ptrdiff_t n = wanted.n, row_bytes = n * wanted.facts.written;
    const auto made = static_cast<pair_made>(wanted.number / 2 % 3);
    const bool all = made == pair_made::all;
    const bool repeats_last = doubles_width && wanted.number / 6 % 2 == 1;
    const bool lower_has_own = wanted.number / 12 % 2 == 1;
    const bool two_of_chroma = all || wanted.number / 24 % 2 == 1;
    const store_policy stores = draw_policy(wanted);
    random &r = wanted.randomness;
    const std::ptrdiff_t count = r.between(1, 3);
    const std::ptrdiff_t luma_bytes = n == 0 ? 0 : n + (doubles_width && !repeats_last);
    const std::ptrdiff_t chroma_bytes = n == 0 ? 0 : doubles_width ? n + 2 : n / 2;
    const std::ptrdiff_t pitch = draw_pitch(r, luma_bytes);
    const std::ptrdiff_t chroma_pitch = draw_pitch(r, chroma_bytes);
    const std::ptrdiff_t dst_pitch = draw_pitch(r, row_bytes, alignment_for(stores));
    const std::ptrdiff_t y_next = r.between(0, 2), chroma_next = r.between(0, 2); // rows
    const int luma_rows = all ? 3 : made == pair_made::between ? 2 : 1, dst_rows = all ? 4 : 1;
    const int chroma_rows = two_of_chroma ? 2 : 1;
    const std::ptrdiff_t all_chroma_rows = chroma_rows + (count - 1) * chroma_next;

    enum { y, u, v, dst };
    row_call call;
    call.arguments = std::to_string(count) + " times " + told(made) +
                     (repeats_last ? ", the last one again" : "") +
                     (two_of_chroma ? ", two rows of chroma" : "") +
                     (lower_has_own ? ", the lower row with its own" : "") + ", " + told(stores);
    call.rows = {{"y", luma_bytes, luma_rows + (count - 1) * y_next, pitch},
                 {"u", chroma_bytes, all_chroma_rows, chroma_pitch},
                 {"v", doubles_width ? 0 : chroma_bytes, all_chroma_rows, chroma_pitch},
                 {"dst", row_bytes, dst_rows * count, dst_pitch, true}};
    call.reads_again = all;
    call.alignment = alignment_for(stores);
    call.run = [=](const row_kernels &target, const addresses &at) {
        doubled_rows rows{at[y], at[u], doubles_width ? at[u] : at[v], at[dst]};
        rows.made = made;
        rows.repeats_last = repeats_last;
        rows.stores = stores;
        rows.y_below = pitch, rows.dst_below = dst_pitch;
        rows.chroma_below = two_of_chroma ? chroma_pitch : 0;
        rows.lower_has_own_chroma = lower_has_own;
        rows.count = count;
        rows.y_next = y_next * pitch, rows.chroma_next = chroma_next * chroma_pitch;
        rows.dst_next = dst_rows * dst_pitch;
        (target.*kernel)(rows, n);
        return 0;
    };
    call.expect = [=](const row_kernels &reference, contents &held) {
        for (std::ptrdiff_t i = 0; i < count; ++i) {
            bytes luma[3], uu[2], vv[2];
            for (int k = 0; k < luma_rows; ++k)
                luma[k] = held.read(y, i * y_next + k);
            for (int k = 0; k < chroma_rows; ++k)
                uu[k] = held.read(u, i * chroma_next + k),
                vv[k] = held.read(v, i * chroma_next + k);
            // One row, of `upper` or of both rows, with the first row's chroma or with both.
            const auto row = [&](int upper, bool between, bool both_of_chroma) {
                const auto appended = [](bytes a, const bytes &b) {
                    a.insert(a.end(), b.begin(), b.end());
                    return a;
                };
                const bytes ys = between ? appended(luma[upper], luma[upper + 1]) : luma[upper];
                const bytes us = both_of_chroma ? appended(uu[0], uu[1]) : uu[0];
                const bytes vs = both_of_chroma ? appended(vv[0], vv[1]) : vv[0];
                bytes result(row_bytes);
                doubled_rows one{ys.data(), us.data(), doubles_width ? us.data() : vs.data(),
                                 result.data()};
                one.made = between ? pair_made::between : pair_made::row;
                one.repeats_last = repeats_last;
                one.y_below = luma_bytes;
                one.chroma_below = both_of_chroma ? chroma_bytes : 0;
                (reference.*kernel)(one, n);
                return result;
            };
            if (!all) {
                held.write(dst, row(0, made == pair_made::between, two_of_chroma), i);
                continue;
            }
            held.write(dst, row(0, false, false), 4 * i);
            held.write(dst, row(0, true, false), 4 * i + 1);
            held.write(dst, row(1, false, !lower_has_own), 4 * i + 2);
            held.write(dst, row(1, true, true), 4 * i + 3);
        }
        return 0;
    };
    return call;
}

} // namespace row_tests
