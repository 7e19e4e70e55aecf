// Where the buffers of a drawn call lie, each in the middle of a slot so large that nothing strays
// into another one.
#pragma once

#include <sys/mman.h>

#include <cstddef>
#include <cstdint>
#include <vector>

#include <lumalane/errors.h>

#include "tests/differential/drawn_call.h"

namespace tests {

class call_memory {
public:
    static constexpr std::size_t most_buffers = 14, slot_bytes = std::size_t{64} << 20;
    static constexpr std::ptrdiff_t half = 3 << 18; // of what a buffer may use of its slot

    call_memory()
        : slots(static_cast<std::uint8_t *>(
              mmap(nullptr, most_buffers * slot_bytes, PROT_READ | PROT_WRITE,
                   MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0))) {
        differential::random r(1);
        for (std::size_t i = 0; i < most_buffers; ++i)
            for (std::ptrdiff_t at = -half; at < half; ++at)
                origin(i)[at] = static_cast<std::uint8_t>(r.next());
    }
    ~call_memory() { munmap(slots, most_buffers * slot_bytes); }
    call_memory(const call_memory &) = delete;
    call_memory &operator=(const call_memory &) = delete;

    std::uint8_t *origin(std::size_t buffer) const {
        return slots + buffer * slot_bytes + slot_bytes / 2;
    }

    // Of an address that lies in one.
    std::size_t buffer_of(const void *address) const {
        return static_cast<std::size_t>(static_cast<const std::uint8_t *>(address) - slots) /
               slot_bytes;
    }

    // Bytes counted from the origin of a buffer that a call may touch.
    static bool holds(const lumalane::byte_range &bytes) {
        return bytes.begin >= -half && bytes.end <= half;
    }

    // The buffers of a call where they lie here, all but records so many bytes further, with its
    // records filled.
    differential::placement place(const differential::drawn_call &drawn, int moved_by = 0) const {
        differential::placement places;
        for (std::size_t i = 0; i < drawn.buffers.size(); ++i)
            places.origins.push_back(model::address_of(origin(i)) +
                                     (drawn.buffers[i].fill ? 0 : moved_by));
        for (std::size_t i = 0; i < drawn.buffers.size(); ++i)
            if (drawn.buffers[i].fill)
                drawn.buffers[i].fill(origin(i), places);
        return places;
    }

    // Whether the pages of these bytes of the buffers can be read and written; a touch of them faults
    // otherwise.
    void open(const std::vector<lumalane::byte_range> &windows, bool they_are) const {
        constexpr std::uintptr_t page = 4096;
        for (std::size_t i = 0; i < windows.size(); ++i) {
            if (windows[i].empty())
                continue;
            const auto address = [&](long long offset) {
                return reinterpret_cast<std::uintptr_t>(origin(i)) +
                       static_cast<std::uintptr_t>(offset);
            };
            const std::uintptr_t first = address(windows[i].begin) & ~(page - 1);
            mprotect(reinterpret_cast<void *>(first), address(windows[i].end) - first,
                     they_are ? PROT_READ | PROT_WRITE : PROT_NONE);
        }
    }

private:
    std::uint8_t *slots;
};

} // namespace tests
