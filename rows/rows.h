// Row kernels: the loops along a row. They are compiled once per target; everything above them is
// compiled once.
//
// A kernel works on n samples or pixels of one row, or of two rows that share chroma, and of as many
// such rows as it is told; n is a multiple of 16 or of 8, as rows.inc says, and may be 0. It
// touches the bytes of those n and no other. It goes through them in groups of the target's widest
// vectors, and of fewer, down to 16 or 8, where those do not fit; or the last group ends where the row
// does, and makes some samples again, in runs of which the order is the kernel's own.
//
// What a kernel is told comes in records that were stored just before: kernels load each field by itself,
// and copy no record, for a wide load would have to wait until all fields are in the cache.
//
// Of several rows that it is told, each goes to a place of its own. Distances from row to row may be
// negative.
//
// A run of one group with cached stores is what a step of the promised loops is, also where its source
// and its destination overlap: all that is needed of a row is loaded before any of it is stored, and
// of two rows the upper one is stored before the lower one's luma is loaded. In longer runs, and with
// non-temporal stores, the order of loads and stores is the kernel's own.
#pragma once

#include <stddef.h>

#include <lumalane/store_bounds.h>

namespace lumalane {

using detail::cache_line;

// Of pieces of rows on the stack: to the widest vectors. (For Windows on ARM clang 14 does not align a
// stack frame of a page or more to over 16 bytes, and reckons that it has: stretches made wrong pixels
// wherever the caller's stack stood otherwise.)
#if defined(_WIN32) && defined(__aarch64__)
constexpr int stack_alignment = 16;
#else
constexpr int stack_alignment = 64;
#endif

// How a kernel stores: non-temporal stores do not take lines of the cache for what is written. The
// destination is aligned to row_kernels::streamed_bytes for them; for emit_plane() and
// emit_half_plane() to 8 bytes. With either lines are fetched ahead, of what is about to be stored in
// the cache and of what is only moved, if the processor does that too late by itself.
enum class store_policy : int {
    cached = 0,
    non_temporal = 1, // a bit for each answer
    cached_fetching = 2,
    non_temporal_fetching = non_temporal | cached_fetching,
};

constexpr bool has(store_policy stores, store_policy bit) {
    return (static_cast<int>(stores) & static_cast<int>(bit)) != 0;
}

constexpr bool is_non_temporal(store_policy stores) {
    return has(stores, store_policy::non_temporal);
}

// The same in the cache.
constexpr store_policy in_cache(store_policy stores) {
    return has(stores, store_policy::cached_fetching) ? store_policy::cached_fetching
                                                      : store_policy::cached;
}

// The same around it.
constexpr store_policy around(store_policy stores) {
    return has(stores, store_policy::cached_fetching) ? store_policy::non_temporal_fetching
                                                      : store_policy::non_temporal;
}

// How many bytes before they are loaded or stored lines are fetched, where that gains.
constexpr ptrdiff_t distance_ahead = 1024;

// What a policy makes of it. (0: the lines themselves, which takes as long as fetching none.)
constexpr ptrdiff_t fetched_ahead(store_policy stores) {
    return has(stores, store_policy::cached_fetching) ? distance_ahead : 0;
}

// Whether vectors of pixels are whole lines of the cache, and registers enough for two rows: then
// non-temporal stores can go to both rows of a pair in turn.
constexpr bool streams_averages(int vector_bytes, int vector_registers, int bytes_per_pixel) {
    return vector_bytes * bytes_per_pixel % cache_line == 0 && vector_registers >= 16;
}

// Whether they do for all pairs: of RGB, which share the arithmetic of chroma. (Of 2 bytes a pixel rows
// are faster one by one, unless the lower ones are averages.)
constexpr bool streams_pairs(int vector_bytes, int vector_registers, int bytes_per_pixel) {
    return bytes_per_pixel > 2 && streams_averages(vector_bytes, vector_registers, bytes_per_pixel);
}

// The adjustment of one plane: a sample x becomes
//     clamp((low16(x * gain) saturating+ 32) logical>> 6) saturating+ offset)
struct plane_adjustment {
    short gain;                // in 1/64
    short offset;              // -1023..255
    bool product_fits_15_bits; // gain 33..128: x * gain + 32 is less than 2^15 for every sample
    unsigned char rounding;    // then 32 / gain in 1/256, rounded up

