#include "examples/player/subtitles.h"

#include "examples/player/container.h"
#include "examples/player/failure.h"

#include <cstring>

namespace player {

// libavcodec's decoders bring every format of text to that of libass.
subtitles::subtitles(const std::string &file) {
    const opened_stream input = open_stream(file, AVMEDIA_TYPE_SUBTITLE);
    const AVCodecDescriptor *kind = avcodec_descriptor_get(input.codec->codec_id);
    if (kind && kind->props & AV_CODEC_PROP_BITMAP_SUB)
        throw failure(file + ": its subtitles are pictures, not text");
    ass_process_codec_private(lines(), reinterpret_cast<char *>(input.codec->subtitle_header),
                              input.codec->subtitle_header_size);
    const handle<AVPacket> packet(av_packet_alloc());
    const auto in_milliseconds = [&input](int64_t time) {
        return av_rescale_q(time, input.stream->time_base, {1, 1000});
    };
    int error;
    for (; (error = av_read_frame(input.container.get(), packet.get())) >= 0;
         av_packet_unref(packet.get())) {
        if (packet->stream_index != input.stream->index)
            continue;
        AVSubtitle decoded{};
        int any = 0;
        if (avcodec_decode_subtitle2(input.codec.get(), &decoded, &any, packet.get()) < 0)
            throw failure(file + ": damaged, or not in UTF-8");
        for (unsigned n = 0; n < decoded.num_rects; ++n)
            if (char *line = decoded.rects[n]->ass)
                ass_process_chunk(lines(), line, static_cast<int>(std::strlen(line)),
                                  in_milliseconds(packet->pts), in_milliseconds(packet->duration));
        avsubtitle_free(&decoded);
    }
    if (error != AVERROR_EOF)
        throw failure(file + ": " + text_of(error));
}

} // namespace player
