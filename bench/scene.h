// The buffers of a measurement: a random picture and a surface, on cache lines, all pages touched.
#pragma once

#include "frame/lumalane.h"

#include <cstddef>
#include <cstdlib>
#include <iosfwd>
#include <memory>

namespace lumalane::bench {

class buffer {
public:
    explicit buffer(std::size_t bytes); // of random content
    unsigned char *data() const { return memory_.get(); }

private:
    std::unique_ptr<unsigned char[], decltype(&std::free)> memory_;
};

struct size {
    int width;
    int height;
    double pixels() const { return double(width) * height; }
};

// "320x240", out and in.
std::ostream &operator<<(std::ostream &out, size picture);
std::istream &operator>>(std::istream &in, size &picture);

struct scene {
    scene(size picture, int dst_pitch_per_pixel);

    int width;
    int height;
    int src_pitch;
    int dst_pitch;
    buffer y;
    buffer u;
    buffer v;
    buffer dst;
    tag_ajust_contrast_info info;
};

using picture_function = void(unsigned char *, unsigned char *, unsigned char *, unsigned char *,
                              int, int, int, int, tag_ajust_contrast_info *);

// One overload per signature: how a function of it converts the scene.
void call(picture_function *function, scene &scene);

} // namespace lumalane::bench
