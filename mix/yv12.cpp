// A subpicture over the video, onto YV12 surfaces: plane by plane, in steps of 8 samples.
#include "picture/adjustment.h"
#include "picture/calls.h"
#include "picture/geometry.h"
#include "picture/stores.h"
#include "picture/told_rows.h"

namespace lumalane {

namespace {

constexpr int step = 8;

enum class video_rows {
    frame,
    doubled_field, // of two rows the lower one lies between two rows of the field
};

// The rows of one plane. Rows have whole steps; what a step goes past a row's end, every later row
// begins further right.
struct mixed_plane {
    const unsigned char *video, *sub, *alpha;
    unsigned char *dst;
    ptrdiff_t rows, samples;
    int alpha_per_sample;
    ptrdiff_t sub_next, alpha_next, dst_next; // from row to row
    ptrdiff_t video_to_lower, video_next;     // from the upper row of a pair, and from pair to pair
    ptrdiff_t below_lower; // to the row with which lower rows are averaged; 0: none

    // What a pointer moves from a row to the next, on top of the row's steps.
    struct row_advances {
        int video, sub, alpha, dst;
    };

    mixed_plane(const unsigned char *video_, const unsigned char *sub_, const unsigned char *alpha_,
                int alpha_per_sample_, unsigned char *dst_, int width, int height, int video_pitch,
                const row_advances &advance, video_rows kind)
        : video(video_), sub(sub_), alpha(alpha_), dst(dst_), samples(whole_steps(width, step)),
          alpha_per_sample(alpha_per_sample_), sub_next(samples + advance.sub),
          alpha_next(alpha_per_sample * samples + advance.alpha), dst_next(samples + advance.dst) {
        if (kind == video_rows::frame) {
            rows = static_cast<ptrdiff_t>(steps_of(height, 1));
            video_to_lower = samples + advance.video, video_next = 2 * video_to_lower;
            below_lower = 0;
        } else {
            // quirk: the last row lies between the field and what follows it
            // [mixes.yv12_doubling_averages_in_the_second_row_and_reads_a_row_past_the_field].
            // quirk: the video goes back by the width, not by the row's steps
            // [mixes.yv12_doubling_goes_back_by_the_width_to_the_start_of_a_row].
            rows = 2 * static_cast<ptrdiff_t>(steps_of(height, 2));
            video_to_lower = samples - width, video_next = video_to_lower + samples + advance.video;
            below_lower = video_pitch;
        }
    }

    // Makes one row of rows without gaps. Returns the samples of a row.
    ptrdiff_t joined(blended_planes &band) const {
        if (below_lower != 0 || video_to_lower != samples || sub_next != samples ||
            alpha_next != samples || dst_next != samples)
            return samples;
        const ptrdiff_t count = band.count;
        band.count = 1;
        return count * samples;
    }

    long long bytes() const { return static_cast<long long>(rows) * samples; }

    ptrdiff_t video_of(ptrdiff_t row) const {
        return row / 2 * video_next + row % 2 * video_to_lower;
    }
};

// The planes of a call. The subpicture's chroma and alpha skip every second row: the chroma of two
// rows has the weights of the upper one.
struct mixed_planes {
    mixed_plane y, v, u;

    mixed_planes(const tagMIX_INFO &mix, video_rows kind)
        : y(luma(mix, kind)), v(chroma(mix, mix.video_v, mix.sub_v, mix.dst_v, kind)),
          u(chroma(mix, mix.video_u, mix.sub_u, mix.dst_u, kind)) {}

    long long bytes() const { return y.bytes() + v.bytes() + u.bytes(); }

private:
    static mixed_plane luma(const tagMIX_INFO &mix, video_rows kind) {
        const int sub_advance = difference(mix.sub_pitch, mix.width);
        return {mix.video_y,
                mix.sub_y,
                mix.alpha_plane,
                1,
                mix.dst,
                mix.width,
                mix.height,
                mix.video_pitch,
                {difference(mix.video_pitch, mix.width), sub_advance, sub_advance,
                 difference(mix.dst_pitch, mix.width)},
                kind};
    }

