// A still that shows what the ways of doubling rows make of one field.
#pragma once

#include <filesystem>
#include <vector>

namespace player {

// A part of the picture, with the rows of one field twice.
struct doubled_field {
    const char *label;
    std::vector<unsigned char> rgb; // rows of R, G, B bytes without gaps
};

inline constexpr int compared_width = 68;  // pixels
inline constexpr int compared_height = 90; // rows

// The part of the picture as it was, before a field was taken of it, and then all ways: line
// doubling, averaging, four-tap and edge-directed.
std::vector<doubled_field> compare_stretches();

// The ways side by side, enlarged. Throws failure.
void write_comparison(const std::filesystem::path &file);

} // namespace player
