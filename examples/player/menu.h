// A small menu: what the keys have set.
#pragma once

#include "examples/player/drawn_text.h"

#include <string>
#include <vector>

namespace player {

class menu : public drawn_text {
public:
    menu();

    // No lines: no menu.
    void say(const std::vector<std::string> &lines);

private:
    std::string said;
};

} // namespace player
