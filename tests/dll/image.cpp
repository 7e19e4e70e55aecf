#include "tests/dll/image.h"

#include <sys/mman.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <vector>

namespace dll {

namespace {

#if defined(__x86_64__)
constexpr std::uint16_t machine = 0x8664;
#elif defined(__aarch64__)
constexpr std::uint16_t machine = 0xaa64;
#endif

constexpr std::uint32_t executable = 0x2000'0000, writable = 0x8000'0000;

[[noreturn]] void fail(const char *what) { throw std::runtime_error(what); }

void require(bool condition, const char *what) {
    if (!condition)
        fail(what);
}

// The bytes of a file or of the image, read where they are.
struct bytes {
    const unsigned char *first;
    std::size_t size;

    template <class T>
    T get(std::size_t offset) const {
        require(offset <= size && sizeof(T) <= size - offset, "the file ends too early");
        T value;
        std::memcpy(&value, first + offset, sizeof value);
        return value;
    }
    std::uint16_t word(std::size_t offset) const { return get<std::uint16_t>(offset); }
    std::uint32_t dword(std::size_t offset) const { return get<std::uint32_t>(offset); }
    std::string text(std::size_t offset) const {
        std::string found;
        for (char c; (c = get<char>(offset)) != 0; ++offset)
            found += c;
        return found;
    }
};

// Of the optional header.
struct directory {
    std::uint32_t at, size;
};

} // namespace

image::image(const std::string &path) {
    std::ifstream stream(path, std::ios::binary);
    require(stream.is_open(), "no such file");
    const std::vector<char> read{std::istreambuf_iterator<char>(stream), {}};
    const bytes file{reinterpret_cast<const unsigned char *>(read.data()), read.size()};

    const std::uint32_t header = file.dword(0x3c);
    require(file.word(0) == 0x5a4d && file.dword(header) == 0x4550, "this is no DLL");
    require(file.word(header + 4) == machine, "this is a DLL for another processor");
    const std::uint32_t sections = file.word(header + 6);
    const std::uint32_t optional = header + 24;
    require(file.word(optional) == 0x20b, "this is no 64-bit DLL");
    const auto directory_of = [&](unsigned number) {
        require(number < file.dword(optional + 108), "a directory is missing");
        const std::uint32_t at = optional + 112 + 8 * number;
        return directory{file.dword(at), file.dword(at + 4)};
    };
    require(directory_of(1).size == 0, "it imports something");
    require(directory_of(9).size == 0, "it has storage of threads");

    size = file.dword(optional + 56);
    void *const mapped =
        mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    require(mapped != MAP_FAILED, "no memory");
    memory = static_cast<unsigned char *>(mapped);
    const bytes loaded{memory, size};

    const std::uint32_t table = optional + file.word(header + 20);
    for (std::uint32_t i = 0; i < sections; ++i) {
        const std::uint32_t section = table + 40 * i;
        const std::uint32_t held = std::min(file.dword(section + 8), file.dword(section + 16));
        const std::uint32_t to = file.dword(section + 12), from = file.dword(section + 20);
        require(std::size_t{from} + held <= file.size && std::size_t{to} + held <= size,
                "a section lies outside");
        std::memcpy(memory + to, file.first + from, held);
    }

    // Blocks of a page each, of entries of 16 bits.
    const std::uint64_t moved_by =
        reinterpret_cast<std::uint64_t>(memory) - file.get<std::uint64_t>(optional + 24);
    const directory blocks = directory_of(5);
    for (std::uint32_t block = 0; block < blocks.size;) {
        const std::uint32_t page = loaded.dword(blocks.at + block);
        const std::uint32_t length = loaded.dword(blocks.at + block + 4);
        require(length >= 8, "a block of relocations has no length");
        for (std::uint32_t i = 8; i < length; i += 2) {
            const std::uint16_t relocation = loaded.word(blocks.at + block + i);
            if (relocation >> 12 == 0) // padding
                continue;
            require(relocation >> 12 == 10, "a relocation of another kind");
            const std::uint32_t at = page + (relocation & 0xfff);
            const std::uint64_t address = loaded.get<std::uint64_t>(at) + moved_by;
            std::memcpy(memory + at, &address, sizeof address);
            ++relocations;
        }
        block += length;
    }

    const std::uint32_t names = directory_of(0).at;
    for (std::uint32_t i = 0; i < loaded.dword(names + 24); ++i) {
        const std::string name = loaded.text(loaded.dword(loaded.dword(names + 32) + 4 * i));
        const std::uint32_t ordinal = loaded.word(loaded.dword(names + 36) + 2 * i);
        exports[name] = memory + loaded.dword(loaded.dword(names + 28) + 4 * ordinal);
    }
    entry = memory + file.dword(optional + 16);

    // As the file asks: nothing can be executed but code, nor written but data.
    require(mprotect(memory, size, PROT_READ) == 0, "memory cannot be protected");
    for (std::uint32_t i = 0; i < sections; ++i) {
        const std::uint32_t section = table + 40 * i, what = file.dword(section + 36);
        const int access =
            PROT_READ | (what & executable ? PROT_EXEC : 0) | (what & writable ? PROT_WRITE : 0);
        unsigned char *const first = memory + file.dword(section + 12);
        const std::uint32_t length = file.dword(section + 8);
        require(mprotect(first, length, access) == 0, "memory cannot be protected");
        __builtin___clear_cache(reinterpret_cast<char *>(first),
                                reinterpret_cast<char *>(first + length));
    }
}

image::~image() { munmap(memory, size); }

void *image::operator[](const std::string &name) const {
    const auto found = exports.find(name);
    return found == exports.end() ? nullptr : found->second;
}

} // namespace dll
