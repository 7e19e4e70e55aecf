#include "bench/peers.h"

extern "C" {
#include <libavutil/imgutils.h>
#include <libswscale/swscale.h>
}

#include <memory>
#include <stdexcept>

namespace lumalane::bench {
namespace {

std::shared_ptr<SwsContext> scaler(size source, AVPixelFormat from, size target, AVPixelFormat to,
                                   int flags) {
    const std::shared_ptr<SwsContext> context(sws_getContext(source.width, source.height, from,
                                                             target.width, target.height, to, flags,
                                                             nullptr, nullptr, nullptr),
                                              sws_freeContext);
    if (!context)
        throw std::runtime_error("libswscale refuses the conversion");
    return context;
}

// Without accurate rounding. Point sampling is fastest where nothing is scaled.
task scaled(scene &s, size target, AVPixelFormat from, AVPixelFormat to, int flags) {
    return [&s, context = scaler(s.picture(), from, target, to, flags), from, to, target] {
        const uint8_t *const source[] = {s.y.data(), s.u.data(), s.v.data(), nullptr};
        int source_pitches[4];
        av_image_fill_linesizes(source_pitches, from, s.src_pitch);
        uint8_t *surface[4];
        int surface_pitches[4];
        av_image_fill_arrays(surface, surface_pitches, s.dst.data(), to, target.width,
                             target.height, 1);
        sws_scale(context.get(), source, source_pitches, 0, s.height, surface, surface_pitches);
    };
}

template <AVPixelFormat from, AVPixelFormat to, int flags = SWS_POINT>
task converted(scene &s) {
    return scaled(s, s.picture(), from, to, flags);
}

template <AVPixelFormat to, int flags>
task halved(scene &s) {
    return scaled(s, {s.width / 2, s.height}, AV_PIX_FMT_YUV420P, to, flags);
}

// To a surface of `wider` times the width and twice the height.
template <int wider, AVPixelFormat to>
task stretched(scene &s) {
    return scaled(s, {wider * s.width, 2 * s.height}, AV_PIX_FMT_YUV420P, to, SWS_FAST_BILINEAR);
}

template <AVPixelFormat to>
task subpicture_to(scene &s) {
    return [&s, context = scaler(s.picture(), AV_PIX_FMT_YUV422P, s.picture(), to, SWS_POINT)] {
        const uint8_t *const planes[] = {s.sub_y.data(), s.sub_u.data(), s.sub_v.data()};
        const int pitches[] = {s.src_pitch, s.src_pitch / 2, s.src_pitch / 2};
        uint8_t *const surface[] = {s.dst.data()};
        sws_scale(context.get(), planes, pitches, 0, s.height, surface, &s.dst_pitch);
    };
}

template <AVPixelFormat from>
task subpicture_from(scene &s) {
    return [&s, context = scaler(s.picture(), from, s.picture(), AV_PIX_FMT_YUV422P, SWS_POINT)] {
        const uint8_t *const surface[] = {s.dst.data()};
        uint8_t *const planes[] = {s.sub_y.data(), s.sub_u.data(), s.sub_v.data()};
        const int pitches[] = {s.src_pitch, s.src_pitch / 2, s.src_pitch / 2};
        sws_scale(context.get(), surface, &s.dst_pitch, 0, s.height, planes, pitches);
    };
}

constexpr AVPixelFormat i420 = AV_PIX_FMT_YUV420P, yuyv = AV_PIX_FMT_YUYV422;

} // namespace

const peer swscale_bgra{"libswscale", "yuv420p to bgra", converted<i420, AV_PIX_FMT_BGRA>};
const peer swscale_bgr24{"libswscale", "yuv420p to bgr24", converted<i420, AV_PIX_FMT_BGR24>};
const peer swscale_rgb565{"libswscale", "yuv420p to rgb565le",
                          converted<i420, AV_PIX_FMT_RGB565LE>};
const peer swscale_yuy2{"libswscale", "yuv420p to yuyv422", converted<i420, yuyv>};

const peer swscale_half_yuy2{"libswscale", "yuv420p to half yuyv422 (area)",
                             halved<yuyv, SWS_AREA>};
const peer swscale_half_yv12{"libswscale", "yuv420p to half yuv420p", halved<i420, SWS_POINT>};

// Fast bilinear scaling is faster than point sampling here.
const peer swscale_bgra_from_yuy2{"libswscale", "yuyv422 to bgra",
                                  converted<yuyv, AV_PIX_FMT_BGRA, SWS_FAST_BILINEAR>};
const peer swscale_bgr24_from_yuy2{"libswscale", "yuyv422 to bgr24",
                                   converted<yuyv, AV_PIX_FMT_BGR24, SWS_FAST_BILINEAR>};
const peer swscale_rgb565_from_yuy2{"libswscale", "yuyv422 to rgb565le",
                                    converted<yuyv, AV_PIX_FMT_RGB565LE, SWS_FAST_BILINEAR>};

const peer swscale_bgra_from_i422{"libswscale", "yuv422p to bgra", subpicture_to<AV_PIX_FMT_BGRA>};
const peer swscale_bgr24_from_i422{"libswscale", "yuv422p to bgr24",
                                   subpicture_to<AV_PIX_FMT_BGR24>};
const peer swscale_rgb565_from_i422{"libswscale", "yuv422p to rgb565le",
                                    subpicture_to<AV_PIX_FMT_RGB565LE>};

const peer swscale_i422_from_bgra{"libswscale", "bgra to yuv422p",
                                  subpicture_from<AV_PIX_FMT_BGRA>};
const peer swscale_i422_from_bgr24{"libswscale", "bgr24 to yuv422p",
                                   subpicture_from<AV_PIX_FMT_BGR24>};
const peer swscale_i422_from_rgb565{"libswscale", "rgb565le to yuv422p",
                                    subpicture_from<AV_PIX_FMT_RGB565LE>};

const peer swscale_1x2_yuy2{"libswscale", "yuv420p to yuyv422", stretched<1, yuyv>};
const peer swscale_1x2_bgra{"libswscale", "yuv420p to bgra", stretched<1, AV_PIX_FMT_BGRA>};
const peer swscale_1x2_bgr24{"libswscale", "yuv420p to bgr24", stretched<1, AV_PIX_FMT_BGR24>};
const peer swscale_1x2_rgb565{"libswscale", "yuv420p to rgb565le",
                              stretched<1, AV_PIX_FMT_RGB565LE>};
const peer swscale_2x2_yuy2{"libswscale", "yuv420p to yuyv422", stretched<2, yuyv>};

std::string swscale_version() { return AV_STRINGIFY(LIBSWSCALE_VERSION); }

} // namespace lumalane::bench
