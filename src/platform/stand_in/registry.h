#ifndef QBSUPPORT_PLATFORM_STAND_IN_REGISTRY_H
#define QBSUPPORT_PLATFORM_STAND_IN_REGISTRY_H

#include "platform/stand_in/errors.h"
#include "platform/stand_in/types.h"

// Windows extends the sign of these values to the width of a pointer.
#define HKEY_CURRENT_USER (reinterpret_cast<HKEY>(ULONG_PTR{0xFFFFFFFF80000001}))
#define HKEY_LOCAL_MACHINE (reinterpret_cast<HKEY>(ULONG_PTR{0xFFFFFFFF80000002}))

inline constexpr REGSAM KEY_QUERY_VALUE = 0x1;
inline constexpr REGSAM KEY_READ = 0x20019;
inline constexpr REGSAM KEY_WRITE = 0x20006;
inline constexpr REGSAM KEY_ALL_ACCESS = 0xF003F;

inline constexpr DWORD REG_NONE = 0;
inline constexpr DWORD REG_SZ = 1;
inline constexpr DWORD REG_EXPAND_SZ = 2;
inline constexpr DWORD REG_BINARY = 3;
inline constexpr DWORD REG_DWORD = 4;

LSTATUS APIENTRY RegOpenKeyExA(HKEY root, LPCSTR path, DWORD options, REGSAM access, HKEY* result);
LSTATUS APIENTRY RegQueryValueExA(HKEY key, LPCSTR name, LPDWORD reserved, LPDWORD type,
                                  LPBYTE data, LPDWORD size);
LSTATUS APIENTRY RegCloseKey(HKEY key);

#endif
