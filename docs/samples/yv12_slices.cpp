// A slice of a YV12 surface: the record tells where its planes end.
#include <lumalane.h>

#include <cstdio>
#include <vector>

int main() {
    const int width = 64, height = 48,
              pitch = 80; // the source has no gaps, the surface has
    std::vector<unsigned char> y(width * height), u(y.size() / 4), v(u);
    for (std::size_t i = 0; i < y.size(); ++i)
        y[i] = static_cast<unsigned char>(i),
        u[i / 4] = static_cast<unsigned char>(i / 3),
        v[i / 4] = static_cast<unsigned char>(i / 5);
    contrast_data neutral = {64, 64, 0, 0, 0, 0, 0, 0};
    get_contrast_data(&neutral);

    const auto load = [&](std::vector<unsigned char> &surface, int first, int rows) {
        tag_ajust_contrast_info info = {};
        info.surface_height = height;
        info.rows_to_plane_end = height - first;
        const int chroma = first / 2 * (width / 2);
        loadimage_yv12_ajust(y.data() + first * width, u.data() + chroma,
                             v.data() + chroma, surface.data() + first * pitch, width,
                             rows, width, pitch, &info);
    };
    std::vector<unsigned char> whole(pitch * height * 3 / 2), sliced(whole.size());
    load(whole, 0, height);
    load(sliced, 0, 16);
    load(sliced, 16, 32);
    std::puts(sliced == whole ? "the same bytes" : "other bytes");
}
