#include "examples/player/display.h"

#include "examples/player/surface.h"

#include <cstdlib>

namespace player {
namespace {

void check(bool fine) {
    if (!fine)
        throw failure(std::string("cannot draw: ") + SDL_GetError());
}

} // namespace

display::video_system::video_system() {
    // Left to itself SDL ends up with a driver that shows nothing and calls it success; these do
    // show. Wayland needs a directory for its socket and complains on standard error without one.
    // SDL_VIDEODRIVER in the environment has the last word.
    SDL_SetHintWithPriority(SDL_HINT_VIDEODRIVER,
                            std::getenv("XDG_RUNTIME_DIR") ? "wayland,x11,KMSDRM" : "x11,KMSDRM",
                            SDL_HINT_DEFAULT);
    if (SDL_Init(SDL_INIT_VIDEO) != 0)
        throw no_display(SDL_GetError());
}

display::display(int width, int height)
    : window(SDL_CreateWindow("Lumalane", SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED, width,
                              height, SDL_WINDOW_RESIZABLE)) {
    if (!window)
        throw no_display(SDL_GetError());
    renderer.reset(SDL_CreateRenderer(window.get(), -1, 0));
    if (!renderer)
        throw no_display(SDL_GetError());
    SDL_SetHint(SDL_HINT_RENDER_SCALE_QUALITY, "linear");
    SDL_SetYUVConversionMode(SDL_YUV_CONVERSION_BT601);
}

void display::fit_texture(Uint32 format, int width, int height) {
    if (texture) {
        Uint32 present_format;
        int present_width, present_height;
        SDL_QueryTexture(texture.get(), &present_format, nullptr, &present_width, &present_height);
        if (present_format == format && present_width == width && present_height == height)
            return;
    }
    texture.reset(
        SDL_CreateTexture(renderer.get(), format, SDL_TEXTUREACCESS_STREAMING, width, height));
    check(texture != nullptr);
}

void display::show(const surface &from) {
    visible = {0, 0, from.width(), from.height()};
    shown_width = from.shown_width();
    if (from.format().sdl_format == SDL_PIXELFORMAT_UNKNOWN) {
        fit_texture(SDL_PIXELFORMAT_RGB24, from.width(), from.height());
        check(SDL_UpdateTexture(texture.get(), nullptr, from.expand().data(), from.width() * 3) ==
              0);
    } else {
        fit_texture(from.format().sdl_format, from.surface_width(), from.surface_height());
        check(SDL_UpdateTexture(texture.get(), nullptr, from.bytes().data(), from.pitch()) == 0);
    }
    draw();
}

void display::draw() const {
    // The picture keeps its shape when the window is resized.
    check(SDL_RenderSetLogicalSize(renderer.get(), shown_width, visible.h) == 0);
    check(SDL_RenderClear(renderer.get()) == 0);
    check(SDL_RenderCopy(renderer.get(), texture.get(), &visible, nullptr) == 0);
    SDL_RenderPresent(renderer.get());
}

void display::set_title(const std::string &title) {
    SDL_SetWindowTitle(window.get(), title.c_str());
}

std::optional<command> display::wait(std::chrono::milliseconds most) {
    SDL_Event event;
    for (int seen = SDL_WaitEventTimeout(&event, static_cast<int>(most.count())); seen;
         seen = SDL_PollEvent(&event)) {
        if (event.type == SDL_QUIT)
            return command::quit;
        if (event.type == SDL_KEYDOWN)
            if (const auto wish = command_of(event.key.keysym.sym))
                return wish;
        if (event.type == SDL_WINDOWEVENT && event.window.event == SDL_WINDOWEVENT_EXPOSED &&
            texture)
            draw();
    }
    return std::nullopt;
}

} // namespace player
