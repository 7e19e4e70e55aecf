// Interlaced video: each field of a frame by itself, doubled to a frame.
#include <lumalane/picture.h>

#include <cstdio>
#include <vector>

int main() {
    using namespace lumalane;
    const int width = 720, height = 480;
    std::vector<unsigned char> yuv(picture_bytes(format::i420, width, height));
    for (std::size_t i = 0; i < yuv.size(); ++i) // the second field is brighter
        yuv[i] = i >= 720 * 480 ? 128 : i / width % 2 == 0 ? 16 : 235;
    std::vector<unsigned char> pixels(picture_bytes(format::rgb32, width, height));
    const picture frame = packed_planes(format::i420, width, height, yuv.data());
    const picture surface =
        packed_planes(format::rgb32, width, height, pixels.data());

    for (int field = 0; field < 2; ++field) {
        // Every second row, from the first or the second one on: of chroma, too.
        picture rows = frame;
        rows.height = height / 2;
        for (plane &p : rows.planes)
            p = {p.data + field * p.stride, 2 * p.stride};
        if (!stretch(rows, surface, stretching::twice_height))
            return 1;
        std::printf("field %d: %d\n", field, pixels[0]);
    }
}
