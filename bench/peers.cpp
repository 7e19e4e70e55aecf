#include "bench/peers.h"

extern "C" {
#include <libavutil/avutil.h>
#include <libswscale/swscale.h>
}
#include <libyuv.h>

#include <memory>
#include <stdexcept>

namespace lumalane::bench {
namespace {

template <auto convert>
task libyuv_from_i420(scene &s) {
    return [&s] {
        convert(s.y.data(), s.src_pitch, s.u.data(), s.src_pitch / 2, s.v.data(), s.src_pitch / 2,
                s.dst.data(), s.dst_pitch, s.width, s.height);
    };
}

// Point sampling without accurate rounding is its fastest setting where nothing is scaled.
template <AVPixelFormat to>
task swscale_from_yuv420p(scene &s) {
    const std::shared_ptr<SwsContext> context(sws_getContext(s.width, s.height, AV_PIX_FMT_YUV420P,
                                                             s.width, s.height, to, SWS_POINT,
                                                             nullptr, nullptr, nullptr),
                                              sws_freeContext);
    if (!context)
        throw std::runtime_error("libswscale refuses the conversion");
    return [&s, context] {
        const uint8_t *const planes[] = {s.y.data(), s.u.data(), s.v.data()};
        const int pitches[] = {s.src_pitch, s.src_pitch / 2, s.src_pitch / 2};
        uint8_t *const surface[] = {s.dst.data()};
        sws_scale(context.get(), planes, pitches, 0, s.height, surface, &s.dst_pitch);
    };
}

} // namespace

const peer libyuv_argb{"libyuv", "I420ToARGB", libyuv_from_i420<libyuv::I420ToARGB>};
const peer libyuv_rgb24{"libyuv", "I420ToRGB24", libyuv_from_i420<libyuv::I420ToRGB24>};
const peer libyuv_rgb565{"libyuv", "I420ToRGB565", libyuv_from_i420<libyuv::I420ToRGB565>};

const peer swscale_bgra{"libswscale", "yuv420p to bgra", swscale_from_yuv420p<AV_PIX_FMT_BGRA>};
const peer swscale_bgr24{"libswscale", "yuv420p to bgr24", swscale_from_yuv420p<AV_PIX_FMT_BGR24>};
const peer swscale_rgb565{"libswscale", "yuv420p to rgb565le",
                          swscale_from_yuv420p<AV_PIX_FMT_RGB565LE>};

std::string peer_versions() {
    return "libyuv " + std::to_string(LIBYUV_VERSION) + ", libswscale " +
           AV_STRINGIFY(LIBSWSCALE_VERSION);
}

} // namespace lumalane::bench
