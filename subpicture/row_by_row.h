// The loop of the functions that work one row after the other.
#pragma once

#include "picture/geometry.h"
#include "picture/stores.h"
#include "picture/told_rows.h"
#include "rows/strip.h"

namespace lumalane {

inline const unsigned char *source_row(const byte_rows &rows, long long row) {
    // As a number: where there are no pixels a pointer may be null.
    const uintptr_t first = reinterpret_cast<uintptr_t>(rows.first);
    return reinterpret_cast<const unsigned char *>(first +
                                                   static_cast<uintptr_t>(row * rows.pitch));
}

// A row of the caller's destination, which byte_rows cannot tell from a source.
inline unsigned char *destination_row(const byte_rows &rows, long long row) {
    return const_cast<unsigned char *>(source_row(rows, row));
}

// Of one buffer: where one outgrows the cache, nothing of another one stays there.
inline long long most_bytes(const call_rows &p) {
    long long most = p.written[0].bytes;
    for (int i = 0; i < p.reads_told; ++i)
        most = p.read[i].bytes > most ? p.read[i].bytes : most;
    return p.written[0].count * most;
}

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

// Calls `convert(run)` for every run of rows of so many pixels: in order for row after row, else for
// all at once.
template <class Convert>
void for_rows(const call_rows &p, ptrdiff_t pixels, bool in_order, ptrdiff_t step,
              const Convert &convert) {
    if (pixels == 0)
        return;
    const long long rows = p.written[0].count;
    if (!in_order && most_bytes(p) <= PTRDIFF_MAX) {
        bool gaps = false;
        for (int i = 0; i < p.writes_told; ++i)
            gaps = gaps || p.written[i].pitch != p.written[i].bytes;
        for (int i = 0; i < p.reads_told; ++i)
            gaps = gaps || p.read[i].pitch != p.read[i].bytes;
        const ptrdiff_t count = static_cast<ptrdiff_t>(rows);
        // Rows without gaps are one.
        return convert(gaps ? rows_run{0, pixels, count, false}
                            : rows_run{0, pixels * count, 1, false});
    }
    for (long long row = 0; row < rows; ++row)
        convert(rows_run{row, step, pixels / step, true});
}

} // namespace lumalane
