// Pictures of any size: where their planes are and what is in them.
//
//     unsigned char *frame = ...;                         // I420 without gaps
//     lumalane::const_picture source =
//         lumalane::packed_planes(lumalane::format::i420, 1366, 768, frame);
#ifndef LUMALANE_FORMAT_H
#define LUMALANE_FORMAT_H

#include <lumalane/compiled_for.h>
#include <lumalane/errors.h>

#include <cstddef>

namespace lumalane {

/// What the samples of a picture are, as lumalane.h tells under "Pixel formats". The planes of a
/// picture stand in the order of the names behind it.
enum class format {
    yv12, ///< 4:2:0: Y, V, U
    i420, ///< 4:2:0: Y, U, V
    yuy2, ///< packed 4:2:2, Y0 U Y1 V; of an odd width the last Y1 is no pixel, but there is memory
    rgb32,  ///< B G R 0
    rgb24,  ///< B G R
    rgb565, ///< 16-bit words, little-endian: RRRRRGGG GGGBBBBB
    rgb555, ///< RRRRRGGG GGBBBBB0
    rgb664, ///< RRRRRRGG GGGGBBBB
    rgb655, ///< RRRRRRGG GGGBBBBB
};

inline namespace LUMALANE_COMPILED_FOR {

constexpr bool is_planar(format f) { return f == format::yv12 || f == format::i420; }

constexpr int plane_count(format f) { return is_planar(f) ? 3 : 1; }

/// Samples of a row of the plane, or pixels of a packed one: of chroma half of them, rounded up.
constexpr int plane_width(format f, int plane, int width) {
    return is_planar(f) && plane > 0 ? width / 2 + width % 2 : width;
}

constexpr int plane_height(format f, int plane, int height) {
    return plane_width(f, plane, height);
}

/// Bytes of a row of the plane.
constexpr long long row_bytes(format f, int plane, int width) {
    const long long pixels = plane_width(f, plane, width);
    switch (f) {
    case format::yv12:
    case format::i420:
        return pixels;
    case format::yuy2:
        return (pixels + 1) / 2 * 4;
    case format::rgb32:
        return pixels * 4;
    case format::rgb24:
        return pixels * 3;
    default:
        return pixels * 2;
    }
}

} // namespace LUMALANE_COMPILED_FOR

/// A plane, or a packed picture: its upper left byte, and the bytes from there to the row below:
/// negative where that lies before it, as in the bitmaps of Windows. Rows may not overlap.
struct const_plane {
    const unsigned char *data;
    int stride;
};

struct plane {
    unsigned char *data;
    int stride;

    LUMALANE_ALWAYS_INLINE constexpr operator const_plane() const { return {data, stride}; }
};

/// A picture that is read.
struct const_picture {
    lumalane::format format;
    int width;  ///< pixels, at least 1
    int height; ///< rows, at least 1
    const_plane planes[3];
};

/// A picture that is written. Every pixel of it is, and nothing else.
struct picture {
    lumalane::format format;
    int width;
    int height;
    plane planes[3];

    LUMALANE_ALWAYS_INLINE constexpr operator const_picture() const {
        return {format, width, height, {planes[0], planes[1], planes[2]}};
    }
};

inline namespace LUMALANE_COMPILED_FOR {

/// Bytes of a picture whose planes follow each other without gaps. (Of one that no memory can hold, the
/// greatest size there is.)
constexpr std::size_t picture_bytes(format f, int width, int height) {
    constexpr std::size_t most = static_cast<std::size_t>(-1);
    unsigned long long bytes = 0;
    for (int i = 0; i < plane_count(f); ++i)
        bytes += static_cast<unsigned long long>(row_bytes(f, i, width)) *
                 static_cast<unsigned long long>(plane_height(f, i, height));
    return bytes < most ? static_cast<std::size_t>(bytes) : most;
}

/// Such a picture in the picture_bytes() from `data` on. For one plane with gaps between its rows,
/// set `planes[0].stride`. Of a null pointer all planes are null.
constexpr picture packed_planes(format f, int width, int height, unsigned char *data) {
    picture made{f, width, height, {{nullptr, 0}, {nullptr, 0}, {nullptr, 0}}};
    for (int i = 0; i < plane_count(f); ++i) {
        const long long bytes = row_bytes(f, i, width);
        made.planes[i] = {data, static_cast<int>(bytes)};
        if (data)
            data += bytes * plane_height(f, i, height);
    }
    return made;
}

/// The same picture upside down: from the last row to the first. Exact for packed pictures and for even
/// heights: of yv12 and i420 with an odd height every second row then has the chroma of the row pair
/// below its own.
constexpr picture flipped(picture p) {
    for (int i = 0; i < plane_count(p.format); ++i) {
        if (p.planes[i].data)
            p.planes[i].data +=
                static_cast<std::ptrdiff_t>(plane_height(p.format, i, p.height) - 1) *
                p.planes[i].stride;
        p.planes[i].stride = -p.planes[i].stride;
    }
    return p;
}

} // namespace LUMALANE_COMPILED_FOR

} // namespace lumalane

#endif
