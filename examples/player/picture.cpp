#include "examples/player/picture.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace player {
namespace {

// Every step of the library (8, 16 or 32 pixels) divides it, and half of it is whole chroma steps.
constexpr int column_step = 32;
// The library works pictures by pairs of rows, and doubles fields to four rows at a time.
constexpr int row_step = 4;
// Of fewer than 16 rows strech_picture_2X2_yuy2_ajust() makes nothing, and of a field of fewer than
// 12 the stretches to RGB.
constexpr int least_rows = 24;
// strech_opt_yuy2_ajust() works rows of 48 pixels and more.
constexpr int least_columns = 64;
// mix_ayv12_yv12_i() reads one row past a field, which is the second row past the planes.
constexpr int spare_rows = 2;

constexpr int round_up(int size, int step) { return (size + step - 1) / step * step; }

constexpr int halve(int size) { return (size + 1) / 2; }

// Below the picture each field goes on with its own last row.
int row_shown_at(int row, int height) {
    if (row < height)
        return row;
    const int last = height - 1;
    return std::max((row - last) % 2 ? last - 1 : last, 0);
}

// Widths are counted in units of so many bytes, which stay together.
void copy_padded(plane_view from, int unit, int width, int height, std::vector<unsigned char> &to,
                 int padded_width, int padded_height) {
    const int rows = padded_height + spare_rows;
    to.resize(static_cast<std::size_t>(padded_width) * unit * rows);
    auto out = to.begin();
    for (int row = 0; row < rows; ++row) {
        const unsigned char *in =
            from.samples + static_cast<std::ptrdiff_t>(from.pitch) * row_shown_at(row, height);
        out = std::copy_n(in, width * unit, out);
        for (int column = width; column < padded_width; ++column)
            out = std::copy_n(in + (width - 1) * unit, unit, out);
    }
}

} // namespace

int picture::padded_width() const {
    return std::max(round_up(visible_width, column_step), least_columns);
}

int picture::padded_height() const {
    return std::max(round_up(visible_height, row_step), least_rows);
}

source_rows picture::frame() {
    return {y_plane.data(), u_plane.data(), v_plane.data(), pitch(), padded_height()};
}

source_rows picture::field(int number) {
    source_rows rows = frame();
    rows.y += number * rows.pitch;
    rows.u += number * (rows.pitch / 2);
    rows.v += number * (rows.pitch / 2);
    rows.pitch *= 2;
    rows.height /= 2;
    return rows;
}

void picture::assign(int width, int height, plane_view y, plane_view u, plane_view v) {
    packed = false;
    visible_width = width;
    visible_height = height;
    copy_padded(y, 1, width, height, y_plane, padded_width(), padded_height());
    for (const auto &[from, to] : {std::pair{u, &u_plane}, std::pair{v, &v_plane}})
        copy_padded(from, 1, halve(width), halve(height), *to, padded_width() / 2,
                    padded_height() / 2);
}

void picture::assign_packed(int width, int height, plane_view rows) {
    constexpr int pair_bytes = 4; // two pixels share their U and V
    packed = true;
    visible_width = width;
    visible_height = height;
    copy_padded(rows, pair_bytes, halve(width), height, y_plane, padded_width() / 2,
                padded_height());
}

} // namespace player
