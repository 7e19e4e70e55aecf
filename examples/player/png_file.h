// Pictures as PNG files.
#pragma once

#include <filesystem>
#include <vector>

namespace player {

// Makes the directory unless it is there. Throws failure.
void make_directory(const std::filesystem::path &directory);

// `rgb` has R, G and B bytes without gaps. Throws failure.
void write_png(const std::filesystem::path &file, int width, int height,
               const std::vector<unsigned char> &rgb);

} // namespace player
