// Memory of 32 GB, of which few pages are ever touched: on processors with 64 bits.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>

#include <gtest/gtest.h>

#include "tests/model/memory.h"

namespace tests {

// `half` bytes on both sides of its origin: a file without a name, which has those pages that were read or
// written, and tells which.
class sparse_memory {
public:
    static constexpr std::ptrdiff_t half = std::ptrdiff_t{16} << 30;

    sparse_memory() : file(memfd_create("sparse", 0)) {
        forget();
        first =
            mmap(nullptr, 2 * half, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_NORESERVE, file, 0);
    }
    ~sparse_memory() {
        munmap(first, 2 * half);
        close(file);
    }
    sparse_memory(const sparse_memory &) = delete;
    sparse_memory &operator=(const sparse_memory &) = delete;

    bool mapped() const { return first != MAP_FAILED; }
    std::uint8_t *origin() const { return static_cast<std::uint8_t *>(first) + half; }
    model::extent extent() const {
        return {model::address_of(origin() - half), model::address_of(origin() + half)};
    }

    // Every byte is 0 and no page was touched.
    void forget() const {
        ASSERT_EQ(ftruncate(file, 0), 0);
        ASSERT_EQ(ftruncate(file, 2 * half), 0);
    }

    // Calls `visit(offset)` for every byte of the pages that were touched.
    template <class Visit>
    void each_byte(Visit visit) const {
        for (off_t end, at = lseek(file, 0, SEEK_DATA); at >= 0; at = lseek(file, end, SEEK_DATA)) {
            end = lseek(file, at, SEEK_HOLE);
            for (; at < end; ++at)
                visit(at - half);
        }
    }

    // Samples that differ from page to page, up to the greatest one.
    void fill_touched(unsigned greatest) const {
        each_byte([&](std::ptrdiff_t at) {
            const std::uint64_t mixed = static_cast<std::uint64_t>(at) * 0x9e3779b97f4a7c15;
            origin()[at] = static_cast<std::uint8_t>((mixed >> 40) % (greatest + 1));
        });
    }

private:
    int file;
    void *first;
};

} // namespace tests
