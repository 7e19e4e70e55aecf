// What the tests of edge cases share: a picture, a surface and what was written on it.
#pragma once

#include <algorithm>
#include <ostream>
#include <vector>

#include "tests/differential/guarded_region.h"
#include "tests/targets.h"

namespace tests {

using bytes = std::vector<unsigned char>;

// A run of bytes that were written: from an offset in the destination, so many.
struct run {
    int at, count;
    bool operator==(const run &) const = default;
};
inline std::ostream &operator<<(std::ostream &out, const run &r) {
    return out << "[" << r.at << ", +" << r.count << "]";
}
using runs = std::vector<run>;

// A destination that is marked all over.
class surface_test : public on_each_target {
protected:
    static constexpr unsigned char untouched = 0xa5;
    static constexpr contrast_data neutral{64, 64, 0, 0, 0, 0, 0, 0};

    bytes dst = bytes(1 << 16, untouched);

    static unsigned char byte(int value) { return static_cast<unsigned char>(value); }

    // So many bytes of a plane, and of the destination.
    static bytes slice(const bytes &plane, std::size_t count, std::size_t at = 0) {
        return {plane.begin() + at, plane.begin() + at + count};
    }
    bytes written(std::size_t count, std::size_t at = 0) const { return slice(dst, count, at); }

    static void fill_row(bytes &plane, int row, int row_bytes, int sample) {
        std::fill_n(plane.begin() + row * row_bytes, row_bytes, byte(sample));
    }

    // The pixel that a colour becomes.
    static bytes rgb32(int y_sample, int u_sample, int v_sample) {
        bytes luma(32, byte(y_sample)), cb(8, byte(u_sample)), cr(8, byte(v_sample));
        bytes converted(128);
        loadimage_rgb32(luma.data(), cb.data(), cr.data(), converted.data(), 16, 2, 16, 64,
                        nullptr);
        return slice(converted, 4);
    }

    // Where the destination does not hold the mark any more. White never equals it.
    runs written_runs() const {
        runs found;
        for (int i = 0; i < static_cast<int>(dst.size()); ++i) {
            if (dst[i] == untouched)
                continue;
            if (found.empty() || found.back().at + found.back().count != i)
                found.push_back({i, 0});
            ++found.back().count;
        }
        return found;
    }

    void wipe() { dst.assign(dst.size(), untouched); }

    static void set_contrast(contrast_data parameters) { get_contrast_data(&parameters); }

    // For pointers that are not to be read.
    static unsigned char *unmapped() {
        static const differential::guarded_region region;
        return reinterpret_cast<unsigned char *>(region.end());
    }
};

// A picture function from three planes, or from a packed picture in the first of them.
class picture_test : public surface_test {
protected:
    bytes y = bytes(1 << 16), u = bytes(1 << 16), v = bytes(1 << 16);
    tag_ajust_contrast_info info{};

    void fill(int y_sample, int u_sample, int v_sample) {
        y.assign(y.size(), static_cast<unsigned char>(y_sample));
        u.assign(u.size(), static_cast<unsigned char>(u_sample));
        v.assign(v.size(), static_cast<unsigned char>(v_sample));
    }

    void load(void (*function)(LUMALANE_PARAMETERS_picture), int width, int height, int src_pitch,
              int dst_pitch) {
        function(y.data(), u.data(), v.data(), dst.data(), width, height, src_pitch, dst_pitch,
                 &info);
    }

    // Without the record, for the functions that do not read it.
    void load_alone(void (*function)(LUMALANE_PARAMETERS_picture), int width, int height,
                    int src_pitch, int dst_pitch) {
        function(y.data(), u.data(), v.data(), dst.data(), width, height, src_pitch, dst_pitch,
                 nullptr);
    }

    // Without the record and without chroma planes.
    void load_luma_alone(void (*function)(LUMALANE_PARAMETERS_picture), int width, int height,
                         int src_pitch, int dst_pitch) {
        function(y.data(), unmapped(), unmapped(), dst.data(), width, height, src_pitch, dst_pitch,
                 nullptr);
    }
};

} // namespace tests
