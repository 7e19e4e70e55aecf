#include "examples/player/menu.h"

#include <climits>

namespace player {

menu::menu() {
    // Upper right, in a translucent box.
    std::string header = R"([Script Info]
ScriptType: v4.00+
PlayResX: 640
PlayResY: 360

[V4+ Styles]
Format: Name, Fontname, Fontsize, PrimaryColour, SecondaryColour, OutlineColour, BackColour, Bold, Italic, Underline, StrikeOut, ScaleX, ScaleY, Spacing, Angle, BorderStyle, Outline, Shadow, Alignment, MarginL, MarginR, MarginV, Encoding
Style: Menu,sans-serif,16,&H00FFFFFF,&H00FFFFFF,&H50402010,&H00000000,0,0,0,0,100,100,0,0,3,6,0,9,20,20,20,1

[Events]
Format: Layer, Start, End, Style, Name, MarginL, MarginR, MarginV, Effect, Text
)";
    ass_process_codec_private(lines(), header.data(), static_cast<int>(header.size()));
    ass_set_check_readorder(lines(), 0); // every new text has the number of the one before
}

void menu::say(const std::vector<std::string> &of) {
    std::string text;
    for (const std::string &line : of)
        text += (text.empty() ? "" : "\\N") + line;
    if (text == said)
        return;
    said = text;
    ass_flush_events(lines());
    if (text.empty())
        return;
    std::string event = "0,0,Menu,,0,0,0,," + text;
    ass_process_chunk(lines(), event.data(), static_cast<int>(event.size()), 0, INT_MAX);
}

} // namespace player
