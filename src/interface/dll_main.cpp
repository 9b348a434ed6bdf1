// The library's entry point. There is nothing to set up: no state, no constructors, no threads.
#include "platform/windows_api.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE /*instance*/, DWORD /*reason*/, LPVOID /*reserved*/) {
    return TRUE;
}
