// The one gate to Windows: the only place that names a system header. Sections call the platform's
// functions by their own names; away from Windows the stand-in declares the same functions, types
// and constants and answers from a described machine.
#ifndef QBSUPPORT_PLATFORM_WINDOWS_API_H
#define QBSUPPORT_PLATFORM_WINDOWS_API_H

#ifdef _WIN32

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
// First: the others need it.
#include <windows.h>

#include <psapi.h>
#include <tlhelp32.h>

// Run-time functions whose behaviour differs between systems; these headers, not their C++
// counterparts, promise them by their plain names.
#include <locale.h>
#include <stdlib.h>
#include <time.h>

#else

#include "platform/stand_in/kernel.h"
#include "platform/stand_in/registry.h"
#include "platform/stand_in/runtime.h"
#include "platform/stand_in/user_interface.h"
#include "platform/stand_in/version_resource.h"

#endif

// The record sizes are part of what the platform is told; a record laid out otherwise would be
// refused, or worse, overrun.
static_assert(sizeof(OSVERSIONINFOEXA) == 156);
static_assert(sizeof(MEMORYSTATUSEX) == 64);
static_assert(sizeof(PROCESS_MEMORY_COUNTERS) == 72);
static_assert(sizeof(MONITORINFOEXA) == 72);
static_assert(sizeof(MODULEENTRY32) == 568);
static_assert(sizeof(PROCESSENTRY32) == 304);

#endif
