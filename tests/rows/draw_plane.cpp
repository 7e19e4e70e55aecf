// Kernels that make a row of one plane of another, and those that touch no row.
#include "tests/rows/draw.h"

namespace row_tests {

namespace {

using lumalane::plane_adjustment;
using lumalane::row_kernels;
using lumalane::store_policy;

} // namespace

row_call draw_plane_to_surface(const wanted_call &wanted,
                               member<lumalane::row_kernel::plane_to_surface> kernel) {
    using lumalane::plane_rows;
    const std::ptrdiff_t n = wanted.n, size = n * wanted.facts.source_bytes;
    const std::ptrdiff_t dst_size = n * wanted.facts.destination_bytes;
    repetition<plane_adjustment> drawn;
    drawn.count = wanted.randomness.between(1, 3);
    drawn.stores = policy(wanted.number);
    if (wanted.number / 2 % 2 == 1)
        drawn.by =
            std::make_shared<const plane_adjustment>(draw_plane_adjustment(wanted.randomness));
    const std::ptrdiff_t src_next = draw_pitch(wanted.randomness, size, store_policy::cached);
    const std::ptrdiff_t dst_next = draw_pitch(wanted.randomness, dst_size, drawn.stores);

    enum { src, dst };
    row_call call;
    call.arguments = drawn.told();
    call.rows = {{"src", size, drawn.count, src_next},
                 {"dst", dst_size, drawn.count, dst_next, true}};
    call.non_temporal = drawn.stores == store_policy::non_temporal;
    call.run = [=](const row_kernels &target, const addresses &at) {
        plane_rows rows{at[src], at[dst]};
        rows.stores = drawn.stores;
        rows.by = drawn.by.get();
        rows.count = drawn.count;
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

row_call draw_deinterleaving(const wanted_call &wanted,
                             member<lumalane::row_kernel::deinterleaving> kernel) {
    const std::ptrdiff_t n = wanted.n;
    // Both are adjusted, the even ones alone, or none.
    std::shared_ptr<const plane_adjustment> even_by, odd_by;
    if (wanted.number % 3 != 0)
        even_by =
            std::make_shared<const plane_adjustment>(draw_plane_adjustment(wanted.randomness));
    if (wanted.number % 3 == 2)
        odd_by = std::make_shared<const plane_adjustment>(draw_plane_adjustment(wanted.randomness));

    enum { src, even, odd };
    row_call call;
    call.arguments =
        (even_by ? "even " + told(*even_by) : "") + (odd_by ? ", odd " + told(*odd_by) : "");
    call.rows = {{"src", 2 * n}, {"even", n, 1, 0, true}, {"odd", n, 1, 0, true}};
    call.run = [=](const row_kernels &target, const addresses &at) {
        (target.*kernel)(at[even], at[odd], at[src], n, even_by.get(), odd_by.get());
        return 0;
    };
    call.expect = [=](const row_kernels &reference, contents &held) {
        const bytes samples = held.read(src);
        bytes first(n), second(n);
        (reference.*kernel)(first.data(), second.data(), samples.data(), n, even_by.get(),
                            odd_by.get());
        held.write(even, first);
        held.write(odd, second);
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
