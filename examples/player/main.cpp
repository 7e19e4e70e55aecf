// lumalane-player: plays a video through the library, in a window or into PNG files.

#include "examples/player/comparison.h"
#include "examples/player/display.h"
#include "examples/player/failure.h"
#include "examples/player/options.h"
#include "examples/player/playback.h"
#include "examples/player/png_file.h"
#include "examples/player/session.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>

namespace {

using namespace player;
namespace fs = std::filesystem;

// Where there is no display and --frames does not tell: enough to see that it works, little enough not
// to fill a disk.
constexpr const char *fallback_directory = "lumalane-frames";
constexpr long fallback_frames = 60;

void write_frames(session &running, const fs::path &directory) {
    make_directory(directory);
    for (int number = 1; running.advance(); ++number) {
        char name[32];
        std::snprintf(name, sizeof name, "frame-%05d.png", number);
        const surface &shown = running.loaded();
        write_png(directory / name, shown.width(), shown.height(), shown.expand());
    }
}

void run(const options &chosen) {
    if (!chosen.comparison.empty()) {
        write_comparison(chosen.comparison);
        return;
    }
    // The video first: what is wrong with it is told before anything about the display.
    session running(chosen);
    if (!chosen.png_directory.empty()) {
        write_frames(running, chosen.png_directory);
    } else {
        try {
            display window(running.video().shown_width(), running.video().height());
            playback(running, window).run();
        } catch (const no_display &reason) {
            const long most = chosen.frames.value_or(fallback_frames);
            running.stop_after(most);
            std::cerr << "no display (" << reason.what() << "): writing up to " << most
                      << " frames as PNG files to " << fs::absolute(fallback_directory).string()
                      << '\n';
            write_frames(running, fallback_directory);
        }
    }
    std::cout << running.summary() << '\n';
}

} // namespace

int main(int argc, char **argv) {
    try {
        if (const auto chosen = parse(argc, argv))
            run(*chosen);
        return EXIT_SUCCESS;
    } catch (const std::exception &wrong) {
        std::cerr << "lumalane-player: " << wrong.what() << '\n';
        return EXIT_FAILURE;
    }
}
