#include "tests/rows/draw.h"

#include "abi/targets.h"
#include "picture/adjustment.h"

namespace row_tests {

namespace {

short draw_gain(random &r) {
    return static_cast<short>(r.one_in(2) ? r.one_of({64, 33, 128, 63, r.between(33, 128)})
                                          : r.one_of({0, 1, 32, 129, 200, 1024, 32767, -1, -32768,
                                                      r.between(-32768, 32767)}));
}

short draw_offset(random &r) {
    return static_cast<short>(r.one_of({0, 1, -1, 255, -255, -1023, r.between(-1023, 255)}));
}

} // namespace

lumalane::plane_adjustment draw_plane_adjustment(random &r) {
    const short gain = draw_gain(r);
    return lumalane::prepared(gain, draw_offset(r));
}

lumalane::adjustment draw_adjustment(random &r) {
    const lumalane::plane_adjustment y = draw_plane_adjustment(r), u = draw_plane_adjustment(r);
    return {y, u, lumalane::prepared(u.gain, draw_offset(r))};
}

int alignment_for(lumalane::store_policy stores) {
    return is_non_temporal(stores) ? (lumalane::targets().end() - 1)->rows.streamed_bytes : 1;
}

lumalane::store_policy draw_policy(const wanted_call &wanted) {
    using lumalane::store_policy;
    const store_policy stores =
        wanted.randomness.one_in(2) ? store_policy::cached : store_policy::cached_fetching;
    return wanted.number % 2 == 0 ? stores : around(stores);
}

std::string told(lumalane::store_policy stores) {
    return std::string(is_non_temporal(stores) ? "non-temporal" : "cached") +
           (fetched_ahead(stores) != 0 ? ", lines fetched" : "");
}

std::ptrdiff_t draw_pitch(random &r, std::ptrdiff_t size, int alignment) {
    const std::ptrdiff_t pitch = size + (r.one_in(2) ? 0 : r.between(0, 70));
    const std::ptrdiff_t aligned = (pitch + alignment - 1) & -alignment;
    return r.one_in(4) ? -aligned : aligned;
}

bytes draw_alpha(random &r, std::ptrdiff_t size) {
    bytes alpha;
    while (static_cast<std::ptrdiff_t>(alpha.size()) < size) {
        const int kind = r.between(0, 4), length = r.one_of({8, 16, 64, 128, r.between(1, 128)});
        for (int i = 0; i < length; ++i)
            alpha.push_back(static_cast<unsigned char>(kind <= 1   ? 0
                                                       : kind == 2 ? r.between(1, 127)
                                                       : kind == 3 ? r.between(16, 255)
                                                                   : r.between(0, 255)));
    }
    alpha.resize(size);
    return alpha;
}

bytes averaged(bytes a, const bytes &b) {
    for (std::size_t i = 0; i < a.size(); ++i)
        a[i] = static_cast<unsigned char>((a[i] + b[i] + 1) >> 1);
    return a;
}

std::string told(const lumalane::plane_adjustment &by) {
    return "gain " + std::to_string(by.gain) + ", offset " + std::to_string(by.offset);
}

std::string told(const lumalane::adjustment &by) {
    return "y " + told(by.y) + ", u " + told(by.u) + ", v " + told(by.v);
}

} // namespace row_tests
