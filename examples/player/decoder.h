// Video files, decoded with libavformat and libavcodec.
#pragma once

#include "examples/player/container.h"
#include "examples/player/conversion.h"
#include "examples/player/handles.h"

#include <string>

namespace player {

class picture;

// A picture as it was decoded.
struct decoded_picture {
    bool is_packed() const { return is_packed_422(frame->format); }

    // Which of its fields is to be shown first: 0 is that of the uppermost row.
    int first_field() const;

    handle<AVFrame> frame{av_frame_alloc()};
    double time = 0;        // when it is to be shown, in seconds from the start of the file
    double duration = 0;    // for how long, in seconds
    double pixel_shape = 1; // width by height
};

// Reads one video stream from its start to its end. Everything throws failure, with one line that
// names the file, if the file cannot be read, has no video, is damaged or ends too early.
class decoder {
public:
    explicit decoder(const std::string &file);

    // Size at which the pictures are to be shown, as the file announces it.
    int shown_width() const;
    int height() const { return input.codec->height; }

    // Decodes the next picture; false after the last.
    bool next(decoded_picture &into);

    // A picture in the form that is wanted.
    void get(const decoded_picture &from, picture &into, bool packed);

private:
    double pixel_shape(AVFrame *of) const;
    void feed();
    void check_complete() const;
    std::string place() const;
    [[noreturn]] void fail(const std::string &what) const;

    std::string file;
    opened_stream input;
    handle<AVPacket> packet;
    conversion to_library;
    bool key_seen = false;
    long pictures = 0;
    double start = 0;
    double shown_at = 0;
    double read_until = 0;
};

} // namespace player
