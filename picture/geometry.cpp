#include "picture/geometry.h"

namespace lumalane {

namespace {

row_set at_its_address(const byte_rows &rows) {
    return {static_cast<long long>(reinterpret_cast<uintptr_t>(rows.first)), rows.bytes, rows.count,
            rows.pitch};
}

// From here on distances of the call may have wrapped, which those that are told do not.
constexpr long long least_that_may_wrap = 1 << 28;

bool may_wrap(const byte_rows &rows) {
    return detail::magnitude(rows.pitch) >= least_that_may_wrap;
}

} // namespace

bool call_rows::reads_what_it_writes() const {
    long long begin = 0, end = 0;
    for (int i = 0; i < writes_told; ++i) {
        const row_set rows = at_its_address(written[i]);
        if (may_wrap(written[i]))
            return true;
        begin = end == 0 || rows.begin() < begin ? rows.begin() : begin;
        end = end == 0 || rows.end() > end ? rows.end() : end;
    }
    for (int i = 0; i < reads_told; ++i) {
        if (may_wrap(read[i]))
            return true;
        // As a rule a picture is read somewhere else altogether.
        const row_set rows = at_its_address(read[i]);
        if (rows.end() <= begin || end <= rows.begin())
            continue;
        for (int j = 0; j < writes_told; ++j)
            if (!apart(at_its_address(written[j]), rows))
                return true;
    }
    return false;
}

bool call_rows::order_can_be_observed() const {
    if (columns_differ || reads_what_it_writes())
        return true;
    for (int i = 0; i < writes_told; ++i) {
        if (!rows_apart(at_its_address(written[i])))
            return true;
        for (int j = i + 1; j < writes_told; ++j)
            if (!apart(at_its_address(written[i]), at_its_address(written[j])))
                return true;
    }
    return false;
}

} // namespace lumalane
