// Any file as subtitles: they are drawn over a picture and prepared as a subpicture, or the player says
// in one line what is wrong.
#include "tests/fuzz/fuzz.h"
#include "tests/fuzz/player_file.h"

#include <vector>

#include "examples/player/failure.h"
#include "examples/player/overlay.h"
#include "examples/player/picture.h"
#include "examples/player/surface.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    constexpr int width = 90, height = 50;
    const std::vector<unsigned char> grey(width * height, 128);
    player::picture video;
    const player::plane_view plane{grey.data(), width};
    video.assign(width, height, plane, plane, plane);

    const fuzz::file input(data, size);
    try {
        player::overlay over(input.name(), {});
        for (const double seconds : {0.0, 0.5, 1.0, 2.5, 60.0}) {
            over.update(seconds, video);
            player::surface shown;
            if (!over.is_empty())
                shown.mix(video, over.shown(), player::surface_formats().front());
        }
    } catch (const player::failure &wrong) {
        fuzz::expect(wrong.what()[0] != 0, "what is wrong is told");
    }
    return 0;
}
