#include "examples/player/conversion.h"

#include "examples/player/failure.h"

extern "C" {
#include <libavutil/pixdesc.h>
}

namespace player {
namespace {

// Files that do not say which matrix they use are taken to use BT.601.
bool is_bt601(AVColorSpace matrix) {
    return matrix == AVCOL_SPC_UNSPECIFIED || matrix == AVCOL_SPC_BT470BG ||
           matrix == AVCOL_SPC_SMPTE170M;
}

bool fits(const AVFrame &frame) {
    return frame.format == AV_PIX_FMT_YUV420P && frame.color_range != AVCOL_RANGE_JPEG &&
           is_bt601(frame.colorspace);
}

} // namespace

void conversion::prepare(const AVFrame &from) {
    width = from.width;
    height = from.height;
    format = from.format;
    range = from.color_range;
    matrix = from.colorspace;

    converted.reset(av_frame_alloc());
    converted->format = AV_PIX_FMT_YUV420P;
    converted->width = width;
    converted->height = height;
    const auto source = static_cast<AVPixelFormat>(format);
    scaler.reset(sws_getContext(width, height, source, width, height, AV_PIX_FMT_YUV420P,
                                SWS_BILINEAR | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INP, nullptr,
                                nullptr, nullptr));
    if (av_frame_get_buffer(converted.get(), 0) < 0 || !scaler) {
        const char *name = av_get_pix_fmt_name(source);
        throw failure(std::string("cannot convert the pixel format ") +
                      (name ? name : "(unknown)"));
    }
    constexpr int unity = 1 << 16;
    sws_setColorspaceDetails(
        scaler.get(), sws_getCoefficients(is_bt601(matrix) ? SWS_CS_ITU601 : matrix),
        range == AVCOL_RANGE_JPEG, sws_getCoefficients(SWS_CS_ITU601), 0, 0, unity, unity);
}

const AVFrame &conversion::operator()(const AVFrame &from) {
    if (fits(from))
        return from;
    if (from.width != width || from.height != height || from.format != format ||
        from.color_range != range || from.colorspace != matrix)
        prepare(from);
    sws_scale(scaler.get(), from.data, from.linesize, 0, height, converted->data,
              converted->linesize);
    return *converted;
}

} // namespace player
