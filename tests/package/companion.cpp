// The companion headers, as a user of the library would use them.
#include <lumalane/lumalane.hpp>

#include <cstdio>
#include <cstring>

constexpr lumalane::footprint one_step =
    lumalane::footprint_of(lumalane::functions::loadimage_rgb32, {16, 2, 16, 4 * 16});
static_assert(one_step[lumalane::pointer::dst].written.end == 2 * 4 * 16, "a step of two rows");

int main() {
    unsigned char y[2 * 16] = {}, u[8] = {}, v[8] = {}, surface[2 * 4 * 16] = {};
    const auto convert = [&](size_t size) {
        return lumalane::checked::loadimage_rgb32({y, sizeof y}, {u, sizeof u}, {v, sizeof v},
                                                  {surface, size}, 16, 2, 16, 4 * 16);
    };
    char text[lumalane::status_text_size];
    const lumalane::status refused = convert(sizeof surface - 1);
    if (std::strcmp(refused.write(text, sizeof text), "dst: needs bytes [0, 128), has 127") != 0 ||
        surface[1] != 0) {
        std::fprintf(stderr, "%s\n", text);
        return 1;
    }
    // Three samples of 0 are green.
    if (!convert(sizeof surface) || surface[1] == 0)
        return 1;
}
