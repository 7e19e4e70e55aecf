// The loop of the functions that work one row after the other.
#pragma once

#include "picture/geometry.h"
#include "picture/stores.h"
#include "picture/strip.h"

namespace lumalane {

// How many rows a loop takes that counts `height` down to 0 and tests after each row: with a height
// of 0 it goes through all 2^32.
constexpr long long rows_of(int height) { return static_cast<unsigned>(height - 1u) + 1LL; }

// `count` rows of `bytes` bytes; `advance` is added to a pointer that has gone through a row.
inline byte_rows rows_with_advance(const void *first, long long count, long long bytes,
                                   int advance) {
    return {static_cast<const unsigned char *>(first), count, bytes + advance, bytes};
}

// Of a surface of `width` pixels, which are worked in `pixels`.
inline byte_rows surface_rows(const void *surface, long long count, ptrdiff_t pixels, int width,
                              int pitch, int bytes_per_pixel) {
    return rows_with_advance(surface, count, static_cast<long long>(pixels) * bytes_per_pixel,
                             difference(pitch, product(width, bytes_per_pixel)));
}

inline const unsigned char *source_row(const byte_rows &rows, long long row) {
    return rows.first + static_cast<ptrdiff_t>(row * rows.pitch);
}

// A row of the caller's destination, which byte_rows cannot tell from a source.
inline unsigned char *destination_row(const byte_rows &rows, long long row) {
    return const_cast<unsigned char *>(source_row(rows, row));
}

// What a call reads and writes, row by row.
template <int writes, int reads>
struct row_by_row {
    byte_rows written[writes], read[reads];
    ptrdiff_t pixels; // per row

    long long count() const { return written[0].count; }

    bool order_can_be_observed() const { return lumalane::order_can_be_observed(written, read); }

    // Of one buffer: where one outgrows the cache, nothing of another one stays there.
    long long most_bytes() const {
        long long most = written[0].bytes;
        for (const byte_rows &rows : read)
            most = rows.bytes > most ? rows.bytes : most;
        return count() * most;
    }
};

// What a kernel does at a time: `count` rows of n pixels, from the beginning of `row` on. In order
// those are the steps of one row.
struct rows_run {
    long long row;
    ptrdiff_t n, count;
    bool of_steps;

    // From one to the next.
    ptrdiff_t next(const byte_rows &rows) const {
        return of_steps ? static_cast<ptrdiff_t>(rows.bytes) / count
                        : static_cast<ptrdiff_t>(rows.pitch);
    }
};

// Calls `convert(run)` for every run: in order for row after row, else for all at once.
template <int writes, int reads, class Convert>
void for_rows(const row_by_row<writes, reads> &p, bool in_order, ptrdiff_t step,
              const Convert &convert) {
    if (p.pixels == 0)
        return;
    if (!in_order && p.most_bytes() <= PTRDIFF_MAX) {
        bool gaps = false;
        for (const byte_rows &rows : p.written)
            gaps = gaps || rows.pitch != rows.bytes;
        for (const byte_rows &rows : p.read)
            gaps = gaps || rows.pitch != rows.bytes;
        const ptrdiff_t count = static_cast<ptrdiff_t>(p.count());
        // Rows without gaps are one.
        return convert(gaps ? rows_run{0, p.pixels, count, false}
                            : rows_run{0, p.pixels * count, 1, false});
    }
    for (long long row = 0; row < p.count(); ++row)
        convert(rows_run{row, step, p.pixels / step, true});
}

} // namespace lumalane
