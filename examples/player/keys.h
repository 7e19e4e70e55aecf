// What the keys do.
#pragma once

#include <SDL_keycode.h>
#include <optional>
#include <string>

namespace player {

enum class command {
    brighter,
    darker,
    more_contrast,
    less_contrast,
    more_saturation,
    less_saturation,
    plain_picture,
    next_surface,
    next_stretch,
    next_target,
    menu,
    pause,
    quit,
};

// Nothing if the key does nothing.
std::optional<command> command_of(SDL_Keycode key);

// A line per key, for the help.
std::string describe_keys();

} // namespace player
