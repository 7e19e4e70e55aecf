#include "docs/pictures/shown.h"

#include <algorithm>
#include <cstring>

namespace pictures {

const char *const adjustment_text = "Y: gain 80/64, offset -12; U, V: gain 96/64, offsets -56, -72";

namespace {

using namespace lumalane;

constexpr unsigned magenta = 0x00ff00ff;

using samples_of_plane = std::vector<unsigned char>;

std::string size_of(int width, int height) {
    return std::to_string(width) + "x" + std::to_string(height);
}

bool adjusts(const std::string &name) {
    return name.find("ajust") != std::string::npos || name.find("adjust") != std::string::npos;
}

// What stands below the second picture.
std::string after(const std::string &what, const std::string &name) {
    return "After: " + what + (adjusts(name) ? ". " + std::string(adjustment_text) : "");
}

// Rows of a plane to where a call reads them; below the last one it is repeated.
void lay(const memory &m, pointer p, const samples_of_plane &from, int columns, int pitch) {
    if (!m.at(p))
        return;
    const long long rows = static_cast<long long>(from.size()) / columns;
    for (long long row = 0; row * pitch < m.size_from(p); ++row) {
        const long long taken = std::min(row, rows - 1);
        const long long bytes = std::min<long long>(columns, m.size_from(p) - row * pitch);
        std::memcpy(m.at(p) + row * pitch, from.data() + taken * columns,
                    static_cast<std::size_t>(bytes));
    }
}

void lay_planes(const memory &m, const planar &from, pointer y, pointer u, pointer v) {
    lay(m, y, from.y, from.width, from.width);
    lay(m, u, from.u, from.width / 2, from.width / 2);
    lay(m, v, from.v, from.width / 2, from.width / 2);
}

void lay_subpicture(const memory &m, const subtitle &over) {
    lay(m, pointer::alpha_plane, over.alpha, over.width, over.width);
    lay(m, pointer::sub_y, over.y, over.width, over.width);
    lay(m, pointer::sub_u, over.u, over.width / 2, over.width / 2);
    lay(m, pointer::sub_v, over.v, over.width / 2, over.width / 2);
}

// Magenta shows what a function leaves out.
void paint_yuy2(const memory &m, pointer p) {
    const unsigned char pair[4] = {106, 202, 106, 222};
    for (long long i = 0; i < m.size_from(p); ++i)
        m.at(p)[i] = pair[i % 4];
}

image yv12_at(const unsigned char *y, int pitch, long long v, long long u, int width, int height) {
    return of_planes({y, pitch}, {y + u, pitch / 2}, {y + v, pitch / 2}, width, height);
}

// A drawing surface: pixels of the picture, or the key where there is no subpicture.
samples_of_plane drawing(const image &what, const samples_of_plane &alpha, int bytes_per_pixel,
                         unsigned key) {
    samples_of_plane made;
    for (std::size_t i = 0; i < alpha.size(); ++i) {
        const unsigned char *rgb = what.rgb.data() + 3 * i;
        const unsigned pixel = alpha[i] == 0 ? key
                               : bytes_per_pixel == 2
                                   ? unsigned(rgb[0] >> 3 << 11 | rgb[1] >> 2 << 5 | rgb[2] >> 3)
                                   : unsigned(rgb[0] << 16 | rgb[1] << 8 | rgb[2]);
        for (int byte = 0; byte < bytes_per_pixel; ++byte)
            made.push_back(static_cast<unsigned char>(pixel >> 8 * byte));
    }
    return made;
}

// The colours of a subpicture, whatever its alpha is.
image colours(const subtitle &s) {
    return of_planes({s.y.data(), s.width}, {s.u.data(), s.width / 2}, {s.v.data(), s.width / 2},
                     s.width, s.height, true);
}

const char *rgb_name(int bytes_per_pixel) {
    return bytes_per_pixel == 4 ? "RGB32" : bytes_per_pixel == 3 ? "RGB24" : "RGB16 5-6-5";
}

} // namespace

void set_adjustment_for_pictures() {
    contrast_data values = {80, 96, -12, -56, -72, 0, 0, 0};
    get_contrast_data(&values);
}

std::vector<shown> show(const parameters_function &, const scene &s) {
    // The first of all calls: the process has no adjustment yet.
    const int w = s.frame.width, h = s.frame.height;
    const call c = make_call(functions::loadimage_rgb32_ajust, {w, h, w, 4 * w});
    std::vector<shown> made;
    const auto run = [&](const char *caption) {
        const memory m(c);
        lay_planes(m, s.frame, pointer::src, pointer::src_u, pointer::src_v);
        m.run(c);
        made.push_back({caption, of_rgb({m.at(pointer::dst), 4 * w}, 4, w, h)});
    };
    run("Before the first call: loadimage_rgb32_ajust makes green of everything");
    contrast_data neutral = {64, 64, 0, 0, 0, 0, 0, 0};
    get_contrast_data(&neutral);
    run("After: gains of 64, offsets of 0 change nothing");
    set_adjustment_for_pictures();
    run("After: Y gain 80, offset -12; U and V gain 96, offsets -56 and -72");
    return made;
}

std::vector<shown> show(const picture_function &f, const scene &s) {
    const std::string name = f.name;
    const int B = f.bytes_per_pixel;
    const bool doubles =
        f.shape >= picture_shape::doubled_pairs && f.shape <= picture_shape::adjusted_planes;
    const bool twice_as_wide = name.find("2X2") != std::string::npos;
    const planar from = !doubles ? s.frame : twice_as_wide ? s.wheel.small() : s.wheel.field();
    const int w = from.width, h = from.height;
    const bool packed = f.shape == picture_shape::packed_pairs;
    int dst_pitch = B * w;
    if (f.shape == picture_shape::halved_copy)
        dst_pitch = w / 2;
    const call c = make_call(f, picture_call{w, h, w, dst_pitch, 0, h, h});
    const memory m(c);
    if (packed)
        lay(m, pointer::src, from.packed(), 2 * w, 2 * w);
    else
        lay_planes(m, from, pointer::src, pointer::src_u, pointer::src_v);
    paint_yuy2(m, pointer::dst);
    m.run(c);

    const unsigned char *dst = m.at(pointer::dst);
    shown result;
    switch (f.shape) {
    case picture_shape::copy:
        result = {"After: the buffer taken for YV12 of " + size_of(w, h) +
                      ": rows are mixed, and no shape gives a plain copy",
                  yv12_at(dst, w, w * h, w * h + w * h / 4, w, h)};
        break;
    case picture_shape::adjusted_copy:
        result = {after("YV12 " + size_of(w, h) + "; V has the offset of U and U that of V", name),
                  yv12_at(dst, w, w * h, w * h + w * h / 4, w, h)};
        break;
    case picture_shape::halved_copy: {
        const int V = h * dst_pitch, U = V + dst_pitch / 2 * (h / 2);
        result = {after("YV12 " + size_of(w / 2, h), name),
                  yv12_at(dst, dst_pitch, V, U, w / 2, h)};
        break;
    }
    case picture_shape::planar_pairs_with_gaps:
        result = {"After: YUY2 " + size_of(w, h) +
                      ", over magenta: of lower rows 4 of each 16 pixels stay as they were",
                  of_yuy2({dst, dst_pitch}, w, h)};
        break;
    case picture_shape::doubled_pairs:
    case picture_shape::filtered_doubled_pairs: {
        const int columns = twice_as_wide ? 2 * w : w;
        result = {after("YUY2 " + size_of(columns, 2 * h) +
                            (twice_as_wide ? "; the stripes are luma where pixels should be" : ""),
                        name),
                  of_yuy2({dst, dst_pitch}, columns, 2 * h)};
        break;
    }
    case picture_shape::doubled_columns:
        result = {after(rgb_name(B) + (" " + size_of(w, 2 * h)), name),
                  of_rgb({dst, dst_pitch}, B, w, 2 * h)};
        break;
    case picture_shape::adjusted_planes: {
        const int V = 2 * h * dst_pitch, U = V + V / 4;
        result = {after("YV12 " + size_of(B * w, 2 * h) +
                            "; all planes have the gain of Y, offsets of U and V are crossed",
                        name),
                  yv12_at(dst, dst_pitch, V, U, B * w, 2 * h)};
        break;
    }
    default: {
        const bool yuy2 = name.find("yuy2") == 10 || name.find("half_yuy2") != std::string::npos ||
                          name.find("_YUY2") != std::string::npos;
        const int columns = B == 1 ? w / 2 : w;
        result = {after((yuy2 ? "YUY2" : rgb_name(B)) + (" " + size_of(columns, h)), name),
                  yuy2 ? of_yuy2({dst, dst_pitch}, columns, h) : of_rgb({dst, dst_pitch}, B, w, h)};
    }
    }
    std::string before = "Before: " + std::string(packed ? "YUY2 " : "YV12 ") + size_of(w, h);
    if (doubles)
        before += twice_as_wide ? "" : ", a field";
    return {{before, from.picture()}, result};
}

std::vector<shown> show(const mix_function &f, const scene &s) {
    const std::string name = f.name;
    const int w = s.frame.width, h = s.frame.height, B = f.bytes_per_pixel;
    const bool of_field = f.shape == mix_shape::field_groups ||
                          f.shape == mix_shape::field_columns || f.shape == mix_shape::field_planes;
    call c = make_call(f, mix_call{w, w, B * w, w, h});
    const subtitle &over = s.over;
    const std::string size = size_of(w, h);
    std::vector<shown> made;

    if (f.shape == mix_shape::conversion) {
        c.key = B == 2 ? 0xf81f : magenta;
        const memory m(c, 128);
        lay(m, pointer::dst, drawing(colours(over), over.alpha, B, c.key), B * w, B * w);
        m.run(c);
        made.push_back({"Before: a drawing surface, " + std::string(rgb_name(B)) + " " + size +
                            ", magenta as the key",
                        of_rgb({m.at(pointer::dst), B * w}, B, w, h)});
        made.push_back(
            {"After: Y, U and V of the subpicture; the planes were grey, and groups of 8 "
             "pixels of the key stay so",
             of_planes({m.at(pointer::sub_y), w}, {m.at(pointer::sub_u), w / 2},
                       {m.at(pointer::sub_v), w / 2}, w, h, true)});
        return made;
    }
    if (f.shape == mix_shape::restored_alpha || f.shape == mix_shape::loaded_alpha) {
        const memory m(c, 0);
        const bool loads = f.shape == mix_shape::loaded_alpha;
        if (loads) {
            lay(m, pointer::alpha_plane, over.alpha, w, w);
        } else { // alpha in the lowest byte of each pixel
            samples_of_plane surface(static_cast<std::size_t>(B) * w * h);
            for (std::size_t i = 0; i < over.alpha.size(); ++i)
                surface[B * i] = over.alpha[i];
            lay(m, pointer::dst, surface, B * w, B * w);
        }
        m.run(c);
        const image plane_shown = of_grey({m.at(pointer::alpha_plane), w}, w, h, 15);
        image surface = of_rgb({m.at(pointer::dst), B * w}, B, w, h);
        for (unsigned char &sample : surface.rgb)
            sample = static_cast<unsigned char>(std::min(255, sample * (B == 2 ? 2 : 15)));
        const std::string drawn = "the drawing surface, " + std::string(rgb_name(B)) +
                                  ", alpha in blue" + (B == 2 ? " (made 2" : " (made 15") +
                                  " times as bright)";
        const std::string alpha = "the alpha plane, 0 to 16 (made 15 times as bright)";
        made.push_back({"Before: " + (loads ? alpha : drawn), loads ? plane_shown : surface});
        made.push_back({"After: " + (loads ? drawn : alpha), loads ? surface : plane_shown});
        return made;
    }
    made.push_back({"Before: the subpicture, AYUY2 " + size, over.picture()});
    if (f.shape == mix_shape::subpicture) {
        c.key = B == 2 ? 0xf81f : magenta;
        const memory m(c, 0);
        lay_subpicture(m, over);
        m.run(c);
        made.push_back(
            {after(std::string(rgb_name(B)) + " " + size + ", the key (magenta) where alpha is 0",
                   name),
             of_rgb({m.at(pointer::dst), B * w}, B, w, h)});
        return made;
    }
    const planar video = of_field ? s.frame.field() : s.frame;
    made.insert(made.begin(),
                {std::string("Before: the video, YV12 ") + size_of(video.width, video.height) +
                     (of_field ? ", a field" : ""),
                 video.picture()});
    const memory m(c, 0);
    lay_planes(m, video, pointer::video_y, pointer::video_u, pointer::video_v);
    lay_subpicture(m, over);
    m.run(c);
    const unsigned char *dst = m.at(pointer::dst);
    if (f.shape == mix_shape::planes || f.shape == mix_shape::field_planes)
        made.push_back(
            {after("YV12 " + size, name), of_planes({dst, w}, {m.at(pointer::dst_u), w / 2},
                                                    {m.at(pointer::dst_v), w / 2}, w, h)});
    else if (name.find("half_yuy2") != std::string::npos)
        made.push_back({after("YUY2 " + size_of(w / 2, h), name), of_yuy2({dst, w}, w / 2, h)});
    else if (name.find("_yuy2_") != std::string::npos)
        made.push_back({after("YUY2 " + size, name), of_yuy2({dst, 2 * w}, w, h)});
    else
        made.push_back({after(rgb_name(B) + (" " + size), name), of_rgb({dst, B * w}, B, w, h)});
    return made;
}

std::vector<shown> show(const key_fill_function &f, const scene &s) {
    const int w = s.frame.width, h = s.frame.height, B = f.bytes_per_pixel, pitch = B * w;
    const image frame = s.frame.picture();
    samples_of_plane surface =
        drawing(frame, samples_of_plane(static_cast<std::size_t>(w) * h, 16), B, 0);
    call c = make_call(f, key_fill_call{96, 64, pitch});
    c.key = B == 2 ? 0xf81f : magenta;
    addresses where = {};
    where[static_cast<int>(pointer::surface)] = surface.data() + 22 * pitch + 48 * B;
    c.run(c, where);
    char text[80];
    std::snprintf(text, sizeof text, "After: the key 0x%08x in 96x64 pixels%s", c.key,
                  B == 3 ? ": not one colour, as it is not grey" : "");
    return {{"Before: " + std::string(rgb_name(B)) + " " + size_of(w, h), frame},
            {text, of_rgb({surface.data(), pitch}, B, w, h)}};
}

std::vector<shown> show(const mask_function &f, const scene &s) {
    const int w = s.frame.width, h = s.frame.height;
    call c = make_call(f, mask_call{w, w, h});
    c.key = 255;
    const memory m(c);
    samples_of_plane mask(s.over.alpha);
    for (unsigned char &value : mask)
        value = value == 16 ? 1 : 0;
    lay(m, pointer::mask, mask, w, w);
    lay(m, pointer::dst, s.frame.y, w, w);
    const image before = of_grey({m.at(pointer::dst), w}, w, h);
    m.run(c);
    return {{"Before: dst, bytes as grey", before},
            {"Before: mask, white where it holds mask_value", of_grey({mask.data(), w}, w, h, 255)},
            {"After: key_value 255 under the mask", of_grey({m.at(pointer::dst), w}, w, h)}};
}

std::vector<shown> show(const packed_stretch_function &f, const scene &s) {
    const planar from = s.wheel.small();
    const int w = from.width, h = from.height, pitch = 4 * w;
    const call c = make_call(f, packed_stretch_call{2 * w, h, pitch});
    const memory m(c);
    lay(m, pointer::src, from.packed(), 2 * w, 2 * w);
    m.run(c);
    return {
        {"Before: YUY2 " + size_of(w, h), from.picture()},
        {after("YUY2 " + size_of(2 * w, 2 * h) + "; the stripes are luma where pixels should be",
               f.name),
         of_yuy2({m.at(pointer::dst), pitch}, 2 * w, 2 * h)}};
}

std::vector<shown> show(const plane_stretch_function &f, const scene &s) {
    const planar from = f.times_width == 2 ? s.wheel.small() : s.wheel.field();
    const int w = from.width, h = from.height, pitch = f.times_width * w;
    const call c = make_call(f, plane_stretch_call{w, h, w, pitch});
    const memory m(c, 128);
    lay(m, pointer::src, from.y, w, w);
    m.run(c);
    return {{"Before: a plane, " + size_of(w, h), of_grey({from.y.data(), w}, w, h)},
            {f.adjusts ? "After: " + size_of(pitch, 2 * h) + " samples. Y: gain 80/64, offset -12"
                       : "After: " + size_of(pitch, 2 * h) +
                             " samples; the first 8 of each row count as 0",
             of_grey({m.at(pointer::dst), pitch}, pitch, 2 * h)}};
}

std::vector<shown> show(const frame_stretch_function &f, const scene &s) {
    const planar from = s.wheel.field();
    const int w = from.width, h = from.height;
    const call c = make_call(f, frame_stretch_call{w, 0, 0, h, 2 * w});
    const memory m(c);
    lay_planes(m, from, pointer::plane_y, pointer::plane_u, pointer::plane_v);
    m.run(c);
    return {{"Before: YV12 " + size_of(w, h) + ", a field", from.picture()},
            {after("YUY2 " + size_of(w, 2 * h) + ", along edges", f.name),
             of_yuy2({m.at(pointer::dst), 2 * w}, w, 2 * h)}};
}

} // namespace pictures
