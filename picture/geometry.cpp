#include "picture/geometry.h"

namespace lumalane {

namespace {

row_set at_its_address(const byte_rows &rows) {
    return {static_cast<long long>(reinterpret_cast<uintptr_t>(rows.first)), rows.bytes, rows.count,
            rows.pitch};
}

} // namespace

bool call_rows::reads_what_it_writes() const {
    for (int i = 0; i < writes_told; ++i)
        for (int j = 0; j < reads_told; ++j)
            if (!apart(at_its_address(written[i]), at_its_address(read[j])))
                return true;
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
