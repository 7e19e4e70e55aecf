// Why a call of the companion headers is refused. A refused call has read no plane and written
// nothing.
//
//     const lumalane::status s = lumalane::checked::loadimage_rgb32(...);
//     char text[lumalane::status_text_size];
//     if (!s)
//         log(s.write(text, sizeof text));   // "dst: needs bytes [0, 1228800), has 1228799"
#ifndef LUMALANE_ERRORS_H
#define LUMALANE_ERRORS_H

#include <lumalane/compiled_for.h>

#include <stddef.h>

namespace lumalane {

enum class error {
    none,

    // What a call is given.
    null_plane,           ///< a plane that the call reads or writes is null
    null_record,          ///< a record that the call reads is null
    width_too_small,      ///< the width is below the least one
    width_off_step,       ///< the call would not end: the width is no multiple of its step
    height_too_small,     ///< the height is below the least one
    height_odd,           ///< the height is odd, for which the function writes nothing
    size_too_large,       ///< a size, a stride or the number of a row is above largest_size
    stride_too_small,     ///< the stride is less than the bytes of a row, in whole steps
    stride_unsupported,   ///< the stride is odd or negative, which the function does not allow
    unknown_rgb16_layout, ///< the RGB16 layout is none of the four
    unknown_plane_number, ///< the plane number is not 1, 2 or 3
    unsupported_formats,  ///< no function makes the one format of the other
    sizes_differ,         ///< the destination has not the size that it should have

    // The memory of its buffers.
    buffer_too_small, ///< bytes that the call reads or writes lie outside of the buffer
    planes_overlap,   ///< planes of one surface would overlap
    buffers_overlap,  ///< bytes that the call writes lie in another of its buffers, too
};

inline namespace LUMALANE_COMPILED_FOR {

/// What an error means, as a sentence without its full stop.
constexpr const char *message_of(error e) {
    switch (e) {
    case error::none:
        return "no error";
    case error::null_plane:
        return "the plane is null";
    case error::null_record:
        return "the record is null";
    case error::width_too_small:
        return "the width is below the least one";
    case error::width_off_step:
        return "the width is no multiple of the step: the call would not end";
    case error::height_too_small:
        return "the height is below the least one";
    case error::height_odd:
        return "the height is odd: the call would write nothing";
    case error::size_too_large:
        return "a size, a stride or the number of a row is too large";
    case error::stride_too_small:
        return "the stride is less than the bytes of a row, in whole steps";
    case error::stride_unsupported:
        return "the stride is odd or negative, which the function does not allow";
    case error::unknown_rgb16_layout:
        return "the RGB16 layout is none of the four";
    case error::unknown_plane_number:
        return "the plane number is not 1, 2 or 3";
    case error::unsupported_formats:
        return "no function makes this format of that one";
    case error::sizes_differ:
        return "the destination has not the size that it should have";
    case error::buffer_too_small:
        return "the buffer is too small";
    case error::planes_overlap:
        return "planes of the surface would overlap";
    case error::buffers_overlap:
        return "bytes that are written belong to another buffer, too";
    }
    return "unknown error";
}

} // namespace LUMALANE_COMPILED_FOR

/// The largest width, height and magnitude of a stride.
constexpr int largest_size = 1 << 26;

/// Bytes from `begin` up to, and without, `end`, counted from a pointer. Negative numbers are bytes
/// before it.
struct byte_range {
    long long begin = 0, end = 0;
    LUMALANE_ALWAYS_INLINE constexpr bool empty() const { return begin >= end; }
};

/// A text that status::write() makes has fewer bytes than this.
constexpr size_t status_text_size = 200;

/// Whether a call was made, and if not, why.
struct [[nodiscard]] status {
    error code = error::none;
    const char *argument = nullptr; ///< the name of the buffer or number that is refused, or null
    const char *other = nullptr;    ///< buffers_overlap: the name of the other buffer
    byte_range needed;              ///< buffer_too_small: what the call reads and writes,
    byte_range available;           ///< and what there is

    LUMALANE_ALWAYS_INLINE constexpr explicit operator bool() const { return code == error::none; }

    /// Writes what happened as a text of at most `size` - 1 bytes and a null byte: for example
    /// "dst: needs bytes [0, 1228800), has 1228799". Returns `text`. A `size` of 0 writes nothing.
    LUMALANE_ALWAYS_INLINE constexpr char *write(char *text, size_t size) const;
};

namespace detail {
inline namespace LUMALANE_COMPILED_FOR {

// A text that ends where its memory does.
class text_writer {
public:
    constexpr text_writer(char *text_, size_t size_) : text(text_), size(size_) {
        if (size > 0)
            text[0] = 0;
    }

    constexpr text_writer &operator<<(const char *s) {
        for (; *s != 0; ++s)
            put(*s);
        return *this;
    }

    constexpr text_writer &operator<<(long long number) {
        unsigned long long left = static_cast<unsigned long long>(number);
        if (number < 0) {
            put('-');
            left = 0 - left;
        }
        char digits[20] = {};
        int count = 0;
        do
            digits[count++] = static_cast<char>('0' + left % 10);
        while ((left /= 10) != 0);
        while (count > 0)
            put(digits[--count]);
        return *this;
    }

    constexpr text_writer &operator<<(const byte_range &r) {
        return *this << "[" << r.begin << ", " << r.end << ")";
    }

private:
    constexpr void put(char c) {
        if (length + 1 >= size)
            return;
        text[length++] = c;
        text[length] = 0;
    }

    char *text;
    size_t size;
    size_t length = 0;
};

constexpr char *write(const status &s, char *text, size_t size) {
    text_writer to(text, size);
    if (s.argument)
        to << s.argument << ": ";
    if (s.code == error::buffer_too_small) {
        to << "needs bytes " << s.needed << ", has ";
        if (s.available.begin == 0)
            to << s.available.end;
        else
            to << s.available;
    } else if (s.code == error::buffers_overlap && s.other) {
        to << "bytes that are written belong to " << s.other << ", too";
    } else {
        to << message_of(s.code);
    }
    return text;
}

} // namespace LUMALANE_COMPILED_FOR
} // namespace detail

LUMALANE_ALWAYS_INLINE constexpr char *status::write(char *text, size_t size) const {
    return detail::write(*this, text, size);
}

} // namespace lumalane

#endif
