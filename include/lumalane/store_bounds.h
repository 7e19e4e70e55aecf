// From how many bytes on the library stores a surface around the cache, and where. Callers need none
// of it: the library decides for each call, and convert() makes one call of what several would store
// otherwise.
#ifndef LUMALANE_STORE_BOUNDS_H
#define LUMALANE_STORE_BOUNDS_H

#include <lumalane/compiled_for.h>

namespace lumalane {
namespace detail {

constexpr int cache_line = 64; // bytes

// On what rows of planes begin that are copied or adjusted around the cache. (Others begin on cache
// lines or on what the target's stores ask for: see surface_stores.)
constexpr int alignment_of_planes = 8;

// What bounds a function whose surface outgrows the second-level cache.
enum class bound_by : unsigned char {
    loads, // of two pictures and alpha
    loads_and_stores,
    stores,
    stores_and_arithmetic,
    arithmetic_and_stores,
    arithmetic
};

// Of surfaces made from pictures: the least, which more arithmetic raises.
constexpr bound_by bound_of_yuy2 = bound_by::loads_and_stores;
constexpr bound_by bound_of_rgb = bound_by::stores_and_arithmetic;

inline namespace LUMALANE_COMPILED_FOR {

// The most bytes that are stored in the cache where a third of the last level has room for more.
//
// Measured with 32 MB: at 8.3 MB of output cached stores are 1.2 to 2.5 times as fast where little is
// computed, from 16 MB on non-temporal ones are 1.2 to 1.8 times as fast. On a server with 260 MB, and
// 2 MB in the second level: where what is read and stored together is 1.2 to 1.5 times as much as the
// second level non-temporal stores become as fast; soon they are 1.1 to 1.4 times as fast, and before
// that 1.1 to 2.5 times as slow; where arithmetic comes before stores they are 1.1 to 1.2 times as slow
// at 16 MB and 1.1 times as fast at 66 MB; where arithmetic is the bound, 1.1 to 1.3 times as slow at
// all sizes.
constexpr unsigned most_cached_bytes(bound_by bound, bool of_a_server) {
    switch (bound) {
    case bound_by::loads:
        return of_a_server ? 800'000 : 8'000'000;
    case bound_by::loads_and_stores:
        return of_a_server ? 1'250'000 : 8'000'000;
    case bound_by::stores:
        return of_a_server ? 2'300'000 : 12'000'000;
    case bound_by::stores_and_arithmetic:
        return of_a_server ? 2'300'000 : 16'000'000;
    case bound_by::arithmetic_and_stores:
        return of_a_server ? 32'000'000 : 16'000'000;
    default:
        return -1U;
    }
}

} // namespace LUMALANE_COMPILED_FOR

} // namespace detail
} // namespace lumalane

#endif