    // Leaves every sample as it is: kernels are told of none.
    bool neutral() const { return gain == 64 && offset == 0; }
    const plane_adjustment *unless_neutral() const { return neutral() ? nullptr : this; }
};

// Of the planes of a picture; U and V have the same gain.
struct adjustment {
    plane_adjustment y, u, v;

    bool neutral() const { return y.neutral() && u.neutral() && v.neutral(); }
    const adjustment *unless_neutral() const { return neutral() ? nullptr : this; }
};

// What a kernel for row pairs makes of the lower row.
enum class lower_row : int {
    none,    // nothing: one row
    itself,  // its own luma with the upper row's chroma
    average, // the average of both rows' luma, rounded up, with the upper row's chroma
    // Of YUY2 alone: what four taps make of the rows around it, with the upper row's chroma. (All of
    // the upper row is stored first where row_kernels::filters_pairs is not set.)
    four_taps,
};

// Planar rows on their way to a surface. n pixels have n / 2 samples of U and of V.
struct planar_rows {
    const unsigned char *y, *u, *v;
    unsigned char *dst;
    lower_row lower = lower_row::none;
    ptrdiff_t y_below = 0, dst_below = 0; // from the upper to the lower row
    ptrdiff_t chroma_below = 0;           // to the row with which chroma is averaged; 0: with none
    store_policy stores = store_policy::cached;
    const adjustment *by = nullptr; // null: none

    // The same once more for so many rows (or pairs of rows), one after the other.
    ptrdiff_t count = 1;
    ptrdiff_t y_next = 0, chroma_next = 0, dst_next = 0; // from one to the next
    ptrdiff_t y_below_next = 0; // by which y_below changes from one to the next
};

// Rows of packed YUY2 on their way to a surface.
struct packed_rows {
    const unsigned char *src;
    const unsigned char *chroma; // a row of YUY2 whose chroma the row takes; of pairs `src`
    unsigned char *dst;
    lower_row lower = lower_row::none; // none or itself
    ptrdiff_t src_below = 0, dst_below = 0;
    store_policy stores = store_policy::cached;
    const adjustment *by = nullptr; // null: none

    // The same once more for so many rows (or pairs of rows), one after the other.
    ptrdiff_t count = 1;
    ptrdiff_t src_next = 0, dst_next = 0; // from one to the next
};

// Rows that lie between a row and the row below it.
struct between_rows {
    unsigned char *dst;
    const unsigned char *src;
    ptrdiff_t below; // from a row of the source to the one below

    // The same once more for so many rows.
    ptrdiff_t count = 1;
    ptrdiff_t src_next = 0, dst_next = 0; // from one to the next
};

// Rows of U and V made rows of pairs; n samples of both.
struct interleaved_chroma {
    const unsigned char *u, *v;
    unsigned char *uv;
    const adjustment *by = nullptr; // null: none

    // The same once more for so many rows.
    ptrdiff_t count = 1;
    ptrdiff_t src_next = 0, uv_next = 0; // from one to the next
};

// Rows of n pixels of packed YUY2, taken apart: luma, and pairs of U and V.
struct unpacked_yuy2 {
    const unsigned char *src;
    unsigned char *y, *uv;          // uv may be null
    const adjustment *by = nullptr; // null: none

