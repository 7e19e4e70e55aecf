// Drives the renderer of examples/windows as somebody at its keyboard would, and reads back from
// the screen what it shows: each picture in the pixel format in which it was given to Windows.
//
//     echo all | window_test FILE.y4m >PICTURES       what window_check compares
//     echo window | window_test FILE.y4m >PPM         the whole window, with the menu
//
// The renderer's source is included, for the drawings of its menu and the state that its keys left.
#include <windows.h>

#include <fcntl.h>
#include <io.h>

#define WinMain renderer_main
#include "examples/windows/renderer.cpp"
#undef WinMain

namespace {

constexpr COLORREF blank = RGB(1, 2, 3);

[[noreturn]] void fail(const char *what) {
    fprintf(stderr, "window_test: %s\n", what);
    fflush(nullptr);
    ExitProcess(1);
}

template <class Condition>
void wait_until(const Condition &holds, const char *what) {
    const DWORD start = GetTickCount();
    while (!holds()) {
        if (GetTickCount() - start > 30000)
            fail(what);
        PostMessageA(window, WM_NULL, 0, 0); // Wine's windows come onto the screen when all is done
        Sleep(15);
    }
}

// What is on the screen where the picture should be, as rows without gaps.
struct pixels {
    size_t size;
    unsigned char *bytes;
};

pixels read_screen(const format &as) {
    POINT origin = {0, 0};
    ClientToScreen(window, &origin);
    const HDC from = GetDC(nullptr);
    const bitmap copy = make_bitmap(as, true);
    BitBlt(copy.dc, 0, 0, video.width, video.height, from, origin.x, origin.y, SRCCOPY);
    GdiFlush();
    const size_t row_bytes = static_cast<size_t>(video.width) * as.bits / 8;
    pixels read = {row_bytes * video.height, nullptr};
    read.bytes = static_cast<unsigned char *>(malloc(read.size));
    for (int row = 0; row < video.height; ++row)
        memcpy(read.bytes + row * row_bytes, copy.top + row * copy.pitch, row_bytes);
    DeleteDC(copy.dc);
    DeleteObject(copy.handle);
    ReleaseDC(nullptr, from);
    return read;
}

bool is_screen_blank() {
    const pixels read = read_screen(formats[0]);
    bool all = true;
    for (size_t at = 0; at < read.size; at += 4)
        all = all && read.bytes[at] == GetBValue(blank) && read.bytes[at + 1] == GetGValue(blank) &&
              read.bytes[at + 2] == GetRValue(blank);
    free(read.bytes);
    return all;
}

// So that no picture is taken for the next one.
void blank_window() {
    RECT all;
    GetClientRect(window, &all);
    wait_until(
        [&all] { // again if the window paints itself meanwhile
            const HDC dc = GetDC(window);
            SetBkColor(dc, blank);
            ExtTextOutA(dc, 0, 0, ETO_OPAQUE, &all, "", 0, nullptr);
            GdiFlush();
            ReleaseDC(window, dc);
            return is_screen_blank();
        },
        "the window does not become blank");
}

void press_key(int code) { SendMessageA(window, WM_KEYDOWN, code, 0); }

void write_bytes(const void *bytes, size_t size) {
    if (fwrite(bytes, 1, size, stdout) != size)
        fail("cannot write");
}

void write_drawing(const bitmap &drawn) {
    write_bytes(drawn.top, static_cast<size_t>(drawn.pitch) * video.rows);
}

// Has the window painted anew and writes what it shows, and how the renderer means to show it.
void write_picture(int frame) {
    blank_window();
    InvalidateRect(window, nullptr, FALSE);
    UpdateWindow(window); // SendMessage() for another thread's window: it is painted on return
    const int shown_as = with_direct_draw ? 0 : format_index;
    wait_until([] { return !is_screen_blank(); }, "the window shows nothing");
    pixels last = read_screen(formats[shown_as]);
    wait_until(
        [&last, shown_as] { // the screen may be some moments behind
            const pixels now = read_screen(formats[shown_as]);
            const bool same = memcmp(now.bytes, last.bytes, now.size) == 0;
            free(last.bytes);
            last = now;
            return same;
        },
        "the window does not come to rest");
    printf("picture %d %d %d %d %d %d %d %d %d %d\n", shown_as, top_first, with_direct_draw,
           menu.shown, frame, adjusted[0], adjusted[1], adjusted[2], video.width, video.height);
    write_bytes(last.bytes, last.size);
    free(last.bytes);
    if (menu.shown) {
        printf("menu %ld %ld %ld %ld %d %d\n", menu_box.left, menu_box.top, menu_box.right,
               menu_box.bottom, video.pitch, video.rows);
        write_drawing(menu.colours);
        write_drawing(menu.opacity);
    }
}

void write_all_ways(int frame) {
    for (int direct = 0; direct < 2; ++direct) {
        for (int way = 0; way < (direct ? 1 : 12); ++way) {
            for (int with_menu = 0; with_menu < 2; ++with_menu) {
                write_picture(frame);
                press_key('M');
            }
            if (!direct) {
                press_key('T');
                if (way % 2)
                    press_key('F');
            }
        }
        press_key('X');
    }
}

void write_window() {
    for (const char *typed = "FFMQQ"; *typed; ++typed)
        press_key(*typed);
    Sleep(1000);
    RECT outer;
    GetWindowRect(window, &outer);
    const int width = outer.right - outer.left, height = outer.bottom - outer.top;
    const HDC from = GetDC(nullptr), copy = CreateCompatibleDC(from);
    SelectObject(copy, CreateCompatibleBitmap(from, width, height));
    BitBlt(copy, 0, 0, width, height, from, outer.left, outer.top, SRCCOPY);
    printf("P6 %d %d 255\n", width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const COLORREF pixel = GetPixel(copy, x, y);
            const unsigned char bytes[3] = {GetRValue(pixel), GetGValue(pixel), GetBValue(pixel)};
            write_bytes(bytes, sizeof bytes);
        }
}

void write_pictures() {
    write_all_ways(0);
    SendMessageA(window, WM_TIMER, 1, 0); // the next frame
    for (const char *typed = "QQWWWWDDDDDD"; *typed; ++typed)
        press_key(*typed);
    write_all_ways(1);
}

DWORD WINAPI drive(void *) {
    wait_until([] { return window && IsWindowVisible(window); }, "no window");
    _setmode(_fileno(stdout), _O_BINARY);
    char order[20] = "";
    fgets(order, sizeof order, stdin);
    if (strncmp(order, "window", 6) == 0)
        write_window();
    else
        write_pictures();
    fflush(stdout);
    PostMessageA(window, WM_CLOSE, 0, 0);
    return 0;
}

} // namespace

int main() {
    CreateThread(nullptr, 0, drive, nullptr, 0, nullptr);
    return renderer_main(GetModuleHandleA(nullptr), nullptr, nullptr, SW_SHOW);
}
