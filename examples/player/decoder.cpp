#include "examples/player/decoder.h"

#include "examples/player/failure.h"
#include "examples/player/picture.h"

#include <algorithm>

namespace player {
namespace {

std::string text_of(int error) {
    char text[AV_ERROR_MAX_STRING_SIZE];
    av_strerror(error, text, sizeof text);
    return text;
}

} // namespace

decoder::decoder(const std::string &name)
    : file(name), packet(av_packet_alloc()), frame(av_frame_alloc()) {
    // Errors come back as codes and are reported in one line; libav's own lines would come on top.
    av_log_set_level(AV_LOG_QUIET);

    AVFormatContext *opened = nullptr;
    if (const int error = avformat_open_input(&opened, file.c_str(), nullptr, nullptr); error < 0)
        fail(error == AVERROR_INVALIDDATA ? "not a video, damaged or cut off" : text_of(error));
    container.reset(opened);
    if (const int error = avformat_find_stream_info(opened, nullptr); error < 0)
        fail(text_of(error));

    const AVCodec *kind = nullptr;
    const int index = av_find_best_stream(opened, AVMEDIA_TYPE_VIDEO, -1, -1, &kind, 0);
    if (index == AVERROR_DECODER_NOT_FOUND)
        fail("no decoder for its video stream");
    if (index < 0)
        fail("no video stream in it");
    stream = container->streams[index];

    codec.reset(avcodec_alloc_context3(kind));
    avcodec_parameters_to_context(codec.get(), stream->codecpar);
    codec->pkt_timebase = stream->time_base;
    codec->thread_count = 0;                // as many as there are processors
    codec->err_recognition = AV_EF_EXPLODE; // report damage rather than paint over it
    if (const int error = avcodec_open2(codec.get(), kind, nullptr); error < 0)
        fail(text_of(error));
}

void decoder::fail(const std::string &what) const { throw failure(file + ": " + what); }

std::string decoder::place() const { return " after picture " + std::to_string(pictures); }

// Gives the decoder the next packet of the stream or, after the last, the end.
void decoder::feed() {
    for (;;) {
        av_packet_unref(packet.get());
        const int error = av_read_frame(container.get(), packet.get());
        if (error == AVERROR_EOF) {
            avcodec_send_packet(codec.get(), nullptr);
            return;
        }
        if (error < 0)
            fail("cannot read on" + place() + ": " + text_of(error));
        if (packet->flags & AV_PKT_FLAG_CORRUPT)
            fail("damaged or cut off" + place());
        const int64_t time = packet->pts == AV_NOPTS_VALUE ? packet->dts : packet->pts;
        if (time != AV_NOPTS_VALUE) {
            const AVRational unit = container->streams[packet->stream_index]->time_base;
            const int64_t end = time + packet->duration;
            read_until = std::max(read_until, static_cast<double>(end) * av_q2d(unit));
        }
        // A recording may start anywhere; what comes before the first key frame cannot be decoded.
        key_seen |= packet->stream_index == stream->index && packet->flags & AV_PKT_FLAG_KEY;
        if (packet->stream_index == stream->index && key_seen)
            break;
    }
    if (const int error = avcodec_send_packet(codec.get(), packet.get()); error < 0)
        fail("decoding failed" + place() + ": " + text_of(error));
}

// Some formats simply stop where a file is cut off; then the announced duration tells.
void decoder::check_complete() const {
    if (pictures == 0)
        fail("no picture in its video stream");
    if (container->duration == AV_NOPTS_VALUE || read_until == 0 ||
        container->duration_estimation_method == AVFMT_DURATION_FROM_BITRATE)
        return;
    const int64_t start = container->start_time == AV_NOPTS_VALUE ? 0 : container->start_time;
    const double end = static_cast<double>(start + container->duration) / AV_TIME_BASE;
    constexpr double imprecision = 0.3; // seconds: announced durations are rounded
    if (end - read_until > imprecision)
        fail("cut off" + place());
}

bool decoder::next(picture &into) {
    int error;
    while ((error = avcodec_receive_frame(codec.get(), frame.get())) == AVERROR(EAGAIN))
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
    const AVRational rate = av_guess_frame_rate(container.get(), stream, frame.get());
    if (frame->best_effort_timestamp != AV_NOPTS_VALUE)
        shown_at = static_cast<double>(frame->best_effort_timestamp) * av_q2d(stream->time_base);
    else if (rate.num)
        shown_at += 1 / av_q2d(rate);

    const AVFrame &ready = to_library(*frame);
    into.assign(ready.width, ready.height, {ready.data[0], ready.linesize[0]},
                {ready.data[1], ready.linesize[1]}, {ready.data[2], ready.linesize[2]});
    return true;
}

} // namespace player
