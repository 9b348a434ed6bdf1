// The product version of a module.
#ifndef QBSUPPORT_MACHINE_MODULE_VERSION_H
#define QBSUPPORT_MACHINE_MODULE_VERSION_H

#include "core/text.h"

namespace qb_support {

// The product version of the file `name`, or a fixed text that says why there is none. `name` is a
// path, or a file name that the platform looks for in the directories of its library search.
CText GetModuleVersion(const char* name);

}  // namespace qb_support

#endif
