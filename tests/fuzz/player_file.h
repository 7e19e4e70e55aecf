// A file that has the fuzzer's bytes, in memory.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace fuzz {

class file {
public:
    file(const std::uint8_t *data, std::size_t size) : descriptor(memfd_create("input", 0)) {
        if (descriptor < 0 || write(descriptor, data, size) != static_cast<ssize_t>(size))
            std::abort();
    }
    ~file() { close(descriptor); }
    file(const file &) = delete;
    file &operator=(const file &) = delete;

    std::string name() const { return "/proc/self/fd/" + std::to_string(descriptor); }

private:
    int descriptor;
};

} // namespace fuzz
