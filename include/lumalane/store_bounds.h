// From how many bytes on the library stores a surface around the cache, and where. Callers need none
// of it: the library decides for each call, and convert() makes one call of what several would store
// otherwise.
#ifndef LUMALANE_STORE_BOUNDS_H
#define LUMALANE_STORE_BOUNDS_H

namespace lumalane {
namespace detail {

constexpr int cache_line = 64; // bytes

// On what rows of planes begin that are copied or adjusted around the cache. (Those of other surfaces
// begin on the target's vectors.)
constexpr int alignment_of_planes = 8;

// What bounds a function whose surface outgrows the second-level cache, from hardly any arithmetic to
// much. (Rows that are stored one after the other make what they share anew: where arithmetic is the
// bound that costs its gain.)
enum class bound_by : unsigned char {
    stores_alone,
    loads_and_stores,
    stores,
    stores_and_arithmetic,
    arithmetic
};

// Of functions without an adjustment. (Those with one have no less to do.)
constexpr bound_by bound_of_yuy2 = bound_by::stores_alone;
constexpr bound_by bound_of_planar_rgb32 = bound_by::stores;
constexpr bound_by bound_of_packed_rgb32 = bound_by::stores_alone;

// The most bytes that are stored in the cache where a third of the last level has room for more.
//
// Measured with 32 MB: at 8 MB of output cached stores are as fast, from 16 MB on non-temporal ones
// are 1.2 to 1.6 times as fast. On a server with 260 MB, and 2 MB in the second level: where stores
// alone are the bound 1.1 to 1.3 times as soon as what is read and stored outgrows the second level;
// loads and stores, 1.0 to 1.2 times at 4 MB; stores, 1.4 to 2 times from 8 MB on; stores and
// arithmetic, 0.8 to 1 times at 12 MB and 1.1 to 1.3 times from 25 MB on; arithmetic, 0.9 times.
constexpr unsigned most_cached_bytes(bound_by bound, bool of_a_server) {
    switch (bound) {
    case bound_by::stores_alone:
        return of_a_server ? 1'250'000 : 8'000'000;
    case bound_by::loads_and_stores:
        return of_a_server ? 4'000'000 : 8'000'000;
    case bound_by::stores:
        return 8'000'000;
    case bound_by::stores_and_arithmetic:
        return 16'000'000;
    default:
        return -1U;
    }
}

} // namespace detail
} // namespace lumalane

#endif
