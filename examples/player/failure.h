// What goes wrong for reasons outside the program: its text is the line that the user reads.
#pragma once

#include <stdexcept>

namespace player {

struct failure : std::runtime_error {
    using runtime_error::runtime_error;
};

} // namespace player
