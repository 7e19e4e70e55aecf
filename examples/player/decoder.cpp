#include "examples/player/decoder.h"

#include "examples/player/failure.h"
#include "examples/player/picture.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace player {

int decoded_picture::first_field() const {
#ifdef AV_FRAME_FLAG_INTERLACED // FFmpeg 6.1 and later
    const bool interlaced = frame->flags & AV_FRAME_FLAG_INTERLACED;
    const bool top_first = frame->flags & AV_FRAME_FLAG_TOP_FIELD_FIRST;
#else
    const bool interlaced = frame->interlaced_frame, top_first = frame->top_field_first;
#endif
    return interlaced && !top_first;
}

decoder::decoder(const std::string &name)
    : file(name), input(open_stream(file, AVMEDIA_TYPE_VIDEO)), packet(av_packet_alloc()) {
    const AVFormatContext &container = *input.container;
    if (container.start_time != AV_NOPTS_VALUE)
        start = static_cast<double>(container.start_time) / AV_TIME_BASE;
}

void decoder::fail(const std::string &what) const { throw failure(file + ": " + what); }

std::string decoder::place() const { return " after picture " + std::to_string(pictures); }

// Without a frame, of all.
double decoder::pixel_shape(AVFrame *of) const {
    const AVRational shape = av_guess_sample_aspect_ratio(input.container.get(), input.stream, of);
    constexpr double most = 8; // what is beyond is damage
    const double known = shape.num > 0 && shape.den > 0 ? av_q2d(shape) : 1;
    return known >= 1 / most && known <= most ? known : 1;
}

int decoder::shown_width() const {
    return static_cast<int>(std::lround(input.codec->width * pixel_shape(nullptr)));
}

// Gives the decoder the next packet of the stream or, after the last, the end.
void decoder::feed() {
    for (;;) {
        av_packet_unref(packet.get());
        const int error = av_read_frame(input.container.get(), packet.get());
        if (error == AVERROR_EOF) {
            avcodec_send_packet(input.codec.get(), nullptr);
            return;
        }
        if (error < 0)
            fail("cannot read on" + place() + ": " + text_of(error));
        if (packet->flags & AV_PKT_FLAG_CORRUPT)
            fail("damaged or cut off" + place());
        const int64_t time = packet->pts == AV_NOPTS_VALUE ? packet->dts : packet->pts;
        if (time != AV_NOPTS_VALUE) {
            const AVRational unit = input.container->streams[packet->stream_index]->time_base;
            const int64_t end = time + packet->duration;
            read_until = std::max(read_until, static_cast<double>(end) * av_q2d(unit));
        }
        // A recording may start anywhere; what comes before the first key frame cannot be decoded.
        key_seen |= packet->stream_index == input.stream->index && packet->flags & AV_PKT_FLAG_KEY;
        if (packet->stream_index == input.stream->index && key_seen)
            break;
    }
    if (const int error = avcodec_send_packet(input.codec.get(), packet.get()); error < 0)
        fail("decoding failed" + place() + ": " + text_of(error));
}

// Some formats simply stop where a file is cut off; then the announced duration tells.
void decoder::check_complete() const {
    if (pictures == 0)
        fail("no picture in its video stream");
    if (input.container->duration == AV_NOPTS_VALUE || read_until == 0 ||
        input.container->duration_estimation_method == AVFMT_DURATION_FROM_BITRATE)
        return;
    // How long its last picture is to be shown is a guess, which may be short.
    if (std::string_view(input.container->iformat->name).starts_with("matroska"))
        return;
    const double end = start + static_cast<double>(input.container->duration) / AV_TIME_BASE;
    constexpr double imprecision = 0.3; // seconds: announced durations are rounded
    if (end - read_until > imprecision)
        fail("cut off" + place());
}

bool decoder::next(decoded_picture &into) {
    AVFrame *const frame = into.frame.get();
    int error;
    while ((error = avcodec_receive_frame(input.codec.get(), frame)) == AVERROR(EAGAIN))
        feed();
    if (error == AVERROR_EOF) {
        check_complete();
        return false;
    }
    if (error < 0)
        fail("decoding failed" + place() + ": " + text_of(error));
    if (frame->decode_error_flags || frame->flags & AV_FRAME_FLAG_CORRUPT)
        fail("damaged" + place());

    ++pictures;
    const AVRational rate = av_guess_frame_rate(input.container.get(), input.stream, frame);
    into.duration = rate.num ? 1 / av_q2d(rate) : 0;
    if (frame->best_effort_timestamp != AV_NOPTS_VALUE)
        shown_at =
            static_cast<double>(frame->best_effort_timestamp) * av_q2d(input.stream->time_base);
    else
        shown_at += into.duration;
    into.time = shown_at - start;
    into.pixel_shape = pixel_shape(frame);
    return true;
}

void decoder::get(const decoded_picture &from, picture &into, bool packed) {
    const AVFrame &ready = to_library(*from.frame, packed ? packed_422 : planar_420);
    const auto plane = [&ready](int number) {
        return plane_view{ready.data[number], ready.linesize[number]};
    };
    into.pixel_shape = from.pixel_shape;
    if (packed)
        into.assign_packed(ready.width, ready.height, plane(0));
    else
        into.assign(ready.width, ready.height, plane(0), plane(1), plane(2));
}

} // namespace player
