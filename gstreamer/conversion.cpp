#include "conversion.h"

#include <algorithm>
#include <cstddef>

namespace lumalane_gst {

using lumalane::const_picture;
using lumalane::format;
using lumalane::is_planar;
using lumalane::picture;
using lumalane::plane_count;
using lumalane::plane_height;
using lumalane::status;
using lumalane::stretching;

namespace {

// Rows of a picture: the first one of Y, or of the packed plane, the first one of chroma, how many,
// and from how many rows one is taken.
template <class Picture>
Picture rows_of(Picture p, int first, int first_of_chroma, int rows, int step = 1) {
    for (int i = 0; i < plane_count(p.format); ++i) {
        p.planes[i].data +=
            static_cast<std::ptrdiff_t>(i == 0 ? first : first_of_chroma) * p.planes[i].stride;
        p.planes[i].stride *= step;
    }
    p.height = rows;
    return p;
}

// Every second row, and of chroma every second row.
template <class Picture>
Picture field_of(const Picture &p, int parity, int rows) {
    return rows_of(p, parity, parity, rows, 2);
}

// Rows of a field that have chroma of their own. Where a frame has an odd number of chroma rows, the
// lower field lacks the last one.
int rows_with_chroma(const const_picture &frame, int parity, int rows) {
    if (!is_planar(frame.format))
        return rows;
    return std::min(rows, (plane_height(frame.format, 1, frame.height) - parity + 1) / 2 * 2);
}

status convert_as_told(const const_picture &from, const picture &to,
                       const lumalane::adjustment *adjust) {
    return adjust ? lumalane::convert(from, to, *adjust) : lumalane::convert(from, to);
}

// Where bytes only move, an adjustment that changes nothing makes the library store whole vectors of
// the widest kind, around the cache if the surface is large: up to twice as fast.
status convert_or_adjust(const const_picture &from, const picture &to,
                         const lumalane::adjustment *adjust) {
    if (!adjust && is_planar(from.format) && to.format == format::yuy2)
        return lumalane::convert(from, to, lumalane::adjustment{});
    return convert_as_told(from, to, adjust);
}

status stretch_or_adjust(const const_picture &from, const picture &to, stretching how,
                         const lumalane::adjustment *adjust) {
    return adjust ? lumalane::stretch(from, to, how, *adjust) : lumalane::stretch(from, to, how);
}

// All bytes of the rows, each row so many times.
void copy_rows(const const_picture &from, const picture &to, int times = 1) {
    for (int i = 0; i < plane_count(from.format); ++i)
        for (int row = 0; row < times * plane_height(from.format, i, from.height); ++row)
            std::copy_n(from.planes[i].data +
                            static_cast<std::ptrdiff_t>(row / times) * from.planes[i].stride,
                        lumalane::row_bytes(from.format, i, from.width),
                        to.planes[i].data + static_cast<std::ptrdiff_t>(row) * to.planes[i].stride);
}

// Row `to` of the result by itself, made of row `from` with the last chroma that its field has, or
// that there is.
status convert_row(const frame &f, int from, int chroma, int to) {
    const int last = plane_height(f.source.format, 1, f.source.height) - 1;
    const int of_field = chroma > last ? chroma - 2 : chroma;
    // A row is not worth a turn of the adjustment.
    return convert_as_told(rows_of(f.source, from, of_field < 0 ? last : of_field, 1),
                           rows_of(f.destination, to, to / 2, 1), f.adjust);
}

// Of an odd number of chroma rows the lower field lacks the last one, which others read behind them.
void complete_lower_field(const picture &p, int chroma_rows) {
    const int rows = is_planar(p.format) ? plane_height(p.format, 1, p.height) : 0;
    if (rows % 2 == 0 || chroma_rows <= rows)
        return;
    for (int i = 1; i < plane_count(p.format); ++i) {
        const std::ptrdiff_t stride = p.planes[i].stride;
        std::copy_n(p.planes[i].data + std::max(rows - 2, 0) * stride,
                    lumalane::row_bytes(p.format, i, p.width), p.planes[i].data + rows * stride);
    }
}

} // namespace

bool converts(format from, format to, deinterlacing how) {
    if (!is_planar(from) && (is_planar(to) || how == deinterlacing::edge))
        return false;
    return how != deinterlacing::edge || !is_planar(to);
}

status converter::convert(const frame &f) {
    const status s = convert_picture(f);
    if (s && f.interlaced && f.how == deinterlacing::none)
        complete_lower_field(f.destination, f.chroma_rows);
    return s;
}

status converter::convert_picture(const frame &f) {
    // A frame of one row has no second field.
    const bool has_fields =
        f.interlaced && f.source.height > 1 && f.source.height == f.destination.height;
    if (has_fields && f.how != deinterlacing::none)
        return deinterlace(f);
    // A conversion would give both rows of a pair of YUY2 the chroma of the upper one.
    if (f.source.format == f.destination.format && !f.adjust) {
        copy_rows(f.source, f.destination);
        return {};
    }
    // Samples of planes stay where they are.
    if (has_fields && !is_planar(f.destination.format))
        return convert_fields(f);
    return convert_or_adjust(f.source, f.destination, f.adjust);
}

status converter::convert_fields(const frame &f) {
    status s;
    for (int parity = 0; s && parity < 2; ++parity) {
        const int rows = (f.source.height - parity + 1) / 2;
        const int whole = rows_with_chroma(f.source, parity, rows);
        if (whole > 0)
            s = convert_or_adjust(field_of(f.source, parity, whole),
                                  field_of(f.destination, parity, whole), f.adjust);
        for (int row = whole; s && row < rows; ++row) {
            const int of_frame = 2 * row + parity;
            s = convert_row(f, of_frame, row / 2 * 2 + parity, of_frame);
        }
    }
    return s;
}

status converter::deinterlace(const frame &f) {
    const int parity = f.first_field, height = f.source.height;
    // Of odd heights the upper field has a row that is not doubled.
    const int rows = (height - parity + 1) / 2;
    const int whole = rows_with_chroma(f.source, parity, height / 2);
    status s;
    if (whole > 0)
        s = double_height(f, field_of(f.source, parity, whole),
                          rows_of(f.destination, 0, 0, 2 * whole));
    for (int row = 2 * whole; s && row < height; ++row) {
        const int of_field = std::min(row / 2, rows - 1);
        s = convert_row(f, 2 * of_field + parity, of_field / 2 * 2 + parity, row);
    }
    return s;
}

status converter::double_height(const frame &f, const const_picture &field, const picture &to) {
    if (f.how == deinterlacing::edge) {
        if (to.format == format::yuy2)
            return stretch_or_adjust(field, to, stretching::along_edges, f.adjust);
        const picture doubled = between(format::yuy2, to.width, to.height);
        const status s = stretch_or_adjust(field, doubled, stretching::along_edges, f.adjust);
        return s ? lumalane::convert(doubled, to) : s;
    }
    if (!is_planar(field.format)) {
        if (field.format == to.format && !f.adjust) {
            copy_rows(field, to, 2);
            return {};
        }
        const status s = convert_or_adjust(field, field_of(to, 0, field.height), f.adjust);
        return s ? convert_or_adjust(field, field_of(to, 1, field.height), f.adjust) : s;
    }
    if (!is_planar(to.format) || !f.adjust)
        return stretch_or_adjust(field, to, stretching::twice_height, f.adjust);
    // The stretch of planes has one gain for all of them.
    const picture adjusted = between(to.format, field.width, field.height);
    const status s = lumalane::convert(field, adjusted, *f.adjust);
    return s ? lumalane::stretch(adjusted, to, stretching::twice_height) : s;
}

// A picture that stays within the converter, with rows as the library has them in one call.
picture converter::between(format format, int width, int height) {
    const int whole = (width + 31) / 32 * 32;
    memory.resize(lumalane::picture_bytes(format, whole, height));
    picture made = lumalane::packed_planes(format, whole, height, memory.data());
    made.width = width;
    return made;
}

} // namespace lumalane_gst
