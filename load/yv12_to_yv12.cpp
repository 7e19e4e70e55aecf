// YV12 pictures into YV12 surfaces of the same and of half the width.
#include "picture/adjustment.h"
#include "picture/calls.h"
#include "picture/geometry.h"
#include "picture/stores.h"
#include "picture/told_rows.h"
#include "rows/strip.h"

namespace lumalane {

namespace {

struct plane {
    const unsigned char *src;
    unsigned char *dst;
    int width, height; // of the source
    int src_pitch, dst_pitch;
};

plane chroma_of(const call::picture &p, const unsigned char *src, unsigned char *dst) {
    return {src, dst, p.width >> 1, p.height >> 1, p.src_pitch >> 1, p.dst_pitch >> 1};
}

long long bytes_of_planes(const call_rows &p) {
    long long bytes = 0;
    for (int plane = 0; plane < 3; ++plane)
        bytes += p.written[plane].count * p.written[plane].bytes;
    return bytes;
}

// The rows of a plane through `emit`, adjusted unless `by` is neutral. Rows have whole steps of 8
// destination bytes, each from `times` source bytes. `all_bytes`: of all planes of the call.
void load_plane(const machine &machine, const byte_rows &dst, const byte_rows &src, int times,
                row_kernel::plane_to_surface *emit, const plane_adjustment &by, bool in_order,
                long long all_bytes) {
    // Rows without gaps are one.
    const bool one = !in_order && dst.pitch == dst.bytes && src.pitch == times * dst.bytes &&
                     src.pitch * dst.count <= PTRDIFF_MAX;
    const surface_stores stores =
        surface_stores::of_plane(machine, dst.first, dst.pitch, all_bytes, in_order);
    const ptrdiff_t count = static_cast<ptrdiff_t>(one ? 1 : dst.count);
    const ptrdiff_t bytes = static_cast<ptrdiff_t>(one ? dst.count * dst.bytes : dst.bytes);
    const ptrdiff_t run = in_order ? 8 : bytes;
    const ptrdiff_t rows_at_once = in_order ? 1 : count;
    for (ptrdiff_t row = 0; row < count; row += rows_at_once)
        in_runs(bytes, run, [&](ptrdiff_t x, ptrdiff_t n) {
            plane_rows rows{src.first + row * src.pitch + times * x,
                            const_cast<unsigned char *>(dst.first) + row * dst.pitch + x};
            rows.stores = stores, rows.by = by.unless_neutral();
            rows.count = rows_at_once;
            rows.src_next = static_cast<ptrdiff_t>(src.pitch);
            rows.dst_next = static_cast<ptrdiff_t>(dst.pitch);
            emit(rows, n);
        });
}

} // namespace

// ---- The same width ----------------------------------------------------------------------------

void loadimage_yv12_ajust(const machine &machine, const call::picture &p) {
    picture_call sizes = sizes_of(p);
    sizes.surface_height = p.info->surface_height;
    sizes.rows_to_plane_end = p.info->rows_to_plane_end;
    call_rows rows = rows_at(p);
    detail::rows_of_adjusted_copy(sizes, rows);
    const bool in_order = keeps_order(machine, rows);
    const adjustment by = current_adjustment();
    // quirk: V gets the offset of U, and U that of V [adjusted_copy.the_chroma_offsets_are_crossed]
    const plane_adjustment *const by_plane[] = {&by.y, &by.u, &by.v};
    const long long all_bytes = bytes_of_planes(rows);
    for (int plane = 0; plane < 3; ++plane)
        load_plane(machine, rows.written[plane], rows.read[plane], 1, machine.rows.emit_plane,
                   *by_plane[plane], in_order, all_bytes);
}

// ---- Half the width ----------------------------------------------------------------------------

namespace {

// quirk: unlike luma's, rows do not drift; what is left after whole steps gets one more step that
// ends where the row does, over the end of the step before (and before the beginning of a row that
// is shorter than a step, which gets its one whole step as well)
// [half_size.yv12_writes_chroma_rows_of_width_40_exactly]
void halve_chroma(const machine &machine, const plane &p, const plane_adjustment &by,
                  bool in_order) {
    const ptrdiff_t whole = whole_steps(p.width & -16, 16);
    const bool one_more = p.width % 16 != 0;
    const ptrdiff_t last = one_more ? p.width - 16 : 0,
                    last_dst = one_more ? (p.width >> 1) - 8 : 0;
    const long long rows = steps_of(p.height, 1);
    const ptrdiff_t run = in_order ? 8 : whole / 2;
    const ptrdiff_t rows_at_once = in_order ? 1 : static_cast<ptrdiff_t>(rows);
    for (ptrdiff_t row = 0; row < rows; row += rows_at_once) {
        plane_rows at{p.src + row * p.src_pitch, p.dst + row * p.dst_pitch};
        at.by = by.unless_neutral();
        at.count = rows_at_once;
        at.src_next = p.src_pitch, at.dst_next = p.dst_pitch;
        in_runs(whole / 2, run, [&](ptrdiff_t x, ptrdiff_t n) {
            plane_rows here = at;
            here.src += 2 * x, here.dst += x;
            machine.rows.emit_half_plane(here, n);
        });
        if (one_more) {
            at.src += last, at.dst += last_dst;
            machine.rows.emit_half_plane(at, 8);
        }
    }
}

} // namespace

void loadimage_half_yv12_ajust(const machine &machine, const call::picture &p) {
    const detail::chroma_places chroma = detail::chroma_of_halved_copy(sizes_of(p));
    const auto at = [&](long long place) { return p.dst + static_cast<ptrdiff_t>(place); };
    call_rows rows = rows_at(p);
    detail::rows_of_halved_copy(sizes_of(p), rows);
    const bool in_order = keeps_order(machine, rows);
    const adjustment by = current_adjustment();
    load_plane(machine, rows.written[0], rows.read[0], 2, machine.rows.emit_half_plane, by.y,
               in_order, bytes_of_planes(rows));
    halve_chroma(machine, chroma_of(p, p.src_v, at(chroma.v)), by.v, in_order);
    halve_chroma(machine, chroma_of(p, p.src_u, at(chroma.u)), by.u, in_order);
}

// ---- Plain copy --------------------------------------------------------------------------------

namespace {

// Addresses of the copy. A pass copies two rows of each plane.
struct copied_planes {
    const unsigned char *src_y, *src_u, *src_v;
    unsigned char *y, *u, *v;
    ptrdiff_t passes, width, half_width; // in whole steps
    // From a pass's upper row to the lower one, and from pass to pass.
    ptrdiff_t src_y_to_lower, src_y_to_next, y_to_lower, y_to_next;
    ptrdiff_t src_uv_to_lower, src_uv_to_next, uv_to_lower, uv_to_next;

