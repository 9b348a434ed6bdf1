// Windows' basic types with the sizes that they have there, whatever this system's long is.
#ifndef QBSUPPORT_PLATFORM_STAND_IN_TYPES_H
#define QBSUPPORT_PLATFORM_STAND_IN_TYPES_H

#include <cstddef>
#include <cstdint>

#define WINAPI
#define CALLBACK
#define APIENTRY
#define NTAPI

using BOOL = int;
using BOOLEAN = unsigned char;
using CHAR = char;
using BYTE = unsigned char;
using WCHAR = char16_t;
using WORD = std::uint16_t;
using UINT = unsigned int;
using DWORD = std::uint32_t;
using LONG = std::int32_t;
using ULONG = std::uint32_t;
using ULONGLONG = std::uint64_t;
using DWORDLONG = std::uint64_t;
using INT_PTR = std::intptr_t;
using ULONG_PTR = std::uintptr_t;
using DWORD_PTR = std::uintptr_t;
using SIZE_T = std::size_t;
using LPARAM = std::intptr_t;

using LPVOID = void*;
using LPCVOID = const void*;
using LPSTR = char*;
using LPCSTR = const char*;
using LPBYTE = BYTE*;
using LPDWORD = DWORD*;
using PUINT = UINT*;

using LANGID = WORD;
using LCID = DWORD;
using LCTYPE = DWORD;
using LSTATUS = LONG;
using REGSAM = DWORD;

using HANDLE = void*;
using HMODULE = struct ModuleHandle*;
using HKEY = struct RegistryKeyHandle*;
using HWND = struct WindowHandle*;
using HDC = struct DeviceContextHandle*;
using HMONITOR = struct MonitorHandle*;

using FARPROC = INT_PTR(WINAPI*)();

inline constexpr BOOL FALSE = 0;
inline constexpr BOOL TRUE = 1;
inline constexpr int MAX_PATH = 260;

#endif
