// A function of lumalane.h with buffers that carry their sizes: what does not fit is
// refused.
#include <lumalane/checked.h>

#include <cstdio>
#include <vector>

int main() {
    using namespace lumalane;
    const int width = 640, height = 480;
    std::vector<unsigned char> y(width * height), u(y.size() / 4), v(u);
    std::vector<unsigned char> pixels(4 * width * height - 1); // a byte too few

    const status done = checked::loadimage_rgb32(
        {y.data(), y.size()}, {u.data(), u.size()}, {v.data(), v.size()},
        {pixels.data(), pixels.size()}, width, height, width, 4 * width);
    char text[status_text_size];
    std::puts(done ? "converted" : done.write(text, sizeof text));
}
