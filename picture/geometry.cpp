#include "picture/geometry.h"

namespace lumalane {

namespace {

struct extent {
    long long begin, end; // addresses
};

extent extent_of(const byte_rows &rows) {
    const long long first = static_cast<long long>(reinterpret_cast<uintptr_t>(rows.first));
    const long long last = first + (rows.count - 1) * rows.pitch;
    return {first < last ? first : last, (first < last ? last : first) + rows.bytes};
}

long long magnitude(long long a) { return a < 0 ? -a : a; }

// Of numbers that are not negative. (32-bit compilers call a library for what is wider than an
// address.)
long long remainder(long long a, long long b) {
    if (a < b)
        return a;
    return static_cast<long long>(static_cast<uintptr_t>(a) % static_cast<uintptr_t>(b));
}

} // namespace

bool rows_apart(const byte_rows &rows) {
    return rows.count <= 1 || magnitude(rows.pitch) >= rows.bytes;
}

bool apart(const byte_rows &a, const byte_rows &b) {
    const extent of_a = extent_of(a), of_b = extent_of(b);
    if (of_a.end <= of_b.begin || of_b.end <= of_a.begin)
        return true;
    const long long pitch = magnitude(a.pitch), distance = of_b.begin - of_a.begin;
    if (pitch == 0 || magnitude(b.pitch) != pitch)
        return false;
    // All rows of one have the same place between two rows of the other.
    const long long behind =
        distance >= 0 ? remainder(distance, pitch) : pitch - 1 - remainder(-distance - 1, pitch);
    return behind >= a.bytes && behind + b.bytes <= pitch;
}

} // namespace lumalane
