// Formats of surfaces, and the row kernels that make them.
#pragma once

#include "picture/stores.h"

#include <lumalane/rows_of.h>

namespace lumalane {

// The bound on vectors of 32 bytes or more; narrower ones are slower than the memory.
inline bound_by on_wide_vectors(const row_kernels &rows, bound_by bound) {
    return rows.vector_bytes >= 32 ? bound : bound_by::arithmetic;
}

inline bool streams_pairs(const row_kernels &rows, int bytes_per_pixel) {
    return streams_pairs(rows.vector_bytes, rows.vector_registers, bytes_per_pixel);
}

// Pairs that are not stored in turn around the cache have chroma made for each row.

inline bound_by bound_of_rgb32(const row_kernels &rows) {
    return streams_pairs(rows, 4) ? detail::bound_of_rgb : bound_by::arithmetic_and_stores;
}

inline bound_by bound_of_rgb24(const row_kernels &rows) {
    return streams_pairs(rows, 3) ? detail::bound_of_rgb : bound_by::arithmetic;
}

struct planar_to_surface {
    row_kernel::planar_to_surface *emit; // null: nothing is to be made
    int bytes_per_pixel;
    bound_by bound;
};

inline planar_to_surface planar_to_rgb32(const row_kernels &rows) {
    return {rows.emit_rgb32, 4, bound_of_rgb32(rows)};
}

inline planar_to_surface planar_to_rgb24(const row_kernels &rows) {
    return {rows.emit_rgb24, 3, bound_of_rgb24(rows)};
}

inline planar_to_surface planar_to_yuy2(const row_kernels &rows) {
    return {rows.emit_yuy2, 2, on_wide_vectors(rows, detail::bound_of_yuy2)};
}

// Of tag_ajust_contrast_info::rgb16_layout; nothing for a value that is none.
inline planar_to_surface planar_to_rgb16(const row_kernels &rows, unsigned layout) {
    row_kernel::planar_to_surface *const of_layouts[] = {rows.emit_rgb16_565, rows.emit_rgb16_555,
                                                         rows.emit_rgb16_664, rows.emit_rgb16_655};
    return {detail::is_rgb16_layout(layout) ? of_layouts[layout] : nullptr, 2,
            bound_by::arithmetic};
}

// The same for packed sources.

struct packed_to_surface {
    row_kernel::packed_to_surface *emit;
    int bytes_per_pixel;
    bound_by bound;
};

inline packed_to_surface packed_to_rgb32(const row_kernels &rows) {
    return {rows.emit_packed_rgb32, 4, bound_of_rgb32(rows)};
}

inline packed_to_surface packed_to_rgb24(const row_kernels &rows) {
    return {rows.emit_packed_rgb24, 3, bound_of_rgb24(rows)};
}

inline packed_to_surface packed_to_yuy2(const row_kernels &rows) {
    return {rows.emit_packed_yuy2, 2, detail::bound_of_yuy2};
}

inline packed_to_surface packed_to_adjusted_yuy2(const row_kernels &rows) {
    return {rows.emit_packed_yuy2, 2, on_wide_vectors(rows, detail::bound_of_yuy2)};
}

inline packed_to_surface packed_to_rgb16(const row_kernels &rows, unsigned layout) {
    row_kernel::packed_to_surface *const of_layouts[] = {
        rows.emit_packed_rgb16_565, rows.emit_packed_rgb16_555, rows.emit_packed_rgb16_664,
        rows.emit_packed_rgb16_655};
    return {detail::is_rgb16_layout(layout) ? of_layouts[layout] : nullptr, 2,
            bound_by::arithmetic};
}

} // namespace lumalane
