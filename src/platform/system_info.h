// The processors as the system sees them.
#ifndef QBSUPPORT_PLATFORM_SYSTEM_INFO_H
#define QBSUPPORT_PLATFORM_SYSTEM_INFO_H

#include "platform/named_function.h"

namespace qb_support {

// The machine's own system information, not the view that an emulated process is given; that view
// on a system which has no GetNativeSystemInfo.
inline SYSTEM_INFO QuerySystemInfo() {
    SYSTEM_INFO info{};
    auto* const getNativeSystemInfo = FindFunction<void WINAPI(SYSTEM_INFO*)>(
        GetModuleHandleA("kernel32.dll"), "GetNativeSystemInfo");
    if (getNativeSystemInfo != nullptr) {
        getNativeSystemInfo(&info);
    } else {
        GetSystemInfo(&info);
    }
    return info;
}

}  // namespace qb_support

#endif
