// Brightness, contrast and saturation, and how the library is told of them.
#pragma once

namespace player {

struct control_range {
    int least, most;
    int clamp(int value) const { return value < least ? least : value > most ? most : value; }
};

inline constexpr control_range brightness_range{-100, 100}; // levels added to Y
inline constexpr control_range gain_range{0, 200};          // percent

struct adjustment {
    int brightness = 0;
    int contrast = 100;
    int saturation = 100;

    // Every later call of an adjusting function works with these values. With one gain the chroma
    // offsets are for functions that have the luma gain for chroma too: saturation then goes with
    // contrast.
    void apply(bool one_gain = false) const;
};

} // namespace player
