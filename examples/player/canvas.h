// A picture that is being drawn: shapes in one colour each, laid over one another.
#pragma once

#include <cstddef>
#include <vector>

namespace player {

// What part of each pixel a shape covers, from 0 to 255.
struct shape {
    const unsigned char *coverage;
    int pitch; // bytes from row to row
    int x, y;  // where it goes
    int width, height;
};

class canvas {
public:
    // The colour does not depend on alpha, which runs from 0 (nothing drawn) to 255.
    struct pixel {
        unsigned char red, green, blue, alpha;
    };

    canvas(int width, int height);

    void clear();

    // The shape must be inside.
    void lay(const shape &what, pixel colour);

    int width() const { return columns; }
    int height() const { return rows; }
    pixel at(int x, int y) const { return pixels[index(x, y)]; }
    bool is_empty() const;

private:
    std::size_t index(int x, int y) const { return static_cast<std::size_t>(y) * columns + x; }

    int columns, rows;
    std::vector<pixel> pixels;
};

} // namespace player
