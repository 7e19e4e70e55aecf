// A subtitle of any size over a picture, at any place.
#include <lumalane/picture.h>

#include <cstdio>
#include <vector>

int main() {
    using namespace lumalane;
    const int width = 854, height = 480;
    std::vector<unsigned char> yuv(picture_bytes(format::yv12, width, height), 128);
    std::vector<unsigned char> pixels(picture_bytes(format::rgb32, width, height));

    // 301x61 pixels of white, half transparent: alpha runs from 0 to 16. U and V have a
    // sample for two pixels of each row.
    const int w = 301, h = 61, pairs = (w + 1) / 2;
    const std::vector<unsigned char> alpha(w * h, 8), y(w * h, 235),
        u(pairs * h, 128), v(u);
    const subpicture title{
        w, h, {alpha.data(), w}, {y.data(), w}, {u.data(), pairs}, {v.data(), pairs}};

    const picture surface =
        packed_planes(format::rgb32, width, height, pixels.data());
    const status blended =
        blend(packed_planes(format::yv12, width, height, yuv.data()), title,
              (width - w) / 2, height - h - 20, surface);
    if (!blended)
        return std::puts(message_of(blended.code)), 1;
    const unsigned char *under = &pixels[4 * (430 * width + width / 2)];
    std::printf("beside %d, under the subtitle %d\n", pixels[0], under[0]);
}
