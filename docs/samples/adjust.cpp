// Brightness, contrast and saturation as gains and offsets.
#include <lumalane/picture.h>

#include <algorithm>
#include <cstdio>
#include <vector>

// Contrast turns around black (16), saturation around grey (128): what the gain moves
// away there, the offset moves back.
lumalane::adjustment balance(double brightness, double contrast, double saturation) {
    lumalane::adjustment a;
    a.y_gain = static_cast<int>(64 * contrast + 0.5);
    a.uv_gain = static_cast<int>(64 * saturation + 0.5);
    a.y_offset = 16 - (16 * a.y_gain + 32) / 64 + static_cast<int>(255 * brightness);
    a.u_offset = a.v_offset = 128 - 2 * a.uv_gain;
    return a;
}

int main() {
    using namespace lumalane;
    std::vector<unsigned char> yuv(picture_bytes(format::i420, 64, 48), 16);
    std::fill(yuv.begin() + 64 * 48, yuv.end(),
              static_cast<unsigned char>(128)); // U, V: grey
    std::vector<unsigned char> pixels(picture_bytes(format::rgb32, 64, 48));
    const picture source = packed_planes(format::i420, 64, 48, yuv.data());
    const picture surface = packed_planes(format::rgb32, 64, 48, pixels.data());

    for (const adjustment &a :
         {balance(0, 1, 1), balance(0, 1.5, 2), balance(0.1, 1, 1)}) {
        if (!convert(source, surface, a))
            return 1;
        std::printf("gains %d, %d, offsets %d, %d: black is %d %d %d\n", a.y_gain,
                    a.uv_gain, a.y_offset, a.u_offset, pixels[2], pixels[1],
                    pixels[0]);
    }
}
