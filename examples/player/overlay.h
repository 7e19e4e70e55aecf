// What lies over the video: subtitles and the menu, kept as a subpicture of the video's size.
#pragma once

#include "examples/player/canvas.h"
#include "examples/player/menu.h"
#include "examples/player/subpicture.h"
#include "examples/player/subtitles.h"

#include <filesystem>
#include <optional>
#include <string>

namespace player {

class picture;

class overlay {
public:
    // Without a file there are no subtitles. With a directory, every subpicture is written into it
    // as PNG files: drawn onto the key, its alpha, and painted back. Throws failure, as does
    // update().
    overlay(const std::string &subtitle_file, const std::filesystem::path &dump_directory);

    // What the menu says from the next update() on; without lines there is none.
    void say(const std::vector<std::string> &lines) { settings.say(lines); }

    // Brings the subpicture to so many seconds of the video, if it changes then.
    void update(double seconds, const picture &below);

    // The subpicture after update(), and whether there is nothing on it.
    subpicture &shown() { return *prepared; }
    bool is_empty() const { return empty; }

private:
    void dump();

    std::optional<subtitles> text;
    menu settings;
    std::filesystem::path dump_directory;
    std::optional<canvas> drawing;
    std::optional<subpicture> prepared;
    bool empty = true;
    int dumped = 0;
};

} // namespace player
