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

// Obeys the user until the next frame is due.
bool playback::listen() {
    clock::time_point paused_at;
    for (;;) {
        const clock::duration left =
            running.is_paused() ? 1s : std::max(due - clock::now(), clock::duration{});
        const auto wish = window.wait(std::chrono::ceil<std::chrono::milliseconds>(left));
        if (!wish) {
            if (!running.is_paused() && clock::now() >= due)
                return true;
            continue;
        }
        if (wish == command::quit)
            return false;
        running.obey(*wish);
        if (wish == command::pause && running.is_paused())
            paused_at = clock::now();
        else if (wish == command::pause)
            due += clock::now() - paused_at; // what was left of the rest still is
        running.reload();
        window.show(running.loaded());
        show_title();
    }
}

// Jumps in the video's time (a broken stamp) become a second's rest at most.
bool playback::rest(double seconds) {
    const std::chrono::duration<double> step(std::clamp(seconds, 0.0, 1.0));
    due += std::chrono::duration_cast<clock::duration>(step);
    // Too late to catch up: go on from here.
    if (due < clock::now() - 100ms)
        due = clock::now();
    return listen();
}

void playback::run() {
    if (!running.advance())
        return;
    window.show(running.loaded());
    show_title();
    due = clock::now();
    while (running.decode_next()) {
        // Where time does not go on (a repetition, a broken stamp), the last picture has its own.
        const double step = running.next_time() - running.time();
        if (!rest(step > 0 ? step : running.duration()))
            return;
        running.load_next();
        window.show(running.loaded());
        refresh_rates();
    }
    rest(running.duration());
}

} // namespace player
