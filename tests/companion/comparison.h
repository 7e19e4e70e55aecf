// One picture made of another, compared with what is expected.
#pragma once

#include "tests/companion/expected.h"

#include <gtest/gtest.h>

#include <sstream>

namespace companion {

constexpr lumalane::adjustment some{75, 90, -7, 12, -20};
inline const optional_adjustment adjustments[] = {std::nullopt, some};

// `made` has the pixels that are expected, and nothing between its rows was touched; `describe(text)`
// tells of what, when not.
template <class Describe>
void expect_made(const lumalane::picture &made, const rows_of_pixels &expected,
                 const Describe &describe) {
    const auto description = [&] {
        std::ostringstream text;
        describe(text);
        return text.str();
    };
    ASSERT_TRUE(load(made) == expected) << description();
    ASSERT_TRUE(gaps_are_untouched(made)) << description();
}

class comparison {
protected:
    std::minstd_rand random{1};

    // `make(source, destination)` is the call.
    template <class Make>
    void compare(const rows_of_pixels &pixels, const rows_of_pixels &expected,
                 const optional_adjustment &by, placement source_at, placement destination_at,
                 const Make &make) {
        const lumalane::picture source =
            source_memory.lay_out(pixels.format, pixels.width, pixels.height, source_at);
        store(pixels, source);
        const lumalane::picture destination = destination_memory.lay_out(
            expected.format, expected.width, expected.height, destination_at);
        const lumalane::status status = make(source, destination);
        ASSERT_TRUE(status) << message_of(status.code);
        expect_made(destination, expected, [&](std::ostream &text) {
            text << pixels.width << "x" << pixels.height << (by ? " adjusted" : "") << ", source "
                 << source_at << ", destination " << destination_at;
        });
    }

    guarded_planes source_memory, destination_memory;
};

} // namespace companion
