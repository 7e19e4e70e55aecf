#include "examples/player/session.h"

#include "examples/player/lanes.h"

#include <algorithm>
#include <cstdio>

namespace player {

void meter::count(std::chrono::nanoseconds library_time) {
    ++counted;
    library += library_time;
}

double meter::library_microseconds() const {
    if (counted == 0)
        return 0;
    return std::chrono::duration<double, std::micro>(library).count() /
           static_cast<double>(counted);
}

session::session(const options &start_with) : chosen(start_with), input(chosen.file) {
    if (!chosen.lanes.empty())
        choose_lane_set(chosen.lanes);
    chosen.picture.apply();
}

std::chrono::nanoseconds session::load() { return target.load(current, *chosen.surface); }

void session::stop_after(long frames) {
    chosen.frames = std::min(chosen.frames.value_or(frames), frames);
}

bool session::advance() {
    if (chosen.frames && whole.frames() >= *chosen.frames)
        return false;
    if (!input.next(current)) {
        if (!chosen.repeat)
            return false;
        input = decoder(chosen.file);
        input.next(current);
    }
    const auto took = load();
    whole.count(took);
    recent.count(took);
    return true;
}

void session::reload() { load(); }

void session::obey(command wish) {
    constexpr int step = 5;
    adjustment &picture = chosen.picture;
    const auto change = [](int &value, int by, control_range range) {
        value = range.clamp(value + by);
    };
    switch (wish) {
    case command::brighter:
        change(picture.brightness, step, brightness_range);
        break;
    case command::darker:
        change(picture.brightness, -step, brightness_range);
        break;
    case command::more_contrast:
        change(picture.contrast, step, gain_range);
        break;
    case command::less_contrast:
        change(picture.contrast, -step, gain_range);
        break;
    case command::more_saturation:
        change(picture.saturation, step, gain_range);
        break;
    case command::less_saturation:
        change(picture.saturation, -step, gain_range);
        break;
    case command::plain_picture:
        picture = {};
        break;
    case command::next_surface:
        chosen.surface = &next_surface_format(*chosen.surface);
        break;
    case command::next_lanes:
        choose_next_lane_set();
        break;
    case command::pause:
    case command::quit:
        break;
    }
    picture.apply();
}

std::string session::describe() const {
    std::string text = std::string(chosen.surface->name) + ", " + lane_set_name();
    const adjustment plain;
    const auto add = [&text](const char *control, int value, int plain_value, const char *unit) {
        if (value != plain_value)
            text += std::string(", ") + control + " " + std::to_string(value) + unit;
    };
    add("brightness", chosen.picture.brightness, plain.brightness, "");
    add("contrast", chosen.picture.contrast, plain.contrast, " %");
    add("saturation", chosen.picture.saturation, plain.saturation, " %");
    return text;
}

std::string session::summary() const {
    char text[160];
    std::snprintf(text, sizeof text,
                  "%ld frames of %dx%d to %s: %.1f µs a frame in the library (%s)", whole.frames(),
                  target.width(), target.height(), chosen.surface->name,
                  whole.library_microseconds(), lane_set_name());
    return text;
}

} // namespace player
