// Version tests, system and process information, locale, directories, messages and snapshots.
#ifndef QBSUPPORT_PLATFORM_STAND_IN_KERNEL_H
#define QBSUPPORT_PLATFORM_STAND_IN_KERNEL_H

#include "platform/stand_in/errors.h"
#include "platform/stand_in/toolhelp.h"
#include "platform/stand_in/types.h"

struct OSVERSIONINFOEXA {
    DWORD dwOSVersionInfoSize;
    DWORD dwMajorVersion;
    DWORD dwMinorVersion;
    DWORD dwBuildNumber;
    DWORD dwPlatformId;
    CHAR szCSDVersion[128];
    WORD wServicePackMajor;
    WORD wServicePackMinor;
    WORD wSuiteMask;
    BYTE wProductType;
    BYTE wReserved;
};

inline constexpr DWORD VER_MINORVERSION = 0x1;
inline constexpr DWORD VER_MAJORVERSION = 0x2;
inline constexpr DWORD VER_BUILDNUMBER = 0x4;
inline constexpr DWORD VER_SERVICEPACKMAJOR = 0x20;
inline constexpr DWORD VER_SUITENAME = 0x40;
inline constexpr DWORD VER_PRODUCT_TYPE = 0x80;

inline constexpr BYTE VER_EQUAL = 1;
inline constexpr BYTE VER_GREATER = 2;
inline constexpr BYTE VER_GREATER_EQUAL = 3;
inline constexpr BYTE VER_LESS = 4;
inline constexpr BYTE VER_LESS_EQUAL = 5;
inline constexpr BYTE VER_AND = 6;
inline constexpr BYTE VER_OR = 7;

inline constexpr BYTE VER_NT_WORKSTATION = 1;
inline constexpr BYTE VER_NT_DOMAIN_CONTROLLER = 2;
inline constexpr BYTE VER_NT_SERVER = 3;
inline constexpr DWORD VER_PLATFORM_WIN32_NT = 2;

inline constexpr WORD VER_SUITE_SMALLBUSINESS = 0x1;
inline constexpr WORD VER_SUITE_ENTERPRISE = 0x2;
inline constexpr WORD VER_SUITE_BACKOFFICE = 0x4;
inline constexpr WORD VER_SUITE_TERMINAL = 0x10;
inline constexpr WORD VER_SUITE_SMALLBUSINESS_RESTRICTED = 0x20;
inline constexpr WORD VER_SUITE_EMBEDDEDNT = 0x40;
inline constexpr WORD VER_SUITE_DATACENTER = 0x80;
inline constexpr WORD VER_SUITE_SINGLEUSERTS = 0x100;
inline constexpr WORD VER_SUITE_PERSONAL = 0x200;
inline constexpr WORD VER_SUITE_BLADE = 0x400;
inline constexpr WORD VER_SUITE_STORAGE_SERVER = 0x2000;
inline constexpr WORD VER_SUITE_COMPUTE_SERVER = 0x4000;
inline constexpr WORD VER_SUITE_WH_SERVER = 0x8000;

struct SYSTEM_INFO {
    WORD wProcessorArchitecture;
    WORD wReserved;
    DWORD dwPageSize;
    LPVOID lpMinimumApplicationAddress;
    LPVOID lpMaximumApplicationAddress;
    DWORD_PTR dwActiveProcessorMask;
    DWORD dwNumberOfProcessors;
    DWORD dwProcessorType;
    DWORD dwAllocationGranularity;
    WORD wProcessorLevel;
    WORD wProcessorRevision;
};
static_assert(sizeof(SYSTEM_INFO) == 48);

inline constexpr WORD PROCESSOR_ARCHITECTURE_INTEL = 0;
inline constexpr WORD PROCESSOR_ARCHITECTURE_IA64 = 6;
inline constexpr WORD PROCESSOR_ARCHITECTURE_AMD64 = 9;
inline constexpr WORD PROCESSOR_ARCHITECTURE_ARM64 = 12;

struct MEMORYSTATUSEX {
    DWORD dwLength;
    DWORD dwMemoryLoad;
    DWORDLONG ullTotalPhys;
    DWORDLONG ullAvailPhys;
    DWORDLONG ullTotalPageFile;
    DWORDLONG ullAvailPageFile;
    DWORDLONG ullTotalVirtual;
    DWORDLONG ullAvailVirtual;
    DWORDLONG ullAvailExtendedVirtual;
};

struct PROCESS_MEMORY_COUNTERS {
    DWORD cb;
    DWORD PageFaultCount;
    SIZE_T PeakWorkingSetSize;
    SIZE_T WorkingSetSize;
    SIZE_T QuotaPeakPagedPoolUsage;
    SIZE_T QuotaPagedPoolUsage;
    SIZE_T QuotaPeakNonPagedPoolUsage;
    SIZE_T QuotaNonPagedPoolUsage;
    SIZE_T PagefileUsage;
    SIZE_T PeakPagefileUsage;
};

struct SYSTEMTIME {
    WORD wYear;
    WORD wMonth;
    WORD wDayOfWeek;
    WORD wDay;
    WORD wHour;
    WORD wMinute;
    WORD wSecond;
    WORD wMilliseconds;
};

