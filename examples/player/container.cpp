#include "examples/player/container.h"

#include "examples/player/failure.h"

namespace player {

std::string text_of(int error) {
    char text[AV_ERROR_MAX_STRING_SIZE];
    av_strerror(error, text, sizeof text);
    return text;
}

opened_stream open_stream(const std::string &file, AVMediaType kind) {
    // Errors come back as codes and are reported in one line; libav's own lines would come on top.
    av_log_set_level(AV_LOG_QUIET);
    const std::string name = av_get_media_type_string(kind);
    const auto fail = [&file](const std::string &what) { throw failure(file + ": " + what); };

    opened_stream opened;
    AVFormatContext *container = nullptr;
    if (const int error = avformat_open_input(&container, file.c_str(), nullptr, nullptr);
        error < 0)
        fail(error == AVERROR_INVALIDDATA ? "not a " + name + " file, damaged or cut off"
                                          : text_of(error));
    opened.container.reset(container);
    if (const int error = avformat_find_stream_info(container, nullptr); error < 0)
        fail(text_of(error));

    const AVCodec *decoder = nullptr;
    const int index = av_find_best_stream(container, kind, -1, -1, &decoder, 0);
    if (index == AVERROR_DECODER_NOT_FOUND)
        fail("no decoder for its " + name + " stream");
    if (index < 0)
        fail("no " + name + " stream in it");
    opened.stream = container->streams[index];

    opened.codec.reset(avcodec_alloc_context3(decoder));
    avcodec_parameters_to_context(opened.codec.get(), opened.stream->codecpar);
    opened.codec->pkt_timebase = opened.stream->time_base;
    opened.codec->thread_count = 0;                // as many as there are processors
    opened.codec->err_recognition = AV_EF_EXPLODE; // report damage rather than paint over it
    if (const int error = avcodec_open2(opened.codec.get(), decoder, nullptr); error < 0)
        fail(text_of(error));
    return opened;
}

} // namespace player
