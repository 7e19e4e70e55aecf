// One call of a row kernel, ready to be made by any target, with its rows anywhere in memory.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include "rows/rows.h"

namespace row_tests {

using bytes = std::vector<unsigned char>;

// A row of a call, or as many as it is made for, a pitch apart, upwards if that is negative. No kernel
// touches a byte outside.
struct row {
    const char *name;
    std::ptrdiff_t size; // bytes; 0: not touched
    std::ptrdiff_t count = 1;
    std::ptrdiff_t pitch = 0;
    bool written = false;
    bytes held = {}; // before the call, in the place of random bytes: of every row `size`

    std::ptrdiff_t extent() const { return size == 0 ? 0 : (count - 1) * std::abs(pitch) + size; }
    // Of the first row, from the lowest byte on.
    std::ptrdiff_t offset() const { return pitch < 0 ? (count - 1) * -pitch : 0; }
};

// What the rows hold while it is worked out what a call should make of them.
class contents {
public:
    virtual bytes read(std::size_t row, std::ptrdiff_t number = 0) const = 0;
    virtual void write(std::size_t row, const bytes &, std::ptrdiff_t number = 0) = 0;

protected:
    ~contents() = default;
};

using addresses = std::vector<unsigned char *>; // of the rows

struct row_call {
    std::string arguments; // for people
    std::vector<row> rows;
    int alignment = 1; // of the rows that are written
    // The call reads something (again) after it has stored, which is not what the promised steps do:
    // it is made only where nothing overlaps.
    bool reads_again = false;
    // What a call returns, if anything, counts as well.
    std::function<long long(const lumalane::row_kernels &, const addresses &)> run;
    // In the order that kernels promise, one row at a time, from rows of their own that nothing
    // overlaps: all that a row's group needs is read before any of it is written.
    std::function<long long(const lumalane::row_kernels &reference, contents &)> expect;
};

} // namespace row_tests
