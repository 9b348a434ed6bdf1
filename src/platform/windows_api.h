// All that the library uses of Windows. No file outside this folder includes Windows' headers.
#ifndef QBSUPPORT_PLATFORM_WINDOWS_API_H
#define QBSUPPORT_PLATFORM_WINDOWS_API_H

// A project that includes this one may define any of these itself.
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
// The library uses the "A" forms of all functions. tlhelp32.h has no separate names for its "A"
// forms, which exist only if neither of these is defined.
#undef UNICODE
#undef _UNICODE

#include <windows.h>

#include "platform/windows_headers.h"

// Run-time functions whose behaviour differs between systems. Only these headers, and not their
// C++ counterparts, promise the functions' plain names.
// NOLINTBEGIN(modernize-deprecated-headers)
#include <locale.h>
#include <stdlib.h>
#include <time.h>
// NOLINTEND(modernize-deprecated-headers)

#endif