    static mixed_plane chroma(const tagMIX_INFO &mix, const unsigned char *video,
                              const unsigned char *sub, unsigned char *dst, video_rows kind) {
        const int width = mix.width >> 1;
        return {video,
                sub,
                mix.alpha_plane,
                2,
                dst,
                width,
                static_cast<int>(static_cast<unsigned>(mix.height) >> 1),
                mix.video_pitch >> 1,
                {difference(mix.video_pitch, mix.width) >> 1, difference(mix.sub_pitch, width),
                 difference(twice(mix.sub_pitch), mix.width),
                 difference(mix.dst_pitch, mix.width) >> 1},
                kind};
    }
};

// Rows [from, to) of one plane, or of U and V, whose rows lie alike.
blended_planes blended_rows(const mixed_plane &a, const mixed_plane &b, ptrdiff_t from,
                            ptrdiff_t to) {
    const ptrdiff_t dst = from * a.dst_next, video = a.video_of(from), sub = from * a.sub_next;
    blended_planes rows{{a.dst + dst, b.dst + dst},
                        {a.video + video, b.video + video},
                        {a.sub + sub, b.sub + sub},
                        a.alpha + from * a.alpha_next,
                        {nullptr, nullptr}};
    rows.count = to - from;
    rows.dst_next = a.dst_next, rows.sub_next = a.sub_next, rows.alpha_next = a.alpha_next;
    rows.video_to_lower = a.video_to_lower, rows.video_next = a.video_next;
    rows.below_lower = a.below_lower;
    return rows;
}

void mix_in_order(const machine &machine, const mixed_plane &p, const plane_adjustment *by) {
    const row_kernels &kernels = machine.rows;
    unsigned char weights[step], between[step];
    for (ptrdiff_t row = 0; row < p.rows; ++row) {
        const unsigned char *const row_video = p.video + p.video_of(row);
        for (ptrdiff_t x = 0; x < p.samples; x += step) {
            const unsigned char *video = row_video + x;
            const unsigned char *alpha = p.alpha + row * p.alpha_next + p.alpha_per_sample * x;
            if (p.alpha_per_sample == 2) {
                kernels.emit_half_plane({alpha, weights}, step);
                alpha = weights;
            }
            if (row % 2 != 0 && p.below_lower != 0) {
                kernels.average_rows({between, video, p.below_lower}, step);
                video = between;
            }
            kernels.blend_plane({{p.dst + row * p.dst_next + x, nullptr},
                                 {video, nullptr},
                                 {p.sub + row * p.sub_next + x, nullptr},
                                 alpha,
                                 {by, nullptr}},
                                step);
        }
    }
}

// Bands of rows: their alpha stays in the cache between luma and chroma. (Whole planes take 1.1
// times as long at 1920x1080.)
constexpr ptrdiff_t band = 32;

void mix_by_bands(const machine &machine, const mixed_planes &p, const adjustment *by) {
    const auto stores_of = [&](const mixed_plane &plane) {
        return surface_stores(machine, plane.dst, plane.dst_next, p.bytes(), false,
                              bound_by::loads);
    };
    const surface_stores y_stores = stores_of(p.y), u_stores = stores_of(p.u),
                         v_stores = stores_of(p.v);
    const store_policy chroma_stores =
        u_stores == v_stores ? static_cast<store_policy>(u_stores) : in_cache(u_stores);
    const auto end_of = [](ptrdiff_t from, ptrdiff_t rows_of_band, const mixed_plane &plane) {
        return from + rows_of_band < plane.rows ? from + rows_of_band : plane.rows;
    };
    for (ptrdiff_t row = 0; row < p.y.rows; row += band) {
        blended_planes luma = blended_rows(p.y, p.y, row, end_of(row, band, p.y));
        luma.by[0] = by ? &by->y : nullptr;
        luma.stores = y_stores;
        machine.rows.blend_plane(luma, p.y.joined(luma));
        if (row / 2 < p.u.rows) {
            blended_planes chroma = blended_rows(p.u, p.v, row / 2, end_of(row / 2, band / 2, p.u));
            chroma.by[0] = by ? &by->u : nullptr, chroma.by[1] = by ? &by->v : nullptr;
            chroma.stores = chroma_stores;
            machine.rows.blend_chroma_planes(chroma, 2 * p.u.samples);
        }
    }
}

// Whether all rows have one row of alpha, which is clear: so planes of any pitches are adjusted (by
// <lumalane/convert.h>, for one), which blending takes 1.1 to 1.2 times as long for.
bool is_clear(const mixed_plane &p) {
    if (p.alpha_next != 0 || p.below_lower != 0)
        return false;
    unsigned long long any = 0;
    for (ptrdiff_t x = 0; x < p.alpha_per_sample * p.samples; x += step) {
        unsigned long long weights;
        __builtin_memcpy(&weights, p.alpha + x, step);
        any |= weights;
    }
    return any == 0;
}

// The video alone.
void copy_video(const machine &machine, const mixed_plane &p, const plane_adjustment *by,
                long long all_bytes) {
    const surface_stores stores =
        surface_stores::of_plane(machine, p.dst, p.dst_next, all_bytes, false);
    plane_rows rows{p.video, p.dst};
    rows.stores = stores, rows.by = by;
    rows.count = p.rows, rows.src_next = p.video_to_lower, rows.dst_next = p.dst_next;
    machine.rows.emit_plane(rows, p.samples);
}

// Y, then V and U with half of the height that the record has.
void mix(const machine &machine, tagMIX_INFO &record, video_rows kind, const adjustment *by) {
    const mixed_planes p(record, kind);
    const auto tell = [&](call_rows &rows) {
        rows.at(pointer::dst_u, record.dst_u), rows.at(pointer::dst_v, record.dst_v);
        detail::rows_of_mixed_planes(sizes_of(record), kind == video_rows::doubled_field, rows);
    };
    const auto plane_by_plane = [&](auto *make, auto... all_bytes) {
        make(machine, p.y, by ? &by->y : nullptr, all_bytes...);
        make(machine, p.v, by ? &by->v : nullptr, all_bytes...);
        make(machine, p.u, by ? &by->u : nullptr, all_bytes...);
    };
    if (keeps_order(machine, record, tell))
        plane_by_plane(mix_in_order);
    else if (is_clear(p.y) && is_clear(p.u))
        plane_by_plane(copy_video, p.bytes());
    else
        mix_by_bands(machine, p, by);
    record.height = static_cast<int>(static_cast<unsigned>(record.height) >> 1);
}

} // namespace

void mix_ayv12_yv12_p(const machine &machine, const call::mix &p) {
    mix(machine, *p.record, video_rows::frame, nullptr);
}

void mix_ayv12_yv12_p_ajust(const machine &machine, const call::mix &p) {
    const adjustment by = current_adjustment();
    mix(machine, *p.record, video_rows::frame, by.unless_neutral());
}

void mix_ayv12_yv12_i(const machine &machine, const call::mix &p) {
    mix(machine, *p.record, video_rows::doubled_field, nullptr);
    p.record->width >>= 1;
}

} // namespace lumalane
