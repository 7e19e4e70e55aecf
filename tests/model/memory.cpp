#include "tests/model/memory.h"

#include <algorithm>

namespace model {

extent memory::footprint(std::size_t number) const {
    const extent &read = buffers[number].read, &written = buffers[number].written;
    if (read.empty())
        return written;
    if (written.empty())
        return read;
    return {std::min(read.first, written.first), std::max(read.end, written.end)};
}

std::uint8_t *memory::touch(address where, extent buffer::*how) {
    const auto holds = [&](const buffer &b) {
        return b.bytes.first <= where && where < b.bytes.end;
    };
    if (allowed-- == 0)
        throw stray_access{where};
    for (std::size_t tried = 0; tried < buffers.size();
         ++tried, latest = (latest + 1) % buffers.size()) {
        buffer &b = buffers[latest];
        if (!holds(b))
            continue;
        extent &touched = b.*how;
        if (touched.empty())
            touched = {where, where + 1};
        else if (where < touched.first)
            touched.first = where;
        else if (where >= touched.end)
            touched.end = where + 1;
        if (b.marks)
            b.marks[where - b.bytes.first] |= how == &buffer::read ? is_read : is_written;
        return reinterpret_cast<std::uint8_t *>(where);
    }
    throw stray_access{where};
}

} // namespace model
