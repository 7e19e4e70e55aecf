// Decoded frames of any format to the one that the library reads.
#pragma once

#include "examples/player/handles.h"

namespace player {

// The library's functions read 8-bit 4:2:0 planes with BT.601 colours in studio range, which is
// what most video of its kind is. Every other pixel format, range or matrix is brought to that by
// libswscale first; size and timing stay.
class conversion {
public:
    // `from` itself if it already fits, else a frame that stays valid until the next call.
    // Throws failure if libswscale does not know the format.
    const AVFrame &operator()(const AVFrame &from);

private:
    void prepare(const AVFrame &from);

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
