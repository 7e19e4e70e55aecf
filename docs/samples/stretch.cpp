// One field of 240 rows to 480 rows, new rows along the edges.
#include <lumalane/picture.h>

#include <cstdio>
#include <vector>

int main() {
    using namespace lumalane;
    const int width = 720, rows = 240;
    std::vector<unsigned char> field(picture_bytes(format::i420, width, rows), 100);
    std::vector<unsigned char> frame(picture_bytes(format::yuy2, width, 2 * rows));

    const status stretched =
        stretch(packed_planes(format::i420, width, rows, field.data()),
                packed_planes(format::yuy2, width, 2 * rows, frame.data()),
                stretching::along_edges);
    if (!stretched)
        return std::puts(message_of(stretched.code)), 1;
    std::printf("%zu bytes, the first pair %d %d %d %d\n", frame.size(), frame[0],
                frame[1], frame[2], frame[3]);
}
