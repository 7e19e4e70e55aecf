#include "docs/pictures/scene.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>
#include <stdexcept>

namespace pictures {

image planar::picture() const {
    return of_planes({y.data(), width}, {u.data(), width / 2}, {v.data(), width / 2}, width,
                     height);
}

planar planar::field() const {
    planar made{width, height / 2, {}, {}, {}};
    const auto take = [](const std::vector<unsigned char> &from, std::vector<unsigned char> &to,
                         int columns, int rows) {
        for (int row = 0; row < rows; ++row) {
            const auto begin = from.begin() + std::ptrdiff_t{2} * row * columns;
            to.insert(to.end(), begin, begin + columns);
        }
    };
    take(y, made.y, width, height / 2);
    take(u, made.u, width / 2, height / 4);
    take(v, made.v, width / 2, height / 4);
    return made;
}

planar planar::small() const {
    planar made{width / 2, height / 2, {}, {}, {}};
    const auto take = [](const std::vector<unsigned char> &from, std::vector<unsigned char> &to,
                         int columns, int rows) {
        for (int row = 0; row + 1 < rows; row += 2)
            for (int x = 0; x + 1 < columns; x += 2)
                to.push_back(from[static_cast<std::size_t>(row) * columns + x]);
    };
    take(y, made.y, width, height);
    take(u, made.u, width / 2, height / 2);
    take(v, made.v, width / 2, height / 2);
    return made;
}

std::vector<unsigned char> planar::packed() const {
    std::vector<unsigned char> made;
    for (int row = 0; row < height; ++row)
        for (int x = 0; x < width; x += 2) {
            const std::size_t luma = static_cast<std::size_t>(row) * width + x;
            const std::size_t chroma = static_cast<std::size_t>(row / 2) * (width / 2) + x / 2;
            for (const unsigned char sample : {y[luma], u[chroma], y[luma + 1], v[chroma]})
                made.push_back(sample);
        }
    return made;
}

planar read_frame(const std::string &path) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE *)> in(std::fopen(path.c_str(), "rb"),
                                                              std::fclose);
    char line[256];
    planar made;
    if (!in || !std::fgets(line, sizeof line, in.get()) ||
        std::sscanf(line, "YUV4MPEG2 W%d H%d", &made.width, &made.height) != 2 ||
        !std::fgets(line, sizeof line, in.get()))
        throw std::runtime_error("cannot read " + path);
    const auto pixels = static_cast<std::size_t>(made.width) * made.height;
    for (auto *samples : {&made.y, &made.u, &made.v}) {
        samples->resize(samples == &made.y ? pixels : pixels / 4);
        if (std::fread(samples->data(), 1, samples->size(), in.get()) != samples->size())
            throw std::runtime_error(path + " is too short");
    }
    return made;
}

planar wheel(int width, int height) {
    planar made{width, height, {}, {}, {}};
    const double turn = 2 * std::acos(-1.0);
    for (int row = 0; row < height; ++row)
        for (int x = 0; x < width; ++x) {
            const double dx = x - width / 2.0 + 0.5, dy = row - height / 2.0 + 0.5;
            const double radius = std::hypot(dx, dy), angle = std::atan2(dy, dx) / turn + 0.5;
            double luma = 60 + 90.0 * x / width;
            if (radius < 0.47 * height)
                luma = std::fmod(angle * 14, 1.0) < 0.5 ? 220 : 30;
            if (radius < 0.08 * height)
                luma = 140;
            made.y.push_back(static_cast<unsigned char>(luma));
            if (row % 2 == 0 && x % 2 == 0) {
                const bool inside = radius < 0.47 * height;
                made.u.push_back(
                    static_cast<unsigned char>(128 + (inside ? 0 : 70 * std::cos(angle * turn))));
                made.v.push_back(
                    static_cast<unsigned char>(128 + (inside ? 0 : 70 * std::sin(angle * turn))));
            }
        }
    return made;
}

image subtitle::picture() const {
    return over_chequers(of_planes({y.data(), width}, {u.data(), width / 2}, {v.data(), width / 2},
                                   width, height, true),
                         {alpha.data(), width});
}

subtitle make_subtitle(int width, int height) {
    // Letters of 5x7 pixels, a row each.
    static const struct {
        char letter;
        const char *rows;
    } font[] = {{'L', "#.... #.... #.... #.... #.... #.... #####"},
                {'U', "#...# #...# #...# #...# #...# #...# .###."},
                {'M', "#...# ##.## #.#.# #.#.# #...# #...# #...#"},
                {'A', ".###. #...# #...# ##### #...# #...# #...#"},
                {'N', "#...# ##..# #.#.# #.#.# #..## #...# #...#"},
                {'E', "##### #.... #.... ####. #.... #.... #####"}};
    const auto pixels = static_cast<std::size_t>(width) * height;
    subtitle made{width, height, {}, {}, {}, {}};
    made.alpha.assign(pixels, 0);
    made.y.assign(pixels, 16);
    made.u.assign(pixels / 2, 128);
    made.v.assign(pixels / 2, 128);
    const auto paint = [&](int x, int row, int alpha, int luma, int u, int v) {
        const std::size_t at = static_cast<std::size_t>(row) * width + x;
        const std::size_t pair = static_cast<std::size_t>(row) * (width / 2) + x / 2;
        made.alpha[at] = static_cast<unsigned char>(alpha);
        made.y[at] = static_cast<unsigned char>(luma);
        made.u[pair] = static_cast<unsigned char>(u);
        made.v[pair] = static_cast<unsigned char>(v);
    };
    // A veil that grows denser from the left to the right, and the letters on it.
    const int top = height * 5 / 8, bottom = height * 15 / 16;
    for (int row = top; row < bottom; ++row)
        for (int x = 12; x < width - 12; ++x)
            paint(x, row, 4 + 8 * x / width, 60, 150, 100);
    const char text[] = "LUMALANE";
    const int scale = 3, step = 6 * scale;
    const int left = (width - step * static_cast<int>(std::strlen(text))) / 2;
    for (int i = 0; text[i] != 0; ++i)
        for (const auto &glyph : font)
            if (glyph.letter == text[i])
                for (int gy = 0; gy < 7 * scale; ++gy)
                    for (int gx = 0; gx < 5 * scale; ++gx)
                        if (glyph.rows[gy / scale * 6 + gx / scale] == '#')
                            paint(left + i * step + gx, (top + bottom - 7 * scale) / 2 + gy, 16,
                                  210, 60, 150);
    return made;
}

} // namespace pictures
