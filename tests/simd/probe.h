// The vectors on plain memory: what a target's own compilation does, for tests that are compiled for
// any processor.
//
// probe.cpp is compiled once per target, as the row kernels are, and makes one of these for each.
#pragma once

#include "abi/targets.h"

namespace tests {

// Bytes of the widest vector that any target has.
inline constexpr int widest_vector = 64;

// Of an operand or a result: bytes<lanes> or words<lanes>.
struct vector_type {
    int bytes_per_lane, lanes;
};

// One operation of the vocabulary, on operands of one type each.
struct operation {
    const char *name; // if it takes several to try one, all of them
    int immediate;    // the count or factor that is its template argument; 0: none
    vector_type result;
    int operands;
    vector_type operand[3];
    // The operands lie one after the other at `from`; `to` is aligned to the widest vector.
    void (*run)(unsigned char *to, const unsigned char *from);
};

// Planes of samples, one for each channel of the pixels, loaded permuted and interleaved.
struct interleaving {
    const char *loaded_by, *interleaved_by;
    int channels, samples;       // of each plane
    int (*sample_of)(int pixel); // of a channel
    int pixels, bytes_per_pixel;
    int left_out; // bytes at the start of every 32 that are not stored
    // The planes lie one after the other at `from`.
    void (*run)(unsigned char *to, const unsigned char *from);
};

// The RGB16 surfaces.
struct rgb16_packing {
    int pixels;
    // At `from` a plane of red samples, one of green and one of blue.
    void (*run)(unsigned char *to, const unsigned char *from, unsigned layout);
};

template <class Entry, int capacity>
struct table {
    Entry entry[capacity];
    int size;

    const Entry *begin() const { return entry; }
    const Entry *end() const { return entry + size; }
};

struct probe {
    table<operation, 640> operations;       // for every width of vectors that the target has
    table<interleaving, 192> interleavings; // for every width that it interleaves
    table<rgb16_packing, 4> rgb16_packings;
    bool streams; // stores go around the cache where they are to
};

// The processor need not be able to run the target, if none of the functions is called.
const probe &probe_of(const lumalane::target &);

} // namespace tests
