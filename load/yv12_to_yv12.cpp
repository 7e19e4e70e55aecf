// YV12 pictures into YV12 surfaces of the same and of half the width.
#include "frame/adjust.h"
#include "frame/kernels.h"
#include "frame/walks.h"

namespace lumalane::LUMALANE_LANES {

namespace {

// ---- Planes by themselves ----------------------------------------------------------------------

struct plane {
    unsigned char *src, *dst;
    int width, height; // of the source
    int src_pitch, dst_pitch;
};

plane luma_of(const picture &p) {
    return {p.src, p.dst, p.width, p.height, p.src_pitch, p.dst_pitch};
}

plane chroma_of(const picture &p, unsigned char *src, unsigned char *dst) {
    return {src, dst, p.width >> 1, p.height >> 1, p.src_pitch >> 1, p.dst_pitch >> 1};
}

// Runs `row(put, to, from)` for every row of a plane of which each makes dst_bytes, if nobody can
// tell it from the steps: the width is on the step, so that no row drifts, rows do not overlap, and
// nothing is read back that was written.
template <class Row>
bool rows_wide_if_regular(const plane &p, int step, int dst_bytes, Row row) {
    if (p.width <= 0 || p.width % step != 0 || p.height <= 0 ||
        !rows_apart(p.dst_pitch, dst_bytes) ||
        !apart(rows_at(p.dst, p.height, p.dst_pitch, dst_bytes),
               rows_at(p.src, p.height, p.src_pitch, p.width)))
        return false;
    with_put(p.dst, p.dst_pitch, static_cast<long long>(p.height) * dst_bytes,
             [&](auto put) LUMALANE_INLINE_LAMBDA {
                 for (ptrdiff_t i = 0; i < p.height; ++i)
                     row(put, p.dst + i * p.dst_pitch, p.src + i * p.src_pitch);
             });
    return true;
}

// Calls `step(to, from)` for one row of a plane after the other, in steps from so many bytes to 8.
// The rests are what the pointers move after a row.
template <int step_bytes, class Step>
LUMALANE_INLINE void rows_stepwise(const plane &p, int src_rest, int dst_rest, const Step &step) {
    const unsigned char *from = p.src;
    unsigned char *to = p.dst;
    unsigned rows = static_cast<unsigned>(p.height);
    do {
        unsigned columns = static_cast<unsigned>(p.width);
        do {
            step(to, from);
            from += step_bytes, to += 8;
        } while (again(columns, step_bytes));
        from += src_rest, to += dst_rest;
    } while (again(rows, 1));
}

// `map` of a plane, one row at a time, in steps of 8 bytes. Deliberately the source rows are one
// continuous run, whatever the source's pitch.
template <class Map>
void map_plane(plane p, Map map) {
    p.src_pitch = p.width;
    if (rows_wide_if_regular(
            p, 8, p.width,
            [&](auto put, unsigned char *to, const unsigned char *from)
                LUMALANE_INLINE_LAMBDA { map_row<decltype(put)>(to, from, p.width, map); }))
        return;
    rows_stepwise<8>(p, 0, difference(p.dst_pitch, p.width),
                     [&](unsigned char *to, const unsigned char *from)
                         LUMALANE_INLINE_LAMBDA { store(to, map(load<8>(from))); });
}

} // namespace

void loadimage_yv12_ajust(LUMALANE_PARAMETERS_picture) {
    const int surface_bytes = product(info->surface_height, dst_pitch);
    const int bytes_to_plane_end = product(info->rows_to_plane_end, dst_pitch);
    unsigned char *const dst_v =
        dst + bytes_to_plane_end + (difference(surface_bytes, bytes_to_plane_end) >> 2);
    unsigned char *const dst_u = dst_v + (surface_bytes >> 2);
    const picture p{LUMALANE_ARGUMENTS_picture};
    with_adjustment([&](auto adjusted) {
        map_plane(luma_of(p), adjusted.y());
        // Deliberately crossed: V gets the offset of U, and U that of V.
        map_plane(chroma_of(p, src_v, dst_v), adjusted.u());
        map_plane(chroma_of(p, src_u, dst_u), adjusted.v());
    });
}

// ---- Half the width ----------------------------------------------------------------------------

namespace {

// `map` of the second of every two bytes, 16 at a time.
template <class Map>
LUMALANE_INLINE void halve_step(unsigned char *to, const unsigned char *from, const Map &map) {
    store(to, map(deal_odd<1, 8>(from)));
}

// True if the plane could be done row by row.
template <class Map>
bool halve_wide_if_regular(const plane &p, const Map &map) {
    return rows_wide_if_regular(
        p, 16, p.width / 2,
        [&](auto put, unsigned char *to, const unsigned char *from) LUMALANE_INLINE_LAMBDA {
            along_plane(p.width / 2, [&](auto n, ptrdiff_t x) LUMALANE_INLINE_LAMBDA {
                put.put(to + x, map(deal_odd<1, n.count>(from + 2 * x)));
            });
        });
}

template <class Map>
void halve_luma(const plane &p, Map map) {
    if (halve_wide_if_regular(p, map))
        return;
    rows_stepwise<16>(p, difference(p.src_pitch, p.width), difference(p.dst_pitch, p.width >> 1),
                      [&](unsigned char *to, const unsigned char *from)
                          LUMALANE_INLINE_LAMBDA { halve_step(to, from, map); });
}

// Deliberately unlike luma: rows do not drift. What is left after whole steps gets one more step
// that ends where the row does, over the end of the step before (and before the beginning of a row
// that is shorter than a step, which gets its one whole step as well).
template <class Map>
void halve_chroma(const plane &p, Map map) {
    if (halve_wide_if_regular(p, map))
        return;
    const unsigned char *src = p.src;
    unsigned char *dst = p.dst;
    unsigned rows = static_cast<unsigned>(p.height);
    do {
        const unsigned char *from = src;
        unsigned char *to = dst;
        unsigned columns = static_cast<unsigned>(p.width & -16);
        do {
            halve_step(to, from, map);
            from += 16, to += 8;
        } while (again(columns, 16));
        if (p.width % 16 != 0)
            halve_step(dst + (p.width >> 1) - 8, src + p.width - 16, map);
        src += p.src_pitch, dst += p.dst_pitch;
    } while (again(rows, 1));
}

} // namespace

void loadimage_half_yv12_ajust(LUMALANE_PARAMETERS_picture) {
    const picture p{LUMALANE_ARGUMENTS_picture};
    unsigned char *const dst_v = dst + product(height, dst_pitch);
    unsigned char *const dst_u = dst_v + product(dst_pitch >> 1, height >> 1);
    with_adjustment([&](auto adjusted) {
        halve_luma(luma_of(p), adjusted.y());
        halve_chroma(chroma_of(p, src_v, dst_v), adjusted.v());
        halve_chroma(chroma_of(p, src_u, dst_u), adjusted.u());
    });
}

// ---- Plain copy --------------------------------------------------------------------------------

namespace {

template <int n>
LUMALANE_INLINE void copy(unsigned char *to, const unsigned char *from) {
    store(to, load<n>(from));
}

// Addresses of the copy.
struct copied_planes {
    unsigned char *v, *u;
    int src_rest, dst_rest; // what a pass adds for the source's and for the destination's pitch
    unsigned src_half, dst_half;

