#include "examples/player/drawn_text.h"

#include "examples/player/canvas.h"
#include "examples/player/failure.h"

#include <cmath>
#include <cstdarg>

namespace player {
namespace {

ASS_Library *start_quietly() {
    ASS_Library *library = ass_library_init();
    if (library)
        ass_set_message_cb(
            library, [](int, const char *, va_list, void *) {}, nullptr);
    return library;
}

// libass has red in the highest byte and how transparent it is in the lowest.
canvas::pixel colour_of(const ASS_Image &image) {
    const auto byte = [&image](int number) {
        return static_cast<unsigned char>(image.color >> 8 * number);
    };
    return {byte(3), byte(2), byte(1), static_cast<unsigned char>(255 - byte(0))};
}

} // namespace

drawn_text::drawn_text()
    : library(start_quietly()), renderer(ass_renderer_init(library.get())),
      track(ass_new_track(library.get())) {
    if (!renderer || !track)
        throw failure("cannot start libass");
    ass_set_fonts(renderer.get(), nullptr, "sans-serif", ASS_FONTPROVIDER_AUTODETECT, nullptr, 1);
}

bool drawn_text::render(double seconds, int width, int height) {
    ass_set_frame_size(renderer.get(), width, height);
    ass_set_storage_size(renderer.get(), width, height);
    int change = 0;
    rendered = ass_render_frame(renderer.get(), track.get(), std::llround(seconds * 1000), &change);
    return change != 0;
}

void drawn_text::lay(canvas &onto) const {
    for (const ASS_Image *image = rendered; image; image = image->next)
        onto.lay({image->bitmap, image->stride, image->dst_x, image->dst_y, image->w, image->h},
                 colour_of(*image));
}

} // namespace player
