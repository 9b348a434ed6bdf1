// Platform calls that fail: in each section the 1st, 2nd, 3rd ... call, alone and with all that
// follow it. The loops count the calls, so that they cover new calls too. If the failure of a new
// call changes the text, the table of consequences needs a row for it.
#include <algorithm>
#include <regex>
#include <set>

#include "stand_in/calls.h"
#include "support.h"

using stand_in::FaultMode;

namespace {

const std::string kMessage =
    " failed with error 8 (Not enough memory resources are available to process this command)";

// How the text of a section changes if a call fails.
struct Consequence {
    std::string failure;  // begins with a match: kind, function, ordinal, argument
    // Patterns of what is replaced, one for each call of the function, starting again after the
    // last. # stands for the ordinal of the call.
    std::vector<std::string> from;
    std::optional<std::string> to;  // the replacement, or nothing if the section fails
    std::string warning{};          // the beginning of the warning, if there is one
};

// The first row that matches counts.
const Consequence kConsequences[] = {
    {"2 _ctime64", {"Wed Jan 05 09:07:03 2022"}, ""},
    {"2 GetTimeZoneInformation", {"-1(?=:0h)|-3600(?=s)"}, "0"},
    {"3 VerifyVersionInfoA 4,", {"Windows 10,"}, ","},  // is it a workstation?
    {"3 VerifyVersionInfoA 38,", {"19044"}, "0"},
    {"3 (GetModuleHandleA|GetProcAddress) 2,", {"64-bit"}, "32-bit"},
    {"3 Get(ModuleHandleA|ProcAddress|ProductInfo)",
     {" Edition(?=\n)| *\n *\\[OS ID.*\n.*Edition ID.*\n"},
     ""},
    {"3 Reg.*ExA [12],", {"ID: Enterprise\\]", "ID: Windows 10 Enterprise\\]"}, "ID: ]"},
    {"3 Reg.*ExA [34],", {" *\\[21H2 -- 19044.1288\\]\n", " -- 19044.1288"}, ""},
    {"5 (LoadLibraryA|GetProcAddress)", {"( *User (display )?name: .*\n)+\n?"}, ""},
    {"5 GetUserNameExA", {"WORKSTATION\\\\ann", "Ann Example"}, "ERROR"},
    {"6 setlocale", {"^((?:[^:]*: *\\[){#})C\\]"}, "$1Unknown]"},
    {"6 VerLanguageNameA", {"English \\(United States\\)"}, ""},
    {"6 GetLocaleInfoA", {"0409\n", "0409\n", "English\n", "English\n", "ENU\n", "ENU\n"}, "\n"},
    {"7 RegOpenKeyExA", {"Intel\\(R\\) Core.*|Intel64 .*|GenuineIntel"}, ""},
    {"8 GetLocaleInfoA", {","}, ""},
    {"8 GlobalMemoryStatusEx", {"[0-9,]{8,} KB"}, "0 KB"},
    {"8 (LoadLibraryA|GetProcAddress|GetProcessMemoryInfo)", {" *Process .*\r\n"}, ""},
    {"9 GetSystemDirectoryA", {"\\[C:/Windows/system32\\] \\(DIR:RW"}, "[] (N/A"},
    {"9 GetWindowsDirectoryA", {"\\[C:/Windows\\] \\(DIR:RW"}, "[] (N/A"},
    {"9 GetTempPathA", {"\\[C:/Users/ann/AppData/Local/Temp/\\] \\(DIR:RW"}, "[] (N/A"},
    {"9 GetModuleFileNameA", {"\\[C:/viewer.exe\\] \\(DIR:RW"}, "[] (N/A"},
    {"9 GetCurrentDirectoryA", {"\\[C:\\\\Users\\\\ann\\\\Documents\\] \\(DIR:RW"}, "[] (N/A"},
    {"(9|10) GetFileAttributesA", {"^((?:[^(]*\\(){#})DIR:RW"}, "$1N/A"},
    {"1[123] RegOpenKeyExA 3,", {"RWA"}, "RW"},
    {"14 GetModuleFileNameA", {"\\[C:/viewer.exe\\]"}, "Can not get application binary location!"},
    {"1[45] getenv", {"^((?:[^=]*= ){#})\\[set\\]"}, "$1Not set!"},
    {"7 RegQueryValueExA|16 (CreateToolhelp32Snapshot 1, viewer|Process32)", {""}, {}},
    {"16 CreateToolhelp32Snapshot", {" *C:.*\r\n"}, "", "CreateToolhelp32Snapshot (of modules)"},
    {"16 Module32First", {" *C:.*\r\n"}, "", "Module32First"},
    {"16 Module32Next 1,", {" *C:/ntdll.dll .*\r\n"}, ""},
    {"1[67] GetFileVersionInfoSizeA", {"#\\.0"}, "Modul or version info not found!"},
    {"1[67] GetFileVersionInfoA", {"#\\.0"}, "No version info!"},
    {"1[67] VerQueryValueA [13],", {"1\\.0", "", "2\\.0"}, ""},
    {"1[67] VerQueryValueA", {"", "1\\.0", "", "2\\.0"}, "Version info is not accessible!"},
    {"20 GetSystemMetrics", {"4000", "3000"}, "   0"},
    {"20 GetDC", {"\\b12[015]\\b"}, "0"},
    {"20 GetDeviceCaps", {"\\b12[05]\\b", "121"}, "0"},
    {"20 EnumDisplayMonitors", {" *Monitor .*\r\n"}, ""},
    {"20 GetMonitorInfoA", {"1920   1080   1920   1080  Primary"}, "   0      0      0      0  "},
    {"", {"(?!)"}, ""},  // any other failure leaves the text as it is
};

// A machine on which each failure changes the text of the section.
stand_in::Machine FaultTellingMachine() {
    stand_in::Machine machine;
    machine.architecture = PROCESSOR_ARCHITECTURE_INTEL;  // other than the native one
    for (stand_in::RegistryKeys* root : {&machine.currentUser, &machine.localMachine}) {
        (*root)["viewer.exe"] = (*root)[""] = {};
    }
    machine.executablePath = "C:\\viewer.exe";
    for (const char* name : {"QB_ROOT_PATH", "PRODUCT", "PACKET", "HOME", "TMPDIR", "viewer.exe"}) {
        machine.environment[name] = "set";
    }
    machine.attributes["C:\\viewer.exe"] = FILE_ATTRIBUTE_DIRECTORY;
    machine.attributes["viewer.exe"] = FILE_ATTRIBUTE_DIRECTORY;
    machine.processes.back().modules = {{"viewer.exe", "C:\\viewer.exe"},
                                        {"ntdll.dll", "C:\\ntdll.dll"}};
    machine.versionResources = {{"viewer.exe", stand_in::ProductVersion("1.0")},
                                {"ntdll.dll", stand_in::ProductVersion("2.0")}};
    machine.systemMetrics = {{SM_CXVIRTUALSCREEN, 4000}, {SM_CYVIRTUALSCREEN, 3000}};
    machine.deviceCaps = {{LOGPIXELSX, 120}, {LOGPIXELSY, 121}};
    return machine;
}

// The text of a section in which the platform call with this number fails, and what it printed.
std::pair<std::optional<std::string>, std::string> WithFault(const Request& request,
                                                             std::uint64_t number, FaultMode mode) {
    stand_in::PlanFault(number, mode);
    testing::internal::CaptureStdout();
    const auto text = GetInfo(request.kind, request.flags, request.argument);
    return {text, testing::internal::GetCapturedStdout()};
}

TEST(PlatformFaults, HaveTheirConsequencesAndNoOthers) {
    const stand_in::ScopedMachine scope(FaultTellingMachine());
    std::set<const Consequence*> met;
    for (const Request& request : EveryRequest({"", "viewer.exe"})) {
        const auto clean = WithFault(request, 0, FaultMode::Once).first;
        const std::uint64_t calls = stand_in::CallsMade();
        for (std::uint64_t number = 1; number <= calls; ++number) {
            SCOPED_TRACE(testing::Message() << "call " << number << ", flags " << request.flags);
            const auto [text, warning] = WithFault(request, number, FaultMode::Once);
            // If the planned call cannot fail, this is a name that no row matches.
            const stand_in::FailedCall failed =
                stand_in::FirstFailedCall().value_or(stand_in::FailedCall{"nothing", 1});
            const std::string ordinal = std::to_string(failed.ordinal);
            const std::string failure = std::to_string(request.kind) + ' ' +
                                        std::string(failed.function) + ' ' + ordinal + ", " +
                                        request.argument;
            const Consequence& row = *std::ranges::find_if(kConsequences, [&](const auto& each) {
                return std::regex_search(failure, std::regex("^(" + each.failure + ')'));
            });
            met.insert(&row);
            const std::regex from(std::regex_replace(
                row.from[(failed.ordinal - 1) % row.from.size()], std::regex("#"), ordinal));
            EXPECT_EQ(text, row.to ? std::optional(std::regex_replace(*clean, from, *row.to))
                                   : std::nullopt)
                << failure;
            EXPECT_EQ(warning, row.warning.empty() ? "" : "\n  WARNING: " + row.warning + kMessage)
                << failure;
            // If every answer is no, the search for the build number asks a million times.
            // Therefore only every tenth call of that section is tried.
            if (request.kind != QbSupportOperatingSystem || number % 10 == 0) {
                const auto [rest, warnings] = WithFault(request, number, FaultMode::FromThenOn);
                // With these bytes the stand-in's failed calls fill their buffers.
                EXPECT_EQ(rest.value_or("").find('\xCC'), std::string::npos) << failure << *rest;
                EXPECT_TRUE(warnings.empty() || warnings.ends_with(" failed with error 8 ()"))
                    << failure << warnings;
            }
        }
    }
    EXPECT_EQ(met.size(), std::size(kConsequences)) << "the table has a row that no failure needs";
}

}  // namespace
