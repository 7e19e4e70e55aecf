// The picture adjustment: the one state of the library.
#pragma once

#include "rows/rows.h"

namespace lumalane {

// The values in force, each read once.
adjustment current_adjustment();

// Of a plane with that gain in 1/64 and that offset.
constexpr plane_adjustment prepared(short gain, short offset) {
    // What is amplified is at most 1023: beyond -1023..255 nothing more changes.
    const int clamped = offset < -1023 ? -1023 : offset > 255 ? 255 : offset;
    const bool product_fits_15_bits = 33 <= gain && gain <= 128;
    return {gain, static_cast<short>(clamped), product_fits_15_bits,
            static_cast<unsigned char>(product_fits_15_bits ? (8192 + gain - 1) / gain : 0)};
}

} // namespace lumalane
