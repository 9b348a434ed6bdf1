// Windows' own declarations, from the headers that the product is built with. They know one other
// system where long has 64 bits, Cygwin, and take this one for it.
#pragma once
#pragma GCC system_header  // a keyword is defined below

// This system's own headers, before the macros can reach them.
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
#define PSAPI_VERSION 1        // GetProcessMemoryInfo under its own name
#define _X86INTRIN_H_INCLUDED  // g++: half of what would be read
#define __X86INTRIN_H          // clang++
#include_next <windows.h>

#include "platform/windows_headers.h"
#undef wchar_t
#undef __declspec
#undef __CYGWIN__

#include "../runtime.h"

// Laid out as on Windows: the stand-in refuses a record of another size, as Windows does.
static_assert(sizeof(OSVERSIONINFOEXA) == 156 && sizeof(MEMORYSTATUSEX) == 64 &&
              sizeof(PROCESS_MEMORY_COUNTERS) == 72 && sizeof(MONITORINFOEXA) == 72 &&
              sizeof(MODULEENTRY32) == 568 && sizeof(PROCESSENTRY32) == 304);
