// A DLL for 64-bit Windows in the memory of a Linux process, of the same processor: its sections, moved
// to where they are. Nothing of Windows is there; a DLL that imports nothing needs nothing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>

namespace dll {

class image {
public:
    // Throws std::runtime_error, with what is wrong.
    explicit image(const std::string &path);
    ~image();
    image(const image &) = delete;
    image &operator=(const image &) = delete;

    // The address of the exported name, null if there is none.
    void *operator[](const std::string &name) const;

    std::map<std::string, void *> exports;
    void *entry = nullptr;
    unsigned relocations = 0; // that were applied

private:
    unsigned char *memory = nullptr;
    std::size_t size = 0;
};

} // namespace dll
