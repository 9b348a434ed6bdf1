#ifndef QBSUPPORT_PLATFORM_STAND_IN_TOOLHELP_H
#define QBSUPPORT_PLATFORM_STAND_IN_TOOLHELP_H

#include "platform/stand_in/types.h"

// A macro, as on Windows: a pointer made from a number is no constant expression.
#define INVALID_HANDLE_VALUE (reinterpret_cast<HANDLE>(INT_PTR{-1}))

inline constexpr DWORD TH32CS_SNAPPROCESS = 0x2;
inline constexpr DWORD TH32CS_SNAPMODULE = 0x8;
inline constexpr DWORD TH32CS_SNAPMODULE32 = 0x10;
inline constexpr int MAX_MODULE_NAME32 = 255;

struct MODULEENTRY32 {
    DWORD dwSize;
    DWORD th32ModuleID;
    DWORD th32ProcessID;
    DWORD GlblcntUsage;
    DWORD ProccntUsage;
    BYTE* modBaseAddr;
    DWORD modBaseSize;
    HMODULE hModule;
    char szModule[MAX_MODULE_NAME32 + 1];
    char szExePath[MAX_PATH];
};

struct PROCESSENTRY32 {
    DWORD dwSize;
    DWORD cntUsage;
    DWORD th32ProcessID;
    ULONG_PTR th32DefaultHeapID;
    DWORD th32ModuleID;
    DWORD cntThreads;
    DWORD th32ParentProcessID;
    LONG pcPriClassBase;
    DWORD dwFlags;
    CHAR szExeFile[MAX_PATH];
};

HANDLE WINAPI CreateToolhelp32Snapshot(DWORD flags, DWORD processId);
BOOL WINAPI Module32First(HANDLE snapshot, MODULEENTRY32* entry);
BOOL WINAPI Module32Next(HANDLE snapshot, MODULEENTRY32* entry);
BOOL WINAPI Process32First(HANDLE snapshot, PROCESSENTRY32* entry);
BOOL WINAPI Process32Next(HANDLE snapshot, PROCESSENTRY32* entry);

#endif
