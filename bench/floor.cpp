#include <initializer_list>

#include "bench.h"
#include "os/registry_values.h"
#include "os/version_tests.h"
#include "platform/named_function.h"
#include "platform/registry_key.h"
#include "platform/system_info.h"

namespace qb_support::bench {

namespace {

// The platform writes its answers here. They are not used.
alignas(8) char scratch[64 * 1024];

void ReadValues(const char* path, std::initializer_list<const char*> names) {
    const CRegistryKey key(HKEY_LOCAL_MACHINE, path, KEY_READ);
    CRegistryKey::TextBuffer text;
    DWORD type = REG_NONE;
    for (const char* const name : names) {
        key.QueryText(name, text, type);
    }
}

template <bool IsUser>
void OpenKey(const char* path) {
    HKEY root = IsUser ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
    for (const int access : {KEY_READ, KEY_READ | KEY_WRITE, KEY_ALL_ACCESS}) {
        const CRegistryKey key(root, path, static_cast<REGSAM>(access));
    }
}

void ReadLocale(std::initializer_list<LCTYPE> types) {
    for (const LCTYPE type : types) {
        const int size = GetLocaleInfoA(LOCALE_USER_DEFAULT, type, nullptr, 0);
        GetLocaleInfoA(LOCALE_USER_DEFAULT, type, scratch, size);
    }
}

void ReadVersion(const char* file) {
    DWORD ignored = 0;
    const DWORD size = GetFileVersionInfoSizeA(file, &ignored);
    void* value = nullptr;
    UINT length = 0;
    if (size != 0 && size <= sizeof(scratch) && GetFileVersionInfoA(file, 0, size, scratch) != 0 &&
        VerQueryValueA(scratch, "\\VarFileInfo\\Translation", &value, &length) != 0) {
        // Wine's own files have it here. A query that finds nothing takes a little less time.
        VerQueryValueA(scratch, "\\StringFileInfo\\040904B0\\ProductVersion", &value, &length);
    }
}

BOOL CALLBACK ReadMonitor(HMONITOR monitor, HDC /*context*/, RECT* /*area*/, LPARAM /*data*/) {
    MONITORINFOEXA info{};
    info.cbSize = sizeof(info);
    return GetMonitorInfoA(monitor, &info);
}

constexpr Floor kTable[] = {
    {QbSupportBanner, [](const char*) {}},
    {QbSupportDateTime,
     [](const char*) {
         const auto now = _time64(nullptr);
         _ctime64(&now);
         _tzset();
         TIME_ZONE_INFORMATION zone{};
         GetTimeZoneInformation(&zone);
     }},
    {QbSupportOperatingSystem,
     [](const char*) {
         OSVERSIONINFOEXA version;
         DetectVersionFromTable(version);  // makes the version tests and nothing else
         ReadValues(kCurrentVersionKey, {"EditionID"});
         DWORD type = 0;
         FindFunction<decltype(GetProductInfo)>(GetModuleHandleA("kernel32.dll"), "GetProductInfo")(
             10, 0, 0, 0, &type);
         for (const char* const name : {"ProductName", "DisplayVersion", "UBR"}) {
             ReadValues(kCurrentVersionKey, {name});
         }
         QuerySystemInfo();
     }},
    {QbSupportUname, [](const char*) {}},
    {QbSupportUserName,
     [](const char*) {
         auto* const getUserName =
             FindFunction<decltype(GetUserNameExA)>(LoadLibraryA("Secur32.dll"), "GetUserNameExA");
         for (const auto form : {NameSamCompatible, NameDisplay}) {
             ULONG size = 1024;
             getUserName(form, scratch, &size);
         }
     }},
    {QbSupportLocale,
     [](const char*) {
         for (const int part : {LC_COLLATE, LC_CTYPE, LC_MONETARY, LC_NUMERIC, LC_TIME, LC_ALL}) {
             setlocale(part, nullptr);
         }
         VerLanguageNameA(GetSystemDefaultLangID(), scratch, 1024);
         ReadLocale({LOCALE_ILANGUAGE, LOCALE_SENGLANGUAGE, LOCALE_SABBREVLANGNAME});
     }},
    {QbSupportHardware,
     [](const char*) {
         QuerySystemInfo();
         ReadValues("HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\0",
                    {"ProcessorNameString", "Identifier", "VendorIdentifier"});
     }},
    {QbSupportMemory,
     [](const char*) {
         ReadLocale({LOCALE_SGROUPING, LOCALE_STHOUSAND | LOCALE_USE_CP_ACP});
         MEMORYSTATUSEX memory{};
         memory.dwLength = sizeof(memory);
         GlobalMemoryStatusEx(&memory);
         PROCESS_MEMORY_COUNTERS counters{};
         FindFunction<decltype(GetProcessMemoryInfo)>(
             LoadLibraryA("psapi.dll"), "GetProcessMemoryInfo")(GetCurrentProcess(), &counters,
                                                                sizeof(counters));
     }},
    {QbSupportSystemDirectories,
     [](const char*) {
         GetSystemDirectoryA(scratch, 1023);
         GetFileAttributesA(scratch);
         GetWindowsDirectoryA(scratch, 1023);
         GetFileAttributesA(scratch);
         GetTempPathA(1023, scratch);
         GetFileAttributesA(scratch);
         GetModuleFileNameA(nullptr, scratch, 1023);
         GetFileAttributesA(scratch);
         GetCurrentDirectoryA(MAX_PATH, scratch);
         GetFileAttributesA(scratch);
     }},
    {QbSupportAppDirectory, [](const char* path) { GetFileAttributesA(path); }, "C:\\Windows"},
    {QbSupportRegistry, OpenKey<true>, "Software"},
    {QbSupportUserAppKey, OpenKey<true>, "Software"},
    {QbSupportMachineAppKey, OpenKey<false>, kCurrentVersionKey},
    {QbSupportApplication,
     [](const char*) {
         GetModuleFileNameA(nullptr, scratch, 1023);
         for (const char* const name : {"QB_ROOT_PATH", "PRODUCT", "PACKET", "HOME", "TMPDIR"}) {
             getenv(name);
         }
     }},
    {QbSupportEnvironment, [](const char* name) { static_cast<void>(getenv(name)); }, "USERNAME"},
    {QbSupportModules,
     [](const char*) {
         HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPMODULE | TH32CS_SNAPMODULE32,
                                                    GetCurrentProcessId());
         MODULEENTRY32 entry{};
         entry.dwSize = sizeof(entry);
         for (BOOL more = Module32First(snapshot, &entry); more != 0;
              more = Module32Next(snapshot, &entry)) {
             ReadVersion(entry.szModule);
         }
         CloseHandle(snapshot);
     }},
    {QbSupportModule, ReadVersion, "ntdll.dll"},
    {QbSupportLimits, [](const char*) {}},
    {QbSupportDisplay,
     [](const char*) {
         GetSystemMetrics(SM_CXVIRTUALSCREEN);
         GetSystemMetrics(SM_CYVIRTUALSCREEN);
         HDC screen = GetDC(nullptr);
         GetDeviceCaps(screen, LOGPIXELSX);
         GetDeviceCaps(screen, LOGPIXELSY);
         ReleaseDC(nullptr, screen);
         EnumDisplayMonitors(nullptr, nullptr, ReadMonitor, 0);
     }},
};

}  // namespace

const std::span<const Floor> kFloors = kTable;

}  // namespace qb_support::bench
