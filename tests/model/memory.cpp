#include "tests/model/memory.h"

namespace model {

std::uint8_t *memory::touch(address where) {
    const auto holds = [&](const buffer &b) {
        return b.bytes.first <= where && where < b.bytes.end;
    };
    for (std::size_t tried = 0; tried < buffers.size();
         ++tried, latest = (latest + 1) % buffers.size()) {
        buffer &b = buffers[latest];
        if (!holds(b))
            continue;
        if (b.touched.empty())
            b.touched = {where, where + 1};
        else if (where < b.touched.first)
            b.touched.first = where;
        else if (where >= b.touched.end)
            b.touched.end = where + 1;
        return reinterpret_cast<std::uint8_t *>(where);
    }
    throw stray_access{where};
}

} // namespace model
