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

} // namespace companion
