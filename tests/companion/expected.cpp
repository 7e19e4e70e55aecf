#include "tests/companion/expected.h"

#include "tests/model/models.h"

namespace companion {

namespace {

using lumalane::format;

constexpr lumalane::adjustment neutral;

bool is_rgb16(format f) { return f >= format::rgb565; }

// A call of a model: its buffers, and the adjustment that it has.
class model_call {
public:
    explicit model_call(const lumalane::adjustment &a)
        : parameters{a.y_gain, a.uv_gain, a.y_offset, a.u_offset, a.v_offset, 0, 0, 0} {
        add(&parameters, sizeof parameters);
        model::get_contrast_data(memory, &parameters);
    }

    unsigned char *add(bytes &buffer) { return add(buffer.data(), buffer.size()); }
    unsigned char *add(const bytes &buffer) { return add(const_cast<bytes &>(buffer)); }

    tag_ajust_contrast_info *info(format f, int height = 0) {
        record.rgb16_layout =
            is_rgb16(f) ? static_cast<int>(f) - static_cast<int>(format::rgb565) : 0;
        record.surface_height = record.rows_to_plane_end = height;
        add(&record, sizeof record);
        return &record;
    }

    template <class T>
    T *add(T *first, std::size_t size) {
        const model::address begin = model::address_of(first);
        memory.add({begin, begin + size});
        return first;
    }

