// Subtitle files: SRT, ASS and what else of text libavcodec reads.
#pragma once

#include "examples/player/drawn_text.h"

#include <string>

namespace player {

class subtitles : public drawn_text {
public:
    // Throws failure, with one line that names the file.
    explicit subtitles(const std::string &file);
};

} // namespace player
