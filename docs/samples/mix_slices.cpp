// Slices of a mix: a record for each of them, because a call changes its record.
#include <lumalane.h>

#include <cstdio>
#include <thread>
#include <vector>

int main() {
    const int width = 640, height = 480, pixels = width * height;
    std::vector<unsigned char> y(pixels, 90), u(pixels / 4, 100), v(pixels / 4, 150);
    std::vector<unsigned char> alpha(pixels), sub_y(pixels, 200),
        sub_u(pixels / 2, 90), sub_v(sub_u);
    for (int i = 0; i < pixels; ++i)
        alpha[i] = static_cast<unsigned char>(i % 17);
    contrast_data neutral = {64, 64, 0, 0, 0, 0, 0, 0};
    get_contrast_data(&neutral);

    const auto mix_rows = [&](std::vector<unsigned char> &surface, int first,
                              int rows) {
        tagMIX_INFO mix = {};
        mix.width = mix.video_pitch = mix.sub_pitch = width;
        mix.dst_pitch = 4 * width, mix.height = rows;
        mix.video_y =
            y.data() + first * width; // 4:2:0: two rows of the picture, one of chroma
        mix.video_u = u.data() + first / 2 * (width / 2);
        mix.video_v = v.data() + first / 2 * (width / 2);
        mix.alpha_plane = alpha.data() + first * width;
        mix.sub_y =
            sub_y.data() + first * width; // 4:2:2: a row of chroma for each row
        mix.sub_u = sub_u.data() + first * (width / 2);
        mix.sub_v = sub_v.data() + first * (width / 2);
        mix.dst = surface.data() + first * 4 * width;
        mix_ayuy2_rgb32_p_ajust(&mix);
    };
    std::vector<unsigned char> whole(4 * pixels), sliced(whole.size());
    mix_rows(whole, 0, height);
    std::thread upper([&] { mix_rows(sliced, 0, 200); });
    std::thread lower([&] { mix_rows(sliced, 200, 280); });
    upper.join();
    lower.join();
    std::puts(sliced == whole ? "the same bytes" : "other bytes");
}
