// Calls everything of the companion that is more than a constant, in forms that the compiler cannot
// compute by itself: compiled for several processors by test.cmake, which looks for what those share.
#include <lumalane/lumalane.hpp>

using namespace lumalane;

bool use(const picture &a, const picture &b, const subpicture &c) {
    set_adjustment({});
    return convert(a, b) && convert(a, b, {}) && blend(a, c, 0, 0, b) && blend(a, c, 0, 0, b, {}) &&
           stretch(a, b, stretching::twice_both) && stretch(a, b, stretching::along_edges, {});
}

picture use(format f, int width, int height, unsigned char *data) {
    const picture p = flipped(packed_planes(f, width, height, data));
    const const_plane plane = p.planes[0];
    const const_picture read = p;
    return plane.data == read.planes[1].data && picture_bytes(f, width, height) > 0 ? p : picture{};
}

bool use(const buffer &a, const const_buffer &b, const tag_ajust_contrast_info &info,
         const mix_buffers &c, const frame_buffers &d) {
    return checked::loadimage_rgb16(a, b, a, a, 16, 16, 16, 32, &info) &&
           checked::mix_ayv12_yv12_p(c) && checked::Convert_RGB24_To_AYUY2(c) &&
           checked::LoadColorKeyRgb32(0, a, 16, 16, 0, 64) &&
           checked::RelaceMaskWithColorKey(a, b, 0, 0, 16, 16, 16) &&
           checked::yuy2_strech_picture_2X2_yuy2(b, b, b, a, 64, 16, 128) &&
           checked::strech_pic_2X2_adjust(b, a, 16, 16, 16, 32, &info, 1) &&
           checked::strech_opt_yuy2_ajust(d, 0, 16, a, 32, nullptr);
}

bool use(unsigned char *data, size_t size, byte_range bytes, contrast_data *params) {
    mix_buffers record{};
    record.alpha_plane = buffer(data, size);
    record.sub_y = {data, bytes};
    record.video_y = const_buffer(data, size);
    record.video_u = {data, bytes};
    record.dst = {};
    return bytes.empty() || checked::mix_ayuy2_rgb16_p_ajust(record) ||
           checked::get_contrast_data(params);
}

char *use(const status &s, char *text, size_t size) {
    return s ? s.write(text, size) : const_cast<char *>(message_of(s.code));
}

// Functions that are not those of `functions`, too.
byte_range use(picture_function f, const picture_call &a, mix_function g, const mix_call &b,
               int value) {
    f = f.with_step(value).from_height(value).from_width(value).of_even_height().with_layout();
    g = g.with_step(value).from(value, value).with_layout().reading_beyond(value).counting_height();
    const footprint of_g = footprint_of(g, b);
    return of_g[static_cast<pointer>(value)].touched().empty()
               ? footprint_of(f, a)[pointer::dst].touched()
               : footprint_of(functions::get_contrast_data)[pointer::params].read;
}

byte_range use(const key_fill_call &a, const mask_call &b, const packed_stretch_call &c,
               const plane_stretch_call &d, const frame_stretch_call &e, pointer p) {
    const footprint all[] = {footprint_of(functions::LoadColorKeyRgb24, a),
                             footprint_of(functions::RelaceMaskWithColorKey, b),
                             footprint_of(functions::yuy2_strech_picture_2X2_yuy2, c),
                             footprint_of(functions::strech_pic_2X2, d),
                             footprint_of(functions::strech_opt_yuy2_ajust, e)};
    return all[static_cast<int>(p) % 5][p].touched();
}

bool use(const row_set &a, const row_set &b, long long by) {
    return !a.empty() && a.begin() < b.end() && apart(joined(a), moved(b, by)) && rows_apart(a);
}
