#include "tests/model/mix.h"

namespace model {

mix_walk walk_of(memory &m, const tagMIX_INFO &mix) {
    const auto pointer = [&](unsigned char *const &field) { return address_of(m.field(field)); };
    return {
        .video_pitch = m.field(mix.video_pitch),
        .sub_pitch = m.field(mix.sub_pitch),
        .dst_pitch = m.field(mix.dst_pitch),
        .width = m.field(mix.width),
        .height = m.field(mix.height),
        .video_y = pointer(mix.video_y),
        .video_v = pointer(mix.video_v),
        .video_u = pointer(mix.video_u),
        .alpha = pointer(mix.alpha_plane),
        .sub_y = pointer(mix.sub_y),
        .sub_v = pointer(mix.sub_v),
        .sub_u = pointer(mix.sub_u),
        .dst = pointer(mix.dst),
    };
}

void consume(memory &m, tagMIX_INFO &mix, const mix_walk &w) {
    const auto pointer = [](address where) { return reinterpret_cast<unsigned char *>(where); };
    m.set_field(mix.height, w.height);
    m.set_field(mix.video_v, pointer(w.video_v));
    m.set_field(mix.video_u, pointer(w.video_u));
    m.set_field(mix.alpha_plane, pointer(w.alpha));
    m.set_field(mix.sub_y, pointer(w.sub_y));
    m.set_field(mix.sub_v, pointer(w.sub_v));
    m.set_field(mix.sub_u, pointer(w.sub_u));
}

} // namespace model
