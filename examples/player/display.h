// The window.
#pragma once

#include "examples/player/failure.h"
#include "examples/player/keys.h"

#include <SDL.h>
#include <chrono>
#include <memory>
#include <string>

namespace player {

class surface;

struct no_display : failure {
    using failure::failure;
};

class display {
public:
    // Throws no_display if a window cannot be opened.
    display(int width, int height);

    // Throws failure.
    void show(const surface &from);
    void set_title(const std::string &title);

    // Waits for the user; nothing if he does nothing for so long.
    std::optional<command> wait(std::chrono::milliseconds most);

private:
    void fit_texture(Uint32 format, int width, int height);
    void draw() const;

    struct releaser {
        void operator()(SDL_Window *owned) const { SDL_DestroyWindow(owned); }
        void operator()(SDL_Renderer *owned) const { SDL_DestroyRenderer(owned); }
        void operator()(SDL_Texture *owned) const { SDL_DestroyTexture(owned); }
    };
    template <class Type>
    using handle = std::unique_ptr<Type, releaser>;

    struct video_system {
        video_system();
        ~video_system() { SDL_Quit(); }
        video_system(const video_system &) = delete;
        video_system &operator=(const video_system &) = delete;
    };

    video_system system;
    handle<SDL_Window> window;
    handle<SDL_Renderer> renderer;
    handle<SDL_Texture> texture;
    SDL_Rect visible{}; // of the texture
    int shown_width = 0;
};

} // namespace player
