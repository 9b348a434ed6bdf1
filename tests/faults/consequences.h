// What a failed platform call does to a section's text, on a machine where each failure shows.
#ifndef QBSUPPORT_TESTS_FAULTS_CONSEQUENCES_H
#define QBSUPPORT_TESTS_FAULTS_CONSEQUENCES_H

#include <string_view>
#include <utility>
#include <vector>

#include "platform/stand_in/calls.h"

namespace faults {

// What stands in the text without a fault and what replaces it. A tab stands for the indent, a
// tilde for the line feed that ends some sections under the separator flag.
using Edits = std::vector<std::pair<std::string_view, std::string_view>>;

// Calls of a function by their number, 1 for the first; kEach: failing the nth call changes the nth
// occurrence of the edit's text.
struct Ordinals {
    std::uint64_t first;
    std::uint64_t last;
};
inline constexpr Ordinals kEach = {0, 0};
inline constexpr Ordinals kAny = {1, UINT64_MAX};

enum class Result { Text, NoText };
enum class When { Always, WithArgument };

// A failed call that has no row here must leave the text as it is.
struct Consequence {
    int kind;
    std::vector<stand_in::PlatformCall> calls;
    Ordinals ordinals;
    Edits edits{};
    Result result = Result::Text;
    When when = When::Always;
    std::string_view warning{};
};

// How the warnings of the module walk begin; the system's message for the error follows.
inline constexpr std::string_view kNoSnapshot =
    "\n  WARNING: CreateToolhelp32Snapshot (of modules) failed with error 8 (Not enough memory";
inline constexpr std::string_view kNoFirstModule =
    "\n  WARNING: Module32First failed with error 8 (Not enough memory";
inline constexpr std::string_view kLastModule = "\tC:/ntdll.dll  [1.0]\r\n";
inline constexpr std::string_view kMonitor =
    "\tMonitor   1      0      0   1920   1080   1920   1080  Primary\r\n";

using enum stand_in::PlatformCall;

inline constexpr std::string_view kUserNames =
    "\tUser name:         [WORKSTATION\\ann]\n\tUser display name: [Ann Example]\n~";
inline constexpr std::string_view kProcessMemory =
    "\tProcess working set:      40,960 KB\r\n\tProcess peak working set: 49,152 KB\r\n"
    "\tProcess pagefile usage:   32,768 KB\r\n\tProcess peak pf. usage:   36,864 KB\r\n"
    "\tProcess page faults:      12,345\r\n";

inline const std::vector<Consequence>& Consequences() {
    const Edits noMemory = {{"16,777,216", "0"},
                            {"10,485,760", "0"},
                            {"12,582,912", "0"},
                            {"137,438,953,344", "0"},
                            {"137,434,718,208", "0"}};
    const Edits noProcessor = {{"Intel(R) Core(TM) i7-9700 CPU @ 3.00GHz", ""},
                               {"Intel64 Family 6 Model 158 Stepping 13", ""},
                               {"GenuineIntel", ""}};
    const Edits noModules = {{"\tC:/viewer.exe  [1.0]\r\n", ""}, {kLastModule, ""}};
    const Edits registryEdition = {
        {"Enterprise Edition\n", "Enterprise\n"},
        {"\t\n\t[OS ID: Windows 10 Enterprise]\n\t[Edition ID: Enterprise]\n", ""}};
    static const std::vector<Consequence> kRows = {
        {2, {Ctime64}, kAny, {{"Wed Jan 05 09:07:03 2022", ""}}},
        {2,
         {GetTimeZoneInformation},
         kAny,
         {{"-1:0h [-3600s]", "0:0h [0s]"}, {" -1:0h\n", " 0:0h\n"}}},

        {3, {VerifyVersionInfoA}, {4, 4}, {{"Windows 10,", ","}}},  // is it a workstation?
        {3, {VerifyVersionInfoA}, {38, 38}, {{"Build 19044", "Build 0"}, {"-- 19044", "-- 0"}}},
        {3, {GetModuleHandleA, GetProcAddress}, {1, 1}, registryEdition},
        {3, {GetProductInfo}, kAny, registryEdition},
        {3, {GetModuleHandleA, GetProcAddress}, {2, 2}, {{"64-bit", "32-bit"}}},
        {3, {RegOpenKeyExA, RegQueryValueExA}, {1, 1}, {{"ID: Enterprise]", "ID: ]"}}},
        {3, {RegOpenKeyExA, RegQueryValueExA}, {2, 2}, {{"ID: Windows 10 Enterprise]", "ID: ]"}}},
        {3, {RegOpenKeyExA, RegQueryValueExA}, {3, 3}, {{"\t[21H2 -- 19044.1288]\n", ""}}},
        {3, {RegOpenKeyExA, RegQueryValueExA}, {4, 4}, {{" -- 19044.1288", ""}}},

        {5, {LoadLibraryA, GetProcAddress}, kAny, {{kUserNames, ""}}},
        {5, {GetUserNameExA}, {1, 1}, {{"WORKSTATION\\ann", "ERROR"}}},
        {5, {GetUserNameExA}, {2, 2}, {{"Ann Example", "ERROR"}}},

        {6, {Setlocale}, kEach, {{"[C]", "[Unknown]"}}},
        {6, {VerLanguageNameA}, kAny, {{"English (United States)", ""}}},
        {6, {GetLocaleInfoA}, {1, 2}, {{" 0409\n", " \n"}}},
        {6, {GetLocaleInfoA}, {3, 4}, {{" English\n", " \n"}}},
        {6, {GetLocaleInfoA}, {5, 6}, {{" ENU\n", " \n"}}},

        {7, {RegOpenKeyExA}, kAny, noProcessor},
        {7, {RegQueryValueExA}, kAny, {}, Result::NoText},

        {8, {GetLocaleInfoA}, kAny, {{",", ""}}},
        {8, {GlobalMemoryStatusEx}, kAny, noMemory},
        {8, {LoadLibraryA, GetProcAddress, GetProcessMemoryInfo}, kAny, {{kProcessMemory, ""}}},

        {9, {GetSystemDirectoryA}, kAny, {{"[C:/Windows/system32] (DIR:RW)", "[] (N/A)"}}},
        {9, {GetWindowsDirectoryA}, kAny, {{"[C:/Windows] (DIR:RW)", "[] (N/A)"}}},
        {9, {GetTempPathA}, kAny, {{"[C:/Users/ann/AppData/Local/Temp/] (DIR:RW)", "[] (N/A)"}}},
        {9, {GetModuleFileNameA}, kAny, {{"[C:/viewer.exe] (DIR:RW)", "[] (N/A)"}}},
        {9, {GetCurrentDirectoryA}, kAny, {{"[C:\\Users\\ann\\Documents] (DIR:RW)", "[] (N/A)"}}},
        {9, {GetFileAttributesA}, kEach, {{"(DIR:RW)", "(N/A)"}}},
        {10, {GetFileAttributesA}, kAny, {{"(DIR:RW)", "(N/A)"}}},

        {11, {RegOpenKeyExA}, {3, 3}, {{"(RWA)", "(RW)"}}},
        {12, {RegOpenKeyExA}, {3, 3}, {{"(RWA)", "(RW)"}}},
        {13, {RegOpenKeyExA}, {3, 3}, {{"(RWA)", "(RW)"}}},

        {14,
         {GetModuleFileNameA},
         kAny,
         {{"[C:/viewer.exe]", "Can not get application binary location!"}}},
        {14, {Getenv}, kEach, {{"[set]", "Not set!"}}},
        {15, {Getenv}, kAny, {{"[set]", "Not set!"}}},

        {16, {CreateToolhelp32Snapshot}, {1, 1}, {}, Result::NoText, When::WithArgument},
        {16, {Process32First, Process32Next}, kAny, {}, Result::NoText},
        {16, {CreateToolhelp32Snapshot}, kAny, noModules, Result::Text, When::Always, kNoSnapshot},
        {16, {Module32First}, kAny, noModules, Result::Text, When::Always, kNoFirstModule},
        {16, {Module32Next}, {1, 1}, {{kLastModule, ""}}},
        {16, {GetFileVersionInfoSizeA}, kEach, {{"1.0", "Modul or version info not found!"}}},
        {16, {GetFileVersionInfoA}, kEach, {{"1.0", "No version info!"}}},
        {16, {VerQueryValueA}, {1, 1}, {{"r.exe  [1.0]", "r.exe  []"}}},
        {16,
         {VerQueryValueA},
         {2, 2},
         {{"r.exe  [1.0]", "r.exe  [Version info is not accessible!]"}}},
        {16, {VerQueryValueA}, {3, 3}, {{"l.dll  [1.0]", "l.dll  []"}}},
        {16,
         {VerQueryValueA},
         {4, 4},
         {{"l.dll  [1.0]", "l.dll  [Version info is not accessible!]"}}},
        {17, {GetFileVersionInfoSizeA}, kAny, {{"1.0", "Modul or version info not found!"}}},
        {17, {GetFileVersionInfoA}, kAny, {{"1.0", "No version info!"}}},
        {17, {VerQueryValueA}, {1, 1}, {{"1.0", ""}}},
        {17, {VerQueryValueA}, {2, 2}, {{"1.0", "Version info is not accessible!"}}},

        {20, {GetSystemMetrics}, {1, 1}, {{"4000", "   0"}}},
        {20, {GetSystemMetrics}, {2, 2}, {{"3000", "   0"}}},
        {20, {GetDC}, kAny, {{"120 (125%)", "0 (0%)"}, {"x: 120", "x: 0"}, {"y: 121", "y: 0"}}},
        {20, {GetDeviceCaps}, {1, 1}, {{"120 (125%)", "0 (0%)"}, {"x: 120", "x: 0"}}},
        {20, {GetDeviceCaps}, {2, 2}, {{"y: 121", "y: 0"}}},
        {20, {EnumDisplayMonitors}, kAny, {{kMonitor, ""}}},
        {20,
         {GetMonitorInfoA},
         kAny,
         {{"1920   1080   1920   1080  Primary", "   0      0      0      0  "}}},
    };
    return kRows;
}

}  // namespace faults

#endif
