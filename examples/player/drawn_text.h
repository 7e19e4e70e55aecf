// Text that libass draws over the video.
#pragma once

#include <ass/ass.h>

#include <memory>

namespace player {

class canvas;

class drawn_text {
public:
    // Throws failure if libass does not start.
    drawn_text();

    // Renders what is to be seen at so many seconds over a picture of this size. False if that is
    // what it rendered the last time.
    bool render(double seconds, int width, int height);

    // Lays what was rendered over what is on the canvas, which is as large or larger.
    void lay(canvas &onto) const;

protected:
    ASS_Track *lines() { return track.get(); }

private:
    struct releaser {
        void operator()(ASS_Library *owned) const { ass_library_done(owned); }
        void operator()(ASS_Renderer *owned) const { ass_renderer_done(owned); }
        void operator()(ASS_Track *owned) const { ass_free_track(owned); }
    };
    template <class Type>
    using owner = std::unique_ptr<Type, releaser>;

    owner<ASS_Library> library;
    owner<ASS_Renderer> renderer;
    owner<ASS_Track> track;
    const ASS_Image *rendered = nullptr;
};

} // namespace player
