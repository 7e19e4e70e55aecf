// Decoded frames of any format to the one that the library reads.
#pragma once

#include "examples/player/handles.h"

namespace player {

// The two forms of picture that the library reads.
inline constexpr AVPixelFormat planar_420 = AV_PIX_FMT_YUV420P;
inline constexpr AVPixelFormat packed_422 = AV_PIX_FMT_YUYV422;

// Whether a frame of this format is best read as packed_422: it is packed 4:2:2 in some order.
bool is_packed_422(int format);

// The library takes BT.601 colours in studio range for granted, which is what most video of its
// kind has. Every other pixel format, range or matrix is brought to that by libswscale first; size
// and timing stay.
class conversion {
public:
    // `from` itself if it already fits, else a frame that stays valid until the next call.
    // Throws failure if libswscale does not know the format.
    const AVFrame &operator()(const AVFrame &from, AVPixelFormat to);

private:
    void prepare(const AVFrame &from, AVPixelFormat to);
    bool is_prepared(const AVFrame &from, AVPixelFormat to) const;

    handle<SwsContext> scaler;
    handle<AVFrame> converted;
    // What `scaler` was made for.
    int width = 0;
    int height = 0;
    int format = AV_PIX_FMT_NONE;
    AVColorRange range = AVCOL_RANGE_UNSPECIFIED;
    AVColorSpace matrix = AVCOL_SPC_UNSPECIFIED;
};

} // namespace player
