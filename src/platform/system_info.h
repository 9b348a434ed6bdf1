// The machine's processors.
#ifndef QBSUPPORT_PLATFORM_SYSTEM_INFO_H
#define QBSUPPORT_PLATFORM_SYSTEM_INFO_H

#include "platform/windows_api.h"

namespace qb_support {

// The system information about the machine. On ARM64, an emulated process nevertheless gets the
// emulated processor. On a system without GetNativeSystemInfo, it is the machine as this process
// sees it.
SYSTEM_INFO QuerySystemInfo();

}  // namespace qb_support

#endif
