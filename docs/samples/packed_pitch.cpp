// Functions of packed sources count src_pitch in pixels.
#include <lumalane.h>

#include <cstdio>
#include <vector>

int main() {
    const int width = 16, height = 4, row_bytes = 2 * width;
    std::vector<unsigned char> yuy2(row_bytes * height, 128),
        surface(4 * width * height);
    for (int row = 0; row < height; ++row)
        for (int x = 0; x < width; ++x)
            yuy2[row * row_bytes + 2 * x] = static_cast<unsigned char>(16 + 50 * row);

    LoadYUY2_RGB32(yuy2.data(), nullptr, nullptr, surface.data(), width, height,
                   row_bytes / 2, 4 * width, nullptr);
    for (int row = 0; row < height; ++row)
        std::printf("%d ", surface[4 * width * row]);
    std::puts("");
}
