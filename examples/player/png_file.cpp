#include "examples/player/png_file.h"

#include "examples/player/failure.h"
#include "examples/player/surface.h"

#include <png.h>

namespace player {

void write_png(const std::filesystem::path &file, const surface &from) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(from.width());
    image.height = static_cast<png_uint_32>(from.height());
    image.format = PNG_FORMAT_RGB;
    image.flags = PNG_IMAGE_FLAG_FAST;
    if (!png_image_write_to_file(&image, file.c_str(), 0, from.expand().data(), 0, nullptr))
        throw failure("cannot write " + file.string() + ": " + image.message);
}

} // namespace player
