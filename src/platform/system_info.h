// The processors as the system sees them.
#ifndef QBSUPPORT_PLATFORM_SYSTEM_INFO_H
#define QBSUPPORT_PLATFORM_SYSTEM_INFO_H

#include "platform/windows_api.h"

namespace qb_support {

// The system information for the machine, not for a 32-bit process on it; on ARM64 an emulated
// process is told of the emulated processor all the same. The process's view on a system that has
// no GetNativeSystemInfo.
SYSTEM_INFO QuerySystemInfo();

}  // namespace qb_support

#endif
