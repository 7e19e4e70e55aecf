// The player's command line, an argument per line of the fuzzer's bytes: what is accepted can be played.
#include "tests/fuzz/fuzz.h"

#include <string>
#include <vector>

#include "examples/player/failure.h"
#include "examples/player/options.h"
#include "examples/player/surface.h"
#include "examples/player/target.h"

namespace {

using namespace player;

std::vector<std::string> lines_of(const std::uint8_t *data, std::size_t size) {
    std::vector<std::string> lines(1);
    for (std::size_t i = 0; i < size; ++i) {
        if (data[i] == '\n')
            lines.emplace_back();
        else if (data[i] != 0) // which no argument has
            lines.back() += static_cast<char>(data[i]);
    }
    return lines;
}

void expect_within(int value, control_range range) {
    fuzz::expect(range.least <= value && value <= range.most, "a control is within its range");
}

void check(const options &chosen) {
    fuzz::expect(chosen.surface && chosen.stretch, "there are a surface and a stretch");
    fuzz::expect(chosen.surface->loader(*chosen.stretch, false), "the surface has the stretch");
    fuzz::expect(!chosen.field || chosen.stretch->fits_fields(), "a field fills a frame");
    fuzz::expect(!chosen.frames || *chosen.frames > 0, "there is a frame to show");
    expect_within(chosen.picture.brightness, brightness_range);
    expect_within(chosen.picture.contrast, gain_range);
    expect_within(chosen.picture.saturation, gain_range);
    if (!chosen.target.empty())
        choose_target(chosen.target);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    std::vector<std::string> arguments = lines_of(data, size);
    std::vector<char *> pointers{const_cast<char *>("lumalane-player")};
    fuzz::doing = "lumalane-player";
    for (std::string &argument : arguments) {
        pointers.push_back(argument.data());
        fuzz::doing += " '" + argument + "'";
    }
    pointers.push_back(nullptr);
    try {
        if (const auto chosen = parse(static_cast<int>(pointers.size()) - 1, pointers.data()))
            check(*chosen);
    } catch (const failure &wrong) {
        fuzz::expect(wrong.what()[0] != 0, "what is wrong is told");
    }
    return 0;
}
