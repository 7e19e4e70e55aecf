// Before the first call of get_contrast_data() all gains and offsets are 0.
#include <lumalane.h>

#include <cstdio>
#include <vector>

int main() {
    std::vector<unsigned char> y(32, 235), u(8, 128), v(8, 128), pixels(128); // white
    const auto load = [&](const char *when) {
        loadimage_rgb32_ajust(y.data(), u.data(), v.data(), pixels.data(), 16, 2, 16,
                              64, nullptr);
        std::printf("%s: red %d green %d blue %d\n", when, pixels[2], pixels[1],
                    pixels[0]);
    };
    load("before");
    contrast_data neutral = {64, 64, 0, 0, 0, 0, 0, 0};
    get_contrast_data(&neutral);
    load("after");
}
