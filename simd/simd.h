// The vocabulary of the vector arithmetic, for the target that this file is being compiled for.
//
// The build compiles every file of row kernels once per target, with LUMALANE_TARGET_NAME defined as
// the target's name, which is also the namespace of everything in it. All targets define the same
// types and operations under the same names; portable.h is their plain definition.
//
// Nothing in such a file may come from the standard library: an inline function compiled for a wide
// target could be the copy that the linker keeps for all.
#pragma once

#include "simd/inline.h"

namespace lumalane::LUMALANE_TARGET_NAME {

// Whether code is to be small rather than fast. Its loops choose no vectors by branches: where these meet,
// clang moves halves of registers (see mmx.h) through others and memory, which made stretches take 4 times
// as long.
#ifdef __OPTIMIZE_SIZE__
inline constexpr bool small_code = true;
#else
inline constexpr bool small_code = false;
#endif

// x86 has 8 with 32 bits, and every processor with 64 bits has this many.
inline constexpr int vector_registers = sizeof(void *) == 8 ? 16 : 8;

// ---- What every target makes of its vectors -------------------------------------------------------

template <int n>
struct bytes;
template <int n>
struct words;

// n samples in sixteenths, as widen_low() and widen_high() leave bytes; 8 are one vector.
template <int n>
struct sixteenths {
    words<n / 2> low, high;
};
template <int n>
requires(n == 8) struct sixteenths<n> {
    words<n> low;
};

// Pixels in memory order. (What interleaves channels may return them otherwise where the store does
// it; that converts to these.)
template <int count, int n>
struct vectors {
    bytes<n> part[count];
};

// In which order the pairs of pixels of a block lie in its even and in its odd pixels: as they
// follow each other, or those of the first 8 pixels and those of the last 8 in turn.
enum class pairs { in_order, in_turn };

// For how many vectors interleave_channels_padded() wants n pixels permuted.
template <int n>
inline constexpr int padded_parts = 4;

// Of how many bytes vectors are best where a row goes through store_after_8() and the widest have n.
template <int n>
inline constexpr int widest_with_gaps = n;

// Whether a loop takes longer where another one of its ways calls a function, for vectors of n bytes:
// what that function may change is loaded anew in every turn.
template <int n>
inline constexpr bool calls_are_apart = false;

// Whether loops over vectors of n bytes fetch lines of the destination ahead, where they are told to.
template <int n>
inline constexpr bool fetches_ahead = false;

// What non-temporal stores of n bytes are to be aligned to.
template <int n>
inline constexpr int streamed_bytes = n;

// n pixels of packed YUY2, permuted: luma and U of the even ones, luma and V of the odd ones.
template <int n>
struct packed_pixels {
    bytes<n> even, odd;
};

// n / 2 pixels, lanes of the first and of the second half in turn.
template <int n>
struct half_interleaved {
    words<n / 2> bg; // blue in the lower byte, green in the upper one
    words<n / 2> rx; // of 4 bytes the upper two, of 3 bytes red in the upper byte
};

template <int n>
struct halves {
    bytes<n> lower, upper;
};

} // namespace lumalane::LUMALANE_TARGET_NAME

#define LUMALANE_QUOTE(name) #name
#define LUMALANE_TARGET_HEADER(target) LUMALANE_QUOTE(target.h)
#include LUMALANE_TARGET_HEADER(LUMALANE_TARGET_NAME)

namespace lumalane::LUMALANE_TARGET_NAME {

// (A target may have shorter ways.)

template <int n>
LUMALANE_INLINE bool all_in_1_to_127(bytes<n> a) {
    return all(in_1_to_127(a));
}

// Where vectors 0 to i at `from` are these. (Not a loop; see store_all().)
template <int i, int count, int n>
LUMALANE_INLINE bytes<n> equal_at(const unsigned char *from, const vectors<count, n> &these) {
    const bytes<n> same = equal(load<n>(from + i * n), these.part[i]);
    if constexpr (i == 0)
        return same;
    else
        return equal_at<i - 1>(from, these) & same;
}

// Whether the vectors at `from` are these.
template <int count, int n>
LUMALANE_INLINE bool are_at(const unsigned char *from, const vectors<count, n> &these) {
    return all(equal_at<count - 1>(from, these));
}

} // namespace lumalane::LUMALANE_TARGET_NAME
