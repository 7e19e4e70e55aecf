// Which rows of bytes a call reads and writes: the formulas of lumalane.h as code, one function per
// shape, a few for all functions. The library decides with them whether the order of its stores can
// be observed; footprint.h makes the first and the last byte of them, checked.h compares them with
// what buffers hold.
//
// Sizes and strides are those of the arguments of the call, for which the preconditions of lumalane.h
// hold, of a magnitude of largest_size at most. Each shape tells its rows to a receiver, which has
//
//     void reads(pointer, const row_set &);
//     void writes(pointer, const row_set &);
//     void writes_again(pointer, const row_set &);   // over other rows of the same pointer, perhaps
//     void replaces(pointer, const row_set &);       // reads and writes, each byte in one step
#ifndef LUMALANE_ROWS_OF_H
#define LUMALANE_ROWS_OF_H

#include <lumalane/compiled_for.h>

#include <stddef.h>
#include <stdint.h>

namespace lumalane {

/// The pointers of a call, by the names of its parameters and of the fields of its record.
enum class pointer {
    src,
    src_u,
    src_v,
    dst,
    dst_u,
    dst_v,
    surface,
    mask,
    video_y,
    video_v,
    video_u,
    alpha_plane,
    sub_y,
    sub_v,
    sub_u,
    plane_y,
    plane_u,
    plane_v,
    info, ///< of a mix: its adjust_info
    mix,
    frame,
    params,
};
constexpr int pointer_count = static_cast<int>(pointer::params) + 1;

/// `bytes` bytes at first + r * pitch + c * column_pitch from a pointer on, for r = 0 .. rows-1 and
/// c = 0 .. columns-1. Nothing where one of the counts is 0 or less.
struct row_set {
    long long first = 0, bytes = 0;
    long long rows = 1, pitch = 0;
    long long columns = 1, column_pitch = 0;

