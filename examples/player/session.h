// One run of the player: a video, the picture in hand, and how it is loaded.
#pragma once

#include "examples/player/decoder.h"
#include "examples/player/keys.h"
#include "examples/player/options.h"
#include "examples/player/overlay.h"
#include "examples/player/picture.h"
#include "examples/player/surface.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace player {

// Counts frames and the time that the library took for them.
class meter {
public:
    using clock = std::chrono::steady_clock;

    void count(std::chrono::nanoseconds library_time);

    long frames() const { return counted; }
    std::chrono::duration<double> age() const { return clock::now() - start; }
    double frames_per_second() const { return static_cast<double>(counted) / age().count(); }
    double microseconds_in_library() const; // per frame

private:
    clock::time_point start = clock::now();
    std::chrono::nanoseconds library{};
    long counted = 0;
};

class session {
public:
    // Throws failure, as the functions of decoder do.
    explicit session(const options &start_with);

    // Shows so many frames at most.
    void stop_after(long frames);

    // Has the next frame in hand; false when there are no more to show.
    bool advance();

    // The same in two steps, between which the frame in hand is still the one before.
    bool decode_next();
    void load_next();

    // Loads the frame in hand again, for a change to be seen while it stands still.
    void reload();

    // Changes how pictures are loaded; `quit` changes nothing here.
    void obey(command wish);

    bool is_paused() const { return paused; }

    // When the frame in hand is to be shown, and that of decode_next(), in seconds from the start of
    // the video.
    double time() const;
    double next_time() const;

    // For how long the frame in hand is to be shown, in seconds.
    double duration() const;

    const decoder &video() const { return input; }
    const surface &loaded() const { return target; }

    // Surface, target and what is adjusted, in words.
    std::string describe() const;
    std::string summary() const;

    meter recent; // restarted by whoever shows it

private:
    bool can_stretch(const stretching &by) const;
    const stretching &stretch() const;
    bool is_stretched() const;
    bool shows_fields() const;
    void choose_next_stretch();
    std::string destination() const; // surface and stretch, in words
    bool decode();
    std::vector<std::string> menu_lines() const;
    std::chrono::nanoseconds load();

    options chosen;
    decoder input;
    decoded_picture in_hand, coming;
    picture current; // the one in hand, as the library reads it
    std::optional<overlay> over;
    bool paused = false;
    bool second_field_due = false; // of the picture in hand
    surface target;
    meter whole;
};

} // namespace player
