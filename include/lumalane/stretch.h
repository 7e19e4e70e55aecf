// Stretches pictures of any size.
#ifndef LUMALANE_STRETCH_H
#define LUMALANE_STRETCH_H

#include <lumalane/adjust.h>
#include <lumalane/format.h>

namespace lumalane {

enum class stretching {
    twice_height, ///< new rows are averages of their neighbours
    twice_both,   ///< twice the width and the height
    along_edges,  ///< twice the height; new rows follow the edges
};

/// Converts a picture to the format of `destination`, which is twice as high, and for twice_both
/// twice as wide.
///
///   how            from          to                                         like
///   twice_height   yv12, i420    yuy2                                       strech_picture_1X2_yuy2
///                                rgb32, rgb24, rgb565, rgb555, rgb664, rgb655
///                                                             strech_picture_1X2_yuy2_ajust_rgb32
///                                yv12, i420                          strech_picture_1X2_yv12_ajust
///   twice_both     yv12, i420    yuy2                                       strech_picture_2X2_yuy2
///                                yv12, i420                          strech_picture_2X2_yv12_ajust
///                  yuy2          yuy2                                  yuy2_strech_picture_2X2_yuy2
///   along_edges    yv12, i420    yuy2                                         strech_opt_yuy2_ajust
///
/// The pixels are those of the function for a picture that is made larger by repeating its last
/// column and row: to a multiple of its step and its least size, to 48 pixels along_edges, and to
/// even heights; from yv12 to yv12 to a multiple of 32 pixels, an even height from 4 on and rows
/// without gaps. Each of U and V has its own offset there. What the functions promise about new
/// samples holds, the quirks of their pixels too.
///
/// Functions that always adjust do it by nothing here, with the lock of <lumalane/adjust.h>.
///
/// Refuses what convert() refuses; sizes_differ if `destination` is not as large as that.
status stretch(const const_picture &source, const picture &destination, stretching how);

/// The same with an adjustment; twice_height onto yuy2 then has the filter of four rows of
/// strech_picture_1X2_yuy2_ajust().
status stretch(const const_picture &source, const picture &destination, stretching how,
               const adjustment &own);

} // namespace lumalane

#endif
