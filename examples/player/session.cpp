#include "examples/player/session.h"

#include "examples/player/target.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace player {

void meter::count(std::chrono::nanoseconds library_time) {
    ++counted;
    library += library_time;
}

double meter::microseconds_in_library() const {
    if (counted == 0)
        return 0;
    return std::chrono::duration<double, std::micro>(library).count() /
           static_cast<double>(counted);
}

session::session(const options &start_with) : chosen(start_with), input(chosen.file) {
    if (!chosen.target.empty())
        choose_target(chosen.target);
    if (!chosen.subtitles.empty() || chosen.interlaced || chosen.menu)
        over.emplace(chosen.subtitles, chosen.dump_directory);
}

double session::time() const {
    const bool second_field = shows_fields() && !second_field_due;
    return in_hand.time + (second_field ? in_hand.duration / 2 : 0);
}

double session::next_time() const {
    return second_field_due ? in_hand.time + in_hand.duration / 2 : coming.time;
}

double session::duration() const { return in_hand.duration / (shows_fields() ? 2 : 1); }

// The chosen surface's functions, of frames or fields.
bool session::can_stretch(const stretching &by) const {
    return chosen.surface->loader(by, false) && (!chosen.field || by.fits_fields());
}

// The chosen one, where it can be.
const stretching &session::stretch() const {
    return chosen.stretch && can_stretch(*chosen.stretch) ? *chosen.stretch : stretchings().front();
}

bool session::is_stretched() const { return &stretch() != &stretchings().front(); }

bool session::shows_fields() const {
    return chosen.interlaced && !is_stretched() && chosen.surface->functions.mix_field;
}

void session::choose_next_stretch() {
    const auto after = stretchings().subspan(&stretch() - stretchings().data() + 1);
    const auto next =
        std::ranges::find_if(after, [this](const stretching &by) { return can_stretch(by); });
    chosen.stretch = next == after.end() ? nullptr : &*next;
}

std::chrono::nanoseconds session::load() {
    const surface_format &format = *chosen.surface;
    chosen.picture.apply(is_stretched() && format.stretch_has_one_gain);
    // What is mixed has planes.
    const bool packed =
        format.loader(stretch(), true) && !over && (chosen.packed || in_hand.is_packed());
    input.get(in_hand, current, packed);
    if (over) {
        over->say(menu_lines());
        over->update(time(), current);
    }
    if (is_stretched())
        return chosen.field ? target.load_field(current, in_hand.first_field(), format, stretch())
                            : target.load(current, format, stretch());
    if (shows_fields()) {
        const int field = second_field_due ? in_hand.first_field() : 1 - in_hand.first_field();
        return target.mix_field(current, field, over->shown(), format);
    }
    if (over && !over->is_empty() && format.functions.mix)
        return target.mix(current, over->shown(), format);
    return target.load(current, format);
}

void session::stop_after(long frames) {
    chosen.frames = std::min(chosen.frames.value_or(frames), frames);
}

bool session::decode() {
    if (input.next(coming))
        return true;
    if (!chosen.repeat)
        return false;
    input = decoder(chosen.file);
    return input.next(coming);
}

bool session::decode_next() {
    if (chosen.frames && whole.frames() >= *chosen.frames)
        return false;
    return second_field_due || decode();
}

void session::load_next() {
    if (second_field_due) {
        second_field_due = false;
    } else {
        std::swap(in_hand, coming);
        second_field_due = shows_fields();
    }
    const auto took = load();
    whole.count(took);
    recent.count(took);
}

bool session::advance() {
    if (!decode_next())
        return false;
    load_next();
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
    case command::next_stretch:
        choose_next_stretch();
        break;
    case command::next_target:
        choose_next_target();
        break;
    case command::menu:
        chosen.menu = !chosen.menu;
        if (!over)
            over.emplace(chosen.subtitles, chosen.dump_directory);
        break;
    case command::pause:
        paused = !paused;
        break;
    case command::quit:
        break;
    }
}

std::vector<std::string> session::menu_lines() const {
    if (!chosen.menu)
        return {};
    const auto number = [](int value) { return std::to_string(value); };
    return {paused ? "Paused" : "Playing",
            "Brightness " + number(chosen.picture.brightness),
            "Contrast " + number(chosen.picture.contrast) + " %",
            "Saturation " + number(chosen.picture.saturation) + " %",
            std::string("Surface ") + chosen.surface->name,
            std::string("Stretch ") + stretch().name,
            std::string("Target ") + target_name()};
}

std::string session::destination() const {
    std::string text = chosen.surface->name;
    if (is_stretched())
        text += std::string(", ") + stretch().name + (chosen.field ? " of a field" : "");
    return text;
}

std::string session::describe() const {
    std::string text = destination() + ", " + target_name();
    if (current.is_packed())
        text += ", packed";
    if (shows_fields())
        text += ", fields";
    if (over && is_stretched())
        text += ", nothing over stretched video";
    else if (over && !chosen.surface->functions.mix)
        text += ", nothing over the video on this surface";
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
    std::snprintf(
        text, sizeof text, "%ld frames of %dx%d%s to %s: %.1f µs a frame in the library (%s)",
        whole.frames(), current.width(), current.height(), current.is_packed() ? ", packed," : "",
        destination().c_str(), whole.microseconds_in_library(), target_name());
    return text;
}

} // namespace player
