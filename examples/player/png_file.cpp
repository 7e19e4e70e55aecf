#include "examples/player/png_file.h"

#include "examples/player/failure.h"

#include <png.h>

namespace player {

void make_directory(const std::filesystem::path &directory) {
    std::error_code error;
    std::filesystem::create_directories(directory, error);
    if (error)
        throw failure("cannot make " + directory.string() + ": " + error.message());
}

void write_png(const std::filesystem::path &file, int width, int height,
               const std::vector<unsigned char> &rgb) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(width);
    image.height = static_cast<png_uint_32>(height);
    image.format = PNG_FORMAT_RGB;
    image.flags = PNG_IMAGE_FLAG_FAST;
    if (!png_image_write_to_file(&image, file.c_str(), 0, rgb.data(), 0, nullptr))
        throw failure("cannot write " + file.string() + ": " + image.message);
}

} // namespace player
