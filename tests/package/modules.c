/* Every module keeps the adjustment that it was told. */
#include <stdio.h>

int c_one(int offset);
int c_other(int offset);
int cxx_one(int offset);
int cxx_other(int offset);

int main(void) {
    static int (*const modules[])(int) = {c_one, c_other, cxx_one, cxx_other};
    int i, offset, result = 0;

    for (i = 0; i < 4; ++i)
        modules[i](10 + i);
    for (i = 0; i < 4; ++i)
        if ((offset = modules[i](0)) != 10 + i) {
            fprintf(stderr, "module %d has %d\n", i, offset);
            result = 1;
        }
    return result;
}
