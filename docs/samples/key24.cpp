// The key of an RGB24 surface is one colour only if it is grey.
#include <lumalane.h>

#include <cstdio>

void show(unsigned key) {
    unsigned char row[2][48];
    LoadColorKeyRgb24(key, row, 16, 2, 0, 48);
    std::printf("0x%08x:", key);
    for (int i = 0; i < 4; ++i)
        std::printf("  %3d %3d %3d", row[0][3 * i], row[0][3 * i + 1],
                    row[0][3 * i + 2]);
    std::puts(" ...");
}

int main() {
    show(0x00ff00ff);
    show(0x00101010);
}
