// The sections' platform calls without the sections. own_cost checks that they are the same.
#include <initializer_list>

#include "bench.h"
#include "os/registry_values.h"
#include "os/version_tests.h"
#include "platform/named_function.h"
#include "platform/registry_key.h"
#include "platform/system_info.h"

namespace qb_support::bench {

namespace {

// What the platform fills, and nobody reads.
alignas(8) char scratch[64 * 1024];

void AskForNothing(const char* /*argument*/) {}

void AskForTime(const char* /*argument*/) {
    const auto now = _time64(nullptr);
    _ctime64(&now);
    _tzset();
    TIME_ZONE_INFORMATION zone{};
    GetTimeZoneInformation(&zone);
}

void ReadValues(const char* path, std::initializer_list<const char*> names) {
    const CRegistryKey key(HKEY_LOCAL_MACHINE, path, KEY_READ);
    CRegistryKey::TextBuffer text;
    DWORD type = REG_NONE;
    for (const char* const name : names) {
        key.QueryText(name, text, type);
    }
}

void AskForOperatingSystem(const char* /*argument*/) {
    OSVERSIONINFOEXA version;
    DetectVersionFromTable(version);  // probes and nothing else
    ReadValues(kCurrentVersionKey, {"EditionID"});
    DWORD type = 0;
    FindFunction<decltype(GetProductInfo)>(GetModuleHandleA("kernel32.dll"), "GetProductInfo")(
        10, 0, 0, 0, &type);
    for (const char* const name : {"ProductName", "DisplayVersion", "UBR"}) {
        ReadValues(kCurrentVersionKey, {name});
    }
    QuerySystemInfo();
}

void AskForUserName(const char* /*argument*/) {
    auto* const getUserName =
        FindFunction<decltype(GetUserNameExA)>(LoadLibraryA("Secur32.dll"), "GetUserNameExA");
    for (const auto form : {NameSamCompatible, NameDisplay}) {
        ULONG size = 1024;
        getUserName(form, scratch, &size);
    }
}

void AskForLocaleValue(LCTYPE type) {
    const int size = GetLocaleInfoA(LOCALE_USER_DEFAULT, type, nullptr, 0);
    GetLocaleInfoA(LOCALE_USER_DEFAULT, type, scratch, size);
}

void AskForLocale(const char* /*argument*/) {
    for (const int category : {LC_COLLATE, LC_CTYPE, LC_MONETARY, LC_NUMERIC, LC_TIME, LC_ALL}) {
        setlocale(category, nullptr);
    }
    VerLanguageNameA(GetSystemDefaultLangID(), scratch, 1024);
    AskForLocaleValue(LOCALE_ILANGUAGE);
    AskForLocaleValue(LOCALE_SENGLANGUAGE);
    AskForLocaleValue(LOCALE_SABBREVLANGNAME);
}

void AskForHardware(const char* /*argument*/) {
    QuerySystemInfo();
    ReadValues("HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\0",
               {"ProcessorNameString", "Identifier", "VendorIdentifier"});
}

void AskForMemory(const char* /*argument*/) {
    AskForLocaleValue(LOCALE_SGROUPING);
    AskForLocaleValue(LOCALE_STHOUSAND | LOCALE_USE_CP_ACP);
    MEMORYSTATUSEX memory{};
    memory.dwLength = sizeof(memory);
    GlobalMemoryStatusEx(&memory);
    PROCESS_MEMORY_COUNTERS counters{};
    FindFunction<decltype(GetProcessMemoryInfo)>(LoadLibraryA("psapi.dll"), "GetProcessMemoryInfo")(
        GetCurrentProcess(), &counters, sizeof(counters));
}

void AskForDirectory(const char* path) {
    GetFileAttributesA(path);
}

void AskForDirectories(const char* /*argument*/) {
    GetSystemDirectoryA(scratch, 1023);
    AskForDirectory(scratch);
    GetWindowsDirectoryA(scratch, 1023);
    AskForDirectory(scratch);
    GetTempPathA(1023, scratch);
    AskForDirectory(scratch);
    GetModuleFileNameA(nullptr, scratch, 1023);
    AskForDirectory(scratch);
    GetCurrentDirectoryA(MAX_PATH, scratch);
    AskForDirectory(scratch);
}

void OpenKey(HKEY root, const char* path) {
    for (const REGSAM access :
         {REGSAM{KEY_READ}, REGSAM{KEY_READ | KEY_WRITE}, REGSAM{KEY_ALL_ACCESS}}) {
        const CRegistryKey key(root, path, access);
    }
}

void OpenUserKey(const char* path) {
    OpenKey(HKEY_CURRENT_USER, path);
}

void OpenMachineKey(const char* path) {
    OpenKey(HKEY_LOCAL_MACHINE, path);
}

void AskForVariable(const char* name) {
    getenv(name);
}

void AskForApplication(const char* /*argument*/) {
    GetModuleFileNameA(nullptr, scratch, 1023);
    for (const char* const name : {"QB_ROOT_PATH", "PRODUCT", "PACKET", "HOME", "TMPDIR"}) {
        AskForVariable(name);
    }
}

void AskForModule(const char* name) {
    DWORD ignored = 0;
    const DWORD size = GetFileVersionInfoSizeA(name, &ignored);
    void* value = nullptr;
    UINT length = 0;
    if (size == 0 || size > sizeof(scratch) || GetFileVersionInfoA(name, 0, size, scratch) == 0 ||
        VerQueryValueA(scratch, "\\VarFileInfo\\Translation", &value, &length) == 0) {
        return;
    }
    // Where Wine's own files have it; looking in vain takes a little less.
    VerQueryValueA(scratch, "\\StringFileInfo\\040904B0\\ProductVersion", &value, &length);
}

void AskForModules(const char* /*argument*/) {
    HANDLE snapshot =
        CreateToolhelp32Snapshot(TH32CS_SNAPMODULE | TH32CS_SNAPMODULE32, GetCurrentProcessId());
    MODULEENTRY32 entry{};
    entry.dwSize = sizeof(entry);
    for (BOOL more = Module32First(snapshot, &entry); more != 0;
         more = Module32Next(snapshot, &entry)) {
        AskForModule(entry.szModule);
    }
    CloseHandle(snapshot);
}

BOOL CALLBACK AskForMonitor(HMONITOR monitor, HDC /*context*/, RECT* /*area*/, LPARAM /*data*/) {
    MONITORINFOEXA info{};
    info.cbSize = sizeof(info);
    return GetMonitorInfoA(monitor, &info);
}

void AskForDisplay(const char* /*argument*/) {
    GetSystemMetrics(SM_CXVIRTUALSCREEN);
    GetSystemMetrics(SM_CYVIRTUALSCREEN);
    HDC screen = GetDC(nullptr);
    GetDeviceCaps(screen, LOGPIXELSX);
    GetDeviceCaps(screen, LOGPIXELSY);
    ReleaseDC(nullptr, screen);
    EnumDisplayMonitors(nullptr, nullptr, AskForMonitor, 0);
}

}  // namespace

constexpr std::array<Section, 19> kSections = {{
    {QbSupportBanner, "1 banner", "", AskForNothing},
    {QbSupportDateTime, "2 date and time", "", AskForTime},
    {QbSupportOperatingSystem, "3 operating system", "", AskForOperatingSystem},
    {QbSupportUname, "4 uname", "", AskForNothing},
    {QbSupportUserName, "5 user name", "", AskForUserName},
    {QbSupportLocale, "6 locale", "", AskForLocale},
    {QbSupportHardware, "7 hardware", "", AskForHardware},
    {QbSupportMemory, "8 memory", "", AskForMemory},
    {QbSupportSystemDirectories, "9 system directories", "", AskForDirectories},
    {QbSupportAppDirectory, "10 app directory", "C:\\Windows", AskForDirectory},
    {QbSupportRegistry, "11 registry", "Software", OpenUserKey},
    {QbSupportUserAppKey, "12 user app key", "Software", OpenUserKey},
    {QbSupportMachineAppKey, "13 machine app key", kCurrentVersionKey, OpenMachineKey},
    {QbSupportApplication, "14 application", "", AskForApplication},
    {QbSupportEnvironment, "15 environment", "USERNAME", AskForVariable},
    {QbSupportModules, "16 modules", "", AskForModules},
    {QbSupportModule, "17 module", "ntdll.dll", AskForModule},
    {QbSupportLimits, "18 limits", "", AskForNothing},
    {QbSupportDisplay, "20 display", "", AskForDisplay},
}};

}  // namespace qb_support::bench
