// A renderer for Windows on lumalane.dll, to copy from: shows raw 4:2:0 video (a Y4M file) in a
// window, through GDI in every RGB format or through DirectDraw, with an adjustment and a menu.
//
// To build it, in the project's folder, with MinGW or Visual C++ (each on one line):
//     i686-w64-mingw32-g++ -std=c++17 -O2 -Iinclude examples/windows/renderer.cpp -o renderer.exe
//         -static -mwindows -lddraw -ldxguid
//     cl /std:c++17 /O2 /Iinclude examples\windows\renderer.cpp user32.lib gdi32.lib shell32.lib
//         ddraw.lib dxguid.lib
// To run it, with a lumalane.dll of as many bits beside it: renderer FILE.y4m
//     F  next pixel format    T  rows from the top or the bottom    X  GDI or DirectDraw    M  menu
//     Q A  brightness         W S  contrast                         E D  saturation
#define LUMALANE_STATIC // functions are looked up, not imported
#include <windows.h>

#include <ddraw.h>
#include <lumalane.h>
#include <shellapi.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

namespace {

// ---- The library. Functions are exported under the names that Microsoft's compilers give them,
// which carry the types of the arguments.
#ifdef _WIN64
#define POINTER_TO "PEA"
#else
#define POINTER_TO "PA"
#endif
#define PICTURE_ARGUMENTS POINTER_TO "E000HHHH" POINTER_TO "Utag_ajust_contrast_info@@"
#define MIX_ARGUMENT POINTER_TO "UtagMIX_INFO@@"

#define FOR_EACH_FUNCTION(FUNCTION)                                                                \
    FUNCTION(get_contrast_data, POINTER_TO "X")                                                    \
    FUNCTION(loadimage_rgb32_ajust, PICTURE_ARGUMENTS)                                             \
    FUNCTION(loadimage_rgb24_ajust, PICTURE_ARGUMENTS)                                             \
    FUNCTION(loadimage_rgb16_ajust, PICTURE_ARGUMENTS)                                             \
    FUNCTION(mix_ayuy2_rgb32_p_ajust, MIX_ARGUMENT)                                                \
    FUNCTION(mix_ayuy2_rgb24_p_ajust, MIX_ARGUMENT)                                                \
    FUNCTION(mix_ayuy2_rgb16_p_ajust, MIX_ARGUMENT)                                                \
    FUNCTION(LoadColorKeyRgb32, "I" POINTER_TO "XHHHH")                                            \
    FUNCTION(Convert_RGB32_To_AYUY2, MIX_ARGUMENT)                                                 \
    FUNCTION(Restore_RGB32_To_Alpha, MIX_ARGUMENT)

struct functions {
#define DECLARE(name, arguments) decltype(&::name) name;
    FOR_EACH_FUNCTION(DECLARE)
} library;

bool load_library() {
    const HMODULE dll = LoadLibraryA("lumalane.dll");
#define LOOK_UP(name, arguments)                                                                   \
    if (!(library.name = reinterpret_cast<decltype(&::name)>(                                      \
              reinterpret_cast<void *>(GetProcAddress(dll, "?" #name "@@YAX" arguments "@Z")))))   \
        return false;
    FOR_EACH_FUNCTION(LOOK_UP)
    return true;
}

// ---- The video: a frame at a time, in planes of whole steps. The library converts 16 pixels and
// two rows at a time, and a width off that step would make rows drift.
struct {
    FILE *file;
    long first_frame;
    int width, height, rate, scale; // frames per second: rate / scale
    int pitch, rows;                // rounded up to 16 and 2
    unsigned char *planes[3];       // Y, U, V
} video;

bool open_video(const wchar_t *name) {
    char header[256] = "";
    video.file = _wfopen(name, L"rb");
    if (video.file)
        fgets(header, sizeof header, video.file);
    const char *const size = strstr(header, " W"), *const rate = strstr(header, " F");
    const char *const deeper = strstr(header, " C420p"); // C420p10, but also C420paldv
    if (!strchr(header, '\n') || !size ||
        sscanf(size, " W%d H%d", &video.width, &video.height) != 2 || !rate ||
        sscanf(rate, " F%d:%d", &video.rate, &video.scale) != 2 || video.width - 1u > 8191 ||
        video.height - 1u > 8191 || (deeper && deeper[6] >= '0' && deeper[6] <= '9') ||
        (strstr(header, " C") && !strstr(header, " C420")))
        return false;
    if (video.rate <= 0 || video.scale <= 0) // F0:0 is an unknown one
        video.rate = 25, video.scale = 1;
    video.first_frame = ftell(video.file);
    video.pitch = (video.width + 15) & ~15;
    video.rows = (video.height + 1) & ~1;
    const size_t pixels = static_cast<size_t>(video.pitch) * video.rows;
    video.planes[0] = static_cast<unsigned char *>(calloc(pixels, 2));
    video.planes[1] = video.planes[0] + pixels;
    video.planes[2] = video.planes[1] + pixels / 4;
    return video.planes[0];
}

bool read_frame() { // false at the end of the file
    char header[256];
    bool whole = fgets(header, sizeof header, video.file) && strncmp(header, "FRAME", 5) == 0 &&
                 strchr(header, '\n');
    for (unsigned char *const plane : video.planes) {
        const int half = plane != video.planes[0], width = (video.width + half) >> half;
        for (int row = 0; row < (video.height + half) >> half; ++row)
            whole = whole && fread(plane + row * (video.pitch >> half), width, 1, video.file) == 1;
    }
    return whole;
}

// ---- Pixel formats and the bitmaps that hold them. Of RGB16 every Windows shows 5-6-5; the other
// layouts need one of the NT family, which takes any masks of contiguous bits.
struct format {
    const char *name;
    int bits;
    DWORD red, green, blue, rgb16_layout;
};
constexpr format formats[6] = {
    {"GDI, RGB32", 32, 0xff0000, 0xff00, 0xff, 0},
    {"GDI, RGB24", 24, 0xff0000, 0xff00, 0xff, 0},
    {"GDI, RGB16 5-6-5", 16, 0xf800, 0x7e0, 0x1f, 0},
    {"GDI, RGB16 5-5-5", 16, 0xf800, 0x7c0, 0x3e, 1},
    {"GDI, RGB16 6-6-4", 16, 0xfc00, 0x3f0, 0xf, 2},
    {"GDI, RGB16 6-5-5", 16, 0xfc00, 0x3e0, 0x1f, 3},
};

struct bitmap {
    HDC dc;
    HBITMAP handle;
    unsigned char *top; // the first byte of the row that is shown first
    int pitch;          // negative where rows lie from the bottom to the top
};

bitmap make_bitmap(const format &as, bool top_first) {
    const struct {
        BITMAPINFOHEADER header;
        DWORD masks[3];
    } info = {{sizeof info.header, video.pitch, top_first ? -video.rows : video.rows, 1,
               static_cast<WORD>(as.bits), as.bits == 16 ? DWORD{BI_BITFIELDS} : DWORD{BI_RGB}, 0,
               0, 0, 0, 0},
              {as.red, as.green, as.blue}};
    bitmap made{};
    void *bits = nullptr;
    made.dc = CreateCompatibleDC(nullptr);
    made.handle = CreateDIBSection(made.dc, reinterpret_cast<const BITMAPINFO *>(&info),
                                   DIB_RGB_COLORS, &bits, nullptr, 0);
    SelectObject(made.dc, made.handle);
    const int row_bytes = video.pitch * as.bits / 8; // a multiple of 4, as it must be
    made.top = static_cast<unsigned char *>(bits) + (top_first ? 0 : (video.rows - 1) * row_bytes);
    made.pitch = top_first ? row_bytes : -row_bytes;
    return made;
}

// ---- The menu: drawn with GDI twice, in its colours on the colour key and in its alpha on 0.
constexpr DWORD key = 0xff00ff;
// Whole groups of 8 pixels, of which the conversion skips those of the key's colour alone.
constexpr RECT menu_box = {16, 16, 16 + 200, 16 + 80};

int adjusted[3]; // brightness, contrast, saturation: -100 to 100, gains from 0 to 2

struct {
    bool shown;
    HFONT font;
    bitmap colours, opacity;
    tagMIX_INFO record;
} menu;

bool make_menu() {
    menu.font = CreateFontA(-14, 0, 0, 0, FW_BOLD, 0, 0, 0, DEFAULT_CHARSET, 0, 0,
                            ANTIALIASED_QUALITY, 0, "Verdana"); // coloured edges would spoil alpha
    menu.colours = make_bitmap(formats[0], true);
    menu.opacity = make_bitmap(formats[0], true);
    const size_t pixels = static_cast<size_t>(video.pitch) * video.rows;
    tagMIX_INFO &mix = menu.record;
    mix.width = mix.video_pitch = mix.sub_pitch = video.pitch;
    mix.height = video.rows;
    mix.video_y = video.planes[0];
    mix.video_u = video.planes[1];
    mix.video_v = video.planes[2];
    mix.alpha_plane = static_cast<unsigned char *>(calloc(pixels, 3));
    mix.sub_y = mix.alpha_plane + pixels;
    mix.sub_v = mix.sub_y + pixels;
    mix.sub_u = mix.sub_v + pixels / 2;
    mix.color_key = key;
    return menu.colours.top && menu.opacity.top && mix.alpha_plane;
}

// A new one for each call: the functions use it as their running state.
tagMIX_INFO record_for(unsigned char *dst, int dst_pitch) {
    tagMIX_INFO mix = menu.record;
    mix.dst = dst;
    mix.dst_pitch = dst_pitch;
    return mix;
}

void draw(const bitmap &on, DWORD around, COLORREF box, COLORREF letters) {
    char text[200];
    wsprintfA(text, "Q A Brightness\t%d\nW S Contrast\t%d\nE D Saturation\t%d", adjusted[0],
              adjusted[1], adjusted[2]);
    library.LoadColorKeyRgb32(around, on.top, video.pitch, video.rows, 0, on.pitch);
    SelectObject(on.dc, menu.font);
    SetBkColor(on.dc, box);
    SetTextColor(on.dc, letters);
    ExtTextOutA(on.dc, 0, 0, ETO_OPAQUE, &menu_box, "", 0, nullptr);
    RECT inside = {menu_box.left + 12, menu_box.top + 10, menu_box.right, menu_box.bottom};
    DrawTextA(on.dc, text, -1, &inside, DT_EXPANDTABS);
    GdiFlush(); // before somebody else touches the bits
}

void draw_menu() {
    draw(menu.colours, key, RGB(16, 32, 72), RGB(255, 240, 200));
    tagMIX_INFO colours = record_for(menu.colours.top, menu.colours.pitch);
    library.Convert_RGB32_To_AYUY2(&colours);
    draw(menu.opacity, 0, RGB(0, 0, 11), RGB(0, 0, 16)); // of 16, in the blue channel
    tagMIX_INFO opacity = record_for(menu.opacity.top, menu.opacity.pitch);
    library.Restore_RGB32_To_Alpha(&opacity);
}

// ---- Showing a picture
HWND window;
IDirectDraw7 *direct_draw;
IDirectDrawSurface7 *screen, *picture;
bitmap surface;
int format_index;
bool top_first = true, with_direct_draw, has_direct_draw;

void fill(const format &as, unsigned char *dst, int dst_pitch) {
    const auto load = as.bits == 32   ? library.loadimage_rgb32_ajust
                      : as.bits == 24 ? library.loadimage_rgb24_ajust
                                      : library.loadimage_rgb16_ajust;
    const auto mix = as.bits == 32   ? library.mix_ayuy2_rgb32_p_ajust
                     : as.bits == 24 ? library.mix_ayuy2_rgb24_p_ajust
                                     : library.mix_ayuy2_rgb16_p_ajust;
    tag_ajust_contrast_info info{};
    info.rgb16_layout = as.rgb16_layout;
    tagMIX_INFO record = record_for(dst, dst_pitch);
    record.adjust_info = &info;
    if (menu.shown)
        mix(&record);
    else
        load(video.planes[0], video.planes[1], video.planes[2], dst, video.pitch, video.rows,
             video.pitch, dst_pitch, &info);
}

void show_gdi(HDC dc) {
    fill(formats[format_index], surface.top, surface.pitch);
    BitBlt(dc, 0, 0, video.width, video.height, surface.dc, 0, 0, SRCCOPY);
    GdiFlush();
}

template <class Object>
void release(Object *&object) {
    if (object)
        object->Release();
    object = nullptr;
}

// The surface has the screen's pixel format, which must be RGB32 here.
void make_direct_draw() {
    release(picture);
    release(screen);
    release(direct_draw);
    DDSURFACEDESC2 shown{}, made{};
    shown.dwSize = made.dwSize = sizeof shown;
    shown.dwFlags = DDSD_CAPS;
    shown.ddsCaps.dwCaps = DDSCAPS_PRIMARYSURFACE;
    made.dwFlags = DDSD_CAPS | DDSD_WIDTH | DDSD_HEIGHT;
    made.ddsCaps.dwCaps = DDSCAPS_OFFSCREENPLAIN;
    made.dwWidth = video.pitch;
    made.dwHeight = video.rows;
    void **const direct = reinterpret_cast<void **>(&direct_draw);
    IDirectDrawClipper *clipper = nullptr;
    has_direct_draw =
        SUCCEEDED(DirectDrawCreateEx(nullptr, direct, IID_IDirectDraw7, nullptr)) &&
        SUCCEEDED(direct_draw->SetCooperativeLevel(window, DDSCL_NORMAL)) &&
        SUCCEEDED(direct_draw->CreateSurface(&shown, &screen, nullptr)) &&
        SUCCEEDED(direct_draw->CreateSurface(&made, &picture, nullptr)) &&
        SUCCEEDED(direct_draw->CreateClipper(0, &clipper, nullptr)) &&
        SUCCEEDED(clipper->SetHWnd(0, window)) && SUCCEEDED(screen->SetClipper(clipper)) &&
        SUCCEEDED(picture->GetSurfaceDesc(&made)) && made.ddpfPixelFormat.dwRGBBitCount == 32;
    release(clipper); // the screen keeps it
}

void show_title() {
    SetWindowTextA(window, with_direct_draw ? "DirectDraw" : formats[format_index].name);
}

void restore_direct_draw() {
    // A full-screen program took the surfaces and may still have the screen; or they are of
    // another display mode than this one, in which they stay lost.
    if (SUCCEEDED(direct_draw->RestoreAllSurfaces()) ||
        direct_draw->TestCooperativeLevel() == DDERR_EXCLUSIVEMODEALREADYSET)
        return;
    make_direct_draw();
    with_direct_draw &= has_direct_draw;
    show_title();
}

void show_direct_draw() {
    DDSURFACEDESC2 locked{};
    locked.dwSize = sizeof locked;
    if (picture->Lock(nullptr, &locked, DDLOCK_WAIT | DDLOCK_WRITEONLY, nullptr) == DD_OK) {
        fill(formats[0], static_cast<unsigned char *>(locked.lpSurface), locked.lPitch);
        picture->Unlock(nullptr);
    }
    RECT from = {0, 0, video.width, video.height}, to = from;
    MapWindowPoints(window, nullptr, reinterpret_cast<POINT *>(&to), 2);
    if (screen->Blt(&to, picture, &from, DDBLT_WAIT, nullptr) == DDERR_SURFACELOST)
        restore_direct_draw();
}

// ---- The window
void press(int code) {
    const char *const keys = "AQSWDE", *const found = code ? strchr(keys, code) : nullptr;
    if (found) {
        int &value = adjusted[(found - keys) / 2];
        value += (found - keys) % 2 ? 5 : -5;
        value = value < -100 ? -100 : value > 100 ? 100 : value;
    }
    format_index = (format_index + (code == 'F')) % 6;
    top_first ^= code == 'T';
    if (code == 'X' && !has_direct_draw)
        make_direct_draw(); // in another display mode than before, perhaps
    with_direct_draw ^= code == 'X' && has_direct_draw;
    menu.shown ^= code == 'M';
    contrast_data data{};
    data.y_gain = (100 + adjusted[1]) * 64 / 100;
    data.uv_gain = (100 + adjusted[2]) * 64 / 100;
    data.y_offset = 128 - 2 * data.y_gain; // the middle of the range stays where it was
    data.u_offset = data.v_offset = 128 - 2 * data.uv_gain;
    data.y_offset_extra = adjusted[0];
    library.get_contrast_data(&data);
    draw_menu();
    DeleteDC(surface.dc);
    DeleteObject(surface.handle);
    surface = make_bitmap(formats[format_index], top_first);
    show_title();
    InvalidateRect(window, nullptr, FALSE);
    UpdateWindow(window);
}

LRESULT CALLBACK on_message(HWND to, UINT message, WPARAM wparam, LPARAM lparam) {
    PAINTSTRUCT paint;
    switch (message) {
    case WM_PAINT:
        BeginPaint(to, &paint);
        with_direct_draw ? show_direct_draw() : show_gdi(paint.hdc);
        EndPaint(to, &paint);
        return 0;
    case WM_TIMER:
        if (read_frame() || (!fseek(video.file, video.first_frame, SEEK_SET) && read_frame()))
            InvalidateRect(to, nullptr, FALSE);
        return 0;
    case WM_KEYDOWN:
        return press(static_cast<int>(wparam)), 0;
    case WM_DESTROY:
        return PostQuitMessage(0), 0;
    }
    return DefWindowProcA(to, message, wparam, lparam);
}

} // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, char *, int) {
    int count = 0;
    wchar_t **words = CommandLineToArgvW(GetCommandLineW(), &count);
    if (count != 2 || !load_library() || !open_video(words[1]) || !read_frame() || !make_menu()) {
        MessageBoxA(nullptr, "renderer FILE.y4m: 4:2:0, 8 bits; needs lumalane.dll", nullptr, 0);
        return 1;
    }
    constexpr DWORD style = WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX;
    const HCURSOR arrow = LoadCursorA(nullptr, IDC_ARROW);
    const WNDCLASSA kind = {0, on_message, 0, 0, instance, {}, arrow, {}, {}, "lumalane"};
    RegisterClassA(&kind);
    RECT outer = {0, 0, video.width, video.height};
    AdjustWindowRect(&outer, style, FALSE);
    window = CreateWindowA("lumalane", "", style, CW_USEDEFAULT, 0, outer.right - outer.left,
                           outer.bottom - outer.top, {}, {}, instance, {});
    make_direct_draw();
    press(0); // what a key does, but for the key
    ShowWindow(window, SW_SHOW);
    SetTimer(window, 1, MulDiv(1000, video.scale, video.rate), nullptr);
    for (MSG message; GetMessageA(&message, nullptr, 0, 0) > 0;)
        DispatchMessageA(&message);
    return 0;
}
