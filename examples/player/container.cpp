#include "examples/player/container.h"

#include "examples/player/failure.h"

#include <bit>
#include <cstdint>
#include <optional>
#include <string_view>

namespace player {
namespace {

// A number of Matroska's: the zeros that it begins with tell how many bytes follow the first.
struct marked_number {
    explicit marked_number(AVIOContext *from)
        : with_marker(static_cast<std::uint64_t>(avio_r8(from))),
          bytes(std::countl_zero(static_cast<std::uint8_t>(with_marker)) + 1) {
        for (int read = 1; read < bytes; ++read)
            with_marker = with_marker << 8 | static_cast<std::uint64_t>(avio_r8(from));
    }

    bool is_valid() const { return bytes <= 8; }
    std::int64_t most() const { return (std::int64_t{1} << 7 * bytes) - 1; }
    std::int64_t value() const { return static_cast<std::int64_t>(with_marker) & most(); }

    std::uint64_t with_marker;
    int bytes;
};

// Where a Matroska file is to end, if it tells.
std::optional<std::int64_t> announced_end(AVIOContext *file) {
    constexpr std::uint64_t segment = 0x18538067; // which has all but the header in it
    std::int64_t at = 0;
    for (;;) {
        if (avio_seek(file, at, SEEK_SET) < 0)
            return std::nullopt;
        const marked_number name(file), size(file);
        if (avio_feof(file) || !name.is_valid() || !size.is_valid() || size.value() == size.most())
            return std::nullopt;
        at = avio_tell(file) + size.value();
        if (name.with_marker == segment)
            return at;
    }
}

} // namespace

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

bool has_announced_size(const AVFormatContext &container) {
    if (!std::string_view(container.iformat->name).starts_with("matroska"))
        return false;
    const auto end = announced_end(container.pb);
    return end && *end <= avio_size(container.pb);
}

} // namespace player
