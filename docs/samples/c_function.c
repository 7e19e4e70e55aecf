/* A function from C99, by its plain name. */
#include <lumalane_c.h>

#include <stdio.h>
#include <stdlib.h>

int main(void) {
    enum { width = 640, height = 480 };
    unsigned char *y = calloc(width * height, 1), *u = calloc(width * height / 4, 1),
                  *v = calloc(width * height / 4, 1),
                  *surface = malloc(4 * width * height);
    contrast_data adjustment = {0};
    int written;

    if (!y || !u || !v || !surface)
        return 1;
    adjustment.y_gain = 64;
    adjustment.u_offset = adjustment.v_offset = 128; /* a gain of 0: no colour */
    get_contrast_data(&adjustment);
    y[0] = 235;
    loadimage_rgb32_ajust(y, u, v, surface, width, height, width, 4 * width, NULL);
    written = printf("%d %d\n", surface[0], surface[4]);
    free(y), free(u), free(v), free(surface);
    return written < 0;
}
