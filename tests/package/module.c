/* A module that has the static library to itself, in a program of several such. MODULE(offset) adjusts, if
   that is not 0, and returns what a sample of 0 becomes. */
#include <lumalane_c.h>

#include <string.h>

int MODULE(int offset);

__attribute__((visibility("default"))) int MODULE(int offset) {
    unsigned char y[10 * 16], u[5 * 8], v[5 * 8], surface[10 * 2 * 16];
    contrast_data adjustment = {64, 64, 0, 0, 0, 0, 0, 0};

    adjustment.y_offset = offset;
    if (offset != 0)
        get_contrast_data(&adjustment);
    memset(y, 0, sizeof y);
    memset(u, 0, sizeof u);
    memset(v, 0, sizeof v);
    loadimage_yuy2_ajust(y, u, v, surface, 16, 10, 16, 2 * 16, NULL);
    return surface[0];
}
