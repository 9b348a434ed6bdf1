// Running processes by name.
#ifndef QBSUPPORT_MACHINE_PROCESS_ID_H
#define QBSUPPORT_MACHINE_PROCESS_ID_H

#include <string_view>

#include "platform/windows_api.h"

namespace qb_support {

// The identifier of the first running process whose executable file is named `name`, letter case
// included; 0 when there is none or the processes cannot be listed.
DWORD FindProcessId(std::string_view name);

}  // namespace qb_support

#endif