    // The same once more for so many rows.
    ptrdiff_t count = 1;
    ptrdiff_t src_next = 0, y_next = 0, uv_next = 0; // from one to the next
};

// What a kernel makes of a row and the row below it.
enum class rows_made : int {
    itself,  // the row
    between, // the average of both, rounded up
    both,    // the row, and below it the average; of a group both are loaded before they are stored
};

// Rows of a plane on their way to a surface of twice the height. The kernel that doubles the width
// reads one sample more than n, or repeats the last one.
struct stretched_rows {
    const unsigned char *src;
    unsigned char *dst;
    rows_made made = rows_made::itself;
    bool repeats_last = false;
    store_policy stores = store_policy::cached;
    const plane_adjustment *by = nullptr;   // null: none
    ptrdiff_t src_below = 0, dst_below = 0; // to the row below, and to where the average goes

    // The same once more for so many rows, one after the other.
    ptrdiff_t count = 1;
    ptrdiff_t src_next = 0, dst_next = 0; // from one to the next
};

// What a kernel makes of a pair of rows and the row below it, all of them `y_below` apart.
enum class pair_made : int {
    row,     // the upper row alone
    between, // the average of it and the lower one, rounded up
    all,     // the upper row, that average, the lower row, and the average of it and the row below;
             // what is read and what is stored do not overlap
};

// Rows on their way to a surface of twice the height, or of twice both. n pixels have n / 2 samples of
// U and of V: in planes, or where the width is doubled in pairs, at `u` (`v` is not read, but not null).
// There one sample of luma more is read, or the last one repeated, and one pair more.
struct doubled_rows {
    const unsigned char *y, *u, *v;
    unsigned char *dst;
    // Flags are in words of their own: compilers load neighbours at once, and what was stored in parts
    // is not there for that before all earlier stores are over.
    alignas(ptrdiff_t) pair_made made = pair_made::row;
    ptrdiff_t y_below = 0, dst_below = 0;
    bool repeats_last = false;
    // Not 0: of one row chroma is the average of two rows so far apart; of all the last one has that
    // average, and the one before it too, unless it has its own.
    ptrdiff_t chroma_below = 0;
    bool lower_has_own_chroma = false;
    alignas(ptrdiff_t) store_policy stores = store_policy::cached;

    // The same once more for so many rows or pairs, one after the other.
    ptrdiff_t count = 1;
    ptrdiff_t y_next = 0, chroma_next = 0, dst_next = 0; // from one to the next
};

// 24 bytes, whole pixels of 2, 3 and 4 bytes, repeated to whole vectors: three of 64 bytes, and of
// any size that divides 64.
struct pattern {
    alignas(64) unsigned char byte[3 * 64];
};

// The colour key: its channels, and the pixels that a surface has of it.
struct key_colour {
    unsigned char red, green, blue;
    pattern pixels;
};

// Rows of an AYUY2 subpicture on their way to a surface.
struct keyed_rows {
    const unsigned char *y, *u, *v, *alpha;
    unsigned char *dst;
    store_policy stores = store_policy::cached;
    const adjustment *by = nullptr; // null: none; the key is not adjusted

    // The same once more for so many rows.
    ptrdiff_t count = 1;
    ptrdiff_t luma_next = 0, chroma_next = 0, dst_next = 0; // from one to the next; alpha as luma
};

// Rows of a surface on their way to the planes of an AYUY2 subpicture.
struct drawn_rows {
    const unsigned char *surface;
    unsigned char *y, *u, *v;

    // The same once more for so many rows.
    ptrdiff_t count = 1;
    ptrdiff_t surface_next = 0, luma_next = 0, chroma_next = 0; // from one to the next

    store_policy stores = store_policy::cached; // never non-temporal
};

// Rows of one plane on their way to another one.
struct plane_rows {
    const unsigned char *src;
    unsigned char *dst;
    store_policy stores = store_policy::cached;
    const plane_adjustment *by = nullptr; // null: none

