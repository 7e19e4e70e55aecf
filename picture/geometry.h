// Which bytes a call reads and writes, row by row, and whether the order of its stores can be
// observed from them.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include <lumalane/rows_of.h>

namespace lumalane {

// ---- 32-bit arithmetic, which wraps ------------------------------------------------------------

constexpr int difference(int a, int b) {
    return static_cast<int>(static_cast<unsigned>(a) - static_cast<unsigned>(b));
}

constexpr int product(int a, int b) {
    return static_cast<int>(static_cast<unsigned>(a) * static_cast<unsigned>(b));
}

constexpr int twice(int a) { return product(2, a); }

// To where there need be nothing: on 32 bits it may lie beyond all memory.
constexpr ptrdiff_t times(ptrdiff_t n, ptrdiff_t distance) {
    return static_cast<ptrdiff_t>(static_cast<size_t>(n) * static_cast<size_t>(distance));
}

// ---- Steps -------------------------------------------------------------------------------------

// How many steps, a power of 2, a loop takes that counts `count` down and tests after each: at least
// one. Counts are unsigned: a negative one means more than there is memory.
constexpr long long steps_of(int count, unsigned step) { return detail::whole(count, step) / step; }

// The pixels of a row in whole steps, at least one.
constexpr ptrdiff_t whole_steps(int width, unsigned step) {
    return static_cast<ptrdiff_t>(detail::whole(width, step));
}

// Where widths are counted with their sign: one below 0 has the least number of steps.
constexpr ptrdiff_t whole_steps_signed(int width, int step, int least_steps = 1) {
    const ptrdiff_t pixels = static_cast<ptrdiff_t>(detail::up(width, step));
    const ptrdiff_t least = least_steps * step;
    return pixels < least ? least : pixels;
}

// ---- Rows --------------------------------------------------------------------------------------

// `count` rows of `bytes` bytes each, `pitch` bytes apart.
struct byte_rows {
    const unsigned char *first;
    long long count, pitch, bytes;
};

// The rows that a call reads and writes, as a shape of lumalane/rows_of.h tells them, and the one
// decision about the order of its stores.
class call_rows {
public:
    // Where a pointer of the call points: before its rows are told.
    void at(pointer p, const void *address) {
        addresses[static_cast<int>(p)] = static_cast<const unsigned char *>(address);
    }

    void reads(pointer p, const row_set &rows) { add(read[reads_told++], p, rows); }
    void writes(pointer p, const row_set &rows) { add(written[writes_told++], p, rows); }
    void writes_again(pointer p, const row_set &rows) { writes(p, rows); }
    void replaces(pointer p, const row_set &rows) { writes(p, rows); }

    // The order can be observed where two written rows overlap (the later store stays), or where a
    // row that is read overlaps a written one (a load finds what was stored before it); and where
    // columns begin at different heights: they are not rows in another order.
    bool order_can_be_observed() const;

    // Whether a row that is read overlaps a written one, or may.
    bool reads_what_it_writes() const;

    // As they were told, at their addresses.
    static constexpr int most_read = 24, most_written = 12;
    byte_rows read[most_read], written[most_written];
    int reads_told = 0, writes_told = 0;

private:
    void add(byte_rows &to, pointer p, const row_set &told) {
        const row_set rows = joined(told);
        columns_differ = columns_differ || rows.columns > 1;
        to = {addresses[static_cast<int>(p)] + static_cast<ptrdiff_t>(rows.first), rows.rows,
              rows.pitch, rows.bytes};
    }

    const unsigned char *addresses[pointer_count]; // of the pointers that have rows
    bool columns_differ = false;
};

} // namespace lumalane
