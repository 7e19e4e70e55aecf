// Kernels of subpictures: alpha, the colour key, and drawing surfaces.
#include <algorithm>
#include <memory>

#include "tests/model/rgb.h"
#include "tests/rows/draw.h"

namespace row_tests {

namespace {

using lumalane::row_kernels;
using lumalane::store_policy;

// 24 bytes over and over.
std::shared_ptr<const lumalane::pattern> pattern_of(const bytes &pixel) {
    lumalane::pattern made;
    for (std::size_t i = 0; i < sizeof made.byte; ++i)
        made.byte[i] = pixel[i % 24 % pixel.size()];
    return std::make_shared<const lumalane::pattern>(made);
}

bytes drawn_bytes(random &r, std::ptrdiff_t size) {
    bytes drawn(size);
    for (unsigned char &byte : drawn)
        byte = static_cast<unsigned char>(r.next());
    return drawn;
}

} // namespace

row_call draw_keyed_to_surface(const wanted_call &wanted,
                               member<lumalane::row_kernel::keyed_to_surface> kernel) {
    const std::ptrdiff_t n = wanted.n, row_bytes = n * wanted.facts.written;
    const store_policy stores = draw_policy(wanted);
    const bytes channels = drawn_bytes(wanted.randomness, 3);
    const model::rgb colour{channels[0], channels[1], channels[2]};
    const auto pixel_of = [&]() -> bytes {
        switch (wanted.facts.written) {
        case 2: {
            const auto pixel = model::pack_rgb16(colour, 0);
            return {pixel.begin(), pixel.end()};
        }
        case 3:
            return {colour.b, colour.g, colour.r};
        default:
            return {colour.b, colour.g, colour.r, 0};
        }
    };
    const lumalane::key_colour key{colour.r, colour.g, colour.b, *pattern_of(pixel_of())};
    const auto by = draw_by<lumalane::adjustment>(wanted);

    const std::ptrdiff_t count = wanted.randomness.between(1, 3);
    const std::ptrdiff_t luma_next = draw_pitch(wanted.randomness, n);
    const std::ptrdiff_t chroma_next = draw_pitch(wanted.randomness, n / 2);
    const std::ptrdiff_t dst_next = draw_pitch(wanted.randomness, row_bytes, alignment_for(stores));

    enum { y, u, v, alpha, dst };
    row_call call;
    call.arguments = std::to_string(count) + " times, " + told(stores) + ", key " +
                     std::to_string(colour.r) + " " + std::to_string(colour.g) + " " +
                     std::to_string(colour.b) + (by ? ", " + told(*by) : "");
    call.rows = {{"y", n, count, luma_next},
                 {"u", n / 2, count, chroma_next},
                 {"v", n / 2, count, chroma_next},
                 {"alpha", n, count, luma_next, false, draw_alpha(wanted.randomness, n)},
                 {"dst", row_bytes, count, dst_next, true}};
    call.alignment = alignment_for(stores);
    call.run = [=](const row_kernels &target, const addresses &at) {
        (target.*kernel)({at[y], at[u], at[v], at[alpha], at[dst], stores, by.get(), count,
                          luma_next, chroma_next, dst_next},
                         n, key);
        return 0;
    };
    call.expect = [=](const row_kernels &reference, contents &held) {
        for (std::ptrdiff_t i = 0; i < count; ++i) {
            const bytes yy = held.read(y, i), uu = held.read(u, i), vv = held.read(v, i);
            const bytes a = held.read(alpha, i);
            bytes made(row_bytes);
            (reference.*kernel)({yy.data(), uu.data(), vv.data(), a.data(), made.data(),
                                 store_policy::cached, by.get()},
                                n, key);
            held.write(dst, made, i);
        }
        return 0;
    };
    return call;
}

row_call draw_surface_to_planes(const wanted_call &wanted,
                                member<lumalane::row_kernel::surface_to_planes> kernel) {
    const std::ptrdiff_t n = wanted.n;
    const int size = wanted.facts.read;
    random &r = wanted.randomness;
    // A key with anything in its upper byte is no pixel's of 3 bytes; of 2 bytes the lower half
    // counts.
    const unsigned key = static_cast<unsigned>(r.next()) >> (r.one_in(4) ? 0 : 8);
    bytes key_pixel(size);
    for (int i = 0; i < size; ++i)
        key_pixel[i] = static_cast<unsigned char>(key >> 8 * i);

    // Stretches of the key, of pixels with and without a fourth byte, and of all of these.
    bytes surface;
    while (static_cast<std::ptrdiff_t>(surface.size()) < n * size) {
        const int kind = r.between(0, 3), length = r.one_of({1, 8, 16, 64, r.between(1, 100)});
        for (int i = 0; i < length; ++i) {
            bytes pixel = drawn_bytes(r, size);
            if (kind <= 1 && size == 4)
                pixel[3] = 0;
            if (kind == 2 || (kind == 3 && r.one_in(2)))
                pixel = key_pixel;
            surface.insert(surface.end(), pixel.begin(), pixel.end());
        }
    }
    surface.resize(n * size);

    enum { src, y, u, v };
    const store_policy stores = in_cache(draw_policy(wanted));
    const auto key_pixels = pattern_of(key_pixel);
    const std::ptrdiff_t count = r.between(1, 3);
    const std::ptrdiff_t surface_next = draw_pitch(r, n * size);
    const std::ptrdiff_t luma_next = draw_pitch(r, n);
    const std::ptrdiff_t chroma_next = draw_pitch(r, n / 2);
    row_call call;
    call.arguments = std::to_string(count) + " times, key " + std::to_string(key);
    call.rows = {{"surface", n * size, count, surface_next, false, surface},
                 {"y", n, count, luma_next, true},
                 {"u", n / 2, count, chroma_next, true},
                 {"v", n / 2, count, chroma_next, true}};
    call.run = [=](const row_kernels &target, const addresses &at) {
        (target.*kernel)(
            {at[src], at[y], at[u], at[v], count, surface_next, luma_next, chroma_next, stores}, n,
            key, *key_pixels);
        return 0;
    };
    call.expect = [=](const row_kernels &reference, contents &held) {
        // Where the pixels are the key's nothing is stored.
        for (std::ptrdiff_t i = 0; i < count; ++i)
            for (std::ptrdiff_t x = 0; x < n; x += 8) {
                const bytes pixels = held.read(src, i);
                bytes yy = held.read(y, i), uu = held.read(u, i), vv = held.read(v, i);
                (reference.*kernel)({&pixels[size * x], &yy[x], &uu[x / 2], &vv[x / 2]}, 8, key,
                                    *key_pixels);
                held.write(y, yy, i);
                held.write(u, uu, i);
                held.write(v, vv, i);
            }
        return 0;
    };
    return call;
}

row_call draw_filling(const wanted_call &wanted, member<lumalane::row_kernel::filling> kernel) {
    const std::ptrdiff_t n = wanted.n;
    const store_policy stores = draw_policy(wanted);
    const auto pattern = pattern_of(drawn_bytes(wanted.randomness, 24));
    row_call call;
    call.arguments = told(stores);
    call.rows = {{"dst", n, 1, 0, true}};
    call.alignment = alignment_for(stores);
    call.run = [=](const row_kernels &target, const addresses &at) {
        (target.*kernel)(at[0], n, *pattern, stores);
        return 0;
    };
    call.expect = [=](const row_kernels &, contents &held) {
        bytes made(n);
        for (std::ptrdiff_t i = 0; i < n; ++i)
            made[i] = pattern->byte[i % 24];
        held.write(0, made);
        return 0;
    };
    return call;
}

row_call draw_marker_to_key(const wanted_call &wanted,
                            member<lumalane::row_kernel::marker_to_key> kernel) {
    const std::ptrdiff_t n = wanted.n;
    const store_policy stores = draw_policy(wanted);
    random &r = wanted.randomness;
    const auto marker = static_cast<unsigned char>(r.next()),
               key = static_cast<unsigned char>(r.next());
    bytes marked = drawn_bytes(r, n);
    for (unsigned char &byte : marked)
        if (r.one_in(2))
            byte = marker;

    const std::ptrdiff_t count = r.between(1, 3);
    const std::ptrdiff_t mask_next = draw_pitch(r, n);
    const std::ptrdiff_t dst_next = draw_pitch(r, n, alignment_for(stores));

    enum { mask, dst };
    row_call call;
    call.arguments = std::to_string(count) + " times, " + told(stores);
    call.rows = {{"mask", n, count, mask_next, false, marked}, {"dst", n, count, dst_next, true}};
    call.alignment = alignment_for(stores);
    call.run = [=](const row_kernels &target, const addresses &at) {
        (target.*kernel)({at[mask], at[dst], stores, nullptr, count, mask_next, dst_next}, n,
                         marker, key);
        return 0;
    };
    call.expect = [=](const row_kernels &, contents &held) {
        for (std::ptrdiff_t k = 0; k < count; ++k) {
            const bytes where = held.read(mask, k);
            bytes made = held.read(dst, k);
            for (std::ptrdiff_t i = 0; i < n; ++i)
                if (where[i] == marker)
                    made[i] = key;
            held.write(dst, made, k);
        }
        return 0;
    };
    return call;
}

} // namespace row_tests
