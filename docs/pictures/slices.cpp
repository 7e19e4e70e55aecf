#include "docs/pictures/slices.h"

#include <algorithm>
#include <random>

namespace pictures {

namespace {

// On every function's step, and both slices above its least height.
constexpr int width = 64, height = 48, cut = 24;

// `slice` makes the call for some rows, from a first one on.
bool compare(const std::function<call(int first, int rows)> &slice) {
    const call whole = slice(0, height);
    const memory expected(whole), found(whole);
    std::mt19937 random(1);
    for (const part &p : whole.parts)
        for (long long i = 0; i < expected.size_from(p.at); ++i) {
            const unsigned limit = p.at == pointer::alpha_plane ? 20
                                   : p.at == pointer::mask      ? 2
                                                                : 256;
            expected.at(p.at)[i] = found.at(p.at)[i] = static_cast<unsigned char>(random() % limit);
        }
    expected.run(whole);
    for (const auto &[first, rows] : {std::pair(0, cut), std::pair(cut, height - cut)}) {
        addresses moved = found.pointers();
        for (const part &p : whole.parts) {
            // Rows of the buffer for one of the call: 2 of a stretch, 1/2 of chroma.
            const rectangle &r = p.picture.front();
            moved[static_cast<int>(p.at)] += r.pitch * (first * r.rows / height);
        }
        const call part_of_it = slice(first, rows);
        part_of_it.run(part_of_it, moved);
    }
    for (const part &p : whole.parts)
        if (!std::equal(expected.at(p.at), expected.at(p.at) + expected.size_from(p.at),
                        found.at(p.at)))
            return false;
    return true;
}

} // namespace

bool same_in_slices(const lumalane::picture_function &f) {
    const int dst_pitch =
        f.shape == lumalane::picture_shape::halved_copy ? width / 2 : f.bytes_per_pixel * width;
    return compare([&](int first, int rows) {
        return make_call(f, {width, rows, width, dst_pitch, 0, height, height - first});
    });
}

bool same_in_slices(const lumalane::mix_function &f) {
    return compare([&](int, int rows) {
        return make_call(f, {width, width, f.bytes_per_pixel * width, width, rows});
    });
}

bool same_in_slices(const lumalane::key_fill_function &f) {
    return compare([&](int, int rows) {
        return make_call(f, {width, rows, f.bytes_per_pixel * width});
    });
}

bool same_in_slices(const lumalane::mask_function &f) {
    return compare([&](int, int rows) { return make_call(f, {width, width, rows}); });
}

bool same_in_slices(const lumalane::packed_stretch_function &f) {
    return compare([&](int, int rows) { return make_call(f, {2 * width, rows, 4 * width}); });
}

bool same_in_slices(const lumalane::plane_stretch_function &f) {
    return compare([&](int, int rows) {
        return make_call(f, {width, rows, width, f.times_width * width});
    });
}

bool same_in_slices(const lumalane::frame_stretch_function &f) {
    return compare([&](int, int rows) { return make_call(f, {width, 0, 0, rows, 2 * width}); });
}

} // namespace pictures
