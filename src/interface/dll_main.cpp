// The library's entry point. There is nothing of its own to set up: no state, no constructors, no
// threads.
#include "platform/windows_api.h"

#ifdef _UCRT
// No header of these declares it.
extern "C" int _initialize_narrow_environment();
#endif

extern "C" BOOL WINAPI DllMain(HINSTANCE /*instance*/, [[maybe_unused]] DWORD reason,
                               LPVOID /*reserved*/) {
#ifdef _UCRT
    // In a process whose program is built on another run time, this one has no environment until a
    // library asks for it, as the compiler's start-up code would at this point.
    if (reason == DLL_PROCESS_ATTACH) {
        _initialize_narrow_environment();
    }
#endif
    return TRUE;
}