    model::memory memory;

private:
    contrast_data parameters;
    tag_ajust_contrast_info record{};
};

using picture_model = void(model::memory &, LUMALANE_PARAMETERS_picture);

picture_model *planar_model(format to, bool adjusts) {
    switch (to) {
    case format::rgb32:
        return adjusts ? model::loadimage_rgb32_ajust : model::loadimage_rgb32;
    case format::rgb24:
        return adjusts ? model::loadimage_rgb24_ajust : model::loadimage_rgb24;
    case format::yuy2: // the one without adjustment leaves gaps
        return model::loadimage_yuy2_ajust;
    default:
        return adjusts ? model::loadimage_rgb16_ajust : model::loadimage_rgb16;
    }
}

picture_model *packed_model(format to, bool adjusts) {
    switch (to) {
    case format::rgb32:
        return adjusts ? model::LoadYUY2_RGB32_adjust : model::LoadYUY2_RGB32;
    case format::rgb24:
        return adjusts ? model::LoadYUY2_RGB24_adjust : model::LoadYUY2_RGB24;
    case format::yuy2:
        return adjusts ? model::LoadYUY2_YUY2_adjust : model::LoadYUY2_YUY2;
    default:
        return adjusts ? model::LoadYUY2_RGB16_adjust : model::LoadYUY2_RGB16;
    }
}

int up(int x, int step) { return (x + step - 1) / step * step; }

// Y, V and U in one buffer, as planes of a picture.
rows_of_pixels planes_of(const bytes &buffer, format f, int width, int height) {
    rows_of_pixels made(f, width, height);
    const std::size_t luma = std::size_t(width) * height;
    made.planes[0].assign(buffer.begin(), buffer.begin() + luma);
    made.planes[2].assign(buffer.begin() + luma, buffer.begin() + luma + luma / 4);
    made.planes[1].assign(buffer.begin() + luma + luma / 4, buffer.begin() + luma + luma / 2);
    return made;
}

} // namespace

std::optional<rows_of_pixels> expected_conversion(const rows_of_pixels &source, format to,
                                                  const optional_adjustment &by) {
    const bool planar = lumalane::is_planar(source.format);
    if (to < format::yuy2 && !planar)
        return {};
    if (source.format > format::yuy2)
        return {};
    const int width = up(source.width, 16), height = std::max(up(source.height, 2), 10);
    const rows_of_pixels padded = resized(source, width, height);
    model_call call(by.value_or(neutral));
    unsigned char *const y = call.add(padded.planes[0]);
    unsigned char *const u = planar ? call.add(padded.planes[1]) : nullptr;
    unsigned char *const v = planar ? call.add(padded.planes[2]) : nullptr;
    rows_of_pixels made(to, width, height);
    if (lumalane::is_planar(to)) {
        // The model crosses the offsets of U and V: it gets them exchanged.
        bytes surface(width * height * 3 / 2);
        model::loadimage_yv12_ajust(call.memory, y, v, u, call.add(surface), width, height, width,
                                    width, call.info(to, height));
        made = planes_of(surface, to, width, height);
        std::swap(made.planes[1], made.planes[2]);
    } else {
        unsigned char *const dst = call.add(made.planes[0]);
        const int pitch = static_cast<int>(made.row_bytes(0));
        tag_ajust_contrast_info *const info = call.info(to);
        (planar ? planar_model(to, by.has_value()) : packed_model(to, by.has_value()))(
            call.memory, y, u, v, dst, width, height, width, pitch, info);
        if (planar && to == format::yuy2 && !by) // all that is not left out
            model::loadimage_yuy2(call.memory, y, u, v, dst, width, height, width, pitch, info);
    }
    return resized(made, source.width, source.height);
}

std::optional<rows_of_pixels> expected_blend(const rows_of_pixels &video,
                                             const subpicture_rows &over, int x, int y, format to,
                                             const optional_adjustment &by) {
    if (!lumalane::is_planar(video.format))
        return {};
    const int width = up(video.width, 16), height = up(video.height, 2);
    const rows_of_pixels padded = resized(video, width, height);

    // As large as the picture; what is not under it is not to be seen.
    bytes alpha(width * height), sub_y(width * height, 99), sub_u(width / 2 * height, 99),
        sub_v = sub_u;
    const auto inside = [&](int column, int row) {
        return 0 <= column - x && column - x < over.width && 0 <= row - y && row - y < over.height;
    };
    for (int row = 0; row < height; ++row)
        for (int column = 0; column < width; ++column) {
            if (!inside(column, row))
                continue;
            const int from = (row - y) * over.width + (column - x);
            alpha[row * width + column] = over.alpha[from];
            sub_y[row * width + column] = over.y[from];
            if (column % 2 == 0)
                continue;
            const int chroma = (row - y) * over.chroma_width() + (column - x) / 2;
            sub_u[(row * width + column) / 2] = over.u[chroma];
            sub_v[(row * width + column) / 2] = over.v[chroma];
        }

    model_call call(by.value_or(neutral));
    rows_of_pixels made(to, width, height);
    tagMIX_INFO mix{};
    mix.video_pitch = mix.sub_pitch = mix.width = width;
    mix.dst_pitch = static_cast<int>(made.row_bytes(0));
    mix.height = height;
    mix.video_y = call.add(padded.planes[0]);
    mix.video_u = call.add(padded.planes[1]);
    mix.video_v = call.add(padded.planes[2]);
    mix.alpha_plane = call.add(alpha);
    mix.sub_y = call.add(sub_y);
    mix.sub_u = call.add(sub_u);
    mix.sub_v = call.add(sub_v);
    mix.dst = call.add(made.planes[0]);
    mix.adjust_info = call.info(to);
    call.add(&mix, sizeof mix);
    if (lumalane::is_planar(to)) {
        mix.dst_u = call.add(made.planes[1]);
        mix.dst_v = call.add(made.planes[2]);
        (by ? model::mix_ayv12_yv12_p_ajust : model::mix_ayv12_yv12_p)(call.memory, &mix);
    } else {
        (to == format::rgb32   ? model::mix_ayuy2_rgb32_p_ajust
         : to == format::rgb24 ? model::mix_ayuy2_rgb24_p_ajust
         : to == format::yuy2  ? model::mix_ayuy2_yuy2_p_ajust
                               : model::mix_ayuy2_rgb16_p_ajust)(call.memory, &mix);
    }
    return resized(made, video.width, video.height);
}

std::optional<rows_of_pixels> expected_stretch(const rows_of_pixels &source, format to,
                                               lumalane::stretching how,
                                               const optional_adjustment &by) {
    using lumalane::stretching;
    const bool planar = lumalane::is_planar(source.format);
    const int times = how == stretching::twice_both ? 2 : 1;
    const bool to_rgb = to > format::yuy2;
    if (source.format > format::yuy2 || (how != stretching::twice_height && to_rgb) ||
        (how == stretching::along_edges && to != format::yuy2) ||
        (!planar && (to != format::yuy2 || how != stretching::twice_both)))
        return {};
    const bool planes = lumalane::is_planar(to);
    // The least sizes of all functions are too large for some; what is below and beside the picture
    // would come out differently then.
    const int least_height = planes                     ? 4
                             : to_rgb                   ? 12
                             : times == 1               ? 8
                             : planar == by.has_value() ? 16
                                                        : 8;
    const int step = planes ? 32 : 16;
    const int least_width = how == stretching::along_edges ? 48 : 32;
    const int width = std::max(up(source.width, step), least_width);
    const int height = std::max(up(source.height, 2), least_height);
    const rows_of_pixels padded = resized(source, width, height);

    model_call call(by.value_or(neutral));
    unsigned char *const y = call.add(padded.planes[0]);
    unsigned char *const u = planar ? call.add(padded.planes[1]) : nullptr;
    unsigned char *const v = planar ? call.add(padded.planes[2]) : nullptr;
    rows_of_pixels made(to, times * width, 2 * height);
    tag_ajust_contrast_info *const info = call.info(to);
    if (planes) {
        // The model crosses the offsets of U and V: it gets them exchanged.
        bytes surface(times * width * 2 * height * 3 / 2);
        (times == 2 ? model::strech_picture_2X2_yv12_ajust : model::strech_picture_1X2_yv12_ajust)(
            call.memory, y, v, u, call.add(surface), width, height, width, times * width, info);
        made = planes_of(surface, to, times * width, 2 * height);
        std::swap(made.planes[1], made.planes[2]);
        return resized(made, times * source.width, 2 * source.height);
    }
    unsigned char *const dst = call.add(made.planes[0]);
    const int pitch = static_cast<int>(made.row_bytes(0));
    tagVideoFrame frame{};
    if (how == stretching::along_edges) {
        frame.plane_y = y, frame.plane_u = u, frame.plane_v = v;
        frame.luma_pitch = width;
        call.add(&frame, sizeof frame);
        model::strech_opt_yuy2_ajust(call.memory, &frame, 0, height, dst, pitch, info);
    } else if (!planar && by) {
        model::yuy2_strech_picture_2X2_yuy2_ajust(call.memory, y, nullptr, nullptr, dst, 2 * width,
                                                  height, pitch, info);
    } else if (!planar) {
        model::yuy2_strech_picture_2X2_yuy2(call.memory, y, nullptr, nullptr, dst, 2 * width,
                                            height, pitch);
    } else {
        picture_model *const stretch =
            times == 2
                ? (by ? model::strech_picture_2X2_yuy2_ajust : model::strech_picture_2X2_yuy2)
            : to == format::yuy2
                ? (by ? model::strech_picture_1X2_yuy2_ajust : model::strech_picture_1X2_yuy2)
            : to == format::rgb32 ? model::strech_picture_1X2_yuy2_ajust_rgb32
            : to == format::rgb24 ? model::strech_picture_1X2_yuy2_ajust_rgb24
                                  : model::strech_picture_1X2_yuy2_ajust_rgb16;
        stretch(call.memory, y, u, v, dst, width, height, width, pitch, info);
    }
    return resized(made, times * source.width, 2 * source.height);
}

} // namespace companion
