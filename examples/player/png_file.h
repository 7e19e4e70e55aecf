// Pictures as PNG files.
#pragma once

#include <filesystem>

namespace player {

class surface;

// Writes the visible part of the surface. Throws failure.
void write_png(const std::filesystem::path &file, const surface &from);

} // namespace player
