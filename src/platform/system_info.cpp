#include "platform/system_info.h"

#include "platform/named_function.h"

namespace qb_support {

SYSTEM_INFO QuerySystemInfo() {
    SYSTEM_INFO info{};
    auto* const getNativeSystemInfo = FindFunction<decltype(GetNativeSystemInfo)>(
        GetModuleHandleA("kernel32.dll"), "GetNativeSystemInfo");
    if (getNativeSystemInfo != nullptr) {
        getNativeSystemInfo(&info);
    } else {
        GetSystemInfo(&info);
    }
    return info;
}

}  // namespace qb_support