    // The same once more for so many rows.
    ptrdiff_t count = 1;
    ptrdiff_t src_next = 0, dst_next = 0; // from one to the next
};

// A pixel of the video, of a subpicture over it and of a surface; and how far it is from one such
// place to another, in bytes: of luma and of chroma, of the subpicture's luma and alpha, of its
// chroma, and of the surface.
struct mix_place {
    const unsigned char *y, *u, *v;
    const unsigned char *alpha, *sub_y, *sub_u, *sub_v;
    unsigned char *dst;
};
struct mix_distance {
    ptrdiff_t luma, chroma, sub, sub_chroma, dst;
};

// Pairs of rows of the video under a subpicture, on their way to a surface.
struct mixed_pairs {
    mix_place upper;
    // To the lower row. The chroma of both is that of the upper row, averaged with the one so much
    // further on (0: as it is).
    mix_distance below;
    lower_row lower; // its own luma, or averaged

    void (*emit)(const planar_rows &, ptrdiff_t n); // of the surface
    int bytes_per_pixel;
    store_policy stores;
    const adjustment *by; // null: none

    // So many pairs, one after the other.
    ptrdiff_t count;
    mix_distance next; // from one to the next

    // Not null: after each of them one of those, which are as many, for the same surface and by the same
    // adjustment.
    const mixed_pairs *alternate = nullptr;
};

// Rows of one plane, or of U and V, of the video under rows of a subpicture. They come in pairs.
struct blended_planes {
    unsigned char *dst[2];
    const unsigned char *video[2], *sub[2], *alpha;
    const plane_adjustment *by[2]; // null: none
    store_policy stores = store_policy::cached;

    // The same once more for so many rows, one after the other.
    ptrdiff_t count = 1;
    ptrdiff_t dst_next = 0, sub_next = 0, alpha_next = 0; // from row to row
    ptrdiff_t video_to_lower = 0, video_next = 0;         // within a pair, and from pair to pair
    ptrdiff_t below_lower = 0; // to the row with which lower rows are averaged that are not
                               // adjusted; 0: with none
};

// The types of the row kernels, by the names that rows.inc uses.
namespace row_kernel {

using planar_to_surface = void(const planar_rows &, ptrdiff_t n);
using packed_to_surface = void(const packed_rows &, ptrdiff_t n);
using plane_to_surface = void(const plane_rows &, ptrdiff_t n);
using keyed_to_surface = void(const keyed_rows &, ptrdiff_t n, const key_colour &key);
using surface_to_planes = void(const drawn_rows &, ptrdiff_t n, unsigned key,
                               const pattern &key_pixels);
using filling = void(unsigned char *dst, ptrdiff_t bytes, const pattern &with, store_policy stores);
using marker_to_key = void(const plane_rows &mask, ptrdiff_t n, unsigned char marker,
                           unsigned char key);
using between_two_rows = void(const between_rows &, ptrdiff_t n);
using plane_stretching = void(const stretched_rows &, ptrdiff_t n);
using doubled_to_surface = void(const doubled_rows &, ptrdiff_t n);
using chroma_interleaving = void(const interleaved_chroma &, ptrdiff_t n);
using yuy2_unpacking = void(const unpacked_yuy2 &, ptrdiff_t n);
using mixing_pairs = void(const mixed_pairs &, ptrdiff_t n);
using blending_planes = void(const blended_planes &, ptrdiff_t n);
using finishing = void();

} // namespace row_kernel

// The row kernels of one target.
struct row_kernels {
    const char *target;
    int vector_bytes;     // of the widest vectors
    int vector_registers; // at least
    int streamed_bytes;   // what non-temporal stores are to be aligned to
    bool filters_pairs;   // lower rows of four taps are made in the loops that emit pairs
#define LUMALANE_ROW_KERNEL(kind, name, ...) row_kernel::kind *name;
#include "rows/rows.inc"
#undef LUMALANE_ROW_KERNEL
};

} // namespace lumalane