    LUMALANE_ALWAYS_INLINE constexpr bool empty() const {
        return bytes <= 0 || rows <= 0 || columns <= 0;
    }
    LUMALANE_ALWAYS_INLINE constexpr long long begin() const;
    LUMALANE_ALWAYS_INLINE constexpr long long end() const;
};

namespace detail {
inline namespace LUMALANE_COMPILED_FOR {

constexpr long long least(long long x) { return x < 0 ? x : 0; }
constexpr long long most(long long x) { return x > 0 ? x : 0; }

constexpr long long begin_of(const row_set &s) {
    return s.first + least((s.rows - 1) * s.pitch) + least((s.columns - 1) * s.column_pitch);
}
constexpr long long end_of(const row_set &s) {
    return s.first + most((s.rows - 1) * s.pitch) + most((s.columns - 1) * s.column_pitch) +
           s.bytes;
}

} // namespace LUMALANE_COMPILED_FOR
} // namespace detail

LUMALANE_ALWAYS_INLINE constexpr long long row_set::begin() const {
    return detail::begin_of(*this);
}
LUMALANE_ALWAYS_INLINE constexpr long long row_set::end() const { return detail::end_of(*this); }

// ---- Rows that overlap ---------------------------------------------------------------------------

namespace detail {
inline namespace LUMALANE_COMPILED_FOR {

constexpr long long magnitude(long long a) { return a < 0 ? -a : a; }

// Of numbers that are not negative. (32-bit compilers call a library for what is wider than an
// address.)
constexpr long long remainder(long long a, long long b) {
    if (a < b)
        return a;
    return static_cast<long long>(static_cast<uintptr_t>(a) % static_cast<uintptr_t>(b));
}

} // namespace LUMALANE_COMPILED_FOR
} // namespace detail

inline namespace LUMALANE_COMPILED_FOR {

/// The same rows from another place on: that of a pointer, for sets of several pointers.
constexpr row_set moved(row_set rows, long long by) {
    rows.first += by;
    return rows;
}

/// Columns that lie side by side as rows.
constexpr row_set joined(row_set rows) {
    if (rows.column_pitch == rows.bytes) {
        rows.bytes *= rows.columns;
        rows.columns = 1, rows.column_pitch = 0;
    }
    return rows;
}

/// Rows have no byte in common with one another. (Columns that are not joined count as one.)
constexpr bool rows_apart(const row_set &rows) {
    return rows.rows <= 1 || detail::magnitude(rows.pitch) >= rows.bytes;
}

/// Two sets, joined and counted from the same place, have no byte in common: also known where rows
/// of one lie between rows of the other, as far apart or a multiple of that. (Not known of columns
/// that cannot be joined.)
constexpr bool apart(const row_set &a, const row_set &b) {
    if (a.empty() || b.empty() || a.end() <= b.begin() || b.end() <= a.begin())
        return true;
    if (a.columns > 1 || b.columns > 1)
        return false;
    // A row by itself is as far from the next one as those of the other set are.
    const long long of_a = detail::magnitude(a.rows > 1 ? a.pitch : b.pitch);
    const long long of_b = detail::magnitude(b.rows > 1 ? b.pitch : a.pitch);
    const long long pitch = of_a < of_b ? of_a : of_b, distance = b.begin() - a.begin();
    if (pitch == 0 || (of_a != of_b && detail::remainder(of_a < of_b ? of_b : of_a, pitch) != 0))
        return false;
    // All rows of one have the same place between two rows that are so far apart.
    const long long behind = distance >= 0 ? detail::remainder(distance, pitch)
                                           : pitch - 1 - detail::remainder(-distance - 1, pitch);
    return behind >= a.bytes && behind + b.bytes <= pitch;
}

} // namespace LUMALANE_COMPILED_FOR

// ---- What of a call decides on its rows ----------------------------------------------------------
//
// Fields have the names of the parameters, or of the fields of the record, that they stand for.

struct picture_call {
    int width, height, src_pitch, dst_pitch;
    unsigned rgb16_layout = 0;                     ///< of info, where the function reads it
    int surface_height = 0, rows_to_plane_end = 0; ///< of info: loadimage_yv12_ajust() only
};

struct mix_call {
    int video_pitch, sub_pitch, dst_pitch, width, height;
    unsigned rgb16_layout = 0; ///< of adjust_info, where the function reads it
};

struct key_fill_call {
    int width, height, pitch;
};

struct mask_call {
    int width, pitch, height;
};

struct packed_stretch_call {
    int row_bytes, height, dst_pitch;
};

struct plane_stretch_call {
    int width, height, src_pitch, dst_pitch;
};

struct frame_stretch_call {
    int luma_pitch, field_mode; ///< of the record
    int start, height, dst_pitch;
};

namespace detail {
inline namespace LUMALANE_COMPILED_FOR {

// ---- The symbols of the conventions in lumalane.h ------------------------------------------------

using number = long long;

constexpr number larger(number a, number b) { return a > b ? a : b; }

// `count` rows of each of so many groups, `row` apart, the groups `next` apart: one set where all rows
// are as far apart, and a set per row of a group otherwise.
template <class Tell>
constexpr void rows_of_groups(number bytes, number count, number row, number groups, number next,
                              const Tell &tell) {
    if (next == count * row)
        return tell(row_set{0, bytes, count * groups, row});
    for (number i = 0; i < count; ++i)
        tell(row_set{i * row, bytes, groups, next});
}
template <class Receiver>
constexpr void reads_groups(Receiver &to, pointer p, number bytes, number count, number row,
                            number groups, number next) {
    rows_of_groups(bytes, count, row, groups, next,
                   [&](const row_set &rows) { to.reads(p, rows); });
}
template <class Receiver>
constexpr void writes_groups(Receiver &to, pointer p, number bytes, number count, number row,
                             number groups, number next) {
    rows_of_groups(bytes, count, row, groups, next,
                   [&](const row_set &rows) { to.writes(p, rows); });
}

// Rows that are read from so many places, which are one where they touch.
template <class Receiver>
constexpr void reads_apart(Receiver &to, pointer p, row_set rows, number apart, number places) {
    if (magnitude(apart) <= rows.bytes) {
        rows.first += (places - 1) * least(apart);
        rows.bytes += (places - 1) * magnitude(apart);
    } else {
        rows.columns = places, rows.column_pitch = apart;
    }
    to.reads(p, rows);
}

// A count that loops compare as an unsigned number.
constexpr number as_unsigned(int x) { return static_cast<uint32_t>(x); }

// x rounded up to a multiple of n, a power of 2, but at least n.
constexpr number up(number x, number n) { return larger(n, (x + n - 1) & -n); }

// Pixels of a row in whole steps.
constexpr number whole(int width, number step) { return up(as_unsigned(width), step); }

constexpr number half(number x) { return x >> 1; }

// Some pitches are halved as unsigned numbers of 32 bits.
constexpr number unsigned_half(number x) { return static_cast<uint32_t>(x) >> 1; }

// A product of a height and a pitch wraps.
constexpr number wrapped(number x) { return static_cast<int32_t>(static_cast<uint32_t>(x)); }

// Rows of functions that count them down to 0 and look after each: a height of 0 means all 2^32.
constexpr number counted_down(int height) { return number{static_cast<uint32_t>(height) - 1u} + 1; }

// From column to column: a terabyte stands for more, which no memory has and a product with the number
// of columns might not hold.
constexpr number to_column(number distance) {
    constexpr number most = number{1} << 40;
    return distance > most ? most : distance < -most ? -most : distance;
}

// What functions that compare their height as a signed number have at least; below they write nothing.
namespace least_height {
constexpr int loadimage_yuy2_ajust = 10, mix_ayuy2_yuy2_i_ajust = 4, strech_picture_1X2_yuy2 = 8,
              strech_picture_2X2_yuy2 = 8, strech_picture_2X2_yuy2_ajust = 16,
              yuy2_strech_picture_2X2_yuy2 = 16, yuy2_strech_picture_2X2_yuy2_ajust = 8,
              strech_picture_1X2_yuy2_ajust_rgb = 12, strech_opt_yuy2_ajust = 8;
} // namespace least_height

constexpr bool is_rgb16_layout(unsigned layout) { return layout < 4; }

// Row pairs, and groups of four rows of which two come from each row of a field.
constexpr number row_pairs_of(number height) { return up(height, 2) / 2; }
constexpr number field_groups_of(int height) { return height < 8 ? 1 : (number{height} + 3) / 4; }

inline constexpr pointer src_chroma[] = {pointer::src_v, pointer::src_u};
inline constexpr pointer video_chroma[] = {pointer::video_v, pointer::video_u};
inline constexpr pointer alpha_and_luma[] = {pointer::alpha_plane, pointer::sub_y};
inline constexpr pointer sub_chroma[] = {pointer::sub_v, pointer::sub_u};
inline constexpr pointer frame_chroma[] = {pointer::plane_v, pointer::plane_u};

// ---- YV12 to YV12 --------------------------------------------------------------------------------

// Where chroma begins on a surface that has Y, V and U, counted from Y.
struct chroma_places {
    number v, u;
};

// quirk: V begins one byte before the end of Y
// [edge_cases.the_plain_copy_of_chroma_starts_one_byte_before_the_end_of_luma]
constexpr chroma_places chroma_of_copy(const picture_call &p) {
    const number Y = wrapped(number{p.height} * p.dst_pitch), V = Y - 1;
    return {V, V + (Y >> 2)};
}

// loadimage_yv12(): of the destination, rows overlap.
template <class Receiver>
constexpr void rows_of_copy(const picture_call &p, Receiver &to) {
    const number S = p.src_pitch, D = p.dst_pitch, w = p.width;
    const number P = row_pairs_of(as_unsigned(p.height)), W = whole(p.width, 16),
                 C = whole(p.width >> 1, 8);
    to.reads(pointer::src, {0, w + W, P, W + 2 * S + 2 * D - 2 * w});
    to.writes_again(pointer::dst, {0, P * W});
    to.writes_again(pointer::dst, {S, P * W});
    const number src_next = C + unsigned_half(2 * S - w), dst_next = C + unsigned_half(2 * D - w);
    const chroma_places chroma = chroma_of_copy(p);
    for (const pointer plane : src_chroma) {
        const number start = plane == pointer::src_v ? chroma.v : chroma.u;
        to.reads(plane, {0, C, P, src_next});
        to.reads(plane, {unsigned_half(S), C, P, src_next});
        to.writes_again(pointer::dst, {start, C, P, dst_next});
        to.writes_again(pointer::dst, {start + unsigned_half(D), C, P, dst_next});
    }
}

// loadimage_yv12_ajust(): source rows are one continuous run.
template <class Receiver>
constexpr void rows_of_adjusted_copy(const picture_call &p, Receiver &to) {
    const number D = p.dst_pitch;
    const number surface = wrapped(p.surface_height * D), below = wrapped(p.rows_to_plane_end * D);
    const number V = below + (wrapped(surface - below) >> 2), U = V + (surface >> 2);
    const auto plane = [&](pointer from, number start, int width, int height, number pitch) {
        const number W = whole(width, 8), R = larger(as_unsigned(height), 1);
        to.reads(from, {0, W, R, W});
        to.writes(pointer::dst, {start, W, R, pitch + W - width});
    };
    plane(pointer::src, 0, p.width, p.height, D);
    plane(pointer::src_v, V, p.width >> 1, p.height >> 1, half(D));
    plane(pointer::src_u, U, p.width >> 1, p.height >> 1, half(D));
}

// loadimage_half_yv12_ajust(): what is left of a row of chroma gets a step that ends where the row
// does.
constexpr chroma_places chroma_of_halved_copy(const picture_call &p) {
    const number D = p.dst_pitch, V = wrapped(p.height * D);
    return {V, V + wrapped(half(D) * half(p.height))};
}
template <class Receiver>
constexpr void rows_of_halved_copy(const picture_call &p, Receiver &to) {
    const number S = p.src_pitch, D = p.dst_pitch, w = p.width;
    const number W = whole(p.width, 16), R = larger(as_unsigned(p.height), 1);
    to.reads(pointer::src, {0, W, R, S + W - w});
    to.writes(pointer::dst, {0, W / 2, R, D + W / 2 - half(w)});
    const number c = half(w), Rc = larger(half(p.height), 1);
    const bool before = 0 < c && c < 16; // a step that begins before the row
    const number from = before ? c - 16 : 0, from_dst = before ? half(c) - 8 : 0;
    const chroma_places chroma = chroma_of_halved_copy(p);
    for (const pointer plane : src_chroma) {
        const number start = plane == pointer::src_v ? chroma.v : chroma.u;
        to.reads(plane, {from, larger(c, 16) - from, Rc, half(S)});
        to.writes(pointer::dst, {start + from_dst, larger(half(c), 8) - from_dst, Rc, half(D)});
    }
}

// ---- YV12 to RGB and YUY2 ------------------------------------------------------------------------

// Row pairs, both rows by steps of 16 pixels; B bytes per pixel. `gap`: bytes at the beginning of
// the lower row of the surface that are not written.
template <class Receiver>
constexpr void rows_of_planar_pairs(const picture_call &p, number B, number gap, Receiver &to) {
    const number S = p.src_pitch, D = p.dst_pitch, W = whole(p.width, 16), d = W - p.width;
    const number P = row_pairs_of(as_unsigned(p.height));
    const number luma_next = 2 * S + d, chroma_next = W / 2 + half(S - p.width),
                 dst_next = 2 * D + B * d;
    reads_groups(to, pointer::src, W, 2, S, P, luma_next);
    to.reads(pointer::src_v, {0, W / 2, P, chroma_next});
    to.reads(pointer::src_u, {0, W / 2, P, chroma_next});
    if (gap == 0)
        return writes_groups(to, pointer::dst, B * W, 2, D, P, dst_next);
    to.writes(pointer::dst, {0, B * W, P, dst_next});
    to.writes(pointer::dst, {D + gap, B * W - gap, P, dst_next});
}

// Row after row; the two rows of a pair have one chroma row, whose drift they both have. B bytes of
// the surface per pixel of the source.
template <class Receiver>
constexpr void rows_of_planar_rows(const picture_call &p, number B, bool reads_chroma,
                                   Receiver &to) {
    const number S = p.src_pitch, D = p.dst_pitch, W = whole(p.width, 16), d = W - p.width;
    const number P = row_pairs_of(as_unsigned(p.height)), drift = W / 2 - half(p.width);
    to.reads(pointer::src, {0, W, 2 * P, S + d});
    if (reads_chroma)
        for (const pointer plane : src_chroma)
            to.reads(plane, {0, W / 2 + drift, P, drift + W / 2 + half(S - p.width)});
    to.writes(pointer::dst, {0, B * W, 2 * P, D + B * d});
}

// ---- YUY2 sources --------------------------------------------------------------------------------

// Row pairs without drift, but for a width of 0. B bytes per pixel.
template <class Receiver>
constexpr void rows_of_packed_pairs(const picture_call &p, number step, number B, Receiver &to) {
    const number S = 2 * number{p.src_pitch}, D = p.dst_pitch, W = whole(p.width, step);
    const number P = row_pairs_of(as_unsigned(p.height)), d = p.width == 0 ? step : 0;
    reads_groups(to, pointer::src, 2 * W, 2, S, P, 2 * S + 2 * d);
    writes_groups(to, pointer::dst, B * W, 2, D, P, 2 * D + B * d);
}

// ---- Subpictures ---------------------------------------------------------------------------------

// A drawing surface to the colour planes. B bytes per pixel; `beyond` bytes more of each row are
// read. Only whole groups of 8 pixels are converted.
template <class Receiver>
constexpr void rows_of_conversion(const mix_call &c, number B, number beyond, Receiver &to) {
    const number G = c.width < 0 ? 0 : c.width / 8, R = counted_down(c.height);
    const number rest = c.width - 8 * G;
    // quirk: the advance of chroma is halved as an unsigned number
    // [conversion.a_pitch_below_the_width_moves_chroma_by_2_gigabytes]
    const number chroma_next = 4 * G + unsigned_half(number{c.sub_pitch} - c.width);
    to.reads(pointer::dst, {0, 8 * B * G + beyond, R, c.dst_pitch - B * rest});
    to.writes(pointer::sub_y, {0, 8 * G, R, c.sub_pitch - rest});
    to.writes(pointer::sub_v, {0, 4 * G, R, chroma_next});
    to.writes(pointer::sub_u, {0, 4 * G, R, chroma_next});
}

// Alpha and a drawing surface, rows of both. `beyond`: as above.
//
// quirk: the row advance of alpha comes from the pitch of the video
// [alpha_transfer.the_steps_of_alpha_come_from_half_of_video_pitch_beyond_the_width]
constexpr row_set alpha_rows(const mix_call &c, number step) {
    const number W = whole(c.width, step);
    return {0, W, counted_down(c.height), W + half(number{c.video_pitch} - c.width)};
}
constexpr row_set drawn_rows(const mix_call &c, number step, number B, number beyond) {
    const number W = whole(c.width, step);
    return {0, B * W + beyond, counted_down(c.height), c.dst_pitch + B * (W - c.width)};
}

template <class Receiver>
constexpr void rows_of_restored_alpha(const mix_call &c, number step, number B, number beyond,
                                      Receiver &to) {
    to.reads(pointer::dst, drawn_rows(c, step, B, beyond));
    to.writes(pointer::alpha_plane, alpha_rows(c, step));
}

template <class Receiver>
constexpr void rows_of_loaded_alpha(const mix_call &c, number step, number B, Receiver &to) {
    to.reads(pointer::alpha_plane, alpha_rows(c, step));
    to.writes(pointer::dst, drawn_rows(c, step, B, 0));
}

// A subpicture to a drawing surface. video_pitch counts the pixels; the planes have no gaps.
template <class Receiver>
constexpr void rows_of_subpicture(const mix_call &c, number B, Receiver &to) {
    const number W = whole(c.video_pitch, 16), R = counted_down(c.height);
    to.reads(pointer::sub_y, {0, W, R, W});
    to.reads(pointer::sub_u, {0, W / 2, R, W / 2});
    to.reads(pointer::sub_v, {0, W / 2, R, W / 2});
    to.reads(pointer::alpha_plane, {0, W, R, W});
    to.writes(pointer::dst, {0, B * W, R, c.dst_pitch + B * (W - c.video_pitch)});
}

template <class Receiver>
constexpr void rows_of_key_fill(const key_fill_call &c, number B, Receiver &to) {
    if (c.height == 0)
        return;
    const number W = whole(c.width, 16), P = row_pairs_of(as_unsigned(c.height));
    const number next = 2 * number{c.pitch} + B * (W - c.width);
    to.writes(pointer::surface, {0, B * W, P, next});
    to.writes(pointer::surface, {c.pitch, B * W, P, next});
}

template <class Receiver>
constexpr void rows_of_mask(const mask_call &c, Receiver &to) {
    const number W = whole(c.width, 16);
    const row_set rows{0, W, counted_down(c.height), c.pitch + W - c.width};
    to.reads(pointer::mask, rows);
    to.replaces(pointer::dst, rows);
}

// ---- Mixes ---------------------------------------------------------------------------------------

// How far it is to the lower row of a pair, of luma and of alpha, and to the next chroma row of the
// video.
struct pair_distances {
    number luma, sub, chroma;
};

// Onto YUY2, onto YUY2 of half the width, onto RGB.
constexpr pair_distances mix_yuy2_distances(const mix_call &c) {
    return {c.video_pitch, c.sub_pitch, c.video_pitch >> 1};
}
// quirk: the lower row of the video's luma and its chroma rows lie at the subpicture's pitch
// [mixes.yuy2_half_reads_the_second_row_and_the_next_chroma_at_the_subpictures_pitch]
constexpr pair_distances mix_half_yuy2_distances(const mix_call &c) {
    return {c.sub_pitch, c.sub_pitch, c.sub_pitch >> 1};
}
// quirk: the lower row of a pair lies a pitch further that is rounded down to an even number
// [mixes.rgb_second_rows_of_odd_pitches_start_one_byte_early]
constexpr pair_distances mix_rgb_distances(const mix_call &c) {
    return {2 * half(c.video_pitch), 2 * half(c.sub_pitch), c.video_pitch >> 1};
}

// Row pairs of a picture. B bytes per pixel.
template <class Receiver>
constexpr void rows_of_mix_pairs(const mix_call &c, number B, const pair_distances &to_lower,
                                 Receiver &to) {
    const number S = c.sub_pitch, D = c.dst_pitch, W = whole(c.width, 16), d = W - c.width;
    const number drift = W / 2 - half(c.width);
    const number P = row_pairs_of(c.height);
    const number luma_next = 2 * number{c.video_pitch} + d, sub_next = 2 * S + d,
                 chroma_next = to_lower.chroma + drift, dst_next = 2 * D + B * d;
    reads_groups(to, pointer::video_y, W, 2, to_lower.luma, P, luma_next);
    to.reads(pointer::video_v, {0, W / 2, P, chroma_next});
    to.reads(pointer::video_u, {0, W / 2, P, chroma_next});
    for (const pointer plane : alpha_and_luma)
        reads_groups(to, plane, W, 2, to_lower.sub, P, sub_next);
    for (const pointer plane : sub_chroma)
        reads_groups(to, plane, W / 2, 2, half(S), P, S + drift);
    writes_groups(to, pointer::dst, B * W, 2, D, P, dst_next);
}

// Groups of four rows, two of each row of a field, onto YUY2.
template <class Receiver>
constexpr void rows_of_mix_groups(const mix_call &c, Receiver &to) {
    const number V = c.video_pitch, S = c.sub_pitch, D = c.dst_pitch;
    const number W = whole(c.width, 16), d = W - c.width, drift = W / 2 - half(c.width);
    const number Q = field_groups_of(c.height), luma_next = 2 * V + d,
                 chroma_next = half(V) + drift;
    to.reads(pointer::video_y, {0, W, Q, luma_next});
    to.reads(pointer::video_y, {V, W, Q, luma_next});
    to.reads(pointer::video_y, {2 * V, W, Q - 1, luma_next});
    for (const pointer plane : video_chroma) {
        to.reads(plane, {0, W / 2, Q, chroma_next});
        to.reads(plane, {half(V), W / 2, Q - 1, chroma_next});
    }
    for (const pointer plane : alpha_and_luma)
        reads_groups(to, plane, W, 4, S, Q, 4 * S + d);
    for (const pointer plane : sub_chroma)
        reads_groups(to, plane, W / 2, 4, half(S), Q, 2 * S + drift);
    writes_groups(to, pointer::dst, 2 * W, 4, D, Q, 4 * D + 2 * d);
}

// The same in columns of 16 pixels, each from top to bottom, onto RGB of B bytes per pixel. A column
// goes back up by what the height means.
template <class Receiver>
constexpr void rows_of_mix_columns(const mix_call &c, number B, Receiver &to) {
    const number V = c.video_pitch, S = c.sub_pitch, D = c.dst_pitch, h = c.height;
    const number K = up(c.width, 16) / 16, Q = field_groups_of(c.height);
    const number luma_rewind = wrapped(V * h) >> 1, sub_rewind = wrapped(S * h),
                 dst_rewind = wrapped(D * h);
    to.reads(pointer::video_y, {0, 16, 2 * Q, V, K, to_column(16 + 2 * Q * V - luma_rewind)});
    for (const pointer plane : video_chroma)
        to.reads(plane, {0, 8, Q, half(V), K, to_column(8 + Q * half(V) - (luma_rewind >> 2))});
    for (const pointer plane : alpha_and_luma)
        to.reads(plane, {0, 16, 4 * Q, S, K, to_column(16 + 4 * Q * S - sub_rewind)});
    for (const pointer plane : sub_chroma)
        to.reads(plane,
                 {0, 8, 4 * Q, half(S), K, to_column(8 + 4 * Q * half(S) - (sub_rewind >> 1))});
    to.writes(pointer::dst, {0, 16 * B, 4 * Q, D, K, to_column(16 * B + 4 * Q * D - dst_rewind)});
}

// Plane by plane, onto YV12. `doubled`: the lower row of two lies between two rows of a field.
template <class Receiver>
constexpr void rows_of_mixed_planes(const mix_call &c, bool doubled, Receiver &to) {
    const auto plane = [&](pointer video, pointer sub, pointer dst, int width, int height,
                           number video_pitch, number video_advance, number sub_advance,
                           number alpha_per_sample, number alpha_advance, number dst_advance) {
        const number W = whole(width, 8), d = W - width;
        const number R = up(as_unsigned(height), doubled ? 2 : 1);
        if (!doubled) {
            to.reads(video, {0, W, R, W + video_advance});
        } else {
            // The upper rows, and from the lower ones on; there the row below.
            const number next = d + W + video_advance;
            to.reads(video, {0, W + d, R / 2, next});
            to.reads(video, {d + video_pitch, W, R / 2, next});
        }
        to.reads(sub, {0, W, R, W + sub_advance});
        to.reads(pointer::alpha_plane,
                 {0, alpha_per_sample * W, R, alpha_per_sample * W + alpha_advance});
        to.writes(dst, {0, W, R, W + dst_advance});
    };
    const number V = c.video_pitch, S = c.sub_pitch, D = c.dst_pitch, w = c.width;
    plane(pointer::video_y, pointer::sub_y, pointer::dst, c.width, c.height, V, V - w, S - w, 1,
          S - w, D - w);
    // Every second row of the subpicture.
    const int width = c.width >> 1, height = static_cast<int>(as_unsigned(c.height) >> 1);
    plane(pointer::video_v, pointer::sub_v, pointer::dst_v, width, height, half(V), half(V - w),
          S - width, 2, 2 * S - w, half(D - w));
    plane(pointer::video_u, pointer::sub_u, pointer::dst_u, width, height, half(V), half(V - w),
          S - width, 2, 2 * S - w, half(D - w));
}

// ---- Stretches -----------------------------------------------------------------------------------

// YV12 to YUY2 of twice the height, `times` as wide. `filtered`: rows above and two below are read,
// from the second pair to the one before the last.
template <class Receiver>
constexpr void rows_of_doubled_pairs(const picture_call &p, number times, bool filtered,
                                     Receiver &to) {
    const number S = p.src_pitch, D = p.dst_pitch, w = p.width, c = half(w);
    // Twice the width counts steps as signed numbers.
    const number steps = times == 2 ? up(c, 8) : whole(p.width >> 1, 8);
    const number W = larger(2 * steps, 16 * times), d = W - w, drift = W / 2 - c;
    const number P = row_pairs_of(p.height);
    const number luma_below = 2 * unsigned_half(S), chroma_below = unsigned_half(S);
    // From row to row of luma: that of the upper and of the lower one are alike.
    const number row = S + 2 * d, next = 2 * row;
    const number chroma_next = half(S - w) + c + 4 * drift;
    to.writes(pointer::dst, {0, 2 * times * W, 4 * P, D + 2 * times * d});
    // Of rows that do not drift, at an even pitch, whatever lies above or below is one of them.
    if (d == 0 && luma_below == S) {
        to.reads(pointer::src, {0, W, 2 * P, S});
        for (const pointer plane : src_chroma)
            to.reads(plane, {0, W / 2, P, chroma_next});
        return;
    }
    // Luma is read from two places that are d apart (an odd width may be one more than W), chroma from
    // four. They are one where they touch, which those of negative widths do not.
    reads_apart(to, pointer::src, {0, W, P, next}, d, 2);
    reads_apart(to, pointer::src, {row, W, P, next}, d, 2);
    to.reads(pointer::src, {d + luma_below, W, P, next});
    to.reads(pointer::src, {d + row + luma_below, W, P - 1, next});
    for (const pointer plane : src_chroma) {
        reads_apart(to, plane, {0, W / 2, P, chroma_next}, drift, 4);
        reads_apart(to, plane, {2 * drift + chroma_below, W / 2, P - 1, chroma_next}, drift, 2);
    }
    if (filtered) {
        const number luma_beside[] = {-luma_below, 2 * luma_below};
        const number chroma_beside[] = {-chroma_below, 2 * chroma_below};
        for (const number beside : luma_beside) {
            to.reads(pointer::src, {d + next + beside, W, P - 2, next});
            to.reads(pointer::src, {d + next + row + beside, W, P - 2, next});
        }
        for (const pointer plane : src_chroma)
            for (const number beside : chroma_beside)
                to.reads(plane,
                         {2 * drift + chroma_next + beside, W / 2 + drift, P - 3, chroma_next});
    }
}

// Columns of 16 pixels of YUY2 to twice both. A column goes back up by what the height means.
template <class Receiver>
constexpr void rows_of_doubled_packed(const packed_stretch_call &c, Receiver &to) {
    const number L = c.row_bytes, D = c.dst_pitch, K = L / 32, P = row_pairs_of(c.height);
    const number src_next = to_column(32 + 2 * P * L - wrapped(L * c.height));
    const number dst_next = to_column(64 + 4 * P * D - wrapped(2 * D * c.height));
    to.reads(pointer::src, {0, 32, 2 * P, L, K, src_next});
    // The first samples of the next column, where they belong to no column.
    if (src_next != 32)
        to.reads(pointer::src, {32, 4, 2 * P, L, K - 1, src_next});
    to.writes(pointer::dst, {0, 64, 4 * P, D, K, dst_next});
}

// Columns of 16 pixels of YV12 to RGB of twice the height. B bytes per pixel.
template <class Receiver>
constexpr void rows_of_doubled_columns(const picture_call &p, number B, Receiver &to) {
    const number S = p.src_pitch, D = p.dst_pitch, h = p.height;
    const number K = up(p.width, 16) / 16, P = row_pairs_of(h);
    const number rewind = wrapped(h * S), dst_rewind = wrapped(2 * h * D);
    to.reads(pointer::src, {0, 16, 2 * P, S, K, to_column(16 + 2 * P * S - rewind)});
    for (const pointer plane : src_chroma)
        to.reads(plane, {0, 8, P, half(S), K, to_column(8 + P * half(S) - (rewind >> 2))});
    to.writes(pointer::dst, {0, 16 * B, 4 * P, D, K, to_column(16 * B + 4 * P * D - dst_rewind)});
}

// One plane to twice the height, `times` as wide, `start` bytes behind dst. The last row comes once
// more, right behind itself.
template <class Receiver>
constexpr void rows_of_adjusted_plane(pointer from, number start, const plane_stretch_call &c,
                                      number times, Receiver &to) {
    const number w = c.width, h = c.height, S = c.src_pitch, D = c.dst_pitch;
    const number W = whole(c.width, 8), next = times == 2 ? w : S;
    // What whole steps of 16 leave is a step that ends where the row does; of narrower rows it begins
    // before the row.
    const number left = w % 16 != 0 && w < 16 ? w - 16 : 0;
    if (w == W && next == S && h > 1) {
        to.reads(from, {left, w - left, h, S});
    } else {
        to.reads(from, {0, W});
        to.reads(from, {left, w - left, h - 1, next});
        to.reads(from, {left + S, w - left, h - 1, next});
        to.reads(from, {(h - 1) * next - S, W, 2, next - S});
    }
    const number made = times == 2 ? 2 * w - w % 16 : w;
    if (w % 16 == 0 && h > 1) {
        to.writes(pointer::dst, {start, made, 2 * h - 1, D});
        to.writes_again(pointer::dst, {start + (2 * h - 2) * D + made, made});
        return;
    }
    to.writes(pointer::dst, {start + D + left, made - left, 2 * h - 3, D});
    // Whole steps, where the others may end within one; the former of the last two over an average,
    // which begins where the others do.
    to.writes_again(pointer::dst, {start, times * W});
    to.writes_again(pointer::dst, {start + (2 * h - 2) * D + left, times * W - left});
    to.writes_again(pointer::dst, {start + (2 * h - 2) * D + times * w, times * W});
}

// The planes of a picture, into one surface.
constexpr chroma_places chroma_of_adjusted_planes(const picture_call &p) {
    const number V = wrapped(2 * number{p.height} * p.dst_pitch);
    return {V, V + (V >> 2)};
}
template <class Receiver>
constexpr void rows_of_adjusted_planes(const picture_call &p, number times, Receiver &to) {
    const plane_stretch_call luma{p.width, p.height, p.src_pitch, p.dst_pitch};
    const plane_stretch_call chroma{p.width >> 1, p.height >> 1, p.src_pitch >> 1,
                                    p.dst_pitch >> 1};
    const chroma_places start = chroma_of_adjusted_planes(p);
    rows_of_adjusted_plane(pointer::src, 0, luma, times, to);
    rows_of_adjusted_plane(pointer::src_v, start.v, chroma, times, to);
    rows_of_adjusted_plane(pointer::src_u, start.u, chroma, times, to);
}

// strech_pic_2X2(): of the last row all but the last 8 samples lie a row lower.
template <class Receiver>
constexpr void rows_of_plain_plane(const plane_stretch_call &c, Receiver &to) {
    const number D = c.dst_pitch, h = c.height, W = larger(up(c.width, 8), 16);
    to.reads(pointer::src, {0, W, h, c.src_pitch});
    to.writes(pointer::dst, {0, 2 * W, 2 * h - 1, D});
    to.writes(pointer::dst, {(2 * h - 1) * D + 2 * W - 16, 16});
    to.writes(pointer::dst, {2 * h * D, 2 * W - 16});
}

// A frame or one of its fields to YUY2 of twice the height. Rows between two others have at least 48
// pixels.
template <class Receiver>
constexpr void rows_of_frame(const frame_stretch_call &c, Receiver &to) {
    const number n = c.luma_pitch, D = c.dst_pitch, P = c.height / 2;
    const number W = whole(c.luma_pitch, 16), E = larger(W, 48);
    const bool field = c.field_mode == 1;
    const number row = field ? 2 * n : n, chroma_row = half(row), next = 2 * row;
    const number to_start = wrapped(n * c.start), o = field ? to_start : half(to_start);
    to.reads(pointer::plane_y, {o, E, P, next});
    to.reads(pointer::plane_y, {o + row, E, P - 1, next});
    to.reads(pointer::plane_y, {o + (2 * P - 1) * row, W});
    to.reads(pointer::plane_y, {o + 2 * chroma_row, E, P, next});
    to.reads(pointer::plane_y, {o + row + 2 * chroma_row, E, P - 1, next});
    for (const pointer plane : frame_chroma)
        to.reads(plane, {o >> 2, E / 2, P, chroma_row});
    if (W == E) {
        to.writes(pointer::dst, {0, 2 * W, 4 * P, D});
        return;
    }
    to.writes(pointer::dst, {0, 2 * W, P, 4 * D});
    to.writes(pointer::dst, {D, 2 * E, P, 4 * D});
    to.writes(pointer::dst, {2 * D, 2 * E, P - 1, 4 * D});
    to.writes(pointer::dst, {3 * D, 2 * E, P - 1, 4 * D});
    to.writes(pointer::dst, {(4 * P - 2) * D, 2 * W, 2, D});
}

} // namespace LUMALANE_COMPILED_FOR
} // namespace detail

} // namespace lumalane

#endif
