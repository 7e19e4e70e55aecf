#include "examples/player/playback.h"

#include <algorithm>
#include <cstdio>

namespace player {

using namespace std::chrono_literals;

void playback::show_title() { window.set_title("Lumalane: " + rates + running.describe()); }

void playback::refresh_rates() {
    if (running.recent.age() < 500ms)
        return;
    char text[80];
    std::snprintf(text, sizeof text, "%.1f fps, %.1f µs a frame, ",
                  running.recent.frames_per_second(), running.recent.microseconds_in_library());
    rates = text;
    running.recent = {};
    show_title();
}

// Obeys the user until it is time for the next frame.
bool playback::listen(clock::time_point until) {
    for (;;) {
        const clock::duration left =
            running.is_paused() ? 1s : std::max(until - clock::now(), clock::duration{});
        const auto wish = window.wait(std::chrono::ceil<std::chrono::milliseconds>(left));
        if (!wish) {
            if (!running.is_paused() && clock::now() >= until)
                return true;
            continue;
        }
        if (wish == command::quit)
            return false;
        running.obey(*wish);
        running.reload();
        window.show(running.loaded());
        show_title();
    }
}

void playback::run() {
    show_title();
    double shown_at = 0;
    auto due = clock::now();
    while (running.advance()) {
        // Jumps in the video's time (a repetition, a broken stamp) become a second's rest at most.
        const std::chrono::duration<double> step(std::clamp(running.time() - shown_at, 0.0, 1.0));
        shown_at = running.time();
        due += std::chrono::duration_cast<clock::duration>(step);
        // Too late to catch up, or the user paused: go on from here.
        if (due < clock::now() - 100ms)
            due = clock::now();
        if (!listen(due))
            return;
        window.show(running.loaded());
        refresh_rates();
    }
}

} // namespace player
