#include "examples/player/canvas.h"

#include <algorithm>
#include <cstddef>

namespace player {
namespace {

constexpr int full = 255; // coverage, alpha

constexpr int divide_rounded(int value, int by) { return (value + by / 2) / by; }

void lay_over(canvas::pixel &below, canvas::pixel above, int coverage) {
    const int upper = divide_rounded(above.alpha * coverage, full);
    const int lower = divide_rounded(below.alpha * (full - upper), full);
    const int both = upper + lower;
    if (both == 0)
        return;
    const auto blend = [&](unsigned char of_upper, unsigned char of_lower) {
        return static_cast<unsigned char>(
            divide_rounded(of_upper * upper + of_lower * lower, both));
    };
    below = {blend(above.red, below.red), blend(above.green, below.green),
             blend(above.blue, below.blue), static_cast<unsigned char>(both)};
}

} // namespace

canvas::canvas(int width, int height)
    : columns(width), rows(height), pixels(static_cast<std::size_t>(width) * height) {}

void canvas::clear() { std::ranges::fill(pixels, pixel{}); }

void canvas::lay(const shape &what, pixel colour) {
    for (int y = 0; y < what.height; ++y) {
        const unsigned char *coverage = what.coverage + static_cast<std::ptrdiff_t>(what.pitch) * y;
        for (int x = 0; x < what.width; ++x)
            lay_over(pixels[index(what.x + x, what.y + y)], colour, coverage[x]);
    }
}

bool canvas::is_empty() const {
    return std::ranges::all_of(pixels, [](pixel each) { return each.alpha == 0; });
}

} // namespace player
