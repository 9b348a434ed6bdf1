// What the library asks the platform: every call of every section, its parameters, their order.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <set>

#include "faults/checked_call.h"
#include "platform/stand_in/machine.h"
#include "platform/stand_in/version_resource.h"
#include "recorder.h"

namespace {

using stand_in::Machine;

struct Row {
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

std::string OpenEachWay(const std::string& key, const std::string& closeWritable) {
    return Open(key) + kClose + Open(key, "0x2001F") + closeWritable + Open(key, "0xF003F") +
           closeWritable;
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

// Questions about the version: one field, its type bit, one condition for each value.
std::string Ask(const std::string& field, std::initializer_list<unsigned> values,
                unsigned condition = 1) {
    constexpr std::array kFields = {"minor", "major", "build", "", "", "pack", "suite", "type"};
    const auto number = std::ranges::find(kFields, field) - kFields.begin();
    const std::string bit = Digits(1ULL << number);
    const std::string mask = Digits(1ULL * condition << (3 * number));
    std::string calls;
    for (const unsigned value : values) {
        const std::string set = value != 0 ? " " + field + " " + Digits(value) : "";
        calls += "VerSetConditionMask(0, " + bit + ", " + Digits(condition) +
                 ")\nVerifyVersionInfoA(size 156" + set + ", " + bit + ", " + mask + ")\n";
    }
    return calls;
}

const std::string kVersionAt22631 =
    Ask("type", {1}) +
    Ask("suite",
        {0x4, 0x400, 0x4000, 0x80, 0x2, 0x40, 0x200, 0x100, 0x1, 0x20, 0x2000, 0x10, 0x8000}) +
    Ask("build",
        {100000, 10000, 20000, 30000, 27000, 21000, 22000, 23000, 22500, 23000, 22600, 22700, 22650,
         22610, 22620, 22630, 22640},
        2) +
    Ask("build", {22630, 22631});

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

const std::string kListOneModule = "Module32First(given, size 568)\n" + ReadVersion("ntdll.dll") +
                                   "Module32Next(given, size 568)\nCloseHandle(given)\n";

// clang-format off
const std::vector<Row> kRows = {
    {1, "", {}, ""},
    {2, "", {}, "_time64(null)\n_ctime64(given)\n_tzset()\nGetTimeZoneInformation(given)\n"},
    {3, "", [](Machine& m) { m.version.build = 22631; },
     Ask("major", {10}) + Ask("minor", {0}) + Ask("pack", {0}) + kVersionAt22631 +
         NamesOfVersion10("0")},
    {3, "", [](Machine& m) { m.version.build = 22631, m.version.minor = 1; },  // takes the scan
     Ask("major", {10}) + Ask("minor", {0}) +
         Ask("major", {6, 6, 6, 6, 5, 5, 5, 5, 6, 6, 6, 5, 5, 5, 5, 5, 5, 5, 5, 6, 7, 8, 9, 10}) +
         Ask("minor", {0, 1}) + Ask("type", {1}) + Ask("pack", {1, 2, 3, 4}) +
         kVersionAt22631.substr(Ask("type", {1}).size()) + NamesOfVersion10("1")},
    {4, "", {}, ""},
    {5, "", {},
     "LoadLibraryA(Secur32.dll)\nGetProcAddress(GetUserNameExA)\n"
     "GetUserNameExA(2, given, 1024)\nGetUserNameExA(3, given, 1024)\n"},
    {6, "", {},
     "setlocale(1, null)\nsetlocale(2, null)\nsetlocale(3, null)\nsetlocale(4, null)\n"
     "setlocale(5, null)\nsetlocale(0, null)\nGetSystemDefaultLangID()\n"
     "VerLanguageNameA(1033, given, 1024)\n" +
         LocaleValue(0x1, 5) + LocaleValue(0x1001, 8) + LocaleValue(0x3, 4)},
    {7, "", {}, kNativeSystemInfo + kProcessorKey},
    {7, "", [](Machine& m) { m.available.getNativeSystemInfo = false; },
     "GetModuleHandleA(kernel32.dll)\nGetProcAddress(GetNativeSystemInfo)\nGetSystemInfo(given)\n" +
         kProcessorKey},
    {8, "", {},
     LocaleValue(0x10, 4) + LocaleValue(0xF, 2) +
         "GlobalMemoryStatusEx(size 64)\nLoadLibraryA(psapi.dll)\n"
         "GetProcAddress(GetProcessMemoryInfo)\nGetCurrentProcess()\n"
         "GetProcessMemoryInfo(-1, size 72, 72)\n"},
    {9, "", {},
     "GetSystemDirectoryA(given, 1023)\nGetFileAttributesA(C:/Windows/system32)\n"
     "GetWindowsDirectoryA(given, 1023)\nGetFileAttributesA(C:/Windows)\n"
     "GetTempPathA(1023, given)\nGetFileAttributesA(C:/Users/ann/AppData/Local/Temp/)\n"
     "GetModuleFileNameA(null, given, 1023)\nGetFileAttributesA(C:/Tools/Viewer/viewer.exe)\n"
     "GetCurrentDirectoryA(260, given)\nGetFileAttributesA(C:\\Users\\ann\\Documents)\n"},
    {10, "C:\\Tools\\", {}, "GetFileAttributesA(C:/Tools/)\n"},
    {11, "Software", {}, OpenEachWay("HKCU, Software", kClose)},
    {12, "Software", {}, OpenEachWay("HKCU, Software", kClose)},
    {13, "", {}, OpenEachWay("HKLM, ", "")},  // only reading succeeds
    {14, "", {},
     "GetModuleFileNameA(null, given, 1023)\ngetenv(QB_ROOT_PATH)\ngetenv(PRODUCT)\n"
     "getenv(PACKET)\ngetenv(HOME)\ngetenv(TMPDIR)\n"},
    {15, "Path", {}, "getenv(Path)\n"},
    {16, "", OneModule,
     "GetCurrentProcessId()\nCreateToolhelp32Snapshot(24, 4312)\n" + kListOneModule},
    {16, "explorer.exe",
     [](Machine& m) { OneModule(m), m.badLengthAnswers = 2; },
     "CreateToolhelp32Snapshot(2, 0)\nProcess32First(given, size 304)\n"
     "Process32Next(given, size 304)\nProcess32Next(given, size 304)\nCloseHandle(given)\n"
     "CreateToolhelp32Snapshot(24, 2104)\nCreateToolhelp32Snapshot(24, 2104)\n"
     "CreateToolhelp32Snapshot(24, 2104)\n" + kListOneModule},
    {16, "System", {},  // which is protected
     "CreateToolhelp32Snapshot(2, 0)\nProcess32First(given, size 304)\n"
     "Process32Next(given, size 304)\nCloseHandle(given)\nCreateToolhelp32Snapshot(24, 4)\n"
     "FormatMessageA(4608, null, 5, 1024, given, 256, null)\n",
     "\n  WARNING: CreateToolhelp32Snapshot (of modules) failed with error 5 (Access is denied)"},
    {17, "ntdll.dll", {}, ReadVersion("ntdll.dll")},
    {18, "", {}, ""},
    {19, "", {}, ""},
    {20, "", [](Machine& m) { m.monitors.resize(2, m.monitors.front()); },
     "GetSystemMetrics(78)\nGetSystemMetrics(79)\nGetDC(null)\nGetDeviceCaps(given, 88)\n"
     "GetDeviceCaps(given, 90)\nReleaseDC(null, given)\n"
     "EnumDisplayMonitors(null, null, given, given)\nGetMonitorInfoA(given, size 72)\n"
     "GetMonitorInfoA(given, size 72)\n"},
    {21, "", {}, ""},
};
// clang-format on

TEST(ScriptedPlatform, EveryCallAndParameterIsTheExpectedOne) {
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.kind);
        Machine machine;
        if (row.change) {
            row.change(machine);
        }
        const stand_in::ScopedMachine scope(machine);
        std::string seen;
        recording = &seen;
        testing::internal::CaptureStdout();
        const faults::CallOutcome outcome = faults::CallAlone(row.kind, 7, row.argument);
        EXPECT_EQ(testing::internal::GetCapturedStdout(), row.output);
        recording = nullptr;
        EXPECT_EQ(outcome.violations, "");
        EXPECT_EQ(outcome.text.has_value(), row.kind != 19 && row.kind != 21);
        EXPECT_EQ(seen, row.calls);
    }
}

TEST(ScriptedPlatform, EveryPlatformCallLeadsToTheStandIn) {
    const std::set<std::string> harmless = {"memchr", "memcmp", "memcpy",
                                            "memset", "printf", "strlen"};
    for (const std::string& import : ImportsLeftAlone()) {
        EXPECT_TRUE(harmless.contains(import)) << import;
    }
}

}  // namespace
