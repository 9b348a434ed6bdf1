// The one gate to Windows: the only place that names a system header.
#ifndef QBSUPPORT_PLATFORM_WINDOWS_API_H
#define QBSUPPORT_PLATFORM_WINDOWS_API_H

#define WIN32_LEAN_AND_MEAN
#define NOMINMAX 1  // as the C++ headers of some compilers write it
// First: the others need it.
#include <windows.h>

#include <psapi.h>
#define SECURITY_WIN32  // security.h asks which side of the system it is on
#include <security.h>
#include <tlhelp32.h>

// Run-time functions whose behaviour differs between systems; these headers, not their C++
// counterparts, promise them by their plain names.
// NOLINTBEGIN(modernize-deprecated-headers)
#include <locale.h>
#include <stdlib.h>
#include <time.h>
// NOLINTEND(modernize-deprecated-headers)

#endif
