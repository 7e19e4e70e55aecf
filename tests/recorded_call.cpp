#include "tests/recorded_call.h"

namespace tests {

namespace {

using lumalane::footprint_of;
using lumalane::pointer;

recorded_call latest;

// Keeps sets of rows, and counts them.
struct keeping_receiver {
    void reads(pointer p, const lumalane::row_set &rows) {
        ++latest.sets_read;
        latest.rows.push_back({p, true, false, rows});
    }
    void writes(pointer p, const lumalane::row_set &rows) {
        ++latest.sets_written;
        latest.rows.push_back({p, false, true, rows});
    }
    void writes_again(pointer p, const lumalane::row_set &rows) { writes(p, rows); }
    void replaces(pointer p, const lumalane::row_set &rows) {
        ++latest.sets_written;
        latest.rows.push_back({p, true, true, rows});
    }
};

template <class Function, class Call>
void record_bytes(const Function &f, const Call &c) {
    keeping_receiver rows;
    lumalane::rows_of(f, c, rows);
    latest.bytes = footprint_of(f, c);
}

std::vector<recorded_call> all;

void call(const lumalane::parameters_function &f, LUMALANE_PARAMETERS_parameters) {
    latest.bytes = footprint_of(f);
    latest.at(pointer::params, params);
}

void call(const lumalane::picture_function &f, LUMALANE_PARAMETERS_picture) {
    record_bytes(f, lumalane::picture_call{width, height, src_pitch, dst_pitch, info->rgb16_layout,
                                           info->surface_height, info->rows_to_plane_end});
    latest.at(pointer::src, src), latest.at(pointer::src_u, src_u);
    latest.at(pointer::src_v, src_v), latest.at(pointer::dst, dst);
    latest.at(pointer::info, info);
}

void call(const lumalane::mix_function &f, LUMALANE_PARAMETERS_mix) {
    record_bytes(f, lumalane::mix_call{mix->video_pitch, mix->sub_pitch, mix->dst_pitch, mix->width,
                                       mix->height,
                                       f.reads_layout ? mix->adjust_info->rgb16_layout : 0});
    latest.at(pointer::video_y, mix->video_y), latest.at(pointer::video_v, mix->video_v);
    latest.at(pointer::video_u, mix->video_u), latest.at(pointer::alpha_plane, mix->alpha_plane);
    latest.at(pointer::sub_y, mix->sub_y), latest.at(pointer::sub_v, mix->sub_v);
    latest.at(pointer::sub_u, mix->sub_u), latest.at(pointer::dst, mix->dst);
    latest.at(pointer::dst_u, mix->dst_u), latest.at(pointer::dst_v, mix->dst_v);
    latest.at(pointer::info, mix->adjust_info), latest.at(pointer::mix, mix);
}

void call(const lumalane::key_fill_function &f, LUMALANE_PARAMETERS_key_fill) {
    (void)key;
    record_bytes(f, lumalane::key_fill_call{width, height, pitch});
    latest.at(pointer::surface, surface);
}

void call(const lumalane::mask_function &f, LUMALANE_PARAMETERS_mask) {
    (void)mask_value, (void)key_value;
    record_bytes(f, lumalane::mask_call{width, pitch, height});
    latest.at(pointer::dst, dst), latest.at(pointer::mask, mask);
}

void call(const lumalane::packed_stretch_function &f, LUMALANE_PARAMETERS_packed_stretch_ajust) {
    record_bytes(f, lumalane::packed_stretch_call{row_bytes, height, dst_pitch});
    latest.at(pointer::src, src), latest.at(pointer::dst, dst);
}

void call(const lumalane::packed_stretch_function &f, LUMALANE_PARAMETERS_packed_stretch) {
    call(f, LUMALANE_ARGUMENTS_packed_stretch, nullptr);
}

void call(const lumalane::plane_stretch_function &f, LUMALANE_PARAMETERS_plane_stretch) {
    record_bytes(f, lumalane::plane_stretch_call{width, height, src_pitch, dst_pitch});
    latest.at(pointer::src, src), latest.at(pointer::dst, dst);
}

void call(const lumalane::plane_stretch_function &f, LUMALANE_PARAMETERS_plane_stretch_ajust) {
    (void)plane_number;
    call(f, LUMALANE_ARGUMENTS_plane_stretch);
}

void call(const lumalane::frame_stretch_function &f, LUMALANE_PARAMETERS_frame_stretch) {
    record_bytes(f, lumalane::frame_stretch_call{frame->luma_pitch, frame->field_mode, start,
                                                 height, dst_pitch});
    latest.at(pointer::plane_y, frame->plane_y), latest.at(pointer::plane_u, frame->plane_u);
    latest.at(pointer::plane_v, frame->plane_v), latest.at(pointer::dst, dst);
    latest.at(pointer::frame, frame);
}

} // namespace

std::vector<recorded_call> record(const differential::drawn_call &drawn,
                                  const differential::placement &places) {
    static const function_table recorders = {
        "recorded",
#define LUMALANE_EXPORT(signature, name)                                                           \
    [](LUMALANE_PARAMETERS_##signature) {                                                          \
        latest = {};                                                                               \
        call(lumalane::functions::name, LUMALANE_ARGUMENTS_##signature);                           \
        all.push_back(latest);                                                                     \
    },
#include "abi/exports.inc"
#undef LUMALANE_EXPORT
    };
    all.clear();
    drawn.on_function(recorders, places);
    return all;
}

} // namespace tests
