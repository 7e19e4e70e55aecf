#include "bench/peers.h"

#include <libyuv.h>

#include <algorithm>
#include <memory>

namespace lumalane::bench {
namespace {

// A 4:2:0 picture.
struct planes {
    unsigned char *y, *u, *v;
    int pitch, chroma_pitch, width, height;

    // Counted in rows of luma, from an even one on.
    planes strip(int first, int rows) const {
        return {y + std::ptrdiff_t(first) * pitch,
                u + std::ptrdiff_t(first / 2) * chroma_pitch,
                v + std::ptrdiff_t(first / 2) * chroma_pitch,
                pitch,
                chroma_pitch,
                width,
                rows};
    }
};

planes picture(const scene &s) {
    return {s.y.data(), s.u.data(), s.v.data(), s.src_pitch, s.src_pitch / 2, s.width, s.height};
}

// Its first field, as a picture of half the height.
planes field(const scene &s) {
    planes rows = picture(s);
    rows.height /= 2;
    return rows;
}

// Every second row of the subpicture's chroma.
planes subpicture(const scene &s) {
    return {s.sub_y.data(), s.sub_u.data(), s.sub_v.data(), s.src_pitch,
            s.src_pitch,    s.width,        s.height};
}

// Y, V and U, as YV12 surfaces have them.
planes planes_at(unsigned char *memory, size picture) {
    const auto [width, height] = picture;
    unsigned char *const v = memory + std::ptrdiff_t(width) * height;
    return {memory, v + std::ptrdiff_t(width) * height / 4, v, width, width / 2, width, height};
}

// A picture of the peer's own, for what is between two passes.
struct own_planes : planes {
    explicit own_planes(size picture)
        : memory(std::make_shared<buffer>(std::size_t(2 * picture.pixels()))) {
        static_cast<planes &>(*this) = planes_at(memory->data(), picture);
    }

private:
    std::shared_ptr<buffer> memory;
};

using packer = decltype(libyuv::I420ToARGB) *;

void pack(const planes &from, packer convert, unsigned char *to, int pitch) {
    convert(from.y, from.pitch, from.u, from.chroma_pitch, from.v, from.chroma_pitch, to, pitch,
            from.width, from.height);
}

void scale(const planes &from, const planes &to, libyuv::FilterMode filter) {
    libyuv::I420Scale(from.y, from.pitch, from.u, from.chroma_pitch, from.v, from.chroma_pitch,
                      from.width, from.height, to.y, to.pitch, to.u, to.chroma_pitch, to.v,
                      to.chroma_pitch, to.width, to.height, filter);
}

template <packer convert>
task packed(scene &s) {
    return [&s] { pack(picture(s), convert, s.dst.data(), s.dst_pitch); };
}

template <packer convert>
task packed_from_i422(scene &s) {
    return [&s] {
        planes rows = subpicture(s);
        rows.chroma_pitch /= 2;
        pack(rows, convert, s.dst.data(), s.dst_pitch);
    };
}

template <libyuv::FilterMode filter>
task scaled(scene &s, size to) {
    return [&s, to] { scale(picture(s), planes_at(s.dst.data(), to), filter); };
}

template <libyuv::FilterMode filter, packer convert>
task scaled_and_packed(scene &s, size to) {
    return [&s, between = own_planes(to)] {
        scale(picture(s), between, filter);
        pack(between, convert, s.dst.data(), s.dst_pitch);
    };
}

task argb_from_yuy2(scene &s) {
    return [&s] {
        libyuv::YUY2ToARGB(s.y.data(), 2 * s.src_pitch, s.dst.data(), s.dst_pitch, s.width,
                           s.height);
    };
}

// By way of ARGB, which is faster than by way of I420 and of I422; two rows at a time, so that they
// stay in the cache.
template <decltype(libyuv::ARGBToRGB24) *convert>
task packed_from_yuy2(scene &s) {
    static constexpr int rows = 2;
    return [&s, argb = std::make_shared<buffer>(std::size_t(s.width) * rows * 4)] {
        const int pitch = 4 * s.width;
        for (int row = 0; row < s.height; row += rows) {
            const int count = std::min(rows, s.height - row);
            libyuv::YUY2ToARGB(s.y.data() + std::ptrdiff_t(2) * s.src_pitch * row, 2 * s.src_pitch,
                               argb->data(), pitch, s.width, count);
            convert(argb->data(), pitch, s.dst.data() + std::ptrdiff_t(s.dst_pitch) * row,
                    s.dst_pitch, s.width, count);
        }
    };
}

// To a surface of `wider` times the width and twice the height.
template <int wider, packer convert>
task stretched_and_packed(scene &s) {
    return scaled_and_packed<libyuv::kFilterBilinear, convert>(s, {wider * s.width, 2 * s.height});
}

template <int wider>
task stretched(scene &s) {
    return scaled<libyuv::kFilterBilinear>(s, {wider * s.width, 2 * s.height});
}

template <int wider>
task plane_stretched(scene &s) {
    return [&s] {
        libyuv::ScalePlane(s.y.data(), s.src_pitch, s.width, s.height, s.dst.data(), s.dst_pitch,
                           wider * s.width, 2 * s.height, libyuv::kFilterBilinear);
    };
}

void subpicture_from_argb(scene &s, const unsigned char *argb, int pitch, int first_row, int rows) {
    const planes to = subpicture(s).strip(first_row, rows);
    libyuv::ARGBToI422(argb, pitch, to.y, to.pitch, to.u, to.pitch / 2, to.v, to.pitch / 2, s.width,
                       rows);
}

// By way of ARGB, two rows at a time.
template <decltype(libyuv::RGB24ToARGB) *convert>
task subpicture_from(scene &s) {
    static constexpr int most = 2;
    return [&s, argb = std::make_shared<buffer>(std::size_t(s.width) * most * 4)] {
        const int pitch = 4 * s.width;
        for (int row = 0; row < s.height; row += most) {
            const int rows = std::min(most, s.height - row);
            convert(s.dst.data() + std::ptrdiff_t(s.dst_pitch) * row, s.dst_pitch, argb->data(),
                    pitch, s.width, rows);
            subpicture_from_argb(s, argb->data(), pitch, row, rows);
        }
    };
}

// The subpicture over `video`. Its weights go up to 255 there, which makes no difference in time.
void blend(const scene &s, const planes &video, const planes &to, int first_row) {
    const planes above = subpicture(s).strip(first_row, video.height);
    libyuv::I420Blend(
        above.y, above.pitch, above.u, above.chroma_pitch, above.v, above.chroma_pitch, video.y,
        video.pitch, video.u, video.chroma_pitch, video.v, video.chroma_pitch,
        s.alpha.data() + std::ptrdiff_t(first_row) * s.src_pitch, s.src_pitch, to.y, to.pitch, to.u,
        to.chroma_pitch, to.v, to.chroma_pitch, video.width, video.height);
}

// A few rows at a time, so that what is between the passes stays in the cache: calls
// `make(rows, first_row)`.
constexpr int rows_at_once = 16;

template <class Make>
void in_strips(const planes &video, const Make &make) {
    for (int row = 0; row < video.height; row += rows_at_once)
        make(video.strip(row, std::min(rows_at_once, video.height - row)), row);
}

unsigned char *surface_row(scene &s, int row) {
    return s.dst.data() + std::ptrdiff_t(s.dst_pitch) * row;
}

own_planes own_strip(int width) { return own_planes({width, rows_at_once}); }

template <packer convert>
void mix_strips(scene &s, const planes &video, const planes &between) {
    in_strips(video, [&](const planes &rows, int row) {
        const planes mixed = between.strip(0, rows.height);
        blend(s, rows, mixed, row);
        pack(mixed, convert, surface_row(s, row), s.dst_pitch);
    });
}

template <packer convert>
task mixed_and_packed(scene &s) {
    return [&s, between = own_strip(s.width)] { mix_strips<convert>(s, picture(s), between); };
}

template <packer convert>
task field_mixed_and_packed(scene &s) {
    return [&s, frame = own_planes(s.picture()), between = own_strip(s.width)] {
        scale(field(s), frame, libyuv::kFilterBilinear);
        mix_strips<convert>(s, frame, between);
    };
}

// To half of the width.
template <libyuv::FilterMode filter>
void halve_and_pack(scene &s, const planes &rows, int row, const planes &between) {
    const planes half = between.strip(0, rows.height);
    scale(rows, half, filter);
    pack(half, libyuv::I420ToYUY2, surface_row(s, row), s.dst_pitch);
}

} // namespace

const peer libyuv_argb{"libyuv", "I420ToARGB", packed<libyuv::I420ToARGB>};
const peer libyuv_rgb24{"libyuv", "I420ToRGB24", packed<libyuv::I420ToRGB24>};
const peer libyuv_rgb565{"libyuv", "I420ToRGB565", packed<libyuv::I420ToRGB565>};
const peer libyuv_yuy2{"libyuv", "I420ToYUY2", packed<libyuv::I420ToYUY2>};

const peer libyuv_half_yuy2{"libyuv", "I420Scale (linear), I420ToYUY2", [](scene &s) -> task {
                                return [&s, half = own_strip(s.width / 2)] {
                                    in_strips(picture(s), [&](const planes &rows, int row) {
                                        halve_and_pack<libyuv::kFilterLinear>(s, rows, row, half);
                                    });
                                };
                            }};
const peer libyuv_half_yv12{"libyuv", "I420Scale (none)", [](scene &s) {
                                return scaled<libyuv::kFilterNone>(s, {s.width / 2, s.height});
                            }};

const peer libyuv_argb_from_yuy2{"libyuv", "YUY2ToARGB", argb_from_yuy2};
const peer libyuv_rgb24_from_yuy2{"libyuv", "YUY2ToARGB, ARGBToRGB24",
                                  packed_from_yuy2<libyuv::ARGBToRGB24>};
const peer libyuv_rgb565_from_yuy2{"libyuv", "YUY2ToARGB, ARGBToRGB565",
                                   packed_from_yuy2<libyuv::ARGBToRGB565>};

const peer libyuv_argb_from_i422{"libyuv", "I422ToARGB", packed_from_i422<libyuv::I422ToARGB>};
const peer libyuv_rgb24_from_i422{"libyuv", "I422ToRGB24", packed_from_i422<libyuv::I422ToRGB24>};
const peer libyuv_rgb565_from_i422{"libyuv", "I422ToRGB565",
                                   packed_from_i422<libyuv::I422ToRGB565>};

const peer libyuv_i422_from_argb{
    "libyuv", "ARGBToI422", [](scene &s) -> task {
        return [&s] { subpicture_from_argb(s, s.dst.data(), s.dst_pitch, 0, s.height); };
    }};
const peer libyuv_i422_from_rgb24{"libyuv", "RGB24ToARGB, ARGBToI422",
                                  subpicture_from<libyuv::RGB24ToARGB>};
const peer libyuv_i422_from_rgb565{"libyuv", "RGB565ToARGB, ARGBToI422",
                                   subpicture_from<libyuv::RGB565ToARGB>};

const peer libyuv_fill_argb{
    "libyuv", "ARGBRect", [](scene &s) -> task {
        return [&s] { libyuv::ARGBRect(s.dst.data(), s.dst_pitch, 0, 0, s.width, s.height, 0); };
    }};

const peer libyuv_mix_yuy2{"libyuv", "I420Blend, I420ToYUY2", mixed_and_packed<libyuv::I420ToYUY2>};
const peer libyuv_mix_argb{"libyuv", "I420Blend, I420ToARGB", mixed_and_packed<libyuv::I420ToARGB>};
const peer libyuv_mix_rgb24{"libyuv", "I420Blend, I420ToRGB24",
                            mixed_and_packed<libyuv::I420ToRGB24>};
const peer libyuv_mix_rgb565{"libyuv", "I420Blend, I420ToRGB565",
                             mixed_and_packed<libyuv::I420ToRGB565>};

const peer libyuv_mix_yv12{"libyuv", "I420Blend", [](scene &s) -> task {
                               return [&s] {
                                   blend(s, picture(s), planes_at(s.dst.data(), s.picture()), 0);
                               };
                           }};

const peer libyuv_mix_half_yuy2{
    "libyuv", "I420Blend, I420Scale (none), I420ToYUY2", [](scene &s) -> task {
        return [&s, between = own_strip(s.width), half = own_strip(s.width / 2)] {
            in_strips(picture(s), [&](const planes &rows, int row) {
                const planes mixed = between.strip(0, rows.height);
                blend(s, rows, mixed, row);
                halve_and_pack<libyuv::kFilterNone>(s, mixed, row, half);
            });
        };
    }};

const peer libyuv_mix_field_yuy2{"libyuv", "I420Scale, I420Blend, I420ToYUY2",
                                 field_mixed_and_packed<libyuv::I420ToYUY2>};
const peer libyuv_mix_field_argb{"libyuv", "I420Scale, I420Blend, I420ToARGB",
                                 field_mixed_and_packed<libyuv::I420ToARGB>};
const peer libyuv_mix_field_rgb24{"libyuv", "I420Scale, I420Blend, I420ToRGB24",
                                  field_mixed_and_packed<libyuv::I420ToRGB24>};
const peer libyuv_mix_field_rgb565{"libyuv", "I420Scale, I420Blend, I420ToRGB565",
                                   field_mixed_and_packed<libyuv::I420ToRGB565>};

const peer libyuv_mix_field_yv12{"libyuv", "I420Scale, I420Blend", [](scene &s) -> task {
                                     return [&s, frame = own_planes(s.picture())] {
                                         scale(field(s), frame, libyuv::kFilterBilinear);
                                         blend(s, frame, planes_at(s.dst.data(), s.picture()), 0);
                                     };
                                 }};

const peer libyuv_1x2_yuy2{"libyuv", "I420Scale, I420ToYUY2",
                           stretched_and_packed<1, libyuv::I420ToYUY2>};
const peer bilinear_1x2_yuy2{"bilinear stretch", "(libyuv I420Scale, I420ToYUY2)",
                             stretched_and_packed<1, libyuv::I420ToYUY2>, true};
const peer libyuv_1x2_argb{"libyuv", "I420Scale, I420ToARGB",
                           stretched_and_packed<1, libyuv::I420ToARGB>};
const peer libyuv_1x2_rgb24{"libyuv", "I420Scale, I420ToRGB24",
                            stretched_and_packed<1, libyuv::I420ToRGB24>};
const peer libyuv_1x2_rgb565{"libyuv", "I420Scale, I420ToRGB565",
                             stretched_and_packed<1, libyuv::I420ToRGB565>};
const peer libyuv_2x2_yuy2{"libyuv", "I420Scale, I420ToYUY2",
                           stretched_and_packed<2, libyuv::I420ToYUY2>};

const peer libyuv_2x2_yuy2_from_yuy2{
    "libyuv", "YUY2ToI420, I420Scale, I420ToYUY2", [](scene &s) -> task {
        const size twice{2 * s.width, 2 * s.height};
        return [&s, split = own_planes(s.picture()), between = own_planes(twice)] {
            libyuv::YUY2ToI420(s.y.data(), 2 * s.src_pitch, split.y, split.pitch, split.u,
                               split.chroma_pitch, split.v, split.chroma_pitch, s.width, s.height);
            scale(split, between, libyuv::kFilterBilinear);
            pack(between, libyuv::I420ToYUY2, s.dst.data(), s.dst_pitch);
        };
    }};

const peer libyuv_1x2_yv12{"libyuv", "I420Scale", stretched<1>};
const peer libyuv_2x2_yv12{"libyuv", "I420Scale", stretched<2>};
const peer libyuv_1x2_plane{"libyuv", "ScalePlane", plane_stretched<1>};
const peer libyuv_2x2_plane{"libyuv", "ScalePlane", plane_stretched<2>};

std::string libyuv_version() { return std::to_string(LIBYUV_VERSION); }

} // namespace lumalane::bench
