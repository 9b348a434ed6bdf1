// Windows' own declarations, from the headers that the product is built with. These headers expect
// a long of 32 bits, except on Cygwin, so this file pretends that it is Cygwin.
#pragma once
#pragma GCC system_header  // a keyword is defined below

// This system's own headers come before the macros, which would change them.
#include <ctype.h>
#include <stdarg.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>

#define __CYGWIN__
#define __cdecl
#define __stdcall
#define __fastcall
#define __declspec(attribute)
#define wchar_t char16_t
#define PSAPI_VERSION 1        // declares GetProcessMemoryInfo under its own name
#define _X86INTRIN_H_INCLUDED  // g++: leaves out half of what would be read
#define __X86INTRIN_H          // clang++: the same
#include_next <windows.h>

#include "platform/windows_headers.h"
#undef wchar_t
#undef __declspec
#undef __CYGWIN__

#include "../runtime.h"

// The layout is that of Windows. As Windows does, the stand-in refuses a record of another size.
static_assert(sizeof(OSVERSIONINFOEXA) == 156 && sizeof(MEMORYSTATUSEX) == 64 &&
              sizeof(PROCESS_MEMORY_COUNTERS) == 72 && sizeof(MONITORINFOEXA) == 72 &&
              sizeof(MODULEENTRY32) == 568 && sizeof(PROCESSENTRY32) == 304);
