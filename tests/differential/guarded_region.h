// Memory between two stretches that fault when they are touched.
#pragma once

#include <cstddef>

#include "tests/model/memory.h"

namespace differential {

class guarded_region {
public:
    static constexpr std::size_t size = 1 << 20;
    static constexpr std::size_t guard_size = 1 << 16;

    guarded_region();
    ~guarded_region();
    guarded_region(const guarded_region &) = delete;
    guarded_region &operator=(const guarded_region &) = delete;

    model::address begin() const { return model::address_of(mapping) + guard_size; }
    model::address end() const { return begin() + size; }

    // Makes so many bytes from there on fault as well: whole pages.
    void guard(model::address first, std::size_t bytes);

private:
    void *mapping;
};

} // namespace differential
