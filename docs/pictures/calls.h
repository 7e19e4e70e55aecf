// Calls of all functions in one form: their bytes as the companion tells them, and buffers for them.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <vector>

#include <lumalane/footprint.h>

namespace pictures {

using lumalane::pointer;
constexpr int pointer_count = lumalane::pointer_count;

/// Where rows of the picture are expected in a buffer by who knows sizes and pitches alone.
struct rectangle {
    long long first, row_bytes, pitch, rows;
};

/// A buffer of a call: how it is drawn.
struct part {
    pointer at;
    int unit; ///< bytes of a cell: of a pixel, mostly
    std::vector<rectangle> picture;
};

/// Sets of rows of one buffer, read or written.
struct told_rows {
    pointer at;
    lumalane::row_set rows;
    bool read, written;
};

struct told {
    std::vector<told_rows> sets;
    void reads(pointer p, const lumalane::row_set &r) { sets.push_back({p, r, true, false}); }
    void writes(pointer p, const lumalane::row_set &r) { sets.push_back({p, r, false, true}); }
    void writes_again(pointer p, const lumalane::row_set &r) { writes(p, r); }
    void replaces(pointer p, const lumalane::row_set &r) { sets.push_back({p, r, true, true}); }
};

using addresses = std::array<unsigned char *, pointer_count>;

struct call {
    std::string name, arguments; ///< "width 20, height 6, ..."
    lumalane::footprint bytes;
    std::vector<told_rows> rows;
    std::vector<part> parts; ///< what is written first
    unsigned key = 0x00808080;
    unsigned rgb16_layout = 0;
    std::function<void(const call &, const addresses &)> run;
};

/// The bytes that a call touches, each pointer's in a buffer of its own.
class memory {
public:
    explicit memory(const call &, unsigned char fill = 0);
    unsigned char *at(pointer) const;
    long long size_from(pointer) const; ///< bytes from the pointer to the end of its buffer
    const addresses &pointers() const { return where; }
    void run(const call &c) const { c.run(c, where); }

private:
    std::array<std::vector<unsigned char>, pointer_count> bytes;
    addresses where = {};
    std::array<long long, pointer_count> sizes = {};
};

const char *name_of(pointer);

// Calls of one function with the numbers given, from overloads of one name.
call make_call(const lumalane::picture_function &, lumalane::picture_call);
call make_call(const lumalane::mix_function &, lumalane::mix_call);
call make_call(const lumalane::key_fill_function &, lumalane::key_fill_call);
call make_call(const lumalane::mask_function &, lumalane::mask_call);
call make_call(const lumalane::packed_stretch_function &, lumalane::packed_stretch_call);
call make_call(const lumalane::plane_stretch_function &, lumalane::plane_stretch_call);
call make_call(const lumalane::frame_stretch_function &, lumalane::frame_stretch_call);

/// A small one off the step, and some of usual sizes.
struct samples {
    std::string least; ///< the least sizes, as text
    call small;
    std::vector<call> usual;
};
samples samples_of(const lumalane::picture_function &);
samples samples_of(const lumalane::mix_function &);
samples samples_of(const lumalane::key_fill_function &);
samples samples_of(const lumalane::mask_function &);
samples samples_of(const lumalane::packed_stretch_function &);
samples samples_of(const lumalane::plane_stretch_function &);
samples samples_of(const lumalane::frame_stretch_function &);

} // namespace pictures
