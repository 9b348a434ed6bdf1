// The processors as the system sees them.
#ifndef QBSUPPORT_PLATFORM_SYSTEM_INFO_H
#define QBSUPPORT_PLATFORM_SYSTEM_INFO_H

#include "platform/windows_api.h"

namespace qb_support {

// The machine's own system information, not the view that an emulated process is given; that view
// on a system which has no GetNativeSystemInfo.
SYSTEM_INFO QuerySystemInfo();

}  // namespace qb_support

#endif
