// Rectangles of the colour key, and a marker replaced by it.
#include "frame/kernels.h"
#include "subpicture/pattern.h"
#include "subpicture/rows.h"

namespace lumalane::LUMALANE_LANES {

namespace {

// `count` bytes, a multiple of 16.
template <class Put>
LUMALANE_INLINE void fill_row(unsigned char *to, ptrdiff_t count, const pattern &with) {
    constexpr ptrdiff_t size = sizeof with.byte;
    const woven<3, widest> pieces = with.first<3, widest>();
    ptrdiff_t x = 0;
    for (; x + 2 * size <= count; x += 2 * size) {
        put_parts<Put>(to + x, pieces);
        put_parts<Put>(to + x + size, pieces);
    }
    if (x + size <= count) {
        put_parts<Put>(to + x, pieces);
        x += size;
    }
    const unsigned char *from = with.byte;
    for (; x + widest <= count; x += widest, from += widest)
        store(to + x, load<widest>(from));
    if (widest > 16 && x < count)
        store(to + x, load<16>(from));
}

// A group of 16 pixels of the upper row of a pair, then of the lower one.
template <int size>
void fill_pairs_stepwise(const rows &upper, int pitch, unsigned height, const pattern &with) {
    unsigned left = height, pair = 0;
    do {
        for (ptrdiff_t x = 0; x < upper.bytes; x += 16 * size) {
            fill_row<cached>(upper.at(pair) + x, 16 * size, with);
            fill_row<cached>(upper.at(pair) + pitch + x, 16 * size, with);
        }
        ++pair;
    } while (again(left, 2));
}

template <class Put>
void fill_pairs_wide(const rows &upper, int pitch, unsigned height, const pattern &with) {
    const long long pairs = (height + 1ll) / 2;
    // Rows without a gap are one run, of whole patterns.
    if (pitch == upper.bytes && upper.pitch == 2 * upper.bytes)
        return fill_row<Put>(upper.first, static_cast<ptrdiff_t>(pairs * upper.pitch), with);
    for (long long pair = 0; pair < pairs; ++pair) {
        unsigned char *const row = upper.at(static_cast<unsigned>(pair));
        fill_row<Put>(row, upper.bytes, with);
        fill_row<Put>(row + pitch, upper.bytes, with);
    }
}

// Two rows at a time, and pixels of `size` bytes.
template <int size>
void fill_rectangle(void *surface, int width, int height, int pitch, const pattern &with) {
    if (height == 0)
        return;
    const unsigned pixels = in_whole_groups(width, 16);
    const rows upper = surface_rows(surface, size, pixels, width, twice(pitch));
    const unsigned count = static_cast<unsigned>(height);
    // Whole rows cannot be told from groups where the two rows of a pair do not overlap: pairs
    // follow each other in either case.
    if (!rows_apart(pitch, upper.bytes))
        return fill_pairs_stepwise<size>(upper, pitch, count, with);
    const int pitches = static_cast<int>(upper.pitch) | pitch; // all rows align, or none streams
    with_put(upper.first, pitches, upper.bytes * (height + 1LL),
             [&](auto put) { fill_pairs_wide<decltype(put)>(upper, pitch, count, with); });
}

} // namespace

void LoadColorKeyRgb32(LUMALANE_PARAMETERS_key_fill) {
    fill_rectangle<4>(surface, width, height, pitch, pattern::of_pixels<4>(key));
}

// Deliberately the three words are not in phase with one another.
void LoadColorKeyRgb24(LUMALANE_PARAMETERS_key_fill) {
    const unsigned long long k = key;
    fill_rectangle<3>(
        surface, width, height, pitch,
        {k >> 8 | k << 16 | k << 40, k >> 16 | k << 8 | k << 32 | k << 56, k | k << 24 | k << 48});
}

void LoadColorKeyRgb16(LUMALANE_PARAMETERS_key_fill) {
    fill_rectangle<2>(surface, width, height, pitch, pattern::of_pixels<2>(key));
}

void RelaceMaskWithColorKey(LUMALANE_PARAMETERS_mask) {
    constexpr int group = 16;
    const unsigned pixels = in_whole_groups(width, group);
    const rows replaced = surface_rows(dst, 1, pixels, width, pitch);
    const rows tested = surface_rows(mask, 1, pixels, width, pitch);
    walk_rows<group>(
        static_cast<unsigned>(height), pixels, replaced, {tested},
        [&]<int n, class Put>(unsigned row, ptrdiff_t x) {
            unsigned char *const to = replaced.at(row) + x;
            const bytes<n> marked =
                equal(load<n>(tested.at(row) + x), fill_bytes<n>(static_cast<int>(mask_value)));
            Put::put(to, choose(marked, fill_bytes<n>(static_cast<int>(key_value)), load<n>(to)));
        });
}

} // namespace lumalane::LUMALANE_LANES
