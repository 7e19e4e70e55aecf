// What a C runtime's start-up code does for programs that link none: the entry point. (WINDOW: of
// programs that begin with WinMain().)
#include <windows.h>

int main();

extern "C" void start() {
#ifdef WINDOW
    ExitProcess(WinMain(GetModuleHandleA(nullptr), nullptr, GetCommandLineA(), SW_SHOW));
#else
    ExitProcess(main());
#endif
}
