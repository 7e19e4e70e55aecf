// YV12 pictures into RGB surfaces of twice the height.
#include "frame/kernels.h"
#include "stretch/between_rows.h"

namespace lumalane::LUMALANE_LANES {

namespace {

constexpr int least_height = 12;

// Strips of 16 pixels from the top to the bottom, which goes back up by what the height means:
// after an odd height, a row too little in the source, and two on the surface.
template <class Stretch, class Again>
void strips_stepwise(const picture p, const Stretch stretched, Again more) {
    constexpr int step = 16, size = decltype(stretched.sink)::bytes_per_pixel();
    const ptrdiff_t chroma_pitch = p.src_pitch >> 1;
    const int y_back = product(p.height, p.src_pitch);
    const int dst_back = product(twice(p.height), p.dst_pitch);
    rows_at_hand at{p.src, p.src_u, p.src_v, 0, 0};
    unsigned char *to = p.dst;
    int columns = p.width;
    do {
        const auto next_y = [&] {
            const auto y = the_row_itself{}(stretched.template luma<step>(at));
            at.y += p.src_pitch;
            return y;
        };
        const auto next_chroma = [&] {
            const auto chroma = the_row_itself{}(stretched.template chroma<step>(at));
            at.u += chroma_pitch, at.v += chroma_pitch;
            return chroma;
        };
        const auto put_row = [&](auto y, auto chroma) {
            const auto shared = stretched.sink.template shared<step>(chroma);
            stretched.sink.template row<step, cached>(to, y, shared);
            to += p.dst_pitch;
        };

        auto chroma = next_chroma();
        auto upper = next_y();
        int left = p.height - 2;
        do {
            put_row(upper, chroma);
            const auto lower = next_y();
            put_row(average(upper, lower), chroma);
            const auto next = next_chroma();
            const auto between = average(chroma, next);
            put_row(lower, between);
            upper = next_y();
            put_row(average(lower, upper), between);
            chroma = next;
            left -= 2;
        } while (left > 0);
        put_row(upper, chroma);
        const auto last = next_y();
        put_row(average(upper, last), chroma);
        put_row(last, chroma);
        put_row(last, chroma);

        at.y += step - y_back, at.u += step / 2 - (y_back >> 2), at.v += step / 2 - (y_back >> 2);
        to += step * size - dst_back;
        columns -= step;
    } while (more(columns));
}

// The picture through `packed`, adjusted before new rows are made. `more(columns)` tells of the
// columns left whether another strip follows.
template <class Packed, class Again>
void stretch_strips(const picture &p, Packed packed, Again more) {
    with_adjustment([&](auto adjusted) {
        const stretch stretched{planar{} | adjusted, fetched{} | to_rgb{} | packed};
        const long long row_bytes = static_cast<long long>(p.width) * Packed::bytes_per_pixel;
        if (stretch_is_regular(p, row_bytes))
            pairs_wide(p, row_bytes, stretched, pairs_by_averages{});
        else
            strips_stepwise(p, stretched, more);
    });
}

} // namespace

void strech_picture_1X2_yuy2_ajust_rgb32(LUMALANE_PARAMETERS_picture) {
    if (height >= least_height)
        stretch_strips({LUMALANE_ARGUMENTS_picture}, rgb32{}, [](int left) { return left > 0; });
}

void strech_picture_1X2_yuy2_ajust_rgb24(LUMALANE_PARAMETERS_picture) {
    if (height >= least_height)
        stretch_strips({LUMALANE_ARGUMENTS_picture}, rgb24{}, [](int left) { return left != 0; });
}

void strech_picture_1X2_yuy2_ajust_rgb16(LUMALANE_PARAMETERS_picture) {
    if (height < least_height)
        return;
    with_rgb16_layout(info->rgb16_layout, [&](auto rgb16) {
        stretch_strips({LUMALANE_ARGUMENTS_picture}, rgb16, [](int left) { return left != 0; });
    });
}

} // namespace lumalane::LUMALANE_LANES
