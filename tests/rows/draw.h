// How the calls of each kind of row kernels are drawn: one function per kind of rows/rows.h.
#pragma once

#include <memory>
#include <string_view>
#include <type_traits>

#include "tests/differential/random.h"
#include "tests/rows/row_call.h"

namespace row_tests {

using differential::random;

// What rows.inc says of a kernel.
struct kernel_facts {
    std::string_view name;
    int multiple, group, read, written;
};

// Which call: `number` runs through the modes of the kind, so that they come in turn.
struct wanted_call {
    kernel_facts facts;
    std::ptrdiff_t n;
    unsigned number;
    random &randomness;
};

template <class Kernel>
using member = Kernel *lumalane::row_kernels::*;

row_call draw_planar_to_surface(const wanted_call &,
                                member<lumalane::row_kernel::planar_to_surface>);
row_call draw_packed_to_surface(const wanted_call &,
                                member<lumalane::row_kernel::packed_to_surface>);
row_call draw_plane_to_surface(const wanted_call &, member<lumalane::row_kernel::plane_to_surface>);
row_call draw_chroma_interleaving(const wanted_call &,
                                  member<lumalane::row_kernel::chroma_interleaving>);
row_call draw_yuy2_unpacking(const wanted_call &, member<lumalane::row_kernel::yuy2_unpacking>);
row_call draw_between_two_rows(const wanted_call &, member<lumalane::row_kernel::between_two_rows>);
row_call draw_plane_stretching(const wanted_call &, member<lumalane::row_kernel::plane_stretching>);
row_call draw_doubled_to_surface(const wanted_call &,
                                 member<lumalane::row_kernel::doubled_to_surface>);
row_call draw_keyed_to_surface(const wanted_call &, member<lumalane::row_kernel::keyed_to_surface>);
row_call draw_surface_to_planes(const wanted_call &,
                                member<lumalane::row_kernel::surface_to_planes>);
row_call draw_filling(const wanted_call &, member<lumalane::row_kernel::filling>);
row_call draw_marker_to_key(const wanted_call &, member<lumalane::row_kernel::marker_to_key>);
row_call draw_mixing_pairs(const wanted_call &, member<lumalane::row_kernel::mixing_pairs>);
row_call draw_blending_planes(const wanted_call &, member<lumalane::row_kernel::blending_planes>);
row_call draw_finishing(const wanted_call &, member<lumalane::row_kernel::finishing>);

// ---- Parts of calls ----------------------------------------------------------------------------

// Gains whose product fits 15 bits, at both ends and between, and others up to the extremes.
lumalane::plane_adjustment draw_plane_adjustment(random &);
lumalane::adjustment draw_adjustment(random &);

// What rows of such stores are aligned to: for the widest target, and so for all.
int alignment_for(lumalane::store_policy);

// From row to row of so many bytes, now and then upwards.
std::ptrdiff_t draw_pitch(random &, std::ptrdiff_t size, int alignment = 1);

// Alpha with stretches of one kind: nothing, some, opaque, anything.
bytes draw_alpha(random &, std::ptrdiff_t size);

// Of every two bytes the average, rounded up.
bytes averaged(bytes, const bytes &);

std::string told(const lumalane::plane_adjustment &);
std::string told(const lumalane::adjustment &);

// In the cache and around it by turns, and lines fetched ahead or not.
lumalane::store_policy draw_policy(const wanted_call &);

std::string told(lumalane::store_policy);

// Of two calls, one after the other, of each four: an adjustment of a plane or of a picture. Else null.
template <class Adjustment>
std::shared_ptr<const Adjustment> draw_by(const wanted_call &wanted) {
    if (wanted.number / 2 % 2 == 0)
        return nullptr;
    if constexpr (std::is_same_v<Adjustment, lumalane::adjustment>)
        return std::make_shared<const Adjustment>(draw_adjustment(wanted.randomness));
    else
        return std::make_shared<const Adjustment>(draw_plane_adjustment(wanted.randomness));
}

// How often in a call, and by what, if by anything.
template <class Adjustment>
struct repetition {
    std::ptrdiff_t count;
    lumalane::store_policy stores;
    std::shared_ptr<const Adjustment> by; // or null

    explicit repetition(const wanted_call &wanted)
        : count(wanted.randomness.between(1, 3)), stores(draw_policy(wanted)),
          by(draw_by<Adjustment>(wanted)) {}

    bool non_temporal() const { return is_non_temporal(stores); }

    template <class Rows>
    void tell(Rows &rows) const {
        rows.count = count, rows.stores = stores, rows.by = by.get();
    }

    std::string told() const {
        return std::to_string(count) + " times, " + row_tests::told(stores) +
               (by ? ", " + row_tests::told(*by) : "");
    }
};

} // namespace row_tests
