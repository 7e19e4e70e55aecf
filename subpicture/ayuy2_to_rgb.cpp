// AYUY2 subpictures onto a drawing surface.
#include "frame/adjust.h"
#include "frame/kernels.h"
#include "subpicture/pattern.h"
#include "subpicture/rows.h"

namespace lumalane::LUMALANE_LANES {

namespace {

// The colour key: its channels, and the pixel that a surface has of it.
struct colour {
    int red, green, blue;
    unsigned pixel;
};

// Deliberately red is in the lowest byte here, where the conversions to AYUY2 have blue.
colour key_of_bytes(unsigned key) {
    const unsigned red = key & 0xff, green = key >> 8 & 0xff, blue = key >> 16 & 0xff;
    return {static_cast<int>(red), static_cast<int>(green), static_cast<int>(blue),
            blue | green << 8 | red << 16};
}

colour key_of_word(unsigned key) {
    return {static_cast<int>(key >> 8 & 0xf8), static_cast<int>(key >> 3 & 0xfc),
            static_cast<int>(key << 3 & 0xf8), key};
}

template <int n>
LUMALANE_INLINE bytes<n> in_split_order(bytes<n> pixels) {
    return narrow_saturate(even(pixels), odd(pixels));
}

// The key where alpha is 0. Deliberately black where it is 128 or more.
template <int n>
LUMALANE_INLINE rgb_pixels<n / 2> keyed(const rgb_pixels<n / 2> &pixels, bytes<n> alpha,
                                        const colour &key) {
    const bytes<n> shown = positive(alpha), hidden = equal(alpha, fill_bytes<n>(0));
    const auto channel = [&](bytes<n> of_pixels, int of_key) {
        return (of_pixels & shown) | (fill_bytes<n>(of_key) & hidden);
    };
    return {channel(pixels.red, key.red), channel(pixels.green, key.green),
            channel(pixels.blue, key.blue)};
}

// `colours` makes RGB of the planes, which are one run each, whatever their pitch: a row of them is
// as long as what is converted of it.
template <class Colours, class Sink>
LUMALANE_INLINE void load_subpicture(const tagMIX_INFO &mix, const Colours &colours,
                                     const colour &key, const Sink &sink) {
    constexpr int group = 16, size = Sink::bytes_per_pixel, parts = Sink::parts;
    const int width = mix.video_pitch; // deliberately
    const unsigned pixels = in_whole_groups(width, group);
    const rows surface = surface_rows(mix.dst, size, pixels, width, mix.dst_pitch);
    const rows y{mix.sub_y, pixels, 0}, alpha{mix.alpha_plane, pixels, 0};
    const rows u{mix.sub_u, pixels / 2, 0}, v{mix.sub_v, pixels / 2, 0};
    const pattern nothing = pattern::of_pixels<size>(key.pixel);
    walk_rows<group>(
        mix.height, pixels, surface, {y, u, v, alpha},
        [&]<int n, class Put>(unsigned row, ptrdiff_t x) {
            unsigned char *const to = surface.at(row) + size * x;
            const bytes<n> weights = load<n>(alpha.at(row) + x);
            if (all_zero(weights))
                return put_parts<Put>(to, nothing.template first<size, n>());
            const auto put = [&](const rgb_pixels<n / 2> &shown) LUMALANE_INLINE_LAMBDA {
                sink.template row<Put>(to, shown, chroma_terms<n / 2>{});
            };
            const auto terms =
                colours.template load_chroma<parts, n>(u.at(row) + x / 2, v.at(row) + x / 2);
            const auto shown = colours.template load_luma<parts, n>(y.at(row) + x, terms);
            if (all(positive(weights)))
                return put(shown);
            put(keyed(shown, in_split_order(dealt<parts>(weights)), key));
        });
}

// Deliberately every layout that there is means 5-6-5.
template <class Colours>
LUMALANE_INLINE void load_subpicture_rgb16(const tagMIX_INFO &mix, const Colours &colours) {
    if (mix.adjust_info->rgb16_layout <= 3)
        load_subpicture(mix, colours, key_of_word(mix.color_key), rgb16<5, 6, 5>{});
}

} // namespace

void load_subpicture_yuy2_rgb32(LUMALANE_PARAMETERS_mix) {
    load_subpicture(*mix, planar{} | to_rgb{}, key_of_bytes(mix->color_key), rgb32{});
}

void load_subpicture_yuy2_rgb32_ajust(LUMALANE_PARAMETERS_mix) {
    with_adjustment([&](auto adjusted) {
        load_subpicture(*mix, planar{} | adjusted | to_rgb{}, key_of_bytes(mix->color_key),
                        rgb32{});
    });
}

void load_subpicture_yuy2_rgb24(LUMALANE_PARAMETERS_mix) {
    load_subpicture(*mix, planar{} | to_rgb{}, key_of_bytes(mix->color_key), rgb24{});
}

void load_subpicture_yuy2_rgb24_ajust(LUMALANE_PARAMETERS_mix) {
    with_adjustment([&](auto adjusted) {
        load_subpicture(*mix, planar{} | adjusted | to_rgb{}, key_of_bytes(mix->color_key),
                        rgb24{});
    });
}

void load_subpicture_yuy2_rgb16(LUMALANE_PARAMETERS_mix) {
    load_subpicture_rgb16(*mix, planar{} | to_rgb{});
}

void load_subpicture_yuy2_rgb16_ajust(LUMALANE_PARAMETERS_mix) {
    with_adjustment(
        [&](auto adjusted) { load_subpicture_rgb16(*mix, planar{} | adjusted | to_rgb{}); });
}

} // namespace lumalane::LUMALANE_LANES
