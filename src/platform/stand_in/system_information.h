#ifndef QBSUPPORT_PLATFORM_STAND_IN_SYSTEM_INFORMATION_H
#define QBSUPPORT_PLATFORM_STAND_IN_SYSTEM_INFORMATION_H

#include "platform/stand_in/kernel.h"

namespace stand_in {

void FillSystemInfo(SYSTEM_INFO& info, WORD architecture);

}  // namespace stand_in

#endif
