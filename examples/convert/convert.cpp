// lumalane-convert IN.y4m OUT.bmp: the first picture of raw 4:2:0 video, of any size, as a bitmap.
#include <lumalane/picture.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <vector>

int main(int argc, char **argv) {
    std::FILE *const in = argc == 3 ? std::fopen(argv[1], "rb") : nullptr;
    char header[256] = "", line[256] = "";
    int width = 0, height = 0;
    if (!in || !std::fgets(header, sizeof header, in) || !std::fgets(line, sizeof line, in) ||
        std::sscanf(header, "YUV4MPEG2 W%d H%d", &width, &height) != 2 || width < 1 ||
        width > 16384 || height < 1 || height > 16384 || std::strstr(header, "C420p1") ||
        (std::strstr(header, " C") && !std::strstr(header, " C420")))
        return std::fputs("lumalane-convert IN.y4m OUT.bmp: wants 4:2:0 video of 8 bits\n", stderr),
               1;

    using namespace lumalane;
    std::vector<unsigned char> yuv(
        static_cast<std::size_t>(picture_bytes(format::i420, width, height)));
    const int stride = (3 * width + 3) / 4 * 4; // a bitmap has rows of whole words,
    const std::uint32_t size = static_cast<std::uint32_t>(stride * height); // the last one first
    std::vector<unsigned char> bgr(size);
    const picture source = packed_planes(format::i420, width, height, yuv.data());
    picture bitmap = packed_planes(format::rgb24, width, height, bgr.data());
    bitmap.planes[0].stride = stride;

    const bool whole = std::fread(yuv.data(), 1, yuv.size(), in) == yuv.size();
    const status converted = convert(source, flipped(bitmap));
    std::FILE *const out = whole && converted ? std::fopen(argv[2], "wb") : nullptr;
    const auto columns = static_cast<std::uint32_t>(width),
               rows = static_cast<std::uint32_t>(height);
    const std::uint32_t fields[13] = {54 + size, 0, 54, 40, columns, rows, 1 | 24 << 16, 0, size};
    const bool written = out && std::fwrite("BM", 2, 1, out) && std::fwrite(fields, 52, 1, out) &&
                         std::fwrite(bgr.data(), size, 1, out) && std::fclose(out) == 0;
    return written ? 0 : (std::fputs("lumalane-convert: no whole picture to write\n", stderr), 1);
}
