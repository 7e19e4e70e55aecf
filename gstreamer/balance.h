// What brightness, contrast and saturation are as gains and offsets.
#ifndef LUMALANE_GSTREAMER_BALANCE_H
#define LUMALANE_GSTREAMER_BALANCE_H

#include <lumalane/adjust.h>

namespace lumalane_gst {

/// One number of a picture's balance: what it is where it changes nothing, and its range.
struct balance_range {
    const char *property;
    const char *channel;
    double least, neutral, most;
};

inline constexpr balance_range balance_ranges[] = {
    {"contrast", "CONTRAST", 0, 1, 2},
    {"brightness", "BRIGHTNESS", -1, 0, 1},
    {"saturation", "SATURATION", 0, 1, 2},
};
enum { contrast, brightness, saturation, balance_count };

/// The values of those.
struct balance {
    double values[balance_count] = {balance_ranges[contrast].neutral,
                                    balance_ranges[brightness].neutral,
                                    balance_ranges[saturation].neutral};
};

/// Meant is, as in videobalance,
///
///     Y' = 16 + contrast * (Y - 16) + brightness * 255
///     U' = 128 + saturation * (U - 128), and V' alike,
///
/// rounded and clamped to bytes. The library has gains in 1/64 and whole offsets: contrast and
/// saturation become the nearest 1/64. The offsets belong to the gains as they then are, so that
/// black stays 16 and grey 128.
constexpr lumalane::adjustment adjustment_of(const balance &b) {
    const auto rounded = [](double x) { return static_cast<int>(x < 0 ? x - 0.5 : x + 0.5); };
    lumalane::adjustment a;
    a.y_gain = rounded(64 * b.values[contrast]);
    a.uv_gain = rounded(64 * b.values[saturation]);
    a.y_offset = 16 - (16 * a.y_gain + 32) / 64 + rounded(255 * b.values[brightness]);
    a.u_offset = a.v_offset = 128 - 2 * a.uv_gain;
    return a;
}

constexpr bool changes_nothing(const lumalane::adjustment &a) {
    return a.y_gain == 64 && a.uv_gain == 64 && a.y_offset == 0 && a.u_offset == 0 &&
           a.v_offset == 0;
}

} // namespace lumalane_gst

#endif
