// How the arguments of each signature are drawn, and what several signatures need for it.
#pragma once

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "tests/differential/drawn_call.h"

namespace differential {

// One function per signature that abi/exports.inc uses.
drawn_call draw_parameters(random &, const char *name, void (*on_model)(model::memory &, void *),
                           void (*tests::function_table::*function)(void *));
drawn_call draw_mix(random &, const char *name,
                    void (*on_model)(model::memory &, LUMALANE_PARAMETERS_mix),
                    void (*tests::function_table::*function)(LUMALANE_PARAMETERS_mix));
// Of those, the mixes of a subpicture over the video.
drawn_call draw_video_mix(random &, const char *name,
                          void (*on_model)(model::memory &, LUMALANE_PARAMETERS_mix),
                          void (*tests::function_table::*function)(LUMALANE_PARAMETERS_mix));
drawn_call draw_key_fill(random &, const char *name,
                         void (*on_model)(model::memory &, LUMALANE_PARAMETERS_key_fill),
                         void (*tests::function_table::*function)(LUMALANE_PARAMETERS_key_fill));
drawn_call draw_mask(random &, const char *name,
                     void (*on_model)(model::memory &, LUMALANE_PARAMETERS_mask),
                     void (*tests::function_table::*function)(LUMALANE_PARAMETERS_mask));
drawn_call draw_picture(random &, const char *name,
                        void (*on_model)(model::memory &, LUMALANE_PARAMETERS_picture),
                        void (*tests::function_table::*function)(LUMALANE_PARAMETERS_picture));
drawn_call
draw_packed_stretch(random &, const char *name,
                    void (*on_model)(model::memory &, LUMALANE_PARAMETERS_packed_stretch),
                    void (*tests::function_table::*function)(LUMALANE_PARAMETERS_packed_stretch));
drawn_call draw_packed_stretch_ajust(
    random &, const char *name,
    void (*on_model)(model::memory &, LUMALANE_PARAMETERS_packed_stretch_ajust),
    void (*tests::function_table::*function)(LUMALANE_PARAMETERS_packed_stretch_ajust));
drawn_call
draw_plane_stretch(random &, const char *name,
                   void (*on_model)(model::memory &, LUMALANE_PARAMETERS_plane_stretch),
                   void (*tests::function_table::*function)(LUMALANE_PARAMETERS_plane_stretch));
drawn_call draw_plane_stretch_ajust(
    random &, const char *name,
    void (*on_model)(model::memory &, LUMALANE_PARAMETERS_plane_stretch_ajust),
    void (*tests::function_table::*function)(LUMALANE_PARAMETERS_plane_stretch_ajust));
drawn_call
draw_frame_stretch(random &, const char *name,
                   void (*on_model)(model::memory &, LUMALANE_PARAMETERS_frame_stretch),
                   void (*tests::function_table::*function)(LUMALANE_PARAMETERS_frame_stretch));

// Bytes of a row (of the Y plane for YV12) that a function makes of so many pixels, or reads in the
// place of its destination: its name spells them.
int destination_row_bytes(std::string_view name, int width);

// The row of a table that lies in `file`. One that is missing ends the program.
template <class Row, std::size_t count>
const Row &find_by_name(const Row (&table)[count], std::string_view name, const char *file) {
    for (const Row &row : table)
        if (row.name == name)
            return row;
    std::fprintf(stderr, "%s needs a row in the table in %s\n", std::string(name).c_str(), file);
    std::abort();
}

// Shapes that `regular` draws, some that are so but for one thing, and any, a third each.
template <class Shape, class Of>
Shape draw_one_of(random &r, const Of &of, Shape (*regular)(random &, const Of &),
                  Shape (*almost_regular)(random &, const Of &),
                  Shape (*irregular)(random &, const Of &)) {
    switch (r.between(0, 2)) {
    case 0:
        return regular(r, of);
    case 1:
        return almost_regular(r, of);
    default:
        return irregular(r, of);
    }
}

// Some rows are longer than anything that is done in pieces: wide pictures of few rows.
constexpr int widest_drawn = 5280;
inline bool draw_wide(random &r) { return r.one_in(25); }

// How large a picture is and how its rows lie: regular, regular but for one thing, or anything.
struct shape {
    int width, height;
    int src_pitch; // in the unit of the width
    int dst_pitch; // bytes; the name of the function spells how many a row has
};
shape draw_shape(random &, std::string_view name);
// The same for the stretches.
shape draw_stretch_shape(random &, std::string_view name);

// From row to row of that many bytes, of any sign: rows that overlap, with and without gaps.
int draw_irregular_pitch(random &, int row_bytes);

// Mostly one that exists.
unsigned draw_rgb16_layout(random &);

// The sizes of a mix's record.
struct mix_shape {
    int width, height, video_pitch, sub_pitch, dst_pitch;

    void fill(tagMIX_INFO &mix) const {
        mix.width = width;
        mix.height = height;
        mix.video_pitch = video_pitch;
        mix.sub_pitch = sub_pitch;
        mix.dst_pitch = dst_pitch;
    }

    void tell(drawn_call &drawn) const {
        drawn.tell("width", width);
        drawn.tell("height", height);
        drawn.tell("video_pitch", video_pitch);
        drawn.tell("sub_pitch", sub_pitch);
        drawn.tell("dst_pitch", dst_pitch);
    }
};

// A record that has no more than the layout.
spot add_rgb16_info(drawn_call &, unsigned rgb16_layout);

// A colour key; mostly one that a surface without a fourth byte can hold.
unsigned draw_key(random &);

// Of the first byte of a plane: 0 in half of the cases.
int draw_offset(random &);

// Gains and offsets: neutral, moderate and hostile.
contrast_data draw_contrast(random &);

} // namespace differential
