// Converts pictures of any size.
#ifndef LUMALANE_CONVERT_H
#define LUMALANE_CONVERT_H

#include <lumalane/adjust.h>
#include <lumalane/format.h>

namespace lumalane {

/// Converts a picture to the format of `destination`, which has its size.
///
///   from          to
///   yv12, i420    rgb32, rgb24, rgb565, rgb555, rgb664, rgb655, yuy2, yv12, i420
///   yuy2          rgb32, rgb24, rgb565, rgb555, rgb664, rgb655, yuy2
///
/// The pixels are those that the function of lumalane.h makes (loadimage_rgb32() for yv12 to rgb32,
/// LoadYUY2_RGB32() for yuy2, and so on) of a picture that is made larger by repeating its last
/// column and its last row. Width and height are any, from 1 on, and so are the strides. Not a byte
/// outside of the pictures is read or written, and every pixel is written: also those that
/// loadimage_yuy2() leaves out.
///
///   - Between yv12 and i420 without an adjustment, the planes are copied.
///   - yuy2 to yuy2: lower rows of row pairs get the chroma of the upper ones.
///   - yuy2 of an odd width: the last Y1 is not read; it is written as if it were a pixel.
///
/// Refuses: null_plane, width_too_small, height_too_small, size_too_large, stride_too_small,
/// sizes_differ, unsupported_formats, buffers_overlap (of source and destination, from their first
/// to their last bytes). Needs 32 KB of stack.
status convert(const const_picture &source, const picture &destination);

/// The same with an adjustment, which this call alone has: see <lumalane/adjust.h>.
status convert(const const_picture &source, const picture &destination, const adjustment &own);

} // namespace lumalane

#endif
