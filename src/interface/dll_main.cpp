// The library's entry point. It does nothing, because the library keeps no state and has no
// constructors to run.
#include "platform/windows_api.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE /*instance*/, DWORD /*reason*/, LPVOID /*reserved*/) {
    return TRUE;
}
