// U and V in the wrong order: skin turns blue. Functions take Y, U, V; YV12 has V before
// U in memory.
#include <lumalane.h>

#include <cstdio>
#include <vector>

int main() {
    const int width = 16, height = 2;
    // YV12 without gaps: Y, then V, then U. The colour is red.
    std::vector<unsigned char> yv12(width * height * 3 / 2, 81);
    unsigned char *const y = yv12.data(), *const v = y + width * height,
                         *const u = v + 8;
    for (int i = 0; i < 8; ++i)
        v[i] = 240, u[i] = 90;

    unsigned char pixels[4 * width * height];
    loadimage_rgb32(y, v, u, pixels, width, height, width, 4 * width, nullptr);
    std::printf("crossed:  red %3d green %3d blue %3d\n", pixels[2], pixels[1],
                pixels[0]);
    loadimage_rgb32(y, u, v, pixels, width, height, width, 4 * width, nullptr);
    std::printf("in order: red %3d green %3d blue %3d\n", pixels[2], pixels[1],
                pixels[0]);
}
