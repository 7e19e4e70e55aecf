#include "examples/player/options.h"

#include "examples/player/failure.h"
#include "examples/player/keys.h"
#include "examples/player/surface.h"
#include "examples/player/target.h"

#include <CLI/CLI.hpp>
#include <climits>

namespace player {
namespace {

std::vector<std::string> surfaces_of(const stretching &by) {
    std::vector<std::string> names;
    for (const surface_format &format : surface_formats())
        if (format.loader(by, false))
            names.emplace_back(format.name);
    return names;
}

} // namespace

std::optional<options> parse(int argc, char **argv) {
    options chosen;
    std::vector<std::string> surfaces;
    for (const surface_format &format : surface_formats())
        surfaces.emplace_back(format.name);
    std::string surface_name = surfaces.front();
    std::vector<std::string> stretches;
    for (const stretching &by : stretchings())
        stretches.emplace_back(by.name);
    std::string stretch_name = stretches.front();

    CLI::App app{"Plays a video through Lumalane.", "lumalane-player"};
    const CLI::Option *file =
        app.add_option("FILE", chosen.file,
                       "Any video that libavformat reads (a clip of tulips, repeated)")
            ->type_name("");
    app.add_flag("--repeat", chosen.repeat, "Start again at the end");
    app.add_option("--frames", chosen.frames,
                   "Stop after so many frames, with --interlaced so many fields (all)")
        ->type_name("N")
        ->check(CLI::Range(1L, LONG_MAX).description(""));
    const CLI::Option *surface = app.add_option("--surface", surface_name,
                                                "What the library fills (" + surface_name +
                                                    ", or the first with the stretch)")
                                     ->type_name("NAME")
                                     ->transform(CLI::IsMember(surfaces, CLI::ignore_case));
    const CLI::Option *stretch =
        app.add_option("--stretch", stretch_name,
                       "Twice the rows (1x2), the same interpolated along edges (edge), or twice "
                       "rows and columns (2x2), on the surfaces that can (" +
                           stretch_name + ")")
            ->type_name("NAME")
            ->transform(CLI::IsMember(stretches, CLI::ignore_case));
    app.add_flag("--field", chosen.field,
                 "Show the first field of every frame alone, its rows stretched to the frame's "
                 "height, by edge or 1x2 (edge, where the surface has it)");
    app.add_flag("--packed", chosen.packed,
                 "Load from packed 4:2:2 pictures into the surfaces that can be (automatic for "
                 "packed videos; not with subtitles or fields)");
    app.add_flag("--interlaced", chosen.interlaced,
                 "Show every field by itself, doubled to a frame, on the surfaces that can")
        ->excludes("--stretch", "--field");
    app.add_option("--target", chosen.target,
                   "What the library's row kernels are compiled for (the widest that runs here)")
        ->type_name("NAME")
        ->transform(CLI::IsMember(target_names(), CLI::ignore_case));
    const auto add_control = [&app](const char *name, int &value, control_range range,
                                    const char *unit) {
        const auto text = [](int number) { return std::to_string(number); };
        app.add_option(name, value,
                       text(range.least) + " to " + text(range.most) + unit + " (" + text(value) +
                           ")")
            ->type_name("N")
            ->check(CLI::Range(range.least, range.most).description(""));
    };
    add_control("--brightness", chosen.picture.brightness, brightness_range, " levels");
    add_control("--contrast", chosen.picture.contrast, gain_range, " %");
    add_control("--saturation", chosen.picture.saturation, gain_range, " %");
    app.add_flag("--menu", chosen.menu, "Start with the menu open");
    app.add_option("--png", chosen.png_directory,
                   "Write the frames as PNG files into this directory; needs no display")
        ->type_name("DIR");
    CLI::Option *subtitles = app.add_option("--subtitles", chosen.subtitles,
                                            "Subtitles over the video: SRT, ASS and others")
                                 ->type_name("FILE");
    app.add_option("--dump-subpicture", chosen.dump_directory,
                   "Write every subpicture as PNG files into this directory: drawn, its alpha, and "
                   "painted back")
        ->type_name("DIR")
        ->needs(subtitles);
    app.add_option("--compare-stretch", chosen.comparison,
                   "Play nothing; write a PNG file of one field by every way of doubling its rows")
        ->type_name("FILE");
    app.footer(describe_keys());

    try {
        app.parse(argc, argv);
    } catch (const CLI::Success &help) {
        app.exit(help);
        return std::nullopt;
    } catch (const CLI::ParseError &wrong) {
        throw failure(wrong.what());
    }

    if (chosen.field && stretch->empty()) {
        const bool edge =
            surface->empty() || find_surface_format(surface_name)->functions.load_edge;
        stretch_name = edge ? "edge" : "1x2";
    }
    chosen.stretch = find_stretching(stretch_name);
    if (chosen.field && !chosen.stretch->fits_fields())
        throw failure("--field: a field needs the stretch 1x2 or edge, not " + stretch_name);
    const std::vector<std::string> able = surfaces_of(*chosen.stretch);
    if (surface->empty())
        surface_name = able.front();
    chosen.surface = find_surface_format(surface_name);
    if (!chosen.surface->loader(*chosen.stretch, false))
        throw failure("--stretch " + stretch_name + ": not onto " + surface_name + ", but onto " +
                      CLI::detail::join(able, ", "));
    if (file->empty()) {
        chosen.file = LUMALANE_PLAYER_CLIP;
        chosen.repeat |= chosen.png_directory.empty();
    }
    return chosen;
}

} // namespace player
