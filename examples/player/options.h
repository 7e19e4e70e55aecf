// The command line.
#pragma once

#include "examples/player/adjustment.h"

#include <optional>
#include <string>

namespace player {

struct stretching;
struct surface_format;

struct options {
    std::string file;
    bool repeat = false;
    bool packed = false;
    bool interlaced = false;
    bool field = false; // the first of each frame, alone
    bool menu = false;
    std::optional<long> frames; // none: all
    const surface_format *surface = nullptr;
    const stretching *stretch = nullptr; // null: none
    std::string target;                  // empty: the widest that the processor runs
    adjustment picture;
    std::string png_directory;  // empty: show a window
    std::string subtitles;      // empty: none
    std::string comparison;     // of stretches, instead of a video; empty: none
    std::string dump_directory; // of subpictures; empty: none
};

// Nothing if help was asked for and has been printed. Throws failure if the arguments are wrong.
std::optional<options> parse(int argc, char **argv);

} // namespace player
