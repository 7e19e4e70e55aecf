// One white step of pixels, as a user of the library would convert it.
#include <lumalane.h>

#include <cstdio>

int main() {
    unsigned char y[2 * 16], u[8], v[8], surface[2 * 4 * 16] = {};
    for (unsigned char &sample : y)
        sample = 235;
    for (int i = 0; i < 8; ++i)
        u[i] = v[i] = 128;

    contrast_data adjustment = {};
    adjustment.y_gain = adjustment.uv_gain = 64;
    get_contrast_data(&adjustment);
    loadimage_rgb32_ajust(y, u, v, surface, 16, 2, 16, 4 * 16, nullptr);

    for (int i = 0; i < 2 * 4 * 16; ++i)
        if (surface[i] != (i % 4 == 3 ? 0 : 254)) {
            std::fprintf(stderr, "byte %d is %d\n", i, surface[i]);
            return 1;
        }
}
