// When to store around the cache.
#pragma once

#include "picture/machine.h"

#include <stdint.h>

#include <lumalane/store_bounds.h>

namespace lumalane {

using detail::bound_by;

enum class rows_stored : unsigned char { one_by_one, in_turn };

// The store policy for a call that writes `bytes` in rows at `dst`; finishes the stores at its end. In
// order stores are cached: kernels may store the rows of a pair one after the other otherwise. So are
// stores off the lines of the cache where rows are stored in turn, which takes up to 4 times as long
// when they begin within lines, and where arithmetic counts as well, which is made twice there.
class surface_stores {
public:
    surface_stores(const machine &machine, const unsigned char *dst, long long pitch,
                   long long bytes, bool in_order, bound_by bound,
                   rows_stored stored = rows_stored::one_by_one)
        : surface_stores(machine, dst, pitch, alignment_of(machine, bound, stored), bytes, in_order,
                         bound) {}

    // For mixes. What they read, two pictures and alpha, is as much as a surface of RGB32, and both
    // leave a small cache nothing: at 8.3 MB and with 32 MB full veils are 1.1 to 1.8 times as fast around
    // it, and subtitles as fast.
    static surface_stores of_mix(const machine &machine, const unsigned char *dst, long long pitch,
                                 long long bytes, bool in_order, bound_by bound) {
        return {machine,
                dst,
                pitch,
                alignment_of(machine, bound, rows_stored::one_by_one),
                bytes,
                in_order,
                of_a_server(machine) ? bound : bound_by::loads};
    }

    // For emit_plane() and emit_half_plane(), which need no rows on vectors. `bytes`: of all planes
    // of the call.
    static surface_stores of_plane(const machine &machine, const unsigned char *dst,
                                   long long pitch, long long bytes, bool in_order) {
        return {machine,
                dst,
                pitch,
                detail::alignment_of_planes,
                bytes,
                in_order,
                bound_by::loads_and_stores};
    }

    // For what is stored in the cache, whatever it comes to.
    static store_policy cached_on(const machine &machine) {
        return of_a_server(machine) ? store_policy::cached_fetching : store_policy::cached;
    }

    ~surface_stores() {
        if (is_non_temporal(policy_))
            rows.finish_stores();
    }

    surface_stores(const surface_stores &) = delete;

    operator store_policy() const { return policy_; }

private:
    surface_stores(const machine &machine, const unsigned char *dst, long long pitch, int alignment,
                   long long bytes, bool in_order, bound_by bound)
        : rows(machine.rows),
          policy_(in_order ? store_policy::cached
                  : outgrows_cache(machine, bytes, bound) && begin_on(alignment, dst, pitch)
                      ? around(cached_on(machine))
                      : cached_on(machine)) {}

    static int alignment_of(const machine &machine, bound_by bound, rows_stored stored) {
        return stored == rows_stored::in_turn || bound == bound_by::stores_and_arithmetic
                   ? detail::cache_line
                   : machine.rows.streamed_bytes;
    }

    // The caches of many cores are slower. There lines that are fetched ahead make rows that are copied or
    // made in pairs 1.1 to 1.7 times as fast (measured with 260 and 480 MB); with 32 MB the same loops
    // take 1.1 to 1.5 times as long with them.
    static bool of_a_server(const machine &machine) {
        return machine.last_level_cache_bytes > 128'000'000;
    }

    // Non-temporal stores win from a third of the last-level cache on: what is read needs its place
    // too, and other processes have theirs; in larger caches, which are those of many cores and slower
    // to write, from most_cached_bytes() on.
    static bool outgrows_cache(const machine &machine, long long bytes, bound_by bound) {
        const unsigned cache = machine.last_level_cache_bytes, third = cache / 3;
        const unsigned most = detail::most_cached_bytes(bound, of_a_server(machine));
        return cache != 0 && bytes > (third > most ? most : third);
    }

    // Every row, that is.
    static bool begin_on(int alignment, const unsigned char *dst, long long pitch) {
        const uintptr_t bits = reinterpret_cast<uintptr_t>(dst) | static_cast<uintptr_t>(pitch);
        return bits % static_cast<unsigned>(alignment) == 0;
    }

    const row_kernels &rows;
    store_policy policy_;
};

} // namespace lumalane
