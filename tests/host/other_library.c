/* A library in which the host finds none of the functions that it looks for. It leaves a mark when
 * it is loaded, planted beside the programs under the names of libraries of Windows' own. */
#include <windows.h>

BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, void* reserved) {
    (void)reserved;
    if (reason == DLL_PROCESS_ATTACH) {
        wchar_t path[MAX_PATH];
        GetModuleFileNameW(module, path, MAX_PATH - 6);
        lstrcatW(path, L".mark");
        CloseHandle(CreateFileW(path, GENERIC_WRITE, 0, NULL, CREATE_ALWAYS, 0, NULL));
    }
    return TRUE;
}
