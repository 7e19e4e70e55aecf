#include "mix/row_mixer.h"

#include "picture/strip.h"

namespace lumalane {

namespace {

constexpr int step = 16;

// What is blended at once. (512 pixels take 1.06 times as long in rows of 1920.)
constexpr ptrdiff_t strip = 1024;

// Pairs of rows that show nothing of the subpicture go through a row kernel together: in rows of 320
// pixels a call for each takes 1.1 times as long. But alpha must not be read far ahead of the rest.
constexpr ptrdiff_t most_clear_pixels = 4096;

// Strips of their chroma are whole lines of the cache.
constexpr ptrdiff_t whole_lines = 128;

ptrdiff_t most_clear_pairs(ptrdiff_t pixels) {
    const ptrdiff_t strip_of_row = (pixels + whole_lines - 1) / whole_lines * whole_lines;
    return strip_of_row < most_clear_pixels ? most_clear_pixels / strip_of_row : 1;
}

} // namespace

void consume(tagMIX_INFO &mix, const mix_place &end, int height) {
    mix.video_u = const_cast<unsigned char *>(end.u);
    mix.video_v = const_cast<unsigned char *>(end.v);
    mix.alpha_plane = const_cast<unsigned char *>(end.alpha);
    mix.sub_y = const_cast<unsigned char *>(end.sub_y);
    mix.sub_u = const_cast<unsigned char *>(end.sub_u);
    mix.sub_v = const_cast<unsigned char *>(end.sub_v);
    mix.height = height;
}

row_mixer::row_mixer(const machine &machine, const mixed_to_surface &surface_,
                     row_kernel::blending_chroma *blend_chroma_, const adjustment *by_,
                     store_policy stores_)
    : rows(machine.rows), surface(surface_), blend_chroma(blend_chroma_), by(by_),
      luma_by(by ? &by->y : nullptr), stores(stores_) {}

// How many pixels the pair begins with that show the video alone.
ptrdiff_t row_mixer::count_clear(const mixed_pair &pair, ptrdiff_t pixels) const {
    return rows.count_clear(pair.upper.alpha, pair.below.sub, pixels);
}

void row_mixer::mix(mixed_pair pair, const mix_distance &next, ptrdiff_t pairs,
                    ptrdiff_t pixels) const {
    const ptrdiff_t most = most_clear_pairs(pixels);
    while (pairs > 0) {
        const mixed_pair first = pair;
        ptrdiff_t clear_pairs = 0, clear = pixels;
        for (; clear_pairs < most && clear_pairs < pairs; ++clear_pairs) {
            clear = count_clear(pair, pixels);
            if (clear < pixels)
                break;
            pair.upper += next;
        }
        if (clear_pairs > 0)
            take_video(first, next, clear_pairs, 0, pixels);
        pairs -= clear_pairs;
        if (clear < pixels) {
            mix_row(pair, clear, pixels);
            pair.upper += next;
            --pairs;
        }
    }
}

void row_mixer::mix(mixed_pair a, mixed_pair b, const mix_distance &next, ptrdiff_t pairs,
                    ptrdiff_t pixels) const {
    const ptrdiff_t most = most_clear_pairs(pixels);
    while (pairs > 0) {
        const mixed_pair first_a = a, first_b = b;
        ptrdiff_t clear_pairs = 0, clear_a = pixels, clear_b = pixels;
        for (; clear_pairs < most && clear_pairs < pairs; ++clear_pairs) {
            clear_a = count_clear(a, pixels), clear_b = count_clear(b, pixels);
            if (clear_a < pixels || clear_b < pixels)
                break;
            a.upper += next, b.upper += next;
        }
        if (clear_pairs > 0) {
            take_video(first_a, next, clear_pairs, 0, pixels);
            take_video(first_b, next, clear_pairs, 0, pixels);
        }
        pairs -= clear_pairs;
        if (clear_a < pixels || clear_b < pixels) {
            mix_row(a, clear_a, pixels);
            mix_row(b, clear_b, pixels);
            a.upper += next, b.upper += next;
            --pairs;
        }
    }
}

// One pair, which begins with so many clear pixels.
void row_mixer::mix_row(const mixed_pair &pair, ptrdiff_t clear, ptrdiff_t pixels) const {
    for (ptrdiff_t x = 0;;) {
        if (clear > 0)
            take_video(pair, {}, 1, x, clear);
        x += clear;
        if (x == pixels)
            break;
        const unsigned char *const alpha = pair.upper.alpha + x;
        const ptrdiff_t left = pixels - x;
        const ptrdiff_t drawn =
            rows.count_drawn(alpha, pair.below.sub, left < strip ? left : strip);
        if (drawn > 0)
            blend(pair, x, drawn);
        x += drawn;
        if (x == pixels)
            break;
        clear = rows.count_clear(alpha + drawn, pair.below.sub, left - drawn);
    }
}

void row_mixer::mix_in_order(const mixed_pair &pair) const {
    const mix_place &at = pair.upper;
    unsigned char video_u[step / 2], video_v[step / 2], video_y[step];
    rows.average_rows({video_u, at.u, pair.below.chroma}, step / 2);
    rows.average_rows({video_v, at.v, pair.below.chroma}, step / 2);

    const auto mix_row_at = [&](const mix_place &row, const unsigned char *row_y) {
        unsigned char y[step], u[2][step / 2], v[2][step / 2];
        rows.blend_plane(
            {{y, nullptr}, {row_y, nullptr}, {row.sub_y, nullptr}, row.alpha, {luma_by, nullptr}},
            step);
        // Of a pair whose rows are the same.
        blend_chroma(
            {u[0], v[0], video_u, video_v, row.sub_u, row.sub_v, row.alpha, 0, by, step / 2, 0, 0},
            step);
        surface.emit({y, u[0], v[0], row.dst}, step);
    };
    mix_row_at(at, at.y);
    if (pair.lower == lower_row::average) {
        rows.average_rows({video_y, at.y, pair.below.luma}, step);
        mix_row_at(at + pair.below, video_y);
    } else {
        mix_row_at(at + pair.below, at.y + pair.below.luma);
    }
}

void row_mixer::take_video(const mixed_pair &first, const mix_distance &next, ptrdiff_t pairs,
                           ptrdiff_t x, ptrdiff_t n) const {
    const mix_place &at = first.upper;
    planar_rows video{at.y + x, at.u + x / 2, at.v + x / 2, at.dst + x * surface.bytes_per_pixel};
    video.lower = first.lower;
    video.y_below = first.below.luma, video.dst_below = first.below.dst;
    video.stores = stores;
    video.by = by;
    video.count = pairs;
    video.y_next = next.luma, video.chroma_next = next.chroma, video.dst_next = next.dst;
    if (first.below.chroma == 0)
        return surface.emit(video, n);
    alignas(64) unsigned char u[most_clear_pixels / 2], v[most_clear_pixels / 2];
    const ptrdiff_t longest = most_clear_pixels / pairs / whole_lines * whole_lines;
    in_runs(n, longest, [&](ptrdiff_t from, ptrdiff_t run) {
        const ptrdiff_t chroma = (x + from) / 2, below = first.below.chroma;
        rows.average_rows({u, at.u + chroma, below, pairs, next.chroma, longest / 2}, run / 2);
        rows.average_rows({v, at.v + chroma, below, pairs, next.chroma, longest / 2}, run / 2);
        planar_rows here = video;
        here.y += from, here.dst += from * surface.bytes_per_pixel;
        here.u = u, here.v = v, here.chroma_next = longest / 2;
        surface.emit(here, run);
    });
}

// Into a strip, and from there to the surface. (In one loop the two take 1.3 to 1.5 times as long:
// it is too long for the processor to look into its next turn, and has more values at hand than
// there are registers.)
void row_mixer::blend(const mixed_pair &pair, ptrdiff_t x, ptrdiff_t n) const {
    alignas(64) unsigned char y[2][strip], u[2][strip / 2], v[2][strip / 2];
    const mix_place &at = pair.upper;
    const mix_distance &below = pair.below;
    const bool average = pair.lower == lower_row::average;
    unsigned char *const dst = at.dst + x * surface.bytes_per_pixel;

    rows.blend_pair({y[0], at.y + x, at.sub_y + x, at.alpha + x, luma_by, strip, below.sub,
                     average ? 0 : below.luma, average ? below.luma : 0},
                    n);
    const blended_chroma chroma{
        u[0],         v[0],         at.u + x / 2, at.v + x / 2, at.sub_u + x / 2, at.sub_v + x / 2,
        at.alpha + x, below.chroma, by,           strip / 2,    below.sub_chroma, below.sub};
    if (surface.emit_blended)
        return surface.emit_blended({dst, y[0], &chroma, below.dst, strip, stores}, n);
    blend_chroma(chroma, n);
    planar_rows blended{y[0], u[0], v[0], dst};
    blended.stores = stores;
    blended.count = 2, blended.dst_next = below.dst;
    blended.y_next = strip, blended.chroma_next = strip / 2;
    surface.emit(blended, n);
}

} // namespace lumalane
