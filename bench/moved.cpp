#include "bench/moved.h"

#include <lumalane/footprint.h>

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

namespace lumalane::bench {
namespace {

constexpr size picture{320, 240};

// Bytes of one pointer, as ranges that may overlap.
class ranges {
public:
    void add(const row_set &rows) {
        if (rows.empty())
            return;
        for (long long column = 0; column < rows.columns; ++column)
            for (long long row = 0; row < rows.rows; ++row) {
                const long long begin = rows.first + row * rows.pitch + column * rows.column_pitch;
                all_.emplace_back(begin, begin + rows.bytes);
            }
    }

    long long bytes() const {
        std::vector<std::pair<long long, long long>> sorted = all_;
        std::sort(sorted.begin(), sorted.end());
        long long sum = 0, done = sorted.empty() ? 0 : sorted.front().first;
        for (const auto &[begin, end] : sorted) {
            sum += std::max(end - std::max(begin, done), 0LL);
            done = std::max(done, end);
        }
        return sum;
    }

private:
    std::vector<std::pair<long long, long long>> all_{};
};

struct receiver {
    ranges read[pointer_count], written[pointer_count];

    void reads(pointer p, const row_set &rows) { read[int(p)].add(rows); }
    void writes(pointer p, const row_set &rows) { written[int(p)].add(rows); }
    void writes_again(pointer p, const row_set &rows) { writes(p, rows); }
    void replaces(pointer p, const row_set &rows) {
        reads(p, rows);
        writes(p, rows);
    }
};

// The call of a job on a scene without gaps.

picture_call call_of(const lumalane::picture_function &, int dst_pitch) {
    return {picture.width,  picture.height, picture.width, dst_pitch, 0,
            picture.height, picture.height};
}
mix_call call_of(const lumalane::mix_function &, int dst_pitch) {
    return {picture.width, picture.width, dst_pitch, picture.width, picture.height};
}
key_fill_call call_of(const lumalane::key_fill_function &, int dst_pitch) {
    return {picture.width, picture.height, dst_pitch};
}
mask_call call_of(const lumalane::mask_function &, int dst_pitch) {
    return {picture.width, dst_pitch, picture.height};
}
packed_stretch_call call_of(const lumalane::packed_stretch_function &, int dst_pitch) {
    return {2 * picture.width, picture.height, dst_pitch};
}
plane_stretch_call call_of(const lumalane::plane_stretch_function &, int dst_pitch) {
    return {picture.width, picture.height, picture.width, dst_pitch};
}
frame_stretch_call call_of(const lumalane::frame_stretch_function &, int dst_pitch) {
    return {picture.width, 0, 0, picture.height, dst_pitch};
}

// Between the steps of its lower rows, which are told as one.
double gaps_of(const lumalane::picture_function &f) {
    return f.shape == picture_shape::planar_pairs_with_gaps
               ? picture.height / 2 * (picture.width / f.step - 1) * 8
               : 0;
}
double gaps_of(const auto &) { return 0; }

template <class Function>
double bytes_of(const Function &function, const job &job) {
    receiver to;
    rows_of(function, call_of(function, int(picture.width * job.dst_pitch_per_pixel)), to);
    double bytes = -gaps_of(function);
    for (int p = 0; p < pointer_count; ++p) {
        const bool colours = pointer(p) == pointer::sub_y || pointer(p) == pointer::sub_v ||
                             pointer(p) == pointer::sub_u;
        bytes +=
            double(to.read[p].bytes() + to.written[p].bytes()) * (colours ? job.in.subpicture : 1);
    }
    return bytes;
}

} // namespace

double bytes_moved_per_pixel(const job &job) {
    const std::string_view function = job.name;
#define LUMALANE_JOB(name, ...)                                                                    \
    if (function == #name)                                                                         \
        return bytes_of(lumalane::functions::name, job) / picture.pixels();
#include "bench/jobs.inc"
#undef LUMALANE_JOB
    return 0;
}

} // namespace lumalane::bench
