// The only file that knows how a platform maps memory.
#include "tests/differential/guarded_region.h"

#include <new>

#ifdef _WIN32
#include <windows.h>
#else
#include <sys/mman.h>
#endif

namespace differential {

namespace {
constexpr std::size_t mapping_size = guarded_region::size + 2 * guarded_region::guard_size;
}

#ifdef _WIN32

guarded_region::guarded_region()
    : mapping(VirtualAlloc(nullptr, mapping_size, MEM_RESERVE, PAGE_NOACCESS)) {
    if (!mapping ||
        !VirtualAlloc(reinterpret_cast<void *>(begin()), size, MEM_COMMIT, PAGE_READWRITE))
        throw std::bad_alloc();
}

guarded_region::~guarded_region() { VirtualFree(mapping, 0, MEM_RELEASE); }

void guarded_region::guard(model::address first, std::size_t bytes) {
    DWORD before;
    if (!VirtualProtect(reinterpret_cast<void *>(first), bytes, PAGE_NOACCESS, &before))
        throw std::bad_alloc();
}

#else

guarded_region::guarded_region()
    : mapping(mmap(nullptr, mapping_size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)) {
    if (mapping == MAP_FAILED ||
        mprotect(reinterpret_cast<void *>(begin()), size, PROT_READ | PROT_WRITE) != 0)
        throw std::bad_alloc();
}

guarded_region::~guarded_region() { munmap(mapping, mapping_size); }

void guarded_region::guard(model::address first, std::size_t bytes) {
    if (mprotect(reinterpret_cast<void *>(first), bytes, PROT_NONE) != 0)
        throw std::bad_alloc();
}

#endif

} // namespace differential
