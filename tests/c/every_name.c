/* Every function by its name in C, and one of them at work: what one includes and links is all
   there is, no C library. Returns 0, or the number of what is wrong. */
#include <lumalane_c.h>

typedef void function(void);

int main(void) {
    unsigned char y[2 * 16], u[8], v[8], surface[2 * 4 * 16];
    contrast_data adjustment;
    function *functions[100];
    int count = 0, i, j;

#define LUMALANE_EXPORT(signature, name) functions[count++] = (function *)name;
#include "abi/exports.inc"
#undef LUMALANE_EXPORT
    if (count != 68)
        return 1;
    for (i = 0; i < count; ++i) {
        if (functions[i] == NULL)
            return 2;
        for (j = 0; j < i; ++j)
            if (functions[j] == functions[i])
                return 3;
    }

    for (i = 0; i < 2 * 16; ++i)
        y[i] = 235;
    for (i = 0; i < 8; ++i)
        u[i] = v[i] = 128;
    for (i = 0; i < 2 * 4 * 16; ++i)
        surface[i] = 1;
    adjustment.y_gain = adjustment.uv_gain = 64;
    adjustment.y_offset = adjustment.u_offset = adjustment.v_offset = 0;
    adjustment.y_offset_extra = adjustment.u_offset_extra = adjustment.v_offset_extra = 0;
    get_contrast_data(&adjustment);
    loadimage_rgb32_ajust(y, u, v, surface, 16, 2, 16, 4 * 16, NULL);
    for (i = 0; i < 2 * 4 * 16; ++i)
        if (surface[i] != (i % 4 == 3 ? 0 : 254))
            return 4;
    return 0;
}
