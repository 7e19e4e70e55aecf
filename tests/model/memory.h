// Every access of a model goes through one object, which knows the buffers of the call and keeps
// the exact footprint in each of them.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <vector>

namespace model {

// Addresses are numbers here, so that a pointer that is moved past its buffer after the last row
// (and never used again) means nothing.
using address = std::uintptr_t;

inline address address_of(const void *pointer) { return reinterpret_cast<address>(pointer); }

// The bytes [first, end); empty if nothing was touched.
struct extent {
    address first = 0;
    address end = 0;
    bool empty() const { return first == end; }
};

// Thrown by an access outside of every buffer, and by one more than are allowed.
struct stray_access {
    address where;
};

class memory {
public:
    // Lets the model touch the bytes of one more buffer. Buffers are numbered 0, 1 ...
    void add(extent bytes) { buffers.push_back({bytes, {}, {}, nullptr, 0}); }

    // Marks every byte that is touched, in as many marks as the latest buffer has bytes.
    enum mark : std::uint8_t { is_read = 1, is_written = 2 };
    void mark_in(std::uint8_t *marks) { buffers.back().marks = marks; }

    // A call of more accesses than these throws. (Some that are the caller's error do not end.)
    void allow(std::size_t accesses) { allowed = accesses; }

    std::uint8_t load(address where) { return *touch(where, &buffer::read); }
    void store(address where, std::uint8_t value) { *touch(where, &buffer::written) = value; }

    // Runs of bytes, from the first to the last.
    template <std::size_t count>
    std::array<std::uint8_t, count> load_run(address first) {
        std::array<std::uint8_t, count> found;
        for (std::uint8_t &byte : found)
            byte = load(first++);
        return found;
    }
    template <std::size_t count>
    void store_run(address first, const std::array<std::uint8_t, count> &written) {
        for (const std::uint8_t byte : written)
            store(first++, byte);
    }

    // Reads and writes a field of a record.
    template <class T>
    T field(const T &record_field) {
        return std::bit_cast<T>(load_run<sizeof(T)>(address_of(&record_field)));
    }
    template <class T>
    void set_field(T &record_field, std::type_identity_t<T> value) {
        store_run(address_of(&record_field),
                  std::bit_cast<std::array<std::uint8_t, sizeof(T)>>(value));
    }

    // From the lowest to the highest byte of the buffer that was read, written, or either.
    extent read(std::size_t number) const { return buffers[number].read; }
    extent written(std::size_t number) const { return buffers[number].written; }
    extent footprint(std::size_t number) const;

private:
    struct buffer {
        extent bytes;
        extent read, written;
        std::uint8_t *marks;  // or null
        std::size_t next = 0; // the buffer of the latest access that followed one of this buffer

        bool holds(address where) const { return bytes.first <= where && where < bytes.end; }
    };

    // Tests spend much of their time here.
    std::uint8_t *touch(address where, extent buffer::*how) {
        if (allowed-- == 0)
            throw stray_access{where};
        if (latest >= buffers.size() || !buffers[latest].holds(where))
            follow(where);
        buffer &b = buffers[latest];
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

    // To the buffer of another access than the latest.
    void follow(address where);

    std::vector<buffer> buffers;
    std::size_t allowed = ~std::size_t{0};
    std::size_t latest = 0; // the buffer of the latest access: most often that of the next one
};

} // namespace model
