// A call as the shapes of lumalane/rows_of.h see it: its sizes, and where its pointers point.
#pragma once

#include "picture/calls.h"
#include "picture/geometry.h"
#include "picture/machine.h"

namespace lumalane {

inline picture_call sizes_of(const call::picture &p) {
    return {p.width, p.height, p.src_pitch, p.dst_pitch};
}

inline call_rows rows_at(const call::picture &p) {
    call_rows rows;
    rows.at(pointer::src, p.src), rows.at(pointer::src_u, p.src_u);
    rows.at(pointer::src_v, p.src_v), rows.at(pointer::dst, p.dst);
    return rows;
}

inline call_rows rows_at(const call::packed_stretch &p) {
    call_rows rows;
    rows.at(pointer::src, p.src), rows.at(pointer::dst, p.dst);
    return rows;
}

inline call_rows rows_at(const call::frame_stretch &p) {
    call_rows rows;
    rows.at(pointer::plane_y, p.frame->plane_y), rows.at(pointer::plane_u, p.frame->plane_u);
    rows.at(pointer::plane_v, p.frame->plane_v), rows.at(pointer::dst, p.dst);
    return rows;
}

inline mix_call sizes_of(const tagMIX_INFO &mix) {
    return {mix.video_pitch, mix.sub_pitch, mix.dst_pitch, mix.width, mix.height};
}

inline call_rows rows_at(const tagMIX_INFO &mix) {
    call_rows rows;
    rows.at(pointer::video_y, mix.video_y), rows.at(pointer::video_v, mix.video_v);
    rows.at(pointer::video_u, mix.video_u), rows.at(pointer::alpha_plane, mix.alpha_plane);
    rows.at(pointer::sub_y, mix.sub_y), rows.at(pointer::sub_v, mix.sub_v);
    rows.at(pointer::sub_u, mix.sub_u), rows.at(pointer::dst, mix.dst);
    return rows;
}

// Whether a call's stores keep their order: where that is forced, or can be observed from its rows.
inline bool keeps_order(const machine &machine, const call_rows &told) {
    return machine.in_order || told.order_can_be_observed();
}

// From those that `tell` tells. (Its frame is gone when kernels that need much of the stack run.)
template <class Call, class Tell>
[[gnu::noinline]] bool keeps_order(const machine &machine, const Call &p, const Tell &tell) {
    if (machine.in_order)
        return true;
    call_rows rows = rows_at(p);
    tell(rows);
    return rows.order_can_be_observed();
}

} // namespace lumalane
