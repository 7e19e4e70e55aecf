// The library itself, C++11: a call of a function of lumalane.h.
#include <lumalane.h>

#include <cstdio>
#include <vector>

int main() {
    const int width = 640, height = 480; // on the step: 16 pixels, pairs of rows
    std::vector<unsigned char> y(width * height, 126), u(y.size() / 4, 128), v(u);
    std::vector<unsigned char> surface(4 * width * height);

    contrast_data adjustment = {};
    adjustment.y_gain = adjustment.uv_gain = 64; // in 1/64: unchanged
    get_contrast_data(&adjustment); // before the first function with _ajust

    // Y, then U, then V, whichever way the decoder orders its planes.
    loadimage_rgb32_ajust(y.data(), u.data(), v.data(), surface.data(), width, height,
                          width, 4 * width, nullptr);
    std::printf("%d %d %d %d\n", surface[0], surface[1], surface[2], surface[3]);
}
