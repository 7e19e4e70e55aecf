// As module.c, in C++, and in a module that hides nothing by itself. Others have set no adjustment that a
// call with one of its own puts back.
#include <lumalane/adjust.h>

extern "C" int MODULE(int offset) {
    if (offset != 0)
        lumalane::set_adjustment({64, 64, offset, 0, 0});
    else
        lumalane::detail::own_adjustment{{}};

    unsigned char y[10 * 16] = {}, u[5 * 8] = {}, v[5 * 8] = {}, surface[10 * 2 * 16];
    loadimage_yuy2_ajust(y, u, v, surface, 16, 10, 16, 2 * 16, nullptr);
    return surface[0];
}
