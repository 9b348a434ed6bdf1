// Paths of the system and of the host process, in the ANSI code page.
#ifndef QBSUPPORT_DIRECTORIES_PATHS_H
#define QBSUPPORT_DIRECTORIES_PATHS_H

#include "core/text.h"

namespace qb_support {

// Each is written with forward slashes and is empty when the platform fails to give it or it is
// longer than 1,022 characters.
CText GetSystemDirectoryPath();
CText GetWindowsDirectoryPath();
CText GetTempDirectoryPath();  // ends in a slash, as the platform gives it

// The host process's executable file, not this library. With forward slashes; empty when the
// platform fails to give it; a path longer than 1,022 characters is cut as the platform cuts it.
CText GetExecutablePath();

// The process's current directory as the platform gives it, backslashes kept. Empty when the
// platform fails to give it or it is longer than 259 characters.
CText GetCurrentDirectoryPath();

}  // namespace qb_support

#endif