    explicit copied_planes(const call::picture &p)
        : src_y(p.src), src_u(p.src_u), src_v(p.src_v), y(p.dst), passes(steps_of(p.height, 2)),
          width(whole_steps(p.width, 16)), half_width(whole_steps(p.width >> 1, 8)) {
        const int src_advance = difference(twice(p.src_pitch), p.width);
        const int dst_advance = difference(twice(p.dst_pitch), p.width);
        const detail::chroma_places chroma = detail::chroma_of_copy(sizes_of(p));
        v = p.dst + static_cast<ptrdiff_t>(chroma.v);
        u = p.dst + static_cast<ptrdiff_t>(chroma.u);
        // quirk: the lower row is read `width` bytes behind the upper one, and stored a pitch of the
        // source behind it; then the source moves on by what was meant for both pointers, and the
        // destination by the row alone [edge_cases.the_plain_copy_mixes_the_increments_of_its_rows]
        src_y_to_lower = p.width, src_y_to_next = width + src_advance;
        src_y_to_next += dst_advance;
        y_to_lower = p.src_pitch, y_to_next = width;
        // Halves are unsigned.
        src_uv_to_lower = static_cast<ptrdiff_t>(static_cast<unsigned>(p.src_pitch) >> 1);
        src_uv_to_next =
            half_width + static_cast<ptrdiff_t>(static_cast<unsigned>(src_advance) >> 1);
        uv_to_lower = static_cast<ptrdiff_t>(static_cast<unsigned>(p.dst_pitch) >> 1);
        uv_to_next = half_width + static_cast<ptrdiff_t>(static_cast<unsigned>(dst_advance) >> 1);
    }
};

// Rows overlap here by what is promised, each covering what earlier ones left in its way; of that
// only what remains in the end is copied where nothing else tells the order of the stores. It can be
// observed where rows drift, halves of pitches are rounded, the rows of a pass overlap, U is not where
// it should be because a product wraps, or something is read that was written.
bool order_of_copy_can_be_observed(const call::picture &p) {
    if (p.width <= 0 || p.width % 16 != 0 || p.height <= 0 || p.height % 2 != 0 ||
        p.src_pitch < p.width || p.src_pitch % 8 != 0 || p.dst_pitch < p.width ||
        p.dst_pitch % 2 != 0 || product(p.height, p.dst_pitch) != 1LL * p.height * p.dst_pitch)
        return true;
    call_rows rows = rows_at(p);
    detail::rows_of_copy(sizes_of(p), rows);
    return rows.reads_what_it_writes();
}

void copy_in_order(const row_kernels &kernels, const copied_planes &p) {
    const auto copy = [&](unsigned char *dst, const unsigned char *src, ptrdiff_t n) {
        kernels.emit_plane({src, dst}, n);
    };
    for (ptrdiff_t pass = 0; pass < p.passes; ++pass)
        for (ptrdiff_t x = 0; x < p.width; x += 16) {
            const unsigned char *const src = p.src_y + pass * p.src_y_to_next + x;
            unsigned char *const dst = p.y + pass * p.y_to_next + x;
            copy(dst, src, 16);
            copy(dst + p.y_to_lower, src + p.src_y_to_lower, 16);
        }
    for (ptrdiff_t pass = 0; pass < p.passes; ++pass)
        for (ptrdiff_t x = 0; x < p.half_width; x += 8) {
            const ptrdiff_t src = pass * p.src_uv_to_next + x, dst = pass * p.uv_to_next + x;
            copy(p.u + dst, p.src_u + src, 8);
            copy(p.u + dst + p.uv_to_lower, p.src_u + src + p.src_uv_to_lower, 8);
            copy(p.v + dst, p.src_v + src, 8);
            copy(p.v + dst + p.uv_to_lower, p.src_v + src + p.src_uv_to_lower, 8);
        }
}

// What remains to be seen of the copy in order. Upper rows of luma lie one after the other: of the
// lower ones only what lies beyond the last of them remains. Of U the upper half ends under V.
void copy_what_remains(const row_kernels &kernels, const copied_planes &p) {
    const auto copy = [&](unsigned char *dst, ptrdiff_t dst_next, const unsigned char *src,
                          ptrdiff_t src_next, ptrdiff_t n, ptrdiff_t count) {
        plane_rows rows{src, dst};
        rows.count = count, rows.src_next = src_next, rows.dst_next = dst_next;
        kernels.emit_plane(rows, n);
    };
    copy(p.y, p.y_to_next, p.src_y, p.src_y_to_next, p.width, p.passes);
    const ptrdiff_t upper_end = p.passes * p.y_to_next;
    for (ptrdiff_t pass = 0; pass < p.passes; ++pass) {
        const ptrdiff_t at = pass * p.y_to_next + p.y_to_lower;
        if (at + p.width <= upper_end)
            continue;
        const ptrdiff_t covered = at < upper_end ? upper_end - at : 0;
        copy(p.y + at + covered, 0, p.src_y + pass * p.src_y_to_next + p.src_y_to_lower + covered,
             0, p.width - covered, 1);
    }
    copy(p.u + p.passes * p.uv_to_lower, p.uv_to_lower, p.src_u + p.passes * p.src_uv_to_lower,
         p.src_uv_to_lower, p.half_width, p.passes);
    copy(p.v, p.uv_to_lower, p.src_v, p.src_uv_to_lower, p.half_width, 2 * p.passes);
}

} // namespace

void loadimage_yv12(const machine &machine, const call::picture &picture) {
    const copied_planes p(picture);
    if (machine.in_order || order_of_copy_can_be_observed(picture))
        copy_in_order(machine.rows, p);
    else
        copy_what_remains(machine.rows, p);
}

} // namespace lumalane
