// What is done with one frame: pictures of the companion headers and fields of them.
#ifndef LUMALANE_GSTREAMER_CONVERSION_H
#define LUMALANE_GSTREAMER_CONVERSION_H

#include <lumalane/picture.h>

#include <vector>

namespace lumalane_gst {

/// How one field of an interlaced frame becomes a whole one.
enum class deinterlacing {
    none,    ///< it does not: both fields stay
    doubled, ///< new rows are averages of their neighbours; of packed pictures repeated rows
    edge,    ///< new rows follow the edges
};

/// Whether a frame of the one format can become one of the other.
bool converts(lumalane::format from, lumalane::format to, deinterlacing how);

struct frame {
    lumalane::const_picture source;
    lumalane::picture destination;
    bool interlaced = false;
    int first_field = 0;                          ///< 0: that of the upper row, 1: the other
    deinterlacing how = deinterlacing::none;      ///< of an interlaced one
    const lumalane::adjustment *adjust = nullptr; ///< null: none
    /// Of the destination: how many it has memory for, as many as it needs or more.
    int chroma_rows = 0;
};

class converter {
public:
    /// Converts a frame, of an interlaced one each field by itself or, deinterlacing, the first one.
    /// 4:2:0 pictures have chroma of their own for each field, and so it is taken. Where fields stay
    /// and there is room, the lower one gets as many chroma rows as the upper one.
    lumalane::status convert(const frame &f);

private:
    lumalane::status convert_picture(const frame &f);
    lumalane::status convert_fields(const frame &f);
    lumalane::status deinterlace(const frame &f);
    lumalane::status double_height(const frame &f, const lumalane::const_picture &field,
                                   const lumalane::picture &to);
    lumalane::picture between(lumalane::format format, int width, int height);

    std::vector<unsigned char> memory;
};

} // namespace lumalane_gst

#endif
