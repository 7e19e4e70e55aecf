// The walk of the functions that work one row after the other, in groups of pixels.
#pragma once

#include "frame/walks.h"

namespace lumalane::LUMALANE_LANES {

// The pixels of a row in whole groups of `group`, at least one.
LUMALANE_INLINE unsigned in_whole_groups(int width, unsigned group) {
    const unsigned pixels = static_cast<unsigned>(width);
    return pixels == 0 ? group : ((pixels - 1) / group + 1) * group;
}

// The rows of a buffer as the walk finds them: as long as their whole groups, and with a width off
// the group each starts further right than the row before.
struct rows {
    unsigned char *first;
    ptrdiff_t pitch;
    ptrdiff_t bytes; // of a row

    // `rest` is added to a pointer that has gone through all bytes of a row.
    rows(unsigned char *first_, long long bytes_, int rest)
        : first(first_), pitch(static_cast<ptrdiff_t>(bytes_) + rest),
          bytes(static_cast<ptrdiff_t>(bytes_)) {}

    LUMALANE_INLINE unsigned char *at(unsigned row) const {
        return first + static_cast<ptrdiff_t>(row) * pitch;
    }

    extent whole(unsigned height) const { return rows_at(first, height, pitch, bytes); }
};

// Of a surface of `width` pixels of `size` bytes.
LUMALANE_INLINE rows surface_rows(void *first, int size, unsigned pixels, int width, int pitch) {
    return {static_cast<unsigned char *>(first), static_cast<long long>(pixels) * size,
            difference(pitch, product(width, size))};
}

// Calls `step.operator()<n, Put>(row, x)` for the pixels of every row, first to last: n are `group`
// at a time, or the widest vectors as well.
template <int group, class Put, class Step>
LUMALANE_INLINE void walk_rows(unsigned height, unsigned pixels, const Step &step) {
    unsigned row = 0;
    do {
        ptrdiff_t x = 0;
        if constexpr (Put::wide)
            for (; x + widest <= static_cast<ptrdiff_t>(pixels); x += widest)
                step.template operator()<widest, Put>(row, x);
        for (; x < static_cast<ptrdiff_t>(pixels); x += group)
            step.template operator()<group, cached>(row, x);
    } while (++row != height);
}

// The same in whichever way is the fastest. Vectors wider than a group leave the order of the
// stores into one buffer as it is; they cannot be told if nothing that is read was written by
// another step.
template <int group, int sources, class Step>
LUMALANE_INLINE void walk_rows(unsigned height, unsigned pixels, const rows &destination,
                               const rows (&read)[sources], const Step &step) {
    const extent written = destination.whole(height);
    bool regular = true;
    // One buffer that outgrows the cache leaves nothing of another one there.
    ptrdiff_t most_bytes = destination.bytes;
    for (const rows &source : read) {
        regular = regular && apart(written, source.whole(height));
        most_bytes = source.bytes > most_bytes ? source.bytes : most_bytes;
    }
    with_put_if(regular, destination.first, static_cast<int>(destination.pitch),
                static_cast<long long>(height) * most_bytes, [&](auto put) LUMALANE_INLINE_LAMBDA {
                    walk_rows<group, decltype(put)>(height, pixels, step);
                });
}

} // namespace lumalane::LUMALANE_LANES
