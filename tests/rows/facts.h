// What rows.inc says in words about each kernel.
#pragma once

#include <cstddef>
#include <string_view>

namespace row_tests {

struct kernel_facts {
    std::string_view name;
    int granularity;       // n is a multiple of it
    int longest_group;     // the greatest n that every target handles as one group; 0: no order
    int source_bytes;      // of the first source, per n
    int destination_bytes; // per n
    bool gaps = false;     // of row pairs, whose lower row keeps the first 8 of every 32 bytes
    bool mono = false;     // chroma is not read
    bool between = false;  // chroma may be averaged with that of another row
};

inline constexpr kernel_facts all_facts[] = {
    {"emit_rgb32", 16, 16, 1, 4, false, false, true},
    {"emit_rgb24", 16, 16, 1, 3, false, false, true},
    {"emit_rgb16_565", 16, 16, 1, 2, false, false, true},
    {"emit_rgb16_555", 16, 16, 1, 2, false, false, true},
    {"emit_rgb16_664", 16, 16, 1, 2, false, false, true},
    {"emit_rgb16_655", 16, 16, 1, 2, false, false, true},
    {"emit_yuy2", 8, 16, 1, 2, false, false, true},
    {"emit_mono_yuy2", 8, 16, 1, 2, false, true},
    {"emit_yuy2_with_gaps", 16, 16, 1, 2, true},
    {"emit_half_yuy2", 16, 16, 1, 1},
    {"emit_odd_yuy2", 16, 16, 1, 1},
    {"emit_packed_rgb32", 16, 16, 2, 4},
    {"emit_packed_rgb24", 16, 16, 2, 3},
    {"emit_packed_rgb16_565", 16, 16, 2, 2},
    {"emit_packed_rgb16_555", 16, 16, 2, 2},
    {"emit_packed_rgb16_664", 16, 16, 2, 2},
    {"emit_packed_rgb16_655", 16, 16, 2, 2},
    {"emit_packed_yuy2", 8, 8, 2, 2},
    {"emit_plane", 8, 16, 1, 1},
    {"emit_half_plane", 8, 16, 2, 1},
    {"interleave_chroma", 16, 16, 0, 1},
    {"unpack_yuy2", 16, 16, 2, 1},
    {"average_rows", 8, 16, 1, 1},
    {"four_taps", 8, 16, 1, 1},
    {"along_edges", 8, 0, 1, 1},
    {"stretch_plane", 8, 16, 1, 1},
    {"double_plane", 8, 16, 1, 2},
    {"emit_yuy2_of_double_height", 16, 16, 1, 2},
    {"emit_doubled_yuy2", 16, 16, 1, 4},
    {"restore_alpha_rgb32", 8, 16, 4, 1},
    {"restore_alpha_rgb24", 8, 16, 3, 1},
    {"restore_alpha_rgb16", 16, 16, 2, 1},
    {"load_alpha_rgb32", 16, 16, 1, 4},
    {"load_alpha_rgb24", 16, 16, 1, 3},
    {"load_alpha_rgb16", 16, 16, 1, 2},
    {"emit_keyed_rgb32", 16, 16, 1, 4},
    {"emit_keyed_rgb24", 16, 16, 1, 3},
    {"emit_keyed_rgb16_565", 16, 16, 1, 2},
    {"convert_rgb32", 8, 8, 4, 1},
    {"convert_rgb24", 8, 8, 3, 1},
    {"convert_rgb16_565", 8, 8, 2, 1},
    {"fill", 16, 16, 0, 1},
    {"replace_marker", 16, 16, 1, 1},
    {"mix_pairs", 16, 0, 1, 4},
    {"mix_pairs_by_averages", 16, 0, 1, 4},
    {"mix_pairs_to_yuy2", 16, 0, 1, 2},
    {"mix_pairs_to_odd_yuy2", 16, 0, 1, 1},
    {"blend_plane", 8, 16, 1, 1},
    {"blend_chroma_planes", 16, 32, 1, 1},
    {"finish_stores", 8, 8, 0, 0},
};

// A kernel without a line does not compile.
consteval kernel_facts facts_of(std::string_view name) {
    for (const kernel_facts &facts : all_facts)
        if (facts.name == name)
            return facts;
    throw "tests/rows/facts.h needs a line for the kernel";
}

} // namespace row_tests
