// Rows made from source rows, each kept as long as the rows around it need it.
#pragma once

#include "rows/rows.h"

namespace lumalane {

// The last rows, so many, of those that were made one after the other.
template <int count, int size>
class recent_rows {
public:
    // All rows are made anew.
    void forget() { next = 0; }

    // The row of that number: one of the last, or the next one, which `make(row)` makes.
    template <class Make>
    const unsigned char *row(long long number, const Make &make) {
        unsigned char *const here = rows[static_cast<size_t>(number) % count];
        if (number >= next) {
            next = number + 1;
            make(here);
        }
        return here;
    }

private:
    alignas(stack_alignment) unsigned char rows[count][size];
    long long next = 0;
};

} // namespace lumalane
