// What the library asks the platform: every call of every section, its parameters, their order.
#include <gtest/gtest.h>

#include <functional>
#include <set>

#include "faults/checked_call.h"
#include "platform/stand_in/machine.h"
#include "platform/stand_in/version_resource.h"
#include "recorder.h"

namespace {

using stand_in::Machine;

struct Row {
    const char* what;
    int kind;
    const char* argument;
    std::function<void(Machine&)> change;
    std::string calls;
    std::string output = "";
};

std::string Open(const std::string& key, const char* access = "0x20019") {
    return "RegOpenKeyExA(" + key + ", 0, " + access + ", given)\n";
}

const std::string kClose = "RegCloseKey(key)\n";

std::string Query(const std::string& value, int size = 255) {
    return "RegQueryValueExA(key, " + value + ", null, 0, given, " + std::to_string(size) + ")\n";
}

std::string ReadSystemValue(const std::string& value, int size = 255) {
    return Open("HKLM, SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion") + Query(value, size) +
           kClose;
}

const std::string kNativeSystemInfo =
    "GetModuleHandleA(kernel32.dll)\n"
    "GetProcAddress(GetNativeSystemInfo)\n"
    "GetNativeSystemInfo(given)\n";

const std::string kProcessorKey = Open("HKLM, HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\0") +
                                  Query("ProcessorNameString") + Query("Identifier") +
                                  Query("VendorIdentifier") + kClose;

std::string LocaleValue(int type, int size) {
    const std::string call = "GetLocaleInfoA(1024, " + std::to_string(type);
    return call + ", null, 0)\n" + call + ", given, " + std::to_string(size) + ")\n";
}

std::string ReadVersion(const std::string& file) {
    const auto size = std::to_string(GetFileVersionInfoSizeA(file.c_str(), nullptr));
    return "GetFileVersionInfoSizeA(" + file + ", 0)\nGetFileVersionInfoA(" + file + ", 0, " +
           size +
           ", given)\n"
           "VerQueryValueA(given, \\VarFileInfo\\Translation, given, 0)\n"
           "VerQueryValueA(given, \\StringFileInfo\\040904b0\\ProductVersion, given, 0)\n";
}

// One question about the version: one field, its type bit, one condition.

struct Field {
    const char* name;
    unsigned bit;
    int maskShift;  // three bits for every type bit
};
constexpr Field kMinor{"minor", 0x1, 0};
constexpr Field kMajor{"major", 0x2, 3};
constexpr Field kBuild{"build", 0x4, 6};
constexpr Field kPack{"pack", 0x20, 15};
constexpr Field kSuite{"suite", 0x40, 18};
constexpr Field kType{"type", 0x80, 21};

std::string Number(unsigned long long number) {
    char text[32];
    std::snprintf(text, sizeof(text), number > 0xFFFF ? "0x%llX" : "%llu", number);
    return text;
}

std::string Ask(const Field& field, unsigned value, unsigned condition = 1) {
    const std::string bit = Number(field.bit);
    const std::string set =
        value != 0 ? " " + std::string(field.name) + " " + Number(value) : std::string();
    return "VerSetConditionMask(0, " + bit + ", " + Number(condition) +
           ")\nVerifyVersionInfoA(size 156" + set + ", " + bit + ", " +
           Number(static_cast<unsigned long long>(condition) << field.maskShift) + ")\n";
}

std::string AskEach(const Field& field, std::initializer_list<unsigned> values,
                    unsigned condition = 1) {
    std::string calls;
    for (const unsigned value : values) {
        calls += Ask(field, value, condition);
    }
    return calls;
}

const std::string kSuites = AskEach(
    kSuite, {0x4, 0x400, 0x4000, 0x80, 0x2, 0x40, 0x200, 0x100, 0x1, 0x20, 0x2000, 0x10, 0x8000});
const std::string kBuild22631 =
    AskEach(kBuild,
            {100000, 10000, 20000, 30000, 27000, 21000, 22000, 23000, 22500, 23000, 22600, 22700,
             22650, 22610, 22620, 22630, 22640},
            2) +
    AskEach(kBuild, {22630, 22631});

std::string NamesOfVersion10(const char* minor) {
    return ReadSystemValue("EditionID") +
           "GetModuleHandleA(kernel32.dll)\nGetProcAddress(GetProductInfo)\nGetProductInfo(10, " +
           minor + ", 0, 0, 0)\n" + ReadSystemValue("ProductName") +
           ReadSystemValue("DisplayVersion") + ReadSystemValue("UBR", 4) + kNativeSystemInfo;
}

void OneModule(Machine& machine) {
    for (stand_in::Process& process : machine.processes) {
        process.modules = {{"ntdll.dll", "C:\\ntdll.dll"}};
    }
}

const std::string kOpenUserKey = Open("HKCU, Software") + kClose +
                                 Open("HKCU, Software", "0x2001F") + kClose +
                                 Open("HKCU, Software", "0xF003F") + kClose;
const std::string kListOneModule = "Module32First(given, size 568)\n" + ReadVersion("ntdll.dll") +
                                   "Module32Next(given, size 568)\nCloseHandle(given)\n";
const std::string kDisplay =
    "GetSystemMetrics(78)\nGetSystemMetrics(79)\nGetDC(null)\nGetDeviceCaps(given, 88)\n"
    "GetDeviceCaps(given, 90)\nReleaseDC(null, given)\n"
    "EnumDisplayMonitors(null, null, given, given)\n";
const std::string kVersionAt22631 = AskEach(kType, {1}) + kSuites + kBuild22631;

// clang-format off
const std::vector<Row> kRows = {
    {"banner", 1, "", {}, ""},
    {"time", 2, "", {}, "_time64(null)\n_ctime64(given)\n_tzset()\nGetTimeZoneInformation(given)\n"},
    {"Windows 11", 3, "", [](Machine& machine) { machine.version.build = 22631; },
     Ask(kMajor, 10) + Ask(kMinor, 0) + Ask(kPack, 0) + kVersionAt22631 + NamesOfVersion10("0")},
    {"version 10.1, found by the scan", 3, "",
     [](Machine& machine) {
         machine.version.build = 22631;
         machine.version.minor = 1;
     },
     Ask(kMajor, 10) + Ask(kMinor, 0) +
         AskEach(kMajor, {6, 6, 6, 6, 5, 5, 5, 5, 6, 6, 6, 5, 5, 5, 5, 5, 5, 5, 5}) +
         AskEach(kMajor, {6, 7, 8, 9, 10}) + AskEach(kMinor, {0, 1}) + AskEach(kType, {1}) +
         AskEach(kPack, {1, 2, 3, 4}) + kSuites + kBuild22631 + NamesOfVersion10("1")},
    {"uname", 4, "", {}, ""},
    {"user name", 5, "", {},
     "LoadLibraryA(Secur32.dll)\nGetProcAddress(GetUserNameExA)\n"
     "GetUserNameExA(2, given, 1024)\nGetUserNameExA(3, given, 1024)\n"},
    {"user name without the library", 5, "", [](Machine& m) { m.available.secur32 = false; },
     "LoadLibraryA(Secur32.dll)\n"},
    {"locale", 6, "", {},
     "setlocale(1, null)\nsetlocale(2, null)\nsetlocale(3, null)\nsetlocale(4, null)\n"
     "setlocale(5, null)\nsetlocale(0, null)\nGetSystemDefaultLangID()\n"
     "VerLanguageNameA(1033, given, 1024)\n" +
         LocaleValue(0x1, 5) + LocaleValue(0x1001, 8) + LocaleValue(0x3, 4)},
    {"hardware", 7, "", {}, kNativeSystemInfo + kProcessorKey},
    {"hardware on an old system", 7, "",
     [](Machine& m) { m.available.getNativeSystemInfo = false; },
     "GetModuleHandleA(kernel32.dll)\nGetProcAddress(GetNativeSystemInfo)\nGetSystemInfo(given)\n" +
         kProcessorKey},
    {"memory", 8, "", {},
     LocaleValue(0x10, 4) + LocaleValue(0xF, 2) +
         "GlobalMemoryStatusEx(size 64)\nLoadLibraryA(psapi.dll)\n"
         "GetProcAddress(GetProcessMemoryInfo)\nGetCurrentProcess()\n"
         "GetProcessMemoryInfo(-1, size 72, 72)\n"},
    {"system directories", 9, "", {},
     "GetSystemDirectoryA(given, 1023)\nGetFileAttributesA(C:/Windows/system32)\n"
     "GetWindowsDirectoryA(given, 1023)\nGetFileAttributesA(C:/Windows)\n"
     "GetTempPathA(1023, given)\nGetFileAttributesA(C:/Users/ann/AppData/Local/Temp/)\n"
     "GetModuleFileNameA(null, given, 1023)\nGetFileAttributesA(C:/Tools/Viewer/viewer.exe)\n"
     "GetCurrentDirectoryA(260, given)\nGetFileAttributesA(C:\\Users\\ann\\Documents)\n"},
    {"application directory", 10, "C:\\Tools\\", {}, "GetFileAttributesA(C:/Tools/)\n"},
    {"user root key", 11, "Software", {}, kOpenUserKey},
    {"user application key", 12, "Software", {}, kOpenUserKey},
    {"machine root key, read only", 13, "", {},
     Open("HKLM, ") + kClose + Open("HKLM, ", "0x2001F") + Open("HKLM, ", "0xF003F")},
    {"application", 14, "", {},
     "GetModuleFileNameA(null, given, 1023)\ngetenv(QB_ROOT_PATH)\ngetenv(PRODUCT)\n"
     "getenv(PACKET)\ngetenv(HOME)\ngetenv(TMPDIR)\n"},
    {"environment", 15, "Path", {}, "getenv(Path)\n"},
    {"own modules", 16, "", OneModule,
     "GetCurrentProcessId()\nCreateToolhelp32Snapshot(24, 4312)\n" + kListOneModule},
    {"another process's modules, busy twice", 16, "explorer.exe",
     [](Machine& machine) {
         OneModule(machine);
         machine.badLengthAnswers = 2;
     },
     "CreateToolhelp32Snapshot(2, 0)\nProcess32First(given, size 304)\n"
     "Process32Next(given, size 304)\nProcess32Next(given, size 304)\nCloseHandle(given)\n"
     "CreateToolhelp32Snapshot(24, 2104)\nCreateToolhelp32Snapshot(24, 2104)\n"
     "CreateToolhelp32Snapshot(24, 2104)\n" +
         kListOneModule},
    {"modules of a protected process", 16, "System", {},
     "CreateToolhelp32Snapshot(2, 0)\nProcess32First(given, size 304)\n"
     "Process32Next(given, size 304)\nCloseHandle(given)\nCreateToolhelp32Snapshot(24, 4)\n"
     "FormatMessageA(4608, null, 5, 1024, given, 256, null)\n",
     "\n  WARNING: CreateToolhelp32Snapshot (of modules) failed with error 5 (Access is denied)"},
    {"a process without modules", 16, "explorer.exe",
     [](Machine& m) { m.processes[2].modules = {}; },
     "CreateToolhelp32Snapshot(2, 0)\nProcess32First(given, size 304)\n"
     "Process32Next(given, size 304)\nProcess32Next(given, size 304)\nCloseHandle(given)\n"
     "CreateToolhelp32Snapshot(24, 2104)\nModule32First(given, size 568)\n"
     "FormatMessageA(4608, null, 18, 1024, given, 256, null)\nCloseHandle(given)\n",
     "\n  WARNING: Module32First failed with error 18 (There are no more files)"},
    {"one module", 17, "ntdll.dll", {}, ReadVersion("ntdll.dll")},
    {"limits", 18, "", {}, ""},
    {"reserved", 19, "", {}, ""},
    {"display", 20, "", [](Machine& m) { m.monitors.resize(2, m.monitors.front()); },
     kDisplay + "GetMonitorInfoA(given, size 72)\nGetMonitorInfoA(given, size 72)\n"},
    {"unknown kind", 21, "", {}, ""},
};
// clang-format on

TEST(ScriptedPlatform, EveryCallAndParameterIsTheStatedOne) {
    std::size_t calls = 0;
    std::set<int> kinds;
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.what);
        Machine machine;
        if (row.change) {
            row.change(machine);
        }
        const stand_in::ScopedMachine scope(machine);
        Recorder recorder;
        testing::internal::CaptureStdout();
        const faults::CallOutcome outcome = faults::CallAlone(row.kind, 7, row.argument);
        EXPECT_EQ(testing::internal::GetCapturedStdout(), row.output);
        EXPECT_EQ(outcome.violations, "");
        EXPECT_EQ(outcome.text.has_value(), row.kind != 19 && row.kind != 21);
        std::string seen;
        for (const std::string& call : recorder.Calls()) {
            // The last error may be asked for as often as is handy.
            seen += call == "GetLastError()" ? "" : call + "\n";
        }
        EXPECT_EQ(seen, row.calls);
        calls += recorder.Calls().size();
        kinds.insert(row.kind);
    }
    EXPECT_EQ(kinds.size(), 21U);
    std::printf(
        "Tried: %zu described machines, %zu platform calls compared with their parameters\n",
        kRows.size(), calls);
}

TEST(ScriptedPlatform, EveryPlatformCallLeadsToTheStandIn) {
    const std::set<std::string> harmless = {"memchr", "memcmp", "memcpy",
                                            "memset", "printf", "strlen"};
    for (const std::string& import : ImportsLeftAlone()) {
        EXPECT_TRUE(harmless.contains(import)) << import;
    }
}

// Questions about version, service pack and product type take any answer but 0 for yes; those about
// suites and the build number only 1.
TEST(ScriptedPlatform, YesIsExactlyOneWhereItIsSaidSo) {
    Machine machine;
    machine.version.productType = 3;
    machine.version.major = 6;
    machine.version.minor = 1;
    machine.version.servicePackMajor = 1;
    const stand_in::ScopedMachine scope(machine);
    yesAnswer = 2;
    const std::string text = faults::CallAlone(3, 0, "").text.value_or("nothing");
    yesAnswer = 1;
    EXPECT_TRUE(
        text.starts_with("Microsoft Windows Server 2008 R2, 64-bit\nEnterprise Edition\n"
                         "6.1 Build 0\n[21H2 -- 0.1288]\nService Pack 1\n"))
        << text;
}

}  // namespace
