// Settings and facts of the program's own process.
#ifndef QBREPORT_PLATFORM_H
#define QBREPORT_PLATFORM_H

#include <windows.h>

#include <string>

/// Call this before anything else. Windows then prefers its own libraries to files of the same
/// name beside the program, and opens no dialog about a missing disk.
void PrepareProcess();

/// Limits the search for libraries that are loaded by name alone to Windows' own directory. The
/// limit also holds when QBSUPPORT.dll looks for the versions of modules, so call this only after
/// the report is complete.
void LoadFromWindowsOnly();

/// Loads one of Windows' own libraries from Windows' own directory for good. Null if that fails.
HMODULE LoadSystemLibrary(const wchar_t* name);

/// A function of one of Windows' own libraries; null if there is none.
template <typename Function>
Function SystemFunction(const wchar_t* library, const char* name) {
    const FARPROC function = GetProcAddress(LoadSystemLibrary(library), name);
    // Through a third type, because compilers warn about a direct cast.
    return reinterpret_cast<Function>(reinterpret_cast<void (*)()>(function));
}

/// The directory of this program's file, with its last backslash.
std::wstring ProgramDirectory();

/// Whether the program has a console that no other program shares.
bool OwnsConsole();

/// Whether a user can see this session. If not, as in some scheduled tasks and services, nobody can
/// press a key in the console.
bool IsSessionVisible();

#endif