    explicit copied_planes(const picture &p)
        : v(p.dst + product(p.height, p.dst_pitch) - 1),
          u(v + (product(p.height, p.dst_pitch) >> 2)),
          src_rest(difference(twice(p.src_pitch), p.width)),
          dst_rest(difference(twice(p.dst_pitch), p.width)),
          src_half(static_cast<unsigned>(p.src_pitch) >> 1),
          dst_half(static_cast<unsigned>(p.dst_pitch) >> 1) {}
};

void copy_stepwise(const picture &p) {
    const copied_planes to(p);

    const unsigned char *y = p.src;
    unsigned char *dst_y = p.dst;
    unsigned rows = static_cast<unsigned>(p.height);
    do {
        unsigned columns = static_cast<unsigned>(p.width);
        do {
            copy<16>(dst_y, y);
            copy<16>(dst_y + p.src_pitch, y + p.width);
            y += 16, dst_y += 16;
        } while (again(columns, 16));
        y += to.src_rest;
        y += to.dst_rest;
    } while (again(rows, 2));

    const unsigned char *u = p.src_u, *v = p.src_v;
    unsigned char *dst_u = to.u, *dst_v = to.v;
    const unsigned src_rest = static_cast<unsigned>(to.src_rest) >> 1;
    const unsigned dst_rest = static_cast<unsigned>(to.dst_rest) >> 1;
    rows = static_cast<unsigned>(p.height);
    do {
        unsigned columns = static_cast<unsigned>(p.width >> 1);
        do {
            copy<8>(dst_u, u);
            copy<8>(dst_u + to.dst_half, u + to.src_half);
            copy<8>(dst_v, v);
            copy<8>(dst_v + to.dst_half, v + to.src_half);
            u += 8, v += 8, dst_u += 8, dst_v += 8;
        } while (again(columns, 8));
        u += src_rest, v += src_rest, dst_u += dst_rest, dst_v += dst_rest;
    } while (again(rows, 2));
}

// What remains to be seen of the stepwise copy of a regular picture. Its upper rows of luma lie one
// after the other, each pass covering what the pass before left in its way: of the lower rows only
// what lies beyond the last upper row stays. Of the U plane the upper half ends under the V plane.
void copy_wide(const picture &p) {
    const copied_planes to(p);
    constexpr as_they_are::plane as_it_is;
    const ptrdiff_t width = p.width, passes = p.height / 2, upper_end = passes * width;
    const ptrdiff_t src_step = width + to.src_rest + to.dst_rest;
    for (ptrdiff_t pass = 0; pass < passes; ++pass) {
        const unsigned char *const upper = p.src + pass * src_step, *const lower = upper + width;
        map_row<cached>(p.dst + pass * width, upper, width, as_it_is);
        const ptrdiff_t at = pass * width + p.src_pitch;
        const ptrdiff_t hidden = at < upper_end ? upper_end - at : 0;
        if (hidden < width)
            map_row<cached>(p.dst + at + hidden, lower + hidden, width - hidden, as_it_is);
    }
    for (ptrdiff_t row = p.height / 2; row < p.height; ++row)
        map_row<cached>(to.u + row * to.dst_half, p.src_u + row * to.src_half, width / 2, as_it_is);
    for (ptrdiff_t row = 0; row < p.height; ++row)
        map_row<cached>(to.v + row * to.dst_half, p.src_v + row * to.src_half, width / 2, as_it_is);
}

// Nobody can tell the wide copy where no row drifts, the rows of a plane lie apart and on whole
// steps, the halves of pitches are exact, and nothing is read back.
bool copy_is_regular(const picture &p) {
    if (p.width <= 0 || p.width % 16 != 0 || p.height <= 0 || p.height % 2 != 0 ||
        p.src_pitch < p.width || p.src_pitch % 8 != 0 || p.dst_pitch < p.width ||
        p.dst_pitch % 2 != 0)
        return false;
    const copied_planes to(p);
    const long long height = p.height, width = p.width;
    const extent dst_y = rows_at(p.dst, 1, 0, p.src_pitch + height / 2 * width);
    const extent dst_chroma[] = {rows_at(to.v, height, to.dst_half, width / 2),
                                 rows_at(to.u, height, to.dst_half, width / 2)};
    const extent src[] = {rows_at(p.src, height / 2, width + to.src_rest + to.dst_rest, 2 * width),
                          rows_at(p.src_u, height, to.src_half, width / 2),
                          rows_at(p.src_v, height, to.src_half, width / 2)};
    for (const extent &from : src)
        if (!apart(from, dst_y) || !apart(from, dst_chroma[0]) || !apart(from, dst_chroma[1]))
            return false;
    return true;
}

} // namespace

void loadimage_yv12(LUMALANE_PARAMETERS_picture) {
    const picture p{LUMALANE_ARGUMENTS_picture};
    if (copy_is_regular(p))
        copy_wide(p);
    else
        copy_stepwise(p);
}

} // namespace lumalane::LUMALANE_LANES
