// The other half of window_test: makes the video, and compares what the window showed of it with
// what the library for Linux makes of the same frames.
//
//     window_check make FILE.y4m
//     window_check compare <PICTURES
#include <lumalane.h>

#include <compare>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <set>
#include <string>
#include <vector>

namespace {

using bytes = std::vector<unsigned char>;

// Off the step and odd, so that the renderer has to round both up.
constexpr int width = 330, height = 249, frames = 2;
constexpr int pitch = 336, rows = 250;

[[noreturn]] void fail(const std::string &what) {
    std::fprintf(stderr, "window_check: %s\n", what.c_str());
    std::exit(1);
}

// A slope with noise, of every value. What lies beyond the picture's edges must not show.
struct frame {
    bytes y = bytes(pitch * rows, 0x55), u = bytes(pitch * rows / 4, 0x55), v = u;
    explicit frame(unsigned number) {
        unsigned state = 1 + number;
        const auto fill = [&state](bytes &plane, int plane_pitch, int columns, int lines) {
            for (int line = 0; line < lines; ++line)
                for (int column = 0; column < columns; ++column) {
                    state = state * 1664525 + 1013904223;
                    plane[line * plane_pitch + column] =
                        static_cast<unsigned char>(255 * column / columns + line + (state >> 27));
                }
        };
        fill(y, pitch, width, height);
        fill(u, pitch / 2, (width + 1) / 2, rows / 2);
        fill(v, pitch / 2, (width + 1) / 2, rows / 2);
    }
};

void write_video(const char *name) {
    std::FILE *const out = std::fopen(name, "wb");
    if (!out)
        fail(std::string("cannot write ") + name);
    // The renderer's own clock must not change the frame while it is looked at.
    std::fprintf(out, "YUV4MPEG2 W%d H%d F1:1000 Ip A1:1 C420mpeg2\n", width, height);
    for (unsigned number = 0; number < frames; ++number) {
        frame made(number);
        std::fputs("FRAME\n", out);
        const auto write = [out](const bytes &plane, int plane_pitch, int columns, int lines) {
            for (int line = 0; line < lines; ++line)
                std::fwrite(&plane[line * plane_pitch], 1, columns, out);
        };
        write(made.y, pitch, width, height);
        write(made.u, pitch / 2, (width + 1) / 2, rows / 2);
        write(made.v, pitch / 2, (width + 1) / 2, rows / 2);
    }
    if (std::fclose(out) != 0)
        fail(std::string("cannot write ") + name);
}

// As window_test tells it. Formats: RGB32, RGB24, the four layouts of RGB16.
struct picture {
    int format, top_first, direct_draw, menu, frame, brightness, contrast, saturation;
    auto operator<=>(const picture &) const = default;
    int pixel_bytes() const { return format == 0 ? 4 : format == 1 ? 3 : 2; }
    std::string name() const {
        const char *const names[] = {"RGB32", "RGB24", "5-6-5", "5-5-5", "6-6-4", "6-5-5"};
        return std::string(names[format]) + (direct_draw ? ", DirectDraw" : ", GDI") +
               (top_first ? ", top first" : ", bottom first") + (menu ? ", menu" : "") +
               ", frame " + std::to_string(frame);
    }
};

std::set<picture> all_pictures() {
    std::set<picture> all;
    for (const picture adjusted :
         {picture{0, 0, 0, 0, 0, 0, 0, 0}, picture{0, 0, 0, 0, 1, 10, 20, -30}})
        for (int menu = 0; menu < 2; ++menu)
            for (int way = 0; way < 13; ++way) {
                picture each = adjusted;
                each.menu = menu;
                each.direct_draw = way == 12;
                each.format = way % 12 / 2;
                each.top_first = way % 2 == 0;
                all.insert(each);
            }
    return all;
}

bytes read_bytes(std::size_t count) {
    bytes read(count);
    if (std::fread(read.data(), 1, count, stdin) != count)
        fail("the pictures end too soon");
    return read;
}

struct drawing {
    int left, top, right, bottom;
    bytes colours, opacity;
};

drawing read_drawing() {
    drawing read{};
    int drawn_pitch = 0, drawn_rows = 0;
    if (std::scanf("menu %d %d %d %d %d %d", &read.left, &read.top, &read.right, &read.bottom,
                   &drawn_pitch, &drawn_rows) != 6 ||
        std::getchar() != '\n' || drawn_pitch != pitch || drawn_rows != rows)
        fail("no menu");
    read.colours = read_bytes(4 * pitch * rows);
    read.opacity = read_bytes(4 * pitch * rows);
    return read;
}

// Windows drew on what the key's fill left: around the box it is still there, in it there are
// letters of more than one colour and of alpha between the box's and all.
void check_drawing(const bytes &drawn, const drawing &menu, unsigned around, const char *what) {
    bytes filled(drawn.size());
    LoadColorKeyRgb32(around, filled.data(), pitch, rows, 0, 4 * pitch);
    std::set<unsigned> colours;
    for (int row = 0; row < rows; ++row)
        for (int column = 0; column < pitch; ++column) {
            const std::size_t at = 4 * (row * pitch + column);
            if (row >= menu.top && row < menu.bottom && column >= menu.left && column < menu.right)
                colours.insert(drawn[at] | drawn[at + 1] << 8 | drawn[at + 2] << 16);
            else if (std::memcmp(&drawn[at], &filled[at], 4) != 0)
                fail(std::string(what) + ": drawn outside of the box");
        }
    if (colours.size() < 3)
        fail(std::string(what) + ": no letters");
}

bytes make(const picture &as, const drawing &menu) {
    frame from(as.frame);
    contrast_data data{};
    data.y_gain = 64 * (100 + as.contrast) / 100;
    data.uv_gain = 64 * (100 + as.saturation) / 100;
    data.y_offset = as.brightness + 128 - 2 * data.y_gain;
    data.u_offset = data.v_offset = 128 - 2 * data.uv_gain;
    get_contrast_data(&data);

    tag_ajust_contrast_info info{};
    info.rgb16_layout = as.format > 2 ? as.format - 2 : 0;
    const int dst_pitch = pitch * as.pixel_bytes();
    bytes made(dst_pitch * rows);
    if (!as.menu) {
        const auto load = as.format == 0   ? loadimage_rgb32_ajust
                          : as.format == 1 ? loadimage_rgb24_ajust
                                           : loadimage_rgb16_ajust;
        load(from.y.data(), from.u.data(), from.v.data(), made.data(), pitch, rows, pitch,
             dst_pitch, &info);
        return made;
    }
    bytes alpha(pitch * rows), y(pitch * rows), u(pitch * rows / 2), v(pitch * rows / 2);
    bytes colours = menu.colours, opacity = menu.opacity;
    tagMIX_INFO mix{};
    mix.video_pitch = mix.sub_pitch = mix.width = pitch;
    mix.height = rows;
    mix.video_y = from.y.data();
    mix.video_v = from.v.data();
    mix.video_u = from.u.data();
    mix.alpha_plane = alpha.data();
    mix.sub_y = y.data();
    mix.sub_v = v.data();
    mix.sub_u = u.data();
    mix.color_key = 0xff00ff;
    mix.adjust_info = &info;
    const auto call = [&mix](void (*function)(tagMIX_INFO *), bytes &dst, int its_pitch) {
        tagMIX_INFO record = mix;
        record.dst = dst.data();
        record.dst_pitch = its_pitch;
        function(&record);
    };
    call(Convert_RGB32_To_AYUY2, colours, 4 * pitch);
    call(Restore_RGB32_To_Alpha, opacity, 4 * pitch);
    call(as.format == 0   ? mix_ayuy2_rgb32_p_ajust
         : as.format == 1 ? mix_ayuy2_rgb24_p_ajust
                          : mix_ayuy2_rgb16_p_ajust,
         made, dst_pitch);
    return made;
}

// The fourth byte of RGB32 is not shown.
void compare(const picture &as, const bytes &shown, const bytes &expected) {
    const int size = as.pixel_bytes();
    for (int row = 0; row < height; ++row)
        for (int column = 0; column < width; ++column) {
            const unsigned char *const left = &shown[(row * width + column) * size];
            const unsigned char *const right = &expected[(row * pitch + column) * size];
            if (std::memcmp(left, right, size == 4 ? 3 : size) != 0) {
                char text[200];
                std::snprintf(text, sizeof text,
                              ": pixel %d of row %d is %02x %02x .., not %02x %02x ..", column, row,
                              left[0], left[1], right[0], right[1]);
                fail(as.name() + text);
            }
        }
}

void compare_all() {
    std::set<picture> missing = all_pictures();
    const std::size_t count = missing.size();
    for (picture as; !missing.empty();) {
        int shown_width = 0, shown_height = 0;
        if (std::scanf("picture %d %d %d %d %d %d %d %d %d %d", &as.format, &as.top_first,
                       &as.direct_draw, &as.menu, &as.frame, &as.brightness, &as.contrast,
                       &as.saturation, &shown_width, &shown_height) != 10 ||
            std::getchar() != '\n' || shown_width != width || shown_height != height)
            fail("no picture");
        if (missing.erase(as) != 1)
            fail("not expected, or a second time: " + as.name());
        const bytes shown = read_bytes(width * height * as.pixel_bytes());
        drawing menu{};
        if (as.menu) {
            menu = read_drawing();
            check_drawing(menu.colours, menu, 0xff00ff, "colours");
            check_drawing(menu.opacity, menu, 0, "opacity");
        }
        compare(as, shown, make(as, menu));
    }
    std::printf("%zu pictures of %d pixels on the screen of Windows are the library's\n", count,
                width * height);
}

} // namespace

int main(int argc, char **argv) {
    if (argc == 3 && std::strcmp(argv[1], "make") == 0)
        write_video(argv[2]);
    else if (argc == 2 && std::strcmp(argv[1], "compare") == 0)
        compare_all();
    else
        fail("make FILE.y4m, or compare <PICTURES");
}
