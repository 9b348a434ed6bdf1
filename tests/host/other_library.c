/* A library in which the host finds none of the functions that it looks for. Natively it may also
 * be preloaded, for a disk so slow that a save can be interrupted. On Windows it leaves a mark when
 * it is loaded, planted beside the programs under the names of libraries of Windows' own. */
#ifdef _WIN32
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
#else
#include <unistd.h>

int fsync(int file) {
    (void)file;
    sleep(5);
    return 0;
}
#endif
