// A menu, drawn onto an RGB32 surface, the whole way to the screen: key, conversion,
// alpha, mix.
#include <lumalane.h>

#include <cstdio>
#include <cstring>
#include <vector>

int main() {
    const int width = 64, height = 32, pixels = width * height;
    const unsigned key = 0x00ff00ff; // no pixel of the menu has this colour
    std::vector<unsigned char> surface(4 * pixels), alpha(pixels), y(pixels, 16),
        u(pixels / 2, 128), v(u);

    tagMIX_INFO mix = {};
    mix.width = width, mix.height = height;
    mix.video_pitch = width; // rows of alpha lie side by side
    mix.sub_pitch = width, mix.dst_pitch = 4 * width;
    mix.alpha_plane = alpha.data();
    mix.sub_y = y.data(), mix.sub_v = v.data(), mix.sub_u = u.data();
    mix.dst = surface.data(), mix.color_key = key;
    const tagMIX_INFO menu = mix; // functions change the record: each gets a copy

    // 1. and 2. The surface is filled with the key, and the menu drawn: here a white box.
    LoadColorKeyRgb32(key, surface.data(), width, height, 0, 4 * width);
    for (int row = 8; row < 24; ++row)
        for (int x = 16; x < 48; ++x)
            std::memcpy(&surface[4 * (row * width + x)], "\xff\xff\xff", 4);

    // 3. What is drawn becomes Y, U and V.
    Convert_RGB32_To_AYUY2(&(mix = menu));

    // 4. Its alpha, 0 to 16, is drawn in blue and taken over.
    std::memset(surface.data(), 0, surface.size());
    for (int row = 8; row < 24; ++row)
        for (int x = 16; x < 48; ++x)
            surface[4 * (row * width + x)] = 8;
    Restore_RGB32_To_Alpha(&(mix = menu));

    // 5. Each frame: video, menu and adjustment onto the screen's surface.
    contrast_data neutral = {64, 64, 0, 0, 0, 0, 0, 0};
    get_contrast_data(&neutral);
    std::vector<unsigned char> video(pixels, 16), chroma(pixels / 4, 128),
        screen(4 * pixels);
    mix = menu;
    mix.video_y = video.data(), mix.video_u = mix.video_v = chroma.data();
    mix.dst = screen.data();
    mix_ayuy2_rgb32_p_ajust(&mix);

    std::printf("beside the menu %d, in it %d\n", screen[0],
                screen[4 * (16 * width + 32)]);
}
