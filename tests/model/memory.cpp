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

void memory::follow(address where) {
    std::size_t found = buffers.empty() ? 0 : buffers[latest].next;
    if (found >= buffers.size() || !buffers[found].holds(where))
        found = static_cast<std::size_t>(
            std::ranges::find_if(buffers, [&](const buffer &b) { return b.holds(where); }) -
            buffers.begin());
    if (found == buffers.size())
        throw stray_access{where};
    buffers[latest].next = found;
    latest = found;
}

} // namespace model
