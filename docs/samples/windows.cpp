// The DLL without an import library: one function by its decorated name, a picture into
// the memory of a bitmap, whose rows go from the lowest one up.
#include <windows.h>

#include <cstdio>
#include <vector>

struct tag_ajust_contrast_info;
using picture_function = void __cdecl(unsigned char *, unsigned char *,
                                      unsigned char *, unsigned char *, int, int, int,
                                      int, tag_ajust_contrast_info *);

int main() {
    const HMODULE library = LoadLibraryA("lumalane.dll");
    if (!library)
        return std::puts("no lumalane.dll"), 1;
    const char *const name =
        sizeof(void *) == 4
            ? "?loadimage_rgb32@@YAXPAE000HHHHPAUtag_ajust_contrast_info@@@Z"
            : "?loadimage_rgb32@@YAXPEAE000HHHHPEAUtag_ajust_contrast_info@@@Z";
    const auto load = reinterpret_cast<picture_function *>(
        reinterpret_cast<void *>(GetProcAddress(library, name)));
    if (!load)
        return std::puts("no loadimage_rgb32"), 1;

    const int width = 320, height = 240;
    // Of CreateDIBSection(), say.
    std::vector<unsigned char> bitmap(4 * width * height);
    std::vector<unsigned char> y(width * height, 126), u(y.size() / 4, 128), v(u);
    // The upper row, which is the last one in memory, and the way to the next one.
    load(y.data(), u.data(), v.data(), bitmap.data() + (height - 1) * 4 * width,
         width, height, width, -4 * width, nullptr);
    std::printf("%d %d %d\n", bitmap[0], bitmap[1], bitmap[2]);
}
