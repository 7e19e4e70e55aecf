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

bool fits(const AVFrame &frame, AVPixelFormat to) {
    return frame.format == to && frame.color_range != AVCOL_RANGE_JPEG &&
           is_bt601(frame.colorspace);
}

} // namespace

bool is_packed_422(int format) {
    const AVPixFmtDescriptor *kind = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(format));
    return kind && !(kind->flags & AV_PIX_FMT_FLAG_PLANAR) && kind->log2_chroma_w == 1 &&
           kind->log2_chroma_h == 0;
}

bool conversion::is_prepared(const AVFrame &from, AVPixelFormat to) const {
    return converted && converted->format == to && from.width == width && from.height == height &&
           from.format == format && from.color_range == range && from.colorspace == matrix;
}

void conversion::prepare(const AVFrame &from, AVPixelFormat to) {
    width = from.width;
    height = from.height;
    format = from.format;
    range = from.color_range;
    matrix = from.colorspace;

    converted.reset(av_frame_alloc());
    converted->format = to;
    converted->width = width;
    converted->height = height;
    const auto source = static_cast<AVPixelFormat>(format);
    scaler.reset(sws_getContext(width, height, source, width, height, to,
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

const AVFrame &conversion::operator()(const AVFrame &from, AVPixelFormat to) {
    if (fits(from, to))
        return from;
    if (!is_prepared(from, to))
        prepare(from, to);
    sws_scale(scaler.get(), from.data, from.linesize, 0, height, converted->data,
              converted->linesize);
    return *converted;
}

} // namespace player
