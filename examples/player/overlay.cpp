#include "examples/player/overlay.h"

#include "examples/player/picture.h"
#include "examples/player/png_file.h"

#include <cstdio>

namespace player {

overlay::overlay(const std::string &subtitle_file, const std::filesystem::path &directory)
    : dump_directory(directory) {
    if (!subtitle_file.empty())
        text.emplace(subtitle_file);
    if (!dump_directory.empty())
        make_directory(dump_directory);
}

void overlay::update(double seconds, const picture &below) {
    const int columns = below.padded_width();
    const int rows = below.padded_height();
    bool change = !prepared || prepared->width() != columns || prepared->height() != rows;
    if (change) {
        drawing.emplace(columns, rows);
        prepared.emplace(columns, rows);
    }
    change |= text && text->render(seconds, below.width(), below.height());
    change |= settings.render(0, below.width(), below.height());
    if (!change)
        return;
    drawing->clear();
    if (text)
        text->lay(*drawing);
    settings.lay(*drawing);
    empty = drawing->is_empty();
    prepared->prepare(*drawing);
    if (!empty && !dump_directory.empty())
        dump();
}

void overlay::dump() {
    ++dumped;
    const auto write = [this](const char *stage, const std::vector<unsigned char> &view) {
        char name[48];
        std::snprintf(name, sizeof name, "subpicture-%05d-%s.png", dumped, stage);
        write_png(dump_directory / name, prepared->width(), prepared->height(), view);
    };
    write("drawn", prepared->view_drawing(*drawing));
    write("alpha", prepared->view_alpha());
    write("painted", prepared->view_painted_back());
}

} // namespace player
