// Video files, decoded with libavformat and libavcodec.
#pragma once

#include "examples/player/conversion.h"
#include "examples/player/handles.h"

#include <string>

namespace player {

class picture;

// Reads one video stream from its start to its end. Everything throws failure, with one line that
// names the file, if the file cannot be read, has no video, is damaged or ends too early.
class decoder {
public:
    explicit decoder(const std::string &file);

    // Size of the pictures as the file announces it.
    int width() const { return codec->width; }
    int height() const { return codec->height; }

    // Decodes the next picture; false after the last.
    bool next(picture &into);

    // When the last picture is to be shown, in seconds.
    double time() const { return shown_at; }

private:
    void feed();
    void check_complete() const;
    std::string place() const;
    [[noreturn]] void fail(const std::string &what) const;

    std::string file;
    handle<AVFormatContext> container;
    handle<AVCodecContext> codec;
    handle<AVPacket> packet;
    handle<AVFrame> frame;
    conversion to_library;
    AVStream *stream = nullptr;
    bool key_seen = false;
    long pictures = 0;
    double shown_at = 0;
    double read_until = 0;
};

} // namespace player
