// Kernels that make the pixels of a surface, of rows or of pairs of rows that share chroma.
#include "tests/rows/draw.h"

namespace row_tests {

namespace {

using lumalane::adjustment;
using lumalane::lower_row;
using lumalane::packed_rows;
using lumalane::planar_rows;
using lumalane::row_kernels;
using lumalane::store_policy;

std::string told(lower_row lower) {
    constexpr const char *names[] = {"no lower row", "lower row itself", "lower row average",
                                     "lower row by four taps"};
    return names[static_cast<int>(lower)];
}

// Pairs of YUY2 whose lower row is made of the four rows around it.
row_call draw_filtered_pairs(const wanted_call &wanted,
                             member<lumalane::row_kernel::planar_to_surface> kernel) {
    const std::ptrdiff_t n = wanted.n, row_bytes = 2 * n;
    const repetition<adjustment> drawn(wanted);
    const std::ptrdiff_t pitch = draw_pitch(wanted.randomness, n);
    const std::ptrdiff_t chroma_next = draw_pitch(wanted.randomness, n / 2);
    const std::ptrdiff_t dst_next =
        draw_pitch(wanted.randomness, row_bytes, alignment_for(drawn.stores));

    enum { y, u, v, dst, dst_below };
    row_call call;
    call.arguments = told(lower_row::four_taps) + ", " + drawn.told();
    call.rows = {{"y", n, drawn.count + 3, pitch},
                 {"u", n / 2, drawn.count, chroma_next},
                 {"v", n / 2, drawn.count, chroma_next},
                 {"dst", row_bytes, drawn.count, dst_next, true},
                 {"lower dst", row_bytes, drawn.count, dst_next, true}};
    call.alignment = alignment_for(drawn.stores);
    call.reads_again = true;
    call.run = [=](const row_kernels &target, const addresses &at) {
        planar_rows rows{at[y] + pitch, at[u], at[v], at[dst]};
        rows.lower = lower_row::four_taps;
        rows.y_below = pitch, rows.dst_below = at[dst_below] - at[dst];
        drawn.tell(rows);
        rows.y_next = pitch, rows.chroma_next = chroma_next, rows.dst_next = dst_next;
        (target.*kernel)(rows, n);
        return 0;
    };
    call.expect = [=](const row_kernels &reference, contents &held) {
        for (std::ptrdiff_t i = 0; i < drawn.count; ++i) {
            const bytes uu = held.read(u, i), vv = held.read(v, i);
            const auto write = [&](std::size_t to, const bytes &luma) {
                bytes made(row_bytes);
                planar_rows row{luma.data(), uu.data(), vv.data(), made.data()};
                row.by = drawn.by.get();
                (reference.*kernel)(row, n);
                held.write(to, made, i);
            };
            const bytes upper = held.read(y, i + 1);
            write(dst, upper);
            bytes four, between(n);
            for (int k = 0; k < 4; ++k) {
                const bytes row = k == 1 ? upper : held.read(y, i + k);
                four.insert(four.end(), row.begin(), row.end());
            }
            if (n != 0)
                reference.four_taps({between.data(), four.data() + n, n}, n);
            write(dst_below, between);
        }
        return 0;
    };
    return call;
}

} // namespace

row_call draw_planar_to_surface(const wanted_call &wanted,
                                member<lumalane::row_kernel::planar_to_surface> kernel) {
    if (wanted.facts.name == "emit_yuy2" && wanted.number / 12 % 4 == 0)
        return draw_filtered_pairs(wanted, kernel);
    const std::ptrdiff_t n = wanted.n, row_bytes = n * wanted.facts.written;
    const bool gaps = wanted.facts.name == "emit_yuy2_with_gaps";
    const bool mono = wanted.facts.name == "emit_mono_yuy2";
    repetition<adjustment> drawn(wanted);
    if (gaps)
        drawn.by = nullptr;
    const lower_row lower =
        gaps ? lower_row::itself : static_cast<lower_row>(wanted.number / 4 % 3);
    const bool pair = lower != lower_row::none;
    const bool whole_pixels = wanted.facts.written > 1;
    const bool between = whole_pixels && !gaps && !mono && wanted.number / 12 % 2 == 1;
    const std::ptrdiff_t chroma_rows = between ? 2 : 1;
    const std::ptrdiff_t y_next = draw_pitch(wanted.randomness, n);
    const std::ptrdiff_t below_next = draw_pitch(wanted.randomness, n);
    const std::ptrdiff_t chroma_next = draw_pitch(wanted.randomness, n / 2);
    const std::ptrdiff_t dst_next =
        draw_pitch(wanted.randomness, row_bytes, alignment_for(drawn.stores));

    enum { y, y_below, u, v, dst, dst_below };
    row_call call;
    call.arguments = told(lower) + (between ? ", chroma averaged, " : ", ") + drawn.told();
    call.rows = {{"y", n, drawn.count, y_next},
                 {"lower y", pair ? n : 0, drawn.count, below_next},
                 {"u", mono ? 0 : n / 2, chroma_rows * drawn.count, chroma_next},
                 {"v", mono ? 0 : n / 2, chroma_rows * drawn.count, chroma_next},
                 {"dst", row_bytes, drawn.count, dst_next, true},
                 {"lower dst", pair ? row_bytes : 0, drawn.count, dst_next, true}};
    call.alignment = alignment_for(drawn.stores);
    // Chroma that is averaged may be so for several rows before the first one is stored.
    call.reads_again = (drawn.non_temporal() && pair && !gaps) || (between && drawn.count > 1);
    call.run = [=](const row_kernels &target, const addresses &at) {
        planar_rows rows{at[y], at[u], at[v], at[dst]};
        rows.lower = lower;
        if (pair)
            rows.y_below = at[y_below] - at[y], rows.dst_below = at[dst_below] - at[dst];
        rows.y_below_next = below_next - y_next;
        drawn.tell(rows);
        rows.chroma_below = between ? chroma_next : 0;
        rows.y_next = y_next, rows.dst_next = dst_next;
        rows.chroma_next = chroma_rows * chroma_next;
        (target.*kernel)(rows, n);
        return 0;
    };
    call.expect = [=](const row_kernels &reference, contents &held) {
        for (std::ptrdiff_t i = 0; i < drawn.count; ++i) {
            const auto chroma = [&](std::size_t plane) {
                const bytes row = held.read(plane, chroma_rows * i);
                return between ? averaged(row, held.read(plane, chroma_rows * i + 1)) : row;
            };
            const bytes upper = held.read(y, i), uu = chroma(u), vv = chroma(v);
            const auto made_of = [&](const bytes &luma) {
                bytes made(row_bytes);
                planar_rows row{luma.data(), mono ? luma.data() : uu.data(),
                                mono ? luma.data() : vv.data(), made.data()};
                row.by = drawn.by.get();
                (reference.*(gaps ? &row_kernels::emit_yuy2 : kernel))(row, n);
                return made;
            };
            held.write(dst, made_of(upper), i);
            if (!pair)
                continue;
            const bytes below = held.read(y_below, i);
            bytes made = made_of(lower == lower_row::average ? averaged(upper, below) : below);
            const bytes before = held.read(dst_below, i);
            for (std::ptrdiff_t at = 0; gaps && at < row_bytes; ++at)
                if (at % 32 < 8)
                    made[at] = before[at];
            held.write(dst_below, made, i);
        }
        return 0;
    };
    return call;
}

row_call draw_packed_to_surface(const wanted_call &wanted,
                                member<lumalane::row_kernel::packed_to_surface> kernel) {
    const std::ptrdiff_t n = wanted.n, row_bytes = n * wanted.facts.written;
    const repetition<adjustment> drawn(wanted);
    enum { one_row, a_pair, chroma_of_another };
    const unsigned form = wanted.number / 4 % 3;
    const bool pair = form == a_pair, own_chroma = form != chroma_of_another;
    const std::ptrdiff_t src_next = draw_pitch(wanted.randomness, 2 * n);
    const std::ptrdiff_t dst_next =
        draw_pitch(wanted.randomness, row_bytes, alignment_for(drawn.stores));

    enum { src, chroma, src_below, dst, dst_below };
    constexpr const char *names[] = {"one row", "a pair", "one row with the chroma of another"};
    row_call call;
    call.arguments = names[form] + (", " + drawn.told());
    call.rows = {{"src", 2 * n, drawn.count, src_next},
                 {"chroma", own_chroma ? 0 : 2 * n, drawn.count, src_next},
                 {"lower src", pair ? 2 * n : 0, drawn.count, src_next},
                 {"dst", row_bytes, drawn.count, dst_next, true},
                 {"lower dst", pair ? row_bytes : 0, drawn.count, dst_next, true}};
    call.alignment = alignment_for(drawn.stores);
    call.reads_again = drawn.non_temporal() && pair;
    call.run = [=](const row_kernels &target, const addresses &at) {
        packed_rows rows{at[src], own_chroma ? at[src] : at[chroma], at[dst]};
        if (pair) {
            rows.lower = lower_row::itself;
            rows.src_below = at[src_below] - at[src], rows.dst_below = at[dst_below] - at[dst];
        }
        drawn.tell(rows);
        rows.src_next = src_next, rows.dst_next = dst_next;
        (target.*kernel)(rows, n);
        return 0;
    };
    call.expect = [=](const row_kernels &reference, contents &held) {
        for (std::ptrdiff_t i = 0; i < drawn.count; ++i) {
            const bytes upper = held.read(src, i);
            const bytes shared = own_chroma ? upper : held.read(chroma, i);
            const auto made_of = [&](const bytes &samples) {
                bytes made(row_bytes);
                packed_rows row{samples.data(), shared.data(), made.data()};
                row.by = drawn.by.get();
                (reference.*kernel)(row, n);
                return made;
            };
            held.write(dst, made_of(upper), i);
            if (pair)
                held.write(dst_below, made_of(held.read(src_below, i)), i);
        }
        return 0;
    };
    return call;
}

} // namespace row_tests
