// Files opened with libavformat, and the decoder for what is wanted of them.
#pragma once

#include "examples/player/handles.h"

#include <string>

namespace player {

// libav's words for its error.
std::string text_of(int error);

// A file's best stream of a kind. `container` owns the stream.
struct opened_stream {
    handle<AVFormatContext> container;
    handle<AVCodecContext> codec;
    AVStream *stream = nullptr;
};

// Throws failure, with one line that names the file, if it has no such stream or none that can be
// decoded.
opened_stream open_stream(const std::string &file, AVMediaType kind);

} // namespace player
