// Shows a session in a window, at the video's own pace, and listens to the keys.
#pragma once

#include "examples/player/display.h"
#include "examples/player/session.h"

#include <string>

namespace player {

class playback {
public:
    // Both must outlive it.
    playback(session &what, display &where) : running(what), window(where) {}

    // Returns when the session has no more frames or the user quits.
    void run();

private:
    using clock = meter::clock;

    bool rest(double seconds); // false to quit, as is listen()
    bool listen();
    void show_title();
    void refresh_rates();

    session &running;
    display &window;
    clock::time_point due; // of the next frame
    std::string rates;     // as last measured
};

} // namespace player
