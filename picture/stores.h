// When to store around the cache.
#pragma once

#include "picture/machine.h"

#include <stdint.h>

namespace lumalane {

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

// The store policy for a call that writes `bytes` in rows at `dst`; finishes the stores at its end. In
// order stores are cached: kernels store the rows of a pair in turn otherwise.
class surface_stores {
public:
    surface_stores(const machine &machine, const unsigned char *dst, long long pitch,
                   long long bytes, bool in_order, bound_by bound = bound_by::stores)
        : rows(machine.rows), policy_(!in_order && outgrows_cache(machine, bytes, bound) &&
                                              begin_on_vectors(machine, dst, pitch)
                                          ? store_policy::non_temporal
                                          : store_policy::cached) {}

    ~surface_stores() {
        if (policy_ == store_policy::non_temporal)
            rows.finish_stores();
    }

    surface_stores(const surface_stores &) = delete;

    operator store_policy() const { return policy_; }

private:
    // Non-temporal stores win from a third of the last-level cache on: what is read needs its place
    // too, and other processes have theirs. But a cache of more than 24 MB is that of many cores, and
    // slower to write.
    static bool outgrows_cache(const machine &machine, long long bytes, bound_by bound) {
        const unsigned cache = machine.last_level_cache_bytes, third = cache / 3;
        const unsigned most = most_bytes(bound, cache > 128'000'000);
        return cache != 0 && bytes > (third > most ? most : third);
    }

    // Measured with 32 MB: at 8 MB of output cached stores are as fast, from 16 MB on non-temporal ones
    // are 1.2 to 1.6 times as fast. On a server with 260 MB, and 2 MB in the second level: where stores
    // alone are the bound 1.1 to 1.3 times as soon as what is read and stored outgrows the second level;
    // loads and stores, 1.0 to 1.2 times at 4 MB; stores, 1.4 to 2 times from 8 MB on; stores and
    // arithmetic, 0.8 to 1 times at 12 MB and 1.1 to 1.3 times from 25 MB on; arithmetic, 0.9 times.
    static unsigned most_bytes(bound_by bound, bool of_a_server) {
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

    // Every row, that is.
    static bool begin_on_vectors(const machine &machine, const unsigned char *dst,
                                 long long pitch) {
        const uintptr_t bits = reinterpret_cast<uintptr_t>(dst) | static_cast<uintptr_t>(pitch);
        return bits % static_cast<unsigned>(machine.rows.streamed_bytes) == 0;
    }

    const row_kernels &rows;
    store_policy policy_;
};

} // namespace lumalane
