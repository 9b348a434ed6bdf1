// Paths of the system and of the host process, in the ANSI code page.
#ifndef QBSUPPORT_DIRECTORIES_PATHS_H
#define QBSUPPORT_DIRECTORIES_PATHS_H

#include "core/text.h"

namespace qb_support {

// These paths have forward slashes. A path is empty if the platform call fails or if the path is
// longer than 1,022 characters.
CText GetSystemDirectoryPath();
CText GetWindowsDirectoryPath();
CText GetTempDirectoryPath();  // ends in a slash, as the platform gives it

// The executable file of the host process, and not this library. The path has forward slashes. It
// is empty if the platform call fails, and a path longer than 1,022 characters is truncated.
CText GetExecutablePath();

// The current directory of the process, with the backslashes that the platform gives. Empty if the
// platform call fails or if the path is longer than 259 characters.
CText GetCurrentDirectoryPath();

}  // namespace qb_support

#endif
