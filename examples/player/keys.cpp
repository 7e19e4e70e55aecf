#include "examples/player/keys.h"

#include <algorithm>

namespace player {
namespace {

struct key_meaning {
    SDL_Keycode key;
    command meaning;
    const char *help;
};

constexpr key_meaning keys[] = {
    {SDLK_UP, command::brighter, "Up           brighter"},
    {SDLK_DOWN, command::darker, "Down         darker"},
    {SDLK_RIGHT, command::more_contrast, "Right        more contrast"},
    {SDLK_LEFT, command::less_contrast, "Left         less contrast"},
    {SDLK_PAGEUP, command::more_saturation, "Page Up      more saturation"},
    {SDLK_PAGEDOWN, command::less_saturation, "Page Down    less saturation"},
    {SDLK_HOME, command::plain_picture, "Home         the picture as it is"},
    {SDLK_s, command::next_surface, "S            the next surface"},
    {SDLK_t, command::next_stretch, "T            the next stretch that the surface has"},
    {SDLK_k, command::next_target, "K            the row kernels of the next target"},
    {SDLK_m, command::menu, "M            open or close the menu"},
    {SDLK_SPACE, command::pause, "Space        pause, play on"},
    {SDLK_ESCAPE, command::quit, "Escape       quit"},
};

} // namespace

std::optional<command> command_of(SDL_Keycode key) {
    const auto found = std::ranges::find(keys, key, &key_meaning::key);
    if (found == std::end(keys))
        return std::nullopt;
    return found->meaning;
}

std::string describe_keys() {
    std::string text = "Keys:";
    for (const key_meaning &key : keys)
        text += std::string("\n  ") + key.help;
    return text;
}

} // namespace player