struct TIME_ZONE_INFORMATION {
    LONG Bias;
    WCHAR StandardName[32];
    SYSTEMTIME StandardDate;
    LONG StandardBias;
    WCHAR DaylightName[32];
    SYSTEMTIME DaylightDate;
    LONG DaylightBias;
};
static_assert(sizeof(TIME_ZONE_INFORMATION) == 172);

inline constexpr DWORD TIME_ZONE_ID_UNKNOWN = 0;
inline constexpr DWORD TIME_ZONE_ID_STANDARD = 1;
inline constexpr DWORD TIME_ZONE_ID_DAYLIGHT = 2;
inline constexpr DWORD TIME_ZONE_ID_INVALID = 0xFFFFFFFF;

inline constexpr LCID LOCALE_USER_DEFAULT = 0x400;
inline constexpr LCTYPE LOCALE_ILANGUAGE = 0x1;
inline constexpr LCTYPE LOCALE_SABBREVLANGNAME = 0x3;
inline constexpr LCTYPE LOCALE_STHOUSAND = 0xF;
inline constexpr LCTYPE LOCALE_SGROUPING = 0x10;
inline constexpr LCTYPE LOCALE_SENGLANGUAGE = 0x1001;

inline constexpr DWORD FORMAT_MESSAGE_IGNORE_INSERTS = 0x200;
inline constexpr DWORD FORMAT_MESSAGE_FROM_SYSTEM = 0x1000;
inline constexpr WORD LANG_NEUTRAL = 0;
inline constexpr WORD SUBLANG_DEFAULT = 1;
constexpr WORD MAKELANGID(WORD primary, WORD sub) {
    return static_cast<WORD>((sub << 10) | primary);
}

inline constexpr DWORD FILE_ATTRIBUTE_READONLY = 0x1;
inline constexpr DWORD FILE_ATTRIBUTE_HIDDEN = 0x2;
inline constexpr DWORD FILE_ATTRIBUTE_SYSTEM = 0x4;
inline constexpr DWORD FILE_ATTRIBUTE_DIRECTORY = 0x10;
inline constexpr DWORD FILE_ATTRIBUTE_ARCHIVE = 0x20;
inline constexpr DWORD FILE_ATTRIBUTE_DEVICE = 0x40;
inline constexpr DWORD FILE_ATTRIBUTE_NORMAL = 0x80;
inline constexpr DWORD FILE_ATTRIBUTE_TEMPORARY = 0x100;
inline constexpr DWORD FILE_ATTRIBUTE_SPARSE_FILE = 0x200;
inline constexpr DWORD FILE_ATTRIBUTE_REPARSE_POINT = 0x400;
inline constexpr DWORD FILE_ATTRIBUTE_COMPRESSED = 0x800;
inline constexpr DWORD FILE_ATTRIBUTE_OFFLINE = 0x1000;
inline constexpr DWORD FILE_ATTRIBUTE_NOT_CONTENT_INDEXED = 0x2000;
inline constexpr DWORD FILE_ATTRIBUTE_ENCRYPTED = 0x4000;
inline constexpr DWORD INVALID_FILE_ATTRIBUTES = 0xFFFFFFFF;

ULONGLONG NTAPI VerSetConditionMask(ULONGLONG mask, DWORD typeBits, BYTE condition);
BOOL WINAPI VerifyVersionInfoA(OSVERSIONINFOEXA* probe, DWORD typeBits, DWORDLONG conditions);

HMODULE WINAPI GetModuleHandleA(LPCSTR name);
HMODULE WINAPI LoadLibraryA(LPCSTR name);
FARPROC WINAPI GetProcAddress(HMODULE module, LPCSTR name);

void WINAPI GetSystemInfo(SYSTEM_INFO* info);
BOOL WINAPI GlobalMemoryStatusEx(MEMORYSTATUSEX* status);
HANDLE WINAPI GetCurrentProcess();
DWORD WINAPI GetCurrentProcessId();
DWORD WINAPI GetTimeZoneInformation(TIME_ZONE_INFORMATION* zone);
BOOL WINAPI CloseHandle(HANDLE handle);

DWORD WINAPI GetLastError();
DWORD WINAPI FormatMessageA(DWORD flags, LPCVOID source, DWORD message, DWORD language,
                            LPSTR buffer, DWORD size, void* arguments);

LANGID WINAPI GetSystemDefaultLangID();
DWORD WINAPI VerLanguageNameA(DWORD language, LPSTR buffer, DWORD size);
int WINAPI GetLocaleInfoA(LCID locale, LCTYPE type, LPSTR buffer, int size);

UINT WINAPI GetSystemDirectoryA(LPSTR buffer, UINT size);
UINT WINAPI GetWindowsDirectoryA(LPSTR buffer, UINT size);
DWORD WINAPI GetTempPathA(DWORD size, LPSTR buffer);
DWORD WINAPI GetModuleFileNameA(HMODULE module, LPSTR buffer, DWORD size);
DWORD WINAPI GetCurrentDirectoryA(DWORD size, LPSTR buffer);
DWORD WINAPI GetFileAttributesA(LPCSTR path);

#endif
