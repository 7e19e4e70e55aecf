// A gain of chroma without its offset turns grey into a colour: the gain multiplies all
// of a sample, also the 128 that stand for "no colour".
#include <lumalane.h>

#include <cstdio>
#include <vector>

int main() {
    std::vector<unsigned char> y(32, 126), u(8, 128), v(8, 128), pixels(128); // grey
    for (const int offset : {0, 128 - 2 * 96}) {
        contrast_data values = {64,     96, 0, offset,
                                offset, 0,  0, 0}; // 1.5 times the colour
        get_contrast_data(&values);
        loadimage_rgb32_ajust(y.data(), u.data(), v.data(), pixels.data(), 16, 2, 16,
                              64, nullptr);
        std::printf("offset %3d: red %3d green %3d blue %3d\n", offset, pixels[2],
                    pixels[1], pixels[0]);
    }
}
