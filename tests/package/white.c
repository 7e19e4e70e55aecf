/* One white step of pixels, as a user of the library would convert it in C. */
#include <lumalane_c.h>

#include <stdio.h>
#include <string.h>

int main(void) {
    unsigned char y[2 * 16], u[8], v[8], surface[2 * 4 * 16];
    contrast_data adjustment = {64, 64, 0, 0, 0, 0, 0, 0};
    int i;

    memset(y, 235, sizeof y);
    memset(u, 128, sizeof u);
    memset(v, 128, sizeof v);
    get_contrast_data(&adjustment);
    loadimage_rgb32_ajust(y, u, v, surface, 16, 2, 16, 4 * 16, NULL);

    for (i = 0; i < 2 * 4 * 16; ++i)
        if (surface[i] != (i % 4 == 3 ? 0 : 254)) {
            fprintf(stderr, "byte %d is %d\n", i, surface[i]);
            return 1;
        }
    return 0;
}
