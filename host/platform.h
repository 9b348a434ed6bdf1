// What the programs ask of Windows as processes.
#ifndef QBREPORT_PLATFORM_H
#define QBREPORT_PLATFORM_H

#include <windows.h>

#include <string>

/// To be called before anything else. Windows then prefers its own libraries to files of the same
/// name beside the program, and opens no dialog about a missing disk.
void PrepareProcess();

/// From here on a library that is asked for by name alone comes from Windows' own directory or not
/// at all. The library looks the versions of modules up in the same way, so a report must be
/// complete before.
void LoadFromWindowsOnly();

/// Loads one of Windows' own libraries from Windows' own directory, for good. Null on failure.
HMODULE LoadSystemLibrary(const wchar_t* name);

/// A function of one of Windows' own libraries; null if there is none.
template <typename Function>
Function SystemFunction(const wchar_t* library, const char* name) {
    const FARPROC function = GetProcAddress(LoadSystemLibrary(library), name);
    // By way of a third type, because compilers warn about a direct cast.
    return reinterpret_cast<Function>(reinterpret_cast<void (*)()>(function));
}

/// The directory of this program's file, with its last backslash.
std::wstring ProgramDirectory();

/// Whether the program has a console, and no other program shares it.
bool OwnsConsole();

/// Whether a user can see what this session shows. The consoles of some scheduled tasks and
/// services wait for a key for ever.
bool IsSessionVisible();

#endif
