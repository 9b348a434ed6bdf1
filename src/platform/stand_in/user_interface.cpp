#include "platform/stand_in/user_interface.h"

#include <algorithm>
#include <cstdio>

#include "platform/stand_in/calls.h"
#include "platform/stand_in/handles.h"
#include "platform/stand_in/machine.h"

using namespace stand_in;

namespace {

int Find(const std::map<int, int>& numbers, int index) {
    const auto number = numbers.find(index);
    return number != numbers.end() ? number->second : 0;
}

constexpr ULONG_PTR firstMonitor = 0x10001;

}  // namespace

int GetSystemMetrics(int index) {
    return CallFails(PlatformCall::GetSystemMetrics) ? 0
                                                     : Find(CurrentMachine().systemMetrics, index);
}

HDC GetDC(HWND window) {
    if (CallFails(PlatformCall::GetDC) || window || !CurrentMachine().screenContext) {
        return nullptr;
    }
    return static_cast<HDC>(OpenHandle(HandleKind::DeviceContext, {}));
}

int ReleaseDC(HWND, HDC context) {
    CountCall(PlatformCall::ReleaseDC);
    return ReleaseHandle(HandleKind::DeviceContext, context) ? 1 : 0;
}

int GetDeviceCaps(HDC context, int index) {
    if (CallFails(PlatformCall::GetDeviceCaps) || !StateOf(HandleKind::DeviceContext, context)) {
        return 0;
    }
    return Find(CurrentMachine().deviceCaps, index);
}

BOOL EnumDisplayMonitors(HDC context, LPCRECT clip, MONITORENUMPROC callback, LPARAM value) {
    if (CallFails(PlatformCall::EnumDisplayMonitors)) {
        return FALSE;
    }
    if (context || clip || !callback) {
        return Refuse(ERROR_INVALID_PARAMETER, FALSE);
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

BOOL GetMonitorInfoA(HMONITOR monitor, LPMONITORINFO info) {
    if (CallFails(PlatformCall::GetMonitorInfoA)) {
        return FALSE;
    }
    if (!info || (info->cbSize != sizeof(MONITORINFO) && info->cbSize != sizeof(MONITORINFOEXA))) {
        return Refuse(ERROR_INVALID_PARAMETER, FALSE);
    }
    // A handle below the first one becomes an index far beyond the last.
    const auto& monitors = CurrentMachine().monitors;
    const std::size_t index = reinterpret_cast<ULONG_PTR>(monitor) - firstMonitor;
    if (index >= monitors.size() || !monitors[index].readable) {
        return Refuse(ERROR_INVALID_MONITOR_HANDLE, FALSE);
    }
    info->rcMonitor = monitors[index].area;
    info->rcWork = monitors[index].area;
    info->dwFlags = monitors[index].primary ? MONITORINFOF_PRIMARY : 0;
    if (info->cbSize == sizeof(MONITORINFOEXA)) {
        auto& named = static_cast<MONITORINFOEXA&>(*info);
        static_cast<void>(
            std::snprintf(named.szDevice, sizeof named.szDevice, "\\\\.\\DISPLAY%zu", index + 1));
    }
    return TRUE;
}
