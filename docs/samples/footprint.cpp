// How large must a surface be? The compiler knows.
#include <lumalane/footprint.h>

#include <cstdio>

int main() {
    using namespace lumalane;
    constexpr int width = 1366, height = 768; // off the step of 16 pixels: rows drift

    constexpr footprint bytes =
        footprint_of(functions::loadimage_rgb32, {width, height, width, 4 * width});
    constexpr byte_range written = bytes[pointer::dst].written;
    static_assert(written.begin == 0 && written.end > 4 * width * height);
    std::printf("the picture has %d bytes, the call needs %lld\n", 4 * width * height,
                written.end);

    // On the step nothing is written beyond.
    constexpr footprint even =
        footprint_of(functions::loadimage_rgb32, {1376, 768, 1376, 5504});
    static_assert(even[pointer::dst].written.end == 5504 * 768);
}
