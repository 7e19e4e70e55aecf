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
    double shown_at = 0, shown_for = 0;
    auto due = clock::now();
    // Jumps in the video's time (a broken stamp) become a second's rest at most.
    const auto rest = [&](double seconds) {
        const std::chrono::duration<double> step(std::clamp(seconds, 0.0, 1.0));
        due += std::chrono::duration_cast<clock::duration>(step);
        // Too late to catch up, or the user paused: go on from here.
        if (due < clock::now() - 100ms)
            due = clock::now();
        return listen(due);
    };
    while (running.advance()) {
        // Where time does not go on (a repetition, a broken stamp), the last picture has its own.
        const double step = running.time() - shown_at, of_last = shown_for;
        shown_at = running.time();
        shown_for = running.duration();
        if (!rest(step > 0 ? step : of_last))
            return;
        window.show(running.loaded());
        refresh_rates();
    }
    rest(shown_for);
}

} // namespace player
