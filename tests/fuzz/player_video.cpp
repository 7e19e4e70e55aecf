// Any file as a video, on any surface: the player shows its frames, or says in one line what is wrong.
// The first bytes choose how it is played.
#include "tests/fuzz/fuzz.h"
#include "tests/fuzz/player_file.h"

#include <string>

#include "examples/player/container.h"
#include "examples/player/failure.h"
#include "examples/player/session.h"
#include "examples/player/target.h"

namespace {

using namespace player;

constexpr std::size_t choice_bytes = 8;
constexpr std::int64_t most_pixels = 1 << 18;

// What compresses little is decoded by little code of others, whose own faults are not looked for here:
// libavcodec 59 stops at an assertion for some damaged MPEG-4.
bool is_plain(const std::string &file) {
    const opened_stream input = open_stream(file, AVMEDIA_TYPE_VIDEO);
    for (const AVCodecID plain :
         {AV_CODEC_ID_RAWVIDEO, AV_CODEC_ID_WRAPPED_AVFRAME, AV_CODEC_ID_PPM, AV_CODEC_ID_PGM,
          AV_CODEC_ID_PNG, AV_CODEC_ID_BMP, AV_CODEC_ID_MJPEG, AV_CODEC_ID_YUV4})
        if (input.codec->codec_id == plain)
            // What announces a large picture would only take long.
            return std::int64_t{input.codec->width} * input.codec->height <= most_pixels;
    return false;
}

options choose(differential::random &r) {
    options chosen;
    const auto surfaces = surface_formats();
    chosen.surface = &surfaces[r.between(0, static_cast<int>(surfaces.size()) - 1)];
    const auto ways = stretchings();
    chosen.stretch = &ways[r.between(0, static_cast<int>(ways.size()) - 1)];
    chosen.field = r.one_in(4) && chosen.stretch->fits_fields();
    if (!chosen.surface->loader(*chosen.stretch, false))
        chosen.stretch = &ways.front(), chosen.field = false;
    chosen.packed = r.one_in(4);
    chosen.interlaced = r.one_in(4) && chosen.stretch == &ways.front();
    chosen.menu = r.one_in(8);
    chosen.frames = 3;
    chosen.picture.brightness = r.between(-100, 100);
    chosen.picture.contrast = r.between(0, 200);
    return chosen;
}

// Frames, and the keys that change how they are loaded.
void play(const options &chosen, differential::random &r) {
    session running(chosen);
    while (running.advance()) {
        const surface &shown = running.loaded();
        fuzz::expect(shown.width() > 0 && shown.height() > 0, "a frame has pixels");
        fuzz::expect(shown.expand().size() == std::size_t{3} *
                                                  static_cast<std::size_t>(shown.width()) *
                                                  static_cast<std::size_t>(shown.height()),
                     "they are all shown");
        running.obey(static_cast<command>(r.between(0, static_cast<int>(command::pause))));
        running.reload();
        fuzz::expect(!running.describe().empty(), "it is described");
    }
    fuzz::expect(!running.summary().empty(), "there is a summary");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    if (size <= choice_bytes)
        return 0;
    differential::random r = fuzz::choices_of(data, choice_bytes);
    const fuzz::file input(data + choice_bytes, size - choice_bytes);
    options chosen = choose(r);
    chosen.file = input.name();
    fuzz::doing = std::string("onto ") + chosen.surface->name + ", " + chosen.stretch->name +
                  (chosen.field ? ", field" : "") + (chosen.interlaced ? ", interlaced" : "") +
                  (chosen.packed ? ", packed" : "") + (chosen.menu ? ", menu" : "");
    try {
        if (is_plain(chosen.file))
            play(chosen, r);
    } catch (const failure &wrong) {
        fuzz::expect(wrong.what()[0] != 0, "what is wrong is told");
    }
    return 0;
}
