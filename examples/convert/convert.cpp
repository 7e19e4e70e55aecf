// lumalane-convert IN.y4m OUT.bmp: the first picture of 4:2:0 video, of any size, as a bitmap.
#include <cstdio>
#include <cstring>
#include <lumalane/picture.h>
#include <vector>

int fail(const char *why) { return std::fprintf(stderr, "lumalane-convert: %s\n", why), 1; }

int main(int argc, char **argv) {
    std::FILE *const in = argc == 3 ? std::fopen(argv[1], "rb") : nullptr;
    char head[256] = "", frame[256] = "";
    int width = 0, height = 0, chroma = 420, bits = 8;
    if (in && std::fgets(head, sizeof head, in) && std::strchr(head, '\n'))
        for (const char *tag = std::strtok(head, " "); tag; tag = std::strtok(nullptr, " ")) {
            std::sscanf(tag, "W%5d", &width), std::sscanf(tag, "H%5d", &height);
            if (*tag == 'C' && std::sscanf(tag, "C%5dp%5d", &chroma, &bits) < 1)
                chroma = 0; // Cmono
        }
    if (std::strcmp(head, "YUV4MPEG2") != 0 || width < 1 || height < 1 || chroma != 420 ||
        bits != 8)
        return fail(argc == 3 && !in ? "IN.y4m cannot be read"
                                     : "wants IN.y4m of 4:2:0 video with 8 bits, and OUT.bmp");
    if (width > 9999 || height > 9999)
        return fail("IN.y4m has more than 9999 columns or rows");

    using namespace lumalane;
    std::vector<unsigned char> yuv(picture_bytes(format::i420, width, height));
    std::vector<unsigned char> bgr(picture_bytes(format::rgb32, width, height));
    const picture source = packed_planes(format::i420, width, height, yuv.data());
    const picture bitmap = packed_planes(format::rgb32, width, height, bgr.data());
    if (!std::fgets(frame, sizeof frame, in) || std::strncmp(frame, "FRAME", 5) != 0 ||
        !std::strchr(frame, '\n') || std::fread(yuv.data(), yuv.size(), 1, in) != 1 ||
        !convert(source, flipped(bitmap)))
        return fail("IN.y4m has no whole picture");
    const int header[13] = {54 + 4 * width * height, 0, 54, 40, width, height, 1 | 32 << 16};
    std::FILE *const out = std::fopen(argv[2], "wb");
    if (!out || !std::fwrite("BM", 2, 1, out) || !std::fwrite(header, sizeof header, 1, out) ||
        !std::fwrite(bgr.data(), bgr.size(), 1, out) || std::fclose(out) != 0)
        return fail("OUT.bmp cannot be written");
}
