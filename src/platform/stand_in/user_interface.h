#ifndef QBSUPPORT_PLATFORM_STAND_IN_USER_INTERFACE_H
#define QBSUPPORT_PLATFORM_STAND_IN_USER_INTERFACE_H

#include "platform/stand_in/types.h"

struct RECT {
    LONG left;
    LONG top;
    LONG right;
    LONG bottom;
};
using LPRECT = RECT*;
using LPCRECT = const RECT*;

struct MONITORINFO {
    DWORD cbSize;
    RECT rcMonitor;
    RECT rcWork;
    DWORD dwFlags;
};
using LPMONITORINFO = MONITORINFO*;

inline constexpr int CCHDEVICENAME = 32;

struct MONITORINFOEXA : MONITORINFO {
    CHAR szDevice[CCHDEVICENAME];
};

inline constexpr DWORD MONITORINFOF_PRIMARY = 0x1;

inline constexpr int SM_CXVIRTUALSCREEN = 78;
inline constexpr int SM_CYVIRTUALSCREEN = 79;
inline constexpr int SM_SERVERR2 = 89;

inline constexpr int LOGPIXELSX = 88;
inline constexpr int LOGPIXELSY = 90;

using MONITORENUMPROC = BOOL(CALLBACK*)(HMONITOR monitor, HDC context, LPRECT area, LPARAM value);

int WINAPI GetSystemMetrics(int index);
HDC WINAPI GetDC(HWND window);
int WINAPI ReleaseDC(HWND window, HDC context);
int WINAPI GetDeviceCaps(HDC context, int index);
BOOL WINAPI EnumDisplayMonitors(HDC context, LPCRECT clip, MONITORENUMPROC callback, LPARAM value);
BOOL WINAPI GetMonitorInfoA(HMONITOR monitor, LPMONITORINFO info);

#endif
