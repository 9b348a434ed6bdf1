#ifndef QBSUPPORT_PLATFORM_STAND_IN_VERSION_RESOURCE_H
#define QBSUPPORT_PLATFORM_STAND_IN_VERSION_RESOURCE_H

#include "platform/stand_in/types.h"

DWORD WINAPI GetFileVersionInfoSizeA(LPCSTR file, LPDWORD handle);
BOOL WINAPI GetFileVersionInfoA(LPCSTR file, DWORD handle, DWORD size, LPVOID block);
BOOL WINAPI VerQueryValueA(LPCVOID block, LPCSTR path, LPVOID* value, PUINT length);

#endif
