// A picture of any size, as a decoder leaves it, to a bitmap with its last row first.
#include <lumalane/picture.h>

#include <cstdio>
#include <vector>

int main() {
    using namespace lumalane;
    const int width = 1366, height = 768;
    std::vector<unsigned char> yuv(picture_bytes(format::i420, width, height), 128);
    const int stride = (3 * width + 3) / 4 * 4; // of a bitmap: whole 4 bytes
    std::vector<unsigned char> bgr(stride * height);

    const picture source = packed_planes(format::i420, width, height, yuv.data());
    picture bitmap = packed_planes(format::rgb24, width, height, bgr.data());
    bitmap.planes[0].stride = stride;

    const status converted = convert(source, flipped(bitmap));
    if (!converted)
        return std::puts(message_of(converted.code)), 1;
    std::printf("grey: %d %d %d\n", bgr[0], bgr[1], bgr[2]);
}
