#include "stand_in/calls.h"
#include "stand_in/handles.h"
#include "stand_in/machine.h"

using namespace stand_in;

namespace {

struct OpenContext {};
Handles<OpenContext> openContexts;

int Find(const std::map<int, int>& numbers, int index) {
    const auto number = numbers.find(index);
    return number != numbers.end() ? number->second : 0;
}

constexpr ULONG_PTR firstMonitor = 0x10001;

}  // namespace

int stand_in::OpenDeviceContexts() {
    return openContexts.Count();
}

int GetSystemMetrics(int index) {
    return Fails(__func__) ? 0 : Find(CurrentMachine().systemMetrics, index);
}

HDC GetDC(HWND window) {
    if (Fails(__func__) || window || !CurrentMachine().screenContext) {
        return nullptr;
    }
    return static_cast<HDC>(openContexts.Open({}));
}

int ReleaseDC(HWND, HDC context) {
    Count(__func__);
    return openContexts.Release(context) ? 1 : 0;
}

int GetDeviceCaps(HDC context, int index) {
    return Fails(__func__) || !openContexts.Find(context)
               ? 0
               : Find(CurrentMachine().deviceCaps, index);
}

BOOL EnumDisplayMonitors(HDC context, LPCRECT clip, MONITORENUMPROC callback, LPARAM value) {
    if (Fails(__func__) || context || clip) {
        return FALSE;
    }
    ULONG_PTR handle = firstMonitor;
    for (const Monitor& monitor : CurrentMachine().monitors) {
        RECT area = monitor.area;
        if (!callback(reinterpret_cast<HMONITOR>(handle++), nullptr, &area, value)) {
            return FALSE;
        }
    }
    return TRUE;
}

BOOL GetMonitorInfoA(HMONITOR handle, LPMONITORINFO info) {
    if (Fails(__func__) || info->cbSize != sizeof(MONITORINFOEXA)) {
        return FALSE;
    }
    const Monitor& monitor =
        CurrentMachine().monitors.at(reinterpret_cast<ULONG_PTR>(handle) - firstMonitor);
    if (!monitor.readable) {
        return Refuse(ERROR_INVALID_MONITOR_HANDLE, FALSE);
    }
    info->rcMonitor = info->rcWork = monitor.area;
    info->dwFlags = monitor.primary ? MONITORINFOF_PRIMARY : 0;
    return TRUE;
}
