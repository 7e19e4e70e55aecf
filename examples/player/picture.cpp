#include "examples/player/picture.h"

#include <algorithm>
#include <cstddef>

namespace player {
namespace {

// Every step of the library (8, 16 or 32 pixels) divides it, and half of it is whole chroma steps.
constexpr int column_step = 32;
// The library works 4:2:0 pictures by pairs of rows.
constexpr int row_step = 2;

constexpr int round_up(int size, int step) { return (size + step - 1) / step * step; }

constexpr int halve(int size) { return (size + 1) / 2; }

void copy_padded(plane_view from, int width, int height, std::vector<unsigned char> &to,
                 int padded_width, int padded_height) {
    to.resize(static_cast<std::size_t>(padded_width) * padded_height);
    auto out = to.begin();
    for (int row = 0; row < padded_height; ++row) {
        const unsigned char *in =
            from.samples + static_cast<std::ptrdiff_t>(from.pitch) * std::min(row, height - 1);
        out = std::copy_n(in, width, out);
        out = std::fill_n(out, padded_width - width, in[width - 1]);
    }
}

} // namespace

int picture::padded_width() const { return round_up(visible_width, column_step); }
int picture::padded_height() const { return round_up(visible_height, row_step); }

void picture::assign(int width, int height, plane_view y, plane_view u, plane_view v) {
    visible_width = width;
    visible_height = height;
    copy_padded(y, width, height, y_plane, padded_width(), padded_height());
    copy_padded(u, halve(width), halve(height), u_plane, padded_width() / 2, padded_height() / 2);
    copy_padded(v, halve(width), halve(height), v_plane, padded_width() / 2, padded_height() / 2);
}

} // namespace player
