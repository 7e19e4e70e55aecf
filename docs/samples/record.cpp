// A mix leaves its record changed: what was filled once serves one call.
#include <lumalane.h>

#include <cstdio>
#include <vector>

int main() {
    const int width = 16, height = 4;
    std::vector<unsigned char> plane(width * height, 128),
        surface(4 * width * height);
    tagMIX_INFO mix = {};
    mix.video_pitch = mix.sub_pitch = mix.width = width;
    mix.dst_pitch = 4 * width, mix.height = height;
    mix.video_y = mix.video_u = mix.video_v = plane.data();
    mix.alpha_plane = mix.sub_y = mix.sub_u = mix.sub_v = plane.data();
    mix.dst = surface.data();

    tagMIX_INFO copy = mix; // for each call, and for each thread
    mix_ayuy2_rgb32_p_ajust(&copy);
    std::printf("height %d became %d, sub_y moved on by %d bytes\n", mix.height,
                copy.height, static_cast<int>(copy.sub_y - mix.sub_y));
}
