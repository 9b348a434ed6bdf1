// The system headers that the library needs besides windows.h, which comes before this one. The
// native build includes this list as well, under its own settings.
#ifndef QBSUPPORT_PLATFORM_WINDOWS_HEADERS_H
#define QBSUPPORT_PLATFORM_WINDOWS_HEADERS_H

#ifndef SECURITY_WIN32
#define SECURITY_WIN32  // security.h must know that this is user mode
#endif

#include <psapi.h>
#include <security.h>
#include <tlhelp32.h>

#endif
